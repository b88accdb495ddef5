#include <vellis/buffers.hpp>
#include <vellis/shading.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

/// GL has no registries: this side is what the loop around the other takes.
struct Nothing {
    void operator()() const {}
};

/// Objects that a registry has, for as long as this lives.
template <class Registry, class Object>
class Registered {
public:
    explicit Registered(std::vector<std::shared_ptr<Object>> objects)
        : objects_(std::move(objects)) {
        for (const auto& object : objects_)
            Registry::instance().add(object);
    }
    ~Registered() {
        for (const auto& object : objects_)
            Registry::instance().remove(object.get());
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

private:
    std::vector<std::shared_ptr<Object>> objects_;
};

template <class Make>
auto makeMany(unsigned int count, Make make) {
    std::vector<decltype(make())> objects(count);
    for (auto& object : objects)
        object = make();
    return objects;
}

std::shared_ptr<BufferObject> makeBuffer() {
    return VertexAttributeBuffer<float>::make(1, BufferUsage::Static, BufferAccess::Draw);
}

std::shared_ptr<Program> makeProgram() {
    return Program::make();
}

class Buffers {
public:
    explicit Buffers(unsigned int size) : others_(makeMany(size, makeBuffer)) {}

    void operator()() const {
        auto& registry = BufferObjectManager::instance();
        registry.remove(registry.add(buffer_));
    }

private:
    Registered<BufferObjectManager, BufferObject> others_;
    std::shared_ptr<BufferObject> buffer_ = makeBuffer();
};

class Programs {
public:
    explicit Programs(unsigned int size) : others_(makeMany(size, makeProgram)) {}

    void operator()() const {
        auto& registry = ProgramManager::instance();
        registry.remove(registry.get(registry.add(program_)).get());
    }

private:
    Registered<ProgramManager, Program> others_;
    std::shared_ptr<Program> program_ = makeProgram();
};

} // namespace

std::vector<Workload> registryWorkloads() {
    const std::vector<unsigned int> sizes = {1, 10, 100, 1000, 10000, 100000};
    return {
        {"registry/buffers",
         "register a buffer beside many, and release it",
         {{"raw", makeSide<Nothing>}, {"vellis", makeSide<Buffers>}},
         Where::NullDriver,
         Calls::Same,
         sizes},
        {"registry/programs",
         "register a program beside many, find it, and release it",
         {{"raw", makeSide<Nothing>}, {"vellis", makeSide<Programs>}},
         Where::NullDriver,
         Calls::Same,
         sizes},
    };
}

} // namespace vellis::bench

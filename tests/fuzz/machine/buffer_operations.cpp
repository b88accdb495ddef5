/// The operations of buffers and their registry.

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {
namespace {

BufferUsage anyUsage(Bytes& bytes) {
    return bytes.enumerator<BufferUsage>(3);
}

BufferAccess anyAccess(Bytes& bytes) {
    return bytes.enumerator<BufferAccess>(3);
}

/// The operations that a kind of buffers has in common; \p places are where they are.
template <auto places>
struct Of {
    template <class Function>
    static void onOne(World& world, Bytes& bytes, Function function) {
        auto& place = pick(world.*places, bytes);
        if (place.object == nullptr)
            return;
        function(*place.object);
        place.isBound = false; // as all data operations leave it
    }

    static void bind(World& world, Bytes& bytes) {
        auto& place = pick(world.*places, bytes);
        if (place.object == nullptr)
            return;
        place.object->bind();
        place.isBound = true;
    }

    static void unbind(World& world, Bytes& bytes) {
        onOne(world, bytes, [](auto& buffer) { buffer.unbind(); });
    }

    static void map(World& world, Bytes& bytes) {
        onOne(world, bytes, [&](auto& buffer) {
            const auto access = bytes.enumerator<MapAccess>(3);
            auto* const store = static_cast<unsigned char*>(static_cast<void*>(buffer.map(access)));
            if (store == nullptr || access == MapAccess::ReadOnly)
                return;
            for (unsigned int i = 0; i < buffer.numBytes(); ++i)
                store[i] = static_cast<unsigned char>(i);
        });
    }

    // What does nothing on a buffer that is not mapped leaves it bound, too.

    template <class Function>
    static void onMapped(World& world, Bytes& bytes, Function function) {
        auto& place = pick(world.*places, bytes);
        if (place.object == nullptr)
            return;
        function(*place.object);
        place.isBound = place.isBound && place.object->isBound();
    }

    static void flush(World& world, Bytes& bytes) {
        const unsigned int first = bytes.anyNumber();
        const unsigned int count = bytes.anyNumber();
        onMapped(world, bytes, [=](auto& buffer) { buffer.flush(first, count); });
    }

    static void unmap(World& world, Bytes& bytes) {
        const bool flushes = bytes.flag();
        onMapped(world, bytes, [=](auto& buffer) { buffer.unmap(flushes); });
    }

    static void flushAndUnmap(World& world, Bytes& bytes) {
        const unsigned int first = bytes.anyNumber();
        const unsigned int count = bytes.anyNumber();
        onMapped(world, bytes, [=](auto& buffer) { buffer.flushAndUnmap(first, count); });
    }

    static void dispose(World& world, Bytes& bytes) {
        auto& place = pick(world.*places, bytes);
        if (place.object == nullptr)
            return;
        place.object->dispose();
        world.require(place.object->id() == 0, "a disposed buffer has a name");
    }

    static void release(World& world, Bytes& bytes) { pick(world.*places, bytes) = {}; }

    static void copy(World& world, Bytes& bytes) {
        const auto& place = pick(world.*places, bytes);
        if (place.object == nullptr || !world.canCopyOwners)
            return;
        world.copiedNames.insert("buffer " + std::to_string(place.object->id()));
        auto copied(*place.object);
        world.require(copied.id() == place.object->id(), "a copy has another name");
    }

    static void add(World& world, Bytes& bytes) {
        const auto& place = pick(world.*places, bytes);
        BufferObject* const key = BufferObjectManager::instance().add(place.object);
        world.require(key == place.object.get(), "the key of a buffer is not its address");
    }

    static void remove(World& world, Bytes& bytes) {
        BufferObjectManager::instance().remove(pick(world.*places, bytes).object.get());
    }
};

template <auto places>
struct OfTyped : Of<places> {
    static void make(World& world, Bytes& bytes) {
        auto& place = pick(world.*places, bytes);
        using Buffer = typename std::decay_t<decltype(place.object)>::element_type;
        const unsigned int count = bytes.number();
        const bool isFilled = bytes.flag();
        const BufferUsage usage = anyUsage(bytes);
        auto* const data = isFilled ? elements<Buffer>(world) : nullptr;
        place = {Buffer::make(data, count, usage, anyAccess(bytes)), false};
        world.require(place.object->count() == count, "a buffer has another count");
    }

    static void load(World& world, Bytes& bytes) {
        const unsigned int count = bytes.number();
        const bool isFilled = bytes.flag();
        Of<places>::onOne(world, bytes, [&](auto& buffer) {
            buffer.load(isFilled ? elements<std::decay_t<decltype(buffer)>>(world) : nullptr,
                        count);
        });
    }

    static void loadPart(World& world, Bytes& bytes) {
        const unsigned int first = bytes.anyNumber();
        const unsigned int count = bytes.anyNumber();
        const bool isFilled = bytes.below(4) != 3;
        Of<places>::onOne(world, bytes, [&](auto& buffer) {
            // GL is to see the range beyond the end of the store before it reads.
            auto* const data = elements<std::decay_t<decltype(buffer)>>(world);
            buffer.load(isFilled ? data : nullptr, first, count);
        });
    }

private:
    /// The memory as elements of a kind of buffers.
    template <class Buffer>
    static auto elements(World& world) {
        using Pointer = decltype(std::declval<Buffer&>().map(MapAccess::ReadOnly));
        return static_cast<Pointer>(static_cast<void*>(world.memory.data()));
    }
};

void addMeddler(World& world, Bytes& bytes) {
    world.meddlingBuffers.add(bytes);
}

void removeMeddler(World& world, Bytes& bytes) {
    world.meddlingBuffers.removeOne(bytes);
}

void makePixelBuffer(World& world, Bytes& bytes) {
    auto& place = pick(world.pixels, bytes);
    const auto flow = bytes.enumerator<PixelBuffer::DataFlow>(2);
    const unsigned int numBytes = 64 * bytes.number();
    const BufferUsage usage = anyUsage(bytes);
    place = {PixelBuffer::make(flow, numBytes, usage, anyAccess(bytes)), false};
}

void loadPixelBuffer(World& world, Bytes& bytes) {
    const unsigned int numBytes = 16 * bytes.number();
    const unsigned int offset = bytes.anyNumber();
    const bool isPart = bytes.flag();
    const bool isFilled = bytes.below(4) != 3;
    Of<&World::pixels>::onOne(world, bytes, [&](PixelBuffer& buffer) {
        if (isPart)
            buffer.load(isFilled ? world.memory.data() : nullptr, offset, numBytes);
        else
            buffer.load(world.memory.data(), numBytes);
    });
}

template <auto places>
void addCommon(std::vector<Operation>& table, const std::vector<GLenum>& bindings) {
    using Buffers = Of<places>;
    const std::vector<Operation> rows = {
        {"buffer: bind", Buffers::bind, {{}, bindings}},
        {"buffer: unbind", Buffers::unbind, {bindings, {}}},
        {"buffer: map", Buffers::map, {bindings, {}}},
        {"buffer: flush", Buffers::flush, {bindings, {}}},
        {"buffer: unmap", Buffers::unmap, {bindings, {}}},
        {"buffer: flushAndUnmap", Buffers::flushAndUnmap, {bindings, {}}},
        {"buffer: dispose", Buffers::dispose, {bindings, {}}},
        {"buffer: release", Buffers::release, {bindings, {}}},
        {"buffer: copy", Buffers::copy, {bindings, {}}},
        {"BufferObjectManager: add", Buffers::add, {}},
        {"BufferObjectManager: remove", Buffers::remove, {bindings, {}}},
    };
    table.insert(table.end(), rows.begin(), rows.end());
}

template <auto places>
void addTyped(std::vector<Operation>& table, GLenum binding) {
    using Buffers = OfTyped<places>;
    table.push_back({"buffer: make", Buffers::make, {{binding}, {}}});
    table.push_back({"buffer: load", Buffers::load, {{binding}, {}}});
    table.push_back({"buffer: load a part", Buffers::loadPart, {{binding}, {}}});
    addCommon<places>(table, {binding});
}

} // namespace

std::vector<Operation> bufferOperations() {
    std::vector<Operation> table;
    addTyped<&World::vertices>(table, GL_ARRAY_BUFFER_BINDING);
    addTyped<&World::indices>(table, GL_ELEMENT_ARRAY_BUFFER_BINDING);
    const std::vector<GLenum> bindings = {GL_PIXEL_PACK_BUFFER_BINDING,
                                          GL_PIXEL_UNPACK_BUFFER_BINDING};
    table.push_back({"PixelBuffer: make", makePixelBuffer, {bindings, {}}});
    table.push_back({"PixelBuffer: load", loadPixelBuffer, {bindings, {}}});
    addCommon<&World::pixels>(table, bindings);
    const GLenum arrayBuffer = GL_ARRAY_BUFFER_BINDING;
    table.push_back({"BufferObjectManager: add a meddler", addMeddler, {{arrayBuffer}, {}}});
    table.push_back({"BufferObjectManager: remove a meddler", removeMeddler, {{arrayBuffer}, {}}});
    return table;
}

} // namespace vellis::test

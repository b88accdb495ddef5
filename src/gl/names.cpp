#include "gl/names.hpp"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"

namespace vellis::gl {
namespace {

/// How objects of each kind are called in diagnostics.
constexpr const char* kindNames[numKinds] = {
    "program", "shader", "vertex array", "framebuffer", "buffer", "texture", "renderbuffer",
};

/// All names that wait, by index. Indices count up, so that a new one has its place at the end.
struct Places {
    std::mutex mutex;
    std::vector<WaitingNames*> places;
    unsigned int lastIndex = 0;

    std::vector<WaitingNames*>::iterator find(unsigned int index) {
        return std::lower_bound(
            places.begin(), places.end(), index,
            [](const WaitingNames* names, unsigned int wanted) { return names->index() < wanted; });
    }
};

Places& all() {
    static detail::Lasting places([] { return Places(); });
    return *places;
}

using Lock = std::lock_guard<std::mutex>;

void deleteNames(Kind kind, const std::vector<unsigned int>& names) {
    const auto deleteAtOnce = [&](auto* entryPoint) {
        callIfLoaded(entryPoint, static_cast<int>(names.size()), names.data());
    };
    switch (kind) {
    case Kind::Program:
        for (const unsigned int name : names)
            glDeleteProgram(name);
        return;
    case Kind::Shader:
        for (const unsigned int name : names)
            glDeleteShader(name);
        return;
    case Kind::VertexArray:
        return deleteAtOnce(glDeleteVertexArrays);
    case Kind::Framebuffer:
        return deleteAtOnce(glDeleteFramebuffers);
    case Kind::Buffer:
        return deleteAtOnce(glDeleteBuffers);
    case Kind::Texture:
        return deleteAtOnce(glDeleteTextures);
    case Kind::Renderbuffer:
        return deleteAtOnce(glDeleteRenderbuffers);
    }
}

} // namespace

WaitingNames::WaitingNames() : index_(0) {
    Places& places = all();
    const Lock lock(places.mutex);
    places.places.push_back(this);
    index_ = ++places.lastIndex;
}

WaitingNames::~WaitingNames() {
    Places& places = all();
    const Lock lock(places.mutex);
    places.places.erase(places.find(index_));
}

WaitingNames& WaitingNames::ofProcess() {
    static detail::Lasting names([] { return WaitingNames(Process()); });
    return *names;
}

void WaitingNames::add(Kind kind, unsigned int index, unsigned int name) noexcept {
    Places& places = all();
    const Lock lock(places.mutex);
    const auto place = places.find(index);
    WaitingNames* names = index == 0 ? &ofProcess() : nullptr;
    if (place != places.places.end() && (*place)->index() == index)
        names = *place;
    if (names == nullptr)
        return;
    try {
        names->names_[static_cast<std::size_t>(kind)].push_back(name);
        names->any_.store(true, std::memory_order_relaxed);
    } catch (const std::bad_alloc&) {
    }
}

void WaitingNames::deleteEach() {
    std::vector<unsigned int> taken[numKinds];
    {
        const Lock lock(all().mutex);
        std::swap(names_, taken);
        any_.store(false, std::memory_order_relaxed);
    }
    for (std::size_t kind = 0; kind < numKinds; ++kind) {
        if (!taken[kind].empty())
            deleteNames(static_cast<Kind>(kind), taken[kind]);
    }
}

unsigned int refuse(Kind kind) {
    thread.refused = kindNames[static_cast<std::size_t>(kind)];
    return 0;
}

} // namespace vellis::gl

#include "gl/names.hpp"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "gl/labels.hpp"

namespace vellis::gl {
namespace {

/// How objects of each kind are called in diagnostics.
constexpr const char* kindNames[numKinds] = {
    "vertex array", "framebuffer", "program", "shader", "buffer", "texture", "renderbuffer",
};

/// All names that wait, the newest index first, and what guards them. There are as many as there
/// are Contexts.
struct All {
    std::mutex mutex;
    WaitingNames* first = nullptr;
    unsigned int lastIndex = 0;
};

All all; // which needs neither construction nor destruction

using Lock = std::lock_guard<std::mutex>;

void deleteNames(Kind kind, const unsigned int* names, std::size_t count) {
    const auto deleteAtOnce = [&](auto* entryPoint) {
        callIfLoaded(entryPoint, static_cast<int>(count), names);
    };
    switch (kind) {
    case Kind::Program:
        std::for_each(names, names + count, [](unsigned int name) { glDeleteProgram(name); });
        return;
    case Kind::Shader:
        std::for_each(names, names + count, [](unsigned int name) { glDeleteShader(name); });
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

WaitingNames::WaitingNames() {
    const Lock lock(all.mutex);
    index_ = ++all.lastIndex;
    next_ = std::exchange(all.first, this);
}

WaitingNames::~WaitingNames() {
    forgetLabels(index_);
    const Lock lock(all.mutex);
    WaitingNames** place = &all.first;
    while (*place != this)
        place = &(*place)->next_;
    *place = next_;
}

WaitingNames& WaitingNames::ofProcess() {
    static detail::Lasting names([] { return WaitingNames(Process()); });
    return *names;
}

void WaitingNames::add(Kind kind, unsigned int index, unsigned int name) noexcept {
    const Lock lock(all.mutex);
    WaitingNames* names = index == 0 ? &ofProcess() : all.first;
    while (names != nullptr && names->index_ != index)
        names = names->next_;
    if (names == nullptr)
        return;
    try {
        names->names_[static_cast<std::size_t>(kind)].push_back(name);
        names->any_.store(true, std::memory_order_relaxed);
    } catch (const std::bad_alloc&) {
    }
}

void WaitingNames::release(bool deletes) {
    if (!deletes)
        forgetLabels(index_);
    for (std::size_t kind = 0; kind < numKinds; ++kind) {
        std::vector<unsigned int> names;
        {
            const Lock lock(all.mutex);
            any_.store(false, std::memory_order_relaxed);
            names.swap(names_[kind]);
        }
        if (deletes && !names.empty())
            deleteNames(static_cast<Kind>(kind), names.data(), names.size());
    }
}

void deleteName(Kind kind, unsigned int name) noexcept {
    deleteNames(kind, &name, 1);
}

bool canDeleteOther(Kind kind, unsigned int index, unsigned int name) noexcept {
    forgetLabel(kind, index, name);
    if (index == getShared(isShared(kind) ? thread().group : thread().context))
        return true;
    if (name != 0)
        WaitingNames::add(kind, index, name);
    return false;
}

unsigned int refuse(Kind kind) {
    thread().refused = kindNames[static_cast<std::size_t>(kind)];
    return 0;
}

} // namespace vellis::gl

#include <vellis/buffers/buffer_object_manager.hpp>

#include <vellis/detail/lasting.hpp>

#include "gl/context_state.hpp"

namespace vellis {
namespace {

/// The end of the process empties the registry.
struct Registry {
    static void release() {
        gl::enter(nullptr);
        BufferObjectManager::dispose();
    }
};

} // namespace

BufferObjectManager& BufferObjectManager::instance() {
    struct Instance : detail::Lasting<BufferObjectManager> {
        Instance() : Lasting([] { return BufferObjectManager(); }) {}
    };
    if (gl::thread().state != nullptr)
        return *gl::thread().state->at<Instance>(gl::Slot::Buffers);
    static Instance manager;
    detail::AtExit<Registry>::arm();
    return *manager;
}

BufferObjectManager& BufferObjectManager::operator=(const BufferObjectManager& other) {
    if (this != &other) {
        auto buffers = other.buffers_;
        buffers_.swap(buffers);
    }
    return *this;
}

BufferObjectManager::~BufferObjectManager() {
    dispose();
    clear();
}

BufferObject* BufferObjectManager::add(const std::shared_ptr<BufferObject>& buffer) {
    if (buffer == nullptr)
        return invalidId();
    if (gl::thread().state == nullptr)
        detail::AtExit<Registry>::arm();
    return buffers_.try_emplace(buffer.get(), buffer).first->first;
}

void BufferObjectManager::remove(BufferObject* id) {
    const auto released = buffers_.extract(id);
}

void BufferObjectManager::dispose() {
    instance().clear();
}

void BufferObjectManager::clear() {
    decltype(buffers_) released;
    released.swap(buffers_);
}

const std::shared_ptr<BufferObject>& BufferObjectManager::internal_get(BufferObject* id) const {
    static detail::Lasting none([] { return std::shared_ptr<BufferObject>(); });
    const auto entry = buffers_.find(id);
    return entry != buffers_.end() ? entry->second : *none;
}

} // namespace vellis

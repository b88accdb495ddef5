#include <vellis/buffers/buffer_object_manager.hpp>

namespace vellis {

BufferObjectManager& BufferObjectManager::instance() {
    static BufferObjectManager manager;
    return manager;
}

BufferObjectManager::~BufferObjectManager() {
    dispose();
}

BufferObject* BufferObjectManager::add(const std::shared_ptr<BufferObject>& buffer) {
    if (buffer == nullptr)
        return invalidId();
    return buffers_.try_emplace(buffer.get(), buffer).first->first;
}

void BufferObjectManager::remove(BufferObject* id) {
    buffers_.erase(id);
}

void BufferObjectManager::dispose() {
    instance().buffers_.clear();
}

const std::shared_ptr<BufferObject>& BufferObjectManager::internal_get(BufferObject* id) const {
    static const std::shared_ptr<BufferObject> none;
    const auto entry = buffers_.find(id);
    return entry != buffers_.end() ? entry->second : none;
}

} // namespace vellis

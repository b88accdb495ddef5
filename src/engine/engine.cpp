#include <vellis/engine.hpp>

#include <vellis/buffers/buffer_object_manager.hpp>

#include "engine/loader.hpp"

namespace vellis::engine {

bool init() {
    return loader::loadCurrentContext();
}

void dispose() {
    // Programs are released before the buffers; their registry's dispose belongs here, first.
    BufferObjectManager::dispose();
}

} // namespace vellis::engine

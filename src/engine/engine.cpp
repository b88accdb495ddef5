#include <vellis/engine.hpp>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/shading/program_manager.hpp>

#include "engine/loader.hpp"

namespace vellis::engine {

bool init() {
    return loader::loadCurrentContext();
}

void dispose() {
    ProgramManager::dispose();
    BufferObjectManager::dispose();
}

} // namespace vellis::engine

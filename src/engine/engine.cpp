#include <vellis/engine.hpp>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/shading/program_manager.hpp>

#include "engine/disposal.hpp"
#include "engine/loader.hpp"

namespace vellis::engine {
namespace {

bool hasBeenDisposed = false;

} // namespace

bool init() {
    return loader::loadCurrentContext();
}

void dispose() {
    hasBeenDisposed = true; // what ends now must not make anything for good
    ProgramManager::dispose();
    BufferObjectManager::dispose();
}

bool isDisposed() {
    return hasBeenDisposed;
}

} // namespace vellis::engine

#include <vellis/engine.hpp>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/context.hpp>
#include <vellis/engine/debug_output.hpp>
#include <vellis/shading/program_manager.hpp>

#include "gl/disposal.hpp"
#include "gl/loader.hpp"

namespace vellis::engine {

bool init() {
    return loader::loadCurrentContext();
}

void dispose() {
    if (Context* const context = Context::current())
        return context->dispose();
    internal::stop_debug_output();
    gl::isProcessDisposed = true; // what ends now must not make anything for good
    ProgramManager::dispose();
    BufferObjectManager::dispose();
}

} // namespace vellis::engine

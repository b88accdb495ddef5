#include "canvas/capabilities.hpp"

#include <vellis/gl.hpp>

#include "gl/capability.hpp"

namespace vellis::canvas {
Capabilities Capabilities::ask() {
    Capabilities result = {};
    result.hasVertexArrays = glGenVertexArrays != nullptr;
    const bool drawsInstances = GLAD_GL_VERSION_3_1 != 0 || GLAD_GL_ARB_draw_instanced != 0;
    const bool hasDivisors =
        GLAD_GL_ARB_instanced_arrays != 0 && glVertexAttribDivisorARB != nullptr;
    // Without vertex arrays of its own it would leave the divisors in the caller's.
    result.hasInstancing = result.hasVertexArrays && hasDivisors && drawsInstances;
    result.hasFramebuffers = glGenFramebuffers != nullptr &&
                             (GLAD_GL_VERSION_3_0 != 0 || GLAD_GL_ARB_framebuffer_object != 0);
    result.hasRestart = GLAD_GL_VERSION_3_1 != 0;
    result.hasFixedFunctions = gl::keepsFixedFunctions();
    result.hasSamplers = GLAD_GL_ARB_sampler_objects != 0 && glBindSampler != nullptr;
    result.hasGlsl150 = GLAD_GL_VERSION_3_2 != 0;
    int numUnits = 0;
    glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, &numUnits);
    result.lastUnit = numUnits > 0 ? static_cast<unsigned int>(numUnits) - 1 : 0;
    return result;
}

} // namespace vellis::canvas

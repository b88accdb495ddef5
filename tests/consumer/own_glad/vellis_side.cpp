#include "vellis_side.hpp"

#include <vellis/gl.hpp>

VellisSide vellisSide() {
    return {&glad_glClear, reinterpret_cast<const void*>(glad_glClear), &GLAD_GL_VERSION_2_1};
}

void clearThroughVellis(float grey) {
    glClearColor(grey, grey, grey, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
}

#include "workloads/shaders.hpp"

#include <vellis/gl.hpp>

namespace vellis::bench {

Variables attributes() {
    return {{"position", GL_FLOAT_VEC2}};
}

Variables flatUniforms(unsigned int) {
    return {{"mvp", GL_FLOAT_MAT4}, {"color", GL_FLOAT_VEC4}};
}

const char* const flatVertexSource =
    "#version 120\n"
    "attribute vec2 position;\n"
    "uniform mat4 mvp;\n"
    "void main() { gl_Position = mvp * vec4(position, 0., 1.); }\n";

const char* const flatFragmentSource = "#version 120\n"
                                       "uniform vec4 color;\n"
                                       "void main() { gl_FragColor = color; }\n";

std::shared_ptr<Program> flatProgram() {
    return Program::make(flatVertexSource, flatFragmentSource);
}

} // namespace vellis::bench

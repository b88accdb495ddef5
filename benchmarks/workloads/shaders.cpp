#include "workloads/shaders.hpp"

#include <vellis/gl.hpp>

namespace vellis::bench {

Variables flatAttributes() {
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

Variables manyUniforms(unsigned int size) {
    Variables uniforms = {{"color", GL_FLOAT_VEC4}};
    for (unsigned int i = 1; i < size; ++i)
        uniforms.push_back({"offset_" + std::to_string(i), GL_FLOAT_VEC4});
    return uniforms;
}

std::string manyUniformsSource(unsigned int size) {
    std::string declarations = "#version 120\n"
                               "attribute vec2 position;\n";
    std::string sum = "vec4(position, 0., 1.)";
    for (const Variable& uniform : manyUniforms(size)) {
        if (uniform.name == "color")
            continue;
        declarations += "uniform vec4 " + uniform.name + ";\n";
        sum += " + " + uniform.name;
    }
    return declarations + "void main() { gl_Position = " + sum + "; }\n";
}

std::shared_ptr<Program> flatProgram() {
    return Program::make(flatVertexSource, flatFragmentSource);
}

} // namespace vellis::bench

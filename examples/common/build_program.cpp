#include <common/build_program.hpp>

#include <stdexcept>
#include <vector>

#include <vellis/gl.hpp>

namespace common {
namespace {

using GetParameter = void(GLAD_API_PTR*)(GLuint, GLenum, GLint*);
using GetLog = void(GLAD_API_PTR*)(GLuint, GLsizei, GLsizei*, GLchar*);

/// What GL says about a shader or a program.
std::string infoLog(unsigned int name, GetParameter getParameter, GetLog getLog) {
    GLint size = 0;
    getParameter(name, GL_INFO_LOG_LENGTH, &size);
    if (size <= 0)
        return "the driver does not say why.";
    std::vector<char> log(static_cast<std::size_t>(size) + 1);
    getLog(name, size, nullptr, log.data());
    return log.data();
}

void requireCompiled(const vellis::Shader& shader, const char* stage) {
    if (shader.hasCompilationError()) {
        throw std::runtime_error("the " + std::string(stage) + " shader does not compile:\n" +
                                 infoLog(shader.id(), glGetShaderiv, glGetShaderInfoLog));
    }
}

} // namespace

std::shared_ptr<vellis::Program> buildProgram(const std::string& vertexSource,
                                              const std::string& fragmentSource) {
    constexpr auto version = vellis::Shader::Version::V210;
    const auto vertexShader = vellis::VertexShader::make(vertexSource, version);
    requireCompiled(*vertexShader, "vertex");
    const auto fragmentShader = vellis::FragmentShader::make(fragmentSource, version);
    requireCompiled(*fragmentShader, "fragment");
    auto program = vellis::Program::make(vertexShader, fragmentShader);
    if (program->hasLinkError()) {
        throw std::runtime_error("the program does not link:\n" +
                                 infoLog(program->id(), glGetProgramiv, glGetProgramInfoLog));
    }
    return program;
}

} // namespace common

#include "shading/info_log.hpp"

#include <cstddef>
#include <cstring>

#include <vellis/gl.hpp>

namespace vellis {
namespace {

std::string infoLog(unsigned int name, PFNGLGETSHADERIVPROC getInteger,
                    PFNGLGETSHADERINFOLOGPROC getInfoLog) {
    std::string log;
    int length = 0;
    getInteger(name, GL_INFO_LOG_LENGTH, &length);
    if (length > 0) {
        log.resize(
            static_cast<std::size_t>(length)); // all zero, so that it ends whatever GL writes
        getInfoLog(name, length, nullptr, log.data());
    }
    return log;
}

} // namespace

std::string shaderInfoLog(unsigned int shader) {
    return infoLog(shader, glGetShaderiv, glGetShaderInfoLog);
}

std::string programInfoLog(unsigned int program) {
    return infoLog(program, glGetProgramiv, glGetProgramInfoLog);
}

std::string upToNul(std::string log) {
    log.resize(std::strlen(log.c_str()));
    return log;
}

} // namespace vellis

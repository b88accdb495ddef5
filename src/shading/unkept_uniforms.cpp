/// Uniforms that no handle stands for: those of types that have none, elements and members.

#include <vellis/shading/program.hpp>

#include <cstring>
#include <memory>
#include <string_view>

#include <vellis/gl.hpp>

#include "shading/program_variables.hpp"

namespace vellis {

int Program::findUnkept(const char* name, bool hasHandles) const {
    if (hasHandles && (name == nullptr || std::strpbrk(name, ".[") == nullptr))
        return -1;
    if (name == nullptr || variables_ == nullptr || !variables_->hasActiveUniforms)
        return nowhere;
    const std::size_t length = std::strlen(name);
    if (variables_->uniforms.find(name, length) != nullptr)
        return hasHandles ? -1 : nowhere;
    if (const UniformVariable* const known = variables_->unkept.find(name, length))
        return known->loc;
    if (!exists())
        return nowhere;
    int location = glGetUniformLocation(id_, name);
    if (location < 0)
        location = nowhere;
    variables_->unkept.add(std::string_view(name, length),
                           std::unique_ptr<UniformVariable>(new UniformVariable(location, 0)));
    return location;
}

namespace detail {

void sendMatrices(int columns, int rows, int location, int count, const float* numbers) {
    const decltype(glUniformMatrix2fv) calls[3][3] = {
        {glUniformMatrix2fv, glUniformMatrix2x3fv, glUniformMatrix2x4fv},
        {glUniformMatrix3x2fv, glUniformMatrix3fv, glUniformMatrix3x4fv},
        {glUniformMatrix4x2fv, glUniformMatrix4x3fv, glUniformMatrix4fv},
    };
    calls[columns - 2][rows - 2](location, count, GL_FALSE, numbers);
}

} // namespace detail

} // namespace vellis

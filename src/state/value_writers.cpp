#include "state/value_writers.hpp"

#include <ostream>

#include "gl/enumerator_names.hpp"

namespace vellis::internal {
namespace {

/// Calls \p write for each value, with the separator between them.
template <class T, class Write>
void writeSeparated(std::ostream& stream, const T* values, unsigned int count, Write write) {
    for (unsigned int i = 0; i < count; ++i) {
        if (i != 0)
            stream << ", ";
        write(values[i]);
    }
}

void writeHexadecimal(std::ostream& stream, int value) {
    stream << "0x" << std::hex << static_cast<unsigned int>(value) << std::dec;
}

/// The names that the values of a state have, or null.
const gl::EnumeratorNames* namesOf(unsigned int pname) {
    switch (pname) {
    case GL_BLEND_EQUATION_RGB:
    case GL_BLEND_EQUATION_ALPHA:
        return &gl::blendEquations;
    case GL_DEPTH_FUNC:
    case GL_STENCIL_FUNC:
    case GL_STENCIL_BACK_FUNC:
        return &gl::comparisons;
    case GL_STENCIL_FAIL:
    case GL_STENCIL_PASS_DEPTH_FAIL:
    case GL_STENCIL_PASS_DEPTH_PASS:
    case GL_STENCIL_BACK_FAIL:
    case GL_STENCIL_BACK_PASS_DEPTH_FAIL:
    case GL_STENCIL_BACK_PASS_DEPTH_PASS:
        return &gl::stencilOperations;
    case GL_READ_BUFFER:
        return &gl::colorBuffers;
    default:
        return nullptr;
    }
}

void writeName(std::ostream& stream, const gl::EnumeratorNames& names, int value) {
    if (const char* const name = names.find(static_cast<unsigned int>(value))) {
        stream << name;
    } else {
        stream << "unknown enum : ";
        writeHexadecimal(stream, value);
    }
}

} // namespace

void write_bool_values(std::ostream& stream, const GLboolean* values, unsigned int count) {
    writeSeparated(stream, values, count,
                   [&](GLboolean value) { stream << (value == GL_TRUE ? "true" : "false"); });
}

void write_float_values(std::ostream& stream, const float* values, unsigned int count) {
    writeSeparated(stream, values, count, [&](float value) { stream << value; });
}

void write_decimal_values(std::ostream& stream, const int* values, unsigned int count) {
    writeSeparated(stream, values, count, [&](int value) { stream << value; });
}

void write_hex_values(std::ostream& stream, const int* values, unsigned int count) {
    writeSeparated(stream, values, count, [&](int value) { writeHexadecimal(stream, value); });
}

void write_enum_values(std::ostream& stream, int* values, unsigned int pname, unsigned int count) {
    if (count == 0)
        return;
    if (pname == GL_ACTIVE_TEXTURE) {
        // Unsigned, since any value can come from a context that does not know its own.
        values[0] = static_cast<int>(static_cast<unsigned int>(values[0]) - GL_TEXTURE0);
        stream << "GL_TEXTURE" << values[0];
        return;
    }
    if (const gl::EnumeratorNames* const names = namesOf(pname))
        writeName(stream, *names, values[0]);
    else
        write_hex_values(stream, values, count);
}

} // namespace vellis::internal

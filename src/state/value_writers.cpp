#include "state/value_writers.hpp"

#include <ostream>

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

struct EnumName {
    int value;
    const char* name;
};

#define VELLIS_NAME(enumerator)                                                                    \
    EnumName {                                                                                     \
        enumerator, #enumerator                                                                    \
    }

constexpr EnumName blendEquations[] = {VELLIS_NAME(GL_FUNC_ADD), VELLIS_NAME(GL_MIN),
                                       VELLIS_NAME(GL_MAX), VELLIS_NAME(GL_FUNC_SUBTRACT),
                                       VELLIS_NAME(GL_FUNC_REVERSE_SUBTRACT)};

constexpr EnumName comparisons[] = {VELLIS_NAME(GL_NEVER),   VELLIS_NAME(GL_LESS),
                                    VELLIS_NAME(GL_EQUAL),   VELLIS_NAME(GL_LEQUAL),
                                    VELLIS_NAME(GL_GREATER), VELLIS_NAME(GL_NOTEQUAL),
                                    VELLIS_NAME(GL_GEQUAL),  VELLIS_NAME(GL_ALWAYS)};

constexpr EnumName stencilOperations[] = {VELLIS_NAME(GL_ZERO),      VELLIS_NAME(GL_INVERT),
                                          VELLIS_NAME(GL_KEEP),      VELLIS_NAME(GL_REPLACE),
                                          VELLIS_NAME(GL_INCR),      VELLIS_NAME(GL_DECR),
                                          VELLIS_NAME(GL_INCR_WRAP), VELLIS_NAME(GL_DECR_WRAP)};

constexpr EnumName colorBuffers[] = {VELLIS_NAME(GL_FRONT), VELLIS_NAME(GL_BACK)};

#undef VELLIS_NAME

/// The names that the values of a state have.
struct EnumNames {
    const EnumName* begin = nullptr;
    const EnumName* end = nullptr;

    EnumNames() = default;
    template <unsigned int N>
    EnumNames(const EnumName (&names)[N]) : begin(names),
                                            end(names + N) {}
};

EnumNames namesOf(unsigned int pname) {
    switch (pname) {
    case GL_BLEND_EQUATION_RGB:
    case GL_BLEND_EQUATION_ALPHA:
        return blendEquations;
    case GL_DEPTH_FUNC:
    case GL_STENCIL_FUNC:
    case GL_STENCIL_BACK_FUNC:
        return comparisons;
    case GL_STENCIL_FAIL:
    case GL_STENCIL_PASS_DEPTH_FAIL:
    case GL_STENCIL_PASS_DEPTH_PASS:
    case GL_STENCIL_BACK_FAIL:
    case GL_STENCIL_BACK_PASS_DEPTH_FAIL:
    case GL_STENCIL_BACK_PASS_DEPTH_PASS:
        return stencilOperations;
    case GL_READ_BUFFER:
        return colorBuffers;
    default:
        return {};
    }
}

void writeName(std::ostream& stream, EnumNames names, int value) {
    for (const EnumName* name = names.begin; name != names.end; ++name) {
        if (name->value == value) {
            stream << name->name;
            return;
        }
    }
    stream << "unknown enum : ";
    writeHexadecimal(stream, value);
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
    const EnumNames names = namesOf(pname);
    if (names.begin == nullptr)
        write_hex_values(stream, values, count);
    else
        writeName(stream, names, values[0]);
}

} // namespace vellis::internal

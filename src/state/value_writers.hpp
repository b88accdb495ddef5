#pragma once

#include <iosfwd>

#include <vellis/gl.hpp>

/// Values of GL state as text, separated by ", ".
namespace vellis::internal {

/// Each `true` where it is GL_TRUE, else `false`.
void write_bool_values(std::ostream& stream, const GLboolean* values, unsigned int count);

/// Each as the stream writes floats: six significant digits.
void write_float_values(std::ostream& stream, const float* values, unsigned int count);

/// Each as a signed decimal number.
void write_decimal_values(std::ostream& stream, const int* values, unsigned int count);

/// Each as `0x` and the digits of its 32 bits, in lower case, without leading zeros.
void write_hex_values(std::ostream& stream, const int* values, unsigned int count);

/// The name of the first value, as the state \p pname has it: `GL_LEQUAL` for GL_DEPTH_FUNC. A
/// value without a name there is `unknown enum : ` and its hexadecimal number. A state without
/// names has all its values written as hexadecimal numbers.
///
/// For GL_ACTIVE_TEXTURE the value of GL_TEXTURE0 is taken from `values[0]` itself: what is left
/// there is the unit's index, and the text is `GL_TEXTURE` and the index.
void write_enum_values(std::ostream& stream, int* values, unsigned int pname, unsigned int count);

} // namespace vellis::internal

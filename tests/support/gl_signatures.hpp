#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "support/gl_entry_points.hpp"
#include "support/object_kind.hpp"

/// \file
/// What the parameters of the entry points mean, and the names of enumerators, from the OpenGL
/// registry.

namespace vellis::test {

/// How an argument is handed over.
enum class Form : unsigned char {
    Value,       ///< by itself
    Array,       ///< a pointer to values that are read, or to the names that the call makes
    Offset,      ///< a pointer that stands for a number
    Text,        ///< a C string
    Texts,       ///< an array of C strings
    Data,        ///< a pointer to bytes that are read
    Output,      ///< a pointer to what the call writes
    PixelInput,  ///< Data, or Offset where a pixel unpack buffer is bound
    PixelOutput, ///< Output, or Offset where a pixel pack buffer is bound
};

/// What a value, or each element of an array, stands for.
enum class Meaning : unsigned char {
    Number,
    Boolean,
    Enum,
    Bits,
    ByPname, ///< what the parameter name in another argument says
};

/// A group of enumerators that names some values as no other group does.
enum class Group : unsigned char {
    None,
#define VELLIS_GL_GROUP(group) group,
#include "gl_signatures.inc"
#undef VELLIS_GL_GROUP
};

/// One parameter of an entry point.
struct ParameterSignature {
    Form form;
    Meaning meaning;
    Group group;
    int argument; ///< the index of the argument that the length or the meaning depends on, or -1
    int factor;   ///< the number of elements per unit of that argument; 0: by its parameter name
    std::optional<ObjectKind> object; ///< the kind of the objects whose names the call uses here
};

/// The parameters of an entry point, in order.
struct Signature {
    const ParameterSignature* parameters;
    std::size_t count;
};
Signature signature(EntryPoint entryPoint);

/// What the values are that a parameter name such as GL_TEXTURE_WRAP_S stands for.
struct PnameSignature {
    std::size_t count;
    Meaning meaning;
    Group group;
};
PnameSignature pnameSignature(std::uint32_t pname);

/// The name of an enumerator: as the group has it, or the one that holds everywhere, or its value
/// in hexadecimal.
std::string enumName(Group group, std::uint32_t value);

/// The names of the bits that are set, by rising value, joined with ` | `; `0` for none. Bits that
/// the group does not have follow in hexadecimal.
std::string bitNames(Group group, std::uint32_t bits);

} // namespace vellis::test

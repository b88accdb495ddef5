#pragma once

#include <string>
#include <vector>

#include <vellis/gl.hpp>

/// \file
/// What an application can ask of GL for the pixels that it writes to memory.

namespace vellis::test {

/// A parameter of `glPixelStorei` beside the alignment, and a value other than the first, 0.
struct PackParameter {
    const char* name;
    GLenum pname;
    GLint value;
};

constexpr PackParameter packParameters[] = {
    {"GL_PACK_ROW_LENGTH", GL_PACK_ROW_LENGTH, 11},
    {"GL_PACK_SKIP_PIXELS", GL_PACK_SKIP_PIXELS, 2},
    {"GL_PACK_SKIP_ROWS", GL_PACK_SKIP_ROWS, 3},
    {"GL_PACK_IMAGE_HEIGHT", GL_PACK_IMAGE_HEIGHT, 9},
    {"GL_PACK_SKIP_IMAGES", GL_PACK_SKIP_IMAGES, 1},
    {"GL_PACK_SWAP_BYTES", GL_PACK_SWAP_BYTES, 1},
    {"GL_PACK_LSB_FIRST", GL_PACK_LSB_FIRST, 1},
};

/// The call that sets a parameter.
inline std::string setting(const PackParameter& parameter, GLint value) {
    const bool isSwitch =
        parameter.pname == GL_PACK_SWAP_BYTES || parameter.pname == GL_PACK_LSB_FIRST;
    const char* const names[] = {"GL_FALSE", "GL_TRUE"};
    return std::string("glPixelStorei(") + parameter.name + ", " +
           (isSwitch ? names[value] : std::to_string(value)) + ")";
}

/// The queries before pixels are written to memory of the library's own.
inline std::vector<std::string> packingQueries() {
    std::vector<std::string> lines = {"glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, out)"};
    for (const PackParameter& parameter : packParameters)
        lines.push_back(std::string("glGetIntegerv(") + parameter.name + ", out)");
    return lines;
}

} // namespace vellis::test

#pragma once

#include <cstddef>
#include <iterator>

#include <vellis/gl.hpp>

namespace vellis::state {

/// Whether a transfer from or to \p data has no memory to work on: null is an offset into the pixel
/// buffer of the query \p binding, if one is bound.
inline bool isNowhere(const void* data, unsigned int binding) {
    if (data != nullptr)
        return false;
    int buffer = 0;
    glGetIntegerv(binding, &buffer);
    return buffer == 0;
}

/// Has GL write pixels to memory, row after row without gaps and in the machine's byte order, and
/// puts back at the end of the scope what the application asked for instead: a pixel buffer, longer
/// rows, places to skip. What is as it should be is not written. The alignment of rows is
/// PackAlignment's.
///
/// For memory that the library owns, whose size the application's settings must not exceed.
class PackingToMemory {
public:
    PackingToMemory() {
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &buffer_);
        for (std::size_t i = 0; i < std::size(parameters); ++i)
            glGetIntegerv(parameters[i], &values_[i]);
        if (buffer_ != 0)
            glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        for (std::size_t i = 0; i < std::size(parameters); ++i) {
            if (values_[i] != 0)
                glPixelStorei(parameters[i], 0);
        }
    }

    ~PackingToMemory() {
        for (std::size_t i = 0; i < std::size(parameters); ++i) {
            if (values_[i] != 0)
                glPixelStorei(parameters[i], values_[i]);
        }
        if (buffer_ != 0)
            glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<unsigned int>(buffer_));
    }

    PackingToMemory(const PackingToMemory&) = delete;
    PackingToMemory& operator=(const PackingToMemory&) = delete;

private:
    /// 0, or false, at first.
    static constexpr unsigned int parameters[] = {
        GL_PACK_ROW_LENGTH,  GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS, GL_PACK_IMAGE_HEIGHT,
        GL_PACK_SKIP_IMAGES, GL_PACK_SWAP_BYTES,  GL_PACK_LSB_FIRST,
    };

    int buffer_ = 0;
    int values_[std::size(parameters)] = {};
};

} // namespace vellis::state

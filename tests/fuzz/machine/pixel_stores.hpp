#pragma once

#include <cstddef>

#include <vellis/gl.hpp>

namespace vellis::test {

/// What an application may ask of GL for the pixels in its memory beside their alignment: the same
/// for those that GL writes, and then for those that it reads. All are 0 at first.
constexpr GLenum pixelStores[] = {
    GL_PACK_ROW_LENGTH,     GL_PACK_IMAGE_HEIGHT,  GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS,
    GL_PACK_SKIP_IMAGES,    GL_PACK_SWAP_BYTES,    GL_PACK_LSB_FIRST,   GL_UNPACK_ROW_LENGTH,
    GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_IMAGES,
    GL_UNPACK_SWAP_BYTES,   GL_UNPACK_LSB_FIRST,
};
constexpr std::size_t pixelStoresPerDirection = 7;

} // namespace vellis::test

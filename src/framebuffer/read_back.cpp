/// The static functions of Framebuffer that read pixels back.

#include <vellis/framebuffer/framebuffer.hpp>

#include <algorithm>

#include <vellis/gl.hpp>

#include "gl/operation.hpp"
#include "gl/size_limits.hpp"
#include "state/pixel_alignment.hpp"
#include "state/pixel_memory.hpp"

namespace vellis {
namespace {

/// A coordinate that GL can add a size to. Those beyond, on either side, are as far from any
/// framebuffer as the last one that is not.
unsigned int within(unsigned int coordinate) {
    constexpr int most = largestAddable;
    return static_cast<unsigned int>(std::clamp(static_cast<int>(coordinate), -most, most));
}

} // namespace

void Framebuffer::readPixels(void* data, unsigned int x, unsigned int y, unsigned int width,
                             unsigned int height, const PixelLayout& layout) {
    if (state::isNowhere(data, GL_PIXEL_PACK_BUFFER_BINDING))
        return;
    const gl::Operation operation("Framebuffer::download");
    downloadPixels(data, within(x), within(y), atMost(largestAddable, width),
                   atMost(largestAddable, height), layout.format, layout.type, layout.alignment);
}

void Framebuffer::readPixelsToMemory(void* data, unsigned int x, unsigned int y, unsigned int width,
                                     unsigned int height, const PixelLayout& layout) {
    const state::PackingToMemory packing;
    readPixels(data, x, y, width, height, layout);
}

void Framebuffer::downloadPixels(void* data, unsigned int x, unsigned int y, unsigned int width,
                                 unsigned int height, unsigned int format, unsigned int type,
                                 unsigned int alignment) {
    const state::PackAlignment rows(alignment);
    glReadPixels(static_cast<int>(x), static_cast<int>(y), static_cast<int>(width),
                 static_cast<int>(height), format, type, data);
}

} // namespace vellis

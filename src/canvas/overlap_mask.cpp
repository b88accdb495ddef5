#include "canvas/overlap_mask.hpp"

#include <algorithm>

#include <vellis/gl.hpp>

#include "canvas/saved_state.hpp"
#include "gl/capability.hpp"

namespace vellis::canvas {
namespace {

unsigned int gl(int value) {
    return static_cast<unsigned int>(value);
}

/// A size that takes no more memory for each stroke that is a little larger.
int rounded(int size, int most) {
    constexpr int step = 256;
    return std::min((size + step - 1) / step * step, std::max(size, most));
}

bool writesAllColors(const unsigned char (&mask)[4]) {
    return std::find(mask, mask + 4, static_cast<unsigned char>(GL_FALSE)) == mask + 4;
}

} // namespace

bool OverlapMask::makeAtLeast(int width, int height, const Capabilities& capabilities) {
    const bool isThere = framebuffer_.name() != 0 && texture_.name() != 0;
    if (isThere && width <= width_ && height <= height_)
        return isComplete_;
    int most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    if (width > most || height > most)
        return false;
    width_ = rounded(std::max(width, width_), most);
    height_ = rounded(std::max(height, height_), most);
    unsigned int name = 0;
    if (framebuffer_.name() == 0) {
        glGenFramebuffers(1, &name);
        framebuffer_ = FramebufferName(name);
    }
    if (texture_.name() == 0) {
        glGenTextures(1, &name);
        texture_ = TextureName(name);
    }
    if (framebuffer_.name() == 0 || texture_.name() == 0)
        return false;    // what follows would change what is the caller's
    int pixelBuffer = 0; // which GL would read the texels from
    glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, &pixelBuffer);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    {
        const TextureUse use(texture_.name(), capabilities);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width_, height_, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
    }
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, gl(pixelBuffer));

    int framebuffer = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer_.name());
    glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                           texture_.name(), 0);
    isComplete_ = glCheckFramebufferStatus(GL_DRAW_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, gl(framebuffer));
    return isComplete_;
}

bool OverlapMask::begin(const PixelBox& box, const int (&viewport)[4], bool isFirst,
                        const Capabilities& capabilities) {
    if (!capabilities.hasFramebuffers || !makeAtLeast(box.width, box.height, capabilities))
        return false;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &saved_.framebuffer);
    std::copy_n(viewport, 4, saved_.viewport);
    glGetIntegerv(GL_SCISSOR_BOX, saved_.scissor);
    saved_.isScissored = glIsEnabled(GL_SCISSOR_TEST) != GL_FALSE;
    glGetBooleanv(GL_COLOR_WRITEMASK, saved_.colorMask);
    glGetFloatv(GL_COLOR_CLEAR_VALUE, saved_.clearColor);

    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer_.name());
    glViewport(viewport[0] - box.x, viewport[1] - box.y, viewport[2], viewport[3]);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, box.width, box.height);
    if (!writesAllColors(saved_.colorMask))
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glBlendEquationSeparate(GL_MAX, GL_MAX);
    if (isFirst) {
        glClearColor(0.f, 0.f, 0.f, 0.f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    return true;
}

void OverlapMask::end() {
    const Saved& saved = saved_;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, gl(saved.framebuffer));
    glViewport(saved.viewport[0], saved.viewport[1], saved.viewport[2], saved.viewport[3]);
    state::switchCapability(GL_SCISSOR_TEST, saved.isScissored);
    glScissor(saved.scissor[0], saved.scissor[1], saved.scissor[2], saved.scissor[3]);
    if (!writesAllColors(saved.colorMask)) {
        glColorMask(saved.colorMask[0], saved.colorMask[1], saved.colorMask[2], saved.colorMask[3]);
    }
    glClearColor(saved.clearColor[0], saved.clearColor[1], saved.clearColor[2],
                 saved.clearColor[3]);
    SavedState::setBlending();
}

} // namespace vellis::canvas

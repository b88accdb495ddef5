#include "antialiased_picture.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

#include <common/downloaded_picture.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/gl.hpp>

namespace gears {
namespace {

/// Four a pixel, or as many as the driver has; 0 where it knows no multisampling.
unsigned int numSamples() {
    GLint most = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    return most >= 2 ? static_cast<unsigned int>(std::min(most, 4)) : 0;
}

void requireComplete() {
    if (const char* problem = vellis::diagnostics::check_framebuffer_complete())
        throw std::runtime_error("The driver refuses a framebuffer (" + std::string(problem) +
                                 "): use another driver or a smaller picture.");
}

} // namespace

AntialiasedPicture::AntialiasedPicture(const glm::uvec2& size)
    : size_(size),
      samples_(size.x, size.y, numSamples()),
      depths_(size.x, size.y, numSamples()),
      colors_(vellis::Texture2D<glm::u8vec4>::make(size.x, size.y)) {
    samplesFramebuffer_.bind();
    samplesFramebuffer_.attachFragmentOut(samples_);
    samplesFramebuffer_.attachDepthStencilbuffer(depths_);
    requireComplete();
    samplesFramebuffer_.unbind();

    colorsFramebuffer_.bind();
    colorsFramebuffer_.attachFragmentOut(*colors_);
    requireComplete();
    colorsFramebuffer_.unbind();
}

void AntialiasedPicture::end() const {
    samplesFramebuffer_.unbind();
    vellis::Framebuffer::blit(samples_, *colors_, size_.x, size_.y);
}

void AntialiasedPicture::show() const {
    const auto width = static_cast<GLint>(size_.x);
    const auto height = static_cast<GLint>(size_.y);
    colorsFramebuffer_.bindToRead();
    vellis::Framebuffer::bindToDraw(0);
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    colorsFramebuffer_.unbindToRead();
}

offscreen::Image AntialiasedPicture::download() const {
    return common::toPicture(colors_->download(), size_.x, size_.y);
}

} // namespace gears

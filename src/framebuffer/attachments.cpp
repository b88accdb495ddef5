/// What is attached to a Framebuffer, and which fragment output writes to which attachment.

#include <vellis/framebuffer/framebuffer.hpp>

#include <algorithm>
#include <iterator>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"

namespace vellis {
namespace {

constexpr unsigned int numColorAttachments = 8;

} // namespace

void Framebuffer::attachTextureAt(unsigned int point, unsigned int texture, unsigned int level) {
    if (!exists())
        return;
    callIfLoaded(glFramebufferTexture2D, target_, point, GL_TEXTURE_2D, texture,
                 static_cast<int>(level));
}

void Framebuffer::attachRenderbufferAt(unsigned int point, unsigned int renderbuffer) {
    if (!exists())
        return;
    callIfLoaded(glFramebufferRenderbuffer, target_, point, GL_RENDERBUFFER, renderbuffer);
}

void Framebuffer::selectColorAttachment0() {
    if (glBindFramebuffer == nullptr || !exists())
        return;
    if (target_ == GL_DRAW_FRAMEBUFFER || target_ == GL_FRAMEBUFFER)
        glDrawBuffer(GL_COLOR_ATTACHMENT0);
    if (target_ == GL_READ_FRAMEBUFFER || target_ == GL_FRAMEBUFFER)
        glReadBuffer(GL_COLOR_ATTACHMENT0);
}

void Framebuffer::attachTexture2D(unsigned int texture, unsigned int level) {
    attachTexture2D(0, texture, level);
    selectColorAttachment0();
}

void Framebuffer::attachTexture2D(unsigned int index, unsigned int texture, unsigned int level) {
    attachTextureAt(GL_COLOR_ATTACHMENT0 + index, texture, level);
}

void Framebuffer::attachRenderbuffer(unsigned int renderbuffer) {
    attachRenderbuffer(0, renderbuffer);
    selectColorAttachment0();
}

void Framebuffer::attachRenderbuffer(unsigned int index, unsigned int renderbuffer) {
    attachRenderbufferAt(GL_COLOR_ATTACHMENT0 + index, renderbuffer);
}

void Framebuffer::attachDepthTexture(unsigned int texture, unsigned int level) {
    attachTextureAt(GL_DEPTH_ATTACHMENT, texture, level);
}

void Framebuffer::attachDepthbuffer(unsigned int renderbuffer) {
    attachRenderbufferAt(GL_DEPTH_ATTACHMENT, renderbuffer);
}

void Framebuffer::attachDepthStencilTexture(unsigned int texture, unsigned int level) {
    attachTextureAt(GL_DEPTH_STENCIL_ATTACHMENT, texture, level);
}

void Framebuffer::attachDepthStencilbuffer(unsigned int renderbuffer) {
    attachRenderbufferAt(GL_DEPTH_STENCIL_ATTACHMENT, renderbuffer);
}

void Framebuffer::attachStencilbuffer(unsigned int renderbuffer) {
    attachRenderbufferAt(GL_STENCIL_ATTACHMENT, renderbuffer);
}

// Renderbuffer 0 takes the place of a texture, too.

void Framebuffer::detachFragmentOut(unsigned int i) {
    attachRenderbufferAt(GL_COLOR_ATTACHMENT0 + i, 0);
}

void Framebuffer::detachDepthbuffer() {
    attachRenderbufferAt(GL_DEPTH_ATTACHMENT, 0);
}

void Framebuffer::detachStencilbuffer() {
    attachRenderbufferAt(GL_STENCIL_ATTACHMENT, 0);
}

void Framebuffer::detachDepthStencilbuffer() {
    attachRenderbufferAt(GL_DEPTH_STENCIL_ATTACHMENT, 0);
}

void Framebuffer::detachAll() {
    for (unsigned int i = 0; i < numColorAttachments; ++i)
        detachFragmentOut(i);
    detachDepthbuffer();
    detachStencilbuffer();
    detachDepthStencilbuffer();
}

void Framebuffer::resetDrawMappings() {
    std::fill(std::begin(drawMappings_), std::end(drawMappings_), unsigned{GL_NONE});
}

void Framebuffer::addDrawMapping(unsigned int i) {
    if (i < MAX_NUM_DRAW_MAPPINGS)
        drawMappings_[i] = GL_COLOR_ATTACHMENT0 + i;
}

unsigned int Framebuffer::getDrawMapping(unsigned int i) const {
    // A slot without a mapping gives a number that is no index.
    return (i < MAX_NUM_DRAW_MAPPINGS ? drawMappings_[i] : GL_NONE) - GL_COLOR_ATTACHMENT0;
}

void Framebuffer::applyDrawMappings() const {
    if (glBindFramebuffer == nullptr || !exists())
        return;
    glDrawBuffers(MAX_NUM_DRAW_MAPPINGS, drawMappings_);
}

} // namespace vellis

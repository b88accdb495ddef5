/// The static functions of Framebuffer that copy pictures.

#include <vellis/framebuffer/framebuffer.hpp>

#include <vellis/gl.hpp>

#include "gl/operation.hpp"

namespace vellis {

/// Copies between two framebuffers that live for the time of the call; the arguments are functions
/// that attach what is copied to each, once it is bound for reading and for drawing.
template <class AttachSource, class AttachDestination>
void Framebuffer::blit(AttachSource attachSource, AttachDestination attachDestination,
                       unsigned int width, unsigned int height, unsigned int mask) {
    if (glBlitFramebuffer == nullptr)
        return;
    const gl::Operation operation("Framebuffer::blit");
    state::State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING> bindings{};
    state::get(bindings);
    {
        const auto source = make();
        const auto destination = make();
        source->bindToRead();
        attachSource(*source);
        destination->bindToDraw();
        attachDestination(*destination);
        const int right = static_cast<int>(width);
        const int top = static_cast<int>(height);
        glBlitFramebuffer(0, 0, right, top, 0, 0, right, top, mask, GL_NEAREST);
        destination->detachAll();
        destination->unbindToDraw();
        source->detachAll();
        source->unbindToRead();
        state::set(bindings);
    }
}

void Framebuffer::blitMultiSampleRenderbufferToTexture2D(unsigned int source,
                                                         unsigned int destination,
                                                         unsigned int width, unsigned int height) {
    // Whether there are samples to resolve, GL sees for itself.
    blitRenderbufferToTexture2D(source, destination, width, height);
}

void Framebuffer::blitRenderbufferToTexture2D(unsigned int source, unsigned int destination,
                                              unsigned int width, unsigned int height) {
    blit([=](Framebuffer& framebuffer) { framebuffer.attachRenderbuffer(source); },
         [=](Framebuffer& framebuffer) { framebuffer.attachTexture2D(destination, 0); }, width,
         height, GL_COLOR_BUFFER_BIT);
}

void Framebuffer::blitTexture2DToTexture2D(unsigned int source, unsigned int destination,
                                           unsigned int width, unsigned int height) {
    blit([=](Framebuffer& framebuffer) { framebuffer.attachTexture2D(source, 0); },
         [=](Framebuffer& framebuffer) { framebuffer.attachTexture2D(destination, 0); }, width,
         height, GL_COLOR_BUFFER_BIT);
}

void Framebuffer::blitMultiSampleRenderbuffersToTexture2Ds(
    unsigned int sourceColor, unsigned int sourceDepthStencil, unsigned int destinationColor,
    unsigned int destinationDepthStencil, unsigned int width, unsigned int height) {
    blit(
        [=](Framebuffer& framebuffer) {
            framebuffer.attachRenderbuffer(sourceColor);
            framebuffer.attachDepthStencilbuffer(sourceDepthStencil);
        },
        [=](Framebuffer& framebuffer) {
            framebuffer.attachTexture2D(destinationColor, 0);
            framebuffer.attachDepthStencilTexture(destinationDepthStencil, 0);
        },
        width, height, GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

} // namespace vellis

/// The static functions of Framebuffer that set the state of the fragment pipeline.

#include <vellis/framebuffer/framebuffer.hpp>

#include <vellis/gl.hpp>

#include "gl/capability.hpp"
#include "gl/enumerator.hpp"

namespace vellis {
namespace {

using state::switchCapability;

void setClearColor(const glm::vec4& color) {
    glClearColor(color.r, color.g, color.b, color.a);
}

void setClearStencil(unsigned int stencil) {
    glClearStencil(static_cast<int>(stencil));
}

} // namespace

void Framebuffer::clear(const glm::vec4& color, float depth, unsigned int stencil) {
    setClearColor(color);
    glClearDepth(depth);
    setClearStencil(stencil);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void Framebuffer::clearColor(const glm::vec4& color) {
    setClearColor(color);
    glClear(GL_COLOR_BUFFER_BIT);
}

void Framebuffer::clearDepth(float depth) {
    glClearDepth(depth);
    glClear(GL_DEPTH_BUFFER_BIT);
}

void Framebuffer::clearStencil(unsigned int stencil) {
    setClearStencil(stencil);
    glClear(GL_STENCIL_BUFFER_BIT);
}

void Framebuffer::clearDepthStencil(float depth, unsigned int stencil) {
    glClearDepth(depth);
    setClearStencil(stencil);
    glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void Framebuffer::enableBlending(bool on) {
    switchCapability(GL_BLEND, on);
}

void Framebuffer::blend(unsigned int sourceRgb, unsigned int destinationRgb,
                        unsigned int sourceAlpha, unsigned int destinationAlpha,
                        const glm::vec3& rgb, float alpha) {
    static_assert(constantColor == GL_CONSTANT_COLOR && constantAlpha == GL_CONSTANT_ALPHA);
    glEnable(GL_BLEND);
    glBlendColor(rgb.r, rgb.g, rgb.b, alpha);
    glBlendFuncSeparate(sourceRgb, destinationRgb, sourceAlpha, destinationAlpha);
}

void Framebuffer::setBlendEquation(BlendEquation rgb, BlendEquation alpha) {
    glBlendEquationSeparate(gl::value(rgb), gl::value(alpha));
}

void Framebuffer::enableDepthTest(FragmentComparator function) {
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(gl::value(function));
}

void Framebuffer::enableDepthTest(bool on) {
    switchCapability(GL_DEPTH_TEST, on);
}

void Framebuffer::enableStencilTest(FragmentComparator function, unsigned int reference,
                                    unsigned int mask, StencilAction stencilFail,
                                    StencilAction depthFail, StencilAction depthPass) {
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(gl::value(function), static_cast<int>(reference), mask);
    glStencilOp(gl::value(stencilFail), gl::value(depthFail), gl::value(depthPass));
}

void Framebuffer::enableStencilTest(FragmentComparator function, unsigned int reference,
                                    unsigned int mask, StencilAction stencilFail,
                                    StencilAction stencilPass) {
    enableStencilTest(function, reference, mask, stencilFail, stencilPass, stencilPass);
}

void Framebuffer::enableStencilTest(bool on) {
    switchCapability(GL_STENCIL_TEST, on);
}

void Framebuffer::enableScissorTest(int x, int y, unsigned int width, unsigned int height) {
    glEnable(GL_SCISSOR_TEST);
    glScissor(x, y, static_cast<int>(width), static_cast<int>(height));
}

void Framebuffer::enableScissorTest(bool on) {
    switchCapability(GL_SCISSOR_TEST, on);
}

void Framebuffer::enableLogicOp(LogicOperator op) {
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(gl::value(op));
}

void Framebuffer::enableLogicOp(bool on) {
    switchCapability(GL_COLOR_LOGIC_OP, on);
}

void Framebuffer::enableMultiSampling(bool on) {
    switchCapability(GL_MULTISAMPLE, on);
}

void Framebuffer::setViewport(int x, int y, unsigned int width, unsigned int height) {
    glViewport(x, y, static_cast<int>(width), static_cast<int>(height));
}

void Framebuffer::setColorMask(bool red, bool green, bool blue, bool alpha) {
    glColorMask(red, green, blue, alpha);
}

void Framebuffer::setDepthMask(bool on) {
    glDepthMask(on);
}

void Framebuffer::setStencilMask(unsigned int mask) {
    glStencilMask(mask);
}

void Framebuffer::setDrawBuffer(BufferID buffer) {
    glDrawBuffer(gl::value(buffer));
}

void Framebuffer::setReadBuffer(BufferID buffer) {
    glReadBuffer(gl::value(buffer));
}

} // namespace vellis

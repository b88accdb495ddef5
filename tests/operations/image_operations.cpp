/// The operations of textures, renderbuffers and framebuffers.

#include <vellis/framebuffer.hpp>
#include <vellis/texture.hpp>

#include "operations/operations.hpp"

namespace vellis::test {
namespace {

using Texel = glm::vec<4, unsigned char>;

template <class TextureOfTexels, class... Sizes>
void useTexture(UseRecorder& use, const char* scope, Sizes... sizes) {
    use.of(scope);
    const Texel texels[64] = {};
    Texel room[64];
    use("make", [&] { return TextureOfTexels::make(sizes..., texels); });
    auto texture = TextureOfTexels::make(sizes...);
    use("upload", [&] { texture->upload(texels, sizes...); });
    use("upload (a part)", [&] { texture->upload(texels, (sizes - sizes)..., sizes...); });
    use("upload (a part)", [&] { texture->upload(nullptr, (sizes - sizes)..., sizes...); });
    use("resize", [&] { texture->resize(glm::uvec3(2)); });
    use("download", [&] { texture->download(room); });
    use("download (a vector)", [&] { return texture->download(); });
    use("generateMipmap", [&] { texture->generateMipmap(); });
    use("setSampler", [&] { texture->setSampler(Sampler::linear_repeat()); });
    use("bind", [&] { texture->bind(); });
    use("unbind", [&] { texture->unbind(); });
    use("destruction", [&] { texture.reset(); });
    const auto other = TextureOfTexels::make(sizes...);
    use("dispose", [&] { other->dispose(); });
}

template <class Image, class... Sizes>
void useRenderbuffer(UseRecorder& use, const char* scope, Sizes... sizes) {
    use.of(scope);
    use("make", [&] { return Image::make(sizes...); });
    auto image = Image::make(sizes...);
    use("bind", [&] { image->bind(); });
    use("unbind", [&] { image->unbind(); });
    use("destruction", [&] { image.reset(); });
}

void useBindings(UseRecorder& use, const Framebuffer& framebuffer) {
    use("bind", [&] { framebuffer.bind(); });
    use("isBound", [&] { framebuffer.isBound(); });
    use("unbind", [&] { framebuffer.unbind(); });
    use("bindToDraw", [&] { framebuffer.bindToDraw(); });
    use("unbindToDraw", [&] { framebuffer.unbindToDraw(); });
    use("bindToRead", [&] { framebuffer.bindToRead(); });
    use("unbindToRead", [&] { framebuffer.unbindToRead(); });
    use("bind (a name)", [] { Framebuffer::bind(7); });
    use("bindToDraw (a name)", [] { Framebuffer::bindToDraw(7); });
    use("bindToRead (a name)", [] { Framebuffer::bindToRead(7); });
}

void useAttachments(UseRecorder& use, Framebuffer& framebuffer) {
    const Texture2D<Texel> texture;
    const Renderbuffer<Texel> renderbuffer(4, 4);
    const Renderbuffer<depth16> depth(4, 4);
    const Texture2D<depth16> depthTexture;
    const Renderbuffer<stencil8> stencil(4, 4);
    const Renderbuffer<depth24_stencil8> both(4, 4);
    framebuffer.bind();
    use("attachFragmentOut", [&] { framebuffer.attachFragmentOut(texture); });
    use("attachFragmentOut", [&] { framebuffer.attachFragmentOut(renderbuffer); });
    use("attachFragmentOut (with an index)", [&] { framebuffer.attachFragmentOut(1, texture); });
    use("attachFragmentOuts", [&] { framebuffer.attachFragmentOuts(texture, renderbuffer); });
    use("attachDepthbuffer", [&] { framebuffer.attachDepthbuffer(depth); });
    use("attachDepthbuffer", [&] { framebuffer.attachDepthbuffer(depthTexture); });
    use("attachStencilbuffer", [&] { framebuffer.attachStencilbuffer(stencil); });
    use("attachDepthStencilbuffer", [&] { framebuffer.attachDepthStencilbuffer(both); });
    use("detachFragmentOut", [&] { framebuffer.detachFragmentOut(1); });
    use("detachFragmentOuts", [&] { framebuffer.detachFragmentOuts(1); });
    use("detachDepthbuffer", [&] { framebuffer.detachDepthbuffer(); });
    use("detachStencilbuffer", [&] { framebuffer.detachStencilbuffer(); });
    use("detachDepthStencilbuffer", [&] { framebuffer.detachDepthStencilbuffer(); });
    use("detachAll", [&] { framebuffer.detachAll(); });
    use("reset", [&] { framebuffer.reset(); });
    framebuffer.unbind();
}

void useCopies(UseRecorder& use) {
    const Texture2D<Texel> texture;
    const Texture2D<depth24_stencil8> depth;
    const Renderbuffer<Texel> renderbuffer(4, 4);
    const MultiSampleRenderbuffer<Texel> samples(4, 4, 4);
    const MultiSampleRenderbuffer<depth24_stencil8> depthSamples(4, 4, 4);
    Texel room[4];
    use("blit", [&] { Framebuffer::blit(samples, texture, 4, 4); });
    use("blit", [&] { Framebuffer::blit(renderbuffer, texture, 4, 4); });
    use("blit", [&] { Framebuffer::blit(texture, texture, 4, 4); });
    use("blit", [&] { Framebuffer::blit(samples, depthSamples, texture, depth, 4, 4); });
    use("download", [&] { Framebuffer::download(room, 0, 0, 2, 2); });
    use("download (a vector)", [&] { Framebuffer::download<Texel>(0, 0, 2, 2); });
    use("download", [&] { Framebuffer::download<Texel>(nullptr, 0, 0, 2, 2); });
}

void useClears(UseRecorder& use) {
    use("clear", [] { Framebuffer::clear(glm::vec4(1.f), 1.f, 1); });
    use("clearColor", [] { Framebuffer::clearColor(glm::vec4(1.f)); });
    use("clearDepth", [] { Framebuffer::clearDepth(1.f); });
    use("clearStencil", [] { Framebuffer::clearStencil(1); });
    use("clearDepthStencil", [] { Framebuffer::clearDepthStencil(1.f, 1); });
}

void useTests(UseRecorder& use) {
    using Comparator = Framebuffer::FragmentComparator;
    using Action = Framebuffer::StencilAction;
    use("enableDepthTest", [] { Framebuffer::enableDepthTest(Comparator::LESS); });
    use("enableDepthTest", [] { Framebuffer::enableDepthTest(false); });
    use("disableDepthTest", [] { Framebuffer::disableDepthTest(); });
    use("enableStencilTest", [] {
        Framebuffer::enableStencilTest(Comparator::LESS, 1, 1, Action::ZERO, Action::ZERO,
                                       Action::ZERO);
    });
    use("enableStencilTest", [] { Framebuffer::enableStencilTest(false); });
    use("disableStencilTest", [] { Framebuffer::disableStencilTest(); });
    use("enableScissorTest", [] { Framebuffer::enableScissorTest(0, 0, 4, 4); });
    use("enableScissorTest", [] { Framebuffer::enableScissorTest(false); });
    use("disableScissorTest", [] { Framebuffer::disableScissorTest(); });
}

void useFragmentState(UseRecorder& use) {
    using Factor = Framebuffer::BlendingFactor;
    using Equation = Framebuffer::BlendEquation;
    use("enableBlending", [] { Framebuffer::enableBlending(Factor::ONE, Factor::ONE); });
    use("enableBlending",
        [] { Framebuffer::enableBlending(Factor::ONE, Factor::ONE, Factor::ONE, 0.5f); });
    use("enableBlending (on or off)", [] { Framebuffer::enableBlending(true); });
    use("enableBlending (on or off)", [] { Framebuffer::enableBlending(false); });
    use("disableBlending", [] { Framebuffer::disableBlending(); });
    use("setBlendEquation",
        [] { Framebuffer::setBlendEquation(Equation::FUNC_ADD, Equation::FUNC_ADD); });
    useTests(use);
    use("enableLogicOp", [] { Framebuffer::enableLogicOp(Framebuffer::LogicOperator::XOR); });
    use("enableLogicOp", [] { Framebuffer::enableLogicOp(false); });
    use("disableLogicOp", [] { Framebuffer::disableLogicOp(); });
    use("enableMultiSampling", [] { Framebuffer::enableMultiSampling(true); });
    use("enableMultiSampling", [] { Framebuffer::enableMultiSampling(false); });
    use("disableMultiSampling", [] { Framebuffer::disableMultiSampling(); });
    use("setViewport", [] { Framebuffer::setViewport(0, 0, 4, 4); });
    use("setColorMask", [] { Framebuffer::setColorMask(true, true, true, true); });
    use("setDepthMask", [] { Framebuffer::setDepthMask(true); });
    use("setStencilMask", [] { Framebuffer::setStencilMask(1); });
    use("setDrawBuffer", [] { Framebuffer::setDrawBuffer(Framebuffer::BufferID::BACK); });
    use("setReadBuffer", [] { Framebuffer::setReadBuffer(Framebuffer::BufferID::BACK); });
}

} // namespace

void useTextures(UseRecorder& use) {
    use.begin("Textures and renderbuffers");
    for (const int size : {GL_TEXTURE_WIDTH, GL_TEXTURE_HEIGHT, GL_TEXTURE_DEPTH})
        use.gl.setState(static_cast<GLenum>(size), {4});
    useTexture<Texture1D<Texel>>(use, "Texture1D", 4u);
    useTexture<Texture2D<Texel>>(use, "Texture2D", 4u, 4u);
    useTexture<Texture3D<Texel>>(use, "Texture3D", 4u, 4u, 4u);
    use.of("Texture");
    use("unbind1D", [] { Texture::unbind1D(); });
    use("unbind2D", [] { Texture::unbind2D(); });
    use("unbind3D", [] { Texture::unbind3D(); });
    useRenderbuffer<Renderbuffer<Texel>>(use, "Renderbuffer", 4u, 4u);
    useRenderbuffer<MultiSampleRenderbuffer<Texel>>(use, "MultiSampleRenderbuffer", 4u, 4u, 4u);
}

void useFramebuffers(UseRecorder& use) {
    use.begin("Framebuffers");
    use.of("Framebuffer");
    use("make", [] { return Framebuffer::make(); });
    auto framebuffer = Framebuffer::make();
    useBindings(use, *framebuffer);
    use.begin("Framebuffers");
    useAttachments(use, *framebuffer);
    use("destruction", [&] { framebuffer.reset(); });
    use.begin("Framebuffers");
    useCopies(use);
    useClears(use);
    useFragmentState(use);
}

} // namespace vellis::test

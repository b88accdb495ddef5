#pragma once

#include <memory>

#include <vellis/texture/rbo.hpp>
#include <vellis/texture/texel_format.hpp>

namespace vellis {

/// A renderbuffer of several samples a pixel, for antialiased drawing. Framebuffer::blit resolves
/// it into a texture.
///
/// \code
/// auto color = vellis::MultiSampleRenderbuffer<glm::u8vec4>::make(640, 480, 4);
/// framebuffer->attachFragmentOut(*color);
/// \endcode
///
/// \tparam F  Any texel type that is stored: see TexelFormat. For another type the constructor and
///            make() do not exist.
template <class F>
class MultiSampleRenderbuffer : public RBO {
public:
    /// Storage of that size with undefined contents. With 0 samples or 1 it has one sample. GL
    /// refuses more than `GL_MAX_SAMPLES`. Numbers in braces are no renderbuffer, as with
    /// Renderbuffer.
    template <class Texel = F, std::enable_if_t<IsStorageFormat<Texel>::value, int> = 0>
    explicit MultiSampleRenderbuffer(unsigned int width, unsigned int height,
                                     unsigned int samples) {
        alloc(TexelFormat<Texel>::internalFormat, width, height, samples);
    }

    /// The same in a shared pointer, with one allocation for both.
    template <class Texel = F, std::enable_if_t<IsStorageFormat<Texel>::value, int> = 0>
    static std::shared_ptr<MultiSampleRenderbuffer> make(unsigned int width, unsigned int height,
                                                         unsigned int samples) {
        return std::make_shared<MultiSampleRenderbuffer>(width, height, samples);
    }
};

} // namespace vellis

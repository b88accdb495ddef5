#pragma once

#include <memory>

#include <vellis/texture/rbo.hpp>
#include <vellis/texture/texel_format.hpp>

namespace vellis {

/// A renderbuffer of one sample a pixel: a picture that a Framebuffer draws to, and that can be
/// read back or copied, but not sampled by a shader.
///
/// \code
/// auto depth = vellis::Renderbuffer<vellis::depth24_stencil8>::make(640, 480);
/// framebuffer->attachDepthStencilbuffer(*depth);
/// \endcode
///
/// \tparam F  Any texel type that is stored: see TexelFormat. For another type the constructor and
///            make() do not exist.
template <class F>
class Renderbuffer : public RBO {
public:
    /// Storage of that size with undefined contents. GL refuses more than
    /// `GL_MAX_RENDERBUFFER_SIZE`. A size in braces is no renderbuffer: where one is attached, it
    /// would be gone at once.
    template <class Texel = F, std::enable_if_t<IsStorageFormat<Texel>::value, int> = 0>
    explicit Renderbuffer(unsigned int width, unsigned int height) {
        alloc(TexelFormat<Texel>::internalFormat, width, height, 1);
    }

    /// The same in a shared pointer, with one allocation for both.
    template <class Texel = F, std::enable_if_t<IsStorageFormat<Texel>::value, int> = 0>
    static std::shared_ptr<Renderbuffer> make(unsigned int width, unsigned int height) {
        return std::make_shared<Renderbuffer>(width, height);
    }
};

} // namespace vellis

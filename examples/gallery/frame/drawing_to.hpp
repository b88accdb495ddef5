#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <glm/gtc/type_precision.hpp>

#include <vellis/framebuffer.hpp>
#include <vellis/texture.hpp>

namespace gallery {

using ColorTexture = vellis::Texture2D<glm::u8vec4>;
using ColorSamples = vellis::MultiSampleRenderbuffer<glm::u8vec4>;

/// Keeps all GL attributes and puts them back at the end of a scope. In a core context, which has
/// no stack of them, those that the library has records of and that name no object.
class SavedAttributes {
public:
    SavedAttributes();
    ~SavedAttributes();
    SavedAttributes(const SavedAttributes&) = delete;
    SavedAttributes& operator=(const SavedAttributes&) = delete;

private:
    std::vector<std::function<void()>> putBack_; ///< in a core context
};

/// While the object lives, drawing goes to images of one's own, which must live as long. They are
/// cleared to the colour of the paper, have depth and stencil, and fill the viewport. Afterwards
/// the bound framebuffer and all GL attributes are as before.
class DrawingTo {
public:
    /// Draws to textures of that size: the first is for the first fragment output, and so on.
    /// \throws std::runtime_error where the driver refuses them; so do the others.
    template <class... Formats>
    explicit DrawingTo(const glm::uvec2& size, const vellis::Texture2D<Formats>&... colors)
        : DrawingTo(size, vellis::Renderbuffer<vellis::depth24_stencil8>::make(size.x, size.y),
                    colors...) {}

    /// Draws to a renderbuffer of that size and with so many samples a pixel.
    DrawingTo(const glm::uvec2& size, unsigned int samples, const ColorSamples& colors)
        : DrawingTo(size,
                    vellis::MultiSampleRenderbuffer<vellis::depth24_stencil8>::make(size.x, size.y,
                                                                                    samples),
                    colors) {}

    ~DrawingTo();
    DrawingTo(const DrawingTo&) = delete;
    DrawingTo& operator=(const DrawingTo&) = delete;

private:
    template <class DepthStencil, class... Colors>
    DrawingTo(const glm::uvec2& size, std::shared_ptr<DepthStencil> depthStencil,
              const Colors&... colors)
        : depthStencil_(depthStencil) {
        framebuffer_.bind();
        framebuffer_.attachFragmentOuts(colors...);
        framebuffer_.attachDepthStencilbuffer(*depthStencil);
        start(size);
    }

    void start(const glm::uvec2& size);

    // First, so that they are put back last: the draw buffers among them are those of the
    // framebuffer that was bound before.
    SavedAttributes savedAttributes_;
    std::shared_ptr<vellis::RBO> depthStencil_;
    vellis::Framebuffer framebuffer_;
};

} // namespace gallery

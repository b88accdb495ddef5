#pragma once

#include <memory>

#include <glm/gtc/type_precision.hpp>

#include <offscreen/image.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/texture.hpp>

namespace gears {

/// A picture that is drawn with several samples a pixel, where the driver has them.
///
/// \code
/// const AntialiasedPicture picture({640, 480});
/// picture.begin();
/// // ... draw ...
/// picture.end();
/// picture.show();
/// \endcode
class AntialiasedPicture {
public:
    /// \throws std::runtime_error where the driver refuses the framebuffer.
    explicit AntialiasedPicture(const glm::uvec2& size);

    const glm::uvec2& size() const { return size_; }

    /// From now on drawing goes to the picture, which has depth.
    void begin() const { samplesFramebuffer_.bind(); }

    /// Makes one colour of the samples of each pixel. Drawing goes to where it went before.
    void end() const;

    /// Copies the picture to the default framebuffer, into the lower left corner.
    void show() const;

    offscreen::Image download() const;

private:
    glm::uvec2 size_;
    vellis::MultiSampleRenderbuffer<glm::u8vec4> samples_;
    vellis::MultiSampleRenderbuffer<vellis::depth24_stencil8> depths_;
    vellis::Framebuffer samplesFramebuffer_;
    std::shared_ptr<vellis::Texture2D<glm::u8vec4>> colors_;
    vellis::Framebuffer colorsFramebuffer_;
};

} // namespace gears

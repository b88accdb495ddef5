#pragma once

#include <glm/vec2.hpp>

#include <vellis/export.hpp>

namespace vellis {

/// A part of a texture, in texture coordinates: the whole of it goes from 0 to 1. Beyond that, the
/// texture's own wrapping repeats or ends it.
struct TexturePart {
    glm::vec2 from{0.f}; ///< one corner
    glm::vec2 to{1.f};   ///< the opposite one
};

/// Where Canvas::drawImage puts an image: a parallelogram in the plane z = 0.
///
/// \code
/// const vellis::ImageFrame upright({10., 10.}, {74., 42.});
/// const vellis::ImageFrame mirrored({74., 10.}, {10., 42.});
/// const vellis::ImageFrame leaning = upright.rotated(0.3);
/// \endcode
struct VELLIS_EXPORT ImageFrame {
    /// A rectangle whose sides are parallel to the axes, with opposite corners \p a, where the
    /// image's part begins, and \p b, where it ends: exchanged coordinates turn it around.
    ImageFrame(const glm::dvec2& a, const glm::dvec2& b)
        : corner(a),
          right(b.x - a.x, 0.),
          up(0., b.y - a.y) {}

    /// The same, turned about its middle by so many radians, from the x axis to the y axis.
    ImageFrame rotated(double angle) const;

    glm::dvec2 corner; ///< where the image's part begins
    glm::dvec2 right;  ///< from there along the image's rows
    glm::dvec2 up;     ///< from there along its columns
};

/// What the texels of a texture are to Canvas::drawQuads.
enum class Texels : unsigned char {
    Colors,   ///< colours with straight alpha, which are multiplied by the colour of the call
    Coverage, ///< how much of a pixel is covered, in red; the colour is that of the call
};

/// A parallelogram of so many pixels of the framebuffer, as seen from the place of its call, with a
/// part of a texture: a glyph, a marker.
struct PixelQuad {
    glm::vec2 corner; ///< where the part begins
    glm::vec2 right;  ///< from there along the texture's rows
    glm::vec2 up;     ///< from there along its columns
    TexturePart part; ///< what is seen of it
};

/// How Canvas::drawQuads draws.
struct QuadStyle {
    Texels texels = Texels::Colors; ///< what those of the texture are
    /// Whether the place of the call moves to the nearest corner of pixels, so that quads of whole
    /// pixels cover whole ones.
    bool onWholePixels = false;
};

} // namespace vellis

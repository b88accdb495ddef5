#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/text/export.hpp>
#include <vellis/text/font.hpp>
#include <vellis/text/layout.hpp>

namespace vellis {
class Canvas; // <vellis/canvas.hpp>
}

namespace vellis::text {

/// Where a text is: a point that goes through the canvas's matrix, in the plane z = 0 where it has
/// no third coordinate.
struct Position {
    /// @{
    /// Of two coordinates or three; a point is a position.
    Position(double x, double y, double z = 0.) : point(x, y, z) {}
    Position(const glm::vec2& p) : point(p.x, p.y, 0.) {}  // NOLINT: it converts
    Position(const glm::vec3& p) : point(p) {}             // NOLINT
    Position(const glm::dvec2& p) : point(p.x, p.y, 0.) {} // NOLINT
    Position(const glm::dvec3& p) : point(p) {}            // NOLINT
    /// @}

    glm::dvec3 point; ///< in the coordinates of the canvas
};

/// Draws a text between the canvas's begin() and end(), or into its picture.
///
/// \code
/// const auto font = vellis::text::Font::load("/usr/share/fonts/DejaVuSans.ttf", 16.f);
/// const auto canvas = vellis::Canvas::make();
/// const glm::vec4 black(0.f, 0.f, 0.f, 1.f);
///
/// canvas->begin(glm::mat4(1.f));
/// vellis::text::draw(canvas, font, {0.5, 0.5}, "Hello", black, vellis::text::Anchor::Center);
/// canvas->end();
/// \endcode
///
/// The position goes through the matrix; the text's size is in pixels of the framebuffer, and
/// upwards is that of Canvas::setPixelsDownward. Without a turn, each pixel has the coverage that
/// FreeType gives it; the position moves to the nearest corner of pixels. A turned text is on no
/// whole pixels, and sampled between texels. See Canvas::drawQuads.
///
/// **Glyphs** are kept with the canvas, in textures of 1024 x 1024 texels, of one byte each, or of
/// four where GL has neither version 3.0 nor GL_ARB_texture_rg; a glyph that takes more than a
/// quarter of that has a texture of its own, and shows nothing where GL has no textures so large.
/// Turned texts have textures apart, which are sampled with a filter. Beyond mostTextureTexels, it
/// starts anew.
///
/// **GL calls.** A text of known glyphs makes none beyond those of Canvas::drawQuads. New ones are
/// uploaded at once: glGetIntegerv for what is bound to `GL_TEXTURE_2D` and the pixel unpack
/// buffer, and for row length, skipped rows and skipped pixels of unpacking; these are set to 0
/// while glTexImage2D or glTexSubImage2D runs, and put back.
///
/// \param canvas  A null one draws nothing, as one that is not drawing, or not in the Context in
///                use.
/// \param font    A null one draws nothing.
/// \param position  One that is not finite draws nothing.
/// \param text    In UTF-8: see Font.
/// \param color   As that of Canvas::drawQuads.
/// \param anchor  Which point of the text is at the position.
/// \param angle   Turns the text about its position, counter-clockwise, in radians. One that is not
///                finite draws nothing.
VELLIS_TEXT_EXPORT void draw(const std::shared_ptr<Canvas>& canvas,
                             const std::shared_ptr<Font>& font, const Position& position,
                             std::string_view text, const glm::vec4& color,
                             Anchor anchor = Anchor::BottomLeft, float angle = 0.f);

/// How many texels of glyphs are kept with a canvas at most, but for those of one text.
inline constexpr std::size_t mostTextureTexels = std::size_t{64} << 20;

} // namespace vellis::text

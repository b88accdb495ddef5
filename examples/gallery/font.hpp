#pragma once

#include <string>

#include <gallery/colour.hpp>
#include <offscreen/image.hpp>

/// Small letters of pixels for captions.
namespace gallery {

/// The height of a line of text in pixels.
inline constexpr unsigned int textHeight = 16;

/// The width of a text in pixels.
unsigned int textWidth(const std::string& text);

/// Writes a text with its upper left corner at (x, y); it must lie inside of the picture.
/// Characters other than ASCII's printable ones appear as question marks.
void write(offscreen::Image& image, unsigned int x, unsigned int y, const std::string& text,
           Colour colour);

} // namespace gallery

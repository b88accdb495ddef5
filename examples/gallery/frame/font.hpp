#pragma once

#include <string>

#include <gallery/frame/color.hpp>
#include <offscreen/image.hpp>

/// Small letters of pixels for captions and headings.
namespace gallery {

/// How large letters are; each value is the side of one of their dots in pixels.
enum class TextSize : unsigned int {
    Caption = 2,
    Heading = 3,
};

/// The height of a line of text in pixels.
unsigned int textHeight(TextSize size);

/// The width of a text in pixels.
unsigned int textWidth(const std::string& text, TextSize size);

/// Writes a text with its upper left corner at (x, y); it must lie inside of the picture.
/// Characters other than ASCII's printable ones appear as question marks.
void write(offscreen::Image& image, unsigned int x, unsigned int y, const std::string& text,
           Color color, TextSize size);

} // namespace gallery

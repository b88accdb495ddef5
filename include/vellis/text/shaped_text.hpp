#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Text: fonts, its shape, its place, its drawing.
namespace vellis::text {

/// A position or a length in 64ths of a pixel, exact.
using Fixed = std::int64_t;

/// How many Fixed a pixel is.
inline constexpr Fixed fixedPixel = 64;

/// \p value in pixels.
inline double pixelsOf(Fixed value) {
    return static_cast<double>(value) / static_cast<double>(fixedPixel);
}

/// A rectangle, up being +y. One without a width or a height is empty.
struct FixedBox {
    Fixed left = 0;   ///< its least x
    Fixed bottom = 0; ///< its least y
    Fixed right = 0;  ///< its greatest x
    Fixed top = 0;    ///< its greatest y

    /// Whether it has no area.
    bool isEmpty() const { return !(left < right && bottom < top); }
};

/// A glyph of a line.
struct ShapedGlyph {
    std::uint32_t index; ///< in the font; 0 is the font's box for what it lacks
    std::uint32_t byte;  ///< where in the text the first of its characters begins
    Fixed x;             ///< its origin, from that of the line on
    Fixed y;             ///< the same, up from the base line
};

/// A line of a text.
struct ShapedLine {
    std::size_t firstGlyph = 0; ///< in ShapedText::glyphs
    std::size_t numGlyphs = 0;  ///< from there on, from left to right
    Fixed advance = 0;          ///< where the next glyph's origin would be
    FixedBox ink;               ///< what the outlines of its glyphs reach
    bool isRightToLeft = false; ///< its base direction, which is that of its first letter
};

/// The glyphs of a text, as Font::shape makes them.
struct ShapedText {
    std::vector<ShapedGlyph> glyphs; ///< of all lines
    std::vector<ShapedLine> lines;   ///< at least one
};

/// What a text measures.
struct Extents {
    /// What the outlines of its glyphs reach, from the origin of the first line on; the lines below
    /// begin at x = 0, too.
    FixedBox ink;
    Fixed advance = 0;        ///< that of the longest line
    Fixed lineHeight = 0;     ///< from a line's base line down to the next
    std::size_t numLines = 0; ///< at least 1
};

} // namespace vellis::text

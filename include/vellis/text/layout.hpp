#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <glm/vec2.hpp>

#include <vellis/text/export.hpp>
#include <vellis/text/font.hpp>

namespace vellis::text {

/// Which point of a text is at its position.
///
/// A text's box goes from the origin of its lines to the end of the longest one, and from the
/// ascent above the first base line to the descent below the last: it does not depend on which
/// letters there are. At the left anchors lines begin below each other, at the right ones they end
/// so, and at the middle ones their middles are below each other.
enum class Anchor : unsigned char {
    TopLeft,     ///< the upper left corner of the box
    Top,         ///< the middle of its upper side
    TopRight,    ///< its upper right corner
    Left,        ///< the middle of its left side
    Center,      ///< the middle of the box
    Right,       ///< the middle of its right side
    BottomLeft,  ///< its lower left corner
    Bottom,      ///< the middle of its lower side
    BottomRight, ///< its lower right corner
};

/// A glyph of a text, as seen from the text's position.
struct PlacedGlyph {
    std::uint32_t index; ///< in the font
    glm::vec2 origin;    ///< in pixels, up being +y
};

/// Where the glyphs of a text are: those of the first line first, each from left to right.
///
/// Without a turn, each is on whole pixels, the nearest ones to its exact position.
///
/// \param font    Shapes the text, and keeps it.
/// \param text    In UTF-8.
/// \param anchor  One that does not exist is TopLeft.
/// \param angle   Turns the text about its position, counter-clockwise, in radians; not to whole
///                pixels, unless it is 0. One that is not finite places no glyph.
/// \param placed  Is cleared first; its memory is used again.
VELLIS_TEXT_EXPORT void place(Font& font, std::string_view text, Anchor anchor, float angle,
                              std::vector<PlacedGlyph>& placed);

/// The same in a vector of its own.
inline std::vector<PlacedGlyph> place(Font& font, std::string_view text,
                                      Anchor anchor = Anchor::TopLeft, float angle = 0.f) {
    std::vector<PlacedGlyph> placed;
    place(font, text, anchor, angle, placed);
    return placed;
}

} // namespace vellis::text

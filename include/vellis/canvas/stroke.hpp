#pragma once

#include <array>
#include <initializer_list>

#include <glm/vec4.hpp>

namespace vellis {

/// How a Canvas draws lines: their colour, width, joins, caps and dashes. Plain values.
///
/// \code
/// vellis::Stroke river(glm::vec4(0.2f, 0.4f, 0.8f, 0.5f), 12.f);
/// river.join = vellis::Stroke::Join::Round;
/// river.cap = vellis::Stroke::Cap::Round;
/// const auto border = vellis::Stroke(glm::vec4(1.f), 1.5f).dashed({{8.f, 4.f}, {2.f, 4.f}});
/// \endcode
///
/// A colour alone is a stroke, one pixel wide. Lengths are in pixels: those of the framebuffer
/// times Canvas::setPixelRatio. A width of 0 or less, and one that is not a number, draws nothing.
struct Stroke {
    /// What stands at the corner of two pieces.
    enum class Join : unsigned char {
        Miter, ///< the outer edges, up to where they meet; a bevel beyond the miter limit
        Round, ///< a sector of a disc
        Bevel, ///< a straight cut
    };

    /// What stands at the ends of open lines and of dashes.
    enum class Cap : unsigned char {
        Butt,   ///< nothing: the line ends where its end is
        Square, ///< half the width more
        Round,  ///< half a disc
    };

    /// A dash and the gap behind it.
    struct Dash {
        float length; ///< in pixels; 0 is a dot where the caps are round
        float gap;    ///< in pixels
    };

    static constexpr unsigned int mostDashes = 4; ///< of a pattern

    /// A solid stroke of that colour (red, green, blue and alpha from 0 to 1) and width.
    Stroke(const glm::vec4& strokeColor, float strokeWidth = 1.f) // NOLINT: a colour is a stroke
        : color(strokeColor),
          width(strokeWidth) {}

    /// A line of GL's own, one pixel wide and not antialiased, without joins, caps and dashes: the
    /// fastest.
    static Stroke aliased(const glm::vec4& color) {
        Stroke result(color);
        result.isAntialiased = false;
        return result;
    }

    /// The same in dashes, of which the first \p offset pixels are left out. Four pairs at most,
    /// the rest is left out; where one is negative or not finite, or all add up to 0, the stroke is
    /// solid.
    Stroke dashed(std::initializer_list<Dash> pattern, float offset = 0.f) const {
        Stroke result = *this;
        result.numDashes = 0;
        for (const Dash& dash : pattern) {
            if (result.numDashes < mostDashes)
                result.dashes[result.numDashes++] = dash;
        }
        result.dashOffset = offset;
        return result;
    }

    glm::vec4 color;                       ///< red, green, blue and alpha, from 0 to 1
    float width;                           ///< in pixels; below 1 the line fades
    float miterLimit = 10.f;               ///< how many times the width a miter may be long
    float dashOffset = 0.f;                ///< where in the pattern a line begins, in pixels
    Join join = Join::Miter;               ///< at corners
    Cap cap = Cap::Butt;                   ///< at ends
    bool isAntialiased = true;             ///< see aliased()
    unsigned char numDashes = 0;           ///< how many of `dashes` there are; 0 for a solid line
    std::array<Dash, mostDashes> dashes{}; ///< the pattern
};

} // namespace vellis

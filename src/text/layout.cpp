#include <vellis/text/layout.hpp>

#include <cmath>
#include <iterator>
#include <memory>

#include "text/turn.hpp"

namespace vellis::text {
namespace {

/// How much of a text's box is left of its position and above it, in halves.
struct Halves {
    int left;
    int above;
};

constexpr Halves anchors[] = {
    {0, 0}, {1, 0}, {2, 0}, // TopLeft, Top, TopRight
    {0, 1}, {1, 1}, {2, 1}, // Left, Center, Right
    {0, 2}, {1, 2}, {2, 2}, // BottomLeft, Bottom, BottomRight
};

Halves halvesOf(Anchor anchor) {
    const auto index = static_cast<unsigned int>(anchor);
    return index < std::size(anchors) ? anchors[index] : anchors[0];
}

/// The nearest whole number of pixels; the higher one of two.
Fixed wholePixels(Fixed value) {
    const Fixed raised = value + fixedPixel / 2;
    return (raised - (raised & (fixedPixel - 1))) / fixedPixel; // 64 is a power of two
}

/// Where a position is once it is turned about the text's own; on whole pixels without a turn.
glm::vec2 placeOf(Fixed x, Fixed y, const Turn& turn) {
    if (!turn.isTurned())
        return {static_cast<float>(wholePixels(x)), static_cast<float>(wholePixels(y))};
    return turn(pixelsOf(x), pixelsOf(y));
}

} // namespace

void place(Font& font, std::string_view text, Anchor anchor, float angle,
           std::vector<PlacedGlyph>& placed) {
    if (!std::isfinite(angle))
        return placed.clear();
    const std::shared_ptr<const ShapedText> shape = font.shape(text);
    const FontMetrics& metrics = font.metrics();
    const Halves halves = halvesOf(anchor);
    const Turn turn(angle);
    const auto numSteps = static_cast<Fixed>(shape->lines.size() - 1);
    const Fixed height = metrics.ascent + metrics.descent + metrics.lineHeight * numSteps;
    Fixed baseLine = height * halves.above / 2 - metrics.ascent;
    placed.resize(shape->glyphs.size());
    for (const ShapedLine& line : shape->lines) {
        const Fixed left = -line.advance * halves.left / 2;
        const std::size_t end = line.firstGlyph + line.numGlyphs;
        for (std::size_t i = line.firstGlyph; i < end; ++i) {
            const ShapedGlyph& glyph = shape->glyphs[i];
            placed[i] = {glyph.index, placeOf(left + glyph.x, baseLine + glyph.y, turn)};
        }
        baseLine -= metrics.lineHeight;
    }
}

} // namespace vellis::text

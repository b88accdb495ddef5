#pragma once

#include <string>
#include <variant>
#include <vector>

#include <gallery/frame/color.hpp>
#include <offscreen/image.hpp>

namespace gallery {

struct Panel;

/// A pixel of a panel, counted from the left and from the top.
struct Point {
    int x;
    int y;
};

/// How far each channel may be off, where a probe does not say otherwise: drivers round
/// differently.
inline constexpr int usualTolerance = 10;

/// The picture has a colour at a point.
struct ColorAt {
    Point at;
    Color color;
    int tolerance = usualTolerance;
};

/// Going from one point straight to another, the picture has the first colour, then the second, and
/// between them no more than an antialiased edge.
struct EdgeBetween {
    Point from;
    Point to;
    Color before;
    Color after;
    int tolerance = usualTolerance;
};

/// Going from one point straight to another, between `minimum` and `maximum` pixels have neither of
/// two colours: many on a smoothed or shaded stretch, none on a hard one.
struct MixedBetween {
    Point from;
    Point to;
    Color first;
    Color second;
    int minimum;
    int maximum;
    int tolerance = usualTolerance;
};

/// Going across a line or a point, so many pixels are not paper.
/// @{
MixedBetween widthBetween(Point from, Point to, int minimum, int maximum);
MixedBetween widthBetween(Point from, Point to, int width);
/// @}

/// One thing that a panel's picture must show.
using Probe = std::variant<ColorAt, EdgeBetween, MixedBetween>;

/// Holds a picture against the probes of a panel.
/// \return One sentence for each probe that fails, with the name of the panel, the place, and what
/// was
///         expected and found; a picture of another size fails as a whole.
std::vector<std::string> check(const Panel& panel, const offscreen::Image& image);

} // namespace gallery

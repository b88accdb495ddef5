#pragma once

#include <string>
#include <vector>

#include <vellis/canvas.hpp>

#include "layout.hpp"
#include "signal.hpp"

/// The axes of an area: where their ticks are, what stands at them, and their lines.
namespace plot {

/// How far a tick reaches out of the area, in pixels.
inline constexpr float tickLength = 6.0f;

/// A tick of an axis.
struct Tick {
    float place;        ///< along the axis, in the middle of a pixel
    std::string number; ///< what stands at it, in UTF-8
};

/// The ticks of the level axis, whose numbers are times of the day.
std::vector<Tick> timeTicks(const Area& area, const Range& shown);

/// The ticks of the upright axis.
std::vector<Tick> valueTicks(const Area& area, const Range& shown);

/// A time of the day: hours, minutes, and what can be told apart in steps of so many milliseconds.
std::string clockTime(double milliseconds, double step);

/// A value with so many decimals, and a minus sign as wide as a plus.
std::string valueText(double value, int decimals);

/// Dashed lines across the area.
void drawGrid(vellis::Canvas& canvas, const Area& area, const Range& shown);

/// The axes and their ticks.
void drawAxes(vellis::Canvas& canvas, const Area& area, const Range& shown);

} // namespace plot

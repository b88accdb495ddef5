#include "axes.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "colors.hpp"

namespace plot {
namespace {

using vellis::Stroke;

// In pixels, of ticks that are next to each other, so that their numbers have room.
constexpr float leastTimeDistance = 104.0f;
constexpr float leastValueDistance = 40.0f;

constexpr float besideAxis = 6.0f; ///< in pixels: lines of the grid that are closer are left out

constexpr double second = 1000.0;
constexpr double minute = 60.0 * second;
constexpr double hour = 60.0 * minute;

/// Distances of ticks in milliseconds, at which clocks are read.
constexpr double timeSteps[] = {
    1.0,           2.0,           5.0,           10.0,   20.0,         50.0,
    100.0,         200.0,         500.0,         second, 2.0 * second, 5.0 * second,
    10.0 * second, 15.0 * second, 30.0 * second, minute, 2.0 * minute, 5.0 * minute,
    10.0 * minute, 15.0 * minute, 30.0 * minute, hour};

/// The first of them that is long enough.
double timeStep(double least) {
    const auto* const step = std::lower_bound(std::begin(timeSteps), std::end(timeSteps), least);
    return step != std::end(timeSteps) ? *step : hour;
}

/// One, two or five times a power of ten.
double decimalStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least)
            return factor * power;
    }
    return 10.0 * power;
}

/// The least step between ticks along an axis that are so many pixels apart.
double leastStep(const Area& area, const Range& shown, int axis, float distance) {
    return shown.size()[axis] * double{std::min(distance / area.size()[axis], 1.0f)};
}

/// A tick at each multiple of a step, also at one that rounding moves just out of the range.
template <class Text>
std::vector<Tick> ticks(const Area& area, const Range& shown, int axis, double step, Text text) {
    constexpr double rounding = 1e-9;
    const double size = shown.size()[axis];
    const double last = shown.high[axis] / step + rounding;
    std::vector<Tick> result;
    for (double i = std::ceil(shown.low[axis] / step - rounding); i <= last; i += 1.0) {
        const auto at = static_cast<float>((i * step - shown.low[axis]) / size);
        const float place = std::floor(area.low[axis] + at * area.size()[axis]) + 0.5f;
        result.push_back({place, text(i * step)});
    }
    return result;
}

} // namespace

std::vector<Tick> timeTicks(const Area& area, const Range& shown) {
    const double step = timeStep(leastStep(area, shown, 0, leastTimeDistance));
    return ticks(area, shown, 0, step, [=](double time) { return clockTime(time, step); });
}

std::vector<Tick> valueTicks(const Area& area, const Range& shown) {
    const double step = decimalStep(leastStep(area, shown, 1, leastValueDistance));
    const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
    return ticks(area, shown, 1, step, [=](double value) { return valueText(value, decimals); });
}

std::string clockTime(double milliseconds, double step) {
    const auto time = static_cast<long long>(std::llround(milliseconds));
    const auto part = [time](double unit, int count) {
        return static_cast<int>(time / static_cast<long long>(unit) % count);
    };
    char text[32];
    std::snprintf(text, sizeof(text), "%02d:%02d:%02d.%03d", part(hour, 24), part(minute, 60),
                  part(second, 60), part(1.0, 1000));
    const std::size_t length = step >= minute   ? 5
                               : step >= second ? 8
                               : step >= 100.0  ? 10
                               : step >= 10.0   ? 11
                                                : 12;
    return std::string(text).substr(0, length);
}

std::string valueText(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof(text), "%.*f", decimals, std::abs(value));
    return (value < 0.0 ? "\u2212" : "") + std::string(text);
}

void drawGrid(vellis::Canvas& canvas, const Area& area, const Range& shown) {
    const Stroke dashes = Stroke(frame).dashed({{6.0f, 4.0f}});
    const glm::vec2 low = area.low + 0.5f; // between pixels, where dashes are sharp
    for (const Tick& tick : timeTicks(area, shown)) {
        if (tick.place > low.x + besideAxis)
            canvas.drawLineStrip(dashes, {{tick.place, low.y}, {tick.place, area.high.y}});
    }
    for (const Tick& tick : valueTicks(area, shown)) {
        if (tick.place > low.y + besideAxis)
            canvas.drawLineStrip(dashes, {{low.x, tick.place}, {area.high.x, tick.place}});
    }
}

void drawAxes(vellis::Canvas& canvas, const Area& area, const Range& shown) {
    const glm::vec2 low = area.low;
    const glm::vec2 high = area.high;
    canvas.drawLineStrip(ink, {{low.x, high.y + 8.0f}, low, {high.x + 8.0f, low.y}});
    for (const Tick& tick : timeTicks(area, shown))
        canvas.drawLineStrip(ink, {{tick.place, low.y}, {tick.place, low.y - tickLength}});
    for (const Tick& tick : valueTicks(area, shown))
        canvas.drawLineStrip(ink, {{low.x, tick.place}, {low.x - tickLength, tick.place}});
}

} // namespace plot

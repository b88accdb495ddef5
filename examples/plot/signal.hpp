#pragma once

#include <cstddef>
#include <vector>

#include <glm/vec2.hpp>

namespace plot {

/// A rectangle of times and values.
struct Range {
    glm::dvec2 low;
    glm::dvec2 high;

    glm::dvec2 size() const { return high - low; }
    bool contains(const glm::dvec2& point) const {
        return point.x >= low.x && point.y >= low.y && point.x <= high.x && point.y <= high.y;
    }
};

/// What was measured: x is the time in milliseconds since 1970, a number of thirteen digits, of
/// which a `float` keeps seven.
struct Signal {
    std::vector<glm::dvec2> samples;
    std::size_t highest; ///< the sample of the greatest value

    /// All of it, with some room above and below.
    Range range() const;

    /// The lowest and the highest of each so many samples: where those are narrower than a pixel, a
    /// line through these looks like one through all.
    std::vector<glm::dvec2> thinned(std::size_t step) const;
};

/// A million samples, one for each millisecond; the same ones on any system.
Signal makeSignal();

} // namespace plot

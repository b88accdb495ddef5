#pragma once

#include <glm/vec2.hpp>

namespace plot {

/// A rectangle of the framebuffer in pixels, from its lower left corner.
struct Area {
    glm::vec2 low;
    glm::vec2 high;

    glm::vec2 size() const { return high - low; }
};

/// The size of the window and of the picture, in pixels.
inline constexpr glm::uvec2 usualSize(640, 440);

/// Where the part that is shown is drawn, in a framebuffer of that size.
Area detailArea(const glm::uvec2& size);

/// Where all of the signal is drawn.
Area overviewArea(const glm::uvec2& size);

} // namespace plot

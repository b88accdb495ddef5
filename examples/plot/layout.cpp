#include "layout.hpp"

#include <glm/common.hpp>

namespace plot {
namespace {

// In pixels: what is beside both areas, and where they begin and end.
constexpr float left = 64.0f;
constexpr float right = 16.0f;
constexpr float overviewFromTop = 46.0f;
constexpr float overviewHeight = 56.0f;
constexpr float detailFromTop = 136.0f;
constexpr float detailFromBottom = 56.0f;

/// An area's corner in the middle of a pixel, where a line of one pixel is sharp.
Area snapped(const glm::vec2& low, const glm::vec2& high) {
    const glm::vec2 corner = glm::floor(low) + 0.5f;
    return {corner, glm::max(glm::floor(high) + 0.5f, corner + 1.0f)};
}

} // namespace

Area detailArea(const glm::uvec2& size) {
    return snapped({left, detailFromBottom}, glm::vec2(size) - glm::vec2(right, detailFromTop));
}

Area overviewArea(const glm::uvec2& size) {
    const glm::vec2 top(size);
    return snapped({left, top.y - overviewFromTop - overviewHeight},
                   top - glm::vec2(right, overviewFromTop));
}

} // namespace plot

#include <gallery/frame/color.hpp>

#include <algorithm>

namespace gallery {

glm::vec3 blend(const std::vector<Color>& colors, float at) {
    const float scaled = std::clamp(at, 0.0f, 1.0f) * static_cast<float>(colors.size() - 1);
    const auto index = std::min(static_cast<std::size_t>(scaled), colors.size() - 2);
    const float rest = scaled - static_cast<float>(index);
    return toVector(colors[index]) * (1.0f - rest) + toVector(colors[index + 1]) * rest;
}

} // namespace gallery

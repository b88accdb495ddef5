#include <gallery/colour.hpp>

#include <algorithm>

namespace gallery {

glm::vec3 blend(const std::vector<Colour>& colours, float at) {
    const float scaled = std::clamp(at, 0.0f, 1.0f) * static_cast<float>(colours.size() - 1);
    const auto index = std::min(static_cast<std::size_t>(scaled), colours.size() - 2);
    const float rest = scaled - static_cast<float>(index);
    return toVector(colours[index]) * (1.0f - rest) + toVector(colours[index + 1]) * rest;
}

} // namespace gallery

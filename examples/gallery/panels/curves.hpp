#pragma once

#include <cmath>
#include <vector>

#include <glm/vec2.hpp>

/// Points along curves.
namespace gallery {

inline constexpr float pi = 3.14159265f;

/// The point at an angle on a circle around the origin.
inline glm::vec2 onCircle(float angle, float radius = 1.0f) {
    return {radius * std::cos(angle), radius * std::sin(angle)};
}

/// \p count points of the curve \p at, from at(0) to at(1).
template <class At>
auto alongCurve(unsigned int count, At at) {
    std::vector<decltype(at(0.0f))> points;
    for (unsigned int i = 0; i < count; ++i)
        points.push_back(at(static_cast<float>(i) / static_cast<float>(count - 1)));
    return points;
}

/// \p count points of the closed curve \p at, from at(0) to the last one before at(1).
template <class At>
auto aroundCurve(unsigned int count, At at) {
    std::vector<decltype(at(0.0f))> points;
    for (unsigned int i = 0; i < count; ++i)
        points.push_back(at(static_cast<float>(i) / static_cast<float>(count)));
    return points;
}

/// The number of points as GL takes it.
template <class T>
unsigned int sizeOf(const std::vector<T>& points) {
    return static_cast<unsigned int>(points.size());
}

} // namespace gallery

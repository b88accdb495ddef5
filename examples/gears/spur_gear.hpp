#pragma once

#include <vector>

#include <glm/vec2.hpp>

/// The geometry of gears in their plane. Lengths are in modules: a gear's pitch diameter is the
/// number of its teeth, and gears of one module mesh.
namespace gears {

inline constexpr float pi = 3.14159265f;

/// The angle between the line along which teeth push each other and the tangent of the pitch
/// circles. With 25 degrees 12 teeth and more need no room cut into their roots.
inline constexpr float pressureAngle = 25.0f / 180.0f * pi;

/// How far teeth reach beyond the pitch circle.
inline constexpr float addendum = 1.0f;

/// How deep the gaps between them are, below the pitch circle.
inline constexpr float dedendum = 1.25f;

/// By how much a gap is wider than the tooth in it, along the pitch circle.
inline constexpr float backlash = 0.06f;

inline float pitchRadius(unsigned int teeth) {
    return 0.5f * static_cast<float>(teeth);
}

inline float tipRadius(unsigned int teeth) {
    return pitchRadius(teeth) + addendum;
}

inline float rootRadius(unsigned int teeth) {
    return pitchRadius(teeth) - dedendum;
}

/// The angle from one tooth to the next.
inline float pitchAngle(unsigned int teeth) {
    return 2.0f * pi / static_cast<float>(teeth);
}

/// The point at an angle on a circle around the origin.
glm::vec2 onCircle(float angle, float radius);

/// The outline of a gear, counterclockwise around the origin, as stretches without corners: each
/// begins where the one before it ends. All gears have the same number of points for each tooth, of
/// which the first points along the x axis. The flanks are involutes of a circle, so that teeth
/// that mesh touch at all times and turn each other evenly.
std::vector<std::vector<glm::vec2>> outline(unsigned int teeth);

} // namespace gears

#pragma once

#include <vector>

#include <glm/vec3.hpp>

namespace gears {

/// The surface of a body: vertices, and the corners of triangles among them, which go
/// counterclockwise as seen from outside. Vertices at sharp edges are there once for each side.
struct Solid {
    std::vector<glm::vec3> positions;
    std::vector<glm::vec3> normals;
    std::vector<unsigned short> indices;
};

/// Half the thickness of a gear, in modules.
inline constexpr float halfThickness = 1.6f;

/// The radius of the hole in the middle of a gear, in modules.
inline float boreRadius(unsigned int teeth) {
    return 0.1f * static_cast<float>(teeth);
}

/// A gear with a rim, a thinner web, a hub and a bore. Its middle is the origin, its axis that of
/// z, and one of its teeth points along that of x; lengths are in modules.
Solid makeSolid(unsigned int teeth);

} // namespace gears

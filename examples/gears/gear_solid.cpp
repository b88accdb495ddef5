#include "gear_solid.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include <glm/geometric.hpp>
#include <glm/vec2.hpp>

#include "spur_gear.hpp"

namespace gears {
namespace {

using Points = std::vector<glm::vec2>;

/// A circle of the surface around the axis.
struct Ring {
    float radius;
    float z;
};

/// The rings from the rim on the front inwards, through the bore, and on the back out to the rim.
std::vector<Ring> ringsBetweenRims(unsigned int teeth) {
    constexpr float webThickness = 0.4f * halfThickness;
    constexpr float slope = 0.25f;
    const float rim = rootRadius(teeth) - 0.9f;
    const float hub = boreRadius(teeth) + 1.1f;
    std::vector<Ring> rings = {
        {rim, halfThickness}, {rim - slope, webThickness},        {hub + slope, webThickness},
        {hub, halfThickness}, {boreRadius(teeth), halfThickness},
    };
    for (std::size_t i = rings.size(); i-- > 0;)
        rings.push_back({rings[i].radius, -rings[i].z});
    return rings;
}

/// The corners of the two triangles between two pairs of points, by their place in
/// {right, left, next right, next left}: they share the shorter diagonal.
std::array<unsigned int, 6> cornersBetween(const glm::vec3& right, const glm::vec3& left,
                                           const glm::vec3& nextRight, const glm::vec3& nextLeft) {
    if (glm::distance(right, nextLeft) < glm::distance(nextRight, left))
        return {0, 2, 3, 0, 3, 1};
    return {0, 2, 1, 2, 3, 1};
}

/// Adds the surface between two lines, the first of which is on the right of whoever goes along
/// them and looks from outside.
/// \param normals  One for each pair of points.
void addStrip(Solid& solid, const std::vector<glm::vec3>& right, const std::vector<glm::vec3>& left,
              const std::vector<glm::vec3>& normals) {
    for (std::size_t i = 0; i < right.size(); ++i) {
        if (i + 1 < right.size()) {
            const std::size_t first = solid.positions.size();
            for (const unsigned int corner :
                 cornersBetween(right[i], left[i], right[i + 1], left[i + 1]))
                solid.indices.push_back(static_cast<unsigned short>(first + corner));
        }
        solid.positions.insert(solid.positions.end(), {right[i], left[i]});
        solid.normals.insert(solid.normals.end(), {normals[i], normals[i]});
    }
}

std::vector<glm::vec3> atHeight(const Points& points, float z) {
    std::vector<glm::vec3> result;
    for (const glm::vec2& point : points)
        result.emplace_back(point, z);
    return result;
}

std::vector<glm::vec3> onRing(const Points& directions, const Ring& ring) {
    std::vector<glm::vec3> result;
    for (const glm::vec2& direction : directions)
        result.emplace_back(ring.radius * direction, ring.z);
    return result;
}

/// The outward normals of a stretch of an outline that goes counterclockwise.
std::vector<glm::vec3> normalsAlong(const Points& stretch) {
    std::vector<glm::vec3> normals;
    for (std::size_t i = 0; i < stretch.size(); ++i) {
        const glm::vec2 before = stretch[i == 0 ? 0 : i - 1];
        const glm::vec2 after = stretch[std::min(i + 1, stretch.size() - 1)];
        normals.push_back(glm::normalize(glm::vec3(after.y - before.y, before.x - after.x, 0.0f)));
    }
    return normals;
}

/// Adds the surface between two rings.
void addBand(Solid& solid, const Points& directions, const Ring& from, const Ring& to) {
    const glm::vec2 slope = glm::normalize(glm::vec2(to.z - from.z, from.radius - to.radius));
    addStrip(solid, onRing(directions, from), onRing(directions, to),
             onRing(directions, {slope.x, slope.y}));
}

/// The points of an outline, each once but for the first, which is also the last.
Points closedLine(const std::vector<Points>& stretches) {
    Points points;
    for (const Points& stretch : stretches)
        points.insert(points.end(), stretch.begin(), stretch.end() - 1);
    points.push_back(points.front());
    return points;
}

/// The angle from one point to another as seen from the origin, counterclockwise.
float angleBetween(const glm::vec2& from, const glm::vec2& to) {
    return std::atan2(from.x * to.y - from.y * to.x, glm::dot(from, to));
}

/// As many directions as the closed line of an outline has points: along each stretch evenly from
/// that of its first point to that of its last. So the points of a flank, some of which are in the
/// same direction, join to a circle in triangles that do not overlap.
Points directionsFor(const std::vector<Points>& stretches) {
    Points directions;
    for (const Points& stretch : stretches) {
        const float first = std::atan2(stretch.front().y, stretch.front().x);
        const float turn = angleBetween(stretch.front(), stretch.back());
        for (std::size_t i = 0; i + 1 < stretch.size(); ++i) {
            const float at = static_cast<float>(i) / static_cast<float>(stretch.size() - 1);
            directions.push_back(onCircle(first + at * turn, 1.0f));
        }
    }
    directions.push_back(directions.front());
    return directions;
}

} // namespace

Solid makeSolid(unsigned int teeth) {
    Solid solid;
    const std::vector<Points> stretches = outline(teeth);
    for (const Points& stretch : stretches)
        addStrip(solid, atHeight(stretch, -halfThickness), atHeight(stretch, halfThickness),
                 normalsAlong(stretch));

    const Points line = closedLine(stretches);
    const Points directions = directionsFor(stretches);
    const std::vector<Ring> rings = ringsBetweenRims(teeth);
    const std::vector<glm::vec3> toFront(line.size(), glm::vec3(0.0f, 0.0f, 1.0f));
    const std::vector<glm::vec3> toBack(line.size(), glm::vec3(0.0f, 0.0f, -1.0f));
    addStrip(solid, atHeight(line, halfThickness), onRing(directions, rings.front()), toFront);
    for (std::size_t i = 1; i < rings.size(); ++i)
        addBand(solid, directions, rings[i - 1], rings[i]);
    addStrip(solid, onRing(directions, rings.back()), atHeight(line, -halfThickness), toBack);
    return solid;
}

} // namespace gears

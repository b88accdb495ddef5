#include <gallery/panels/geometry.hpp>

#include <algorithm>
#include <array>
#include <cmath>

#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>

#include <gallery/panels/curves.hpp>

namespace gallery {
namespace {

/// Turns around the x axis, then around the z axis.
glm::mat3 rotation(float aroundX, float aroundZ) {
    const glm::mat3 x(1.0f, 0.0f, 0.0f, 0.0f, std::cos(aroundX), std::sin(aroundX), 0.0f,
                      -std::sin(aroundX), std::cos(aroundX));
    const glm::mat3 z(std::cos(aroundZ), std::sin(aroundZ), 0.0f, -std::sin(aroundZ),
                      std::cos(aroundZ), 0.0f, 0.0f, 0.0f, 1.0f);
    return z * x;
}

/// A point of a surface that is given by two parameters from 0 to 1.
struct SurfacePoint {
    glm::vec3 position;
    glm::vec3 normal;
    glm::vec3 color;
};

/// The surface that \p at gives, on a grid of \p columns × \p rows cells.
template <class At>
Surface makeGrid(unsigned int columns, unsigned int rows, At at) {
    Surface surface;
    for (unsigned int row = 0; row <= rows; ++row) {
        for (unsigned int column = 0; column <= columns; ++column) {
            const glm::vec2 parameters(static_cast<float>(column) / static_cast<float>(columns),
                                       static_cast<float>(row) / static_cast<float>(rows));
            const SurfacePoint point = at(parameters.x, parameters.y);
            surface.positions.push_back(point.position);
            surface.normals.push_back(point.normal);
            surface.colors.push_back(point.color);
            surface.coordinates.push_back(parameters);
        }
    }
    for (unsigned int cell = 0; cell < columns * rows; ++cell) {
        const unsigned int corner = cell / columns * (columns + 1) + cell % columns;
        for (const unsigned int index : {corner, corner + 1, corner + columns + 1,
                                         corner + columns + 1, corner + 1, corner + columns + 2})
            surface.indices.push_back(static_cast<unsigned short>(index));
    }
    return surface;
}

/// A point of the trefoil knot; \p t runs from 0 to 2 pi.
glm::vec3 trefoil(float t) {
    return {std::sin(t) + 2.0f * std::sin(2.0f * t), std::cos(t) - 2.0f * std::cos(2.0f * t),
            -std::sin(3.0f * t)};
}

using Triangle = std::array<glm::vec3, 3>;

/// The triangles of an icosahedron with corners at distance 1.
std::vector<Triangle> icosahedron() {
    const float a = 0.525731f;
    const float b = 0.850651f;
    const glm::vec3 corners[] = {{-a, b, 0}, {a, b, 0}, {-a, -b, 0}, {a, -b, 0},
                                 {0, -a, b}, {0, a, b}, {0, -a, -b}, {0, a, -b},
                                 {b, 0, -a}, {b, 0, a}, {-b, 0, -a}, {-b, 0, a}};
    constexpr int faces[][3] = {{0, 11, 5}, {0, 5, 1},  {0, 1, 7},   {0, 7, 10}, {0, 10, 11},
                                {1, 5, 9},  {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8},
                                {3, 9, 4},  {3, 4, 2},  {3, 2, 6},   {3, 6, 8},  {3, 8, 9},
                                {4, 9, 5},  {2, 4, 11}, {6, 2, 10},  {8, 6, 7},  {9, 8, 1}};
    std::vector<Triangle> triangles;
    for (const auto& face : faces)
        triangles.push_back({corners[face[0]], corners[face[1]], corners[face[2]]});
    return triangles;
}

/// Each triangle of a ball parted into four.
std::vector<Triangle> parted(const std::vector<Triangle>& triangles) {
    std::vector<Triangle> parts;
    for (const auto& [a, b, c] : triangles) {
        const glm::vec3 ab = glm::normalize(a + b);
        const glm::vec3 bc = glm::normalize(b + c);
        const glm::vec3 ca = glm::normalize(c + a);
        parts.insert(parts.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
    }
    return parts;
}

} // namespace

Surface makeKnot() {
    const std::vector<Color> colors = {palette::teal,  palette::blue, palette::plum,
                                       palette::coral, palette::sand, palette::teal};
    return makeGrid(180, 28, [&](float along, float around) {
        const float t = 2.0f * pi * along;
        const glm::vec3 centre = trefoil(t);
        const glm::vec3 tangent = glm::normalize(trefoil(t + 0.01f) - trefoil(t - 0.01f));
        const glm::vec3 side = glm::normalize(glm::cross(tangent, glm::vec3(0.0f, 0.0f, 1.0f)));
        const glm::vec3 up = glm::cross(side, tangent);
        const float angle = 2.0f * pi * around;
        const glm::vec3 normal = std::cos(angle) * side + std::sin(angle) * up;
        const glm::vec3 position =
            (centre + 0.62f * normal) * 0.235f + glm::vec3(0.0f, 0.13f, 0.0f);
        return SurfacePoint{position, normal, blend(colors, along)};
    });
}

Surface makeBall() {
    const std::vector<Color> colors = {palette::navy, palette::blue, palette::teal};
    const glm::mat3 turn = rotation(0.45f, 0.2f);
    Surface surface;
    for (const Triangle& triangle : parted(parted(icosahedron()))) {
        const glm::vec3 normal = turn * glm::normalize(triangle[0] + triangle[1] + triangle[2]);
        for (const glm::vec3& corner : triangle) {
            const glm::vec3 position = turn * corner * 0.8f;
            surface.indices.push_back(static_cast<unsigned short>(sizeOf(surface.positions)));
            surface.positions.push_back(position);
            surface.normals.push_back(normal);
            surface.colors.push_back(blend(colors, 0.5f + 0.6f * normal.y));
        }
    }
    return surface;
}

Surface makeBowl() {
    const glm::mat3 turn = rotation(0.62f, 0.16f);
    const float rim = 0.62f * pi;
    return makeGrid(72, 36, [&](float around, float upwards) {
        const float polar = rim * upwards;
        const float angle = -2.0f * pi * around;
        const glm::vec3 outwards(std::sin(polar) * std::cos(angle), -std::cos(polar),
                                 std::sin(polar) * std::sin(angle));
        const glm::vec3 normal = turn * outwards;
        const glm::vec3 centre = turn * glm::vec3(0.0f, 0.2f, 0.0f) - glm::vec3(0.0f, 0.1f, 0.0f);
        const glm::vec3 position = centre + 0.84f * normal;
        return SurfacePoint{position, normal, toVector(palette::teal)};
    });
}

Surface makeGlobe() {
    const glm::mat3 turn = rotation(0.3f, -0.35f);
    return makeGrid(64, 32, [&](float around, float upwards) {
        const float longitude = 2.0f * pi * around;
        const float polar = pi * upwards;
        const glm::vec3 normal =
            turn * glm::vec3(std::sin(polar) * std::sin(longitude), -std::cos(polar),
                             std::sin(polar) * std::cos(longitude));
        return SurfacePoint{0.84f * normal, normal, glm::vec3(1.0f)};
    });
}

} // namespace gallery

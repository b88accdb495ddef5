#pragma once

#include <cstddef>
#include <new>

#include <vellis/canvas/image.hpp>

#include "canvas/drawing.hpp"

/// \file
/// The records of images. This runs for each glyph of a text: in plain numbers, which compilers
/// leave in registers.

namespace vellis::canvas {

/// 0 where it is finite.
inline float infinityIn(const TexturePart& part) {
    return part.from.x * 0.f + part.from.y * 0.f + part.to.x * 0.f + part.to.y * 0.f;
}

/// The corner opposite the first is not finite where one of its sides is not.
inline bool isFiniteQuad(const PixelQuad& quad) {
    const float x = quad.corner.x + quad.right.x + quad.up.x;
    const float y = quad.corner.y + quad.right.y + quad.up.y;
    return x * 0.f + y * 0.f + infinityIn(quad.part) == 0.f;
}

/// Writes a corner of an image, number by number: copies of several at once would wait for those.
template <unsigned int D>
void writeCorner(unsigned char* to, const glm::vec3& point, Color color, float x, float y, float s,
                 float t) {
    auto* const corner = new (to) ImageCorner<D>;
    corner->position[0] = point.x;
    corner->position[1] = point.y;
    if constexpr (D == 3)
        corner->position[2] = point.z;
    corner->offset[0] = x;
    corner->offset[1] = y;
    corner->part[0] = s;
    corner->part[1] = t;
    corner->color = color;
}

/// Writes a quad.
/// \param up  -1 where pixels count downwards.
template <unsigned int D>
void writeQuad(unsigned char* to, const glm::vec3& point, Color color, const PixelQuad& quad,
               float up) {
    constexpr std::size_t step = sizeof(ImageCorner<D>);
    const float x = quad.corner.x;
    const float y = quad.corner.y * up;
    const float rightX = quad.right.x;
    const float rightY = quad.right.y * up;
    const float upX = quad.up.x;
    const float upY = quad.up.y * up;
    const glm::vec2& from = quad.part.from;
    const glm::vec2& end = quad.part.to;
    writeCorner<D>(to, point, color, x, y, from.x, from.y);
    writeCorner<D>(to + step, point, color, x + rightX, y + rightY, end.x, from.y);
    writeCorner<D>(to + 2 * step, point, color, x + upX, y + upY, from.x, end.y);
    writeCorner<D>(to + 3 * step, point, color, x + rightX + upX, y + rightY + upY, end.x, end.y);
}

} // namespace vellis::canvas

#include "drawing/dash_distances.hpp"

#include <cmath>

namespace vellis {
namespace {

float distance(const float* from, const float* to, unsigned int dimensions) {
    const float x = to[0] - from[0];
    const float y = to[1] - from[1];
    float squares = y * y + x * x;
    if (dimensions == 3) {
        const float z = to[2] - from[2];
        squares += z * z;
    }
    return std::sqrt(squares);
}

} // namespace

void addDistances(const float* points, unsigned int dimensions, unsigned int count, float* result) {
    float length = 0.f;
    for (unsigned int i = 0; i < count; ++i) {
        if (i > 0)
            length += distance(points - dimensions, points, dimensions);
        for (unsigned int j = 0; j < dimensions; ++j)
            *result++ = *points++;
        *result++ = length;
    }
}

} // namespace vellis

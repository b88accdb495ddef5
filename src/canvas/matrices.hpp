#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

/// The few operations on matrices that a canvas needs, in loops: glm's are written out, which takes
/// 6 kB here.
namespace vellis::canvas {

/// \p a behind \p b.
glm::mat4 product(const glm::mat4& a, const glm::mat4& b);

/// \p matrix behind a shift, whose large numbers are taken in double precision.
glm::mat4 behindShift(const glm::mat4& matrix, const glm::dvec3& shift);

/// Where a point goes.
glm::dvec4 placeOf(const glm::mat4& matrix, const glm::dvec3& point);

/// Whether all numbers are finite.
bool isFinite(const glm::mat4& matrix);

} // namespace vellis::canvas

#pragma once

#include <vector>

#include <glm/ext/matrix_clip_space.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec4.hpp>

/// \file
/// What most tests draw with a canvas on a driver: a star that crosses itself, in a square of
/// pixels.

namespace vellis::test {

inline constexpr unsigned int side = 128;
inline const glm::mat4 pixelMatrix = glm::ortho<float>(0.f, side, 0.f, side);
inline const glm::vec4 red(1.f, 0.f, 0.f, 1.f);
inline const glm::vec4 halfBlue(0.f, 0.f, 1.f, 0.5f);
inline const std::vector<glm::vec2> star = {{64, 120}, {30, 10}, {120, 80}, {8, 80}, {98, 10}};

} // namespace vellis::test

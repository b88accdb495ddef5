#pragma once

#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec4.hpp>

/// \file
/// What is drawn: points in pixels of a picture of pictureSize x pictureSize, the same in each run.

namespace vellis::bench {

constexpr unsigned int pictureSize = 512;

extern const glm::vec4 sceneColor;

/// From pixels to clip coordinates.
glm::mat4 pixelsToClip();

/// The ends of lines of 5 to 20 pixels, all over the picture.
std::vector<glm::vec2> shortLines(unsigned int numLines);

/// A walk in steps of 5 to 10 pixels, which turns at the edges of the picture.
std::vector<glm::vec2> walk(unsigned int numPoints);

/// Points all over the picture, none so near its edges that it would be cut there: GL leaves out
/// its own points as a whole where their centres are outside.
std::vector<glm::vec2> scattered(unsigned int numPoints);

} // namespace vellis::bench

#pragma once

#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <vellis/canvas/canvas.hpp>

#include <offscreen/image.hpp>

#include "support/stroke_reference.hpp"

/// \file
/// The scenes of strokes, drawn by a canvas: in white on black.

namespace vellis::test {

/// From the pixels of a scene to clip coordinates.
glm::mat4 strokeSceneMatrix();

/// A stroke as a canvas takes it, without its points.
/// \param scale  What its lengths are multiplied by.
vellis::Stroke canvasStroke(const Stroke& stroke, double scale = 1);

/// The points of a stroke in another type.
std::vector<glm::vec2> floatPoints(const Stroke& stroke);

/// Draws a stroke through points in place of its own, as a strip or a loop.
void drawThrough(vellis::Canvas& canvas, const Stroke& stroke, const vellis::Points& points,
                 double scale = 1);

/// What a canvas makes of an opacity, which it keeps in 8 bits.
double canvasOpacity(double opacity);

/// The coverage of strokes that do not touch each other.
Coverage sceneCoverage(const std::vector<Stroke>& strokes);

/// Makes the framebuffer that is bound black.
void clearScene();

/// The picture in the framebuffer that is bound.
offscreen::Image readScene();

} // namespace vellis::test

#pragma once

#include <gallery/panel.hpp>

/// The drawings of the table of panels.
namespace gallery {

void drawTriangle(const Canvas& canvas);
void drawKnot(const Canvas& canvas);
void drawFilledBall(const Canvas& canvas);
void drawBallOfLines(const Canvas& canvas);
void drawBallOfPoints(const Canvas& canvas);
void drawLineWidths(const Canvas& canvas);
void drawLineSmoothing(const Canvas& canvas);
void drawPointSizes(const Canvas& canvas);
void drawPointSprites(const Canvas& canvas);
void drawBowl(const Canvas& canvas);
void drawBowlWithoutBackFaces(const Canvas& canvas);
void drawBowlWithoutFrontFaces(const Canvas& canvas);

} // namespace gallery

#include "support/stroke_drawing.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <vellis/gl.hpp>

#include "support/stroke_scenes.hpp"

namespace vellis::test {

glm::mat4 strokeSceneMatrix() {
    constexpr float half = strokeSceneSize / 2.F;
    glm::mat4 matrix(1.F);
    matrix[0][0] = matrix[1][1] = 1 / half;
    matrix[3][0] = matrix[3][1] = -1;
    return matrix;
}

vellis::Stroke canvasStroke(const Stroke& stroke, double scale) {
    using Join = vellis::Stroke::Join;
    using Cap = vellis::Stroke::Cap;
    constexpr Join joins[] = {Join::Miter, Join::Round, Join::Bevel}; // in the order of StrokeJoin
    constexpr Cap caps[] = {Cap::Butt, Cap::Square, Cap::Round};      // in the order of StrokeCap
    const auto length = [&](double pixels) { return static_cast<float>(scale * pixels); };
    const glm::vec4 color(1, 1, 1, stroke.opacity);
    vellis::Stroke result(color, length(stroke.width));
    result.join = joins[static_cast<int>(stroke.join)];
    result.cap = caps[static_cast<int>(stroke.cap)];
    result.miterLimit = static_cast<float>(stroke.miterLimit);
    result.dashOffset = length(stroke.dashOffset);
    for (std::size_t i = 0; i + 1 < stroke.dashes.size(); i += 2)
        result.dashes[result.numDashes++] = {length(stroke.dashes[i]),
                                             length(stroke.dashes[i + 1])};
    return result;
}

std::vector<glm::vec2> floatPoints(const Stroke& stroke) {
    return {stroke.points.begin(), stroke.points.end()};
}

void drawThrough(vellis::Canvas& canvas, const Stroke& stroke, const vellis::Points& points,
                 double scale) {
    if (stroke.closed)
        canvas.drawLineLoop(canvasStroke(stroke, scale), points);
    else
        canvas.drawLineStrip(canvasStroke(stroke, scale), points);
}

double canvasOpacity(double opacity) {
    return std::round(255 * opacity) / 255;
}

Coverage sceneCoverage(const std::vector<Stroke>& strokes) {
    constexpr unsigned int size = strokeSceneSize;
    Coverage sum{size, size, std::vector<float>(std::size_t{size} * size)};
    for (const Stroke& stroke : strokes) {
        const Coverage coverage = strokeCoverage(stroke, size, size);
        std::transform(coverage.values.begin(), coverage.values.end(), sum.values.begin(),
                       sum.values.begin(), std::plus<>());
    }
    return sum;
}

void clearScene() {
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

offscreen::Image readScene() {
    return offscreen::readPixels(strokeSceneSize, strokeSceneSize);
}

} // namespace vellis::test

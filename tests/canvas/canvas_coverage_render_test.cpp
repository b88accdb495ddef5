/// Strokes of a canvas against their geometry, on a driver: every scene, in each way that points
/// get there. The geometry is sampled 1024 times a pixel.

#include <vellis/canvas/canvas.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/gl.hpp>

#include "canvas/vertex_arrays.hpp"
#include "support/render_test.hpp"
#include "support/stroke_drawing.hpp"
#include "support/stroke_limits.hpp"
#include "support/stroke_scenes.hpp"

namespace vellis::test {
namespace {

/// A way of drawing the strokes of a scene, with begin() and end().
struct Way {
    const char* name;
    void (*draw)(vellis::Canvas& canvas, const std::vector<Stroke>& strokes);
    bool takesDashes = true;
};

void drawPlainly(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    canvas.begin(strokeSceneMatrix());
    for (const Stroke& stroke : strokes)
        drawThrough(canvas, stroke, floatPoints(stroke));
    canvas.end();
}

void drawKept(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    canvas.beginPicture(strokeSceneMatrix());
    for (const Stroke& stroke : strokes)
        drawThrough(canvas, stroke, floatPoints(stroke));
    const auto picture = canvas.endPicture();
    canvas.begin(strokeSceneMatrix());
    canvas.drawPicture(picture);
    canvas.end();
}

/// The points without those that repeat the one before, which would end the line.
std::vector<glm::vec2> withoutRepeated(const Stroke& stroke) {
    std::vector<glm::vec2> points = floatPoints(stroke);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

void drawFromBuffers(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    canvas.begin(strokeSceneMatrix());
    for (const Stroke& stroke : strokes) {
        std::vector<glm::vec2> points = withoutRepeated(stroke);
        const auto count = static_cast<unsigned int>(points.size());
        points.insert(points.begin(), 3, glm::vec2(0)); // which are not drawn
        const auto buffer =
            VertexAttributeBuffer<glm::vec2>::make(points, BufferUsage::Static, BufferAccess::Draw);
        if (stroke.closed)
            canvas.drawLineLoop(canvasStroke(stroke), 3, count, buffer);
        else
            canvas.drawLineStrip(canvasStroke(stroke), 3, count, buffer);
    }
    canvas.end();
}

/// Points at many depths, each of which the matrix brings to its pixel.
void drawInPerspective(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    constexpr float half = strokeSceneSize / 2.F;
    constexpr float distance = 500; // of the eye from the plane
    glm::mat4 matrix(1.F);
    matrix[0][0] = matrix[1][1] = 1 / half;
    matrix[2][2] = -0.5F / distance;
    matrix[2][3] = -1 / distance;
    canvas.begin(matrix);
    for (const Stroke& stroke : strokes) {
        std::vector<glm::vec3> points;
        for (const glm::vec2& point : withoutRepeated(stroke)) {
            const float z = static_cast<float>(points.size() * 7 % 11) * 20 - 100;
            points.emplace_back((point - half) * (1 - z / distance), z);
        }
        drawThrough(canvas, stroke, points);
    }
    canvas.end();
}

void drawTransformed(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    glm::mat4 transform(1.F); // a quarter turn, a scale and a shift
    transform[0] = {0, 4, 0, 0};
    transform[1] = {-4, 0, 0, 0};
    transform[3] = {100, -300, 0, 1};
    canvas.begin(strokeSceneMatrix());
    canvas.setTransform(transform);
    for (const Stroke& stroke : strokes) {
        std::vector<glm::vec2> points;
        for (const glm::dvec2& point : stroke.points)
            points.emplace_back((point.y + 300) / 4, (100 - point.x) / 4);
        drawThrough(canvas, stroke, points);
    }
    canvas.end();
}

/// Under a transform that the canvas leaves to the shader, since it divides.
void drawDivided(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    glm::mat4 transform(1.F);
    transform[3][3] = 4;
    canvas.begin(strokeSceneMatrix());
    canvas.setTransform(transform);
    for (const Stroke& stroke : strokes) {
        std::vector<glm::vec2> points = floatPoints(stroke);
        for (glm::vec2& point : points)
            point *= 4;
        drawThrough(canvas, stroke, points);
    }
    canvas.end();
}

void drawFarAway(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    const glm::dvec2 origin(1e7, -3e7);
    canvas.setOrigin(glm::dvec3(origin, 0));
    canvas.begin(strokeSceneMatrix());
    for (const Stroke& stroke : strokes) {
        std::vector<glm::dvec2> points = stroke.points;
        for (glm::dvec2& point : points)
            point += origin;
        drawThrough(canvas, stroke, points);
    }
    canvas.end();
    canvas.setOrigin(glm::dvec3(0));
}

void drawInLargePixels(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    canvas.setPixelRatio(2);
    canvas.begin(strokeSceneMatrix());
    for (const Stroke& stroke : strokes)
        drawThrough(canvas, stroke, floatPoints(stroke), 0.5);
    canvas.end();
    canvas.setPixelRatio(1);
}

/// In a viewport of which the framebuffer shows a part.
void drawInALargeViewport(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    glViewport(-100, -60, 2 * strokeSceneSize, 2 * strokeSceneSize);
    glm::mat4 matrix(1.F);
    matrix[0][0] = matrix[1][1] = 1.F / strokeSceneSize;
    matrix[3][0] = 100.F / strokeSceneSize - 1;
    matrix[3][1] = 60.F / strokeSceneSize - 1;
    canvas.begin(matrix);
    for (const Stroke& stroke : strokes)
        drawThrough(canvas, stroke, floatPoints(stroke));
    canvas.end();
    glViewport(0, 0, strokeSceneSize, strokeSceneSize);
}

/// A batch in each of some viewports side by side, at the edges of which strokes are cut off.
template <class Draw>
void drawEachPart(vellis::Canvas& canvas, Draw drawing) {
    constexpr int edges[] = {0, 50, 121, 185, strokeSceneSize};
    constexpr float size = strokeSceneSize;
    for (int i = 0; i != 16; ++i) {
        const int(&x)[2] = {edges[i % 4], edges[i % 4 + 1]};
        const int(&y)[2] = {edges[i / 4], edges[i / 4 + 1]};
        glViewport(x[0], y[0], x[1] - x[0], y[1] - y[0]);
        const glm::vec2 part(x[1] - x[0], y[1] - y[0]);
        glm::mat4 toPart(1.F);
        toPart[0][0] = size / part.x;
        toPart[1][1] = size / part.y;
        toPart[3][0] = (size - static_cast<float>(x[0] + x[1])) / part.x;
        toPart[3][1] = (size - static_cast<float>(y[0] + y[1])) / part.y;
        canvas.begin(toPart * strokeSceneMatrix());
        drawing();
        canvas.end();
    }
    glViewport(0, 0, strokeSceneSize, strokeSceneSize);
}

void drawInParts(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    drawEachPart(canvas, [&] {
        for (const Stroke& stroke : strokes)
            drawThrough(canvas, stroke, floatPoints(stroke));
    });
}

/// How many records go to GL at once.
constexpr std::size_t uploadSize = canvas::mostCopied(canvas::Kind::Strip);

/// How many records of a stroke stand before the end of the first upload: another number for each.
std::size_t numBefore(const Stroke& stroke, std::size_t index) {
    return 1 + (5 * index + stroke.points.size() / 2) % (stroke.points.size() + 1);
}

/// So many points of a line to the left of the picture.
std::vector<glm::vec2> pointsOutside(std::size_t count) {
    std::vector<glm::vec2> points;
    for (std::size_t i = 0; i != count; ++i)
        points.emplace_back(i % 2 == 0 ? -200 : -150, i);
    return points;
}

/// Behind a call that leaves so much room that the stroke goes on in the next upload.
void drawAcrossUploads(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    std::size_t index = 0;
    for (const Stroke& stroke : strokes) {
        canvas.begin(strokeSceneMatrix());
        const std::size_t numCaps = 2;
        canvas.drawLineStrip(glm::vec4(1),
                             pointsOutside(uploadSize - numCaps - numBefore(stroke, index++)));
        drawThrough(canvas, stroke, floatPoints(stroke));
        canvas.end();
    }
}

/// Behind a line of the same call, which a point that is not finite ends.
void drawAcrossUploadsInACall(vellis::Canvas& canvas, const std::vector<Stroke>& strokes) {
    std::size_t index = 0;
    for (const Stroke& stroke : strokes) {
        if (stroke.closed) // which would be open then
            return drawAcrossUploads(canvas, strokes);
        canvas.begin(strokeSceneMatrix());
        std::vector<glm::vec2> points = pointsOutside(uploadSize - 2 - numBefore(stroke, index++));
        points.emplace_back(std::numeric_limits<float>::quiet_NaN(), 0);
        points.insert(points.end(), stroke.points.begin(), stroke.points.end());
        drawThrough(canvas, stroke, points);
        canvas.end();
    }
}

constexpr Way ways[] = {
    {"Plain", drawPlainly},
    {"Kept", drawKept},
    {"FromBuffers", drawFromBuffers, false},
    {"InPerspective", drawInPerspective},
    {"Transformed", drawTransformed},
    {"Divided", drawDivided},
    {"FarAway", drawFarAway},
    {"InLargePixels", drawInLargePixels},
    {"InALargeViewport", drawInALargeViewport},
    {"InParts", drawInParts},
    {"AcrossUploads", drawAcrossUploads},
    {"AcrossUploadsInACall", drawAcrossUploadsInACall},
};

class CanvasCoverageRender : public RenderTest, public testing::WithParamInterface<Way> {
protected:
    /// Draws a scene, and compares it.
    static void expectGeometry(vellis::Canvas& canvas, const StrokeScene& scene) {
        clearScene();
        GetParam().draw(canvas, scene.strokes);
        EXPECT_TRUE(shows(scene, readScene(), GetParam().name));
    }
};

TEST_P(CanvasCoverageRender, ScenesAreTheirGeometry) {
    const auto canvas = vellis::Canvas::make();
    for (const StrokeScene& scene : strokeScenes())
        if (!scene.blendsTwice && (GetParam().takesDashes || scene.strokes[0].dashes.empty()))
            expectGeometry(*canvas, scene);
}

TEST_P(CanvasCoverageRender, TranslucentStrokesThatCrossThemselvesArePaintedOnce) {
    SKIP_WITHOUT(Extension::Framebuffers);
    const auto canvas = vellis::Canvas::make();
    for (const StrokeScene& scene : strokeScenes())
        if (scene.blendsTwice)
            expectGeometry(*canvas, scene);
}

INSTANTIATE_TEST_SUITE_P(Ways, CanvasCoverageRender, testing::ValuesIn(ways),
                         [](const auto& way) { return std::string(way.param.name); });

/// How far a stroke is from its geometry.
StrokeErrors errorsOf(vellis::Canvas& canvas, const Stroke& stroke) {
    clearScene();
    drawPlainly(canvas, {stroke});
    return strokeErrors(sceneCoverage({stroke}), canvasOpacity(stroke.opacity), readScene());
}

TEST_F(CanvasCoverageRender, NoPixelOfASegmentIsFarOff) {
    const auto canvas = vellis::Canvas::make();
    for (const StrokeScene& scene : strokeScenes())
        for (const Stroke& stroke : scene.strokes)
            if (stroke.points.size() == 2) {
                EXPECT_TRUE(isWithin(errorsOf(*canvas, stroke), {1.2, 0, 0, 9})) << scene.name;
            }
}

TEST_F(CanvasCoverageRender, LinesOfOnePieceAreTheirGeometry) {
    const auto canvas = vellis::Canvas::make();
    StrokeErrors solid;
    StrokeErrors dashed;
    for (unsigned int seed = 0; seed != 60; ++seed) {
        Stroke stroke = randomStroke(seed);
        stroke.points.resize(2);
        stroke.closed = false;
        clearScene();
        canvas->begin(strokeSceneMatrix());
        canvas->drawLines(canvasStroke(stroke), floatPoints(stroke));
        canvas->end();
        (stroke.dashes.empty() ? solid : dashed) +=
            strokeErrors(sceneCoverage({stroke}), 1, readScene());
    }
    EXPECT_TRUE(isWithin(solid, {0.5, 0, 0, 12}));
    EXPECT_TRUE(isWithin(dashed));
}

TEST_F(CanvasCoverageRender, MitersBeyondTheLimitAreBevels) {
    const auto canvas = vellis::Canvas::make();
    for (const double limit : {1.5, 4.0, 10.0}) {
        const double atLimit = 2 * std::acos(1 / limit);
        for (const double beyond : {-0.1, -0.02, 0.02, 0.1}) {
            const double angle = 0.3 + atLimit + beyond;
            const glm::dvec2 corner(140, 100);
            Stroke stroke{{corner - 90.0 * glm::dvec2(std::cos(0.3), std::sin(0.3)), corner,
                           corner + 90.0 * glm::dvec2(std::cos(angle), std::sin(angle))},
                          11};
            stroke.miterLimit = limit;
            EXPECT_TRUE(isWithin(errorsOf(*canvas, stroke), {0.5, 0.2, 0}))
                << limit << " " << beyond;
        }
    }
}

TEST_F(CanvasCoverageRender, DashesThroughTheBeginningOfALoopHaveAJoinThere) {
    const auto canvas = vellis::Canvas::make();
    Stroke stroke{
        {{50, 60}, {150, 60}, {150, 120}, {50, 120}}, 10, StrokeJoin::Miter, StrokeCap::Butt, true};
    stroke.dashes = {20, 20}; // eight times around
    for (const double offset : {10.0, 30.0}) {
        stroke.dashOffset = offset;
        EXPECT_TRUE(isWithin(errorsOf(*canvas, stroke))) << offset;
    }
}

/// Draws strokes of a seed each, and sums their errors.
StrokeErrors randomErrors(double opacity) {
    const auto canvas = vellis::Canvas::make();
    StrokeErrors sum;
    for (unsigned int seed = 0; seed != 150; ++seed) {
        Stroke stroke = randomStroke(seed);
        stroke.opacity = opacity;
        sum += errorsOf(*canvas, stroke);
    }
    return sum;
}

TEST_F(CanvasCoverageRender, RandomOpaqueStrokesAreTheirGeometry) {
    EXPECT_TRUE(isWithin(randomErrors(1)));
}

TEST_F(CanvasCoverageRender, StrokesThatAreCutOffAreThoseThatAreNot) {
    const auto canvas = vellis::Canvas::make();
    std::size_t touched = 0;
    std::size_t differ = 0;
    for (unsigned int seed = 0; seed != 150; ++seed) {
        const Stroke stroke = randomStroke(seed);
        const auto draw = [&] {
            if (seed % 3 == 0)
                canvas->drawLines(canvasStroke(stroke), floatPoints(stroke));
            else
                drawThrough(*canvas, stroke, floatPoints(stroke));
        };
        clearScene();
        canvas->begin(strokeSceneMatrix());
        draw();
        canvas->end();
        const offscreen::Image whole = readScene();
        clearScene();
        drawEachPart(*canvas, draw);
        const offscreen::Image parts = readScene();
        for (std::size_t i = 0; i < whole.pixels.size(); i += 4) {
            touched += whole.pixels[i] > 0 ? 1U : 0U;
            differ += std::abs(whole.pixels[i] - parts.pixels[i]) > 4 ? 1U : 0U;
        }
    }
    EXPECT_GT(touched, 500000U);
    EXPECT_LE(differ, touched / 10000);
}

TEST_F(CanvasCoverageRender, RandomTranslucentStrokesAreTheirGeometry) {
    SKIP_WITHOUT(Extension::Framebuffers);
    EXPECT_TRUE(isWithin(randomErrors(0.5)));
}

} // namespace
} // namespace vellis::test

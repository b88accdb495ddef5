/// What a canvas draws in space, on a driver: against geometry that is clipped by hand, and depths.

#include <vellis/canvas/canvas.hpp>

#include <cmath>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include <glm/ext/matrix_clip_space.hpp>
#include <glm/ext/matrix_double4x4.hpp>
#include <glm/ext/vector_double4.hpp>
#include <glm/geometric.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/gl.hpp>

#include "canvas/scene_fixture.hpp"
#include "support/stroke_drawing.hpp"
#include "support/stroke_limits.hpp"
#include "support/stroke_scenes.hpp"

namespace vellis::test {
namespace {

using Line = std::vector<glm::vec3>;

/// An eye in the origin that looks along -z, with the near plane at -1.
glm::mat4 camera() {
    return glm::perspective(1.F, 1.F, 1.F, 100.F);
}

glm::dvec4 toClip(const glm::vec3& point) {
    return glm::dmat4(camera()) * glm::dvec4(point, 1);
}

glm::dvec3 toDevice(const glm::dvec4& clip) {
    return glm::dvec3(clip) / clip.w;
}

glm::dvec2 toPixel(const glm::dvec4& clip) {
    return (glm::dvec2(toDevice(clip)) + 1.0) * (strokeSceneSize / 2.0);
}

/// How far something is in front of the near plane.
double inFront(const glm::dvec4& clip) {
    return clip.z + clip.w;
}

/// The part of a piece in front of the near plane, if there is any.
std::optional<std::pair<glm::dvec4, glm::dvec4>> clipped(const glm::dvec4& a, const glm::dvec4& b) {
    if (inFront(a) < 0 && inFront(b) < 0)
        return std::nullopt;
    const glm::dvec4 cut = a + (b - a) * (inFront(a) / (inFront(a) - inFront(b)));
    return std::pair(inFront(a) < 0 ? cut : a, inFront(b) < 0 ? cut : b);
}

/// Moves an end of a stroke as far as a square cap reaches.
void extend(glm::dvec2& end, const glm::dvec2& next, double width) {
    end += glm::normalize(end - next) * (width / 2);
}

/// What is visible of a line: a stroke for each of its parts, with caps where the line ends and
/// none where it is cut.
std::vector<Stroke> visibleParts(const Line& line, const Stroke& style) {
    std::vector<Stroke> parts;
    bool goesOn = false;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const glm::dvec4 end = toClip(line[i + 1]);
        const auto piece = clipped(toClip(line[i]), end);
        if (piece && !goesOn) {
            parts.push_back(style);
            parts.back().cap = StrokeCap::Butt;
            parts.back().points = {toPixel(piece->first)};
        }
        if (piece)
            parts.back().points.push_back(toPixel(piece->second));
        goesOn = piece && inFront(end) >= 0;
    }
    if (style.cap == StrokeCap::Square && inFront(toClip(line.front())) >= 0)
        extend(parts.front().points[0], parts.front().points[1], style.width);
    if (style.cap == StrokeCap::Square && goesOn)
        extend(parts.back().points.back(), *(parts.back().points.end() - 2), style.width);
    return parts;
}

/// A number from a generator that gives the same everywhere.
double between(std::mt19937& random, double low, double high) {
    return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
}

/// Points on both sides of the near plane, and of the eye, so close to its axis that cuts are seen.
Line randomLine(std::mt19937& random, int count) {
    Line line;
    for (int i = 0; i != count; ++i) {
        const double x = between(random, -1.2, 1.2);
        const double y = between(random, -1.2, 1.2);
        line.emplace_back(x, y, between(random, -5, 2));
    }
    return line;
}

/// With any join, and square caps or none.
Stroke randomStyle(std::mt19937& random) {
    Stroke style;
    style.width = between(random, 1, 15);
    style.join = static_cast<StrokeJoin>(random() % 3);
    style.cap = random() % 2 == 0 ? StrokeCap::Butt : StrokeCap::Square;
    return style;
}

class CanvasSpaceRender : public CanvasSceneTest {
protected:
    /// Draws random lines, each in a picture of its own, and sums up how far they are from what is
    /// visible of them.
    template <class Draw>
    StrokeErrors randomErrors(int mostPoints, Draw draw) {
        StrokeErrors sum;
        std::mt19937 random(7);
        for (int i = 0; i != 60; ++i) {
            const int count = 2 + static_cast<int>(random() % 5);
            const Line line = randomLine(random, std::min(count, mostPoints));
            const Stroke style = randomStyle(random);
            clearScene();
            canvas->begin(camera());
            draw(line, style);
            canvas->end();
            sum += strokeErrors(unite(visibleParts(line, style)), 1, readScene());
        }
        return sum;
    }

    /// The coverage of strokes that may cross each other: each of them is drawn over the others.
    static Coverage unite(const std::vector<Stroke>& strokes) {
        Coverage result = sceneCoverage({});
        for (const Stroke& stroke : strokes) {
            const Coverage one = sceneCoverage({stroke});
            for (std::size_t i = 0; i != result.values.size(); ++i)
                result.values[i] += one.values[i] * (1 - result.values[i]);
        }
        return result;
    }

    static void expectGeometry(const StrokeErrors& errors) {
        EXPECT_GT(errors.touched, 10000U);
        EXPECT_TRUE(isWithin(errors));
    }

    /// The red of a pixel, counted from the lower left.
    static int redAt(int x, int y) {
        unsigned char pixel[4] = {};
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
        return pixel[0];
    }

    static float depthAt(int x, int y) {
        float depth = -1;
        glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
        return depth;
    }
};

TEST_F(CanvasSpaceRender, LinesAreCutAtTheNearPlane) {
    expectGeometry(randomErrors(2, [&](const Line& line, const Stroke& style) {
        canvas->drawLines(canvasStroke(style), line);
    }));
}

TEST_F(CanvasSpaceRender, StripsAreCutAtTheNearPlane) {
    expectGeometry(randomErrors(6, [&](const Line& line, const Stroke& style) {
        canvas->drawLineStrip(canvasStroke(style), line);
    }));
}

TEST_F(CanvasSpaceRender, StripsOfBuffersAreCutAtTheNearPlane) {
    expectGeometry(randomErrors(6, [&](const Line& line, const Stroke& style) {
        const auto buffer =
            VertexAttributeBuffer<glm::vec3>::make(line, BufferUsage::Static, BufferAccess::Draw);
        canvas->drawLineStrip(canvasStroke(style), 0, static_cast<unsigned int>(line.size()),
                              buffer);
    }));
}

/// Lines that go away from the eye, which begin in front of the near plane, behind it, and behind
/// the eye.
const Line linesAway[] = {
    {{-0.8F, 0, -2}, {2, 0, -9}}, {{-1, 0, -0.5F}, {2, 0, -9}}, {{-1, 0, 2}, {1, 0, -9}}};

/// Where the depth of a line of those is \p depth, as x in pixels: both are linear in the picture.
double pixelOfDepth(const Line& line, double depth) {
    const auto piece = clipped(toClip(line[0]), toClip(line[1]));
    const double from = toDevice(piece->first).z / 2 + 0.5;
    const double to = toDevice(piece->second).z / 2 + 0.5;
    const double part = (depth - from) / (to - from);
    return toPixel(piece->first).x + part * (toPixel(piece->second).x - toPixel(piece->first).x);
}

TEST_F(CanvasSpaceRender, StrokesAreHiddenWhereTheirDepthIsGreater) {
    glEnable(GL_DEPTH_TEST);
    for (const Line& line : linesAway) {
        for (const double depth : {0.7, 0.75, 0.8, 0.85}) {
            const int x = static_cast<int>(pixelOfDepth(line, depth));
            ASSERT_GT(x, 5);
            ASSERT_LT(x, 250);
            const int step = toPixel(toClip(line[1])).x > x ? 2 : -2; // towards the far end
            glClearDepth(depth);
            clearScene();
            canvas->begin(camera());
            canvas->drawLines(vellis::Stroke(white, 20), line);
            canvas->end();
            for (const int y : {120, 128, 136}) {
                EXPECT_EQ(redAt(x - step, y), 255) << depth << " at " << x << ", " << y;
                EXPECT_EQ(redAt(x + step, y), 0) << depth << " at " << x << ", " << y;
            }
            EXPECT_NEAR(depthAt(x - step, 128), depth, 1e-6); // and write none
        }
    }
    glClearDepth(1);
    glDisable(GL_DEPTH_TEST);
}

TEST_F(CanvasSpaceRender, AliasedLinesWriteTheirDepth) {
    glEnable(GL_DEPTH_TEST);
    for (const Line& line : linesAway) {
        clearScene();
        canvas->begin(camera());
        canvas->drawLines(vellis::Stroke::aliased(white), line);
        canvas->end();
        for (const double depth : {0.7, 0.75, 0.8, 0.85}) {
            const double x = pixelOfDepth(line, depth);
            const double perPixel = std::abs(0.01 / (pixelOfDepth(line, depth + 0.01) - x));
            const int column = static_cast<int>(x);
            const float written = std::min(depthAt(column, 127), depthAt(column, 128));
            EXPECT_NEAR(written, depth, perPixel) << "at " << x;
        }
    }
    glDisable(GL_DEPTH_TEST);
}

TEST_F(CanvasSpaceRender, NothingBehindTheNearPlaneIsDrawn) {
    vellis::Stroke stroke(white, 9);
    stroke.cap = vellis::Stroke::Cap::Round;
    const Line points = {{0.1F, 0, -0.9F}, {-0.2F, 0.1F, 0}, {0.1F, 0.1F, 0.5F}, {0.1F, 0.3F, 5}};
    const auto buffer =
        VertexAttributeBuffer<glm::vec3>::make(points, BufferUsage::Static, BufferAccess::Draw);
    canvas->begin(camera());
    canvas->drawPoints(white, 30, points);
    canvas->drawPoints(white, 30, 0, 4, buffer);
    canvas->drawBullseyes(white, white, 30, points);
    canvas->drawLines(stroke, points);
    canvas->drawLineStrip(stroke, points);
    canvas->drawLineLoop(stroke, points);
    canvas->drawLineStrip(stroke, {points[2], points[2]});
    canvas->drawLineLoop(stroke, 0, 4, buffer);
    canvas->drawLineStrip(vellis::Stroke::aliased(white), points);
    canvas->drawTriangles(white, {points[0], points[1], points[2]});
    canvas->end();
    EXPECT_EQ(strokeErrors(sceneCoverage({}), 1, readScene()).touched, 0U);
}

TEST_F(CanvasSpaceRender, PointsKeepTheirSizeAtEveryDistance) {
    for (const float z : {-1.01F, -10.F, -90.F}) {
        clearScene();
        canvas->begin(camera());
        canvas->drawPoints(white, 40, {{0, 0, z}});
        canvas->end();
        const double touched =
            static_cast<double>(strokeErrors(sceneCoverage({}), 1, readScene()).touched);
        EXPECT_NEAR(touched, 3.1416 * 20 * 20, 90) << z; // the pixels at its edge, too
    }
}

} // namespace
} // namespace vellis::test

/// Points and bullseyes of a canvas against discs, on a driver.

#include <vellis/canvas/canvas.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

#include <glm/vec2.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>

#include "canvas/scene_fixture.hpp"
#include "support/stroke_drawing.hpp"
#include "support/stroke_limits.hpp"

namespace vellis::test {
namespace {

/// How much of each pixel a disc covers: chords, 64 a pixel.
Coverage discCoverage(const glm::dvec2& center, double diameter) {
    constexpr int rows = 64;
    Coverage coverage = sceneCoverage({});
    const double radius = diameter / 2;
    for (unsigned int i = 0; i != coverage.height * rows; ++i) {
        const double y = (i + 0.5) / rows - center.y;
        if (std::abs(y) >= radius)
            continue;
        const double half = std::sqrt(radius * radius - y * y);
        const double begin = std::max(center.x - half, 0.0);
        const double end = std::min(center.x + half, static_cast<double>(coverage.width));
        float* row = coverage.values.data() + (coverage.height - 1 - i / rows) * coverage.width;
        for (int x = static_cast<int>(begin); x < end; ++x)
            row[x] +=
                static_cast<float>((std::min(end, x + 1.0) - std::max(begin, 1.0 * x)) / rows);
    }
    return coverage;
}

/// Centres that lie anywhere in a pixel.
std::vector<glm::dvec2> centers() {
    std::vector<glm::dvec2> result;
    for (int i = 0; i != 16; ++i)
        result.emplace_back(40 + i % 4 * 62 + i * 0.0625, 35 + i / 4 * 62 + i * 7 % 16 * 0.0625);
    return result;
}

class CanvasPointsRender : public CanvasSceneTest {
protected:
    void draw(const std::vector<glm::dvec2>& points, double diameter) const {
        clearScene();
        canvas->begin(strokeSceneMatrix());
        canvas->drawPoints(white, static_cast<float>(diameter), points);
        canvas->end();
    }

    /// The errors of discs that do not touch each other.
    static StrokeErrors errorsOf(const std::vector<glm::dvec2>& points, double diameter) {
        Coverage sum = sceneCoverage({});
        for (const glm::dvec2& center : points) {
            const Coverage one = discCoverage(center, diameter);
            std::transform(one.values.begin(), one.values.end(), sum.values.begin(),
                           sum.values.begin(), std::plus<>());
        }
        return strokeErrors(sum, 1, readScene());
    }

    /// The sum of all pixels, each from 0 to 1.
    static double ink() {
        const offscreen::Image image = readScene();
        double sum = 0;
        for (std::size_t i = 0; i < image.pixels.size(); i += 4)
            sum += image.pixels[i] / 255.0;
        return sum;
    }
};

TEST_F(CanvasPointsRender, PointsAreDiscs) {
    for (const double diameter : {2.0, 3.0, 3.3, 5.0, 8.5, 13.0, 21.0, 34.0, 60.0}) {
        draw(centers(), diameter);
        const StrokeErrors errors = errorsOf(centers(), diameter);
        EXPECT_TRUE(isWithin(errors, {18 / diameter, 0, 0})) << diameter;
    }
}

TEST_F(CanvasPointsRender, SmallPointsFadeByTheirArea) {
    for (const double diameter : {0.3, 0.5, 0.8, 1.0, 1.5, 2.0}) {
        draw(centers(), diameter);
        const StrokeErrors errors = errorsOf(centers(), diameter);
        EXPECT_TRUE(isWithin(errors, {8, 6, 0})) << diameter;
        EXPECT_NEAR(ink() / (16 * pi / 4 * diameter * diameter), 1, 0.035) << diameter;
    }
}

TEST_F(CanvasPointsRender, PointsOfABufferAreTheSame) {
    const std::vector<glm::vec2> points = {{30.25F, 40.5F}, {100.125F, 200.75F}, {180, 90}};
    const auto buffer =
        VertexAttributeBuffer<glm::vec2>::make(points, BufferUsage::Static, BufferAccess::Draw);
    for (const float diameter : {0.5F, 1.F, 9.F, 40.F}) {
        draw({points.begin(), points.end()}, double{diameter});
        const offscreen::Image image = readScene();
        clearScene();
        canvas->begin(strokeSceneMatrix());
        canvas->drawPoints(white, diameter, 0, 3, buffer);
        canvas->end();
        EXPECT_EQ(readScene().pixels, image.pixels) << diameter;
    }
}

TEST_F(CanvasPointsRender, WhatReachesIntoTheViewportIsDrawn) {
    // Over the edges, over the corners; all centres are outside.
    const std::vector<glm::dvec2> outside = {{-7.3, 60.2},  {262.6, 140.9}, {90.4, -3.1},
                                             {150.8, 266},  {-4.2, -5.6},   {260.1, 262.3},
                                             {-6.5, 258.5}, {263.5, -6.5}};
    for (const glm::dvec2& center : outside) {
        draw({center}, 30);
        const StrokeErrors errors = errorsOf({center}, 30);
        EXPECT_GT(errors.touched, 20U) << center.x << ", " << center.y;
        EXPECT_TRUE(isWithin(errors, {2.5, 0, 0})) << center.x << ", " << center.y;
    }
}

TEST_F(CanvasPointsRender, BullseyesAreThreeDiscs) {
    constexpr double parts[] = {1, 0.7, 0.3};
    for (const double diameter : {5.0, 12.5, 40.0, 60.0}) {
        clearScene();
        canvas->begin(strokeSceneMatrix());
        canvas->drawBullseyes(white, glm::vec4(0, 0, 0, 1), static_cast<float>(diameter),
                              centers());
        canvas->end();
        Coverage expected = sceneCoverage({});
        for (const glm::dvec2& center : centers())
            for (int i = 0; i != 3; ++i) { // white, black, white
                const Coverage disc = discCoverage(center, diameter * parts[i]);
                for (std::size_t j = 0; j != disc.values.size(); ++j) {
                    float& value = expected.values[j];
                    value += disc.values[j] * ((i == 1 ? 0.F : 1.F) - value);
                }
            }
        const StrokeErrors errors = strokeErrors(expected, 1, readScene());
        EXPECT_TRUE(isWithin(errors, {55 / diameter, 1.5, 0})) << diameter; // three edges
    }
}

} // namespace
} // namespace vellis::test

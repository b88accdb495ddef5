#include "support/stroke_reference.hpp"

#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "support/stroke_scenes.hpp"

namespace vellis::test {
namespace {

constexpr double pi = 3.14159265358979323846;

double areaOf(const Stroke& stroke) {
    const Coverage coverage = strokeCoverage(stroke, 64, 64);
    return std::accumulate(coverage.values.begin(), coverage.values.end(), 0.0);
}

Stroke line(StrokeCap cap) {
    return {{{20, 30}, {40, 30}}, 6, StrokeJoin::Miter, cap};
}

/// Two segments of 20 pixels, 4 wide, with a right angle between them.
Stroke corner(StrokeJoin join, double miterLimit = 4) {
    Stroke stroke{{{20, 20}, {40, 20}, {40, 40}}, 4, join, StrokeCap::Butt};
    stroke.miterLimit = miterLimit;
    return stroke;
}

constexpr double cornerArea = 2 * 20 * 4 - 4; ///< without the join

TEST(StrokeReference, CoversThePixelsOfItsRectangle) {
    const Coverage coverage = strokeCoverage(line(StrokeCap::Butt), 64, 64);
    EXPECT_EQ(coverage.values[(63 - 32) * 64 + 20], 1); // from 27 to 33 high
    EXPECT_EQ(coverage.values[(63 - 33) * 64 + 20], 0);
    EXPECT_EQ(coverage.values[(63 - 30) * 64 + 19], 0);
    EXPECT_EQ(coverage.values[(63 - 30) * 64 + 39], 1);
}

TEST(StrokeReference, CoversAShareOfThePixelsAtItsEdge) {
    const Coverage coverage =
        strokeCoverage({{{20.25, 30}, {40, 30}}, 5, StrokeJoin::Miter, StrokeCap::Butt}, 64, 64);
    EXPECT_NEAR(coverage.values[(63 - 30) * 64 + 20], 0.75, 0.01);
    EXPECT_NEAR(coverage.values[(63 - 32) * 64 + 30], 0.5, 0.01);
}

TEST(StrokeReference, HasCaps) {
    EXPECT_NEAR(areaOf(line(StrokeCap::Butt)), 20 * 6, 0.1);
    EXPECT_NEAR(areaOf(line(StrokeCap::Square)), 26 * 6, 0.1);
    EXPECT_NEAR(areaOf(line(StrokeCap::Round)), 20 * 6 + pi * 9, 0.1);
}

TEST(StrokeReference, HasJoins) {
    EXPECT_NEAR(areaOf(corner(StrokeJoin::Miter)), cornerArea + 4, 0.1);
    EXPECT_NEAR(areaOf(corner(StrokeJoin::Bevel)), cornerArea + 2, 0.1);
    EXPECT_NEAR(areaOf(corner(StrokeJoin::Round)), cornerArea + pi, 0.1);
}

TEST(StrokeReference, BevelsMitersBeyondTheLimit) {
    EXPECT_NEAR(areaOf(corner(StrokeJoin::Miter, 1.42)), cornerArea + 4, 0.1);
    EXPECT_NEAR(areaOf(corner(StrokeJoin::Miter, 1.41)), cornerArea + 2, 0.1);
}

TEST(StrokeReference, ClosesLines) {
    const Stroke square{{{20, 20}, {40, 20}, {40, 40}, {20, 40}, {20, 20}},
                        4,
                        StrokeJoin::Miter,
                        StrokeCap::Round,
                        true};
    EXPECT_NEAR(areaOf(square), 24 * 24 - 16 * 16, 0.1);
}

TEST(StrokeReference, CutsDashes) {
    Stroke stroke = line(StrokeCap::Butt);
    stroke.dashes = {4, 3, 1, 2};
    EXPECT_NEAR(areaOf(stroke), (4 + 1 + 4 + 1) * 6, 0.1);
    stroke.dashOffset = 3;
    EXPECT_NEAR(areaOf(stroke), (1 + 1 + 4 + 1 + 3) * 6, 0.1);
}

TEST(StrokeReference, GivesDashesCaps) {
    Stroke stroke = line(StrokeCap::Round);
    stroke.dashes = {0, 10};
    EXPECT_NEAR(areaOf(stroke), 3 * pi * 9, 0.1);
}

TEST(StrokeReference, JoinsWithinDashesOnly) {
    Stroke stroke = corner(StrokeJoin::Miter);
    stroke.dashes = {18, 4};
    EXPECT_NEAR(areaOf(stroke), 36 * 4, 0.1);
    stroke.dashes = {30, 10};
    EXPECT_NEAR(areaOf(stroke), 30 * 4, 0.1);
}

TEST(StrokeReference, JoinsTheFirstDashOfAClosedLineToTheLast) {
    Stroke stroke{
        {{20, 20}, {40, 20}, {40, 40}, {20, 40}}, 4, StrokeJoin::Miter, StrokeCap::Butt, true};
    stroke.dashes = {10, 10};
    stroke.dashOffset = 5; // a dash goes through the first point
    EXPECT_NEAR(areaOf(stroke), 4 * 10 * 4, 0.1);
    stroke.dashOffset = 0; // one begins there
    EXPECT_NEAR(areaOf(stroke), 4 * 10 * 4, 0.1);
}

TEST(StrokeReference, JoinsTheFirstDashToTheLastAtAnyAngle) {
    for (int i = 0; i != 20; ++i) {
        const double angle = 0.1 + 0.07 * i;
        const glm::dvec2 along(20 * std::cos(angle), 20 * std::sin(angle));
        const glm::dvec2 across(-along.y, along.x);
        const glm::dvec2 first(32, 20);
        Stroke stroke{{first, first + along, first + along + across, first + across},
                      4,
                      StrokeJoin::Miter,
                      StrokeCap::Butt,
                      true};
        stroke.dashes = {10, 10};
        stroke.dashOffset = 5;
        EXPECT_NEAR(areaOf(stroke), 4 * 10 * 4, 0.2) << angle;
    }
}

TEST(StrokeReference, LeavesRepeatedPointsOut) {
    Stroke stroke = corner(StrokeJoin::Bevel);
    stroke.points.insert(stroke.points.begin() + 1, 2, stroke.points[1]);
    EXPECT_NEAR(areaOf(stroke), cornerArea + 2, 0.1);
    stroke.points.resize(1);
    EXPECT_EQ(areaOf(stroke), 0);
}

TEST(StrokeReference, CountsErrors) {
    offscreen::Image image(3, 1);
    image.at(0, 0)[0] = 255;
    image.at(1, 0)[0] = 28;
    const StrokeErrors errors = strokeErrors({3, 1, {0, 0.2F, 0}}, 0.5, image);
    EXPECT_EQ(errors.touched, 2U);
    EXPECT_EQ(errors.beyond16, 1U);
    EXPECT_EQ(errors.beyond64, 1U);
    EXPECT_NEAR(errors.mean(), (255 + 2.5) / 2, 0.01);
    EXPECT_EQ(errors.percentBeyond16(), 50);
    EXPECT_EQ(errors.largest, 255);
}

TEST(StrokeReference, RandomStrokesFollowFromTheSeed) {
    EXPECT_EQ(randomStroke(7).points, randomStroke(7).points);
    EXPECT_NE(randomStroke(7).points, randomStroke(8).points);
}

} // namespace
} // namespace vellis::test

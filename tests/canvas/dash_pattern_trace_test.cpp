/// Dashes: their pattern, and how far along a line they are.

#include "canvas/dash_pattern.hpp"

#include <cmath>

#include <gtest/gtest.h>

#include "support/special_numbers.hpp"

namespace {

using namespace vellis;
using canvas::isOnDash;
using canvas::Ruler;
using canvas::Style;
using test::infinity;
using test::nan;

Style styleOf(std::initializer_list<Stroke::Dash> dashes, float ratio = 1.f) {
    Style style;
    canvas::setDashes(style, Stroke(glm::vec4(1.f)).dashed(dashes), ratio);
    return style;
}

TEST(StrokeTrace, DashesTakeThePlaceOfThoseOfBefore) {
    const Stroke stroke = Stroke(glm::vec4(1.f)).dashed({{1, 2}, {3, 4}}, 5.f).dashed({{6, 7}});
    EXPECT_EQ(stroke.numDashes, 1);
    EXPECT_EQ(stroke.dashes[0].length, 6.f);
    EXPECT_EQ(stroke.dashes[0].gap, 7.f);
    EXPECT_EQ(stroke.dashOffset, 0.f);
    EXPECT_EQ(stroke.dashed({}).numDashes, 0);
}

TEST(DashPatternTrace, UpToFourPairsAreKept) {
    const Stroke stroke =
        Stroke(glm::vec4(1.f)).dashed({{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}}, 3.f);
    EXPECT_EQ(stroke.numDashes, 4);
    EXPECT_EQ(stroke.dashOffset, 3.f);
    Style style;
    canvas::setDashes(style, stroke, 1.f);
    EXPECT_TRUE(style.isDashed);
    EXPECT_EQ(style.period, 36.f);
}

TEST(DashPatternTrace, DashesAreOnFromTheirBeginningsToTheirEnds) {
    const Style style = styleOf({{2, 3}, {4, 5}}); // on from 0 to 2, and from 5 to 9, of 14
    for (const float phase : {0.f, 1.f, 2.f, 5.f, 7.f, 9.f})
        EXPECT_TRUE(isOnDash(style, phase)) << phase;
    for (const float phase : {2.5f, 4.5f, 9.5f, 13.f})
        EXPECT_FALSE(isOnDash(style, phase)) << phase;
}

TEST(DashPatternTrace, RatioMultipliesLengths) {
    const Style style = styleOf({{2, 3}}, 2.f);
    EXPECT_EQ(style.period, 10.f);
    EXPECT_TRUE(isOnDash(style, 4.f));
    EXPECT_FALSE(isOnDash(style, 5.f));
}

TEST(DashPatternTrace, PatternsThatAreNoneAreSolid) {
    EXPECT_FALSE(styleOf({}).isDashed);
    EXPECT_FALSE(styleOf({{0, 0}}).isDashed);
    EXPECT_FALSE(styleOf({{0, 0}, {0, 0}}).isDashed);
    EXPECT_FALSE(styleOf({{5, 0}, {3, 0}}).isDashed); // without gaps
    for (const float bad : {-1.f, nan, infinity}) {
        EXPECT_FALSE(styleOf({{bad, 1}}).isDashed) << bad;
        EXPECT_FALSE(styleOf({{1, bad}}).isDashed) << bad;
        EXPECT_FALSE(styleOf({{1, 1}, {bad, 1}}).isDashed) << bad;
    }
    EXPECT_FALSE(styleOf({{1, std::numeric_limits<float>::max()}, //
                          {1, std::numeric_limits<float>::max()}})
                     .isDashed);
    EXPECT_TRUE(styleOf({{0, 1}}).isDashed); // dots, with round caps
    EXPECT_TRUE(styleOf({{1, 1}}).isDashed);
}

const glm::vec2 scale(100.f, 50.f);

TEST(RulerTrace, MeasuresInPixelsModuloThePeriod) {
    const glm::mat4 matrix(1.f);
    Ruler ruler(matrix, scale, 0., 70.);
    ruler.begin({0.f, 0.f, 0.f});
    EXPECT_EQ(ruler.phase(), 0.f);
    ruler.goTo({0.3f, 0.8f, 0.f}); // 30 and 40 pixels
    EXPECT_NEAR(ruler.phase(), 50.f, 1e-4f);
    ruler.goTo({0.6f, 0.f, 0.f});
    EXPECT_NEAR(ruler.phase(), 30.f, 1e-4f);
    ruler.begin({0.6f, 0.f, 0.f});
    EXPECT_EQ(ruler.phase(), 0.f);
}

TEST(RulerTrace, OffsetsAreWithinThePeriod) {
    const glm::mat4 matrix(1.f);
    const auto phaseOf = [&](double offset, double period) {
        Ruler ruler(matrix, scale, offset, period);
        ruler.begin(glm::vec3(0.f));
        return ruler.phase();
    };
    EXPECT_EQ(phaseOf(25., 10.), 5.f);
    EXPECT_EQ(phaseOf(-3., 10.), 7.f);
    EXPECT_EQ(phaseOf(1e15 + 3., 10.), 3.f);
    EXPECT_EQ(phaseOf(double{nan}, 10.), 0.f);
    EXPECT_EQ(phaseOf(double{infinity}, 10.), 0.f);
    EXPECT_EQ(phaseOf(5., 0.), 0.f);
}

TEST(RulerTrace, LongLinesKeepTheirPhase) {
    const glm::mat4 matrix(1.f);
    Ruler ruler(matrix, scale, 0., 7.);
    ruler.begin(glm::vec3(0.f));
    double length = 0.;
    for (int i = 1; i <= 100000; ++i) {
        ruler.goTo({i % 2 == 0 ? 0.f : 0.31f, 0.f, 0.f});
        length += double{0.31f} * 100.;
    }
    EXPECT_NEAR(double{ruler.phase()}, std::fmod(length, 7.), 1e-3);
}

TEST(RulerTrace, WhatIsBehindTheNearPlaneHasNoLength) {
    glm::mat4 matrix(1.f);
    Ruler ruler(matrix, scale, 0., 1000.);
    ruler.begin({0.f, 0.f, -2.f}); // w is 1: the plane is at -1
    ruler.goTo({0.5f, 0.f, -3.f});
    EXPECT_EQ(ruler.phase(), 0.f);
    ruler.goTo({0.9f, 0.f, 1.f}); // half of it is in front
    EXPECT_NEAR(ruler.phase(), 20.f, 1e-3f);
    ruler.goTo({0.5f, 0.f, -3.f});
    EXPECT_NEAR(ruler.phase(), 40.f, 1e-3f);
}

TEST(RulerTrace, LengthsThatAreNoneLeaveTheBeginning) {
    const glm::mat4 matrix(0.f); // where w is 0
    Ruler ruler(matrix, scale, 0., 10.);
    ruler.begin({0.f, 0.f, 0.f});
    ruler.goTo({1.f, 0.f, 0.f});
    EXPECT_EQ(ruler.phase(), 0.f);
}

} // namespace

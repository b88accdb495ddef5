/// Points and colours as a canvas reads them.

#include "canvas/point_reader.hpp"

#include <cmath>
#include <limits>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>

#include "support/special_numbers.hpp"

namespace {

using namespace vellis;
using canvas::Color;
using canvas::ColorReader;
using canvas::Placement;
using canvas::PointReader;
using test::nan;

TEST(PointReaderTrace, EveryTypeGivesItsPoints) {
    const Placement placement;
    const auto readsAs = [&](const Points& points, const glm::vec3& second) {
        PointReader reader(points, placement);
        EXPECT_EQ(reader.size(), 2u);
        return reader[1] == second;
    };
    EXPECT_TRUE(readsAs(std::vector<glm::vec2>{{0, 0}, {1, 2}}, {1, 2, 0}));
    EXPECT_TRUE(readsAs(std::vector<glm::vec3>{{0, 0, 0}, {1, 2, 3}}, {1, 2, 3}));
    EXPECT_TRUE(readsAs(std::vector<glm::dvec2>{{0, 0}, {1, 2}}, {1, 2, 0}));
    EXPECT_TRUE(readsAs(std::vector<glm::dvec3>{{0, 0, 0}, {1, 2, 3}}, {1, 2, 3}));
}

TEST(PointReaderTrace, NullHasNoPoints) {
    EXPECT_EQ(PointReader(Points(static_cast<const glm::vec2*>(nullptr), 5), Placement()).size(),
              0u);
}

TEST(PointReaderTrace, BlocksAreReadInAnyOrder) {
    std::vector<glm::vec2> points;
    for (int i = 0; i < 1000; ++i)
        points.emplace_back(float(i), 0.f);
    const Placement placement;
    PointReader reader(points, placement);
    for (const std::size_t i : {0u, 999u, 255u, 256u, 257u, 512u, 255u, 0u, 300u, 998u, 999u})
        EXPECT_EQ(reader[i].x, float(i)) << i;
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_EQ(reader[i].x, float(i)) << i;
}

TEST(PointReaderTrace, PartsBeginAtTheirFirstPoint) {
    const std::vector<glm::dvec3> points = {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    const Placement placement;
    PointReader reader(Points(points).part(1, 2), placement);
    EXPECT_EQ(reader.size(), 2u);
    EXPECT_EQ(reader[1].x, 3.f);
}

TEST(PointReaderTrace, OriginIsSubtractedInDoubleAndThenTheTransformApplies) {
    Placement placement;
    placement.setOrigin({12345678., 0., 0.});
    placement.setTransform(glm::scale(glm::mat4(1.f), glm::vec3(2.f)));
    const std::vector<glm::dvec2> points = {{12345678.25, 1.}};
    PointReader reader(points, placement);
    EXPECT_EQ(reader[0], glm::vec3(0.5f, 2.f, 0.f));
    const std::vector<glm::vec3> near = {{0.f, 0.f, 0.f}};
    EXPECT_EQ(PointReader(near, placement)[0].x, -24691356.f);
}

TEST(PointReaderTrace, PlanePointsThatStayInThePlaneHaveTwoDimensions) {
    const std::vector<glm::vec2> plane = {{1, 2}};
    const std::vector<glm::vec3> space = {{1, 2, 0}};
    Placement placement;
    EXPECT_EQ(PointReader(plane, placement).dimensions(), 2u);
    EXPECT_EQ(PointReader(space, placement).dimensions(), 3u);
    placement.setOrigin({1., 2., 0.});
    placement.setTransform(glm::rotate(glm::mat4(1.f), 1.f, glm::vec3(0.f, 0.f, 1.f)));
    EXPECT_EQ(PointReader(plane, placement).dimensions(), 2u);
    placement.setOrigin({0., 0., 1.});
    EXPECT_EQ(PointReader(plane, placement).dimensions(), 3u);
    placement.setOrigin(glm::dvec3(0.));
    placement.setTransform(glm::rotate(glm::mat4(1.f), 1.f, glm::vec3(1.f, 0.f, 0.f)));
    EXPECT_EQ(PointReader(plane, placement).dimensions(), 3u);
    placement.setTransform(glm::translate(glm::mat4(1.f), glm::vec3(0.f, 0.f, 1.f)));
    EXPECT_EQ(PointReader(plane, placement).dimensions(), 3u);
}

TEST(PointReaderTrace, FiniteAreAllThreeNumbers) {
    EXPECT_TRUE(canvas::isFinite(glm::vec3(1e38f, -1e38f, 0.f)));
    for (const float bad : {nan, INFINITY, -INFINITY}) {
        EXPECT_FALSE(canvas::isFinite(glm::vec3(bad, 0.f, 0.f)));
        EXPECT_FALSE(canvas::isFinite(glm::vec3(0.f, bad, 0.f)));
        EXPECT_FALSE(canvas::isFinite(glm::vec3(0.f, 0.f, bad)));
    }
}

TEST(ColorReaderTrace, ColorsAreClampedAndRounded) {
    EXPECT_EQ(canvas::toColor({0.f, 1.f, 0.5f, 0.25f}), Color(0, 255, 128, 64));
    EXPECT_EQ(canvas::toColor({-1.f, 2.f, nan, INFINITY}), Color(0, 255, 0, 255));
    EXPECT_EQ(canvas::toColor({-INFINITY, 0.999f, 0.001f, 1.f / 255.f}), Color(0, 255, 0, 1));
}

TEST(ColorReaderTrace, LastColorStandsForThoseThatAreMissing) {
    const std::vector<glm::vec4> two = {glm::vec4(0.f), glm::vec4(1.f)};
    const ColorReader reader(two);
    EXPECT_FALSE(reader.isOne());
    EXPECT_EQ(reader.at(0), Color(0));
    EXPECT_EQ(reader.at(1), Color(255));
    EXPECT_EQ(reader.at(100), Color(255));
    const std::vector<Color> bytes = {Color(1, 2, 3, 4), Color(5, 6, 7, 8)};
    EXPECT_EQ(ColorReader(bytes).at(1), Color(5, 6, 7, 8));
    EXPECT_EQ(ColorReader(bytes).at(2), Color(5, 6, 7, 8));
}

TEST(ColorReaderTrace, OneColorIsForAllAndAnEmptyListForNone) {
    const ColorReader one(glm::vec4(0.f, 0.f, 0.f, 1.f));
    EXPECT_TRUE(one.isOne());
    EXPECT_FALSE(one.isEmpty());
    EXPECT_EQ(one.at(7), Color(0, 0, 0, 255));
    EXPECT_TRUE(ColorReader(std::vector<glm::vec4>()).isEmpty());
    EXPECT_TRUE(ColorReader(Colors(static_cast<const glm::vec4*>(nullptr), 3)).isEmpty());
}

} // namespace

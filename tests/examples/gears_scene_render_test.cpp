/// The geometry of the gears.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

#include <glm/geometric.hpp>
#include <gmock/gmock.h>

#include <gears/gear_solid.hpp>
#include <gears/gear_train.hpp>
#include <gears/spur_gear.hpp>

namespace {

using gears::Gear;

/// A closed line, whose first point is not repeated.
using Outline = std::vector<glm::dvec2>;

double cross(const glm::dvec2& a, const glm::dvec2& b) {
    return a.x * b.y - a.y * b.x;
}

Outline outlineOf(unsigned int teeth) {
    Outline points;
    for (const auto& stretch : gears::outline(teeth))
        points.insert(points.end(), stretch.begin(), stretch.end() - 1);
    return points;
}

/// A gear's outline where it is.
Outline placed(const Gear& gear, double angle) {
    const glm::dvec2 x(std::cos(angle), std::sin(angle));
    const glm::dvec2 y(-x.y, x.x);
    Outline points = outlineOf(gear.teeth);
    for (glm::dvec2& point : points)
        point = glm::dvec2(gear.centre) + point.x * x + point.y * y;
    return points;
}

struct Segment {
    glm::dvec2 a;
    glm::dvec2 b;
};

/// The stretches of an outline that come closer to a point than a distance.
std::vector<Segment> segmentsNear(const Outline& outline, const glm::dvec2& point,
                                  double distance) {
    std::vector<Segment> segments;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Segment segment{outline[i], outline[(i + 1) % outline.size()]};
        if (glm::distance(segment.a, point) < distance)
            segments.push_back(segment);
    }
    return segments;
}

bool doCross(const Segment& s, const Segment& t) {
    const auto side = [](const Segment& of, const glm::dvec2& point) {
        return cross(of.b - of.a, point - of.a);
    };
    return side(s, t.a) * side(s, t.b) < 0.0 && side(t, s.a) * side(t, s.b) < 0.0;
}

double distance(const Segment& segment, const glm::dvec2& point) {
    const glm::dvec2 along = segment.b - segment.a;
    const double at = glm::dot(point - segment.a, along) / glm::dot(along, along);
    return glm::distance(point, segment.a + std::clamp(at, 0.0, 1.0) * along);
}

/// How far two gears are apart where they mesh; empty where their outlines cross. Neither can be
/// within the other.
std::optional<double> gapBetween(const Gear& gear, double angle, const Gear& other,
                                 double otherAngle) {
    const glm::dvec2 towards = glm::normalize(glm::dvec2(other.centre - gear.centre));
    const glm::dvec2 meeting =
        glm::dvec2(gear.centre) + double{gears::pitchRadius(gear.teeth)} * towards;
    constexpr double reach = 8.0; // two teeth to each side, and all that comes near the others
    const auto segments = segmentsNear(placed(gear, angle), meeting, reach);
    const auto others = segmentsNear(placed(other, otherAngle), meeting, reach);
    double gap = std::numeric_limits<double>::max();
    for (const Segment& s : segments) {
        for (const Segment& t : others) {
            if (doCross(s, t))
                return {};
            gap = std::min({gap, distance(s, t.a), distance(t, s.a)});
        }
    }
    return gap;
}

/// What remains between the flanks of teeth that stand in the middle of a gap.
const double usualGap = 0.5 * gears::backlash * std::cos(double{gears::pressureAngle});

class GearTrain : public ::testing::Test {
protected:
    const std::vector<Gear> train = gears::makeTrain();
    const Gear& driver = train.front();

    /// The gap between the driver and another gear.
    std::optional<double> gap(std::size_t i, float driverAngle, double off = 0.0) const {
        const std::vector<float> angles = gears::trainAngles(train, driverAngle);
        return gapBetween(driver, double{angles[0]}, train[i], double{angles[i]} + off);
    }
};

TEST_F(GearTrain, HasTeethThatTouchButForTheBacklashAndNeverOverlap) {
    constexpr int steps = 100;
    for (std::size_t i = 1; i < train.size(); ++i) {
        for (int step = 0; step < steps; ++step) {
            // Through a tooth's turn, at teeth all around the gear.
            const float turn = static_cast<float>(step) / steps + static_cast<float>(step % 7);
            const auto found = gap(i, turn * gears::pitchAngle(driver.teeth));
            ASSERT_TRUE(found) << "gear " << i << " overlaps at " << turn;
            EXPECT_GT(*found, 0.98 * usualGap) << "gear " << i << " at " << turn;
            EXPECT_LT(*found, 1.15 * usualGap) << "gear " << i << " at " << turn;
        }
    }
}

TEST_F(GearTrain, WouldOverlapWithTeethElsewhere) {
    for (std::size_t i = 1; i < train.size(); ++i) {
        const double pitch = gears::pitchAngle(train[i].teeth);
        // By more than the gap on either side: 0.03 of a pitch that is pi modules long.
        for (const double off : {0.5, 0.25, 0.02, -0.02, -0.25}) {
            for (const float angle : {0.0f, 0.05f, 0.1f, 0.15f, 0.2f})
                EXPECT_FALSE(gap(i, angle, off * pitch)) << "gear " << i << ", " << off;
        }
    }
}

TEST_F(GearTrain, TurnsByTheRatioOfTheTeethTheOtherWay) {
    const std::vector<float> before = gears::trainAngles(train, 0.3f);
    const std::vector<float> after = gears::trainAngles(train, 0.3f + 2.0f * gears::pi);
    ASSERT_EQ(after.size(), train.size());
    EXPECT_NEAR(after[0] - before[0], 2.0f * gears::pi, 1e-4f);
    for (std::size_t i = 1; i < train.size(); ++i) {
        const double turns = double{after[i] - before[i]} / (2.0 * double{gears::pi});
        EXPECT_NEAR(turns * train[i].teeth, -1.0 * driver.teeth, 1e-3);
    }
}

TEST_F(GearTrain, LooksTheSameAfterTheTurnOfATooth) {
    const float tooth = gears::pitchAngle(driver.teeth);
    const std::vector<float> before = gears::trainAngles(train, 0.0f);
    const std::vector<float> after = gears::trainAngles(train, tooth);
    for (std::size_t i = 0; i < train.size(); ++i) {
        const double teeth =
            double{after[i] - before[i]} / double{gears::pitchAngle(train[i].teeth)};
        EXPECT_NEAR(std::abs(teeth), 1.0, 1e-4);
    }
}

TEST_F(GearTrain, LeavesRoomBetweenTheGearsThatAreDriven) {
    EXPECT_GT(glm::distance(train[1].centre, train[2].centre),
              gears::tipRadius(train[1].teeth) + gears::tipRadius(train[2].teeth));
}

class SpurGear : public ::testing::TestWithParam<unsigned int> {
protected:
    const unsigned int teeth = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Teeth, SpurGear, ::testing::Values(12u, 16u, 24u, 45u));

TEST_P(SpurGear, HasAnOutlineOfStretchesThatJoin) {
    const auto stretches = gears::outline(teeth);
    ASSERT_EQ(stretches.size(), 4 * teeth);
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        EXPECT_EQ(stretches[i].back(), stretches[(i + 1) % stretches.size()].front()) << i;
        for (std::size_t j = 1; j < stretches[i].size(); ++j)
            EXPECT_GT(glm::distance(stretches[i][j - 1], stretches[i][j]), 1e-3f) << i;
    }
}

TEST_P(SpurGear, HasAnOutlineThatGoesOnceAroundCounterclockwise) {
    const Outline points = outlineOf(teeth);
    double angle = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const glm::dvec2& next = points[(i + 1) % points.size()];
        const double step = std::atan2(cross(points[i], next), glm::dot(points[i], next));
        EXPECT_GT(step, -1e-5) << "it turns back at " << i;
        angle += step;
    }
    EXPECT_NEAR(angle, 2.0 * double{gears::pi}, 1e-5);
}

TEST_P(SpurGear, HasTeethOfTheRightHeightAndThickness) {
    double lowest = std::numeric_limits<double>::max();
    double highest = 0.0;
    double onTooth = 0.0; // of the pitch circle, in all
    const Outline points = outlineOf(teeth);
    const double pitch = gears::pitchRadius(teeth);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double radius = glm::length(points[i]);
        const double next = glm::length(points[(i + 1) % points.size()]);
        lowest = std::min(lowest, radius);
        highest = std::max(highest, radius);
        if ((radius < pitch) == (next < pitch))
            continue;
        const glm::dvec2 crossing = glm::mix(points[i], points[(i + 1) % points.size()],
                                             (pitch - radius) / (next - radius));
        const double angle = std::atan2(crossing.y, crossing.x);
        onTooth += radius < pitch ? -angle : angle; // up a flank, and down another
    }
    EXPECT_NEAR(lowest, pitch - 1.25, 1e-4);
    EXPECT_NEAR(highest, pitch + 1.0, 1e-4);
    // A tooth half a turn from the first may have its flanks counted a turn apart.
    onTooth = std::fmod(onTooth + 4.0 * double{gears::pi}, 2.0 * double{gears::pi});
    const double thickness = onTooth * pitch / teeth;
    EXPECT_NEAR(thickness, 0.5 * double{gears::pi} - 0.5 * double{gears::backlash}, 0.01);
}

TEST_P(SpurGear, HasTeethThatAreAllAlikeTheFirstAlongTheXAxis) {
    const auto stretches = gears::outline(teeth);
    const glm::vec2 tip = stretches[1].front();
    EXPECT_NEAR(stretches[1].back().x, tip.x, 1e-4f);
    EXPECT_NEAR(stretches[1].back().y, -tip.y, 1e-4f);
    EXPECT_LT(tip.y, 0.0f);
    for (std::size_t i = 4; i < stretches.size(); ++i) {
        const double turn = static_cast<double>(i / 4) * double{gears::pitchAngle(teeth)};
        const glm::dvec2 x(std::cos(turn), std::sin(turn));
        for (std::size_t j = 0; j < stretches[i].size(); ++j) {
            const glm::dvec2 first(stretches[i % 4][j]);
            const glm::dvec2 turned = first.x * x + first.y * glm::dvec2(-x.y, x.x);
            EXPECT_LT(glm::distance(glm::dvec2(stretches[i][j]), turned), 1e-4) << i;
        }
    }
}

class GearSolid : public SpurGear {
protected:
    const gears::Solid solid = gears::makeSolid(teeth);

    /// Calls something with the indices of the corners of each triangle.
    template <class Use>
    void forEachTriangle(Use use) const {
        for (std::size_t i = 0; i < solid.indices.size(); i += 3)
            use(solid.indices[i], solid.indices[i + 1], solid.indices[i + 2]);
    }

    glm::dvec3 position(unsigned short index) const { return solid.positions[index]; }
};

INSTANTIATE_TEST_SUITE_P(Teeth, GearSolid, ::testing::Values(12u, 16u, 24u, 45u));

TEST_P(GearSolid, FitsIntoBuffersOfShortIndices) {
    EXPECT_LE(solid.positions.size(), 65536u);
    EXPECT_EQ(solid.normals.size(), solid.positions.size());
    ASSERT_EQ(solid.indices.size() % 3, 0u);
    for (const unsigned short index : solid.indices)
        ASSERT_LT(index, solid.positions.size());
}

TEST_P(GearSolid, IsClosed) {
    using Key = std::array<float, 3>;
    const auto key = [this](unsigned short index) {
        const glm::vec3& p = solid.positions[index];
        return Key{p.x, p.y, p.z};
    };
    std::map<std::pair<Key, Key>, int> edges; // along one way more often than along the other
    forEachTriangle([&](unsigned short a, unsigned short b, unsigned short c) {
        for (const auto& [from, to] : {std::pair(a, b), std::pair(b, c), std::pair(c, a)}) {
            ++edges[{key(from), key(to)}];
            --edges[{key(to), key(from)}];
        }
    });
    for (const auto& [edge, surplus] : edges)
        ASSERT_EQ(surplus, 0) << edge.first[0] << ", " << edge.first[1] << ", " << edge.first[2];
}

TEST_P(GearSolid, HasTrianglesThatFaceOutwardsWithTheirNormals) {
    double volume = 0.0;
    forEachTriangle([&](unsigned short a, unsigned short b, unsigned short c) {
        const glm::dvec3 across = glm::cross(position(b) - position(a), position(c) - position(a));
        ASSERT_GT(glm::length(across), 1e-6) << "a triangle without area";
        for (const unsigned short corner : {a, b, c}) {
            const glm::dvec3 normal = solid.normals[corner];
            ASSERT_NEAR(glm::length(normal), 1.0, 1e-4);
            ASSERT_GT(glm::dot(normal, glm::normalize(across)), 0.9) << corner;
        }
        volume += glm::dot(position(a), glm::cross(position(b), position(c))) / 6.0;
    });
    const double disc =
        double{gears::pi} * teeth * teeth / 4.0 * 2.0 * double{gears::halfThickness};
    EXPECT_GT(volume, 0.3 * disc);
    EXPECT_LT(volume, disc);
}

TEST_P(GearSolid, HasABore) {
    double nearest = std::numeric_limits<double>::max();
    for (const glm::vec3& point : solid.positions)
        nearest = std::min(nearest, double{glm::length(glm::vec2(point))});
    EXPECT_NEAR(nearest, double{gears::boreRadius(teeth)}, 1e-4);
}

} // namespace

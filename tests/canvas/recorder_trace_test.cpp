/// The records and the commands that a recorder makes of calls.

#include "canvas/recorder.hpp"

#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/special_numbers.hpp"

namespace {

using namespace vellis;
using namespace vellis::canvas;
using test::nan;
using Numbers = std::vector<float>;

const glm::vec4 white(1.f);
const glm::vec4 half(1.f, 1.f, 1.f, 0.5f);

/// Room for a number of bytes in each arena, which draws all there is where they are full; or as
/// much as is asked for.
class TestRoom final : public Room {
public:
    TestRoom(Drawing& drawing, std::size_t size) : drawing_(drawing), size_(size) {}

    void make(std::size_t arena, std::size_t numBytes) override {
        Arena& full = drawing_.arenas[arena];
        if (size_ == 0) {
            full.bytes.resize(full.used + numBytes);
        } else if (full.bytes.empty()) {
            full.bytes.resize(size_);
        } else {
            drawn.push_back({drawing_.commands, full.used});
            drawing_.clear();
        }
    }
    glm::vec2 viewportSize() override { return {200.f, 100.f}; }

    /// What was drawn for room.
    struct Drawn {
        std::vector<Command> commands;
        std::size_t used;
    };
    std::vector<Drawn> drawn;

private:
    Drawing& drawing_;
    std::size_t size_;
};

class RecorderTrace : public testing::Test {
protected:
    void strip(Shape shape, const Stroke& stroke, const Points& points,
               const Colors* colors = nullptr) {
        recorder.stroke(shape, stroke, points, colors, setting);
    }

    /// The records of a kind: each its place, what else it has, and its colour's alpha.
    template <class AnyRecord>
    std::vector<AnyRecord> records(Kind kind, unsigned int dimensions) const {
        const Arena& arena = drawing.arenas[arenaOf(kind, dimensions)];
        std::vector<AnyRecord> result(arena.used / sizeof(AnyRecord));
        if (!result.empty())
            std::memcpy(result.data(), arena.bytes.data(), arena.used);
        return result;
    }
    auto strokeRecords() const { return records<StrokeRecord<2>>(Kind::Strip, 2); }

    /// The first coordinates and the half widths of the records of a stroke.
    Numbers places() const {
        Numbers result;
        for (const auto& record : strokeRecords())
            result.push_back(record.position[0]);
        return result;
    }
    Numbers halfWidths() const {
        Numbers result;
        for (const auto& record : strokeRecords())
            result.push_back(record.halfWidth);
        return result;
    }
    Numbers phases() const {
        Numbers result;
        for (const auto& record : strokeRecords())
            result.push_back(record.phase);
        return result;
    }

    static std::vector<glm::vec2> alongX(const Numbers& numbers) {
        std::vector<glm::vec2> points;
        for (const float number : numbers)
            points.emplace_back(number, 0.f);
        return points;
    }

    Drawing drawing;
    TestRoom room{drawing, 0};
    Recorder recorder{drawing, room, true}; // each record once
    Setting setting;
};

// --- Strokes ---

TEST_F(RecorderTrace, StrokeRecordsAreTheseBytes) {
    const std::vector<glm::vec3> points = {{1.f, 2.f, 3.f}, {4.f, 5.f, 6.f}};
    const glm::vec4 color(2.f, 0.5f, -1.f, nan);
    strip(Shape::LineStrip, {color, 3.f}, points);
    const Arena& arena = drawing.arenas[arenaOf(Kind::Strip, 3)];
    const auto record = [](const glm::vec3& at, float halfWidth) {
        std::string bytes(24, '\0');
        const float numbers[] = {at.x, at.y, at.z, 0.f, halfWidth};
        std::memcpy(&bytes[0], numbers, sizeof numbers);
        const unsigned char red[] = {255, 128, 0, 0};
        std::memcpy(&bytes[20], red, sizeof red);
        return bytes;
    };
    const std::string expected = record(points[0], 0.f) + record(points[0], 1.5f) +
                                 record(points[1], 1.5f) + record(points[1], 0.f);
    EXPECT_EQ(std::string(arena.bytes.begin(), arena.bytes.begin() + std::ptrdiff_t(arena.used)),
              expected);
    EXPECT_EQ(arena.count, 4u);
}

TEST_F(RecorderTrace, OpenLineHasItsEndsTwice) {
    strip(Shape::LineStrip, {white, 2.f}, alongX({1, 2, 4}));
    EXPECT_EQ(places(), Numbers({1, 1, 2, 4, 4}));
    EXPECT_EQ(halfWidths(), Numbers({0, 1, 1, 1, 0}));
    ASSERT_EQ(drawing.commands.size(), 1u);
    EXPECT_EQ(drawing.commands[0].count, 5u);
}

TEST_F(RecorderTrace, ClosedLineHasItsNeighboursAtBothEnds) {
    strip(Shape::LineLoop, {white, 2.f}, alongX({1, 2, 4}));
    EXPECT_EQ(places(), Numbers({4, 1, 2, 4, 1, 2}));
    EXPECT_EQ(halfWidths(), Numbers({0, 1, 1, 1, 0, 0}));
}

TEST_F(RecorderTrace, LoopOfTwoPointsGoesThereAndBack) {
    strip(Shape::LineLoop, {white, 2.f}, alongX({1, 2}));
    EXPECT_EQ(places(), Numbers({2, 1, 2, 1, 2}));
}

TEST_F(RecorderTrace, PointsThatRepeatAreLeftOut) {
    strip(Shape::LineStrip, {white, 2.f}, alongX({1, 1, 2, 2, 2, 3, 3}));
    EXPECT_EQ(places(), Numbers({1, 1, 2, 3, 3}));
    drawing.clear();
    strip(Shape::LineLoop, {white, 2.f}, alongX({1, 1, 2, 3, 3, 1, 1}));
    EXPECT_EQ(places(), Numbers({3, 1, 2, 3, 1, 2}));
}

TEST_F(RecorderTrace, PointThatIsNotFiniteEndsALineAndTheNextBeginsAnother) {
    for (const float bad : {nan, INFINITY, -INFINITY}) {
        drawing.clear();
        strip(Shape::LineStrip, {white, 2.f}, alongX({1, 2, bad, 4, 5, bad, bad, 7}));
        EXPECT_EQ(places(), Numbers({1, 1, 2, 2, 4, 4, 5, 5}));
        EXPECT_EQ(halfWidths(), Numbers({0, 1, 1, 0, 0, 1, 1, 0}));
    }
}

TEST_F(RecorderTrace, LoopWithAGapIsOpenAndBeginsBehindIt) {
    strip(Shape::LineLoop, {white, 2.f}, alongX({1, 2, nan, 4, 5}));
    EXPECT_EQ(places(), Numbers({4, 4, 5, 1, 2, 2}));
    EXPECT_EQ(halfWidths(), Numbers({0, 1, 1, 1, 1, 0}));
}

TEST_F(RecorderTrace, OnePointIsADotWhereCapsAreRound) {
    for (const auto cap : {Stroke::Cap::Butt, Stroke::Cap::Square, Stroke::Cap::Round}) {
        for (const Shape shape : {Shape::LineStrip, Shape::LineLoop, Shape::Lines}) {
            drawing.clear();
            Stroke stroke(white, 6.f);
            stroke.cap = cap;
            strip(shape, stroke, alongX({3, 3}));
            const auto discs = records<Disc<2>>(Kind::Discs, 2);
            EXPECT_EQ(strokeRecords().size(), 0u);
            ASSERT_EQ(discs.size(), cap == Stroke::Cap::Round ? 1u : 0u);
            EXPECT_EQ(drawing.commands.size(), discs.size());
            if (!discs.empty()) {
                EXPECT_EQ(discs[0].position[0], 3.f);
                EXPECT_EQ(discs[0].radius, 3.f);
            }
        }
    }
}

TEST_F(RecorderTrace, DotsBetweenGapsKeepTheirPlaceInTheOrder) {
    Stroke stroke(white, 6.f);
    stroke.cap = Stroke::Cap::Round;
    strip(Shape::LineStrip, stroke, alongX({1, 2, nan, 4, nan, 5, 6}));
    ASSERT_EQ(drawing.commands.size(), 3u);
    EXPECT_EQ(drawing.commands[0].kind, Kind::Strip);
    EXPECT_EQ(drawing.commands[1].kind, Kind::Discs);
    EXPECT_EQ(drawing.commands[2].kind, Kind::Strip);
    EXPECT_EQ(drawing.commands[2].first, 4u);
}

TEST_F(RecorderTrace, LinesAreTwoRecordsEachAndTheOddPointIsLeftOut) {
    const std::vector<glm::vec2> points = {{1, 0}, {2, 0}, {3, 0}, {nan, 0},
                                           {5, 0}, {6, 0}, {7, 0}};
    strip(Shape::Lines, {white, 2.f}, points);
    const auto lines = records<StrokeRecord<2>>(Kind::Segments, 2);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].position[0], 1.f);
    EXPECT_EQ(lines[0].halfWidth, 1.f);
    EXPECT_EQ(lines[1].position[0], 2.f);
    EXPECT_EQ(lines[2].position[0], 5.f);
    EXPECT_EQ(lines[3].position[0], 6.f);
    EXPECT_EQ(drawing.commands[0].count, 2u);
}

TEST_F(RecorderTrace, WidthsThatAreNoneDrawNothing) {
    for (const float width : {0.f, -1.f, nan, INFINITY}) {
        for (const Shape shape : {Shape::Lines, Shape::LineStrip, Shape::LineLoop})
            strip(shape, {white, width}, alongX({1, 2, 3}));
    }
    EXPECT_EQ(drawing.commands.size(), 0u);
}

TEST_F(RecorderTrace, ColorsAreOneForEachPointAndTheLastOneIsRepeated) {
    const std::vector<glm::vec4> list = {{0, 0, 0, 1}, {1, 0, 0, 1}};
    const Colors colors(list);
    strip(Shape::LineStrip, {white, 2.f}, alongX({1, 2, 3}), &colors);
    const auto stroke = strokeRecords();
    ASSERT_EQ(stroke.size(), 5u);
    const int reds[] = {0, 0, 255, 255, 255};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(stroke[i].color.r, reds[i]) << i;
    EXPECT_TRUE(drawing.looks[0].style.isGradient);
}

TEST_F(RecorderTrace, AliasedLinesAreCornersWithoutThosePastAGap) {
    const Stroke stroke = Stroke::aliased(white);
    const auto cornersOf = [&](Shape shape, const Numbers& numbers) {
        drawing.clear();
        strip(shape, stroke, alongX(numbers));
        Numbers result;
        for (const auto& corner : records<canvas::Corner<2>>(Kind::Lines, 2))
            result.push_back(corner.position[0]);
        return result;
    };
    EXPECT_EQ(cornersOf(Shape::LineStrip, {1, 2, nan, 4, 5}), Numbers({1, 2, 4, 5}));
    EXPECT_EQ(cornersOf(Shape::LineLoop, {1, 2, 3}), Numbers({1, 2, 2, 3, 3, 1}));
    EXPECT_EQ(cornersOf(Shape::LineLoop, {nan, 2, 3}), Numbers({2, 3}));
    EXPECT_EQ(cornersOf(Shape::LineLoop, {1}), Numbers());
    EXPECT_EQ(cornersOf(Shape::Lines, {1, 2, 3, nan, 5, 6, 7}), Numbers({1, 2, 5, 6}));
}

TEST_F(RecorderTrace, RecordsStandOnceForEachVertexWithoutInstances) {
    Recorder copying(drawing, room, false);
    copying.stroke(Shape::LineStrip, {white, 2.f}, alongX({1, 2}), nullptr, setting);
    EXPECT_EQ(places(), Numbers({1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2}));
    EXPECT_EQ(drawing.commands[0].count, 4u);
    copying.discs(white, 4.f, alongX({1}), setting);
    EXPECT_EQ(records<Disc<2>>(Kind::Discs, 2).size(), 3u);
}

// --- Dashes ---

TEST_F(RecorderTrace, PhaseRunsAlongTheLineInPixels) {
    // A unit is 100 pixels; the pattern has 50.
    const Stroke stroke = Stroke(white, 2.f).dashed({{30.f, 20.f}}, 10.f);
    strip(Shape::LineStrip, stroke, alongX({0.f, 0.25f, 0.25f, 1.f}));
    const Numbers expected = {0.f, 10.f, 35.f, 10.f, 0.f};
    const Numbers measured = phases();
    ASSERT_EQ(measured.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(measured[i], expected[i], 1e-4f) << i;
    EXPECT_EQ(drawing.looks[0].style.dashScale, glm::vec2(100.f, 50.f));
}

TEST_F(RecorderTrace, PhaseBeginsAnewBehindAGapAndForEachLine) {
    const Stroke stroke = Stroke(white, 2.f).dashed({{30.f, 20.f}}, 10.f);
    strip(Shape::LineStrip, stroke, alongX({0.f, 0.25f, nan, 0.5f, 0.75f}));
    const Numbers measured = phases();
    ASSERT_EQ(measured.size(), 8u);
    EXPECT_NEAR(measured[5], 10.f, 1e-4f);
    EXPECT_NEAR(measured[6], 35.f, 1e-4f);
    strip(Shape::Lines, stroke, alongX({0.f, 0.25f, 0.5f, 0.75f}));
    const auto lines = records<StrokeRecord<2>>(Kind::Segments, 2);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_NEAR(lines[0].phase, 10.f, 1e-4f);
    EXPECT_NEAR(lines[2].phase, 10.f, 1e-4f);
}

TEST_F(RecorderTrace, DashedLoopIsOpenUnlessADashGoesOnThroughItsEnds) {
    const std::vector<glm::vec2> square = {{0, 0}, {0.5f, 0}, {0.5f, 1.f}, {0, 1.f}}; // 200 pixels
    strip(Shape::LineLoop, Stroke(white, 2.f).dashed({{30.f, 20.f}}), square);
    EXPECT_EQ(strokeRecords().size(), 7u); // four pieces, with ends; the phase is 0 at both
    EXPECT_EQ(strokeRecords()[0].position[1], 1.f);
    drawing.clear();
    strip(Shape::LineLoop, Stroke(white, 2.f).dashed({{30.f, 30.f}}, 35.f), square);
    EXPECT_EQ(strokeRecords()[0].position[1], 0.f); // its own first point: an end
}

// --- Areas and points ---

TEST_F(RecorderTrace, TrianglesOfEachShapeHaveTheseCorners) {
    const auto cornersOf = [&](Shape shape, const Numbers& numbers) {
        drawing.clear();
        recorder.area(shape, white, alongX(numbers), setting);
        Numbers result;
        for (const auto& corner : records<canvas::Corner<2>>(Kind::Triangles, 2))
            result.push_back(corner.position[0]);
        return result;
    };
    EXPECT_EQ(cornersOf(Shape::Triangles, {1, 2, 3, 4, 5}), Numbers({1, 2, 3}));
    EXPECT_EQ(cornersOf(Shape::TriangleFan, {1, 2, 3, 4}), Numbers({1, 2, 3, 1, 3, 4}));
    EXPECT_EQ(cornersOf(Shape::TriangleStrip, {1, 2, 3, 4, 5}),
              Numbers({1, 2, 3, 3, 2, 4, 3, 4, 5}));
    EXPECT_EQ(cornersOf(Shape::Quads, {1, 2, 3, 4, 5, 6, 7}), Numbers({1, 2, 3, 1, 3, 4}));
    EXPECT_EQ(cornersOf(Shape::Triangles, {1, 2, nan, 4, 5, 6}), Numbers({4, 5, 6}));
    EXPECT_EQ(cornersOf(Shape::TriangleFan, {1, 2, nan, 4, 5}), Numbers({1, 4, 5}));
}

TEST_F(RecorderTrace, SizesAreOneForEachPointAndTheLastOneIsRepeated) {
    const Numbers sizes = {2.f, 0.f, -1.f, nan, INFINITY, 8.f};
    recorder.discs(white, sizes, alongX({1, 2, 3, 4, 5, 6, nan, 8}), setting);
    const auto discs = records<Disc<2>>(Kind::Discs, 2);
    ASSERT_EQ(discs.size(), 3u);
    EXPECT_EQ(discs[0].radius, 1.f);
    EXPECT_EQ(discs[1].radius, 4.f);
    EXPECT_EQ(discs[2].position[0], 8.f);
    EXPECT_EQ(discs[2].radius, 4.f);
}

TEST_F(RecorderTrace, BullseyesAreThreeDiscsEach) {
    recorder.bullseyes(white, half, 10.f, alongX({1, 2}), setting);
    const auto discs = records<Disc<2>>(Kind::Discs, 2);
    ASSERT_EQ(discs.size(), 6u);
    const float radii[] = {5.f, 3.5f, 1.5f};
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(discs[i].position[0], float(1 + i / 3)) << i;
        EXPECT_FLOAT_EQ(discs[i].radius, radii[i % 3]) << i;
        EXPECT_EQ(discs[i].color.a, i % 3 == 1 ? 128 : 255) << i;
    }
}

// --- Commands ---

TEST_F(RecorderTrace, HalfTransparentStrokesOfOneColorPaintOnce) {
    const std::vector<glm::vec4> list = {half};
    const Colors colors(list);
    strip(Shape::LineStrip, {half, 2.f}, alongX({1, 5, 3}));
    strip(Shape::LineStrip, {half, 2.f}, alongX({1, 2})); // does not cross itself
    strip(Shape::LineStrip, {half, 2.f}, alongX({1, 2, 3}), &colors);
    strip(Shape::LineStrip, {white, 2.f}, alongX({1, 2, 3}));
    strip(Shape::Lines, {half, 2.f}, alongX({1, 2, 3, 4}));
    setting.paintsOnce = false;
    strip(Shape::LineStrip, {half, 2.f}, alongX({1, 2, 3}));
    std::vector<bool> once;
    for (const Command& command : drawing.commands)
        once.push_back(drawing.looks[command.look].paintsOnce);
    EXPECT_EQ(once, std::vector<bool>({true, false, false, false, false, false}));
    const Overlap& overlap = drawing.looks[drawing.commands[0].look].overlap;
    EXPECT_EQ(overlap.lowest.x, 1.f);
    EXPECT_EQ(overlap.highest.x, 5.f);
    EXPECT_GE(overlap.reach, 10.f); // the miter limit
}

TEST_F(RecorderTrace, StrokesThatPaintOnceAreACommandEach) {
    strip(Shape::LineStrip, {half, 2.f}, alongX({1, 2, 3}));
    strip(Shape::LineStrip, {half, 2.f}, alongX({1, 2, 3}));
    EXPECT_EQ(drawing.commands.size(), 2u);
    EXPECT_NE(drawing.commands[0].look, drawing.commands[1].look);
}

TEST(RecorderRoomTrace, FullRoomIsDrawnAndTheLastThreeRecordsStandAgain) {
    for (const std::size_t numRecords : {4u, 5u, 6u, 7u}) {
        Drawing drawing;
        TestRoom room(drawing, numRecords * sizeof(StrokeRecord<2>) + Record::slack);
        Recorder recorder(drawing, room, true);
        std::vector<glm::vec2> points;
        for (int i = 0; i < 20; ++i)
            points.emplace_back(float(i), 0.f);
        recorder.stroke(Shape::LineStrip, {white, 2.f}, points, nullptr, Setting());
        std::size_t numPieces = 0;
        for (const auto& [commands, used] : room.drawn) {
            ASSERT_EQ(commands.size(), 1u);
            EXPECT_EQ(commands[0].count, numRecords);
            EXPECT_EQ(used, numRecords * sizeof(StrokeRecord<2>));
            numPieces += numRecords - 3;
        }
        ASSERT_EQ(drawing.commands.size(), 1u);
        EXPECT_EQ(drawing.commands[0].first, 0u);
        numPieces += drawing.commands[0].count - 3;
        EXPECT_EQ(numPieces, 19u);
    }
}

TEST(RecorderRoomTrace, StrokeThatPaintsOnceGoesOnInTheNextDrawing) {
    Drawing drawing;
    TestRoom room(drawing, 5 * sizeof(StrokeRecord<2>) + Record::slack);
    Recorder recorder(drawing, room, true);
    const std::vector<glm::vec2> points = {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}};
    recorder.stroke(Shape::LineStrip, {half, 2.f}, points, nullptr, Setting());
    ASSERT_EQ(room.drawn.size(), 2u);
    EXPECT_FALSE(room.drawn[0].commands[0].continuesOverlap);
    EXPECT_FALSE(room.drawn[0].commands[0].endsOverlap);
    EXPECT_TRUE(room.drawn[1].commands[0].continuesOverlap);
    EXPECT_FALSE(room.drawn[1].commands[0].endsOverlap);
    EXPECT_TRUE(drawing.commands[0].continuesOverlap);
    EXPECT_TRUE(drawing.commands[0].endsOverlap);
}

TEST_F(RecorderTrace, StrokeThatGetsMoreRoomIsOneCommand) {
    strip(Shape::LineStrip, {half, 2.f}, alongX(Numbers{1, 2, 3, 4, 5, 6, 7}));
    ASSERT_EQ(drawing.commands.size(), 1u);
    EXPECT_FALSE(drawing.commands[0].continuesOverlap);
    EXPECT_TRUE(drawing.commands[0].endsOverlap);
}

TEST(RecorderRoomTrace, TriangleThatDoesNotFitStandsAgainAsAWhole) {
    Drawing drawing;
    TestRoom room(drawing, 4 * sizeof(canvas::Corner<2>) + Record::slack);
    Recorder recorder(drawing, room, true);
    const std::vector<glm::vec2> points = {{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}};
    recorder.area(Shape::Triangles, white, points, Setting());
    ASSERT_EQ(room.drawn.size(), 1u);
    EXPECT_EQ(drawing.commands[0].count, 3u);
    canvas::Corner<2> corners[3];
    std::memcpy(corners, drawing.arenas[0].bytes.data(), sizeof corners);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(corners[i].position[0], float(4 + i));
}

// --- Without memory ---

/// Room that grows record by record, and has none after a number of them.
class ScarceRoom final : public Room {
public:
    explicit ScarceRoom(Drawing& drawing) : drawing_(drawing) {}

    void make(std::size_t arena, std::size_t numBytes) override {
        if (numLeft == 0)
            throw std::bad_alloc();
        --numLeft;
        drawing_.arenas[arena].bytes.resize(drawing_.arenas[arena].used + numBytes);
    }
    glm::vec2 viewportSize() override { return {200.f, 100.f}; }

    std::size_t numLeft = 1000;

private:
    Drawing& drawing_;
};

/// Makes a call that runs out of memory between two that do not.
/// \return how many records the commands have, one after the other.
template <class Call>
std::vector<std::size_t> countsAroundFailure(Call call) {
    Drawing drawing;
    ScarceRoom room(drawing);
    Recorder recorder(drawing, room, true);
    call(recorder);
    room.numLeft = 2;
    EXPECT_THROW(call(recorder), std::bad_alloc);
    room.numLeft = 1000;
    call(recorder);
    std::vector<std::size_t> counts;
    std::size_t first = 0;
    for (const Command& command : drawing.commands) {
        EXPECT_EQ(command.first, first);
        EXPECT_TRUE(command.endsOverlap);
        EXPECT_FALSE(command.continuesOverlap);
        counts.push_back(command.count);
        first += command.count;
    }
    return counts;
}

TEST(RecorderMemoryTrace, CallDoesNotAddToOneThatRanOutOfMemory) {
    std::vector<glm::vec2> points;
    for (int i = 0; i < 99; ++i)
        points.emplace_back(float(i), 0.f);
    const auto expectWhole = [](const std::vector<std::size_t>& counts, std::size_t whole,
                                std::size_t numCommands) {
        ASSERT_EQ(counts.size(), numCommands);
        EXPECT_EQ(counts.back(), whole);
        EXPECT_LT(counts[numCommands - 2], 2 * whole);
    };
    expectWhole(countsAroundFailure([&](Recorder& recorder) {
                    recorder.area(Shape::Triangles, white, points, Setting());
                }),
                99, 2);
    expectWhole(countsAroundFailure([&](Recorder& recorder) {
                    recorder.stroke(Shape::LineStrip, {white, 2.f}, points, nullptr, Setting());
                }),
                101, 2);
    expectWhole(countsAroundFailure([&](Recorder& recorder) {
                    recorder.stroke(Shape::LineStrip, {half, 2.f}, points, nullptr, Setting());
                }),
                101, 3);
}

} // namespace

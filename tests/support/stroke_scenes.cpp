#include "support/stroke_scenes.hpp"

#include <cmath>
#include <cstdint>

namespace vellis::test {
namespace {

using Points = std::vector<glm::dvec2>;

constexpr double pi = 3.14159265358979323846;

/// A curve that crosses itself, x and y as sines of angles that go at their own rates.
Points curve(int count, double xRate, double yRate, double radius) {
    Points points;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * pi * i / count;
        points.emplace_back(128 + radius * std::sin(xRate * angle + 0.3),
                            128 + radius * std::sin(yRate * angle));
    }
    return points;
}

Points circle(int count, double radius) {
    Points points;
    for (int i = 0; i < count; ++i)
        points.emplace_back(128 + radius * std::cos(2 * pi * i / count),
                            128 + radius * std::sin(2 * pi * i / count));
    return points;
}

/// Two segments that turn by an angle, from a point on.
Points turn(double x, double y, double degrees) {
    const double angle = degrees * pi / 180;
    const glm::dvec2 middle(x + 40, y + 7.3);
    return {
        {x, y}, middle, middle + 41.0 * glm::dvec2(std::cos(angle + 0.18), std::sin(angle + 0.18))};
}

/// Turns by small, right and large angles, to both sides.
std::vector<Stroke> turns(double width, StrokeJoin join, StrokeCap cap) {
    static const struct {
        double x, y, degrees;
    } table[] = {{20, 20, 25},   {120, 20, 60},    {20, 110, 90},   {160, 110, 130},
                 {20, 190, -45}, {110, 220, -100}, {190, 215, -160}};
    std::vector<Stroke> strokes;
    for (const auto& row : table)
        strokes.push_back({turn(row.x, row.y, row.degrees), width, join, cap});
    return strokes;
}

/// Single segments in many directions, from circle to circle.
std::vector<Stroke> rays(double width, StrokeCap cap) {
    std::vector<Stroke> strokes;
    for (int i = 0; i != 15; ++i) {
        const double angle = 0.05 + 2 * pi * i / 15;
        const glm::dvec2 direction(std::cos(angle), std::sin(angle));
        const glm::dvec2 middle(128.2, 127.6);
        strokes.push_back({{middle + 55.0 * direction, middle + 110.0 * direction},
                           width,
                           StrokeJoin::Miter,
                           cap});
    }
    return strokes;
}

Stroke translucent(Stroke stroke) {
    stroke.opacity = 0.5;
    return stroke;
}

Stroke closed(Stroke stroke) {
    stroke.closed = true;
    return stroke;
}

Stroke dashed(Stroke stroke, std::vector<double> dashes, double offset) {
    stroke.dashes = std::move(dashes);
    stroke.dashOffset = offset;
    return stroke;
}

const Points zigzag = {{15, 30},   {60, 200}, {80, 35},   {130, 220}, {128, 40},
                       {180, 120}, {185, 30}, {200, 230}, {240, 25}};
const Points backAndForth = {{30.5, 40.2}, {200.5, 60.2}, {90.5, 47.258823529411765}};
const Points collinear = {{20, 50.3}, {60, 70.3}, {100, 90.3}, {180, 130.3}, {240, 160.3}};
const Points repeated = {{30, 30},   {30, 30},    {100, 200}, {100, 200},
                         {100, 200}, {170, 40.5}, {230, 200}, {230, 200}};
const Points triangle = {{40.5, 40.5}, {215.5, 70.5}, {100.5, 210.5}};
const Points box = {{50, 60}, {200, 60}, {200, 190}, {50, 190}};

/// A generator that gives the same numbers everywhere.
class Random {
public:
    explicit Random(std::uint32_t seed) : state_(seed * 2654435761U + 12345U) {}

    /// From 0 to below 1.
    double next() {
        state_ ^= state_ << 13U;
        state_ ^= state_ >> 17U;
        state_ ^= state_ << 5U;
        return state_ / 4294967296.0;
    }

    double between(double low, double high) { return low + (high - low) * next(); }
    int below(int end) { return static_cast<int>(end * next()); }

private:
    std::uint32_t state_;
};

std::vector<StrokeScene> makeScenes() {
    using Join = StrokeJoin;
    using Cap = StrokeCap;
    return {
        {"hairline_0.5", {{curve(60, 1, 2, 100), 0.5, Join::Miter, Cap::Butt}}},
        {"thin_zigzag_1", {{zigzag, 1, Join::Miter, Cap::Butt}}},
        {"thin_rays_1.5", rays(1.5, Cap::Butt)},
        {"rays_butt_5", rays(5, Cap::Butt)},
        {"rays_square_7", rays(7, Cap::Square)},
        {"rays_round_9", rays(9, Cap::Round)},
        {"turns_miter_6", turns(6, Join::Miter, Cap::Square)},
        {"turns_round_12", turns(12, Join::Round, Cap::Round)},
        {"turns_bevel_9", turns(9, Join::Bevel, Cap::Butt)},
        {"zigzag_miter_4", {{zigzag, 4, Join::Miter, Cap::Square}}},
        {"zigzag_round_3", {{zigzag, 3, Join::Round, Cap::Round}}},
        {"back_and_forth_12", {{backAndForth, 12, Join::Round, Cap::Butt}}},
        {"collinear_8", {{collinear, 8, Join::Miter, Cap::Butt}}},
        {"repeated_11", {{repeated, 11, Join::Bevel, Cap::Round}}},
        {"short_pieces_20", {{curve(150, 1, 1.25, 90), 20, Join::Round, Cap::Round}}},
        {"loops_3", {closed({curve(160, 1, 2, 105), 3, Join::Miter, Cap::Butt})}},
        {"triangle_miter_14", {closed({triangle, 14, Join::Miter, Cap::Butt})}},
        {"translucent_box_10", {translucent(closed({box, 10, Join::Miter, Cap::Butt}))}},
        {"translucent_zigzag_7", {translucent({zigzag, 7, Join::Round, Cap::Round})}},
        {"translucent_ring_9", {translucent(closed({circle(24, 90), 9, Join::Round, Cap::Butt}))}},
        {"translucent_ring_1", {translucent(closed({circle(90, 100), 1, Join::Miter, Cap::Butt}))}},
        {"translucent_short_pieces_24",
         {translucent(closed({circle(250, 60), 24, Join::Bevel, Cap::Butt}))}},
        {"translucent_loops_5",
         {translucent({curve(120, 2, 3, 100), 5, Join::Round, Cap::Butt})},
         true},
        {"dashed_butt_6", {dashed({curve(90, 1, 1, 100), 6, Join::Round, Cap::Butt}, {12, 7}, 3)}},
        {"dashed_round_5",
         {dashed({curve(100, 1, 2, 100), 5, Join::Round, Cap::Round}, {14, 9, 0, 9}, 0)}},
        {"dashed_square_4",
         {dashed(closed({triangle, 4, Join::Miter, Cap::Square}), {16, 10, 3, 10}, 21)}},
        {"dashed_thin_2", {dashed({zigzag, 2, Join::Miter, Cap::Butt}, {6, 3, 2, 3}, 0)}},
    };
}

} // namespace

const std::vector<StrokeScene>& strokeScenes() {
    static const std::vector<StrokeScene> scenes = makeScenes();
    return scenes;
}

Stroke randomStroke(unsigned int seed) {
    Random random(seed + 1);
    random.next();
    Stroke stroke;
    for (int count = 3 + random.below(10); count != 0; --count) {
        const double x = random.between(20, 236);
        stroke.points.emplace_back(x, random.between(20, 236));
    }
    stroke.width = random.between(0.5, 20);
    stroke.join = static_cast<StrokeJoin>(random.below(3));
    stroke.cap = static_cast<StrokeCap>(random.below(3));
    stroke.closed = random.below(4) == 0;
    for (int pairs = random.below(3) == 0 ? 1 + random.below(4) : 0; pairs != 0; --pairs) {
        stroke.dashes.push_back(random.between(2, 30));
        stroke.dashes.push_back(random.between(4, 30) + stroke.width);
    }
    stroke.dashOffset = random.between(0, 40);
    return stroke;
}

} // namespace vellis::test

/// Panels of the Toolbox's points, bullseyes and dashes, in 2D and in 3D.

#include <algorithm>
#include <cmath>
#include <random>

#include <glm/geometric.hpp>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/view.hpp>
#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using vellis::Drawable;
using vellis::Toolbox;
using namespace palette;

/// Points around a centre, many near it and few far off; the same ones on any system.
std::vector<glm::vec2> makeCluster(const glm::vec2& centre, const glm::vec2& spread,
                                   unsigned int seed) {
    std::mt19937 random(seed);
    const auto number = [&] { return (static_cast<float>(random() >> 8) + 0.5f) / 16777216.0f; };
    std::vector<glm::vec2> points;
    for (unsigned int i = 0; i < 60; ++i) {
        const float radius = std::sqrt(-2.0f * std::log(number()));
        points.push_back(centre + spread * onCircle(2.0f * pi * number(), radius));
    }
    return points;
}

/// A scatter plot of three clusters.
void drawScatterPlot(const Canvas& canvas) {
    struct Cluster {
        Color color;
        glm::vec2 centre;
        glm::vec2 spread;
    };
    const Cluster clusters[] = {{teal, {-0.36f, -0.34f}, {0.17f, 0.15f}},
                                {coral, {0.3f, 0.42f}, {0.2f, 0.14f}},
                                {navy, {0.42f, -0.4f}, {0.13f, 0.13f}}};
    Drawable::setLineWidth(canvas.length(1.25f));
    Toolbox::drawLineStrip(toRgba(ink), {{-0.84f, 0.84f}, {-0.84f, -0.84f}, {0.84f, -0.84f}},
                           flatView);
    unsigned int seed = 7;
    for (const Cluster& cluster : clusters) {
        const auto points = makeCluster(cluster.centre, cluster.spread, seed++);
        Toolbox::drawPoints(toRgba(cluster.color, 0.7f), canvas.length(9.0f), sizeOf(points),
                            points.data(), flatView);
    }
}

/// The Plough in the night sky.
void drawConstellation(const Canvas& canvas) {
    const glm::vec2 stars[] = {{-0.74f, 0.06f}, {-0.46f, 0.3f},  {-0.22f, 0.24f}, {0.08f, 0.1f},
                               {0.16f, -0.3f},  {0.62f, -0.36f}, {0.68f, 0.14f},  {0.08f, 0.1f}};
    const auto dust = makeCluster({0.0f, 0.0f}, {0.42f, 0.36f}, 3);
    Toolbox::drawRect(toRgba(navy), {-0.9f, -0.9f}, {0.9f, 0.9f}, flatView);
    Toolbox::drawPoints(toRgba(paper, 0.5f), canvas.length(2.5f), 40, dust.data(), flatView);
    Drawable::setLineWidth(canvas.length(1.5f));
    Toolbox::drawLineStrip(toRgba(blue), 8, stars, flatView);
    Toolbox::drawBullseyes(toRgba(sand), toRgba(navy), canvas.length(24.0f), 7, stars, flatView);
}

/// Orbits of different dashes around the sun.
void drawOrbits(const Canvas& canvas) {
    struct Orbit {
        Color color;
        float radius;
        float dash;
        float gap;
        float planet;
    };
    const Orbit orbits[] = {{coral, 0.27f, 0.015f, 0.03f, 0.9f},
                            {plum, 0.42f, 0.05f, 0.05f, 3.4f},
                            {teal, 0.57f, 0.1f, 0.04f, 5.2f},
                            {blue, 0.72f, 0.16f, 0.08f, 2.0f},
                            {navy, 0.87f, 0.3f, 0.06f, 0.25f}};
    Drawable::setLineWidth(canvas.length(1.75f));
    for (const Orbit& orbit : orbits) {
        const auto points = alongCurve(
            85, [&](float t) { return onCircle(2.0f * pi * t + orbit.planet, orbit.radius); });
        Toolbox::drawDashLineStrip(toRgba(orbit.color), orbit.dash, orbit.gap, sizeOf(points),
                                   points.data(), flatView);
        Toolbox::drawPoints(toRgba(orbit.color), canvas.length(10.0f), {points.front()}, flatView);
    }
    Toolbox::drawBullseyes(toRgba(sand), toRgba(orange), canvas.length(15.0f), {{0.0f, 0.0f}},
                           flatView);
}

/// A spiral from pole to pole of a ball; what is far away is smaller and paler.
void drawSpiralOnBall(const Canvas& canvas) {
    constexpr unsigned int count = 260;
    constexpr float goldenAngle = 2.39996323f;
    const std::vector<Color> colors = {navy, blue, teal, sand, orange, coral};
    std::vector<glm::vec3> points;
    for (unsigned int i = 0; i < count; ++i) {
        const float height = 1.0f - 2.0f * (static_cast<float>(i) + 0.5f) / count;
        const glm::vec2 ring =
            onCircle(goldenAngle * static_cast<float>(i), std::sqrt(1.0f - height * height));
        points.emplace_back(ring.x, height, ring.y);
    }
    const glm::vec3 eye(0.0f, 1.4f, 4.4f);
    const glm::mat4 view = viewFrom(eye);
    const auto distance = [&](const glm::vec3& point) { return glm::distance(eye, point); };
    std::sort(points.begin(), points.end(),
              [&](const glm::vec3& a, const glm::vec3& b) { return distance(a) > distance(b); });
    for (const glm::vec3& point : points) {
        const float nearness = 0.5f * (glm::length(eye) + 1.0f - distance(point));
        const glm::vec3 color = blend(colors, 0.5f + 0.5f * point.y);
        const glm::vec3 seen = glm::mix(toVector(paper), color, 0.2f + 0.8f * nearness);
        Toolbox::drawPoints(glm::vec4(seen, 1.0f), canvas.length(4.0f + 6.0f * nearness), {point},
                            view);
    }
}

/// Values on stems over a grid.
void drawStems(const Canvas& canvas) {
    constexpr int stems = 13;
    const glm::mat4 view = viewFrom({1.1f, 3.2f, 4.2f}, {0.0f, 0.36f, 0.0f});
    Drawable::setLineWidth(canvas.length(1.25f));
    for (int i = -4; i <= 4; ++i) {
        const float at = 0.25f * static_cast<float>(i);
        Toolbox::drawLines(
            toRgba(frame),
            {{at, 0.0f, -1.0f}, {at, 0.0f, 1.0f}, {-1.0f, 0.0f, at}, {1.0f, 0.0f, at}}, view);
    }
    const auto tops = aroundCurve(stems, [](float t) {
        const glm::vec2 at = onCircle(2.0f * pi * t + 1.0f, 0.75f);
        return glm::vec3(at.x, 0.2f + 0.95f * t, at.y);
    });
    Drawable::setLineWidth(canvas.length(1.5f));
    for (const glm::vec3& top : tops)
        Toolbox::drawLines(toRgba(blue), {glm::vec3(top.x, 0.0f, top.z), top}, view);
    Toolbox::drawBullseyes(toRgba(coral), toRgba(paper), canvas.length(18.0f), sizeOf(tops),
                           tops.data(), view);
}

/// A house whose hidden edges are dashed.
void drawHouse(const Canvas& canvas) {
    const glm::mat4 view = viewFrom({2.3f, 1.5f, 3.9f}, {0.0f, -0.02f, 0.0f});
    const auto corner = [](float x, float y, float z) {
        return glm::vec3(0.82f * x, y, 0.56f * z);
    };
    constexpr float ground = -0.72f;
    constexpr float eaves = 0.14f;
    const glm::vec3 ridgeLeft = corner(-1.0f, 0.74f, 0.0f);
    const glm::vec3 ridgeRight = corner(1.0f, 0.74f, 0.0f);
    const glm::vec3 front[] = {corner(-1.0f, ground, 1.0f), corner(1.0f, ground, 1.0f),
                               corner(1.0f, eaves, 1.0f), corner(-1.0f, eaves, 1.0f)};
    const glm::vec3 back[] = {corner(-1.0f, ground, -1.0f), corner(1.0f, ground, -1.0f),
                              corner(1.0f, eaves, -1.0f), corner(-1.0f, eaves, -1.0f)};
    Drawable::setLineWidth(canvas.length(1.5f));
    const glm::vec4 hidden = toRgba(coral);
    Toolbox::drawDashLineStrip(hidden, 0.06f, 0.05f, {back[0], back[1]}, view);
    Toolbox::drawDashLineStrip(hidden, 0.06f, 0.05f, {back[0], front[0]}, view);
    Toolbox::drawDashLineStrip(hidden, 0.06f, 0.05f, {back[0], back[3], ridgeLeft}, view);
    Toolbox::drawDashLineStrip(hidden, 0.06f, 0.05f, {back[3], back[2]}, view);
    const glm::vec4 visible = toRgba(navy);
    Drawable::setLineWidth(canvas.length(2.0f));
    Toolbox::drawLineLoop(visible, 4, front, view);
    Toolbox::drawLineStrip(visible, {front[1], back[1], back[2], ridgeRight, front[2]}, view);
    Toolbox::drawLineStrip(visible, {ridgeRight, ridgeLeft, front[3]}, view);
    const glm::vec3 door[] = {corner(-0.15f, ground, 1.0f), corner(-0.15f, -0.16f, 1.0f),
                              corner(0.25f, -0.16f, 1.0f), corner(0.25f, ground, 1.0f)};
    Toolbox::drawLineStrip(visible, 4, door, view);
}

} // namespace

std::vector<Panel> toolboxMarkPanels() {
    return {
        {"points-2d",
         "points 2D",
         4,
         drawScatterPlot,
         {
             ColorAt{{100, 100}, {236, 152, 130}},
             ColorAt{{123, 100}, {236, 152, 130}},
             ColorAt{{60, 165}, paper},
             ColorAt{{60, 186}, {104, 185, 173}},
             ColorAt{{60, 160}, {104, 185, 173}},
             ColorAt{{60, 60}, paper},
             ColorAt{{130, 200}, paper},
             EdgeBetween{{110, 100}, {122, 100}, paper, {236, 152, 130}},
             widthBetween({92, 100}, {110, 100}, 8, 10),
             EdgeBetween{{60, 195}, {60, 186}, paper, {104, 185, 173}},
         }},
        {"bullseyes-2d",
         "bullseyes 2D",
         2,
         drawConstellation,
         {
             ColorAt{{60, 75}, sand},
             ColorAt{{60, 80}, navy},
             ColorAt{{30, 220}, navy},
             ColorAt{{6, 6}, paper},
             ColorAt{{45, 100}, blue},
             EdgeBetween{{5, 200}, {20, 200}, paper, navy},
             EdgeBetween{{60, 60}, {60, 74}, navy, sand},
             MixedBetween{{60, 72}, {60, 96}, sand, navy, 2, 10},
         }},
        {"dashes-2d",
         "dashed lines 2D",
         4,
         drawOrbits,
         {
             ColorAt{{222, 100}, navy, 16},
             ColorAt{{60, 86}, teal},
             ColorAt{{36, 150}, paper},
             ColorAt{{135, 100}, paper},
             ColorAt{{12, 12}, paper},
             ColorAt{{120, 120}, sand},
             EdgeBetween{{210, 100}, {222, 100}, paper, navy, 16},
             EdgeBetween{{176, 100}, {185, 100}, paper, teal},
         }},
        {"points-3d",
         "points 3D",
         4,
         drawSpiralOnBall,
         {
             ColorAt{{108, 100}, {241, 179, 104}},
             ColorAt{{60, 158}, {124, 179, 141}},
             ColorAt{{89, 100}, paper},
             ColorAt{{12, 12}, paper},
             ColorAt{{60, 220}, paper},
             widthBetween({104, 100}, {116, 100}, 7, 9),
             EdgeBetween{{60, 165}, {60, 158}, paper, {124, 179, 141}},
             EdgeBetween{{60, 210}, {60, 197}, paper, {135, 163, 182}},
         }},
        {"bullseyes-3d",
         "bullseyes 3D",
         2,
         drawStems,
         {
             ColorAt{{60, 83}, coral, 14},
             ColorAt{{60, 93}, coral, 14},
             ColorAt{{67, 100}, blue},
             ColorAt{{115, 100}, blue},
             ColorAt{{104, 40}, paper},
             ColorAt{{20, 20}, paper},
             ColorAt{{220, 220}, paper},
             widthBetween({125, 100}, {155, 100}, 2, 4),
             MixedBetween{{60, 80}, {60, 96}, coral, paper, 4, 12},
         }},
        {"dashes-3d",
         "dashed lines 3D",
         4,
         drawHouse,
         {
             ColorAt{{28, 100}, navy},
             ColorAt{{60, 114}, navy},
             ColorAt{{188, 100}, coral},
             ColorAt{{192, 100}, paper}, // between two dashes
             ColorAt{{120, 100}, paper},
             ColorAt{{20, 20}, paper},
             ColorAt{{220, 220}, paper},
             EdgeBetween{{20, 100}, {28, 100}, paper, navy},
             EdgeBetween{{60, 105}, {60, 114}, paper, navy},
             EdgeBetween{{60, 155}, {60, 164}, paper, coral},
         }},
    };
}

} // namespace gallery

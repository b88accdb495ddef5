/// Panels of what a canvas draws in large numbers: points, maps, plots, wireframes, pictures,
/// areas.

#include <random>
#include <utility>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/panel_canvas.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/view.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using namespace palette;
using vellis::Stroke;

/// Numbers from 0 to 1, the same ones on any system.
class Noise {
public:
    float next() { return static_cast<float>(random_() >> 8) / 16777216.0f; }

    /// About 0, most of them within 1.
    float nextError() { return next() + next() + next() + next() - 2.0f; }

private:
    std::mt19937 random_{5};
};

// --- A map ---

/// The coast of an island, at an angle around its middle.
glm::vec2 coastAt(float angle) {
    const float radius = 84.0f + 14.0f * std::sin(2.0f * angle + 0.7f) +
                         8.0f * std::sin(5.0f * angle + 2.0f) +
                         3.5f * std::sin(11.0f * angle + 1.0f) + 1.6f * std::sin(23.0f * angle) +
                         0.9f * std::sin(47.0f * angle + 0.4f);
    return glm::vec2(120.0f, 118.0f) + onCircle(angle, radius);
}

/// A river from a spring to the coast.
std::vector<glm::vec2> river(const glm::vec2& spring, float mouthAngle) {
    const glm::vec2 way = coastAt(mouthAngle) - spring;
    const glm::vec2 aside(-way.y, way.x);
    return alongCurve(60, [&](float t) {
        const float bend = 0.11f * std::sin(7.0f * t) * std::sin(pi * t) +
                           0.03f * std::sin(31.0f * t) * std::sin(pi * t);
        return spring + t * way + bend * aside;
    });
}

/// An island with rivers, borders and towns.
void drawMap(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    canvas->drawRect(toRgba(sky), {0.0f, 0.0f}, {240.0f, 240.0f});
    for (float at = 30.5f; at < 240.0f; at += 60.0f) {
        const Stroke grid = Stroke(toRgba(blue, 0.6f)).dashed({{4.0f, 3.0f}});
        canvas->drawLineStrip(grid, {{at, 0.0f}, {at, 240.0f}});
        canvas->drawLineStrip(grid, {{0.0f, at}, {240.0f, at}});
    }
    const auto coast = aroundCurve(720, [](float t) { return coastAt(2.0f * pi * t); });
    std::vector<glm::vec2> land = {{120.0f, 118.0f}};
    land.insert(land.end(), coast.begin(), coast.end());
    land.push_back(coast.front());
    canvas->drawLineLoop(Stroke(toRgba(paper, 0.5f), 10.0f), coast);
    canvas->drawTriangleFan(toRgba(sheet), land);

    Stroke water(toRgba(blue), 2.5f);
    water.join = Stroke::Join::Round;
    water.cap = Stroke::Cap::Round;
    canvas->drawLineStrip(water, river({104.0f, 96.0f}, 0.35f));
    water.width = 1.75f;
    canvas->drawLineStrip(water, river({86.0f, 128.0f}, 1.9f));
    canvas->drawLineStrip(water, river({122.0f, 80.0f}, -2.0f));
    Stroke border = Stroke(toRgba(plum), 1.75f).dashed({{8.0f, 3.0f}, {1.5f, 3.0f}});
    canvas->drawLineStrip(border, river(coastAt(2.7f), -0.55f));
    canvas->drawLineLoop(Stroke(toRgba(ink), 1.25f), coast);

    const std::vector<glm::vec2> towns = {
        {92.0f, 76.0f}, {158.0f, 116.0f}, {120.0f, 168.0f}, {74.0f, 152.0f}, {168.0f, 146.0f}};
    canvas->drawPoints(toRgba(ink), std::vector<float>{6.0f, 4.5f, 6.0f, 4.5f, 3.5f}, towns);
    canvas->drawBullseyes(toRgba(coral), toRgba(paper), 13.0f, {{140.0f, 134.0f}});
}

/// A signal of 100,000 samples.
void drawLargePlot(const Canvas& surface) {
    constexpr unsigned int count = 100000;
    const PanelCanvas canvas(surface);
    for (float at = 40.5f; at < 220.0f; at += 40.0f) {
        const Stroke grid = Stroke(toRgba(frame)).dashed({{4.0f, 4.0f}});
        canvas->drawLineStrip(grid, {{20.0f, at}, {224.0f, at}});
        canvas->drawLineStrip(grid, {{at + 20.0f, 20.0f}, {at + 20.0f, 220.0f}});
    }
    Noise noise;
    float drift = 0.0f;
    const auto signal = alongCurve(count, [&](float t) {
        drift = 0.9998f * drift + 0.12f * noise.nextError();
        return glm::vec2(20.5f + 200.0f * t,
                         120.0f - 42.0f * std::sin(9.0f * t) - drift - 6.0f * noise.nextError());
    });
    canvas->drawLineStrip(Stroke(toRgba(teal)), signal);
    canvas->drawLineStrip(Stroke(toRgba(ink), 2.0f),
                          {{20.0f, 16.0f}, {20.0f, 220.0f}, {228.0f, 220.0f}});
}

// --- Space ---

/// A point of a ball, from 0 to 1 around it and from its north pole to the south pole.
glm::vec3 onBall(float around, float down) {
    const glm::vec2 ring = onCircle(2.0f * pi * around, std::sin(pi * down));
    return {ring.x, std::cos(pi * down), ring.y};
}

/// The faces of the ball, between lines that are \p count around it.
std::vector<glm::vec3> ballTriangles(int count) {
    std::vector<glm::vec3> triangles;
    const std::pair<int, int> corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}};
    const float step = 1.0f / static_cast<float>(count);
    for (int row = 0; row < count; ++row) {
        for (int column = 0; column < count; ++column) {
            for (const auto& [right, down] : corners) {
                triangles.push_back(onBall(step * static_cast<float>(column + right),
                                           step * static_cast<float>(row + down)));
            }
        }
    }
    return triangles;
}

/// The lines of the ball, coloured by their height.
void drawBallLines(vellis::Canvas& canvas) {
    const Stroke stroke(toRgba(ink), 1.75f);
    const auto draw = [&](const std::vector<glm::vec3>& line) {
        std::vector<glm::vec4> colors;
        for (const glm::vec3& point : line)
            colors.push_back(blendRgba({navy, teal, sand, coral}, 0.5f - 0.5f * point.y));
        canvas.drawLineStrip(stroke, line, colors);
    };
    for (int i = 0; i < 24; ++i)
        draw(alongCurve(49, [&](float t) { return onBall(static_cast<float>(i) / 24.0f, t); }));
    for (int i = 1; i < 12; ++i)
        draw(alongCurve(49, [&](float t) { return onBall(t, static_cast<float>(i) / 12.0f); }));
}

/// A ball of lines, which the near plane has opened, over a ground that begins behind the eye; what
/// is near hides what is far.
void drawWireframe(const Canvas& surface) {
    using vellis::Framebuffer;
    const glm::vec3 eye(0.0f, 1.3f, 4.6f);
    const glm::mat4 view = glm::perspective(glm::radians(30.0f), 1.0f, 4.05f, 100.0f) *
                           glm::lookAt(eye, {0.0f, -0.1f, 0.0f}, {0.0f, 1.0f, 0.0f});
    const PanelCanvas canvas(surface, view);
    Framebuffer::enableDepthTest(Framebuffer::FragmentComparator::LEQUAL);
    glEnable(GL_POLYGON_OFFSET_FILL); // faces are a little behind the lines on them
    glPolygonOffset(2.0f, 8.0f);
    canvas->drawTriangles(toRgba(sky), ballTriangles(48));
    canvas->flush();
    glDisable(GL_POLYGON_OFFSET_FILL);
    std::vector<glm::vec3> ground;
    for (int i = -16; i <= 16; ++i) {
        const float at = 0.25f * static_cast<float>(i);
        ground.insert(ground.end(), {{at, -1.0f, 8.0f}, {at, -1.0f, -4.0f}});
        ground.insert(ground.end(), {{-4.0f, -1.0f, at}, {4.0f, -1.0f, at}});
    }
    canvas->drawLines(Stroke(toRgba(frame), 1.25f), ground);
    drawBallLines(*canvas);
    canvas->drawPoints(toRgba(coral), 9.0f, {glm::vec3(0.0f, 1.02f, 0.0f)});
}

} // namespace

std::vector<Panel> canvasScenePanels() {
    return {
        {"canvas-map",
         "a map",
         1,
         drawMap,
         {
             ColorAt{{10, 10}, sky}, ColorAt{{10, 50}, sky}, ColorAt{{150, 80}, sheet},
             ColorAt{{60, 60}, sheet}, ColorAt{{120, 168}, ink}, ColorAt{{74, 152}, ink},
             ColorAt{{140, 134}, coral, 14}, ColorAt{{140, 137}, paper, 14},
             EdgeBetween{{120, 156}, {120, 168}, sheet, ink},
             MixedBetween{{60, 152}, {88, 152}, sheet, sheet, 4, 6},   // a town
             MixedBetween{{140, 105}, {140, 122}, sheet, sheet, 2, 5}, // a river
         }},
        {"canvas-plot",
         "100,000 samples",
         1,
         drawLargePlot,
         {
             ColorAt{{20, 100}, ink},
             ColorAt{{120, 220}, ink},
             ColorAt{{60, 80}, teal},
             ColorAt{{125, 160}, teal},
             ColorAt{{110, 110}, paper},
             ColorAt{{120, 30}, paper},
             ColorAt{{234, 230}, paper},
             MixedBetween{{186, 200}, {217, 200}, paper, paper, 16, 20}, // dashes
             widthBetween({10, 190}, {30, 190}, 2),
             widthBetween({165, 232}, {165, 205}, 2),
             EdgeBetween{{125, 140}, {125, 160}, paper, teal},
         }},
        {"canvas-wireframe",
         "a wireframe",
         1,
         drawWireframe,
         {
             ColorAt{{120, 12}, coral}, ColorAt{{130, 82}, sky}, ColorAt{{110, 140}, sky},
             ColorAt{{10, 10}, paper}, ColorAt{{230, 40}, paper},
             EdgeBetween{{120, 4}, {120, 12}, paper, coral},
             MixedBetween{{104, 82}, {136, 82}, sky, sky, 2, 4},   // a line inside of the ball
             MixedBetween{{110, 185}, {110, 200}, sky, sky, 3, 8}, // two outside of it
             widthBetween({20, 202}, {20, 214}, 1, 3),             // one of the ground
         }},
    };
}

} // namespace gallery

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

/// Points of many sizes, with one colour each, and bullseyes.
void drawMarks(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> rainbow = {navy, blue, teal, sand, orange, coral, plum};
    std::vector<glm::vec2> points;
    std::vector<float> sizes;
    std::vector<glm::vec4> colors;
    float x = 8.0f;
    for (const float size :
         {0.5f, 1.0f, 1.5f, 2.0f, 3.0f, 5.0f, 8.0f, 12.0f, 18.0f, 26.0f, 40.0f}) {
        x += size / 2.0f + 4.0f;
        points.emplace_back(x, 36.0f);
        sizes.push_back(size);
        colors.push_back(blendRgba(rainbow, x / 220.0f));
        x += size / 2.0f + 4.0f;
    }
    for (int i = 0; i < 400; ++i) { // a sunflower's seeds
        const auto number = static_cast<float>(i) + 0.5f;
        points.push_back(glm::vec2(86.0f, 150.0f) +
                         onCircle(2.39996323f * number, 3.5f * std::sqrt(number)));
        sizes.push_back(1.5f + 0.012f * number);
        colors.push_back(blendRgba(rainbow, number / 400.0f));
    }
    canvas->drawPoints(colors, sizes, points);
    float y = 86.0f;
    for (const float size : {9.0f, 14.0f, 22.0f, 34.0f, 48.0f}) {
        canvas->drawBullseyes(toRgba(coral), toRgba(paper), size, {{198.0f, y}});
        y += size + 6.0f;
    }
}

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

// --- Pictures ---

/// A wheel with spokes and a marked rim, as high as 2.
void recordWheel(vellis::Canvas& canvas) {
    const auto rim = aroundCurve(64, [](float t) { return onCircle(2.0f * pi * t); });
    canvas.drawTriangleFan(toRgba(sand), rim);
    std::vector<glm::vec2> spokes;
    for (int i = 0; i < 7; ++i) {
        spokes.push_back(glm::vec2(0.0f));
        spokes.push_back(onCircle(2.0f * pi * static_cast<float>(i) / 7.0f));
    }
    canvas.drawLines(Stroke(toRgba(navy), 1.5f), spokes);
    canvas.drawLineLoop(Stroke(toRgba(ink), 2.5f), rim);
    canvas.drawBullseyes(toRgba(coral), toRgba(paper), 9.0f, {onCircle(0.45f, 0.62f)});
}

/// One picture of a wheel, turned and scaled; its lines keep their widths.
void drawPictures(const Canvas& surface) {
    const auto recorder = vellis::Canvas::make();
    recorder->setPixelRatio(surface.length(1.0f));
    recorder->beginPicture(panelPixels);
    recordWheel(*recorder);
    const auto wheel = recorder->endPicture();

    const PanelCanvas canvas(surface);
    const auto drawAt = [&](const glm::vec2& at, float angle, const glm::vec2& size) {
        const glm::mat4 place = glm::translate(glm::mat4(1.0f), glm::vec3(at, 0.0f));
        const glm::mat4 turned = glm::rotate(place, angle, glm::vec3(0.0f, 0.0f, 1.0f));
        canvas->setTransform(glm::scale(turned, glm::vec3(size, 1.0f)));
        canvas->drawPicture(wheel);
    };
    for (int i = 0; i < 9; ++i) {
        const auto number = static_cast<float>(i);
        const glm::vec2 at = glm::vec2(120.0f) + onCircle(0.62f * number - 1.9f, 86.0f);
        drawAt(at, 0.7f * number, glm::vec2(9.0f + 2.0f * number));
    }
    drawAt({120.0f, 120.0f}, -0.4f, {48.0f, 30.0f});
}

/// Areas with a colour for each point.
void drawColoredAreas(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> around = {coral, sand, teal, blue, plum, coral};
    std::vector<glm::vec2> ring;
    std::vector<glm::vec4> colors;
    for (int i = 0; i <= 90; ++i) {
        const float t = static_cast<float>(i) / 90.0f;
        const glm::vec4 color = blendRgba(around, t);
        for (const float radius : {34.0f, 62.0f}) {
            ring.push_back(glm::vec2(76.0f, 76.0f) + onCircle(2.0f * pi * t, radius));
            colors.push_back(radius > 40.0f ? color : glm::mix(color, glm::vec4(1.0f), 0.65f));
        }
    }
    canvas->drawTriangleStrip(colors, ring);
    canvas->drawQuad(
        std::vector<glm::vec4>{toRgba(navy), toRgba(teal), toRgba(sand), toRgba(coral)},
        {{158.0f, 18.0f}, {226.0f, 18.0f}, {226.0f, 132.0f}, {158.0f, 132.0f}});
    const auto hexagon = aroundCurve(
        6, [](float t) { return glm::vec2(56.0f, 188.0f) + onCircle(2.0f * pi * t, 40.0f); });
    std::vector<glm::vec2> fan = {{56.0f, 188.0f}};
    fan.insert(fan.end(), hexagon.begin(), hexagon.end());
    fan.push_back(hexagon.front());
    std::vector<glm::vec4> fanColors = {toRgba(paper)};
    for (int i = 0; i <= 6; ++i)
        fanColors.push_back(toRgba(i % 2 == 0 ? plum : orange));
    canvas->drawTriangleFan(fanColors, fan);
    canvas->drawQuad(toRgba(sky), Stroke(toRgba(navy), 4.0f),
                     {{118.0f, 158.0f}, {160.0f, 148.0f}, {168.0f, 226.0f}, {112.0f, 220.0f}});
    canvas->drawTriangles(std::vector<glm::vec4>{toRgba(coral), toRgba(coral, 0.0f), toRgba(coral)},
                          {{182.0f, 226.0f}, {204.0f, 148.0f}, {228.0f, 226.0f}});
}

} // namespace

std::vector<Panel> canvasScenePanels() {
    return {
        {"canvas-marks", "points, bullseyes", 1, drawMarks, {}},
        {"canvas-map", "a map", 1, drawMap, {}},
        {"canvas-plot", "100,000 samples", 1, drawLargePlot, {}},
        {"canvas-wireframe", "a wireframe", 1, drawWireframe, {}},
        {"canvas-pictures", "pictures", 1, drawPictures, {}},
        {"canvas-areas", "areas", 4, drawColoredAreas, {}},
    };
}

} // namespace gallery

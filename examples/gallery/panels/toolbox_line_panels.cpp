/// Panels of the Toolbox's lines, in 2D and in 3D.

#include <cmath>
#include <utility>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/mesh.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/view.hpp>
#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using vellis::Drawable;
using vellis::Toolbox;
using namespace palette;

/// Chords of a circle, each to twice the angle of its begin; a cardioid touches all of them.
void drawChords(const Canvas& canvas) {
    constexpr unsigned int count = 132;
    const std::vector<Color> colors = {navy, blue, teal, sand, coral, plum, navy};
    Drawable::setLineWidth(canvas.length(0.75f));
    for (unsigned int i = 1; i < count; ++i) {
        const float at = static_cast<float>(i) / count;
        const float angle = 2.0f * pi * at + pi;
        Toolbox::drawLines(blendRgba(colors, at),
                           {onCircle(angle, 0.88f), onCircle(2.0f * angle - pi, 0.88f)}, flatView);
    }
}

/// Oscillations that fade away, over two axes.
void drawWaves(const Canvas& canvas) {
    struct Wave {
        Color color;
        float delay;
    };
    const Wave waves[] = {{sand, 0.5f}, {teal, 0.25f}, {coral, 0.0f}};
    Drawable::setLineWidth(canvas.length(1.25f));
    Toolbox::drawLineStrip(toRgba(ink), {{-0.84f, 0.84f}, {-0.84f, -0.84f}, {0.84f, -0.84f}},
                           flatView);
    Drawable::setLineWidth(canvas.length(2.25f));
    for (const Wave& wave : waves) {
        const auto points = alongCurve(120, [&](float t) {
            const float phase = 2.0f * pi * (3.0f * t - wave.delay);
            return glm::vec2(-0.84f + 1.68f * t, 0.76f * std::exp(-2.2f * t) * std::cos(phase));
        });
        Toolbox::drawLineStrip(toRgba(wave.color), sizeOf(points), points.data(), flatView);
    }
}

/// Roses of five petals inside of each other.
void drawRoses(const Canvas& canvas) {
    constexpr unsigned int count = 7;
    const std::vector<Color> colors = {plum, coral, orange, sand};
    Drawable::setLineWidth(canvas.length(1.5f));
    for (unsigned int i = 0; i < count; ++i) {
        const float at = static_cast<float>(i) / (count - 1);
        const auto points = aroundCurve(128, [&](float t) {
            const float radius = 0.88f * (1.0f - 0.72f * at) * std::cos(5.0f * pi * t);
            return onCircle(pi * (t + 0.5f), radius);
        });
        Toolbox::drawLineLoop(blendRgba(colors, at), sizeOf(points), points.data(), flatView);
    }
}

/// A hyperboloid of straight lines between two rings.
void drawHyperboloid(const Canvas& canvas) {
    constexpr unsigned int count = 42;
    const glm::mat4 view = viewFrom({0.0f, 1.6f, 4.8f}, {0.0f, -0.04f, 0.0f});
    const auto onRing = [](float angle, float height) {
        const glm::vec2 at = onCircle(angle, 0.82f);
        return glm::vec3(at.x, height, at.y);
    };
    Drawable::setLineWidth(canvas.length(1.0f));
    for (const float twist : {2.1f, -2.1f}) {
        std::vector<glm::vec3> ends;
        for (unsigned int i = 0; i < count; ++i) {
            const float angle = 2.0f * pi * static_cast<float>(i) / count;
            ends.push_back(onRing(angle, -0.86f));
            ends.push_back(onRing(angle + twist, 0.86f));
        }
        Toolbox::drawLines(toRgba(twist > 0.0f ? coral : navy), sizeOf(ends), ends.data(), view);
    }
}

/// Two strands around each other, joined by rungs; what is far away is paler.
void drawDoubleHelix(const Canvas& canvas) {
    constexpr unsigned int pieces = 120;
    constexpr unsigned int rungs = 21;
    const auto onStrand = [](float t, float start) {
        const glm::vec2 at = onCircle(4.0f * pi * t + start, 0.4f);
        return glm::vec3(at.x, 1.9f * t - 0.95f, at.y);
    };
    const glm::mat4 view = viewFrom({0.0f, 0.7f, 4.4f}) *
                           glm::rotate(glm::mat4(1.0f), -0.42f, glm::vec3(0.0f, 0.0f, 1.0f));
    glEnable(GL_DEPTH_TEST);
    Drawable::setLineWidth(canvas.length(1.5f));
    for (unsigned int i = 0; i < rungs; ++i) {
        const float at = (static_cast<float>(i) + 0.5f) / rungs;
        const glm::vec3 begin = onStrand(at, 0.0f);
        const glm::vec3 end = onStrand(at, pi);
        Toolbox::drawLineStrip(toRgba(sand), {begin, 0.5f * (begin + end)}, view);
        Toolbox::drawLineStrip(toRgba(teal), {0.5f * (begin + end), end}, view);
    }
    Drawable::setLineWidth(canvas.length(2.5f));
    for (const float start : {0.0f, pi}) {
        const std::vector<Color> colors = {start > 0.0f ? blue : orange,
                                           start > 0.0f ? navy : coral};
        const auto points = alongCurve(pieces + 1, [&](float t) { return onStrand(t, start); });
        const auto buffer = makeBuffer(points);
        for (unsigned int i = 0; i < pieces; ++i) {
            const float nearness = 0.5f + points[i].z / 0.8f;
            Toolbox::drawLineStrip(blendRgba(colors, nearness), i, 2, buffer, view);
        }
    }
}

/// Three orbits around a nucleus.
void drawAtom(const Canvas& canvas) {
    const glm::mat4 view = viewFrom({0.0f, 0.0f, 4.6f});
    const auto orbit = aroundCurve(80, [](float t) {
        const glm::vec2 at = onCircle(2.0f * pi * t, 1.04f);
        return glm::vec3(at.x, 0.0f, at.y);
    });
    const auto plane = [&](float turn) {
        const glm::mat4 turned = glm::rotate(view, turn, glm::vec3(0.0f, 0.0f, 1.0f));
        return glm::rotate(turned, 0.36f, glm::vec3(1.0f, 0.0f, 0.0f));
    };
    const std::pair<Color, glm::mat4> orbits[] = {{teal, plane(pi / 2.0f)},
                                                  {navy, plane(7.0f * pi / 6.0f)},
                                                  {plum, plane(11.0f * pi / 6.0f)}};
    Drawable::setLineWidth(canvas.length(2.0f));
    for (const auto& [color, mvp] : orbits)
        Toolbox::drawLineLoop(toRgba(color), sizeOf(orbit), orbit.data(), mvp);
    for (const auto& [color, mvp] : orbits)
        Toolbox::drawPoints(toRgba(color), canvas.length(12.0f), {orbit[27]}, mvp);
    Toolbox::drawPoints(toRgba(coral), canvas.length(14.0f),
                        {{-0.05f, 0.05f, 0.0f}, {0.06f, -0.04f, 0.0f}}, view);
    Toolbox::drawPoints(toRgba(orange), canvas.length(14.0f),
                        {{0.06f, 0.07f, 0.0f}, {-0.05f, -0.07f, 0.0f}}, view);
}

} // namespace

std::vector<Panel> toolboxLinePanels() {
    return {
        {"lines-2d",
         "lines 2D",
         4,
         drawChords,
         {
             ColorAt{{60, 155}, {239, 197, 138}, 16},
             ColorAt{{60, 80}, paper}, // between two chords
             ColorAt{{12, 12}, paper},
             ColorAt{{228, 228}, paper},
             widthBetween({60, 50}, {60, 190}, 20, 42),
             widthBetween({8, 120}, {20, 120}, 4, 9),
         }},
        {"line-strip-2d",
         "line strips 2D",
         4,
         drawWaves,
         {
             ColorAt{{60, 76}, sand},
             ColorAt{{60, 163}, coral},
             ColorAt{{49, 100}, teal},
             ColorAt{{100, 30}, paper},
             ColorAt{{200, 180}, paper},
             widthBetween({100, 210}, {100, 230}, 2, 3),
             EdgeBetween{{42, 100}, {49, 100}, paper, teal},
             widthBetween({20, 100}, {24, 100}, 3, 4),
         }},
        {"line-loop-2d",
         "line loops 2D",
         4,
         drawRoses,
         {
             ColorAt{{60, 88}, plum},
             ColorAt{{72, 100}, orange},
             ColorAt{{120, 120}, sand, 20},
             ColorAt{{50, 100}, paper},
             ColorAt{{105, 100}, paper},
             ColorAt{{20, 200}, paper},
             widthBetween({20, 100}, {34, 100}, 3, 5),
             EdgeBetween{{60, 78}, {60, 88}, paper, plum},
         }},
        {"lines-3d",
         "lines 3D",
         4,
         drawHyperboloid,
         {
             ColorAt{{60, 65}, navy},
             ColorAt{{60, 120}, paper},
             ColorAt{{180, 120}, paper},
             ColorAt{{120, 12}, paper},
             widthBetween({80, 100}, {160, 100}, 45, 75),
             EdgeBetween{{60, 75}, {60, 66}, paper, navy},
         }},
        {"line-strip-3d",
         "line strips 3D",
         4,
         drawDoubleHelix,
         {
             ColorAt{{128, 100}, coral, 16},
             ColorAt{{123, 100}, teal},
             ColorAt{{60, 175}, {63, 112, 145}, 16},
             ColorAt{{30, 60}, paper},
             ColorAt{{200, 200}, paper},
             ColorAt{{110, 100}, paper},
             EdgeBetween{{112, 100}, {123, 100}, paper, teal},
             EdgeBetween{{60, 165}, {60, 175}, paper, {63, 112, 145}, 16},
         }},
        {"line-loop-3d",
         "line loops 3D",
         4,
         drawAtom,
         {
             ColorAt{{114, 115}, coral},
             ColorAt{{126, 112}, orange},
             ColorAt{{30, 100}, plum},
             ColorAt{{91, 100}, teal},
             ColorAt{{60, 120}, paper},
             ColorAt{{20, 20}, paper},
             EdgeBetween{{20, 100}, {30, 100}, paper, plum},
             EdgeBetween{{80, 100}, {91, 100}, paper, teal},
             EdgeBetween{{60, 115}, {60, 106}, paper, navy},
         }},
    };
}

} // namespace gallery

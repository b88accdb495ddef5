/// Panels of the Toolbox's fans, strips, rectangles and quads.

#include <algorithm>
#include <array>
#include <cmath>

#include <glm/geometric.hpp>

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

/// A star of ten facets.
void drawStar(const Canvas&) {
    constexpr unsigned int corners = 10;
    std::vector<glm::vec2> points = {{0.0f, -0.06f}};
    for (unsigned int i = 0; i <= corners; ++i) {
        const float angle = pi * (0.5f + 0.2f * static_cast<float>(i));
        points.push_back(points.front() + onCircle(angle, i % 2 == 0 ? 0.92f : 0.37f));
    }
    Toolbox::drawTriangleFan(toRgba(sand), sizeOf(points), points.data(), flatView);
    for (unsigned int i = 1; i < corners; i += 2)
        Toolbox::drawTriangleFan(toRgba(orange), {points[0], points[i], points[i + 1]}, flatView);
}

/// Mountains behind each other, and the sun.
void drawRidges(const Canvas&) {
    struct Ridge {
        Color color;
        float height;
        float phase;
    };
    const Ridge ridges[] = {
        {orange, 0.24f, 0.4f}, {coral, 0.0f, 2.3f}, {plum, -0.26f, 4.4f}, {navy, -0.54f, 0.9f}};
    const auto sun = aroundCurve(
        64, [](float t) { return glm::vec2(0.34f, 0.5f) + onCircle(2.0f * pi * t, 0.2f); });
    Toolbox::drawTriangleFan(toRgba(sand), sizeOf(sun), sun.data(), flatView);
    for (const Ridge& ridge : ridges) {
        std::vector<glm::vec2> points;
        for (const float t : alongCurve(60, [](float at) { return at; })) {
            const float x = -0.86f + 1.72f * t;
            const float top = ridge.height + 0.13f * std::sin(4.2f * x + ridge.phase) +
                              0.05f * std::sin(9.0f * x + 2.0f * ridge.phase);
            points.emplace_back(x, -0.84f);
            points.emplace_back(x, top);
        }
        Toolbox::drawTriangleStrip(toRgba(ridge.color), sizeOf(points), points.data(), flatView);
    }
}

/// A bar chart.
void drawBars(const Canvas&) {
    const float heights[] = {0.34f, 0.62f, 0.5f, 0.94f, 1.26f, 1.08f, 1.5f};
    const std::vector<Color> colors = {teal, blue, navy};
    float left = -0.8f;
    for (const float height : heights) {
        Toolbox::drawRect(blendRgba(colors, height / 1.5f), {left, -0.78f},
                          {left + 0.16f, -0.78f + height}, flatView);
        left += 0.24f;
    }
    Toolbox::drawRect(toRgba(ink), {-0.86f, -0.8f}, {0.86f, -0.78f}, flatView);
}

/// How bright a surface is that looks along \p normal.
float brightness(const glm::vec3& normal) {
    return 0.72f + 0.3f * glm::dot(glm::normalize(normal), glm::vec3(-0.42f, 0.64f, 0.64f));
}

glm::vec4 lit(const glm::vec3& color, float light) {
    return {color * light, 1.0f};
}

/// An open umbrella of eight segments, each a fan from the top.
void drawParasol(const Canvas& canvas) {
    constexpr unsigned int segments = 8;
    const glm::mat4 view = viewFrom({0.0f, 1.5f, 4.4f}) *
                           glm::rotate(glm::mat4(1.0f), -0.3f, glm::vec3(0.0f, 0.0f, 1.0f));
    const glm::vec3 top(0.0f, 0.72f, 0.0f);
    glEnable(GL_DEPTH_TEST);
    for (unsigned int i = 0; i < segments; ++i) {
        std::vector<glm::vec3> points = alongCurve(13, [&](float t) {
            const float angle = 2.0f * pi * (static_cast<float>(i) + t) / segments;
            const float scallop = 0.16f * t * (1.0f - t);
            const glm::vec2 at = onCircle(angle, 1.02f - scallop);
            return glm::vec3(at.x, 0.1f + scallop, at.y);
        });
        const glm::vec3 normal = glm::cross(points.back() - top, points.front() - top);
        points.insert(points.begin(), top);
        const glm::vec3 color = toVector(i % 2 == 0 ? coral : sand);
        Toolbox::drawTriangleFan(lit(color, brightness(normal)), sizeOf(points), points.data(),
                                 view);
    }
    const auto hook = alongCurve(16, [](float t) {
        const glm::vec2 at = onCircle(pi * (1.0f + t), 0.12f);
        return glm::vec3(0.12f + at.x, -0.82f + at.y, 0.0f);
    });
    Drawable::setLineWidth(canvas.length(2.5f));
    Toolbox::drawLines(toRgba(ink), {glm::vec3(0.0f, 0.86f, 0.0f), hook.front()}, view);
    Toolbox::drawLineStrip(toRgba(ink), sizeOf(hook), hook.data(), view);
}

/// A band with a single side.
void drawMoebiusBand(const Canvas&) {
    constexpr unsigned int pieces = 180;
    const std::vector<Color> colors = {teal, blue, plum, coral, sand, teal};
    std::vector<glm::vec3> points;
    for (unsigned int i = 0; i <= pieces; ++i) {
        const float angle = 2.0f * pi * static_cast<float>(i) / pieces;
        const glm::vec2 centre = onCircle(angle, 0.84f);
        const glm::vec2 across = onCircle(0.5f * angle + 0.6f, 0.36f);
        for (const float side : {-1.0f, 1.0f}) {
            const glm::vec2 ring = centre * (1.0f + side * across.x / 0.84f);
            points.emplace_back(ring.x, side * across.y, ring.y);
        }
    }
    const auto buffer = makeBuffer(points);
    const glm::mat4 view = viewFrom({0.0f, 2.3f, 4.0f});
    glEnable(GL_DEPTH_TEST);
    for (unsigned int i = 0; i < pieces; ++i) {
        const glm::vec3* corners = &points[2 * i];
        const glm::vec3 normal = glm::cross(corners[1] - corners[0], corners[2] - corners[0]);
        const float light = std::max(brightness(normal), brightness(-normal));
        const glm::vec3 color = blend(colors, static_cast<float>(i) / pieces);
        Toolbox::drawTriangleStrip(lit(color, light), 2 * i, 4, buffer, view);
    }
}

/// The corners of a quad.
using Quad = std::array<glm::vec3, 4>;

glm::vec3 centreOf(const Quad& quad) {
    return 0.25f * (quad[0] + quad[1] + quad[2] + quad[3]);
}

/// A round wave over a square, as quads.
std::vector<Quad> makeRipple() {
    constexpr int cells = 22;
    const auto corner = [](int column, int row) {
        const glm::vec2 at = glm::vec2(column, row) * (2.0f / cells) - 1.0f;
        const float distance = 8.5f * glm::length(at) + 0.001f;
        return glm::vec3(at.x, 0.85f * std::sin(distance) / distance, at.y);
    };
    std::vector<Quad> quads;
    for (int row = 0; row < cells; ++row) {
        for (int column = 0; column < cells; ++column) {
            quads.push_back({corner(column, row), corner(column + 1, row),
                             corner(column + 1, row + 1), corner(column, row + 1)});
        }
    }
    return quads;
}

/// A surface of quads, on one side with outlines; what is near covers what is far.
void drawRipple(const Canvas& canvas) {
    const std::vector<Color> colors = {navy, blue, teal, sand, orange, coral};
    const glm::vec3 eye(1.7f, 2.9f, 4.9f);
    const glm::mat4 view = viewFrom(eye, {0.0f, 0.06f, 0.0f});
    std::vector<Quad> quads = makeRipple();
    std::sort(quads.begin(), quads.end(), [&](const Quad& a, const Quad& b) {
        return glm::distance(centreOf(a), eye) > glm::distance(centreOf(b), eye);
    });
    Drawable::setLineWidth(canvas.length(0.5f));
    for (const Quad& quad : quads) {
        const glm::vec4 color = blendRgba(colors, 0.22f + centreOf(quad).y);
        if (centreOf(quad).x > 0.0f)
            Toolbox::drawQuad(color, toRgba(ink), quad.data(), view);
        else
            Toolbox::drawQuad(color, quad.data(), view);
    }
}

} // namespace

std::vector<Panel> toolboxAreaPanels() {
    return {
        {"triangle-fan-2d",
         "triangle fans 2D",
         4,
         drawStar,
         {
             ColorAt{{70, 100}, sand},
             ColorAt{{110, 100}, orange},
             ColorAt{{170, 100}, orange},
             ColorAt{{130, 100}, sand},
             ColorAt{{60, 160}, paper},
             ColorAt{{10, 10}, paper},
             EdgeBetween{{112, 100}, {128, 100}, orange, sand},
             EdgeBetween{{60, 80}, {60, 98}, paper, sand},
             EdgeBetween{{30, 100}, {10, 100}, orange, paper},
         }},
        {"triangle-strip-2d",
         "triangle strips 2D",
         4,
         drawRidges,
         {
             ColorAt{{30, 100}, orange},
             ColorAt{{60, 130}, coral},
             ColorAt{{60, 170}, plum},
             ColorAt{{60, 210}, navy},
             ColorAt{{161, 60}, sand},
             ColorAt{{30, 60}, paper},
             ColorAt{{230, 120}, paper},
             EdgeBetween{{60, 125}, {60, 155}, coral, plum},
             EdgeBetween{{60, 212}, {60, 228}, navy, paper},
             EdgeBetween{{161, 28}, {161, 45}, paper, sand},
         }},
        {"rectangles",
         "rectangles",
         4,
         drawBars,
         {
             ColorAt{{205, 100}, navy},
             ColorAt{{148, 100}, {48, 87, 118}},
             ColorAt{{60, 180}, {64, 129, 155}},
             ColorAt{{120, 220}, paper},
             ColorAt{{134, 100}, paper},
             ColorAt{{205, 20}, paper},
             EdgeBetween{{190, 100}, {202, 100}, paper, navy},
             EdgeBetween{{60, 130}, {60, 150}, paper, {64, 129, 155}},
             EdgeBetween{{60, 200}, {60, 215}, {64, 129, 155}, ink},
         }},
        {"triangle-fan-3d",
         "triangle fans 3D",
         4,
         drawParasol,
         {
             ColorAt{{100, 100}, coral},
             ColorAt{{50, 100}, {232, 197, 108}},
             ColorAt{{150, 100}, {225, 190, 105}},
             ColorAt{{175, 100}, {198, 95, 69}},
             ColorAt{{30, 60}, paper},
             ColorAt{{60, 140}, paper},
             ColorAt{{200, 200}, paper},
             EdgeBetween{{55, 100}, {75, 100}, {232, 197, 108}, coral},
             EdgeBetween{{60, 108}, {60, 130}, {232, 111, 84}, paper},
             widthBetween({90, 170}, {120, 170}, 2, 4),
         }},
        {"triangle-strip-3d",
         "triangle strip 3D",
         4,
         drawMoebiusBand,
         {
             ColorAt{{60, 150}, {114, 87, 124}},
             ColorAt{{185, 100}, {128, 168, 121}},
             ColorAt{{54, 100}, {193, 97, 82}, 16},
             ColorAt{{100, 110}, paper}, // the hole
             ColorAt{{200, 200}, paper},
             ColorAt{{120, 40}, paper},
             EdgeBetween{{60, 105}, {60, 125}, paper, {114, 87, 124}},
             EdgeBetween{{60, 180}, {60, 200}, {114, 87, 124}, paper},
             EdgeBetween{{238, 100}, {228, 100}, paper, {56, 150, 130}},
         }},
        {"quads",
         "quads, outlined",
         4,
         drawRipple,
         {
             ColorAt{{72, 100}, {55, 141, 150}},
             ColorAt{{110, 100}, sand},
             ColorAt{{40, 40}, paper},
             ColorAt{{200, 200}, paper},
             EdgeBetween{{40, 100}, {66, 100}, paper, {55, 141, 150}},
             EdgeBetween{{60, 150}, {60, 165}, {59, 135, 152}, paper},
             MixedBetween{{62, 100}, {98, 100}, {57, 136, 151}, {66, 119, 152}, 0, 4, 14},
             MixedBetween{{140, 100}, {178, 100}, {57, 136, 151}, {57, 136, 151}, 12, 32, 14},
         }},
    };
}

} // namespace gallery

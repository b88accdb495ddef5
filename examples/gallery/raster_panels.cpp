/// Panels that show the switches of rasterisation.

#include <cmath>

#include <gallery/geometry.hpp>
#include <gallery/mesh.hpp>
#include <gallery/panel_drawings.hpp>
#include <gallery/programs.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using Primitive = vellis::Drawable::PrimitiveType;
using vellis::Drawable;

/// A place in pixels of the panel, from its upper left corner.
glm::vec3 atPixel(float x, float y) {
    constexpr auto size = static_cast<float>(panelSize);
    return {2.0f * x / size - 1.0f, 1.0f - 2.0f * y / size, 0.0f};
}

void drawBall(Drawable::PolygonMode mode) {
    Drawable::enableFaceCulling(Drawable::Face::Back);
    Drawable::setPolygonMode(Drawable::Face::FrontAndBack, mode);
    drawSurface(*makeLitProgram(), makeBall());
}

} // namespace

void drawFilledBall(const Canvas&) {
    drawBall(Drawable::PolygonMode::Fill);
}

void drawBallOfLines(const Canvas& canvas) {
    Drawable::setLineWidth(canvas.length(1.5f));
    drawBall(Drawable::PolygonMode::Line);
}

void drawBallOfPoints(const Canvas& canvas) {
    Drawable::setPointSize(canvas.length(5.0f));
    drawBall(Drawable::PolygonMode::Point);
}

void drawLineWidths(const Canvas& canvas) {
    constexpr unsigned int count = 10;
    const std::vector<Colour> colours = {palette::sand, palette::coral, palette::plum,
                                         palette::navy};
    Vertices vertices;
    for (unsigned int i = 0; i < count; ++i) {
        const float at = static_cast<float>(i) / (count - 1);
        const float x = 23.5f + 192.0f * at + 3.0f * at;
        const float halfHeight = 50.0f + 45.0f * std::sin(2.2f * at + 0.2f);
        for (const float y : {120.0f - halfHeight, 120.0f + halfHeight}) {
            vertices.positions.push_back(atPixel(x, y));
            vertices.colours.push_back(blend(colours, at));
        }
    }
    const auto program = makeColourProgram();
    const Mesh lines(*program, Primitive::Lines, vertices);
    for (unsigned int i = 0; i < count; ++i) {
        Drawable::setLineWidth(canvas.length(static_cast<float>(i + 1)));
        program->draw(lines, 2 * i, 2);
    }
}

void drawLineSmoothing(const Canvas& canvas) {
    constexpr unsigned int count = 18;
    Vertices vertices;
    for (const float side : {-1.0f, 1.0f}) {
        for (unsigned int i = 0; i < count; ++i) {
            const float angle = 3.14159265f * (static_cast<float>(i) + 0.5f) / count;
            const glm::vec3 direction(side * std::sin(angle), std::cos(angle), 0.0f);
            const glm::vec3 centre(side * 0.06f, 0.0f, 0.0f);
            vertices.add(centre + 0.18f * direction, palette::coral);
            vertices.add(centre + 0.82f * direction, palette::navy);
        }
    }
    const auto program = makeColourProgram();
    const Mesh rays(*program, Primitive::Lines, vertices);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    Drawable::setLineWidth(canvas.length(2.0f));
    Drawable::disableLineSmooth();
    program->draw(rays, 0, 2 * count);
    Drawable::enableLineSmooth(Drawable::SmoothHint::Nicest);
    program->draw(rays, 2 * count, 2 * count);
}

void drawPointSizes(const Canvas& canvas) {
    constexpr unsigned int rows = 8;
    constexpr float pitch = 27.0f;
    const std::vector<Colour> colours = {palette::sand, palette::orange, palette::coral,
                                         palette::plum};
    Vertices vertices;
    for (unsigned int i = 0; i < rows * rows; ++i) {
        const auto column = static_cast<float>(i % rows);
        const auto row = static_cast<float>(i / rows);
        vertices.positions.push_back(atPixel(25.5f + pitch * column, 25.5f + pitch * row));
        vertices.colours.push_back(blend(colours, row / (rows - 1)));
    }
    const auto program = makeColourProgram();
    const Mesh points(*program, Primitive::Points, vertices);
    for (unsigned int row = 0; row < rows; ++row) {
        Drawable::setPointSize(canvas.length(static_cast<float>(3 + 3 * row)));
        program->draw(points, row * rows, rows);
    }
}

void drawPointSprites(const Canvas& canvas) {
    constexpr unsigned int count = 140;
    constexpr float goldenAngle = 2.39996323f;
    const std::vector<Colour> colours = {palette::sand, palette::orange, palette::coral,
                                         palette::plum, palette::navy};
    Vertices vertices;
    for (unsigned int i = 0; i < count; ++i) {
        const float at = (static_cast<float>(i) + 0.5f) / count;
        const float angle = goldenAngle * static_cast<float>(i);
        const float radius = 0.84f * std::sqrt(at);
        vertices.positions.emplace_back(radius * std::cos(angle), radius * std::sin(angle), 0.0f);
        vertices.colours.push_back(blend(colours, at));
        vertices.sizes.push_back(canvas.length(5.0f + 9.0f * std::sqrt(at)));
    }
    const auto program = makeDiscProgram();
    Drawable::enablePointSprite(true);
    program->draw(Mesh(*program, Primitive::Points, vertices));
    Drawable::disablePointSprite();
}

void drawBowl(const Canvas&) {
    Drawable::disableFaceCulling();
    drawSurface(*makeTwoSidedProgram(), makeBowl());
}

void drawBowlWithoutBackFaces(const Canvas&) {
    Drawable::enableFaceCulling(Drawable::Face::Back);
    drawSurface(*makeTwoSidedProgram(), makeBowl());
}

void drawBowlWithoutFrontFaces(const Canvas&) {
    Drawable::enableFaceCulling(Drawable::Face::Front);
    drawSurface(*makeTwoSidedProgram(), makeBowl());
}

} // namespace gallery

/// Panels that show the switches of rasterisation.

#include <cmath>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/flat.hpp>
#include <gallery/panels/geometry.hpp>
#include <gallery/panels/mesh.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/programs.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using vellis::Drawable;
using namespace palette;

void drawLineWidths(const Canvas& canvas) {
    constexpr unsigned int count = 10;
    const std::vector<Color> colors = {sand, coral, plum, navy};
    ColoredVertices vertices;
    for (unsigned int i = 0; i < count; ++i) {
        const float at = static_cast<float>(i) / (count - 1);
        const float x = 23.5f + 192.0f * at + 3.0f * at;
        const float halfHeight = 50.0f + 45.0f * std::sin(2.2f * at + 0.2f);
        for (const float y : {120.0f - halfHeight, 120.0f + halfHeight}) {
            vertices.add({atPixel(x, y), 0.0f}, blend(colors, at));
        }
    }
    const auto program = makeColorProgram();
    const Colored<vellis::drawable::Lines> lines(program, vertices);
    for (unsigned int i = 0; i < count; ++i) {
        Drawable::setLineWidth(canvas.length(static_cast<float>(i + 1)));
        program->draw(lines, 2 * i, 2);
    }
}

void drawLineSmoothing(const Canvas& canvas) {
    constexpr unsigned int count = 18;
    ColoredVertices vertices;
    for (const float side : {-1.0f, 1.0f}) {
        for (unsigned int i = 0; i < count; ++i) {
            const float angle = pi * (static_cast<float>(i) + 0.5f) / count;
            const glm::vec3 direction(side * std::sin(angle), std::cos(angle), 0.0f);
            const glm::vec3 centre(side * 0.06f, 0.0f, 0.0f);
            vertices.add(centre + 0.18f * direction, toVector(coral));
            vertices.add(centre + 0.82f * direction, toVector(navy));
        }
    }
    const auto program = makeColorProgram();
    const Colored<vellis::drawable::Lines> rays(program, vertices);
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
    const std::vector<Color> colors = {sand, orange, coral, plum};
    ColoredVertices vertices;
    for (unsigned int i = 0; i < rows * rows; ++i) {
        const auto column = static_cast<float>(i % rows);
        const auto row = static_cast<float>(i / rows);
        vertices.add({atPixel(25.5f + pitch * column, 25.5f + pitch * row), 0.0f},
                     blend(colors, row / (rows - 1)));
    }
    const auto program = makeColorProgram();
    const Colored<vellis::drawable::Points> points(program, vertices);
    for (unsigned int row = 0; row < rows; ++row) {
        Drawable::setPointSize(canvas.length(static_cast<float>(3 + 3 * row)));
        program->draw(points, row * rows, rows);
    }
}

void drawBowl(const Canvas&) {
    Drawable::disableFaceCulling();
    drawSurface(makeTwoSidedProgram(), makeBowl());
}

void drawBowlWithoutBackFaces(const Canvas&) {
    Drawable::enableFaceCulling(Drawable::Face::Back);
    drawSurface(makeTwoSidedProgram(), makeBowl());
}

void drawBowlWithoutFrontFaces(const Canvas&) {
    Drawable::enableFaceCulling(Drawable::Face::Front);
    drawSurface(makeTwoSidedProgram(), makeBowl());
}

// Ends of the rays, which run through all colours up to navy.
constexpr Color rayEnd{65, 76, 97};

// Lit colours of the bowl.
constexpr Color bowlInside{196, 166, 91};
constexpr Color bowlOutside{29, 110, 100};

} // namespace

std::vector<Panel> rasterPanels() {
    return {
        {"line-width",
         "line width 1 to 10",
         1,
         drawLineWidths,
         {
             ColorAt{{23, 120}, sand},
             ColorAt{{218, 120}, navy},
             widthBetween({13, 120}, {34, 120}, 1),
             widthBetween({35, 120}, {55, 120}, 2),
             widthBetween({56, 120}, {77, 120}, 3),
             widthBetween({78, 120}, {98, 120}, 4),
             widthBetween({99, 120}, {120, 120}, 5),
             widthBetween({121, 120}, {142, 120}, 6),
             widthBetween({143, 120}, {163, 120}, 7),
             widthBetween({164, 120}, {185, 120}, 8),
             widthBetween({186, 120}, {207, 120}, 9),
             widthBetween({208, 120}, {230, 120}, 10),
             EdgeBetween{{218, 30}, {218, 50}, paper, navy},
             EdgeBetween{{218, 190}, {218, 210}, navy, paper},
         }},
        {"line-smooth",
         "line smooth off, on",
         1,
         drawLineSmoothing,
         {
             ColorAt{{25, 112}, rayEnd, 16},
             ColorAt{{214, 112}, rayEnd, 16},
             ColorAt{{120, 120}, paper},
             MixedBetween{{25, 100}, {25, 140}, paper, rayEnd, 0, 0, 16},
             MixedBetween{{214, 100}, {214, 140}, paper, rayEnd, 4, 8, 16},
             widthBetween({25, 100}, {25, 120}, 2),
             EdgeBetween{{25, 106}, {25, 112}, paper, rayEnd, 16},
         }},
        {"point-size",
         "point size 3 to 24",
         1,
         drawPointSizes,
         {
             ColorAt{{25, 25}, sand},
             ColorAt{{25, 214}, plum},
             ColorAt{{214, 214}, plum},
             ColorAt{{39, 39}, paper},
             widthBetween({12, 25}, {38, 25}, 3),
             widthBetween({12, 52}, {38, 52}, 6),
             widthBetween({12, 79}, {38, 79}, 9),
             widthBetween({12, 106}, {38, 106}, 12),
             widthBetween({12, 133}, {38, 133}, 15),
             widthBetween({12, 160}, {38, 160}, 18),
             widthBetween({12, 187}, {38, 187}, 21),
             widthBetween({12, 214}, {38, 214}, 24),
             EdgeBetween{{6, 214}, {25, 214}, paper, plum},
         }},
        {"culling-off",
         "face culling: off",
         4,
         drawBowl,
         {
             ColorAt{{100, 82}, bowlInside},
             ColorAt{{120, 182}, bowlOutside},
             ColorAt{{30, 52}, paper},
             EdgeBetween{{100, 130}, {100, 146}, {231, 197, 110}, {38, 138, 125}},
             EdgeBetween{{120, 205}, {120, 222}, bowlOutside, paper},
         }},
        {"culling-back",
         "face culling: back",
         4,
         drawBowlWithoutBackFaces,
         {
             ColorAt{{100, 82}, paper},
             ColorAt{{120, 182}, bowlOutside},
             ColorAt{{30, 52}, paper},
             EdgeBetween{{100, 130}, {100, 146}, paper, {38, 138, 125}},
             EdgeBetween{{120, 205}, {120, 222}, bowlOutside, paper},
         }},
        {"culling-front",
         "face culling: front",
         4,
         drawBowlWithoutFrontFaces,
         {
             ColorAt{{100, 82}, bowlInside},
             ColorAt{{120, 182}, {251, 213, 119}},
             ColorAt{{30, 52}, paper},
             EdgeBetween{{120, 22}, {120, 38}, paper, {165, 140, 77}},
             EdgeBetween{{120, 210}, {120, 222}, {234, 199, 110}, paper},
         }},
    };
}

} // namespace gallery

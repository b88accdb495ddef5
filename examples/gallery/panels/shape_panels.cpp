/// Panels that show what can be drawn with a program.

#include <cmath>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/geometry.hpp>
#include <gallery/panels/mesh.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/programs.hpp>

namespace gallery {
namespace {

using vellis::Drawable;
using vellis::VertexAttribute;
using namespace palette;

void drawTriangle(const Canvas&) {
    const auto positions = vellis::VertexAttributeBuffer<glm::vec2>::make(
        {{-0.82f, -0.68f}, {0.82f, -0.68f}, {0.0f, 0.74f}}, vellis::BufferUsage::Static,
        vellis::BufferAccess::Draw);
    const auto colors = vellis::VertexAttributeBuffer<glm::vec3>::make(
        {toVector(teal), toVector(sand), toVector(coral)}, vellis::BufferUsage::Static,
        vellis::BufferAccess::Draw);
    const auto program = makeColorProgram();
    const auto triangle =
        vellis::drawable::Triangles<VertexAttribute<glm::vec2>, VertexAttribute<glm::vec3>>::make(
            program, {"position", positions}, {"color", colors});
    program->draw(*triangle);
}

void drawKnot(const Canvas&) {
    drawSurface(makeLitProgram(), makeKnot());
}

void drawPointSprites(const Canvas& canvas) {
    constexpr unsigned int count = 140;
    constexpr float goldenAngle = 2.39996323f;
    const std::vector<Color> colors = {sand, orange, coral, plum, navy};
    std::vector<glm::vec2> positions;
    std::vector<glm::vec3> pointColors;
    std::vector<float> sizes;
    for (unsigned int i = 0; i < count; ++i) {
        const float at = (static_cast<float>(i) + 0.5f) / count;
        const float angle = goldenAngle * static_cast<float>(i);
        positions.push_back(onCircle(angle, 0.84f * std::sqrt(at)));
        pointColors.push_back(blend(colors, at));
        sizes.push_back(canvas.length(5.0f + 9.0f * std::sqrt(at)));
    }
    const auto program = makeDiscProgram();
    const auto positionBuffer = makeBuffer(positions);
    const auto colorBuffer = makeBuffer(pointColors);
    const auto sizeBuffer = makeBuffer(sizes);
    const auto points =
        vellis::drawable::Points<VertexAttribute<glm::vec2>, VertexAttribute<glm::vec3>,
                                 VertexAttribute<float>>::make(program,
                                                               {"position", positionBuffer},
                                                               {"color", colorBuffer},
                                                               {"size", sizeBuffer});
    Drawable::enablePointSprite(true);
    program->draw(*points);
    Drawable::disablePointSprite();
}

void drawBall(Drawable::PolygonMode mode) {
    Drawable::enableFaceCulling(Drawable::Face::Back);
    Drawable::setPolygonMode(Drawable::Face::FrontAndBack, mode);
    drawSurface(makeLitProgram(), makeBall());
}

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

} // namespace

std::vector<Panel> shapePanels() {
    return {
        {"triangle",
         "smooth triangle",
         4,
         drawTriangle,
         {
             ColorAt{{120, 145}, {170, 156, 111}}, // the mean of the corners
             ColorAt{{120, 40}, {227, 115, 83}},
             ColorAt{{30, 197}, {53, 157, 140}},
             ColorAt{{209, 197}, {229, 196, 110}},
             ColorAt{{30, 60}, paper},
             ColorAt{{210, 60}, paper},
             EdgeBetween{{120, 198}, {120, 208}, {140, 178, 126}, paper},
             EdgeBetween{{64, 116}, {76, 116}, paper, {140, 135, 112}},
             EdgeBetween{{176, 116}, {164, 116}, paper, {233, 155, 95}},
         }},
        {"indexed-mesh",
         "indexed mesh",
         4,
         drawKnot,
         {
             ColorAt{{48, 70}, {166, 181, 118}},
             ColorAt{{195, 70}, {46, 89, 109}},
             ColorAt{{120, 135}, {40, 125, 111}},
             ColorAt{{150, 150}, {248, 131, 104}},
             ColorAt{{120, 105}, paper}, // the hole in the middle
             ColorAt{{75, 80}, paper},
             ColorAt{{200, 160}, paper},
             EdgeBetween{{165, 20}, {165, 36}, paper, {78, 117, 151}},
         }},
        {"point-sprite",
         "point sprites",
         4,
         drawPointSprites,
         {
             ColorAt{{126, 120}, sand},
             ColorAt{{178, 153}, {235, 125, 85}},
             ColorAt{{204, 64}, navy},
             ColorAt{{198, 58}, paper}, // the corners of a round point
             ColorAt{{210, 58}, paper},
             ColorAt{{198, 70}, paper},
             ColorAt{{20, 20}, paper},
             widthBetween({195, 64}, {218, 64}, 13, 16),
             EdgeBetween{{204, 50}, {204, 64}, paper, navy},
         }},
        {"polygon-mode-fill",
         "polygon mode: fill",
         4,
         drawFilledBall,
         {
             ColorAt{{120, 120}, {66, 116, 148}},
             ColorAt{{127, 119}, {66, 116, 148}}, // a triangle's middle
             ColorAt{{120, 45}, {44, 163, 148}},
             ColorAt{{120, 195}, {28, 52, 73}},
             ColorAt{{200, 40}, paper},
             EdgeBetween{{10, 120}, {40, 120}, paper, {64, 116, 148}, 16},
         }},
        {"polygon-mode-line",
         "polygon mode: line",
         4,
         drawBallOfLines,
         {
             ColorAt{{120, 122}, {67, 118, 149}, 20}, // on an edge of a triangle
             ColorAt{{127, 119}, paper},              // a triangle's middle
             ColorAt{{40, 120}, paper},
             ColorAt{{200, 40}, paper},
             widthBetween({112, 122}, {127, 122}, 1, 4),
             EdgeBetween{{126, 116}, {119, 116}, paper, {67, 118, 149}, 20},
         }},
        {"polygon-mode-point",
         "polygon mode: point",
         4,
         drawBallOfPoints,
         {
             ColorAt{{118, 110}, {82, 144, 171}, 20}, // a corner of triangles
             ColorAt{{94, 123}, {71, 124, 157}, 20},
             ColorAt{{120, 122}, paper}, // on an edge of a triangle
             ColorAt{{127, 119}, paper}, // a triangle's middle
             widthBetween({108, 110}, {128, 110}, 5, 7),
             EdgeBetween{{108, 110}, {118, 110}, paper, {82, 144, 171}, 20},
         }},
    };
}

} // namespace gallery

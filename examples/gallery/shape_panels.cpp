/// Panels that show what can be drawn.

#include <gallery/geometry.hpp>
#include <gallery/mesh.hpp>
#include <gallery/panel_drawings.hpp>
#include <gallery/programs.hpp>

namespace gallery {

using Primitive = vellis::Drawable::PrimitiveType;

void drawTriangle(const Canvas&) {
    Vertices vertices;
    vertices.add({-0.82f, -0.68f, 0.0f}, palette::teal);
    vertices.add({0.82f, -0.68f, 0.0f}, palette::sand);
    vertices.add({0.0f, 0.74f, 0.0f}, palette::coral);
    const auto program = makeColourProgram();
    program->draw(Mesh(*program, Primitive::Triangles, vertices));
}

void drawKnot(const Canvas&) {
    drawSurface(*makeLitProgram(), makeKnot());
}

} // namespace gallery

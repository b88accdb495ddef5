#include <gallery/panels/mesh.hpp>

#include <vellis/gl.hpp>

namespace gallery {
namespace {

using vellis::VertexAttribute;
using vellis::drawable::Triangles;

/// Draws the triangles of a surface.
/// \param name, values  The attribute beside `position` and `normal`.
/// \param uniforms      The values that the program draws with.
template <class T, class... Uniforms>
void draw(const std::shared_ptr<vellis::Program>& program, const Surface& surface, const char* name,
          const std::vector<T>& values, const Uniforms&... uniforms) {
    const auto positions = makeBuffer(surface.positions);
    const auto normals = makeBuffer(surface.normals);
    const auto others = makeBuffer(values);
    const Triangles<VertexAttribute<glm::vec3>, VertexAttribute<glm::vec3>, VertexAttribute<T>>
        triangles(program, {"position", positions}, {"normal", normals}, {name, others});
    const auto indices = vellis::IndexBuffer<unsigned short>::make(
        surface.indices.data(), static_cast<unsigned int>(surface.indices.size()),
        vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    glEnable(GL_DEPTH_TEST);
    program->draw(triangles, *indices, uniforms...);
}

} // namespace

void drawSurface(const std::shared_ptr<vellis::Program>& program, const Surface& surface) {
    draw(program, surface, "color", surface.colors);
}

void drawTexturedSurface(const std::shared_ptr<vellis::Program>& program, const Surface& surface,
                         const vellis::Texture& texture) {
    draw(program, surface, "coordinate", surface.coordinates, vellis::Uniform("picture", texture));
}

} // namespace gallery

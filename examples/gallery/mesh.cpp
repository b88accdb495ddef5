#include <gallery/mesh.hpp>

#include <vellis/gl.hpp>

namespace gallery {

using vellis::BufferAccess;
using vellis::BufferUsage;

Mesh::Mesh(const vellis::Program& program, PrimitiveType type, const Vertices& vertices)
    : Drawable(type) {
    numVertices_ = static_cast<unsigned int>(vertices.positions.size());
    program.beginAttributesBinding();
    feed(program, "position", vertices.positions);
    feed(program, "colour", vertices.colours);
    feed(program, "normal", vertices.normals);
    feed(program, "size", vertices.sizes);
    attributesBinding_ = program.finishAttributesBinding();
}

template <class T>
void Mesh::feed(const vellis::Program& program, const char* name, const std::vector<T>& values) {
    const GLint location = glGetAttribLocation(program.id(), name);
    if (location < 0 || values.empty())
        return;
    const auto buffer = vellis::VertexAttributeBuffer<T>::make(
        values.data(), static_cast<unsigned int>(values.size()), BufferUsage::Static,
        BufferAccess::Draw);
    const auto index = static_cast<GLuint>(location);
    constexpr auto components = static_cast<GLint>(sizeof(T) / sizeof(float));
    buffer->bind();
    glVertexAttribPointer(index, components, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(index);
    buffer->unbind();
    buffers_.push_back(buffer);
}

void drawSurface(const vellis::Program& program, const Surface& surface) {
    const Mesh mesh(program, vellis::Drawable::PrimitiveType::Triangles, surface.vertices);
    const auto indices = vellis::IndexBuffer<unsigned short>::make(
        surface.indices.data(), static_cast<unsigned int>(surface.indices.size()),
        BufferUsage::Static, BufferAccess::Draw);
    glEnable(GL_DEPTH_TEST);
    program.draw(mesh, *indices);
}

} // namespace gallery

#pragma once

#include <memory>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include <gallery/frame/color.hpp>
#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

namespace gallery {

/// A buffer with the values of a list, which do not change.
template <class T>
std::shared_ptr<vellis::VertexAttributeBuffer<T>> makeBuffer(const std::vector<T>& values) {
    return vellis::VertexAttributeBuffer<T>::make(
        values.data(), static_cast<unsigned int>(values.size()), vellis::BufferUsage::Static,
        vellis::BufferAccess::Draw);
}

/// Some vertices with a colour each.
struct ColoredVertices {
    std::vector<glm::vec3> positions;
    std::vector<glm::vec3> colors;

    void add(const glm::vec3& position, const glm::vec3& color) {
        positions.push_back(position);
        colors.push_back(color);
    }
};

/// Coloured vertices in buffers, ready to be drawn with a program that has the attributes
/// `position` and `colour`.
///
/// \tparam Shape  A drawable template, such as vellis::drawable::Lines.
template <template <class...> class Shape>
class Colored {
public:
    Colored(const std::shared_ptr<vellis::Program>& program, const ColoredVertices& vertices)
        : positions_(makeBuffer(vertices.positions)),
          colors_(makeBuffer(vertices.colors)),
          drawable_(program, {"position", positions_}, {"color", colors_}) {}

    operator const vellis::Drawable&() const { return drawable_; }

private:
    // A drawable does not keep its buffers.
    std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec3>> positions_;
    std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec3>> colors_;
    Shape<vellis::VertexAttribute<glm::vec3>, vellis::VertexAttribute<glm::vec3>> drawable_;
};

/// Vertices, and the corners of triangles among them.
struct Surface {
    std::vector<glm::vec3> positions;
    std::vector<glm::vec3> normals;
    std::vector<glm::vec3> colors;
    std::vector<glm::vec2> coordinates; ///< of a texture
    std::vector<unsigned short> indices;
};

/// Draws the triangles of a surface with its colours, those in front over those behind. The program
/// has the attributes `position`, `normal` and `colour`.
void drawSurface(const std::shared_ptr<vellis::Program>& program, const Surface& surface);

/// The same with a texture. The program has the attributes `position`, `normal` and `coordinate`,
/// and the sampler `picture`.
void drawTexturedSurface(const std::shared_ptr<vellis::Program>& program, const Surface& surface,
                         const vellis::Texture& texture);

} // namespace gallery

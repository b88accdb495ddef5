#pragma once

#include <memory>
#include <vector>

#include <glm/vec3.hpp>

#include <gallery/colour.hpp>
#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/shading.hpp>

namespace gallery {

/// The attributes of some vertices; each list but that of the positions may be empty.
struct Vertices {
    std::vector<glm::vec3> positions;
    std::vector<glm::vec3> colours;
    std::vector<glm::vec3> normals;
    std::vector<float> sizes;

    /// Appends a vertex with a position and a colour.
    void add(const glm::vec3& position, Colour colour) {
        positions.push_back(position);
        colours.push_back(toVector(colour));
    }
};

/// Vertices in buffers, ready to be drawn with one program: its attributes `position`, `colour`,
/// `normal` and `size` are fed, as far as it has them.
class Mesh : public vellis::Drawable {
public:
    Mesh(const vellis::Program& program, PrimitiveType type, const Vertices& vertices);

private:
    /// Feeds an attribute, inside of a binding that is begun.
    template <class T>
    void feed(const vellis::Program& program, const char* name, const std::vector<T>& values);

    std::vector<std::shared_ptr<vellis::VertexBuffer>> buffers_;
};

/// Vertices, and the corners of triangles among them.
struct Surface {
    Vertices vertices;
    std::vector<unsigned short> indices;
};

/// Draws the triangles of a surface, those in front over those behind.
void drawSurface(const vellis::Program& program, const Surface& surface);

} // namespace gallery

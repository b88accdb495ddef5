#include <gallery/panels/textured.hpp>

#include <gallery/panels/mesh.hpp>
#include <gallery/panels/programs.hpp>

namespace gallery {
namespace {

/// The corners of a rectangle, for a triangle strip.
std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec2>> makeCorners(const Rectangle& rectangle) {
    const auto& [a, b] = rectangle;
    return makeBuffer<glm::vec2>({a, {b.x, a.y}, {a.x, b.y}, b});
}

} // namespace

void drawTextured(const vellis::Texture& texture, const Rectangle& coordinates,
                  const Rectangle& where, const glm::mat4& mvp) {
    const auto positions = makeCorners(where);
    const auto places = makeCorners(coordinates);
    const auto program = makePictureProgram();
    const auto strip =
        vellis::drawable::TriangleStrip<vellis::VertexAttribute<glm::vec2>,
                                        vellis::VertexAttribute<glm::vec2>>::make(program,
                                                                                  {"position",
                                                                                   positions},
                                                                                  {"coordinate",
                                                                                   places});
    program->draw(*strip, vellis::Uniform("mvp", mvp), vellis::Uniform("picture", texture));
}

} // namespace gallery

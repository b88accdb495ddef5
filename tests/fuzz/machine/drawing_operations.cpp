/// The operations of drawables and of the Toolbox.

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {
namespace {

void makeShape(World& world, Bytes& bytes) {
    static constexpr const char* names[] = {"position", "no such name", nullptr};
    Shape shape;
    shape.context = world.context;
    if (bytes.below(4) != 3)
        shape.positions = Positions::make(world.memoryOf<glm::vec2>(), bytes.number(),
                                          BufferUsage::Static, BufferAccess::Draw);
    VertexAttribute<glm::vec2> attribute(bytes.oneOf(names), shape.positions, bytes.number());
    auto& program = pick(world.programs, bytes);
    shape.drawable = Triangles::make(program.object, attribute);
    if (program.object != nullptr)
        program.isBound = false;
    pick(world.shapes, bytes) = std::move(shape);
}

void releaseShape(World& world, Bytes& bytes) {
    pick(world.shapes, bytes) = {};
}

void drawBound(World& world, Bytes& bytes) {
    const auto& drawable = pick(world.shapes, bytes).drawable;
    if (drawable != nullptr)
        drawable->draw(bytes.number(), bytes.number());
}

void bindBinding(World& world, Bytes& bytes) {
    const auto& [positions, drawable, context] = pick(world.shapes, bytes);
    if (drawable == nullptr || drawable->getAttributesBinding() == nullptr)
        return;
    const VertexAttributesBinding& binding = *drawable->getAttributesBinding();
    binding.bind();
    const bool exists = context == world.context;
    world.require(glBindVertexArray == nullptr || binding.isCurrent() == exists,
                  "a binding that was bound last is not current, or one that does not exist is");
}

void unbindBinding(World& world, Bytes&) {
    VertexAttributesBinding::unbind();
    for (const Shape& shape : world.shapes) {
        if (shape.drawable != nullptr && shape.drawable->getAttributesBinding() != nullptr)
            world.require(!shape.drawable->getAttributesBinding()->isCurrent(),
                          "a binding is current though none is bound");
    }
}

void copyBinding(World& world, Bytes& bytes) {
    const auto& drawable = pick(world.shapes, bytes).drawable;
    if (drawable == nullptr || drawable->getAttributesBinding() == nullptr || !world.canCopyOwners)
        return;
    const VertexAttributesBinding& binding = *drawable->getAttributesBinding();
    binding.bind();
    if (glBindVertexArray != nullptr)
        world.copiedNames.insert("vertex array " +
                                 std::to_string(observedName(GL_VERTEX_ARRAY_BINDING)));
    const VertexAttributesBinding copied(binding);
    world.require(!copied.isCurrent(), "a copy of a binding is current");
}

/// The points of a call of the Toolbox: any number, and sometimes none at all.
template <class V>
struct Points {
    unsigned int count;
    const V* data;

    Points(World& world, Bytes& bytes)
        : count(bytes.below(8) == 7 ? 200 : bytes.number()),
          data(bytes.below(8) == 7 ? nullptr : world.memoryOf<V>()) {}
};

constexpr glm::vec4 color(0.5f);
const glm::mat4 mvp(1.f);

template <class V>
void drawFlat(World& world, Bytes& bytes) {
    const Points<V> points(world, bytes);
    const unsigned int first = bytes.number();
    switch (bytes.below(5)) {
    case 0:
        return Toolbox::drawLines(color, first, points.count, points.data, mvp);
    case 1:
        return Toolbox::drawLineStrip(color, points.count, points.data, mvp);
    case 2:
        return Toolbox::drawLineLoop(color, first, points.count, points.data, mvp);
    case 3:
        return Toolbox::drawTriangleFan(color, {V(0.f), V(1.f), V(0.5f)}, mvp);
    default:
        return Toolbox::drawTriangleStrip(color, points.count, points.data, mvp);
    }
}

template <class V>
void drawDashes(World& world, Bytes& bytes) {
    const Points<V> points(world, bytes);
    Toolbox::drawDashLineStrip(color, bytes.fraction(), bytes.fraction(), points.count, points.data,
                               mvp);
}

template <class V>
void drawDiscs(World& world, Bytes& bytes) {
    const Points<V> points(world, bytes);
    if (bytes.flag())
        Toolbox::drawPoints(color, 4.f, points.count, points.data, mvp);
    else
        Toolbox::drawBullseyes(color, color, 9.f, points.count, points.data, mvp);
}

void drawFromBuffer(World& world, Bytes& bytes) {
    const auto& positions = pick(world.shapes, bytes).positions;
    Toolbox::drawLineLoop(color, bytes.number(), bytes.number(), positions, mvp);
}

void drawQuads(World& world, Bytes& bytes) {
    const auto* const corners = bytes.flag() ? world.memoryOf<glm::vec3>() : nullptr;
    switch (bytes.below(4)) {
    case 0:
        return Toolbox::drawQuad(color, corners, mvp);
    case 1:
        return Toolbox::drawQuad(color, color, corners, mvp);
    case 2:
        return Toolbox::drawQuad(color, {glm::vec3(0.f), glm::vec3(1.f)}, mvp);
    default:
        return Toolbox::drawRect(color, glm::vec2(0.f), glm::vec2(bytes.fraction()), mvp);
    }
}

void setCulling(World&, Bytes& bytes) {
    static constexpr Drawable::Face faces[] = {Drawable::Face::Front, Drawable::Face::Back,
                                               Drawable::Face::FrontAndBack, Drawable::Face(7)};
    if (bytes.flag())
        Drawable::enableFaceCulling(bytes.oneOf(faces));
    else
        Drawable::enableFaceCulling(bytes.flag());
    static constexpr Drawable::PolygonMode modes[] = {
        Drawable::PolygonMode::Line, Drawable::PolygonMode::Fill, Drawable::PolygonMode(7)};
    Drawable::setPolygonMode(bytes.oneOf(faces), bytes.oneOf(modes));
}

void setSmoothing(World&, Bytes& bytes) {
    if (bytes.flag()) {
        Drawable::enableLineSmooth(Drawable::SmoothHint::Nicest);
        Drawable::enablePolygonSmooth(Drawable::SmoothHint(7));
    } else {
        Drawable::enableLineSmooth(bytes.flag());
        Drawable::enablePolygonSmooth(bytes.flag());
    }
}

void setSizes(World&, Bytes& bytes) {
    Drawable::setLineWidth(static_cast<float>(bytes.number()) - 1.f);
    Drawable::setPointSize(static_cast<float>(bytes.number()) - 1.f);
    Drawable::enablePointSprite(bytes.flag());
}

} // namespace

std::vector<Operation> drawingOperations() {
    const GLenum program = GL_CURRENT_PROGRAM;
    const GLenum vertexArray = GL_VERTEX_ARRAY_BINDING;
    const Promise drawn = {{program, vertexArray, GL_ARRAY_BUFFER_BINDING}, {}};
    const Promise drawnSprites = {{program, vertexArray, GL_ARRAY_BUFFER_BINDING, GL_POINT_SPRITE,
                                   GL_VERTEX_PROGRAM_POINT_SIZE},
                                  {}};
    return {
        {"drawable: make", makeShape, drawn},
        {"drawable: release", releaseShape, drawn},
        {"Drawable: draw", drawBound, {}},
        {"VertexAttributesBinding: bind", bindBinding, {{}, {vertexArray}}},
        {"VertexAttributesBinding: unbind", unbindBinding, {{vertexArray}, {}}},
        {"VertexAttributesBinding: copy", copyBinding, {{}, {vertexArray}}},
        {"Toolbox: flat families, 2D", drawFlat<glm::vec2>, drawn},
        {"Toolbox: flat families, 3D", drawFlat<glm::vec3>, drawn},
        {"Toolbox: dashes, 2D", drawDashes<glm::vec2>, drawn},
        {"Toolbox: dashes, 3D", drawDashes<glm::vec3>, drawn},
        {"Toolbox: discs, 2D", drawDiscs<glm::vec2>, drawnSprites},
        {"Toolbox: discs, 3D", drawDiscs<glm::vec3>, drawnSprites},
        {"Toolbox: a buffer of one's own", drawFromBuffer, drawn},
        {"Toolbox: quads", drawQuads, drawn},
        {"Drawable: culling", setCulling, {{}, {GL_CULL_FACE, GL_CULL_FACE_MODE, GL_POLYGON_MODE}}},
        {"Drawable: smoothing", setSmoothing, {{}, {GL_LINE_SMOOTH, GL_POLYGON_SMOOTH}}},
        {"Drawable: sizes",
         setSizes,
         {{}, {GL_LINE_WIDTH, GL_POINT_SIZE, GL_POINT_SPRITE, GL_VERTEX_PROGRAM_POINT_SIZE}}},
    };
}

} // namespace vellis::test

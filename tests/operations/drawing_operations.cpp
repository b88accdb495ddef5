/// The operations of drawing and of the Toolbox.

#include <glm/mat4x4.hpp>

#include <vellis/drawing.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

#include "operations/operations.hpp"

namespace vellis::test {
namespace {

using Points = std::initializer_list<glm::vec2>;

const glm::vec4 color(1.f);
const glm::mat4 identity(1.f);
const Points points = {{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f}};
const std::initializer_list<glm::vec3> points3D = {
    {0.f, 0.f, 0.f}, {1.f, 0.f, 0.f}, {1.f, 1.f, 0.f}, {0.f, 1.f, 0.f}};

void useRasterisation(UseRecorder& use) {
    use.of("Drawable");
    use("enableFaceCulling", [] { Drawable::enableFaceCulling(Drawable::Face::Back); });
    use("enableFaceCulling", [] { Drawable::enableFaceCulling(false); });
    use("disableFaceCulling", [] { Drawable::disableFaceCulling(); });
    use("enableLineSmooth", [] { Drawable::enableLineSmooth(Drawable::SmoothHint::Nicest); });
    use("enableLineSmooth", [] { Drawable::enableLineSmooth(false); });
    use("disableLineSmooth", [] { Drawable::disableLineSmooth(); });
    use("enablePolygonSmooth", [] { Drawable::enablePolygonSmooth(Drawable::SmoothHint::Nicest); });
    use("enablePolygonSmooth", [] { Drawable::enablePolygonSmooth(false); });
    use("disablePolygonSmooth", [] { Drawable::disablePolygonSmooth(); });
    use("enablePointSprite", [] { Drawable::enablePointSprite(true); });
    use("enablePointSprite", [] { Drawable::enablePointSprite(false); });
    use("disablePointSprite", [] { Drawable::disablePointSprite(); });
    use("setLineWidth", [] { Drawable::setLineWidth(2.f); });
    use("setPointSize", [] { Drawable::setPointSize(2.f); });
    use("setPolygonMode", [] {
        Drawable::setPolygonMode(Drawable::Face::FrontAndBack, Drawable::PolygonMode::Line);
    });
}

template <class V>
void useFlatFamilies(UseRecorder& use, std::initializer_list<V> ends) {
    use("drawLines", [&] { Toolbox::drawLines(color, ends, identity); });
    use("drawLineStrip", [&] { Toolbox::drawLineStrip(color, ends, identity); });
    use("drawLineLoop", [&] { Toolbox::drawLineLoop(color, ends, identity); });
    use("drawTriangleFan", [&] { Toolbox::drawTriangleFan(color, ends, identity); });
    use("drawTriangleStrip", [&] { Toolbox::drawTriangleStrip(color, ends, identity); });
    use("drawDashLineStrip", [&] { Toolbox::drawDashLineStrip(color, 1.f, 1.f, ends, identity); });
    use("drawPoints", [&] { Toolbox::drawPoints(color, 2.f, ends, identity); });
    use("drawBullseyes", [&] { Toolbox::drawBullseyes(color, color, 9.f, ends, identity); });
}

} // namespace

void useDrawing(UseRecorder& use) {
    use.begin("Drawing");
    const auto program = Program::make("", "");
    const auto positions =
        VertexAttributeBuffer<glm::vec2>::make(points, BufferUsage::Static, BufferAccess::Draw);
    const auto indices =
        IndexBuffer<unsigned int>::make({0, 1, 2}, BufferUsage::Static, BufferAccess::Draw);
    using Triangles = drawable::Triangles<VertexAttribute<glm::vec2>>;

    use.of("drawable::Primitive");
    use("make", [&] { return Triangles::make(program, {"position", positions}); });
    auto triangles = Triangles::make(program, {"position", positions});
    use.of("Drawable");
    use("draw", [&] { triangles->draw(0, 3); });
    use("draw (with indices)", [&] { triangles->draw(*indices, 0, 3); });
    use.of("Program");
    use("draw", [&] { program->draw(*triangles); });
    use("draw (with indices)", [&] { program->draw(*triangles, *indices); });
    const Texture2D<glm::vec4> texture;
    use("draw (with values)", [&] { program->draw(*triangles, Uniform("f4", color)); });
    use("draw (with values)", [&] { program->draw(*triangles, *indices, Uniform("f4", color)); });
    use("draw (with a texture)", [&] { program->draw(*triangles, Uniform("image", texture)); });
    use.of("VertexAttributesBinding");
    use("bind", [&] { triangles->getAttributesBinding()->bind(); });
    use("unbind", [] { VertexAttributesBinding::unbind(); });
    use("destruction", [&] { triangles.reset(); });
    useRasterisation(use);
}

void useToolbox(UseRecorder& use) {
    use.begin("The Toolbox");
    for (unsigned int builtIn = 0; builtIn < 6; ++builtIn)
        ProgramManager::instance().get(static_cast<ProgramManager::BuiltIn>(builtIn));
    use.of("Toolbox");
    use("getVertexBuffer (first)", [] { Toolbox::getVertexBuffer(); });
    useFlatFamilies(use, points);
    useFlatFamilies(use, points3D);
    use("drawQuad", [] { Toolbox::drawQuad(color, points3D, identity); });
    use("drawQuad", [] { Toolbox::drawQuad(color, color, points3D, identity); });
    use("drawRect", [] { Toolbox::drawRect(color, glm::vec2(0.f), glm::vec2(1.f), identity); });
}

} // namespace vellis::test

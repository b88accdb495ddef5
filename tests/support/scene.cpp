#include "support/scene.hpp"

#include <glm/mat4x4.hpp>
#include <vellis/drawing/primitives.hpp>
#include <vellis/drawing/toolbox.hpp>
#include <vellis/internal.hpp>

#include <offscreen/image.hpp>

#include "support/pixels.hpp"

namespace vellis::test {
namespace {

constexpr const char* vertexSource = R"(#version 120
attribute vec2 position;
void main() { gl_Position = vec4(position, 0.0, 1.0); }
)";

constexpr const char* fragmentSource = R"(#version 120
uniform sampler2D image;
void main() { gl_FragColor = texture2D(image, vec2(0.5)); }
)";

constexpr Color black(0, 0, 0, 255);

GLboolean isLive(std::size_t kind, GLuint name) {
    switch (kind) {
    case 0:
        return glIsBuffer(name);
    case 1:
        return glIsTexture(name);
    case 2:
        return glIsRenderbuffer(name);
    case 3:
        return glIsShader(name);
    case 4:
        return glIsProgram(name);
    case 5:
        return glIsVertexArray(name);
    default:
        return glIsFramebuffer(name);
    }
}

GLuint nameOf(const VertexAttributesBinding& binding) {
    binding.bind();
    const int name = stateOf(GL_VERTEX_ARRAY_BINDING);
    VertexAttributesBinding::unbind();
    return static_cast<GLuint>(name);
}

void setViewport(unsigned int width, unsigned int height) {
    Framebuffer::setViewport(0, 0, width, height);
}

} // namespace

const char* const kindNames[numKinds] = {
    "buffer", "texture", "renderbuffer", "shader", "program", "vertex array", "framebuffer",
};

SharedParts::SharedParts(const Color& color)
    : corners(VertexAttributeBuffer<glm::vec2>::make(
          {{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}, {1.f, 1.f}}, BufferUsage::Static,
          BufferAccess::Draw)),
      indices(
          IndexBuffer<unsigned short>::make({0, 1, 2, 3}, BufferUsage::Static, BufferAccess::Draw)),
      texture(Texture2D<Color>::make(1, 1, &color)),
      target(Texture2D<Color>::make(1, 1)),
      depth(Renderbuffer<depth24_stencil8>::make(1, 1)),
      shader(VertexShader::make(vertexSource)),
      program(Program::make(vertexSource, fragmentSource)) {}

OwnParts::OwnParts(const SharedParts& shared)
    : square(drawable::TriangleStrip<VertexAttribute<glm::vec2>>::make(
          shared.program, {"position", shared.corners})),
      framebuffer(Framebuffer::make()) {
    framebuffer->bind();
    framebuffer->attachFragmentOut(*shared.target);
    framebuffer->attachDepthStencilbuffer(*shared.depth);
    framebuffer->unbind();
}

std::array<bool, numKinds> areLive(const Names& names) {
    std::array<bool, numKinds> live = {};
    for (std::size_t kind = 0; kind < numKinds; ++kind)
        live[kind] = isLive(kind, names[kind]) == GL_TRUE;
    return live;
}

std::array<int, numKinds> countObjects() {
    std::array<int, numKinds> counts = {};
    for (std::size_t kind = 0; kind < numKinds; ++kind) {
        for (GLuint name = 1; name < 200; ++name)
            counts[kind] += isLive(kind, name) == GL_TRUE ? 1 : 0;
    }
    return counts;
}

Names Scene::names() const {
    return {shared.corners->id(), shared.texture->id(), shared.depth->id(),
            shared.shader->id(),  shared.program->id(), nameOf(*own.square->getAttributesBinding()),
            own.framebuffer->id()};
}

void Scene::end(std::size_t kind) {
    switch (kind) {
    case 0:
        return shared.corners.reset();
    case 1:
        return shared.texture.reset();
    case 2:
        return shared.depth.reset();
    case 3:
        return shared.shader.reset();
    case 4:
        return shared.program.reset();
    case 5:
        return own.square.reset();
    default:
        return own.framebuffer.reset();
    }
}

void drawLeft(const SharedParts& shared, const OwnParts& own) {
    own.framebuffer->bind();
    setViewport(1, 1);
    shared.program->draw(*own.square, Uniform("image", *shared.texture));
    own.framebuffer->unbind();
    setViewport(sceneSize / 2, sceneSize);
    shared.program->draw(*own.square, *shared.indices, Uniform("image", *shared.target));
    Texture::unbind2D();
    setViewport(sceneSize, sceneSize);
}

void drawRight(const Color& color) {
    Toolbox::drawRect(glm::vec4(color) / 255.f, {0.f, -1.f}, {1.f, 1.f}, glm::mat4(1.f));
}

void clear() {
    setViewport(sceneSize, sceneSize);
    Framebuffer::clearColor(glm::vec4(black) / 255.f);
}

void draw(const Scene& scene, const Color& right) {
    clear();
    drawLeft(scene.shared, scene.own);
    drawRight(right);
}

testing::AssertionResult shows(const Color& left, const Color& right) {
    const offscreen::Image image = offscreen::readPixels(sceneSize, sceneSize);
    for (unsigned int y = 0; y < sceneSize; ++y) {
        for (unsigned int x = 0; x < sceneSize; ++x) {
            const unsigned char* const pixel = image.at(x, y);
            const Color& expected = x < sceneSize / 2 ? left : right;
            if (pixel[0] != expected.r || pixel[1] != expected.g || pixel[2] != expected.b)
                return testing::AssertionFailure()
                       << "the pixel at " << x << ", " << y << " is " << +pixel[0] << ", "
                       << +pixel[1] << ", " << +pixel[2];
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult draws(const Scene& scene, const Color& left, const Color& right) {
    draw(scene, right);
    return shows(left, right);
}

Color texelOf(const Texture2D<Color>& texture) {
    const std::vector<Color> texels = texture.download();
    return texels.size() == 1 ? texels[0] : Color(0);
}

testing::AssertionResult isQuiet() {
    if (const char* const error = internal::check_glerror())
        return testing::AssertionFailure() << error;
    if (const char* const kind = internal::check_context())
        return testing::AssertionFailure() << "used elsewhere: " << kind;
    return testing::AssertionSuccess();
}

} // namespace vellis::test

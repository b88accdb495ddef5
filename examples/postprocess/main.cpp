/// Draws a scene to a texture, blurs it in two passes through textures, and leaves the result in a
/// PNG file.

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_precision.hpp>

#include <common/downloaded_picture.hpp>
#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <vellis/buffers.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/drawing.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

namespace {

using vellis::Framebuffer;
using vellis::Toolbox;
using Texture = vellis::Texture2D<glm::u8vec4>;

constexpr unsigned int width = 480;
constexpr unsigned int height = 320;

const glm::vec4 sky(0.81f, 0.88f, 0.89f, 1.0f);
const glm::vec4 sand(0.93f, 0.78f, 0.43f, 1.0f);
const glm::vec4 coral(0.91f, 0.44f, 0.32f, 1.0f);
const glm::vec4 navy(0.15f, 0.27f, 0.39f, 1.0f);

constexpr char vertexSource[] = R"(
IN vec2 position;
OUT vec2 place;

void main() {
    place = 0.5 + 0.5 * position;
    gl_Position = vec4(position, 0.0, 1.0);
}
)";

/// The mean of 17 texels in a row, the nearer ones with more weight.
constexpr char blurSource[] = R"(
uniform sampler2D picture;
uniform vec2 step;
IN vec2 place;
DECL_OUT0;

void main() {
    vec4 sum = vec4(0.0);
    float weights = 0.0;
    for (int i = -8; i <= 8; ++i) {
        float weight = exp(-0.04 * float(i * i));
        sum += weight * texture2D(picture, place + float(i) * step);
        weights += weight;
    }
    OUT0 = sum / weights;
}
)";

/// A box in front of a disc. What is nearer is drawn first, so that it takes the depth test.
void drawScene() {
    const glm::mat4 pixels = glm::ortho<float>(0.0f, width, 0.0f, height);
    const glm::mat4 behind = glm::translate(pixels, glm::vec3(0.0f, 0.0f, -0.5f));
    std::vector<glm::vec2> disc;
    for (int i = 0; i < 90; ++i) {
        const float angle = glm::radians(4.0f * static_cast<float>(i));
        disc.push_back(glm::vec2(240.0f, 190.0f) +
                       90.0f * glm::vec2(std::cos(angle), std::sin(angle)));
    }
    Framebuffer::clear(sky, 1.0f, 0);
    Framebuffer::enableDepthTest(Framebuffer::FragmentComparator::LESS);
    Toolbox::drawRect(coral, {40.0f, 80.0f}, {200.0f, 240.0f}, pixels);
    Toolbox::drawTriangleFan(sand, static_cast<unsigned int>(disc.size()), disc.data(), behind);
    Toolbox::drawRect(navy, {0.0f, 0.0f}, {480.0f, 60.0f}, pixels);
    Framebuffer::disableDepthTest();
}

std::shared_ptr<vellis::Program> makeBlur() {
    constexpr auto version = vellis::Shader::Version::V210;
    auto program = vellis::Program::make(vellis::VertexShader::make(vertexSource, version),
                                         vellis::FragmentShader::make(blurSource, version));
    if (program->hasLinkError())
        throw std::runtime_error("The driver refuses the shaders of the blur: use another driver.");
    return program;
}

/// Draws a texture on the whole framebuffer, blurred along \p step.
void drawBlurred(const std::shared_ptr<vellis::Program>& program, const Texture& texture,
                 const glm::vec2& step) {
    const glm::vec2 corners[] = {{-1.0f, -1.0f}, {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}};
    const auto positions = vellis::VertexAttributeBuffer<glm::vec2>::make(
        corners, 4u, vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    const auto strip = vellis::drawable::TriangleStrip<vellis::VertexAttribute<glm::vec2>>::make(
        program, {"position", positions});
    program->draw(*strip, vellis::Uniform("picture", texture), vellis::Uniform("step", step));
}

/// Makes drawing go to a texture; the depth buffer stays attached.
void drawTo(Framebuffer& framebuffer, const Texture& texture) {
    framebuffer.attachFragmentOut(texture);
    if (const char* problem = vellis::diagnostics::check_framebuffer_complete())
        throw std::runtime_error("The driver refuses the framebuffer (" + std::string(problem) +
                                 "): use another driver.");
}

/// Draws the scene and blurs it.
offscreen::Image makePicture() {
    const auto sharp = Texture::make(width, height); // clamped: a blur must not wrap around
    const auto blurred = Texture::make(width, height);
    const auto depth = vellis::Renderbuffer<vellis::depth24_stencil8>::make(width, height);
    const auto framebuffer = Framebuffer::make();
    framebuffer->bind();
    framebuffer->attachDepthStencilbuffer(*depth);
    Framebuffer::setViewport(0, 0, width, height);

    drawTo(*framebuffer, *sharp);
    drawScene();
    const auto blur = makeBlur();
    drawTo(*framebuffer, *blurred);
    drawBlurred(blur, *sharp, {1.0f / width, 0.0f});
    drawTo(*framebuffer, *sharp);
    drawBlurred(blur, *blurred, {0.0f, 1.0f / height});

    offscreen::Image picture = common::downloadPicture(width, height);
    framebuffer->unbind();
    return picture;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: vellis_postprocess picture.png\n";
        return EXIT_FAILURE;
    }
    try {
        const common::ReadyContext context(1, 1); // all is drawn to textures
        common::writePicture(argv[1], makePicture());
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

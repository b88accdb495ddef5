/// Makes five mistakes on purpose, and prints on standard error what the diagnostics say of them.
/// The page "When the picture is wrong" walks through them. Leaves a picture of the first in a PNG
/// file.

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_precision.hpp>

#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <offscreen/image.hpp>
#include <vellis/buffers.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/drawing.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/state.hpp>
#include <vellis/texture.hpp>

namespace {

namespace diagnostics = vellis::diagnostics;
using vellis::Framebuffer;
using vellis::Toolbox;

constexpr unsigned int frameWidth = 300;
constexpr unsigned int height = 200;
constexpr unsigned int width = 2 * frameWidth;

const glm::vec4 paper(0.98f, 0.97f, 0.95f, 1.0f);
const glm::vec4 navy(0.15f, 0.27f, 0.39f, 1.0f);
const glm::vec4 teal(0.16f, 0.62f, 0.56f, 1.0f);
const glm::vec4 coral(0.91f, 0.44f, 0.32f, 1.0f);
const glm::vec4 glow(1.0f, 0.9f, 0.6f, 0.5f);

void heading(const char* text) {
    diagnostics::log(nullptr, "--- %s", text);
}

// A blend function that leaks.

void drawBars(const glm::mat4& pixels) {
    Toolbox::drawRect(navy, {50.0f, 40.0f}, {110.0f, 120.0f}, pixels);
    Toolbox::drawRect(teal, {120.0f, 40.0f}, {180.0f, 165.0f}, pixels);
    Toolbox::drawRect(coral, {190.0f, 40.0f}, {250.0f, 90.0f}, pixels);
    Toolbox::drawLines(navy, {{30.0f, 39.5f}, {270.0f, 39.5f}}, pixels);
}

/// Lights up a disc. Its mistake: blending stays on, with the function for light.
void drawHighlight(const glm::mat4& pixels) {
    std::vector<glm::vec2> disc;
    for (int i = 0; i < 60; ++i) {
        const float angle = glm::radians(6.0f * static_cast<float>(i));
        disc.push_back(glm::vec2(150.0f, 120.0f) +
                       35.0f * glm::vec2(std::cos(angle), std::sin(angle)));
    }
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    Toolbox::drawTriangleFan(glow, static_cast<unsigned int>(disc.size()), disc.data(), pixels);
}

void drawFrame(float left) {
    const glm::mat4 pixels =
        glm::translate(glm::ortho<float>(0.0f, width, 0.0f, height), glm::vec3(left, 0.0f, 0.0f));
    drawBars(pixels);
    drawHighlight(pixels);
}

/// The first frame is as it should be; what it leaves set spoils the second one.
offscreen::Image leakBlendFunction() {
    heading("A blend function that leaks");
    Framebuffer::clear(paper, 1.0f, 0);
    diagnostics::diff_gl_states();
    drawFrame(0.0f);
    diagnostics::diff_gl_states();
    drawFrame(frameWidth);
    offscreen::Image picture = offscreen::readPixels(width, height);
    glDisable(GL_BLEND);
    diagnostics::check_glerror(); // takes what the diff leaves where the context lacks a tracked
                                  // state
    return picture;
}

// A name that the program does not have.

constexpr char vertexSource[] = R"(
uniform mat4 mvp;
IN vec2 position;

void main() {
    gl_Position = mvp * vec4(position, 0.0, 1.0);
}
)";

constexpr char fragmentSource[] = R"(
uniform vec4 color;
DECL_OUT0;

void main() {
    OUT0 = color;
}
)";

constexpr auto version = vellis::Shader::Version::V210;

void misspellAttribute() {
    heading("An attribute of another name");
    const auto program =
        vellis::Program::make(vellis::VertexShader::make(vertexSource, version),
                              vellis::FragmentShader::make(fragmentSource, version));
    const auto corners = vellis::VertexAttributeBuffer<glm::vec2>::make(
        {{-0.8f, -0.8f}, {0.8f, -0.8f}, {0.0f, 0.8f}}, vellis::BufferUsage::Static,
        vellis::BufferAccess::Draw);
    const auto triangle = vellis::drawable::Triangles<vellis::VertexAttribute<glm::vec2>>::make(
        program, {"positions", corners});
    program->draw(*triangle);
    if (const char* error = diagnostics::check_glerror())
        diagnostics::log("triangle", "%s", error);
    if (!program->hasAttrib("positions"))
        diagnostics::log("triangle", "the program has no attribute 'positions', but these:");
    diagnostics::print_program_attributes(program->id());
    diagnostics::print_program_uniforms(program->id());
}

// A shader that does not compile.

constexpr char brokenSource[] = R"(
uniform vec4 color;
DECL_OUT0;

void main() {
    OUT0 = colour;
}
)";

void breakShader() {
    heading("A shader that does not compile");
    const auto fragment = vellis::FragmentShader::make(brokenSource, version);
    if (fragment->hasCompilationError()) {
        diagnostics::print_shader_compilation_info(fragment->id());
        diagnostics::print_shader(fragment->id());
    }
}

// A framebuffer that cannot be drawn to.

void forgetStorage() {
    heading("A framebuffer that is not complete");
    const auto texture = vellis::Texture2D<glm::u8vec4>::make(vellis::Sampler()); // without a size
    const auto framebuffer = Framebuffer::make();
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture);
    if (const char* problem = diagnostics::check_framebuffer_complete())
        diagnostics::log("framebuffer", "%s", problem);
    glClear(GL_COLOR_BUFFER_BIT);
    if (const char* error = diagnostics::check_glerror())
        diagnostics::log("framebuffer", "%s", error);
    framebuffer->unbind();
}

// A texture unit that stays active.

constexpr char mixedSource[] = R"(
uniform sampler2D picture;
uniform sampler2D shade;
DECL_OUT0;

void main() {
    OUT0 = texture2D(picture, vec2(0.5)) * texture2D(shade, vec2(0.5));
}
)";

/// The mistake: the unit of the second texture stays active, where a toolkit counts on unit 0.
void mix(vellis::Program& program, const vellis::Texture& picture, const vellis::Texture& shade) {
    program.bind();
    program.setUniform("picture", picture);
    program.setUniform("shade", shade);
    program.unbind();
}

void leaveUnitActive() {
    heading("A texture unit that stays active");
    const auto program = vellis::Program::make(vellis::VertexShader::make(vertexSource, version),
                                               vellis::FragmentShader::make(mixedSource, version));
    const auto picture = vellis::Texture2D<glm::u8vec4>::make(4, 4);
    const auto shade = vellis::Texture2D<glm::u8vec4>::make(4, 4);
    mix(*program, *picture, *shade); // the textures stay, too: that is meant
    glActiveTexture(GL_TEXTURE0);
    const auto before = vellis::state::Snapshot::take();
    mix(*program, *picture, *shade);
    for (const auto& difference : differences(before, vellis::state::Snapshot::take())) {
        std::ostringstream line;
        line << difference;
        diagnostics::log("mix", "%s", line.str().c_str());
    }
    before.restore();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: vellis_diagnose picture.png\n";
        return EXIT_FAILURE;
    }
    try {
        const common::ReadyContext context(width, height);
        const offscreen::Image picture = leakBlendFunction();
        misspellAttribute();
        breakShader();
        forgetStorage();
        leaveUnitActive();
        common::writePicture(argv[1], picture);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

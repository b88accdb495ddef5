// What consumers build: a little of every family, drawn on a driver and read back.
//
// Usage: triangle shared|static

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <offscreen/context.hpp>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

static_assert(VELLIS_VERSION >= 10000, "the headers are of version 1.0.0 or later");
static_assert(__cplusplus >= CONSUMER_STANDARD, "the compiler is given the standard asked for");

#ifdef VELLIS_STATIC_DEFINE
constexpr const char* kind = "static";
#else
constexpr const char* kind = "shared";
#endif

namespace {

constexpr unsigned int size = 64;
int failures = 0;

void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

glm::u8vec4 pixel(int x, int y) {
    glm::u8vec4 color;
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &color);
    return color;
}

/// Draws a triangle over the lower left half through a program and buffers of its own.
void drawTriangle() {
    const auto program = vellis::Program::make(
        vellis::VertexShader::make("IN vec2 position; \n"
                                   "void main() { gl_Position = vec4(position, 0.0, 1.0); } \n",
                                   vellis::Shader::Version::V210),
        vellis::FragmentShader::make("uniform vec4 color; \n"
                                     "DECL_OUT0; \n"
                                     "void main() { OUT0 = color; } \n",
                                     vellis::Shader::Version::V210));
    expect(!program->hasLinkError(), "the program links");
    program->bind();
    program->setUniform("color", glm::vec4(1.f, 0.f, 0.f, 1.f));
    program->unbind();

    const auto corners = vellis::VertexAttributeBuffer<glm::vec2>::make(
        {{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}}, vellis::BufferUsage::Static,
        vellis::BufferAccess::Draw);
    program->draw(*vellis::drawable::Triangles<vellis::VertexAttribute<glm::vec2>>::make(
        program, {"position", corners}));
    expect(pixel(8, 8) == glm::u8vec4(255, 0, 0, 255), "the triangle covers the lower left");
    expect(pixel(56, 56) == glm::u8vec4(0, 0, 0, 0), "the upper right stays clear");
}

/// Draws the other half with the Toolbox, into a texture and back.
void drawIntoTexture() {
    const std::vector<glm::u8vec4> blank(size * size, glm::u8vec4(0, 0, 255, 255));
    const auto texture = vellis::Texture2D<glm::u8vec4>::make(size, size, blank.data());
    vellis::Framebuffer framebuffer;
    framebuffer.bind();
    framebuffer.attachFragmentOut(*texture);
    expect(vellis::internal::check_framebuffer_complete() == nullptr,
           "the framebuffer is complete");
    vellis::Toolbox::drawTriangleFan(glm::vec4(0.f, 1.f, 0.f, 1.f),
                                     {{1.f, 1.f}, {-1.f, 1.f}, {1.f, -1.f}}, glm::mat4(1.f));
    framebuffer.unbind();
    const std::vector<glm::u8vec4> texels = texture->download();
    expect(texels.size() == blank.size(), "all texels come back");
    expect(texels.front() == glm::u8vec4(0, 0, 255, 255), "the lower left texel is as uploaded");
    expect(texels.back() == glm::u8vec4(0, 255, 0, 255), "the upper right texel is drawn");
}

void readState() {
    vellis::state::State<int, 4, GL_VIEWPORT> viewport{};
    vellis::state::get(viewport);
    expect(viewport.value[2] == int{size} && viewport.value[3] == int{size},
           "the viewport is whole");
}

} // namespace

int main(int count, char** arguments) {
    expect(count == 2 && std::strcmp(arguments[1], kind) == 0, "the headers are for this library");

    offscreen::Settings settings;
    settings.width = settings.height = size;
    std::string error;
    if (!offscreen::settingsFromEnvironment(settings, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    const auto context = offscreen::Context::open(settings, error);
    if (context == nullptr || !vellis::engine::init()) {
        std::fprintf(stderr, "no context: %s\n", error.c_str());
        return 1;
    }
    expect(GLVersion.major >= 2 && GLAD_GL_VERSION_2_1 == 1, "the loader's version is known");
    glClearColor(0.f, 0.f, 0.f, 0.f);
    glClear(GL_COLOR_BUFFER_BIT);
    drawTriangle();
    drawIntoTexture();
    readState();
    expect(vellis::internal::check_glerror() == nullptr, "GL has no error to report");
    vellis::engine::dispose();
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}

/// A triangle in a window: the whole of a program that draws with vellis, in one file.
///
/// GLFW opens the window and makes the context; any other library for windows does as well.

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <vellis/gl.hpp> // OpenGL, in place of <GL/gl.h>
#include <vellis/vellis.hpp>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

namespace {

constexpr const char* vertexSource = "IN vec2 position; \n"
                                     "IN vec3 color; \n"
                                     "OUT vec3 vertexColor; \n"
                                     "void main() { \n"
                                     "  vertexColor = color; \n"
                                     "  gl_Position = vec4(position, 0.0, 1.0); \n"
                                     "} \n";

constexpr const char* fragmentSource = "IN vec3 vertexColor; \n"
                                       "uniform float brightness; \n"
                                       "DECL_OUT0; \n"
                                       "void main() { \n"
                                       "  OUT0 = vec4(brightness * vertexColor, 1.0); \n"
                                       "} \n";

/// A triangle with a colour at each corner. Everything in it lives in the GL context.
class Triangle {
public:
    /// Whether it can be drawn; says on standard error why not.
    bool isReady() const {
        if (!program_->hasLinkError())
            return true;
        vellis::diagnostics::print_shader_compilation_info(vertexShader_->id());
        vellis::diagnostics::print_shader_compilation_info(fragmentShader_->id());
        vellis::diagnostics::print_program_link_info(program_->id());
        return false;
    }

    void draw() const { program_->draw(*shape_, vellis::Uniform("brightness", 1.f)); }

private:
    template <class T>
    using Buffer = vellis::VertexAttributeBuffer<T>;
    template <class T>
    using Attribute = vellis::VertexAttribute<T>;
    using Shape = vellis::drawable::Triangles<Attribute<glm::vec2>, Attribute<glm::vec3>>;

    std::shared_ptr<vellis::VertexShader> vertexShader_ =
        vellis::VertexShader::make(vertexSource, vellis::Shader::Version::V210);
    std::shared_ptr<vellis::FragmentShader> fragmentShader_ =
        vellis::FragmentShader::make(fragmentSource, vellis::Shader::Version::V210);
    std::shared_ptr<vellis::Program> program_ =
        vellis::Program::make(vertexShader_, fragmentShader_);
    std::shared_ptr<Buffer<glm::vec2>> positions_ =
        Buffer<glm::vec2>::make({{-0.8f, -0.7f}, {0.8f, -0.7f}, {0.f, 0.8f}},
                                vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    std::shared_ptr<Buffer<glm::vec3>> colors_ = Buffer<glm::vec3>::make(
        {{0.91f, 0.44f, 0.32f}, {0.16f, 0.62f, 0.56f}, {0.91f, 0.77f, 0.42f}},
        vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    std::shared_ptr<Shape> shape_ =
        Shape::make(program_, {"position", positions_}, {"color", colors_});
};

/// Starts the library for the current context; says on standard error why it cannot.
bool startLibrary() {
    if (vellis::engine::init() && GLVersion.major >= 2 &&
        (GLVersion.major > 2 || GLVersion.minor >= 1))
        return true;
    std::fprintf(stderr, "OpenGL 2.1 is needed; the driver offers %d.%d\n", GLVersion.major,
                 GLVersion.minor);
    return false;
}

/// Draws until the window is closed. \return whether there was something to draw.
bool show(GLFWwindow* window) {
    const Triangle triangle;
    if (!triangle.isReady())
        return false;
    while (!glfwWindowShouldClose(window)) {
        int width = 0;
        int height = 0;
        glfwGetFramebufferSize(window, &width, &height);
        vellis::Framebuffer::setViewport(0, 0, static_cast<unsigned int>(width),
                                         static_cast<unsigned int>(height));
        vellis::Framebuffer::clearColor(glm::vec4(0.15f, 0.27f, 0.33f, 1.f));
        triangle.draw();
        glfwSwapBuffers(window);
        glfwWaitEvents();
    }
    return true;
} // the triangle goes here, before the context

} // namespace

int main() {
    if (glfwInit() == GLFW_FALSE) {
        std::fputs("There is no display.\n", stderr);
        return EXIT_FAILURE;
    }
    bool shown = false;
    if (GLFWwindow* const window = glfwCreateWindow(640, 480, "A triangle", nullptr, nullptr)) {
        glfwMakeContextCurrent(window);
        if (startLibrary()) {
            shown = show(window);
            vellis::engine::dispose(); // the context is still current
        }
        glfwDestroyWindow(window);
    } else {
        std::fputs("No window with an OpenGL context can be opened.\n", stderr);
    }
    glfwTerminate();
    return shown ? EXIT_SUCCESS : EXIT_FAILURE;
}

#include <common/window.hpp>

#include <iostream>
#include <stdexcept>
#include <utility>

namespace common {
namespace {

/// GLFW's words for what went wrong last, as a part of a sentence.
std::string lastError() {
    const char* description = nullptr;
    glfwGetError(&description);
    return description != nullptr ? description : "GLFW does not say why";
}

/// The key of the letter that the keyboard's layout gives it, where it is one; GLFW names keys by
/// their places on a keyboard of the USA.
int byLayout(int key, int scancode) {
    const char* name = glfwGetKeyName(key, scancode);
    const bool isLetter = name != nullptr && name[0] >= 'a' && name[0] <= 'z' && name[1] == '\0';
    return isLetter ? GLFW_KEY_A + (name[0] - 'a') : key;
}

} // namespace

Window::Glfw::Glfw() {
    if (glfwInit() != GLFW_TRUE)
        throw std::runtime_error("No window can be opened (" + lastError() +
                                 "): start the program in a desktop session, or set DISPLAY to "
                                 "the screen of one.");
}

Window::Glfw::~Glfw() {
    glfwTerminate();
}

Window::Window(const std::string& title, const glm::uvec2& size) : window_(open(title, size)) {
    listen();
}

/// Opens a window and makes its context current.
Window::Handle Window::open(const std::string& title, const glm::uvec2& size) {
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 2); // or newer, as the driver likes
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 1);
    glfwWindowHint(GLFW_SCALE_TO_MONITOR, GLFW_TRUE);
    Handle window(glfwCreateWindow(static_cast<int>(size.x), static_cast<int>(size.y),
                                   title.c_str(), nullptr, nullptr),
                  glfwDestroyWindow);
    if (window == nullptr)
        throw std::runtime_error("No window with an OpenGL 2.1 context can be opened (" +
                                 lastError() + "): install a GL driver, for instance with " +
                                 "`apt-get install libgl1-mesa-dri`.");
    glfwMakeContextCurrent(window.get());
    glfwSwapInterval(1);
    return window;
}

/// Keeps what GLFW reports until the loop comes to it: nothing may be thrown through GLFW.
void Window::listen() {
    GLFWwindow* const window = window_.get();
    glfwSetWindowUserPointer(window, this);
    glfwSetKeyCallback(window, [](GLFWwindow* of, int key, int scancode, int action, int) {
        if (action != GLFW_RELEASE)
            owner(of).keys_.push_back(byLayout(key, scancode));
    });
    glfwSetFramebufferSizeCallback(window,
                                   [](GLFWwindow* of, int, int) { owner(of).redraw_ = true; });
    glfwSetWindowRefreshCallback(window, [](GLFWwindow* of) { owner(of).redraw_ = true; });
}

Window& Window::owner(GLFWwindow* window) {
    return *static_cast<Window*>(glfwGetWindowUserPointer(window));
}

void Window::setTitle(const std::string& title) {
    glfwSetWindowTitle(window_.get(), title.c_str());
}

void Window::onKey(const std::string& help, std::function<void(int key)> handler) {
    help_ = help + "H              this text\n"
                   "Q, Escape      the end\n";
    onKey_ = std::move(handler);
    std::cout << help_ << std::flush;
}

void Window::run(const std::function<Redraw(const glm::uvec2& size)>& draw) {
    while (glfwWindowShouldClose(window_.get()) == GLFW_FALSE) {
        const glm::uvec2 size = framebufferSize();
        const bool visible = size.x > 0 && size.y > 0; // not while it is an icon
        if (redraw_ && visible) {
            redraw_ = draw(size) == Redraw::AtOnce;
            glfwSwapBuffers(window_.get());
        }
        if (redraw_ && visible)
            glfwPollEvents();
        else
            glfwWaitEvents();
        handleKeys();
    }
}

glm::uvec2 Window::framebufferSize() const {
    int width = 0;
    int height = 0;
    glfwGetFramebufferSize(window_.get(), &width, &height);
    return {width, height};
}

void Window::handleKeys() {
    for (const int key : std::exchange(keys_, {})) {
        handle(key);
        redraw_ = true;
    }
}

void Window::handle(int key) {
    switch (key) {
    case GLFW_KEY_H:
        std::cout << help_ << std::flush;
        break;
    case GLFW_KEY_Q:
    case GLFW_KEY_ESCAPE:
        glfwSetWindowShouldClose(window_.get(), GLFW_TRUE);
        break;
    default:
        if (onKey_)
            onKey_(key);
    }
}

} // namespace common

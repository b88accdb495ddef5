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
    listenToPointer();
}

void Window::listenToPointer() {
    GLFWwindow* const window = window_.get();
    glfwSetCursorPosCallback(window, [](GLFWwindow* of, double x, double y) {
        Window& self = owner(of);
        const glm::dvec2 at = self.toPixels(x, y);
        if (self.isDragged_)
            self.pointer_.push_back({at, at - self.pointerAt_, 0.0});
        self.pointerAt_ = at;
    });
    glfwSetMouseButtonCallback(window, [](GLFWwindow* of, int button, int action, int) {
        if (button == GLFW_MOUSE_BUTTON_LEFT)
            owner(of).isDragged_ = action == GLFW_PRESS;
    });
    glfwSetScrollCallback(window, [](GLFWwindow* of, double, double steps) {
        Window& self = owner(of);
        self.pointer_.push_back({self.pointerAt_, glm::dvec2(0.0), steps});
    });
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

void Window::onDrag(std::function<void(const glm::dvec2& by)> handler) {
    onDrag_ = std::move(handler);
}

void Window::onWheel(std::function<void(const glm::dvec2& at, double steps)> handler) {
    onWheel_ = std::move(handler);
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
        handleEvents();
    }
}

glm::uvec2 Window::framebufferSize() const {
    int width = 0;
    int height = 0;
    glfwGetFramebufferSize(window_.get(), &width, &height);
    return {width, height};
}

/// GLFW counts the window's own units, from the upper left corner.
glm::dvec2 Window::toPixels(double x, double y) const {
    int width = 0;
    int height = 0;
    glfwGetWindowSize(window_.get(), &width, &height);
    if (width <= 0 || height <= 0)
        return glm::dvec2(0.0);
    return glm::dvec2(x / width, 1.0 - y / height) * glm::dvec2(framebufferSize());
}

void Window::handleEvents() {
    for (const int key : std::exchange(keys_, {})) {
        handle(key);
        redraw_ = true;
    }
    for (const PointerEvent& event : std::exchange(pointer_, {})) {
        handle(event);
        redraw_ = true;
    }
}

void Window::handle(const PointerEvent& event) {
    if (event.steps != 0.0 && onWheel_)
        onWheel_(event.at, event.steps);
    if (event.steps == 0.0 && onDrag_)
        onDrag_(event.moved);
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

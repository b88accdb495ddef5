#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <GLFW/glfw3.h>
#include <glm/vec2.hpp>

#include <common/initialised_library.hpp>

namespace common {

/// A window on the screen with a GL context that the library can work in. It is current, and the
/// library is initialised, while the object lives.
///
/// \code
/// common::Window window("Scene", {640, 480});
/// const Scene scene; // goes before the context does
/// window.onKey("Space          stops the scene, and lets it go on\n", [&](int key) {
///     if (key == GLFW_KEY_SPACE)
///         scene.stopOrGoOn();
/// });
/// window.run([&](const glm::uvec2& size) {
///     scene.draw(size);
///     return common::Window::Redraw::WhenNeeded;
/// });
/// \endcode
class Window {
public:
    /// When there is something new to draw.
    enum class Redraw {
        WhenNeeded, ///< after a key, a turn of the wheel, or a change of the window
        AtOnce,     ///< as soon as the screen takes another picture
    };

    /// \param size  In pixels, before they are multiplied by the scale of the monitor.
    /// \throws std::runtime_error with one sentence where there can be no window, or no context
    ///         that is good enough.
    Window(const std::string& title, const glm::uvec2& size);

    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    void setTitle(const std::string& title);

    /// Sets what is called for each key that is pressed or repeats, with its `GLFW_KEY_…`. Letters
    /// are those of the keyboard's layout. H, which prints the help, and Q and Escape, which close
    /// the window, are the window's own.
    /// \param help  A line for each key of the handler's. It is printed now, with those of the
    ///              window's own.
    void onKey(const std::string& help, std::function<void(int key)> handler);

    /// Sets what is called while the pointer is dragged with its left button: with the distance
    /// since the last time, in pixels of the framebuffer, to the right and upwards.
    void onDrag(std::function<void(const glm::dvec2& by)> handler);

    /// Sets what is called when the wheel turns: with the pointer's place in pixels of the
    /// framebuffer, from its lower left corner, and steps that are positive away from the user.
    void onWheel(std::function<void(const glm::dvec2& at, double steps)> handler);

    /// Draws into the default framebuffer and shows it, until the window is closed.
    /// \param draw  Takes the size of the framebuffer in pixels, which is never empty.
    void run(const std::function<Redraw(const glm::uvec2& size)>& draw);

private:
    /// GLFW, ready while the object lives.
    class Glfw {
    public:
        Glfw();
        ~Glfw();
        Glfw(const Glfw&) = delete;
        Glfw& operator=(const Glfw&) = delete;
    };

    using Handle = std::unique_ptr<GLFWwindow, void (*)(GLFWwindow*)>;

    /// What the pointer did.
    struct PointerEvent {
        glm::dvec2 at;    ///< in pixels of the framebuffer, from its lower left corner
        glm::dvec2 moved; ///< 0 where the wheel was turned
        double steps;     ///< of the wheel
    };

    static Handle open(const std::string& title, const glm::uvec2& size);
    static Window& owner(GLFWwindow* window);
    void listen();
    void listenToPointer();
    glm::uvec2 framebufferSize() const;
    glm::dvec2 toPixels(double x, double y) const;
    void handleEvents();
    void handle(const PointerEvent& event);
    void handle(int key);

    Glfw glfw_;
    Handle window_;
    InitialisedLibrary library_; // goes first
    std::string help_;
    std::function<void(int key)> onKey_;
    std::function<void(const glm::dvec2& by)> onDrag_;
    std::function<void(const glm::dvec2& at, double steps)> onWheel_;
    std::vector<int> keys_;             ///< pressed since they were last handled
    std::vector<PointerEvent> pointer_; ///< likewise
    glm::dvec2 pointerAt_{0.0};         ///< in pixels, where it was last
    bool isDragged_ = false;
    bool redraw_ = true;
};

} // namespace common

#pragma once

#include <array>
#include <cstddef>
#include <string>

#include <glm/vec2.hpp>
#include <glm/vec4.hpp>

#include "scene.hpp"

namespace hosts {

constexpr std::size_t numWindows = 2;

/// The size of each window, before it is multiplied by the scale of the screen.
constexpr int windowWidth = 480;
constexpr int windowHeight = 320;

/// Where a window stands on the screen: beside the other one.
constexpr int windowLeft(std::size_t window) {
    return static_cast<int>(window) * (windowWidth + 20);
}

/// What the toolkit draws above: a panel, in units of the window from its upper left corner.
namespace panel {
constexpr int left = 340;
constexpr int top = 20;
constexpr int width = 120;
constexpr int height = 100;
constexpr int red = 42;
constexpr int green = 157;
constexpr int blue = 143;
} // namespace panel

/// The colour behind all in a window.
inline glm::vec4 ground(std::size_t window) {
    return window == 0 ? glm::vec4(0.15f, 0.27f, 0.33f, 1.f) : glm::vec4(0.36f, 0.22f, 0.36f, 1.f);
}

/// The life of a program's two windows, and what is watched meanwhile.
///
/// Without arguments they are drawn until they are closed. With `--frames N` the second is closed
/// after half of N frames and opened again later; after N frames the program says so, and the
/// windows stay as they are until they are closed. GL errors and GL state that drawing with vellis
/// has changed go to standard error, and the program fails.
class Run {
public:
    /// Reads the arguments: `--frames N`, and `--core` where the toolkit can be asked for a core
    /// profile. Ends the process with a line of usage where there are others.
    Run(int argc, char** argv, bool canAskForCore);

    /// What a program is to do next.
    enum class Step {
        Draw,        ///< each window
        CloseSecond, ///< the second window
        OpenSecond,  ///< the second window
        Rest,        ///< nothing, until something happens
    };
    Step next();

    /// Whether a core profile is asked for.
    bool isCore() const { return isCore_; }

    /// Draws a frame of a window, whose GL context is current: Scene::draw, watched.
    /// \param size  Of the framebuffer, in pixels.
    void draw(const Scene& scene, std::size_t window, const glm::uvec2& size);

    /// The toolkit has drawn above it, and the GL context is still current.
    void finish(const Scene& scene);

    /// What `main` returns.
    int status() const { return isFaultless_ ? 0 : 1; }

private:
    enum class Phase { Both, FirstAlone, BothAgain, Over };

    void complain(const std::string& what);
    void reportErrors(const char* when);

    std::size_t numFrames_ = 0; ///< 0 without an end
    bool isCore_ = false;
    std::array<std::size_t, numWindows> drawn_{}; ///< frames of each window
    Phase phase_ = Phase::Both;
    bool isFaultless_ = true;
};

} // namespace hosts

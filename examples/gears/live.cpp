/// The gears in a window.

#include "live.hpp"

#include <chrono>
#include <optional>

#include <glm/common.hpp>

#include <common/window.hpp>

#include "antialiased_picture.hpp"
#include "scene.hpp"
#include "spur_gear.hpp"

namespace gears {
namespace {

constexpr const char* help = R"(Left, Right    turn the view around an upright axis
Up, Down       turn the view around a level axis
Space          stops the gears, and lets them go on
+, -           twice as fast, half as fast
)";

/// How far the gears have turned, as time goes by.
class Motion {
public:
    /// By how much the first gear is turned now.
    float angle() {
        const auto now = Clock::now();
        const std::chrono::duration<float> passed = now - latest_;
        latest_ = now;
        if (running_)
            angle_ = glm::mod(angle_ + speed_ * passed.count(), 2.0f * pi);
        return angle_;
    }

    bool isRunning() const { return running_; }
    void stopOrGoOn() { running_ = !running_; }
    void changeSpeed(float factor) { speed_ = glm::clamp(speed_ * factor, 0.02f, 5.0f); }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point latest_ = Clock::now();
    bool running_ = true;
    float speed_ = 0.5f; ///< in radians a second
    float angle_ = 0.0f;
};

/// The gears, and what keys do to them.
class Show {
public:
    explicit Show(common::Window& window) : window_(window) {
        window_.onKey(help, [this](int key) { handle(key); });
    }
    Show(const Show&) = delete;
    Show& operator=(const Show&) = delete;

    void run() {
        window_.run([this](const glm::uvec2& size) {
            draw(size);
            return motion_.isRunning() ? common::Window::Redraw::AtOnce
                                       : common::Window::Redraw::WhenNeeded;
        });
    }

private:
    void draw(const glm::uvec2& size) {
        if (!picture_ || picture_->size() != size)
            picture_.emplace(size);
        picture_->begin();
        scene_.draw(size, view_, motion_.angle());
        picture_->end();
        picture_->show();
    }

    void handle(int key) {
        constexpr float step = 0.1f;
        switch (key) {
        case GLFW_KEY_LEFT:
            view_.aroundY -= step;
            break;
        case GLFW_KEY_RIGHT:
            view_.aroundY += step;
            break;
        case GLFW_KEY_UP:
            view_.aroundX -= step;
            break;
        case GLFW_KEY_DOWN:
            view_.aroundX += step;
            break;
        case GLFW_KEY_SPACE:
            motion_.stopOrGoOn();
            break;
        case GLFW_KEY_EQUAL: // where keyboards have the plus
        case GLFW_KEY_KP_ADD:
            motion_.changeSpeed(2.0f);
            break;
        case GLFW_KEY_MINUS:
        case GLFW_KEY_KP_SUBTRACT:
            motion_.changeSpeed(0.5f);
            break;
        default:
            break;
        }
    }

    common::Window& window_;
    const Scene scene_;
    std::optional<AntialiasedPicture> picture_;
    View view_;
    Motion motion_;
};

} // namespace

void showLive() {
    common::Window window("Gears", {640, 480});
    Show(window).run();
}

} // namespace gears

/// The plot in a window.

#include "live.hpp"

#include <algorithm>
#include <cmath>

#include <common/window.hpp>

#include "layout.hpp"
#include "plot.hpp"
#include "signal.hpp"
#include "view.hpp"
#include "words.hpp"

namespace plot {
namespace {

constexpr const char* help = R"(Dragging       moves what is shown
Wheel, +, -    shows less or more of the time
Left, Right    moves by a quarter
Home           all of it
)";

/// The plot, and what the pointer and keys do to it.
class Show {
public:
    Show(common::Window& window, const Signal& signal, const std::string& font)
        : window_(window),
          plot_(signal, loadFonts(font)),
          view_(signal.range(), signal.samples[signal.highest]) {
        window_.onKey(help, [this](int key) { handle(key); });
        window_.onDrag([this](const glm::dvec2& by) { drag(by); });
        window_.onWheel([this](const glm::dvec2& at, double steps) { zoom(at, steps); });
    }
    Show(const Show&) = delete;
    Show& operator=(const Show&) = delete;

    void run() {
        window_.run([this](const glm::uvec2& size) {
            area_ = detailArea(size);
            plot_.draw(size, view_.range());
            return common::Window::Redraw::WhenNeeded;
        });
    }

private:
    void drag(const glm::dvec2& by) { view_.move(-by / glm::dvec2(area_.size())); }

    void zoom(const glm::dvec2& at, double steps) {
        const double place = (at.x - double{area_.low.x}) / double{area_.size().x};
        view_.zoom(std::pow(0.8, steps), std::clamp(place, 0.0, 1.0));
    }

    void handle(int key) {
        switch (key) {
        case GLFW_KEY_LEFT:
            view_.move({-0.25, 0.0});
            break;
        case GLFW_KEY_RIGHT:
            view_.move({0.25, 0.0});
            break;
        case GLFW_KEY_EQUAL: // where keyboards have the plus
        case GLFW_KEY_KP_ADD:
            view_.zoom(0.5, 0.5);
            break;
        case GLFW_KEY_MINUS:
        case GLFW_KEY_KP_SUBTRACT:
            view_.zoom(2.0, 0.5);
            break;
        case GLFW_KEY_HOME:
            view_.showAll();
            break;
        default:
            break;
        }
    }

    common::Window& window_;
    const Plot plot_;
    View view_;
    Area area_{glm::vec2(0.0f), glm::vec2(1.0f)};
};

} // namespace

void showLive(const std::string& font) {
    common::Window window("Plot", usualSize);
    Show(window, makeSignal(), font).run();
}

} // namespace plot

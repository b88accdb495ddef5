#include "viewer.hpp"

#include <algorithm>

#include <gallery/frame/color.hpp>
#include <gallery/frame/render.hpp>
#include <gallery/panels/textured.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/texture.hpp>

namespace window {
namespace {

using vellis::Framebuffer;
using vellis::Sampler;

/// Smooth where pixels of the panel become smaller. Where they become larger, they are to be seen
/// as what they are if the panel is drawn with just these.
Sampler samplerFor(const gallery::Panel& panel) {
    Sampler sampler = Sampler::trilinear_clamp();
    if (panel.sampling == 1)
        sampler.set({{Sampler::MAG_FILTER, Sampler::NEAREST}});
    return sampler;
}

/// Draws a panel as large as the framebuffer allows, in its middle.
void show(const gallery::Panel& panel, const glm::uvec2& size) {
    const unsigned int drawn = gallery::drawnSize(panel);
    const auto picture = gallery::ColorTexture::make(drawn, drawn, nullptr, samplerFor(panel));
    gallery::draw(panel, *picture);
    picture->generateMipmap();

    const unsigned int side = std::min(size.x, size.y);
    const glm::ivec2 corner((size - side) / 2u);
    Framebuffer::clearColor(gallery::toRgba(gallery::palette::sheet));
    Framebuffer::setViewport(corner.x, corner.y, side, side);
    gallery::drawTextured(*picture, {{0.0f, 0.0f}, {1.0f, 1.0f}}, {{-1.0f, -1.0f}, {1.0f, 1.0f}});
}

/// Prints what `print` does, and takes the errors that GL reports for states that it does not know,
/// so that nobody holds them against a panel.
void printStates(void (*print)()) {
    print();
    while (vellis::diagnostics::check_glerror() != nullptr) {
    }
}

constexpr const char* help = R"(Left, Right    the panel before, the panel after
Up, Down       the group before, the group after
1 to 9, 0      the first to the ninth panel of the group, the tenth
D              the GL states that have changed since the last D, on standard error
P              all GL states, on standard error
)";

} // namespace

Viewer::Viewer(common::Window& window, const Selection& selection)
    : window_(window),
      selection_(selection) {
    window_.onKey(help, [this](int key) { handle(key); });
    printStates(vellis::diagnostics::diff_gl_states); // from here on
}

void Viewer::run() {
    window_.setTitle(selection_.title());
    window_.run([this](const glm::uvec2& size) {
        show(selection_.panel(), size);
        return common::Window::Redraw::WhenNeeded;
    });
}

void Viewer::handle(int key) {
    switch (key) {
    case GLFW_KEY_LEFT:
        selection_.toPrevious();
        break;
    case GLFW_KEY_RIGHT:
        selection_.toNext();
        break;
    case GLFW_KEY_UP:
        selection_.toPreviousGroup();
        break;
    case GLFW_KEY_DOWN:
        selection_.toNextGroup();
        break;
    case GLFW_KEY_D:
        printStates(vellis::diagnostics::diff_gl_states);
        break;
    case GLFW_KEY_P:
        printStates(vellis::diagnostics::print_gl_states);
        break;
    default:
        if (key >= GLFW_KEY_0 && key <= GLFW_KEY_9)
            selection_.choose(static_cast<std::size_t>(key - GLFW_KEY_0 + 9) % 10);
    }
    window_.setTitle(selection_.title());
}

} // namespace window

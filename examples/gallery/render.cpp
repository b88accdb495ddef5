#include <gallery/render.hpp>

#include <stdexcept>
#include <string>

#include <common/downloaded_picture.hpp>
#include <gallery/drawing_to.hpp>
#include <gallery/picture.hpp>
#include <vellis/internal.hpp>

namespace gallery {
namespace {

void draw(const Panel& panel) {
    panel.draw({panel.sampling});
    if (const char* error = vellis::internal::check_glerror())
        throw std::runtime_error("drawing it makes the GL error " + std::string(error) + ".");
}

} // namespace

offscreen::Image render(const Panel& panel) {
    const unsigned int size = panelSize * panel.sampling;
    try {
        const auto colours = ColourTexture::make(size, size);
        const DrawingTo drawing({size, size}, *colours);
        draw(panel);
        return scaledDown(common::downloadPicture(size, size), panel.sampling);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("Panel " + std::string(panel.name) + ": " + error.what());
    }
}

} // namespace gallery

#include <gallery/frame/render.hpp>

#include <stdexcept>
#include <string>

#include <common/downloaded_picture.hpp>
#include <gallery/frame/picture.hpp>
#include <vellis/diagnostics.hpp>

namespace gallery {

void draw(const Panel& panel, const ColorTexture& picture) {
    try {
        const DrawingTo drawing(glm::uvec2(drawnSize(panel)), picture);
        panel.draw({panel.sampling});
        if (const char* error = vellis::diagnostics::check_glerror())
            throw std::runtime_error("drawing it makes the GL error " + std::string(error) + ".");
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("Panel " + std::string(panel.name) + ": " + error.what());
    }
}

offscreen::Image render(const Panel& panel) {
    const unsigned int size = drawnSize(panel);
    const auto picture = ColorTexture::make(size, size);
    draw(panel, *picture);
    return scaledDown(common::toPicture(picture->download(), size, size), panel.sampling);
}

} // namespace gallery

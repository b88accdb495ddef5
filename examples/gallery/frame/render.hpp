#pragma once

#include <gallery/frame/drawing_to.hpp>
#include <gallery/frame/panel.hpp>
#include <offscreen/image.hpp>

namespace gallery {

/// How many pixels a panel is drawn with along one side.
inline unsigned int drawnSize(const Panel& panel) {
    return panelSize * panel.sampling;
}

/// Draws a panel into a texture that is drawnSize() texels wide and high. GL attributes and the
/// bound framebuffer are as before afterwards.
/// \throws std::runtime_error with the panel's name where the driver refuses the framebuffer, a
///         shader does not compile, a program does not link, or GL reports an error.
void draw(const Panel& panel, const ColorTexture& picture);

/// The picture of a panel, scaled down to its size.
/// \copydetails draw
offscreen::Image render(const Panel& panel);

} // namespace gallery

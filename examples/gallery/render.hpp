#pragma once

#include <gallery/panel.hpp>
#include <offscreen/image.hpp>

namespace gallery {

/// Draws a panel into a framebuffer of its own and reads it back. GL attributes and the bound
/// framebuffer are as before afterwards.
/// \throws std::runtime_error with the panel's name where the driver refuses the framebuffer, a
///         shader does not compile, a program does not link, or GL reports an error.
offscreen::Image render(const Panel& panel);

} // namespace gallery

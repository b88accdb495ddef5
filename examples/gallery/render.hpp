#pragma once

#include <gallery/panel.hpp>
#include <offscreen/image.hpp>

namespace gallery {

/// The width and height that the framebuffer needs for every panel.
inline constexpr unsigned int framebufferSize = panelSize * maxSampling;

/// Draws a panel into the bound framebuffer and reads it back. GL attributes are as before
/// afterwards.
/// \throws std::runtime_error with the panel's name where a shader does not compile, a program does
///         not link, or GL reports an error.
offscreen::Image render(const Panel& panel);

} // namespace gallery

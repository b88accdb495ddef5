#pragma once

#include <offscreen/image.hpp>

namespace common {

/// The lower left part of the framebuffer that is bound for reading, as an opaque picture: what
/// blending leaves as alpha is no transparency.
offscreen::Image downloadPicture(unsigned int width, unsigned int height);

} // namespace common

#pragma once

#include <vector>

#include <glm/gtc/type_precision.hpp>

#include <offscreen/image.hpp>

namespace common {

/// Pixels as GL gives them, the lowest row first, as an opaque picture: what blending leaves as
/// alpha is no transparency.
offscreen::Image toPicture(const std::vector<glm::u8vec4>& pixels, unsigned int width,
                           unsigned int height);

/// The lower left part of the framebuffer that is bound for reading, as an opaque picture.
offscreen::Image downloadPicture(unsigned int width, unsigned int height);

} // namespace common

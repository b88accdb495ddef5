#pragma once

#include <gallery/frame/color.hpp>
#include <offscreen/image.hpp>

/// Operations on pictures in memory.
namespace gallery {

/// An opaque picture of one colour.
offscreen::Image filled(unsigned int width, unsigned int height, Color color);

/// Paints a rectangle, which must lie inside of the picture.
void fill(offscreen::Image& image, unsigned int x, unsigned int y, unsigned int width,
          unsigned int height, Color color);

/// Copies a picture into a larger one with its upper left corner at (x, y).
void paste(const offscreen::Image& image, offscreen::Image& onto, unsigned int x, unsigned int y);

/// The picture scaled down: each pixel is the mean of \p factor × \p factor ones.
offscreen::Image scaledDown(const offscreen::Image& image, unsigned int factor);

} // namespace gallery

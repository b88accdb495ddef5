#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>

#include <gallery/frame/color.hpp>
#include <gallery/panels/view.hpp>

/// Places and shapes in the plane z = 0.
namespace gallery {

/// A rectangle with sides along the axes.
struct Rectangle {
    glm::vec2 lowerLeft;
    glm::vec2 upperRight;
};

/// A place in pixels of the panel, from its upper left corner.
glm::vec2 atPixel(float x, float y);

/// A rectangle in pixels of the panel, the left and the top counted from its upper left corner.
Rectangle atPixels(float left, float top, float width, float height);

/// Fills a rectangle.
void drawRectangle(const glm::vec4& color, const Rectangle& where);

/// Fills a circle.
void drawDisc(const glm::vec4& color, const glm::vec2& centre, float radius,
              const glm::mat4& mvp = flatView);

} // namespace gallery

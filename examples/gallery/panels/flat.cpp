#include <gallery/panels/flat.hpp>

#include <gallery/frame/panel.hpp>
#include <gallery/panels/curves.hpp>
#include <vellis/drawing.hpp>

namespace gallery {

glm::vec2 atPixel(float x, float y) {
    constexpr auto size = static_cast<float>(panelSize);
    return {2.0f * x / size - 1.0f, 1.0f - 2.0f * y / size};
}

Rectangle atPixels(float left, float top, float width, float height) {
    return {atPixel(left, top + height), atPixel(left + width, top)};
}

void drawRectangle(const glm::vec4& color, const Rectangle& where) {
    vellis::Toolbox::drawRect(color, where.lowerLeft, where.upperRight, flatView);
}

void drawDisc(const glm::vec4& color, const glm::vec2& centre, float radius, const glm::mat4& mvp) {
    const auto rim =
        aroundCurve(96, [&](float t) { return centre + onCircle(2.0f * pi * t, radius); });
    vellis::Toolbox::drawTriangleFan(color, sizeOf(rim), rim.data(), mvp);
}

} // namespace gallery

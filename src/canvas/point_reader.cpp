#include "canvas/point_reader.hpp"

namespace vellis::canvas {
namespace {

using Type = vellis::detail::PointType;

glm::vec3 inSpace(const glm::vec2& point) {
    return {point, 0.f};
}
glm::dvec3 inSpace(const glm::dvec2& point) {
    return {point, 0.};
}
const glm::vec3& inSpace(const glm::vec3& point) {
    return point;
}
const glm::dvec3& inSpace(const glm::dvec3& point) {
    return point;
}

/// Converts points, less an origin where there is one.
template <class V>
void convert(const void* points, std::size_t first, std::size_t count, const glm::dvec3* origin,
             glm::vec3* result) {
    const V* const from = static_cast<const V*>(points) + first;
    if (origin != nullptr) {
        for (std::size_t i = 0; i < count; ++i)
            result[i] = glm::vec3(glm::dvec3(inSpace(from[i])) - *origin);
    } else {
        for (std::size_t i = 0; i < count; ++i)
            result[i] = glm::vec3(inSpace(from[i]));
    }
}

bool isPlane(Type type) {
    return type == Type::Vec2 || type == Type::DVec2;
}

} // namespace

PointReader::PointReader(const Points& points, const Placement& placement)
    : points_(points),
      placement_(placement),
      dimensions_(isPlane(points.type) && placement.keepsPlane() ? 2 : 3) {}

void PointReader::read(std::size_t first) {
    const std::size_t left = points_.count - first;
    const std::size_t count = left < blockSize ? left : blockSize;
    first_ = first;
    numRead_ = count;
    const glm::dvec3* const origin = placement_.isMoved() ? &placement_.origin() : nullptr;
    switch (points_.type) {
    case Type::Vec2:
        convert<glm::vec2>(points_.data, first, count, origin, block_.data());
        break;
    case Type::Vec3:
        convert<glm::vec3>(points_.data, first, count, origin, block_.data());
        break;
    case Type::DVec2:
        convert<glm::dvec2>(points_.data, first, count, origin, block_.data());
        break;
    case Type::DVec3:
        convert<glm::dvec3>(points_.data, first, count, origin, block_.data());
        break;
    }
    if (!placement_.isTransformed())
        return;
    for (std::size_t i = 0; i < count; ++i)
        block_[i] = glm::vec3(placement_.transform() * glm::vec4(block_[i], 1.f));
}

Color toColor(const glm::vec4& color) {
    Color result(0);
    for (int i = 0; i < 4; ++i) {
        if (color[i] > 0.f) // not of what is not a number
            result[i] =
                static_cast<unsigned char>(color[i] < 1.f ? color[i] * 255.f + 0.5f : 255.f);
    }
    return result;
}

ColorReader::ColorReader(const Colors& colors) : colors_(colors), one_(toColor(colors.one)) {}

} // namespace vellis::canvas

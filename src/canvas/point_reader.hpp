#pragma once

#include <array>
#include <cstddef>

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include <vellis/canvas/points.hpp>

#include "canvas/drawing.hpp"

namespace vellis::canvas {

/// What applies to points before the matrix of a draw.
class Placement {
public:
    /// Is subtracted from points.
    void setOrigin(const glm::dvec3& origin) {
        origin_ = origin;
        isMoved_ = origin != glm::dvec3(0.);
        keepsPlane_ = isPlane();
    }
    const glm::dvec3& origin() const { return origin_; }

    /// Applies to what is left. It is affine.
    void setTransform(const glm::mat4& transform) {
        transform_ = transform;
        isTransformed_ = transform != glm::mat4(1.f);
        keepsPlane_ = isPlane();
    }
    const glm::mat4& transform() const { return transform_; }

    bool isMoved() const { return isMoved_; }
    bool isTransformed() const { return isTransformed_; }

    /// Whether points in the plane z = 0 stay there.
    bool keepsPlane() const { return keepsPlane_; }

private:
    bool isPlane() const {
        return origin_.z == 0. && transform_[0][2] == 0.f && transform_[1][2] == 0.f &&
               transform_[3][2] == 0.f;
    }

    glm::dvec3 origin_{0.};
    glm::mat4 transform_{1.f};
    bool isMoved_ = false;
    bool isTransformed_ = false;
    bool keepsPlane_ = true;
};

/// Reads the points of a call, of whatever type, block by block, as they are under a placement.
class PointReader {
public:
    PointReader(const Points& points, const Placement& placement);

    std::size_t size() const { return points_.count; }

    /// 2 where all points are in the plane z = 0, otherwise 3.
    unsigned int dimensions() const { return dimensions_; }

    /// A point. It stays until that of an index beyond its block is asked for.
    const glm::vec3& operator[](std::size_t index) {
        if (index - first_ >= numRead_)
            read(index);
        return block_[index - first_];
    }

private:
    static constexpr std::size_t blockSize = 256;

    /// Reads as many as fit from an index on.
    void read(std::size_t first);

    Points points_;
    const Placement& placement_;
    unsigned int dimensions_;
    std::size_t first_ = 0;   ///< the index of the first point of the block
    std::size_t numRead_ = 0; ///< of the points of the block
    std::array<glm::vec3, blockSize> block_;
};

/// Whether all three are finite: 0 times what is not is not 0.
inline bool isFinite(const glm::vec3& point) {
    return point.x * 0.f + point.y * 0.f + point.z * 0.f == 0.f;
}

/// A colour in 8 bits each, clamped; what is not a number is 0.
Color toColor(const glm::vec4& color);

/// Reads the colours of a call.
class ColorReader {
public:
    explicit ColorReader(const Colors& colors);

    bool isEmpty() const { return colors_.count == 0; }
    bool isOne() const { return colors_.type == detail::ColorType::One; }

    /// Whether it is one that hides what is below.
    bool isOpaque() const { return isOne() && one_.a == 255; }

    /// The colour of a point. There is one at least.
    Color at(std::size_t index) const {
        if (isOne())
            return one_;
        index = index < colors_.count ? index : colors_.count - 1;
        return colors_.type == detail::ColorType::Vec4
                   ? toColor(static_cast<const glm::vec4*>(colors_.data)[index])
                   : static_cast<const Color*>(colors_.data)[index];
    }

private:
    Colors colors_;
    Color one_;
};

} // namespace vellis::canvas

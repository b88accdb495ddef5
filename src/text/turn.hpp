#pragma once

#include <cmath>

#include <glm/vec2.hpp>

namespace vellis::text {

/// A turn counter-clockwise by so many radians.
class Turn {
public:
    explicit Turn(float angle)
        : isTurned_(angle != 0.f),
          cosine_(isTurned_ ? std::cos(double{angle}) : 1.),
          sine_(isTurned_ ? std::sin(double{angle}) : 0.) {}

    bool isTurned() const { return isTurned_; }

    /// What becomes of a length.
    glm::vec2 operator()(double right, double up) const {
        return {static_cast<float>(right * cosine_ - up * sine_),
                static_cast<float>(right * sine_ + up * cosine_)};
    }
    glm::vec2 operator()(const glm::vec2& length) const {
        return (*this)(double{length.x}, double{length.y});
    }

private:
    bool isTurned_;
    double cosine_;
    double sine_;
};

} // namespace vellis::text

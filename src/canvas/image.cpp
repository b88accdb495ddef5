#include <vellis/canvas/image.hpp>

#include <cmath>

namespace vellis {

ImageFrame ImageFrame::rotated(double angle) const {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const auto turned = [&](const glm::dvec2& v) {
        return glm::dvec2(c * v.x - s * v.y, s * v.x + c * v.y);
    };
    ImageFrame result = *this;
    const glm::dvec2 middle(corner.x + (right.x + up.x) / 2., corner.y + (right.y + up.y) / 2.);
    result.right = turned(right);
    result.up = turned(up);
    result.corner = {middle.x - (result.right.x + result.up.x) / 2.,
                     middle.y - (result.right.y + result.up.y) / 2.};
    return result;
}

} // namespace vellis

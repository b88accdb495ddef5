#include "canvas/dash_pattern.hpp"

#include <cmath>

namespace vellis::canvas {
namespace {

/// The part of a piece in front of the near plane, in pixels. Of what lies behind it nothing is
/// drawn, so it has no length.
double visibleLength(glm::dvec4 from, glm::dvec4 to, const glm::dvec2& scale) {
    const double fromDistance = from.z + from.w;
    const double toDistance = to.z + to.w;
    if (fromDistance < 0. && toDistance < 0.)
        return 0.;
    const glm::dvec4 cut = from + (to - from) * (fromDistance / (fromDistance - toDistance));
    if (fromDistance < 0.)
        from = cut;
    else if (toDistance < 0.)
        to = cut;
    const glm::dvec2 step = (glm::dvec2(to) / to.w - glm::dvec2(from) / from.w) * scale;
    return std::sqrt(step.x * step.x + step.y * step.y);
}

/// \p value modulo \p period, from 0 on; 0 where there is no such value.
double wrap(double value, double period) {
    const double rest = std::fmod(value, period);
    if (!std::isfinite(rest))
        return 0.;
    return rest < 0. ? rest + period : rest;
}

} // namespace

void setDashes(Style& style, const Stroke& stroke, float pixelRatio) {
    float sum = 0.f;
    float gaps = 0.f;
    const unsigned int count =
        stroke.numDashes < Stroke::mostDashes ? stroke.numDashes : Stroke::mostDashes;
    for (unsigned int i = 0; i < count; ++i) {
        const float length = stroke.dashes[i].length * pixelRatio;
        const float gap = stroke.dashes[i].gap * pixelRatio;
        if (!(length >= 0.f && gap >= 0.f))
            return;
        style.dashes[2 * i] = length;
        style.dashes[2 * i + 1] = gap;
        sum += length + gap;
        gaps += gap;
    }
    style.isDashed = gaps > 0.f && std::isfinite(sum);
    style.period = sum;
}

Ruler::Ruler(const glm::mat4& matrix, const glm::vec2& scale, double offset, double period)
    : matrix_(matrix),
      scale_(scale),
      offset_(wrap(offset, period)),
      period_(period) {}

void Ruler::begin(const glm::vec3& point) {
    last_ = matrix_ * glm::dvec4(point, 1.);
    phase_ = offset_;
}

void Ruler::goTo(const glm::vec3& point) {
    const glm::dvec4 next = matrix_ * glm::dvec4(point, 1.);
    phase_ = wrap(phase_ + visibleLength(last_, next, scale_), period_);
    last_ = next;
}

} // namespace vellis::canvas

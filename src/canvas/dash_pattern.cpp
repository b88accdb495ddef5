#include "canvas/dash_pattern.hpp"

#include <algorithm>
#include <cmath>

#include "canvas/matrices.hpp"

namespace vellis::canvas {
namespace {

/// The part of a piece in front of the near plane, in pixels. Of what lies behind it nothing is
/// drawn, so it has no length.
double visibleLength(const glm::dvec4& from, const glm::dvec4& to, const glm::vec2& scale) {
    const double fromDistance = from.z + from.w;
    const double toDistance = to.z + to.w;
    if (fromDistance < 0. && toDistance < 0.)
        return 0.;
    // Where the piece begins and ends, as parts of the way from one to the other.
    const double cut = fromDistance / (fromDistance - toDistance);
    const double first = fromDistance < 0. ? cut : 0.;
    const double last = toDistance < 0. ? cut : 1.;
    double square = 0.;
    for (int i = 0; i < 2; ++i) {
        const auto at = [&](double part) {
            const double w = from.w + part * (to.w - from.w);
            return (from[i] + part * (to[i] - from[i])) / w * double{scale[i]};
        };
        const double step = at(last) - at(first);
        square += step * step;
    }
    return std::sqrt(square);
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
    float end = 0.f;
    float gaps = 0.f;
    const unsigned int count = std::min<unsigned int>(stroke.numDashes, Stroke::mostDashes);
    for (unsigned int i = 0; i < Stroke::mostDashes; ++i) {
        if (i >= count) { // the first one again, which changes nothing
            style.dashes[i] = style.dashes[0];
            style.dashes[Stroke::mostDashes + i] = style.dashes[Stroke::mostDashes];
            continue;
        }
        const float half = stroke.dashes[i].length * pixelRatio / 2.f;
        const float gap = stroke.dashes[i].gap * pixelRatio;
        if (!(half >= 0.f && gap >= 0.f))
            return;
        style.dashes[i] = end + half;
        style.dashes[Stroke::mostDashes + i] = half;
        end += 2.f * half + gap;
        gaps += gap;
    }
    style.isDashed = gaps > 0.f && std::isfinite(end);
    style.period = end;
}

bool isOnDash(const Style& style, float phase) {
    for (unsigned int i = 0; i < Stroke::mostDashes; ++i) {
        if (std::abs(phase - style.dashes[i]) <= style.dashes[Stroke::mostDashes + i])
            return true;
    }
    return false;
}

Ruler::Ruler(const glm::mat4& matrix, const glm::vec2& scale, double offset, double period)
    : matrix_(matrix),
      scale_(scale),
      offset_(wrap(offset, period)),
      period_(period) {}

void Ruler::begin(const glm::vec3& point) {
    last_ = placeOf(matrix_, point);
    phase_ = offset_;
}

void Ruler::goTo(const glm::vec3& point) {
    const glm::dvec4 next = placeOf(matrix_, point);
    phase_ = wrap(phase_ + visibleLength(last_, next, scale_), period_);
    last_ = next;
}

} // namespace vellis::canvas

#include "view.hpp"

#include <glm/common.hpp>

namespace plot {
namespace {

constexpr double least = 20.0;   ///< milliseconds
constexpr double first = 4000.0; ///< milliseconds

} // namespace

View::View(const Range& all, const glm::dvec2& sample) : all_(all), range_(all) {
    range_.low.x = sample.x - first / 2.0;
    range_.high.x = sample.x + first / 2.0;
}

void View::move(const glm::dvec2& by) {
    const glm::dvec2 half = range_.size() / 2.0;
    const glm::dvec2 centre =
        glm::clamp(range_.low + half + by * range_.size(), all_.low, all_.high);
    range_ = {centre - half, centre + half};
}

void View::zoom(double factor, double at) {
    const double before = range_.size().x;
    const double size = glm::clamp(before * factor, least, all_.size().x);
    range_.low.x += at * (before - size);
    range_.high.x = range_.low.x + size;
    move(glm::dvec2(0.0));
}

} // namespace plot

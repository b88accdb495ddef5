#include "text/skyline.hpp"

#include <algorithm>

namespace vellis::text {

std::optional<Skyline::Place> Skyline::add(unsigned int width, unsigned int height) {
    if (width == 0 || height == 0 || width > size_ || height > size_)
        return std::nullopt;
    std::optional<unsigned int> lowest;
    std::size_t best = 0;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const std::optional<unsigned int> y = heightAt(i, width);
        if (y && *y <= size_ - height && (!lowest || *y < *lowest)) {
            lowest = y;
            best = i;
        }
    }
    if (!lowest)
        return std::nullopt;
    const Place place{steps_[best].x, *lowest};
    raise(best, {place.x, place.y + height, width});
    return place;
}

/// How high something of that width lies whose left edge is that of a step; nothing where it would
/// stand out.
std::optional<unsigned int> Skyline::heightAt(std::size_t first, unsigned int width) const {
    if (steps_[first].x > size_ - width)
        return std::nullopt;
    const unsigned int end = steps_[first].x + width;
    unsigned int y = 0;
    for (std::size_t i = first; i < steps_.size() && steps_[i].x < end; ++i)
        y = (std::max)(y, steps_[i].y);
    return y;
}

/// Puts a step over those from \p first on.
void Skyline::raise(std::size_t first, const Step& top) {
    // Nothing has changed yet where memory runs out here.
    if (steps_.size() == steps_.capacity())
        steps_.reserve(2 * steps_.size());
    const unsigned int end = top.x + top.width;
    const auto covered = steps_.begin() + static_cast<std::ptrdiff_t>(first);
    auto behind = covered;
    while (behind != steps_.end() && behind->x + behind->width <= end)
        ++behind;
    if (behind != steps_.end() && behind->x < end) {
        behind->width -= end - behind->x;
        behind->x = end;
    }
    steps_.insert(steps_.erase(covered, behind), top);
}

} // namespace vellis::text

#pragma once

#include <glm/vec2.hpp>

#include "signal.hpp"

namespace plot {

/// Which part of a signal is shown. Places and distances are fractions of what is shown, from the
/// lower left.
class View {
public:
    /// Shows a few seconds around a sample.
    /// \param all  What can be shown.
    View(const Range& all, const glm::dvec2& sample);

    const Range& range() const { return range_; }

    /// Moves what is shown; something of the signal stays in it.
    void move(const glm::dvec2& by);

    /// Shows so many times as much of the time, from 20 milliseconds on; what is at a place stays
    /// there.
    void zoom(double factor, double at);

    void showAll() { range_ = all_; }

private:
    Range all_;
    Range range_;
};

} // namespace plot

#pragma once

#include <vector>

#include <offscreen/image.hpp>

#include "support/stroke_reference.hpp"

namespace vellis::bench {

/// Draws strokes with cairo's best antialiasing, in white on black.
offscreen::Image drawByCairo(const std::vector<test::Stroke>& strokes);

} // namespace vellis::bench

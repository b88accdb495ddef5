#pragma once

namespace vellis {

/// Copies \p count points of 2 or 3 \p dimensions to \p result, each followed by the length of the
/// line up to it: 0 at the first. That takes `count * (dimensions + 1)` numbers.
///
/// Each step is rounded to single precision by itself, whatever the processor could do at once, so
/// that dashes end at the same places everywhere. The source is compiled without contraction for
/// that.
void addDistances(const float* points, unsigned int dimensions, unsigned int count, float* result);

} // namespace vellis

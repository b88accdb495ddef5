#pragma once

#include <cstddef>
#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// What Canvas draws, each side in a way of its own: `raw` is a Plain, the others are
///
///   vellis    the caller's points in one call
///   calls     the same in a call for each line
///   buffer    points that stand in the caller's buffer
///   picture   a picture that was recorded before
///   grouped, alternating  calls of three kinds, kind by kind and in turns
std::vector<Workload> canvasWorkloads();

/// A strip of more and more points, with the sides of `strip/thin`.
std::vector<Workload> canvasGrowth();

/// The bytes that a picture takes for each point of a long strip in the plane, or in space.
double pictureBytes(unsigned int dimensions);

} // namespace vellis::bench

#pragma once

#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// Registers a benchmark for each size of each workload that tells something on the NullDriver, or
/// on a driver: `draw/handles/1`.
///
/// The sides of a workload take Turns. The time of a benchmark is that of the library's operation;
/// its counters are, for each side, the median time of an operation (`raw_ns`, `vellis_ns`) and,
/// for all but the first, the median ratio to the first side's block of the same turn
/// (`vellis_ratio`).
void registerTimes(const std::vector<Workload>& workloads, Where where);

} // namespace vellis::bench

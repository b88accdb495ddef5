#pragma once

#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// Runs every side of those workloads that run on the null driver through vellis_measured_loop(),
/// and prints a line for each run, in order: `workload size library iterations allocations`.
/// The first run is an empty side's, `loop 1 none …`: what the loop itself takes.
void countAll(const std::vector<Workload>& workloads);

} // namespace vellis::bench

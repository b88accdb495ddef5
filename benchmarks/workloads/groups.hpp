#pragma once

#include <vector>

#include "workloads/workload.hpp"

/// \file
/// The workloads by family: each function stands in the file of its name.

namespace vellis::bench {

std::vector<Workload> drawWorkloads();
std::vector<Workload> bufferWorkloads();
std::vector<Workload> drawableWorkloads();
std::vector<Workload> snapshotWorkloads();
std::vector<Workload> stateWorkloads();
std::vector<Workload> programWorkloads();
std::vector<Workload> textureWorkloads();
std::vector<Workload> toolboxWorkloads();
std::vector<Workload> registryWorkloads();

} // namespace vellis::bench

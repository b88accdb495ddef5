#pragma once

#include <vector>

#include "workloads/workload.hpp"

/// \file
/// The workloads by family: each function stands in the file of its name.

namespace vellis::bench {

std::vector<Workload> drawWorkloads();
std::vector<Workload> bufferWorkloads();

} // namespace vellis::bench

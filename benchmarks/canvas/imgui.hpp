#pragma once

#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// Adds sides with Dear ImGui's lines to those workloads that it can draw.
void addImgui(std::vector<Workload>& workloads);

} // namespace vellis::bench

#pragma once

#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// The main function of a program of benchmarks, with the arguments
/// `null|driver [options of Google Benchmark]`. \p workloads is called when the NullDriver or a
/// driver's context is there.
int runTimes(int argc, char** argv, std::vector<Workload> (*workloads)());

/// The same on the driver whose context is current, with the options alone as arguments.
int runTimesHere(int argc, char** argv, const std::vector<Workload>& workloads);

} // namespace vellis::bench

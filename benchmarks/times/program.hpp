#pragma once

#include <memory>
#include <vector>

#include <offscreen/context.hpp>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// A driver's context of \p size x \p size pixels, with the library begun. Ends the program where
/// there is none.
std::unique_ptr<offscreen::Context> openContext(unsigned int size);

/// The main function of a program of benchmarks, with the arguments
/// `null|driver [options of Google Benchmark]`. \p workloads is called when the NullDriver or a
/// driver's context is there.
int runTimes(int argc, char** argv, std::vector<Workload> (*workloads)());

/// The same on the driver whose context is current, with the options alone as arguments.
int runTimesHere(int argc, char** argv, const std::vector<Workload>& workloads);

} // namespace vellis::bench

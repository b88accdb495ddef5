#pragma once

#include <vector>

#include "workloads/workload.hpp"

/// \file
/// The same workloads through other libraries, in the same run.

namespace vellis::bench {

/// How another library does a workload's operation.
struct PeerRow {
    const char* workload; ///< Workload::name
    MakeSide make;
};

/// Starts every library that this program is built with, on the NullDriver or the driver that is
/// current. \return The workloads that at least one of them has a row for, with a side for each
/// such row after raw GL's and vellis's.
///
/// The libraries are not shut down: that would have to happen before the context goes.
std::vector<Workload> peerWorkloads();

/// The GL entry point of that name, for a library that looks up its own: what vellis calls, so that
/// all call the same. Names that vellis does not have are the driver's; the NullDriver has none of
/// them.
void* peerLookUp(const char* name);

} // namespace vellis::bench

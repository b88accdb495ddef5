#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "workloads/workload.hpp"

namespace vellis::bench {

/// Has the sides of a workload take turns, block by block, so that what else the machine does meets
/// all of them alike.
///
/// There are two of each side: one made in their order, and then one in the opposite order. On a
/// driver, what is made later may be slower by more than what is to be measured.
class Turns {
public:
    /// Makes the sides, and finds how many operations make a block.
    Turns(const std::vector<Implementation>& implementations, unsigned int size);

    /// Lets each side run its blocks. \return the time of an operation in nanoseconds, up to the
    /// end of the work that it gives the driver, for each implementation.
    std::vector<double> take();

private:
    struct Instance {
        std::size_t implementation;
        std::unique_ptr<Side> side;
    };

    std::size_t numImplementations_;
    std::vector<Instance> instances_;
    unsigned int blockSize_;
    std::size_t first_ = 0;
};

double median(std::vector<double> values);

/// Prints one of the lines that scripts/measurements/reports.py reads for sides: workload, size,
/// side, value.
void printSide(const char* workload, unsigned int size, const char* side, double value);

/// Prints such lines for the turns of two seconds or more, with nanoseconds.
void printTurns(const Workload& workload, unsigned int size);

} // namespace vellis::bench

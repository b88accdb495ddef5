#include "times/turns.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>

#include <vellis/gl.hpp>

namespace vellis::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

/// How long a block of one side's operations takes, at least.
constexpr Nanoseconds blockTime = std::chrono::microseconds(500);

// How long printTurns() goes on.
constexpr std::chrono::seconds leastTime(2);
constexpr int fewestTurns = 5;
constexpr int mostTurns = 101;

/// The time of \p count operations, up to the end of the work that they give the driver.
Nanoseconds timeBlock(Side& side, unsigned int count) {
    glFinish();
    const Clock::time_point start = Clock::now();
    for (unsigned int i = 0; i < count; ++i)
        side.run();
    glFinish();
    return Clock::now() - start;
}

/// How many operations make a block.
unsigned int blockSizeOf(Side& side) {
    unsigned int count = 1;
    timeBlock(side, count); // what happens only once is over
    while (timeBlock(side, count) < blockTime)
        count *= 2;
    return count;
}

} // namespace

Turns::Turns(const std::vector<Implementation>& implementations, unsigned int size)
    : numImplementations_(implementations.size()),
      blockSize_(std::numeric_limits<unsigned int>::max()) {
    for (std::size_t i = 0; i < implementations.size(); ++i)
        instances_.push_back({i, implementations[i].make(size)});
    for (std::size_t i = implementations.size(); i-- > 0;)
        instances_.push_back({i, implementations[i].make(size)});
    // Blocks of the same size: what the driver puts off is then the same share of each.
    for (const Instance& instance : instances_)
        blockSize_ = std::min(blockSize_, blockSizeOf(*instance.side));
}

std::vector<double> Turns::take() {
    std::vector<double> times(numImplementations_, 0.);
    for (std::size_t i = 0; i < instances_.size(); ++i) {
        const Instance& instance = instances_[(first_ + i) % instances_.size()];
        // Each implementation has two blocks in a turn.
        times[instance.implementation] +=
            timeBlock(*instance.side, blockSize_).count() / blockSize_ / 2;
    }
    ++first_;
    return times;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void printSide(const char* workload, unsigned int size, const char* side, double value) {
    std::printf("%s %u %s %.1f\n", workload, size, side, value);
}

void printTurns(const Workload& workload, unsigned int size) {
    Turns turns(workload.implementations, size);
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < mostTurns && (i < fewestTurns || Clock::now() - start < leastTime); ++i) {
        const std::vector<double> times = turns.take();
        for (std::size_t side = 0; side < times.size(); ++side)
            printSide(workload.name, size, workload.implementations[side].library, times[side]);
    }
    std::fflush(stdout);
}

} // namespace vellis::bench

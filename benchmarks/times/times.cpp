#include "times/times.hpp"

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <vellis/gl.hpp>

#include "null_driver/null_driver.hpp"

namespace vellis::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

/// How long a block of one side's operations takes, at least.
constexpr Nanoseconds blockTime = std::chrono::microseconds(500);

/// How many turns the sides take.
constexpr int numTurns = 101;

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
unsigned int blockSize(Side& side) {
    unsigned int count = 1;
    timeBlock(side, count); // what happens only once is over
    while (timeBlock(side, count) < blockTime)
        count *= 2;
    return count;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The times of an operation in nanoseconds: by side, then by turn.
using Times = std::vector<std::vector<double>>;

void report(benchmark::State& state, const std::vector<Implementation>& implementations,
            const Times& times) {
    for (std::size_t i = 0; i < times.size(); ++i) {
        const std::string library = implementations[i].library;
        state.counters[library + "_ns"] = median(times[i]);
        if (i == 0)
            continue;
        std::vector<double> ratios;
        for (std::size_t turn = 0; turn < times[i].size(); ++turn)
            ratios.push_back(times[i][turn] / times[0][turn]);
        state.counters[library + "_ratio"] = median(std::move(ratios));
    }
}

/// A side that is ready to run.
struct Instance {
    std::size_t implementation;
    std::unique_ptr<Side> side;
};

/// Makes two sides of each implementation: one in their order, and then one in the opposite order.
/// On a driver, what is made later may be slower by more than what is to be measured.
std::vector<Instance> makeInstances(const std::vector<Implementation>& implementations,
                                    unsigned int size) {
    std::vector<Instance> instances;
    for (std::size_t i = 0; i < implementations.size(); ++i)
        instances.push_back({i, implementations[i].make(size)});
    for (std::size_t i = implementations.size(); i-- > 0;)
        instances.push_back({i, implementations[i].make(size)});
    return instances;
}

void measure(benchmark::State& state, const Workload& workload, unsigned int size) {
    NullDriver::setVariables(workload.uniforms(size), workload.attributes());
    const std::vector<Instance> instances = makeInstances(workload.implementations, size);
    // Blocks of the same size: what the driver puts off is then the same share of each.
    unsigned int count = std::numeric_limits<unsigned int>::max();
    for (const Instance& instance : instances)
        count = std::min(count, blockSize(*instance.side));
    Times times(workload.implementations.size());
    std::size_t first = 0;
    for ([[maybe_unused]] auto turn : state) {
        for (std::vector<double>& ofSide : times)
            ofSide.push_back(0);
        for (std::size_t i = 0; i < instances.size(); ++i) {
            const Instance& instance = instances[(first + i) % instances.size()];
            // Each implementation has two blocks in a turn.
            times[instance.implementation].back() +=
                timeBlock(*instance.side, count).count() / count / 2;
        }
        ++first;
        constexpr std::size_t library = 1; // raw is 0
        state.SetIterationTime(times[library].back() * 1e-9);
    }
    report(state, workload.implementations, times);
}

} // namespace

void registerTimes(const std::vector<Workload>& workloads, Where where) {
    for (const Workload& workload : workloads) {
        if (workload.where != Where::Both && workload.where != where)
            continue;
        for (const unsigned int size : workload.sizes) {
            const std::string name = std::string(workload.name) + '/' + std::to_string(size);
            benchmark::RegisterBenchmark(name.c_str(), measure, workload, size)
                ->UseManualTime()
                ->Iterations(numTurns)
                ->Unit(benchmark::kNanosecond);
        }
    }
}

} // namespace vellis::bench

#include "times/times.hpp"

#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "null_driver/null_driver.hpp"
#include "times/turns.hpp"

namespace vellis::bench {
namespace {

/// How many turns the sides take.
constexpr int numTurns = 101;

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

void measure(benchmark::State& state, const Workload& workload, unsigned int size) {
    NullDriver::setVariables(workload.uniforms(size), workload.attributes());
    Turns turns(workload.implementations, size);
    Times times(workload.implementations.size());
    for ([[maybe_unused]] auto turn : state) {
        const std::vector<double> taken = turns.take();
        for (std::size_t i = 0; i < taken.size(); ++i)
            times[i].push_back(taken[i]);
        constexpr std::size_t library = 1; // raw is 0
        state.SetIterationTime(taken[library] * 1e-9);
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

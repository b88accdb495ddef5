/// What Canvas costs on a driver: times of what it draws and of the same through others, and
/// memory.
///
/// Usage: vellis_canvas_benchmarks [growth | WORKLOAD...]    by default all but growth
///
/// Prints a line for each turn and side: workload, size, side, nanoseconds. Those of the workload
/// `memory` have allocations or bytes in their place.

#include <algorithm>
#include <string>

#include <vellis/engine.hpp>

#include "canvas/scenes.hpp"
#include "canvas/workloads.hpp"
#include "support/allocation_count.hpp"
#include "times/program.hpp"
#include "times/turns.hpp"

#ifdef VELLIS_HAS_IMGUI
#include "canvas/imgui.hpp"
#endif

namespace vellis::bench {
namespace {

/// The most allocations that a batch makes which is like the two before.
double allocationsOfABatch() {
    std::size_t most = 0;
    for (const Workload& workload : canvasWorkloads()) {
        for (const Implementation& implementation : workload.implementations) {
            const auto side = implementation.make(std::min(workload.sizes.front(), 10000u));
            side->run();
            side->run();
            const std::size_t before = test::allocationCount();
            side->run();
            most = std::max(most, test::allocationCount() - before);
        }
    }
    return static_cast<double>(most);
}

void printMemory() {
    printSide("memory", 1, "allocations", allocationsOfABatch());
    for (const unsigned int dimensions : {2u, 3u})
        printSide("memory", dimensions, "picture_bytes", pictureBytes(dimensions));
}

std::vector<Workload> workloadsNamed(const std::vector<std::string>& names) {
    const auto isNamed = [&](const std::string& name) {
        return names.empty() || std::find(names.begin(), names.end(), name) != names.end();
    };
    if (!names.empty() && isNamed("growth"))
        return canvasGrowth();
    std::vector<Workload> named;
    for (Workload& workload : canvasWorkloads()) {
        if (isNamed(workload.name))
            named.push_back(std::move(workload));
    }
#ifdef VELLIS_HAS_IMGUI
    addImgui(named);
#endif
    if (isNamed("memory"))
        printMemory();
    return named;
}

} // namespace
} // namespace vellis::bench

int main(int argc, char** argv) {
    using namespace vellis::bench;
    const auto context = openContext(pictureSize);
    for (const Workload& workload : workloadsNamed({argv + 1, argv + argc})) {
        for (const unsigned int size : workload.sizes)
            printTurns(workload, size);
    }
    vellis::engine::dispose();
}

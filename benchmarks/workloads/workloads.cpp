#include "workloads/groups.hpp"

namespace vellis::bench {

std::vector<Workload> workloads() {
    std::vector<Workload> all;
    for (const auto group :
         {drawWorkloads, bufferWorkloads, drawableWorkloads, stateWorkloads, snapshotWorkloads,
          programWorkloads, textureWorkloads, toolboxWorkloads, registryWorkloads}) {
        const std::vector<Workload> some = group();
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

} // namespace vellis::bench

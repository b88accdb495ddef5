#include "instructions/measured_loop.hpp"

#include "workloads/workload.hpp"

void vellis_measured_loop(vellis::bench::Side& side, unsigned int iterations) {
    for (unsigned int i = 0; i < iterations; ++i)
        side.run();
}

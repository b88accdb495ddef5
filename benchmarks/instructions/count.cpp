#include "instructions/count.hpp"

#include <cstdio>

#include "instructions/measured_loop.hpp"
#include "null_driver/null_driver.hpp"
#include "support/allocation_count.hpp"

namespace vellis::bench {
namespace {

constexpr unsigned int iterations = 200;

struct Nothing {
    void operator()() const {}
};

void count(const char* workload, unsigned int size, const Implementation& implementation) {
    const std::unique_ptr<Side> side = implementation.make(size);
    // What happens only once, such as the resolution of symbols, is over before the count.
    for (int i = 0; i < 10; ++i)
        side->run();
    const std::size_t before = test::allocationCount();
    vellis_measured_loop(*side, iterations);
    const std::size_t allocations = test::allocationCount() - before;
    std::printf("%s %u %s %u %zu\n", workload, size, implementation.library, iterations,
                allocations);
}

} // namespace

void countAll(const std::vector<Workload>& workloads) {
    NullDriver::install();
    count("loop", 1, {"none", makeSide<Nothing>});
    for (const Workload& workload : workloads) {
        if (workload.where == Where::Driver)
            continue;
        for (const unsigned int size : workload.sizes) {
            NullDriver::setVariables(workload.uniforms(size), workload.attributes());
            for (const Implementation& implementation : workload.implementations)
                count(workload.name, size, implementation);
        }
    }
}

} // namespace vellis::bench

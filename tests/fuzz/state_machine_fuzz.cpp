/// Random sequences of calls on a fake GL that lacks extensions and fails at random, with memory
/// that runs out at random: see machine/state_machine.hpp.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/machine/fake_surroundings.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Never destroyed: at exit, others of its kind may be gone.
    static auto& surroundings = *new vellis::test::FakeSurroundings;
    const std::string problem =
        vellis::test::runStateMachine({data, size}, surroundings, vellis::test::maxFuzzedSteps);
    if (!problem.empty()) {
        std::fputs(problem.c_str(), stderr);
        std::abort();
    }
    return 0;
}

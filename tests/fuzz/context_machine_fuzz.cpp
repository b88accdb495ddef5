/// Random sequences of calls with several Contexts on fake GL contexts that come and go: see
/// machine/context_surroundings.hpp.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/machine/context_surroundings.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Never destroyed: at exit, others of its kind may be gone.
    static auto& surroundings = *new vellis::test::ContextSurroundings;
    const std::string problem =
        vellis::test::runStateMachine({data, size}, surroundings, vellis::test::maxFuzzedSteps);
    if (!problem.empty()) {
        std::fputs(problem.c_str(), stderr);
        std::abort();
    }
    return 0;
}

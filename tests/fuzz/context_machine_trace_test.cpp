/// The state machine on several fake GL contexts: the inputs that are kept, and some random ones.

#include "fuzz/machine/context_operations.hpp"
#include "fuzz/machine/context_surroundings.hpp"
#include "fuzz/machine/machine_test.hpp"

namespace {

using ContextMachine = vellis::test::Machine<vellis::test::ContextSurroundings>;

TEST_F(ContextMachine, KeepsEveryPromiseForTheKeptInputs) {
    runKept(VELLIS_CORPUS);
}

TEST_F(ContextMachine, KeepsEveryPromiseForRandomInputs) {
    runRandom(200);
}

TEST_F(ContextMachine, CanChooseEveryOperationWithOneByte) {
    const std::size_t numOperations = vellis::test::operationsOfSeveralContexts().size();
    EXPECT_LE(numOperations, 256u);
    EXPECT_GT(numOperations, vellis::test::operations().size());
}

} // namespace

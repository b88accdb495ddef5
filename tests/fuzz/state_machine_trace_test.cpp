/// The state machine on the fake GL: the inputs that are kept, and some random ones.

#include "fuzz/machine/fake_surroundings.hpp"
#include "fuzz/machine/machine_test.hpp"

namespace {

using StateMachine = vellis::test::Machine<vellis::test::FakeSurroundings>;

TEST_F(StateMachine, KeepsEveryPromiseForTheKeptInputs) {
    runKept(VELLIS_CORPUS);
}

TEST_F(StateMachine, KeepsEveryPromiseForRandomInputs) {
    runRandom(100);
}

TEST_F(StateMachine, CanChooseEveryOperationWithOneByte) {
    EXPECT_LE(vellis::test::operations().size(), 256u);
    EXPECT_GT(vellis::test::operations().size(), 100u);
}

} // namespace

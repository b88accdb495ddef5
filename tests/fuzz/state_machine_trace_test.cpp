/// The state machine on the fake GL: the inputs that are kept, and some random ones.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fuzz/machine/context_operations.hpp"
#include "fuzz/machine/context_surroundings.hpp"
#include "fuzz/machine/fake_surroundings.hpp"
#include "support/allocation_count.hpp"

namespace {

using vellis::test::Operation;
using Input = std::vector<std::uint8_t>;

/// The state machine in surroundings that live as long as the suite.
template <class Surroundings>
class Machine : public testing::Test {
protected:
    static void SetUpTestSuite() { surroundings = std::make_unique<Surroundings>(); }
    static void TearDownTestSuite() { surroundings.reset(); }

    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }

    static std::string run(const Input& input) {
        return vellis::test::runStateMachine({input.data(), input.size()}, *surroundings,
                                             vellis::test::maxFuzzedSteps);
    }

    static void runKept(const char* folder) {
        int numInputs = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const Input input{std::istreambuf_iterator<char>(file),
                              std::istreambuf_iterator<char>()};
            EXPECT_EQ(run(input), "") << entry.path();
            ++numInputs;
        }
        EXPECT_GT(numInputs, 10);
    }

    static void runRandom(int numInputs) {
        std::mt19937 random(1);
        for (int i = 0; i < numInputs; ++i) {
            Input input(1000);
            for (std::uint8_t& byte : input)
                byte = static_cast<std::uint8_t>(random());
            EXPECT_EQ(run(input), "") << "input " << i;
        }
    }

    static std::unique_ptr<Surroundings> surroundings;
};

template <class Surroundings>
std::unique_ptr<Surroundings> Machine<Surroundings>::surroundings;

using StateMachine = Machine<vellis::test::FakeSurroundings>;
using ContextMachine = Machine<vellis::test::ContextSurroundings>;

TEST_F(StateMachine, KeepsEveryPromiseForTheKeptInputs) {
    runKept(VELLIS_STATE_MACHINE_CORPUS);
}

TEST_F(StateMachine, KeepsEveryPromiseForRandomInputs) {
    runRandom(100);
}

TEST_F(StateMachine, CanChooseEveryOperationWithOneByte) {
    EXPECT_LE(vellis::test::operations().size(), 256u);
    EXPECT_GT(vellis::test::operations().size(), 100u);
}

TEST_F(ContextMachine, KeepsEveryPromiseForTheKeptInputs) {
    runKept(VELLIS_CONTEXT_MACHINE_CORPUS);
}

TEST_F(ContextMachine, KeepsEveryPromiseForRandomInputs) {
    runRandom(200);
}

TEST_F(ContextMachine, CanChooseEveryOperationWithOneByte) {
    EXPECT_LE(vellis::test::operationsOfSeveralContexts().size(), 256u);
    EXPECT_GT(vellis::test::operationsOfSeveralContexts().size(),
              vellis::test::operations().size());
}

} // namespace

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

#include "fuzz/machine/fake_surroundings.hpp"
#include "support/allocation_count.hpp"

namespace {

using vellis::test::FakeSurroundings;
using vellis::test::Operation;
using Input = std::vector<std::uint8_t>;

class StateMachine : public testing::Test {
protected:
    static void SetUpTestSuite() { surroundings = std::make_unique<FakeSurroundings>(); }
    static void TearDownTestSuite() { surroundings.reset(); }
    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }

    static std::string run(const Input& input) {
        return vellis::test::runStateMachine({input.data(), input.size()}, *surroundings,
                                             vellis::test::maxFuzzedSteps);
    }

    static std::unique_ptr<FakeSurroundings> surroundings;
};

std::unique_ptr<FakeSurroundings> StateMachine::surroundings;

TEST_F(StateMachine, KeepsEveryPromiseForTheKeptInputs) {
    int numInputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VELLIS_STATE_MACHINE_CORPUS)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const Input input{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        EXPECT_EQ(run(input), "") << entry.path();
        ++numInputs;
    }
    EXPECT_GT(numInputs, 10);
}

TEST_F(StateMachine, KeepsEveryPromiseForRandomInputs) {
    std::mt19937 random(1);
    for (int i = 0; i < 100; ++i) {
        Input input(1000);
        for (std::uint8_t& byte : input)
            byte = static_cast<std::uint8_t>(random());
        EXPECT_EQ(run(input), "") << "input " << i;
    }
}

TEST_F(StateMachine, CanChooseEveryOperationWithOneByte) {
    EXPECT_LE(vellis::test::operations().size(), 256u);
    EXPECT_GT(vellis::test::operations().size(), 100u);
}

} // namespace

#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fuzz/machine/state_machine.hpp"
#include "support/allocation_count.hpp"

namespace vellis::test {

/// The state machine in surroundings that live as long as the suite.
template <class Surroundings>
class Machine : public testing::Test {
protected:
    using Input = std::vector<std::uint8_t>;

    static void SetUpTestSuite() { surroundings = std::make_unique<Surroundings>(); }
    static void TearDownTestSuite() { surroundings.reset(); }

    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }

    static std::string run(const Input& input) {
        return runStateMachine({input.data(), input.size()}, *surroundings, maxFuzzedSteps);
    }

    /// The inputs that are kept in a folder.
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

    /// Inputs of a fixed seed.
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

} // namespace vellis::test

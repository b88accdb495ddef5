// needs: the thread sanitizer

/// Threads that take over each other's Contexts at the same time.

#include <vellis/context.hpp>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::Context;
using vellis::test::FakeGl;

/// Where two threads wait for each other without sleep, so that they go on at the same time.
class Start {
public:
    /// \param time  1 at a thread's first call, then 2 …
    void wait(int time) {
        ++numArrived_;
        for (int i = 0; numArrived_ < 2 * time; ++i) {
            if (i > 10000)
                std::this_thread::yield();
        }
    }

private:
    std::atomic<int> numArrived_ = 0;
};

TEST(ContextSwapTrace, EachThreadHasTheOneThatItUsesLast) {
    FakeGl gl; // no platform tells of it what is current
    gl.setString(GL_VERSION, "2.1");
    const std::shared_ptr<Context> contexts[] = {Context::make(FakeGl::lookUp),
                                                 Context::make(FakeGl::lookUp)};
    Context::useProcess();
    gl.ignoreTheRest();
    ASSERT_NE(contexts[0], nullptr);
    ASSERT_NE(contexts[1], nullptr);
    constexpr int numRounds = 50000;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    Start start;
    std::atomic<bool> isOver = false; // a busy machine has fewer rounds
    std::atomic<int> numLost = 0;
    const auto swap = [&](int i) {
        for (int round = 0; round < numRounds; ++round) {
            Context& context = *contexts[(round + i) % 2];
            if (i == 0 && std::chrono::steady_clock::now() > end)
                isOver = true;
            start.wait(2 * round + 1);
            const bool isLast = isOver;
            context.use();
            start.wait(2 * round + 2);
            numLost += Context::current() == &context ? 0 : 1;
            if (isLast)
                return;
        }
    };
    std::thread first(swap, 0);
    std::thread second(swap, 1);
    first.join();
    second.join();
    EXPECT_EQ(numLost, 0);
}

} // namespace

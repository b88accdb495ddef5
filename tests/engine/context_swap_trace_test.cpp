/// Threads that take over each other's Contexts at the same time.

#include <vellis/context.hpp>

#include <atomic>
#include <cstring>
#include <memory>
#include <thread>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

namespace {

using vellis::Context;

const GLubyte* versionAlone(GLenum name) {
    return reinterpret_cast<const GLubyte*>(name == GL_VERSION ? "2.1" : "");
}

/// Of a GL context of which nobody tells whether it is current.
void* lookUp(const char* name) {
    return std::strcmp(name, "glGetString") == 0 ? reinterpret_cast<void*>(versionAlone) : nullptr;
}

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
    const std::shared_ptr<Context> contexts[] = {Context::make(lookUp), Context::make(lookUp)};
    Context::useProcess();
    ASSERT_NE(contexts[0], nullptr);
    ASSERT_NE(contexts[1], nullptr);
    constexpr int numRounds = 50000;
    Start start;
    std::atomic<int> numLost = 0;
    const auto swap = [&](int i) {
        for (int round = 0; round < numRounds; ++round) {
            Context& context = *contexts[(round + i) % 2];
            start.wait(2 * round + 1);
            context.use();
            start.wait(2 * round + 2);
            numLost += Context::current() == &context ? 0 : 1;
        }
    };
    std::thread first(swap, 0);
    std::thread second(swap, 1);
    first.join();
    second.join();
    EXPECT_EQ(numLost, 0);
}

} // namespace

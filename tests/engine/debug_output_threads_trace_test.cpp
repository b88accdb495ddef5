// needs: the thread sanitizer

/// Debug output and labels on several threads at once, without a driver.

#include <vellis/engine/debug_output.hpp>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using namespace vellis::internal;
using testing::Each;
using testing::SizeIs;
using vellis::test::FakeContext;
using vellis::test::FakeGl;

constexpr std::size_t numThreads = 4;
constexpr int numFrames = 50;

/// What a thread does: it labels what it makes, and gets what its own GL context has to say.
std::vector<std::string> work(FakeContext& gl) {
    std::vector<std::string> texts;
    gl.makeCurrent();
    const auto context = Context::make(FakeGl::lookUp);
    for (int frame = 0; frame < numFrames; ++frame) {
        DebugOutputSettings settings;
        settings.callback = [&](const DebugMessage& message) { texts.push_back(text_of(message)); };
        EXPECT_TRUE(start_debug_output(settings));
        const auto program = Program::make();
        const std::string name = "water " + std::to_string(frame);
        label(program, name.c_str());
        program->bind();
        gl.sendMessage("boom");
        program->unbind();
        EXPECT_EQ(label_of(program), name);
        stop_debug_output();
        gl.sendMessage("dropped");
    }
    context->dispose();
    gl.ignoreTheRest();
    FakeContext::releaseCurrent();
    return texts;
}

TEST(DebugOutputThreadsTrace, EachHasItsOwn) {
    FakeGl fake;
    std::array<std::unique_ptr<FakeContext>, numThreads> contexts;
    for (auto& gl : contexts)
        gl = std::make_unique<FakeContext>();
    std::array<std::vector<std::string>, numThreads> texts;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < numThreads; ++i)
        threads.emplace_back([&, i] { texts[i] = work(*contexts[i]); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_THAT(texts, Each(SizeIs(numFrames)));
    for (const auto& ofThread : texts) {
        ASSERT_FALSE(ofThread.empty());
        EXPECT_THAT(ofThread.back(), testing::HasSubstr("'water 49': boom"));
    }
    fake.ignoreTheRest();
}

} // namespace

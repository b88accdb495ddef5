/// What objects hold after an operation on them ran out of memory.

#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/context.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture/sampler.hpp>

#include "faults/failing_allocations.hpp"
#include "operations/linked_again.hpp"
#include "support/aborted.hpp"
#include "support/allocation_count.hpp"
#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using vellis::test::FailingAllocations;
using vellis::test::FakeGl;

class AllocationEffects : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }
    void TearDown() override { gl.ignoreTheRest(); }

    FakeGl gl;
};

/// Repeats \p action with allocation 1, 2, 3 … failing until it succeeds.
/// \return how often it failed; \p check is called after each time.
template <class Action, class Check>
std::size_t failUntilItSucceeds(Action action, Check check) {
    for (std::size_t number = 1;; ++number) {
        try {
            const FailingAllocations failing(number, FailingAllocations::Extent::One);
            action();
            return number - 1;
        } catch (const std::bad_alloc&) {
        }
        check();
    }
}

TEST_F(AllocationEffects, ProgramHasAllUniformsAndAttributesOrNone) {
    gl.setActiveUniforms({{"color", GL_FLOAT_VEC4}, {"mvp", GL_FLOAT_MAT4}});
    gl.setActiveAttributes({{"position", GL_FLOAT_VEC2}});
    test::LinkedAgain program;
    const auto hasAllOrNone = [&] {
        EXPECT_EQ(program.hasUniform("color"), program.hasAttrib("position"));
        EXPECT_EQ(program.hasUniform("mvp"), program.hasAttrib("position"));
        EXPECT_FALSE(program.isBound());
    };
    EXPECT_GT(failUntilItSucceeds([&] { program.link(); }, hasAllOrNone), 5u);
    EXPECT_TRUE(program.hasUniform("color") && program.hasUniform("mvp"));
    EXPECT_TRUE(program.hasAttrib("position"));
}

TEST_F(AllocationEffects, ObjectKeepsItsLabel) {
    const auto program = Program::make();
    const auto other = Program::make();
    internal::label(program, "water");
    const std::string longer(64, 'x');
    const auto keepsIt = [&] {
        EXPECT_EQ(internal::label_of(program), "water");
        EXPECT_EQ(internal::label_of(other), "");
    };
    gl.forget();
    EXPECT_GT(failUntilItSucceeds([&] { internal::label(other, longer.c_str()); }, keepsIt), 0u);
    EXPECT_EQ(gl.countOf("glObjectLabel"), 1u);
    EXPECT_EQ(internal::label_of(other), longer);
}

TEST_F(AllocationEffects, LabelsEndWithTheContextOfTheirNames) {
    test::FakeContext fake;
    fake.makeCurrent();
    const auto numLiveBehindContext = [](const char* label) {
        const auto context = Context::make(FakeGl::lookUp);
        internal::label(Program::make(), label);
        const auto program = Program::make();
        internal::label(program, label);
        const auto framebuffer = Framebuffer::make();
        internal::label(framebuffer, label);
        context->abandon(); // while both are there
        return test::numLiveAllocations();
    };
    const std::ptrdiff_t numLive = numLiveBehindContext(nullptr);
    EXPECT_EQ(numLiveBehindContext("a label that needs memory of its own"), numLive);
    fake.ignoreTheRest();
    gl.makeCurrent();
}

TEST_F(AllocationEffects, DebugOutputIsStartedOrNothingIsChanged) {
    std::size_t numMessages = 0;
    internal::DebugOutputSettings settings;
    settings.callback = [&](const internal::DebugMessage&) { ++numMessages; };
    internal::start_debug_output(settings);
    gl.forget();
    const auto isAsBefore = [&] {
        EXPECT_EQ(gl.takeCalls().size(), 0u);
        gl.sendMessage(std::to_string(numMessages));
    };
    const std::size_t numFailures =
        failUntilItSucceeds([] { internal::start_debug_output(); }, isAsBefore);
    EXPECT_GT(numFailures, 0u);
    EXPECT_EQ(numMessages, numFailures) << "the one before takes them";
    internal::stop_debug_output();
}

TEST_F(AllocationEffects, AMessageIsLostWhereThereIsNoMemoryForIt) {
    internal::start_debug_output();
    const std::string text(600, 'x');
    test::StderrCapture output;
    {
        const FailingAllocations failing(1, FailingAllocations::Extent::AndAfter);
        gl.sendMessage(text);
    }
    EXPECT_EQ(output.take(), "");
    gl.sendMessage("another");
    EXPECT_EQ(output.take(), "Corvane: GL API error (high): another\n");
    internal::stop_debug_output();
}

TEST_F(AllocationEffects, HandleKeepsItsValue) {
    gl.setActiveUniforms({{"weights[0]", GL_FLOAT, 2}});
    const auto program = Program::make("", "");
    const std::vector<float> more(64, 1.f);
    const auto& value = program->getUniform<std::vector<float>>("weights").value;
    const auto keepsIt = [&] { EXPECT_EQ(value, std::vector<float>(2)); };
    EXPECT_EQ(failUntilItSucceeds([&] { program->setUniform("weights", more); }, keepsIt), 1u);
    EXPECT_EQ(value, more);
}

TEST_F(AllocationEffects, UniformWithoutAHandleIsSentOnceItsPlaceIsRemembered) {
    gl.setActiveUniforms({{"weights[0]", GL_FLOAT, 2, 5}});
    const auto program = Program::make("", "");
    gl.forget();
    const auto wasOnlyAsked = [&] {
        EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"weights[1]\")");
    };
    const auto set = [&] { program->setUniform("weights[1]", 0.5f); };
    EXPECT_GT(failUntilItSucceeds(set, wasOnlyAsked), 0u);
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"weights[1]\")", "glUniform1f(6, 0.5)");
    EXPECT_EQ(failUntilItSucceeds(set, [] {}), 0u);
    EXPECT_GL_CALLS(gl, "glUniform1f(6, 0.5)");
}

TEST_F(AllocationEffects, ListOfBooleansIsSentAsAWholeOrNotAtAll) {
    gl.setActiveUniforms({{"flags[0]", GL_BOOL, 2, 5}});
    const auto program = Program::make("", "");
    const std::vector<bool> flags{true, false};
    program->setUniform("flags", flags);
    gl.forget();
    const auto wasNotSent = [&] { EXPECT_GL_CALLS(gl); };
    EXPECT_EQ(failUntilItSucceeds([&] { program->setUniform("flags", flags); }, wasNotSent), 1u);
    EXPECT_GL_CALLS(gl, "glUniform1iv(5, 2, {1, 0})");
}

TEST_F(AllocationEffects, DiffTellsAChangeAfterItCouldNot) {
    gl.setState(GL_ACTIVE_TEXTURE, {GL_TEXTURE0});
    test::StderrCapture capture;
    internal::diff_gl_states();
    gl.setState(GL_ACTIVE_TEXTURE, {GL_TEXTURE1});
    capture.take();
    EXPECT_GT(failUntilItSucceeds(internal::diff_gl_states, [&] { EXPECT_EQ(capture.take(), ""); }),
              0u);
    EXPECT_EQ(capture.take(), "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE0 -> GL_TEXTURE1\n");
}

[[noreturn]] void assertWithoutMemory() {
    constexpr char text[] = "no memory for this";
    const FailingAllocations failing(1, FailingAllocations::Extent::AndAfter);
    internal::assertion_fail("condition", "file", 7, "%s", text);
}

TEST_F(AllocationEffects, AssertionEndsTheProcessAndSaysWhatItCan) {
    EXPECT_EXIT(assertWithoutMemory(), test::aborted,
                "^Assertion -- \n  Condition: condition\n  File\\(Line\\): file \\(7\\)\n"
                "Message: no memory for this\n$");
}

TEST_F(AllocationEffects, ReportsAreWrittenWithoutMemory) {
    EXPECT_EQ(test::stderrOf([] {
                  const FailingAllocations failing(1, FailingAllocations::Extent::AndAfter);
                  internal::not_implemented("what", "file", 7);
                  Sampler({{Sampler::WRAP_S, Sampler::REPEAT}}).print();
              }),
              "Error: what is not implemented!\n  File(Line): file (7)\nWRAP_S = LINEAR\n");
}

} // namespace

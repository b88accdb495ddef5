#include "state/state_guard.hpp"

#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::state::State;
using vellis::state::StateGuard;
using vellis::test::FakeGl;

using Alignment = State<int, 1, GL_UNPACK_ALIGNMENT>;
using Blend = State<bool, 1, GL_BLEND>;
using BlendFactors = State<int, 4, GL_BLEND_SRC_RGB>;
using BlendEquations = State<int, 2, GL_BLEND_EQUATION_RGB>;

static_assert(!std::is_copy_constructible_v<StateGuard<Alignment>>);
static_assert(!std::is_copy_assignable_v<StateGuard<Alignment>>);
static_assert(!std::is_move_constructible_v<StateGuard<Alignment>>);
static_assert(!std::is_move_assignable_v<StateGuard<Alignment>>);

TEST(StateGuardTrace, RestoresTheSavedAlignmentAtTheEndOfTheScope) {
    FakeGl gl;
    gl.setState(GL_UNPACK_ALIGNMENT, {8});
    {
        const StateGuard<Alignment> guard;
        EXPECT_EQ(guard.saved<Alignment>().value[0], 8);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    }
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_UNPACK_ALIGNMENT, out)",
                    "glPixelStorei(GL_UNPACK_ALIGNMENT, 1)",
                    "glPixelStorei(GL_UNPACK_ALIGNMENT, 8)");
}

TEST(StateGuardTrace, RestoresTheSavedAlignmentWhenTheWorkThrows) {
    FakeGl gl;
    gl.setState(GL_UNPACK_ALIGNMENT, {8});
    const auto work = [] {
        const StateGuard<Alignment> guard;
        throw std::runtime_error("interrupted");
    };
    EXPECT_THROW(work(), std::runtime_error);
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_UNPACK_ALIGNMENT, out)",
                    "glPixelStorei(GL_UNPACK_ALIGNMENT, 8)");
}

TEST(StateGuardTrace, RestoresBlendingBeforeFactorsBeforeEquations) {
    FakeGl gl;
    gl.setState(GL_BLEND, {1});
    gl.setState(GL_BLEND_SRC_RGB, {GL_SRC_ALPHA});
    gl.setState(GL_BLEND_DST_RGB, {GL_ONE_MINUS_SRC_ALPHA});
    gl.setState(GL_BLEND_SRC_ALPHA, {GL_ONE});
    gl.setState(GL_BLEND_DST_ALPHA, {GL_ZERO});
    gl.setState(GL_BLEND_EQUATION_RGB, {GL_FUNC_ADD});
    gl.setState(GL_BLEND_EQUATION_ALPHA, {GL_MIN});
    { const StateGuard<Blend, BlendFactors, BlendEquations> guard; }
    EXPECT_GL_CALLS(
        gl, "glGetBooleanv(GL_BLEND, out)", "glGetIntegerv(GL_BLEND_SRC_RGB, out)",
        "glGetIntegerv(GL_BLEND_DST_RGB, out)", "glGetIntegerv(GL_BLEND_SRC_ALPHA, out)",
        "glGetIntegerv(GL_BLEND_DST_ALPHA, out)", "glGetIntegerv(GL_BLEND_EQUATION_RGB, out)",
        "glGetIntegerv(GL_BLEND_EQUATION_ALPHA, out)", "glEnable(GL_BLEND)",
        "glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ZERO)",
        "glBlendEquationSeparate(GL_FUNC_ADD, GL_MIN)");
}

TEST(StateGuardTrace, DismissedGuardRestoresNothing) {
    FakeGl gl;
    {
        StateGuard<Alignment> guard;
        guard.dismiss();
    }
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_UNPACK_ALIGNMENT, out)");
}

TEST(StateGuardTrace, RecordsStartAtZero) {
    FakeGl gl;
    gl.refuse(GL_BLEND);
    gl.refuse(GL_UNPACK_ALIGNMENT);
    {
        StateGuard<Blend, Alignment> guard;
        EXPECT_FALSE(guard.saved<Blend>().value[0]);
        EXPECT_EQ(guard.saved<Alignment>().value[0], 0);
        guard.dismiss();
    }
    gl.forget();
}

} // namespace

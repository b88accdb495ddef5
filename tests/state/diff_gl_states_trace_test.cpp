// needs: a program of its own
// needs: a process for *

/// The diff of the tracked states. It remembers for the life of the process, so each of these tests
/// needs a process of its own: run them through ctest.

#include <vellis/state/tracked_states.hpp>

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>

#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"
#include "support/tracked_state_rows.hpp"

namespace {

using vellis::internal::diff_gl_states;
using vellis::internal::print_gl_states;
using vellis::test::FakeGl;
using vellis::test::stderrOf;

/// The diff before its first call in this process, on a GL that has the first values.
class DiffGlStatesTrace : public testing::Test {
protected:
    DiffGlStatesTrace() { setFirstValues(gl); }
    void TearDown() override { gl.ignoreTheRest(); }

    FakeGl gl;
};

TEST_F(DiffGlStatesTrace, FirstCallAndOneWithoutAChangePrintNothing) {
    EXPECT_EQ(stderrOf(diff_gl_states), "");
    EXPECT_EQ(stderrOf(diff_gl_states), "");
}

TEST_F(DiffGlStatesTrace, EveryCallReadsEveryStateWithItsOwnQuery) {
    std::vector<std::string> queries;
    for (const TrackedStateRow& row : trackedStateRows())
        queries.push_back(row.query);
    diff_gl_states();
    EXPECT_GL_CALLS(gl, queries);
    diff_gl_states();
    EXPECT_GL_CALLS(gl, queries);
}

TEST_F(DiffGlStatesTrace, EveryChangeIsALineAndIsReportedOnce) {
    std::string changes;
    for (const TrackedStateRow& row : trackedStateRows())
        changes +=
            "Corvane DIFF : " + row.label + " = " + row.firstText + " -> " + row.secondText + "\n";
    diff_gl_states();
    setSecondValues(gl);
    EXPECT_EQ(stderrOf(diff_gl_states), changes);
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE-33981 -> GL_TEXTURE3\n");
}

TEST_F(DiffGlStatesTrace, OneChangeIsOneLine) {
    diff_gl_states();
    gl.setState(GL_BLEND, {1});
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : BLEND = false -> true\n");
    EXPECT_EQ(stderrOf(diff_gl_states), "");
    gl.setState(GL_VIEWPORT, {0, 0, 640, 480});
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : VIEWPORT = 0, 0, 800, 600 -> 0, 0, 640, 480\n");
    EXPECT_EQ(stderrOf(diff_gl_states), "");
}

TEST_F(DiffGlStatesTrace, EveryElementCounts) {
    diff_gl_states();
    gl.setState(GL_BLEND_COLOR, {0.25, 0.5, 0.75, 0.875});
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : BLEND_COLOR = 0.25, 0.5, 0.75, 1 -> 0.25, 0.5, 0.75, 0.875\n");
    gl.setState(GL_COLOR_WRITEMASK, {0, 0, 1, 0});
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : COLOR_WRITEMASK = true, false, true, false "
                                        "-> false, false, true, false\n");
}

TEST_F(DiffGlStatesTrace, ValuesBesideThoseOfTheRowDoNotCount) {
    // A context that gives more than there is.
    const auto setBeside = [&](double value) {
        for (const TrackedStateRow& row : trackedStateRows()) {
            std::vector<double> values = row.first;
            values.resize(4, value);
            gl.setState(row.pname, values);
        }
    };
    setBeside(0);
    diff_gl_states();
    setBeside(1);
    EXPECT_EQ(stderrOf(diff_gl_states), "");
}

TEST_F(DiffGlStatesTrace, ActiveTextureIsReportedByEveryCallOnceItHasChanged) {
    diff_gl_states();
    EXPECT_EQ(stderrOf(diff_gl_states), "") << "before the first change";
    gl.setState(GL_ACTIVE_TEXTURE, {GL_TEXTURE1});
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE0 -> GL_TEXTURE1\n");
    const std::string again = "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE-33983 -> GL_TEXTURE1\n";
    EXPECT_EQ(stderrOf(diff_gl_states), again);
    EXPECT_EQ(stderrOf(diff_gl_states), again);
    gl.setState(GL_ACTIVE_TEXTURE, {GL_TEXTURE0});
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE-33983 -> GL_TEXTURE0\n");
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE-33984 -> GL_TEXTURE0\n");
}

TEST_F(DiffGlStatesTrace, PrintBetweenTwoCallsChangesNothing) {
    diff_gl_states();
    gl.setState(GL_BLEND, {1});
    stderrOf(print_gl_states);
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : BLEND = false -> true\n");
    stderrOf(print_gl_states);
    EXPECT_EQ(stderrOf(diff_gl_states), "");
}

TEST_F(DiffGlStatesTrace, NotANumberIsReportedByEveryCall) {
    gl.setState(GL_POINT_SIZE, {NAN});
    diff_gl_states();
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : POINT_SIZE = nan -> nan\n");
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : POINT_SIZE = nan -> nan\n");
    gl.setState(GL_POINT_SIZE, {1});
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : POINT_SIZE = nan -> 1\n");
    EXPECT_EQ(stderrOf(diff_gl_states), "");
}

TEST_F(DiffGlStatesTrace, WhatGlRefusesToTellIsZero) {
    diff_gl_states();
    for (const TrackedStateRow& row : trackedStateRows())
        gl.refuse(row.pname);
    const std::string lines = stderrOf(diff_gl_states);
    EXPECT_NE(lines.find("Corvane DIFF : VIEWPORT = 0, 0, 800, 600 -> 0, 0, 0, 0\n"),
              std::string::npos)
        << lines;
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE-67968 -> GL_TEXTURE-33984\n");
}

TEST_F(DiffGlStatesTrace, DisposeKeepsWhatIsRemembered) {
    diff_gl_states();
    vellis::engine::dispose();
    EXPECT_EQ(stderrOf(diff_gl_states), "");
    gl.setState(GL_BLEND, {1});
    EXPECT_EQ(stderrOf(diff_gl_states), "Corvane DIFF : BLEND = false -> true\n");
}

} // namespace

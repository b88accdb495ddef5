/// The print of the tracked states.

#include <vellis/state/tracked_states.hpp>

#include <climits>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"
#include "support/tracked_state_rows.hpp"

namespace {

using vellis::internal::print_gl_states;
using vellis::test::FakeGl;
using vellis::test::stderrOf;

TEST(TrackedStates, ThereAre57) {
    EXPECT_EQ(trackedStateRows().size(), 57u);
}

TEST(PrintGlStatesTrace, EveryStateIsReadWithItsOwnQuery) {
    FakeGl gl;
    stderrOf(print_gl_states);
    std::vector<std::string> queries;
    for (const TrackedStateRow& row : trackedStateRows())
        queries.push_back(row.query);
    EXPECT_GL_CALLS(gl, queries);
}

TEST(PrintGlStatesTrace, EveryStateIsALineInTheOrderOfTheTable) {
    FakeGl gl;
    std::string first;
    std::string second;
    for (const TrackedStateRow& row : trackedStateRows()) {
        first += "Corvane: " + row.label + " = " + row.firstText + "\n";
        second += "Corvane: " + row.label + " = " + row.secondText + "\n";
    }
    setFirstValues(gl);
    EXPECT_EQ(stderrOf(print_gl_states), first);
    setSecondValues(gl);
    EXPECT_EQ(stderrOf(print_gl_states), second);
    EXPECT_EQ(stderrOf(print_gl_states), second) << "the unit is converted in a copy";
    gl.ignoreTheRest();
}

/// The line that print_gl_states() has for a state.
std::string printed(const std::string& label) {
    const std::string text = "\n" + stderrOf(print_gl_states);
    const std::string start = "\nCorvane: " + label + " = ";
    const std::size_t begin = text.find(start);
    if (begin == std::string::npos)
        return "no line";
    const std::size_t value = begin + start.size();
    return text.substr(value, text.find('\n', value) - value);
}

TEST(PrintGlStatesTrace, WhatGlRefusesToTellIsZero) {
    FakeGl gl;
    setSecondValues(gl);
    for (const TrackedStateRow& row : trackedStateRows())
        gl.refuse(row.pname);
    EXPECT_EQ(printed("COLOR_WRITEMASK"), "false, false, false, false");
    EXPECT_EQ(printed("BLEND_COLOR"), "0, 0, 0, 0");
    EXPECT_EQ(printed("VERTEX_ARRAY_BINDING"), "0");
    EXPECT_EQ(printed("VIEWPORT"), "0, 0, 0, 0");
    EXPECT_EQ(printed("DEPTH_FUNC"), "unknown enum : 0x0");
    EXPECT_EQ(printed("ACTIVE_TEXTURE"), "GL_TEXTURE-33984");
    EXPECT_EQ(printed("PACK_ALIGNMENT"), "0x0");
    gl.ignoreTheRest();
}

TEST(PrintGlStatesTrace, ValuesBeyondAnySenseArePrinted) {
    FakeGl gl;
    gl.answer(glad_glGetIntegerv, [](GLenum, GLint* values) { *values = INT_MIN; });
    EXPECT_EQ(printed("ACTIVE_TEXTURE"), "GL_TEXTURE2147449664");
    EXPECT_EQ(printed("STENCIL_REF"), "0x80000000");
    EXPECT_EQ(printed("STENCIL_CLEAR_VALUE"), "-2147483648");
    EXPECT_EQ(printed("READ_BUFFER"), "unknown enum : 0x80000000");
    gl.answer(glad_glGetBooleanv, [](GLenum, GLboolean* values) { *values = 2; });
    EXPECT_EQ(printed("BLEND"), "false") << "only GL_TRUE is true";
    gl.answer(glad_glGetFloatv,
              [](GLenum, GLfloat* values) { *values = std::numeric_limits<float>::infinity(); });
    EXPECT_EQ(printed("POINT_SIZE"), "inf");
    gl.ignoreTheRest();
}

/// Digits in groups, as the locales of many countries have them.
struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    char do_decimal_point() const override { return ','; }
};

TEST(PrintGlStatesTrace, NumbersAreTheSameInEveryLocale) {
    FakeGl gl;
    gl.setState(GL_VIEWPORT, {0, 0, 1920, 1080});
    gl.setState(GL_POINT_SIZE, {1.5});
    const std::locale before = std::locale::global(std::locale(std::locale(), new Grouping));
    EXPECT_EQ(printed("VIEWPORT"), "0, 0, 1920, 1080");
    EXPECT_EQ(printed("POINT_SIZE"), "1.5");
    std::locale::global(before);
    gl.ignoreTheRest();
}

} // namespace

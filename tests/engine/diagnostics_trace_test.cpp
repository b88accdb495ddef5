/// vellis::internal: every line on standard error, byte for byte.

#include <vellis/internal.hpp>

#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/aborted.hpp"
#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using vellis::test::aborted;
using vellis::test::FakeGl;
using vellis::test::stderrOf;

using namespace vellis::internal;

TEST(Log, TitleStandsBeforeTheMessage) {
    EXPECT_EQ(stderrOf([] { log("Corvane", "abc"); }), "Corvane: abc\n");
}

TEST(Log, NullTitleLeavesTheMessageAlone) {
    EXPECT_EQ(stderrOf([] { log(nullptr, "x=%d", 5); }), "x=5\n");
}

TEST(Log, ArgumentsAreFormatted) {
    EXPECT_EQ(stderrOf([] { log("t", "%s %u %.2f %%", "a", 7u, 0.5); }), "t: a 7 0.50 %\n");
}

TEST(Log, PlaceStandsInBrackets) {
    EXPECT_EQ(stderrOf([] { log("a.cpp", 12, "title", "n=%d", 3); }), "title [a.cpp Ln 12]: n=3\n");
}

TEST(Log, PlaceWithNullTextsPrintsNull) {
    const char* const none = nullptr;
    EXPECT_EQ(stderrOf([=] { log(none, 1, none, "m"); }), "(null) [(null) Ln 1]: m\n");
}

TEST(Log, NullFormatPrintsNull) {
    const char* const none = nullptr;
    EXPECT_EQ(stderrOf([=] { log("t", none); }), "t: (null)\n");
    EXPECT_EQ(stderrOf([=] { log("f", 1, "t", none); }), "t [f Ln 1]: (null)\n");
}

TEST(Log, EmptyMessageIsAnEmptyLine) {
    EXPECT_EQ(stderrOf([] { log(nullptr, "%s", ""); }), "\n");
}

TEST(Log, MessageIsCutAt255CharactersMoreThanTheFormatHas) {
    const std::string fits(257, 'x'); // the format "%s" has 2 characters
    const std::string longer = fits + "y";
    EXPECT_EQ(stderrOf([&] { log(nullptr, "%s", fits.c_str()); }), fits + "\n");
    EXPECT_EQ(stderrOf([&] { log(nullptr, "%s", longer.c_str()); }), fits + "\n");
    EXPECT_EQ(stderrOf([&] { log("f", 1, "t", "%s", longer.c_str()); }),
              "t [f Ln 1]: " + fits + "\n");
}

TEST(Log, LongTextsWithoutArgumentsAreNotCut) {
    const std::string text(10000, 'x');
    EXPECT_EQ(stderrOf([&] { log(nullptr, (text + "%s").c_str(), "!"); }), text + "!\n");
}

TEST(WarningFail, PrintsFourLinesAndReturns) {
    EXPECT_EQ(stderrOf([] { warning_fail("a < b", "f.cpp", 7, "a=%d", 9); }),
              "Warning -- \n  Condition: a < b\n  File(Line): f.cpp (7)\nMessage: a=9\n");
}

TEST(WarningFail, NullFormatDropsTheMessage) {
    EXPECT_EQ(stderrOf([] { warning_fail("c", "f", 1, nullptr); }),
              "Warning -- \n  Condition: c\n  File(Line): f (1)\n");
}

TEST(WarningFail, NullTextsPrintNullAndLaterOutputStillCome) {
    EXPECT_EQ(stderrOf([] { warning_fail(nullptr, nullptr, 1, nullptr); }),
              "Warning -- \n  Condition: (null)\n  File(Line): (null) (1)\n");
    EXPECT_EQ(stderrOf([] { not_implemented("x", "f", 2); }),
              "Error: x is not implemented!\n  File(Line): f (2)\n");
}

TEST(WarningFail, MessageIsCutLikeALog) {
    const std::string fits(257, 'x');
    EXPECT_EQ(stderrOf([&] { warning_fail("c", "f", 1, "%s", (fits + "yz").c_str()); }),
              "Warning -- \n  Condition: c\n  File(Line): f (1)\nMessage: " + fits + "\n");
}

TEST(AssertionFailDeathTest, PrintsFourLinesAndAborts) {
    EXPECT_EXIT(assertion_fail("a < b", "f.cpp", 7, "a=%d", 9), aborted,
                "^Assertion -- \n  Condition: a < b\n  File\\(Line\\): f.cpp \\(7\\)\n"
                "Message: a=9\n$");
}

TEST(AssertionFailDeathTest, NullFormatPrintsThreeLinesAndAborts) {
    EXPECT_EXIT(assertion_fail("c", "f", 1, nullptr), aborted,
                "^Assertion -- \n  Condition: c\n  File\\(Line\\): f \\(1\\)\n$");
}

TEST(NotImplemented, NamesWhatAndWhere) {
    EXPECT_EQ(stderrOf([] { not_implemented("draw", "a.cpp", 3); }),
              "Error: draw is not implemented!\n  File(Line): a.cpp (3)\n");
}

TEST(NotTested, IsATitledLog) {
    EXPECT_EQ(stderrOf([] { not_tested("draw", "a", 12); }),
              "ERROR: draw [File(Line): a(12)] is not tested\n");
}

TEST(Diagnostics, LinesComeInTheOrderOfTheCalls) {
    EXPECT_EQ(stderrOf([] {
                  log("1", "a");
                  not_implemented("b", "f", 2);
                  log("3", "c");
              }),
              "1: a\nError: b is not implemented!\n  File(Line): f (2)\n3: c\n");
}

/// A status that GL gives, and the name that it has; null for none.
struct StatusRow {
    unsigned int status;
    const char* name;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const StatusRow& row, std::ostream* out) {
    *out << row.status;
}

#define NAMED(status)                                                                              \
    StatusRow {                                                                                    \
        status, #status                                                                            \
    }

class GlErrorTrace : public testing::TestWithParam<StatusRow> {};

TEST_P(GlErrorTrace, HasItsName) {
    FakeGl gl;
    gl.queueError(GetParam().status);
    EXPECT_STREQ(check_glerror(), GetParam().name);
    EXPECT_GL_CALLS(gl, "glGetError()");
}

INSTANTIATE_TEST_SUITE_P(Errors, GlErrorTrace,
                         testing::Values(StatusRow{GL_NO_ERROR, nullptr}, NAMED(GL_INVALID_ENUM),
                                         NAMED(GL_INVALID_VALUE), NAMED(GL_INVALID_OPERATION),
                                         NAMED(GL_STACK_OVERFLOW), NAMED(GL_STACK_UNDERFLOW),
                                         NAMED(GL_OUT_OF_MEMORY),
                                         NAMED(GL_INVALID_FRAMEBUFFER_OPERATION),
                                         StatusRow{1, "UNKNOWN ERROR"},
                                         StatusRow{0x0507, "UNKNOWN ERROR"}));

TEST(GlErrorTrace, SecondErrorStaysInTheQueue) {
    FakeGl gl;
    gl.queueError(GL_INVALID_ENUM);
    gl.queueError(GL_INVALID_VALUE);
    EXPECT_STREQ(check_glerror(), "GL_INVALID_ENUM");
    EXPECT_GL_CALLS(gl, "glGetError()");
    EXPECT_STREQ(check_glerror(), "GL_INVALID_VALUE");
    EXPECT_EQ(check_glerror(), nullptr);
    gl.forget();
}

class FramebufferStatusTrace : public testing::TestWithParam<StatusRow> {};

TEST_P(FramebufferStatusTrace, HasItsName) {
    FakeGl gl;
    gl.setFramebufferStatus(GetParam().status);
    EXPECT_STREQ(check_framebuffer_complete(GL_READ_FRAMEBUFFER), GetParam().name);
    EXPECT_GL_CALLS(gl, "glCheckFramebufferStatus(GL_READ_FRAMEBUFFER)");
    EXPECT_STREQ(check_framebuffer_complete(), GetParam().name);
    EXPECT_GL_CALLS(gl, "glCheckFramebufferStatus(GL_FRAMEBUFFER)");
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, FramebufferStatusTrace,
    testing::Values(StatusRow{GL_FRAMEBUFFER_COMPLETE, nullptr}, NAMED(GL_FRAMEBUFFER_UNDEFINED),
                    NAMED(GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT),
                    NAMED(GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT),
                    NAMED(GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER),
                    NAMED(GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER), NAMED(GL_FRAMEBUFFER_UNSUPPORTED),
                    NAMED(GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE),
                    NAMED(GL_FRAMEBUFFER_INCOMPLETE_LAYER_TARGETS), StatusRow{0, "UNKNOWN ERROR"},
                    StatusRow{0x8CDE, "UNKNOWN ERROR"}));

TEST(FramebufferStatusTrace, WithoutFramebufferObjectsIsUnknown) {
    FakeGl gl;
    gl.remove(glad_glCheckFramebufferStatus);
    EXPECT_STREQ(check_framebuffer_complete(), "UNKNOWN ERROR");
    EXPECT_GL_CALLS(gl);
}

} // namespace

#include "support/stderr_capture.hpp"

#include <cstdio>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

namespace vellis::test {
namespace {

TEST(StderrCapture, TakesBothStreamsInTheOrderOfWriting) {
    StderrCapture capture;
    std::fprintf(stderr, "one %d\n", 1);
    std::cerr << "two\n";
    std::fputs("three\n", stderr);
    EXPECT_EQ(capture.take(), "one 1\ntwo\nthree\n");
}

TEST(StderrCapture, EachTakeGivesWhatIsNew) {
    StderrCapture capture;
    EXPECT_EQ(capture.take(), "");
    std::cerr << "first";
    EXPECT_EQ(capture.take(), "first");
    std::cerr << "second";
    EXPECT_EQ(capture.take(), "second");
    EXPECT_EQ(capture.take(), "");
}

TEST(StderrCapture, LongTextsAreWhole) {
    const std::string longText(100000, 'x');
    EXPECT_EQ(stderrOf([&] { std::cerr << longText; }), longText);
}

TEST(StderrCapture, EndsWithItsScope) {
    StderrCapture outer;
    EXPECT_EQ(stderrOf([] { std::cerr << "inner"; }), "inner");
    std::cerr << "outer";
    EXPECT_EQ(outer.take(), "outer");
}

} // namespace
} // namespace vellis::test

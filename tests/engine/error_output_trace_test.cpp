/// The text on standard error is the same whatever a program has done to `std::cerr` and to
/// locales, and what it has done stays as it is.

#include <iomanip>
#include <ios>
#include <iostream>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/internal.hpp>
#include <vellis/texture/sampler.hpp>

#include "support/aborted.hpp"
#include "support/stderr_capture.hpp"

#ifndef _WIN32
#include <unistd.h>
#endif

namespace {

using namespace vellis::internal;
using vellis::Sampler;
using vellis::test::aborted;
using vellis::test::stderrOf;

/// What the functions print that write to the stream object.
void printToTheStream() {
    warning_fail("c", "f", 1234567, "m=%d", 1234567);
    not_implemented("w", "f", 1234567);
    Sampler({{Sampler::MIN_FILTER, Sampler::LINEAR}, {Sampler::WRAP_T, 1234567}}).print();
}
const std::string streamText = "Warning -- \n"
                               "  Condition: c\n"
                               "  File(Line): f (1234567)\n"
                               "Message: m=1234567\n"
                               "Error: w is not implemented!\n"
                               "  File(Line): f (1234567)\n"
                               "MIN_FILTER = LINEAR\n"
                               "WRAP_T = 1234567\n";
const int numStreamLines = 8;

/// What the functions print that write to C's stream.
void printToFile() {
    log("t", "n=%d", 1234567);
    log("f", 1234567, "t", "m");
    not_tested("w", "f", 1234567);
    print_shader("a\nb");
}
const std::string fileText = "t: n=1234567\n"
                             "t [f Ln 1234567]: m\n"
                             "ERROR: w [File(Line): f(1234567)] is not tested\n"
                             "Corvane: Shader Source Code\n"
                             "   1: a\n"
                             "   2: b\n";

/// Numbers as no program here writes them, and a line end that is none.
struct OddNumbers : std::numpunct<char> {
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\1"; }
    char do_decimal_point() const override { return ';'; }
};
struct OddCharacters : std::ctype<char> {
    char do_widen(char) const override { return 'x'; }
};
std::locale oddLocale() {
    return std::locale(std::locale(std::locale::classic(), new OddNumbers), new OddCharacters);
}

/// A buffer of a stream that does nothing but throw.
struct ThrowingBuffer : std::streambuf {
    int sync() override { throw std::runtime_error("sync"); }
    int_type overflow(int_type) override { throw std::runtime_error("overflow"); }
    std::streamsize xsputn(const char*, std::streamsize) override {
        throw std::runtime_error("xsputn");
    }
};

/// A buffer that counts how often it is flushed.
struct CountingBuffer : std::stringbuf {
    int sync() override {
        ++numFlushes;
        return 0;
    }
    int numFlushes = 0;
};

/// What a stream is like.
auto stateOf(const std::ostream& stream) {
    return std::make_tuple(stream.flags(), stream.width(), stream.precision(), stream.fill(),
                           stream.rdstate(), stream.exceptions(), stream.getloc(), stream.tie(),
                           stream.rdbuf());
}

/// Puts `std::cerr`, `std::cout` and the locale back as they were.
class ErrorOutput : public testing::Test {
protected:
    ~ErrorOutput() override { restore(); }

    void restore() {
        std::locale::global(locale_);
        std::cerr.exceptions(std::ios::goodbit);
        std::cerr.rdbuf(buffer_);
        std::cerr.clear();
        std::cerr.tie(tied_);
        std::cerr.imbue(before_.getloc()); // copyfmt leaves the buffer its locale
        std::cerr.copyfmt(before_);
    }

    /// Does what may throw as an application would.
    template <class Function>
    static void ignoringExceptions(Function function) {
        try {
            function();
        } catch (const std::exception&) {
        }
    }

private:
    struct Format : std::ios {
        Format() : std::ios(nullptr) { copyfmt(std::cerr); }
    };

    std::locale locale_;
    std::streambuf* buffer_ = std::cerr.rdbuf();
    std::ostream* tied_ = std::cerr.tie();
    Format before_;
};

/// Something that a program does to `std::cerr` or to the process.
struct Change {
    const char* name;
    void (*apply)();
};

void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name;
}

const Change changes[] = {
    {"Nothing", [] {}},
    {"Base", [] { std::cerr << std::hex << std::showbase << std::showpos << std::uppercase; }},
    {"Width", [] { std::cerr.width(40); }},
    {"Fill", [] { std::cerr << std::right << std::setfill('*') << std::setw(30); }},
    {"Locale", [] { std::cerr.imbue(oddLocale()); }},
    {"GlobalLocale", [] { std::locale::global(oddLocale()); }},
    {"Unbuffered", [] { std::cerr << std::unitbuf; }},
    {"Buffered", [] { std::cerr << std::nounitbuf; }},
    {"Failed", [] { std::cerr.setstate(std::ios::failbit); }},
    {"Bad", [] { std::cerr.setstate(std::ios::badbit); }},
    {"AtItsEnd", [] { std::cerr.setstate(std::ios::eofbit); }},
    {"Throwing", [] { std::cerr.exceptions(std::ios::failbit | std::ios::badbit); }},
    {"FailedAndThrowing",
     [] {
         std::cerr.setstate(std::ios::failbit);
         std::cerr.exceptions(std::ios::failbit);
     }},
    {"Untied", [] { std::cerr.tie(nullptr); }},
};

class ErrorOutputAfter : public ErrorOutput, public testing::WithParamInterface<Change> {};

TEST_P(ErrorOutputAfter, IsTheSameAndLeavesTheStream) {
    EXPECT_EQ(stderrOf([] {
                  ignoringExceptions(GetParam().apply);
                  const auto before = stateOf(std::cerr);
                  EXPECT_NO_THROW(printToTheStream());
                  EXPECT_NO_THROW(printToFile());
                  EXPECT_TRUE(stateOf(std::cerr) == before);
                  std::cerr.exceptions(std::ios::goodbit); // for the capture
              }),
              streamText + fileText);
}

class ErrorOutputDeathTest : public ErrorOutputAfter {};

TEST_P(ErrorOutputDeathTest, AssertionPrintsItsLinesAndAborts) {
    const auto fail = [] {
        ignoringExceptions(GetParam().apply);
        assertion_fail("c", "f", 1234567, "m=%d", 1234567);
    };
    EXPECT_EXIT(fail(), aborted,
                "^Assertion -- \n  Condition: c\n  File\\(Line\\): f \\(1234567\\)\n"
                "Message: m=1234567\n$");
}

std::string nameOf(const testing::TestParamInfo<Change>& change) {
    return change.param.name;
}

INSTANTIATE_TEST_SUITE_P(Changes, ErrorOutputAfter, testing::ValuesIn(changes), nameOf);
INSTANTIATE_TEST_SUITE_P(Changes, ErrorOutputDeathTest, testing::ValuesIn(changes), nameOf);

TEST_F(ErrorOutput, GoesThroughTheBufferOfTheStreamAndFlushesEachLine) {
    CountingBuffer buffer;
    std::cerr.rdbuf(&buffer);
    EXPECT_EQ(stderrOf(printToTheStream), "");
    EXPECT_EQ(buffer.str(), streamText);
    EXPECT_GE(buffer.numFlushes, numStreamLines);
    EXPECT_EQ(stderrOf(printToFile), fileText);
    EXPECT_EQ(buffer.str(), streamText);
    restore();
}

TEST_F(ErrorOutput, FlushesOnceForEachLine) {
    CountingBuffer buffer;
    std::cerr.rdbuf(&buffer);
    std::cerr << std::nounitbuf;
    printToTheStream();
    EXPECT_EQ(buffer.numFlushes, numStreamLines);
    restore();
}

TEST_F(ErrorOutput, WithoutABufferPrintsNothingAndDoesNotThrow) {
    std::cerr.rdbuf(nullptr);
    ignoringExceptions([] { std::cerr.exceptions(std::ios::badbit); });
    EXPECT_NO_THROW(printToTheStream());
    restore();
}

TEST_F(ErrorOutput, BufferThatThrowsIsNotHeardOf) {
    ThrowingBuffer buffer;
    std::cerr.rdbuf(&buffer);
    std::cerr.exceptions(std::ios::badbit);
    const auto before = stateOf(std::cerr);
    EXPECT_NO_THROW(printToTheStream());
    EXPECT_TRUE(stateOf(std::cerr) == before);
    restore();
}

TEST_F(ErrorOutput, AssertionAbortsWhateverTheBuffer) {
    const auto fail = [](std::streambuf* buffer) {
        std::cerr.rdbuf(buffer);
        ignoringExceptions([] { std::cerr.exceptions(std::ios::badbit); });
        assertion_fail("c", "f", 1, "%d", 1);
    };
    ThrowingBuffer throwing;
    EXPECT_EXIT(fail(&throwing), aborted, "");
    EXPECT_EXIT(fail(nullptr), aborted, "");
}

/// What a program has written to `std::cout` comes first, as with anything written to `std::cerr`.
TEST_F(ErrorOutput, FlushesTheTiedStreamFirst) {
    CountingBuffer buffer;
    std::ostream tied(&buffer);
    std::cerr.tie(&tied);
    not_implemented("w", "f", 1);
    EXPECT_GE(buffer.numFlushes, 1);
    restore();
}

TEST_F(ErrorOutput, TiedStreamThatThrowsIsNotHeardOf) {
    ThrowingBuffer buffer;
    std::ostream tied(&buffer);
    tied.exceptions(std::ios::badbit);
    EXPECT_EQ(stderrOf([&] {
                  std::cerr.tie(&tied);
                  EXPECT_NO_THROW(printToTheStream());
                  std::cerr.tie(nullptr);
              }),
              streamText);
}

TEST_F(ErrorOutput, LongLinesAreWhole) {
    const std::string text(10000, 'x');
    EXPECT_EQ(stderrOf([&] { not_implemented(text.c_str(), text.c_str(), 1); }),
              "Error: " + text + " is not implemented!\n  File(Line): " + text + " (1)\n");
    EXPECT_EQ(stderrOf([&] { log(text.c_str(), "m"); }), text + ": m\n");
}

#ifndef _WIN32

/// What \p function writes to the descriptor of standard error, which is a pipe meanwhile.
template <class Function>
std::string readFromPipe(Function function) {
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    std::string text;
    std::thread reader([&] {
        char block[4096];
        for (ssize_t size; (size = read(ends[0], block, sizeof(block))) > 0;)
            text.append(block, static_cast<std::size_t>(size));
    });
    const int standardError = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    function();
    dup2(standardError, STDERR_FILENO);
    close(standardError);
    reader.join();
    close(ends[0]);
    return text;
}

TEST_F(ErrorOutput, LinesOfTwoThreadsAreWhole) {
    constexpr int numLines = 10000;
    const std::string longTitle(2000, 't');
    const auto write = [&] {
        for (int i = 0; i < numLines; ++i) {
            if (i % 100 == 0)
                log(longTitle.c_str(), "message %d", 7);
            else
                log("title", "message %d", 7);
            log("file", 7, "title", "message %d", 7);
            not_implemented("what", "file", 7);
        }
    };
    std::istringstream lines(readFromPipe([&] {
        std::thread other(write);
        write();
        other.join();
    }));
    int numWhole = 0;
    for (std::string line; std::getline(lines, line);) {
        const bool isWhole = line == "title: message 7" || line == "title [file Ln 7]: message 7" ||
                             line == longTitle + ": message 7" ||
                             line == "Error: what is not implemented!" ||
                             line == "  File(Line): file (7)";
        ASSERT_TRUE(isWhole) << line;
        ++numWhole;
    }
    EXPECT_EQ(numWhole, 2 * 4 * numLines);
}

#endif

} // namespace

/// How the tests of the examples run programs.

#include <gmock/gmock.h>

#include "support/run_program.hpp"

namespace {

namespace fs = std::filesystem;
using ::testing::StartsWith;

class RunShell : public ::testing::Test {
protected:
    /// A command that leaves a line in a file each time that it runs.
    std::string countedCommand() const { return "echo run>>" + quoted(runs()); }

    std::size_t numRuns() const { return lines(contents(runs())).size(); }

    fs::path output() const { return folder_.path() / "output"; }

    std::string error;

private:
    fs::path runs() const { return folder_.path() / "runs"; }

    TemporaryFolder folder_;
};

TEST_F(RunShell, StartsAShellAgainThatHasNotBegunAndSaysThatItDoesNotStart) {
    EXPECT_NE(runShell(countedCommand() + "&& exit 3", output(), error), 0);
    EXPECT_EQ(numRuns(), 3u);
    EXPECT_THAT(error, StartsWith("The shell does not start: status "));
}

TEST_F(RunShell, StartsNothingAgainThatHasBegun) {
    const std::string begin = "echo begun>" + quoted(output());
    EXPECT_NE(runShell(countedCommand() + "&& " + begin + "&& exit 3", output(), error), 0);
    EXPECT_EQ(numRuns(), 1u);
    EXPECT_EQ(error, "");
}

TEST_F(RunShell, StartsNothingAgainThatSucceeds) {
    EXPECT_EQ(runShell(countedCommand(), output(), error), 0);
    EXPECT_EQ(numRuns(), 1u);
    EXPECT_EQ(error, "");
}

} // namespace

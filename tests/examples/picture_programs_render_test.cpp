/// What goes wrong in the programs that leave one picture.

#include <gmock/gmock.h>

#include <offscreen/context.hpp>

#include "support/run_program.hpp"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct NamedProgram {
    const char* name;
    const char* path;
    bool isQuiet = true;    ///< prints nothing on standard error while it draws
    bool hasWindow = false; ///< opens a window where it is not told a file
    const char* usage = "picture.png";
};

class PictureProgramFailure : public ::testing::TestWithParam<NamedProgram> {
protected:
    static Outcome run(const std::string& arguments,
                       const std::vector<std::string>& environment = {}) {
        return runProgram(GetParam().path, arguments, environment);
    }
};

INSTANTIATE_TEST_SUITE_P(
    Examples, PictureProgramFailure,
    ::testing::Values(NamedProgram{"vellis_diagnose", VELLIS_DIAGNOSE_PROGRAM, false},
                      NamedProgram{"vellis_plot", VELLIS_PLOT_PROGRAM, true, true,
                                   "[--font file] [picture.png]"},
                      NamedProgram{"vellis_postprocess", VELLIS_POSTPROCESS_PROGRAM}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(PictureProgramFailure, SaysHowItIsUsed) {
    const bool hasWindow = GetParam().hasWindow;
    const std::string usage =
        "Usage: " + std::string(GetParam().name) + " " + GetParam().usage + "\n";
    for (const char* arguments : {"", "one two"}) {
        if (hasWindow && *arguments == '\0')
            continue;
        const Outcome outcome = run(arguments);
        EXPECT_FALSE(outcome.succeeded);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, usage);
    }
}

TEST_P(PictureProgramFailure, SaysWhichPictureCannotBeWritten) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "no folder" / "picture.png";
    const Outcome outcome = run(quoted(file));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.output, "");
    ASSERT_EQ(lines(outcome.errors).size() == 1, GetParam().isQuiet) << outcome.errors;
    EXPECT_THAT(lines(outcome.errors).back(),
                StartsWith("The picture " + file.string() + " cannot be written: "));
}

TEST_P(PictureProgramFailure, SaysThatThereIsNoEgl) {
    if (offscreen::defaultPlatform != offscreen::Platform::Egl)
        GTEST_SKIP() << "there is no EGL here";
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "picture.png";
    const Outcome outcome = run(quoted(file), noEgl);
    EXPECT_FALSE(outcome.succeeded);
    ASSERT_EQ(lines(outcome.errors).size(), 1u) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr("install a GL driver"));
    EXPECT_FALSE(fs::exists(file));
}

} // namespace

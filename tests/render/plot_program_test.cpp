/// The plot as a user runs it.

#include <cstdlib>

#include <gmock/gmock.h>

#include <offscreen/image.hpp>

#include "render/run_program.hpp"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

Outcome runPlot(const std::string& arguments, const std::string& environment = "") {
    return runProgram(VELLIS_PLOT_PROGRAM, arguments, environment);
}

/// The picture that a run leaves.
class PlotProgram : public ::testing::Test {
protected:
    void SetUp() override {
        const TemporaryFolder folder;
        const fs::path file = folder.path() / "plot.png";
        const Outcome run = runPlot(quoted(file));
        ASSERT_TRUE(run.succeeded) << run.errors;
        EXPECT_EQ(run.output, file.string() + "\n");
        EXPECT_EQ(run.errors, "");
        std::string error;
        ASSERT_TRUE(offscreen::readPng(file, picture, error)) << error;
        ASSERT_EQ(picture.width, 640u);
        ASSERT_EQ(picture.height, 400u);
    }

    /// Whether a pixel has a colour but for a driver's rounding.
    ::testing::AssertionResult hasColour(unsigned int x, unsigned int y, int red, int green,
                                         int blue) const {
        const unsigned char* pixel = picture.at(x, y);
        const int expected[] = {red, green, blue};
        for (int i = 0; i < 3; ++i) {
            if (std::abs(pixel[i] - expected[i]) > 12) {
                return ::testing::AssertionFailure()
                       << "at (" << x << ", " << y << ") the colour is (" << int{pixel[0]} << ", "
                       << int{pixel[1]} << ", " << int{pixel[2]} << ")";
            }
        }
        return ::testing::AssertionSuccess();
    }

    /// How many pixels of a row or a column are not background.
    int drawnBetween(unsigned int x0, unsigned int y0, unsigned int x1, unsigned int y1) const {
        int count = 0;
        for (unsigned int y = y0; y <= y1; ++y) {
            for (unsigned int x = x0; x <= x1; ++x)
                count += hasColour(x, y, 250, 247, 242) ? 0 : 1;
        }
        return count;
    }

    offscreen::Image picture;
};

TEST_F(PlotProgram, DrawsAxesOfOnePixel) {
    EXPECT_TRUE(hasColour(44, 300, 43, 59, 71));
    EXPECT_TRUE(hasColour(500, 359, 43, 59, 71));
    EXPECT_TRUE(hasColour(100, 363, 43, 59, 71)) << "a tick";
    EXPECT_EQ(drawnBetween(30, 300, 47, 300), 1);
    EXPECT_EQ(drawnBetween(480, 350, 480, 370), 1);
    EXPECT_EQ(drawnBetween(0, 370, 639, 399), 0);
}

TEST_F(PlotProgram, DrawsADashedGrid) {
    // Of ten pixels six are dash; at a seventh the driver's rounding decides.
    EXPECT_NEAR(drawnBetween(300, 39, 399, 39), 65, 9);
    EXPECT_NEAR(drawnBetween(604, 219, 604, 318), 65, 9);
    EXPECT_EQ(drawnBetween(310, 45, 320, 110), 0) << "between the lines of the grid";
}

TEST_F(PlotProgram, DrawsASmoothCurve) {
    EXPECT_TRUE(hasColour(213, 245, 41, 158, 143)) << "its first low";
    const int wide = drawnBetween(213, 238, 213, 252);
    EXPECT_GE(wide, 3);
    EXPECT_LE(wide, 5);
    EXPECT_FALSE(hasColour(213, 244, 250, 247, 242) || hasColour(213, 244, 41, 158, 143))
        << "its rim is blended";
}

TEST_F(PlotProgram, DrawsPointsAndABullseye) {
    EXPECT_TRUE(hasColour(212, 232, 115, 153, 179)) << "a measured point";
    EXPECT_EQ(drawnBetween(216, 205, 224, 218), 0) << "beside it";
    EXPECT_TRUE(hasColour(126, 112, 232, 112, 82)) << "the middle of the bullseye";
    EXPECT_TRUE(hasColour(126, 117, 255, 255, 255)) << "its ring";
    EXPECT_TRUE(hasColour(126, 121, 232, 112, 82)) << "its rim";
    EXPECT_EQ(drawnBetween(118, 85, 136, 98), 0) << "above it";
}

TEST(PlotProgramFailure, SaysHowItIsUsed) {
    for (const char* arguments : {"", "one two"}) {
        const Outcome run = runPlot(arguments);
        EXPECT_FALSE(run.succeeded);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "Usage: vellis_plot picture.png\n");
    }
}

TEST(PlotProgramFailure, SaysWhichPictureCannotBeWritten) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "no folder" / "plot.png";
    const Outcome run = runPlot(quoted(file));
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.output, "");
    ASSERT_EQ(lines(run.errors).size(), 1u) << run.errors;
    EXPECT_THAT(run.errors, StartsWith("The picture " + file.string() + " cannot be written: "));
}

TEST(PlotProgramFailure, SaysThatThereIsNoEgl) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "plot.png";
    const Outcome run = runPlot(quoted(file), "OFFSCREEN_PLATFORM=egl "
                                              "__EGL_VENDOR_LIBRARY_FILENAMES=/nonexistent");
    EXPECT_FALSE(run.succeeded);
    ASSERT_EQ(lines(run.errors).size(), 1u) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("install a GL driver"));
    EXPECT_FALSE(fs::exists(file));
}

} // namespace

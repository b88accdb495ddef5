/// The gears off screen, as a user runs them.

#include <fstream>
#include <set>

#include <gmock/gmock.h>

#include <offscreen/image.hpp>
#include <vellis/gl.hpp>

#include "examples/drawn_area.hpp"
#include "support/render_test.hpp"
#include "support/run_program.hpp"

namespace {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

Outcome runGears(const std::string& arguments, const std::vector<std::string>& environment = {}) {
    return runProgram(VELLIS_GEARS_PROGRAM, arguments, environment);
}

class GearsProgram : public RenderTest {
protected:
    GearsProgram() : RenderTest(1) {}

    /// The pictures that the program leaves.
    std::vector<offscreen::Image> draw(const std::string& arguments) {
        const TemporaryFolder folder;
        const fs::path target = folder.path() / "a new" / "folder";
        const Outcome run = runGears(arguments + " --out " + quoted(target));
        EXPECT_TRUE(run.succeeded) << run.errors;
        EXPECT_EQ(run.errors, "");
        std::vector<offscreen::Image> pictures;
        for (const std::string& path : lines(run.output)) {
            std::string error;
            EXPECT_EQ(fs::path(path).parent_path(), target);
            names.push_back(fs::path(path).filename().string());
            EXPECT_TRUE(offscreen::readPng(path, pictures.emplace_back(), error)) << error;
        }
        return pictures;
    }

    std::vector<std::string> names;
};

TEST_F(GearsProgram, LeavesNumberedPicturesThatDiffer) {
    const std::vector<offscreen::Image> pictures = draw("--frames 5 --size 200x150");
    EXPECT_THAT(names, ElementsAre("gears-000.png", "gears-001.png", "gears-002.png",
                                   "gears-003.png", "gears-004.png"));
    std::set<std::vector<unsigned char>> different;
    for (const offscreen::Image& picture : pictures) {
        EXPECT_EQ(picture.width, 200u);
        EXPECT_EQ(picture.height, 150u);
        different.insert(picture.pixels);
    }
    EXPECT_THAT(different, SizeIs(5));
}

TEST_F(GearsProgram, DrawsThreeGearsThatCanBeLookedThrough) {
    const std::vector<offscreen::Image> pictures = draw("--frames 2");
    ASSERT_THAT(pictures, SizeIs(2));
    for (const offscreen::Image& picture : pictures) {
        ASSERT_EQ(picture.width, 640u);
        ASSERT_EQ(picture.height, 480u);
        EXPECT_TRUE(isLike(picture.at(180, 300), 242, 124, 96)) << "the web of the first";
        EXPECT_TRUE(isLike(picture.at(420, 340), 63, 175, 164)) << "the web of the second";
        EXPECT_TRUE(isLike(picture.at(300, 88), 86, 138, 174)) << "the rim of the third";
        EXPECT_TRUE(isPaper(picture.at(236, 310))) << "through the bore of the first";
        EXPECT_TRUE(isPaper(picture.at(455, 318))) << "through the bore of the second";
        EXPECT_TRUE(isFramed(picture));
    }
    EXPECT_TRUE(isLike(pictures[0].at(150, 230), 242, 124, 96)) << "a tooth of the first";
    EXPECT_TRUE(isPaper(pictures[1].at(150, 230))) << "half a tooth's turn later: a gap";
}

TEST_F(GearsProgram, FitsTheGearsIntoAnyPicture) {
    for (const char* shape : {"200x400", "400x150", "64x64"}) {
        const std::vector<offscreen::Image> pictures =
            draw("--frames 1 --size " + std::string(shape));
        ASSERT_THAT(pictures, SizeIs(1));
        EXPECT_TRUE(isFramed(pictures[0])) << shape;
    }
}

TEST_F(GearsProgram, SmoothsEdgesWithSeveralSamples) {
    GLint samples = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &samples);
    if (samples < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const std::vector<offscreen::Image> pictures = draw("--frames 1");
    ASSERT_THAT(pictures, SizeIs(1));
    int edges = 0;
    int smoothed = 0;
    for (unsigned int y = 0; y < pictures[0].height; ++y) {
        for (unsigned int x = 1; x + 1 < pictures[0].width; ++x) {
            const unsigned char* const before = pictures[0].at(x - 1, y);
            const unsigned char* const pixel = pictures[0].at(x, y);
            const unsigned char* const after = pictures[0].at(x + 1, y);
            if (!isPaper(before) || isPaper(pixel))
                continue;
            ++edges; // into a gear
            smoothed += pixel[1] > after[1] + 12 && pixel[1] + 12 < before[1] ? 1 : 0;
        }
    }
    EXPECT_GT(edges, 500);
    EXPECT_GT(smoothed, edges / 2);
}

TEST_F(GearsProgram, SaysHowItIsUsed) {
    for (const char* arguments :
         {"picture.png", "--frames", "--frames 3", "--out folder", "--frames 0 --out folder",
          "--frames -1 --out folder", "--frames 3x --out folder", "--frames 3 --out",
          "--frames 3 --out folder --size 640", "--frames 3 --out folder --size 0x480",
          "--frames 3 --out folder --size 640x480x2", "--frames 3 --out folder --speed 2",
          "--frames 99999999999 --out folder"}) {
        const Outcome run = runGears(arguments);
        EXPECT_FALSE(run.succeeded) << arguments;
        EXPECT_EQ(run.output, "") << arguments;
        EXPECT_EQ(run.errors,
                  "Usage: vellis_gears [--frames COUNT --out FOLDER [--size WIDTHxHEIGHT]]\n")
            << arguments;
    }
}

TEST_F(GearsProgram, SaysThatThereIsNoScreen) {
    const Outcome run = runGears("", {"DISPLAY", "WAYLAND_DISPLAY"});
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.output, "");
    ASSERT_THAT(lines(run.errors), SizeIs(1)) << run.errors;
    EXPECT_THAT(run.errors, AnyOf(StartsWith("No window can be opened ("),
                                  StartsWith("This program has been built without GLFW")));
}

TEST_F(GearsProgram, SaysThatThereIsNoEgl) {
    if (offscreen::defaultPlatform != offscreen::Platform::Egl)
        GTEST_SKIP() << "there is no EGL here";
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "target";
    const Outcome run = runGears("--frames 1 --out " + quoted(target), noEgl);
    EXPECT_FALSE(run.succeeded);
    ASSERT_THAT(lines(run.errors), SizeIs(1)) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("install a GL driver"));
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(GearsProgram, SaysThatAFileStandsInPlaceOfTheFolder) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    std::ofstream(file) << "text";
    const Outcome run = runGears("--frames 1 --out " + quoted(file));
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.errors, "The output folder " + file.string() +
                              " cannot be made: Not a directory. Name another one.\n");
    EXPECT_EQ(contents(file), "text");
}

TEST_F(GearsProgram, RefusesAPictureThatTheDriverCannotDraw) {
    const TemporaryFolder folder;
    const Outcome run = runGears("--frames 1 --size 1000000x10 --out " + quoted(folder.path()));
    EXPECT_FALSE(run.succeeded);
    EXPECT_THAT(lines(run.errors), ElementsAre(StartsWith("The driver refuses a framebuffer (")));
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

} // namespace

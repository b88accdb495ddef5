/// The gallery as a user runs it.

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <gallery/frame/panel.hpp>
#include <offscreen/image.hpp>

#include "support/render_test.hpp"
#include "support/run_program.hpp"
#include "support/temporary_folder.hpp"

namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// Runs the gallery, as runProgram does.
Outcome runGallery(const std::string& arguments, const std::vector<std::string>& environment = {}) {
    return runProgram(VELLIS_GALLERY_PROGRAM, arguments, environment);
}

/// That a run failed with one sentence and left nothing at \p folder.
void expectOneSentence(const Outcome& run, const fs::path& folder,
                       const ::testing::Matcher<const std::string&>& sentence) {
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.output, "");
    ASSERT_EQ(lines(run.errors).size(), 1u) << run.errors;
    EXPECT_THAT(lines(run.errors).front(), sentence);
    EXPECT_FALSE(fs::exists(folder));
}

/// Skips a test of pictures that need wide lines where the environment asks for contexts without.
#define SKIP_WHERE_LINES_ARE_THIN()                                                                \
    if (const auto settings = renderSettings(1, 1);                                                \
        settings.coreVersion > 0 && settings.isForwardCompatible)                                  \
    GTEST_SKIP() << "a forward-compatible context lacks lines wider than 1"

TEST(GalleryProgram, LeavesAPictureOfEachPanelAndAContactSheetAndSaysWhere) {
    SKIP_WHERE_LINES_ARE_THIN();
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "a new" / "folder";
    const Outcome run = runGallery(quoted(target));
    EXPECT_TRUE(run.succeeded) << run.errors;
    EXPECT_EQ(run.errors, "");
    const std::vector<std::string> paths = lines(run.output);
    ASSERT_EQ(paths.size(), gallery::panels().size() + 1);
    EXPECT_EQ(paths.back(), (target / "gallery.png").string());
    for (const std::string& path : paths) {
        offscreen::Image image;
        std::string error;
        EXPECT_TRUE(offscreen::readPng(path, image, error)) << error;
        EXPECT_GE(image.width, gallery::panelSize);
    }
    const Outcome again = runGallery(quoted(target));
    EXPECT_TRUE(again.succeeded) << "a second time: " << again.errors;
    const auto files = std::distance(fs::directory_iterator(target), fs::directory_iterator());
    EXPECT_EQ(static_cast<std::size_t>(files), paths.size());
}

TEST(GalleryProgram, SaysThatThereIsNoEgl) {
    if (offscreen::defaultPlatform != offscreen::Platform::Egl)
        GTEST_SKIP() << "there is no EGL here";
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "target";
    const Outcome run = runGallery(quoted(target), noEgl);
    expectOneSentence(run, target,
                      AllOf(StartsWith("No EGL display gives a GL context ("),
                            HasSubstr("install a GL driver, for instance with `apt-get install ")));
}

TEST(GalleryProgram, SaysWhatPlatformsThereAre) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "target";
    const Outcome run = runGallery(quoted(target), {"OFFSCREEN_PLATFORM=vga"});
    expectOneSentence(run, target, HasSubstr("set it to one of "));
}

TEST(GalleryProgram, SaysThatAFileStandsInPlaceOfTheFolder) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    std::ofstream(file) << "text";
    for (const fs::path& target : {file, file / "folder"}) {
        const Outcome run = runGallery(quoted(target));
        EXPECT_FALSE(run.succeeded);
        EXPECT_EQ(run.errors, "The output folder " + target.string() +
                                  " cannot be made: Not a directory. Name another one.\n");
    }
    EXPECT_EQ(contents(file), "text");
}

TEST(GalleryProgram, SaysWhichPictureCannotBeWrittenAndLeavesNoPartOfIt) {
    SKIP_WHERE_LINES_ARE_THIN();
    const TemporaryFolder folder;
    const fs::path inTheWay =
        folder.path() / (std::string(gallery::panels().front().name) + ".png");
    fs::create_directories(inTheWay);
    const Outcome run = runGallery(quoted(folder.path()));
    EXPECT_FALSE(run.succeeded);
    ASSERT_EQ(lines(run.errors).size(), 1u) << run.errors;
    EXPECT_THAT(run.errors,
                StartsWith("The picture " + inTheWay.string() + " cannot be written: "));
    const auto files =
        std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator());
    EXPECT_EQ(files, 1);
}

TEST(GalleryProgram, SaysHowItIsUsed) {
    const Outcome run = runGallery("one two");
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.errors, "Usage: vellis_gallery [folder for the pictures]\n");
}

/// Drivers limited by environment variables, as far as they heed them.
class GalleryProgramOnAnOldDriver : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (!isMesa())
            GTEST_SKIP() << "only Mesa's drivers can be limited";
        if (offscreen::defaultPlatform == offscreen::Platform::Wgl)
            GTEST_SKIP() << "what a Windows program sets does not reach Mesa's drivers";
    }

    static constexpr char compatibility[] = "OFFSCREEN_PROFILE=compatibility";

    const TemporaryFolder folder;
    const fs::path target = folder.path() / "target";
};

TEST_F(GalleryProgramOnAnOldDriver, NamesTheVersionThatIsNeeded) {
    const Outcome run = runGallery(quoted(target), {compatibility, "MESA_GL_VERSION_OVERRIDE=1.4"});
    expectOneSentence(run, target,
                      AllOf(HasSubstr("OpenGL 1.4"), HasSubstr(" lacks OpenGL 2.1: use ")));
}

TEST_F(GalleryProgramOnAnOldDriver, NamesTheExtensionsThatAreMissing) {
    const Outcome run = runGallery(quoted(target), {compatibility, "MESA_GL_VERSION_OVERRIDE=2.1",
                                                    "MESA_EXTENSION_MAX_YEAR=2005"});
    expectOneSentence(run, target,
                      HasSubstr(" lacks GL_ARB_vertex_array_object, GL_ARB_map_buffer_range: "));
}

TEST_F(GalleryProgramOnAnOldDriver, NeedsNoMoreThan21WithTheExtensions) {
    const Outcome run = runGallery(quoted(target), {compatibility, "MESA_GL_VERSION_OVERRIDE=2.1",
                                                    "MESA_GLSL_VERSION_OVERRIDE=120",
                                                    "MESA_SHADER_CACHE_DISABLE=true"});
    EXPECT_TRUE(run.succeeded) << run.errors;
}

} // namespace

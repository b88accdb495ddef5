#include <offscreen/context.hpp>
#include <offscreen/entry_points.hpp>
#include <offscreen/image.hpp>
#include <offscreen/requirement.hpp>

#include <fstream>
#include <iterator>
#include <thread>

#include <gmock/gmock.h>

#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "support/environment_variable.hpp"
#include "support/render_test.hpp"
#include "support/temporary_folder.hpp"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

/// What the environment may ask for here, and one of it.
#ifdef _WIN32
constexpr char platformNames[] = "wgl";
constexpr char platformName[] = "wgl";
constexpr auto namedPlatform = offscreen::Platform::Wgl;
#else
constexpr char platformNames[] = "egl, egl-surfaceless, egl-device, glx, osmesa";
constexpr char platformName[] = "glx";
constexpr auto namedPlatform = offscreen::Platform::Glx;
#endif

/// A picture in which no two pixels are alike.
offscreen::Image makeTestPicture(unsigned int width, unsigned int height) {
    offscreen::Image image(width, height);
    unsigned int value = 0;
    for (unsigned char& byte : image.pixels)
        byte = static_cast<unsigned char>(value += 7);
    return image;
}

std::ptrdiff_t countFiles(const fs::path& folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

GLint getInteger(GLenum name) {
    GLint value = -1;
    glGetIntegerv(name, &value);
    return value;
}

TEST(OffscreenPng, ComesBackAsItWasWritten) {
    const TemporaryFolder folder;
    const offscreen::Image written = makeTestPicture(7, 5);
    offscreen::Image read;
    std::string error;
    ASSERT_TRUE(offscreen::writePng(folder.path() / "a.png", written, error)) << error;
    ASSERT_TRUE(offscreen::readPng(folder.path() / "a.png", read, error)) << error;
    EXPECT_EQ(read.width, 7u);
    EXPECT_EQ(read.height, 5u);
    EXPECT_EQ(read.pixels, written.pixels);
    EXPECT_EQ(countFiles(folder.path()), 1);
}

TEST(OffscreenPng, ReplacesAnOlderFile) {
    const TemporaryFolder folder;
    const fs::path path = folder.path() / "a.png";
    offscreen::Image read;
    std::string error;
    ASSERT_TRUE(offscreen::writePng(path, makeTestPicture(9, 9), error)) << error;
    ASSERT_TRUE(offscreen::writePng(path, makeTestPicture(2, 3), error)) << error;
    ASSERT_TRUE(offscreen::readPng(path, read, error)) << error;
    EXPECT_EQ(read.width, 2u);
}

TEST(OffscreenPng, NamesThePathAndTheReasonWhereTheFolderIsMissing) {
    std::string error;
    EXPECT_FALSE(offscreen::writePng("/nonexistent/a.png", makeTestPicture(2, 2), error));
    EXPECT_EQ(error,
              "The picture /nonexistent/a.png cannot be written: No such file or directory.");
}

TEST(OffscreenPng, LeavesNoPartOfAFileWhereTheTargetCannotBeReplaced) {
    const TemporaryFolder folder;
    fs::create_directories(folder.path() / "a.png" / "inside");
    std::string error;
    EXPECT_FALSE(offscreen::writePng(folder.path() / "a.png", makeTestPicture(2, 2), error));
    EXPECT_THAT(error, HasSubstr("a.png cannot be written: "));
    EXPECT_EQ(countFiles(folder.path()), 1);
}

TEST(OffscreenPng, RefusesAPictureWithoutPixels) {
    const TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(offscreen::writePng(folder.path() / "a.png", offscreen::Image(), error));
    EXPECT_THAT(error, HasSubstr("a.png cannot be written: "));
    EXPECT_EQ(countFiles(folder.path()), 0);
}

TEST(OffscreenPng, RefusesToReadWhatIsNoPicture) {
    const TemporaryFolder folder;
    const fs::path path = folder.path() / "a.png";
    std::ofstream(path) << "no picture";
    offscreen::Image image;
    std::string error;
    EXPECT_FALSE(offscreen::readPng(path, image, error));
    EXPECT_THAT(error, HasSubstr("a.png cannot be read: "));
}

TEST(OffscreenPlatform, IsLeftAsItIsByAnEmptyVariable) {
    const EnvironmentVariable variable("OFFSCREEN_PLATFORM", "");
    auto platform = offscreen::Platform::EglDevice;
    std::string error;
    EXPECT_TRUE(offscreen::platformFromEnvironment(platform, error));
    EXPECT_EQ(platform, offscreen::Platform::EglDevice);
}

TEST(OffscreenPlatform, ComesFromTheVariable) {
    const EnvironmentVariable variable("OFFSCREEN_PLATFORM", platformName);
    auto platform = offscreen::Platform::Egl;
    std::string error;
    EXPECT_TRUE(offscreen::platformFromEnvironment(platform, error));
    EXPECT_EQ(platform, namedPlatform);
}

TEST(OffscreenPlatform, ListsTheNamesWhereTheVariableHasAnother) {
    const EnvironmentVariable variable("OFFSCREEN_PLATFORM", "vga");
    auto platform = offscreen::Platform::Egl;
    std::string error;
    EXPECT_FALSE(offscreen::platformFromEnvironment(platform, error));
    EXPECT_EQ(error,
              std::string("The environment variable OFFSCREEN_PLATFORM is \"vga\": unset it or set "
                          "it to one of ") +
                  platformNames + ".");
}

TEST(OffscreenProfile, IsLeftAsItIsByAnEmptyVariable) {
    const EnvironmentVariable variable("OFFSCREEN_PROFILE", "");
    offscreen::Settings settings;
    settings.coreVersion = 33;
    std::string error;
    EXPECT_TRUE(offscreen::profileFromEnvironment(settings, error));
    EXPECT_EQ(settings.coreVersion, 33);
}

TEST(OffscreenProfile, ComesFromTheVariable) {
    struct Row {
        const char* value;
        int coreVersion;
        bool isForwardCompatible;
    };
    for (const Row& row : {Row{"core-3.2", 32, false}, Row{"core-3.3-forward", 33, true},
                           Row{"core-4.6", 46, false}, Row{"core-4.0-forward", 40, true}}) {
        const EnvironmentVariable variable("OFFSCREEN_PROFILE", row.value);
        offscreen::Settings settings;
        std::string error;
        EXPECT_TRUE(offscreen::profileFromEnvironment(settings, error)) << row.value;
        EXPECT_EQ(settings.coreVersion, row.coreVersion);
        EXPECT_EQ(settings.isForwardCompatible, row.isForwardCompatible);
    }
    const EnvironmentVariable variable("OFFSCREEN_PROFILE", "compatibility");
    offscreen::Settings settings;
    settings.coreVersion = 33;
    std::string error;
    EXPECT_TRUE(offscreen::profileFromEnvironment(settings, error));
    EXPECT_EQ(settings.coreVersion, 0);
}

TEST(OffscreenProfile, IsRefusedWhereTheVariableHasAnotherValue) {
    for (const char* const value :
         {"core", "core-", "core-3.1", "core-3.4", "core-4.7", "core-3.3-", "core-3.3-forwards",
          "CORE-3.3", "3.3", "core-33", "es-3.2"}) {
        const EnvironmentVariable variable("OFFSCREEN_PROFILE", value);
        offscreen::Settings settings;
        settings.coreVersion = 45;
        std::string error;
        EXPECT_FALSE(offscreen::settingsFromEnvironment(settings, error)) << value;
        EXPECT_EQ(settings.coreVersion, 45);
        EXPECT_EQ(error,
                  "The environment variable OFFSCREEN_PROFILE is \"" + std::string(value) +
                      "\": unset it or set it to one of compatibility, core-3.2 to core-4.6, "
                      "and core-3.2-forward to core-4.6-forward.");
    }
}

TEST(OffscreenContext, IsRefusedByOsMesaWhereItIsToBeForwardCompatible) {
    if (offscreen::defaultPlatform != offscreen::Platform::Egl)
        GTEST_SKIP() << "there is no OSMesa here";
    offscreen::Settings settings{16, 16, offscreen::Platform::OsMesa};
    settings.coreVersion = 33;
    std::string error;
    EXPECT_EQ(offscreen::Context::open(settings, error), nullptr);
    EXPECT_THAT(error, ::testing::AnyOf(HasSubstr("OSMesa has no forward-compatible contexts"),
                                        HasSubstr("OSMesa cannot be used")));
}

TEST(OffscreenContext, SaysThatThereIsNoXServer) {
    if (offscreen::defaultPlatform != offscreen::Platform::Egl)
        GTEST_SKIP() << "there is no GLX here";
    const EnvironmentVariable variable("DISPLAY", ":98765");
    offscreen::Settings settings;
    settings.platform = offscreen::Platform::Glx;
    std::string error;
    EXPECT_EQ(offscreen::Context::open(settings, error), nullptr);
    EXPECT_THAT(error,
                ::testing::AnyOf(HasSubstr("No X server can be reached (DISPLAY is \":98765\")"),
                                 HasSubstr("GLX cannot be used")));
}

TEST(OffscreenContext, IsCurrentUntilItIsReleased) {
    std::string error;
    const auto context = offscreen::Context::open(renderSettings(16, 16), error);
    ASSERT_NE(context, nullptr) << error;
    EXPECT_TRUE(offscreen::loadEntryPoints(*context));
    context->release();
    EXPECT_FALSE(offscreen::loadEntryPoints(*context));
    EXPECT_TRUE(context->makeCurrent());
    EXPECT_TRUE(offscreen::loadEntryPoints(*context));
}

TEST(OffscreenContext, LeavesNoneCurrentAtItsEnd) {
    std::string error;
    auto context = offscreen::Context::open(renderSettings(16, 16), error);
    ASSERT_NE(context, nullptr) << error;
    context.reset();
    EXPECT_FALSE(vellis::engine::init());
}

TEST(OffscreenContext, OutlivesAnother) {
    std::string error;
    const auto first = offscreen::Context::open(renderSettings(16, 16), error);
    ASSERT_NE(first, nullptr) << error;
    auto second = offscreen::Context::open(renderSettings(32, 32), error);
    ASSERT_NE(second, nullptr) << error;
    second.reset();
    ASSERT_TRUE(first->makeCurrent());
    ASSERT_TRUE(offscreen::loadEntryPoints(*first));
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(offscreen::readPixels(1, 1).pixels, (std::vector<unsigned char>{0, 255, 0, 255}));
}

/// A context of the tests' platform, which shares the objects of another one, where that is given.
std::unique_ptr<offscreen::Context> openSharing(const offscreen::Context* sharing) {
    offscreen::Settings settings = renderSettings(16, 16);
    settings.sharing = sharing;
    std::string error;
    auto context = offscreen::Context::open(settings, error);
    EXPECT_NE(context, nullptr) << error;
    return context;
}

/// A buffer with a store, made in the current context.
GLuint makeBuffer() {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, 4, "abc", GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return buffer;
}

TEST(OffscreenSharing, GivesTheObjectsOfOneContextToAnother) {
    const auto first = openSharing(nullptr);
    ASSERT_NE(first, nullptr);
    ASSERT_TRUE(offscreen::loadEntryPoints(*first));
    const GLuint buffer = makeBuffer();
    const auto second = openSharing(first.get());
    ASSERT_NE(second, nullptr);
    ASSERT_EQ(glIsBuffer(buffer), GL_TRUE);
    char text[4] = "";
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, 4, text);
    EXPECT_STREQ(text, "abc");
}

TEST(OffscreenSharing, OutlivesTheContextThatWasSharedWith) {
    auto first = openSharing(nullptr);
    ASSERT_NE(first, nullptr);
    ASSERT_TRUE(offscreen::loadEntryPoints(*first));
    const GLuint buffer = makeBuffer();
    const auto second = openSharing(first.get());
    ASSERT_NE(second, nullptr);
    first.reset();
    EXPECT_TRUE(second->makeCurrent());
    EXPECT_EQ(glIsBuffer(buffer), GL_TRUE);
}

TEST(OffscreenSharing, IsNotDoneUnasked) {
    const auto first = openSharing(nullptr);
    ASSERT_NE(first, nullptr);
    ASSERT_TRUE(offscreen::loadEntryPoints(*first));
    const GLuint buffer = makeBuffer();
    const auto second = openSharing(nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(glIsBuffer(buffer), GL_FALSE);
}

/// A context of no platform.
class StrangeContext : public offscreen::Context {
public:
    bool makeCurrent() override { return false; }
    void release() override {}
};

TEST(OffscreenSharing, IsRefusedBetweenPlatforms) {
    const StrangeContext strange;
    offscreen::Settings settings = renderSettings(16, 16);
    settings.sharing = &strange;
    std::string error;
    EXPECT_EQ(offscreen::Context::open(settings, error), nullptr);
    EXPECT_EQ(error, "The context whose objects are to be shared is of another platform: open both "
                     "on the same one.");
}

TEST(OffscreenSharing, IsRefusedBetweenDisplays) {
    offscreen::Settings settings{16, 16, offscreen::Platform::EglSurfaceless};
    std::string error;
    const auto surfaceless = offscreen::Context::open(settings, error);
    settings.platform = offscreen::Platform::EglDevice;
    if (surfaceless == nullptr || offscreen::Context::open(settings, error) == nullptr)
        GTEST_SKIP() << "there are no two displays here: " << error;
    settings.sharing = surfaceless.get();
    EXPECT_EQ(offscreen::Context::open(settings, error), nullptr);
    EXPECT_THAT(error, HasSubstr("the context whose objects are to be shared is on another"));
}

TEST(OffscreenThreads, AContextIsHandedToAnotherThread) {
    const auto context = openSharing(nullptr);
    ASSERT_NE(context, nullptr);
    ASSERT_TRUE(offscreen::loadEntryPoints(*context));
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    context->release();
    offscreen::Image image;
    std::thread([&context, &image] {
        ASSERT_TRUE(context->makeCurrent());
        glClear(GL_COLOR_BUFFER_BIT);
        image = offscreen::readPixels(1, 1);
        context->release();
    }).join();
    EXPECT_EQ(image.pixels, (std::vector<unsigned char>{0, 255, 0, 255}));
    EXPECT_TRUE(context->makeCurrent());
}

TEST(OffscreenThreads, ContextsThatShareObjectsAreCurrentSideBySide) {
    const auto first = openSharing(nullptr);
    ASSERT_NE(first, nullptr);
    ASSERT_TRUE(offscreen::loadEntryPoints(*first));
    const auto second = openSharing(first.get());
    ASSERT_NE(second, nullptr);
    second->release();
    ASSERT_TRUE(first->makeCurrent());
    GLuint buffer = 0;
    std::thread([&second, &buffer] {
        ASSERT_TRUE(second->makeCurrent());
        buffer = makeBuffer();
        glFinish();
        second->release();
    }).join();
    EXPECT_NE(buffer, 0u);
    EXPECT_EQ(glIsBuffer(buffer), GL_TRUE);
}

class OffscreenFramebuffer : public RenderTest {};

TEST_F(OffscreenFramebuffer, HasColorDepthAndStencil) {
    SKIP_WITHOUT(Extension::Framebuffers);
    EXPECT_EQ(getInteger(GL_RED_BITS), 8);
    EXPECT_EQ(getInteger(GL_GREEN_BITS), 8);
    EXPECT_EQ(getInteger(GL_BLUE_BITS), 8);
    EXPECT_EQ(getInteger(GL_ALPHA_BITS), 8);
    EXPECT_GE(getInteger(GL_DEPTH_BITS), 24);
    EXPECT_EQ(getInteger(GL_STENCIL_BITS), 8);
    EXPECT_EQ(getInteger(GL_SAMPLES), 0);
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), GLenum{GL_FRAMEBUFFER_COMPLETE});
}

TEST_F(OffscreenFramebuffer, IsReadFromTheTopRowDown) {
    glEnable(GL_SCISSOR_TEST);
    for (int row = 0; row < 3; ++row) {
        glScissor(0, row, 3, 1);
        glClearColor(static_cast<float>(row) / 2.0f, 0.0f, 1.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    const offscreen::Image image = offscreen::readPixels(3, 3);
    EXPECT_EQ(image.at(1, 0)[0], 255);
    EXPECT_NEAR(image.at(1, 1)[0], 128, 1);
    EXPECT_EQ(image.at(1, 2)[0], 0);
}

TEST_F(OffscreenFramebuffer, IsReadTheSameWhateverThePackState) {
    glClearColor(0.2f, 0.4f, 0.6f, 0.8f);
    glClear(GL_COLOR_BUFFER_BIT);
    const offscreen::Image expected = offscreen::readPixels(5, 5);
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    glPixelStorei(GL_PACK_ROW_LENGTH, 11);
    glPixelStorei(GL_PACK_SKIP_ROWS, 2);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 3);
    EXPECT_EQ(offscreen::readPixels(5, 5).pixels, expected.pixels);
    EXPECT_EQ(getInteger(GL_PIXEL_PACK_BUFFER_BINDING), static_cast<GLint>(buffer));
    EXPECT_EQ(getInteger(GL_PACK_ALIGNMENT), 8);
    EXPECT_EQ(getInteger(GL_PACK_ROW_LENGTH), 11);
    EXPECT_EQ(getInteger(GL_PACK_SKIP_ROWS), 2);
    EXPECT_EQ(getInteger(GL_PACK_SKIP_PIXELS), 3);
    glDeleteBuffers(1, &buffer);
}

class OffscreenRequirement : public RenderTest {
protected:
    // The flags are the loader's: a later init sets them anew.
    void TearDown() override {
        vellis::engine::init();
        RenderTest::TearDown();
    }
};

TEST_F(OffscreenRequirement, NamesAnOldVersion) {
    GLAD_GL_VERSION_2_1 = 0;
    EXPECT_THAT(offscreen::missingRequirement(), HasSubstr(" lacks OpenGL 2.1"));
}

TEST_F(OffscreenRequirement, NamesEveryMissingExtension) {
    GLAD_GL_VERSION_3_0 = 0;
    GLAD_GL_ARB_vertex_array_object = 0;
    GLAD_GL_ARB_framebuffer_object = 0;
    GLAD_GL_ARB_map_buffer_range = 0;
    EXPECT_THAT(offscreen::missingRequirement(),
                HasSubstr(" lacks GL_ARB_vertex_array_object, GL_ARB_framebuffer_object, "
                          "GL_ARB_map_buffer_range: "));
}

TEST_F(OffscreenRequirement, IsMetByOpenGl3WithoutTheExtensions) {
    GLAD_GL_VERSION_3_0 = 1;
    GLAD_GL_ARB_vertex_array_object = 0;
    EXPECT_EQ(offscreen::missingRequirement(), "");
}

} // namespace

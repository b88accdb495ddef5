// needs: a process for EngineInit.WithoutAContextIsFalseAndSilentAndLeavesVersionZero

/// engine::init and the loader functions of <vellis/gl.hpp>, without a driver.

#include <cstring>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "support/stderr_capture.hpp"

namespace {

/// What the lookup below pretends to be. A plain function serves as lookup, so this is global.
struct Driver {
    const char* version = nullptr;    ///< GL_VERSION; null without a current context
    const char* extensions = "";      ///< GL_EXTENSIONS
    bool hasGetString = true;         ///< the lookup knows glGetString
    std::map<std::string, int> asked; ///< how often each name was looked up
} driver;

const GLubyte* GLAD_API_PTR getString(GLenum name) {
    const char* const text = name == GL_EXTENSIONS ? driver.extensions : driver.version;
    return reinterpret_cast<const GLubyte*>(text);
}

/// From GL 3.0 on the loader asks for the number of extensions and for each.
void GLAD_API_PTR getIntegerv(GLenum, GLint* value) {
    *value = 1;
}

const GLubyte* GLAD_API_PTR getStringi(GLenum, GLuint) {
    return reinterpret_cast<const GLubyte*>("GL_ARB_texture_rg");
}

/// An address of its own for each name: nobody calls it. Null for a name that nobody has asked for.
void* addressOf(const char* name) {
    const auto asked = driver.asked.find(name);
    return asked != driver.asked.end() ? &asked->second : nullptr;
}

void* lookup(const char* name) {
    ++driver.asked[name];
    if (std::strcmp(name, "glGetString") == 0)
        return driver.hasGetString ? reinterpret_cast<void*>(getString) : nullptr;
    if (std::strcmp(name, "glGetIntegerv") == 0)
        return reinterpret_cast<void*>(getIntegerv);
    if (std::strcmp(name, "glGetStringi") == 0)
        return reinterpret_cast<void*>(getStringi);
    return addressOf(name);
}

// Loading is global to the process; ctest runs each of these tests in one of its own, and each
// starts from a fresh driver when they share one.
class Loader : public testing::Test {
protected:
    Loader() { driver = Driver(); }

    static int load(const char* version, const char* extensions = "") {
        driver.version = version;
        driver.extensions = extensions;
        return gladLoadGLLoader(lookup);
    }
};

void expectVersion(int major, int minor) {
    EXPECT_EQ(GLVersion.major, major);
    EXPECT_EQ(GLVersion.minor, minor);
}

TEST(EngineInit, WithoutAContextIsFalseAndSilentAndLeavesVersionZero) {
    EXPECT_EQ(vellis::test::stderrOf([] {
                  EXPECT_FALSE(vellis::engine::init());
                  EXPECT_EQ(gladLoadGL(), 0);
              }),
              "");
    expectVersion(0, 0);
    EXPECT_EQ(glad_glBindBuffer, nullptr);
    EXPECT_EQ(glad_glGetString, nullptr);
}

TEST_F(Loader, EntryPointsAreNullBeforeTheFirstLoad) {
    if (GLAD_GL_VERSION_1_0 != 0)
        GTEST_SKIP() << "an earlier test of this process has loaded";
    expectVersion(0, 0);
#define VELLIS_ENTRY_POINT(name, member) EXPECT_EQ(glad_##name, nullptr) << #name;
#define VELLIS_LOADER_FLAG(name, member) EXPECT_EQ(name, 0) << #name;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
}

TEST_F(Loader, NullLookupFails) {
    EXPECT_EQ(gladLoadGLLoader(nullptr), 0);
    expectVersion(0, 0);
}

TEST_F(Loader, LookupWithoutGetStringFailsAtOnce) {
    driver.hasGetString = false;
    EXPECT_EQ(load("2.1"), 0);
    EXPECT_EQ(driver.asked.size(), 1u);
    expectVersion(0, 0);
}

TEST_F(Loader, NoCurrentContextFailsAtOnce) {
    EXPECT_EQ(load(nullptr), 0);
    EXPECT_EQ(driver.asked.size(), 1u);
    expectVersion(0, 0);
}

TEST_F(Loader, Version0Fails) {
    EXPECT_EQ(load("0.0"), 0);
    EXPECT_EQ(load("nonsense"), 0);
    expectVersion(0, 0);
}

TEST_F(Loader, VersionIsReadFromTheFrontOfTheText) {
    EXPECT_EQ(load("2.1 Mesa 22.3.6"), 1);
    expectVersion(2, 1);
    EXPECT_EQ(load("1.4"), 1);
    expectVersion(1, 4);
    EXPECT_EQ(load("4.6.0 NVIDIA"), 1);
    expectVersion(4, 6);
}

TEST_F(Loader, PrefixesOfEmbeddedContextsAreSkipped) {
    EXPECT_EQ(load("OpenGL ES-CM 1.1"), 1);
    expectVersion(1, 1);
    EXPECT_EQ(load("OpenGL ES-CL 1.0 more"), 1);
    expectVersion(1, 0);
    EXPECT_EQ(load("OpenGL ES 2.0"), 1);
    expectVersion(2, 0);
}

TEST_F(Loader, EntryPointsUpToTheVersionAreFilled) {
    ASSERT_EQ(load("1.4"), 1);
    EXPECT_NE(glad_glDrawArrays, nullptr);        // 1.1
    EXPECT_NE(glad_glBlendFuncSeparate, nullptr); // 1.4
    EXPECT_EQ(glad_glGenBuffers, nullptr);        // 1.5
    EXPECT_EQ(glad_glCreateProgram, nullptr);     // 2.0
    EXPECT_EQ(GLAD_GL_VERSION_1_4, 1);
    EXPECT_EQ(GLAD_GL_VERSION_1_5, 0);
    ASSERT_EQ(load("2.1"), 1);
    EXPECT_NE(glad_glUniformMatrix2x3fv, nullptr); // 2.1
    EXPECT_EQ(glad_glBindVertexArray, nullptr);    // 3.0
    EXPECT_EQ(GLAD_GL_VERSION_2_1, 1);
    EXPECT_EQ(GLAD_GL_VERSION_3_0, 0);
}

TEST_F(Loader, EveryEntryPointIsTheOneOfItsName) {
    ASSERT_EQ(load("2.1", "GL_ARB_framebuffer_object GL_ARB_map_buffer_range "
                          "GL_ARB_vertex_array_object GL_EXT_gpu_shader4"),
              1);
    int filled = 0;
#define VELLIS_ENTRY_POINT(name, member)                                                           \
    if (std::strcmp(#name, "glGetString") != 0 && std::strcmp(#name, "glGetIntegerv") != 0) {      \
        EXPECT_EQ(reinterpret_cast<void*>(glad_##name), addressOf(#name)) << #name;                \
        filled += glad_##name != nullptr;                                                          \
    }
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    EXPECT_GT(filled, 600);
    EXPECT_EQ(glad_glGetString, getString);
    EXPECT_EQ(glad_glGetIntegerv, getIntegerv);
}

TEST_F(Loader, GetStringiIsTheContextsOwnAfterTheLoad) {
    ASSERT_EQ(load("3.2"), 1); // from 3.0 on the load itself calls it, through a stand-in
    EXPECT_EQ(glad_glGetStringi, getStringi);
}

TEST_F(Loader, ExtensionsThatAreListedBringTheirEntryPoints) {
    ASSERT_EQ(load("2.1", "GL_ARB_map_buffer_range GL_ARB_vertex_array_objects"), 1);
    EXPECT_EQ(GLAD_GL_ARB_map_buffer_range, 1);
    EXPECT_NE(glad_glMapBufferRange, nullptr);
    EXPECT_EQ(GLAD_GL_ARB_vertex_array_object, 0); // a longer name is another extension
    EXPECT_EQ(glad_glGenVertexArrays, nullptr);
    EXPECT_EQ(glad_glGenFramebuffers, nullptr);
    ASSERT_EQ(load("2.1", "GL_ARB_vertex_array_object GL_ARB_framebuffer_object"), 1);
    EXPECT_NE(glad_glGenVertexArrays, nullptr);
    EXPECT_NE(glad_glGenFramebuffers, nullptr);
    EXPECT_NE(glad_glBlitFramebuffer, nullptr);
}

TEST_F(Loader, SecondLoadClearsWhatTheNewContextLacks) {
    ASSERT_EQ(load("3.2"), 1);
    EXPECT_NE(glad_glBindVertexArray, nullptr);
    EXPECT_NE(glad_glGetIntegeri_v, nullptr);
    EXPECT_EQ(GLAD_GL_VERSION_3_2, 1);
    EXPECT_EQ(GLAD_GL_ARB_texture_rg, 1);
    ASSERT_EQ(load("2.0"), 1);
    EXPECT_EQ(GLAD_GL_ARB_texture_rg, 0);
    EXPECT_EQ(glad_glBindVertexArray, nullptr);
    EXPECT_EQ(glad_glGetIntegeri_v, nullptr);
    EXPECT_EQ(glad_glUniformMatrix2x3fv, nullptr);
    EXPECT_NE(glad_glCreateProgram, nullptr);
    EXPECT_EQ(GLAD_GL_VERSION_3_2, 0);
    expectVersion(2, 0);
}

TEST_F(Loader, SecondLoadLooksEveryEntryPointUpAgain) {
    ASSERT_EQ(load("2.1"), 1);
    const auto first = driver.asked;
    driver.asked.clear();
    ASSERT_EQ(load("2.1"), 1);
    EXPECT_EQ(driver.asked, first);
    EXPECT_GT(first.size(), 400u);
}

TEST_F(Loader, EveryFailureAfterASuccessLeavesVersionZero) {
    ASSERT_EQ(load("2.1"), 1);
    EXPECT_EQ(gladLoadGLLoader(nullptr), 0);
    expectVersion(0, 0);
    ASSERT_EQ(load("2.1"), 1);
    EXPECT_EQ(load(nullptr), 0);
    expectVersion(0, 0);
    ASSERT_EQ(load("2.1"), 1);
    EXPECT_EQ(gladLoadGL(), 0); // no context here
    expectVersion(0, 0);
}

TEST_F(Loader, FailedLoadLeavesEntryPointsAndFlagsAsTheyWere) {
    ASSERT_EQ(load("2.1"), 1);
    EXPECT_EQ(load(nullptr), 0);
    expectVersion(0, 0);
    EXPECT_NE(glad_glBindBuffer, nullptr);
    EXPECT_EQ(glad_glGetString, getString);
    EXPECT_EQ(GLAD_GL_VERSION_2_1, 1);
    EXPECT_FALSE(vellis::engine::init()); // no context here, either
    EXPECT_NE(glad_glBindBuffer, nullptr);
    EXPECT_EQ(gladLoadGLLoader(nullptr), 0);
    EXPECT_NE(glad_glBindBuffer, nullptr);
    expectVersion(0, 0);
}

} // namespace

#include "support/fake_gl.hpp"

#include <cstring>
#include <string>
#include <vector>

#include <vellis/gl.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "support/allocation_count.hpp"

namespace vellis::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The pointers of all entry points, as they are now.
std::vector<const void*> entryPoints() {
    return {
#define VELLIS_ENTRY_POINT(name, member) reinterpret_cast<const void*>(glad_##name),
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
}

std::vector<int> flags() {
    return {
#define VELLIS_ENTRY_POINT(name, member)
#define VELLIS_LOADER_FLAG(name, member) name,
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
}

template <class Result, class... Parameters>
void callWithZeros(Result(GLAD_API_PTR* entryPoint)(Parameters...)) {
    static_cast<void>(entryPoint(Parameters()...));
}

TEST(FakeGl, EveryEntryPointIsRecordedUnderItsName) {
    FakeGl gl;
#define VELLIS_ENTRY_POINT(name, member)                                                           \
    callWithZeros(glad_##name);                                                                    \
    EXPECT_EQ(gl.countOf(#name), 1u);                                                              \
    gl.forget();
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
}

TEST(FakeGl, EntryPointsAndFlagsComeBack) {
    const std::vector<const void*> pointersBefore = entryPoints();
    const std::vector<int> flagsBefore = flags();
    GLVersion = {1, 5};
    {
        FakeGl gl;
        EXPECT_THAT(entryPoints(), ::testing::Not(::testing::Contains(nullptr)));
        EXPECT_THAT(flags(), ::testing::Each(1));
        gl.remove(glad_glGenVertexArrays);
        EXPECT_EQ(glad_glGenVertexArrays, nullptr);
        GLAD_GL_ARB_map_buffer_range = 0;
        GLVersion = {2, 1};
    }
    EXPECT_EQ(entryPoints(), pointersBefore);
    EXPECT_EQ(flags(), flagsBefore);
    EXPECT_EQ(GLVersion.major, 1);
    EXPECT_EQ(GLVersion.minor, 5);
    GLVersion = {0, 0};
}

TEST(FakeGl, AnotherTakesOverForItsLife) {
    FakeGl outer;
    {
        FakeGl inner;
        glFinish();
        EXPECT_GL_CALLS(inner, "glFinish()");
    }
    glFlush();
    EXPECT_GL_CALLS(outer, "glFlush()");
}

TEST(FakeGl, LookUpServesTheLoader) {
    FakeGl gl;
    gl.setString(GL_VERSION, "2.1 fake");
    gl.remove(glad_glBindBuffer);
    EXPECT_EQ(gladLoadGLLoader(&FakeGl::lookUp), 1);
    EXPECT_EQ(GLVersion.major, 2);
    gl.forget();
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(FakeGl::lookUp("glNothing"), nullptr);
}

TEST(FakeGl, AnswersOfOnesOwnReplaceTheModels) {
    FakeGl gl;
    gl.answer(glad_glGetUniformLocation, [](GLuint, const GLchar*) -> GLint { return 7; });
    gl.answer(glad_glIsSync, [](GLsync) { return GL_TRUE; });
    EXPECT_EQ(glGetUniformLocation(1, "a"), 7);
    EXPECT_EQ(glIsSync(nullptr), GL_TRUE);
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(1, \"a\")", "glIsSync(0)");
}

TEST(FakeGl, CallsWithoutAnAnswerGiveZero) {
    FakeGl gl;
    EXPECT_EQ(glGetUniformBlockIndex(1, "a"), 0u);
    EXPECT_EQ(glGetStringi(GL_EXTENSIONS, 0), nullptr);
    gl.forget();
}

TEST(FakeGl, CallsAreTakenOnce) {
    FakeGl gl;
    glFlush();
    glFinish();
    EXPECT_EQ(gl.countOf("glFinish"), 1u);
    EXPECT_THAT(gl.takeCalls(), ElementsAre("glFlush()", "glFinish()"));
    EXPECT_THAT(gl.takeCalls(), IsEmpty());
    EXPECT_GL_CALLS(gl);
}

TEST(FakeGl, ExpectedCallsMayBeLists) {
    FakeGl gl;
    glFlush();
    glFinish();
    glFlush();
    const std::vector<std::string> middle = {"glFinish()"};
    EXPECT_GL_CALLS(gl, "glFlush()", middle, std::string("glFlush()"));
}

TEST(FakeGl, CountOfTellsNamesApart) {
    FakeGl gl;
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_FLOAT, nullptr);
    EXPECT_EQ(gl.countOf("glTexImage2D"), 1u);
    EXPECT_EQ(gl.countOf("glTexImage3D"), 0u);
    EXPECT_NONFATAL_FAILURE(static_cast<void>(gl.countOf("glTexImage")), "no entry point");
    gl.forget();
}

TEST(FakeGl, ADifferentCallIsReportedWithBothLists) {
    FakeGl gl;
    const auto expectWrong = [&gl] {
        glFlush();
        glBindBuffer(GL_ARRAY_BUFFER, 1);
        EXPECT_GL_CALLS(gl, "glFlush()", "glFinish()");
    };
    EXPECT_NONFATAL_FAILURE(expectWrong(), "The GL calls differ (2 expected, 2 made):\n"
                                           "       expected    made\n"
                                           "    1  glFlush()   glFlush()\n"
                                           ">   2  glFinish()  glBindBuffer(GL_ARRAY_BUFFER, 1)\n");
    EXPECT_GL_CALLS(gl);
}

TEST(FakeGl, AMissingCallIsReported) {
    FakeGl gl;
    const auto expectMore = [&gl] {
        glFlush();
        EXPECT_GL_CALLS(gl, "glFlush()", "glFinish()");
    };
    EXPECT_NONFATAL_FAILURE(expectMore(), ">   2  glFinish()  -\n");
}

TEST(FakeGl, AnUnexpectedCallIsReported) {
    FakeGl gl;
    const auto expectNone = [&gl] {
        glFlush();
        EXPECT_GL_CALLS(gl);
    };
    EXPECT_NONFATAL_FAILURE(expectNone(), ">   1  -         glFlush()\n");
}

TEST(FakeGl, LongLinesStandAboveOneAnother) {
    FakeGl gl;
    const std::string wide(90, 'x');
    EXPECT_NONFATAL_FAILURE(EXPECT_GL_CALLS(gl, wide), (">   1  " + wide + "\n     "));
}

TEST(FakeGl, CallsThatNobodyLookedAtAreReported) {
    const auto forgetToLook = [] {
        FakeGl gl;
        glFlush();
        glFinish();
    };
    EXPECT_NONFATAL_FAILURE(forgetToLook(), "2 GL calls that the test did not look at:\n"
                                            "  glFlush()\n"
                                            "  glFinish()\n");
}

TEST(FakeGl, ForgottenCallsAreNotReported) {
    FakeGl gl;
    glFlush();
    gl.forget();
    glFinish();
    EXPECT_GL_CALLS(gl, "glFinish()");
}

TEST(FakeGl, WithoutRecordingAnswersStillCome) {
    FakeGl gl;
    gl.setState(GL_VIEWPORT, {1, 2, 3, 4});
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4}});
    gl.setRecording(false);
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    EXPECT_EQ(buffer, 1u);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, 64, nullptr, GL_STATIC_DRAW);
    void* bytes = glMapBufferRange(GL_ARRAY_BUFFER, 0, 64, GL_MAP_WRITE_BIT);
    ASSERT_NE(bytes, nullptr);
    std::memset(bytes, 1, 64);
    EXPECT_EQ(glUnmapBuffer(GL_ARRAY_BUFFER), GL_TRUE);
    EXPECT_EQ(glGetUniformLocation(1, "mvp"), 0);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_THAT(viewport, ElementsAre(1, 2, 3, 4));
    EXPECT_GL_CALLS(gl);
}

TEST(FakeGl, WithoutRecordingNothingIsAllocated) {
    FakeGl gl;
    gl.setRecording(false);
    const GLfloat red[] = {1, 0, 0, 1};
    const auto frame = [&red] {
        GLuint buffer = 0;
        GLint value = 0;
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, 64, nullptr, GL_STATIC_DRAW);
        glBufferSubData(GL_ARRAY_BUFFER, 0, sizeof(red), red);
        glMapBufferRange(GL_ARRAY_BUFFER, 0, 64, GL_MAP_WRITE_BIT);
        glUnmapBuffer(GL_ARRAY_BUFFER);
        glUseProgram(1);
        glUniform4fv(0, 1, red);
        glGetIntegerv(GL_CURRENT_PROGRAM, &value);
        glGetUniformLocation(1, "a name too long to lie in a string by itself");
        glDrawArrays(GL_TRIANGLES, 0, 3);
        glDeleteBuffers(1, &buffer);
    };
    frame(); // the memory for mappings comes once
    const std::size_t before = allocationCount();
    frame();
    EXPECT_EQ(allocationCount(), before);
}

} // namespace
} // namespace vellis::test

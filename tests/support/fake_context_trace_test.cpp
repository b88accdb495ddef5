#include "support/fake_context.hpp"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace vellis::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Names that no context has made.
constexpr GLuint strange = 7;
constexpr GLuint otherStrange = 8;

/// How often a thread does what it does.
constexpr std::size_t numRounds = 100;

GLuint makeBuffer() {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    return buffer;
}

GLuint makeVertexArray() {
    GLuint vertexArray = 0;
    glGenVertexArrays(1, &vertexArray);
    return vertexArray;
}

GLint getInteger(GLenum pname) {
    GLint value = -1;
    glGetIntegerv(pname, &value);
    return value;
}

/// One object of each kind, made in the current context.
struct Objects {
    GLuint buffer = 0;
    GLuint texture = 0;
    GLuint renderbuffer = 0;
    GLuint shader = 0;
    GLuint program = 0;
    GLuint vertexArray = 0;
    GLuint framebuffer = 0;
    GLuint query = 0;

    Objects() {
        glGenBuffers(1, &buffer);
        glGenTextures(1, &texture);
        glGenRenderbuffers(1, &renderbuffer);
        shader = glCreateShader(GL_VERTEX_SHADER);
        program = glCreateProgram();
        glGenVertexArrays(1, &vertexArray);
        glGenFramebuffers(1, &framebuffer);
        glGenQueries(1, &query);
    }
};

/// Uses each object in the calls that the kinds have.
void useShared(const Objects& objects) {
    glBindBuffer(GL_ARRAY_BUFFER, objects.buffer);
    glBindTexture(GL_TEXTURE_2D, objects.texture);
    glBindRenderbuffer(GL_RENDERBUFFER, objects.renderbuffer);
    glCompileShader(objects.shader);
    glUseProgram(objects.program);
}

void useOwn(const Objects& objects) {
    glBindVertexArray(objects.vertexArray);
    glBindFramebuffer(GL_FRAMEBUFFER, objects.framebuffer);
    glBeginQuery(GL_SAMPLES_PASSED, objects.query);
}

void deleteAll(const Objects& objects) {
    glDeleteBuffers(1, &objects.buffer);
    glDeleteTextures(1, &objects.texture);
    glDeleteRenderbuffers(1, &objects.renderbuffer);
    glDeleteShader(objects.shader);
    glDeleteProgram(objects.program);
    glDeleteVertexArrays(1, &objects.vertexArray);
    glDeleteFramebuffers(1, &objects.framebuffer);
    glDeleteQueries(1, &objects.query);
}

TEST(FakeContext, AnswersAndRecordsWhileItIsCurrent) {
    FakeGl gl;
    FakeContext context;
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_TRUE(context.makeCurrent());
    EXPECT_TRUE(context.isCurrentHere());
    glBindBuffer(GL_ARRAY_BUFFER, makeBuffer());
    EXPECT_TRUE(gl.makeCurrent());
    EXPECT_FALSE(context.isCurrentHere());
    glFlush();
    EXPECT_GL_CALLS(gl, "glClear(GL_COLOR_BUFFER_BIT)", "glFlush()");
    EXPECT_GL_CALLS(context, "glGenBuffers(1, {100001})", "glBindBuffer(GL_ARRAY_BUFFER, 100001)");
}

TEST(FakeContext, HasBindingsAndStateOfItsOwn) {
    const FakeGl gl;
    FakeContext first;
    FakeContext second(&first);
    first.setState(GL_MAX_TEXTURE_SIZE, {64});
    first.makeCurrent();
    const GLuint buffer = makeBuffer();
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    second.makeCurrent();
    EXPECT_EQ(getInteger(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_EQ(getInteger(GL_MAX_TEXTURE_SIZE), 0);
    first.makeCurrent();
    EXPECT_EQ(getInteger(GL_ARRAY_BUFFER_BINDING), static_cast<GLint>(buffer));
    EXPECT_EQ(getInteger(GL_MAX_TEXTURE_SIZE), 64);
}

TEST(FakeContext, NamesOfContextsAndOfGroupsAreApart) {
    const FakeGl gl;
    FakeContext first;
    FakeContext sharing(&first);
    FakeContext other;
    first.makeCurrent();
    EXPECT_EQ(makeBuffer(), 100001u);
    EXPECT_EQ(makeVertexArray(), 200001u);
    sharing.makeCurrent();
    EXPECT_EQ(makeBuffer(), 100002u);
    EXPECT_EQ(makeVertexArray(), 300001u);
    other.makeCurrent();
    EXPECT_EQ(makeBuffer(), 400001u);
    EXPECT_EQ(makeVertexArray(), 500001u);
}

TEST(FakeContext, NamesOfAContextThatIsGoneAreNotGivenAgain) {
    const FakeGl gl;
    GLuint name = 0;
    {
        FakeContext context;
        context.makeCurrent();
        name = makeBuffer();
    }
    FakeContext context;
    context.makeCurrent();
    EXPECT_NE(makeBuffer(), name);
    glBindBuffer(GL_ARRAY_BUFFER, name);
    EXPECT_THAT(context.violations(), SizeIs(1));
}

TEST(FakeContext, SharedObjectsAreOneInAllContextsOfTheGroup) {
    const FakeGl gl;
    FakeContext first;
    FakeContext second(&first);
    first.makeCurrent();
    const Objects objects;
    glBindBuffer(GL_ARRAY_BUFFER, objects.buffer);
    glBufferData(GL_ARRAY_BUFFER, 4, "abc", GL_STATIC_DRAW);
    const char* const source = "void main() {}";
    glShaderSource(objects.shader, 1, &source, nullptr);
    glAttachShader(objects.program, objects.shader);
    second.setActiveUniforms({{"a", GL_FLOAT}, {"b", GL_FLOAT}});
    EXPECT_EQ(glGetUniformLocation(objects.program, "b"), 1);
    second.makeCurrent();
    useShared(objects);
    char text[4] = "";
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, 4, text);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(second.shaderSource(objects.shader), source);
    GLint numAttached = 0;
    glGetProgramiv(objects.program, GL_ATTACHED_SHADERS, &numAttached);
    EXPECT_EQ(numAttached, 1);
    EXPECT_EQ(glGetUniformLocation(objects.program, "b"), 1);
    EXPECT_THAT(first.violations(), IsEmpty());
    EXPECT_THAT(second.violations(), IsEmpty());
}

TEST(FakeContext, OutlivesTheContextWhoseObjectsItShares) {
    const FakeGl gl;
    auto first = std::make_unique<FakeContext>();
    FakeContext second(first.get());
    first->makeCurrent();
    const GLuint buffer = makeBuffer();
    first.reset();
    EXPECT_EQ(currentListener(), nullptr);
    second.makeCurrent();
    EXPECT_EQ(glIsBuffer(buffer), GL_TRUE);
}

TEST(FakeContext, TellsWhichObjectsItHas) {
    const FakeGl gl;
    FakeContext first;
    FakeContext sharing(&first);
    FakeContext other;
    first.makeCurrent();
    const Objects objects;
    const auto shared = [&objects] {
        return std::vector<GLboolean>{glIsBuffer(objects.buffer), glIsTexture(objects.texture),
                                      glIsRenderbuffer(objects.renderbuffer),
                                      glIsShader(objects.shader), glIsProgram(objects.program)};
    };
    const auto own = [&objects] {
        return std::vector<GLboolean>{glIsVertexArray(objects.vertexArray),
                                      glIsFramebuffer(objects.framebuffer),
                                      glIsQuery(objects.query)};
    };
    EXPECT_THAT(shared(), Each(GL_TRUE));
    EXPECT_THAT(own(), Each(GL_TRUE));
    sharing.makeCurrent();
    EXPECT_THAT(shared(), Each(GL_TRUE));
    EXPECT_THAT(own(), Each(GL_FALSE));
    other.makeCurrent();
    EXPECT_THAT(shared(), Each(GL_FALSE));
    EXPECT_THAT(own(), Each(GL_FALSE));
    EXPECT_EQ(glIsBuffer(0), GL_FALSE);
    first.makeCurrent();
    deleteAll(objects);
    EXPECT_THAT(shared(), Each(GL_FALSE));
    EXPECT_THAT(own(), Each(GL_FALSE));
    // To ask is to use none.
    EXPECT_THAT(other.violations(), IsEmpty());
    EXPECT_THAT(first.violations(), IsEmpty());
}

TEST(FakeContext, LiveNamesAreItsOwnAndThoseOfItsGroup) {
    const FakeGl gl;
    FakeContext first;
    FakeContext second(&first);
    first.makeCurrent();
    const GLuint buffer = makeBuffer();
    makeVertexArray();
    second.makeCurrent();
    makeVertexArray();
    EXPECT_THAT(first.liveNames(), ElementsAre("buffer 100001", "vertex array 200001"));
    EXPECT_THAT(second.liveNames(), ElementsAre("buffer 100001", "vertex array 300001"));
    glDeleteBuffers(1, &buffer);
    EXPECT_THAT(first.liveNames(), ElementsAre("vertex array 200001"));
    EXPECT_THAT(second.liveNames(), ElementsAre("vertex array 300001"));
}

TEST(FakeContextViolations, AreAllUsesOfNamesThatNoContextMade) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const GLchar* const source = "";
    GLint value = 0;
    GLfloat number = 0;
    glBindBuffer(GL_ARRAY_BUFFER, strange);
    glBindTexture(GL_TEXTURE_2D, strange);
    glBindRenderbuffer(GL_RENDERBUFFER, strange);
    glBindFramebuffer(GL_FRAMEBUFFER, strange);
    glBindVertexArray(strange);
    glUseProgram(strange);
    glAttachShader(strange, otherStrange);
    glDetachShader(strange, otherStrange);
    glShaderSource(strange, 1, &source, nullptr);
    glCompileShader(strange);
    glLinkProgram(strange);
    glValidateProgram(strange);
    glBindAttribLocation(strange, 0, "a");
    glGetProgramiv(strange, GL_LINK_STATUS, &value);
    glGetShaderiv(strange, GL_COMPILE_STATUS, &value);
    glGetProgramInfoLog(strange, 0, nullptr, nullptr);
    glGetShaderInfoLog(strange, 0, nullptr, nullptr);
    glGetUniformLocation(strange, "a");
    glGetAttribLocation(strange, "a");
    glGetActiveUniform(strange, 0, 0, nullptr, nullptr, nullptr, nullptr);
    glGetActiveAttrib(strange, 0, 0, nullptr, nullptr, nullptr, nullptr);
    glGetUniformfv(strange, 0, &number);
    glGetUniformiv(strange, 0, &value);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, strange, 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, strange);
    glDeleteBuffers(1, &strange);
    glDeleteTextures(1, &strange);
    glDeleteRenderbuffers(1, &strange);
    glDeleteFramebuffers(1, &strange);
    glDeleteVertexArrays(1, &strange);
    glDeleteShader(strange);
    glDeleteProgram(strange);
    const std::vector<std::string> calls = context.takeCalls();
    EXPECT_THAT(calls, SizeIs(32));
    EXPECT_EQ(context.violations(), calls);
}

TEST(FakeContextViolations, AreNoUsesOfTheNameZero) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const GLuint none = 0;
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindVertexArray(0);
    glUseProgram(0);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 0, 0);
    glDeleteBuffers(1, &none);
    glDeleteProgram(0);
    EXPECT_THAT(context.violations(), IsEmpty());
}

TEST(FakeContextViolations, AreNoUsesOfNamesOfTheContext) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const Objects objects;
    useShared(objects);
    useOwn(objects);
    deleteAll(objects);
    EXPECT_THAT(context.violations(), IsEmpty());
    EXPECT_THAT(context.liveNames(), IsEmpty());
}

TEST(FakeContextViolations, AreUsesOfAnotherContextsNames) {
    const FakeGl gl;
    FakeContext first;
    FakeContext other;
    first.makeCurrent();
    const Objects objects;
    other.makeCurrent();
    useShared(objects);
    useOwn(objects);
    deleteAll(objects);
    EXPECT_THAT(other.violations(), SizeIs(16));
    EXPECT_THAT(first.violations(), IsEmpty());
    EXPECT_THAT(first.liveNames(), SizeIs(8));
}

TEST(FakeContextViolations, AreUsesOfWhatASharingContextDoesNotShare) {
    const FakeGl gl;
    FakeContext first;
    FakeContext sharing(&first);
    first.makeCurrent();
    const Objects objects;
    sharing.makeCurrent();
    useShared(objects);
    EXPECT_THAT(sharing.violations(), IsEmpty());
    useOwn(objects);
    EXPECT_THAT(sharing.violations(), ElementsAre("glBindVertexArray(200001)",
                                                  "glBindFramebuffer(GL_FRAMEBUFFER, 200002)",
                                                  "glBeginQuery(GL_SAMPLES_PASSED, 200003)"));
}

TEST(FakeContextViolations, AreNamesOfAnotherKind) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const Objects objects;
    glBindTexture(GL_TEXTURE_2D, objects.buffer);
    glDeleteProgram(objects.shader);
    EXPECT_THAT(context.violations(),
                ElementsAre("glBindTexture(GL_TEXTURE_2D, 100001)", "glDeleteProgram(100004)"));
}

TEST(FakeContextViolations, AreASecondDeletionAndUsesAfterTheFirst) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const GLuint buffers[] = {makeBuffer(), makeBuffer()};
    const GLuint twice[] = {buffers[1], buffers[1]};
    glDeleteBuffers(1, buffers);
    EXPECT_THAT(context.violations(), IsEmpty());
    glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    glDeleteBuffers(2, buffers);
    glDeleteBuffers(2, twice);
    EXPECT_THAT(context.violations(), ElementsAre("glBindBuffer(GL_ARRAY_BUFFER, 100001)",
                                                  "glDeleteBuffers(2, {100001, 100002})",
                                                  "glDeleteBuffers(2, {100002, 100002})"));
}

TEST(FakeContextViolations, AreTwoOfANameTwiceInOneDeletion) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const GLuint buffer = makeBuffer();
    const GLuint twice[] = {buffer, buffer};
    glDeleteBuffers(2, twice);
    EXPECT_THAT(context.violations(), ElementsAre("glDeleteBuffers(2, {100001, 100001})"));
}

TEST(FakeContextViolations, AreNoUsesOfADeletedProgramOrShaderButItsDeletion) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const Objects objects;
    GLint value = 0;
    glAttachShader(objects.program, objects.shader);
    glDeleteShader(objects.shader);
    glDetachShader(objects.program, objects.shader);
    glUseProgram(objects.program);
    glDeleteProgram(objects.program);
    glGetProgramiv(objects.program, GL_DELETE_STATUS, &value);
    EXPECT_THAT(context.violations(), IsEmpty());
    glDeleteShader(objects.shader);
    glDeleteProgram(objects.program);
    EXPECT_THAT(context.violations(),
                ElementsAre("glDeleteShader(100004)", "glDeleteProgram(100005)"));
}

TEST(FakeContextViolations, FailTheTestThatDoesNotLookAtThem) {
    const FakeGl gl;
    const auto use = [](bool look) {
        FakeContext context;
        context.makeCurrent();
        glBindVertexArray(strange);
        if (look)
            context.violations();
    };
    EXPECT_NONFATAL_FAILURE(use(false), "glBindVertexArray(7)");
    use(true);
}

TEST(FakeContextThreads, EachHasAContextOfItsOwn) {
    const FakeGl gl;
    FakeContext contexts[2];
    const auto work = [](FakeContext& context) {
        ASSERT_TRUE(context.makeCurrent());
        for (std::size_t i = 0; i < numRounds; ++i)
            glBindBuffer(GL_ARRAY_BUFFER, makeBuffer());
        EXPECT_EQ(context.countOf("glBindBuffer"), numRounds);
        FakeContext::releaseCurrent();
    };
    std::thread other([&] { work(contexts[1]); });
    work(contexts[0]);
    other.join();
    for (FakeContext& context : contexts) {
        EXPECT_THAT(context.takeCalls(), SizeIs(2 * numRounds));
        EXPECT_THAT(context.liveNames(), SizeIs(numRounds));
        EXPECT_THAT(context.violations(), IsEmpty());
    }
}

TEST(FakeContextThreads, UseTheObjectsOfOneGroupSideBySide) {
    const FakeGl gl;
    FakeContext first;
    FakeContext second(&first);
    const auto work = [](FakeContext& context) {
        ASSERT_TRUE(context.makeCurrent());
        for (std::size_t i = 0; i < numRounds; ++i) {
            const Objects objects;
            useShared(objects);
            useOwn(objects);
            glBufferData(GL_ARRAY_BUFFER, 16, nullptr, GL_STATIC_DRAW);
            EXPECT_NE(glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY), nullptr);
            glUnmapBuffer(GL_ARRAY_BUFFER);
            glAttachShader(objects.program, objects.shader);
            EXPECT_EQ(glGetUniformLocation(objects.program, "a"), -1);
            EXPECT_THAT(context.liveNames(), SizeIs(Ge(8u)));
            deleteAll(objects);
        }
        FakeContext::releaseCurrent();
    };
    std::thread other([&] { work(second); });
    work(first);
    other.join();
    EXPECT_THAT(first.violations(), IsEmpty());
    EXPECT_THAT(second.violations(), IsEmpty());
    EXPECT_THAT(first.liveNames(), IsEmpty());
    EXPECT_THAT(second.liveNames(), IsEmpty());
}

TEST(FakeContextThreads, HandAContextOver) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    const GLuint buffer = makeBuffer();
    std::thread([&] { EXPECT_FALSE(context.makeCurrent()); }).join();
    FakeContext::releaseCurrent();
    std::thread([&] {
        ASSERT_TRUE(context.makeCurrent());
        glDeleteBuffers(1, &buffer);
#ifdef _WIN32
        FakeContext::releaseCurrent(); // the end of the thread is noticed after it was waited for
#endif
        // Elsewhere the end of the thread releases it.
    }).join();
    EXPECT_TRUE(context.makeCurrent());
    EXPECT_GL_CALLS(context, "glGenBuffers(1, {100001})", "glDeleteBuffers(1, {100001})");
}

TEST(FakeContextThreads, CallsWithoutAContextAreCounted) {
    FakeGl gl;
    FakeContext context;
    EXPECT_EQ(takeCallsWithoutContext(), 0u);
    glFlush();
    std::thread([] {
        EXPECT_EQ(glCreateProgram(), 0u);
        EXPECT_EQ(glGetString(GL_VERSION), nullptr);
    }).join();
    EXPECT_EQ(takeCallsWithoutContext(), 2u);
    context.makeCurrent();
    glFlush();
    EXPECT_EQ(takeCallsWithoutContext(), 0u);
    FakeContext::releaseCurrent();
    glFlush();
    EXPECT_EQ(takeCallsWithoutContext(), 1u);
    EXPECT_GL_CALLS(gl, "glFlush()");
    EXPECT_GL_CALLS(context, "glFlush()");
}

TEST(FakeContextThreads, AFakeGlAnswersTheThreadThatMadeIt) {
    FakeGl gl;
    std::thread([] { EXPECT_EQ(makeBuffer(), 0u); }).join();
    EXPECT_EQ(makeBuffer(), 1u);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {1})");
    EXPECT_EQ(takeCallsWithoutContext(), 1u);
}

TEST(FakeContextThreads, WorkInARecorderIsThatOfItsThread) {
    FakeGl gl;
    bool insideHere = false;
    bool insideThere = true;
    gl.answer(glad_glFlush, [&] {
        insideHere = isInsideFakeGl();
        std::thread([&] { insideThere = isInsideFakeGl(); }).join();
    });
    glFlush();
    EXPECT_TRUE(insideHere);
    EXPECT_FALSE(insideThere);
    gl.forget();
}

/// Loads through \p lookup; whether the entry points that the library cannot do without are there.
bool load(void* (*lookup)(const char* name)) {
    return gladLoadGLLoader(lookup) == 1 && glad_glDrawArrays != nullptr &&
           glad_glGenVertexArrays != nullptr && glad_glGenFramebuffers != nullptr &&
           glad_glMapBufferRange != nullptr && glad_glBindFragDataLocationEXT != nullptr;
}

TEST(FakeContextLookup, LoadsWithoutAnythingScripted) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    EXPECT_TRUE(load(FakeGl::lookUp));
    EXPECT_EQ(GLVersion.major, 2);
    EXPECT_EQ(GLVersion.minor, 1);
    EXPECT_EQ(GLAD_GL_ARB_map_buffer_range, 1);
    EXPECT_EQ(GLAD_GL_VERSION_3_0, 0);
}

TEST(FakeContextLookup, IsTheSameForAllContexts) {
    const FakeGl gl;
    FakeContext first;
    FakeContext second;
    first.makeCurrent();
    ASSERT_TRUE(load(FakeGl::lookUp));
    const auto clear = glad_glClear;
    second.makeCurrent();
    ASSERT_TRUE(load(FakeGl::lookUp));
    EXPECT_EQ(glad_glClear, clear);
    second.forget();
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_GL_CALLS(second, "glClear(GL_COLOR_BUFFER_BIT)");
    EXPECT_EQ(second.callsThroughOther(), 0u);
}

TEST(FakeContextLookup, TheOtherGivesOtherFunctionsThatDoTheSame) {
    const FakeGl gl;
    FakeContext context;
    context.makeCurrent();
    ASSERT_TRUE(load(FakeContext::lookUpOther));
    EXPECT_NE(FakeGl::lookUp("glClear"), FakeContext::lookUpOther("glClear"));
    EXPECT_NE(FakeGl::lookUp("glBindBuffer"), FakeContext::lookUpOther("glBindBuffer"));
    EXPECT_NE(FakeGl::lookUp("glDrawArrays"), FakeContext::lookUpOther("glDrawArrays"));
    EXPECT_EQ(FakeGl::lookUp("glFlush"), FakeContext::lookUpOther("glFlush"));
    EXPECT_EQ(FakeContext::lookUpOther("glNothing"), nullptr);
    context.forget();
    const std::size_t before = context.callsThroughOther();
    glBindBuffer(GL_ARRAY_BUFFER, makeBuffer());
    glFlush();
    EXPECT_EQ(context.callsThroughOther(), before + 2);
    EXPECT_GL_CALLS(context, "glGenBuffers(1, {100001})", "glBindBuffer(GL_ARRAY_BUFFER, 100001)",
                    "glFlush()");
    FakeContext::releaseCurrent();
    EXPECT_EQ(makeBuffer(), 0u);
    EXPECT_EQ(takeCallsWithoutContext(), 1u);
}

} // namespace
} // namespace vellis::test

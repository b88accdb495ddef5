// needs: a program of its own

/// The Toolbox before its first use, at it, and after the library has been shut down.
///
/// engine::dispose ends the Toolbox for the rest of the process, so that these tests are a program
/// of their own. They look at one story of first use and shut-down, told once in the process by
/// whichever test comes first; what needs another story has a process for itself.

#include <vellis/drawing/toolbox.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading/program_manager.hpp>

#include "support/ending_objects.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::test::FakeGl;

using BuiltIn = ProgramManager::BuiltIn;
using Lines = std::vector<std::string>;

const glm::vec4 orange(1.f, 0.5f, 0.25f, 0.75f);
const glm::mat4 identity(1.f);

/// One call of every function of the families that exist for 2D and 3D points.
template <class V>
void callFamilies(const std::shared_ptr<VertexAttributeBuffer<V>>& buffer) {
    const V points[4] = {};
    const std::initializer_list<V> list = {points[0], points[1]};
    const glm::mat4& mvp = identity;
    Toolbox::drawLines(orange, 0, 2, buffer, mvp);
    Toolbox::drawLines(orange, 0, 2, points, mvp);
    Toolbox::drawLines(orange, 2, points, mvp);
    Toolbox::drawLines(orange, list, mvp);
    Toolbox::drawLineStrip(orange, 0, 2, buffer, mvp);
    Toolbox::drawLineStrip(orange, 0, 2, points, mvp);
    Toolbox::drawLineStrip(orange, 2, points, mvp);
    Toolbox::drawLineStrip(orange, list, mvp);
    Toolbox::drawLineLoop(orange, 0, 2, buffer, mvp);
    Toolbox::drawLineLoop(orange, 0, 2, points, mvp);
    Toolbox::drawLineLoop(orange, 2, points, mvp);
    Toolbox::drawLineLoop(orange, list, mvp);
    Toolbox::drawTriangleFan(orange, 0, 2, buffer, mvp);
    Toolbox::drawTriangleFan(orange, 0, 2, points, mvp);
    Toolbox::drawTriangleFan(orange, 2, points, mvp);
    Toolbox::drawTriangleFan(orange, list, mvp);
    Toolbox::drawTriangleStrip(orange, 0, 2, buffer, mvp);
    Toolbox::drawTriangleStrip(orange, 0, 2, points, mvp);
    Toolbox::drawTriangleStrip(orange, 2, points, mvp);
    Toolbox::drawTriangleStrip(orange, list, mvp);
    Toolbox::drawPoints(orange, 9.f, 0, 2, points, mvp);
    Toolbox::drawPoints(orange, 9.f, 2, points, mvp);
    Toolbox::drawPoints(orange, 9.f, list, mvp);
    Toolbox::drawBullseyes(orange, orange, 9.f, 2, points, mvp);
    Toolbox::drawBullseyes(orange, orange, 9.f, list, mvp);
    Toolbox::drawDashLineStrip(orange, 2.f, 1.f, 2, points, mvp);
    Toolbox::drawDashLineStrip(orange, 2.f, 1.f, list, mvp);
}

/// One call of every function of the Toolbox that draws.
void callEverything(const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer2D,
                    const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer3D) {
    callFamilies(buffer2D);
    callFamilies(buffer3D);
    const glm::vec3 corners[4] = {};
    Toolbox::drawQuad(orange, corners, identity);
    Toolbox::drawQuad(orange, {corners[0], corners[1]}, identity);
    Toolbox::drawQuad(orange, orange, corners, identity);
    Toolbox::drawQuad(orange, orange, {corners[0], corners[1]}, identity);
    Toolbox::drawRect(orange, {0.f, 0.f}, {1.f, 1.f}, identity);
}

template <class V>
std::shared_ptr<VertexAttributeBuffer<V>> makeBuffer(unsigned int count) {
    return VertexAttributeBuffer<V>::make(count, BufferUsage::Static, BufferAccess::Draw);
}

/// What GL was asked for in the acts of a story.
struct Story {
    Lines buffer;                ///< the first getVertexBuffer
    Lines bufferAgain;           ///< the second
    Lines flat;                  ///< the first drawLines
    Lines flatAgain;             ///< the second
    Lines broken;                ///< a drawDashLineStrip with a program that did not link
    bool brokenHasError = false; ///< whether that program tells so
    Lines dispose;               ///< engine::dispose
    Lines left;                  ///< the GL objects that remain
    bool isAnotherTaken = false; ///< whether a buffer registered later counts as the shared one
};

/// Whether the Toolbox, after its end, takes a buffer that is registered then for its own. The
/// memory of the shared buffer is free for these, and with it its address, which was its key.
bool isAnotherBufferTaken() {
    for (int i = 0; i < 64; ++i)
        BufferObjectManager::instance().add(makeBuffer<unsigned char>(1024));
    const bool isTaken = Toolbox::getVertexBuffer() != nullptr;
    BufferObjectManager::dispose();
    return isTaken;
}

Story tell() {
    Story story;
    FakeGl gl;
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4, 1, 10}, {"color", GL_FLOAT_VEC4, 1, 11}});
    gl.setActiveAttributes({{"position", GL_FLOAT_VEC2, 1, 5}});
    Toolbox::getVertexBuffer();
    story.buffer = gl.takeCalls();
    Toolbox::getVertexBuffer();
    story.bufferAgain = gl.takeCalls();
    Toolbox::drawLines(orange, {{0.f, 0.f}, {1.f, 1.f}}, identity);
    story.flat = gl.takeCalls();
    Toolbox::drawLines(orange, {{0.f, 0.f}, {1.f, 1.f}}, identity);
    story.flatAgain = gl.takeCalls();
    gl.failToLink();
    Toolbox::drawDashLineStrip(orange, 2.f, 1.f, {{0.f, 0.f}, {1.f, 1.f}}, identity);
    story.broken = gl.takeCalls();
    story.brokenHasError = ProgramManager::instance().get(BuiltIn::DashLines2D)->hasLinkError();
    gl.forget();
    engine::dispose();
    story.dispose = gl.takeCalls();
    story.left = gl.liveNames();
    gl.ignoreTheRest();
    story.isAnotherTaken = isAnotherBufferTaken();
    return story;
}

/// The story of this process. It is over when this returns.
const Story& story() {
    static const Story told = tell();
    return told;
}

/// How many lines are calls of an entry point.
std::ptrdiff_t countOf(const Lines& lines, const std::string& entryPoint) {
    return std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.rfind(entryPoint + "(", 0) == 0;
    });
}

/// The lines from the first upload on.
Lines fromTheUploadOn(const Lines& lines) {
    const auto upload = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.rfind("glBufferSubData", 0) == 0;
    });
    return {upload, lines.end()};
}

TEST(ToolboxFirstUseTrace, SharedBufferIsMadeOnceWith1024StaticBytes) {
    EXPECT_EQ(story().buffer, (Lines{"glGenBuffers(1, {1})", "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                                     "glBufferData(GL_ARRAY_BUFFER, 1024, null, GL_STATIC_DRAW)",
                                     "glBindBuffer(GL_ARRAY_BUFFER, 0)"}));
    EXPECT_EQ(story().bufferAgain, Lines());
}

TEST(ToolboxFirstUseTrace, ProgramIsMadeOnceOnItsFirstDraw) {
    EXPECT_EQ(countOf(story().flat, "glCreateProgram"), 1);
    EXPECT_EQ(countOf(story().flat, "glGenBuffers"), 0);
    EXPECT_EQ(countOf(story().flatAgain, "glCreateProgram"), 0);
    EXPECT_EQ(countOf(story().flatAgain, "glDrawArrays"), 1);
}

TEST(ToolboxFirstUseTrace, ProgramThatDidNotLinkIsUsedLikeAnother) {
    EXPECT_TRUE(story().brokenHasError);
    // Neither has a location: GL refuses the attribute, and ignores the uniforms.
    EXPECT_EQ(fromTheUploadOn(story().broken),
              (Lines{"glBufferSubData(GL_ARRAY_BUFFER, 0, 24, data)",
                     "glBindBuffer(GL_ARRAY_BUFFER, 0)",
                     "glUseProgram(9)",
                     "glGenVertexArrays(1, {10})",
                     "glBindVertexArray(10)",
                     "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                     "glVertexAttribPointer(4294967295, 3, GL_FLOAT, GL_FALSE, 12, 0)",
                     "glEnableVertexAttribArray(4294967295)",
                     "glBindBuffer(GL_ARRAY_BUFFER, 0)",
                     "glBindVertexArray(0)",
                     "glUseProgram(0)",
                     "glUseProgram(9)",
                     "glBindVertexArray(10)",
                     "glUniform4fv(-1, 1, {1, 0.5, 0.25, 0.75})",
                     "glUniform2fv(-1, 1, {2, 1})",
                     "glUniformMatrix4fv(-1, 1, GL_FALSE, "
                     "{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})",
                     "glDrawArrays(GL_LINE_STRIP, 0, 2)",
                     "glBindVertexArray(0)",
                     "glUseProgram(0)",
                     "glDeleteVertexArrays(1, {10})"}));
}

TEST(ToolboxDisposeTrace, DisposeReleasesTheProgramsBeforeTheSharedBuffer) {
    EXPECT_EQ(story().left, Lines());
    EXPECT_EQ(countOf(story().dispose, "glDeleteProgram"), 2);
    ASSERT_FALSE(story().dispose.empty());
    EXPECT_EQ(story().dispose.back(), "glDeleteBuffers(1, {1})");
}

/// After the story, with a fake GL of the test's own.
class ToolboxDisposedTrace : public testing::Test {
protected:
    ToolboxDisposedTrace() { story(); }
    ~ToolboxDisposedTrace() override { gl.ignoreTheRest(); }

    FakeGl gl;
};

TEST_F(ToolboxDisposedTrace, GetVertexBufferIsEmptyAndMakesNoBuffer) {
    EXPECT_EQ(Toolbox::getVertexBuffer(), nullptr);
    EXPECT_EQ(Toolbox::getVertexBuffer(), nullptr);
    EXPECT_GL_CALLS(gl);
}

TEST_F(ToolboxDisposedTrace, EveryCallDoesNothing) {
    const auto buffer2D = makeBuffer<glm::vec2>(2);
    const auto buffer3D = makeBuffer<glm::vec3>(2);
    gl.forget();
    callEverything(buffer2D, buffer3D);
    EXPECT_GL_CALLS(gl);
}

TEST_F(ToolboxDisposedTrace, BufferRegisteredLaterIsNotTakenForTheSharedOne) {
    EXPECT_FALSE(story().isAnotherTaken);
}

/// Ends the process: well where \p isTrue.
[[noreturn]] void exitIf(bool isTrue) {
    std::_Exit(isTrue ? EXIT_SUCCESS : EXIT_FAILURE);
}

[[noreturn]] void disposeThenCallEverything() {
    FakeGl gl;
    const auto buffer2D = makeBuffer<glm::vec2>(2);
    const auto buffer3D = makeBuffer<glm::vec3>(2);
    gl.forget();
    engine::dispose();
    callEverything(buffer2D, buffer3D);
    exitIf(gl.takeCalls().empty());
}

/// The programs are there, and the registry has let go of the shared buffer.
[[noreturn]] void loseTheBufferThenCallEverything() {
    FakeGl gl;
    callEverything(nullptr, nullptr);
    const bool hasDrawn = gl.countOf("glDrawArrays") > 0;
    BufferObjectManager::dispose();
    gl.forget();
    callEverything(nullptr, nullptr);
    exitIf(hasDrawn && gl.takeCalls().empty());
}

[[noreturn]] void disposeThenAskForTheBuffer() {
    FakeGl gl;
    engine::dispose();
    const bool isThere =
        Toolbox::getVertexBuffer() != nullptr || Toolbox::getVertexBuffer() != nullptr;
    exitIf(!isThere && gl.takeCalls().empty());
}

/// A buffer that ends with the registry asks for the shared one.
[[noreturn]] void askForTheBufferDuringDispose() {
    FakeGl gl;
    bool isAsked = false;
    bool isThere = false;
    BufferObjectManager::instance().add(test::Buffers::make([&] {
        isAsked = true;
        isThere = Toolbox::getVertexBuffer() != nullptr;
    }));
    engine::dispose();
    exitIf(isAsked && !isThere && gl.liveNames().empty());
}

[[noreturn]] void emptyTheRegistriesThenAskForTheBuffer() {
    FakeGl gl;
    BufferObjectManager::dispose();
    ProgramManager::dispose();
    exitIf(Toolbox::getVertexBuffer() != nullptr && gl.countOf("glGenBuffers") == 1);
}

/// A buffer that somebody keeps is the shared one again when it is registered again.
[[noreturn]] void disposeThenRegisterTheBufferAgain() {
    FakeGl gl;
    const auto buffer = Toolbox::getVertexBuffer();
    engine::dispose();
    const bool isLost = Toolbox::getVertexBuffer() == nullptr;
    BufferObjectManager::instance().add(buffer);
    exitIf(isLost && Toolbox::getVertexBuffer() == buffer);
}

/// Processes that start anew, so that they have no story.
class ToolboxOfItsOwnDeathTest : public testing::Test {
protected:
    ToolboxOfItsOwnDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(ToolboxOfItsOwnDeathTest, CallsAfterDisposeDoNothing) {
    EXPECT_EXIT(disposeThenCallEverything(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ToolboxOfItsOwnDeathTest, CallsWithoutTheSharedBufferDoNothing) {
    EXPECT_EXIT(loseTheBufferThenCallEverything(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ToolboxOfItsOwnDeathTest, SharedBufferIsNotMadeAfterDispose) {
    EXPECT_EXIT(disposeThenAskForTheBuffer(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ToolboxOfItsOwnDeathTest, SharedBufferIsNotMadeDuringDispose) {
    EXPECT_EXIT(askForTheBufferDuringDispose(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ToolboxOfItsOwnDeathTest, SharedBufferIsMadeAfterTheRegistriesWereEmptied) {
    EXPECT_EXIT(emptyTheRegistriesThenAskForTheBuffer(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ToolboxOfItsOwnDeathTest, SharedBufferIsFoundWhereItIsRegisteredAgain) {
    EXPECT_EXIT(disposeThenRegisterTheBufferAgain(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace

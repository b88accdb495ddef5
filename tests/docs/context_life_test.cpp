/// Tries what the page on the life of a context advises, with the page's own functions.

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/context.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/drawing.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

/// The page's own text.
/// @{
bool paintWindow(vellis::Context& context);
void closeWindow(vellis::Context& context);
void forgetWindow(vellis::Context& context);
/// @}

namespace {

using namespace vellis;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;
using vellis::test::FakeContext;
using vellis::test::FakeGl;
using Position = VertexAttribute<float>;
using Triangles = drawable::Triangles<Position>;

/// An object of each kind that has a GL name.
struct Objects {
    std::shared_ptr<Program> program = Program::make("", "");
    std::shared_ptr<VertexAttributeBuffer<float>> vertices =
        VertexAttributeBuffer<float>::make(3, BufferUsage::Static, BufferAccess::Draw);
    std::shared_ptr<Triangles> triangles = Triangles::make(program, Position("position", vertices));
    std::shared_ptr<Texture2D<float>> texture = Texture2D<float>::make(2, 2);
    std::shared_ptr<Renderbuffer<depth16>> renderbuffer = Renderbuffer<depth16>::make(2, 2);
    std::shared_ptr<Framebuffer> framebuffer = Framebuffer::make();
};

/// How many names that are: two are of the program's shaders.
constexpr std::size_t numNames = 8;

/// A window with a GL context and a Context of its own.
struct Window {
    FakeContext native;
    std::shared_ptr<Context> context;

    Window() { open(); }

    void open() {
        native.makeCurrent();
        context = Context::make(FakeGl::lookUp);
    }

    /// Makes the GL context current and draws. Nothing is left of the calls of before.
    void paint() {
        native.makeCurrent();
        native.forget();
        EXPECT_TRUE(paintWindow(*context));
    }
};

TEST(ContextLife, ObjectsAreDestroyedWithOneGlCallEach) {
    FakeGl gl;
    auto objects = std::make_unique<Objects>();
    gl.forget();
    objects.reset();
    EXPECT_EQ(gl.takeCalls().size(), numNames);
    EXPECT_TRUE(gl.liveNames().empty());
}

TEST(ContextLife, ObjectsOfAForgottenContextEndWithoutAGlCall) {
    const FakeGl gl;
    Window lost;
    auto objects = std::make_unique<Objects>();
    EXPECT_THAT(lost.native.liveNames(), SizeIs(numNames));
    lost.native.forget();
    forgetWindow(*lost.context);
    objects.reset();
    EXPECT_GL_CALLS(lost.native);
}

TEST(ContextLife, ObjectsOfAForgottenContextAreInertInTheNext) {
    const FakeGl gl;
    Window lost;
    const Objects objects;
    lost.native.forget();
    forgetWindow(*lost.context);
    Window next;
    next.native.forget();
    objects.framebuffer->bind();
    EXPECT_STREQ(diagnostics::check_context(), "framebuffer");
    EXPECT_EQ(objects.texture->id(), 0u);
    EXPECT_FALSE(objects.vertices->exists());
    objects.program->draw(*objects.triangles);
    EXPECT_THAT(next.native.takeCalls(), Not(Contains(StartsWith("glDraw"))));
    EXPECT_THAT(next.native.violations(), IsEmpty());
    EXPECT_GL_CALLS(lost.native);
}

TEST(ContextLife, TheToolboxIsThereAgainInTheContextAfterALostOne) {
    const FakeGl gl;
    Window window;
    window.paint();
    EXPECT_THAT(window.native.takeCalls(), Contains(StartsWith("glDrawArrays")));
    forgetWindow(*window.context);
    EXPECT_GL_CALLS(window.native);
    window.open();
    window.paint();
    EXPECT_THAT(window.native.takeCalls(), Contains(StartsWith("glDrawArrays")));
    window.native.forget();
}

TEST(ContextLife, WindowsAreDrawnInTurnsEachWithItsOwn) {
    const FakeGl gl;
    Window first;
    Window second;
    for (Window* const window : {&first, &second, &first}) {
        window->paint();
        EXPECT_THAT(window->native.takeCalls(), Contains(StartsWith("glDrawArrays")));
    }
    EXPECT_THAT(first.native.violations(), IsEmpty());
    EXPECT_THAT(second.native.violations(), IsEmpty());
    first.native.forget();
    second.native.forget();
}

TEST(ContextLife, AnObjectThatEndsElsewhereIsDeletedWhenItsWindowIsPaintedAgain) {
    const FakeGl gl;
    Window first;
    auto objects = std::make_unique<Objects>();
    Window second;
    second.native.forget();
    objects.reset();
    EXPECT_GL_CALLS(second.native);
    EXPECT_THAT(first.native.liveNames(), SizeIs(numNames));
    first.paint();
    const auto calls = first.native.takeCalls();
    for (const char* const call :
         {"glDeleteVertexArrays(1", "glDeleteFramebuffers(1", "glDeleteBuffers(1",
          "glDeleteTextures(1", "glDeleteRenderbuffers(1", "glDeleteProgram(", "glDeleteShader("})
        EXPECT_THAT(calls, Contains(StartsWith(call)));
    closeWindow(*first.context);
    EXPECT_THAT(first.native.liveNames(), IsEmpty());
    first.native.forget();
}

TEST(ContextLife, AWindowThatClosesAndOpensLeavesNothingBehind) {
    const FakeGl gl;
    Window window;
    for (int round = 0; round < 10; ++round) {
        window.paint();
        EXPECT_THAT(window.native.takeCalls(), Contains(StartsWith("glDrawArrays")));
        closeWindow(*window.context);
        EXPECT_THAT(window.native.liveNames(), IsEmpty());
        EXPECT_FALSE(paintWindow(*window.context));
        window.native.forget();
        window.open();
    }
    window.native.forget();
}

} // namespace

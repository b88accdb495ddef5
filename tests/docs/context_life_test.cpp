/// Tries what the page on the life of a context advises for objects that outlive it.

#include <memory>

#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

#include "support/fake_gl.hpp"

/// The page's own text.
void forgetContext();

namespace {

using namespace vellis;
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

TEST(ContextLife, ObjectsOfALostContextAreDestroyedWithoutAGlCall) {
    FakeGl gl;
    auto objects = std::make_unique<Objects>();
    EXPECT_EQ(gl.liveNames().size(), 8u); // two of them are the program's shaders
    gl.forget();
    forgetContext();
    objects.reset();
    EXPECT_GL_CALLS(gl);
}

TEST(ContextLife, ObjectsAreDestroyedWithOneGlCallEach) {
    FakeGl gl;
    auto objects = std::make_unique<Objects>();
    gl.forget();
    objects.reset();
    EXPECT_EQ(gl.takeCalls().size(), 8u);
    EXPECT_TRUE(gl.liveNames().empty());
}

} // namespace

/// How many heap allocations the operations make that a frame repeats.

#include <memory>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "state/state_guard.hpp"
#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"

namespace {

using vellis::test::FakeGl;

using namespace vellis;

class Shape : public Drawable {
public:
    explicit Shape(const Program& program) : Drawable(PrimitiveType::Triangles) {
        program.beginAttributesBinding();
        attributesBinding_ = program.finishAttributesBinding();
        numVertices_ = 3;
    }
};

class Allocations : public testing::Test {
protected:
    Allocations() { gl.setRecording(false); }

    void SetUp() override { SKIP_WITHOUT_LIBRARY_ALLOCATIONS(); }

    FakeGl gl;
};

/// The allocations that \p action makes.
template <class Action>
std::size_t allocationsOf(Action action) {
    const std::size_t before = vellis::test::allocationCount();
    action();
    return vellis::test::allocationCount() - before;
}

TEST_F(Allocations, AreSeen) {
    EXPECT_EQ(allocationsOf([] { VertexShader::make("v"); }), 2u); // the shader and its count
}

TEST_F(Allocations, BufferMakeMakesOne) {
    EXPECT_EQ(allocationsOf([] {
                  VertexAttributeBuffer<glm::vec2>::make({{0.f, 0.f}, {1.f, 0.f}},
                                                         BufferUsage::Static, BufferAccess::Draw);
              }),
              1u);
    EXPECT_EQ(allocationsOf([] {
                  IndexBuffer<unsigned int>::make(4, BufferUsage::Static, BufferAccess::Draw);
              }),
              1u);
    EXPECT_EQ(allocationsOf([] {
                  PixelBuffer::make(PixelBuffer::DataFlow::Upload, 4, BufferUsage::Stream,
                                    BufferAccess::Draw);
              }),
              1u);
}

TEST_F(Allocations, BindDrawAndUnbindMakeNone) {
    const auto program = Program::make("v", "f");
    const Shape shape(*program);
    const auto indices =
        IndexBuffer<unsigned short>::make({0, 1, 2}, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(allocationsOf([&] {
                  program->draw(shape);
                  program->draw(shape, *indices);
                  program->bind(shape.getAttributesBinding());
                  program->unbind();
                  program->bind();
                  program->unbind();
                  indices->bind();
                  indices->unbind();
              }),
              0u);
}

TEST_F(Allocations, StateGetSetAndGuardMakeNone) {
    EXPECT_EQ(allocationsOf([] {
                  state::State<int, 4, GL_VIEWPORT> viewport{};
                  state::get(viewport);
                  state::set(viewport);
                  const state::StateGuard<state::State<bool, 1, GL_BLEND>,
                                          state::State<int, 4, GL_BLEND_SRC_RGB>,
                                          state::State<int, 2, GL_BLEND_EQUATION_RGB>>
                      guard;
              }),
              0u);
}

} // namespace

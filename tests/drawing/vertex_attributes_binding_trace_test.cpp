// needs: private access

#include <vellis/drawing/vertex_attributes_binding.hpp>

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>
#include <vellis/context.hpp>
#include <vellis/gl.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

namespace {

using vellis::Context;
using vellis::VertexAttributesBinding;
using vellis::test::FakeContext;
using vellis::test::FakeGl;

static_assert(!std::is_polymorphic_v<VertexAttributesBinding>);
static_assert(std::is_copy_constructible_v<VertexAttributesBinding> &&
              std::is_copy_assignable_v<VertexAttributesBinding>);

TEST(VertexAttributesBindingTrace, IsMadeBoundUnboundAndDeleted) {
    FakeGl gl;
    {
        const auto binding = VertexAttributesBinding::make();
        EXPECT_GL_CALLS(gl, "glGenVertexArrays(1, {1})");
        EXPECT_EQ(binding->id(), 1u);
        EXPECT_FALSE(binding->isCurrent());
        binding->bind();
        EXPECT_TRUE(binding->isCurrent());
        EXPECT_GL_CALLS(gl, "glBindVertexArray(1)");
        VertexAttributesBinding::unbind();
        EXPECT_FALSE(binding->isCurrent());
        EXPECT_GL_CALLS(gl, "glBindVertexArray(0)");
    }
    EXPECT_GL_CALLS(gl, "glDeleteVertexArrays(1, {1})");
}

TEST(VertexAttributesBindingTrace, TheLastToBeBoundIsCurrent) {
    FakeGl gl;
    const auto first = VertexAttributesBinding::make();
    const auto second = VertexAttributesBinding::make();
    first->bind();
    second->bind();
    EXPECT_FALSE(first->isCurrent());
    EXPECT_TRUE(second->isCurrent());
    VertexAttributesBinding::unbind();
    gl.ignoreTheRest();
}

TEST(VertexAttributesBindingTrace, DestroyingTheLastHolderDeletesTheObjectThoughItIsCurrent) {
    FakeGl gl;
    auto binding = VertexAttributesBinding::make();
    auto holder = binding;
    binding->bind();
    gl.forget();
    binding.reset();
    EXPECT_GL_CALLS(gl);
    const VertexAttributesBinding* const address = holder.get();
    holder.reset();
    EXPECT_GL_CALLS(gl, "glDeleteVertexArrays(1, {1})");
    EXPECT_EQ(VertexAttributesBinding::current(), address); // only unbind clears it
    VertexAttributesBinding::unbind();
    EXPECT_EQ(VertexAttributesBinding::current(), nullptr);
    gl.forget();
}

TEST(VertexAttributesBindingTrace, CopySharesTheNameAndDeletesItAgain) {
    FakeGl gl;
    {
        const auto binding = VertexAttributesBinding::make();
        gl.forget();
        {
            const VertexAttributesBinding copy = *binding;
            EXPECT_GL_CALLS(gl);
            EXPECT_EQ(copy.id(), binding->id());
            copy.bind();
            EXPECT_TRUE(copy.isCurrent());
            EXPECT_FALSE(binding->isCurrent());
            VertexAttributesBinding::unbind();
            EXPECT_GL_CALLS(gl, "glBindVertexArray(1)", "glBindVertexArray(0)");
        }
        EXPECT_GL_CALLS(gl, "glDeleteVertexArrays(1, {1})");
    }
    EXPECT_GL_CALLS(gl, "glDeleteVertexArrays(1, {1})");
}

TEST(VertexAttributesBindingTrace, AssignmentCopiesTheNameWithoutAGlCall) {
    FakeGl gl;
    {
        const auto first = VertexAttributesBinding::make();
        const auto second = VertexAttributesBinding::make();
        gl.forget();
        *second = *first;
        EXPECT_GL_CALLS(gl);
        EXPECT_EQ(second->id(), 1u);
    }
    EXPECT_GL_CALLS(gl, "glDeleteVertexArrays(1, {1})", "glDeleteVertexArrays(1, {1})");
}

TEST(VertexAttributesBindingTrace, NameThatGlRefusedToMakeIsHandedBackAllTheSame) {
    FakeGl gl;
    gl.answer(glad_glGenVertexArrays, [](GLsizei, GLuint*) {});
    VertexAttributesBinding::make().reset();
    EXPECT_EQ(gl.takeCalls().back(), "glDeleteVertexArrays(1, {0})");
}

TEST(VertexAttributesBindingTrace, WithoutVertexArrayObjectsNothingHappens) {
    FakeGl gl;
    gl.remove(glad_glGenVertexArrays);
    gl.remove(glad_glBindVertexArray);
    gl.remove(glad_glDeleteVertexArrays);
    {
        const auto binding = VertexAttributesBinding::make();
        EXPECT_EQ(binding->id(), 0u);
        binding->bind();
        EXPECT_FALSE(binding->isCurrent());
        VertexAttributesBinding::unbind();
    }
    EXPECT_GL_CALLS(gl);
}

TEST(VertexAttributesBindingTrace, EachContextHasItsCurrentOne) {
    FakeGl gl;
    FakeContext fakes[2];
    {
        std::shared_ptr<Context> contexts[2];
        std::shared_ptr<VertexAttributesBinding> bindings[2];
        const auto use = [&](int i) { return fakes[i].makeCurrent() && contexts[i]->use(); };
        for (int i = 0; i < 2; ++i) {
            ASSERT_TRUE(fakes[i].makeCurrent());
            contexts[i] = Context::make(FakeGl::lookUp);
            ASSERT_TRUE(contexts[i] != nullptr && use(i));
            EXPECT_EQ(VertexAttributesBinding::current(), nullptr);
            bindings[i] = VertexAttributesBinding::make();
            bindings[i]->bind();
        }
        for (const int i : {0, 1, 0}) {
            ASSERT_TRUE(use(i));
            EXPECT_TRUE(bindings[i]->isCurrent()) << i;
            EXPECT_FALSE(bindings[1 - i]->isCurrent()) << i;
        }
    }
    gl.makeCurrent();
    Context::useProcess();
    for (FakeContext& fake : fakes)
        fake.ignoreTheRest();
    gl.ignoreTheRest();
}

} // namespace

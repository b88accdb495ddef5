/// What is inert in a Context, and what is not: in one of its group, after its end, while mapped.

#include <vellis/context.hpp>

#include <utility>

#include <gtest/gtest.h>
#include <vellis/internal.hpp>

#include "support/pixels.hpp"
#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

class ContextElsewhereRender : public SurfaceTest {};

TEST_F(ContextElsewhereRender, ADrawableOfTheOtherOfAGroupIsNotDrawn) {
    const auto a = open();
    const auto b = open(a.get());
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    ASSERT_TRUE(b->use());
    const OwnParts own(scene.shared);
    clear();
    drawLeft(scene.shared, own);
    drawRight(green);
    ASSERT_TRUE(isQuiet());
    scene.shared.program->draw(*scene.own.square, Uniform("image", *scene.shared.texture));
    EXPECT_STREQ(internal::check_context(), "vertex array");
    scene.shared.program->draw(*scene.own.square, *scene.shared.indices);
    EXPECT_STREQ(internal::check_context(), "vertex array");
    EXPECT_TRUE(shows(red, green));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextElsewhereRender, AFramebufferOfTheOtherOfAGroupIsNotBound) {
    const auto a = open();
    const auto b = open(a.get());
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    ASSERT_TRUE(b->use());
    EXPECT_EQ(scene.own.framebuffer->id(), 0u);
    EXPECT_EQ(internal::check_context(), nullptr) << "asking for the name is no use of it";
    scene.own.framebuffer->bind();
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    EXPECT_STREQ(internal::check_context(), "framebuffer");
    scene.own.framebuffer->unbind();
    EXPECT_EQ(takeError(), "");
}

TEST_F(ContextElsewhereRender, ABoundFramebufferIsUnboundOnlyWhereItWasBound) {
    const auto a = open();
    const auto b = open(a.get());
    if (!goesOn())
        return;
    const auto null = Framebuffer::makeNull();
    ASSERT_TRUE(a->use());
    const Framebuffer ofA;
    ofA.bind();
    null->bind();
    ASSERT_TRUE(b->use());
    const Framebuffer ofB;
    ofB.bind();
    const auto bound = boundFramebuffers();
    null->unbind();
    ofA.unbind();
    EXPECT_EQ(boundFramebuffers(), bound);
    ofB.unbind();
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    ASSERT_TRUE(a->use());
    null->unbind();
    EXPECT_EQ(boundFramebuffers().first, static_cast<int>(ofA.id()));
    ofA.unbind();
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    internal::check_context();
}

TEST_F(ContextElsewhereRender, AMappedBufferStaysMappedElsewhere) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const auto indices =
        IndexBuffer<unsigned char>::make({1, 2, 3, 4}, BufferUsage::Static, BufferAccess::Draw);
    unsigned char* const mapped = indices->map(MapAccess::ReadWrite);
    ASSERT_NE(mapped, nullptr);
    ASSERT_TRUE(b->use());
    const Scene scene(green);
    indices->flush(0, 1);
    EXPECT_STREQ(internal::check_context(), "buffer");
    indices->flushAndUnmap();
    EXPECT_STREQ(internal::check_context(), "buffer");
    EXPECT_TRUE(draws(scene, green, blue));
    ASSERT_TRUE(a->use());
    mapped[0] = 9;
    indices->flushAndUnmap(0, 1);
    EXPECT_EQ(indices->map(MapAccess::ReadOnly)[0], 9);
    indices->unmap(false);
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextElsewhereRender, TheDefaultFramebufferExistsInAll) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const auto null = Framebuffer::makeNull();
    ASSERT_TRUE(b->use());
    const Framebuffer framebuffer;
    framebuffer.bind();
    null->bind();
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    EXPECT_TRUE(null->isBound());
    null->unbind();
    EXPECT_EQ(boundFramebuffers().first, static_cast<int>(framebuffer.id()));
    framebuffer.unbind();
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextElsewhereRender, EveryKindIsInertAfterDispose) {
    const auto surface = open();
    if (!goesOn())
        return;
    Scene scene(red);
    ASSERT_TRUE(draws(scene, red, blue));
    surface->context->dispose();
    scene.shared.program->draw(*scene.own.square);
    EXPECT_STREQ(internal::check_context(), "vertex array");
    scene.own.framebuffer->bind();
    EXPECT_STREQ(internal::check_context(), "framebuffer");
    scene.shared.corners->bind();
    EXPECT_STREQ(internal::check_context(), "buffer");
    scene.shared.texture->bind();
    EXPECT_STREQ(internal::check_context(), "texture");
    scene.shared.depth->bind();
    EXPECT_STREQ(internal::check_context(), "renderbuffer");
    EXPECT_TRUE(shows(red, blue));
    EXPECT_EQ(takeError(), "");
}

} // namespace

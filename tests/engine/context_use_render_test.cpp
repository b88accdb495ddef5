/// What use() does with another GL context or none, Scope, and several Contexts for one GL context.

#include <vellis/context.hpp>

#include <memory>
#include <optional>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>
#include <vellis/shading/program_manager.hpp>

#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

class ContextUseRender : public SurfaceTest {};

/// Draws with objects that end then.
void drawOnce(const Color& left, const Color& right) {
    const Scene scene(left);
    EXPECT_TRUE(draws(scene, left, right));
    EXPECT_TRUE(isQuiet());
}

// --- make() ---

TEST_F(ContextUseRender, MakeUsesIt) {
    const auto a = open();
    if (!goesOn())
        return;
    EXPECT_EQ(Context::current(), a->context.get());
    EXPECT_TRUE(a->context->isAlive());
    const auto b = open();
    if (!goesOn())
        return;
    EXPECT_EQ(Context::current(), b->context.get());
    Context::useProcess();
    EXPECT_EQ(Context::current(), nullptr);
}

TEST_F(ContextUseRender, MakeWithoutAGlContextGivesNoneAndChangesNothing) {
    const auto a = open();
    if (!goesOn())
        return;
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    const Scene scene(red);
    ASSERT_TRUE(draws(scene, red, green));
    const auto bindBuffer = glBindBuffer;
    const auto version = GLVersion;
    a->gl->release();
    EXPECT_EQ(Context::make(), nullptr);
    EXPECT_EQ(Context::make(*a->context), nullptr);
    EXPECT_EQ(Context::make([](const char*) -> void* { return nullptr; }), nullptr);
    EXPECT_EQ(Context::current(), a->context.get());
    EXPECT_EQ(glBindBuffer, bindBuffer);
    EXPECT_EQ(GLVersion.major, version.major);
    ASSERT_TRUE(a->gl->makeCurrent());
    EXPECT_TRUE(draws(scene, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, MakeWithOneThatIsGoneMakesAGroupOfItsOwn) {
    const auto a = open();
    if (!goesOn())
        return;
    Scene scene(red);
    a->context->dispose();
    const auto other = Context::make(*a->context, a->gl->ownLookup());
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(scene.shared.texture->id(), 0u);
    const Scene another(green);
    EXPECT_TRUE(draws(another, green, blue));
    EXPECT_TRUE(isQuiet());
    other->dispose();
}

// --- use() ---

TEST_F(ContextUseRender, UseWithTheGlContextOfAnotherIsRefused) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    ASSERT_TRUE(a->use());
    std::optional<Scene> sceneOfA(red);
    ASSERT_TRUE(draws(*sceneOfA, red, red));
    ASSERT_TRUE(b->use());
    const Scene sceneOfB(green);
    ASSERT_TRUE(draws(sceneOfB, green, green));
    sceneOfA.reset();
    const auto before = countObjects();
    EXPECT_FALSE(a->context->use());
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(countObjects(), before);
    EXPECT_EQ(sceneOfB.shared.texture->id(), 0u) << "the process's own is in use";
    ASSERT_TRUE(b->use());
    EXPECT_TRUE(draws(sceneOfB, green, blue));
    ASSERT_TRUE(a->use());
    EXPECT_EQ(countObjects()[1], 0) << "what waited";
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, UseWithNoGlContextIsRefused) {
    const auto a = open();
    if (!goesOn())
        return;
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    std::optional<Scene> scene(red);
    ASSERT_TRUE(draws(*scene, red, red));
    const Names names = scene->names();
    a->leave();
    scene.reset();
    EXPECT_FALSE(a->context->use());
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_TRUE(a->context->isAlive());
    ASSERT_TRUE(a->gl->makeCurrent());
    EXPECT_EQ(glIsBuffer(names[0]), GL_TRUE);
    ASSERT_TRUE(a->context->use());
    EXPECT_EQ(glIsBuffer(names[0]), GL_FALSE);
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, UseOfOneThatIsGoneIsRefused) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    a->context->dispose();
    EXPECT_FALSE(a->context->isAlive());
    EXPECT_FALSE(a->context->use());
    ASSERT_TRUE(b->use());
    b->context->abandon();
    EXPECT_FALSE(b->context->isAlive());
    EXPECT_FALSE(b->context->use());
    EXPECT_EQ(Context::current(), nullptr);
    a->context->abandon();
    b->context->dispose();
    EXPECT_FALSE(b->context->isAlive());
}

TEST_F(ContextUseRender, EngineDisposeEndsTheOneInUse) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(b->use());
    const Scene sceneOfB(green);
    ASSERT_TRUE(draws(sceneOfB, green, blue));
    ASSERT_TRUE(a->use());
    {
        const Scene sceneOfA(red);
        ASSERT_TRUE(draws(sceneOfA, red, blue));
    }
    engine::dispose();
    EXPECT_FALSE(a->context->isAlive());
    EXPECT_TRUE(b->context->isAlive());
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(countObjects(), (std::array<int, test::numKinds>{}));
    ASSERT_TRUE(b->use());
    EXPECT_TRUE(draws(sceneOfB, green, yellow)) << "the Toolbox, too";
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, EngineInitLoadsForTheOneInUse) {
    const auto a = open();
    if (!goesOn())
        return;
    if (a->gl->ownLookup() != nullptr)
        GTEST_SKIP() << "the platform has a lookup of its own";
    const Scene scene(red);
    ASSERT_TRUE(engine::init());
    EXPECT_EQ(Context::current(), a->context.get());
    EXPECT_TRUE(draws(scene, red, green));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, DisposeWhileAProgramIsBound) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(b->use());
    const Scene sceneOfB(green);
    ASSERT_TRUE(a->use());
    {
        const Scene scene(red);
        scene.shared.program->bind(scene.own.square->getAttributesBinding());
        a->context->dispose();
        ASSERT_TRUE(b->use());
        EXPECT_TRUE(draws(sceneOfB, green, blue));
        scene.shared.program->unbind();
    }
    EXPECT_TRUE(draws(sceneOfB, green, yellow));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, AProgramBoundInOneAndUnboundInTheOther) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(b->use());
    const Scene sceneOfB(green);
    ASSERT_TRUE(a->use());
    std::optional<Scene> sceneOfA(red);
    sceneOfA->shared.program->bind(sceneOfA->own.square->getAttributesBinding());
    ASSERT_TRUE(b->use());
    sceneOfA->shared.program->unbind();
    EXPECT_TRUE(draws(sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(draws(*sceneOfA, red, blue));
    sceneOfA.reset();
    EXPECT_TRUE(isQuiet());
}

// --- Scope ---

TEST_F(ContextUseRender, AScopeGoesBackToTheOneBefore) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene sceneOfA(red);
    for (int frame = 0; frame < 10; ++frame) {
        ASSERT_TRUE(b->gl->makeCurrent());
        {
            const Context::Scope scope(*b->context);
            ASSERT_TRUE(scope);
            EXPECT_EQ(Context::current(), b->context.get());
            drawOnce(green, blue);
            ASSERT_TRUE(a->gl->makeCurrent());
        }
        EXPECT_EQ(Context::current(), a->context.get());
        EXPECT_TRUE(draws(sceneOfA, red, yellow));
        EXPECT_TRUE(isQuiet());
    }
}

TEST_F(ContextUseRender, ScopesNest) {
    const auto a = open();
    const auto other = a != nullptr ? a->makeAnother() : nullptr;
    if (!goesOn())
        return;
    Context::useProcess();
    {
        const Context::Scope outer(*a->context);
        {
            const Context::Scope inner(*other);
            EXPECT_TRUE(inner);
            EXPECT_EQ(Context::current(), other.get());
            {
                const Context::Scope again(*a->context);
                EXPECT_EQ(Context::current(), a->context.get());
            }
            EXPECT_EQ(Context::current(), other.get());
        }
        EXPECT_EQ(Context::current(), a->context.get());
    }
    EXPECT_EQ(Context::current(), nullptr);
    other->abandon();
}

TEST_F(ContextUseRender, AScopeOfOneThatIsGoneIsNone) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    b->context->dispose();
    ASSERT_TRUE(a->use());
    {
        const Context::Scope scope(*b->context);
        EXPECT_FALSE(scope);
        EXPECT_EQ(Context::current(), nullptr);
    }
    EXPECT_EQ(Context::current(), a->context.get());
    const Scene scene(red);
    EXPECT_TRUE(draws(scene, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, DisposeInItsOwnScope) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    ASSERT_TRUE(b->gl->makeCurrent());
    {
        const Context::Scope scope(*b->context);
        ASSERT_TRUE(scope);
        b->context->dispose();
        EXPECT_EQ(Context::current(), nullptr);
        b->context.reset();
        ASSERT_TRUE(a->gl->makeCurrent());
    }
    EXPECT_EQ(Context::current(), a->context.get());
    EXPECT_TRUE(draws(scene, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextUseRender, TheOneBeforeEndsInAScope) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    ASSERT_TRUE(b->gl->makeCurrent());
    {
        const Context::Scope scope(*b->context);
        a->context->abandon();
        EXPECT_EQ(Context::current(), b->context.get());
        a->context.reset();
        const Scene scene(red);
        EXPECT_TRUE(draws(scene, red, blue));
    }
    EXPECT_EQ(Context::current(), nullptr);
    ASSERT_TRUE(b->use());
    EXPECT_TRUE(isQuiet());
}

// --- Several for one GL context ---

/// Two plug-ins in one GL context.
class ContextPluginsRender : public ContextUseRender {
protected:
    void SetUp() override {
        ContextUseRender::SetUp();
        if (!goesOn())
            return;
        surface = open();
        if (!goesOn())
            return;
        second = surface->makeAnother();
        ASSERT_NE(second, nullptr);
    }

    std::unique_ptr<Surface> surface;
    std::shared_ptr<Context> second;
};

TEST_F(ContextPluginsRender, DrawInTurnsWithoutDisturbingEachOther) {
    ASSERT_TRUE(surface->context->use());
    const Scene ofFirst(red);
    ASSERT_TRUE(second->use());
    const Scene ofSecond(green);
    for (int frame = 0; frame < 10; ++frame) {
        ASSERT_TRUE(surface->context->use());
        EXPECT_TRUE(draws(ofFirst, red, blue));
        EXPECT_EQ(ofSecond.shared.texture->id(), 0u) << "it belongs to the other";
        EXPECT_TRUE(isQuiet());
        ASSERT_TRUE(second->use());
        EXPECT_TRUE(draws(ofSecond, green, yellow));
        EXPECT_TRUE(isQuiet());
    }
}

TEST_F(ContextPluginsRender, WhatEndsInTheOthersTurnWaits) {
    ASSERT_TRUE(surface->context->use());
    std::optional<Scene> ofFirst(red);
    const Names names = ofFirst->names();
    ASSERT_TRUE(second->use());
    const Scene ofSecond(green);
    const auto both = countObjects();
    ofFirst.reset();
    EXPECT_EQ(countObjects(), both);
    ASSERT_TRUE(surface->context->use());
    EXPECT_EQ(areLive(names), (std::array<bool, test::numKinds>{}));
    ASSERT_TRUE(second->use());
    EXPECT_TRUE(draws(ofSecond, green, yellow));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextPluginsRender, TheEndOfOneLeavesTheOther) {
    ASSERT_TRUE(second->use());
    const Scene ofSecond(green);
    ASSERT_TRUE(draws(ofSecond, green, yellow));
    const auto before = countObjects();
    ASSERT_TRUE(surface->context->use());
    {
        const Scene ofFirst(red);
        ASSERT_TRUE(draws(ofFirst, red, blue));
        EXPECT_NE(countObjects(), before);
    }
    surface->context->dispose();
    EXPECT_EQ(countObjects(), before);
    ASSERT_TRUE(second->use());
    EXPECT_TRUE(draws(ofSecond, green, yellow));
    EXPECT_TRUE(isQuiet());
}

} // namespace

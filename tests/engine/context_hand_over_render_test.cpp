// needs: the thread sanitizer

/// Contexts that go from thread to thread.

#include <vellis/context.hpp>

#include <array>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "support/barrier.hpp"
#include "support/pixels.hpp"
#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

/// Whether it was put down on the thread before.
class ContextHandOverRender : public SurfaceTest, public testing::WithParamInterface<bool> {
protected:
    /// Leaves the GL context to another thread.
    static void leave(Surface& surface) {
        surface.gl->release();
        if (GetParam())
            Context::useProcess();
    }
};

INSTANTIATE_TEST_SUITE_P(Both, ContextHandOverRender, testing::Bool(),
                         [](const auto& test) { return test.param ? "PutDown" : "TakenOver"; });

TEST_P(ContextHandOverRender, DrawsOnEachThread) {
    const auto surface = open();
    if (!goesOn())
        return;
    const Scene scene(red);
    for (int turn = 0; turn < 4; ++turn) {
        ASSERT_TRUE(surface->use());
        EXPECT_TRUE(draws(scene, red, green));
        EXPECT_TRUE(isQuiet());
        leave(*surface);
        std::thread([&] {
            EXPECT_TRUE(surface->use());
            EXPECT_EQ(Context::current(), surface->context.get());
            EXPECT_TRUE(draws(scene, red, blue));
            EXPECT_TRUE(isQuiet());
            leave(*surface);
        }).join();
    }
    ASSERT_TRUE(surface->use());
    EXPECT_TRUE(shows(red, blue));
}

TEST_P(ContextHandOverRender, IsInUseOnOneAtATime) {
    const auto surface = open();
    if (!goesOn())
        return;
    std::optional<Scene> scene(red);
    ASSERT_TRUE(draws(*scene, red, green));
    const Names names = scene->names();
    leave(*surface);
    Barrier barrier(2);
    std::thread thread([&] {
        EXPECT_TRUE(surface->use());
        barrier.wait();
        barrier.wait(); // the scene has ended elsewhere
        EXPECT_EQ(glIsBuffer(names[0]), GL_TRUE);
        EXPECT_TRUE(surface->use());
        EXPECT_EQ(areLive(names), (std::array<bool, test::numKinds>{}));
        EXPECT_TRUE(isQuiet());
        leave(*surface);
    });
    barrier.wait();
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(scene->shared.texture->id(), 0u);
    EXPECT_EQ(scene->own.framebuffer->id(), 0u);
    scene.reset();
    barrier.wait();
    thread.join();
}

TEST_P(ContextHandOverRender, WhatIsBoundGoesAlong) {
    const auto surface = open();
    if (!goesOn())
        return;
    const Scene scene(red);
    const auto& binding = scene.own.square->getAttributesBinding();
    binding->bind();
    leave(*surface);
    std::thread([&] {
        EXPECT_FALSE(binding->isCurrent());
        EXPECT_TRUE(surface->use());
        EXPECT_NE(stateOf(GL_VERTEX_ARRAY_BINDING), 0);
        EXPECT_TRUE(binding->isCurrent());
        VertexAttributesBinding::unbind();
        leave(*surface);
    }).join();
    ASSERT_TRUE(surface->use());
    EXPECT_FALSE(binding->isCurrent());
    EXPECT_TRUE(isQuiet());
}

TEST_P(ContextHandOverRender, AnotherServesTheFirstThreadMeanwhile) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    b->leave();
    ASSERT_TRUE(a->use());
    const Scene sceneOfA(red);
    leave(*a);
    std::thread thread([&] {
        for (int frame = 0; frame < 20; ++frame) {
            EXPECT_TRUE(a->use());
            EXPECT_TRUE(draws(sceneOfA, red, green));
            EXPECT_TRUE(isQuiet());
        }
        leave(*a);
    });
    for (int frame = 0; frame < 20; ++frame) {
        EXPECT_TRUE(b->use());
        const Scene sceneOfB(blue);
        EXPECT_TRUE(draws(sceneOfB, blue, yellow));
        EXPECT_TRUE(isQuiet());
    }
    thread.join();
    b->leave();
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(draws(sceneOfA, red, blue));
}

} // namespace

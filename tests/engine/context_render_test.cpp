/// Several contexts on a driver: pictures in turns, shared objects, and contexts that come and go.

#include <vellis/context.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include <gtest/gtest.h>
#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/drawing/toolbox.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading/program_manager.hpp>

#include "support/pixels.hpp"
#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

class ContextRender : public SurfaceTest {};

using BuiltIn = ProgramManager::BuiltIn;

/// A built-in program of the Context in use.
const Program* builtIn(BuiltIn which = BuiltIn::UniformColor2D) {
    return ProgramManager::instance().get(which).get();
}

/// Which of several colours a frame has.
Color colorOf(int frame) {
    constexpr Color colors[] = {red, green, blue, yellow};
    return colors[frame % 4];
}

// --- In turns ---

TEST_F(ContextRender, TwoContextsDrawInTurns) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    std::optional<Scene> sceneOfA(red);
    ASSERT_TRUE(b->use());
    std::optional<Scene> sceneOfB(green);
    for (int frame = 0; frame < 100; ++frame) {
        ASSERT_TRUE(a->use());
        ASSERT_TRUE(draws(*sceneOfA, red, colorOf(frame))) << frame;
        ASSERT_TRUE(isQuiet()) << frame;
        ASSERT_TRUE(b->use());
        ASSERT_TRUE(draws(*sceneOfB, green, colorOf(frame + 1))) << frame;
        ASSERT_TRUE(isQuiet()) << frame;
    }
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(shows(red, colorOf(99))) << "what B has drawn since";
}

TEST_F(ContextRender, WhatIsDrawnInHalvesOfAFrameBelongsTogether) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene sceneOfA(red);
    clear();
    drawLeft(sceneOfA.shared, sceneOfA.own);
    ASSERT_TRUE(b->use());
    const Scene sceneOfB(green);
    clear();
    drawLeft(sceneOfB.shared, sceneOfB.own);
    ASSERT_TRUE(a->use());
    drawRight(blue);
    EXPECT_TRUE(shows(red, blue));
    ASSERT_TRUE(b->use());
    drawRight(yellow);
    EXPECT_TRUE(shows(green, yellow));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextRender, EachHasBuiltInProgramsAndRegistriesOfItsOwn) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Program* const ofA = builtIn();
    ASSERT_NE(ofA, nullptr);
    Scene scene(red);
    Program* const key = ProgramManager::instance().add(scene.shared.program);
    BufferObject* const bufferKey = BufferObjectManager::instance().add(scene.shared.corners);
    const auto buffer = Toolbox::getVertexBuffer();
    ASSERT_TRUE(b->use());
    const Program* const ofB = builtIn();
    ASSERT_NE(ofB, nullptr);
    EXPECT_NE(ofA, ofB);
    EXPECT_FALSE(ofB->hasLinkError());
    EXPECT_EQ(ProgramManager::instance().get(key), nullptr);
    EXPECT_NE(Toolbox::getVertexBuffer(), buffer);
    BufferObjectManager::instance().remove(bufferKey); // which it does not have
    ProgramManager::instance().remove(key);
    ASSERT_TRUE(a->use());
    EXPECT_EQ(builtIn(), ofA);
    EXPECT_EQ(Toolbox::getVertexBuffer(), buffer);
    EXPECT_EQ(ProgramManager::instance().get(key), scene.shared.program);
    EXPECT_EQ(scene.shared.corners.use_count(), 2) << "the registry has it, too";
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextRender, EachRemembersStatesOfItsOwn) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    const auto printed = [] {
        testing::internal::CaptureStderr();
        internal::diff_gl_states();
        return testing::internal::GetCapturedStderr();
    };
    ASSERT_TRUE(a->use());
    glDisable(GL_BLEND);
    printed();
    ASSERT_TRUE(b->use());
    glEnable(GL_BLEND);
    EXPECT_EQ(printed(), "") << "its first call only remembers";
    ASSERT_TRUE(a->use());
    EXPECT_EQ(printed(), "");
    glEnable(GL_BLEND);
    EXPECT_EQ(printed(), "Corvane DIFF : BLEND = false -> true\n");
}

TEST_F(ContextRender, KnowsWhichProgramAndWhichBindingIsInUseInEach) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    const auto& binding = scene.own.square->getAttributesBinding();
    scene.shared.program->bind(binding);
    EXPECT_EQ(Program::current().id(), scene.shared.program->id());
    EXPECT_TRUE(binding->isCurrent());
    ASSERT_TRUE(b->use());
    EXPECT_EQ(Program::current().id(), 0u);
    EXPECT_EQ(Program::null().id(), 0u);
    EXPECT_FALSE(binding->isCurrent());
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(binding->isCurrent());
    EXPECT_EQ(Program::current().id(), scene.shared.program->id());
    scene.shared.program->unbind();
    EXPECT_EQ(stateOf(GL_CURRENT_PROGRAM), 0);
    EXPECT_TRUE(isQuiet());
}

// --- Sharing ---

TEST_F(ContextRender, SharedObjectsServeBoth) {
    const auto a = open();
    const auto b = open(a.get());
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    ASSERT_TRUE(b->use());
    const OwnParts ownOfB(scene.shared);
    for (int frame = 0; frame < 10; ++frame) {
        ASSERT_TRUE(b->use());
        clear();
        drawLeft(scene.shared, ownOfB);
        drawRight(green);
        EXPECT_TRUE(shows(red, green));
        EXPECT_TRUE(isQuiet());
        ASSERT_TRUE(a->use());
        EXPECT_TRUE(draws(scene, red, blue));
        EXPECT_TRUE(isQuiet());
    }
}

TEST_F(ContextRender, WhatOneWritesTheOtherReads) {
    const auto a = open();
    const auto b = open(a.get());
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    glFinish();
    ASSERT_TRUE(b->use());
    EXPECT_EQ(texelOf(*scene.shared.texture), red);
    scene.shared.texture->upload(&green, 1, 1);
    EXPECT_FALSE(scene.shared.shader->hasCompilationError());
    EXPECT_FALSE(scene.shared.program->hasLinkError());
    EXPECT_NE(scene.shared.depth->id(), 0u);
    glFinish();
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(draws(scene, green, blue));
    EXPECT_TRUE(isQuiet());
}

/// One of two that share their objects goes; what GL shares serves the other on.
class ContextRenderGroup : public ContextRender, public testing::WithParamInterface<bool> {
protected:
    /// Whether the one goes that the other was made to share with.
    static bool firstGoes() { return GetParam(); }

    static constexpr std::size_t numSharedKinds = 5;

    /// How many objects there are of the kinds that GL shares.
    static std::array<int, numSharedKinds> countShared() {
        std::array<int, numSharedKinds> counts = {};
        const auto all = countObjects();
        std::copy_n(all.begin(), numSharedKinds, counts.begin());
        return counts;
    }
};

INSTANTIATE_TEST_SUITE_P(Both, ContextRenderGroup, testing::Bool());

TEST_P(ContextRenderGroup, SharedObjectsOutliveTheOneThatMadeThem) {
    auto a = open();
    auto b = open(a.get());
    if (!goesOn())
        return;
    auto& goes = firstGoes() ? a : b;
    auto& stays = firstGoes() ? b : a;
    ASSERT_TRUE(goes->use());
    std::optional<Scene> scene(red);
    ASSERT_TRUE(draws(*scene, red, blue));
    const Names names = scene->names();
    goes.reset();
    ASSERT_TRUE(stays->use());
    EXPECT_EQ(scene->shared.program->id(), names[4]);
    {
        const OwnParts own(scene->shared);
        clear();
        drawLeft(scene->shared, own);
        drawRight(green);
        EXPECT_TRUE(shows(red, green));
        EXPECT_TRUE(isQuiet());
    }
    scene.reset();
    EXPECT_EQ(countShared()[1], 0) << "no texture is left";
    EXPECT_FALSE(areLive(names)[0]);
    EXPECT_FALSE(areLive(names)[3]);
    EXPECT_FALSE(areLive(names)[4]);
    EXPECT_TRUE(isQuiet());
}

TEST_P(ContextRenderGroup, WhatWasGoingToEndIsDeletedInTheOther) {
    auto a = open();
    auto b = open(a.get());
    if (!goesOn())
        return;
    auto& goes = firstGoes() ? a : b;
    auto& stays = firstGoes() ? b : a;
    ASSERT_TRUE(goes->use());
    std::optional<Scene> scene(red);
    ASSERT_TRUE(draws(*scene, red, blue)); // makes a built-in program, too
    goes.reset();
    scene.reset();
    ASSERT_TRUE(stays->use());
    EXPECT_EQ(countShared(), (std::array<int, numSharedKinds>{}));
    EXPECT_TRUE(isQuiet());
}

TEST_P(ContextRenderGroup, AnAbandonedOneLeavesToTheOtherWhatGlShares) {
    auto a = open();
    auto b = open(a.get());
    if (!goesOn())
        return;
    auto& goes = firstGoes() ? a : b;
    auto& stays = firstGoes() ? b : a;
    ASSERT_TRUE(goes->use());
    std::optional<Scene> scene(red);
    ASSERT_TRUE(draws(*scene, red, blue));
    goes->gl.reset();
    goes->context->abandon();
    ASSERT_TRUE(stays->use());
    EXPECT_EQ(texelOf(*scene->shared.texture), red);
    scene.reset();
    ASSERT_TRUE(stays->use());
    EXPECT_EQ(countShared(), (std::array<int, numSharedKinds>{}));
    EXPECT_TRUE(isQuiet());
}

// --- Coming and going ---

/// One of two that share nothing goes.
class ContextRenderPair : public ContextRenderGroup {};

INSTANTIATE_TEST_SUITE_P(Both, ContextRenderPair, testing::Bool());

TEST_P(ContextRenderPair, TheOtherDrawsAsBefore) {
    auto a = open();
    auto b = open();
    if (!goesOn())
        return;
    auto& goes = firstGoes() ? a : b;
    auto& stays = firstGoes() ? b : a;
    ASSERT_TRUE(stays->use());
    const Scene scene(red);
    ASSERT_TRUE(draws(scene, red, green));
    const Program* const program = builtIn();
    ASSERT_TRUE(goes->use());
    std::optional<Scene> other(blue);
    ASSERT_TRUE(draws(*other, blue, yellow));
    goes.reset();
    ASSERT_TRUE(stays->use());
    EXPECT_EQ(builtIn(), program);
    EXPECT_TRUE(draws(scene, red, green));
    const auto before = countObjects();
    other.reset();
    ASSERT_TRUE(stays->use());
    EXPECT_EQ(countObjects(), before);
    EXPECT_TRUE(draws(scene, red, green));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextRender, DrawsEachTimeThatItIsOpened) {
    for (int time = 0; time < 10; ++time) {
        SCOPED_TRACE(time);
        const auto surface = open();
        if (!goesOn())
            return;
        const Scene scene(colorOf(time));
        EXPECT_TRUE(draws(scene, colorOf(time), colorOf(time + 1)));
        EXPECT_TRUE(isQuiet());
    }
}

TEST_F(ContextRender, DisposeLeavesNoNameOver) {
    const auto surface = open();
    if (!goesOn())
        return;
    const std::array<int, test::numKinds> none = {};
    ASSERT_EQ(countObjects(), none);
    for (int time = 0; time < 10; ++time) {
        SCOPED_TRACE(time);
        {
            const Scene scene(red);
            EXPECT_TRUE(draws(scene, red, green));
            ProgramManager::instance().add(Program::make());
            BufferObjectManager::instance().add(
                VertexAttributeBuffer<float>::make(1, BufferUsage::Static, BufferAccess::Draw));
            EXPECT_NE(countObjects(), none);
        }
        surface->context->dispose();
        EXPECT_EQ(countObjects(), none);
        EXPECT_TRUE(isQuiet());
        surface->context = surface->makeAnother();
        ASSERT_NE(surface->context, nullptr);
    }
}

TEST_F(ContextRender, WorksAgainAfterTheGlContextWasLost) {
    auto surface = open();
    if (!goesOn())
        return;
    std::optional<Scene> lost(red);
    EXPECT_TRUE(draws(*lost, red, green));
    surface->gl.reset();
    surface->context->abandon();
    surface = open();
    if (!goesOn())
        return;
    Scene scene(blue);
    const Names names = scene.names();
    lost.reset();
    ASSERT_TRUE(surface->use());
    EXPECT_TRUE(draws(scene, blue, yellow));
    for (const bool isLive : areLive(names))
        EXPECT_TRUE(isLive);
    EXPECT_TRUE(isQuiet());
}

} // namespace

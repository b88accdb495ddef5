// needs: a program of its own

/// A host that knows nothing of Context, and a plug-in that uses Scope, on one library: in the
/// host's GL context, and in one of the plug-in's own.
///
/// The host's Toolbox lives in one GL context for all of the process: see
/// tests/drawing/toolbox_render_test.cpp.

#include <vellis/context.hpp>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/drawing/toolbox.hpp>
#include <vellis/engine.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading/program_manager.hpp>

#include <offscreen/entry_points.hpp>
#include <offscreen/requirement.hpp>

#include "support/pixels.hpp"
#include "support/render_test.hpp"
#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

/// The host's GL context, for the life of the process.
class Host : public testing::Environment {
public:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) && !defined(_WIN32)
        // The leak sanitizer stumbles over what a driver's own threads have at the end.
        setenv("LP_NUM_THREADS", "0", 1);
#endif
        gl = offscreen::Context::open(renderSettings(sceneSize, sceneSize), reason);
        if (gl != nullptr && offscreen::loadEntryPoints(*gl))
            reason = offscreen::missingRequirement();
    }
    void TearDown() override {
        if (gl == nullptr)
            return;
        gl->makeCurrent();
        engine::dispose();
        gl.reset();
    }

    std::unique_ptr<offscreen::Context> gl;
    std::string reason; ///< why there is none
};

Host* const host = new Host;
[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(host); // which owns it

constexpr std::array<bool, test::numKinds> allLive = {true, true, true, true, true, true, true};
constexpr std::array<bool, test::numKinds> noneLive = {};

/// Where the plug-in draws.
enum class Place { HostsGlContext, OwnGlContext };

/// What a plug-in of such a host has.
class ContextHostRender : public SurfaceTest, public testing::WithParamInterface<Place> {
protected:
    void SetUp() override {
        SurfaceTest::SetUp();
        if (!goesOn())
            return;
        if (!host->reason.empty())
            GTEST_SKIP() << host->reason;
        makePlugin();
        if (!goesOn())
            return;
        goToHost();
        Context::useProcess();
        hostScene.emplace(red);
    }

    void TearDown() override {
        if (host->gl == nullptr)
            return;
        goToPlugin();
        if (plugin != nullptr)
            plugin->dispose();
        surface.reset();
        goToHost();
        Context::useProcess();
        hostScene.reset();
        SurfaceTest::TearDown();
    }

    void makePlugin() {
        if (GetParam() == Place::OwnGlContext) {
            surface = open();
            if (surface != nullptr)
                plugin = surface->context;
        } else {
            goToHost();
            plugin = Context::make(host->gl->ownLookup());
            ASSERT_NE(plugin, nullptr);
        }
    }

    /// Makes the GL context current that each draws in.
    /// @{
    static void goToHost() { EXPECT_TRUE(host->gl->makeCurrent()); }
    void goToPlugin() const {
        if (surface != nullptr) {
            EXPECT_TRUE(surface->gl->makeCurrent());
        }
    }
    /// @}

    /// What the plug-in does when the host calls it.
    template <class Work>
    void inPlugin(Work work) const {
        goToPlugin();
        const Context::Scope scope(*plugin);
        ASSERT_TRUE(scope);
        work();
        goToHost();
    }

    std::unique_ptr<Surface> surface; ///< if it has a GL context of its own
    std::shared_ptr<Context> plugin;
    std::optional<Scene> hostScene;
};

/// Where the plug-in has a GL context of its own.
class ContextHostApartRender : public ContextHostRender {};

INSTANTIATE_TEST_SUITE_P(Places, ContextHostApartRender, testing::Values(Place::OwnGlContext));
INSTANTIATE_TEST_SUITE_P(Places, ContextHostRender,
                         testing::Values(Place::HostsGlContext, Place::OwnGlContext),
                         [](const auto& test) {
                             return test.param == Place::HostsGlContext ? "HostsGlContext"
                                                                        : "OwnGlContext";
                         });

TEST_P(ContextHostRender, NeitherDisturbsTheOther) {
    std::optional<Scene> pluginScene;
    inPlugin([&] { pluginScene.emplace(green); });
    for (int frame = 0; frame < 20; ++frame) {
        EXPECT_TRUE(draws(*hostScene, red, blue));
        EXPECT_TRUE(isQuiet());
        inPlugin([&] {
            EXPECT_EQ(Context::current(), plugin.get());
            EXPECT_TRUE(draws(*pluginScene, green, yellow));
            EXPECT_TRUE(isQuiet());
        });
        EXPECT_EQ(Context::current(), nullptr);
        EXPECT_TRUE(draws(*hostScene, red, yellow));
        EXPECT_TRUE(isQuiet());
    }
    inPlugin([&] { pluginScene.reset(); });
}

TEST_P(ContextHostRender, EachHasRegistriesOfItsOwn) {
    const auto builtIn = [] {
        return ProgramManager::instance().get(ProgramManager::BuiltIn::UniformColor2D).get();
    };
    const Program* const ofHost = builtIn();
    ASSERT_NE(ofHost, nullptr);
    const auto buffer = Toolbox::getVertexBuffer();
    Program* const key = ProgramManager::instance().add(hostScene->shared.program);
    BufferObjectManager::instance().add(hostScene->shared.corners);
    inPlugin([&] {
        EXPECT_NE(builtIn(), nullptr);
        EXPECT_NE(builtIn(), ofHost);
        EXPECT_NE(Toolbox::getVertexBuffer(), buffer);
        EXPECT_EQ(ProgramManager::instance().get(key), nullptr);
        BufferObjectManager::dispose();
    });
    EXPECT_EQ(builtIn(), ofHost);
    EXPECT_EQ(Toolbox::getVertexBuffer(), buffer);
    EXPECT_EQ(ProgramManager::instance().get(key), hostScene->shared.program);
    EXPECT_EQ(hostScene->shared.corners.use_count(), 2);
    ProgramManager::instance().remove(key);
    BufferObjectManager::instance().remove(hostScene->shared.corners.get());
}

TEST_P(ContextHostRender, EachRemembersStatesOfItsOwn) {
    const auto printed = [] {
        testing::internal::CaptureStderr();
        internal::diff_gl_states();
        while (glGetError() != GL_NO_ERROR) { // a state that this context does not know
        }
        return testing::internal::GetCapturedStderr();
    };
    glDisable(GL_BLEND);
    printed();
    inPlugin([&] {
        glEnable(GL_BLEND);
        EXPECT_EQ(printed(), "") << "its first call only remembers";
        glDisable(GL_BLEND);
    });
    EXPECT_EQ(printed(), "");
    glEnable(GL_BLEND);
    EXPECT_EQ(printed(), "Corvane DIFF : BLEND = false -> true\n");
    glDisable(GL_BLEND);
    inPlugin([&] { EXPECT_EQ(printed(), "Corvane DIFF : BLEND = true -> false\n"); });
}

TEST_P(ContextHostRender, ObjectsOfTheOneAreInertInTheOther) {
    inPlugin([&] {
        EXPECT_EQ(hostScene->shared.texture->id(), 0u);
        hostScene->shared.texture->bind();
        EXPECT_EQ(stateOf(GL_TEXTURE_BINDING_2D), 0);
        EXPECT_STREQ(internal::check_context(), "texture");
        hostScene->shared.program->draw(*hostScene->own.square);
        EXPECT_STREQ(internal::check_context(), "vertex array");
    });
    EXPECT_TRUE(draws(*hostScene, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_P(ContextHostRender, HostObjectsThatEndInAScopeAreDeletedOnTheWayBack) {
    ASSERT_TRUE(draws(*hostScene, red, blue));
    const Names names = hostScene->names();
    ASSERT_EQ(areLive(names), allLive);
    inPlugin([&] {
        const Scene scene(green);
        ASSERT_TRUE(draws(scene, green, yellow));
        const auto before = countObjects();
        hostScene.reset();
        EXPECT_EQ(countObjects(), before);
        EXPECT_TRUE(draws(scene, green, yellow));
    });
    EXPECT_EQ(areLive(names), noneLive);
    EXPECT_TRUE(isQuiet());
}

TEST_P(ContextHostApartRender, HostObjectsWaitForTheHostsGlContext) {
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    ASSERT_TRUE(draws(*hostScene, red, blue));
    const Names names = hostScene->names();
    {
        goToPlugin();
        const Context::Scope scope(*plugin);
        ASSERT_TRUE(scope);
        hostScene.reset();
    } // with the plug-in's GL context still current
    EXPECT_EQ(Context::current(), nullptr);
    goToHost();
    EXPECT_EQ(areLive(names), allLive);
    Context::useProcess();
    EXPECT_EQ(areLive(names), noneLive);
    EXPECT_TRUE(isQuiet());
}

TEST_P(ContextHostApartRender, WhatWaitsForTheHostsGlContextIsNotDeletedInItsNext) {
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    {
        goToPlugin();
        const Context::Scope scope(*plugin);
        hostScene.reset();
    }
    std::string reason;
    auto next = offscreen::Context::open(renderSettings(sceneSize, sceneSize), reason);
    if (next == nullptr)
        GTEST_SKIP() << reason;
    ASSERT_TRUE(offscreen::loadEntryPoints(*next));
    {
        const Scene scene(green);
        clear();
        drawLeft(scene.shared, scene.own);
        const Names names = scene.names();
        Context::useProcess();
        EXPECT_EQ(areLive(names), allLive);
        EXPECT_TRUE(isQuiet());
    }
    next.reset();
    goToHost();
    EXPECT_TRUE(offscreen::loadEntryPoints(*host->gl));
}

TEST_P(ContextHostRender, PluginObjectsThatEndInTheHostWaitForTheNextScope) {
    std::optional<Scene> scene;
    Names names = {};
    inPlugin([&] {
        scene.emplace(green);
        ASSERT_TRUE(draws(*scene, green, yellow));
        names = scene->names();
    });
    const auto before = countObjects();
    scene.reset();
    EXPECT_EQ(countObjects(), before);
    EXPECT_TRUE(draws(*hostScene, red, blue));
    goToPlugin();
    EXPECT_EQ(areLive(names), allLive);
    inPlugin([&] {
        EXPECT_EQ(areLive(names), noneLive);
        EXPECT_TRUE(isQuiet());
    });
}

TEST_P(ContextHostRender, PluginsComeAndGo) {
    ASSERT_TRUE(draws(*hostScene, red, blue));
    for (int time = 0; time < 5; ++time) {
        const auto before = countObjects();
        inPlugin([&] {
            const Scene scene(green);
            EXPECT_TRUE(draws(scene, green, yellow));
        });
        goToPlugin();
        plugin->dispose();
        surface.reset();
        goToHost();
        EXPECT_EQ(Context::current(), nullptr);
        EXPECT_EQ(countObjects(), before);
        EXPECT_TRUE(draws(*hostScene, red, blue));
        EXPECT_TRUE(isQuiet());
        makePlugin();
        if (!goesOn())
            return;
        goToHost();
        Context::useProcess();
    }
}

TEST_P(ContextHostApartRender, APluginOnAThreadOfItsOwn) {
    surface->gl->release();
    goToHost();
    std::thread thread([&] {
        for (int frame = 0; frame < 20; ++frame) {
            goToPlugin();
            {
                const Context::Scope scope(*plugin);
                EXPECT_TRUE(scope);
                {
                    const Scene scene(green);
                    EXPECT_TRUE(draws(scene, green, yellow));
                }
                EXPECT_TRUE(isQuiet());
            }
            EXPECT_EQ(Context::current(), nullptr);
            surface->gl->release();
        }
    });
    for (int frame = 0; frame < 20; ++frame) {
        const Scene scene(red);
        EXPECT_TRUE(draws(scene, red, blue));
        EXPECT_TRUE(isQuiet());
    }
    thread.join();
}

/// The host's end, after which its Toolbox is over.
class ContextHostRenderEnd : public ContextHostRender {};

INSTANTIATE_TEST_SUITE_P(Places, ContextHostRenderEnd,
                         testing::Values(Place::HostsGlContext, Place::OwnGlContext));

TEST_P(ContextHostRenderEnd, LeavesThePluginsToolbox) {
    std::optional<Scene> scene;
    inPlugin([&] {
        scene.emplace(green);
        EXPECT_TRUE(draws(*scene, green, yellow));
    });
    engine::dispose();
    EXPECT_TRUE(plugin->isAlive());
    inPlugin([&] {
        EXPECT_TRUE(draws(*scene, green, blue));
        EXPECT_TRUE(isQuiet());
        scene.reset();
    });
    clear();
    drawLeft(hostScene->shared, hostScene->own);
    drawRight(blue);
    EXPECT_TRUE(shows(red, Color(0, 0, 0, 255))) << "the Toolbox of the host is over";
    EXPECT_TRUE(isQuiet());
}

} // namespace

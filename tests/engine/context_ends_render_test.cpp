/// Objects that end while their Context is not in use, or no longer there.

#include <vellis/context.hpp>

#include <array>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/internal.hpp>

#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

using Live = std::array<bool, test::numKinds>;

constexpr Live allLive = {true, true, true, true, true, true, true};

/// All but one kind.
Live allBut(std::size_t kind) {
    Live live = allLive;
    live[kind] = false;
    return live;
}

/// Two contexts that share nothing, with a scene each, whose objects have the same names.
class ContextEndsRender : public SurfaceTest {
protected:
    void SetUp() override {
        SurfaceTest::SetUp();
        if (!goesOn())
            return;
        a = open();
        b = open();
        if (!goesOn())
            return;
        makeScenes();
        if (namesOfA != sceneOfB->names())
            GTEST_SKIP() << "names do not begin anew with each context";
    }

    void makeScenes() {
        ASSERT_TRUE(a->use());
        sceneOfA.emplace(red);
        ASSERT_TRUE(draws(*sceneOfA, red, red));
        namesOfA = sceneOfA->names();
        ASSERT_TRUE(b->use());
        sceneOfB.emplace(green);
        ASSERT_TRUE(draws(*sceneOfB, green, green));
    }

    /// An object of each kind ends in A's scene, anew for each. \p end  Does that elsewhere: takes
    /// a function.
    template <class End>
    void endEachKind(End end) {
        for (std::size_t kind = 0; kind < test::numKinds; ++kind) {
            SCOPED_TRACE(kindNames[kind]);
            end([&] { sceneOfA->end(kind); });
            ASSERT_TRUE(b->use());
            EXPECT_EQ(areLive(sceneOfB->names()), allLive);
            EXPECT_EQ(texelOf(*sceneOfB->shared.texture), green);
            EXPECT_TRUE(draws(*sceneOfB, green, blue));
            EXPECT_TRUE(isQuiet());
            ASSERT_TRUE(a->gl->makeCurrent());
            EXPECT_EQ(areLive(namesOfA), allLive) << "it is to wait for use()";
            ASSERT_TRUE(a->use());
            EXPECT_EQ(areLive(namesOfA), allBut(kind));
            EXPECT_TRUE(isQuiet());
            sceneOfA.emplace(red);
            ASSERT_TRUE(draws(*sceneOfA, red, red));
            namesOfA = sceneOfA->names();
        }
    }

    std::unique_ptr<Surface> a;
    std::unique_ptr<Surface> b;
    std::optional<Scene> sceneOfA;
    std::optional<Scene> sceneOfB;
    Names namesOfA = {};
};

TEST_F(ContextEndsRender, WhileAnotherIsInUse) {
    endEachKind([this](auto end) {
        ASSERT_TRUE(b->use());
        end();
        EXPECT_EQ(areLive(sceneOfB->names()), allLive);
    });
}

TEST_F(ContextEndsRender, WhileNoneIsInUse) {
    endEachKind([this](auto end) {
        b->leave();
        end();
    });
}

TEST_F(ContextEndsRender, WhileTheProcessUsesTheGlContextOfAnother) {
    endEachKind([this](auto end) {
        ASSERT_TRUE(b->use());
        Context::useProcess();
        end();
        EXPECT_EQ(Context::current(), nullptr);
    });
}

TEST_F(ContextEndsRender, WhileItsGlContextIsNotCurrentThoughItIsInUse) {
    // Before use() tells the library, an object's end deletes in the Context that it knows of.
    ASSERT_TRUE(b->use());
    Context::useProcess();
    ASSERT_TRUE(a->gl->makeCurrent());
    sceneOfA->end(0);
    EXPECT_EQ(areLive(namesOfA), allLive);
    ASSERT_TRUE(a->use());
    EXPECT_EQ(areLive(namesOfA), allBut(0));
}

TEST_F(ContextEndsRender, OnAnotherThread) {
    endEachKind([this](auto end) {
        ASSERT_TRUE(a->use());
        std::thread([&] { end(); }).join();
        EXPECT_EQ(areLive(namesOfA), allLive);
    });
}

TEST_F(ContextEndsRender, OnAnotherThreadWithTheOtherInUseThere) {
    b->leave();
    endEachKind([this](auto end) {
        a->leave();
        b->leave();
        std::thread([&] {
            EXPECT_TRUE(b->use());
            end();
            EXPECT_EQ(areLive(sceneOfB->names()), allLive);
            b->leave();
        }).join();
    });
}

TEST_F(ContextEndsRender, ManyThreadsEndAtOnce) {
    constexpr int numThreads = 4;
    constexpr int numBuffers = 500;
    using Buffer = VertexAttributeBuffer<float>;
    ASSERT_TRUE(a->use());
    const auto before = countObjects();
    std::vector<std::vector<std::shared_ptr<Buffer>>> buffers(numThreads);
    GLuint last = 0;
    for (auto& ofThread : buffers) {
        for (int i = 0; i < numBuffers; ++i)
            ofThread.push_back(Buffer::make(1, BufferUsage::Static, BufferAccess::Draw));
        last = ofThread.back()->id();
    }
    ASSERT_EQ(glIsBuffer(last), GL_TRUE);
    std::vector<std::thread> threads;
    for (auto& ofThread : buffers)
        threads.emplace_back([&ofThread] { ofThread.clear(); });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_TRUE(a->use());
    EXPECT_EQ(countObjects(), before);
    EXPECT_EQ(glIsBuffer(last), GL_FALSE);
    EXPECT_TRUE(draws(*sceneOfA, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextEndsRender, DisposedElsewhereWaitsAsWell) {
    ASSERT_TRUE(b->use());
    sceneOfA->shared.corners->dispose();
    sceneOfA->shared.texture->dispose();
    sceneOfA->shared.program->dispose();
    EXPECT_EQ(areLive(sceneOfB->names()), allLive);
    EXPECT_TRUE(draws(*sceneOfB, green, blue));
    ASSERT_TRUE(a->use());
    EXPECT_EQ(areLive(namesOfA), (Live{false, false, true, true, false, true, true}));
    EXPECT_EQ(sceneOfA->shared.corners->id(), 0u);
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextEndsRender, AfterTheContextWasDisposedOfNothingIsLeftToDelete) {
    ASSERT_TRUE(a->use());
    a->context->dispose();
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(sceneOfA->names(), Names{}) << "inert";
    EXPECT_STREQ(internal::check_context(), "vertex array") << "which names() binds";
    sceneOfA.reset();
    ASSERT_TRUE(b->use());
    EXPECT_EQ(areLive(sceneOfB->names()), allLive);
    EXPECT_TRUE(draws(*sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
}

// --- The GL context goes first ---

TEST_F(ContextEndsRender, AfterAbandonWithoutAGlCall) {
    a->gl.reset();
    ASSERT_TRUE(b->use());
    a->context->abandon();
    EXPECT_FALSE(a->context->isAlive());
    EXPECT_EQ(Context::current(), b->context.get());
    const auto before = countObjects();
    sceneOfA.reset();
    EXPECT_EQ(countObjects(), before);
    EXPECT_EQ(areLive(sceneOfB->names()), allLive);
    ASSERT_TRUE(b->use());
    EXPECT_TRUE(draws(*sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextEndsRender, AfterTheDestructorWithoutAbandon) {
    a->gl.reset();
    ASSERT_TRUE(b->use());
    a->context.reset();
    const auto before = countObjects();
    sceneOfA.reset();
    EXPECT_EQ(countObjects(), before);
    EXPECT_TRUE(draws(*sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextEndsRender, AfterTheDestructorOfTheOneInUse) {
    ASSERT_TRUE(a->use());
    a->gl.reset();
    a->context.reset();
    EXPECT_EQ(Context::current(), nullptr);
    sceneOfA.reset();
    ASSERT_TRUE(b->use());
    EXPECT_EQ(areLive(sceneOfB->names()), allLive);
    EXPECT_TRUE(draws(*sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextEndsRender, AbandonedWhileTheGlContextIsThereMakesNoGlCall) {
    ASSERT_TRUE(a->use());
    const auto before = countObjects();
    a->context->abandon();
    sceneOfA.reset();
    EXPECT_EQ(countObjects(), before) << "the names are left to the end of the GL context";
    EXPECT_EQ(areLive(namesOfA), allLive);
}

TEST_F(ContextEndsRender, DisposeWithAnotherGlContextAbandons) {
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    ASSERT_TRUE(b->use());
    const auto before = countObjects();
    a->context->dispose();
    EXPECT_FALSE(a->context->isAlive());
    sceneOfA.reset();
    EXPECT_EQ(countObjects(), before);
    ASSERT_TRUE(b->use());
    EXPECT_TRUE(draws(*sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
}

// --- Sharing ---

TEST_F(ContextEndsRender, SharedNamesAreDeletedAtTheNextUseOfAnyOfTheGroup) {
    const auto c = open(a.get());
    if (!goesOn())
        return;
    b->leave();
    for (std::size_t kind = 0; kind < test::numKinds; ++kind)
        sceneOfA->end(kind);
    ASSERT_TRUE(c->gl->makeCurrent());
    EXPECT_EQ(glIsBuffer(namesOfA[0]), GL_TRUE);
    ASSERT_TRUE(c->use());
    const Live live = areLive(namesOfA);
    for (std::size_t kind = 0; kind < 5; ++kind)
        EXPECT_FALSE(live[kind]) << kindNames[kind];
    ASSERT_TRUE(a->gl->makeCurrent());
    EXPECT_EQ(glIsVertexArray(namesOfA[5]), GL_TRUE) << "which only its own can delete";
    EXPECT_EQ(glIsFramebuffer(namesOfA[6]), GL_TRUE);
    ASSERT_TRUE(a->use());
    EXPECT_EQ(areLive(namesOfA), Live{});
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextEndsRender, WithTheOtherOfTheGroupInUseSharedNamesGoAtOnce) {
    const auto c = open(a.get());
    if (!goesOn())
        return;
    for (std::size_t kind = 0; kind < test::numKinds; ++kind)
        sceneOfA->end(kind);
    const Live live = areLive(namesOfA);
    for (std::size_t kind = 0; kind < 5; ++kind)
        EXPECT_FALSE(live[kind]) << kindNames[kind];
    ASSERT_TRUE(a->use());
    EXPECT_EQ(areLive(namesOfA), Live{});
    EXPECT_TRUE(isQuiet());
}

} // namespace

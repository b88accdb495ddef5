// needs: the thread sanitizer

/// Contexts on several threads at once.

#include <vellis/context.hpp>

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/internal.hpp>

#include "support/barrier.hpp"
#include "support/scene.hpp"
#include "support/several_threads.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

class ContextThreadsRender : public SurfaceTest {
protected:
    /// Does the same on a number of threads at once. What it returns is why it cannot be done here.
    template <class Work>
    void onThreads(int numThreads, Work work) {
        const std::string reason = test::onThreads(numThreads, work);
        if (!reason.empty())
            GTEST_SKIP() << reason;
    }

    static constexpr Color colors[] = {red, green, blue, yellow};
};

/// Draws a picture of many drawables that are made for it.
void drawMany(const Scene& scene) {
    std::vector<std::unique_ptr<OwnParts>> parts;
    for (int i = 0; i < 20; ++i) {
        parts.push_back(std::make_unique<OwnParts>(scene.shared));
        drawLeft(scene.shared, *parts.back());
    }
}

TEST_F(ContextThreadsRender, FourDrawAtOnce) {
    onThreads(4, [](int i) -> std::string {
        std::string reason;
        const auto surface = Surface::open(nullptr, reason);
        if (surface == nullptr)
            return reason;
        const Color& left = colors[i];
        const Color& right = colors[(i + 1) % 4];
        for (int frame = 0; frame < 20; ++frame) {
            EXPECT_TRUE(surface->use());
            const Scene scene(left);
            clear();
            drawMany(scene);
            for (int call = 0; call < 20; ++call)
                drawRight(right);
            EXPECT_TRUE(shows(left, right)) << i;
            EXPECT_TRUE(isQuiet()) << i;
            EXPECT_EQ(Context::current(), surface->context.get());
        }
        return {};
    });
}

TEST_F(ContextThreadsRender, FourOpenAndCloseAtOnce) {
    onThreads(4, [](int i) -> std::string {
        for (int time = 0; time < 5; ++time) {
            std::string reason;
            const auto surface = Surface::open(nullptr, reason);
            if (surface == nullptr)
                return reason;
            const Scene scene(colors[i]);
            EXPECT_TRUE(draws(scene, colors[i], red));
            EXPECT_TRUE(isQuiet());
        }
        return {};
    });
}

TEST_F(ContextThreadsRender, FourHandTheirObjectsOnToEndElsewhere) {
    std::mutex mutex;
    std::vector<std::unique_ptr<Scene>> heap;
    Barrier barrier(4);
    onThreads(4, [&](int i) -> std::string {
        std::string reason;
        const auto surface = Surface::open(nullptr, reason);
        for (int frame = 0; frame < 10; ++frame) {
            if (surface != nullptr) {
                EXPECT_TRUE(surface->use());
                auto scene = std::make_unique<Scene>(colors[i]);
                EXPECT_TRUE(draws(*scene, colors[i], blue));
                const std::lock_guard lock(mutex);
                heap.push_back(std::move(scene));
            }
            barrier.wait();
            if (frame % 4 == i) { // by turns one of them has the end of all
                const std::lock_guard lock(mutex);
                heap.clear();
            }
            barrier.wait();
        }
        if (surface != nullptr) {
            EXPECT_TRUE(surface->use());
            barrier.wait();
            if (i == 0)
                heap.clear();
            barrier.wait();
            EXPECT_TRUE(surface->use());
            EXPECT_EQ(countObjects()[0], 1) << "the Toolbox's";
            EXPECT_EQ(countObjects()[1], 0);
            EXPECT_EQ(countObjects()[5], 0);
            EXPECT_EQ(countObjects()[6], 0);
            EXPECT_TRUE(isQuiet());
        } else {
            barrier.wait();
            barrier.wait();
        }
        return reason;
    });
}

TEST_F(ContextThreadsRender, OneLoadsWhatTheOtherDraws) {
    const auto surface = open();
    if (!goesOn())
        return;
    const auto loader = open(surface.get());
    if (!goesOn())
        return;
    loader->leave();
    std::unique_ptr<SharedParts> loaded;
    Barrier barrier(2);
    constexpr int numFrames = 10;
    std::thread thread([&] {
        for (int frame = 0; frame < numFrames; ++frame) {
            EXPECT_TRUE(loader->use());
            loaded = std::make_unique<SharedParts>(colors[frame % 4]);
            EXPECT_TRUE(isQuiet());
            glFinish();
            barrier.wait();
            barrier.wait();
        }
        loader->leave();
    });
    for (int frame = 0; frame < numFrames; ++frame) {
        barrier.wait();
        EXPECT_TRUE(surface->use());
        const OwnParts own(*loaded);
        clear();
        drawLeft(*loaded, own);
        drawRight(blue);
        EXPECT_TRUE(shows(colors[frame % 4], blue));
        EXPECT_TRUE(isQuiet());
        glFinish();
        barrier.wait();
    }
    thread.join();
}

TEST_F(ContextThreadsRender, OneIsAbandonedWhileAnotherThreadHasItInUse) {
    const auto a = open();
    auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene sceneOfA(red);
    b->leave();
    a->gl->makeCurrent();
    ASSERT_TRUE(a->use());
    Barrier barrier(2);
    std::thread thread([&] {
        EXPECT_TRUE(b->use());
        const Scene scene(green);
        EXPECT_TRUE(draws(scene, green, yellow));
        const auto before = countObjects();
        barrier.wait();
        barrier.wait(); // it is abandoned
        EXPECT_EQ(Context::current(), nullptr);
        EXPECT_EQ(scene.shared.texture->id(), 0u);
        EXPECT_FALSE(b->use());
        EXPECT_EQ(countObjects(), before);
        b->gl->release();
    });
    barrier.wait();
    b->context.reset();
    EXPECT_EQ(Context::current(), a->context.get());
    b->context = Context::make(*a->context, a->gl->ownLookup());
    b->context->abandon();
    barrier.wait();
    thread.join();
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(draws(sceneOfA, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextThreadsRender, AThreadThatEndsPutsDownWhatItHasInUse) {
    const auto surface = open();
    if (!goesOn())
        return;
    const Scene scene(red);
    surface->leave();
    std::thread([&] {
        EXPECT_TRUE(surface->use());
        EXPECT_TRUE(draws(scene, red, green));
        surface->gl->release();
    }).join();
    ASSERT_TRUE(surface->use());
    EXPECT_TRUE(draws(scene, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextThreadsRender, AThreadThatEndsWithItsContextTakesNothingAlong) {
    const auto a = open();
    if (!goesOn())
        return;
    const Scene scene(red);
    std::unique_ptr<Scene> left;
    std::string reason;
    std::thread([&] {
        const auto b = Surface::open(nullptr, reason);
        if (b == nullptr)
            return;
        left = std::make_unique<Scene>(green);
        EXPECT_TRUE(draws(*left, green, yellow));
    }).join();
    if (!reason.empty())
        GTEST_SKIP() << reason;
    const auto before = countObjects();
    left.reset();
    EXPECT_EQ(countObjects(), before);
    EXPECT_TRUE(draws(scene, red, blue));
    EXPECT_TRUE(isQuiet());
}

TEST_F(ContextThreadsRender, DiagnosticsBelongToEachThread) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    const Scene scene(red);
    ASSERT_TRUE(b->use());
    scene.shared.texture->bind();
    std::thread([] { EXPECT_EQ(internal::check_context(), nullptr); }).join();
    EXPECT_STREQ(internal::check_context(), "texture");
}

} // namespace

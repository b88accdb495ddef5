// needs: the thread sanitizer

/// Contexts on several threads at once, without a driver: what the library itself shares between
/// them.

#include <vellis/context.hpp>

#include <array>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/barrier.hpp"
#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using testing::IsEmpty;
using vellis::test::FakeContext;
using vellis::test::FakeGl;
using Position = VertexAttribute<glm::vec2>;
using Triangles = drawable::Triangles<Position>;
using Positions = VertexAttributeBuffer<glm::vec2>;

constexpr std::size_t numThreads = 4;
constexpr int numFrames = 50;

/// What a thread makes and draws in each frame.
struct Scene {
    std::shared_ptr<Program> program = Program::make("", "");
    std::shared_ptr<Positions> positions = Positions::make({{0.f, 0.f}, {1.f, 0.f}, {0.f, 1.f}},
                                                           BufferUsage::Static, BufferAccess::Draw);
    std::shared_ptr<Triangles> triangles =
        Triangles::make(program, Position("position", positions));
    std::shared_ptr<Texture2D<float>> texture = Texture2D<float>::make(2, 2);
    std::shared_ptr<Renderbuffer<depth16>> renderbuffer = Renderbuffer<depth16>::make(2, 2);
    std::shared_ptr<Framebuffer> framebuffer = Framebuffer::make();

    void draw() const {
        program->draw(*triangles);
        program->getUniform<glm::vec4>("nothing").value = glm::vec4(1.f);
        program->getUniform<std::vector<float>>("nothing").value = {1.f, 2.f};
        BufferObjectManager::instance().remove(BufferObjectManager::instance().add(positions));
        Toolbox::drawPoints(glm::vec4(1.f), 4.f, {{0.f, 0.f}}, glm::mat4(1.f));
        framebuffer->bind();
        framebuffer->unbind();
        Program::current();
    }
};

/// Does \p work on several threads at once, each with its number.
template <class Work>
void onThreads(Work work) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < numThreads; ++i)
        threads.emplace_back([&work, i] { work(i); });
    for (std::thread& thread : threads)
        thread.join();
}

class ContextThreadsTrace : public testing::Test {
protected:
    ~ContextThreadsTrace() override {
        for (const auto& gl : contexts) {
            EXPECT_THAT(gl->violations(), IsEmpty());
            EXPECT_THAT(gl->liveNames(), IsEmpty());
            gl->ignoreTheRest();
        }
        EXPECT_EQ(test::takeCallsWithoutContext(), 0u);
        fake.ignoreTheRest();
    }

    FakeGl fake;
    std::array<std::unique_ptr<FakeContext>, numThreads> contexts;
};

TEST_F(ContextThreadsTrace, EachDrawsWithOneOfItsOwn) {
    for (auto& gl : contexts)
        gl = std::make_unique<FakeContext>();
    onThreads([&](std::size_t i) {
        contexts[i]->makeCurrent();
        const auto context = Context::make(FakeGl::lookUp);
        for (int frame = 0; frame < numFrames; ++frame) {
            EXPECT_TRUE(context->use());
            Scene().draw();
        }
        context->dispose();
        FakeContext::releaseCurrent();
    });
}

TEST_F(ContextThreadsTrace, EachDrawsWithOneOfAGroup) {
    contexts[0] = std::make_unique<FakeContext>();
    for (std::size_t i = 1; i < numThreads; ++i)
        contexts[i] = std::make_unique<FakeContext>(contexts[0].get());
    std::array<std::shared_ptr<Context>, numThreads> made;
    for (std::size_t i = 0; i < numThreads; ++i) {
        contexts[i]->makeCurrent();
        made[i] = i == 0 ? Context::make(FakeGl::lookUp) : Context::make(*made[0], FakeGl::lookUp);
    }
    Context::useProcess();
    FakeContext::releaseCurrent();
    onThreads([&](std::size_t i) {
        contexts[i]->makeCurrent();
        for (int frame = 0; frame < numFrames; ++frame) {
            EXPECT_TRUE(made[i]->use());
            Scene().draw();
        }
        made[i]->dispose();
        FakeContext::releaseCurrent();
    });
}

/// Without Contexts there is one of everything but for what drawables are made of: the memory that
/// is kept for the next one, the current binding and inert handles are each thread's.
TEST_F(ContextThreadsTrace, EachMakesDrawablesWithoutOne) {
    for (auto& gl : contexts)
        gl = std::make_unique<FakeContext>();
    contexts[0]->makeCurrent();
    gladLoadGLLoader(FakeGl::lookUp);
    FakeContext::releaseCurrent();
    onThreads([&](std::size_t i) {
        contexts[i]->makeCurrent();
        {
            const Scene scene;
            for (int frame = 0; frame < numFrames; ++frame) {
                const auto drawable =
                    Triangles::make(scene.program, Position("position", scene.positions));
                scene.program->draw(*drawable);
                drawable->getAttributesBinding()->bind();
                EXPECT_TRUE(drawable->getAttributesBinding()->isCurrent());
                VertexAttributesBinding::unbind();
                scene.program->getUniform<float>("nothing").value = 1.f;
            }
        }
        FakeContext::releaseCurrent();
    });
}

/// What one thread has made ends on the next one, where another Context is in use or none.
TEST_F(ContextThreadsTrace, ObjectsEndOnOtherThreads) {
    for (auto& gl : contexts)
        gl = std::make_unique<FakeContext>();
    std::mutex mutex;
    std::array<std::vector<Scene>, numThreads> given;
    test::Barrier barrier(static_cast<int>(numThreads));
    onThreads([&](std::size_t i) {
        contexts[i]->makeCurrent();
        const auto context = Context::make(FakeGl::lookUp);
        for (int frame = 0; frame < numFrames; ++frame) {
            EXPECT_TRUE(context->use());
            const Scene scene;
            scene.draw();
            std::vector<Scene> taken;
            const std::lock_guard<std::mutex> lock(mutex);
            given[(i + 1) % numThreads].push_back(scene);
            taken.swap(given[i]);
            if (frame % 2 == 0)
                Context::useProcess();
        }
        barrier.wait();
        given[i].clear();
        barrier.wait();
        EXPECT_TRUE(context->use());
        context->dispose();
        FakeContext::releaseCurrent();
    });
}

} // namespace

/// What several Contexts cost: how long Context::use takes, and what a second thread with a Context
/// of its own gains, beside what it gains for GL by hand.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <glm/mat4x4.hpp>

#include <offscreen/context.hpp>
#include <vellis/vellis.hpp>

#include <vellis/gl.hpp>

namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

std::unique_ptr<offscreen::Context> openContext() {
    std::string error;
    auto context = offscreen::Context::open({64, 64, offscreen::Platform::EglSurfaceless}, error);
    if (context == nullptr) {
        std::fprintf(stderr, "%s\n", error.c_str());
        std::exit(EXIT_FAILURE);
    }
    return context;
}

/// The time of one of many calls, in the best of a few rounds.
template <class Call>
double nanosecondsOf(Call call) {
    constexpr int count = 1000000;
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        const Clock::time_point start = Clock::now();
        for (int i = 0; i < count; ++i)
            call(i);
        best = std::min(best, Nanoseconds(Clock::now() - start).count() / count);
    }
    return best;
}

void measureUse() {
    const auto context = openContext();
    const auto first = vellis::Context::make();
    const auto second = vellis::Context::make(*first);
    std::printf("use/again %.1f\n", nanosecondsOf([&](int) { second->use(); }));
    std::printf("use/in_turns %.1f\n",
                nanosecondsOf([&](int i) { (i % 2 == 0 ? first : second)->use(); }));
    second->dispose();
    first->dispose();
}

constexpr const char* vertexSource =
    "#version 120\n"
    "attribute vec2 position;\n"
    "uniform mat4 mvp;\n"
    "void main() { gl_Position = mvp * vec4(position, 0.0, 1.0); }\n";
constexpr const char* fragmentSource = "#version 120\n"
                                       "uniform vec4 color;\n"
                                       "void main() { gl_FragColor = color; }\n";

/// A frame of many small drawings, by hand or through the library.
class Scene {
public:
    void draw(bool byHand) {
        for (int i = 0; i < drawings; ++i) {
            if (byHand)
                drawByHand();
            else
                program_->draw(*triangle_, mvp_, color_);
        }
        glFinish();
    }

private:
    using Positions = vellis::VertexAttribute<glm::vec2>;
    using Triangle = vellis::drawable::Triangles<Positions>;

    static constexpr int drawings = 2000;

    void drawByHand() const {
        glUseProgram(program_->id());
        glBindVertexArray(vertexArray_);
        glUniformMatrix4fv(mvp_.loc, 1, GL_FALSE, &mvp_.value[0][0]);
        glUniform4fv(color_.loc, 1, &color_.value[0]);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        glBindVertexArray(0);
        glUseProgram(0);
    }

    static unsigned int nameOf(const vellis::VertexAttributesBinding& binding) {
        binding.bind();
        int name = 0;
        glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &name);
        vellis::VertexAttributesBinding::unbind();
        return static_cast<unsigned int>(name);
    }

    std::shared_ptr<vellis::Program> program_ = vellis::Program::make(vertexSource, fragmentSource);
    std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec2>> positions_ =
        vellis::VertexAttributeBuffer<glm::vec2>::make({{-0.1f, -0.1f}, {0.1f, -0.1f}, {0.f, 0.1f}},
                                                       vellis::BufferUsage::Static,
                                                       vellis::BufferAccess::Draw);
    std::shared_ptr<Triangle> triangle_ = Triangle::make(program_, {"position", positions_});
    vellis::Uniform<glm::mat4>& mvp_ = program_->getUniform<glm::mat4>("mvp");
    vellis::Uniform<glm::vec4>& color_ = program_->getUniform<glm::vec4>("color");
    unsigned int vertexArray_ = nameOf(*triangle_->getAttributesBinding());
};

/// Frames a second that so many threads draw together, each in a context of its own.
double framesASecond(unsigned int numThreads, bool byHand) {
    constexpr double duration = 0.25e9;
    std::atomic<unsigned int> numReady = 0;
    std::atomic<double> rate = 0;
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < numThreads; ++i) {
        threads.emplace_back([&] {
            const auto glContext = openContext();
            const auto context = vellis::Context::make();
            {
                Scene scene;
                scene.draw(byHand);
                ++numReady;
                while (numReady < numThreads)
                    std::this_thread::yield();
                const Clock::time_point start = Clock::now();
                double elapsed = 0;
                int frames = 0;
                for (; elapsed < duration; elapsed = Nanoseconds(Clock::now() - start).count()) {
                    scene.draw(byHand);
                    ++frames;
                }
                for (double sum = rate;
                     !rate.compare_exchange_weak(sum, sum + frames / elapsed * 1e9);) {
                }
            }
            context->dispose();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    return rate;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The gain of a second thread through the library, beside that by hand: both in each round, since
/// the machine may have other things to do.
void measureThreads() {
    std::vector<double> gains[2];
    std::vector<double> ratios;
    for (int round = 0; round < 9; ++round) {
        double gain[2];
        for (const bool byHand : {false, true}) {
            const double one = framesASecond(1, byHand);
            gain[byHand] = framesASecond(2, byHand) / one;
            gains[byHand].push_back(gain[byHand]);
        }
        ratios.push_back(gain[0] / gain[1]);
    }
    std::printf("threads/by_hand %.3f\nthreads/vellis %.3f\nthreads/ratio %.3f\n", median(gains[1]),
                median(gains[0]), median(ratios));
}

} // namespace

int main() {
    measureUse();
    measureThreads();
}

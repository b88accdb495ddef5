/// The times of a scope of GL state and of lines, SFML's among them. SFML draws in contexts of its
/// own only, which need an X server: this program runs all sides in one of those.
///
/// Usage: vellis_sfml_benchmarks [options of Google Benchmark]

#include <cstdio>
#include <cstdlib>
#include <string>

#include <SFML/Graphics/RenderTexture.hpp>
#include <SFML/Graphics/VertexArray.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "canvas/scenes.hpp"
#include "canvas/workloads.hpp"
#include "times/program.hpp"

namespace vellis::bench {
namespace {

sf::RenderTexture& target() {
    static sf::RenderTexture texture;
    return texture;
}

/// SFML saves and restores everything, by GL's own attribute stack, and resets what it uses itself.
struct Scope {
    void operator()() const {
        target().pushGLStates();
        glEnable(GL_BLEND);
        glBlendEquation(GL_FUNC_ADD);
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        target().popGLStates();
    }
};

using Scene = std::vector<glm::vec2> (*)(unsigned int count);

/// Lines of GL's own, from an array in memory.
template <sf::PrimitiveType primitive, Scene scene>
class Lines {
public:
    explicit Lines(unsigned int size) : vertices_(primitive) {
        const auto part = [](float value) { return static_cast<sf::Uint8>(255.f * value); };
        const sf::Color color(part(sceneColor.r), part(sceneColor.g), part(sceneColor.b));
        for (const glm::vec2& point : scene(size))
            vertices_.append(sf::Vertex({point.x, point.y}, color));
    }
    void operator()() const {
        target().pushGLStates();
        target().draw(vertices_);
        target().popGLStates();
    }

private:
    sf::VertexArray vertices_;
};

struct Row {
    const char* workload;
    MakeSide make;
};
constexpr Row rows[] = {
    {"state/blending", makeSide<Scope>},
    {"lines/aliased", makeSide<Lines<sf::Lines, shortLines>>},
    {"strip/thin", makeSide<Lines<sf::LineStrip, walk>>},
};

std::vector<Workload> sharedWorkloads() {
    std::vector<Workload> all = workloads();
    for (Workload& workload : canvasWorkloads())
        all.push_back(std::move(workload));
    std::vector<Workload> shared;
    for (Workload& workload : all) {
        for (const Row& row : rows) {
            if (workload.name != std::string(row.workload))
                continue;
            workload.implementations.push_back({"sfml", row.make});
            shared.push_back(std::move(workload));
            break;
        }
    }
    return shared;
}

} // namespace
} // namespace vellis::bench

int main(int argc, char** argv) {
    if (!vellis::bench::target().create(vellis::bench::pictureSize, vellis::bench::pictureSize) ||
        !vellis::bench::target().setActive(true) || !vellis::engine::init()) {
        std::fputs("SFML makes no context that vellis can use.\n", stderr);
        return EXIT_FAILURE;
    }
    // SFML sets the viewport of its own drawing only.
    glViewport(0, 0, vellis::bench::pictureSize, vellis::bench::pictureSize);
    return vellis::bench::runTimesHere(argc, argv, vellis::bench::sharedWorkloads());
}

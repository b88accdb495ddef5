/// The times of a scope of GL state, SFML's among them. SFML draws in contexts of its own only,
/// which need an X server: this program runs all sides in one of those.
///
/// Usage: vellis_sfml_benchmarks [options of Google Benchmark]

#include <cstdio>
#include <cstdlib>
#include <string>

#include <SFML/Graphics/RenderTexture.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

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

std::vector<Workload> scopes() {
    std::vector<Workload> all;
    for (Workload& workload : workloads()) {
        if (workload.name != std::string("state/blending"))
            continue;
        workload.implementations.push_back({"sfml", makeSide<Scope>});
        all.push_back(std::move(workload));
    }
    return all;
}

} // namespace
} // namespace vellis::bench

int main(int argc, char** argv) {
    if (!vellis::bench::target().create(16, 16) || !vellis::bench::target().setActive(true) ||
        !vellis::engine::init()) {
        std::fputs("SFML makes no context that vellis can use.\n", stderr);
        return EXIT_FAILURE;
    }
    return vellis::bench::runTimesHere(argc, argv, vellis::bench::scopes());
}

/// What is looked at during a run and at its end.

#include "fuzz/machine/host.hpp"

#include <cstdint>
#include <iterator>
#include <utility>

#include "fuzz/machine/state_machine.hpp"

namespace vellis::test {
namespace {

/// Whether a name, such as `framebuffer 7`, is one that contexts do not share.
bool isOwn(const std::string& name) {
    return name.rfind("vertex array", 0) == 0 || name.rfind("framebuffer", 0) == 0;
}

} // namespace

void Host::lookForViolations() {
    const auto look = [this](Window& window) {
        const std::string violation = window.lastViolation();
        if (violation_.empty() && !violation.empty())
            violation_ = "a name that is not there, in GL context " +
                         std::to_string(window.number) + ": " + violation;
    };
    look(process_);
    for (Window& window : windows_)
        look(window);
}

/// All that a Context keeps for itself, so that there is something for it to release.
void Host::fillRegistries() {
    static constexpr std::uint8_t generations[] = {mostGenerations - 1, mostGenerations - 1};
    Bytes bytes(generations, std::size(generations));
    World world;
    fill(world);
    world.meddlingBuffers.add(bytes);
    world.meddlingPrograms.add(bytes);
    BufferObjectManager::instance().add(world.vertices[0].object);
    ProgramManager::instance().add(world.programs[0].object);
    Toolbox::getVertexBuffer();
    Program::current();
    Program::null();
}

std::string Host::whatIsLeft(const Window& window, bool areNamesLost) const {
    if (window.gl == nullptr)
        return "";
    std::string problem = strayNames("deleted twice: ", window.gl->doubleDeletes(), {});
    for (const std::string& name : window.gl->liveNames()) {
        const bool mayBeLeft = isOwn(name) ? window.hasLeftovers : window.sharing->hasLeftovers;
        if (!areNamesLost && !mayBeLeft && problem.empty())
            problem = "left: " + name;
    }
    return problem;
}

/// Ends what the run has put into registries, which may be of any group, ahead of the Contexts.
void Host::emptyRegistries(const KeptObjects& kept) {
    for (Window& window : windows_) {
        if (window.isAlive() && window.gl == nullptr) {
            noteLeftovers(window);
            const EndWithoutGl ends(true);
            window.context->abandon();
        }
        if (!window.isUsable())
            continue;
        makeCurrent(&window);
        window.context->use();
        for (int i = 0; i < mostGenerations; ++i) {
            ProgramManager::dispose();
            BufferObjectManager::dispose();
        }
    }
    makeCurrent(&process_);
    Context::useProcess();
    inUse_ = &process_;
    kept.restore();
}

std::string Host::end(const KeptObjects& kept, bool areNamesLost) {
    while (!scopes_.empty())
        endLastScope();
    emptyRegistries(kept);
    keepsakes_ = {};
    for (Window& window : windows_) {
        if (!window.isUsable())
            continue;
        makeCurrent(&window);
        window.context->use();
        fillRegistries();
    }
    for (Window& window : windows_) {
        if (!window.isUsable())
            continue;
        makeCurrent(&window);
        window.context->dispose();
    }
    makeCurrent(&process_);
    Context::useProcess();
    lookForViolations();
    std::string problem = std::exchange(violation_, {});
    for (Window& window : windows_) {
        if (problem.empty())
            problem = whatIsLeft(window, areNamesLost);
    }
    windows_ = {};
    return problem;
}

} // namespace vellis::test

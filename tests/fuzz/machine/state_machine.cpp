#include "fuzz/machine/state_machine.hpp"

#include <map>
#include <new>
#include <optional>
#include <utility>

#include <vellis/gl.hpp>

namespace vellis::test {
namespace {

/// Calls \p function with each place for objects that say whether they are bound.
template <class Function>
void forEachBindable(World& world, Function function) {
    const auto inAll = [&](auto&... places) {
        const auto inOne = [&](auto& objects) {
            for (auto& object : objects) {
                if (object.object != nullptr)
                    function(object);
            }
        };
        (inOne(places), ...);
    };
    inAll(world.vertices, world.indices, world.pixels, world.programs);
}

void requireTruth(World& world) {
    forEachBindable(world, [&](const auto& place) {
        world.require(place.isBound == place.object->isBound(), "isBound() is not true");
    });
    for (const Target& target : world.framebuffers) {
        if (target.object == nullptr)
            continue;
        const bool isBound =
            target.exists(world) &&
            (glBindFramebuffer != nullptr ? observedName(target.binding) == target.object->id()
                                          : target.isDefault);
        world.require(target.object->isBound() == isBound,
                      "isBound() of a framebuffer is not true");
    }
    world.require(Program::current().id() == observedName(GL_CURRENT_PROGRAM),
                  "Program::current() is another program");
}

/// What was observed last of each GL context.
using States = std::map<unsigned int, std::vector<ObservedValues>>;

/// One call, and a look at what it did to the state that was last seen of the GL context.
void step(World& world, const Operation& operation, Bytes& bytes, Surroundings& surroundings,
          States& states) {
    surroundings.beforeOperation(bytes);
    try {
        operation.run(world, bytes);
        surroundings.afterOperation();
    } catch (const std::bad_alloc&) {
        surroundings.afterOperation();
        lookWhatIsBound(world);
    }
    surroundings.settle(world);
    requireTruth(world);
    std::vector<ObservedValues>& state = states[surroundings.place()];
    const std::vector<ObservedValues> before = std::exchange(state, observe());
    const std::string broken = brokenPromise(operation.promise, before, state);
    if (!broken.empty() && world.problem.empty())
        world.problem = broken;
}

/// Takes the errors of refused calls from GL's queue.
void drainErrors() {
    for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i) {
    }
}

std::string report(const std::string& problem, const std::vector<const char*>& calls) {
    std::string text = problem + ", after";
    const std::size_t first = calls.size() > 20 ? calls.size() - 20 : 0;
    for (std::size_t i = first; i < calls.size(); ++i)
        text += std::string("\n  ") + calls[i];
    return text + "\n";
}

} // namespace

void lookWhatIsBound(World& world) {
    forEachBindable(world, [](auto& place) { place.isBound = place.object->isBound(); });
}

void fill(World& world) {
    for (const Operation& operation : operations()) {
        if (std::string(operation.name).find(": make") != std::string::npos) {
            Bytes none(nullptr, 0);
            operation.run(world, none);
        }
    }
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> table;
        for (const auto part :
             {bufferOperations, shadingOperations, drawingOperations, textureOperations,
              framebufferOperations, stateOperations, canvasOperations}) {
            const std::vector<Operation> rows = part();
            table.insert(table.end(), rows.begin(), rows.end());
        }
        return table;
    }();
    return all;
}

std::string runStateMachine(Bytes bytes, Surroundings& surroundings, std::size_t maxSteps) {
    Bytes none(nullptr, 0); // nothing fails
    std::optional<World> world(std::in_place);
    world->canCopyOwners = surroundings.canCopyOwners();
    surroundings.begin(*world, bytes);
    surroundings.beforeOperation(none);
    fill(*world);
    surroundings.afterOperation();
    surroundings.settle(*world);
    drainErrors();
    States states;
    states[surroundings.place()] = observe();
    std::vector<const char*> calls;
    for (std::size_t i = 0; i < maxSteps && !bytes.isAtEnd() && world->problem.empty(); ++i) {
        const std::vector<Operation>& table = surroundings.operations();
        const Operation& operation = table[bytes.below(table.size())];
        calls.push_back(operation.name);
        step(*world, operation, bytes, surroundings, states);
        drainErrors();
    }
    std::string problem = world->problem;
    const std::set<std::string> copiedNames = world->copiedNames;
    surroundings.beforeOperation(none);
    world.reset();
    const std::string left = surroundings.end(copiedNames);
    if (problem.empty())
        problem = left;
    return problem.empty() ? "" : report(problem, calls);
}

} // namespace vellis::test

#include <vellis/state/tracked_states.hpp>

#include <array>
#include <iterator>
#include <string>

#include <vellis/gl.hpp>

#include "gl/context_state.hpp"
#include "gl/log.hpp"
#include "state/state_values.hpp"

namespace vellis::internal {
namespace {

constexpr StateRow trackedStates[] = {
#define VELLIS_TRACKED_STATE(name, kind, count) {#name, GL_##name, ValueKind::kind, count},
#include "state/tracked_states.inc"
#undef VELLIS_TRACKED_STATE
};
static_assert(haveRoom(trackedStates));

/// What diff_gl_states() remembers of a tracked state, for the life of the process or of a Context.
struct Remembered {
    bool isFirstCall = true;
    StateValues values;
};
using AllRemembered = std::array<Remembered, std::size(trackedStates)>;

AllRemembered& remembered() {
    static AllRemembered ofProcess;
    if (gl::thread().state != nullptr)
        return gl::thread().state->at<AllRemembered>(gl::Slot::TrackedStates);
    return ofProcess;
}

void diff(const StateRow& state, Remembered& previous) {
    StateValues current = query(state);
    if (!previous.isFirstCall && !equal(state, previous.values, current)) {
        StateValues old = previous.values; // which stay where memory for a text runs out
        const std::string before = text(state, old);
        const std::string after = text(state, current);
        const std::string title = std::string(logTitle) + " DIFF ";
        printLine(title.c_str(), state.label + (" = " + before + " -> " + after));
    }
    previous.values = current;
    previous.isFirstCall = false;
}

} // namespace

void print_gl_states() {
    for (const StateRow& state : trackedStates)
        printState(state);
}

void diff_gl_states() {
    Remembered* previous = remembered().data();
    for (const StateRow& state : trackedStates)
        diff(state, *previous++);
}

} // namespace vellis::internal

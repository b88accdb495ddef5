#include <vellis/state/tracked_states.hpp>

#include <array>
#include <cstdint>
#include <iterator>
#include <string>

#include <vellis/gl.hpp>

#include "gl/context_state.hpp"
#include "gl/log.hpp"
#include "state/later_enumerators.hpp"
#include "state/snapshot_pieces.hpp"
#include "state/state_values.hpp"

namespace vellis::internal {
namespace {

/// A tracked state, in little room: the rest is in the row of snapshot_pieces.inc of its name.
struct TrackedState {
    std::uint8_t piece;
    std::uint8_t count;
    ValueKind kind;

    unsigned int pname() const { return state::snapshot::pieces[piece].pname; }
    StateRow row(const char* label) const { return {label, pname(), kind, count}; }
    std::string label() const { return nameOf(state::snapshot::pieces[piece]).substr(3); }
};

constexpr std::uint8_t pieceOf(unsigned int pname) {
    constexpr std::uint16_t pnames[] = {
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups)        \
    GL_##name,
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
    };
    std::uint8_t piece = 0;
    while (pnames[piece] != pname)
        ++piece;
    return piece;
}

constexpr TrackedState trackedStates[] = {
#define VELLIS_TRACKED_STATE(name, kind, count) {pieceOf(GL_##name), count, ValueKind::kind},
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

void diff(const TrackedState& state, Remembered& previous) {
    const StateRow unnamed = state.row("");
    StateValues current = query(unnamed);
    if (!previous.isFirstCall && !equal(unnamed, previous.values, current)) {
        StateValues old = previous.values; // which stay where memory for a text runs out
        const std::string before = text(unnamed, old);
        const std::string after = text(unnamed, current);
        const std::string title = std::string(logTitle) + " DIFF ";
        printLine(title.c_str(), state.label() + (" = " + before + " -> " + after));
    }
    previous.values = current;
    previous.isFirstCall = false;
}

} // namespace

void print_gl_states() {
    for (const TrackedState& state : trackedStates)
        printState(state.row(state.label().c_str()));
}

void diff_gl_states() {
    Remembered* previous = remembered().data();
    for (const TrackedState& state : trackedStates)
        diff(state, *previous++);
}

} // namespace vellis::internal

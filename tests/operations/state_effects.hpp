#pragma once

#include <string>
#include <vector>

#include "operations/operations.hpp"

/// \file
/// What GL calls do to the state of the context.

namespace vellis::test {

/// A piece of the context's state that a GL call sets.
struct StateSet {
    std::string state; ///< GL's name for it
    std::string value; ///< as the call writes it
};

/// What a recorded call sets: nothing, or one piece of state, or a few.
std::vector<StateSet> stateSetBy(const std::string& call);

/// What an operation does to one piece of state.
struct Effect {
    enum class Kind {
        Value,   ///< leaves one value, whatever it was given: 0, on or off
        Asked,   ///< leaves what it was asked for
        Saved,   ///< leaves what another operation saved
        PutBack, ///< changes it for a while
    };
    std::string state;
    Kind kind;
    std::string value;
};

/// What an operation did, in the order of its first call for each state.
std::vector<Effect> effectsOf(const Use& use);

} // namespace vellis::test

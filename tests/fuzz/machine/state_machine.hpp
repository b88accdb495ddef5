#pragma once

#include <set>
#include <string>

#include "fuzz/machine/bytes.hpp"
#include "fuzz/machine/operations.hpp"

namespace vellis::test {

/// Where a state machine runs: a GL, and what can go wrong with it.
class Surroundings {
public:
    Surroundings() = default;
    virtual ~Surroundings() = default;
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    /// Whether a second deletion of a name is harmless.
    virtual bool canCopyOwners() const { return false; }

    /// Takes away what a context may lack, if the bytes say so.
    virtual void begin(Bytes&) {}

    /// Makes GL or the memory fail, if the bytes say so.
    virtual void beforeOperation(Bytes&) {}

    /// Lets neither fail.
    virtual void afterOperation() {}

    /// Looks at what is left after all objects have gone, and makes the next run begin like the
    /// first. Copies have deleted \p copiedNames before their owners did.
    /// \return what is wrong; empty where all is well.
    virtual std::string end(const std::set<std::string>& copiedNames) = 0;
};

/// How far a fuzzed input goes.
constexpr std::size_t maxFuzzedSteps = 200;

/// Calls the library as the bytes say, at most \p maxSteps times, and looks at the GL after each
/// call: whether what the documentation promises of bindings, state and objects holds.
/// \return the first promise that was broken, and the calls up to there; empty where none was.
std::string runStateMachine(Bytes bytes, Surroundings& surroundings, std::size_t maxSteps);

} // namespace vellis::test

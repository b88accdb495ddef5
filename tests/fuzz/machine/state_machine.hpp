#pragma once

#include <set>
#include <string>
#include <vector>

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

    /// What there is to call.
    virtual const std::vector<Operation>& operations() const { return test::operations(); }
    /// Takes away what a context may lack, if the bytes say so.
    virtual void begin(World&, Bytes&) {}

    /// Makes GL or the memory fail, if the bytes say so.
    virtual void beforeOperation(Bytes&) {}

    /// Lets neither fail.
    virtual void afterOperation() {}

    /// Looks at what only the surroundings know, and sees to it that operations can go on.
    virtual void settle(World&) {}
    /// The GL context whose state there is to look at, by a number that no other one has.
    virtual unsigned int place() const { return 0; }
    /// Looks at what is left after all objects have gone, and makes the next run begin like the
    /// first. Copies have deleted \p copiedNames before their owners did.
    /// \return what is wrong; empty where all is well.
    virtual std::string end(const std::set<std::string>& copiedNames) = 0;
};

/// How far a fuzzed input goes.
constexpr std::size_t maxFuzzedSteps = 200;

/// Some objects of each kind, so that operations have something to work on.
void fill(World& world);

/// Learns from the objects whether they are bound: what is left half way, or done elsewhere, may
/// have bound or unbound them.
void lookWhatIsBound(World& world);

/// Calls the library as the bytes say, at most \p maxSteps times, and looks at the GL after each
/// call: whether what the documentation promises of bindings, state and objects holds.
/// \return the first promise that was broken, and the calls up to there; empty where none was.
std::string runStateMachine(Bytes bytes, Surroundings& surroundings, std::size_t maxSteps);

} // namespace vellis::test

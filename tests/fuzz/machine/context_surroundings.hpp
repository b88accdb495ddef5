#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "fuzz/machine/faulty_gl.hpp"
#include "fuzz/machine/host.hpp"
#include "fuzz/machine/kept_objects.hpp"
#include "fuzz/machine/state_machine.hpp"
#include "support/fake_gl.hpp"

namespace vellis::test {

/// A state machine's surroundings with several fake GL contexts, each with names of its own, that
/// come and go with their Contexts beside that of the process; they may fail, and memory may run
/// out. One at a time, and not beside others.
class ContextSurroundings : public Surroundings {
public:
    ContextSurroundings();
    ~ContextSurroundings() override;

    const std::vector<Operation>& operations() const override;
    void begin(World& world, Bytes& bytes) override;
    void beforeOperation(Bytes& bytes) override;
    void afterOperation() override;
    void settle(World& world) override;
    unsigned int place() const override { return host_.here().place; }
    std::string end(const std::set<std::string>& copiedNames) override;

private:
    FakeContext& process() { return *host_.ofProcess().gl; }

    FakeGl gl_; // whose recorders the contexts have
    Host host_;
    std::optional<Faults> faults_;
    bool mayMemoryFail_ = false;
    std::vector<std::string> names_; ///< those of the objects that the library keeps
    std::optional<KeptObjects> kept_;
};

} // namespace vellis::test

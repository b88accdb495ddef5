#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/machine/faulty_gl.hpp"
#include "fuzz/machine/kept_objects.hpp"
#include "fuzz/machine/state_machine.hpp"
#include "support/fake_gl.hpp"

namespace vellis::test {

/// A state machine's surroundings without a driver: a fake GL that may lack extensions and fail,
/// and memory that may run out. One at a time, since the library makes some objects once.
class FakeSurroundings : public Surroundings {
public:
    FakeSurroundings();
    ~FakeSurroundings() override;

    bool canCopyOwners() const override { return true; }
    void begin(World& world, Bytes& bytes) override;
    void beforeOperation(Bytes& bytes) override;
    void afterOperation() override;
    std::string end(const std::set<std::string>& copiedNames) override;

private:
    FakeGl gl_;
    Faults faults_;
    unsigned int missing_ = 0;
    std::vector<std::string> names_; ///< those of the objects that the library keeps
    std::optional<KeptObjects> kept_;
};

} // namespace vellis::test

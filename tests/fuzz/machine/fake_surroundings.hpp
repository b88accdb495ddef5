#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "faults/failing_allocations.hpp"
#include "fuzz/machine/state_machine.hpp"
#include "support/fake_gl.hpp"

namespace vellis::test {

/// A state machine's surroundings without a driver: a fake GL that may lack extensions and fail,
/// and memory that may run out. One per process, since the library makes some objects once.
class FakeSurroundings : public Surroundings {
public:
    FakeSurroundings();
    ~FakeSurroundings() override;

    bool canCopyOwners() const override { return true; }
    void begin(Bytes& bytes) override;
    void beforeOperation(Bytes& bytes) override;
    void afterOperation() override;
    std::string end(const std::set<std::string>& copiedNames) override;

private:
    void modelState();
    void resetGl();
    void setMissing(unsigned int extensions);

    FakeGl gl_;
    std::optional<FailingAllocations> failing_;
    unsigned int missing_ = 0;
    std::vector<std::string> names_; ///< those of the objects that the library keeps
    struct Kept;
    std::unique_ptr<Kept> kept_;
};

} // namespace vellis::test

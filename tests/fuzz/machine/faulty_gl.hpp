#pragma once

#include <optional>

#include "faults/failing_allocations.hpp"
#include "fuzz/machine/bytes.hpp"
#include "support/recorded_gl.hpp"
#include "support/state_model.hpp"

namespace vellis::test {

/// Gives the context that is current the state of a new one.
void resetState();

/// Gives a fake GL the uniforms of its programs and the size of its textures, as the bytes choose.
void chooseContents(RecordedGl& gl, Bytes& bytes);

/// The same as a first choice.
void chooseContents(RecordedGl& gl);

/// One fault at a time, of a fake GL or of the memory.
class Faults {
public:
    /// Makes one of the two fail, if the bytes say so; the memory only where it may.
    void begin(RecordedGl& gl, Bytes& bytes, bool mayMemoryFail = true);

    /// Lets neither fail.
    void end(RecordedGl& gl);

    /// Whether the memory has ever failed.
    bool hasMemoryFailed() const { return hasMemoryFailed_; }

private:
    bool hasMemoryFailed_ = false;
    std::optional<FailingAllocations> failing_;
};

/// An entry point that a context may lack, with the number of its extension.
struct OptionalEntryPoint {
    const char* name;
    unsigned int extension;
    void (*set)(bool isThere);
};

/// The entry point of that name, or null.
const OptionalEntryPoint* findOptional(const char* name);

/// Takes away the entry points of the extensions whose bits are set, and puts back the others.
void setMissing(unsigned int extensions);

} // namespace vellis::test

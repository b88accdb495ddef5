#pragma once

#include <vector>

#include "fuzz/machine/bytes.hpp"
#include "fuzz/machine/observed_state.hpp"
#include "fuzz/machine/world.hpp"

namespace vellis::test {

/// A call of the library with arguments from the bytes, on objects of the world. It does nothing
/// where there is no such object.
struct Operation {
    const char* name;
    void (*run)(World&, Bytes&);
    Promise promise;
};

/// All of them; the bytes choose by position.
const std::vector<Operation>& operations();

// The parts of the table.
std::vector<Operation> bufferOperations();
std::vector<Operation> shadingOperations();
std::vector<Operation> drawingOperations();
std::vector<Operation> textureOperations();
std::vector<Operation> framebufferOperations();
std::vector<Operation> stateOperations();
std::vector<Operation> canvasOperations();

} // namespace vellis::test

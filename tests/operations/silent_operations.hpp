#pragma once

#include "operations/operations.hpp"

namespace vellis::test {

/// The operations that allocate memory and call no GL, which the pages' tables therefore lack, and
/// those that only a class of the application's own can reach.
void useSilentOperations(UseRecorder& use);

/// What a canvas allocates when it is first drawn with.
void useNewCanvases(UseRecorder& use);

} // namespace vellis::test

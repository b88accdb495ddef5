#pragma once

namespace vellis::engine {

/// Whether dispose() has been called: what the process has one of is not made from then on.
bool isDisposed();

} // namespace vellis::engine

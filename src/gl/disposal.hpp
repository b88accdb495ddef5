#pragma once

namespace vellis::gl {

/// Whether engine::dispose has been called: what the process has one of is not made from then on.
inline bool isDisposed = false;

} // namespace vellis::gl

#pragma once

#include "gl/context_state.hpp"

namespace vellis::gl {

/// Whether engine::dispose has been called while no Context was in use.
inline bool isProcessDisposed = false;

/// Whether what there is one of is not made any more.
inline bool isDisposed() {
    return thread().state != nullptr ? thread().state->isClosing : isProcessDisposed;
}

} // namespace vellis::gl

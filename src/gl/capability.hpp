#pragma once

#include <vellis/gl.hpp>

namespace vellis::state {

/// `glEnable` or `glDisable`.
inline void switchCapability(unsigned int capability, bool on) {
    if (on)
        glEnable(capability);
    else
        glDisable(capability);
}

} // namespace vellis::state

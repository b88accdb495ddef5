#pragma once

#include <vellis/gl.hpp>

#include "gl/loader.hpp"

namespace vellis::state {

/// `glEnable` or `glDisable`.
inline void switchCapability(unsigned int capability, bool on) {
    if (on)
        glEnable(capability);
    else
        glDisable(capability);
}

/// `glLineWidth`, but for a width that the context does not have.
inline void setLineWidth(float width) {
    if (!(width > 1.f) || loader::profile() != loader::Profile::ForwardCompatible)
        glLineWidth(width);
}

} // namespace vellis::state

#pragma once

#include <vellis/gl.hpp>

#include "gl/loader.hpp"

namespace vellis::gl {

/// Whether the context has what GL 3.1 has removed. Asks GL from 3.2 on.
inline bool keepsFixedFunctions() {
    return GLAD_GL_VERSION_3_2 != 0 ? !loader::saysCoreProfile(glGetIntegerv)
                                    : GLAD_GL_VERSION_3_1 == 0;
}

} // namespace vellis::gl

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

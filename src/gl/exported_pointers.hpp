#pragma once

#include "gl/entry_point_table.hpp"

namespace vellis::loader {

/// Gives the pointers and flags that <vellis/gl.hpp> declares those of a structure. What has its
/// value already is not written. Not to be called twice at the same time.
void assignExported(const GladGLContext& context) noexcept;

} // namespace vellis::loader

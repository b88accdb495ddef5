#pragma once

#include "support/recorded_gl.hpp"

/// \file
/// State of a fake context that calls set and queries give, as GL has it.

namespace vellis::test {

/// Lets the calls that set the state of blending, rasterisation, the framebuffer and pixel stores
/// set what queries give. At first that is the state that GL begins with, for a window of that
/// size.
void modelState(RecordedGl& gl, int width = 64, int height = 64);

} // namespace vellis::test

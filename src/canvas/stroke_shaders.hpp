#pragma once

/// \file
/// The shaders of strokes. See stroke_shaders.cpp.

namespace vellis::canvas {

extern const char strokeVertexSource[];
extern const char strokeFragmentSource[];

} // namespace vellis::canvas

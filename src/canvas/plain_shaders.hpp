#pragma once

/// \file
/// The shaders of all but strokes. A version line, `IN`, `OUT`, `OUT0` and `TEXTURE` stand in front
/// of them, and a line for each variant: see programs.cpp.

namespace vellis::canvas {

/// Lines and triangles of GL's own.
extern const char flatVertexSource[];
extern const char flatFragmentSource[];

/// Round points, each in a triangle around it.
extern const char discVertexSource[];
extern const char discFragmentSource[];

/// A colour where a mask is.
extern const char maskVertexSource[];
extern const char maskFragmentSource[];
extern const char imageVertexSource[];
extern const char imageFragmentSource[];

} // namespace vellis::canvas

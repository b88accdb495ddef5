#pragma once

#include "canvas/drawing.hpp"

namespace vellis::canvas {

/// Fewer commands than these are left as they are.
constexpr std::size_t fewestToJoin = 16;

/// Joins commands of one look whose records follow each other, where none of those in between
/// touches a pixel of the later one: each pixel is painted in the order of before, in fewer calls.
///
/// \param drawing   One that is streamed: its records stand in memory for each vertex.
/// \param viewport  As in glViewport.
void joinApart(Drawing& drawing, const int (&viewport)[4]);

} // namespace vellis::canvas

#pragma once

/// \file
/// The shaders of strokes: a quad for each segment, in which each pixel gets the share of it that
/// the stroke covers.
///
/// The texts begin without `#version` and compile as GLSL 1.20 and 1.50. Before them stand the
/// version, `IN` and `OUT` (attribute and varying, or in and out), `FLAT` and `LINEAR` (flat and
/// noperspective, or nothing), in the fragment stage `OUT0` and, where it is no built-in name, its
/// declaration, the ends and the variant. The ends, known when a program is made, cost a pixel
/// nothing where they are not its own:
///
/// - `join`: 0. for miter, 1. for round, 2. for bevel
/// - `cap`: 0. for butt, 1. for square, 2. for round
///
/// The variants:
///
/// - nothing: half width and colour come with each record.
/// - `UNIFORM_STYLE`: they are the uniforms `halfWidth` and `styleColor`; the attributes
///   `phaseAndHalf` and `color` do not exist. Not together with the other two.
/// - `DASHED`: with dashes; it takes twice the time.
/// - `GRADIENT`: the colour goes from `color` at the start to `nextColor` at the end.
///
/// A segment goes from p1 to p2; p0 and p3 are its neighbours. p0 equal to p1, or p2 to p3, is the
/// end of a line and gets a cap. Nothing is drawn where p1 is p2 or the half width is 0.
///
/// | attribute | what it is |
/// |---|---|
/// | `vec2 corner` | 0 or 1, at the start or the end; -1 or 1, the side |
/// | `vec3 p0, p1, p2, p3` | four points in a row |
/// | `vec2 phaseAndHalf` | the distance of p1 along the line, modulo the period; half the width |
/// | `vec4 color, nextColor` | at p1 and p2 |
///
/// | uniform | stage | what it is |
/// |---|---|---|
/// | `mat4 matrix` | vertex | from points to clip coordinates |
/// | `vec4 viewport` | vertex | as in glViewport; only the size counts |
/// | `float miterLimit` | both | the largest length of a miter by the width, else it is a bevel |
/// | `float halfWidth`, `vec4 styleColor` | vertex | with `UNIFORM_STYLE` |
/// | `mat4 dashMatrix` | vertex | the matrix when the phases were computed |
/// | `vec2 dashScale` | vertex | half the viewport's size at that time |
/// | `vec4 dashes[2]` | fragment | where up to four dashes have their middles; half their lengths |
/// | `float dashPeriod` | fragment | the sum of all lengths, on and off |
///
/// With fewer than four dashes the first one is repeated. All lengths of dashes are those of the
/// time when the phases were computed. Where a closed line is not on both at its start and at its
/// end, it is to be drawn as an open one, whose last point is the first: there is no join then.
///
/// Where a line crosses itself, blending sees its pixels twice; at its joins it does not, but for
/// dashes and for segments shorter than the width. Where that matters, draw in white with GL_MAX
/// into a picture of its own, whose alpha then is the coverage.

namespace vellis::canvas {

extern const char strokeVertexSource[];
extern const char strokeFragmentSource[];

} // namespace vellis::canvas

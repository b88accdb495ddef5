#pragma once

/// \file
/// Typed records of GL state that can be read and written back.

#include <vellis/export.hpp>

/// Typed records of GL state.
///
/// \code
/// vellis::state::State<int, 4, GL_VIEWPORT> viewport{};
/// vellis::state::get(viewport); // one glGetIntegerv
/// glViewport(0, 0, 64, 64);     // ... draw into a corner ...
/// vellis::state::set(viewport); // glViewport with the saved values
/// \endcode
namespace vellis::state {

/// The values of one piece of GL state, or of a few that one GL command sets together. A plain
/// aggregate of exactly \p N values: no flag, no context. The values are whatever the last get, or
/// the caller, wrote.
///
/// get and set are there for these 46 records; any other combination does not link.
///
/// Records of `int`, names and enumerators included, with 1 value:
/// - `GL_TEXTURE_BINDING_1D`, `…_2D`, `…_3D`, `…_RECTANGLE`, `…_CUBE_MAP`, `…_1D_ARRAY`,
///   `…_2D_ARRAY`, and `GL_ACTIVE_TEXTURE` (`GL_TEXTURE0` + unit)
/// - `GL_VERTEX_ARRAY_BINDING`, `GL_ELEMENT_ARRAY_BUFFER_BINDING`, `GL_CURRENT_PROGRAM`,
///   `GL_RENDERBUFFER_BINDING`
/// - `GL_CULL_FACE_MODE`, `GL_DEPTH_FUNC`, `GL_STENCIL_CLEAR_VALUE`, `GL_LOGIC_OP_MODE`
/// - `GL_DRAW_BUFFER`, `GL_READ_BUFFER`, `GL_UNPACK_ALIGNMENT`, `GL_PACK_ALIGNMENT`
///
/// With more:
/// - 2: `GL_BLEND_EQUATION_RGB` (colour, alpha), `GL_DRAW_FRAMEBUFFER_BINDING` (draw, read),
///   `GL_POLYGON_MODE` (front, back)
/// - 3: `GL_STENCIL_FUNC`, `GL_STENCIL_BACK_FUNC` (function, reference, value mask),
///   `GL_STENCIL_FAIL`, `GL_STENCIL_BACK_FAIL` (stencil fails, depth fails, both pass)
/// - 4: `GL_BLEND_SRC_RGB` (source and destination colour, source and destination alpha),
///   `GL_VIEWPORT`, `GL_SCISSOR_BOX` (x, y, width, height)
///
/// Records of other types:
/// - `float`: `GL_POINT_SIZE`, `GL_LINE_WIDTH` (1), `GL_COLOR_CLEAR_VALUE` (4)
/// - `double`: `GL_DEPTH_CLEAR_VALUE` (1), `GL_DEPTH_RANGE` (2)
/// - `bool`: `GL_PROGRAM_POINT_SIZE`, `GL_LINE_SMOOTH`, `GL_POLYGON_SMOOTH`, `GL_CULL_FACE`,
///   `GL_DEPTH_TEST`, `GL_STENCIL_TEST`, `GL_BLEND`, `GL_COLOR_LOGIC_OP`, `GL_SCISSOR_TEST`,
///   `GL_DEPTH_WRITEMASK` (1), `GL_COLOR_WRITEMASK` (4)
///
/// \tparam T      `int`, `float`, `double` or `bool`.
/// \tparam N      How many values.
/// \tparam pname  The GL enumerator that names the state; of several, the first.
template <class T, unsigned int N, unsigned int pname>
struct State {
    T value[N]; ///< the values, in GL's order
};

/// Reads all values of \p record from the current context with `glGetIntegerv`, `glGetFloatv`,
/// `glGetDoublev` or `glGetBooleanv`: with one query, or with one for each value where GL keeps
/// them under names of their own. A value that GL refuses to tell is 0 or false; the error stays in
/// GL's queue.
template <class T, unsigned int N, unsigned int pname>
VELLIS_EXPORT void get(State<T, N, pname>& record);

/// Writes \p record into the current context with the GL command that owns the state, without
/// asking first whether anything changes. Errors, such as for a name that was deleted meanwhile,
/// stay in GL's queue.
///
/// The stencil records write their own face only. A framebuffer record whose two names are equal is
/// one `glBindFramebuffer(GL_FRAMEBUFFER, …)`, otherwise a bind for drawing, then one for reading.
/// Bindings of vertex arrays, framebuffers and renderbuffers are left alone where the context has
/// no such objects.
template <class T, unsigned int N, unsigned int pname>
VELLIS_EXPORT void set(const State<T, N, pname>& record);

} // namespace vellis::state

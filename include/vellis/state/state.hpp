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
/// get and set are there for the 46 records of this table, which they are made from; any other
/// combination does not link. Of each it says the type, the number of values, the enumerator that
/// names the record, what GL is asked for, in the order of the values, and the command that writes
/// them back.
///
/// \include vellis/state/state_records.inc
///
/// `GL_ACTIVE_TEXTURE` is `GL_TEXTURE0` and the unit; `GL_POLYGON_MODE` has the mode of the front
/// and that of the back; rectangles have x, y, width and height.
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
/// In a core context, which has one polygon mode for both faces, these get that of the front; in a
/// forward-compatible one a line width over 1 does nothing. Bindings of vertex arrays, framebuffers
/// and renderbuffers are left alone where the context has no such objects.
template <class T, unsigned int N, unsigned int pname>
VELLIS_EXPORT void set(const State<T, N, pname>& record);

} // namespace vellis::state

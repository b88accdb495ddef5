#pragma once

/// \file
/// Start-up and shut-down.

#include <vellis/export.hpp>

/// Start-up and shut-down of the library.
///
/// \code
/// // A GL context is current on this thread.
/// if (!vellis::engine::init())
///     return EXIT_FAILURE;
/// // ... make objects, draw ...
/// vellis::engine::dispose(); // the context is still current
/// \endcode
///
/// The library has no threads and no locks: every call belongs on the thread whose context is
/// current.
namespace vellis::engine {

/// Loads the GL entry points of the current context. Call it once before anything else of the
/// library, and again after a change to a context with other capabilities: every pointer is then
/// loaded anew.
///
/// Prints nothing and calls no GL beyond the loader's queries (`glGetString`, and on GL 3.0 and
/// later `glGetIntegerv` and `glGetStringi` for the extension list). An extension that is missing
/// is no failure: its entry points stay null, and the operations that need them do nothing.
///
/// \return true when the entry points are loaded; false where no context is current or the system's
///         GL library cannot be used. A failed call leaves the entry points as they were.
VELLIS_EXPORT bool init();

/// Releases the GL objects that the library's registries still hold: programs first, the built-in
/// ones included, then buffers. Call it last, with the context
/// still current. Objects that the application holds itself keep their GL names.
///
/// The entry points stay loaded and the library may be used again, but for the built-in programs
/// and the Toolbox, whose calls do nothing from now on.
VELLIS_EXPORT void dispose();

} // namespace vellis::engine

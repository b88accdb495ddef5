#pragma once

/// \file
/// Start-up and shut-down.

#include <vellis/export.hpp>

/// Start-up and shut-down of the library.
///
/// \code
/// // A GL context is current on this thread.
/// if (!vellis::engine::init())
///     return EXIT_FAILURE; // there is no context, or no OpenGL on this system
/// if (!GLAD_GL_VERSION_2_1) // of <vellis/gl.hpp>
///     return EXIT_FAILURE; // tell the user that OpenGL 2.1 is needed, and GLVersion is there
/// // ... make objects, draw ...
/// vellis::engine::dispose(); // the context is still current
/// \endcode
///
/// This is for a program with one context on one thread: all calls belong there, and so does the
/// end of every object that has a GL name. For all others there is Context.
namespace vellis::engine {

/// Loads the GL entry points of the current context. Call it once before anything else of the
/// library, and again after a change to a context with other capabilities: every pointer is then
/// loaded anew.
///
/// Prints nothing and calls no GL beyond the loader's queries (`glGetString`, and on GL 3.0 and
/// later `glGetIntegerv` and `glGetStringi` for the extension list). An extension that is missing
/// is no failure: its entry points stay null, and the operations that need them do nothing.
///
/// A context of a version below 2.1 is no failure either, but the calls that it lacks must not be
/// made: ask `GLAD_GL_VERSION_2_1` or `GLVersion` of <vellis/gl.hpp>.
///
/// \return true when the entry points are loaded; false where no context is current or the system's
///         GL library cannot be used. A failed call leaves the entry points and the flags as they
///         were; `GLVersion` is then 0.0.
///
/// With a Context in use the entry points are those of that one from then on.
VELLIS_EXPORT bool init();

/// Releases the GL objects that the library's registries still hold: programs first, the built-in
/// ones included, then buffers. Call it last, with the context still current. Objects that the
/// application holds itself keep their GL names. What is registered by an object that ends here
/// stays registered: see BufferObjectManager.
///
/// The entry points stay loaded and the library may be used again, but for the built-in programs
/// and the Toolbox, whose calls do nothing from now on.
///
/// With a Context in use it is that one's Context::dispose, and nothing else is released.
VELLIS_EXPORT void dispose();

} // namespace vellis::engine

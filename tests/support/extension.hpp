#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

/// An extension that the library asks for; what needs one that the context lacks does nothing.
enum class Extension {
#define VELLIS_EXTENSION(extension, name) extension,
#define VELLIS_EXTENSION_ENTRY_POINT(extension, entryPoint)
#include "support/extensions.inc"
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT
};

/// The name as GL writes it: `GL_ARB_vertex_array_object`.
std::string name(Extension extension);

/// Whether the loaded context has it, by itself or as a part of OpenGL 3.0.
bool has(Extension extension);

/// Loads the entry points of the current context, whose entry points are loaded, as they would be
/// in a context of OpenGL 2.1 that lacks the extension: the lookup knows neither its entry points
/// nor its name in the list of extensions. The next load of another kind ends that.
/// \return false where nothing can be loaded.
bool hide(Extension extension);

/// The extension that the environment variable `RENDER_WITHOUT` names, if any: the tests are then
/// tried without it.
/// \throws std::invalid_argument where the variable names another one.
std::optional<Extension> extensionToHide();

/// Whether GL tells the value of \p pname; takes the error that it makes where it does not.
bool knows(unsigned int pname);

/// The name of the first piece of state with a record that the context lacks; empty where it has
/// all of them. Those of array and rectangle textures are no part of OpenGL 2.1.
std::string missingState();

/// Whether the loaded context has the core profile: without what OpenGL 3.1 has removed.
bool isCore();

/// Whether it is one that has nothing either of what is deprecated.
bool isForwardCompatible();

/// The names of the context's extensions, with a space behind each.
std::string extensionNames();

/// Skips a test, or the rest of a set-up, where the context has the core profile, which lacks
/// \p what: the name of a call, a value or a feature.
#define SKIP_IN_CORE(what)                                                                         \
    if (isCore())                                                                                  \
    GTEST_SKIP() << "a core context lacks " << (what)

/// The same where it is forward-compatible.
#define SKIP_IN_FORWARD_COMPATIBLE(what)                                                           \
    if (isForwardCompatible())                                                                     \
    GTEST_SKIP() << "a forward-compatible context lacks " << (what)

/// Skips a test, or the rest of a set-up, where the context lacks a piece of state with a record.
#define SKIP_WITHOUT_EVERY_STATE()                                                                 \
    if (const std::string missing = missingState(); !missing.empty())                              \
    GTEST_SKIP() << "the context lacks " << missing

/// Skips a test, or the rest of a set-up, where the context lacks the extension.
#define SKIP_WITHOUT(extension)                                                                    \
    if (!has(extension))                                                                           \
    GTEST_SKIP() << "the context lacks " << name(extension)

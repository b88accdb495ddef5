#pragma once

#include "gl/entry_points.hpp"

/// Loading of the GL entry points, under names that no other loader in the process can take over.

namespace vellis::loader {

/// What gladLoadGL() does; true on success.
bool loadCurrentContext();

/// What gladLoadGLLoader() does; true on success, false for a null \p lookup.
bool loadThrough(void* (*lookup)(const char* name));

/// The entry points that \p lookup finds, or, where it is null, the lookup of the platform whose
/// context is current. Changes no exported pointer. Null where there is no context.
OwnedTable findTable(void* (*lookup)(const char* name));

/// The table that was loaded last while no Context was in use, or null.
const Table* processTable();

/// The profile of the GL context that is in use on this thread; that of the compatibility kind
/// where nothing was loaded. No GL call.
Profile profile();

/// Whether that is a core profile: calls that GL 3.1 has removed would be errors.
inline bool isCore() {
    return profile() != Profile::Compatibility;
}

/// A GL context, by what its platform calls it.
struct NativeContext {
    void* (*current)();  ///< the platform's answer to what is current on a thread; null if unknown
    void* handle;        ///< what it was when this was made
    const void* version; ///< where its version string lies, which no other context shares; or null

    /// Whether it is current on this thread, as far as anybody can tell.
    bool isCurrent() const { return current == nullptr || current() == handle; }

    /// The same in less time: that the version string is there again will do. EGL and GLX ask the
    /// system for each answer whether the process has forked.
    bool isProbablyCurrent() const;
};

/// The GL context that is current on this thread, with its entry points in place. The platform's
/// library stays loaded from then on.
NativeContext currentContext();

/// Whether the GL context for which the process loaded its entry points last is current on this
/// thread, as far as anybody can tell.
bool isProcessContextCurrent();

} // namespace vellis::loader

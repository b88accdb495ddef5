#pragma once

/// The entry points that <vellis/gl.hpp> declares, and their loading.

namespace vellis::loader {

/// A function of the GL, of whatever type.
using EntryPoint = void (*)();

/// A GL version number; 0.0 is none.
struct Version {
    int major;
    int minor;
};

/// Looks up every entry point that the current context has: each is what \p find says of its name,
/// null where there is none. Those that the context lacks become null, also where they were filled
/// for a former context.
///
/// \return the context's version, or 0.0 where there is no context: then all entry points and flags
///         stay as they were.
Version loadEntryPoints(EntryPoint (*find)(const void* lookup, const char* name),
                        const void* lookup);

/// The same for anything that can be called with a name.
template <class Lookup>
Version loadEntryPoints(const Lookup& lookup) {
    return loadEntryPoints(
        [](const void* own, const char* name) -> EntryPoint {
            return (*static_cast<const Lookup*>(own))(name);
        },
        &lookup);
}

} // namespace vellis::loader

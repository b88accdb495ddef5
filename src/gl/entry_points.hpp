#pragma once

/// The entry points that <vellis/gl.hpp> declares, and their loading.

#include <atomic>
#include <memory>

namespace vellis::loader {

/// A function of the GL, of whatever type.
using EntryPoint = void (*)();

/// A GL version number; 0.0 is none.
struct Version {
    int major;
    int minor;
};

/// The entry points of a GL context, the flags that say what there is, and the version.
struct Table;

/// Lets go of a table, which lives for as long as it has owners.
struct ReleaseTable {
    void operator()(const Table* table) const noexcept;
};

/// An owner of a table.
using OwnedTable = std::unique_ptr<const Table, ReleaseTable>;

/// Looks up every entry point that the current context has: each is what \p find says of its name,
/// null where there is none.
///
/// \return the table, the same one for equal contexts; null where there is no context, or no
/// memory.
OwnedTable loadTable(EntryPoint (*find)(const void* lookup, const char* name), const void* lookup);

/// The same for anything that can be called with a name.
template <class Lookup>
OwnedTable loadTable(const Lookup& lookup) {
    return loadTable(
        [](const void* own, const char* name) -> EntryPoint {
            return (*static_cast<const Lookup*>(own))(name);
        },
        &lookup);
}

/// The version of the context that a table was loaded from.
Version versionOf(const Table& table);

/// What a context has of what GL 3.1 has removed, and of what GL 3.0 has deprecated.
enum class Profile : unsigned char {
    Compatibility,     ///< all of it
    Core,              ///< only what is deprecated: lines wider than 1
    ForwardCompatible, ///< nothing of it: a core context without what is deprecated
};

/// The profile of the context that a table was loaded from; before GL 3.2 there is one.
Profile profileOf(const Table& table);

/// Whether GL says that the context, which is one of 3.2 or later, has the core profile.
template <class GetIntegerv>
bool saysCoreProfile(GetIntegerv getIntegerv) {
    constexpr unsigned int profileMask = 0x9126; // GL_CONTEXT_PROFILE_MASK
    constexpr int coreProfile = 0x1;             // GL_CONTEXT_CORE_PROFILE_BIT
    int profile = 0;
    getIntegerv(profileMask, &profile);
    return (profile & coreProfile) != 0;
}

/// Sets GLVersion, where it is another.
void setVersion(Version version) noexcept;

/// The table whose values the exported pointers were given last; null before the first, and where
/// that is gone.
extern std::atomic<const Table*> published;

/// Gives the exported pointers and flags, and GLVersion, the values of a table, also where a
/// program has changed them. What has its value already is not written, so that other threads may
/// use it.
void publishAnew(const Table& table) noexcept;

/// The same, unless \p table is null or was the last one.
inline void publish(const Table* table) noexcept {
    if (table != nullptr && table != published.load(std::memory_order_acquire))
        publishAnew(*table);
}

} // namespace vellis::loader

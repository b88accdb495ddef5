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

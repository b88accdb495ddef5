#pragma once

#include <cstddef>
#include <string_view>

namespace vellis::test {

/// The position of an entry point among all those that the loader has.
enum class EntryPoint : unsigned int {
#define VELLIS_ENTRY_POINT(name, member) name##_,
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    end
};

/// How many entry points the loader has.
constexpr auto entryPointCount = static_cast<std::size_t>(EntryPoint::end);

/// The name as GL writes it: `glBindBuffer`.
const char* name(EntryPoint entryPoint);

/// Whether the loader has an entry point of that name.
bool isEntryPoint(std::string_view name);

/// The entry point whose pointer (`glad_glBindBuffer`) lies at \p pointer. Throws
/// std::invalid_argument for any other address.
EntryPoint entryPointAt(const void* pointer);

/// The position as an index.
constexpr std::size_t index(EntryPoint entryPoint) {
    return static_cast<std::size_t>(entryPoint);
}

} // namespace vellis::test

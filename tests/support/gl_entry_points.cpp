#include "support/gl_entry_points.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include <vellis/gl.hpp>

namespace vellis::test {
namespace {

struct Row {
    const char* name;
    const void* pointer;
};

const Row rows[] = {
#define VELLIS_ENTRY_POINT(name, member) {#name, &glad_##name},
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
};

} // namespace

const char* name(EntryPoint entryPoint) {
    return rows[index(entryPoint)].name;
}

bool isEntryPoint(std::string_view name) {
    return std::any_of(std::begin(rows), std::end(rows),
                       [name](const Row& row) { return row.name == name; });
}

EntryPoint entryPointAt(const void* pointer) {
    const auto row = std::find_if(std::begin(rows), std::end(rows),
                                  [pointer](const Row& r) { return r.pointer == pointer; });
    if (row == std::end(rows))
        throw std::invalid_argument("not the pointer of a GL entry point");
    return static_cast<EntryPoint>(row - std::begin(rows));
}

} // namespace vellis::test

#include "support/gl_signatures.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>

#include <vellis/gl.hpp>

namespace vellis::test {
namespace {

struct Command {
    std::size_t first;
    std::size_t count;
};
constexpr Command commands[] = {
#define VELLIS_GL_COMMAND(name, first, count) {first, count},
#include "gl_signatures.inc"
};
static_assert(std::size(commands) == entryPointCount);

constexpr ParameterSignature parameters[] = {
#define VELLIS_GL_PARAMETER(form, meaning, group, argument, factor, object)                        \
    {Form::form, Meaning::meaning, Group::group, argument, factor, object},
#include "gl_signatures.inc"
};

struct Enumerator {
    std::uint32_t value;
    const char* name;
};
constexpr Enumerator enumerators[] = {
#define VELLIS_GL_ENUM(name) {name, #name},
#include "gl_signatures.inc"
};

struct GroupEnumerator {
    Group group;
    std::uint32_t value;
    const char* name;
};
constexpr GroupEnumerator groupEnumerators[] = {
#define VELLIS_GL_GROUP_ENUM(group, name) {Group::group, name, #name},
#include "gl_signatures.inc"
};

struct Pname {
    std::uint32_t value;
    PnameSignature signature;
};
constexpr Pname pnames[] = {
#define VELLIS_GL_PNAME(name, count, meaning, group)                                               \
    {name, {count, Meaning::meaning, Group::group}},
#include "gl_signatures.inc"
};

/// The row with that value in a table sorted by value, or null.
template <class Row, std::size_t count>
const Row* find(const Row (&table)[count], std::uint32_t value) {
    const auto row = std::lower_bound(std::begin(table), std::end(table), value,
                                      [](const Row& r, std::uint32_t v) { return r.value < v; });
    return row != std::end(table) && row->value == value ? row : nullptr;
}

std::string hexadecimal(std::uint32_t value) {
    char digits[8];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value, 16).ptr;
    return "0x" + std::string(std::begin(digits), end);
}

void append(std::string& names, const std::string& name) {
    if (!names.empty())
        names += " | ";
    names += name;
}

} // namespace

Signature signature(EntryPoint entryPoint) {
    const Command& command = commands[index(entryPoint)];
    return {parameters + command.first, command.count};
}

PnameSignature pnameSignature(std::uint32_t pname) {
    const Pname* row = find(pnames, pname);
    return row != nullptr ? row->signature : PnameSignature{1, Meaning::Number, Group::None};
}

std::string enumName(Group group, std::uint32_t value) {
    for (const GroupEnumerator& row : groupEnumerators) {
        if (row.group == group && row.value == value)
            return row.name;
    }
    const Enumerator* row = find(enumerators, value);
    return row != nullptr ? row->name : hexadecimal(value);
}

std::string bitNames(Group group, std::uint32_t bits) {
    std::string names;
    std::uint32_t unnamed = bits;
    for (const GroupEnumerator& row : groupEnumerators) {
        if (row.group != group || row.value == 0)
            continue;
        if (row.value == bits)
            return row.name;
        if ((row.value & bits) == row.value) {
            append(names, row.name);
            unnamed &= ~row.value;
        }
    }
    if (unnamed != 0)
        append(names, hexadecimal(unnamed));
    return names.empty() ? "0" : names;
}

} // namespace vellis::test

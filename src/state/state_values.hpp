#pragma once

#include <cstddef>
#include <string>

#include <vellis/gl.hpp>

namespace vellis::internal {

/// What a piece of GL state is: how GL is asked for it, and how its values are written.
enum class ValueKind : unsigned char {
    Boolean,     ///< glGetBooleanv, `true`
    Float,       ///< glGetFloatv, `0.5`
    Decimal,     ///< glGetIntegerv, `16`
    Hexadecimal, ///< glGetIntegerv, `0x10`
    Enum,        ///< glGetIntegerv, `GL_LESS`
};

/// The most values that a piece of GL state has.
constexpr unsigned int mostStateValues = 4;

/// A piece of GL state that is printed: `label = text`.
struct StateRow {
    const char* label;
    unsigned int pname;
    ValueKind kind;
    unsigned int count; ///< of the values that are printed, 1 to mostStateValues
};

/// Whether StateValues has room for every row of a table.
template <class Row, std::size_t N>
constexpr bool haveRoom(const Row (&rows)[N]) {
    for (const Row& row : rows) {
        if (row.count > mostStateValues)
            return false;
    }
    return true;
}

/// The values of a piece of GL state: those of its kind's type.
struct StateValues {
    GLboolean booleans[mostStateValues] = {};
    float floats[mostStateValues] = {};
    int integers[mostStateValues] = {};
};

/// Asks GL, with one query. What GL refuses to tell is 0.
StateValues query(const StateRow& row);

/// Whether all values that the row prints are equal; a float that is not a number never is.
bool equal(const StateRow& row, const StateValues& a, const StateValues& b);

/// The values as text. For the active texture unit this leaves the unit's index in \p values.
std::string text(const StateRow& row, StateValues& values);

/// Asks GL and prints the row.
void printState(const StateRow& row);

} // namespace vellis::internal

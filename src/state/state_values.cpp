#include "state/state_values.hpp"

#include <algorithm>
#include <locale>
#include <sstream>

#include "gl/labels.hpp"
#include "gl/log.hpp"
#include "state/value_writers.hpp"

namespace vellis::internal {

StateValues query(const StateRow& row) {
    StateValues values;
    switch (row.kind) {
    case ValueKind::Boolean:
        glGetBooleanv(row.pname, values.booleans);
        break;
    case ValueKind::Float:
        glGetFloatv(row.pname, values.floats);
        break;
    case ValueKind::Decimal:
    case ValueKind::Hexadecimal:
    case ValueKind::Enum:
        glGetIntegerv(row.pname, values.integers);
        break;
    }
    return values;
}

bool equal(const StateRow& row, const StateValues& a, const StateValues& b) {
    // Values of another type than the row's are 0 in both.
    return std::equal(a.booleans, a.booleans + row.count, b.booleans) &&
           std::equal(a.floats, a.floats + row.count, b.floats) &&
           std::equal(a.integers, a.integers + row.count, b.integers);
}

std::string text(const StateRow& row, StateValues& values) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());     // no thousands separators of the application's
    stream.exceptions(std::ios_base::badbit); // nor half a text where memory runs out
    switch (row.kind) {
    case ValueKind::Boolean:
        write_bool_values(stream, values.booleans, row.count);
        break;
    case ValueKind::Float:
        write_float_values(stream, values.floats, row.count);
        break;
    case ValueKind::Decimal:
        write_decimal_values(stream, values.integers, row.count);
        stream << gl::labelOfBinding(row.pname, values.integers[0]);
        break;
    case ValueKind::Hexadecimal:
        write_hex_values(stream, values.integers, row.count);
        break;
    case ValueKind::Enum:
        write_enum_values(stream, values.integers, row.pname, row.count);
        break;
    }
    return stream.str();
}

void printState(const StateRow& row) {
    StateValues values = query(row);
    printLine(logTitle, row.label + (" = " + text(row, values)));
}

} // namespace vellis::internal

/// Values of GL state as text.

#include "state/value_writers.hpp"

#include <climits>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace vellis::internal;

/// What a writer makes of values.
template <class T, class Writer>
std::string written(Writer write, std::vector<T> values) {
    std::ostringstream stream;
    write(stream, values.data(), static_cast<unsigned int>(values.size()));
    return stream.str();
}

TEST(ValueWriters, BooleansAreTrueWhereTheyAreGlTrue) {
    EXPECT_EQ(written<GLboolean>(write_bool_values, {1}), "true");
    EXPECT_EQ(written<GLboolean>(write_bool_values, {0, 1, 2, 255}), "false, true, false, false");
}

TEST(ValueWriters, FloatsHaveSixSignificantDigits) {
    EXPECT_EQ(written<float>(write_float_values, {0.f}), "0");
    EXPECT_EQ(written<float>(write_float_values, {1.f / 3.f, 770.f, -2.5f, 1234567.f}),
              "0.333333, 770, -2.5, 1.23457e+06");
}

TEST(ValueWriters, DecimalsAreSigned) {
    EXPECT_EQ(written<int>(write_decimal_values, {INT_MAX, INT_MIN, 0}),
              "2147483647, -2147483648, 0");
}

TEST(ValueWriters, HexadecimalsAreUnsignedInLowerCase) {
    EXPECT_EQ(written<int>(write_hex_values, {0, 171, -1, INT_MIN}),
              "0x0, 0xab, 0xffffffff, 0x80000000");
}

TEST(ValueWriters, NoValuesAreNoText) {
    EXPECT_EQ(written<GLboolean>(write_bool_values, {}), "");
    EXPECT_EQ(written<float>(write_float_values, {}), "");
    EXPECT_EQ(written<int>(write_decimal_values, {}), "");
    EXPECT_EQ(written<int>(write_hex_values, {}), "");
    std::ostringstream stream;
    write_enum_values(stream, nullptr, GL_DEPTH_FUNC, 0);
    EXPECT_EQ(stream.str(), "");
}

TEST(ValueWriters, HexadecimalLeavesTheStreamDecimal) {
    std::ostringstream stream;
    const int value = 16;
    write_hex_values(stream, &value, 1);
    stream << ' ' << value;
    EXPECT_EQ(stream.str(), "0x10 16");
}

std::string enumText(unsigned int pname, int value) {
    std::ostringstream stream;
    write_enum_values(stream, &value, pname, 1);
    return stream.str();
}

struct Name {
    int value;
    const char* text;
};

/// The states that share a set of names, and the names.
struct NamedStates {
    std::vector<unsigned int> pnames;
    std::vector<Name> names;
};

const std::vector<NamedStates>& namedStates() {
    static const std::vector<NamedStates> all = {
        {{GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA},
         {{0x8006, "GL_FUNC_ADD"},
          {0x8007, "GL_MIN"},
          {0x8008, "GL_MAX"},
          {0x800A, "GL_FUNC_SUBTRACT"},
          {0x800B, "GL_FUNC_REVERSE_SUBTRACT"}}},
        {{GL_DEPTH_FUNC, GL_STENCIL_FUNC, GL_STENCIL_BACK_FUNC},
         {{0x200, "GL_NEVER"},
          {0x201, "GL_LESS"},
          {0x202, "GL_EQUAL"},
          {0x203, "GL_LEQUAL"},
          {0x204, "GL_GREATER"},
          {0x205, "GL_NOTEQUAL"},
          {0x206, "GL_GEQUAL"},
          {0x207, "GL_ALWAYS"}}},
        {{GL_STENCIL_FAIL, GL_STENCIL_PASS_DEPTH_FAIL, GL_STENCIL_PASS_DEPTH_PASS,
          GL_STENCIL_BACK_FAIL, GL_STENCIL_BACK_PASS_DEPTH_FAIL, GL_STENCIL_BACK_PASS_DEPTH_PASS},
         {{0, "GL_ZERO"},
          {0x150A, "GL_INVERT"},
          {0x1E00, "GL_KEEP"},
          {0x1E01, "GL_REPLACE"},
          {0x1E02, "GL_INCR"},
          {0x1E03, "GL_DECR"},
          {0x8507, "GL_INCR_WRAP"},
          {0x8508, "GL_DECR_WRAP"}}},
        {{GL_READ_BUFFER}, {{0x404, "GL_FRONT"}, {0x405, "GL_BACK"}}},
    };
    return all;
}

TEST(ValueWriters, EveryNamedValueHasItsName) {
    for (const NamedStates& states : namedStates()) {
        for (const unsigned int pname : states.pnames) {
            for (const Name& name : states.names)
                EXPECT_EQ(enumText(pname, name.value), name.text) << pname;
        }
    }
}

TEST(ValueWriters, ValuesOfOtherStatesHaveNoName) {
    for (const NamedStates& states : namedStates()) {
        for (const unsigned int pname : states.pnames) {
            EXPECT_EQ(enumText(pname, 0x8CE0), "unknown enum : 0x8ce0") << pname;
            EXPECT_EQ(enumText(pname, -1), "unknown enum : 0xffffffff") << pname;
        }
    }
    EXPECT_EQ(enumText(GL_DEPTH_FUNC, GL_KEEP), "unknown enum : 0x1e00");
    EXPECT_EQ(enumText(GL_READ_BUFFER, GL_NONE), "unknown enum : 0x0");
}

TEST(ValueWriters, OnlyTheFirstValueIsNamed) {
    int values[] = {GL_LESS, GL_GREATER};
    std::ostringstream stream;
    write_enum_values(stream, values, GL_DEPTH_FUNC, 2);
    EXPECT_EQ(stream.str(), "GL_LESS");
}

TEST(ValueWriters, ActiveTextureLeavesItsIndexInTheValues) {
    int value = GL_TEXTURE3;
    std::ostringstream stream;
    write_enum_values(stream, &value, GL_ACTIVE_TEXTURE, 1);
    EXPECT_EQ(stream.str(), "GL_TEXTURE3");
    EXPECT_EQ(value, 3);
    EXPECT_EQ(enumText(GL_ACTIVE_TEXTURE, INT_MIN), "GL_TEXTURE2147449664");
}

TEST(ValueWriters, StatesWithoutNamesAreHexadecimal) {
    int values[] = {GL_FILL, GL_LINE};
    std::ostringstream stream;
    write_enum_values(stream, values, GL_POLYGON_MODE, 2);
    EXPECT_EQ(stream.str(), "0x1b02, 0x1b01");
}

} // namespace

#pragma once

/// \file
/// The enumerations of the fragment pipeline. Framebuffer names each of them, too:
/// `Framebuffer::FragmentComparator::LESS`. Each value is the GL enumerator's of the same name.

#include <type_traits>

#include <glm/vec3.hpp>

namespace vellis {

/// When a fragment passes a test against a stored value.
enum class FragmentComparator : unsigned int {
    NEVER = 0x0200,
    LESS = 0x0201,
    EQUAL = 0x0202,
    LEQUAL = 0x0203,
    GREATER = 0x0204,
    NOTEQUAL = 0x0205,
    GEQUAL = 0x0206,
    ALWAYS = 0x0207,
};

/// What happens to the stencil value.
enum class StencilAction : unsigned int {
    KEEP = 0x1E00,
    ZERO = 0,
    REPLACE = 0x1E01,
    INCR = 0x1E02,
    INCR_WRAP = 0x8507,
    DECR = 0x1E03,
    DECR_WRAP = 0x8508,
    INVERT = 0x150A,
};

/// How a fragment's colour is combined bit by bit with that of the framebuffer.
enum class LogicOperator : unsigned int {
    CLEAR = 0x1500,
    AND = 0x1501,
    AND_REVERSE = 0x1502,
    COPY = 0x1503,
    AND_INVERTED = 0x1504,
    NOOP = 0x1505,
    XOR = 0x1506,
    OR = 0x1507,
    NOR = 0x1508,
    EQUIV = 0x1509,
    INVERT = 0x150A,
    OR_REVERSE = 0x150B,
    COPY_INVERTED = 0x150C,
    OR_INVERTED = 0x150D,
    NAND = 0x150E,
    SET = 0x150F,
};

/// A colour buffer of the framebuffer.
enum class BufferID : unsigned int {
    NONE = 0,
    FRONT = 0x0404,
    BACK = 0x0405,
    FRONT_AND_BACK = 0x0408,
    COLOR_ATTACHMENT0 = 0x8CE0,
    COLOR_ATTACHMENT1 = 0x8CE1,
    COLOR_ATTACHMENT2 = 0x8CE2,
    COLOR_ATTACHMENT3 = 0x8CE3,
    COLOR_ATTACHMENT4 = 0x8CE4,
    COLOR_ATTACHMENT5 = 0x8CE5,
    COLOR_ATTACHMENT6 = 0x8CE6,
    COLOR_ATTACHMENT7 = 0x8CE7,
};

/// What a colour is multiplied by in blending. For a constant give the colour or the alpha
/// itself. GL before 3.3 takes SRC_ALPHA_SATURATE for the fragment alone.
enum class BlendingFactor : unsigned int {
    ZERO = 0,
    ONE = 1,
    SRC_COLOR = 0x0300,
    ONE_MINUS_SRC_COLOR = 0x0301,
    SRC_ALPHA = 0x0302,
    ONE_MINUS_SRC_ALPHA = 0x0303,
    DST_ALPHA = 0x0304,
    ONE_MINUS_DST_ALPHA = 0x0305,
    DST_COLOR = 0x0306,
    ONE_MINUS_DST_COLOR = 0x0307,
    SRC_ALPHA_SATURATE = 0x0308,
};

/// How the two products of blending are combined.
enum class BlendEquation : unsigned int {
    FUNC_ADD = 0x8006,
    MIN = 0x8007,
    MAX = 0x8008,
    FUNC_SUBTRACT = 0x800A,
    FUNC_REVERSE_SUBTRACT = 0x800B,
};

namespace detail {

/// Whether an argument of blending can stand for a colour's factor: a named one or a constant
/// colour.
template <class T>
constexpr bool isColorFactor =
    std::is_same<T, BlendingFactor>::value || std::is_same<T, glm::vec3>::value;

/// Whether it is a constant alpha.
template <class T>
constexpr bool isConstantAlpha = std::is_same<T, float>::value;

/// Whether it can stand for an alpha's factor.
template <class T>
constexpr bool isAlphaFactor = std::is_same<T, BlendingFactor>::value || isConstantAlpha<T>;

} // namespace detail
} // namespace vellis

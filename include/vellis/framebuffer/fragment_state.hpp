#pragma once

/// \file
/// The enumerations of the fragment pipeline. Framebuffer names each of them, too:
/// `Framebuffer::FragmentComparator::LESS`. Each value is the GL enumerator's of the same name.

#include <type_traits>

#include <glm/vec3.hpp>

namespace vellis {

/// When a fragment passes a test against a stored value.
enum class FragmentComparator : unsigned int {
    NEVER = 0x0200,    ///< none
    LESS = 0x0201,     ///< what is less than the stored value
    EQUAL = 0x0202,    ///< what is equal to it
    LEQUAL = 0x0203,   ///< less or equal
    GREATER = 0x0204,  ///< greater
    NOTEQUAL = 0x0205, ///< not equal
    GEQUAL = 0x0206,   ///< greater or equal
    ALWAYS = 0x0207,   ///< all
};

/// What happens to the stencil value.
enum class StencilAction : unsigned int {
    KEEP = 0x1E00,      ///< it stays
    ZERO = 0,           ///< it becomes 0
    REPLACE = 0x1E01,   ///< it becomes the reference value
    INCR = 0x1E02,      ///< one more, up to the largest
    INCR_WRAP = 0x8507, ///< one more; 0 behind the largest
    DECR = 0x1E03,      ///< one less, down to 0
    DECR_WRAP = 0x8508, ///< one less; the largest below 0
    INVERT = 0x150A,    ///< each bit is turned around
};

/// How a fragment's colour s is combined bit by bit with that of the framebuffer, d.
enum class LogicOperator : unsigned int {
    CLEAR = 0x1500,         ///< 0
    AND = 0x1501,           ///< s & d
    AND_REVERSE = 0x1502,   ///< s & ~d
    COPY = 0x1503,          ///< s
    AND_INVERTED = 0x1504,  ///< ~s & d
    NOOP = 0x1505,          ///< d
    XOR = 0x1506,           ///< s ^ d
    OR = 0x1507,            ///< s | d
    NOR = 0x1508,           ///< ~(s | d)
    EQUIV = 0x1509,         ///< ~(s ^ d)
    INVERT = 0x150A,        ///< ~d
    OR_REVERSE = 0x150B,    ///< s | ~d
    COPY_INVERTED = 0x150C, ///< ~s
    OR_INVERTED = 0x150D,   ///< ~s | d
    NAND = 0x150E,          ///< ~(s & d)
    SET = 0x150F,           ///< all bits 1
};

/// A colour buffer of the framebuffer.
enum class BufferID : unsigned int {
    NONE = 0,                   ///< no buffer
    FRONT = 0x0404,             ///< what the window shows
    BACK = 0x0405,              ///< what it shows after the next swap
    FRONT_AND_BACK = 0x0408,    ///< both
    COLOR_ATTACHMENT0 = 0x8CE0, ///< the first image of a framebuffer object
    COLOR_ATTACHMENT1 = 0x8CE1, ///< its second
    COLOR_ATTACHMENT2 = 0x8CE2, ///< its third
    COLOR_ATTACHMENT3 = 0x8CE3, ///< its fourth
    COLOR_ATTACHMENT4 = 0x8CE4, ///< its fifth
    COLOR_ATTACHMENT5 = 0x8CE5, ///< its sixth
    COLOR_ATTACHMENT6 = 0x8CE6, ///< its seventh
    COLOR_ATTACHMENT7 = 0x8CE7, ///< its eighth
};

/// What a colour is multiplied by in blending. For a constant give the colour or the alpha
/// itself. GL before 3.3 takes SRC_ALPHA_SATURATE for the fragment alone.
enum class BlendingFactor : unsigned int {
    ZERO = 0,                     ///< 0
    ONE = 1,                      ///< 1
    SRC_COLOR = 0x0300,           ///< the fragment's colour
    ONE_MINUS_SRC_COLOR = 0x0301, ///< 1 less that
    SRC_ALPHA = 0x0302,           ///< the fragment's alpha
    ONE_MINUS_SRC_ALPHA = 0x0303, ///< 1 less that
    DST_ALPHA = 0x0304,           ///< the framebuffer's alpha
    ONE_MINUS_DST_ALPHA = 0x0305, ///< 1 less that
    DST_COLOR = 0x0306,           ///< the framebuffer's colour
    ONE_MINUS_DST_COLOR = 0x0307, ///< 1 less that
    SRC_ALPHA_SATURATE = 0x0308,  ///< the lesser of SRC_ALPHA and ONE_MINUS_DST_ALPHA; 1 for alpha
};

/// How the two products of blending are combined.
enum class BlendEquation : unsigned int {
    FUNC_ADD = 0x8006,              ///< the fragment's and the framebuffer's added
    MIN = 0x8007,                   ///< the lesser of the two colours, without factors
    MAX = 0x8008,                   ///< the greater, without factors
    FUNC_SUBTRACT = 0x800A,         ///< the fragment's less the framebuffer's
    FUNC_REVERSE_SUBTRACT = 0x800B, ///< the framebuffer's less the fragment's
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

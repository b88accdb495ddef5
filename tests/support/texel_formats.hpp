#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <glm/mat4x4.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture/texel_format.hpp>

/// \file
/// The texel types in lists, what is expected of each, and a type of one's own, for tests of all
/// that have a format.

namespace vellis::test {

using U8vec2 = glm::vec<2, unsigned char>;
using U8vec3 = glm::vec<3, unsigned char>;
using U8vec4 = glm::vec<4, unsigned char>;
using U16vec2 = glm::vec<2, unsigned short>;
using U16vec3 = glm::vec<3, unsigned short>;
using U16vec4 = glm::vec<4, unsigned short>;

/// Stands for a type in a function call.
template <class T>
struct TypeOf {
    using type = T;
};

/// A list of types.
template <class... Types>
struct TypeList {
    static constexpr std::size_t size = sizeof...(Types);

    /// Calls \p function with the TypeOf each.
    template <class Function>
    static void each(Function function) {
        (function(TypeOf<Types>{}), ...);
    }

    /// Whether \p Predicate holds for all.
    template <template <class> class Predicate>
    static constexpr bool all = (Predicate<Types>::value && ...);

    /// Whether \p Predicate holds for any.
    template <template <class> class Predicate>
    static constexpr bool any = (Predicate<Types>::value || ...);
};

using ColorTexels = TypeList<unsigned char, U8vec2, U8vec3, U8vec4, unsigned short, U16vec2,
                             U16vec3, U16vec4, float, glm::vec2, glm::vec3, glm::vec4>;
using DepthTexels = TypeList<depth16, depth32, depth24_stencil8>;
using StencilTexels = TypeList<stencil8, stencil16>;
using SamplerTexels = TypeList<sampler1d, sampler2d, sampler3d, samplercube>;
/// Types that no texel has.
using OtherTypes = TypeList<bool, int, double, glm::dvec4, glm::ivec4, glm::mat4>;

/// What a texel type needs of a context of OpenGL 2.1.
enum class TexelNeeds : unsigned int {
    nothing = 0,
    texture_rg = 1,
    texture_float = 2,
    texture_rg_and_float = texture_rg | texture_float,
};

/// A row of the table of texel types; the GL values by number and by name.
struct TexelRow {
    const char* name;
    TexelKind kind;
    unsigned int internalFormat;
    unsigned int pixelFormat;
    unsigned int pixelType;
    TexelNeeds needs;
    std::size_t size;
    const char* internalFormatName;
    const char* pixelFormatName;
    const char* pixelTypeName;

    /// The largest row alignment that GL knows and that rows of any width have.
    constexpr unsigned int alignment() const {
        unsigned int bytes = 8;
        while (size % bytes != 0)
            bytes /= 2;
        return bytes;
    }
};

/// The row of a texel type.
template <class F>
constexpr TexelRow texelRow = {};

#define VELLIS_TEXEL(type, kind, internalFormat, internalNumber, pixelFormat, pixelNumber,         \
                     pixelType, typeNumber, needs)                                                 \
    template <>                                                                                    \
    inline constexpr TexelRow texelRow<type> = {#type,                                             \
                                                TexelKind::kind,                                   \
                                                GL_##internalFormat,                               \
                                                GL_##pixelFormat,                                  \
                                                GL_##pixelType,                                    \
                                                TexelNeeds::needs,                                 \
                                                sizeof(type),                                      \
                                                "GL_" #internalFormat,                             \
                                                "GL_" #pixelFormat,                                \
                                                "GL_" #pixelType};
#include <vellis/texture/texel_formats.inc>
#undef VELLIS_TEXEL

/// How many rows the table has.
constexpr std::size_t numTexelRows = 0
#define VELLIS_TEXEL(...) +1
#include <vellis/texture/texel_formats.inc>
#undef VELLIS_TEXEL
    ;
static_assert(ColorTexels::size + DepthTexels::size + StencilTexels::size == numTexelRows,
              "each row is in a list");

/// A format of one's own.
struct Packed565 {
    unsigned short bits;
};

/// Whether there is a make() with arguments of these types.
template <class Made, class = void, class... Arguments>
struct HasMakeOf : std::false_type {};
template <class Made, class... Arguments>
struct HasMakeOf<Made, std::void_t<decltype(Made::make(std::declval<Arguments>()...))>,
                 Arguments...> : std::true_type {};

} // namespace vellis::test

template <>
struct vellis::TexelFormat<vellis::test::Packed565>
    : vellis::StoredTexel<vellis::test::Packed565, vellis::TexelKind::Color, GL_RGB5, GL_RGB,
                          GL_UNSIGNED_SHORT_5_6_5> {};

#pragma once

#include <cstddef>

#include <glm/mat4x4.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture/texel_format.hpp>

/// \file
/// The texel types in lists, and what is expected of each, for tests that walk through them.

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

/// What is expected of a texel type; the GL values by name, too.
struct TexelRow {
    const char* name;
    TexelKind kind;
    unsigned int internalFormat;
    unsigned int pixelFormat;
    unsigned int pixelType;
    unsigned int alignment;
    std::size_t size;
    const char* internalFormatName;
    const char* pixelFormatName;
    const char* pixelTypeName;
};

/// The row of a texel type.
template <class F>
constexpr TexelRow texelRow = {};

#define VELLIS_TEXEL(type, kind, internalFormat, pixelFormat, pixelType, alignment, size)          \
    template <>                                                                                    \
    inline constexpr TexelRow texelRow<type> = {                                                   \
        #type, TexelKind::kind, internalFormat, pixelFormat, pixelType, alignment,                 \
        size,  #internalFormat, #pixelFormat,   #pixelType};
#include "support/texel_formats.inc"
#undef VELLIS_TEXEL

} // namespace vellis::test

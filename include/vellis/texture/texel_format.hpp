#pragma once

/// \file
/// Which types a texel can have, and what GL calls them.

#include <cstddef>
#include <type_traits>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace vellis {

namespace detail {

/// The vectors that texels are: without padding, whatever alignment glm is told to prefer.
template <int length, class Component>
using Packed = glm::vec<length, Component, glm::packed_highp>;

} // namespace detail

/// The vectors that texels are, by glm's names; without padding, whatever alignment glm is told to
/// prefer.
namespace texel {
using u8vec2 = detail::Packed<2, unsigned char>;   ///< two components of 8 bits
using u8vec3 = detail::Packed<3, unsigned char>;   ///< three
using u8vec4 = detail::Packed<4, unsigned char>;   ///< four
using u16vec2 = detail::Packed<2, unsigned short>; ///< two components of 16 bits
using u16vec3 = detail::Packed<3, unsigned short>; ///< three
using u16vec4 = detail::Packed<4, unsigned short>; ///< four
using vec2 = detail::Packed<2, float>;             ///< two floats
using vec3 = detail::Packed<3, float>;             ///< three
using vec4 = detail::Packed<4, float>;             ///< four
} // namespace texel

/// \name Texels that no number or vector stands for
/// Plain values of the width in their names. Depth is normalised: 0 is near, the largest value far.
/// @{

/// A depth of 16 bits.
struct depth16 {
    unsigned short value = 0; ///< the bits
};

/// A depth of 32 bits.
struct depth32 {
    unsigned int value = 0; ///< the bits
};

/// A depth in the upper 24 bits, a stencil index in the lower 8.
struct depth24_stencil8 {
    unsigned int value = 0; ///< the bits
};

/// A stencil index of 8 bits.
struct stencil8 {
    unsigned char value = 0; ///< the bits
};

/// A stencil index of 16 bits.
struct stencil16 {
    unsigned short value = 0; ///< the bits
};
/// @}

/// \name Kinds of samplers
/// Each names a sampler type of a shader by its GL value; none is a format that texels are stored
/// in.
/// @{

/// `GL_SAMPLER_1D`.
struct sampler1d {
    unsigned int value = 0x8B5D; ///< the GL enumerator
};

/// `GL_SAMPLER_2D`.
struct sampler2d {
    unsigned int value = 0x8B5E; ///< the GL enumerator
};

/// `GL_SAMPLER_3D`.
struct sampler3d {
    unsigned int value = 0x8B5F; ///< the GL enumerator
};

/// `GL_SAMPLER_CUBE`.
struct samplercube {
    unsigned int value = 0x8B60; ///< the GL enumerator
};
/// @}

/// What a texel type is good for.
enum class TexelKind : unsigned int {
    NotATexel,    ///< nothing
    Color,        ///< textures of one to three dimensions, colour renderbuffers
    Depth,        ///< textures of one and two dimensions, depth renderbuffers
    DepthStencil, ///< the same for depth and stencil together
    Stencil,      ///< stencil renderbuffers
    Sampler,      ///< naming a sampler type; nothing is stored in it
};

/// What TexelFormat tells of a texel type that can be stored.
///
/// \tparam F         The texel type; texels lie one behind the other without gaps.
/// \tparam internal  The GL internal format.
/// \tparam format    The GL pixel format of a transfer.
/// \tparam type      The GL pixel type of a transfer.
template <class F, TexelKind texelKind, unsigned int internal, unsigned int format,
          unsigned int type>
struct StoredTexel {
    static constexpr TexelKind kind = texelKind;             ///< what the type is good for
    static constexpr unsigned int internalFormat = internal; ///< the GL internal format
    static constexpr unsigned int pixelFormat = format;      ///< the GL pixel format
    static constexpr unsigned int pixelType = type;          ///< the GL pixel type

    /// The largest row alignment that GL knows and that rows of any width have without padding.
    static constexpr unsigned int alignment = sizeof(F) % 8 == 0   ? 8
                                              : sizeof(F) % 4 == 0 ? 4
                                              : sizeof(F) % 2 == 0 ? 2
                                                                   : 1;
};

/// What GL calls a texel type: see StoredTexel for the members, of which a type that is not stored
/// has the `kind` alone.
///
/// The formats are the rows of one table, which the code is made from:
///
/// \include vellis/texture/texel_formats.inc
///
/// `texel::u8vec4` is `glm::u8vec4`, which `<glm/gtc/type_precision.hpp>` has for
/// `glm::vec<4, unsigned char>`, and so are its like.
///
/// A context without the extension that a row needs answers the first upload with
/// `GL_INVALID_VALUE` or `GL_INVALID_ENUM`, and the texture stays without storage.
/// `depth24_stencil8` and the stencil formats belong to the framebuffer objects that the library
/// needs anyhow. Integers are normalised: the largest one is 1.0 in a shader. GL may store
/// `depth32` with fewer bits.
///
/// A format of one's own is a specialisation of it:
///
/// \code
/// struct Packed565 { unsigned short bits; };
/// template <>
/// struct vellis::TexelFormat<Packed565>
///     : vellis::StoredTexel<Packed565, vellis::TexelKind::Color, GL_RGB5, GL_RGB,
///                           GL_UNSIGNED_SHORT_5_6_5> {};
/// auto texture = vellis::Texture2D<Packed565>::make(64, 64, texels);
/// \endcode
template <class F>
struct TexelFormat {
    static constexpr TexelKind kind = TexelKind::NotATexel; ///< what the type is good for
};

namespace detail {

/// A kind of sampler.
struct SamplerTexel {
    static constexpr TexelKind kind = TexelKind::Sampler;
};

} // namespace detail

#define VELLIS_TEXEL(type, kind, internalFormat, internalNumber, pixelFormat, pixelNumber,         \
                     pixelType, typeNumber, needs)                                                 \
    template <>                                                                                    \
    struct TexelFormat<type>                                                                       \
        : StoredTexel<type, TexelKind::kind, internalNumber, pixelNumber, typeNumber> {};
#include <vellis/texture/texel_formats.inc>
#undef VELLIS_TEXEL

template <>
struct TexelFormat<sampler1d> : detail::SamplerTexel {};
template <>
struct TexelFormat<sampler2d> : detail::SamplerTexel {};
template <>
struct TexelFormat<sampler3d> : detail::SamplerTexel {};
template <>
struct TexelFormat<samplercube> : detail::SamplerTexel {};

/// The most dimensions that GL 2.1 gives a texture of that kind; 0 where there is no such texture.
constexpr unsigned int maxTextureDimensions(TexelKind kind) {
    switch (kind) {
    case TexelKind::Color:
        return 3;
    case TexelKind::Depth:
    case TexelKind::DepthStencil:
        return 2;
    case TexelKind::NotATexel:
    case TexelKind::Stencil:
    case TexelKind::Sampler:
        break;
    }
    return 0;
}

/// True where textures of \p dimensions dimensions (1 to 3) can have texels of type \p F.
template <class F, unsigned int dimensions>
struct IsTextureFormat
    : std::integral_constant<bool, (dimensions <= maxTextureDimensions(TexelFormat<F>::kind))> {};

/// True for colours.
template <class F>
struct IsColorFormat : std::integral_constant<bool, TexelFormat<F>::kind == TexelKind::Color> {};

/// True where texels of type \p F can be stored, in a texture or at least in a renderbuffer.
template <class F>
struct IsStorageFormat
    : std::integral_constant<bool, TexelFormat<F>::kind != TexelKind::NotATexel &&
                                       TexelFormat<F>::kind != TexelKind::Sampler> {};

/// `int` where IsTextureFormat holds, else no type: takes a function away from formats that GL does
/// not have.
template <class F, unsigned int dimensions>
using RequireTextureFormat = std::enable_if_t<IsTextureFormat<F, dimensions>::value, int>;

} // namespace vellis

#pragma once

/// \file
/// Which types a texel can have, and what GL calls them.

#include <cstddef>
#include <type_traits>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace vellis {

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
/// | `F` | internal format | pixel format | pixel type | needs |
/// |---|---|---|---|---|
/// | `unsigned char` | `GL_R8` | `GL_RED` | `GL_UNSIGNED_BYTE` | texture_rg |
/// | `glm::u8vec2` | `GL_RG8` | `GL_RG` | `GL_UNSIGNED_BYTE` | texture_rg |
/// | `glm::u8vec3` | `GL_RGB8` | `GL_RGB` | `GL_UNSIGNED_BYTE` | |
/// | `glm::u8vec4` | `GL_RGBA8` | `GL_RGBA` | `GL_UNSIGNED_BYTE` | |
/// | `unsigned short` | `GL_R16` | `GL_RED` | `GL_UNSIGNED_SHORT` | texture_rg |
/// | `glm::u16vec2` | `GL_RG16` | `GL_RG` | `GL_UNSIGNED_SHORT` | texture_rg |
/// | `glm::u16vec3` | `GL_RGB16` | `GL_RGB` | `GL_UNSIGNED_SHORT` | |
/// | `glm::u16vec4` | `GL_RGBA16` | `GL_RGBA` | `GL_UNSIGNED_SHORT` | |
/// | `float` | `GL_R32F` | `GL_RED` | `GL_FLOAT` | texture_rg, texture_float |
/// | `glm::vec2` | `GL_RG32F` | `GL_RG` | `GL_FLOAT` | texture_rg, texture_float |
/// | `glm::vec3` | `GL_RGB32F` | `GL_RGB` | `GL_FLOAT` | texture_float |
/// | `glm::vec4` | `GL_RGBA32F` | `GL_RGBA` | `GL_FLOAT` | texture_float |
/// | `depth16` | `GL_DEPTH_COMPONENT16` | `GL_DEPTH_COMPONENT` | `GL_UNSIGNED_SHORT` | |
/// | `depth32` | `GL_DEPTH_COMPONENT32` | `GL_DEPTH_COMPONENT` | `GL_UNSIGNED_INT` | |
/// | `depth24_stencil8` | `GL_DEPTH24_STENCIL8` | `GL_DEPTH_STENCIL` | `GL_UNSIGNED_INT_24_8` | |
/// | `stencil8` | `GL_STENCIL_INDEX8` | `GL_STENCIL_INDEX` | `GL_UNSIGNED_BYTE` | |
/// | `stencil16` | `GL_STENCIL_INDEX16` | `GL_STENCIL_INDEX` | `GL_UNSIGNED_SHORT` | |
///
/// `glm::u8vec4` and its like are the names that `<glm/gtc/type_precision.hpp>` has for
/// `glm::vec<4, unsigned char>`.
///
/// texture_rg stands for `GL_ARB_texture_rg`, texture_float for `GL_ARB_texture_float`; GL 3.0 has
/// both. A context without them answers the first upload with `GL_INVALID_VALUE` or
/// `GL_INVALID_ENUM`, and the texture stays without storage. `depth24_stencil8` and the stencil
/// formats belong to the framebuffer objects that the library needs anyhow. Integers are
/// normalised: the largest one is 1.0 in a shader. GL may store `depth32` with fewer bits.
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

/// The vectors that texels are: without padding, whatever alignment glm is told to prefer.
template <int length, class Component>
using Packed = glm::vec<length, Component, glm::packed_highp>;

template <class F, unsigned int internal, unsigned int format, unsigned int type>
using ColorTexel = StoredTexel<F, TexelKind::Color, internal, format, type>;

/// A kind of sampler.
struct SamplerTexel {
    static constexpr TexelKind kind = TexelKind::Sampler;
};

} // namespace detail

// clang-format off
template <> struct TexelFormat<unsigned char>                     : detail::ColorTexel<unsigned char,                     0x8229, 0x1903, 0x1401> {};
template <> struct TexelFormat<detail::Packed<2, unsigned char>>  : detail::ColorTexel<detail::Packed<2, unsigned char>,  0x822B, 0x8227, 0x1401> {};
template <> struct TexelFormat<detail::Packed<3, unsigned char>>  : detail::ColorTexel<detail::Packed<3, unsigned char>,  0x8051, 0x1907, 0x1401> {};
template <> struct TexelFormat<detail::Packed<4, unsigned char>>  : detail::ColorTexel<detail::Packed<4, unsigned char>,  0x8058, 0x1908, 0x1401> {};
template <> struct TexelFormat<unsigned short>                    : detail::ColorTexel<unsigned short,                    0x822A, 0x1903, 0x1403> {};
template <> struct TexelFormat<detail::Packed<2, unsigned short>> : detail::ColorTexel<detail::Packed<2, unsigned short>, 0x822C, 0x8227, 0x1403> {};
template <> struct TexelFormat<detail::Packed<3, unsigned short>> : detail::ColorTexel<detail::Packed<3, unsigned short>, 0x8054, 0x1907, 0x1403> {};
template <> struct TexelFormat<detail::Packed<4, unsigned short>> : detail::ColorTexel<detail::Packed<4, unsigned short>, 0x805B, 0x1908, 0x1403> {};
template <> struct TexelFormat<float>                             : detail::ColorTexel<float,                             0x822E, 0x1903, 0x1406> {};
template <> struct TexelFormat<detail::Packed<2, float>>          : detail::ColorTexel<detail::Packed<2, float>,          0x8230, 0x8227, 0x1406> {};
template <> struct TexelFormat<detail::Packed<3, float>>          : detail::ColorTexel<detail::Packed<3, float>,          0x8815, 0x1907, 0x1406> {};
template <> struct TexelFormat<detail::Packed<4, float>>          : detail::ColorTexel<detail::Packed<4, float>,          0x8814, 0x1908, 0x1406> {};
template <> struct TexelFormat<depth16>          : StoredTexel<depth16,          TexelKind::Depth,        0x81A5, 0x1902, 0x1403> {};
template <> struct TexelFormat<depth32>          : StoredTexel<depth32,          TexelKind::Depth,        0x81A7, 0x1902, 0x1405> {};
template <> struct TexelFormat<depth24_stencil8> : StoredTexel<depth24_stencil8, TexelKind::DepthStencil, 0x88F0, 0x84F9, 0x84FA> {};
template <> struct TexelFormat<stencil8>         : StoredTexel<stencil8,         TexelKind::Stencil,      0x8D48, 0x1901, 0x1401> {};
template <> struct TexelFormat<stencil16>        : StoredTexel<stencil16,        TexelKind::Stencil,      0x8D49, 0x1901, 0x1403> {};
template <> struct TexelFormat<sampler1d> : detail::SamplerTexel {};
template <> struct TexelFormat<sampler2d> : detail::SamplerTexel {};
template <> struct TexelFormat<sampler3d> : detail::SamplerTexel {};
template <> struct TexelFormat<samplercube> : detail::SamplerTexel {};
// clang-format on

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

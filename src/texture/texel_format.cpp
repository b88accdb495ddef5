#include <vellis/texture/texel_format.hpp>

#include <vellis/gl.hpp>

namespace vellis {
namespace {

/// Whether TexelFormat has these GL values.
template <class F>
constexpr bool is(unsigned int internalFormat, unsigned int pixelFormat, unsigned int pixelType) {
    return TexelFormat<F>::internalFormat == internalFormat &&
           TexelFormat<F>::pixelFormat == pixelFormat && TexelFormat<F>::pixelType == pixelType;
}

template <class Component>
using Vec2 = detail::Packed<2, Component>;
template <class Component>
using Vec3 = detail::Packed<3, Component>;
template <class Component>
using Vec4 = detail::Packed<4, Component>;

static_assert(is<unsigned char>(GL_R8, GL_RED, GL_UNSIGNED_BYTE));
static_assert(is<Vec2<unsigned char>>(GL_RG8, GL_RG, GL_UNSIGNED_BYTE));
static_assert(is<Vec3<unsigned char>>(GL_RGB8, GL_RGB, GL_UNSIGNED_BYTE));
static_assert(is<Vec4<unsigned char>>(GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE));
static_assert(is<unsigned short>(GL_R16, GL_RED, GL_UNSIGNED_SHORT));
static_assert(is<Vec2<unsigned short>>(GL_RG16, GL_RG, GL_UNSIGNED_SHORT));
static_assert(is<Vec3<unsigned short>>(GL_RGB16, GL_RGB, GL_UNSIGNED_SHORT));
static_assert(is<Vec4<unsigned short>>(GL_RGBA16, GL_RGBA, GL_UNSIGNED_SHORT));
static_assert(is<float>(GL_R32F, GL_RED, GL_FLOAT));
static_assert(is<Vec2<float>>(GL_RG32F, GL_RG, GL_FLOAT));
static_assert(is<Vec3<float>>(GL_RGB32F, GL_RGB, GL_FLOAT));
static_assert(is<Vec4<float>>(GL_RGBA32F, GL_RGBA, GL_FLOAT));
static_assert(is<depth16>(GL_DEPTH_COMPONENT16, GL_DEPTH_COMPONENT, GL_UNSIGNED_SHORT));
static_assert(is<depth32>(GL_DEPTH_COMPONENT32, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT));
static_assert(is<depth24_stencil8>(GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL, GL_UNSIGNED_INT_24_8));
static_assert(is<stencil8>(GL_STENCIL_INDEX8, GL_STENCIL_INDEX, GL_UNSIGNED_BYTE));
static_assert(is<stencil16>(GL_STENCIL_INDEX16, GL_STENCIL_INDEX, GL_UNSIGNED_SHORT));

static_assert(sampler1d{}.value == GL_SAMPLER_1D);
static_assert(sampler2d{}.value == GL_SAMPLER_2D);
static_assert(sampler3d{}.value == GL_SAMPLER_3D);
static_assert(samplercube{}.value == GL_SAMPLER_CUBE);

// What a texel type says of its width holds for its memory, too.
static_assert(sizeof(depth16) == 2 && sizeof(depth32) == 4 && sizeof(depth24_stencil8) == 4);
static_assert(sizeof(stencil8) == 1 && sizeof(stencil16) == 2);
static_assert(sizeof(Vec3<unsigned char>) == 3 && sizeof(Vec3<unsigned short>) == 6);

} // namespace
} // namespace vellis

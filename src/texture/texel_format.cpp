#include <vellis/texture/texel_format.hpp>

#include <vellis/gl.hpp>

namespace vellis {
namespace {

#define VELLIS_TEXEL(type, kind, internalFormat, internalNumber, pixelFormat, pixelNumber,         \
                     pixelType, typeNumber, needs)                                                 \
    static_assert(internalNumber == GL_##internalFormat);                                          \
    static_assert(pixelNumber == GL_##pixelFormat);                                                \
    static_assert(typeNumber == GL_##pixelType);
#include <vellis/texture/texel_formats.inc>
#undef VELLIS_TEXEL

static_assert(sampler1d{}.value == GL_SAMPLER_1D);
static_assert(sampler2d{}.value == GL_SAMPLER_2D);
static_assert(sampler3d{}.value == GL_SAMPLER_3D);
static_assert(samplercube{}.value == GL_SAMPLER_CUBE);

// What a texel type says of its width holds for its memory, too.
static_assert(sizeof(depth16) == 2 && sizeof(depth32) == 4 && sizeof(depth24_stencil8) == 4);
static_assert(sizeof(stencil8) == 1 && sizeof(stencil16) == 2);
static_assert(sizeof(texel::u8vec3) == 3 && sizeof(texel::u16vec3) == 6);

} // namespace
} // namespace vellis

#include <vellis/texture/texel_format.hpp>

#include <type_traits>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/texel_formats.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

/// Compares a row with what the library says.
const auto expectRow = [](auto texel) {
    using F = typename decltype(texel)::type;
    constexpr TexelRow row = texelRow<F>;
    SCOPED_TRACE(row.name);
    EXPECT_EQ(TexelFormat<F>::kind, row.kind);
    EXPECT_EQ(TexelFormat<F>::internalFormat, row.internalFormat);
    EXPECT_EQ(TexelFormat<F>::pixelFormat, row.pixelFormat);
    EXPECT_EQ(TexelFormat<F>::pixelType, row.pixelType);
    EXPECT_EQ(TexelFormat<F>::alignment, row.alignment());
};

TEST(TexelFormatTable, HasTheGlValuesOfColors) {
    ColorTexels::each(expectRow);
}

TEST(TexelFormatTable, HasTheGlValuesOfDepthAndStencil) {
    DepthTexels::each(expectRow);
    StencilTexels::each(expectRow);
}

TEST(TexelFormatTable, AlignmentFitsRowsOfAnyWidth) {
    const auto fits = [](auto texel) {
        using F = typename decltype(texel)::type;
        for (std::size_t width = 1; width < 9; ++width)
            EXPECT_EQ(width * sizeof(F) % TexelFormat<F>::alignment, 0u) << texelRow<F>.name;
    };
    ColorTexels::each(fits);
    DepthTexels::each(fits);
    StencilTexels::each(fits);
}

TEST(TexelFormatTable, SamplerTagsNameTheSamplerTypesOfShaders) {
    EXPECT_EQ(sampler1d().value, unsigned(GL_SAMPLER_1D));
    EXPECT_EQ(sampler2d().value, unsigned(GL_SAMPLER_2D));
    EXPECT_EQ(sampler3d().value, unsigned(GL_SAMPLER_3D));
    EXPECT_EQ(samplercube().value, unsigned(GL_SAMPLER_CUBE));
}

TEST(TexelFormatTable, TagsHoldOneValueAndAreAssignable) {
    const auto holds = [](auto texel) {
        using F = typename decltype(texel)::type;
        const F one{1};
        F other;
        other = one;
        EXPECT_EQ(other.value, 1u);
        static_assert(sizeof(F) == sizeof(other.value));
        static_assert(std::is_unsigned_v<decltype(other.value)>);
        static_assert(std::is_trivially_copyable_v<F>);
    };
    DepthTexels::each(holds);
    StencilTexels::each(holds);
    SamplerTexels::each(holds);
}

TEST(TexelFormatTable, StorageTagsStartAtZero) {
    const auto startsAtZero = [](auto texel) {
        typename decltype(texel)::type tag;
        EXPECT_EQ(tag.value, 0u);
    };
    DepthTexels::each(startsAtZero);
    StencilTexels::each(startsAtZero);
}

template <class F>
struct Is1D : IsTextureFormat<F, 1> {};
template <class F>
struct Is2D : IsTextureFormat<F, 2> {};
template <class F>
struct Is3D : IsTextureFormat<F, 3> {};

static_assert(ColorTexels::all<Is1D> && ColorTexels::all<Is2D> && ColorTexels::all<Is3D>);
static_assert(DepthTexels::all<Is1D> && DepthTexels::all<Is2D> && !DepthTexels::any<Is3D>);
static_assert(!StencilTexels::any<Is1D> && !StencilTexels::any<Is2D> && !StencilTexels::any<Is3D>);
static_assert(!SamplerTexels::any<Is1D> && !SamplerTexels::any<Is2D> && !SamplerTexels::any<Is3D>);
static_assert(!OtherTypes::any<Is1D> && !OtherTypes::any<Is2D> && !OtherTypes::any<Is3D>);
static_assert(!IsTextureFormat<unsigned char, 4>::value);

static_assert(ColorTexels::all<IsStorageFormat> && DepthTexels::all<IsStorageFormat> &&
              StencilTexels::all<IsStorageFormat>);
static_assert(!SamplerTexels::any<IsStorageFormat> && !OtherTypes::any<IsStorageFormat>);
static_assert(ColorTexels::all<IsColorFormat> && !DepthTexels::any<IsColorFormat> &&
              !StencilTexels::any<IsColorFormat> && !SamplerTexels::any<IsColorFormat> &&
              !OtherTypes::any<IsColorFormat>);

} // namespace

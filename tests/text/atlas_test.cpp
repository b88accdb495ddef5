#include "text/atlas.hpp"

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "text/random_number.hpp"

namespace {

using vellis::test::randomBelow;
using vellis::text::Atlas;
using vellis::text::AtlasRegion;
using vellis::text::GlyphBitmap;
using vellis::text::TexelRect;

/// A glyph whose texels are all that value.
GlyphBitmap glyphOf(unsigned int width, unsigned int height, std::uint8_t value = 255) {
    GlyphBitmap glyph;
    glyph.width = width;
    glyph.height = height;
    glyph.coverage.assign(std::size_t{width} * height, value);
    return glyph;
}

std::uint8_t texelAt(Atlas& atlas, std::size_t texture, unsigned int x, unsigned int y) {
    const Atlas::Texture& which = atlas.texture(texture);
    return which.texels()[std::size_t{y} * which.width() + x];
}

/// How many texels of all textures are not 0.
std::size_t numCovered(Atlas& atlas) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < atlas.numTextures(); ++i) {
        const Atlas::Texture& texture = atlas.texture(i);
        for (std::size_t j = 0; j < std::size_t{texture.width()} * texture.height(); ++j)
            count += texture.texels()[j] != 0 ? 1u : 0u;
    }
    return count;
}

TEST(Atlas, IsEmptyAtFirst) {
    Atlas atlas;
    EXPECT_EQ(atlas.numTextures(), 0u);
    EXPECT_EQ(atlas.numTexels(), 0u);
}

TEST(Atlas, KeepsTheRowsOfAGlyph) {
    Atlas atlas(32);
    GlyphBitmap glyph = glyphOf(3, 2);
    glyph.coverage = {1, 2, 3, 4, 5, 6};
    const AtlasRegion region = atlas.add(glyph);
    EXPECT_FALSE(region.isOwnTexture);
    EXPECT_EQ(region.rect.width, 3u);
    EXPECT_EQ(region.rect.height, 2u);
    for (unsigned int y = 0; y < 2; ++y) {
        for (unsigned int x = 0; x < 3; ++x)
            EXPECT_EQ(texelAt(atlas, region.texture, region.rect.x + x, region.rect.y + y),
                      1 + x + 3 * y);
    }
    EXPECT_EQ(numCovered(atlas), 6u);
    EXPECT_EQ(atlas.numTexels(), 32u * 32u);
}

TEST(Atlas, GlyphsShareAPageWhileThereIsRoom) {
    Atlas atlas(32);
    EXPECT_EQ(atlas.add(glyphOf(10, 10)).texture, 0u);
    EXPECT_EQ(atlas.add(glyphOf(10, 10)).texture, 0u);
    EXPECT_EQ(atlas.add(glyphOf(10, 10)).texture, 0u);
    EXPECT_EQ(atlas.add(glyphOf(10, 10)).texture, 0u);
    EXPECT_EQ(atlas.add(glyphOf(14, 14)).texture, 1u);
    EXPECT_EQ(atlas.add(glyphOf(4, 4)).texture, 1u);
}

TEST(Atlas, AnOlderPageTakesWhatTheNewOneCannot) {
    Atlas atlas(32);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(atlas.add(glyphOf(10, 10)).texture, 0u);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(atlas.add(glyphOf(14, 14)).texture, 1u);
    EXPECT_EQ(atlas.add(glyphOf(5, 5)).texture, 0u);
    EXPECT_EQ(atlas.numTextures(), 2u);
}

TEST(Atlas, WhatIsLargerThanAQuarterOfAPageHasATextureOfItsOwn) {
    Atlas atlas(32);
    EXPECT_FALSE(atlas.add(glyphOf(15, 15)).isOwnTexture); // 16 x 16 with its margin
    const AtlasRegion region = atlas.add(glyphOf(16, 15));
    EXPECT_TRUE(region.isOwnTexture);
    EXPECT_EQ(region.texture, 1u);
    EXPECT_EQ(atlas.texture(1).width(), 18u);
    EXPECT_EQ(atlas.texture(1).height(), 17u);
    EXPECT_EQ(texelAt(atlas, 1, 0, 0), 0);
    EXPECT_EQ(texelAt(atlas, 1, 1, 1), 255);
    EXPECT_EQ(texelAt(atlas, 1, 16, 15), 255);
    EXPECT_EQ(texelAt(atlas, 1, 17, 16), 0);
    // Nothing else goes there.
    EXPECT_EQ(atlas.add(glyphOf(1, 1)).texture, 0u);
}

TEST(Atlas, WhatIsLongerThanAPageHasATextureOfItsOwn) {
    Atlas atlas(32);
    EXPECT_FALSE(atlas.add(glyphOf(30, 1)).isOwnTexture);
    EXPECT_TRUE(atlas.add(glyphOf(31, 1)).isOwnTexture);
    EXPECT_TRUE(atlas.add(glyphOf(1, 31)).isOwnTexture);
    EXPECT_TRUE(atlas.add(glyphOf(1000, 1)).isOwnTexture);
}

TEST(Atlas, AGlyphWithoutTexelsTakesNoRoom) {
    Atlas atlas(32);
    const AtlasRegion region = atlas.add({});
    EXPECT_TRUE(region.rect.isEmpty());
    EXPECT_EQ(atlas.numTextures(), 0u);
}

TEST(Atlas, TellsWhatHasChanged) {
    Atlas atlas(32);
    atlas.add(glyphOf(4, 4));
    Atlas::Texture& texture = atlas.texture(0);
    EXPECT_EQ(texture.dirty().width, 32u);
    EXPECT_EQ(texture.dirty().height, 32u);
    texture.setClean();
    EXPECT_TRUE(texture.dirty().isEmpty());

    const TexelRect second = atlas.add(glyphOf(5, 3)).rect;
    EXPECT_EQ(atlas.texture(0).dirty().x, second.x);
    EXPECT_EQ(atlas.texture(0).dirty().y, second.y);
    EXPECT_EQ(atlas.texture(0).dirty().width, 5u);
    EXPECT_EQ(atlas.texture(0).dirty().height, 3u);

    const TexelRect third = atlas.add(glyphOf(2, 2)).rect;
    const TexelRect both = atlas.texture(0).dirty();
    for (const TexelRect& rect : {second, third}) {
        EXPECT_LE(both.x, rect.x);
        EXPECT_LE(both.y, rect.y);
        EXPECT_GE(both.x + both.width, rect.x + rect.width);
        EXPECT_GE(both.y + both.height, rect.y + rect.height);
    }
}

TEST(Atlas, ForgetsAllItHas) {
    Atlas atlas(32);
    atlas.add(glyphOf(4, 4));
    atlas.clear();
    EXPECT_EQ(atlas.numTextures(), 0u);
    EXPECT_EQ(atlas.numTexels(), 0u);
    EXPECT_EQ(atlas.add(glyphOf(4, 4)).texture, 0u);
    EXPECT_EQ(numCovered(atlas), 16u);
}

TEST(Atlas, RandomGlyphsStayWholeWithAnEmptyMargin) {
    std::mt19937 random(13);
    Atlas atlas(64);
    std::vector<std::pair<AtlasRegion, std::uint8_t>> regions;
    std::size_t area = 0;
    for (int i = 0; i < 400; ++i) {
        const unsigned int width = 1 + randomBelow(random, 40);
        const unsigned int height = 1 + randomBelow(random, 40);
        const auto value = static_cast<std::uint8_t>(1 + randomBelow(random, 255));
        regions.emplace_back(atlas.add(glyphOf(width, height, value)), value);
        area += std::size_t{width} * height;
    }
    EXPECT_EQ(numCovered(atlas), area);
    for (const auto& [region, value] : regions) {
        const TexelRect& rect = region.rect;
        ASSERT_GE(rect.x, 1u);
        ASSERT_GE(rect.y, 1u);
        ASSERT_LT(rect.x + rect.width, atlas.texture(region.texture).width());
        ASSERT_LT(rect.y + rect.height, atlas.texture(region.texture).height());
        for (unsigned int y = rect.y - 1; y <= rect.y + rect.height; ++y) {
            for (unsigned int x = rect.x - 1; x <= rect.x + rect.width; ++x) {
                const bool isInside = x >= rect.x && x < rect.x + rect.width && y >= rect.y &&
                                      y < rect.y + rect.height;
                ASSERT_EQ(texelAt(atlas, region.texture, x, y), isInside ? value : 0);
            }
        }
    }
}

} // namespace

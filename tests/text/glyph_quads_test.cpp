#include "text/glyph_quads.hpp"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "support/allocation_count.hpp"
#include "text/test_font.hpp"

namespace {

using vellis::test::dejaVuSans;
using vellis::text::Anchor;
using vellis::text::Atlas;
using vellis::text::GlyphBitmap;
using vellis::text::GlyphQuad;
using vellis::text::GlyphQuads;

/// The texel in which a point of a texture lies.
std::uint8_t texelAt(GlyphQuads& quads, std::size_t texture, const glm::vec2& point) {
    const Atlas::Texture& which = quads.atlas().texture(texture);
    const auto x = static_cast<std::size_t>(point.x * static_cast<float>(which.width()));
    const auto y = static_cast<std::size_t>(point.y * static_cast<float>(which.height()));
    return which.texels()[y * which.width() + x];
}

TEST(GlyphQuads, ShowEachPixelOfAGlyphWhereItBelongs) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads;
    const auto& made = quads.make(*font, "Rg", Anchor::BottomLeft, 0.f);
    const auto placed = place(*font, "Rg", Anchor::BottomLeft);
    ASSERT_EQ(made.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        const GlyphBitmap bitmap = font->render(placed[i].index);
        const glm::vec2 size(bitmap.width, bitmap.height);
        const GlyphQuad& quad = made[i];
        EXPECT_EQ(quad.corner,
                  placed[i].origin +
                      glm::vec2(bitmap.left, bitmap.top - static_cast<int>(bitmap.height)));
        EXPECT_EQ(quad.right, glm::vec2(size.x, 0.f));
        EXPECT_EQ(quad.up, glm::vec2(0.f, size.y));
        for (unsigned int row = 0; row < bitmap.height; ++row) {
            for (unsigned int column = 0; column < bitmap.width; ++column) {
                // The middle of the pixel, from the lower left corner on.
                const glm::vec2 part((static_cast<float>(column) + 0.5f) / size.x,
                                     (size.y - static_cast<float>(row) - 0.5f) / size.y);
                ASSERT_EQ(texelAt(quads, quad.texture,
                                  quad.part.from + part * (quad.part.to - quad.part.from)),
                          bitmap.coverage[std::size_t{row} * bitmap.width + column])
                    << i << ": " << column << ", " << row;
            }
        }
    }
}

TEST(GlyphQuads, BlanksHaveNone) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads;
    EXPECT_TRUE(quads.make(*font, " \n ", Anchor::Center, 0.f).empty());
    EXPECT_EQ(quads.make(*font, "a b", Anchor::Center, 0.f).size(), 2u);
}

TEST(GlyphQuads, AGlyphIsInTheAtlasOnce) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads;
    quads.make(*font, "a", Anchor::Center, 0.f);
    quads.atlas().texture(0).setClean();
    const auto& made = quads.make(*font, "aaa", Anchor::Left, 0.f);
    EXPECT_TRUE(quads.atlas().texture(0).dirty().isEmpty());
    ASSERT_EQ(made.size(), 3u);
    EXPECT_EQ(made[0].part.from, made[2].part.from);
}

TEST(GlyphQuads, FontsShareThePages) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    LOAD_TEST_FONT(larger, dejaVuSans, 30.f);
    GlyphQuads quads;
    const GlyphQuad small = quads.make(*font, "a", Anchor::Center, 0.f)[0];
    const GlyphQuad large = quads.make(*larger, "a", Anchor::Center, 0.f)[0];
    EXPECT_EQ(small.texture, large.texture);
    EXPECT_NE(small.part.from, large.part.from);
    EXPECT_GT(large.right.x, small.right.x);
    EXPECT_EQ(quads.atlas().numTextures(), 1u);
}

TEST(GlyphQuads, TurnWithTheirEdgesAndTheTexelsAroundThem) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads;
    const float angle = 0.9f;
    const GlyphQuad straight = quads.make(*font, "R", Anchor::Center, 0.f)[0];
    const GlyphQuad turned = quads.make(*font, "R", Anchor::Center, angle)[0];
    const glm::vec2 right(std::cos(angle), std::sin(angle));
    const glm::vec2 up(-std::sin(angle), std::cos(angle));
    const float width = straight.right.x + 1.f;
    const float height = straight.up.y + 1.f;
    EXPECT_NEAR(turned.right.x, right.x * width, 1e-4f);
    EXPECT_NEAR(turned.right.y, right.y * width, 1e-4f);
    EXPECT_NEAR(turned.up.x, up.x * height, 1e-4f);
    EXPECT_NEAR(turned.up.y, up.y * height, 1e-4f);
    // The middle of both is at one place, but for the whole pixels.
    const glm::vec2 middle = straight.corner + 0.5f * (straight.right + straight.up);
    const glm::vec2 expected = middle.x * right + middle.y * up;
    const glm::vec2 found = turned.corner + 0.5f * (turned.right + turned.up);
    EXPECT_NEAR(found.x, expected.x, 0.75f);
    EXPECT_NEAR(found.y, expected.y, 0.75f);
    EXPECT_EQ(texelAt(quads, turned.texture, {turned.part.from.x, turned.part.to.y}), 0);
}

TEST(GlyphQuads, QuadsOfATextureFollowEachOther) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads(32); // a page has room for one or two
    const auto& made = quads.make(*font, "abcabcWabc", Anchor::Center, 0.f);
    ASSERT_EQ(made.size(), 10u);
    EXPECT_GT(quads.atlas().numTextures(), 1u);
    for (std::size_t i = 1; i < made.size(); ++i)
        EXPECT_LE(made[i - 1].texture, made[i].texture);
}

TEST(GlyphQuads, AKnownTextCostsNoAllocation) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads(32);
    quads.make(*font, "abcabcWabc", Anchor::Center, 0.f);
    const std::size_t before = vellis::test::allocationCount();
    quads.make(*font, "abcabcWabc", Anchor::Left, 1.f);
    EXPECT_EQ(vellis::test::allocationCount(), before);
}

TEST(GlyphQuads, StartAnewAfterAClear) {
    LOAD_TEST_FONT(font, dejaVuSans, 24.f);
    GlyphQuads quads;
    quads.make(*font, "abc", Anchor::Center, 0.f);
    quads.clear();
    EXPECT_EQ(quads.atlas().numTextures(), 0u);
    EXPECT_EQ(quads.make(*font, "c", Anchor::Center, 0.f).size(), 1u);
    EXPECT_EQ(quads.atlas().numTextures(), 1u);
}

} // namespace

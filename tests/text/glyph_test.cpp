#include <vellis/text/font.hpp>

#include <vector>

#include <gtest/gtest.h>

#include "text/test_font.hpp"

namespace {

using vellis::test::findFont;
using vellis::test::PlainFace;
using vellis::text::Font;
using vellis::text::GlyphBitmap;

/// What FreeType renders of a glyph, called directly.
GlyphBitmap renderPlainly(const PlainFace& face, std::uint32_t glyph) {
    GlyphBitmap result;
    EXPECT_EQ(FT_Load_Glyph(face.face(), glyph, FT_LOAD_NO_HINTING | FT_LOAD_RENDER), 0);
    const FT_GlyphSlot slot = face.face()->glyph;
    if (slot->bitmap.width == 0 || slot->bitmap.rows == 0)
        return result;
    EXPECT_EQ(slot->bitmap.pixel_mode, FT_PIXEL_MODE_GRAY);
    EXPECT_GT(slot->bitmap.pitch, 0);
    result.left = slot->bitmap_left;
    result.top = slot->bitmap_top;
    result.width = slot->bitmap.width;
    result.height = slot->bitmap.rows;
    for (unsigned int row = 0; row < result.height; ++row) {
        const unsigned char* const first =
            slot->bitmap.buffer +
            static_cast<std::size_t>(row) * static_cast<unsigned int>(slot->bitmap.pitch);
        result.coverage.insert(result.coverage.end(), first, first + result.width);
    }
    return result;
}

void expectSame(const GlyphBitmap& made, const GlyphBitmap& plain) {
    EXPECT_EQ(made.left, plain.left);
    EXPECT_EQ(made.top, plain.top);
    EXPECT_EQ(made.width, plain.width);
    EXPECT_EQ(made.height, plain.height);
    EXPECT_EQ(made.coverage, plain.coverage);
}

TEST(Glyphs, AreThoseOfFreeTypeByteForByte) {
    for (const char* name : {"DejaVuSans.ttf", "DejaVuSerif-Bold.ttf", "NotoSansArabic-Regular.ttf",
                             "NotoSansDevanagari-Regular.ttf"}) {
        for (const float pixels : {5.f, 11.5f, 16.f, 48.f}) {
            LOAD_TEST_FONT(font, name, pixels);
            const PlainFace face(findFont(name), pixels);
            int numSeen = 0;
            for (std::uint32_t glyph = 0; glyph < 400; ++glyph) {
                SCOPED_TRACE(testing::Message() << name << ", " << pixels << ": " << glyph);
                const GlyphBitmap plain = renderPlainly(face, glyph);
                expectSame(font->render(glyph), plain);
                numSeen += plain.coverage.empty() ? 0 : 1;
            }
            EXPECT_GT(numSeen, 250);
        }
    }
}

TEST(Glyphs, ABlankIsEmpty) {
    LOAD_TEST_FONT(font, "DejaVuSans.ttf", 16.f);
    const GlyphBitmap bitmap = font->render(font->shape(" ")->glyphs[0].index);
    EXPECT_TRUE(bitmap.coverage.empty());
    EXPECT_EQ(bitmap.width, 0u);
    EXPECT_EQ(bitmap.height, 0u);
}

TEST(Glyphs, OneThatTheFontLacksIsEmpty) {
    LOAD_TEST_FONT(font, "DejaVuSans.ttf", 16.f);
    EXPECT_TRUE(font->render(0x10000000).coverage.empty());
    EXPECT_TRUE(font->render(0xFFFFFFFF).coverage.empty());
}

TEST(Glyphs, TheFontsOwnBoxIsGlyphZero) {
    LOAD_TEST_FONT(font, "DejaVuSans.ttf", 16.f);
    EXPECT_FALSE(font->render(0).coverage.empty());
}

} // namespace

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include <vellis/text/font.hpp>

#include "support/allocation_count.hpp"
#include "text/test_font.hpp"

namespace {

using testing::ElementsAre;
using vellis::test::bytesOf;
using vellis::test::dejaVuSans;
using vellis::test::findFont;
using vellis::test::indicesOf;
using vellis::test::PlainFace;
using vellis::test::shapePlainly;
using vellis::text::Fixed;
using vellis::text::Font;
using vellis::text::ShapedText;

constexpr const char* arabic = "NotoSansArabic-Regular.ttf";
constexpr const char* devanagari = "NotoSansDevanagari-Regular.ttf";

/// A text of one direction and one script, in a font that has it.
struct PlainText {
    const char* name;
    const char* font;
    const char* text;
};

std::ostream& operator<<(std::ostream& stream, const PlainText& text) {
    return stream << text.name;
}

std::string nameOf(const testing::TestParamInfo<PlainText>& row) {
    return row.param.name;
}

class PlainShaping : public testing::TestWithParam<PlainText> {};

TEST_P(PlainShaping, IsThatOfHarfBuzz) {
    const PlainText& row = GetParam();
    for (const float pixels : {7.f, 12.5f, 16.f, 100.f / 3.f, 300.f}) {
        LOAD_TEST_FONT(font, row.font, pixels);
        const PlainFace face(findFont(row.font), pixels);
        const auto shape = font->shape(row.text);
        const ShapedText plain = shapePlainly(face, row.text);
        ASSERT_EQ(shape->lines.size(), 1u);
        EXPECT_EQ(shape->lines[0].advance, plain.lines[0].advance) << pixels;
        ASSERT_EQ(indicesOf(*shape), indicesOf(plain)) << pixels;
        EXPECT_EQ(bytesOf(*shape), bytesOf(plain)) << pixels;
        for (std::size_t i = 0; i < plain.glyphs.size(); ++i) {
            EXPECT_EQ(shape->glyphs[i].x, plain.glyphs[i].x) << pixels << ": " << i;
            EXPECT_EQ(shape->glyphs[i].y, plain.glyphs[i].y) << pixels << ": " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Shaping, PlainShaping,
    testing::Values(
        PlainText{"Latin", dejaVuSans, "The quick brown fox jumps over the lazy dog."},
        PlainText{"Kerning", dejaVuSans, "AVAWA To Ty LT"},
        PlainText{"Ligatures", dejaVuSans, "office fluffy affine"},
        PlainText{"Marks", dejaVuSans, "e\u0301 a\u0308\u0323 n\u0303o\u0302"},
        PlainText{"Greek", dejaVuSans, "\u03B1\u03B2\u03B3\u0394\u03A9"},
        PlainText{"Digits", dejaVuSans, "0123456789 + 5"},
        PlainText{"Hebrew", dejaVuSans, "\u05E9\u05C1\u05DC\u05D5\u05B9\u05DD"},
        PlainText{"Arabic", arabic,
                  "\u0627\u0644\u0633\u0644\u0627\u0645 \u0639\u0644\u064A\u0643"},
        PlainText{"ArabicMarks", arabic, "\u0645\u064F\u062D\u064E\u0645\u0651\u064E\u062F"},
        PlainText{
            "Devanagari", devanagari,
            "\u0939\u093F\u0928\u094D\u0926\u0940 \u0915\u094D\u0937\u0924\u094D\u0930\u093F"},
        PlainText{"Missing", dejaVuSans, "a\u4E00b"}),
    nameOf);

TEST(Shaping, KerningBringsLettersTogether) {
    LOAD_TEST_FONT(font, dejaVuSans, 64.f);
    const Fixed apart = font->measure("A").advance + font->measure("V").advance;
    EXPECT_LT(font->measure("AV").advance, apart - 64);
}

TEST(Shaping, LigaturesAreOneGlyph) {
    LOAD_TEST_FONT(font, dejaVuSans, 64.f);
    const auto shape = font->shape("xffiy");
    EXPECT_EQ(shape->glyphs.size(), 3u);
    EXPECT_THAT(bytesOf(*shape), ElementsAre(0, 1, 4));
}

TEST(Shaping, ArabicLettersTakeTheFormOfTheirPlace) {
    LOAD_TEST_FONT(font, arabic, 64.f);
    const auto alone = indicesOf(*font->shape("\u0628"));
    const auto joined = indicesOf(*font->shape("\u0628\u0628\u0628"));
    ASSERT_GE(alone.size(), 1u);
    ASSERT_GE(joined.size(), 3u);
    EXPECT_NE(joined.front(), joined.back()); // the end of the word and its beginning
    EXPECT_NE(joined.front(), alone.front());
}

TEST(Shaping, NumbersWithinArabicGoFromLeftToRight) {
    LOAD_TEST_FONT(font, dejaVuSans, 32.f); // which has Arabic letters, too
    // alef, space, 1, 2, 3, space, dal: of two bytes each letter
    const auto shape = font->shape("\u0627 123 \u062F");
    EXPECT_THAT(bytesOf(*shape), ElementsAre(7, 6, 3, 4, 5, 2, 0));
    EXPECT_TRUE(shape->lines[0].isRightToLeft);
    Fixed last = -1;
    for (const auto& glyph : shape->glyphs) {
        EXPECT_GT(glyph.x, last);
        last = glyph.x;
    }
}

TEST(Shaping, BracketsAreMirroredFromRightToLeft) {
    LOAD_TEST_FONT(font, dejaVuSans, 32.f);
    const auto brackets = indicesOf(*font->shape("()"));
    const auto hebrew = indicesOf(*font->shape("\u05D0(\u05D1)"));
    ASSERT_EQ(hebrew.size(), 4u);
    EXPECT_EQ(hebrew[0], brackets[0]); // the last character, as it is seen at the left
    EXPECT_EQ(hebrew[2], brackets[1]);
}

TEST(Shaping, DevanagariVowelsGoBeforeTheirConsonant) {
    LOAD_TEST_FONT(font, devanagari, 64.f);
    const auto ki = indicesOf(*font->shape("\u0915\u093F"));
    const auto ka = indicesOf(*font->shape("\u0915"));
    ASSERT_EQ(ki.size(), 2u);
    ASSERT_EQ(ka.size(), 1u);
    EXPECT_EQ(ki[1], ka[0]);
}

TEST(Shaping, CombiningMarksTakeNoRoom) {
    LOAD_TEST_FONT(font, dejaVuSans, 64.f);
    EXPECT_EQ(font->measure("x\u0323").advance, font->measure("x").advance);
    EXPECT_LT(font->measure("x\u0323").ink.bottom, font->measure("x").ink.bottom);
}

TEST(Shaping, MissingGlyphsAreTheFontsBox) {
    LOAD_TEST_FONT(font, dejaVuSans, 64.f);
    EXPECT_THAT(indicesOf(*font->shape("\u4E00")), ElementsAre(0));
    EXPECT_FALSE(font->measure("\u4E00").ink.isEmpty());
}

TEST(Shaping, ABadByteShowsTheReplacementCharacter) {
    LOAD_TEST_FONT(font, dejaVuSans, 64.f);
    EXPECT_EQ(indicesOf(*font->shape("\xE2\x82")), indicesOf(*font->shape("\uFFFD\uFFFD")));
}

TEST(Shaping, LinesEndAtEitherKindOfEnd) {
    LOAD_TEST_FONT(font, dejaVuSans, 32.f);
    const auto shape = font->shape("ab\nc\r\n\nd");
    ASSERT_EQ(shape->lines.size(), 4u);
    EXPECT_THAT(bytesOf(*shape, 0), ElementsAre(0, 1));
    EXPECT_THAT(bytesOf(*shape, 1), ElementsAre(3));
    EXPECT_EQ(shape->lines[2].numGlyphs, 0u);
    EXPECT_THAT(bytesOf(*shape, 3), ElementsAre(7));
    EXPECT_EQ(shape->glyphs[shape->lines[3].firstGlyph].x, 0);
    EXPECT_EQ(font->shape("a\n")->lines.size(), 2u);
    EXPECT_EQ(font->shape("")->lines.size(), 1u);
}

TEST(Shaping, EachLineHasItsOwnDirection) {
    LOAD_TEST_FONT(font, dejaVuSans, 32.f);
    const auto shape = font->shape("a 1\n\u05D0 1");
    ASSERT_EQ(shape->lines.size(), 2u);
    EXPECT_FALSE(shape->lines[0].isRightToLeft);
    EXPECT_TRUE(shape->lines[1].isRightToLeft);
    EXPECT_THAT(bytesOf(*shape, 1), ElementsAre(7, 6, 4));
}

TEST(Shaping, ATabIsASpace) {
    LOAD_TEST_FONT(font, dejaVuSans, 32.f);
    EXPECT_EQ(indicesOf(*font->shape("a\tb\n\tc"), 0), indicesOf(*font->shape("a b")));
    EXPECT_EQ(indicesOf(*font->shape("a\tb\n\tc"), 1), indicesOf(*font->shape(" c")));
}

TEST(Shaping, WhatIsTooLongEndsBetweenCharacters) {
    LOAD_TEST_FONT(font, dejaVuSans, 8.f);
    // Of lines, which are fast: the last character that fits would end in the middle.
    std::string text(Font::longestText - 1, '\n');
    text += "\u00E9\u00E9";
    const auto shape = font->shape(text);
    EXPECT_EQ(shape->lines.size(), Font::longestText);
    EXPECT_TRUE(shape->glyphs.empty());
}

TEST(Shaping, AKeptTextCostsNoAllocation) {
    LOAD_TEST_FONT(font, dejaVuSans, 16.f);
    const std::string text = "A text that is longer than what a string keeps in itself";
    const auto first = font->shape(text);
    font->shape("another");
    const std::size_t before = vellis::test::allocationCount();
    const auto second = font->shape(text);
    const auto extents = font->measure(text);
    EXPECT_EQ(vellis::test::allocationCount(), before);
    EXPECT_EQ(first, second);
    EXPECT_EQ(extents.advance, first->lines[0].advance);
}

TEST(Shaping, TenThousandWordsAreKept) {
    LOAD_TEST_FONT(font, dejaVuSans, 16.f);
    std::vector<std::string> words;
    for (int i = 0; i < 10000; ++i)
        words.push_back("word" + std::to_string(1000 + i % 9000) + (i < 9000 ? "a" : "b"));
    std::vector<std::shared_ptr<const ShapedText>> first;
    for (const std::string& word : words)
        first.push_back(font->shape(word));
    std::size_t numKept = 0;
    const std::size_t before = vellis::test::allocationCount();
    for (std::size_t i = 0; i < words.size(); ++i)
        numKept += font->shape(words[i]) == first[i] ? 1u : 0u;
    EXPECT_EQ(vellis::test::allocationCount(), before);
    EXPECT_EQ(numKept, words.size());
}

TEST(Shaping, ForgottenTextsAreShapedAnew) {
    LOAD_TEST_FONT(font, dejaVuSans, 16.f);
    const auto first = font->shape("first");
    const auto indices = indicesOf(*first);
    for (std::size_t i = 0; i < Font::mostKeptTexts; ++i)
        font->shape(std::to_string(i));
    const auto again = font->shape("first");
    EXPECT_NE(again, first);
    EXPECT_EQ(indicesOf(*again), indices);
    EXPECT_EQ(indicesOf(*first), indices);
}

} // namespace

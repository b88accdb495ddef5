#include <vellis/text/font.hpp>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/stderr_capture.hpp"
#include "text/random_number.hpp"
#include "text/test_font.hpp"

namespace {

using testing::EndsWith;
using testing::StartsWith;
using vellis::test::bytesOf;
using vellis::test::dejaVuSans;
using vellis::test::findFont;
using vellis::test::PlainFace;
using vellis::test::randomBelow;
using vellis::test::stderrOf;
using vellis::text::Extents;
using vellis::text::Fixed;
using vellis::text::FixedBox;
using vellis::text::Font;

/// That a call has given no font, and said so in one line.
template <class Load>
void expectRefused(Load load) {
    std::shared_ptr<Font> font;
    const std::string lines = stderrOf([&] { font = load(); });
    EXPECT_EQ(font, nullptr);
    EXPECT_THAT(lines, StartsWith("Font: "));
    EXPECT_EQ(lines.find('\n'), lines.size() - 1) << lines;
}

/// Uses all that a font does.
void use(Font& font) {
    font.measure("Ag\u0301 \u05D0\u0627\u0628 12\n\xFF\u0915\u093F fi AV");
    for (std::uint32_t glyph = 0; glyph < 64; ++glyph)
        font.render(glyph);
    font.render(0xFFFFFFFFu);
}

TEST(FixedBox, IsEmptyAndAtTheOriginAtFirst) {
    const FixedBox box;
    EXPECT_TRUE(box.isEmpty());
    for (const auto side : {box.left, box.bottom, box.right, box.top})
        EXPECT_EQ(side, 0);
}

TEST(Font, AMissingFileGivesNone) {
    expectRefused([] { return Font::load("/a/font/that/is/not.ttf", 16.f); });
    expectRefused([] { return Font::load("", 16.f); });
    expectRefused([] { return Font::load(static_cast<const char*>(nullptr), 16.f); });
    expectRefused([] { return Font::load("/tmp", 16.f); });
}

TEST(Font, AFileWithoutAnEndGivesNone) {
    if (!std::ifstream("/dev/zero").good())
        GTEST_SKIP() << "there is no such file";
    expectRefused([] { return Font::load("/dev/zero", 16.f); });
}

TEST(Font, ALongPathIsCutInItsLine) {
    const std::string path(4000, 'x');
    const std::string line = stderrOf([&] { Font::load(path, 16.f); });
    EXPECT_THAT(line, EndsWith(": cannot be read, or is too large\n"));
    EXPECT_LT(line.size(), 300u);
}

TEST(Font, WhatIsNoFontGivesNone) {
    expectRefused([] { return Font::load(nullptr, 0, 16.f); });
    expectRefused([] { return Font::load(nullptr, 100, 16.f); });
    expectRefused([] { return Font::load("text", 4, 16.f); });
    expectRefused([] { return Font::load("text", 0, 16.f); });
    expectRefused([] { return Font::load("text", Font::largestFile + 1, 16.f); });
}

class FontSizes : public testing::TestWithParam<float> {};

TEST_P(FontSizes, OutsideOfTheLimitsGiveNone) {
    const std::string path = findFont(dejaVuSans);
    if (path.empty())
        GTEST_SKIP() << "there is no " << dejaVuSans;
    expectRefused([&] { return Font::load(path, GetParam()); });
    const std::vector<std::uint8_t> bytes = bytesOf(path);
    expectRefused([&] { return Font::load(bytes.data(), bytes.size(), GetParam()); });
}

INSTANTIATE_TEST_SUITE_P(Font, FontSizes,
                         testing::Values(0.f, -0.f, -16.f, 0.001f, 0.49f, 4097.f, 10000.f, 1e30f,
                                         std::numeric_limits<float>::infinity(),
                                         -std::numeric_limits<float>::infinity(),
                                         std::numeric_limits<float>::quiet_NaN()));

TEST(Font, TakesAllSizesWithinTheLimits) {
    for (const float pixels : {Font::smallestSize, 1.f, 12.25f, 1000.f, Font::largestSize}) {
        LOAD_TEST_FONT(font, dejaVuSans, pixels);
        EXPECT_EQ(font->pixels(), pixels);
        const PlainFace face(findFont(dejaVuSans), 16.f);
        ASSERT_EQ(FT_Load_Char(face.face(), 'W', FT_LOAD_NO_SCALE), 0);
        const double em = face.face()->units_per_EM;
        const double part = static_cast<double>(face.face()->glyph->advance.x) / em;
        const double width = vellis::text::pixelsOf(font->measure("W").advance);
        EXPECT_NEAR(width, part * double{pixels}, 1. / 64.) << pixels;
    }
}

TEST(Font, TheLargestSizeRenders) {
    LOAD_TEST_FONT(font, dejaVuSans, Font::largestSize);
    const auto bitmap = font->render(font->shape("W")->glyphs[0].index);
    EXPECT_GT(bitmap.width, 3000u);
    EXPECT_GT(bitmap.height, 2500u);
}

TEST(Font, AGlyphBeyondTheLimitIsEmpty) {
    // One letter for a whole sentence, which is many times as wide as it is high; here as wide as
    // FreeType itself can render.
    LOAD_TEST_FONT(font, "NotoNaskhArabic-Regular.ttf", 1500.f);
    const std::uint32_t basmala = font->shape("\uFDFD")->glyphs[0].index;
    ASSERT_NE(basmala, 0u);
    const Fixed width = font->measure("\uFDFD").ink.right;
    ASSERT_GT(width, Fixed{Font::largestGlyph} * 64);
    EXPECT_TRUE(font->render(basmala).coverage.empty());
    LOAD_TEST_FONT(smaller, "NotoNaskhArabic-Regular.ttf", 40.f);
    EXPECT_FALSE(smaller->render(basmala).coverage.empty());
}

TEST(Font, MemoryMayGoAfterLoading) {
    LOAD_TEST_FONT(font, dejaVuSans, 20.f);
    std::vector<std::uint8_t> bytes = bytesOf(findFont(dejaVuSans));
    const auto copy = Font::load(bytes.data(), bytes.size(), 20.f);
    ASSERT_NE(copy, nullptr);
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
    EXPECT_EQ(copy->measure("Hello").advance, font->measure("Hello").advance);
    EXPECT_EQ(copy->render(40).coverage, font->render(40).coverage);
    EXPECT_NE(copy->id(), font->id());
}

TEST(Font, MetricsAreThoseOfFreeType) {
    LOAD_TEST_FONT(font, dejaVuSans, 20.f);
    const PlainFace face(findFont(dejaVuSans), 20.f);
    const FT_Size_Metrics& metrics = face.face()->size->metrics;
    EXPECT_EQ(font->metrics().ascent, metrics.ascender);
    EXPECT_EQ(font->metrics().descent, -metrics.descender);
    EXPECT_EQ(font->metrics().lineHeight, metrics.height);
    EXPECT_EQ(font->metrics().lineHeight % 64, 0);
}

TEST(Font, MeasuresTheInkOfOutlines) {
    LOAD_TEST_FONT(font, dejaVuSans, 40.f);
    const PlainFace face(findFont(dejaVuSans), 40.f);
    ASSERT_EQ(FT_Load_Char(face.face(), 'g', FT_LOAD_NO_HINTING), 0);
    const FT_Glyph_Metrics& metrics = face.face()->glyph->metrics;
    const FixedBox ink = font->measure("g").ink;
    EXPECT_EQ(ink.left, metrics.horiBearingX);
    EXPECT_EQ(ink.top, metrics.horiBearingY);
    EXPECT_EQ(ink.right, metrics.horiBearingX + metrics.width);
    EXPECT_EQ(ink.bottom, metrics.horiBearingY - metrics.height);
    EXPECT_EQ(font->measure("g").advance, metrics.horiAdvance);
}

TEST(Font, MeasuresAllLines) {
    LOAD_TEST_FONT(font, dejaVuSans, 40.f);
    const Extents first = font->measure("wide line");
    const Extents second = font->measure("g");
    const Extents both = font->measure("wide line\n\ng");
    EXPECT_EQ(both.numLines, 3u);
    EXPECT_EQ(both.advance, first.advance);
    EXPECT_EQ(both.ink.top, first.ink.top);
    EXPECT_EQ(both.ink.right, first.ink.right);
    EXPECT_EQ(both.ink.bottom, second.ink.bottom - 2 * both.lineHeight);
    EXPECT_EQ(both.lineHeight, font->metrics().lineHeight);
}

TEST(Font, BlanksHaveNoInk) {
    LOAD_TEST_FONT(font, dejaVuSans, 40.f);
    EXPECT_TRUE(font->measure("").ink.isEmpty());
    EXPECT_EQ(font->measure("").advance, 0);
    EXPECT_TRUE(font->measure("   ").ink.isEmpty());
    EXPECT_GT(font->measure("   ").advance, 0);
    EXPECT_EQ(font->measure(" g ").ink.left,
              font->measure("g").ink.left + font->measure(" ").advance);
}

TEST(Font, ATruncatedFileGivesNoneOrAFontThatWorks) {
    const std::string path = findFont(dejaVuSans);
    if (path.empty())
        GTEST_SKIP() << "there is no " << dejaVuSans;
    const std::vector<std::uint8_t> bytes = bytesOf(path);
    int numRefused = 0;
    for (std::size_t part = 0; part < 40; ++part) {
        std::shared_ptr<Font> font;
        const std::string lines =
            stderrOf([&] { font = Font::load(bytes.data(), bytes.size() * part / 40, 16.f); });
        EXPECT_EQ(lines.empty(), font != nullptr) << part;
        if (font != nullptr)
            use(*font);
        else
            ++numRefused;
    }
    EXPECT_GT(numRefused, 0);
}

TEST(Font, ADamagedFileGivesNoneOrAFontThatWorks) {
    const std::string path = findFont(dejaVuSans);
    if (path.empty())
        GTEST_SKIP() << "there is no " << dejaVuSans;
    const std::vector<std::uint8_t> bytes = bytesOf(path);
    std::mt19937 random(3);
    const auto size = static_cast<unsigned int>(bytes.size());
    int numLoaded = 0;
    for (int round = 0; round < 60; ++round) {
        std::vector<std::uint8_t> damaged = bytes;
        for (int i = 0; i < 40; ++i) {
            // Half of them where the tables are listed.
            const unsigned int reach = i % 2 == 0 ? size : 400u;
            damaged[randomBelow(random, reach)] = static_cast<std::uint8_t>(random());
        }
        std::shared_ptr<Font> font;
        stderrOf([&] { font = Font::load(damaged.data(), damaged.size(), 16.f); });
        if (font == nullptr)
            continue;
        ++numLoaded;
        use(*font);
    }
    RecordProperty("loaded", numLoaded);
}

TEST(Font, RandomBytesGiveNone) {
    std::mt19937 random(5);
    for (const std::size_t size : {1u, 16u, 1000u, 100000u}) {
        std::vector<std::uint8_t> bytes(size);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        expectRefused([&] { return Font::load(bytes.data(), bytes.size(), 16.f); });
    }
}

/// A bitmap font of one glyph, in the text form that FreeType reads.
constexpr const char* bitmapFont = R"(STARTFONT 2.1
FONT -misc-small-medium-r-normal--8-80-75-75-c-80-iso10646-1
SIZE 8 75 75
FONTBOUNDINGBOX 8 8 0 0
STARTPROPERTIES 2
FONT_ASCENT 8
FONT_DESCENT 0
ENDPROPERTIES
CHARS 1
STARTCHAR A
ENCODING 65
SWIDTH 1000 0
DWIDTH 8 0
BBX 8 8 0 0
BITMAP
FF
81
81
81
81
81
81
FF
ENDCHAR
ENDFONT
)";

TEST(Font, AFontWithoutOutlinesGivesNone) {
    const std::string text = bitmapFont;
    const std::string line =
        stderrOf([&] { EXPECT_EQ(Font::load(text.data(), text.size(), 8.f), nullptr); });
    EXPECT_EQ(line, "Font: font in memory: a font without outlines\n");
}

} // namespace

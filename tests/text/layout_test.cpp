#include <vellis/text/layout.hpp>

#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "support/allocation_count.hpp"
#include "text/test_font.hpp"

namespace {

using vellis::test::dejaVuSans;
using vellis::text::Anchor;
using vellis::text::Fixed;
using vellis::text::FontMetrics;
using vellis::text::pixelsOf;
using vellis::text::place;
using vellis::text::PlacedGlyph;

/// An anchor, and how much of the text is left of its position and above it.
struct AnchorParts {
    Anchor anchor;
    double left;
    double above;
};

constexpr AnchorParts anchors[] = {
    {Anchor::TopLeft, 0., 0.},    {Anchor::Top, 0.5, 0.},     {Anchor::TopRight, 1., 0.},
    {Anchor::Left, 0., 0.5},      {Anchor::Center, 0.5, 0.5}, {Anchor::Right, 1., 0.5},
    {Anchor::BottomLeft, 0., 1.}, {Anchor::Bottom, 0.5, 1.},  {Anchor::BottomRight, 1., 1.},
};

class Anchors : public testing::TestWithParam<AnchorParts> {};

TEST_P(Anchors, PutThatPointOfTheBoxAtThePosition) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    const AnchorParts& row = GetParam();
    const double width = pixelsOf(font->measure("Hamburg").advance);
    const FontMetrics& metrics = font->metrics();
    const double height = pixelsOf(metrics.ascent + metrics.descent);
    const auto placed = place(*font, "Hamburg", row.anchor);
    const auto shape = font->shape("Hamburg");
    ASSERT_EQ(placed.size(), 7u);
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const double x = pixelsOf(shape->glyphs[i].x) - row.left * width;
        const double y = row.above * height - pixelsOf(metrics.ascent);
        EXPECT_EQ(placed[i].index, shape->glyphs[i].index);
        EXPECT_NEAR(double{placed[i].origin.x}, x, 0.51) << i;
        EXPECT_NEAR(double{placed[i].origin.y}, y, 0.51) << i;
        EXPECT_EQ(placed[i].origin,
                  glm::vec2(std::round(placed[i].origin.x), std::round(placed[i].origin.y)));
    }
}

TEST_P(Anchors, PutEachLineBelowTheOther) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    const AnchorParts& row = GetParam();
    const auto placed = place(*font, "wwww\ni\ni", row.anchor);
    ASSERT_EQ(placed.size(), 6u);
    const double step = pixelsOf(font->metrics().lineHeight);
    const double spare =
        pixelsOf(font->measure("wwww").advance - font->measure("i").advance) * row.left;
    for (std::size_t line = 1; line <= 2; ++line) {
        const glm::vec2 way = placed[3 + line].origin - placed[0].origin;
        EXPECT_NEAR(double{way.x}, spare, 1.01);
        EXPECT_EQ(double{way.y}, -step * static_cast<double>(line));
    }
    const double height = pixelsOf(font->metrics().ascent + font->metrics().descent) + 2. * step;
    EXPECT_NEAR(double{placed[0].origin.y}, row.above * height - pixelsOf(font->metrics().ascent),
                0.51);
}

INSTANTIATE_TEST_SUITE_P(Layout, Anchors, testing::ValuesIn(anchors));

TEST(Layout, RoundsEachGlyphOnceFromItsExactPosition) {
    LOAD_TEST_FONT(font, dejaVuSans, 13.3f);
    const char* const text = "iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiii";
    const auto shape = font->shape(text);
    const auto placed = place(*font, text, Anchor::TopLeft);
    ASSERT_EQ(placed.size(), 40u);
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const double exact = pixelsOf(shape->glyphs[i].x);
        EXPECT_EQ(double{placed[i].origin.x}, std::floor(exact + 0.5)) << i;
    }
    EXPECT_NE(shape->glyphs[39].x % 64, 0);
}

TEST(Layout, ATurnGoesCounterClockwiseAboutThePosition) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    const auto shape = font->shape("Hamburg");
    const double below = pixelsOf(font->metrics().ascent);
    const float angle = 0.7f;
    const auto placed = place(*font, "Hamburg", Anchor::TopLeft, angle);
    ASSERT_EQ(placed.size(), 7u);
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const double x = pixelsOf(shape->glyphs[i].x);
        const double y = -below;
        const double cosine = std::cos(double{angle});
        const double sine = std::sin(double{angle});
        EXPECT_NEAR(double{placed[i].origin.x}, x * cosine - y * sine, 1e-4);
        EXPECT_NEAR(double{placed[i].origin.y}, x * sine + y * cosine, 1e-4);
    }
}

TEST(Layout, AnAngleThatIsNotFinitePlacesNothing) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    for (const float angle :
         {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        std::vector<PlacedGlyph> placed(3);
        place(*font, "Hamburg", Anchor::Center, angle, placed);
        EXPECT_TRUE(placed.empty());
    }
}

TEST(Layout, AnAnchorThatDoesNotExistIsTopLeft) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    const auto placed = place(*font, "ab", static_cast<Anchor>(200));
    const auto expected = place(*font, "ab", Anchor::TopLeft);
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_EQ(placed[0].origin, expected[0].origin);
    EXPECT_EQ(placed[1].origin, expected[1].origin);
}

TEST(Layout, AnEmptyTextHasNoGlyphs) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    EXPECT_TRUE(place(*font, "").empty());
    EXPECT_TRUE(place(*font, "\n\n").empty());
}

TEST(Layout, AKeptTextCostsNoAllocation) {
    LOAD_TEST_FONT(font, dejaVuSans, 21.f);
    std::vector<PlacedGlyph> placed;
    place(*font, "Hamburg", Anchor::Center, 0.f, placed);
    const std::size_t before = vellis::test::allocationCount();
    place(*font, "Hamburg", Anchor::Left, 1.f, placed);
    EXPECT_EQ(vellis::test::allocationCount(), before);
}

} // namespace

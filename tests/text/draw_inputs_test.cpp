/// What drawing texts makes of bad input, and of much of it.

#include <vellis/text/draw.hpp>

#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "canvas/canvas_fixture.hpp"
#include "support/stderr_capture.hpp"
#include "text/test_font.hpp"

namespace {

using vellis::test::dejaVuSans;
using vellis::test::Lines;
using vellis::test::only;
using vellis::text::Anchor;
using vellis::text::Font;
using vellis::text::Position;

class DrawInputs : public vellis::test::CanvasTest {
protected:
    void SetUp() override {
        path = vellis::test::findFont(dejaVuSans);
        if (path.empty())
            GTEST_SKIP() << "there is no " << dejaVuSans;
        font = Font::load(path, 16.f);
        ASSERT_NE(font, nullptr);
    }

    /// How many quads a text of a font draws.
    std::size_t numQuads(const std::shared_ptr<Font>& drawn, const std::string& text,
                         const Position& position = {0.25, 0.5},
                         const glm::mat4& matrix = glm::mat4(1.f)) {
        const Lines draws = drawsOf(
            [&] { vellis::text::draw(canvas, drawn, position, text, white, Anchor::Center); },
            matrix);
        std::size_t count = 0;
        for (const std::string& draw : draws)
            count += std::stoul(draw.substr(draw.find(", ") + 2)) / 6;
        return count;
    }

    std::string path;
    std::shared_ptr<Font> font;
};

TEST_F(DrawInputs, EachBadByteIsOneGlyph) {
    EXPECT_EQ(numQuads(font, "ab"), 2u);
    EXPECT_EQ(numQuads(font, "a\xFF\xFE"
                             "b"),
              4u);
    EXPECT_EQ(numQuads(font, "\xF0\x9F\x98"), 3u) << "cut off";
    EXPECT_EQ(numQuads(font, "\xED\xA0\x80"), 3u) << "half of a pair";
    EXPECT_EQ(numQuads(font, "\xC0\xAF"), 2u) << "longer than it need be";
}

TEST_F(DrawInputs, WhatHasNothingToShowDrawsNothing) {
    for (const char* const text : {"", " ", "\n\n", " \t \r\n ", "\u200B\u200E"})
        EXPECT_EQ(numQuads(font, text), 0u) << '"' << text << '"';
    EXPECT_EQ(numQuads(font, std::string("a\0b", 3)), numQuads(font, "ab") + 1)
        << "a null is a glyph";
}

TEST_F(DrawInputs, APositionThatIsNowhereDrawsNothing) {
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity()};
    for (const double value : bad) {
        EXPECT_EQ(numQuads(font, "a", {value, 0.}), 0u);
        EXPECT_EQ(numQuads(font, "a", {0., -value}), 0u);
        EXPECT_EQ(numQuads(font, "a", {0., 0., value}), 0u);
    }
    const glm::mat4 nothing(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(numQuads(font, "a", {0., 0.}, nothing), 0u);
}

TEST_F(DrawInputs, AFontOfASizeThatThereIsNotIsNoFont) {
    for (const float pixels : {0.f, 10000.f, std::numeric_limits<float>::quiet_NaN()}) {
        std::shared_ptr<Font> none;
        vellis::test::stderrOf([&] { none = Font::load(path, pixels); });
        EXPECT_EQ(numQuads(none, "a"), 0u) << pixels;
    }
}

TEST_F(DrawInputs, ALongTextIsDrawnToItsEnd) {
    std::string text;
    while (text.size() < 60000)
        text += "word ";
    EXPECT_EQ(numQuads(font, text), text.size() / 5 * 4);
}

TEST_F(DrawInputs, AnAnchorThatDoesNotExistDraws) {
    const auto draw = [&] {
        vellis::text::draw(canvas, font, {0., 0.}, "ab", white, static_cast<Anchor>(200));
    };
    EXPECT_EQ(drawsOf(draw), Lines({vellis::test::quadsDrawn(0, 2)}));
}

TEST_F(DrawInputs, AGlyphThatIsLargerThanAnyTextureShowsNothing) {
    const auto large = Font::load(path, 2400.f);
    gl.setState(GL_MAX_TEXTURE_SIZE, {1024});
    EXPECT_EQ(numQuads(large, "W."), 1u) << "the full stop is small enough";
    EXPECT_EQ(numQuads(large, "W"), 0u);
    EXPECT_EQ(only(gl.liveNames(), {"texture"}).size(), 1u);
    EXPECT_EQ(numQuads(font, "ab"), 2u);
}

TEST_F(DrawInputs, WhereGLMakesNoTextureNothingBreaks) {
    gl.failToCreate(glad_glGenTextures, true);
    numQuads(font, "ab");
    gl.failToCreate(glad_glGenTextures, false);
    canvas = vellis::Canvas::make();
    EXPECT_EQ(numQuads(font, "ab"), 2u);
}

} // namespace

/// What drawing texts asks of GL.

#include <vellis/text/draw.hpp>

#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <vellis/canvas/image.hpp>

#include "canvas/canvas_fixture.hpp"
#include "support/allocation_count.hpp"
#include "text/test_font.hpp"

namespace {

using vellis::test::dejaVuSans;
using vellis::test::Lines;
using vellis::test::only;
using vellis::text::Anchor;
using vellis::text::Font;

class DrawTrace : public vellis::test::CanvasTest {
protected:
    void SetUp() override {
        if (vellis::test::findFont(dejaVuSans).empty())
            GTEST_SKIP() << "there is no " << dejaVuSans;
        font = Font::load(vellis::test::findFont(dejaVuSans), 16.f);
        ASSERT_NE(font, nullptr);
    }

    void drawText(const char* text, float angle = 0.f) {
        vellis::text::draw(canvas, font, {0.25, 0.5}, text, white, Anchor::Center, angle);
    }

    /// What a text uploads.
    Lines uploadsOf(const char* text) {
        return only(callsOf([&] { drawText(text); }), {"glTexImage2D", "glTexSubImage2D"});
    }

    std::shared_ptr<Font> font;
};

TEST_F(DrawTrace, NewGlyphsAreUploadedAndThoseThatAreKnownAreNot) {
    const Lines first = uploadsOf("abc");
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].rfind("glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, 1024, 1024, 0, GL_RED", 0), 0u)
        << first[0];
    EXPECT_EQ(uploadsOf("cab bac"), Lines());
    const Lines later = uploadsOf("abcW");
    ASSERT_EQ(later.size(), 1u);
    EXPECT_EQ(later[0].rfind("glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 1, 1024, ", 0), 0u) << later[0];
}

TEST_F(DrawTrace, PagesOfTheUsualSizeAskForNoLimit) {
    EXPECT_EQ(only(callsOf([&] { drawText("abc"); }), {"glGetIntegerv(GL_MAX_TEXTURE_SIZE"}),
              Lines());
}

TEST_F(DrawTrace, TurnedTextsHaveTexturesThatAreFiltered) {
    const std::string filter = "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, ";
    const auto filtersOf = [&](float angle) {
        return only(callsOf([&] { drawText("abc", angle); }), {filter.c_str()});
    };
    EXPECT_EQ(filtersOf(0.f), Lines({filter + "GL_NEAREST)"}));
    EXPECT_EQ(filtersOf(1.f), Lines({filter + "GL_LINEAR)"}));
    EXPECT_EQ(filtersOf(0.f), Lines());
    EXPECT_EQ(filtersOf(-2.f), Lines());
}

TEST_F(DrawTrace, AGlyphOfMoreThanAQuarterOfAPageHasATextureOfItsOwn) {
    font = Font::load(vellis::test::findFont(dejaVuSans), 900.f);
    ASSERT_NE(font, nullptr);
    const auto bitmap = font->render(font->shape("W")->glyphs[0].index);
    const Lines uploads = uploadsOf("W");
    ASSERT_EQ(uploads.size(), 1u);
    const std::string size =
        std::to_string(bitmap.width + 2) + ", " + std::to_string(bitmap.height + 2);
    EXPECT_EQ(uploads[0].rfind("glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, " + size, 0), 0u)
        << uploads[0];
}

TEST_F(DrawTrace, WithoutTexelsOfOneComponentThoseOfFourAreUploaded) {
    const int hasRed = GLAD_GL_ARB_texture_rg;
    GLAD_GL_ARB_texture_rg = 0;
    const Lines first = uploadsOf("abc");
    const Lines later = uploadsOf("abcW");
    GLAD_GL_ARB_texture_rg = hasRed;
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].rfind("glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 1024, 1024, 0, GL_RGBA", 0),
              0u)
        << first[0];
    ASSERT_EQ(later.size(), 1u);
    EXPECT_NE(later[0].find("GL_RGBA"), std::string::npos) << later[0];
}

TEST_F(DrawTrace, ATextIsOneQuadForEachGlyphThatShows) {
    EXPECT_EQ(drawsOf([&] { drawText("ab c"); }), Lines({vellis::test::quadsDrawn(0, 3)}));
}

TEST_F(DrawTrace, TextsOfOneStyleAreOneCall) {
    const auto draw = [&] {
        drawText("ab");
        drawText("cd");
    };
    EXPECT_EQ(drawsOf(draw), Lines({vellis::test::quadsDrawn(0, 4)}));
}

TEST_F(DrawTrace, UploadsPutBackWhatTheCallerHasSet) {
    glBindTexture(GL_TEXTURE_2D, 77);
    gl.setState(GL_TEXTURE_BINDING_2D, {77});
    gl.setState(GL_PIXEL_UNPACK_BUFFER_BINDING, {5});
    gl.setState(GL_UNPACK_ROW_LENGTH, {9});
    gl.forget();
    canvas->begin(glm::mat4(1.f));
    gl.forget();
    drawText("a");
    const Lines calls =
        only(gl.takeCalls(), {"glPixelStorei(GL_UNPACK_ROW", "glBindBuffer(GL_PIXEL",
                              "glBindTexture", "glTexImage2D"});
    ASSERT_GE(calls.size(), 6u);
    EXPECT_EQ(calls.front(), "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)");
    EXPECT_EQ(calls[1], "glPixelStorei(GL_UNPACK_ROW_LENGTH, 0)");
    EXPECT_EQ(Lines(calls.end() - 3, calls.end()), Lines({"glPixelStorei(GL_UNPACK_ROW_LENGTH, 9)",
                                                          "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 5)",
                                                          "glBindTexture(GL_TEXTURE_2D, 77)"}));
    canvas->end();
}

TEST_F(DrawTrace, NothingIsDrawnOutsideOfABatch) {
    gl.forget();
    drawText("abc");
    EXPECT_EQ(gl.takeCalls(), Lines());
}

TEST_F(DrawTrace, NothingIsDrawnWithoutACanvasAFontOrAnAngle) {
    const Lines calls = callsOf([&] {
        vellis::text::draw(nullptr, font, {0., 0.}, "a", white);
        vellis::text::draw(canvas, nullptr, {0., 0.}, "a", white);
        drawText("a", std::numeric_limits<float>::quiet_NaN());
        drawText("");
    });
    EXPECT_EQ(only(calls, {"glDraw", "glTex"}), Lines());
}

TEST_F(DrawTrace, AKnownTextCostsNoAllocation) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    callsOf([&] { drawText("abc def"); });
    gl.setRecording(false);
    canvas->begin(glm::mat4(1.f));
    drawText("abc def");
    const std::size_t before = vellis::test::allocationCount();
    drawText("abc def");
    EXPECT_EQ(vellis::test::allocationCount(), before);
    gl.setRecording(true);
    canvas->end();
}

TEST_F(DrawTrace, BeyondTheLimitOfItsTexturesItStartsAnew) {
    EXPECT_EQ(uploadsOf("abc").size(), 1u);
    const auto large = Font::load(vellis::test::findFont(dejaVuSans), 2400.f);
    ASSERT_NE(large, nullptr);
    canvas->begin(glm::mat4(1.f));
    const std::string letters = "ABCDEFGHKLMNOPQRSTUVWXYZ&%@wmdbg";
    for (const char letter : letters)
        vellis::text::draw(canvas, large, {0., 0.}, std::string(1, letter), white);
    canvas->end();
    EXPECT_EQ(uploadsOf("abc").size(), 1u);
    EXPECT_LT(only(gl.liveNames(), {"texture"}).size(), letters.size());
}

TEST_F(DrawTrace, TheTexturesEndWithTheCanvas) {
    callsOf([&] { drawText("abc"); });
    gl.forget();
    canvas.reset();
    EXPECT_EQ(only(gl.takeCalls(), {"glDeleteTextures"}).size(), 1u);
}

} // namespace

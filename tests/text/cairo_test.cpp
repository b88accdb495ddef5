#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include <cairo-ft.h>
#include <gtest/gtest.h>

#include "text/glyph_quads.hpp"
#include "text/test_font.hpp"

namespace {

using vellis::test::findFont;
using vellis::test::PlainFace;
using vellis::text::Anchor;
using vellis::text::Atlas;
using vellis::text::Font;
using vellis::text::GlyphQuad;
using vellis::text::GlyphQuads;

constexpr int pictureWidth = 320;
constexpr int pictureHeight = 96;

/// Coverage, the upper row first.
using Image = std::vector<std::uint8_t>;

/// The quads of a text, each texel on the pixel where it belongs, with the text's position at the
/// middle of the image.
Image drawWithQuads(Font& font, std::string_view text) {
    GlyphQuads quads;
    Image image(std::size_t{pictureWidth} * pictureHeight, 0);
    for (const GlyphQuad& quad : quads.make(font, text, Anchor::Center, 0.f)) {
        const Atlas::Texture& texture = quads.atlas().texture(quad.texture);
        const glm::vec2 size(texture.width(), texture.height());
        const glm::ivec2 texel(glm::vec2(quad.part.from.x, quad.part.to.y) * size + 0.5f);
        const int left = pictureWidth / 2 + static_cast<int>(quad.corner.x);
        const int top = pictureHeight / 2 - static_cast<int>(quad.corner.y + quad.up.y);
        for (int y = 0; y < static_cast<int>(quad.up.y); ++y) {
            for (int x = 0; x < static_cast<int>(quad.right.x); ++x) {
                const auto from = static_cast<std::size_t>(texel.y + y) * texture.width() +
                                  static_cast<std::size_t>(texel.x + x);
                std::uint8_t& pixel = image.at(static_cast<std::size_t>(top + y) * pictureWidth +
                                               static_cast<std::size_t>(left + x));
                pixel = std::max(pixel, texture.texels()[from]);
            }
        }
    }
    return image;
}

/// The same by cairo, which has glyphs and positions from HarfBuzz alone.
Image drawWithCairo(const PlainFace& face, float pixels, std::string_view text, double ascent,
                    double descent) {
    cairo_surface_t* const surface =
        cairo_image_surface_create(CAIRO_FORMAT_A8, pictureWidth, pictureHeight);
    cairo_t* const cairo = cairo_create(surface);
    cairo_font_face_t* const fontFace =
        cairo_ft_font_face_create_for_ft_face(face.face(), FT_LOAD_NO_HINTING);
    cairo_set_font_face(cairo, fontFace);
    cairo_set_font_size(cairo, double{pixels});
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options);

    const auto shape = vellis::test::shapePlainly(face, text);
    const double left =
        pictureWidth / 2 - std::floor(static_cast<double>(shape.lines[0].advance) / 2.) / 64.;
    const double baseLine = (ascent + descent) / 2. - ascent;
    std::vector<cairo_glyph_t> glyphs;
    for (const auto& glyph : shape.glyphs) {
        const double x = left + static_cast<double>(glyph.x) / 64.;
        const double y = baseLine + static_cast<double>(glyph.y) / 64.;
        glyphs.push_back(
            {glyph.index, std::floor(x + 0.5), pictureHeight / 2 - std::floor(y + 0.5)});
    }
    cairo_show_glyphs(cairo, glyphs.data(), static_cast<int>(glyphs.size()));
    cairo_surface_flush(surface);
    Image image;
    const std::uint8_t* const rows = cairo_image_surface_get_data(surface);
    for (int y = 0; y < pictureHeight; ++y) {
        const std::uint8_t* const row = rows + y * cairo_image_surface_get_stride(surface);
        image.insert(image.end(), row, row + pictureWidth);
    }
    cairo_font_options_destroy(options);
    cairo_font_face_destroy(fontFace);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    return image;
}

struct Drawing {
    const char* font;
    float pixels;
    const char* text;
};

std::ostream& operator<<(std::ostream& stream, const Drawing& drawing) {
    return stream << drawing.text;
}

class CairoDrawing : public testing::TestWithParam<Drawing> {};

TEST_P(CairoDrawing, HasTheSamePixels) {
    const Drawing& row = GetParam();
    LOAD_TEST_FONT(font, row.font, row.pixels);
    const PlainFace face(findFont(row.font), row.pixels);
    const double ascent = vellis::text::pixelsOf(font->metrics().ascent);
    const double descent = vellis::text::pixelsOf(font->metrics().descent);
    const Image made = drawWithQuads(*font, row.text);
    const Image plain = drawWithCairo(face, row.pixels, row.text, ascent, descent);
    std::size_t numCovered = 0;
    int farthest = 0;
    for (std::size_t i = 0; i < made.size(); ++i) {
        numCovered += plain[i] != 0 ? 1u : 0u;
        farthest = std::max(farthest, std::abs(int{made[i]} - int{plain[i]}));
    }
    EXPECT_GT(numCovered, 200u);
    EXPECT_EQ(farthest, 0);
}

// Words without glyphs that overlap, which cairo blends.
INSTANTIATE_TEST_SUITE_P(
    Text, CairoDrawing,
    testing::Values(Drawing{"DejaVuSans.ttf", 16.f, "Hamburgefonts 0123"},
                    Drawing{"DejaVuSans.ttf", 31.f, "office"},
                    Drawing{"DejaVuSerif-Bold.ttf", 24.f, "Hamburg 42"},
                    Drawing{"DejaVuSans.ttf", 28.f, "\u05E9\u05DC\u05D5\u05DD"},
                    Drawing{"NotoSansDevanagari-Regular.ttf", 20.f, "\u0915 \u0916 \u0917"}));

} // namespace

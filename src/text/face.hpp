#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb.h>

#include <vellis/text/font.hpp>
#include <vellis/text/shaped_text.hpp>

namespace vellis::text {

/// How glyphs are loaded, for shapes and bitmaps alike: their outlines, without hinting.
constexpr FT_Int32 loadFlags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;

/// A font file in one size, as FreeType and HarfBuzz see it.
class Face {
public:
    /// Null, with the reason in \p error, where the bytes are no font with outlines.
    /// \param size  Of the em square, in 64ths of a pixel.
    static std::unique_ptr<Face> make(std::vector<std::uint8_t> bytes, FT_F26Dot6 size,
                                      const char*& error);

    const FontMetrics& metrics() const { return metrics_; }

    hb_font_t* shapingFont() const { return font_.get(); }

    /// What the outline of a glyph reaches, from its origin on.
    const FixedBox& boxOf(std::uint32_t glyph);

    /// See Font::render.
    GlyphBitmap render(std::uint32_t glyph);

private:
    struct EndLibrary {
        void operator()(FT_Library library) const { FT_Done_FreeType(library); }
    };
    struct EndFace {
        void operator()(FT_Face face) const { FT_Done_Face(face); }
    };
    struct EndFont {
        void operator()(hb_font_t* font) const { hb_font_destroy(font); }
    };

    explicit Face(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}

    const char* open(FT_F26Dot6 size);
    void readMetrics();
    FixedBox outlineBoxOf(std::uint32_t glyph) const;

    // Each needs those before it.
    std::vector<std::uint8_t> bytes_;
    std::unique_ptr<FT_LibraryRec_, EndLibrary> library_;
    std::unique_ptr<FT_FaceRec_, EndFace> face_;
    std::unique_ptr<hb_font_t, EndFont> font_;
    FontMetrics metrics_;
    std::unordered_map<std::uint32_t, FixedBox> boxes_;
};

} // namespace vellis::text

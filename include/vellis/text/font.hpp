#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd> // declares std::string: who hands one over includes <string>
#include <memory>
#include <string_view>
#include <vector>

#include <vellis/text/export.hpp>
#include <vellis/text/shaped_text.hpp>

namespace vellis::text {

class Face;
class FontParts;

/// Lengths of a font, all of them whole pixels.
struct FontMetrics {
    Fixed ascent = 0;     ///< from the base line up, of what its letters reach
    Fixed descent = 0;    ///< from the base line down
    Fixed lineHeight = 0; ///< from a line's base line down to the next
};

/// How much of each pixel a glyph covers.
struct GlyphBitmap {
    int left = 0;            ///< from the glyph's origin to its first column, in pixels
    int top = 0;             ///< from the glyph's origin up to the upper edge of its first row
    unsigned int width = 0;  ///< in pixels
    unsigned int height = 0; ///< in pixels
    /// `width * height` of them, the upper row first; empty for a glyph that shows nothing.
    std::vector<std::uint8_t> coverage;
};

/// A font in one size.
///
/// \code
/// const auto font = vellis::text::Font::load("/usr/share/fonts/DejaVuSans.ttf", 16.f);
/// if (font != nullptr) {
///     const auto text = font->shape("Hello, world");
///     const double width = vellis::text::pixelsOf(font->measure("Hello, world").advance);
/// }
/// \endcode
///
/// **Texts** are UTF-8; each byte that is not part of a character counts as U+FFFD. A line ends at
/// `\n` or `\r\n`. Each line is a paragraph of Unicode's bidirectional algorithm, whose direction
/// is that of its first letter. It is shaped run by run, one direction and one script each:
/// ligatures, kerning, marks, the forms of letters. There are no features and no language to
/// choose. What the font lacks shows as its glyph 0; no other font steps in. A tab is a space.
///
/// **No hinting**: glyphs have the form of their outlines, positions are exact to 1/64 pixel, and
/// both grow with the size without jumps.
///
/// **Kept texts.** A font keeps the texts that it has shaped, up to mostKeptTexts and
/// mostKeptBytes, and forgets the one that was used longest ago. Asking for one again costs no
/// allocation. A word of eight letters takes half a kilobyte.
///
/// A font needs no GL and belongs to no Context. It is used on one thread at a time; two fonts
/// share nothing.
class VELLIS_TEXT_EXPORT Font {
public:
    /// In pixels: smaller ones are refused.
    static constexpr float smallestSize = 0.5f;

    /// In pixels: larger ones are refused.
    static constexpr float largestSize = 4096.f;

    /// In pixels, of a glyph's width or height: one that is larger shows nothing.
    static constexpr unsigned int largestGlyph = 8192;

    /// In bytes: what lies beyond is left out of a text.
    static constexpr std::size_t longestText = std::size_t{1} << 20;

    /// In bytes: larger font files are refused.
    static constexpr std::size_t largestFile = std::size_t{1} << 28;

    static constexpr std::size_t mostKeptTexts = 16384;                 ///< of one font
    static constexpr std::size_t mostKeptBytes = std::size_t{16} << 20; ///< of one font

    /// The first font of a file of any kind that FreeType reads and that has outlines: TrueType,
    /// OpenType, collections of these, Type 1. The file is read whole, and not needed afterwards.
    ///
    /// \param path    As std::ifstream takes it.
    /// \param pixels  The size of the em square, to 1/64 pixel.
    /// \return an empty pointer, with one line on standard error that says why, where the file is
    ///         missing or is no such font, and for any other size.
    /// \throws std::bad_alloc where there is no memory, as all functions that shape or make glyphs.
    static std::shared_ptr<Font> load(const std::string& path, float pixels);

    /// The same; a null path is that of no file.
    static std::shared_ptr<Font> load(const char* path, float pixels);

    /// The same from memory, of which a copy is made.
    static std::shared_ptr<Font> load(const void* memory, std::size_t numBytes, float pixels);

    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// The size that it was loaded with, rounded to 1/64 pixel.
    float pixels() const;

    /// Its lengths, which are 0 where a broken font has negative ones.
    const FontMetrics& metrics() const;

    /// The glyphs of a text and their positions: those of a line from left to right, whatever its
    /// direction is. The result is kept, and lives on when the font forgets it.
    std::shared_ptr<const ShapedText> shape(std::string_view text);

    /// What shape(text) measures.
    Extents measure(std::string_view text);

    /// What FreeType makes of a glyph's outline, without hinting. A glyph that the font does not
    /// have, cannot read or that is larger than largestGlyph is empty.
    GlyphBitmap render(std::uint32_t glyph);

    /// Another one for each font of the process.
    std::uint64_t id() const;

private:
    VELLIS_TEXT_NO_EXPORT explicit Font(std::unique_ptr<FontParts> parts);
    VELLIS_TEXT_NO_EXPORT static std::shared_ptr<Font> load(std::vector<std::uint8_t> bytes,
                                                            float pixels, const char* name);

    std::unique_ptr<FontParts> parts_;
};

} // namespace vellis::text

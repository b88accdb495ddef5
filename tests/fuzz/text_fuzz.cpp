/// Any bytes as texts in a font of the system, as a font, and as damage to that font: nothing
/// crashes, and what comes out keeps what it promises.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <vellis/text.hpp>

namespace {

using namespace vellis::text;
using Bytes = std::vector<std::uint8_t>;

/// A text with letters, digits, marks and directions of many kinds, two lines and a bad byte.
constexpr std::string_view sample = "Office AV e\u0301 12\n\u05D0(\u05D1) \u0628\u0644\u0627 34 "
                                    "\u0915\u094D\u0937\u093F \u4E00\xFF";

void require(bool isTrue, const char* what) {
    if (isTrue)
        return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
}

Bytes fileOf(const char* name) {
    std::error_code error;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator("/usr/share/fonts", error)) {
        if (entry.path().filename() != name)
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    return {};
}

const Bytes& systemFont() {
    static const Bytes bytes = fileOf("DejaVuSans.ttf");
    return bytes;
}

/// The glyphs of each line are its own, and begin within the text.
void checkShape(const ShapedText& shape, std::string_view text) {
    std::size_t next = 0;
    for (const ShapedLine& line : shape.lines) {
        require(line.firstGlyph == next, "lines follow each other");
        next += line.numGlyphs;
    }
    require(next == shape.glyphs.size(), "all glyphs are those of lines");
    for (const ShapedGlyph& glyph : shape.glyphs)
        require(glyph.byte < text.size(), "glyphs begin within the text");
}

void draw(Font& font, std::string_view text, Anchor anchor, float angle) {
    const auto shape = font.shape(text);
    checkShape(*shape, text);
    std::size_t numLines = 1;
    for (const char byte : text)
        numLines += byte == '\n' ? 1 : 0;
    require(font.measure(text).numLines == numLines, "there are as many lines as ends, and one");
    const auto placed = place(font, text, anchor, angle);
    require(placed.size() == (std::isfinite(angle) ? shape->glyphs.size() : 0), "all are placed");
    for (std::size_t i = 0; i < placed.size() && i < 40; ++i) {
        const GlyphBitmap bitmap = font.render(placed[i].index);
        require(bitmap.coverage.size() == std::size_t{bitmap.width} * bitmap.height,
                "a bitmap has as many texels as its size says");
    }
}

/// The bytes as a text.
void drawText(const std::uint8_t* data, std::size_t size) {
    static const auto font = Font::load(systemFont().data(), systemFont().size(), 11.5f);
    if (font != nullptr)
        draw(*font, {reinterpret_cast<const char*>(data), size}, Anchor::Center, 0.f);
}

/// Keeps the line that says why there is no font from the terminal; a sanitizer's report goes there
/// all the same.
std::shared_ptr<Font> loadSilently(const std::uint8_t* data, std::size_t size, float pixels) {
    static std::FILE* const nowhere = std::fopen("/dev/null", "w");
    std::FILE* const before = stderr;
    stderr = nowhere != nullptr ? nowhere : before;
    auto font = Font::load(data, size, pixels);
    stderr = before;
    return font;
}

/// The bytes as a font.
void loadFont(const std::uint8_t* data, std::size_t size, float pixels) {
    if (const auto font = loadSilently(data, size, pixels))
        draw(*font, sample, Anchor::BottomRight, 0.5f);
}

/// Each four bytes put one elsewhere in the system's font.
void damageFont(const std::uint8_t* data, std::size_t size, float pixels) {
    Bytes bytes = systemFont();
    for (std::size_t i = 0; i + 4 <= size && !bytes.empty(); i += 4) {
        const std::size_t place =
            std::size_t{data[i]} << 16 | std::size_t{data[i + 1]} << 8 | std::size_t{data[i + 2]};
        bytes[place % bytes.size()] = data[i + 3];
    }
    loadFont(bytes.data(), bytes.size(), pixels);
}

} // namespace

/// The first byte chooses what the others are, and a size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const float pixels = static_cast<float>(data[0] / 3);
    switch (data[0] % 3) {
    case 0:
        drawText(data + 1, size - 1);
        break;
    case 1:
        loadFont(data + 1, size - 1, pixels);
        break;
    default:
        damageFont(data + 1, size - 1, pixels);
        break;
    }
    return 0;
}

#include <vellis/text/font.hpp>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <fstream>
#include <optional>
#include <utility>

#include <vellis/engine/diagnostics.hpp>

#include "text/boxes.hpp"
#include "text/face.hpp"
#include "text/shaper.hpp"
#include "text/text_cache.hpp"

namespace vellis::text {
namespace {

std::uint64_t nextId() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

/// Says why a font was not loaded.
std::shared_ptr<Font> refuse(const char* name, const char* reason) {
    internal::log("Font", "%.160s: %s", name, reason);
    return nullptr;
}

/// A size in 64ths of a pixel, where a font can have it.
std::optional<FT_F26Dot6> fixedSize(float pixels) {
    if (!(pixels >= Font::smallestSize && pixels <= Font::largestSize))
        return std::nullopt;
    return static_cast<FT_F26Dot6>(std::lround(pixels * static_cast<float>(fixedPixel)));
}

/// All bytes of a file that is not too large.
std::optional<std::vector<std::uint8_t>> readFile(const std::string& path) {
    std::vector<std::uint8_t> bytes;
    std::ifstream file(path, std::ios::binary);
    char block[1 << 16];
    while (file.good() && bytes.size() <= Font::largestFile) {
        file.read(block, sizeof(block));
        bytes.insert(bytes.end(), block, block + file.gcount());
    }
    // What cannot be read, such as a folder, ends without an end.
    if (!file.eof())
        return std::nullopt;
    return bytes;
}

/// The beginning of a text that is not too long.
std::string_view cut(std::string_view text) {
    if (text.size() <= Font::longestText)
        return text;
    std::size_t end = Font::longestText;
    while (end > Font::longestText - 3 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end);
}

} // namespace

/// What a font consists of.
class FontParts {
public:
    FontParts(std::unique_ptr<Face> itsFace, float itsPixels)
        : face(std::move(itsFace)),
          pixels(itsPixels) {}

    std::unique_ptr<Face> face;
    Shaper shaper;
    TextCache texts{Font::mostKeptTexts, Font::mostKeptBytes};
    float pixels;
    std::uint64_t id = nextId();
};

Font::Font(std::unique_ptr<FontParts> parts) : parts_(std::move(parts)) {}

Font::~Font() = default;

std::shared_ptr<Font> Font::load(const std::string& path, float pixels) {
    std::optional<std::vector<std::uint8_t>> bytes = readFile(path);
    if (!bytes)
        return refuse(path.c_str(), "cannot be read, or is too large");
    return load(std::move(*bytes), pixels, path.c_str());
}

std::shared_ptr<Font> Font::load(const char* path, float pixels) {
    return load(std::string(path != nullptr ? path : ""), pixels);
}

std::shared_ptr<Font> Font::load(const void* memory, std::size_t numBytes, float pixels) {
    const char* const name = "font in memory";
    if (memory == nullptr || numBytes > largestFile)
        return refuse(name, "null, or too large");
    const auto* const first = static_cast<const std::uint8_t*>(memory);
    return load(std::vector<std::uint8_t>(first, first + numBytes), pixels, name);
}

std::shared_ptr<Font> Font::load(std::vector<std::uint8_t> bytes, float pixels, const char* name) {
    const std::optional<FT_F26Dot6> size = fixedSize(pixels);
    if (!size)
        return refuse(name, "a size that no font can have");
    const char* error = nullptr;
    std::unique_ptr<Face> face = Face::make(std::move(bytes), *size, error);
    if (face == nullptr)
        return refuse(name, error);
    const float rounded = static_cast<float>(*size) / static_cast<float>(fixedPixel);
    auto parts = std::make_unique<FontParts>(std::move(face), rounded);
    return std::shared_ptr<Font>(new Font(std::move(parts)));
}

float Font::pixels() const {
    return parts_->pixels;
}

const FontMetrics& Font::metrics() const {
    return parts_->face->metrics();
}

std::uint64_t Font::id() const {
    return parts_->id;
}

std::shared_ptr<const ShapedText> Font::shape(std::string_view text) {
    text = cut(text);
    if (std::shared_ptr<const ShapedText> kept = parts_->texts.find(text))
        return kept;
    auto fresh = std::make_shared<const ShapedText>(parts_->shaper.shape(*parts_->face, text));
    parts_->texts.keep(text, fresh);
    return fresh;
}

Extents Font::measure(std::string_view text) {
    const std::shared_ptr<const ShapedText> shaped = shape(text);
    Extents extents;
    extents.lineHeight = metrics().lineHeight;
    Fixed down = 0;
    for (const ShapedLine& line : shaped->lines) {
        extents.advance = (std::max)(extents.advance, line.advance);
        extents.ink = unionOf(extents.ink, moved(line.ink, 0, -down));
        down += extents.lineHeight;
    }
    extents.numLines = shaped->lines.size();
    return extents;
}

GlyphBitmap Font::render(std::uint32_t glyph) {
    return parts_->face->render(glyph);
}

} // namespace vellis::text

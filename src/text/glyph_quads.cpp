#include "text/glyph_quads.hpp"

#include <algorithm>

namespace vellis::text {
namespace {

/// Brings the quads of each texture together. Most texts need one texture alone.
void sortByTexture(std::vector<GlyphQuad>& quads) {
    const auto isBefore = [](const GlyphQuad& a, const GlyphQuad& b) {
        return a.texture < b.texture;
    };
    if (!std::is_sorted(quads.begin(), quads.end(), isBefore))
        std::sort(quads.begin(), quads.end(), isBefore);
}

} // namespace

const std::vector<GlyphQuad>& GlyphQuads::make(Font& font, std::string_view text, Anchor anchor,
                                               float angle) {
    quads_.clear();
    place(font, text, anchor, angle, placed_);
    const Turn turn(angle);
    // Off the pixels' grid, a glyph's edge fades up to the middle of the empty texels around it:
    // beyond that, those of other glyphs would show.
    const float margin = angle != 0.f ? 0.5f : 0.f;
    for (const PlacedGlyph& glyph : placed_) {
        const Entry& entry = entryOf(font, glyph.index);
        const TexelRect& rect = entry.region.rect;
        if (rect.isEmpty())
            continue;
        quads_.push_back(quadOf(entry, glyph.origin, turn, margin));
    }
    sortByTexture(quads_);
    return quads_;
}

GlyphQuad GlyphQuads::quadOf(const Entry& entry, const glm::vec2& origin, const Turn& turn,
                             float margin) {
    const Atlas::Texture& texture = atlas_.texture(entry.region.texture);
    const TexelRect& rect = entry.region.rect;
    const glm::vec2 size(texture.width(), texture.height());
    const glm::vec2 low = glm::vec2(rect.x, rect.y) - margin;
    const glm::vec2 high = glm::vec2(rect.x + rect.width, rect.y + rect.height) + margin;
    // The first row of texels is a glyph's uppermost.
    return {entry.region.texture,
            origin + turn(entry.offset - margin),
            turn({high.x - low.x, 0.f}),
            turn({0.f, high.y - low.y}),
            glm::vec2(low.x, high.y) / size,
            glm::vec2(high.x, low.y) / size};
}

const GlyphQuads::Entry& GlyphQuads::entryOf(Font& font, std::uint32_t glyph) {
    // Made first, since memory may run out: the atlas has no glyph that nobody knows.
    Entry& entry = entries_[{font.id(), glyph}];
    if (entry.isMade)
        return entry;
    const GlyphBitmap bitmap = font.render(glyph);
    entry.region = atlas_.add(bitmap);
    entry.offset = {bitmap.left, bitmap.top - static_cast<int>(bitmap.height)};
    entry.isMade = true;
    return entry;
}

void GlyphQuads::clear() {
    atlas_.clear();
    entries_.clear();
}

} // namespace vellis::text

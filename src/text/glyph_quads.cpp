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
    const std::uint64_t id = font.id();
    quads_.reserve(placed_.size());
    for (const PlacedGlyph& glyph : placed_) {
        const Entry& entry = entryOf({id, glyph.index}, font);
        if (entry.isBlank)
            continue;
        quads_.push_back(entry.upright);
        PixelQuad& quad = quads_.back();
        if (turn.isTurned())
            quad = turned(entry, turn);
        quad.corner += glyph.origin;
    }
    sortByTexture(quads_);
    return quads_;
}

/// Off the pixels' grid, a glyph's edge fades up to the middle of the empty texels around it:
/// beyond that, those of other glyphs would show.
PixelQuad GlyphQuads::turned(const Entry& entry, const Turn& turn) {
    constexpr float margin = 0.5f;
    const PixelQuad& upright = entry.upright;
    const glm::vec2 edge(margin * entry.texel.x, -margin * entry.texel.y);
    return {turn(upright.corner - margin),
            turn({upright.right.x + 2.f * margin, 0.f}),
            turn({0.f, upright.up.y + 2.f * margin}),
            {upright.part.from - edge, upright.part.to + edge}};
}

/// Most texts have few different glyphs.
const GlyphQuads::Entry& GlyphQuads::entryOf(const Key& key, Font& font) {
    Recent& recent = recent_[Hash()(key) % recent_.size()];
    if (!(recent.key == key))
        recent = {key, &findOrMake(key, font)};
    return *recent.entry;
}

const GlyphQuads::Entry& GlyphQuads::findOrMake(const Key& key, Font& font) {
    // Made first, since memory may run out: the atlas has no glyph that nobody knows.
    Entry& entry = entries_[key];
    if (!entry.isMade)
        entry = makeEntry(font.render(key.glyph));
    return entry;
}

GlyphQuads::Entry GlyphQuads::makeEntry(const GlyphBitmap& bitmap) {
    const AtlasRegion region = atlas_.add(bitmap);
    const TexelRect& rect = region.rect;
    Entry entry = {};
    entry.isMade = true;
    entry.isBlank = rect.isEmpty();
    if (entry.isBlank)
        return entry;
    const Atlas::Texture& texture = atlas_.texture(region.texture);
    entry.upright.texture = region.texture;
    const glm::vec2 size(texture.width(), texture.height());
    entry.texel = 1.f / size;
    PixelQuad& quad = entry.upright;
    quad.corner = {bitmap.left, bitmap.top - static_cast<int>(bitmap.height)};
    quad.right = {rect.width, 0.f};
    quad.up = {0.f, rect.height};
    // The first row of texels is a glyph's uppermost.
    quad.part.from = glm::vec2(rect.x, rect.y + rect.height) / size;
    quad.part.to = glm::vec2(rect.x + rect.width, rect.y) / size;
    return entry;
}

void GlyphQuads::clear() {
    atlas_.clear();
    entries_.clear();
    recent_.fill({});
}

} // namespace vellis::text

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <glm/vec2.hpp>

#include <vellis/text/layout.hpp>

#include "text/atlas.hpp"
#include "text/turn.hpp"

namespace vellis::text {

/// A glyph as a parallelogram of pixels with a part of a texture.
struct GlyphQuad {
    std::size_t texture; ///< of the atlas
    glm::vec2 corner;    ///< the lower left one, from the text's position on, in pixels
    glm::vec2 right;     ///< from there along the texture's rows
    glm::vec2 up;        ///< from there to the upper left one
    glm::vec2 low;       ///< the texture coordinates of the lower left corner
    glm::vec2 high;      ///< those of the upper right one
};

/// The glyphs of all fonts in one atlas.
class GlyphQuads {
public:
    explicit GlyphQuads(unsigned int pageSize = Atlas::usualPageSize) : atlas_(pageSize) {}

    /// The quads of a text, those of each texture behind each other, and new glyphs in the atlas.
    /// Glyphs that show nothing have none. The result is this object's, until the next call; a text
    /// that is kept by the font and whose glyphs are in the atlas costs no allocation, if one with
    /// as many was made before.
    const std::vector<GlyphQuad>& make(Font& font, std::string_view text, Anchor anchor,
                                       float angle);

    Atlas& atlas() { return atlas_; }

    /// Forgets all glyphs, and the textures with them.
    void clear();

private:
    struct Entry {
        bool isMade = false; ///< whether the atlas has the glyph
        AtlasRegion region;
        glm::vec2 offset{0.f}; ///< from the glyph's origin to its lower left corner
    };
    struct Key {
        std::uint64_t font;
        std::uint32_t glyph;
        bool operator==(const Key& other) const {
            return font == other.font && glyph == other.glyph;
        }
    };
    struct Hash {
        std::size_t operator()(const Key& key) const {
            return std::hash<std::uint64_t>()(key.font * 0x9E3779B97F4A7C15u + key.glyph);
        }
    };

    GlyphQuad quadOf(const Entry& entry, const glm::vec2& origin, const Turn& turn, float margin);
    const Entry& entryOf(Font& font, std::uint32_t glyph);

    Atlas atlas_;
    std::unordered_map<Key, Entry, Hash> entries_;
    std::vector<PlacedGlyph> placed_;
    std::vector<GlyphQuad> quads_;
};

} // namespace vellis::text

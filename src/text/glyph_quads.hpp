#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <glm/vec2.hpp>

#include <vellis/canvas/image.hpp>
#include <vellis/text/layout.hpp>

#include "text/atlas.hpp"
#include "text/turn.hpp"

namespace vellis::text {

/// A glyph as seen from its text's position. Its part of the texture begins in the lower left
/// corner.
struct GlyphQuad : PixelQuad {
    std::size_t texture; ///< of the atlas
};

/// The glyphs of all fonts in one atlas.
class GlyphQuads {
public:
    explicit GlyphQuads(unsigned int pageSize = Atlas::usualPageSize) : atlas_(pageSize) {}
    GlyphQuads(const GlyphQuads&) = delete;
    GlyphQuads& operator=(const GlyphQuads&) = delete;

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
        bool isMade = false;  ///< whether the atlas has the glyph
        bool isBlank = false; ///< whether it shows nothing
        GlyphQuad upright;    ///< as seen from the glyph's origin
        glm::vec2 texel;      ///< its size in texture coordinates
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
    /// An entry that was looked for, where the next search for it finds it first.
    struct Recent {
        Key key{0, 0}; ///< no font is 0
        const Entry* entry = nullptr;
    };

    static PixelQuad turned(const Entry& entry, const Turn& turn);
    const Entry& entryOf(const Key& key, Font& font);
    const Entry& findOrMake(const Key& key, Font& font);
    Entry makeEntry(const GlyphBitmap& bitmap);

    Atlas atlas_;
    std::unordered_map<Key, Entry, Hash> entries_;
    std::array<Recent, 256> recent_;
    std::vector<PlacedGlyph> placed_;
    std::vector<GlyphQuad> quads_;
};

} // namespace vellis::text

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <vellis/text/font.hpp>

#include "text/skyline.hpp"

namespace vellis::text {

/// A part of a texture, in texels from its first one on.
struct TexelRect {
    unsigned int x = 0;
    unsigned int y = 0;
    unsigned int width = 0;
    unsigned int height = 0;

    bool isEmpty() const { return width == 0 || height == 0; }
};

/// Where a glyph's coverage is.
struct AtlasRegion {
    std::size_t texture = 0;
    TexelRect rect;
    bool isOwnTexture = false; ///< whether nothing else is there
};

/// The coverage of glyphs in few textures: pages, which glyphs share, and one of its own for each
/// glyph that takes more than a quarter of a page or does not fit onto one. Around each glyph is a
/// texel that nothing covers. It is memory only: who draws uploads what Texture::dirty() tells.
class Atlas {
public:
    static constexpr unsigned int usualPageSize = 1024;

    /// A texture, of 8-bit coverage.
    class Texture {
    public:
        Texture(unsigned int width, unsigned int height)
            : width_(width),
              height_(height),
              texels_(std::size_t{width} * height) {}

        unsigned int width() const { return width_; }
        unsigned int height() const { return height_; }

        /// Row by row, without gaps.
        const std::uint8_t* texels() const { return texels_.data(); }

        /// What has changed since setClean(): all at first, with a size that is not 0.
        const TexelRect& dirty() const { return dirty_; }
        void setClean() { dirty_ = {}; }

    private:
        friend class Atlas;

        void write(const TexelRect& rect, const std::uint8_t* coverage);

        unsigned int width_;
        unsigned int height_;
        std::vector<std::uint8_t> texels_;
        TexelRect dirty_{0, 0, width_, height_};
        std::optional<Skyline> room_; ///< of a page
    };

    /// \param pageSize  A page's width and height in texels.
    explicit Atlas(unsigned int pageSize = usualPageSize) : pageSize_(pageSize) {}

    /// Puts a glyph in, with new textures where it needs one. One without texels has a region of
    /// no size.
    AtlasRegion add(const GlyphBitmap& glyph);

    /// Forgets all glyphs and their textures.
    void clear() {
        textures_.clear();
        numTexels_ = 0;
    }

    std::size_t numTextures() const { return textures_.size(); }
    Texture& texture(std::size_t index) { return textures_[index]; }

    /// Of all textures.
    std::size_t numTexels() const { return numTexels_; }

private:
    Texture& makeTexture(unsigned int width, unsigned int height);
    AtlasRegion addToPage(unsigned int width, unsigned int height);

    unsigned int pageSize_;
    std::size_t numTexels_ = 0;
    std::vector<Texture> textures_;
};

} // namespace vellis::text

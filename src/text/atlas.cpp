#include "text/atlas.hpp"

#include <algorithm>
#include <utility>

namespace vellis::text {
namespace {

/// In texels, that nothing covers: where a filter reads neighbours, it reads none of other glyphs.
constexpr unsigned int margin = 1;

/// The smallest part around both; an empty one does not count.
TexelRect around(const TexelRect& a, const TexelRect& b) {
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() ? b : a;
    const unsigned int x = (std::min)(a.x, b.x);
    const unsigned int y = (std::min)(a.y, b.y);
    return {x, y, (std::max)(a.x + a.width, b.x + b.width) - x,
            (std::max)(a.y + a.height, b.y + b.height) - y};
}

} // namespace

void Atlas::Texture::write(const TexelRect& rect, const std::uint8_t* coverage) {
    for (unsigned int row = 0; row < rect.height; ++row) {
        const std::size_t first = std::size_t{rect.y + row} * width_ + rect.x;
        std::copy_n(coverage + std::size_t{row} * rect.width, rect.width, texels_.data() + first);
    }
    dirty_ = around(dirty_, rect);
}

Atlas::Texture& Atlas::makeTexture(unsigned int width, unsigned int height) {
    textures_.emplace_back(width, height);
    numTexels_ += std::size_t{width} * height;
    return textures_.back();
}

AtlasRegion Atlas::add(const GlyphBitmap& glyph) {
    if (glyph.coverage.empty())
        return {};
    // Each glyph brings the margin to its right and above; the page has that to the left and below.
    const unsigned int width = glyph.width + margin;
    const unsigned int height = glyph.height + margin;
    const std::size_t quarter = std::size_t{pageSize_} * pageSize_ / 4;
    AtlasRegion region;
    if (std::size_t{width} * height > quarter || width > pageSize_ - margin ||
        height > pageSize_ - margin) {
        makeTexture(width + margin, height + margin);
        region = {textures_.size() - 1, {margin, margin, 0, 0}, true};
    } else {
        region = addToPage(width, height);
    }
    region.rect.width = glyph.width;
    region.rect.height = glyph.height;
    textures_[region.texture].write(region.rect, glyph.coverage.data());
    return region;
}

/// A place on a page, a new one where no other has room.
AtlasRegion Atlas::addToPage(unsigned int width, unsigned int height) {
    const auto at = [](std::size_t texture, const Skyline::Place& place) {
        return AtlasRegion{texture, {place.x + margin, place.y + margin, 0, 0}, false};
    };
    for (std::size_t i = textures_.size(); i > 0; --i) {
        std::optional<Skyline>& room = textures_[i - 1].room_;
        if (!room)
            continue;
        if (const std::optional<Skyline::Place> place = room->add(width, height))
            return at(i - 1, *place);
    }
    // Made first, since memory may run out: no page is without room.
    Skyline room(pageSize_ - margin);
    const Skyline::Place place = *room.add(width, height);
    makeTexture(pageSize_, pageSize_).room_ = std::move(room);
    return at(textures_.size() - 1, place);
}

} // namespace vellis::text

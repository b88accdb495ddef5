#include "text/glyph_textures.hpp"

#include <vellis/text/draw.hpp>

#include "text/upload_state.hpp"

namespace vellis::text {

void GlyphTextures::draw(Canvas& canvas, Font& font, const glm::dvec3& position,
                         std::string_view text, const glm::vec4& color, Anchor anchor,
                         float angle) {
    if (quads_.atlas().numBytes() > mostTextureBytes) {
        quads_.clear();
        textures_.clear(); // the canvas keeps those that it has yet to draw
    }
    const std::vector<GlyphQuad>& quads = quads_.make(font, text, anchor, angle);
    upload();
    QuadStyle style;
    style.texels = Texels::Coverage;
    style.onWholePixels = angle == 0.f;
    for (std::size_t i = 0; i < quads.size();) {
        const std::size_t texture = quads[i].texture;
        pixelQuads_.clear();
        for (; i < quads.size() && quads[i].texture == texture; ++i) {
            const GlyphQuad& quad = quads[i];
            pixelQuads_.push_back({quad.corner, quad.right, quad.up, {quad.low, quad.high}});
        }
        canvas.drawQuads(textures_[texture], style, color, position, pixelQuads_.data(),
                         pixelQuads_.size());
    }
}

/// Brings what is new in the atlas to GL.
void GlyphTextures::upload() {
    Atlas& atlas = quads_.atlas();
    std::size_t first = 0;
    while (first < atlas.numTextures() && atlas.texture(first).dirty().isEmpty())
        ++first;
    if (first == atlas.numTextures())
        return;
    textures_.resize(atlas.numTextures());
    const UploadState state;
    for (std::size_t i = first; i < atlas.numTextures(); ++i)
        upload(i);
}

void GlyphTextures::upload(std::size_t index) {
    Atlas::Texture& from = quads_.atlas().texture(index);
    std::shared_ptr<Texture>& to = textures_[index];
    const TexelRect dirty = from.dirty();
    if (dirty.isEmpty())
        return;
    if (to == nullptr) {
        to = Texture::make(from.width(), from.height(), from.texels(), Sampler::linear_clamp());
    } else { // whole rows, which have no gaps between them
        const std::uint8_t* const rows = from.texels() + std::size_t{dirty.y} * from.width();
        to->upload(rows, 0, dirty.y, from.width(), dirty.height);
    }
    from.setClean();
}

} // namespace vellis::text

#include "text/glyph_textures.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include <vellis/gl.hpp>
#include <vellis/text/draw.hpp>
#include <vellis/texture/texture_2d.hpp>

#include "text/upload_state.hpp"

namespace vellis::text {
namespace {

/// A texel where there are none of one component.
using Wide = glm::vec<4, unsigned char>;

/// Rows of a texture.
struct Rows {
    unsigned int first;
    unsigned int count;
};

/// Whether GL has texels of one component.
bool hasRed() {
    return GLAD_GL_VERSION_3_0 != 0 || GLAD_GL_ARB_texture_rg != 0;
}

/// Whether GL can have a texture of that size; one that does not tell is taken to.
bool fits(const Atlas::Texture& texture) {
    const unsigned int longest = (std::max)(texture.width(), texture.height());
    if (longest <= Atlas::usualPageSize)
        return true;
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    return most <= 0 || longest <= static_cast<unsigned int>(most);
}

/// Uploads rows of texels, of all rows where there is no texture yet.
template <class Texel>
void send(std::shared_ptr<Texture>& to, const Atlas::Texture& from, const Rows& rows,
          const Sampler& sampler, const Texel* texels) {
    if (to == nullptr)
        to = Texture2D<Texel>::make(from.width(), from.height(), texels, sampler);
    else
        static_cast<Texture2D<Texel>&>(*to).upload(texels, 0, rows.first, from.width(), rows.count);
}

} // namespace

void GlyphTextures::draw(Canvas& canvas, Font& font, const glm::dvec3& position,
                         std::string_view text, const glm::vec4& color, Anchor anchor,
                         float angle) {
    const std::vector<GlyphQuad>& quads = quads_.make(font, text, anchor, angle);
    upload();
    QuadStyle style;
    style.texels = Texels::Coverage;
    style.onWholePixels = angle == 0.f;
    for (std::size_t i = 0; i < quads.size();) {
        const std::size_t texture = quads[i].texture;
        pixelQuads_.clear();
        for (; i < quads.size() && quads[i].texture == texture; ++i)
            pixelQuads_.push_back(quads[i]);
        canvas.drawQuads(textures_[texture], style, color, position, pixelQuads_.data(),
                         pixelQuads_.size());
    }
}

void GlyphTextures::clear() {
    quads_.clear();
    textures_.clear();
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
    const TexelRect dirty = from.dirty();
    if (dirty.isEmpty())
        return;
    if (!fits(from)) {
        from.setClean(); // without a texture, nothing of it is drawn
        return;
    }
    std::shared_ptr<Texture>& to = textures_[index];
    // Whole rows, which have no gaps between them.
    const Rows rows = to == nullptr ? Rows{0, from.height()} : Rows{dirty.y, dirty.height};
    const std::uint8_t* const first = from.texels() + std::size_t{rows.first} * from.width();
    if (hasRed()) {
        send(to, from, rows, sampler_, first);
    } else {
        const std::size_t count = std::size_t{rows.count} * from.width();
        std::vector<Wide> texels;
        texels.reserve(count);
        std::transform(first, first + count, std::back_inserter(texels),
                       [](std::uint8_t coverage) { return Wide(coverage); });
        send(to, from, rows, sampler_, texels.data());
    }
    from.setClean();
}

void CanvasGlyphs::draw(Canvas& canvas, Font& font, const glm::dvec3& position,
                        std::string_view text, const glm::vec4& color, Anchor anchor, float angle) {
    if (upright_.numTexels() + turned_.numTexels() > mostTextureTexels) {
        upright_.clear();
        turned_.clear();
    }
    GlyphTextures& textures = angle == 0.f ? upright_ : turned_;
    textures.draw(canvas, font, position, text, color, anchor, angle);
}

} // namespace vellis::text

#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/canvas/canvas.hpp>
#include <vellis/canvas/image.hpp>
#include <vellis/texture/sampler.hpp>
#include <vellis/texture/texture.hpp>

#include "text/glyph_quads.hpp"

namespace vellis::text {

/// An atlas of glyphs, and its textures in GL.
class GlyphTextures {
public:
    /// \param sampler  That of the textures.
    explicit GlyphTextures(const Sampler& sampler) : sampler_(sampler) {}

    /// Draws a text in one call for each texture.
    void draw(Canvas& canvas, Font& font, const glm::dvec3& position, std::string_view text,
              const glm::vec4& color, Anchor anchor, float angle);

    /// Of all textures.
    std::size_t numTexels() { return quads_.atlas().numTexels(); }

    /// Forgets all glyphs. The canvas keeps the textures that it has yet to draw.
    void clear();

private:
    void upload();
    void upload(std::size_t index);

    Sampler sampler_;
    GlyphQuads quads_;
    std::vector<std::shared_ptr<Texture>> textures_; ///< those of the atlas
    std::vector<PixelQuad> pixelQuads_;              ///< of the text at hand
};

/// What a canvas draws glyphs from. A turned text is sampled between texels. Any other has a texel
/// for each pixel, and those textures are sampled without a filter, which is exact and takes a
/// quarter of the reading.
class CanvasGlyphs {
public:
    /// Draws a text.
    void draw(Canvas& canvas, Font& font, const glm::dvec3& position, std::string_view text,
              const glm::vec4& color, Anchor anchor, float angle);

private:
    GlyphTextures upright_{Sampler::nearest_clamp()};
    GlyphTextures turned_{Sampler::linear_clamp()};
};

} // namespace vellis::text

#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/canvas/canvas.hpp>
#include <vellis/canvas/image.hpp>
#include <vellis/texture/texture.hpp>

#include "text/glyph_quads.hpp"

namespace vellis::text {

/// What a canvas draws glyphs from: an atlas, and its textures in GL.
class GlyphTextures {
public:
    /// Draws a text in one call for each texture.
    void draw(Canvas& canvas, Font& font, const glm::dvec3& position, std::string_view text,
              const glm::vec4& color, Anchor anchor, float angle);

private:
    void upload();
    void upload(std::size_t index);

    GlyphQuads quads_;
    std::vector<std::shared_ptr<Texture>> textures_; ///< those of the atlas
    std::vector<PixelQuad> pixelQuads_;              ///< of the text at hand
};

} // namespace vellis::text

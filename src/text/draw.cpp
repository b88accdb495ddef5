#include <vellis/text/draw.hpp>

#include "text/glyph_textures.hpp"

namespace vellis::text {
namespace {

/// What the library's attachment to a canvas is known by.
const char attachmentKey = 0;

} // namespace

void draw(const std::shared_ptr<Canvas>& canvas, const std::shared_ptr<Font>& font,
          const Position& position, std::string_view text, const glm::vec4& color, Anchor anchor,
          float angle) {
    if (canvas == nullptr || font == nullptr)
        return;
    std::shared_ptr<void>* const attachment = canvas->attachment(&attachmentKey);
    if (attachment == nullptr)
        return;
    if (*attachment == nullptr)
        *attachment = std::make_shared<CanvasGlyphs>();
    auto* const glyphs = static_cast<CanvasGlyphs*>(attachment->get());
    glyphs->draw(*canvas, *font, position.point, text, color, anchor, angle);
}

} // namespace vellis::text

#pragma once

#include <glm/mat4x4.hpp>

#include <gallery/panels/flat.hpp>
#include <gallery/panels/view.hpp>
#include <vellis/texture.hpp>

namespace gallery {

/// Draws the part \p coordinates of a texture of two dimensions on the rectangle \p where in the
/// plane z = 0.
void drawTextured(const vellis::Texture& texture, const Rectangle& coordinates,
                  const Rectangle& where, const glm::mat4& mvp = flatView);

} // namespace gallery

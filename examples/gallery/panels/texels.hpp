#pragma once

#include <memory>
#include <vector>

#include <glm/gtc/type_precision.hpp>

#include <gallery/frame/color.hpp>
#include <vellis/texture.hpp>

/// Pictures for textures.
namespace gallery {

/// A colour as a texel.
glm::u8vec4 toTexel(Color color);
/// \copydoc toTexel
glm::u8vec4 toTexel(const glm::vec3& color);

/// A texture that is as wide as high.
/// \param at  The texel at a column and a row, counted from the lower left.
template <class At>
std::shared_ptr<vellis::Texture2D<glm::u8vec4>> makeTexture(unsigned int size,
                                                            const vellis::Sampler& sampler, At at) {
    std::vector<glm::u8vec4> texels;
    for (unsigned int row = 0; row < size; ++row) {
        for (unsigned int column = 0; column < size; ++column)
            texels.push_back(at(column, row));
    }
    return vellis::Texture2D<glm::u8vec4>::make(size, size, texels.data(), sampler);
}

/// A sailing boat of 16 × 16 texels.
std::shared_ptr<vellis::Texture2D<glm::u8vec4>> makeBoat(const vellis::Sampler& sampler);

/// A planet with bands of clouds and a storm, for a globe.
std::shared_ptr<vellis::Texture2D<glm::u8vec4>> makePlanet();

} // namespace gallery

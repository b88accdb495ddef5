#pragma once

#include <vector>

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace gallery {

/// A colour as it stands in a picture.
struct Colour {
    unsigned char red;
    unsigned char green;
    unsigned char blue;
};

/// The colour as shaders take it.
inline glm::vec3 toVector(Colour colour) {
    return glm::vec3(colour.red, colour.green, colour.blue) / 255.0f;
}

/// The colour as the Toolbox takes it.
inline glm::vec4 toRgba(Colour colour, float alpha = 1.0f) {
    return {toVector(colour), alpha};
}

/// A colour between the colours of a list.
/// \param at  From 0 for the first to 1 for the last.
glm::vec3 blend(const std::vector<Colour>& colours, float at);

/// The same as the Toolbox takes it.
inline glm::vec4 blendRgba(const std::vector<Colour>& colours, float at) {
    return {blend(colours, at), 1.0f};
}

/// What all panels are painted with.
namespace palette {
inline constexpr Colour paper{250, 248, 243};
inline constexpr Colour sheet{238, 234, 225};
inline constexpr Colour frame{216, 210, 197};
inline constexpr Colour ink{44, 58, 71};
inline constexpr Colour navy{38, 70, 100};
inline constexpr Colour sky{207, 224, 228};
inline constexpr Colour blue{69, 123, 157};
inline constexpr Colour teal{42, 157, 143};
inline constexpr Colour sand{236, 200, 110};
inline constexpr Colour orange{244, 162, 97};
inline constexpr Colour coral{231, 111, 81};
inline constexpr Colour plum{126, 82, 120};
} // namespace palette

} // namespace gallery

#pragma once

#include <vector>

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace gallery {

/// A colour as it stands in a picture.
struct Color {
    unsigned char red;
    unsigned char green;
    unsigned char blue;
};

/// The colour as shaders take it.
inline glm::vec3 toVector(Color color) {
    return glm::vec3(color.red, color.green, color.blue) / 255.0f;
}

/// The colour as the Toolbox takes it.
inline glm::vec4 toRgba(Color color, float alpha = 1.0f) {
    return {toVector(color), alpha};
}

/// A colour between the colours of a list.
/// \param at  From 0 for the first to 1 for the last.
glm::vec3 blend(const std::vector<Color>& colors, float at);

/// The same as the Toolbox takes it.
inline glm::vec4 blendRgba(const std::vector<Color>& colors, float at) {
    return {blend(colors, at), 1.0f};
}

/// What all panels are painted with.
namespace palette {
inline constexpr Color paper{250, 248, 243};
inline constexpr Color sheet{238, 234, 225};
inline constexpr Color frame{216, 210, 197};
inline constexpr Color ink{44, 58, 71};
inline constexpr Color navy{38, 70, 100};
inline constexpr Color sky{207, 224, 228};
inline constexpr Color blue{69, 123, 157};
inline constexpr Color teal{42, 157, 143};
inline constexpr Color sand{236, 200, 110};
inline constexpr Color orange{244, 162, 97};
inline constexpr Color coral{231, 111, 81};
inline constexpr Color plum{126, 82, 120};
} // namespace palette

} // namespace gallery

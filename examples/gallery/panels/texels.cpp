#include <gallery/panels/texels.hpp>

#include <algorithm>
#include <cmath>

#include <glm/geometric.hpp>

#include <gallery/panels/curves.hpp>

namespace gallery {
namespace {

constexpr unsigned int boatSize = 16;

/// From top to bottom; boatColour says what the letters stand for.
constexpr const char* boat[boatSize] = {
    "                ", //
    "  oo    m       ", //
    " oooo  wm       ", //
    " oooo  wm       ", //
    "  oo  wwmc      ", //
    "      wwmcc     ", //
    "     wwwmccc    ", //
    "     wwwmcccc   ", //
    "    wwwwmccccc  ", //
    "    wwwwmcccccc ", //
    "        m       ", //
    "  hhhhhhhhhhhhh ", //
    "   hhhhhhhhhhh  ", //
    "~~~~hhhhhhhhh~~~", //
    "~=~~~=~~~=~~~=~~", //
    "~~=~~~=~~~=~~~=~", //
};

Color boatColor(char letter) {
    switch (letter) {
    case 'o':
        return palette::sand; // the sun
    case 'm':
        return palette::ink; // the mast
    case 'w':
        return palette::paper; // the white sail
    case 'c':
        return palette::coral; // the red sail
    case 'h':
        return palette::navy; // the hull
    case '~':
        return palette::blue; // the sea
    case '=':
        return palette::teal; // waves
    default:
        return palette::sky;
    }
}

} // namespace

glm::u8vec4 toTexel(Color color) {
    return {color.red, color.green, color.blue, 255};
}

glm::u8vec4 toTexel(const glm::vec3& color) {
    return glm::u8vec4(glm::vec4(color, 1.0f) * 255.0f + 0.5f);
}

std::shared_ptr<vellis::Texture2D<glm::u8vec4>> makeBoat(const vellis::Sampler& sampler) {
    return makeTexture(boatSize, sampler, [](unsigned int column, unsigned int row) {
        return toTexel(boatColor(boat[boatSize - 1 - row][column]));
    });
}

std::shared_ptr<vellis::Texture2D<glm::u8vec4>> makePlanet() {
    constexpr unsigned int size = 256;
    const std::vector<Color> bands = {
        palette::plum, palette::coral, palette::orange, palette::sand,  palette::paper,
        palette::sand, palette::coral, palette::orange, palette::paper, palette::paper,
        palette::sand, palette::coral, palette::sand,   palette::paper, palette::orange,
        palette::sand, palette::coral, palette::plum};
    const glm::vec2 stormCentre(0.09f, 0.4f);
    const auto sampler = vellis::Sampler::linear_repeat();
    return makeTexture(size, sampler, [&](unsigned int column, unsigned int row) {
        const glm::vec2 at = (glm::vec2(column, row) + 0.5f) / static_cast<float>(size);
        const float swirl = 0.007f * std::sin(2.0f * pi * (4.0f * at.x + 6.0f * at.y)) +
                            0.004f * std::sin(2.0f * pi * (9.0f * at.x - 11.0f * at.y));
        const glm::vec2 fromStorm = (at - stormCentre) / glm::vec2(0.065f, 0.05f);
        const float storm = std::clamp(4.0f - 4.0f * glm::dot(fromStorm, fromStorm), 0.0f, 1.0f);
        return toTexel(glm::mix(blend(bands, at.y + swirl), toVector(palette::coral), storm));
    });
}

} // namespace gallery

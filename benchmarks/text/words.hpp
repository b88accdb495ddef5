#pragma once

#include <memory>
#include <string>
#include <vector>

#include <glm/vec2.hpp>
#include <vellis/text/font.hpp>

/// \file
/// The texts that are drawn, the same in each run, in a picture of pictureSize x pictureSize
/// pixels.

namespace vellis::bench {

constexpr const char* fontPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr float fontSize = 16.f;

/// The font at fontPath. Ends the program where there is none.
std::shared_ptr<text::Font> loadFont();

/// A word of 8 small letters, all of which are in the picture.
struct Word {
    std::string text;
    glm::vec2 corner; ///< the lower left one of its box, on whole pixels
};

/// So many words, no two of them alike, all over the picture.
std::vector<Word> words(unsigned int numWords);

/// Texts of so many characters, each of which the font has and no other text: Latin with accents,
/// Cyrillic, mathematics.
std::vector<std::string> rareTexts(unsigned int numCharacters);

} // namespace vellis::bench

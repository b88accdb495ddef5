#include "text/words.hpp"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>

#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

/// Characters that follow each other.
struct Range {
    std::uint32_t first;
    std::uint32_t last;
};
constexpr Range rareRanges[] = {
    {0x00C0, 0x024F}, {0x0400, 0x0481}, {0x048A, 0x0525}, {0x1E00, 0x1EFB}, {0x2200, 0x22FF}};

/// A character from U+0080 to U+FFFF in UTF-8.
std::string encode(std::uint32_t character) {
    const auto tail = [&](unsigned int shift) {
        return static_cast<char>(0x80 | (character >> shift & 0x3F));
    };
    if (character < 0x800)
        return {static_cast<char>(0xC0 | character >> 6), tail(0)};
    return {static_cast<char>(0xE0 | character >> 12), tail(6), tail(0)};
}

} // namespace

std::shared_ptr<text::Font> loadFont() {
    auto font = text::Font::load(fontPath, fontSize);
    if (font == nullptr)
        std::exit(EXIT_FAILURE); // it has said why
    return font;
}

std::vector<Word> words(unsigned int numWords) {
    constexpr std::size_t numLetters = 8;
    constexpr auto edge = static_cast<float>(pictureSize);
    std::minstd_rand numbers(1);
    const auto below = [&](float limit) {
        return std::floor(limit * static_cast<float>(numbers() - std::minstd_rand::min()) /
                          static_cast<float>(std::minstd_rand::max()));
    };
    std::set<std::string> known;
    std::vector<Word> result;
    while (result.size() < numWords) {
        std::string text;
        for (std::size_t i = 0; i < numLetters; ++i)
            text += static_cast<char>('a' + numbers() / 7 % 26);
        // What no letter reaches beyond, to the left and below, to the right and above.
        const float x = fontSize + below(edge - (numLetters + 2) * fontSize);
        const float y = fontSize + below(edge - 3 * fontSize);
        if (known.insert(text).second)
            result.push_back({text, {x, y}});
    }
    return result;
}

std::vector<std::string> rareTexts(unsigned int numCharacters) {
    std::vector<std::string> texts;
    unsigned int numInLast = numCharacters;
    for (const Range& range : rareRanges) {
        for (std::uint32_t character = range.first; character <= range.last; ++character) {
            if (numInLast == numCharacters) {
                texts.emplace_back();
                numInLast = 0;
            }
            texts.back() += encode(character);
            ++numInLast;
        }
    }
    texts.pop_back(); // which may have fewer
    return texts;
}

} // namespace vellis::bench

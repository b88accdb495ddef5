#include "text/utf8.hpp"

#include <cstddef>

namespace vellis::text {
namespace {

/// A form of characters: what its first byte has in the bits of the mask, how many bytes there are,
/// and the first character that is written so.
struct Form {
    unsigned int mask;
    unsigned int lead;
    std::size_t size;
    std::uint32_t first;
};

constexpr Form forms[] = {
    {0x80, 0x00, 1, 0x0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

constexpr std::uint32_t lastCharacter = 0x10FFFF;

bool isSurrogate(std::uint32_t value) {
    return value >= 0xD800 && value <= 0xDFFF;
}

unsigned int byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

/// The character of that form at the beginning of \p text, or `replacement`.
std::uint32_t valueOf(std::string_view text, const Form& form) {
    if (text.size() < form.size)
        return replacement;
    std::uint32_t value = byteAt(text, 0) & ~form.mask;
    for (std::size_t i = 1; i < form.size; ++i) {
        const unsigned int byte = byteAt(text, i);
        if ((byte & 0xC0) != 0x80)
            return replacement;
        value = value << 6 | (byte & 0x3F);
    }
    if (value < form.first || value > lastCharacter || isSurrogate(value))
        return replacement;
    return value;
}

struct Decoded {
    std::uint32_t value;
    std::size_t size;
};

/// The first character of a text that is not empty.
Decoded decodeFirst(std::string_view text) {
    for (const Form& form : forms) {
        if ((byteAt(text, 0) & form.mask) != form.lead)
            continue;
        const std::uint32_t value = valueOf(text, form);
        // U+FFFD itself is written in three bytes, too.
        const bool isItself = text.substr(0, 3) == "\xEF\xBF\xBD";
        return {value, value == replacement && !isItself ? 1 : form.size};
    }
    return {replacement, 1};
}

} // namespace

Characters decode(std::string_view text) {
    Characters characters;
    characters.values.reserve(text.size());
    characters.bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Decoded decoded = decodeFirst(text.substr(at));
        characters.values.push_back(decoded.value);
        characters.bytes.push_back(static_cast<std::uint32_t>(at));
        at += decoded.size;
    }
    return characters;
}

} // namespace vellis::text

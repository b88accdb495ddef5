#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace vellis::text {

/// The characters of a text, and where each begins.
struct Characters {
    std::vector<std::uint32_t> values;
    std::vector<std::uint32_t> bytes;
};

/// What stands for a byte that is not part of a character.
constexpr std::uint32_t replacement = 0xFFFD;

/// The characters of a UTF-8 text: each byte that is not part of one, such as those of forms that
/// are too long, of surrogates and of what is cut off, gives one `replacement`.
Characters decode(std::string_view text);

} // namespace vellis::text

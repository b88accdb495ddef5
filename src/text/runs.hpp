#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <hb.h>

namespace vellis::text {

/// Characters of one direction and one script, which are shaped together.
struct Run {
    std::size_t begin;
    std::size_t end;
    hb_script_t script;
    std::uint8_t level; ///< of Unicode's bidirectional algorithm; odd from right to left

    bool isRightToLeft() const { return level % 2 != 0; }
};

/// The runs of a line.
struct LineRuns {
    std::vector<Run> runs; ///< from left to right
    bool isRightToLeft;    ///< the base direction
};

/// The runs of a line of \p count characters.
LineRuns findRuns(const std::uint32_t* characters, std::size_t count);

} // namespace vellis::text

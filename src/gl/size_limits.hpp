#pragma once

/// \file
/// Sizes that no GL takes. Drivers compute with some of them before they refuse them, and run over:
/// what is too large goes to GL as what all of them refuse at once.

namespace vellis {

/// The largest size or offset that GL can add another to.
constexpr unsigned int largestAddable = 0x3FFFFFFF;

/// More texels a side than any texture has; a float could not tell them apart.
constexpr unsigned int largestSide = 0x00FFFFFF;

/// A size or an offset, or -1 to GL where it is above \p largest.
constexpr unsigned int atMost(unsigned int largest, unsigned int value) {
    return value <= largest ? value : 0xFFFFFFFF;
}

} // namespace vellis

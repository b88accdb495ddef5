#pragma once

#include <random>

namespace vellis::test {

/// A number below \p count, the same ones on every platform.
inline unsigned int randomBelow(std::mt19937& random, unsigned int count) {
    return static_cast<unsigned int>(random() % count);
}

} // namespace vellis::test

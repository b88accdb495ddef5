#pragma once

#include <cstddef>
#include <limits>
#include <vector>

namespace vellis::detail {

/// The product, or the largest number where it would be larger.
constexpr std::size_t product(std::size_t a, std::size_t b) {
    constexpr std::size_t most = (std::numeric_limits<std::size_t>::max)();
    return b != 0 && a > most / b ? most : a * b;
}

/// A vector of so many elements; of none where no vector holds so many.
template <class T>
std::vector<T> vectorOf(std::size_t count) {
    std::vector<T> elements;
    if (count <= elements.max_size())
        elements.resize(count);
    return elements;
}

} // namespace vellis::detail

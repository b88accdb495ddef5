#pragma once

#include <algorithm>

#include <vellis/text/shaped_text.hpp>

namespace vellis::text {

/// \p box, moved by that much.
inline FixedBox moved(const FixedBox& box, Fixed x, Fixed y) {
    return {box.left + x, box.bottom + y, box.right + x, box.top + y};
}

/// The smallest box around both; an empty one does not count.
inline FixedBox unionOf(const FixedBox& a, const FixedBox& b) {
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() ? b : a;
    return {(std::min)(a.left, b.left), (std::min)(a.bottom, b.bottom),
            (std::max)(a.right, b.right), (std::max)(a.top, b.top)};
}

} // namespace vellis::text

#pragma once

#include <limits>

/// \file
/// Numbers that no place, size or colour has.

namespace vellis::test {

inline constexpr float nan = std::numeric_limits<float>::quiet_NaN();
inline constexpr float infinity = std::numeric_limits<float>::infinity();

} // namespace vellis::test

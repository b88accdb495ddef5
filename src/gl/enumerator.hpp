#pragma once

namespace vellis::gl {

/// The number of an enumerator of ours, which is that of GL's.
template <class Enumeration>
constexpr unsigned int value(Enumeration enumerator) {
    return static_cast<unsigned int>(enumerator);
}

} // namespace vellis::gl

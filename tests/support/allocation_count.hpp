#pragma once

#include <cstddef>

namespace vellis::test {

/// The number of allocations with `new` in this process so far, in the library and in the tests:
/// take it before and after what must not allocate. A program that uses this has operators new and
/// delete that count.
std::size_t allocationCount();

} // namespace vellis::test

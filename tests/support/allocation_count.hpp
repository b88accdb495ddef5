#pragma once

#include <cstddef>

namespace vellis::test {

/// The number of allocations with `new` in this process so far, in the library and in the tests:
/// take it before and after what must not allocate. A program that uses this has operators new and
/// delete that count.
std::size_t allocationCount();

} // namespace vellis::test

/// Skips a test that counts the library's allocations where they are not seen: a program's
/// operators new and delete are not those of a DLL.
#if defined(_WIN32) && !defined(VELLIS_STATIC_DEFINE)
#define SKIP_WITHOUT_LIBRARY_ALLOCATIONS()                                                         \
    GTEST_SKIP() << "the allocations of a DLL are not counted"
#else
#define SKIP_WITHOUT_LIBRARY_ALLOCATIONS()
#endif

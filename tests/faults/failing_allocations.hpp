#pragma once

#include <cstddef>

/// \file
/// Allocations that fail. The program that this is part of has operators new and delete that can
/// fail, and cannot use allocationCount(), which has its own.

namespace vellis::test {

/// The allocations with `new` in this process that are not freed yet. What the fake GL allocates
/// does not count.
std::ptrdiff_t numLiveAllocations();

/// Lets `new` throw std::bad_alloc while it lives: in the library and in the test, but not in the
/// fake GL. The forms that give null instead of throwing go on as ever: who calls them has another
/// way.
///
/// \code
/// const FailingAllocations failing(2, FailingAllocations::Extent::One);
/// EXPECT_THROW(VertexShader::make("v"), std::bad_alloc); // its second allocation
/// \endcode
class FailingAllocations {
public:
    /// Which allocations fail.
    enum class Extent {
        One,     ///< that one, as where memory was asked for that is not there
        AndAfter ///< that one and all after it, as where there is no memory left
    };

    /// \param number  The first allocation to fail, counted from 1 and from now on.
    FailingAllocations(std::size_t number, Extent extent);
    ~FailingAllocations() { end(); }
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    /// From now on allocations succeed.
    void end();

    /// Whether an allocation has failed since one was last told to.
    static bool haveFailed();
};

} // namespace vellis::test

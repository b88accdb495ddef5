#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include <vellis/detail/recycling_allocator.hpp>

#include "gl/thread.hpp"

namespace vellis::gl {

/// detail::RecycledMemory for the library's own sources, without a call.
struct InlinedMemory {
    static void* allocate(std::size_t numSteps) {
        void*& spare = thread().spares[numSteps - 1];
        return spare != nullptr ? std::exchange(spare, nullptr) : allocateAnew(numSteps);
    }

    static void deallocate(void* memory, std::size_t numSteps) noexcept {
        void*& spare = thread().spares[numSteps - 1];
        if (spare == nullptr && thread().end == Thread::End::SeenTo)
            spare = memory;
        else
            ::operator delete(memory);
    }

private:
    // It is seldom called: most objects follow one that was released.
    [[gnu::cold]] static void* allocateAnew(std::size_t numSteps);
};

} // namespace vellis::gl

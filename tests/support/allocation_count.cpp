#include "support/allocation_count.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> numAllocations{0};

void* allocateOrNull(std::size_t size) noexcept {
    ++numAllocations;
    return std::malloc(size != 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size) {
    if (void* memory = allocateOrNull(size))
        return memory;
    throw std::bad_alloc();
}

void release(void* memory) noexcept {
    std::free(memory);
}

} // namespace

#include "support/allocation_operators.inc"

namespace vellis::test {

std::size_t allocationCount() {
    return numAllocations;
}

} // namespace vellis::test

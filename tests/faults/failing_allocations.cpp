#include "faults/failing_allocations.hpp"

#include <cstdlib>
#include <new>

#include "support/gl_recorders.hpp"

namespace {

// Tests have one thread. Drivers, which have more, are not there while these are in use.
std::ptrdiff_t numLive = 0;
std::size_t numUntilFailure = 0; // 0 where none is to fail
bool allAfterFail = false;
bool hasFailed = false;

/// Whether the allocation that is about to be made is one to fail.
bool fails() {
    if (numUntilFailure == 0 || vellis::test::isInsideFakeGl())
        return false;
    if (numUntilFailure > 1) {
        --numUntilFailure;
        return false;
    }
    numUntilFailure = allAfterFail ? 1 : 0;
    hasFailed = true;
    return true;
}

void count(std::ptrdiff_t change) {
    if (!vellis::test::isInsideFakeGl())
        numLive += change;
}

void* allocateOrNull(std::size_t size) noexcept {
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory != nullptr)
        count(1);
    return memory;
}

void* allocateOrThrow(std::size_t size) {
    if (fails())
        throw std::bad_alloc();
    if (void* memory = allocateOrNull(size))
        return memory;
    throw std::bad_alloc();
}

void release(void* memory) noexcept {
    if (memory != nullptr)
        count(-1);
    std::free(memory);
}

} // namespace

#include "support/allocation_operators.inc"

namespace vellis::test {

std::ptrdiff_t numLiveAllocations() {
    return numLive;
}

FailingAllocations::FailingAllocations(std::size_t number, Extent extent) {
    hasFailed = false;
    allAfterFail = extent == Extent::AndAfter;
    numUntilFailure = number;
}

void FailingAllocations::end() {
    numUntilFailure = 0;
}

bool FailingAllocations::haveFailed() {
    return hasFailed;
}

} // namespace vellis::test

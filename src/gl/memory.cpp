#include "gl/memory.hpp"

namespace vellis::gl {

void* InlinedMemory::allocateAnew(std::size_t numSteps) {
    releaseAtEndOfThread();
    return ::operator new(numSteps* detail::recycledStep);
}

} // namespace vellis::gl

namespace vellis::detail {

void* RecycledMemory::allocate(std::size_t numSteps) {
    return gl::InlinedMemory::allocate(numSteps);
}

void RecycledMemory::deallocate(void* memory, std::size_t numSteps) noexcept {
    gl::InlinedMemory::deallocate(memory, numSteps);
}

} // namespace vellis::detail

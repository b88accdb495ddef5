#pragma once

#include <cstddef>
#include <memory>

#include <vellis/detail/hot.hpp>
#include <vellis/export.hpp>

namespace vellis::detail {

/// Whether RecyclingAllocator keeps anything: the address sanitizer is to see uses of what was
/// released.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool recyclesMemory = false;
#elif defined(__has_feature)
inline constexpr bool recyclesMemory = !__has_feature(address_sanitizer);
#else
inline constexpr bool recyclesMemory = true;
#endif

/// Memory for an object: that of the last one of about its size that was released on this thread,
/// or else some from the heap.
VELLIS_DIRECT VELLIS_EXPORT void* allocateRecycled(std::size_t size);

/// Keeps the memory of an object of that size for the next one on this thread, unless some is kept
/// already. What a thread keeps goes when it ends, or with the library.
VELLIS_DIRECT VELLIS_EXPORT void deallocateRecycled(void* memory, std::size_t size) noexcept;

/// An allocator for `std::allocate_shared` that keeps the memory of one released object of each
/// size for the next: drawables and their bindings come and go with each picture. The benchmark
/// drawable/make takes nothing from the heap then, and is above its limit on a driver without. It
/// takes no lock: each thread keeps its own.
template <class T>
class VELLIS_NO_EXPORT RecyclingAllocator {
    static_assert(alignof(T) <= alignof(std::max_align_t), "memory as operator new gives it");

public:
    using value_type = T; ///< what the memory is for

    RecyclingAllocator() = default;

    /// All are equal.
    template <class Other>
    RecyclingAllocator(const RecyclingAllocator<Other>&) noexcept {}

    /// The memory that is kept, or else some from the heap.
    T* allocate(std::size_t count) {
        if (recyclesMemory && count == 1)
            return static_cast<T*>(allocateRecycled(sizeof(T)));
        return std::allocator<T>().allocate(count);
    }

    /// Keeps the memory, unless some of its size is kept already.
    void deallocate(T* memory, std::size_t count) noexcept {
        if (recyclesMemory && count == 1)
            deallocateRecycled(memory, sizeof(T));
        else
            std::allocator<T>().deallocate(memory, count);
    }
};

/// All are equal, whatever they are for: what one allocates any other can deallocate.
/// @{
template <class T, class Other>
bool operator==(const RecyclingAllocator<T>&, const RecyclingAllocator<Other>&) noexcept {
    return true;
}
template <class T, class Other>
bool operator!=(const RecyclingAllocator<T>&, const RecyclingAllocator<Other>&) noexcept {
    return false;
}
/// @}

} // namespace vellis::detail

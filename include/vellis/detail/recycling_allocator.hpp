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

/// Memory comes in steps of so many bytes, and is kept up to so many steps.
/// @{
inline constexpr std::size_t recycledStep = 16;
inline constexpr std::size_t mostRecycledSteps = 8;
/// @}

/// What each thread keeps of released memory: that of one object of each number of steps.
struct VELLIS_EXPORT RecycledMemory {
    /// The memory that is kept, or else some from the heap.
    VELLIS_DIRECT static void* allocate(std::size_t numSteps);

    /// Keeps memory of that many steps, unless some is kept already. It goes when the thread ends,
    /// or with the library.
    VELLIS_DIRECT static void deallocate(void* memory, std::size_t numSteps) noexcept;
};

/// An allocator for `std::allocate_shared` that keeps the memory of a released object for the next
/// of its size: drawables and their bindings come and go with each picture. The benchmark
/// drawable/make takes nothing from the heap then, and is above its limit on a driver without. It
/// takes no lock: each thread keeps its own.
///
/// \tparam Memory  RecycledMemory, or what does the same.
template <class T, class Memory = RecycledMemory>
class VELLIS_NO_EXPORT RecyclingAllocator {
    static_assert(alignof(T) <= alignof(std::max_align_t), "memory as operator new gives it");

public:
    using value_type = T; ///< what the memory is for

    /// The same for another type.
    template <class Other>
    struct rebind {
        using other = RecyclingAllocator<Other, Memory>; ///< that one
    };

    RecyclingAllocator() = default;

    /// All are equal.
    template <class Other>
    RecyclingAllocator(const RecyclingAllocator<Other, Memory>&) noexcept {}

    /// The memory that is kept, or else some from the heap.
    T* allocate(std::size_t count) {
        if (isKept && count == 1)
            return static_cast<T*>(Memory::allocate(numSteps));
        return std::allocator<T>().allocate(count);
    }

    /// Keeps the memory, unless some of its size is kept already.
    void deallocate(T* memory, std::size_t count) noexcept {
        if (isKept && count == 1)
            Memory::deallocate(memory, numSteps);
        else
            std::allocator<T>().deallocate(memory, count);
    }

private:
    static constexpr std::size_t numSteps = (sizeof(T) + recycledStep - 1) / recycledStep;
    static constexpr bool isKept = recyclesMemory && numSteps <= mostRecycledSteps;
};

/// All are equal, whatever they are for: what one allocates any other can deallocate.
/// @{
template <class T, class Other, class Memory>
bool operator==(const RecyclingAllocator<T, Memory>&,
                const RecyclingAllocator<Other, Memory>&) noexcept {
    return true;
}
template <class T, class Other, class Memory>
bool operator!=(const RecyclingAllocator<T, Memory>&,
                const RecyclingAllocator<Other, Memory>&) noexcept {
    return false;
}
/// @}

} // namespace vellis::detail

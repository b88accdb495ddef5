#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include <vellis/detail/lasting.hpp>
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

/// An allocator for `std::allocate_shared` that keeps the memory of one released object for the
/// next of its type: drawables and their bindings come and go with each picture. The benchmark
/// drawable/make takes nothing from the heap then, and is above its limit on a driver without. It
/// takes no lock:
/// all calls belong on one thread, and so does the end of every drawable. What it keeps is each
/// shared library's own.
template <class T>
class VELLIS_NO_EXPORT RecyclingAllocator {
public:
    using value_type = T; ///< what the memory is for

    RecyclingAllocator() = default;

    /// All are equal.
    template <class Other>
    RecyclingAllocator(const RecyclingAllocator<Other>&) noexcept {}

    /// The memory that is kept, or else some from the heap.
    T* allocate(std::size_t count) {
        if (count == 1 && spare_ != nullptr)
            return std::exchange(spare_, nullptr);
        Release::arm(); // seldom comes here: most objects follow one that was released
        return std::allocator<T>().allocate(count);
    }

    /// Keeps the memory, unless some is kept already, or the end of the process has released it.
    void deallocate(T* memory, std::size_t count) noexcept {
        if (recyclesMemory && count == 1 && spare_ == nullptr && Release::isArmed())
            spare_ = memory;
        else
            std::allocator<T>().deallocate(memory, count);
    }

private:
    /// What is kept goes at the end of the program, or when a plug-in is unloaded.
    struct Kept {
        static void release() {
            if (spare_ != nullptr)
                std::allocator<T>().deallocate(std::exchange(spare_, nullptr), 1);
        }
    };
    using Release = AtExit<Kept>;

    static inline T* spare_ = nullptr; ///< the memory for one object, or null
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

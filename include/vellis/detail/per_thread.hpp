#pragma once

#include <new>
#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/export.hpp>

namespace vellis::detail {

/// Room for an object of each thread, which destructors of static objects can use however late they
/// run: it is never destroyed, unless that is asked for, and may be set again then.
template <class T>
class VELLIS_NO_EXPORT PerThread {
public:
    /// Sets this thread's object.
    static T& set(T value) {
        if (isMade_)
            object() = std::move(value);
        else
            new (room_) T(std::move(value));
        isMade_ = true;
        return object();
    }

    /// Sees to it that the object is destroyed at the end of this thread, for what it holds beside
    /// itself; behind that, at the end of the process.
    static void releaseAtEnd() {
        struct End {
            ~End() {
                release();
                isPast_ = true;
            }
        };
        if (isPast_)
            return AtExit<PerThread>::arm();
        static thread_local End end;
        static_cast<void>(end);
    }

    /// Destroys this thread's object.
    static void release() noexcept {
        if (isMade_)
            object().~T();
        isMade_ = false;
    }

private:
    static T& object() noexcept { return *std::launder(reinterpret_cast<T*>(room_)); }

    alignas(T) static inline thread_local unsigned char room_[sizeof(T)];
    static inline thread_local bool isMade_ = false;
    static inline thread_local bool isPast_ = false;
};

} // namespace vellis::detail

#pragma once

#include <cstdlib>
#include <new>
#include <type_traits>

#include <vellis/export.hpp>

namespace vellis::detail {

/// Room for an object of the process: made with the room, and never destroyed, so that destructors
/// of static objects can use it however late they run. What it holds beside itself is let go of by
/// AtExit.
template <class T>
class VELLIS_NO_EXPORT Lasting {
public:
    /// Holds what \p make gives.
    template <class Make>
    explicit Lasting(Make make) {
        new (room_) T(make());
    }
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;

    /// The object.
    T& operator*() noexcept { return *std::launder(reinterpret_cast<T*>(room_)); }

private:
    alignas(T) unsigned char room_[sizeof(T)];
};

template <class Make>
explicit Lasting(Make) -> Lasting<std::invoke_result_t<Make>>;

/// Calls `Kept::release()` at the end of the process, or when a plug-in is unloaded.
template <class Kept>
class VELLIS_NO_EXPORT AtExit {
public:
    /// Sees to that call. To be called before anything is kept: what is kept after the call, in the
    /// destructor of an object that lives longer, then has one of its own.
    static void arm() noexcept {
        if (!isArmed_)
            isArmed_ = std::atexit(&run) == 0;
    }

    /// Whether that call is still to come.
    static bool isArmed() noexcept { return isArmed_; }

private:
    /// What is released may put something in its place as it ends. It gets as many rounds as POSIX
    /// gives the destructors of a thread's data: what goes on and on must not keep the process.
    static void run() {
        for (int round = 0; round < 4; ++round)
            Kept::release();
        isArmed_ = false;
    }

    static inline bool isArmed_ = false;
};

} // namespace vellis::detail

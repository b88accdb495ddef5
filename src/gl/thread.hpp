#pragma once

#include <vellis/detail/recycling_allocator.hpp>

/// What a thread has in use, and what it keeps until it ends.
namespace vellis::gl {

class ContextState;

/// What belongs to one thread. Draws compare with the first members, so these hold what the Context
/// in use says of itself; the others are its own.
struct Thread {
    /// The index of the group of Contexts in use, whose buffers, textures, renderbuffers, shaders
    /// and programs can be used here: 0 for what the process made without one.
    unsigned int group;
    /// What a program that is not bound has beside the index of its group, and compares at once
    /// with it: 0. While debug output is on it is `watched`, which none has, so that all programs
    /// are bound the longer way, which leaves their names here.
    unsigned int unbound;
    /// The index of the Context in use, whose vertex arrays and framebuffers can be used here.
    unsigned int context;
    /// What this thread last used where it does not exist, in words; or null.
    const char* refused;
    /// The vertex attribute binding that was bound last, or null; or refusedBinding.
    const void* binding;
    /// The same of the process's own, while a Context is in use.
    const void* processBinding;
    /// The Context in use, or null for the process's own.
    ContextState* state;
    /// Whether what the thread keeps is released when it ends.
    enum class End : unsigned char { NotSeenTo, SeenTo, Past } end;
    /// The operation of the library that runs, in words, or null: see gl/operation.hpp.
    const char* operation;
    /// The name of the program that was bound last while debug output was on; or 0.
    unsigned int program;
    /// Memory of released objects, for the next of as many steps.
    void* spares[detail::mostRecycledSteps];
};

/// In place of an index while nothing that was made can be used: of a Context that is gone, or that
/// another thread has taken over.
constexpr unsigned int nowhere = 0xFFFFFFFF;

/// Thread::unbound while debug output is on.
constexpr unsigned int watched = 0x80000000;

/// In place of a binding while one that does not exist here counts as bound.
inline const void* const refusedBinding = reinterpret_cast<const void*>(1);

/// That of this thread.
#ifdef _WIN32
// The compilers' own for Windows are gone before what a thread keeps can be released.
Thread& thread() noexcept;
#else
// A kind of thread_local that needs no initialisation, which each access would look for, and, on
// ELF, one instruction to be found.
#if defined(__ELF__)
#define VELLIS_THREAD_LOCAL __thread __attribute__((tls_model("initial-exec")))
#else
#define VELLIS_THREAD_LOCAL __thread
#endif
extern VELLIS_THREAD_LOCAL Thread threadItself;
inline Thread& thread() noexcept {
    return threadItself;
}
#endif

/// Members of a Thread that another thread may set, which takes over a Context.
/// @{
template <class T>
T getShared(const T& member) {
#if defined(__GNUC__)
    return __atomic_load_n(&member, __ATOMIC_RELAXED);
#else
    return member;
#endif
}
template <class T>
void setShared(T& member, T value) {
#if defined(__GNUC__)
    __atomic_store_n(&member, value, __ATOMIC_RELAXED);
#else
    member = value;
#endif
}
/// @}

/// Sees to it that what this thread keeps is released when it ends, or with the library.
/// \return false where it is past that.
bool releaseAtEndOfThread() noexcept;

} // namespace vellis::gl

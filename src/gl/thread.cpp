#include "gl/thread.hpp"

#include <atomic>
#include <new>
#include <utility>

#include "gl/context_state.hpp"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace vellis::gl {
namespace {

/// Releases what a thread keeps, and puts down what it has in use.
void release(Thread& thread) noexcept {
    putDown(thread);
    for (void*& spare : thread.spares)
        ::operator delete(std::exchange(spare, nullptr));
    thread.end = Thread::End::NotSeenTo;
}

// The system calls a function at the end of each thread that has a value. A destructor of C++'s
// would do the same, but would keep a plug-in's libraries loaded for as long as the thread lives.

#ifdef _WIN32

void CALLBACK endThread(void* ended) {
    auto* const thread = static_cast<Thread*>(ended);
    release(*thread);
    delete thread;
}

/// The system's key for that value, while the library is loaded.
class Key {
public:
    Key() : key_(FlsAlloc(endThread)) {}
    ~Key() { FlsFree(std::exchange(key_, FLS_OUT_OF_INDEXES)); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    Thread* get() const { return static_cast<Thread*>(FlsGetValue(key_)); }
    bool set(Thread* thread) const { return FlsSetValue(key_, thread) != 0; }

private:
    DWORD key_;
};

#else

void endThread(void* ended) {
    release(*static_cast<Thread*>(ended));
}

/// The system's key for that value, while the library is loaded.
class Key {
public:
    Key() { isThere_ = pthread_key_create(&key_, endThread) == 0; }

    /// The end of the process, or of the library. Other threads may go on: what they keep is lost.
    ~Key() {
        release(threadItself);
        threadItself.end = Thread::End::Past;
        if (isThere_.exchange(false))
            pthread_key_delete(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    bool set(Thread* thread) const { return isThere_ && pthread_setspecific(key_, thread) == 0; }

private:
    std::atomic<bool> isThere_;
    pthread_key_t key_;
};

#endif

const Key& key() {
    static const Key ofProcess;
    return ofProcess;
}

} // namespace

#ifdef _WIN32

Thread& thread() noexcept {
    static Thread last; // of all, where there is no memory, and behind the end of the library
    if (Thread* const known = key().get())
        return *known;
    auto* const made = new (std::nothrow) Thread();
    if (made == nullptr || !key().set(made)) {
        delete made;
        return last;
    }
    made->end = Thread::End::SeenTo;
    return *made;
}

bool releaseAtEndOfThread() noexcept {
    return thread().end == Thread::End::SeenTo;
}

#else

VELLIS_THREAD_LOCAL Thread threadItself = {};

bool releaseAtEndOfThread() noexcept {
    if (threadItself.end == Thread::End::NotSeenTo)
        threadItself.end = key().set(&threadItself) ? Thread::End::SeenTo : Thread::End::Past;
    return threadItself.end == Thread::End::SeenTo;
}

#endif

} // namespace vellis::gl

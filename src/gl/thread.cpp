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

#if defined(__ELF__)
__attribute__((tls_model("initial-exec")))
#endif
VELLIS_THREAD_LOCAL Thread thread = {};

namespace {

/// Releases what this thread keeps; it may go on and keep more.
void release() {
    enter(nullptr);
    for (void*& spare : thread.spares)
        ::operator delete(std::exchange(spare, nullptr));
    thread.end = Thread::End::NotSeenTo;
}

// What the system calls at the end of each thread that has a value. A destructor of C++'s would do
// the same, but would keep a plug-in's libraries loaded for as long as the thread lives.
#ifdef _WIN32
void CALLBACK endThread(void*) {
    release();
}
#else
void endThread(void*) {
    release();
}
#endif

/// The system's name for that value, while the library is loaded.
class EndOfThreads {
public:
#ifdef _WIN32
    EndOfThreads() : key_(FlsAlloc(endThread)) {
        isThere_ = key_ != FLS_OUT_OF_INDEXES;
    }
    void see() const {
        FlsSetValue(key_, &thread);
    }
#else
    EndOfThreads() {
        isThere_ = pthread_key_create(&key_, endThread) == 0;
    }
    void see() const {
        pthread_setspecific(key_, &thread);
    }
#endif
    /// The end of the process, or of the library. Other threads may go on: what they keep is lost.
    ~EndOfThreads() {
        release();
        thread.end = Thread::End::Past;
        if (!isThere_.exchange(false))
            return;
#ifdef _WIN32
        FlsFree(key_);
#else
        pthread_key_delete(key_);
#endif
    }
    EndOfThreads(const EndOfThreads&) = delete;
    EndOfThreads& operator=(const EndOfThreads&) = delete;

    static bool isThere() {
        return isThere_;
    }

private:
    static inline std::atomic<bool> isThere_ = false;
#ifdef _WIN32
    DWORD key_;
#else
    pthread_key_t key_;
#endif
};

} // namespace

bool releaseAtEndOfThread() {
    if (thread.end == Thread::End::NotSeenTo) {
        static const EndOfThreads ends;
        thread.end = EndOfThreads::isThere() ? Thread::End::SeenTo : Thread::End::Past;
        if (thread.end == Thread::End::SeenTo)
            ends.see();
    }
    return thread.end == Thread::End::SeenTo;
}

} // namespace vellis::gl

#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "support/gl_answers.hpp"
#include "support/gl_format.hpp"

namespace vellis::test {

/// What the recorders work for while they stand in for the entry points: of the calls of a thread,
/// the listener that is current on it.
class CallListener {
public:
    CallListener() = default;
    virtual ~CallListener() = default;
    CallListener(const CallListener&) = delete;
    CallListener& operator=(const CallListener&) = delete;

    /// Told of every call, before it is answered, while recording is on.
    virtual void calling(EntryPoint, const Argument*) {}
    /// Told of every call, after it was answered, while recording is on.
    virtual void called(EntryPoint entryPoint, const Argument* arguments) = 0;

    bool recording = true;
    AnswerTable answers;
    std::size_t numOtherCalls = 0;       ///< of those through findOtherRecorder()
    std::atomic<bool> isCurrent = false; ///< on some thread
};

/// Makes a listener the one of this thread; none, where it is null. A thread begins without one:
/// its calls give 0 or null, then.
/// \return false where it is another thread's: all stays as it was.
bool makeCurrent(CallListener* listener);

/// The listener of this thread, or null.
CallListener* currentListener();

/// How many calls were made on threads without a listener since the last look.
std::size_t takeCallsWithoutContext();

/// Puts recorders in the place of all entry points and sets all flags of the loader while it lives;
/// then puts everything back as it was. The listener is current on the thread that makes the swap.
class RecorderSwap {
public:
    explicit RecorderSwap(CallListener& listener);
    ~RecorderSwap();
    RecorderSwap(const RecorderSwap&) = delete;
    RecorderSwap& operator=(const RecorderSwap&) = delete;

private:
    struct Loader;

    std::unique_ptr<Loader> saved_;
    CallListener* own_;
    CallListener* outer_;
};

/// Whether a recorder that records is at work on this thread: what is allocated now is the fake
/// GL's, not its caller's.
bool isInsideFakeGl();

/// The recorder of the entry point of that name, or null: a lookup for gladLoadGLLoader().
void* findRecorder(const char* name);

/// The same, but for some entry points another function that does the same.
void* findOtherRecorder(const char* name);

} // namespace vellis::test

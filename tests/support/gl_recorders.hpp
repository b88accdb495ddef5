#pragma once

#include <memory>

#include "support/gl_answers.hpp"
#include "support/gl_format.hpp"

namespace vellis::test {

/// What the recorders work for while they stand in for the entry points.
class CallListener {
public:
    CallListener() = default;
    virtual ~CallListener() = default;
    CallListener(const CallListener&) = delete;
    CallListener& operator=(const CallListener&) = delete;

    /// Told of every call, after it was answered, while recording is on.
    virtual void called(EntryPoint entryPoint, const Argument* arguments) = 0;

    bool recording = true;
    AnswerTable answers;
};

/// Puts recorders in the place of all entry points and sets all flags of the loader while it lives;
/// then puts everything back as it was.
class RecorderSwap {
public:
    explicit RecorderSwap(CallListener& listener);
    ~RecorderSwap();
    RecorderSwap(const RecorderSwap&) = delete;
    RecorderSwap& operator=(const RecorderSwap&) = delete;

private:
    struct Loader;

    std::unique_ptr<Loader> saved_;
    CallListener* outer_;
};

/// Whether a recorder that records is at work: what is allocated now is the fake GL's, not its
/// caller's.
bool isInsideFakeGl();

/// The recorder of the entry point of that name, or null: a lookup for gladLoadGLLoader().
void* findRecorder(const char* name);

} // namespace vellis::test

#include "support/gl_recorders.hpp"

#include <cstring>

#include <vellis/gl.hpp>

namespace vellis::test {
namespace {

thread_local CallListener* listener = nullptr;
thread_local bool insideFakeGl = false;
std::atomic<std::size_t> callsWithoutContext = 0;

/// The time in which a recorder is at work.
class InsideFakeGl {
public:
    InsideFakeGl() { insideFakeGl = true; }
    ~InsideFakeGl() { insideFakeGl = false; }
    InsideFakeGl(const InsideFakeGl&) = delete;
    InsideFakeGl& operator=(const InsideFakeGl&) = delete;
};

/// Tells the listener of a call at the end of the scope: when names that the call makes are there.
class CallReport {
public:
    CallReport(CallListener& callListener, EntryPoint entryPoint, const Argument* arguments)
        : listener_(callListener),
          entryPoint_(entryPoint),
          arguments_(arguments) {}
    ~CallReport() { listener_.called(entryPoint_, arguments_); }
    CallReport(const CallReport&) = delete;
    CallReport& operator=(const CallReport&) = delete;

private:
    CallListener& listener_;
    EntryPoint entryPoint_;
    const Argument* arguments_;
};

template <class Pointer>
struct Recorder;

/// The recorders of the entry points of one type.
template <class Result, class... Parameters>
struct Recorder<Result(GLAD_API_PTR*)(Parameters...)> {
    template <EntryPoint entryPoint>
    static Result GLAD_API_PTR call(Parameters... parameters) {
        CallListener* const current = listener;
        if (current == nullptr) {
            ++callsWithoutContext;
            return Result();
        }
        if (!current->recording)
            return answer<entryPoint>(*current, parameters...);
        const InsideFakeGl inside;
        // One more than there are parameters: an array cannot be empty.
        const Argument arguments[sizeof...(Parameters) + 1] = {Argument::of(parameters)...};
        current->calling(entryPoint, arguments);
        const CallReport report(*current, entryPoint, arguments);
        return answer<entryPoint>(*current, parameters...);
    }

    template <EntryPoint entryPoint>
    static Result GLAD_API_PTR callOther(Parameters... parameters) {
        if (listener != nullptr)
            ++listener->numOtherCalls;
        return call<entryPoint>(parameters...);
    }

private:
    template <EntryPoint entryPoint>
    static Result answer(const CallListener& current, Parameters... parameters) {
        AnyAnswer* answer = current.answers[entryPoint];
        if (answer == nullptr)
            return Result();
        return (*static_cast<Answer<Result, Parameters...>*>(answer))(parameters...);
    }
};

/// A recorder and the name of its entry point.
struct Row {
    const char* name;
    void* recorder;
};

template <std::size_t count>
void* find(const Row (&rows)[count], const char* name) {
    for (const Row& row : rows) {
        if (std::strcmp(row.name, name) == 0)
            return row.recorder;
    }
    return nullptr;
}

} // namespace

/// Everything that the loader exports.
struct RecorderSwap::Loader {
#define VELLIS_ENTRY_POINT(name, member) decltype(glad_##name) name##_ = glad_##name;
#define VELLIS_LOADER_FLAG(name, member) int name##_ = name;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    VellisGLVersion version = GLVersion;
};

RecorderSwap::RecorderSwap(CallListener& newListener)
    : saved_(std::make_unique<Loader>()),
      own_(&newListener),
      outer_(listener) {
    makeCurrent(own_);
#define VELLIS_ENTRY_POINT(name, member)                                                           \
    glad_##name = &Recorder<decltype(glad_##name)>::call<EntryPoint::name##_>;
#define VELLIS_LOADER_FLAG(name, member) name = 1;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
}

RecorderSwap::~RecorderSwap() {
#define VELLIS_ENTRY_POINT(name, member) glad_##name = saved_->name##_;
#define VELLIS_LOADER_FLAG(name, member) name = saved_->name##_;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    GLVersion = saved_->version;
    // A context that has been made current beside it stays so.
    if (listener == own_ || listener == nullptr)
        makeCurrent(outer_);
}

bool makeCurrent(CallListener* next) {
    if (next == listener)
        return true;
    if (next != nullptr && next->isCurrent.exchange(true))
        return false;
    if (listener != nullptr)
        listener->isCurrent = false;
    listener = next;
    return true;
}

CallListener* currentListener() {
    return listener;
}

std::size_t takeCallsWithoutContext() {
    return callsWithoutContext.exchange(0);
}

bool isInsideFakeGl() {
    return insideFakeGl;
}

void* findRecorder(const char* wanted) {
    static const Row rows[] = {
#define VELLIS_ENTRY_POINT(name, member)                                                           \
    {#name, reinterpret_cast<void*>(&Recorder<decltype(glad_##name)>::call<EntryPoint::name##_>)},
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
    return find(rows, wanted);
}

void* findOtherRecorder(const char* wanted) {
    static const Row rows[] = {
#define VELLIS_OTHER(name)                                                                         \
    {#name,                                                                                        \
     reinterpret_cast<void*>(&Recorder<decltype(glad_##name)>::callOther<EntryPoint::name##_>)},
        // clang-format off
        VELLIS_OTHER(glBindBuffer)
        VELLIS_OTHER(glBindFramebuffer)
        VELLIS_OTHER(glBindTexture)
        VELLIS_OTHER(glBindVertexArray)
        VELLIS_OTHER(glBufferData)
        VELLIS_OTHER(glClear)
        VELLIS_OTHER(glDeleteBuffers)
        VELLIS_OTHER(glDrawArrays)
        VELLIS_OTHER(glDrawElements)
        VELLIS_OTHER(glGenBuffers)
        VELLIS_OTHER(glGetIntegerv)
        VELLIS_OTHER(glUseProgram)
    // clang-format on
#undef VELLIS_OTHER
    };
    void* const recorder = find(rows, wanted);
    return recorder != nullptr ? recorder : findRecorder(wanted);
}

} // namespace vellis::test

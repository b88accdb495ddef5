#include "support/gl_recorders.hpp"

#include <cstring>

#include <vellis/gl.hpp>

namespace vellis::test {
namespace {

CallListener* listener = nullptr;
bool insideFakeGl = false;

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
    CallReport(EntryPoint entryPoint, const Argument* arguments)
        : entryPoint_(entryPoint),
          arguments_(arguments) {}
    ~CallReport() { listener->called(entryPoint_, arguments_); }
    CallReport(const CallReport&) = delete;
    CallReport& operator=(const CallReport&) = delete;

private:
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
        if (!listener->recording)
            return answer<entryPoint>(parameters...);
        const InsideFakeGl inside;
        // One more than there are parameters: an array cannot be empty.
        const Argument arguments[sizeof...(Parameters) + 1] = {Argument::of(parameters)...};
        const CallReport report(entryPoint, arguments);
        return answer<entryPoint>(parameters...);
    }

private:
    template <EntryPoint entryPoint>
    static Result answer(Parameters... parameters) {
        AnyAnswer* answer = listener->answers[entryPoint];
        if (answer == nullptr)
            return Result();
        return (*static_cast<Answer<Result, Parameters...>*>(answer))(parameters...);
    }
};

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
      outer_(listener) {
    listener = &newListener;
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
    listener = outer_;
}

bool isInsideFakeGl() {
    return insideFakeGl;
}

void* findRecorder(const char* wanted) {
    struct Row {
        const char* name;
        void* recorder;
    };
    static const Row rows[] = {
#define VELLIS_ENTRY_POINT(name, member)                                                           \
    {#name, reinterpret_cast<void*>(&Recorder<decltype(glad_##name)>::call<EntryPoint::name##_>)},
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
    for (const Row& row : rows) {
        if (std::strcmp(row.name, wanted) == 0)
            return row.recorder;
    }
    return nullptr;
}

} // namespace vellis::test

#include <vellis/engine/debug_output.hpp>

#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>

#include "gl/context_state.hpp"
#include "gl/entry_point.hpp"
#include "gl/labels.hpp"
#include "gl/log.hpp"

namespace vellis::internal {
namespace {

/// How a value of GL's reads in the log.
struct Word {
    unsigned int value;
    const char* text;
};
constexpr Word sourceWords[] = {
    {GL_DEBUG_SOURCE_API, "API"},
    {GL_DEBUG_SOURCE_WINDOW_SYSTEM, "window system"},
    {GL_DEBUG_SOURCE_SHADER_COMPILER, "shader compiler"},
    {GL_DEBUG_SOURCE_THIRD_PARTY, "third party"},
    {GL_DEBUG_SOURCE_APPLICATION, "application"},
};
constexpr Word typeWords[] = {
    {GL_DEBUG_TYPE_ERROR, "error"},
    {GL_DEBUG_TYPE_DEPRECATED_BEHAVIOR, "deprecated behaviour"},
    {GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR, "undefined behaviour"},
    {GL_DEBUG_TYPE_PORTABILITY, "portability"},
    {GL_DEBUG_TYPE_PERFORMANCE, "performance"},
    {GL_DEBUG_TYPE_MARKER, "marker"},
    {GL_DEBUG_TYPE_PUSH_GROUP, "group begins"},
    {GL_DEBUG_TYPE_POP_GROUP, "group ends"},
};
/// The worst first.
constexpr Word severityWords[] = {
    {GL_DEBUG_SEVERITY_HIGH, "high"},
    {GL_DEBUG_SEVERITY_MEDIUM, "medium"},
    {GL_DEBUG_SEVERITY_LOW, "low"},
    {GL_DEBUG_SEVERITY_NOTIFICATION, "notification"},
};

template <std::size_t N, class Enum>
const Word* find(const Word (&words)[N], Enum value) {
    const Word* word = words;
    while (word != words + N && word->value != static_cast<unsigned int>(value))
        ++word;
    return word;
}

template <std::size_t N, class Enum>
std::string_view wordOf(const Word (&words)[N], Enum value) {
    const Word* const found = find(words, value);
    return found != words + N ? found->text : "other";
}

/// How far a severity is from the worst; one that nobody knows counts as that.
std::size_t rankOf(DebugSeverity severity) {
    const auto rank = static_cast<std::size_t>(find(severityWords, severity) - severityWords);
    return rank < std::size(severityWords) ? rank : 0;
}

/// A number that differs for messages that differ, as good as always.
std::uint64_t hashOf(const DebugMessage& message) {
    std::uint64_t hash = 0xCBF29CE484222325;
    const auto add = [&hash](unsigned int value) { hash = (hash ^ value) * 0x100000001B3; };
    add(static_cast<unsigned int>(message.source));
    add(static_cast<unsigned int>(message.type));
    add(message.id);
    for (const char character : message.text)
        add(static_cast<unsigned char>(character));
    return hash;
}

/// As long as it lives nothing of the library's exists on this thread, as in another Context: what
/// ends meanwhile waits to be deleted. What was used all the same is said in the end.
class NothingHere {
public:
    NothingHere()
        : state_(gl::thread().state),
          group_(std::exchange(gl::thread().group, gl::nowhere)),
          context_(std::exchange(gl::thread().context, gl::nowhere)),
          refused_(std::exchange(gl::thread().refused, nullptr)) {}
    ~NothingHere() {
        gl::Thread& thread = gl::thread();
        if (thread.refused != nullptr)
            writeToFile({logTitle, ": a callback of debug output must not use a ", thread.refused});
        thread.refused = refused_;
        if (thread.state == state_) {
            thread.group = group_;
            thread.context = context_;
        }
    }
    NothingHere(const NothingHere&) = delete;
    NothingHere& operator=(const NothingHere&) = delete;

private:
    gl::ContextState* state_;
    unsigned int group_;
    unsigned int context_;
    const char* refused_;
};

/// What takes the messages of one GL context, and what was set there before.
struct Output {
    explicit Output(DebugOutputSettings&& asked) : settings(std::move(asked)) {}

    void take(const DebugMessage& message) {
        if (rankOf(message.severity) > rankOf(settings.least))
            return;
        const NothingHere nothing;
        if (settings.filter && !settings.filter(message))
            return;
        if (!settings.showsRepeats && !isNew(hashOf(message)))
            return;
        if (settings.callback)
            settings.callback(message);
        else
            printLine(logTitle, text_of(message));
    }

    /// Whether GL must be told to send messages of low severity.
    bool needsLow() const { return rankOf(settings.least) > rankOf(DebugSeverity::Medium); }

    DebugOutputSettings settings;
    void* hostCallback = nullptr;
    void* hostParameter = nullptr;
    bool wasOn = false;
    bool wasSynchronous = false;
    std::shared_ptr<Output> next; ///< of the list of all

private:
    bool isNew(std::uint64_t hash) {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const std::uint64_t seen : seen_) {
            if (seen == hash)
                return false;
        }
        seen_[next_] = hash;
        next_ = (next_ + 1) % seen_.size();
        return true;
    }

    std::mutex mutex_; // a driver may have threads of its own
    std::array<std::uint64_t, 256> seen_ = {};
    std::size_t next_ = 0;
};

/// All that are on, and what guards them. What GL has is an address that is looked for here: it may
/// outlast its output where a Context was abandoned.
struct All {
    std::mutex mutex;
    std::shared_ptr<Output> first;

    static All& instance() {
        static detail::Lasting all([] { return All(); });
        return *all;
    }

    std::shared_ptr<Output> find(const void* address) {
        const std::lock_guard<std::mutex> lock(mutex);
        return *placeOf(address);
    }

    void add(const std::shared_ptr<Output>& output) {
        const std::lock_guard<std::mutex> lock(mutex);
        output->next.swap(first);
        first = output;
    }

    void remove(const std::shared_ptr<Output>& output) {
        const std::lock_guard<std::mutex> lock(mutex);
        std::shared_ptr<Output>& place = *placeOf(output.get());
        place.swap(output->next); // which holds itself now
        output->next.reset();
    }

private:
    std::shared_ptr<Output>* placeOf(const void* address) {
        std::shared_ptr<Output>* place = &first;
        while (*place != nullptr && place->get() != address)
            place = &(*place)->next;
        return place;
    }
};

/// That of a Context, or of the process.
struct Place {
    std::shared_ptr<Output> output;

    Place() = default;
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    /// The end of a Context, whose GL context may be gone.
    ~Place() { forget(); }

    static Place& ofProcess() {
        static detail::Lasting place([] { return Place(); });
        return *place;
    }

    static Place& inUse() {
        if (gl::thread().state != nullptr)
            return gl::thread().state->at<Place>(gl::Slot::DebugOutput);
        detail::AtExit<Place>::arm();
        return ofProcess();
    }

    /// At the end of the process.
    static void release() { ofProcess().forget(); }

private:
    void forget() {
        if (const auto forgotten = std::exchange(output, nullptr); forgotten != nullptr)
            All::instance().remove(forgotten);
    }
};

std::string_view trimmed(const char* text, int length) {
    if (text == nullptr)
        return {};
    std::string_view view(text, length >= 0 ? static_cast<std::size_t>(length) : std::strlen(text));
    while (!view.empty() && (view.back() == '\n' || view.back() == '\r' || view.back() == '\0'))
        view.remove_suffix(1);
    return view;
}

/// What GL calls.
void GLAD_API_PTR takeMessage(GLenum source, GLenum type, GLuint id, GLenum severity,
                              GLsizei length, const GLchar* text, const void* parameter) {
    const gl::Thread& thread = gl::thread();
    if (thread.group == gl::nowhere) // in a callback
        return;
    try {
        const std::shared_ptr<Output> output = All::instance().find(parameter);
        if (output == nullptr)
            return;
        std::string program;
        if (thread.operation == nullptr && thread.program != 0)
            program = gl::nameText(gl::Kind::Program, thread.program);
        output->take({static_cast<DebugSource>(source), static_cast<DebugType>(type), id,
                      static_cast<DebugSeverity>(severity), trimmed(text, length), thread.operation,
                      program});
    } catch (...) { // of the application's functions, or of no memory: GL cannot be left by one
    }
}

/// `glDebugMessageCallback` of either extension; or null.
PFNGLDEBUGMESSAGECALLBACKPROC setCallback() {
    return glDebugMessageCallback != nullptr ? glDebugMessageCallback : glDebugMessageCallbackARB;
}

/// Whether GL_DEBUG_OUTPUT can be switched.
bool hasSwitch() {
    return glDebugMessageCallback != nullptr;
}

void* pointerOf(unsigned int pname) {
    void* pointer = nullptr;
    callIfLoaded(glGetPointerv, pname, &pointer);
    return pointer;
}

void sendLow(bool on) {
    const auto control =
        glDebugMessageControl != nullptr ? glDebugMessageControl : glDebugMessageControlARB;
    callIfLoaded(control, GL_DONT_CARE, GL_DONT_CARE, GL_DEBUG_SEVERITY_LOW, 0, nullptr,
                 static_cast<GLboolean>(on));
}

void install(Output& output) {
    output.hostCallback = pointerOf(GL_DEBUG_CALLBACK_FUNCTION);
    output.hostParameter = pointerOf(GL_DEBUG_CALLBACK_USER_PARAM);
    output.wasOn = hasSwitch() && glIsEnabled(GL_DEBUG_OUTPUT) != GL_FALSE;
    output.wasSynchronous = glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS) != GL_FALSE;
    setCallback()(takeMessage, &output);
    if (hasSwitch())
        glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    if (output.needsLow())
        sendLow(true);
}

void putBack(const Output& output) {
    if (pointerOf(GL_DEBUG_CALLBACK_FUNCTION) != reinterpret_cast<void*>(takeMessage))
        return;
    if (output.needsLow())
        sendLow(false);
    setCallback()(reinterpret_cast<GLDEBUGPROC>(output.hostCallback), output.hostParameter);
    if (!output.wasSynchronous)
        glDisable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    if (!output.wasOn && hasSwitch())
        glDisable(GL_DEBUG_OUTPUT);
}

bool isInCallback() {
    return gl::thread().group == gl::nowhere;
}

} // namespace

bool start_debug_output(DebugOutputSettings settings) {
    if (isInCallback() || setCallback() == nullptr)
        return false;
    const auto output = std::make_shared<Output>(std::move(settings));
    Place& place = Place::inUse();
    All::instance().add(output);
    stop_debug_output();
    place.output = output;
    gl::watch(true);
    install(*output);
    return true;
}

void stop_debug_output() {
    if (isInCallback() ||
        (gl::thread().state != nullptr && !gl::thread().state->has(gl::Slot::DebugOutput)))
        return;
    const std::shared_ptr<Output> output = std::exchange(Place::inUse().output, nullptr);
    if (output == nullptr)
        return;
    gl::watch(false);
    putBack(*output);
    All::instance().remove(output);
}

std::string text_of(const DebugMessage& message) {
    const bool isInOperation = message.operation != nullptr;
    const std::string_view where = isInOperation ? message.operation : message.program;
    std::string text;
    for (const std::string_view piece : {
             std::string_view("GL "),
             wordOf(sourceWords, message.source),
             std::string_view(" "),
             wordOf(typeWords, message.type),
             std::string_view(" ("),
             wordOf(severityWords, message.severity),
             std::string_view(where.empty()   ? ")"
                              : isInOperation ? ") in "
                                              : "), program "),
             where,
             std::string_view(": "),
             message.text,
         })
        text += piece;
    return text;
}

} // namespace vellis::internal

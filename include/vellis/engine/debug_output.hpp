#pragma once

/// \file
/// GL's debug messages, with the operation of the library that caused them.

#include <iosfwd> // declares std::string: who takes one includes <string>
#include <memory>
#include <string_view>
#include <utility>

#include <vellis/export.hpp>

namespace vellis::internal {

/// Where a debug message comes from, with GL's values.
enum class DebugSource : unsigned int {
    Api = 0x8246,            ///< the GL itself: `GL_DEBUG_SOURCE_API`
    WindowSystem = 0x8247,   ///< EGL, GLX and their like
    ShaderCompiler = 0x8248, ///< the compiler and the linker of shaders
    ThirdParty = 0x8249,     ///< layers and tools
    Application = 0x824A,    ///< the program, by `glDebugMessageInsert` or as a group
    Other = 0x824B,          ///< anything else
};

/// What a debug message is about, with GL's values.
enum class DebugType : unsigned int {
    Error = 0x824C,              ///< what GL queues as an error
    DeprecatedBehavior = 0x824D, ///< what later versions do not have
    UndefinedBehavior = 0x824E,  ///< what may do anything
    Portability = 0x824F,        ///< what other drivers may do otherwise
    Performance = 0x8250,        ///< what is slow
    Other = 0x8251,              ///< anything else
    Marker = 0x8268,             ///< a mark that the program has set
    PushGroup = 0x8269,          ///< the beginning of a group
    PopGroup = 0x826A,           ///< its end
};

/// How bad it is, with GL's values.
enum class DebugSeverity : unsigned int {
    High = 0x9146,   ///< errors, undefined behaviour
    Medium = 0x9147, ///< warnings, what is slow
    Low = 0x9148,    ///< redundant changes of state and the like, which GL leaves out at first
    Notification = 0x826B, ///< nothing bad
};

/// A debug message of GL's. The texts live for as long as the call that it is given to.
struct DebugMessage {
    DebugSource source;     ///< where it comes from
    DebugType type;         ///< what it is about
    unsigned int id;        ///< the driver's number for it
    DebugSeverity severity; ///< how bad it is
    std::string_view text;  ///< what the driver says, without line ends behind it

    /// What the library was doing: makes, links, transfers, blits and flushes by name, such as
    /// `"Texture::upload"`. Null where it did none of these: in draws, and in calls of your own.
    const char* operation;

    /// Where there is no operation, the program that was bound last, such as `5 'water'`: its name,
    /// and its label if it has one. Empty where none was since the start.
    std::string_view program;
};

/// A function of the application's that takes a debug message: a lambda, a pointer to a function, a
/// `std::function`, whose header this one does without. Copies share it.
template <class Result>
class DebugFunction {
public:
    /// None.
    DebugFunction() = default;

    /// Keeps a copy of \p function, which is called with a `const DebugMessage&`.
    template <class Function>
    DebugFunction(Function function)
        : function_(std::make_shared<Function>(std::move(function))),
          call_([](void* called, const DebugMessage& message) -> Result {
              return (*static_cast<Function*>(called))(message);
          }) {}

    /// Whether there is one.
    explicit operator bool() const { return call_ != nullptr; }

    /// Calls it; there must be one.
    Result operator()(const DebugMessage& message) const { return call_(function_.get(), message); }

private:
    std::shared_ptr<void> function_;
    Result (*call_)(void* function, const DebugMessage& message) = nullptr;
};

/// Which debug messages are shown, and where.
struct DebugOutputSettings {
    /// What is less bad is left out. With Low or Notification GL is told to send messages of low
    /// severity, and at the end to leave them out, as it does at first.
    DebugSeverity least = DebugSeverity::Medium;

    /// Whether a message is shown again whose source, type, number and text are those of another.
    /// If not, the last 256 that differ are remembered.
    bool showsRepeats = false;

    /// Says whether a message is shown; empty for all.
    DebugFunction<bool> filter;

    /// Takes the messages in place of the log. See start_debug_output().
    DebugFunction<void> callback;
};

/// Has GL's debug messages written to standard error from now on, or given to a function of yours,
/// with what the library was doing. For the Context in use, or for the process; a second call
/// begins anew with other settings.
///
/// \code
/// vellis::internal::start_debug_output();
/// vellis::internal::label(program, "water");
/// // A draw that GL refuses then writes, say:
/// // Corvane: GL API error (high), program 5 'water': GL_INVALID_OPERATION in glDrawArrays
/// \endcode
///
/// Messages come synchronously, from within the GL call that caused them and on its thread: a
/// breakpoint in a callback shows who called. GL's errors stay in GL's queue as well. Programs are
/// bound a longer way meanwhile, which notes their names, with the same GL calls. Batches of a
/// Canvas are groups of GL's calls, `glPushDebugGroup` and `glPopDebugGroup`, of the canvas's
/// label; they are as well in a Context in which something has a label.
///
/// What GL needs is KHR_debug, or ARB_debug_output, of which most drivers have messages only in
/// debug contexts. In this order: `glGetPointerv` twice and `glIsEnabled` once or twice, to know
/// what the host has set; `glDebugMessageCallback`; `glEnable` of `GL_DEBUG_OUTPUT` (KHR_debug) and
/// of `GL_DEBUG_OUTPUT_SYNCHRONOUS`.
///
/// **Callbacks.** What the filter or the callback throws is caught and forgotten. They must call
/// neither GL nor vellis: GL forbids the one, and in the meantime no object of the library exists,
/// as in another Context, which is noted in the log. Starting and stopping do nothing there.
///
/// \return false, and nothing is changed, where the context has neither extension, where another
///         thread has taken over the Context, and in a callback.
/// \throws std::bad_alloc where there is no memory; nothing is changed then.
VELLIS_EXPORT bool start_debug_output(DebugOutputSettings settings = {});

/// Ends that for the Context in use, or for the process, and puts back what was set before: the
/// host's callback, `GL_DEBUG_OUTPUT` and `GL_DEBUG_OUTPUT_SYNCHRONOUS`. Where somebody else has
/// set a callback meanwhile, GL stays as it is. Does nothing where there is none.
///
/// Context::dispose and engine::dispose do the same, and Context::abandon ends it without a GL
/// call: GL's messages are dropped from then on. End it before the library is unloaded.
VELLIS_EXPORT void stop_debug_output();

/// A message as the log shows it, for a log of your own:
/// `GL API error (high) in Texture::upload: GL_INVALID_VALUE in glTexImage2D`.
VELLIS_EXPORT std::string text_of(const DebugMessage& message);

} // namespace vellis::internal

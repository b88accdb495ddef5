#pragma once

/// \file
/// Logging, assertions and the names of GL errors, on standard error.

#include <vellis/export.hpp>

#if defined(__GNUC__)
/// Lets the compiler check the arguments of a printf-style function against its format.
#define VELLIS_PRINTF_FORMAT(formatIndex, firstArgument)                                           \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define VELLIS_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

/// Diagnostics on standard error: logging, assertions and warnings, names of GL errors.
///
/// \code
/// if (const char* error = vellis::internal::check_glerror())
///     vellis::internal::log(__FILE__, __LINE__, "upload", "%s after %d rows", error, rows);
/// \endcode
///
/// Nothing here throws, but for a failing allocation of a message's memory where that is said, and
/// only assertion_fail ends the process. The output is unbuffered, so lines appear in the order of
/// the calls. What asks GL nothing may come from any thread: each line is written at once. A null
/// text prints as `(null)`, unless stated otherwise.
///
/// log and not_tested write to C's `stderr`, the others to the buffer of `std::cerr`: one that a
/// program has put there gets their text. Nothing else that a program does to `std::cerr` (number
/// base, width, locale, error bits, exceptions), nor a global locale, changes the text, and the
/// stream stays as it is. A buffer that throws is not heard of.
///
/// A printf-style message has room for the length of its *format* and 255 characters; what goes
/// beyond is cut. So a short format with a long argument is cut: put long texts in pieces.
namespace vellis::internal {

/// Prints `title: message` and a line end. A null \p title prints the message alone.
/// \throws std::bad_alloc where there is no memory for the message.
VELLIS_EXPORT void log(const char* title, const char* format, ...) VELLIS_PRINTF_FORMAT(2, 3);

/// Prints `title [file Ln line]: message` and a line end.
/// \throws std::bad_alloc where there is no memory for the message.
VELLIS_EXPORT void log(const char* file, int line, const char* title, const char* format, ...)
    VELLIS_PRINTF_FORMAT(4, 5);

/// Reports a broken assertion, then ends the process with `abort`. Prints
/// \verbatim
/// Assertion --
///   Condition: condition
///   File(Line): file (line)
/// Message: message
/// \endverbatim
/// and leaves the last line out where \p format is null. The process ends in any case: where there
/// is no memory for the message, its first 255 characters are printed.
[[noreturn]] VELLIS_EXPORT void assertion_fail(const char* condition, const char* file, int line,
                                               const char* format, ...) VELLIS_PRINTF_FORMAT(4, 5);

/// Prints what assertion_fail prints, with `Warning -- ` as its first line, and returns.
/// \throws std::bad_alloc where there is no memory for the message; the lines before it are
/// printed.
VELLIS_EXPORT void warning_fail(const char* condition, const char* file, int line,
                                const char* format, ...) VELLIS_PRINTF_FORMAT(4, 5);

/// Prints `Error: what is not implemented!` and, on a second line, `  File(Line): file (line)`.
VELLIS_EXPORT void not_implemented(const char* what, const char* file, int line);

/// Prints `ERROR: what [File(Line): file(line)] is not tested`.
/// \throws std::bad_alloc where there is no memory for the message.
VELLIS_EXPORT void not_tested(const char* what, const char* file, int line);

/// Takes one error from GL's queue with one `glGetError`; further queued errors stay.
/// \return null when there is none, the enumerator's name (`"GL_INVALID_ENUM"`), or
///         `"UNKNOWN ERROR"` for a code that GL 2.1 and framebuffer objects do not define. The text
///         is static.
VELLIS_EXPORT const char* check_glerror();

/// What this thread last used in a Context in which it does not exist,
/// since the call before: an object of another Context is not drawn, bound, read or written, as
/// Context describes, and GL knows of no error. Makes no GL call.
///
/// \return null when there was none, else one of `"program"`, `"shader"`, `"vertex array"` (of a
///         drawable), `"framebuffer"`, `"buffer"`, `"texture"` and `"renderbuffer"`. The text is
///         static.
VELLIS_EXPORT const char* check_context();

/// Asks with `glCheckFramebufferStatus` whether the framebuffer bound at \p target (a GL
/// framebuffer target) can be drawn to or read from. \return null when it is complete, else the
/// status' name (`"GL_FRAMEBUFFER_UNSUPPORTED"`), or
///         `"UNKNOWN ERROR"` for any other status, for the 0 that a failed query gives, and where
///         the context has no framebuffer objects. The text is static.
VELLIS_EXPORT const char* check_framebuffer_complete(unsigned int target);

/// The same for the target `GL_FRAMEBUFFER`.
VELLIS_EXPORT const char* check_framebuffer_complete();

} // namespace vellis::internal

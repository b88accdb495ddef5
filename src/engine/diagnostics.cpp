#include <vellis/engine/diagnostics.hpp>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "gl/enumerator_names.hpp"
#include "gl/log.hpp"
#include "gl/thread.hpp"

namespace vellis::internal {
namespace {

/// The formatted message, cut at 255 characters more than the format has.
std::unique_ptr<char[]> formatted(const char* format, va_list arguments) {
    const std::size_t size = std::strlen(format) + 256;
    auto message = std::make_unique<char[]>(size);
    std::vsnprintf(message.get(), size, format, arguments);
    return message;
}

/// The place of what is reported.
void reportPlace(const char* file, int line) {
    writeToStream({"  File(Line): ", printable(file), " (", Decimal(line), ")"});
}

/// The lines that assertions and warnings share, but for the last.
void report(std::string_view kind, const char* condition, const char* file, int line) {
    writeToStream({kind, " -- "});
    writeToStream({"  Condition: ", printable(condition)});
    reportPlace(file, line);
}

void reportMessage(std::string_view message) {
    writeToStream({"Message: ", message});
}

/// The last line of an assertion: a shorter one where there is no memory for the message.
void reportLastMessage(const char* format, va_list arguments) {
    try {
        reportMessage(formatted(format, arguments).get());
    } catch (const std::bad_alloc&) {
        char message[256] = {};
        std::vsnprintf(message, sizeof(message), format, arguments);
        reportMessage(message);
    }
}

const char* nameOrUnknown(const gl::EnumeratorNames& names, unsigned int value) {
    const char* const name = names.find(value);
    return name != nullptr ? name : "UNKNOWN ERROR";
}

} // namespace

void log(const char* title, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    printLine(title, formatted(printable(format), arguments).get());
    va_end(arguments);
}

void log(const char* file, int line, const char* title, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const auto message = formatted(printable(format), arguments);
    va_end(arguments);
    writeToFile(
        {printable(title), " [", printable(file), " Ln ", Decimal(line), "]: ", message.get()});
}

void assertion_fail(const char* condition, const char* file, int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    report("Assertion", condition, file, line);
    if (format != nullptr)
        reportLastMessage(format, arguments);
    va_end(arguments);
    std::abort();
}

void warning_fail(const char* condition, const char* file, int line, const char* format, ...) {
    report("Warning", condition, file, line);
    if (format == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    reportMessage(formatted(format, arguments).get());
    va_end(arguments);
}

void not_implemented(const char* what, const char* file, int line) {
    writeToStream({"Error: ", printable(what), " is not implemented!"});
    reportPlace(file, line);
}

void not_tested(const char* what, const char* file, int line) {
    log("ERROR", "%s [File(Line): %s(%d)] is not tested", printable(what), printable(file), line);
}

const char* check_context() {
    return std::exchange(gl::thread().refused, nullptr);
}

const char* check_glerror() {
    const unsigned int error = glGetError();
    if (error == GL_NO_ERROR)
        return nullptr;
    return nameOrUnknown(gl::errors, error);
}

const char* check_framebuffer_complete(unsigned int target) {
    const unsigned int status = callIfLoaded(glCheckFramebufferStatus, target);
    if (status == GL_FRAMEBUFFER_COMPLETE)
        return nullptr;
    return nameOrUnknown(gl::framebufferStatuses, status);
}

const char* check_framebuffer_complete() {
    return check_framebuffer_complete(GL_FRAMEBUFFER);
}

} // namespace vellis::internal

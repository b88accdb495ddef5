#include <vellis/internal/diagnostics.hpp>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>

#include <vellis/gl.hpp>

#include "engine/entry_point.hpp"
#include "engine/log.hpp"

namespace vellis::internal {
namespace {

/// The formatted message, cut at 255 characters more than the format has.
std::unique_ptr<char[]> formatted(const char* format, va_list arguments) {
    const std::size_t size = std::strlen(format) + 256;
    auto message = std::make_unique<char[]>(size);
    std::vsnprintf(message.get(), size, format, arguments);
    return message;
}

/// The lines that assertions and warnings share; the last one only where \p format is not null.
void report(const char* kind, const char* condition, const char* file, int line, const char* format,
            va_list arguments) {
    std::cerr << kind << " -- " << std::endl
              << "  Condition: " << printable(condition) << std::endl
              << "  File(Line): " << printable(file) << " (" << line << ")" << std::endl;
    if (format != nullptr)
        std::cerr << "Message: " << formatted(format, arguments).get() << std::endl;
}

} // namespace

void printLine(const char* title, const char* message) {
    if (title != nullptr)
        std::fprintf(stderr, "%s: ", title);
    std::fprintf(stderr, "%s\n", message);
}

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
    std::fprintf(stderr, "%s [%s Ln %i]: %s\n", printable(title), printable(file), line,
                 message.get());
}

void assertion_fail(const char* condition, const char* file, int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    report("Assertion", condition, file, line, format, arguments);
    va_end(arguments);
    std::abort();
}

void warning_fail(const char* condition, const char* file, int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    report("Warning", condition, file, line, format, arguments);
    va_end(arguments);
}

void not_implemented(const char* what, const char* file, int line) {
    std::cerr << "Error: " << printable(what) << " is not implemented!" << std::endl
              << "  File(Line): " << printable(file) << " (" << line << ")" << std::endl;
}

void not_tested(const char* what, const char* file, int line) {
    log("ERROR", "%s [File(Line): %s(%d)] is not tested", printable(what), printable(file), line);
}

/// A row of a switch that names an enumerator by itself.
#define VELLIS_NAME_OF(enumerator)                                                                 \
    case enumerator:                                                                               \
        return #enumerator

const char* check_glerror() {
    switch (glGetError()) {
    case GL_NO_ERROR:
        return nullptr;
        VELLIS_NAME_OF(GL_INVALID_ENUM);
        VELLIS_NAME_OF(GL_INVALID_VALUE);
        VELLIS_NAME_OF(GL_INVALID_OPERATION);
        VELLIS_NAME_OF(GL_STACK_OVERFLOW);
        VELLIS_NAME_OF(GL_STACK_UNDERFLOW);
        VELLIS_NAME_OF(GL_OUT_OF_MEMORY);
        VELLIS_NAME_OF(GL_INVALID_FRAMEBUFFER_OPERATION);
    default:
        return "UNKNOWN ERROR";
    }
}

const char* check_framebuffer_complete(unsigned int target) {
    switch (callIfLoaded(glCheckFramebufferStatus, target)) {
    case GL_FRAMEBUFFER_COMPLETE:
        return nullptr;
        VELLIS_NAME_OF(GL_FRAMEBUFFER_UNDEFINED);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_UNSUPPORTED);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE);
        VELLIS_NAME_OF(GL_FRAMEBUFFER_INCOMPLETE_LAYER_TARGETS);
    default:
        return "UNKNOWN ERROR";
    }
}

#undef VELLIS_NAME_OF

const char* check_framebuffer_complete() {
    return check_framebuffer_complete(GL_FRAMEBUFFER);
}

} // namespace vellis::internal

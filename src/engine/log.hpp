#pragma once

namespace vellis::internal {

/// The title of every dump.
inline constexpr const char* logTitle = "Corvane";

/// Prints `title: message` and a line end on standard error; with a null \p title the message
/// alone.
void printLine(const char* title, const char* message);

/// A text that can be printed.
inline const char* printable(const char* text) {
    return text != nullptr ? text : "(null)";
}

} // namespace vellis::internal

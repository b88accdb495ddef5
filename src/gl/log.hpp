#pragma once

#include <initializer_list>
#include <string_view>

namespace vellis::internal {

/// The title of every dump.
inline constexpr const char* logTitle = "Corvane";

/// A text that can be printed.
inline const char* printable(const char* text) {
    return text != nullptr ? text : "(null)";
}

/// A number in decimal digits, which no locale groups.
class Decimal {
public:
    explicit Decimal(int number);
    explicit Decimal(unsigned int number);
    operator std::string_view() const { return {digits_, size_}; }

private:
    char digits_[12];
    std::size_t size_;
};

/// A line in pieces, without its end.
using Line = std::initializer_list<std::string_view>;

// A line is written at once, so that those of several threads do not mix. Neither the state of a
// stream nor a locale changes its text. Nothing throws, nor is kept back where memory runs out.

/// Writes a line to C's `stderr`.
void writeToFile(Line line);

/// Writes a line to the buffer of `std::cerr`, which a program may have replaced, and flushes it.
void writeToStream(Line line);

/// Writes `title: message` to C's `stderr`; with a null \p title the message alone.
void printLine(const char* title, std::string_view message);

} // namespace vellis::internal

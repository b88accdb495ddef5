#include "gl/log.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>
#include <new>
#include <streambuf>

namespace vellis::internal {
namespace {

/// Calls \p write with the line and its end; with one piece after the other only where there is no
/// memory for the whole.
template <class Write>
void writeLine(Line line, Write write) {
    std::size_t size = 1;
    for (const std::string_view piece : line)
        size += piece.size();
    char small[512];
    std::unique_ptr<char[]> large;
    if (size > sizeof(small))
        large.reset(new (std::nothrow) char[size]);
    char* const text = size > sizeof(small) ? large.get() : small;
    if (text == nullptr) {
        std::for_each(line.begin(), line.end(), write);
        write("\n");
        return;
    }
    char* end = text;
    for (const std::string_view piece : line)
        end = std::copy(piece.begin(), piece.end(), end);
    *end = '\n';
    write(std::string_view(text, size));
}

/// Calls \p function, which may call functions of the application's that throw.
template <class Function>
void withoutExceptions(Function function) {
    try {
        function();
    } catch (...) {
    }
}

template <class Number>
std::size_t writeDigits(char* begin, char* end, Number number) {
    return static_cast<std::size_t>(std::to_chars(begin, end, number).ptr - begin);
}

} // namespace

Decimal::Decimal(int number) : size_(writeDigits(digits_, std::end(digits_), number)) {}

Decimal::Decimal(unsigned int number) : size_(writeDigits(digits_, std::end(digits_), number)) {}

void writeToFile(Line line) {
    writeLine(line,
              [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); });
}

void writeToStream(Line line) {
    // Past the stream, whose state may keep the text from being written or change it.
    if (std::ostream* const tied = std::cerr.tie())
        withoutExceptions([&] { tied->flush(); });
    std::streambuf* const buffer = std::cerr.rdbuf();
    if (buffer == nullptr)
        return;
    writeLine(line, [&](std::string_view text) {
        withoutExceptions(
            [&] { buffer->sputn(text.data(), static_cast<std::streamsize>(text.size())); });
    });
    withoutExceptions([&] { buffer->pubsync(); });
}

void printLine(const char* title, std::string_view message) {
    if (title != nullptr)
        writeToFile({title, ": ", message});
    else
        writeToFile({message});
}

} // namespace vellis::internal

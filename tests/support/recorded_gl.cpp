#include "support/recorded_gl.hpp"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include <gtest/gtest.h>

namespace vellis::test {
namespace {

using Lines = std::vector<std::string>;

/// Lines wider than this go above one another instead of side by side.
constexpr std::size_t maxColumnWidth = 76;

std::size_t columnWidth(const Lines& lines) {
    std::size_t width = std::string_view("expected").size();
    for (const std::string& line : lines)
        width = std::max(width, line.size());
    return std::min(width, maxColumnWidth);
}

std::string lineOrDash(const Lines& lines, std::size_t i) {
    return i < lines.size() ? lines[i] : "-";
}

void writeRow(std::ostream& out, const std::string& mark, const std::string& left,
              const std::string& right, std::size_t width) {
    const auto columns = static_cast<int>(width);
    out << mark << std::left << std::setw(columns) << left;
    if (left.size() > width)
        out << '\n' << std::string(mark.size() + width, ' ');
    out << "  " << right << '\n';
}

std::string rowMark(std::size_t i, bool isFirstDifference) {
    std::ostringstream mark;
    mark << (isFirstDifference ? ">" : " ") << std::setw(4) << i + 1 << "  ";
    return mark.str();
}

/// Both lists side by side, with a mark at \p firstDifference.
std::string sideBySide(const Lines& expected, const Lines& made, std::size_t firstDifference) {
    const std::size_t width = columnWidth(expected);
    std::ostringstream out;
    writeRow(out, std::string(rowMark(0, false).size(), ' '), "expected", "made", width);
    for (std::size_t i = 0; i < std::max(expected.size(), made.size()); ++i) {
        writeRow(out, rowMark(i, i == firstDifference), lineOrDash(expected, i),
                 lineOrDash(made, i), width);
    }
    return out.str();
}

} // namespace

Lines RecordedGl::takeCalls() {
    return std::exchange(calls_, {});
}

void RecordedGl::ignoreTheRest() {
    forget();
    setRecording(false);
}

std::size_t RecordedGl::countOf(std::string_view entryPoint) const {
    if (!isEntryPoint(entryPoint))
        ADD_FAILURE() << "GL has no entry point " << entryPoint;
    const std::string start = std::string(entryPoint) + '(';
    return static_cast<std::size_t>(
        std::count_if(calls_.begin(), calls_.end(), [&start](const std::string& call) {
            return call.compare(0, start.size(), start) == 0;
        }));
}

void RecordedGl::called(EntryPoint entryPoint, const Argument* arguments) {
    calls_.push_back(line(entryPoint, arguments));
}

std::string RecordedGl::line(EntryPoint entryPoint, const Argument* arguments) const {
    const auto isBound = [this](GLenum target) {
        return bindings().bound(ObjectKind::Buffer, target) != 0;
    };
    return formatCall(entryPoint, arguments,
                      {isBound(GL_PIXEL_UNPACK_BUFFER), isBound(GL_PIXEL_PACK_BUFFER)});
}

void CallExpectation::compare(const Lines& made) const {
    if (made == expected_)
        return;
    const auto difference =
        std::mismatch(expected_.begin(), expected_.end(), made.begin(), made.end()).first;
    ADD_FAILURE_AT(file_, line_) << "The GL calls differ (" << expected_.size() << " expected, "
                                 << made.size() << " made):\n"
                                 << sideBySide(
                                        expected_, made,
                                        static_cast<std::size_t>(difference - expected_.begin()));
}

} // namespace vellis::test

#include "docs/page.hpp"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

namespace vellis::test {
namespace {

const std::filesystem::path root = VELLIS_SOURCE_DIR;

/// The lines of \p text that \p other does not have.
std::string linesOnlyIn(const std::string& text, const std::string& other, const char* title) {
    std::istringstream otherLines(other);
    std::set<std::string> known;
    for (std::string line; std::getline(otherLines, line);)
        known.insert(line);
    std::istringstream lines(text);
    std::string found;
    for (std::string line; std::getline(lines, line);)
        found += known.count(line) == 0 ? title + line + "\n" : "";
    return found;
}

} // namespace

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Page::Page(const std::string& path) : path_(root / path), text_(readFile(path_)) {}

void Page::expectPart(const std::string& name, const std::string& text) {
    const std::string opening = "<!-- generated: " + name + " -->\n";
    const std::string closing = "<!-- end of " + name + " -->\n";
    std::size_t begin = text_.find(opening);
    const std::size_t end = text_.find(closing);
    ASSERT_TRUE(begin != std::string::npos && end != std::string::npos && begin < end)
        << path_ << " has no part " << name;
    begin += opening.size();
    const std::string expected = "\n" + text + "\n";
    if (std::getenv("VELLIS_WRITE_PAGES") != nullptr) {
        text_.replace(begin, end - begin, expected);
        std::ofstream(path_, std::ios::binary) << text_;
        return;
    }
    const std::string found = text_.substr(begin, end - begin);
    EXPECT_TRUE(found == expected)
        << path_ << ", part " << name << ", is not what the library does; scripts/updates/pages.sh "
        << "writes it anew.\n"
        << linesOnlyIn(found, expected, "  only in the page: ")
        << linesOnlyIn(expected, found, "  missing there:    ");
}

} // namespace vellis::test

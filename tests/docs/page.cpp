#include "docs/page.hpp"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace vellis::test {
namespace {

const std::filesystem::path root = VELLIS_SOURCE_DIR;

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
    EXPECT_EQ(text_.substr(begin, end - begin), expected)
        << path_ << " is not what the library does; scripts/pages.sh writes the part anew";
}

} // namespace vellis::test

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <vellis/text/font.hpp>

namespace vellis::test {

/// The font of most tests.
inline constexpr const char* dejaVuSans = "DejaVuSans.ttf";

/// The path of a font file of that name among the fonts of the system; empty where it is missing.
std::string findFont(const std::string& name);

/// All bytes of a file.
std::vector<std::uint8_t> bytesOf(const std::string& path);

/// A font as FreeType opens it, without the library.
class PlainFace {
public:
    PlainFace(const std::string& path, float pixels);
    ~PlainFace();
    PlainFace(const PlainFace&) = delete;
    PlainFace& operator=(const PlainFace&) = delete;

    FT_Face face() const { return face_; }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

/// What HarfBuzz makes of a text of one direction and one script, called directly.
text::ShapedText shapePlainly(const PlainFace& face, std::string_view text);

/// The indices of a line's glyphs, from left to right.
std::vector<std::uint32_t> indicesOf(const text::ShapedText& shape, std::size_t line = 0);

/// Where in the text a line's glyphs begin, from left to right.
std::vector<std::uint32_t> bytesOf(const text::ShapedText& shape, std::size_t line = 0);

} // namespace vellis::test

/// Loads a font of the system into \p variable, and skips the test where there is none.
#define LOAD_TEST_FONT(variable, name, pixels)                                                     \
    if (vellis::test::findFont(name).empty())                                                      \
        GTEST_SKIP() << "there is no " << (name);                                                  \
    const auto variable = vellis::text::Font::load(vellis::test::findFont(name), pixels);          \
    ASSERT_NE(variable, nullptr)

#include "text/utf8.hpp"

#include <string>

#include <gmock/gmock.h>

namespace {

using namespace std::string_literals;
using testing::Each;
using testing::ElementsAre;
using vellis::text::decode;

TEST(Utf8, ReadsCharactersOfOneToFourBytes) {
    const auto characters = decode("a\u00E9\u20AC\U0001F600");
    EXPECT_THAT(characters.values, ElementsAre(0x61, 0xE9, 0x20AC, 0x1F600));
    EXPECT_THAT(characters.bytes, ElementsAre(0, 1, 3, 6));
}

TEST(Utf8, ReadsTheFirstAndTheLastCharacterOfEachForm) {
    const auto characters = decode("\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
                                   "\xF4\x8F\xBF\xBF"s);
    EXPECT_THAT(characters.values,
                ElementsAre(0, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF));
}

TEST(Utf8, AnEmptyTextHasNoCharacters) {
    EXPECT_TRUE(decode("").values.empty());
}

TEST(Utf8, KeepsTheReplacementCharacterItself) {
    const auto characters = decode("\uFFFDa");
    EXPECT_THAT(characters.values, ElementsAre(0xFFFD, 0x61));
    EXPECT_THAT(characters.bytes, ElementsAre(0, 3));
}

/// What is not a character, and gives as many replacements as it has bytes.
class BadUtf8 : public testing::TestWithParam<std::string> {};

TEST_P(BadUtf8, GivesOneReplacementForEachByte) {
    const std::string& bad = GetParam();
    EXPECT_EQ(decode(bad).values.size(), bad.size());
    EXPECT_THAT(decode(bad).values, Each(0xFFFD));

    const auto between = decode("a" + bad + "b");
    ASSERT_EQ(between.values.size(), bad.size() + 2);
    EXPECT_EQ(between.values.front(), std::uint32_t{'a'});
    EXPECT_EQ(between.values.back(), std::uint32_t{'b'});
    EXPECT_EQ(between.bytes.back(), bad.size() + 1);
}

INSTANTIATE_TEST_SUITE_P(Utf8, BadUtf8,
                         testing::Values("\x80",             // goes on without a beginning
                                         "\xBF\xBF",         // twice
                                         "\xC3",             // cut off
                                         "\xE2\x82",         // likewise
                                         "\xF0\x9F\x98",     // likewise
                                         "\xC0\x80",         // too long for U+0000
                                         "\xC1\xBF",         // for U+007F
                                         "\xE0\x9F\xBF",     // for U+07FF
                                         "\xF0\x8F\xBF\xBF", // for U+FFFF
                                         "\xED\xA0\x80",     // a surrogate
                                         "\xED\xBF\xBF",     // likewise
                                         "\xF4\x90\x80\x80", // beyond U+10FFFF
                                         "\xF8\x88\x80\x80\x80", "\xFE", "\xFF"));

TEST(Utf8, ABadByteEndsNothingBehindIt) {
    EXPECT_THAT(decode("\xE2\x82\xE2\x82\xAC").values, ElementsAre(0xFFFD, 0xFFFD, 0x20AC));
    EXPECT_THAT(decode("\xC3(").values, ElementsAre(0xFFFD, 0x28));
}

} // namespace

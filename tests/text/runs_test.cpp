#include "text/runs.hpp"

#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <fribidi.h>
#include <gmock/gmock.h>

#include "text/random_number.hpp"

namespace {

using testing::ElementsAre;
using vellis::test::randomBelow;
using vellis::text::findRuns;
using vellis::text::LineRuns;
using vellis::text::Run;

LineRuns runsOf(const std::u32string& text) {
    const std::vector<std::uint32_t> characters(text.begin(), text.end());
    return findRuns(characters.data(), characters.size());
}

/// The indices of the characters from left to right.
std::vector<int> orderOf(const std::u32string& text) {
    std::vector<int> order;
    for (const Run& run : runsOf(text).runs) {
        for (std::size_t i = run.begin; i < run.end; ++i) {
            const std::size_t index = run.isRightToLeft() ? run.end - 1 - (i - run.begin) : i;
            order.push_back(static_cast<int>(index));
        }
    }
    return order;
}

/// The same as FriBidi orders a line.
std::vector<int> plainOrderOf(const std::u32string& text) {
    const std::vector<FriBidiChar> characters(text.begin(), text.end());
    const auto count = static_cast<FriBidiStrIndex>(characters.size());
    std::vector<FriBidiCharType> types(text.size());
    std::vector<FriBidiBracketType> brackets(text.size());
    std::vector<FriBidiLevel> levels(text.size());
    std::vector<FriBidiStrIndex> order(text.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = static_cast<int>(i);
    fribidi_get_bidi_types(characters.data(), count, types.data());
    fribidi_get_bracket_types(characters.data(), count, types.data(), brackets.data());
    FriBidiParType base = FRIBIDI_PAR_ON;
    EXPECT_NE(fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &base,
                                                  levels.data()),
              0);
    EXPECT_NE(
        fribidi_reorder_line(0, types.data(), count, 0, base, levels.data(), nullptr, order.data()),
        0);
    return order;
}

TEST(TextRuns, AnEmptyLineHasNone) {
    const LineRuns runs = findRuns(nullptr, 0);
    EXPECT_TRUE(runs.runs.empty());
    EXPECT_FALSE(runs.isRightToLeft);
}

TEST(TextRuns, ALineOfOneScriptIsOneRun) {
    const LineRuns runs = runsOf(U"Hello, world 12");
    ASSERT_EQ(runs.runs.size(), 1u);
    EXPECT_EQ(runs.runs[0].begin, 0u);
    EXPECT_EQ(runs.runs[0].end, 15u);
    EXPECT_EQ(runs.runs[0].script, HB_SCRIPT_LATIN);
    EXPECT_EQ(runs.runs[0].level, 0);
    EXPECT_FALSE(runs.isRightToLeft);
}

TEST(TextRuns, ScriptsOfOneDirectionFollowEachOther) {
    const LineRuns runs = runsOf(U"(ab \u03B1\u0301 \u0905)");
    ASSERT_EQ(runs.runs.size(), 3u);
    EXPECT_EQ(runs.runs[0].script, HB_SCRIPT_LATIN); // with the bracket at the beginning
    EXPECT_EQ(runs.runs[1].script, HB_SCRIPT_GREEK);
    EXPECT_EQ(runs.runs[1].begin, 4u);
    EXPECT_EQ(runs.runs[1].end, 7u); // with the accent and the space
    EXPECT_EQ(runs.runs[2].script, HB_SCRIPT_DEVANAGARI);
}

TEST(TextRuns, WhatHasNoScriptAtAllIsCommon) {
    const LineRuns runs = runsOf(U"12 + 3");
    ASSERT_EQ(runs.runs.size(), 1u);
    EXPECT_EQ(runs.runs[0].script, HB_SCRIPT_COMMON);
}

TEST(TextRuns, NumbersGoFromLeftToRightWithinArabic) {
    // alef, beh, space, 1, 2, space, teh
    const LineRuns runs = runsOf(U"\u0627\u0628 12 \u062A");
    EXPECT_TRUE(runs.isRightToLeft);
    ASSERT_EQ(runs.runs.size(), 3u);
    EXPECT_EQ(runs.runs[0].begin, 5u);
    EXPECT_TRUE(runs.runs[0].isRightToLeft());
    EXPECT_EQ(runs.runs[1].begin, 3u);
    EXPECT_FALSE(runs.runs[1].isRightToLeft());
    EXPECT_EQ(runs.runs[2].begin, 0u);
    EXPECT_THAT(orderOf(U"\u0627\u0628 12 \u062A"), ElementsAre(6, 5, 3, 4, 2, 1, 0));
}

TEST(TextRuns, TheFirstLetterGivesTheDirection) {
    EXPECT_THAT(orderOf(U"a \u05D0\u05D1"), ElementsAre(0, 1, 3, 2));
    EXPECT_THAT(orderOf(U"\u05D0\u05D1 a"), ElementsAre(3, 2, 1, 0));
    EXPECT_FALSE(runsOf(U"1 a \u05D0").isRightToLeft);
    EXPECT_TRUE(runsOf(U"1 \u05D0 a").isRightToLeft);
}

TEST(TextRuns, SpacesAtTheEndHaveTheDirectionOfTheLine) {
    EXPECT_THAT(orderOf(U"a \u05D0\u05D1  "), ElementsAre(0, 1, 3, 2, 4, 5));
    EXPECT_THAT(orderOf(U"\u05D0 ab  "), ElementsAre(5, 4, 2, 3, 1, 0));
}

TEST(TextRuns, RandomLinesAreInFriBidisOrder) {
    // Letters of both directions, digits of both kinds, brackets, spaces, marks, explicit
    // directions.
    const std::u32string alphabet = U"abc\u05D0\u05D1\u0627\u062812\u0661\u0662()[] .,+-\u0301"
                                    U"\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2069";
    std::mt19937 random(7);
    int numRightToLeft = 0;
    for (int round = 0; round < 3000; ++round) {
        std::u32string text;
        const std::size_t size = 1 + randomBelow(random, 24);
        while (text.size() < size)
            text += alphabet[randomBelow(random, static_cast<unsigned int>(alphabet.size()))];
        ASSERT_EQ(orderOf(text), plainOrderOf(text)) << "round " << round;
        numRightToLeft += runsOf(text).isRightToLeft ? 1 : 0;
    }
    EXPECT_GT(numRightToLeft, 300);
}

TEST(TextRuns, CharactersBeforeTheHebrewOnesTurnNothingAround) {
    // FriBidi gives them all level 0, so nobody needs to ask for it.
    constexpr std::uint32_t firstHebrew = 0x590;
    std::mt19937 random(11);
    for (std::uint32_t character = 1; character < firstHebrew; ++character) {
        std::u32string text(1, static_cast<char32_t>(character));
        for (int i = 0; i < 8; ++i)
            text += static_cast<char32_t>(1 + randomBelow(random, firstHebrew - 1));
        std::vector<int> expected(text.size());
        std::iota(expected.begin(), expected.end(), 0);
        ASSERT_EQ(plainOrderOf(text), expected) << character;
        ASSERT_EQ(orderOf(text), expected) << character;
        ASSERT_FALSE(runsOf(text).isRightToLeft) << character;
    }
    EXPECT_TRUE(runsOf(U"\u05BE").isRightToLeft);
}

TEST(TextRuns, EachCharacterIsInOneRun) {
    const std::u32string text = U"ab \u05D0\u05D1 (cd) \u0627\u0628 34 \u0905";
    std::vector<int> counts(text.size(), 0);
    for (const auto& run : runsOf(text).runs) {
        EXPECT_LT(run.begin, run.end);
        for (std::size_t i = run.begin; i < run.end; ++i)
            ++counts.at(i);
    }
    EXPECT_THAT(counts, testing::Each(1));
}

} // namespace

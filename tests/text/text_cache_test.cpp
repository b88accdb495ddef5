#include "text/text_cache.hpp"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "support/allocation_count.hpp"

namespace {

using vellis::text::ShapedText;
using vellis::text::TextCache;

std::shared_ptr<const ShapedText> shapeOf(std::size_t numGlyphs) {
    auto shape = std::make_shared<ShapedText>();
    shape->glyphs.resize(numGlyphs);
    shape->lines.resize(1);
    return shape;
}

TEST(TextCache, FindsWhatItKeeps) {
    TextCache cache(4, 100000);
    EXPECT_EQ(cache.find("a"), nullptr);
    const auto shape = shapeOf(1);
    cache.keep("a", shape);
    EXPECT_EQ(cache.find("a"), shape);
    EXPECT_EQ(cache.find("b"), nullptr);
}

TEST(TextCache, ForgetsWhatWasUsedLongestAgo) {
    TextCache cache(2, 100000);
    cache.keep("a", shapeOf(1));
    cache.keep("b", shapeOf(1));
    EXPECT_NE(cache.find("a"), nullptr);
    cache.keep("c", shapeOf(1));
    EXPECT_NE(cache.find("a"), nullptr);
    EXPECT_EQ(cache.find("b"), nullptr);
    EXPECT_NE(cache.find("c"), nullptr);
    EXPECT_EQ(cache.numTexts(), 2u);
}

TEST(TextCache, KeepsNoMoreThanItsBytes) {
    TextCache cache(1000, 20000);
    for (int i = 0; i < 200; ++i) {
        cache.keep(std::to_string(i), shapeOf(50));
        ASSERT_LE(cache.numBytes(), 20000u);
    }
    EXPECT_GT(cache.numTexts(), 5u);
    EXPECT_NE(cache.find("199"), nullptr);
    EXPECT_EQ(cache.find("0"), nullptr);
}

TEST(TextCache, LeavesOutWhatIsLargerThanAllOfIt) {
    TextCache cache(1000, 20000);
    cache.keep("a", shapeOf(1));
    cache.keep("b", shapeOf(5000));
    EXPECT_NE(cache.find("a"), nullptr);
    EXPECT_EQ(cache.find("b"), nullptr);
}

TEST(TextCache, AHitMakesNoAllocation) {
    TextCache cache(4, 100000);
    const std::string text(100, 'x');
    cache.keep(text, shapeOf(1));
    cache.keep("y", shapeOf(1));
    const std::size_t before = vellis::test::allocationCount();
    const bool isFound = cache.find(text) != nullptr && cache.find("y") != nullptr;
    EXPECT_EQ(vellis::test::allocationCount(), before);
    EXPECT_TRUE(isFound);
}

} // namespace

#include "text/text_cache.hpp"

#include <algorithm>
#include <list>
#include <map>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/allocation_count.hpp"
#include "text/random_number.hpp"

namespace {

using vellis::test::randomBelow;
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

TEST(TextCache, IsWellAfterOneThatTakesTheRoomOfAll) {
    TextCache cache(3, 20000);
    const std::size_t large = 19500 / sizeof(vellis::text::ShapedGlyph);
    cache.keep("a", shapeOf(1));
    cache.keep("b", shapeOf(1));
    EXPECT_NE(cache.find("a"), nullptr); // it is newer than b now, and will be forgotten last
    cache.keep("large", shapeOf(large));
    EXPECT_EQ(cache.numTexts(), 1u);
    for (const char* text : {"c", "d", "e"})
        cache.keep(text, shapeOf(1));
    EXPECT_EQ(cache.find("large"), nullptr);
    for (const char* text : {"c", "d", "e"})
        EXPECT_NE(cache.find(text), nullptr) << text;
    EXPECT_EQ(cache.numTexts(), 3u);
}

TEST(TextCache, LeavesOutWhatIsLargerThanAllOfIt) {
    TextCache cache(1000, 20000);
    cache.keep("a", shapeOf(1));
    cache.keep("b", shapeOf(5000));
    EXPECT_NE(cache.find("a"), nullptr);
    EXPECT_EQ(cache.find("b"), nullptr);
}

/// A list of what should be kept, the one that was used last first.
class Model {
public:
    Model(std::size_t mostTexts, std::size_t mostBytes)
        : mostTexts_(mostTexts),
          mostBytes_(mostBytes) {}

    bool find(const std::string& text) {
        const auto known = std::find(texts_.begin(), texts_.end(), text);
        if (known != texts_.end())
            texts_.splice(texts_.begin(), texts_, known);
        return known != texts_.end();
    }
    void keep(const std::string& text, std::size_t numBytes) {
        texts_.push_front(text);
        sizes_[text] = numBytes;
        while (texts_.size() > mostTexts_ || this->numBytes() > mostBytes_)
            texts_.pop_back();
    }
    std::size_t numTexts() const { return texts_.size(); }
    std::size_t numBytes() const {
        std::size_t sum = 0;
        for (const std::string& text : texts_)
            sum += sizes_.at(text);
        return sum;
    }

private:
    std::size_t mostTexts_;
    std::size_t mostBytes_;
    std::list<std::string> texts_;
    std::map<std::string, std::size_t> sizes_;
};

TEST(TextCache, RandomTextsAreKeptAndForgottenInTurn) {
    constexpr std::size_t mostTexts = 150;
    constexpr std::size_t mostBytes = 80000;
    std::mt19937 random(7);
    TextCache cache(mostTexts, mostBytes);
    Model model(mostTexts, mostBytes);
    std::map<std::string, std::shared_ptr<const ShapedText>> shapes;
    std::size_t numHits = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = "text " + std::to_string(randomBelow(random, 250));
        const bool isKept = model.find(text);
        numHits += isKept ? 1u : 0u;
        ASSERT_EQ(cache.find(text), isKept ? shapes[text] : nullptr) << i;
        if (!isKept) {
            shapes[text] = shapeOf(1 + randomBelow(random, 30));
            TextCache alone(1, mostBytes);
            alone.keep(text, shapes[text]);
            cache.keep(text, shapes[text]);
            model.keep(text, alone.numBytes());
        }
        ASSERT_EQ(cache.numTexts(), model.numTexts()) << i;
        ASSERT_EQ(cache.numBytes(), model.numBytes()) << i;
    }
    EXPECT_GT(numHits, 5000u);
    EXPECT_LT(numHits, 19000u);
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

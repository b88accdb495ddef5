#include "text/skyline.hpp"

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "text/random_number.hpp"

namespace {

using vellis::test::randomBelow;
using vellis::text::Skyline;

TEST(Skyline, FillsASquareWithoutGaps) {
    Skyline skyline(8);
    for (int i = 0; i < 16; ++i)
        EXPECT_TRUE(skyline.add(2, 2)) << i;
    EXPECT_FALSE(skyline.add(1, 1));
}

TEST(Skyline, TakesWhatIsAsLargeAsItself) {
    Skyline skyline(8);
    const auto place = skyline.add(8, 8);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->x, 0u);
    EXPECT_EQ(place->y, 0u);
    EXPECT_FALSE(skyline.add(1, 1));
}

TEST(Skyline, RefusesWhatIsTooLargeOrEmpty) {
    Skyline skyline(8);
    EXPECT_FALSE(skyline.add(9, 1));
    EXPECT_FALSE(skyline.add(1, 9));
    EXPECT_FALSE(skyline.add(0xFFFFFFFFu, 0xFFFFFFFFu));
    EXPECT_FALSE(skyline.add(0, 1));
    EXPECT_FALSE(skyline.add(1, 0));
    EXPECT_TRUE(skyline.add(8, 8));
}

TEST(Skyline, PutsEachAsLowAsItGoes) {
    Skyline skyline(8);
    ASSERT_TRUE(skyline.add(4, 6));
    const auto second = skyline.add(4, 2);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->x, 4u);
    EXPECT_EQ(second->y, 0u);
    const auto third = skyline.add(2, 2);
    ASSERT_TRUE(third);
    EXPECT_EQ(third->x, 4u);
    EXPECT_EQ(third->y, 2u);
}

TEST(Skyline, RandomRectanglesLieInsideAndDoNotOverlap) {
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        const unsigned int size = 16 + randomBelow(random, 80);
        Skyline skyline(size);
        std::vector<int> owners(std::size_t{size} * size, 0);
        unsigned int area = 0;
        for (int i = 1, numRefused = 0; numRefused < 8; ++i) {
            const unsigned int width = 1 + randomBelow(random, 20);
            const unsigned int height = 1 + randomBelow(random, 20);
            const auto place = skyline.add(width, height);
            if (!place) {
                ++numRefused;
                continue;
            }
            ASSERT_LE(place->x + width, size);
            ASSERT_LE(place->y + height, size);
            for (unsigned int y = place->y; y < place->y + height; ++y) {
                for (unsigned int x = place->x; x < place->x + width; ++x) {
                    int& owner = owners[std::size_t{y} * size + x];
                    ASSERT_EQ(owner, 0) << "round " << round << ": " << i << " lies on " << owner;
                    owner = i;
                }
            }
            area += width * height;
        }
        EXPECT_GT(area, size * size / 3) << "round " << round;
    }
}

} // namespace

/// The numbers and words at the plot, and what they say.

#include <plot/words.hpp>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <offscreen/image.hpp>
#include <plot/axes.hpp>
#include <plot/plot.hpp>

#include "examples/drawn_area.hpp"
#include "support/render_test.hpp"
#include "support/stderr_capture.hpp"

namespace {

using plot::Range;
using plot::Tick;
using ::testing::ElementsAre;

/// Columns and rows of a picture.
struct Part {
    unsigned int left;
    unsigned int right;
    unsigned int top;
    unsigned int bottom;
};

/// A signal of three samples, whose plot has little to draw but its words.
class PlotWords : public RenderTest {
protected:
    static constexpr unsigned int width = 640;

    PlotWords() : RenderTest(width) {}

    void SetUp() override {
        RenderTest::SetUp();
        if (!goesOn())
            return;
        std::shared_ptr<const plot::Fonts> fonts;
        vellis::test::stderrOf([&] { fonts = plot::loadFonts(""); });
        if (fonts == nullptr)
            GTEST_SKIP() << "there is no vellis::text, or no font";
        words = std::make_unique<plot::Plot>(signal, fonts);
    }

    void draw(const glm::uvec2& imageSize, const Range& range) {
        shown = range;
        area = plot::detailArea(imageSize);
        words->draw(imageSize, range);
        image = offscreen::readPixels(imageSize.x, imageSize.y);
    }

    /// What is drawn in a part.
    Area drawnIn(const Part& part) const {
        Area drawn;
        for (unsigned int y = part.top; y <= part.bottom; ++y) {
            for (unsigned int x = part.left; x <= part.right; ++x) {
                if (!isPaper(image.at(x, y)))
                    drawn.add(x, y);
            }
        }
        return drawn;
    }

    /// A row of the picture, counted from the top.
    unsigned int rowOf(float y) const { return image.height - 1 - static_cast<unsigned int>(y); }

    /// The number to the left of a tick of the upright axis.
    Area numberAt(const Tick& tick) const {
        const unsigned int middle = rowOf(tick.place);
        return drawnIn({22, 57, middle - 8, middle + 8});
    }

    /// The number below a tick of the level axis.
    Area numberBelow(const Tick& tick) const {
        const unsigned int axis = rowOf(area.low.y);
        const auto middle = static_cast<unsigned int>(tick.place);
        return drawnIn({middle - 48, std::min(middle + 48, image.width - 1), axis + 8, axis + 25});
    }

    plot::Signal signal{
        {{1'750'000'000'000.0, -1.0}, {1'750'000'500'000.0, 2.0}, {1'750'001'000'000.0, 0.0}}, 1};
    std::unique_ptr<plot::Plot> words;
    Range shown{};
    plot::Area area{};
    offscreen::Image image;
};

const Range usual{{1'750'000'001'000.0, -2.7}, {1'750'000'005'000.0, 2.4}};

TEST_F(PlotWords, NumbersOfValuesEndBesideTheirTicks) {
    draw({640, 440}, usual);
    const std::vector<Tick> ticks = plot::valueTicks(area, shown);
    ASSERT_GE(ticks.size(), 4u);
    for (const Tick& tick : ticks) {
        const Area number = numberAt(tick);
        ASSERT_GT(number.count, 5u) << tick.number;
        EXPECT_NEAR(number.right, 53, 1.5) << tick.number;
        EXPECT_NEAR((number.top + number.bottom) / 2.0, rowOf(tick.place), 1.0) << tick.number;
    }
    EXPECT_LT(numberAt(ticks.front()).left, numberAt(ticks.back()).left) << "a minus sign";
}

TEST_F(PlotWords, NumbersOfTimesStandBelowTheirTicks) {
    draw({640, 440}, usual);
    const std::vector<Tick> ticks = plot::timeTicks(area, shown);
    ASSERT_GE(ticks.size(), 4u);
    for (const Tick& tick : ticks) {
        const Area number = numberBelow(tick);
        if (tick.place + 32.0f > 640.0f) {
            EXPECT_EQ(number.count, 0u) << tick.number << " would be cut off";
            continue;
        }
        ASSERT_GT(number.count, 50u) << tick.number;
        EXPECT_NEAR((number.left + number.right) / 2.0, tick.place, 1.5) << tick.number;
    }
}

TEST_F(PlotWords, WritesATitleALegendAndWhatIsMeasured) {
    draw({640, 440}, usual);
    EXPECT_GT(drawnIn({64, 260, 10, 36}).count, 300u) << "the title";
    EXPECT_NEAR(drawnIn({64, 260, 5, 40}).left, 66, 2);
    EXPECT_GT(drawnIn({300, 639, 14, 32}).count, 500u) << "the legend";
    EXPECT_NEAR(drawnIn({300, 639, 14, 32}).right, 623, 2);
    EXPECT_GT(drawnIn({64, 200, 104, 122}).count, 50u) << "where the signal begins";
    EXPECT_GT(drawnIn({500, 639, 104, 122}).count, 50u) << "and ends";
    const Area upright = drawnIn({0, 22, 150, 380});
    EXPECT_GT(upright.bottom - upright.top, 3 * (upright.right - upright.left)) << "turned";
    EXPECT_GT(drawnIn({200, 500, 412, 428}).count, 200u) << "the day";
}

TEST_F(PlotWords, NothingIsCutOffAtAnEdge) {
    const Range all = signal.range();
    const Range little{{usual.low.x, -2.7}, {usual.low.x + 20.0, 2.4}};
    const Range moved{{usual.low.x - 321.0, 3.0}, {usual.low.x + 3679.0, 8.1}};
    for (const glm::uvec2 extent :
         {glm::uvec2(640, 440), glm::uvec2(333, 301), glm::uvec2(637, 600), glm::uvec2(180, 260)}) {
        for (const Range& range : {usual, all, little, moved}) {
            draw(extent, range);
            EXPECT_EQ(drawnIn({0, extent.x - 1, 0, 1}).count, 0u) << extent.x;
            EXPECT_EQ(drawnIn({0, extent.x - 1, extent.y - 2, extent.y - 1}).count, 0u) << extent.x;
            EXPECT_EQ(drawnIn({0, 1, 0, extent.y - 1}).count, 0u) << extent.x;
            EXPECT_EQ(drawnIn({extent.x - 2, extent.x - 1, 0, extent.y - 1}).count, 0u) << extent.x;
        }
    }
}

TEST_F(PlotWords, TheSmallestWindowIsNoFault) {
    draw({1, 1}, usual);
    draw({60, 60}, usual);
}

/// What stands at the ticks of an area.
std::vector<std::string> numbersOf(const std::vector<Tick>& ticks) {
    std::vector<std::string> numbers;
    for (const Tick& tick : ticks)
        numbers.push_back(tick.number);
    return numbers;
}

/// An area of such a size.
plot::Area areaOfSize(float width, float height) {
    return {glm::vec2(0.5f), glm::vec2(width + 0.5f, height + 0.5f)};
}

TEST(PlotAxes, TimesAreThoseOfAClock) {
    const plot::Area area = areaOfSize(560.0f, 200.0f);
    const auto numbers = [&](double from, double length) {
        const double day = 1'749'945'600'000.0;
        return numbersOf(plot::timeTicks(area, {{day + from, 0.0}, {day + from + length, 1.0}}));
    };
    EXPECT_THAT(numbers(54'400'000.0, 1'000'000.0), ElementsAre("15:10", "15:15", "15:20"));
    EXPECT_THAT(numbers(86'395'000.0, 8'000.0),
                ElementsAre("23:59:56", "23:59:58", "00:00:00", "00:00:02"));
    EXPECT_THAT(numbers(0.0, 1000.0), ElementsAre("00:00:00.0", "00:00:00.2", "00:00:00.4",
                                                  "00:00:00.6", "00:00:00.8", "00:00:01.0"));
    EXPECT_THAT(numbers(7.5, 20.0),
                ElementsAre("00:00:00.010", "00:00:00.015", "00:00:00.020", "00:00:00.025"));
}

TEST(PlotAxes, ValuesHaveAsManyDecimalsAsTheirStepNeeds) {
    const auto numbers = [](double low, double high) {
        return numbersOf(plot::valueTicks(areaOfSize(100.0f, 200.0f), {{0.0, low}, {1.0, high}}));
    };
    EXPECT_THAT(numbers(-2.7, 2.4), ElementsAre("\u22122", "0", "2"));
    EXPECT_THAT(numbers(-0.1, 0.12),
                ElementsAre("\u22120.10", "\u22120.05", "0.00", "0.05", "0.10"));
    EXPECT_THAT(numbers(900.0, 1100.0), ElementsAre("900", "950", "1000", "1050", "1100"));
}

TEST(PlotAxes, NumbersHaveRoom) {
    const Range range{{1'750'000'001'000.0, -2.7}, {1'750'000'005'000.0, 2.4}};
    for (float width = 1.0f; width < 2000.0f; width += 7.0f) {
        const plot::Area area = areaOfSize(width, width);
        for (const auto& [ticks, distance] : {std::pair(plot::timeTicks(area, range), 103.0f),
                                              std::pair(plot::valueTicks(area, range), 39.0f)}) {
            for (std::size_t i = 1; i < ticks.size(); ++i)
                EXPECT_GE(ticks[i].place - ticks[i - 1].place, distance) << width;
        }
    }
}

} // namespace

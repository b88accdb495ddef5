/// The plot as a user runs it, and its parts.

#include <algorithm>
#include <vector>

#include <glm/common.hpp>
#include <gmock/gmock.h>

#include <offscreen/image.hpp>
#include <plot/axes.hpp>
#include <plot/plot.hpp>
#include <plot/signal.hpp>
#include <plot/view.hpp>
#include <plot/words.hpp>

#include "examples/drawn_area.hpp"
#include "examples/program_picture.hpp"
#include "support/render_test.hpp"
#include "support/stderr_capture.hpp"

namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

bool isTeal(const unsigned char* pixel) {
    return isLike(pixel, 41, 158, 143);
}

/// Whether the program has nothing to say about a font.
bool findsWhatItNeeds() {
    return vellis::test::stderrOf([] { plot::loadFonts(""); }).empty();
}

class PlotProgram : public ProgramPicture {
protected:
    PlotProgram() : ProgramPicture(VELLIS_PLOT_PROGRAM, 640, 440, findsWhatItNeeds()) {}

    /// Runs the program once in a process: some drivers take long for a million samples.
    void SetUp() override {
        if (drawn.width == 0) {
            ProgramPicture::SetUp();
            drawn = picture;
        }
        picture = drawn;
    }

    static inline offscreen::Image drawn;

    /// How many pixels of a rectangle are not background.
    int drawnBetween(unsigned int x0, unsigned int y0, unsigned int x1, unsigned int y1) const {
        int count = 0;
        for (unsigned int y = y0; y <= y1; ++y) {
            for (unsigned int x = x0; x <= x1; ++x)
                count += hasColor(x, y, 250, 247, 242) ? 0 : 1;
        }
        return count;
    }
};

TEST_F(PlotProgram, DrawsAxesOfOnePixel) {
    EXPECT_TRUE(hasColor(64, 345, 43, 59, 71));
    EXPECT_TRUE(hasColor(500, 383, 43, 59, 71));
    EXPECT_TRUE(hasColor(207, 387, 43, 59, 71)) << "a tick";
    EXPECT_TRUE(hasColor(60, 246, 43, 59, 71)) << "a tick";
    EXPECT_EQ(drawnBetween(30, 225, 66, 225), 1);
    EXPECT_EQ(drawnBetween(440, 380, 440, 405), 1);
    EXPECT_EQ(drawnBetween(0, 430, 639, 439), 0);
}

TEST_F(PlotProgram, DrawsADashedGrid) {
    EXPECT_NEAR(drawnBetween(207, 290, 207, 379), 54, 4) << "of ten pixels six are dash";
    EXPECT_NEAR(drawnBetween(400, 336, 599, 336), 120, 4);
    EXPECT_EQ(drawnBetween(75, 300, 200, 330), 0) << "between the lines of the grid";
}

TEST_F(PlotProgram, DrawsTheCurveAllTheWay) {
    for (unsigned int x = 66; x <= 623; ++x) {
        unsigned int count = 0;
        for (unsigned int y = 130; y < 383; ++y)
            count += isTeal(picture.at(x, y)) ? 1u : 0u;
        const bool isBehindTheMark = x > 332 && x < 357;
        EXPECT_TRUE(count > 0 || isBehindTheMark) << x;
    }
    EXPECT_EQ(drawnBetween(626, 120, 639, 380), 0) << "nothing beside the area";
}

TEST_F(PlotProgram, MarksTheMaximum) {
    const Area coral = areaOf(
        picture, [](const auto* p) { return isLike(p, 232, 112, 82); }, 110);
    EXPECT_NEAR(coral.right - coral.left + 1, 22, 2);
    EXPECT_NEAR(coral.bottom - coral.top + 1, 22, 2);
    const unsigned int x = (coral.left + coral.right) / 2;
    const unsigned int y = (coral.top + coral.bottom) / 2;
    EXPECT_NEAR(x, 344, 1) << "the middle of what is shown";
    EXPECT_TRUE(hasColor(x, y, 232, 112, 82));
    EXPECT_TRUE(hasColor(x, y - 5, 255, 255, 255)) << "its ring";
    EXPECT_TRUE(hasColor(x, y - 9, 232, 112, 82)) << "its rim";
    EXPECT_EQ(drawnBetween(x - 20, coral.top - 12, x - 6, coral.top - 1), 0) << "above it";
}

TEST_F(PlotProgram, DrawsAllOfTheSignalAbove) {
    for (unsigned int x = 66; x <= 623; ++x) {
        unsigned int count = 0;
        for (unsigned int y = 47; y < 101; ++y)
            count += isTeal(picture.at(x, y)) ? 1u : 0u;
        EXPECT_GE(count, 3u) << x;
    }
    EXPECT_TRUE(hasColor(408, 96, 237, 199, 110)) << "where the part is";
    EXPECT_TRUE(isTeal(picture.at(410, 76))) << "the burst";
    EXPECT_EQ(drawnBetween(400, 96, 407, 99), 0) << "beside it";
}

TEST(PlotProgramWithoutAFile, SaysThatThereIsNoScreen) {
    const Outcome run = runProgram(VELLIS_PLOT_PROGRAM, "", {"DISPLAY", "WAYLAND_DISPLAY"});
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.output, "");
    ASSERT_EQ(lines(run.errors).size(), 1u) << run.errors;
    EXPECT_THAT(run.errors, AnyOf(StartsWith("No window can be opened ("),
                                  StartsWith("This program has been built without GLFW")));
}

TEST(PlotProgramWithAFont, SaysWhenThatCannotBeUsed) {
    const Outcome run = runProgram(VELLIS_PLOT_PROGRAM, "--font /no/font.ttf picture.png");
    EXPECT_FALSE(run.succeeded);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, AnyOf(HasSubstr("/no/font.ttf cannot be used"),
                                  HasSubstr("built without vellis::text")));
}

TEST(PlotProgramWithAFont, AsksForOneFileEach) {
    for (const char* const arguments : {"--font", "a.png b.png", "--size 3", "--font a --font b"}) {
        const Outcome run = runProgram(VELLIS_PLOT_PROGRAM, arguments);
        EXPECT_FALSE(run.succeeded) << arguments;
        EXPECT_EQ(run.errors, "Usage: vellis_plot [--font file] [picture.png]\n") << arguments;
    }
}

class PlotScene : public RenderTest {
protected:
    static constexpr unsigned int width = 512;

    PlotScene() : RenderTest(width) {}

    /// Ten seconds of the signal.
    static const plot::Signal& signal() {
        static const plot::Signal result = [] {
            const std::vector<glm::dvec2> samples = plot::makeSignal().samples;
            return plot::Signal{{samples.begin() + 200'000, samples.begin() + 210'000}, 0};
        }();
        return result;
    }

    /// Where a point is to be seen, in pixels from the lower left corner.
    static glm::dvec2 placeOf(const glm::dvec2& point, const plot::Range& shown) {
        const plot::Area area = plot::detailArea(glm::uvec2(width));
        return glm::dvec2(area.low) + (point - shown.low) / shown.size() * glm::dvec2(area.size());
    }
};

TEST_F(PlotScene, HasEachSampleAtItsPlaceWhenMillisecondsAreWide) {
    plot::View view(signal().range(), signal().samples[5000]);
    view.zoom(0.0, 0.5);
    EXPECT_NEAR(view.range().size().x, 20.0, 1e-3);
    plot::Plot(signal()).draw(glm::uvec2(width), view.range());
    const offscreen::Image image = offscreen::readPixels(width, width);
    int samples = 0;
    for (std::size_t i = 4980; i < 5020; ++i) {
        const glm::dvec2 place = placeOf(signal().samples[i], view.range());
        if (!view.range().contains(signal().samples[i]) || place.x < 68.0 || place.x > 490.0)
            continue;
        ++samples;
        const auto x = static_cast<unsigned int>(place.x);
        const auto y = width - 1 - static_cast<unsigned int>(place.y);
        unsigned int darkest = 255; // the line, 1.5 wide, covers three quarters of a pixel there
        for (unsigned int row = y - 1; row <= y + 1; ++row)
            darkest = std::min<unsigned int>(darkest, image.at(x, row)[0]);
        EXPECT_LT(darkest, 105u) << i;
    }
    EXPECT_GE(samples, 18);
}

TEST_F(PlotScene, DrawsTheSameTwice) {
    const plot::View view(signal().range(), signal().samples[signal().highest]);
    const plot::Plot plot(signal());
    plot.draw(glm::uvec2(width), view.range());
    const offscreen::Image first = offscreen::readPixels(width, width);
    plot.draw(glm::uvec2(width), view.range());
    EXPECT_EQ(offscreen::readPixels(width, width).pixels, first.pixels);
}

/// A part of a signal of ten seconds.
class PlotView : public ::testing::Test {
protected:
    static void expectRange(const plot::Range& range, const glm::dvec2& low,
                            const glm::dvec2& high) {
        EXPECT_NEAR(range.low.x, low.x, 1e-9);
        EXPECT_NEAR(range.low.y, low.y, 1e-9);
        EXPECT_NEAR(range.high.x, high.x, 1e-9);
        EXPECT_NEAR(range.high.y, high.y, 1e-9);
    }

    plot::View view{{{0.0, -1.0}, {10000.0, 3.0}}, {5000.0, 2.0}};
};

TEST_F(PlotView, BeginsAroundTheSample) {
    expectRange(view.range(), {3000.0, -1.0}, {7000.0, 3.0});
}

TEST_F(PlotView, MovesByPartsOfWhatIsShown) {
    view.move({0.25, -0.5});
    expectRange(view.range(), {4000.0, -3.0}, {8000.0, 1.0});
}

TEST_F(PlotView, KeepsSomethingOfTheSignalWhenMoved) {
    view.move({100.0, -100.0});
    expectRange(view.range(), {8000.0, -3.0}, {12000.0, 1.0});
    view.move({-100.0, 100.0});
    expectRange(view.range(), {-2000.0, 1.0}, {2000.0, 5.0});
}

TEST_F(PlotView, KeepsThePlaceWhereItIsZoomed) {
    view.zoom(0.5, 0.25);
    expectRange(view.range(), {3500.0, -1.0}, {5500.0, 3.0});
    view.zoom(2.0, 0.25);
    expectRange(view.range(), {3000.0, -1.0}, {7000.0, 3.0});
}

TEST_F(PlotView, ShowsNoLessThanTwentyMillisecondsAndNoMoreThanAll) {
    view.zoom(1e-9, 0.5);
    expectRange(view.range(), {4990.0, -1.0}, {5010.0, 3.0});
    view.zoom(1e9, 0.5);
    expectRange(view.range(), {0.0, -1.0}, {10000.0, 3.0});
}

TEST_F(PlotView, ShowsAllAgain) {
    view.move({0.1, 0.1});
    view.showAll();
    expectRange(view.range(), {0.0, -1.0}, {10000.0, 3.0});
}

TEST(PlotSignal, HasAMillionSamplesOfAMillisecondEach) {
    const plot::Signal signal = plot::makeSignal();
    ASSERT_EQ(signal.samples.size(), 1'000'000u);
    EXPECT_EQ(signal.samples[1].x - signal.samples[0].x, 1.0);
    EXPECT_EQ(signal.samples.back().x - signal.samples.front().x, 999'999.0);
    EXPECT_NE(static_cast<double>(static_cast<float>(signal.samples[1].x)), signal.samples[1].x)
        << "a float keeps it";
    for (const glm::dvec2& sample : signal.samples)
        ASSERT_LE(sample.y, signal.samples[signal.highest].y);
    EXPECT_TRUE(signal.range().contains(signal.samples[signal.highest]));
}

TEST(PlotSignal, IsThinnedToTheLowestAndTheHighestInTheirOrder) {
    const plot::Signal signal{{{0, 3}, {1, 1}, {2, 2}, {3, 5}, {4, 4}, {5, 6}, {6, 0}}, 5};
    const std::vector<glm::dvec2> expected = {{0, 3}, {1, 1}, {4, 4}, {5, 6}, {6, 0}, {6, 0}};
    EXPECT_EQ(signal.thinned(3), expected);
}

} // namespace

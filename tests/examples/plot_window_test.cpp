/// The plot in a window, as a user sees and handles it.

#include <cstdlib>

#include <X11/keysym.h>
#include <gmock/gmock.h>

#include "examples/drawn_area.hpp"
#include "examples/window_fixture.hpp"
#include "support/run_program.hpp"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// The mark of the maximum; the legend above has one, too.
Area markOf(const offscreen::Image& image) {
    return areaOf(
        image, [](const auto* p) { return isLike(p, 232, 112, 82); }, 110);
}

int middleOf(const Area& area) {
    return static_cast<int>(area.left + area.right) / 2;
}

class PlotWindow : public WindowTest {
protected:
    PlotWindow() : WindowTest(VELLIS_PLOT_PROGRAM) {}

    void SetUp() override {
        WindowTest::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        start();
        EXPECT_TRUE(showsMarkAt(344)) << "in the middle";
    }

    /// Waits until the mark is at a column.
    bool showsMarkAt(int x) {
        return eventuallyShows([x](const offscreen::Image& image) {
            const Area mark = markOf(image);
            return mark.count > 50 && std::abs(middleOf(mark) - x) <= 1;
        });
    }
};

TEST_F(PlotWindow, MovesWithThePointer) {
    const unsigned int top = markOf(capture()).top;
    client->drag(window, {300, 200}, {380, 230});
    EXPECT_TRUE(showsMarkAt(424));
    EXPECT_NEAR(markOf(capture()).top, top + 30, 1);
}

TEST_F(PlotWindow, StaysWhereThePointerOnlyPasses) {
    client->drag(window, {300, 200}, {310, 200});
    EXPECT_TRUE(showsMarkAt(354));
    client->point(window, {400, 200});
    client->drag(window, {400, 200}, {410, 200});
    EXPECT_TRUE(showsMarkAt(364));
}

TEST_F(PlotWindow, ZoomsAroundThePointer) {
    client->turnWheel(window, {444, 200}, 1); // 100 pixels to the right of the mark
    EXPECT_TRUE(showsMarkAt(444 - 125));
    client->turnWheel(window, {444, 200}, -1);
    EXPECT_TRUE(showsMarkAt(344));
}

TEST_F(PlotWindow, HasKeys) {
    press(XK_Right); // a quarter of 560 pixels
    EXPECT_TRUE(showsMarkAt(344 - 140));
    press(XK_minus);
    EXPECT_TRUE(showsMarkAt(344 - 70));
    press(XK_plus);
    EXPECT_TRUE(showsMarkAt(344 - 140));
    press(XK_Left);
    EXPECT_TRUE(showsMarkAt(344));
    press(XK_Home); // the burst is 618 of 1000 seconds from the left
    EXPECT_TRUE(showsMarkAt(410));
}

TEST_F(PlotWindow, FillsAWindowOfAnySize) {
    resize(940, 500);
    EXPECT_TRUE(showsMarkAt(494));
    resize(60, 60);
    EXPECT_TRUE(eventuallyShows([](const auto& image) { return image.width == 60; }));
    resize(640, 440);
    EXPECT_TRUE(showsMarkAt(344));
}

TEST_F(PlotWindow, SaysWhatItsKeysDo) {
    EXPECT_TRUE(
        eventually([this] { return program->output().find("Escape") != std::string::npos; }));
    EXPECT_THAT(program->output(),
                AllOf(HasSubstr("Dragging "), HasSubstr("\nWheel"), HasSubstr("\nHome ")));
}

TEST_F(PlotWindow, EndsAtAKey) {
    press(XK_Escape);
    expectToEnd();
    EXPECT_THAT(lines(program->output()), SizeIs(6)) << "the help, once";
}

} // namespace

/// The gears in a window, as a user sees and handles them.

#include <chrono>
#include <initializer_list>
#include <thread>
#include <utility>

#include <X11/keysym.h>
#include <gmock/gmock.h>

#include "examples/drawn_area.hpp"
#include "examples/window_fixture.hpp"
#include "support/run_program.hpp"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// Whether there is a picture, on paper.
bool isWhole(const offscreen::Image& image) {
    return image.width > 0 && isPaper(image.at(0, 0)) &&
           drawnArea(image).count > image.width * image.height / 5;
}

class GearsWindow : public WindowTest {
protected:
    GearsWindow() : WindowTest(VELLIS_GEARS_PROGRAM) {}

    void SetUp() override {
        WindowTest::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        start();
        EXPECT_TRUE(eventuallyShows(isWhole));
    }

    bool changes() {
        const offscreen::Image before = capture();
        return eventuallyShows([&](const auto& image) { return image.pixels != before.pixels; });
    }

    /// Whether the picture stays as it is for a while.
    bool stands() {
        const offscreen::Image before = capture();
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return capture().pixels == before.pixels;
    }

    /// Makes the gears stop.
    void stop() {
        press(XK_space);
        EXPECT_TRUE(eventually([this] { return stands(); }));
    }
};

TEST_F(GearsWindow, Turn) {
    EXPECT_TRUE(changes());
    EXPECT_TRUE(changes());
}

TEST_F(GearsWindow, ShowThreeGearsWhole) {
    const offscreen::Image image = capture();
    const Area coral = areaOf(image, [](const auto* p) { return p[0] > p[1] + 50; });
    const Area teal = areaOf(image, [](const auto* p) { return p[1] > p[0] + 40 && p[1] >= p[2]; });
    const Area blue = areaOf(image, [](const auto* p) { return p[2] > p[0] + 20 && p[2] > p[1]; });
    EXPECT_GT(coral.count, teal.count);
    EXPECT_GT(teal.count, blue.count);
    EXPECT_GT(blue.count, 5000u);
    EXPECT_LT(coral.left, blue.left);
    EXPECT_LT(blue.right, teal.right);
    EXPECT_LT(blue.top, teal.top);
}

TEST_F(GearsWindow, StopAndGoOn) {
    stop();
    press(XK_space);
    EXPECT_TRUE(changes());
}

TEST_F(GearsWindow, AreSeenFromOtherSides) {
    stop();
    for (const auto key : std::initializer_list<unsigned long>{XK_Left, XK_Up, XK_Right, XK_Down}) {
        const offscreen::Image before = capture();
        press(key);
        EXPECT_TRUE(eventuallyShows([&](const auto& image) {
            return isWhole(image) && image.pixels != before.pixels;
        })) << key;
        EXPECT_TRUE(eventually([this] { return stands(); }));
    }
}

TEST_F(GearsWindow, ComeBackToWhereTheyWereSeenFrom) {
    stop();
    const offscreen::Image before = capture();
    press(XK_Left);
    EXPECT_TRUE(changes());
    press(XK_Right);
    EXPECT_TRUE(eventuallyShows([&](const auto& image) { return image.pixels == before.pixels; }));
}

TEST_F(GearsWindow, FillAWindowOfAnySize) {
    for (const auto& [width, height] : {std::pair(900u, 400u), std::pair(300u, 700u)}) {
        resize(width, height);
        EXPECT_TRUE(eventuallyShows([&, w = width, h = height](const offscreen::Image& image) {
            return image.width == w && image.height == h && isFramed(image);
        })) << width
            << " x " << height;
    }
}

TEST_F(GearsWindow, SaysWhatItsKeysDo) {
    EXPECT_TRUE(
        eventually([this] { return program->output().find("Escape") != std::string::npos; }));
    const std::string help = program->output();
    EXPECT_THAT(help,
                AllOf(HasSubstr("Left, Right "), HasSubstr("\nSpace "), HasSubstr("\n+, - ")));
    press(XK_h);
    EXPECT_TRUE(eventually([&] { return program->output() == help + help; }));
}

TEST_F(GearsWindow, EndsWhenItsWindowIsClosed) {
    client->requestClose(window);
    expectToEnd();
    EXPECT_THAT(lines(program->output()), SizeIs(6)) << "the help, once";
}

TEST_F(GearsWindow, EndsAtAKey) {
    press(XK_Escape);
    expectToEnd();
}

} // namespace

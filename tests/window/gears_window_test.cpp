/// The gears in a window, as a user sees and handles them.

#include <algorithm>
#include <chrono>
#include <thread>

#include <X11/keysym.h>
#include <gmock/gmock.h>

#include "render/run_program.hpp"
#include "window/window_test.hpp"

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// Where pixels of one kind are in a picture, and how many.
struct Area {
    int count = 0;
    unsigned int left = ~0u;
    unsigned int right = 0;
    unsigned int top = ~0u;
    unsigned int bottom = 0;

    void add(unsigned int x, unsigned int y) {
        ++count;
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
};

template <class IsOne>
Area areaOf(const offscreen::Image& image, IsOne isOne) {
    Area area;
    for (unsigned int y = 0; y < image.height; ++y) {
        for (unsigned int x = 0; x < image.width; ++x) {
            if (isOne(image.at(x, y)))
                area.add(x, y);
        }
    }
    return area;
}

bool isPaper(const unsigned char* pixel) {
    return pixel[0] > 245 && pixel[1] > 240 && pixel[2] > 235;
}

/// What is drawn, whatever its colour.
Area drawn(const offscreen::Image& image) {
    return areaOf(image, [](const unsigned char* pixel) { return !isPaper(pixel); });
}

/// Whether there is a picture, on paper.
bool isWhole(const offscreen::Image& image) {
    return image.width > 0 && isPaper(image.at(0, 0)) &&
           drawn(image).count > static_cast<int>(image.width * image.height) / 5;
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
    EXPECT_GT(blue.count, 5000);
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
    for (const unsigned long key : {XK_Left, XK_Up, XK_Right, XK_Down}) {
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
            if (image.width != w || image.height != h)
                return false;
            const Area area = drawn(image);
            const unsigned int smaller = std::min(w, h);
            const bool isInside =
                area.left > 0 && area.top > 0 && area.right + 1 < w && area.bottom + 1 < h;
            const bool isLarge = area.right - area.left > 3 * smaller / 4 ||
                                 area.bottom - area.top > 3 * smaller / 4;
            const int offX = static_cast<int>(area.left + area.right + 1) - static_cast<int>(w);
            const int offY = static_cast<int>(area.top + area.bottom + 1) - static_cast<int>(h);
            return isInside && isLarge && std::abs(offX) < static_cast<int>(w) / 8 &&
                   std::abs(offY) < static_cast<int>(h) / 8;
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

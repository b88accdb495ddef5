/// The first example, as a user sees it.

#include <gmock/gmock.h>

#include "examples/window_fixture.hpp"

namespace {

/// Whether a pixel is about that colour, each component by itself.
bool isAbout(const unsigned char* pixel, int red, int green, int blue) {
    const auto near = [](int a, int b) { return a - b < 12 && b - a < 12; };
    return near(pixel[0], red) && near(pixel[1], green) && near(pixel[2], blue);
}

class TriangleWindow : public WindowTest {
protected:
    TriangleWindow() : WindowTest(VELLIS_TRIANGLE_PROGRAM) {}
};

TEST_F(TriangleWindow, ShowsAColorAtEachCornerAndGround) {
    start();
    EXPECT_EQ(title(), "A triangle");
    EXPECT_TRUE(eventuallyShows([](const offscreen::Image& image) {
        if (image.width != 640 || image.height != 480)
            return false;
        return isAbout(image.at(4, 4), 38, 69, 84) &&       // ground
               isAbout(image.at(72, 402), 228, 114, 84) &&  // left corner
               isAbout(image.at(567, 402), 44, 158, 142) && // right corner
               isAbout(image.at(320, 60), 230, 194, 107);   // upper corner
    }));
}

TEST_F(TriangleWindow, FillsTheWindowWhenItGrows) {
    start();
    resize(800, 300);
    EXPECT_TRUE(eventuallyShows([](const offscreen::Image& image) {
        return image.width == 800 && image.height == 300 && isAbout(image.at(796, 4), 38, 69, 84) &&
               isAbout(image.at(400, 40), 230, 194, 107);
    }));
}

TEST_F(TriangleWindow, EndsWhenItIsClosed) {
    start();
    client->requestClose(window);
    expectToEnd();
}

} // namespace

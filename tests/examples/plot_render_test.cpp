/// The plot as a user runs it.

#include "examples/program_picture.hpp"

namespace {

class PlotProgram : public ProgramPicture {
protected:
    PlotProgram() : ProgramPicture(VELLIS_PLOT_PROGRAM, 640, 400) {}

    /// How many pixels of a row or a column are not background.
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
    EXPECT_TRUE(hasColor(44, 300, 43, 59, 71));
    EXPECT_TRUE(hasColor(500, 359, 43, 59, 71));
    EXPECT_TRUE(hasColor(100, 363, 43, 59, 71)) << "a tick";
    EXPECT_EQ(drawnBetween(30, 300, 47, 300), 1);
    EXPECT_EQ(drawnBetween(480, 350, 480, 370), 1);
    EXPECT_EQ(drawnBetween(0, 370, 639, 399), 0);
}

TEST_F(PlotProgram, DrawsADashedGrid) {
    // Of ten pixels six are dash; at a seventh the driver's rounding decides.
    EXPECT_NEAR(drawnBetween(300, 39, 399, 39), 65, 9);
    EXPECT_NEAR(drawnBetween(604, 219, 604, 318), 65, 9);
    EXPECT_EQ(drawnBetween(310, 45, 320, 110), 0) << "between the lines of the grid";
}

TEST_F(PlotProgram, DrawsASmoothCurve) {
    EXPECT_TRUE(hasColor(213, 245, 41, 158, 143)) << "its first low";
    const int wide = drawnBetween(213, 238, 213, 252);
    EXPECT_GE(wide, 3);
    EXPECT_LE(wide, 5);
    EXPECT_FALSE(hasColor(213, 244, 250, 247, 242) || hasColor(213, 244, 41, 158, 143))
        << "its rim is blended";
}

TEST_F(PlotProgram, DrawsPointsAndABullseye) {
    EXPECT_TRUE(hasColor(212, 232, 115, 153, 179)) << "a measured point";
    EXPECT_EQ(drawnBetween(216, 205, 224, 218), 0) << "beside it";
    EXPECT_TRUE(hasColor(126, 112, 232, 112, 82)) << "the middle of the bullseye";
    EXPECT_TRUE(hasColor(126, 117, 255, 255, 255)) << "its ring";
    EXPECT_TRUE(hasColor(126, 121, 232, 112, 82)) << "its rim";
    EXPECT_EQ(drawnBetween(118, 85, 136, 98), 0) << "above it";
}

} // namespace

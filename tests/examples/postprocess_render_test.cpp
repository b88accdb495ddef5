/// The blurred scene as a user runs it.

#include <algorithm>
#include <vector>

#include "examples/program_picture.hpp"

namespace {

class PostprocessProgram : public ProgramPicture {
protected:
    PostprocessProgram() : ProgramPicture(VELLIS_POSTPROCESS_PROGRAM, 480, 320) {}

    static constexpr unsigned int reach = 8; // of the blur, in pixels

    /// That the red of the pixels on both sides of an edge rises evenly over the reach of the blur.
    static void expectRamp(const std::vector<int>& reds) {
        ASSERT_EQ(reds.size(), 2 * reach);
        int greatest = 0;
        for (std::size_t i = 1; i < reds.size(); ++i) {
            EXPECT_GE(reds[i], reds[i - 1]) << i;
            greatest = std::max(greatest, reds[i] - reds[i - 1]);
        }
        const int rise = reds.back() - reds.front();
        EXPECT_GT(rise, 15);
        EXPECT_LT(greatest, rise / 4) << "the edge is still sharp";
        EXPECT_NEAR(reds[reach - 1] + reds[reach], reds.front() + reds.back(), 6)
            << "the middle of the ramp is off the edge";
    }

    int red(unsigned int x, unsigned int y) const { return picture.at(x, y)[0]; }
};

TEST_F(PostprocessProgram, KeepsTheColorsOfFlatAreas) {
    EXPECT_TRUE(hasColor(20, 20, 207, 224, 227)) << "the sky";
    EXPECT_TRUE(hasColor(120, 160, 232, 112, 82)) << "the box";
    EXPECT_TRUE(hasColor(280, 130, 237, 199, 110)) << "the disc";
    EXPECT_TRUE(hasColor(240, 300, 38, 69, 99)) << "the ground";
    for (const unsigned int x : {0u, 479u}) {
        EXPECT_TRUE(hasColor(x, 0, 207, 224, 227)) << "the ground came around the edge";
        EXPECT_TRUE(hasColor(x, 319, 38, 69, 99)) << "the sky came around the edge";
    }
}

TEST_F(PostprocessProgram, DrawsTheSceneWithDepth) {
    EXPECT_TRUE(hasColor(180, 130, 232, 112, 82)) << "the box is in front of the disc";
    EXPECT_TRUE(hasColor(220, 130, 237, 199, 110)) << "the disc is beside it";
    EXPECT_TRUE(hasColor(120, 60, 207, 224, 227)) << "the sky is above the box";
}

TEST_F(PostprocessProgram, BlursAcross) {
    std::vector<int> reds;
    for (unsigned int x = 40 - reach; x < 40 + reach; ++x)
        reds.push_back(red(x, 160));
    expectRamp(reds);
}

TEST_F(PostprocessProgram, BlursUpAndDown) {
    std::vector<int> reds;
    for (unsigned int i = 0; i < 2 * reach; ++i)
        reds.push_back(red(400, 260 + reach - 1 - i));
    expectRamp(reds);
}

TEST_F(PostprocessProgram, ReachesNoFurther) {
    EXPECT_TRUE(hasColor(40 - reach - 2, 160, 207, 224, 227)) << "left of the box";
    EXPECT_TRUE(hasColor(40 + reach + 2, 160, 232, 112, 82)) << "in the box";
    EXPECT_TRUE(hasColor(400, 260 - reach - 2, 207, 224, 227)) << "above the ground";
    EXPECT_TRUE(hasColor(400, 260 + reach + 2, 38, 69, 99)) << "in the ground";
}

} // namespace

/// Texts on a driver, pixel by pixel.

#include <vellis/text.hpp>

#include <memory>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "text/draw_fixture.hpp"

namespace vellis::test {
namespace {

using text::Anchor;
using text::Font;

class DrawRender : public TextSceneTest {};

TEST_F(DrawRender, PixelsHaveTheCoverageOfTheGlyphs) {
    draw([&] {
        text::draw(canvas, font, {60., 60.}, "Hamburg 42", white, Anchor::Center);
        text::draw(canvas, font, {3., 100.}, "office\n\u05D0\u05D1 12", white, Anchor::TopLeft);
    });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "Hamburg 42", 60, 60, Anchor::Center);
    expected.add(*font, "office\n\u05D0\u05D1 12", 3, 100, Anchor::TopLeft);
    EXPECT_GT(sum(), 10000.);
    EXPECT_LE(distanceTo(expected), 1);
}

TEST_F(DrawRender, TexelsOfFourComponentsShowTheSame) {
    const int hasRed = GLAD_GL_ARB_texture_rg;
    const int isVersion3 = GLAD_GL_VERSION_3_0;
    draw([&] {
        GLAD_GL_ARB_texture_rg = GLAD_GL_VERSION_3_0 = 0;
        text::draw(canvas, font, {60., 60.}, "Ham", white, Anchor::Center);
        text::draw(canvas, font, {60., 90.}, "burg", white, Anchor::Center);
        GLAD_GL_ARB_texture_rg = hasRed;
        GLAD_GL_VERSION_3_0 = isVersion3;
    });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "Ham", 60, 60, Anchor::Center);
    expected.add(*font, "burg", 60, 90, Anchor::Center);
    EXPECT_LE(distanceTo(expected), 1);
}

TEST_F(DrawRender, ThePositionMovesToWholePixels) {
    draw([&] { text::draw(canvas, font, {60.3, 59.8}, "Hamburg", white, Anchor::Center); });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "Hamburg", 60, 60, Anchor::Center);
    EXPECT_LE(distanceTo(expected), 1);
}

TEST_F(DrawRender, LargeGlyphsHaveTexturesOfTheirOwn) {
    font = Font::load(findFont(fontName), 900.f);
    ASSERT_NE(font, nullptr);
    draw([&] { text::draw(canvas, font, {64., 64.}, "W", white, Anchor::Center); });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "W", 64, 64, Anchor::Center);
    EXPECT_LE(distanceTo(expected), 1);
    EXPECT_GT(sum(), 10000.);
}

TEST_F(DrawRender, ManyGlyphsTakeSeveralPages) {
    const auto large = Font::load(findFont(fontName), 200.f);
    ASSERT_NE(large, nullptr);
    draw([&] {
        canvas->setTransform(glm::scale(glm::mat4(1.f), glm::vec3(0.f)));
        text::draw(canvas, large, {0., 0.}, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz",
                   glm::vec4(0.f));
    });
    draw([&] { text::draw(canvas, font, {60., 60.}, "Hamburg", white, Anchor::Center); });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "Hamburg", 60, 60, Anchor::Center);
    EXPECT_LE(distanceTo(expected), 1);
}

TEST_F(DrawRender, AQuarterTurnMovesEachPixel) {
    // Letters that do not overlap: each keeps its coverage.
    draw([&] { text::draw(canvas, font, {60., 60.}, "H i j", white, Anchor::Center); });
    const double straight = sum();
    const offscreen::Image before = scene;
    draw([&] {
        text::draw(canvas, font, {60., 60.}, "H i j", white, Anchor::Center, 1.57079633f);
    });
    EXPECT_NEAR(sum(), straight, 0.02 * straight);
    // The text's columns are rows now: the first one, from the left, is the lowest.
    int lowest = 255;
    for (unsigned int y = scene.height; y > 0; --y) {
        for (unsigned int x = 0; x < scene.width; ++x)
            lowest = at(x, y - 1) > 100 ? static_cast<int>(y - 1) : lowest;
    }
    int leftmost = 255;
    for (unsigned int x = before.width; x > 0; --x) {
        for (unsigned int y = 0; y < before.height; ++y)
            leftmost = before.at(x - 1, y)[0] > 100 ? static_cast<int>(x - 1) : leftmost;
    }
    EXPECT_NEAR(lowest, leftmost, 1.5);
}

TEST_F(DrawRender, APictureKeepsATextAcrossNewGlyphs) {
    canvas->beginPicture(strokeSceneMatrix());
    text::draw(canvas, font, {60., 60.}, "Hamburg", white, Anchor::Center);
    const auto picture = canvas->endPicture();
    draw([&] { text::draw(canvas, font, {10., 10.}, "xyzXYZ", glm::vec4(0.f)); });
    draw([&] { canvas->drawPicture(picture); });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "Hamburg", 60, 60, Anchor::Center);
    EXPECT_LE(distanceTo(expected), 1);
}

TEST_F(DrawRender, ATextBehindTheViewerIsNotSeen) {
    const auto sumAt = [&](double z) {
        draw([&] {
            canvas->begin(glm::perspective(1.f, 1.f, 0.1f, 10.f));
            text::draw(canvas, font, {0., 0., z}, "Hamburg", white, Anchor::Center);
        });
        return sum();
    };
    EXPECT_GT(sumAt(-1.), 5000.);
    EXPECT_EQ(sumAt(1.), 0.);
}

TEST_F(DrawRender, TheColorsAlphaCounts) {
    draw([&] {
        text::draw(canvas, font, {60., 60.}, "H", glm::vec4(1.f, 1.f, 1.f, 0.5f), Anchor::Center);
    });
    const double half = sum();
    draw([&] { text::draw(canvas, font, {60., 60.}, "H", white, Anchor::Center); });
    EXPECT_NEAR(half, sum() / 2., 0.02 * sum());
}

} // namespace
} // namespace vellis::test

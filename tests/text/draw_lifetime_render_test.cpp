/// Texts on a driver whose font, canvas or textures end, upside down, and in several Contexts.

#include <vellis/text.hpp>

#include <memory>
#include <string>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>

#include "support/scene.hpp"
#include "support/surface.hpp"
#include "text/draw_fixture.hpp"

namespace vellis::test {
namespace {

using text::Anchor;
using text::Font;

class DrawLifetimeRender : public TextSceneTest {
protected:
    void drawWord(const char* word) const {
        text::draw(canvas, font, {60., 60.}, word, white, Anchor::Center);
    }

    std::shared_ptr<Picture> recordWord(const char* word) const {
        canvas->beginPicture(strokeSceneMatrix());
        drawWord(word);
        return canvas->endPicture();
    }

    /// Has the canvas keep so many glyphs that it forgets all before.
    void drawUntilAllIsForgotten() const {
        const auto large = Font::load(findFont(fontName), 2400.f);
        canvas->begin(glm::mat4(1.f));
        for (const char letter : std::string("ABCDEFGHKLMNOPQRSTUVWXYZ&%@wmdbg"))
            text::draw(canvas, large, {0., 0.}, std::string(1, letter), glm::vec4(0.f));
        canvas->end();
    }
};

TEST_F(DrawLifetimeRender, AFontMayEndBeforeItsTextIsDrawn) {
    const auto again = Font::load(findFont(fontName), 15.f);
    draw([&] {
        drawWord("Hamburg");
        font.reset();
    });
    font = again;
    EXPECT_LE(distanceToText("Hamburg"), 1);
}

TEST_F(DrawLifetimeRender, AFontInPlaceOfAnotherHasGlyphsOfItsOwn) {
    draw([&] { drawWord("Hamburg"); });
    for (const float pixels : {11.f, 19.f}) {
        font.reset();
        font = Font::load(findFont(fontName), pixels);
        draw([&] { drawWord("Hamburg"); });
        EXPECT_LE(distanceToText("Hamburg"), 1) << pixels;
    }
}

TEST_F(DrawLifetimeRender, APictureKeepsItsTextWhenItsCanvasAndFontAreGone) {
    const auto picture = recordWord("Hamburg");
    canvas = Canvas::make();
    const std::weak_ptr<Font> old = font;
    font = Font::load(findFont(fontName), 15.f);
    EXPECT_TRUE(old.expired());
    draw([&] { canvas->drawPicture(picture); });
    EXPECT_LE(distanceToText("Hamburg"), 1);
}

TEST_F(DrawLifetimeRender, APictureKeepsItsTextWhenAllGlyphsAreForgotten) {
    const auto picture = recordWord("Hamburg");
    drawUntilAllIsForgotten();
    draw([&] { canvas->drawPicture(picture); });
    EXPECT_LE(distanceToText("Hamburg"), 1);
    draw([&] { drawWord("Bremen"); });
    EXPECT_LE(distanceToText("Bremen"), 1);
}

TEST_F(DrawLifetimeRender, GlyphsMayBeForgottenWithinABatch) {
    clearScene();
    canvas->begin(strokeSceneMatrix());
    drawWord("Hamburg");
    const auto large = Font::load(findFont(fontName), 2400.f);
    for (const char letter : std::string("ABCDEFGHKLMNOPQRSTUVWXYZ&%@wmdbg"))
        text::draw(canvas, large, {0., 0.}, std::string(1, letter), glm::vec4(0.f));
    canvas->end();
    scene = readScene();
    EXPECT_LE(distanceToText("Hamburg"), 1);
}

TEST_F(DrawLifetimeRender, WithPixelsDownwardTextsAreUpsideDown) {
    draw([&] {
        canvas->setPixelsDownward(true);
        drawWord("Hamburg\n42");
    });
    Expected expected(scene.width, scene.height);
    expected.add(*font, "Hamburg\n42", 60, 60, Anchor::Center);
    int farthest = 0;
    for (unsigned int y = 0; y < 120; ++y) {
        for (unsigned int x = 0; x < scene.width; ++x) {
            const int mirrored = expected.at(static_cast<int>(x), static_cast<int>(119 - y));
            farthest = (std::max)(farthest, std::abs(at(x, y) - mirrored));
        }
    }
    EXPECT_LE(farthest, 1);
    EXPECT_GT(sum(), 5000.);
}

TEST_F(DrawLifetimeRender, WithPixelsDownwardATurnIsClockwiseInTheFramebuffer) {
    draw([&] {
        canvas->setPixelsDownward(true);
        text::draw(canvas, font, {60., 60.}, "Hi", white, Anchor::Left, 1.2f);
    });
    double below = 0.;
    for (unsigned int y = 0; y < 60; ++y) {
        for (unsigned int x = 0; x < scene.width; ++x)
            below += at(x, y);
    }
    EXPECT_GT(below, 0.8 * sum());
}

/// Surfaces, each with a Context, a canvas and a picture of its own.
class DrawContextsRender : public SurfaceTest {
protected:
    struct Side {
        std::unique_ptr<Surface> surface;
        std::shared_ptr<Canvas> canvas;
    };

    void SetUp() override {
        SurfaceTest::SetUp();
        if (!goesOn())
            return;
        if (findFont("DejaVuSans.ttf").empty())
            GTEST_SKIP() << "there is no DejaVuSans.ttf";
        font = Font::load(findFont("DejaVuSans.ttf"), 15.f);
    }

    Side openSide(const Surface* sharing = nullptr) {
        Side side{open(sharing), nullptr};
        if (goesOn())
            side.canvas = Canvas::make();
        return side;
    }

    /// How far what a side draws is from a word.
    int distanceOn(const Side& side, const char* word) {
        EXPECT_TRUE(side.surface->use());
        clearScene();
        side.canvas->begin(matrix);
        text::draw(side.canvas, font, {16., 16.}, word, glm::vec4(1.f), Anchor::Center);
        side.canvas->end();
        const offscreen::Image scene = offscreen::readPixels(sceneSize, sceneSize);
        Expected expected(scene.width, scene.height);
        expected.add(*font, word, 16, 16, Anchor::Center);
        return distanceBetween(scene, expected);
    }

    /// Draws the same words on both sides by turns, and others, while canvases end.
    void serveBoth(Side& first, Side& second) {
        EXPECT_LE(distanceOn(first, "Ham"), 1);
        EXPECT_LE(distanceOn(second, "Hb"), 1);
        EXPECT_LE(distanceOn(first, "Hb"), 1);
        EXPECT_LE(distanceOn(second, "Ham"), 1);
        first.canvas.reset(); // while the other one is in use
        EXPECT_LE(distanceOn(second, "Hum"), 1);
        EXPECT_TRUE(first.surface->use());
        first.canvas = Canvas::make();
        EXPECT_LE(distanceOn(first, "Hum"), 1);
        second.surface->use();
        second.canvas.reset();
        first.surface->use();
        first.canvas.reset();
    }

    std::shared_ptr<Font> font;
    const glm::mat4 matrix = glm::ortho<float>(0.f, sceneSize, 0.f, sceneSize);
    const Expected black{sceneSize, sceneSize};
};

TEST_F(DrawContextsRender, AFontServesCanvasesOfSeveral) {
    Side first = openSide();
    if (!goesOn())
        return;
    Side second = openSide();
    if (!goesOn())
        return;
    serveBoth(first, second);
}

TEST_F(DrawContextsRender, AFontServesCanvasesOfContextsThatShareObjects) {
    Side first = openSide();
    if (!goesOn())
        return;
    Side second = openSide(first.surface.get());
    if (!goesOn())
        return;
    serveBoth(first, second);
}

TEST_F(DrawContextsRender, ACanvasDrawsNothingInAnother) {
    SKIP_WHERE_NOBODY_TELLS_WHAT_IS_CURRENT();
    Side first = openSide();
    if (!goesOn())
        return;
    Side second = openSide();
    if (!goesOn())
        return;
    first.surface->use();
    clearScene();
    first.canvas->begin(matrix);
    second.surface->use();
    clearScene();
    text::draw(first.canvas, font, {16., 16.}, "Ham", glm::vec4(1.f), Anchor::Center);
    first.canvas->end();
    EXPECT_EQ(distanceBetween(offscreen::readPixels(sceneSize, sceneSize), black), 0);
    first.surface->use();
    EXPECT_LE(distanceOn(first, "Ham"), 1) << "and goes on in its own";
    first.canvas.reset();
    second.surface->use();
    second.canvas.reset();
}

} // namespace
} // namespace vellis::test

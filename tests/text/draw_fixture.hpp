#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/text.hpp>

#include "canvas/scene_fixture.hpp"
#include "text/test_font.hpp"

namespace vellis::test {

/// Coverage as it is expected in each pixel, counted from the lower left corner.
class Expected {
public:
    Expected(unsigned int width, unsigned int height)
        : width_(static_cast<int>(width)),
          height_(static_cast<int>(height)),
          coverage_(std::size_t{width} * height) {}

    /// Adds the bitmaps of a text's glyphs, at whole pixels.
    void add(text::Font& font, const char* text, int x, int y, text::Anchor anchor) {
        for (const text::PlacedGlyph& glyph : place(font, text, anchor)) {
            const text::GlyphBitmap bitmap = font.render(glyph.index);
            const int left = x + static_cast<int>(glyph.origin.x) + bitmap.left;
            const int top = y + static_cast<int>(glyph.origin.y) + bitmap.top - 1;
            for (std::size_t i = 0; i < bitmap.coverage.size(); ++i) {
                const int column = left + static_cast<int>(i % bitmap.width);
                const int row = top - static_cast<int>(i / bitmap.width);
                blend(column, row, bitmap.coverage[i]);
            }
        }
    }

    int at(int x, int y) const { return coverage_.at(static_cast<std::size_t>(y * width_ + x)); }

private:
    void blend(int x, int y, int coverage) {
        if (x < 0 || y < 0 || x >= width_ || y >= height_)
            return;
        std::uint8_t& pixel = coverage_.at(static_cast<std::size_t>(y * width_ + x));
        pixel = static_cast<std::uint8_t>(pixel + (255 - pixel) * coverage / 255);
    }

    int width_;
    int height_;
    std::vector<std::uint8_t> coverage_;
};

/// The red part of a pixel, counted from the lower left corner.
inline int redAt(const offscreen::Image& scene, unsigned int x, unsigned int y) {
    return scene.at(x, scene.height - 1 - y)[0];
}

/// How far a picture is from what is expected at most.
inline int distanceBetween(const offscreen::Image& scene, const Expected& expected) {
    int farthest = 0;
    for (unsigned int y = 0; y < scene.height; ++y) {
        for (unsigned int x = 0; x < scene.width; ++x) {
            const int step =
                redAt(scene, x, y) - expected.at(static_cast<int>(x), static_cast<int>(y));
            farthest = (std::max)(farthest, std::abs(step));
        }
    }
    return farthest;
}

/// Draws texts on a driver, in white on black.
class TextSceneTest : public CanvasSceneTest {
protected:
    static constexpr const char* fontName = "DejaVuSans.ttf";

    void SetUp() override {
        CanvasSceneTest::SetUp();
        if (!goesOn())
            return;
        if (findFont(fontName).empty())
            GTEST_SKIP() << "there is no " << fontName;
        font = text::Font::load(findFont(fontName), 15.f);
    }

    /// Leaves in `scene` what a batch draws on black.
    template <class Draw>
    void draw(Draw drawing) {
        scene = pictureOf(drawing);
    }

    int at(unsigned int x, unsigned int y) const { return redAt(scene, x, y); }
    int distanceTo(const Expected& expected) const { return distanceBetween(scene, expected); }

    /// How far the picture is from one of a text in its middle.
    int distanceToText(const char* text) const {
        Expected expected(scene.width, scene.height);
        expected.add(*font, text, 60, 60, text::Anchor::Center);
        return distanceTo(expected);
    }

    /// The sum of all coverage.
    double sum() const {
        double all = 0.;
        for (std::size_t i = 0; i < scene.pixels.size(); i += 4)
            all += scene.pixels[i];
        return all;
    }

    std::shared_ptr<text::Font> font;
    offscreen::Image scene;
    const glm::vec4 white = glm::vec4(1.f);
};

} // namespace vellis::test

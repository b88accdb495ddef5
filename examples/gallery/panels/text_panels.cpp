/// Panels of what vellis::text draws.

#include <cmath>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <common/system_font.hpp>
#include <gallery/panels/curves.hpp>
#include <gallery/panels/panel_canvas.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/view.hpp>
#include <vellis/text.hpp>

namespace gallery {
namespace {

using namespace palette;
using vellis::Stroke;
using vellis::text::Anchor;
using vellis::text::Font;

constexpr const char* latin = "DejaVuSans.ttf";
constexpr const char* arabic = "NotoNaskhArabic-Regular.ttf";
constexpr const char* devanagari = "NotoSansDevanagari-Regular.ttf";

std::shared_ptr<Font> loadFont(const char* name, float size) {
    return Font::load(common::findSystemFont(name), size);
}

/// A text in sizes of 7 to 34 pixels.
void drawSizes(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> colors = {ink, navy, blue, teal, plum, coral, orange};
    double y = 14.0;
    for (const float size : {7.0f, 9.0f, 12.0f, 16.0f, 21.0f, 27.0f, 34.0f}) {
        const auto font = loadFont(latin, size);
        const glm::vec4 color = blendRgba(colors, (size - 7.0f) / 27.0f);
        vellis::text::draw(canvas.shared(), font, {14.0, y}, "Hamburg 42", color, Anchor::TopLeft);
        y += vellis::text::pixelsOf(font->metrics().lineHeight) + 11.0;
    }
}

/// Where the texts of the nine anchors are: a place for each, with its name.
void drawAnchors(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const auto font = loadFont(latin, 12.0f);
    constexpr const char* names[] = {"top\nleft",    "top\nmiddle",    "top\nright",
                                     "left\nside",   "in the\nmiddle", "right\nside",
                                     "bottom\nleft", "bottom\nmiddle", "bottom\nright"};
    for (const float at : {20.5f, 120.5f, 220.5f}) {
        canvas->drawLines(toRgba(frame), {{at, 4.0f}, {at, 236.0f}});
        canvas->drawLines(toRgba(frame), {{4.0f, at}, {236.0f, at}});
    }
    for (int i = 0; i < 9; ++i) {
        const glm::vec2 place(20.0f + 100.0f * static_cast<float>(i % 3),
                              20.0f + 100.0f * static_cast<float>(i / 3));
        canvas->drawPoints(toRgba(coral), 8.0f, {place + 0.5f});
        vellis::text::draw(canvas.shared(), font, place, names[i], toRgba(ink),
                           static_cast<Anchor>(i));
    }
}

/// A text at each hour of a clock.
void drawAngles(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const auto font = loadFont(latin, 14.0f);
    const glm::vec2 middle(120.0f);
    constexpr int count = 12;
    for (int i = 0; i < count; ++i) {
        const float turn = static_cast<float>(i) / count;
        const float angle = 2.0f * pi * turn;
        const glm::vec2 place = middle + 28.0f * glm::vec2(std::cos(angle), -std::sin(angle));
        const std::string text = "turned " + std::to_string(360 * i / count) + "\u00B0";
        vellis::text::draw(canvas.shared(), font, place, text,
                           blendRgba({coral, plum, navy, teal, coral}, turn), Anchor::Left, angle);
    }
    canvas->drawBullseyes(toRgba(ink), toRgba(paper), 26.0f, {middle});
}

/// A text of each kind of letters, one below the other.
void drawScripts(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const auto large = loadFont(latin, 26.0f);
    const auto write = [&](const std::shared_ptr<Font>& font, double y, const char* text,
                           Color color) {
        vellis::text::draw(canvas.shared(), font, {120.0, y}, text, toRgba(color), Anchor::Center);
    };
    write(loadFont(arabic, 30.0f), 32.0, "\u0627\u0644\u0639\u062F\u062F 1729 \u0647\u0646\u0627",
          navy);
    write(loadFont(devanagari, 28.0f), 80.0,
          "\u0915\u094D\u0937\u0924\u094D\u0930\u093F\u092F \u0939\u093F\u0928\u094D\u0926\u0940",
          teal);
    write(large, 124.0, "\u05E9\u05DC\u05D5\u05DD 42 \u0391\u03B8\u03AE\u03BD\u03B1", plum);
    write(large, 166.0, "e\u0302\u0301 n\u0308 a\u030A\u0301 q\u0303 x\u0304 o\u0323\u0302", coral);
    write(large, 208.0, "office \u4E2D AVA", ink); // the ideograph is missing in the font
}

/// The height of a landscape.
float heightAt(float x, float z) {
    return 0.34f * std::exp(-6.0f * ((x - 0.3f) * (x - 0.3f) + (z + 0.2f) * (z + 0.2f))) +
           0.2f * std::exp(-8.0f * ((x + 0.5f) * (x + 0.5f) + (z - 0.3f) * (z - 0.3f)));
}

/// A place on it.
glm::vec3 onLand(float x, float z) {
    return {x, heightAt(x, z), z};
}

/// Names of places that go through the matrix, while their letters stay as they are.
void drawPlaces(const Canvas& surface) {
    const PanelCanvas canvas(surface, viewFrom({1.25f, 2.75f, 4.15f}, {-0.05f, 0.05f, 0.0f}));
    const Stroke stroke(toRgba(frame), 1.25f);
    for (int i = -8; i <= 8; ++i) {
        const float at = 0.125f * static_cast<float>(i);
        canvas->drawLineStrip(stroke,
                              alongCurve(60, [&](float t) { return onLand(2.0f * t - 1.0f, at); }));
        canvas->drawLineStrip(stroke,
                              alongCurve(60, [&](float t) { return onLand(at, 2.0f * t - 1.0f); }));
    }
    const auto large = loadFont(latin, 15.0f);
    const auto small = loadFont(latin, 12.0f);
    const auto write = [&](const std::shared_ptr<Font>& font, const glm::vec3& place,
                           const char* name, Color color) {
        canvas->drawBullseyes(toRgba(color), toRgba(paper), 9.0f, {place});
        vellis::text::draw(canvas.shared(), font, place + glm::vec3(0.0f, 0.06f, 0.0f), name,
                           toRgba(color), Anchor::Bottom);
    };
    write(large, onLand(0.3f, -0.2f), "Summit\n1240 m", coral);
    write(large, onLand(-0.5f, 0.3f), "Hill", plum);
    write(small, onLand(-0.75f, -0.8f), "Northend", navy);
    write(small, onLand(0.7f, 0.35f), "Mill", navy);
    write(small, onLand(-0.1f, 0.85f), "S\u00FCdtor", navy);
}

/// A compass as high as 2, with letters around it.
void recordCompass(const std::shared_ptr<vellis::Canvas>& canvas) {
    const auto rim = aroundCurve(64, [](float t) { return onCircle(2.0f * pi * t, 0.7f); });
    canvas->drawLineLoop(Stroke(toRgba(navy), 2.0f), rim);
    const auto font = loadFont(latin, 15.0f);
    const char* const letters[] = {"E", "N", "W", "S"};
    for (int i = 0; i < 4; ++i) {
        const float angle = pi / 2.0f * static_cast<float>(i);
        const Color color = i == 1 ? coral : blue;
        const std::vector<glm::vec2> needle = {
            onCircle(angle, 0.62f), onCircle(angle + 1.2f, 0.12f), onCircle(angle - 1.2f, 0.12f)};
        canvas->drawTriangles(toRgba(color), needle);
        canvas->drawLineLoop(Stroke(toRgba(color)), needle); // a smooth edge
        vellis::text::draw(canvas, font, onCircle(angle, 1.0f), letters[i], toRgba(color),
                           Anchor::Center);
    }
}

/// A compass that is recorded once and drawn in several sizes and directions.
void drawCompasses(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    canvas->beginPicture(glm::mat4(1.0f));
    recordCompass(canvas.shared());
    const auto compass = canvas->endPicture();
    canvas->begin(panelPixels);
    const auto draw = [&](const glm::vec2& middle, float size, float turn) {
        const glm::vec3 scale(size, -size, 1.0f);
        const glm::mat4 moved = glm::translate(glm::mat4(1.0f), glm::vec3(middle, 0.0f));
        canvas->setTransform(
            glm::rotate(glm::scale(moved, scale), turn, glm::vec3(0.0f, 0.0f, 1.0f)));
        canvas->drawPicture(compass);
    };
    draw({88.0f, 90.0f}, 74.0f, 0.0f);
    draw({184.0f, 174.0f}, 46.0f, -0.6f);
    draw({58.0f, 202.0f}, 30.0f, 0.3f);
}

} // namespace

std::vector<Panel> textPanels() {
    for (const char* const name : {latin, arabic, devanagari}) {
        if (common::findSystemFont(name).empty()) {
            std::cerr << "There is no " << name << " among the system's fonts, and so no panels of "
                      << "text: install it, for instance with "
                      << "`apt-get install fonts-dejavu-core fonts-noto-core`.\n";
            return {};
        }
    }
    return {
        {"text-sizes",
         "sizes and colours",
         1,
         drawSizes,
         {
             ColorAt{{19, 205}, orange},
             ColorAt{{217, 205}, orange},
             ColorAt{{26, 214}, paper},
             ColorAt{{17, 160}, {173, 95, 103}},
             ColorAt{{152, 160}, {174, 98, 105}},
             ColorAt{{17, 121}, {51, 149, 140}},
             MixedBetween{{10, 205}, {230, 205}, paper, orange, 20, 40},
             widthBetween({90, 31}, {230, 31}, 0),
             widthBetween({100, 55}, {230, 55}, 0),
         }},
        {"text-anchors",
         "anchors",
         1,
         drawAnchors,
         {
             ColorAt{{20, 20}, coral},
             ColorAt{{220, 220}, coral},
             ColorAt{{120, 30}, ink, 30},
             ColorAt{{120, 211}, ink, 20},
             ColorAt{{60, 20}, frame},
             widthBetween({8, 34}, {19, 34}, 0),
             widthBetween({22, 34}, {40, 34}, 2, 12),
             widthBetween({222, 34}, {236, 34}, 0),
             widthBetween({200, 34}, {219, 34}, 2, 14),
         }},
        {"text-angles",
         "any angle",
         1,
         drawAngles,
         {
             ColorAt{{120, 120}, ink},
             ColorAt{{113, 120}, paper},
             ColorAt{{98, 98}, paper},
             ColorAt{{178, 120}, coral, 16},
             ColorAt{{120, 178}, {75, 172, 159}, 24},
             ColorAt{{120, 61}, {140, 101, 134}, 24},
             ColorAt{{61, 120}, {72, 99, 123}, 24},
             widthBetween({140, 120}, {215, 120}, 20, 50),
             widthBetween({120, 140}, {120, 235}, 30, 65),
         }},
        {"text-scripts",
         "scripts and marks",
         1,
         drawScripts,
         {
             MixedBetween{{30, 28}, {210, 28}, paper, navy, 12, 45},
             ColorAt{{135, 28}, navy}, // Arabic, and a 7
             MixedBetween{{50, 75}, {190, 75}, paper, teal, 15, 50},
             widthBetween({60, 70}, {114, 70}, 45, 54), // the line above letters
             ColorAt{{30, 124}, plum}, ColorAt{{204, 124}, plum}, ColorAt{{125, 199}, ink, 60},
             ColorAt{{130, 208}, paper}, ColorAt{{55, 208}, ink}, // the box
         }},
        {"text-places",
         "places in space",
         1,
         drawPlaces,
         {
             ColorAt{{142, 60}, coral},
             ColorAt{{151, 60}, coral},
             ColorAt{{155, 94}, coral},
             ColorAt{{152, 94}, paper},
             ColorAt{{165, 94}, frame},
             widthBetween({4, 60}, {120, 60}, 0),
             widthBetween({4, 210}, {236, 228}, 0),
         }},
        {"text-pictures",
         "kept in a picture",
         1,
         drawCompasses,
         {
             ColorAt{{88, 17}, coral},
             ColorAt{{12, 90}, blue},
             ColorAt{{88, 158}, blue}, // letters
             ColorAt{{88, 60}, coral},
             ColorAt{{88, 110}, blue},
             ColorAt{{36, 90}, navy, 20},
             ColorAt{{88, 89}, paper},
             widthBetween({80, 16}, {96, 16}, 4, 8),
             widthBetween({5, 90}, {22, 90}, 6, 10), // as large as another
             ColorAt{{151, 174}, navy, 20},
             ColorAt{{216, 174}, navy, 20},
             ColorAt{{178, 174}, blue},
         }},
    };
}

} // namespace gallery

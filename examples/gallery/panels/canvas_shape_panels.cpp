/// Panels of a canvas's points, pictures and areas.

#include <memory>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/panel_canvas.hpp>
#include <gallery/panels/panel_groups.hpp>

namespace gallery {
namespace {

using namespace palette;
using vellis::Stroke;

/// Points of many sizes, with one colour each, and bullseyes.
void drawMarks(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> rainbow = {navy, blue, teal, sand, orange, coral, plum};
    std::vector<glm::vec2> points;
    std::vector<float> sizes;
    std::vector<glm::vec4> colors;
    float x = 8.0f;
    for (const float size :
         {0.5f, 1.0f, 1.5f, 2.0f, 3.0f, 5.0f, 8.0f, 12.0f, 18.0f, 26.0f, 40.0f}) {
        x += size / 2.0f + 4.0f;
        points.emplace_back(x, 36.0f);
        sizes.push_back(size);
        colors.push_back(blendRgba(rainbow, x / 220.0f));
        x += size / 2.0f + 4.0f;
    }
    for (int i = 0; i < 400; ++i) { // a sunflower's seeds
        const auto number = static_cast<float>(i) + 0.5f;
        points.push_back(glm::vec2(86.0f, 150.0f) +
                         onCircle(2.39996323f * number, 3.5f * std::sqrt(number)));
        sizes.push_back(1.5f + 0.012f * number);
        colors.push_back(blendRgba(rainbow, number / 400.0f));
    }
    canvas->drawPoints(colors, sizes, points);
    float y = 86.0f;
    for (const float size : {9.0f, 14.0f, 22.0f, 34.0f, 48.0f}) {
        canvas->drawBullseyes(toRgba(coral), toRgba(paper), size, {{198.0f, y}});
        y += size + 6.0f;
    }
}

/// A wheel with spokes and a marked rim, as high as 2.
void recordWheel(vellis::Canvas& canvas) {
    const auto rim = aroundCurve(64, [](float t) { return onCircle(2.0f * pi * t); });
    canvas.drawTriangleFan(toRgba(sand), rim);
    std::vector<glm::vec2> spokes;
    for (int i = 0; i < 7; ++i) {
        spokes.push_back(glm::vec2(0.0f));
        spokes.push_back(onCircle(2.0f * pi * static_cast<float>(i) / 7.0f));
    }
    canvas.drawLines(Stroke(toRgba(navy), 1.5f), spokes);
    canvas.drawLineLoop(Stroke(toRgba(ink), 2.5f), rim);
    canvas.drawBullseyes(toRgba(coral), toRgba(paper), 9.0f, {onCircle(0.45f, 0.62f)});
}

/// One picture of a wheel, turned and scaled; its lines keep their widths.
void drawPictures(const Canvas& surface) {
    const auto recorder = vellis::Canvas::make();
    recorder->setPixelRatio(surface.length(1.0f));
    recorder->beginPicture(panelPixels);
    recordWheel(*recorder);
    const auto wheel = recorder->endPicture();

    const PanelCanvas canvas(surface);
    const auto drawAt = [&](const glm::vec2& at, float angle, const glm::vec2& size) {
        const glm::mat4 place = glm::translate(glm::mat4(1.0f), glm::vec3(at, 0.0f));
        const glm::mat4 turned = glm::rotate(place, angle, glm::vec3(0.0f, 0.0f, 1.0f));
        canvas->setTransform(glm::scale(turned, glm::vec3(size, 1.0f)));
        canvas->drawPicture(wheel);
    };
    for (int i = 0; i < 9; ++i) {
        const auto number = static_cast<float>(i);
        const glm::vec2 at = glm::vec2(120.0f) + onCircle(0.62f * number - 1.9f, 86.0f);
        drawAt(at, 0.7f * number, glm::vec2(9.0f + 2.0f * number));
    }
    drawAt({120.0f, 120.0f}, -0.4f, {48.0f, 30.0f});
}

/// Areas with a colour for each point.
void drawColoredAreas(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> around = {coral, sand, teal, blue, plum, coral};
    std::vector<glm::vec2> ring;
    std::vector<glm::vec4> colors;
    for (int i = 0; i <= 90; ++i) {
        const float t = static_cast<float>(i) / 90.0f;
        const glm::vec4 color = blendRgba(around, t);
        for (const float radius : {34.0f, 62.0f}) {
            ring.push_back(glm::vec2(76.0f, 76.0f) + onCircle(2.0f * pi * t, radius));
            colors.push_back(radius > 40.0f ? color : glm::mix(color, glm::vec4(1.0f), 0.65f));
        }
    }
    canvas->drawTriangleStrip(colors, ring);
    canvas->drawQuad(
        std::vector<glm::vec4>{toRgba(navy), toRgba(teal), toRgba(sand), toRgba(coral)},
        {{158.0f, 18.0f}, {226.0f, 18.0f}, {226.0f, 132.0f}, {158.0f, 132.0f}});
    const auto hexagon = aroundCurve(
        6, [](float t) { return glm::vec2(56.0f, 188.0f) + onCircle(2.0f * pi * t, 40.0f); });
    std::vector<glm::vec2> fan = {{56.0f, 188.0f}};
    fan.insert(fan.end(), hexagon.begin(), hexagon.end());
    fan.push_back(hexagon.front());
    std::vector<glm::vec4> fanColors = {toRgba(paper)};
    for (int i = 0; i <= 6; ++i)
        fanColors.push_back(toRgba(i % 2 == 0 ? plum : orange));
    canvas->drawTriangleFan(fanColors, fan);
    canvas->drawQuad(toRgba(sky), Stroke(toRgba(navy), 4.0f),
                     {{118.0f, 158.0f}, {160.0f, 148.0f}, {168.0f, 226.0f}, {112.0f, 220.0f}});
    canvas->drawTriangles(std::vector<glm::vec4>{toRgba(coral), toRgba(coral, 0.0f), toRgba(coral)},
                          {{182.0f, 226.0f}, {204.0f, 148.0f}, {228.0f, 226.0f}});
}

} // namespace

std::vector<Panel> canvasShapePanels() {
    return {
        {"canvas-marks",
         "points, bullseyes",
         1,
         drawMarks,
         {
             widthBetween({165, 36}, {213, 36}, 40, 42),
             widthBetween({189, 10}, {189, 62}, 40, 42),
             widthBetween({131, 36}, {165, 36}, 26, 28),
             widthBetween({69, 36}, {85, 36}, 8, 9),
             widthBetween({35, 36}, {45, 36}, 2, 4),
             widthBetween({22, 36}, {29, 36}, 0, 2),
             ColorAt{{198, 189}, coral},
             ColorAt{{198, 177}, paper},
             ColorAt{{198, 169}, coral},
             ColorAt{{198, 149}, coral},
             ColorAt{{198, 141}, paper},
             ColorAt{{198, 134}, coral},
             ColorAt{{230, 189}, paper},
             EdgeBetween{{177, 189}, {187, 189}, coral, paper},
             EdgeBetween{{226, 189}, {220, 189}, paper, coral},
         }},
        {"canvas-pictures",
         "pictures",
         1,
         drawPictures,
         {
             ColorAt{{120, 120}, navy, 20},
             ColorAt{{110, 100}, sand},
             ColorAt{{140, 130}, sand},
             ColorAt{{20, 120}, sand},
             ColorAt{{34, 127}, navy, 20},
             ColorAt{{60, 60}, paper},
             ColorAt{{120, 220}, paper},
             EdgeBetween{{140, 72}, {140, 87}, paper, ink, 40},
             MixedBetween{{4, 120}, {18, 120}, paper, sand, 2, 5}, // rims as wide as each other
             MixedBetween{{92, 20}, {92, 34}, paper, sand, 2, 5},
         }},
        {"canvas-areas",
         "areas",
         4,
         drawColoredAreas,
         {
             ColorAt{{160, 20}, {43, 74, 101}},
             ColorAt{{224, 20}, {46, 156, 141}},
             ColorAt{{224, 130}, {234, 198, 110}},
             ColorAt{{160, 130}, {229, 114, 82}},
             ColorAt{{76, 20}, {133, 117, 148}},
             ColorAt{{122, 76}, {240, 163, 144}},
             ColorAt{{76, 122}, {213, 213, 167}},
             ColorAt{{76, 76}, paper},
             ColorAt{{56, 188}, {249, 245, 240}},
             ColorAt{{20, 188}, {243, 170, 113}},
             ColorAt{{140, 190}, sky},
             ColorAt{{204, 224}, {231, 114, 84}},
             ColorAt{{204, 180}, {242, 191, 176}},
             EdgeBetween{{104, 190}, {114, 190}, paper, navy},
             MixedBetween{{104, 190}, {125, 190}, paper, sky, 4, 6},
         }},
    };
}

} // namespace gallery

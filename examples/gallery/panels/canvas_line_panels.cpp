/// Panels of a canvas's strokes: joins, caps, widths, dashes and colours.

#include <vector>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/panel_canvas.hpp>
#include <gallery/panels/panel_groups.hpp>

namespace gallery {
namespace {

using namespace palette;
using vellis::Stroke;

Stroke strokeOf(Color color, float width, Stroke::Join join = Stroke::Join::Miter,
                Stroke::Cap cap = Stroke::Cap::Butt) {
    Stroke stroke(toRgba(color), width);
    stroke.join = join;
    stroke.cap = cap;
    return stroke;
}

/// Each join, from left to right, with each cap, from top to bottom. Thin lines show where the
/// points are.
void drawJoins(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const Stroke::Join joins[] = {Stroke::Join::Miter, Stroke::Join::Round, Stroke::Join::Bevel};
    const Stroke::Cap caps[] = {Stroke::Cap::Butt, Stroke::Cap::Square, Stroke::Cap::Round};
    const Color colors[] = {navy, teal, coral};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const glm::vec2 corner(5.0f + 76.0f * static_cast<float>(column),
                                   9.0f + 74.0f * static_cast<float>(row));
            const std::vector<glm::vec2> points = {corner + glm::vec2(16.0f, 54.0f),
                                                   corner + glm::vec2(38.0f, 22.0f),
                                                   corner + glm::vec2(60.0f, 54.0f)};
            canvas->drawLineStrip(strokeOf(colors[row], 20.0f, joins[column], caps[row]), points);
            canvas->drawLineStrip(Stroke(toRgba(paper), 1.5f), points);
            canvas->drawPoints(toRgba(paper), 5.0f, points);
        }
    }
}

/// A wedge with its tip up.
std::vector<glm::vec2> wedge(float x, float y, float degrees) {
    const float half = glm::radians(degrees) / 2.0f;
    const glm::vec2 arm(60.0f * std::sin(half), 60.0f * std::cos(half));
    return {{x - arm.x, y + arm.y}, {x, y}, {x + arm.x, y + arm.y}};
}

/// Above, one angle under miter limits from 2 to 10: its miter is 3.9 widths long. Below, angles
/// under a limit of 4, which 29 degrees need.
void drawMiterLimits(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    Stroke stroke = strokeOf(navy, 11.0f);
    float x = 36.0f;
    for (const float limit : {2.0f, 3.5f, 4.0f, 10.0f}) {
        stroke.miterLimit = limit;
        canvas->drawLineStrip(stroke, wedge(x, 40.0f, 30.0f));
        x += 56.0f;
    }
    stroke.color = toRgba(teal);
    stroke.miterLimit = 4.0f;
    x = 26.0f;
    for (const float degrees : {16.0f, 28.0f, 30.0f, 60.0f}) {
        canvas->drawLineStrip(stroke, wedge(x, 150.0f, degrees));
        x += 32.0f + degrees;
    }
}

/// Lines of widths from 0.25 to 40 pixels.
void drawCanvasWidths(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> colors = {navy, blue, teal, sand, orange, coral, plum};
    const float widths[] = {0.25f, 0.5f, 0.75f, 1.0f,  1.5f,  2.0f,
                            3.0f,  5.0f, 8.0f,  12.0f, 20.0f, 40.0f};
    float top = 12.0f;
    for (int i = 0; i < 12; ++i) {
        const float y = top + widths[i] / 2.0f;
        const Stroke stroke(blendRgba(colors, static_cast<float>(i) / 11.0f), widths[i]);
        canvas->drawLineStrip(stroke, {{30.0f, y + 8.0f}, {120.0f, y}, {210.0f, y + 8.0f}});
        top += widths[i] + 9.0f;
    }
}

/// Patterns of dashes along lines and curves.
void drawCanvasDashes(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const Stroke plain = strokeOf(navy, 5.0f);
    const Stroke round = strokeOf(coral, 7.0f, Stroke::Join::Round, Stroke::Cap::Round);
    const Stroke lines[] = {
        plain.dashed({{20.0f, 10.0f}}),
        plain.dashed({{20.0f, 10.0f}}, 10.0f),
        plain.dashed({{20.0f, 10.0f}}, 20.0f),
        plain.dashed({{24.0f, 6.0f}, {6.0f, 6.0f}}),
        plain.dashed({{24.0f, 5.0f}, {5.0f, 5.0f}, {5.0f, 5.0f}, {12.0f, 5.0f}}),
        round.dashed({{0.0f, 12.0f}}), // dots
        round.dashed({{16.0f, 14.0f}}),
        round.dashed({{14.0f, 14.0f}, {0.0f, 14.0f}}),
    };
    float y = 18.0f;
    for (const Stroke& stroke : lines) {
        canvas->drawLineStrip(stroke, {{16.0f, y}, {224.0f, y}});
        y += 14.0f;
    }
    const auto wave = alongCurve(120, [](float t) {
        return glm::vec2(16.0f + 208.0f * t, 150.0f - 16.0f * std::sin(4.0f * pi * t));
    });
    canvas->drawLineStrip(strokeOf(teal, 4.0f).dashed({{12.0f, 6.0f}}), wave);
    const auto ring = aroundCurve(
        90, [](float t) { return glm::vec2(56.0f, 202.0f) + onCircle(2.0f * pi * t, 26.0f); });
    canvas->drawLineLoop(round.dashed({{0.0f, 16.336f}}, 8.0f), ring); // of which ten go around
    const Stroke cornered = strokeOf(plum, 8.0f).dashed({{26.0f, 9.0f}});
    canvas->drawLineStrip(cornered, {{108.0f, 226.0f},
                                     {132.0f, 182.0f},
                                     {156.0f, 226.0f},
                                     {180.0f, 182.0f},
                                     {220.0f, 182.0f},
                                     {220.0f, 226.0f},
                                     {186.0f, 226.0f}});
}

/// Half-transparent strokes that cross themselves: to the left each pixel is painted once, to the
/// right for each time they cross.
void drawOverlaps(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    canvas->drawRect(toRgba(sand), {0.0f, 52.0f}, {240.0f, 70.0f});
    canvas->drawRect(toRgba(sand), {0.0f, 172.0f}, {240.0f, 190.0f});
    const Stroke star(toRgba(navy, 0.5f), 9.0f);
    Stroke knot(toRgba(coral, 0.5f), 8.0f);
    knot.join = Stroke::Join::Round;
    for (const float x : {62.0f, 178.0f}) {
        canvas->setOverlap(x < 120.0f ? vellis::Canvas::Overlap::Once
                                      : vellis::Canvas::Overlap::Often);
        const auto tips = aroundCurve(5, [&](float t) {
            return glm::vec2(x, 66.0f) + onCircle(4.0f * pi * t - pi / 2.0f, 38.0f);
        });
        canvas->drawLineLoop(star, tips);
        const auto loops = aroundCurve(180, [&](float t) {
            const float angle = 2.0f * pi * t;
            return glm::vec2(x, 178.0f) +
                   onCircle(2.0f * angle, 28.0f + 16.0f * std::cos(3.0f * angle));
        });
        canvas->drawLineLoop(knot, loops);
    }
}

/// Colours that change along lines.
void drawGradients(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const std::vector<Color> rainbow = {navy, blue, teal, sand, orange, coral, plum};
    std::vector<glm::vec4> colors;
    const auto spiral = alongCurve(160, [&](float t) {
        colors.push_back(blendRgba(rainbow, t));
        return glm::vec2(120.0f, 92.0f) + onCircle(6.0f * pi * t, 12.0f + 62.0f * t);
    });
    Stroke stroke(toRgba(ink), 10.0f);
    stroke.cap = Stroke::Cap::Round;
    stroke.join = Stroke::Join::Round;
    canvas->drawLineStrip(stroke, spiral, colors);
    stroke.width = 14.0f;
    canvas->drawLines(stroke, std::vector<glm::vec2>{{30.0f, 192.0f}, {210.0f, 192.0f}},
                      std::vector<glm::vec4>{toRgba(teal), toRgba(coral)});
    canvas->drawLines(stroke, std::vector<glm::vec2>{{30.0f, 218.0f}, {210.0f, 218.0f}},
                      std::vector<glm::vec4>{toRgba(navy), toRgba(navy, 0.0f)});
}

} // namespace

std::vector<Panel> canvasLinePanels() {
    // Half transparent over paper, once and twice.
    constexpr Color navyOnce{144, 159, 171};
    constexpr Color navyTwice{91, 115, 136};
    return {
        {"canvas-joins",
         "joins and caps",
         1,
         drawJoins,
         {
             ColorAt{{43, 16}, navy},
             ColorAt{{119, 18}, paper},
             ColorAt{{119, 24}, navy},
             ColorAt{{195, 23}, paper},
             ColorAt{{195, 27}, navy},
             ColorAt{{16, 69}, paper}, // beyond the last point: no cap
             ColorAt{{17, 142}, teal}, // a square one
             ColorAt{{23, 148}, teal}, // its corner
             ColorAt{{16, 217}, coral},
             ColorAt{{23, 222}, paper},
             EdgeBetween{{43, 8}, {43, 16}, paper, navy},
             EdgeBetween{{119, 170}, {119, 160}, coral, paper},
         }},
        {"canvas-miter-limits",
         "miter limits",
         1,
         drawMiterLimits,
         {
             ColorAt{{36, 25}, paper},
             ColorAt{{36, 42}, navy},
             ColorAt{{92, 25}, paper},
             ColorAt{{148, 25}, navy},
             ColorAt{{204, 25}, navy},
             ColorAt{{26, 142}, paper},
             ColorAt{{74, 142}, paper},
             ColorAt{{134, 136}, teal},
             ColorAt{{196, 144}, teal},
             EdgeBetween{{36, 30}, {36, 42}, paper, navy},
             widthBetween({14, 60}, {36, 60}, 11, 13),
         }},
        {"canvas-widths",
         "widths up to 40",
         1,
         drawCanvasWidths,
         {
             widthBetween({60, 12}, {60, 21}, 1, 2),
             widthBetween({60, 50}, {60, 60}, 1, 3),
             widthBetween({60, 72}, {60, 83}, 3, 5),
             widthBetween({60, 117}, {60, 136}, 12, 14),
             widthBetween({60, 138}, {60, 164}, 20, 22),
             widthBetween({60, 166}, {60, 225}, 40, 42),
             ColorAt{{120, 185}, plum},
             ColorAt{{20, 185}, paper},
             ColorAt{{220, 185}, paper},
             EdgeBetween{{60, 225}, {60, 200}, paper, plum},
         }},
        {"canvas-dashes",
         "dashes",
         1,
         drawCanvasDashes,
         {
             ColorAt{{26, 18}, navy},
             ColorAt{{41, 18}, paper},
             ColorAt{{51, 18}, navy},
             ColorAt{{31, 32}, paper},
             ColorAt{{41, 32}, navy},
             ColorAt{{20, 46}, paper},
             ColorAt{{31, 46}, navy},
             ColorAt{{43, 60}, paper},
             ColorAt{{49, 60}, navy},
             ColorAt{{55, 60}, paper},
             ColorAt{{28, 88}, coral},
             ColorAt{{22, 88}, paper},
             ColorAt{{24, 102}, coral},
             ColorAt{{39, 102}, paper},
             ColorAt{{44, 116}, coral},
             ColorAt{{37, 116}, paper},
             ColorAt{{81, 210}, coral},
             ColorAt{{31, 194}, coral},
             ColorAt{{82, 202}, paper},
             ColorAt{{114, 215}, plum},
             ColorAt{{122, 199}, paper},
             ColorAt{{132, 180}, plum}, // around a corner
             EdgeBetween{{26, 18}, {41, 18}, navy, paper},
         }},
        {"canvas-overlaps",
         "once and often",
         1,
         drawOverlaps,
         {
             ColorAt{{62, 40}, navyOnce},
             ColorAt{{178, 40}, navyOnce},
             ColorAt{{62, 81}, navyOnce},
             ColorAt{{178, 81}, navyTwice},
             ColorAt{{34, 178}, {233, 155, 96}, 8},
             ColorAt{{150, 178}, {232, 133, 88}, 8},
             ColorAt{{120, 60}, sand},
             ColorAt{{120, 100}, paper},
         }},
        {"canvas-gradients",
         "gradients",
         1,
         drawGradients,
         {
             ColorAt{{132, 92}, navy, 16},
             ColorAt{{194, 92}, plum, 16},
             ColorAt{{32, 192}, teal},
             ColorAt{{120, 192}, {136, 134, 112}, 12},
             ColorAt{{208, 192}, coral},
             ColorAt{{32, 218}, navy},
             ColorAt{{120, 218}, navyOnce, 12},
             ColorAt{{208, 218}, paper, 12},
             ColorAt{{120, 120}, paper},
             widthBetween({120, 180}, {120, 204}, 14, 16),
         }},
    };
}

} // namespace gallery

/// The words at the plot.

#include "words.hpp"

#include <algorithm>
#include <ctime>
#include <iostream>
#include <stdexcept>
#include <vector>

#include <vellis/text.hpp>

#include <common/system_font.hpp>

#include "axes.hpp"
#include "colors.hpp"
#include "layout.hpp"

namespace plot {

using vellis::text::Anchor;
using vellis::text::Font;

struct Fonts {
    std::shared_ptr<Font> text;
    std::shared_ptr<Font> title;
};

namespace {

constexpr const char* usualFont = "DejaVuSans.ttf";
constexpr float textSize = 12.0f;  ///< in pixels
constexpr float titleSize = 18.0f; ///< likewise
constexpr float gap = 4.0f;        ///< between a tick and its number, and from the window's edges
constexpr float quarterTurn = 1.57079633f;

constexpr const char* title = "One million samples";
constexpr const char* unit = "voltage (V)";

float widthOf(const std::shared_ptr<Font>& font, const std::string& text) {
    return static_cast<float>(vellis::text::pixelsOf(font->measure(text).advance));
}

float heightOf(const std::shared_ptr<Font>& font) {
    return static_cast<float>(vellis::text::pixelsOf(font->metrics().lineHeight));
}

/// Where words are written, and of what.
struct Page {
    const std::shared_ptr<vellis::Canvas>& canvas;
    const Fonts& fonts;
    glm::vec2 size;
    const Subject& subject;

    /// What would be cut off at the window's edge is left out.
    void write(const glm::vec2& at, const std::string& text, const glm::vec4& color,
               Anchor anchor) const {
        write(fonts.text, at, text, color, anchor);
    }
    void write(const std::shared_ptr<Font>& font, const glm::vec2& at, const std::string& text,
               const glm::vec4& color, Anchor anchor) const {
        const glm::vec2 extent(widthOf(font, text), heightOf(font));
        // Anchors stand in rows of three, from the upper left one on.
        const int place = static_cast<int>(anchor);
        const glm::vec2 low = at - extent * glm::vec2(place % 3, 2 - place / 3) / 2.0f;
        const glm::vec2 high = low + extent;
        if (low.x >= gap && low.y >= gap && high.x + gap <= size.x && high.y + gap <= size.y)
            vellis::text::draw(canvas, font, at, text, color, anchor);
    }
};

/// The day of a time, in the words of the C locale.
std::string dayOf(double milliseconds) {
    const auto seconds = static_cast<std::time_t>(milliseconds / 1000.0);
    char text[64] = "";
    if (const std::tm* const day = std::gmtime(&seconds))
        std::strftime(text, sizeof(text), "%d %B %Y", day);
    return text;
}

/// Centred below the axis.
void writeTimes(const Page& page, const Area& area) {
    const float y = area.low.y - tickLength - gap;
    for (const Tick& tick : timeTicks(area, page.subject.shown))
        page.write({tick.place, y}, tick.number, ink, Anchor::Top);
    page.write({(area.low.x + area.high.x) / 2.0f, y - heightOf(page.fonts.text) - gap},
               "time on " + dayOf(page.subject.shown.low.x) + " (UTC)", pale, Anchor::Top);
}

/// To the left of the axis, their last digits below each other.
void writeValues(const Page& page, const Area& area) {
    const float x = area.low.x - tickLength - gap;
    for (const Tick& tick : valueTicks(area, page.subject.shown))
        page.write({x, tick.place}, tick.number, ink, Anchor::Right);
    const glm::vec2 at(heightOf(page.fonts.text), (area.low.y + area.high.y) / 2.0f);
    if (widthOf(page.fonts.text, unit) <= area.size().y)
        vellis::text::draw(page.canvas, page.fonts.text, at, unit, pale, Anchor::Center,
                           quarterTurn);
}

/// The times at both ends of the whole signal, below it.
void writeEnds(const Page& page, const Area& area) {
    const float y = area.low.y - gap;
    const std::string first = clockTime(page.subject.all.low.x, 1000.0);
    const std::string last = clockTime(page.subject.all.high.x, 1000.0);
    const Fonts& fonts = page.fonts;
    page.write({area.low.x, y}, first, pale, Anchor::TopLeft);
    if (widthOf(fonts.text, first) + gap + widthOf(fonts.text, last) <= area.size().x)
        page.write({area.high.x, y}, last, pale, Anchor::TopRight);
}

/// A sign of the plot, and what it stands for.
struct Entry {
    void (*draw)(vellis::Canvas& canvas, const glm::vec2& middle);
    std::string text;
};

void drawCurveSign(vellis::Canvas& canvas, const glm::vec2& middle) {
    canvas.drawLineStrip(vellis::Stroke(teal, 2.0f),
                         {middle - glm::vec2(9.0f, 0.0f), middle + glm::vec2(9.0f, 0.0f)});
}

void drawMarkSign(vellis::Canvas& canvas, const glm::vec2& middle) {
    canvas.drawBullseyes(coral, white, 14.0f, {middle});
}

void drawPartSign(vellis::Canvas& canvas, const glm::vec2& middle) {
    const glm::vec2 half(6.0f);
    canvas.drawRect(sand, middle - half, middle + half);
}

/// From the right to the left.
void writeLegend(const Page& page, const glm::vec2& end, float leftmost) {
    constexpr float signWidth = 26.0f;
    const Entry entries[] = {
        {drawPartSign, "part shown"},
        {drawMarkSign, "maximum, " + valueText(page.subject.highest.y, 2) + " V"},
        {drawCurveSign, "voltage"},
    };
    float right = end.x;
    for (const Entry& entry : entries) {
        const float left = right - widthOf(page.fonts.text, entry.text);
        if (left - signWidth < leftmost)
            return;
        page.write({right, end.y}, entry.text, ink, Anchor::Right);
        entry.draw(*page.canvas, glm::vec2(left - signWidth / 2.0f, end.y));
        right = left - signWidth - 4.0f * gap;
    }
}

void writeTitle(const Page& page, const Area& area) {
    const glm::vec2 at(area.low.x, (area.high.y + page.size.y) / 2.0f);
    page.write(page.fonts.title, at, title, ink, Anchor::Left);
    const float end = at.x + widthOf(page.fonts.title, title);
    writeLegend(page, {area.high.x, at.y}, end + 4.0f * gap);
}

} // namespace

std::shared_ptr<const Fonts> loadFonts(const std::string& file) {
    const std::string path = file.empty() ? common::findSystemFont(usualFont) : file;
    if (path.empty()) {
        std::cerr << "There is no " << usualFont << " among the system's fonts, and so no words: "
                  << "install it, for instance with `apt-get install fonts-dejavu-core`, or name "
                  << "another font with --font.\n";
        return nullptr;
    }
    Fonts fonts{Font::load(path, textSize), Font::load(path, titleSize)};
    if (fonts.text == nullptr || fonts.title == nullptr)
        throw std::runtime_error("The font " + path + " cannot be used: see above.");
    return std::make_shared<const Fonts>(std::move(fonts));
}

void writeWords(const std::shared_ptr<vellis::Canvas>& canvas, const Fonts& fonts,
                const glm::uvec2& size, const Subject& subject) {
    const Page page{canvas, fonts, glm::vec2(size), subject};
    const Area detail = detailArea(size);
    writeTimes(page, detail);
    writeValues(page, detail);
    writeEnds(page, overviewArea(size));
    writeTitle(page, overviewArea(size));
}

} // namespace plot

#include <gallery/frame/probe.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <gallery/frame/panel.hpp>

namespace gallery {
namespace {

/// The most pixels that an antialiased edge takes.
constexpr std::size_t edgeWidth = 3;

std::string text(Color color) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", static_cast<unsigned>(color.red),
                  static_cast<unsigned>(color.green), static_cast<unsigned>(color.blue));
    return buffer;
}

std::string text(Point point) {
    return "(" + std::to_string(point.x) + ", " + std::to_string(point.y) + ")";
}

std::string text(Point from, Point to) {
    return text(from) + " to " + text(to);
}

Color colorAt(const offscreen::Image& image, Point point) {
    const unsigned char* pixel =
        image.at(static_cast<unsigned int>(point.x), static_cast<unsigned int>(point.y));
    return {pixel[0], pixel[1], pixel[2]};
}

bool matches(Color found, Color expected, int tolerance) {
    return std::abs(found.red - expected.red) <= tolerance &&
           std::abs(found.green - expected.green) <= tolerance &&
           std::abs(found.blue - expected.blue) <= tolerance;
}

/// The colours on the straight way between two points, both included.
std::vector<Color> colorsBetween(const offscreen::Image& image, Point from, Point to) {
    const int steps = std::max({std::abs(to.x - from.x), std::abs(to.y - from.y), 1});
    std::vector<Color> colors;
    for (int i = 0; i <= steps; ++i) {
        colors.push_back(colorAt(
            image, {from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps}));
    }
    return colors;
}

// Each probe has a function that gives the failure as a sentence, or nothing.

std::string failure(const ColorAt& probe, const offscreen::Image& image) {
    const Color found = colorAt(image, probe.at);
    if (matches(found, probe.color, probe.tolerance))
        return {};
    return "at " + text(probe.at) + " the colour is " + text(found) + ", not " + text(probe.color) +
           ".";
}

std::string failure(const EdgeBetween& probe, const offscreen::Image& image) {
    const std::vector<Color> colors = colorsBetween(image, probe.from, probe.to);
    const auto before = [&](Color c) { return matches(c, probe.before, probe.tolerance); };
    const auto after = [&](Color c) { return matches(c, probe.after, probe.tolerance); };
    const auto edge = std::find_if_not(colors.begin(), colors.end(), before);
    const auto edgeEnd = std::find_if(edge, colors.end(), after);
    const bool changesOnce = edge != colors.begin() && edgeEnd != colors.end() &&
                             static_cast<std::size_t>(edgeEnd - edge) <= edgeWidth &&
                             std::all_of(edgeEnd, colors.end(), after);
    if (changesOnce)
        return {};
    return "from " + text(probe.from, probe.to) + " the colour does not change once from " +
           text(probe.before) + " to " + text(probe.after) + "; it begins with " +
           text(colors.front()) + " and ends with " + text(colors.back()) + ".";
}

std::string failure(const MixedBetween& probe, const offscreen::Image& image) {
    const std::vector<Color> colors = colorsBetween(image, probe.from, probe.to);
    const auto mixed = std::count_if(colors.begin(), colors.end(), [&](Color c) {
        return !matches(c, probe.first, probe.tolerance) &&
               !matches(c, probe.second, probe.tolerance);
    });
    if (mixed >= probe.minimum && mixed <= probe.maximum)
        return {};
    return "from " + text(probe.from, probe.to) + " " + std::to_string(mixed) +
           " pixels are neither " + text(probe.first) + " nor " + text(probe.second) +
           "; they should be " + std::to_string(probe.minimum) + " to " +
           std::to_string(probe.maximum) + ".";
}

} // namespace

MixedBetween widthBetween(Point from, Point to, int minimum, int maximum) {
    return {from, to, palette::paper, palette::paper, minimum, maximum};
}

MixedBetween widthBetween(Point from, Point to, int width) {
    return widthBetween(from, to, width, width);
}

std::vector<std::string> check(const Panel& panel, const offscreen::Image& image) {
    const std::string title = "Panel " + std::string(panel.name) + ": ";
    if (image.width != panelSize || image.height != panelSize)
        return {title + "the picture has not the size of a panel."};
    std::vector<std::string> failures;
    for (const Probe& probe : panel.probes) {
        const std::string sentence =
            std::visit([&](const auto& p) { return failure(p, image); }, probe);
        if (!sentence.empty())
            failures.push_back(title + sentence);
    }
    return failures;
}

} // namespace gallery

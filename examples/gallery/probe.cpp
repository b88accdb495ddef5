#include <gallery/probe.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <gallery/panel.hpp>

namespace gallery {
namespace {

/// The most pixels that an antialiased edge takes.
constexpr std::size_t edgeWidth = 3;

std::string text(Colour colour) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", static_cast<unsigned>(colour.red),
                  static_cast<unsigned>(colour.green), static_cast<unsigned>(colour.blue));
    return buffer;
}

std::string text(Point point) {
    return "(" + std::to_string(point.x) + ", " + std::to_string(point.y) + ")";
}

std::string text(Point from, Point to) {
    return text(from) + " to " + text(to);
}

Colour colourAt(const offscreen::Image& image, Point point) {
    const unsigned char* pixel =
        image.at(static_cast<unsigned int>(point.x), static_cast<unsigned int>(point.y));
    return {pixel[0], pixel[1], pixel[2]};
}

bool matches(Colour found, Colour expected, int tolerance) {
    return std::abs(found.red - expected.red) <= tolerance &&
           std::abs(found.green - expected.green) <= tolerance &&
           std::abs(found.blue - expected.blue) <= tolerance;
}

/// The colours on the straight way between two points, both included.
std::vector<Colour> coloursBetween(const offscreen::Image& image, Point from, Point to) {
    const int steps = std::max({std::abs(to.x - from.x), std::abs(to.y - from.y), 1});
    std::vector<Colour> colours;
    for (int i = 0; i <= steps; ++i) {
        colours.push_back(colourAt(
            image, {from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps}));
    }
    return colours;
}

// Each probe has a function that gives the failure as a sentence, or nothing.

std::string failure(const ColourAt& probe, const offscreen::Image& image) {
    const Colour found = colourAt(image, probe.at);
    if (matches(found, probe.colour, probe.tolerance))
        return {};
    return "at " + text(probe.at) + " the colour is " + text(found) + ", not " +
           text(probe.colour) + ".";
}

std::string failure(const EdgeBetween& probe, const offscreen::Image& image) {
    const std::vector<Colour> colours = coloursBetween(image, probe.from, probe.to);
    const auto before = [&](Colour c) { return matches(c, probe.before, probe.tolerance); };
    const auto after = [&](Colour c) { return matches(c, probe.after, probe.tolerance); };
    const auto edge = std::find_if_not(colours.begin(), colours.end(), before);
    const auto edgeEnd = std::find_if(edge, colours.end(), after);
    const bool changesOnce = edge != colours.begin() && edgeEnd != colours.end() &&
                             static_cast<std::size_t>(edgeEnd - edge) <= edgeWidth &&
                             std::all_of(edgeEnd, colours.end(), after);
    if (changesOnce)
        return {};
    return "from " + text(probe.from, probe.to) + " the colour does not change once from " +
           text(probe.before) + " to " + text(probe.after) + "; it begins with " +
           text(colours.front()) + " and ends with " + text(colours.back()) + ".";
}

std::string failure(const MixedBetween& probe, const offscreen::Image& image) {
    const std::vector<Colour> colours = coloursBetween(image, probe.from, probe.to);
    const auto mixed = std::count_if(colours.begin(), colours.end(), [&](Colour c) {
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

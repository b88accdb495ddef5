#include "plot.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>

#include <vellis/framebuffer.hpp>

namespace plot {
namespace {

using vellis::Framebuffer;
using vellis::Stroke;

const glm::vec4 paper(0.98f, 0.97f, 0.95f, 1.0f);
const glm::vec4 ink(0.17f, 0.23f, 0.28f, 1.0f);
const glm::vec4 frame(0.85f, 0.82f, 0.77f, 1.0f);
const glm::vec4 teal(0.16f, 0.62f, 0.56f, 1.0f);
const glm::vec4 sand(0.93f, 0.78f, 0.43f, 1.0f);
const glm::vec4 coral(0.91f, 0.44f, 0.32f, 1.0f);
const glm::vec4 white(1.0f);

constexpr float curveWidth = 1.5f;
constexpr float tickLength = 6.0f;
constexpr std::size_t overviewStep = 250; ///< samples, less than a pixel on any screen

/// An area's corner in the middle of a pixel, where a line of one pixel is sharp.
Area snapped(const glm::vec2& low, const glm::vec2& high) {
    const glm::vec2 corner = glm::floor(low) + 0.5f;
    return {corner, glm::max(glm::floor(high) + 0.5f, corner + 1.0f)};
}

Area overviewArea(const glm::uvec2& size) {
    const glm::vec2 top(size);
    return snapped({44.0f, top.y - 76.0f}, top - glm::vec2(36.0f, 20.0f));
}

/// The distance of ticks, one, two or five times a power of ten.
double tickStep(double span, int mostTicks) {
    const double least = span / mostTicks;
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least)
            return factor * power;
    }
    return 10.0 * power;
}

/// Where the ticks along an axis are, in the middles of pixels.
std::vector<float> ticks(const Area& area, const Range& shown, int axis, int mostTicks) {
    const double size = shown.size()[axis];
    const double step = tickStep(size, mostTicks);
    std::vector<float> places;
    for (double number = std::ceil(shown.low[axis] / step); number * step <= shown.high[axis];
         number += 1.0) {
        const auto at = static_cast<float>((number * step - shown.low[axis]) / size);
        places.push_back(std::floor(area.low[axis] + at * area.size()[axis]) + 0.5f);
    }
    return places;
}

std::vector<float> timeTicks(const Area& area, const Range& shown) {
    return ticks(area, shown, 0, 11);
}

std::vector<float> valueTicks(const Area& area, const Range& shown) {
    return ticks(area, shown, 1, 6);
}

} // namespace

Area detailArea(const glm::uvec2& size) {
    return snapped({44.0f, 40.0f}, glm::vec2(size) - glm::vec2(36.0f, 104.0f));
}

Plot::Plot(const Signal& signal)
    : canvas_(vellis::Canvas::make()),
      all_(signal.range()),
      highest_(signal.samples[signal.highest]) {
    // The picture keeps differences from the origin, which are small.
    canvas_->setOrigin({(all_.low.x + all_.high.x) / 2.0, 0.0, 0.0});
    curve_ = record(signal.samples);
    overview_ = record(signal.thinned(overviewStep));
}

std::shared_ptr<vellis::Picture> Plot::record(const std::vector<glm::dvec2>& samples) const {
    canvas_->beginPicture(glm::mat4(1.0f));
    canvas_->drawLineStrip(Stroke(teal, curveWidth), samples);
    return canvas_->endPicture();
}

void Plot::draw(const glm::uvec2& size, const Range& shown) const {
    const Area detail = detailArea(size);
    const auto width = static_cast<float>(size.x);
    const auto height = static_cast<float>(size.y);
    Framebuffer::setViewport(0, 0, size.x, size.y);
    Framebuffer::clearColor(paper);
    canvas_->begin(glm::ortho(0.0f, width, 0.0f, height));
    placeInPixels();
    drawGrid(detail, shown);
    drawSignal(detail, shown);
    drawAxes(detail, shown);
    drawOverview(overviewArea(size), shown);
    canvas_->end();
}

void Plot::drawGrid(const Area& area, const Range& shown) const {
    const Stroke dashes = Stroke(frame).dashed({{6.0f, 4.0f}});
    const glm::vec2 low = area.low + 0.5f; // between pixels, where dashes are sharp
    for (const float x : timeTicks(area, shown))
        canvas_->drawLineStrip(dashes, {{x, low.y}, {x, area.high.y}});
    for (const float y : valueTicks(area, shown))
        canvas_->drawLineStrip(dashes, {{low.x, y}, {area.high.x, y}});
}

void Plot::drawAxes(const Area& area, const Range& shown) const {
    const glm::vec2 low = area.low;
    const glm::vec2 high = area.high;
    canvas_->drawLineStrip(ink, {{low.x, high.y + 8.0f}, low, {high.x + 8.0f, low.y}});
    for (const float x : timeTicks(area, shown))
        canvas_->drawLineStrip(ink, {{x, low.y}, {x, low.y - tickLength}});
    for (const float y : valueTicks(area, shown))
        canvas_->drawLineStrip(ink, {{low.x, y}, {low.x - tickLength, y}});
}

/// The part of the curve that is shown; what GL cuts off is its scissor's.
void Plot::drawSignal(const Area& area, const Range& shown) const {
    canvas_->flush(); // what waits is not to be cut off
    const glm::ivec2 corner = glm::ivec2(area.low) + 1;
    const glm::uvec2 size(area.size());
    Framebuffer::enableScissorTest(corner.x, corner.y, size.x, size.y);
    placeIn(area, shown);
    canvas_->drawPicture(curve_);
    canvas_->drawBullseyes(coral, white, 22.0f, std::array<glm::dvec2, 1>{highest_});
    canvas_->flush();
    Framebuffer::disableScissorTest();
    placeInPixels();
}

/// Where the part is, and all of the curve.
void Plot::drawOverview(const Area& area, const Range& shown) const {
    placeIn(area, all_);
    // As wide as five pixels at least.
    const double least = 2.5 * all_.size().x / static_cast<double>(area.size().x);
    const double middle = (shown.low.x + shown.high.x) / 2.0;
    const double half = std::max(shown.size().x / 2.0, least);
    canvas_->drawRect(sand, glm::dvec2(middle - half, all_.low.y),
                      glm::dvec2(middle + half, all_.high.y));
    canvas_->drawPicture(overview_);
    placeInPixels();
    const glm::vec2 low = area.low;
    const glm::vec2 high = area.high;
    canvas_->drawLineLoop(frame, {low, {high.x, low.y}, high, {low.x, high.y}});
}

/// From now on, points are times and values. The view's corner is the origin, so that the numbers
/// that are left of large ones are small.
void Plot::placeIn(const Area& area, const Range& shown) const {
    const glm::vec2 scale = glm::vec2(glm::dvec2(area.size()) / shown.size());
    const glm::mat4 moved = glm::translate(glm::mat4(1.0f), glm::vec3(area.low, 0.0f));
    canvas_->setOrigin(glm::dvec3(shown.low, 0.0));
    canvas_->setTransform(glm::scale(moved, glm::vec3(scale, 1.0f)));
}

/// From now on, points are in pixels.
void Plot::placeInPixels() const {
    canvas_->setOrigin(glm::dvec3(0.0));
    canvas_->setTransform(glm::mat4(1.0f));
}

} // namespace plot

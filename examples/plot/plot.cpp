#include "plot.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>

#include <vellis/framebuffer.hpp>

#include "axes.hpp"
#include "colors.hpp"

namespace plot {
namespace {

using vellis::Framebuffer;
using vellis::Stroke;

constexpr float curveWidth = 1.5f;
constexpr std::size_t overviewStep = 250; ///< samples, less than a pixel on any screen

} // namespace

Plot::Plot(const Signal& signal, std::shared_ptr<const Fonts> fonts)
    : canvas_(vellis::Canvas::make()),
      fonts_(std::move(fonts)),
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
    drawGrid(*canvas_, detail, shown);
    drawSignal(detail, shown);
    drawAxes(*canvas_, detail, shown);
    drawOverview(overviewArea(size), shown);
    if (fonts_ != nullptr)
        writeWords(canvas_, *fonts_, size, {shown, all_, highest_});
    canvas_->end();
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

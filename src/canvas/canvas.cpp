#include <vellis/canvas/canvas.hpp>

#include <cmath>

#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "canvas/painter.hpp"

namespace vellis {

using canvas::BufferPoints;
using canvas::Kind;
using canvas::Recorder;

namespace {

/// Whether there are texels that a canvas reads: those of two dimensions.
bool isDrawable(const std::shared_ptr<const Texture>& texture) {
    return texture != nullptr && texture->type() == GL_TEXTURE_2D;
}

} // namespace

Canvas::Canvas() : painter_(std::make_unique<canvas::Painter>()) {}

Canvas::~Canvas() = default;

std::shared_ptr<Canvas> Canvas::make() {
    struct Constructible : Canvas {};
    return std::make_shared<Constructible>();
}

// --- Batches and pictures ---

void Canvas::begin(const glm::mat4& mvp) {
    painter_->begin(mvp);
}

void Canvas::flush() {
    painter_->flush();
}

void Canvas::end() {
    painter_->end();
}

void Canvas::setTransform(const glm::mat4& transform) {
    painter_->setTransform(transform);
}

void Canvas::setOrigin(const glm::dvec3& origin) {
    painter_->setOrigin(origin);
}

void Canvas::setPixelRatio(float ratio) {
    painter_->setPixelRatio(ratio);
}

void Canvas::setPixelsDownward(bool isDownward) {
    painter_->setPixelUp(isDownward ? -1.f : 1.f);
}

void Canvas::setOverlap(Overlap overlap) {
    painter_->setPaintsOnce(overlap != Overlap::Often);
}

void Canvas::beginPicture(const glm::mat4& mvp) {
    painter_->beginPicture(mvp);
}

std::shared_ptr<Picture> Canvas::endPicture() {
    auto kept = painter_->endPicture();
    return kept != nullptr ? std::shared_ptr<Picture>(new Picture(std::move(kept))) : nullptr;
}

void Canvas::drawPicture(const std::shared_ptr<const Picture>& picture) {
    if (picture != nullptr)
        painter_->draw(*picture->drawing_);
}

// --- Families ---

void Canvas::drawStroke(Shape shape, const Stroke& stroke, const Points& points,
                        const Colors* colors) {
    if (Recorder* const recorder = painter_->recorder())
        recorder->stroke(shape, stroke, points, colors, painter_->setting());
}

void Canvas::drawStroke(Shape shape, const Stroke& stroke, unsigned int first, unsigned int count,
                        const std::shared_ptr<const VertexBuffer>& buffer,
                        unsigned int dimensions) {
    const float halfWidth = stroke.width * painter_->setting().pixelRatio / 2.f;
    const BufferPoints points = {nullptr, shape,     first,
                                 count,   halfWidth, canvas::toColor(stroke.color)};
    if (!stroke.isAntialiased)
        painter_->drawPoints(Kind::Lines, points, buffer, dimensions, nullptr);
    else if (halfWidth > 0.f && std::isfinite(halfWidth))
        painter_->drawPoints(Kind::Strip, points, buffer, dimensions, &stroke);
}

void Canvas::drawArea(Shape shape, const Colors& colors, const Points& points) {
    if (Recorder* const recorder = painter_->recorder())
        recorder->area(shape, colors, points, painter_->setting());
}

void Canvas::drawArea(Shape shape, const glm::vec4& color, unsigned int first, unsigned int count,
                      const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions) {
    const BufferPoints points = {nullptr, shape, first, count, 0.f, canvas::toColor(color)};
    painter_->drawPoints(Kind::Triangles, points, buffer, dimensions, nullptr);
}

void Canvas::drawPoints(const glm::vec4& color, float size, unsigned int first, unsigned int count,
                        const std::shared_ptr<const VertexBuffer>& buffer,
                        unsigned int dimensions) {
    const float radius = size * painter_->setting().pixelRatio / 2.f;
    const BufferPoints points = {nullptr, Shape::Lines, first,
                                 count,   radius,       canvas::toColor(color)};
    if (radius > 0.f && std::isfinite(radius))
        painter_->drawPoints(Kind::Discs, points, buffer, dimensions, nullptr);
}

void Canvas::drawPoints(const Colors& colors, const Sizes& sizes, const Points& points) {
    if (Recorder* const recorder = painter_->recorder())
        recorder->discs(colors, sizes, points, painter_->setting());
}

void Canvas::drawBullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                           const Points& points) {
    if (Recorder* const recorder = painter_->recorder())
        recorder->bullseyes(colors, colors2, sizes, points, painter_->setting());
}

void Canvas::drawImage(const std::shared_ptr<const Texture>& texture, const ImageFrame& frame,
                       const TexturePart& part, const glm::vec4& tint) {
    Recorder* const recorder = painter_->recorder();
    if (recorder == nullptr || !isDrawable(texture))
        return;
    const glm::dvec2 corners[] = {frame.corner, frame.corner + frame.right, frame.corner + frame.up,
                                  frame.corner + frame.right + frame.up};
    recorder->image(texture, Points(corners, 4), part, canvas::toColor(tint), painter_->setting());
}

void Canvas::drawQuads(const std::shared_ptr<const Texture>& texture, const QuadStyle& style,
                       const glm::vec4& color, const glm::dvec3& place, const PixelQuad* quads,
                       std::size_t count) {
    Recorder* const recorder = painter_->recorder();
    if (recorder == nullptr || quads == nullptr || !isDrawable(texture))
        return;
    const glm::dvec2 inPlane(place.x, place.y);
    const Points point = place.z == 0. ? Points(&inPlane, 1) : Points(&place, 1);
    recorder->quads(texture, style, point, quads, count, canvas::toColor(color),
                    painter_->setting());
}

void Canvas::drawQuad(const Colors& fillColors, const Stroke& outline, const Points& points) {
    constexpr std::size_t numCorners = 4;
    for (std::size_t i = 0; i + numCorners <= points.count; i += numCorners) {
        const Points corners = points.part(i, numCorners);
        drawQuad(fillColors.part(i), corners);
        drawLineLoop(outline, corners);
    }
}

} // namespace vellis

#include "canvas/painter.hpp"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <vellis/gl.hpp>

#include "canvas/matrices.hpp"
#include "gl/debug_group.hpp"
#include "gl/operation.hpp"

namespace vellis::canvas {
namespace {

/// Whether points under a transform can be numbers of their own: it does not divide by them.
bool isAffine(const glm::mat4& transform) {
    return transform[0][3] == 0.f && transform[1][3] == 0.f && transform[2][3] == 0.f &&
           transform[3][3] == 1.f;
}

} // namespace

Painter::Painter() : index_(gl::indexHere(gl::Kind::VertexArray)) {}

Painter::~Painter() = default;

// --- Batches ---

void Painter::begin(const glm::mat4& mvp) {
    if (mode_ == Mode::Recording)
        endPicture();
    else
        end();
    mode_ = Mode::Drawing;
    mvp_ = mvp;
    knowsViewport_ = false;
    setTransform(glm::mat4(1.f));
}

void Painter::flush() {
    knowsViewport_ = false;
    if (mode_ == Mode::Recording || drawing_.commands.empty())
        return;
    // What waits is gone also where it cannot be drawn.
    struct Clear {
        Drawing& drawing;
        ~Clear() { drawing.clear(); }
    } const clear{drawing_};
    if (!isHere())
        return;
    const gl::Operation operation("Canvas::flush");
    const gl::DebugGroup group(groupName());
    renderer().drawStreamed(drawing_);
}

void Painter::end() {
    if (mode_ != Mode::Drawing)
        return;
    flush();
    mode_ = Mode::Idle;
}

bool Painter::isHere() const {
    if (glDrawArrays == nullptr)
        return false;
    return gl::isHere(gl::Kind::VertexArray, index_) || gl::refuse(gl::Kind::VertexArray) != 0;
}

std::shared_ptr<void>* Painter::attachment(const void* key) {
    return recorder() != nullptr && isHere() ? &attachments_[key] : nullptr;
}

Renderer& Painter::renderer() {
    if (renderer_ == nullptr)
        renderer_ = std::make_unique<Renderer>();
    return *renderer_;
}

Recorder* Painter::recorder() {
    if (mode_ == Mode::Idle || isHidden_)
        return nullptr;
    return mode_ == Mode::Recording ? recording_.get() : &streaming_;
}

void Painter::make(std::size_t arena, std::size_t numBytes) {
    if (mode_ == Mode::Recording) {
        Arena& kept = kept_->drawing.arenas[arena];
        constexpr std::size_t least = 4096;
        kept.bytes.resize(std::max({kept.used + numBytes, 2 * kept.bytes.size(), least}));
    } else if (drawing_.arenas[arena].bytes.empty()) {
        drawing_.arenas[arena].bytes.resize(streamedSize(arena));
    } else {
        flush();
    }
}

glm::vec2 Painter::viewportSize() {
    if (!knowsViewport_) {
        int viewport[4] = {};
        if (isHere())
            glGetIntegerv(GL_VIEWPORT, viewport);
        viewportSize_ = glm::vec2(viewport[2], viewport[3]);
        knowsViewport_ = true;
    }
    return viewportSize_;
}

// --- Places ---

void Painter::setTransform(const glm::mat4& transform) {
    transform_ = transform;
    setMatrices();
}

void Painter::setOrigin(const glm::dvec3& origin) {
    setting_.placement.setOrigin(origin);
    setMatrices();
}

void Painter::setPixelRatio(float ratio) {
    setting_.pixelRatio = ratio > 0.f && std::isfinite(ratio) ? ratio : 1.f;
}

void Painter::setMatrices() {
    const bool isPlacement = isAffine(transform_);
    setting_.placement.setTransform(isPlacement ? transform_ : glm::mat4(1.f));
    const glm::mat4 matrix = isPlacement ? glm::mat4(1.f) : transform_;
    if (mode_ == Mode::Recording) { // whose points are those of its first origin
        const glm::dvec3 moved = setting_.placement.origin() - kept_->origin;
        setting_.matrix = product(behindShift(glm::mat4(1.f), moved), matrix);
        setting_.pixelMatrix = product(mvp_, matrix);
    } else {
        setting_.matrix = setting_.pixelMatrix = product(mvp_, matrix);
    }
    isHidden_ = !isFinite(transform_) || !isFinite(mvp_);
}

glm::mat4 Painter::matrixOf(const glm::dvec3& origin) const {
    const Placement& placement = setting_.placement;
    return behindShift(product(setting_.matrix, placement.transform()),
                       origin - placement.origin());
}

// --- Pictures ---

void Painter::beginPicture(const glm::mat4& mvp) {
    begin(mvp);
    mode_ = Mode::Idle;
    auto kept = std::make_unique<KeptDrawing>();
    kept->origin = setting_.placement.origin();
    kept->isInstanced = isHere() && renderer().capabilities().hasInstancing;
    Room& room = *this;
    recording_ = std::make_unique<Recorder>(kept->drawing, room, kept->isInstanced);
    kept_ = std::move(kept);
    mode_ = Mode::Recording;
    setMatrices();
}

std::unique_ptr<KeptDrawing> Painter::endPicture() {
    if (mode_ != Mode::Recording)
        return nullptr;
    mode_ = Mode::Idle;
    recording_.reset();
    const gl::Operation operation("Canvas::endPicture");
    if (isHere())
        Renderer::keep(*kept_);
    else
        kept_->drawing.commands.clear();
    return std::move(kept_);
}

void Painter::draw(const KeptDrawing& kept) {
    if (mode_ != Mode::Drawing || isHidden_)
        return;
    flush();
    if (!isHere())
        return;
    const gl::Operation operation("Canvas::drawPicture");
    const gl::DebugGroup group(groupName());
    renderer().drawKept(kept, matrixOf(kept.origin));
}

// --- Points of a buffer ---

void Painter::drawPoints(Kind kind, BufferPoints points,
                         const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions,
                         const Stroke* stroke) {
    Recorder* const to = recorder();
    if (to == nullptr || buffer == nullptr || points.count == 0 || !isHere())
        return;
    points.buffer = buffer.get();
    const bool needsInstances = kind == Kind::Strip || kind == Kind::Discs;
    if (needsInstances && !renderer().capabilities().hasInstancing)
        return readBack(kind, points, dimensions, stroke);
    to->bufferPoints(kind, points, buffer, dimensions, setting_, matrixOf(glm::dvec3(0.)), stroke);
    flush(); // while the buffer holds what it holds now
}

void Painter::readBack(Kind kind, const BufferPoints& points, unsigned int dimensions,
                       const Stroke* stroke) {
    const std::size_t all = points.buffer->numElements();
    if (!gl::existsOrRefuse(*points.buffer) || points.first >= all)
        return;
    const std::size_t count = std::min(points.count, all - points.first);
    const std::size_t size = dimensions * sizeof(float);
    std::vector<float> numbers(count * dimensions);
    int bound = 0;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    glBindBuffer(GL_ARRAY_BUFFER, points.buffer->id());
    glGetBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(points.first * size),
                       static_cast<GLsizeiptr>(count * size), numbers.data());
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<unsigned int>(bound));
    const void* const data = numbers.data();
    const Points read = dimensions == 2 ? Points(static_cast<const glm::vec2*>(data), count)
                                        : Points(static_cast<const glm::vec3*>(data), count);
    if (kind == Kind::Discs) {
        const float size1 = 2.f * points.halfWidth / setting_.pixelRatio;
        recorder()->discs(Colors(&points.color, 1), size1, read, setting_);
    } else {
        Stroke solid = *stroke;
        solid.numDashes = 0;
        recorder()->stroke(points.shape, solid, read, nullptr, setting_);
    }
}

} // namespace vellis::canvas

#include "canvas/renderer.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "canvas/apart.hpp"
#include "canvas/matrices.hpp"
#include "canvas/texture_use.hpp"
#include "gl/names.hpp"

namespace vellis::canvas {
namespace {

/// GL's primitives, in the order of Shape.
constexpr unsigned int primitives[] = {GL_LINES,     GL_LINE_STRIP,     GL_LINE_LOOP,
                                       GL_TRIANGLES, GL_TRIANGLE_STRIP, GL_TRIANGLE_FAN};

int sizeOf(std::size_t count) {
    return static_cast<int>(count);
}

/// How many quads or discs there are in records.
std::size_t piecesOf(Kind kind, std::size_t count) {
    return kind != Kind::Strip ? count : count > 3 ? count - 3 : 0;
}

/// The vertices of records that stand in memory for each of them.
void drawCopied(Kind kind, std::size_t first, std::size_t count) {
    const std::size_t numIndices = isFlat(kind) ? 1 : kind == Kind::Discs ? 3 : 6;
    const std::size_t begin = numIndices * first + (numIndices < 6 ? firstOwnIndex : 0);
    glDrawElements(kind == Kind::Lines ? GL_LINES : GL_TRIANGLES, sizeOf(numIndices * count),
                   GL_UNSIGNED_SHORT,
                   reinterpret_cast<const void*>(begin * sizeof(unsigned short)));
}

void drawInstances(Kind kind, std::size_t count) {
    const bool isDisc = kind == Kind::Discs;
    const unsigned int primitive = isDisc ? GL_TRIANGLES : GL_TRIANGLE_STRIP;
    if (GLAD_GL_VERSION_3_1 != 0)
        glDrawArraysInstanced(primitive, 0, isDisc ? 3 : 4, sizeOf(count));
    else
        glDrawArraysInstancedARB(primitive, 0, isDisc ? 3 : 4, sizeOf(count));
}

glm::vec4 toNumbers(Color color) {
    glm::vec4 result;
    for (int i = 0; i < 4; ++i)
        result[i] = static_cast<float>(color[i]) / 255.f;
    return result;
}

} // namespace

std::size_t streamedSize(std::size_t arena) {
    for (const Kind kind : {Kind::Lines, Kind::Strip, Kind::Segments, Kind::Discs, Kind::Images}) {
        for (const unsigned int dimensions : {2u, 3u}) {
            if (arenaOf(kind, dimensions) == arena)
                return mostCopied(kind) * verticesOf(kind) * recordSize(kind, dimensions);
        }
    }
    return 0;
}

// --- Drawings ---

Renderer::Renderer() : capabilities_(Capabilities::ask()), arrays_(capabilities_) {}

Renderer::~Renderer() = default;

void Renderer::drawStreamed(Drawing& drawing) {
    SavedState saved(capabilities_);
    if (!saved.hasViewport())
        return;
    joinApart(drawing, saved.viewport());
    // One store of one size, written from its beginning: drivers have the next one at hand.
    for (std::size_t i = 0; i < numArenas; ++i) {
        const Arena& arena = drawing.arenas[i];
        if (arena.used == 0)
            continue;
        if (streamed_[i].name() == 0) {
            unsigned int name = 0;
            glGenBuffers(1, &name);
            if (name == 0)
                continue;
            streamed_[i] = BufferName(name);
            glBindBuffer(GL_ARRAY_BUFFER, name);
            glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(streamedSize(i)), nullptr,
                         GL_STREAM_DRAW);
        }
        glBindBuffer(GL_ARRAY_BUFFER, streamed_[i].name());
        glBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(arena.used),
                        arena.bytes.data());
    }
    draw({drawing, nullptr, nullptr}, saved);
}

void Renderer::drawKept(const KeptDrawing& kept, const glm::mat4& matrix) {
    SavedState saved(capabilities_);
    if (saved.hasViewport())
        draw({kept.drawing, &kept, &matrix}, saved);
}

void Renderer::keep(KeptDrawing& kept) {
    int bound = 0;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    for (std::size_t i = 0; i < numArenas; ++i) {
        Arena& arena = kept.drawing.arenas[i];
        if (arena.used > 0) {
            unsigned int name = 0;
            glGenBuffers(1, &name);
            kept.buffers[i] = BufferName(name);
            glBindBuffer(GL_ARRAY_BUFFER, name);
            glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(arena.used), arena.bytes.data(),
                         GL_STATIC_DRAW);
            kept.numBytes += arena.used;
        }
        arena = Arena();
    }
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<unsigned int>(bound));
}

void Renderer::draw(const Source& source, SavedState& saved) {
    ++numDrawings_;
    // The mask may be in use then: the stroke goes on in the next drawing, or memory ran out.
    struct EndMask {
        Renderer& renderer;
        ~EndMask() { renderer.endMask(); }
    } const endMask{*this};
    for (const Command& command : source.drawing.commands)
        drawCommand(source, command, saved);
}

void Renderer::endMask() {
    if (isMasked_)
        mask_.end();
    isMasked_ = false;
}

void Renderer::drawCommand(const Source& source, const Command& command, SavedState& saved) {
    saved.prepareFor(command.kind, command.isOpaque);
    const Look& look = source.drawing.looks[command.look];
    if (!look.paintsOnce || saved.testsDepth())
        return paint(source, command, saved);
    const Overlap& overlap = look.overlap;
    if (!command.continuesOverlap)
        box_ = boxOf(overlap, matrixOf(source, look), saved);
    if (box_.isEmpty())
        return;
    isMasked_ = mask_.begin(box_, saved.viewport(), !command.continuesOverlap, capabilities_);
    paint(source, command, saved);
    if (isMasked_ && command.endsOverlap) {
        endMask();
        composite(overlap, saved);
    }
}

void Renderer::paint(const Source& source, const Command& command, const SavedState& saved) {
    const Look& look = source.drawing.looks[command.look];
    CanvasProgram& program = programOf(command.kind, look);
    if (program.name() == 0)
        return;
    glUseProgram(program.name());
    setUniforms(program, source, command, saved);
    std::optional<TextureUse> texture;
    if (look.texture != nullptr) {
        const unsigned int name = look.texture->id();
        if (name == 0)
            return;
        texture.emplace(name, capabilities_);
    }
    if (look.isFromBuffer)
        drawPoints(command, look.points);
    else if (source.kept != nullptr)
        drawKeptRecords(*source.kept, command);
    else
        drawStreamedRecords(command);
}

// --- Records ---

void Renderer::drawStreamedRecords(const Command& command) {
    const unsigned int buffer = streamed_[arenaOf(command.kind, command.dimensions)].name();
    if (arrays_.useStreamed(command.kind, command.dimensions, buffer))
        drawCopied(command.kind, command.first, piecesOf(command.kind, command.count));
}

void Renderer::drawKeptRecords(const KeptDrawing& kept, const Command& command) {
    const Kind kind = command.kind;
    const unsigned int dimensions = command.dimensions;
    const unsigned int buffer = kept.buffers[arenaOf(kind, dimensions)].name();
    const std::size_t size = recordSize(kind, dimensions);
    const std::size_t count = piecesOf(kind, command.count);
    if (buffer == 0 || count == 0)
        return;
    if (kept.isInstanced && !standsOnce(kind)) {
        if (arrays_.useRecords(kind, dimensions, buffer, command.first * size, true))
            drawInstances(kind, count);
    } else {
        const std::size_t copiedSize = size * verticesOf(kind);
        const std::size_t most = mostCopied(kind);
        for (std::size_t i = 0; i < count; i += most) {
            const std::size_t offset = (command.first + i) * copiedSize;
            if (arrays_.useRecords(kind, dimensions, buffer, offset, false))
                drawCopied(kind, 0, std::min(most, count - i));
        }
    }
}

void Renderer::drawPoints(const Command& command, const BufferPoints& points) {
    const unsigned int buffer = points.buffer->id();
    const std::size_t all = points.buffer->numElements();
    if (!gl::existsOrRefuse(*points.buffer) || points.first >= all)
        return;
    const std::size_t count = std::min(points.count, all - points.first);
    if (count == 0)
        return;
    const unsigned int dimensions = command.dimensions;
    if (isFlat(command.kind)) {
        if (arrays_.useCorners(dimensions, buffer))
            glDrawArrays(primitives[static_cast<std::size_t>(points.shape)], sizeOf(points.first),
                         sizeOf(count));
    } else if (command.kind == Kind::Discs) {
        if (arrays_.useCenters(dimensions, buffer, points.first))
            drawInstances(Kind::Discs, count);
    } else {
        drawPieces(dimensions, points, count);
    }
}

void Renderer::drawPieces(unsigned int dimensions, const BufferPoints& points, std::size_t count) {
    const unsigned int buffer = points.buffer->id();
    const auto drawFrom = [&](std::size_t a, std::size_t b, std::size_t c, std::size_t d,
                              std::size_t step, std::size_t numPieces) {
        const std::size_t first = points.first;
        if (arrays_.usePieces(dimensions, buffer, {first + a, first + b, first + c, first + d},
                              step))
            drawInstances(Kind::Strip, numPieces);
    };
    if (count < 2)
        return;
    if (points.shape == Shape::Lines)
        return drawFrom(0, 0, 1, 1, 2, count / 2);
    const std::size_t last = count - 1;
    const bool isLoop = points.shape == Shape::LineLoop;
    const std::size_t second = 2 % count;
    if (isLoop)
        drawFrom(last, 0, 1, second, 1, 1);
    else
        drawFrom(0, 0, 1, std::min<std::size_t>(2, last), 1, 1);
    if (count > 3)
        drawFrom(0, 1, 2, 3, 1, count - 3);
    if (count > 2)
        drawFrom(last - 2, last - 1, last, isLoop ? 0 : last, 1, 1);
    if (isLoop)
        drawFrom(last - 1, last, 0, 1, 1, 1);
}

// --- Programs ---

CanvasProgram& Renderer::program(ProgramFamily family, unsigned int variants) {
    for (CanvasProgram& program : programs_) {
        if (program.is(family, variants))
            return program;
    }
    programs_.emplace_back(family, variants, capabilities_);
    return programs_.back();
}

CanvasProgram& Renderer::programOf(Kind kind, const Look& look) {
    const unsigned int variants = look.isFromBuffer ? uniformStyle : 0u;
    if (isFlat(kind))
        return program(ProgramFamily::Flat, variants);
    if (kind == Kind::Discs)
        return program(ProgramFamily::Disc, variants);
    if (kind == Kind::Images)
        return program(ProgramFamily::Image, (look.isCoverage ? coverage : 0u) |
                                                 (look.isOnWholePixels ? wholePixels : 0u));
    const Style& style = look.style;
    const auto ofStrokes = [&](unsigned int more) -> CanvasProgram& {
        return program(ProgramFamily::Stroke, withEnds(variants | more, style.join, style.cap));
    };
    const bool isAlone =
        kind == Kind::Segments || (look.isFromBuffer && look.points.shape == Shape::Lines);
    if (isAlone && !style.isDashed && !style.isGradient && style.cap != Stroke::Cap::Round)
        return ofStrokes(alone);
    return ofStrokes((style.isDashed ? dashed : 0u) | (style.isGradient ? gradient : 0u));
}

glm::mat4 Renderer::matrixOf(const Source& source, const Look& look) {
    return source.matrix != nullptr ? product(*source.matrix, look.matrix) : look.matrix;
}

void Renderer::setUniforms(CanvasProgram& program, const Source& source, const Command& command,
                           const SavedState& saved) const {
    if (program.drawing == numDrawings_ && program.look == command.look)
        return;
    program.drawing = numDrawings_;
    program.look = command.look;
    const Look& look = source.drawing.looks[command.look];
    const auto set = [&](UniformName name, float value) {
        glUniform1f(program.location(name), value);
    };
    const auto setMatrix = [&](UniformName name, const glm::mat4& matrix) {
        glUniformMatrix4fv(program.location(name), 1, GL_FALSE, &matrix[0][0]);
    };
    const auto set4 = [&](UniformName name, const glm::vec4& value) {
        glUniform4fv(program.location(name), 1, &value[0]);
    };
    setMatrix(UniformName::Matrix, matrixOf(source, look));
    if (isFlat(command.kind) && !look.isFromBuffer)
        return;
    const int(&viewport)[4] = saved.viewport();
    set4(UniformName::Viewport, glm::vec4(viewport[0], viewport[1], viewport[2], viewport[3]));
    if (look.isFromBuffer) {
        set(UniformName::HalfWidth, look.points.halfWidth);
        set4(UniformName::StyleColor, toNumbers(look.points.color));
    }
    if (command.kind == Kind::Images)
        glUniform1i(program.location(UniformName::Texels),
                    static_cast<int>(capabilities_.lastUnit));
    const Style& style = look.style;
    if (command.kind == Kind::Strip || command.kind == Kind::Segments) {
        set(UniformName::MiterLimit, style.miterLimit);
    }
    if (style.isDashed) {
        glUniform4fv(program.location(UniformName::Dashes), 2, style.dashes.data());
        set(UniformName::DashPeriod, style.period);
        setMatrix(UniformName::DashMatrix, style.dashMatrix);
        glUniform2f(program.location(UniformName::DashScale), style.dashScale.x, style.dashScale.y);
    }
}

// --- Strokes that paint each pixel once ---

PixelBox Renderer::boxOf(const Overlap& overlap, const glm::mat4& matrix,
                         const SavedState& saved) const {
    const int(&viewport)[4] = saved.viewport();
    glm::vec2 low(INFINITY);
    glm::vec2 high(-INFINITY);
    bool isInFront = !(overlap.lowest.x > overlap.highest.x);
    for (int i = 0; i < 8 && isInFront; ++i) {
        const glm::vec3 corner((i & 1) != 0 ? overlap.highest.x : overlap.lowest.x,
                               (i & 2) != 0 ? overlap.highest.y : overlap.lowest.y,
                               (i & 4) != 0 ? overlap.highest.z : overlap.lowest.z);
        const glm::vec4 clip = placeOf(matrix, corner);
        isInFront = clip.w > 0.f && clip.z >= -clip.w;
        for (int axis = 0; axis < 2; ++axis) {
            low[axis] = std::min(low[axis], clip[axis] / clip.w);
            high[axis] = std::max(high[axis], clip[axis] / clip.w);
        }
    }
    // What reaches behind the near plane may be anywhere.
    if (!isInFront || !std::isfinite(low.x + low.y + high.x + high.y)) {
        low = glm::vec2(-1.f);
        high = glm::vec2(1.f);
    }
    int edges[4]; // left, bottom, right, top
    int scissor[4];
    glGetIntegerv(GL_SCISSOR_BOX, scissor);
    const bool isScissored = glIsEnabled(GL_SCISSOR_TEST) != GL_FALSE;
    for (int i = 0; i < 2; ++i) {
        const float half = static_cast<float>(viewport[2 + i]) / 2.f;
        const float reach = overlap.reach + 2.f;
        const float size = static_cast<float>(viewport[2 + i]);
        const float from = std::floor((low[i] + 1.f) * half - reach);
        const float to = std::ceil((high[i] + 1.f) * half + reach);
        edges[i] = viewport[i] + static_cast<int>(std::clamp(from, 0.f, size));
        edges[2 + i] = viewport[i] + static_cast<int>(std::clamp(to, 0.f, size));
        if (isScissored) {
            edges[i] = std::max(edges[i], scissor[i]);
            edges[2 + i] = std::min(edges[2 + i], scissor[i] + scissor[2 + i]);
        }
    }
    return {edges[0], edges[1], edges[2] - edges[0], edges[3] - edges[1]};
}

void Renderer::composite(const Overlap& overlap, const SavedState& saved) {
    CanvasProgram& painter = program(ProgramFamily::Mask, 0);
    if (painter.name() == 0)
        return;
    const int(&viewport)[4] = saved.viewport();
    const auto toClip = [&](int pixel, int axis) {
        return 2.f * static_cast<float>(pixel - viewport[axis]) /
                   static_cast<float>(viewport[2 + axis]) -
               1.f;
    };
    mask_.read(capabilities_, [&] {
        glUseProgram(painter.name());
        glUniform1i(painter.location(UniformName::Texels),
                    static_cast<int>(capabilities_.lastUnit));
        glUniform4f(painter.location(UniformName::Box), toClip(box_.x, 0), toClip(box_.y, 1),
                    toClip(box_.x + box_.width, 0), toClip(box_.y + box_.height, 1));
        glUniform4f(painter.location(UniformName::Frame), static_cast<float>(box_.x),
                    static_cast<float>(box_.y), 1.f / static_cast<float>(mask_.width()),
                    1.f / static_cast<float>(mask_.height()));
        const glm::vec4 color = toNumbers(overlap.color);
        glUniform4fv(painter.location(UniformName::StyleColor), 1, &color[0]);
        if (arrays_.useQuad())
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    });
}

} // namespace vellis::canvas

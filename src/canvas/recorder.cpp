#include "canvas/recorder.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace vellis::canvas {
namespace {

constexpr float mostOfThin = 0.75f; ///< half width in pixels up to which a stroke is drawn as thin

Record corner(const glm::vec3& point, unsigned int dimensions, Color color) {
    return Record(point, dimensions).add(color);
}

Record strokeRecord(const glm::vec3& point, unsigned int dimensions, float phase, float halfWidth,
                    Color color) {
    return Record(point, dimensions).add(phase).add(halfWidth).add(color);
}

/// What is there to know of points before the first is recorded.
struct Extent {
    glm::vec3 lowest{INFINITY};
    glm::vec3 highest{-INFINITY};
    std::size_t firstGap; ///< the first point that is not finite, or the number of points

    explicit Extent(PointReader& points) : firstGap(points.size()) {
        points.forEach([&](const glm::vec3& point, std::size_t i) {
            if (isFinite(point)) {
                lowest = glm::min(lowest, point);
                highest = glm::max(highest, point);
            } else {
                firstGap = std::min(firstGap, i);
            }
        });
    }
};

/// What the records of a stroke have in common.
Style styleOf(const Stroke& stroke, float halfWidth, Shape shape, float pixelRatio) {
    Style style;
    setDashes(style, stroke, pixelRatio);
    style.isThin = halfWidth <= mostOfThin && !style.isDashed;
    style.cap = stroke.cap;
    if (shape != Shape::Lines) { // which have no joins
        style.join = stroke.join;
        style.miterLimit = stroke.miterLimit >= 1.f ? stroke.miterLimit : 1.f;
    }
    return style;
}

/// What draws without a style.
Look plainLook(const Setting& setting) {
    Look look;
    look.matrix = setting.matrix;
    return look;
}

/// What measures a dashed stroke.
Ruler rulerOf(const Stroke& stroke, const Style& style, const Setting& setting) {
    return {setting.pixelMatrix, style.dashScale,
            double{stroke.dashOffset} * double{setting.pixelRatio}, double{style.period}};
}

/// How many half widths a stroke reaches beyond its points: a square cap's corner does 1.42.
float reachOf(const Style& style) {
    return style.join == Stroke::Join::Miter ? std::max(style.miterLimit, 1.5f) : 1.5f;
}

/// What a point is to the triangles of a shape.
struct CornerPlace {
    bool ends;           ///< whether it is the third corner of one
    std::size_t before;  ///< which of the kept corners is the second then; 0 is the first
    std::size_t keepsAs; ///< as which it is kept; 3 for not at all
};

CornerPlace placeOf(Shape shape, std::size_t i) {
    switch (shape) {
    case Shape::TriangleStrip: // which keeps its winding: GL 2.1, section 2.6.1
        return {i >= 2, 1, i % 2};
    case Shape::TriangleFan:
        return {i >= 2, 1, std::size_t{i > 0 ? 1u : 0u}};
    case Shape::Quads:
        return {i % 4 >= 2, i % 4 == 2 ? 1u : 2u, i % 4};
    default:
        return {i % 3 == 2, 1, i % 3};
    }
}

} // namespace

/// Writes the records of a line through points that come one by one. A point that is not finite
/// ends the line, and the next one begins another.
class StripWriter {
public:
    /// \param ruler  Measures the line; null for one that is not dashed.
    StripWriter(Recorder& recorder, float halfWidth, Ruler* ruler)
        : recorder_(recorder),
          halfWidth_(halfWidth),
          ruler_(ruler) {}

    /// What stands ahead of the first point of a closed line: its last one.
    void precede(const glm::vec3& point, Color color) {
        put(point, color, 0.f);
        isOpen_ = false;
    }

    void add(const glm::vec3& point, Color color) {
        if (count_ > 0 && point == last_)
            return;
        if (count_ == 0)
            begin(point);
        else
            goOn(point, color);
        last_ = point;
        lastColor_ = color;
        ++count_;
    }

    /// Ends a closed line with its first two points.
    void close(const glm::vec3& first, Color firstColor, const glm::vec3& second,
               Color secondColor) {
        put(first, firstColor, 0.f);
        put(second, secondColor, 0.f);
    }

    /// Ends an open line. \return whether it was only a point.
    bool finish() {
        const bool isPoint = count_ == 1;
        if (count_ > 1)
            put(last_, lastColor_, 0.f);
        count_ = 0;
        numPut_ = 0;
        return isPoint;
    }

    const glm::vec3& last() const { return last_; }
    Color lastColor() const { return lastColor_; }

private:
    void begin(const glm::vec3& point) {
        if (ruler_ != nullptr)
            ruler_->begin(point);
        firstPhase_ = ruler_ != nullptr ? ruler_->phase() : 0.f;
    }

    void goOn(const glm::vec3& point, Color color) {
        if (count_ == 1) { // only now it is known to be a line
            if (isOpen_)
                put(last_, lastColor_, 0.f, firstPhase_);
            put(last_, lastColor_, halfWidth_, firstPhase_);
        }
        if (ruler_ != nullptr)
            ruler_->goTo(point);
        put(point, color, halfWidth_, ruler_ != nullptr ? ruler_->phase() : 0.f);
    }

    void put(const glm::vec3& point, Color color, float halfWidth, float phase = 0.f) {
        recorder_.put(strokeRecord(point, recorder_.dimensions_, phase, halfWidth, color), numPut_);
        numPut_ = numPut_ < 3 ? numPut_ + 1 : 3;
    }

    Recorder& recorder_;
    float halfWidth_;
    Ruler* ruler_;
    bool isOpen_ = true;
    std::size_t count_ = 0;  ///< of points of the line
    std::size_t numPut_ = 0; ///< of its last records that the next one belongs to
    glm::vec3 last_{0.f};
    Color lastColor_{0};
    float firstPhase_ = 0.f;
};

// --- Commands ---

void Recorder::begin(Kind kind, unsigned int dimensions, const Look& look) {
    kind_ = kind;
    dimensions_ = dimensions;
    look_ = &look;
    arena_ = &drawing_.arenas[arenaOf(kind, dimensions)];
    copies_ = isInstanced_ ? 1 : verticesOf(kind);
    command_ = none;
    isWithinOverlap_ = false;
}

bool Recorder::addsToLast() const {
    if (drawing_.commands.empty())
        return false;
    const Command& last = drawing_.commands.back();
    return last.kind == kind_ && last.dimensions == dimensions_ &&
           drawing_.looks[last.look].isSameAs(*look_);
}

void Recorder::openCommand() {
    if (!addsToLast()) {
        // Without memory for the second, the first is one that no command has.
        if (drawing_.looks.empty() || !drawing_.looks.back().isSameAs(*look_))
            drawing_.looks.push_back(*look_);
        Command command = {};
        command.kind = kind_;
        command.dimensions = static_cast<unsigned char>(dimensions_);
        command.look = static_cast<std::uint32_t>(drawing_.looks.size()) - 1;
        command.continuesOverlap = isWithinOverlap_;
        command.endsOverlap = true;
        command.first = arena_->count;
        drawing_.commands.push_back(command);
    }
    command_ = static_cast<std::uint32_t>(drawing_.commands.size()) - 1;
}

void Recorder::makeRoom(std::size_t numBytes, std::size_t numRepeated) {
    const std::size_t numBefore = arena_->used;
    if (arena_->bytes.size() - numBefore < numBytes) {
        if (command_ != none && look_->paintsOnce) {
            drawing_.commands[command_].endsOverlap = false;
            isWithinOverlap_ = true;
        }
        room_.make(static_cast<std::size_t>(arena_ - drawing_.arenas.data()),
                   (numRepeated + 1) * numBytes);
    }
    if (arena_->used == numBefore && command_ != none) {
        drawing_.commands[command_].endsOverlap = true; // there was more memory
        return;
    }
    openCommand();
    if (arena_->used < numBefore) { // those before were drawn
        const std::size_t repeated = numRepeated * numBytes;
        std::memmove(arena_->bytes.data(), arena_->bytes.data() + numBefore - repeated, repeated);
        arena_->used = repeated;
        arena_->count = drawing_.commands[command_].count = numRepeated;
    }
}

// --- Strokes ---

void Recorder::stroke(Shape shape, const Stroke& stroke, const Points& points, const Colors* colors,
                      const Setting& setting) {
    PointReader reader(points, setting.placement);
    const ColorReader colorReader(colors != nullptr ? *colors : Colors(stroke.color));
    if (colorReader.isEmpty())
        return;
    if (!stroke.isAntialiased)
        return aliasedLines(shape, reader, colorReader, setting);
    const float halfWidth = stroke.width * setting.pixelRatio / 2.f;
    if (!(halfWidth > 0.f && std::isfinite(halfWidth)))
        return;
    Look look = plainLook(setting);
    look.style = styleOf(stroke, halfWidth, shape, setting.pixelRatio);
    look.style.isGradient = !colorReader.isOne();
    if (look.style.isDashed) {
        look.style.dashMatrix = setting.pixelMatrix;
        look.style.dashScale = room_.viewportSize() / 2.f;
    }
    if (shape == Shape::Lines)
        segments(reader, colorReader, stroke, look, setting);
    else
        strip(shape, reader, colorReader, stroke, look, setting);
}

void Recorder::strip(Shape shape, PointReader& points, const ColorReader& colors,
                     const Stroke& stroke, Look& look, const Setting& setting) {
    const float halfWidth = stroke.width * setting.pixelRatio / 2.f;
    const bool isLoop = shape == Shape::LineLoop;
    const Color color = colors.at(0);
    look.paintsOnce = setting.paintsOnce && colors.isOne() && color.a < 255 && points.size() > 2;
    std::optional<Extent> extent;
    if (isLoop || look.paintsOnce)
        extent.emplace(points);
    if (look.paintsOnce)
        look.overlap = {extent->lowest, extent->highest, halfWidth * reachOf(look.style), color};
    std::optional<Ruler> ruler;
    if (look.style.isDashed)
        ruler.emplace(rulerOf(stroke, look.style, setting));

    const unsigned int dimensions = points.dimensions();
    begin(Kind::Strip, dimensions, look);
    StripWriter writer(*this, halfWidth, ruler ? &*ruler : nullptr);
    const auto end = [&] {
        if (writer.finish() && stroke.cap == Stroke::Cap::Round) {
            const Look dot = plainLook(setting);
            begin(Kind::Discs, dimensions, dot);
            putDisc(writer.last(), halfWidth, writer.lastColor());
            begin(Kind::Strip, dimensions, look);
        }
    };
    const auto add = [&](const glm::vec3& point, std::size_t i) {
        if (isFinite(point))
            writer.add(point, colors.at(i));
        else
            end();
    };
    const std::size_t size = points.size();
    if (isLoop && extent->firstGap == size && size > 0) {
        const glm::vec3 first = points.at(0);
        std::size_t second = 1;
        while (second < size && points.at(second) == first)
            ++second;
        std::size_t last = size - 1;
        while (last > second && points.at(last) == first)
            --last;
        if (second < size) {
            writer.precede(points.at(last), colors.at(last));
            points.forEach(0, last + 1, add);
            writer.close(first, colors.at(0), points.at(second), colors.at(second));
            return;
        }
    } else if (isLoop) { // what is left of it begins behind the gap
        points.forEach(extent->firstGap, size, add);
        points.forEach(0, extent->firstGap, add);
        return end();
    }
    points.forEach(add);
    end();
}

void Recorder::segments(PointReader& points, const ColorReader& colors, const Stroke& stroke,
                        Look& look, const Setting& setting) {
    const float halfWidth = stroke.width * setting.pixelRatio / 2.f;
    std::optional<Ruler> ruler;
    if (look.style.isDashed)
        ruler.emplace(rulerOf(stroke, look.style, setting));
    float phase = 0.f;
    const unsigned int dimensions = points.dimensions();
    begin(Kind::Segments, dimensions, look);
    glm::vec3 from(0.f);
    points.forEach([&](const glm::vec3& to, std::size_t i) {
        if (i % 2 == 0) {
            from = to;
        } else if (!isFinite(from) || !isFinite(to)) {
            return;
        } else if (from == to) {
            if (stroke.cap == Stroke::Cap::Round) {
                const Look dot = plainLook(setting);
                begin(Kind::Discs, dimensions, dot);
                putDisc(from, halfWidth, colors.at(i - 1));
                begin(Kind::Segments, dimensions, look);
            }
        } else {
            if (ruler) {
                ruler->begin(from);
                phase = ruler->phase();
            }
            put(strokeRecord(from, dimensions, phase, halfWidth, colors.at(i - 1))
                    .add(strokeRecord(to, dimensions, phase, halfWidth, colors.at(i))));
        }
    });
}

void Recorder::aliasedLines(Shape shape, PointReader& points, const ColorReader& colors,
                            const Setting& setting) {
    const unsigned int dimensions = points.dimensions();
    const Look look = plainLook(setting);
    begin(Kind::Lines, dimensions, look);
    Record last(glm::vec3(0.f), dimensions);
    bool isLastFinite = false;
    const auto add = [&](const glm::vec3& point, std::size_t i) {
        const Record next = corner(point, dimensions, colors.at(i));
        const bool isNextFinite = isFinite(point);
        const bool isEnd = shape == Shape::Lines ? i % 2 == 1 : i > 0;
        if (isEnd && isLastFinite && isNextFinite) {
            put(last);
            put(next, 1);
        }
        last = next;
        isLastFinite = isNextFinite;
    };
    points.forEach(add);
    const std::size_t size = points.size();
    if (shape == Shape::LineLoop && size > 1 && isLastFinite && isFinite(points.at(0))) {
        put(last);
        put(corner(points.at(0), dimensions, colors.at(0)), 1);
    }
}

void Recorder::bufferPoints(Kind kind, const BufferPoints& points, unsigned int dimensions,
                            const Setting& setting, const glm::mat4& matrix, const Stroke* stroke) {
    Look look;
    look.matrix = matrix;
    look.points = points;
    look.isFromBuffer = true;
    if (stroke != nullptr) {
        look.style = styleOf(*stroke, points.halfWidth, points.shape, setting.pixelRatio);
        look.style.isThin = points.halfWidth <= mostOfThin;
        look.style.isDashed = false;
        look.overlap = {glm::vec3(1.f), glm::vec3(0.f), points.halfWidth, points.color};
        look.paintsOnce = setting.paintsOnce && points.shape != Shape::Lines &&
                          points.color.a < 255 && points.count > 2;
    }
    begin(kind, dimensions, look);
    openCommand();
}

// --- Areas and points ---

void Recorder::area(Shape shape, const Colors& colors, const Points& points,
                    const Setting& setting) {
    PointReader reader(points, setting.placement);
    const ColorReader colorReader(colors);
    if (colorReader.isEmpty())
        return;
    const unsigned int dimensions = reader.dimensions();
    const Look look = plainLook(setting);
    begin(Kind::Triangles, dimensions, look);
    struct Entry {
        glm::vec3 point;
        Color color;
        bool isFinite;
    };
    Entry before[3] = {};
    const auto putCorner = [&](const Entry& entry, std::size_t numRepeated) {
        put(corner(entry.point, dimensions, entry.color), numRepeated);
    };
    reader.forEach([&](const glm::vec3& point, std::size_t i) {
        const Entry next = {point, colorReader.at(i), isFinite(point)};
        const CornerPlace place = placeOf(shape, i);
        const Entry& second = before[place.before];
        if (place.ends && before[0].isFinite && second.isFinite && next.isFinite) {
            putCorner(before[0], 0);
            putCorner(second, 1);
            putCorner(next, 2);
        }
        if (place.keepsAs < 3)
            before[place.keepsAs] = next;
    });
}

void Recorder::putDisc(const glm::vec3& center, float radius, Color color) {
    put(Record(center, dimensions_).add(radius).add(color));
}

void Recorder::rings(std::initializer_list<Ring> rings, const Sizes& sizes, const Points& points,
                     const Setting& setting) {
    PointReader reader(points, setting.placement);
    for (const Ring& ring : rings) {
        if (ring.colors->isEmpty() || sizes.count == 0)
            return;
    }
    const Look look = plainLook(setting);
    begin(Kind::Discs, reader.dimensions(), look);
    reader.forEach([&](const glm::vec3& point, std::size_t i) {
        const float size =
            sizes.data != nullptr ? sizes.data[std::min(i, sizes.count - 1)] : sizes.one;
        const float radius = size * setting.pixelRatio / 2.f;
        if (!isFinite(point) || !(radius > 0.f && std::isfinite(radius)))
            return;
        for (const Ring& ring : rings)
            putDisc(point, radius * ring.size, ring.colors->at(i));
    });
}

void Recorder::discs(const Colors& colors, const Sizes& sizes, const Points& points,
                     const Setting& setting) {
    const ColorReader reader(colors);
    rings({{&reader, 1.f}}, sizes, points, setting);
}

void Recorder::bullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                         const Points& points, const Setting& setting) {
    const ColorReader reader(colors);
    const ColorReader reader2(colors2);
    rings({{&reader, 1.f}, {&reader2, 0.7f}, {&reader, 0.3f}}, sizes, points, setting);
}

} // namespace vellis::canvas

#include "canvas/recorder.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "canvas/image_records.hpp"

namespace vellis::canvas {
namespace {

/// What is there to know of points before the first is recorded.
struct Extent {
    glm::vec3 lowest{INFINITY};
    glm::vec3 highest{-INFINITY};
    std::size_t firstGap; ///< the first point that is not finite, or the number of points

    explicit Extent(PointReader& points) : firstGap(points.size()) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const glm::vec3& point = points[i];
            if (!isFinite(point)) {
                firstGap = std::min(firstGap, i);
                continue;
            }
            for (int axis = 0; axis < 3; ++axis) {
                lowest[axis] = std::min(lowest[axis], point[axis]);
                highest[axis] = std::max(highest[axis], point[axis]);
            }
        }
    }
};

/// What the records of a stroke have in common.
Style styleOf(const Stroke& stroke, Shape shape, float pixelRatio) {
    Style style;
    setDashes(style, stroke, pixelRatio);
    style.cap = stroke.cap;
    if (shape != Shape::Lines) { // which have no joins
        style.join = stroke.join;
        style.miterLimit = stroke.miterLimit >= 1.f ? stroke.miterLimit : 1.f;
    }
    return style;
}

float halfWidthOf(const Stroke& stroke, const Setting& setting) {
    return stroke.width * setting.pixelRatio / 2.f;
}

/// What measures a dashed stroke.
Ruler rulerOf(const Stroke& stroke, const Style& style, const Setting& setting) {
    return {setting.pixelMatrix, style.dashScale,
            double{stroke.dashOffset} * double{setting.pixelRatio}, double{style.period}};
}

/// Whether a closed line through so many points is on a dash both where it begins and where it
/// ends.
bool isOnAtEnds(Ruler ruler, const Style& style, PointReader& points, std::size_t count) {
    ruler.begin(points[0]);
    const bool isOnAtStart = isOnDash(style, ruler.phase());
    for (std::size_t i = 1; i < count; ++i)
        ruler.goTo(points[i]);
    ruler.goTo(points[0]);
    return isOnAtStart && isOnDash(style, ruler.phase());
}

/// How many half widths a stroke reaches beyond its points: a square cap's corner does 1.42.
float reachOf(const Style& style) {
    return style.join == Stroke::Join::Miter ? std::max(style.miterLimit, 1.5f) : 1.5f;
}

/// What a point is to the triangles of a shape.
struct TriangleCorner {
    bool ends;           ///< whether it is the third corner of one
    std::size_t before;  ///< which of the kept corners is the second then; 0 is the first
    std::size_t keepsAs; ///< as which it is kept
};

TriangleCorner placeOf(Shape shape, std::size_t i) {
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

/// Writes the records of a line through points that come one by one.
class StripWriter {
public:
    /// \param ruler  Measures the line; null for one that is not dashed.
    StripWriter(Recorder& recorder, float halfWidth, Ruler* ruler)
        : recorder_(recorder),
          halfWidth_(halfWidth),
          ruler_(ruler) {}

    /// A point of the line. One that repeats the one before is left out.
    void add(const glm::vec3& point, Color color) {
        if (count_ > 0 && point == last_)
            return;
        if (count_ == 0) {
            firstPhase_ = measure(point);
        } else {
            if (count_ == 1) { // only now it is known to be a line
                if (isOpen_)
                    put(last_, lastColor_);
                put(last_, lastColor_, halfWidth_, firstPhase_);
            }
            const float phase = measure(point);
            put(point, color, halfWidth_, phase);
        }
        last_ = point;
        lastColor_ = color;
        ++count_;
    }

    /// Ends an open line. \return whether it was only a point.
    bool finish() {
        const bool isPoint = count_ == 1;
        if (count_ > 1)
            put(last_, lastColor_);
        count_ = 0;
        numPut_ = 0;
        return isPoint;
    }

    /// What stands ahead of the first point of a closed line and behind its last one.
    void putNeighbor(const glm::vec3& point, Color color) {
        isOpen_ = false;
        put(point, color);
    }

    const glm::vec3& last() const { return last_; }
    Color lastColor() const { return lastColor_; }

private:
    float measure(const glm::vec3& point) {
        if (ruler_ == nullptr)
            return 0.f;
        if (count_ == 0)
            ruler_->begin(point);
        else
            ruler_->goTo(point);
        return ruler_->phase();
    }

    void put(const glm::vec3& point, Color color, float halfWidth = 0.f, float phase = 0.f) {
        Record record;
        record.add(point, recorder_.dimensions_).add(phase).add(halfWidth).add(color);
        recorder_.put(record, numPut_);
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

void Recorder::begin(Kind kind, unsigned int dimensions, const glm::mat4& matrix) {
    kind_ = kind;
    dimensions_ = dimensions;
    look_.reset(matrix);
    arena_ = &drawing_.arenas[arenaOf(kind, dimensions)];
    copies_ = isInstanced_ ? 1 : verticesOf(kind);
    command_ = none;
    isOpaque_ = false;
    isWithinOverlap_ = false;
}

bool Recorder::addsToLast() const {
    if (drawing_.commands.empty())
        return false;
    const Command& last = drawing_.commands.back();
    return last.kind == kind_ && last.dimensions == dimensions_ &&
           drawing_.looks[last.look].isSameAs(look_);
}

void Recorder::openCommand(bool isWhole) {
    if (isWhole && addsToLast()) {
        drawing_.commands.back().isOpaque &= isOpaque_;
    } else {
        // Without memory for the second, the first is one that no command has.
        if (drawing_.looks.empty() || !drawing_.looks.back().isSameAs(look_))
            drawing_.looks.push_back(look_);
        Command command = {};
        command.kind = kind_;
        command.dimensions = static_cast<unsigned char>(dimensions_);
        command.look = static_cast<std::uint32_t>(drawing_.looks.size()) - 1;
        command.continuesOverlap = isWithinOverlap_;
        command.endsOverlap = true;
        command.isOpaque = isOpaque_;
        command.first = arena_->count;
        drawing_.commands.push_back(command);
    }
    command_ = static_cast<std::uint32_t>(drawing_.commands.size()) - 1;
}

void Recorder::makeRoom(std::size_t numBytes, std::size_t numRepeated) {
    const bool isWhole = std::exchange(isWhole_, false); // until there is the memory
    if (!isWhole && !drawing_.commands.empty())
        drawing_.commands.back().endsOverlap = true;
    const std::size_t numBefore = arena_->used;
    if (arena_->bytes.size() - numBefore < numBytes + Record::slack) {
        if (command_ != none && look_.paintsOnce) {
            drawing_.commands[command_].endsOverlap = false;
            isWithinOverlap_ = true;
        }
        room_.make(static_cast<std::size_t>(arena_ - drawing_.arenas.data()),
                   (numRepeated + 1) * numBytes + Record::slack);
    }
    if (arena_->used == numBefore && command_ != none) {
        drawing_.commands[command_].endsOverlap = true; // there was more memory
    } else {
        openCommand(isWhole);
        if (arena_->used < numBefore) { // those before were drawn
            const std::size_t repeated = numRepeated * numBytes;
            std::memmove(arena_->bytes.data(), arena_->bytes.data() + numBefore - repeated,
                         repeated);
            arena_->used = repeated;
            arena_->count = drawing_.commands[command_].count = numRepeated;
        }
    }
    isWhole_ = true;
}

void Recorder::putCorner(const glm::vec3& point, Color color, std::size_t numRepeated) {
    Record record;
    record.add(point, dimensions_).add(color);
    put(record, numRepeated);
}

void Recorder::putDisc(const glm::vec3& center, float radius, Color color) {
    Record record;
    record.add(center, dimensions_).add(radius).add(color);
    put(record);
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
    const float halfWidth = halfWidthOf(stroke, setting);
    if (!(halfWidth > 0.f && std::isfinite(halfWidth)))
        return;
    begin(shape == Shape::Lines ? Kind::Segments : Kind::Strip, reader.dimensions(),
          setting.matrix);
    Style& style = look_.style;
    style = styleOf(stroke, shape, setting.pixelRatio);
    style.isGradient = !colorReader.isOne();
    if (style.isDashed) {
        style.dashMatrix = setting.pixelMatrix;
        style.dashScale = room_.viewportSize() / 2.f;
    }
    if (shape == Shape::Lines)
        segments(reader, colorReader, stroke, setting);
    else
        strip(shape, reader, colorReader, stroke, setting);
}

void Recorder::strip(Shape shape, PointReader& points, const ColorReader& colors,
                     const Stroke& stroke, const Setting& setting) {
    const std::size_t size = points.size();
    if (size == 0)
        return;
    const float halfWidth = halfWidthOf(stroke, setting);
    const Color color = colors.at(0);
    const bool isLoop = shape == Shape::LineLoop;
    look_.paintsOnce = setting.paintsOnce && colors.isOne() && color.a < 255 && size > 2;
    std::size_t firstGap = 0;
    if (isLoop || look_.paintsOnce) {
        const Extent extent(points);
        look_.overlap = {extent.lowest, extent.highest, halfWidth * reachOf(look_.style), color};
        firstGap = extent.firstGap;
    }
    Ruler ruler = rulerOf(stroke, look_.style, setting);
    StripWriter writer(*this, halfWidth, look_.style.isDashed ? &ruler : nullptr);

    // What a gap leaves of a loop is open, and begins behind the gap.
    bool isClosed = isLoop && firstGap == size;
    std::size_t first = isLoop && !isClosed ? firstGap : 0;
    std::size_t second = 1;
    std::size_t last = size - 1;
    if (isClosed) {
        const glm::vec3 point = points[0];
        while (second < size && points[second] == point)
            ++second;
        while (last > second && points[last] == point)
            --last;
        isClosed = second < size;
    }
    std::size_t count = size;
    if (isClosed) { // two dashes may meet where it does; otherwise it ends there
        count = last + 1;
        isClosed = !look_.style.isDashed || isOnAtEnds(ruler, look_.style, points, count);
        count += isClosed ? 0 : 1;
    }
    if (isClosed)
        writer.putNeighbor(points[last], colors.at(last));
    for (std::size_t i = 0; i < count; ++i, ++first) {
        first = first < size ? first : 0;
        const glm::vec3& point = points[first];
        if (isFinite(point))
            writer.add(point, colors.at(first));
        else if (writer.finish())
            putDot(writer.last(), writer.lastColor(), stroke, setting);
    }
    if (isClosed) {
        writer.putNeighbor(points[0], colors.at(0));
        writer.putNeighbor(points[second], colors.at(second));
    } else if (writer.finish()) {
        putDot(writer.last(), writer.lastColor(), stroke, setting);
    }
}

void Recorder::segments(PointReader& points, const ColorReader& colors, const Stroke& stroke,
                        const Setting& setting) {
    const float halfWidth = halfWidthOf(stroke, setting);
    Ruler ruler = rulerOf(stroke, look_.style, setting);
    for (std::size_t i = 1; i < points.size(); i += 2) {
        const glm::vec3 from = points[i - 1];
        const glm::vec3 to = points[i];
        if (!isFinite(from) || !isFinite(to))
            continue;
        const Color color = colors.at(i - 1);
        if (from == to) {
            putDot(from, color, stroke, setting);
            continue;
        }
        if (look_.style.isDashed)
            ruler.begin(from);
        Record record;
        record.add(from, dimensions_).add(ruler.phase()).add(halfWidth).add(color);
        record.add(to, dimensions_).add(0.f).add(0.f).add(colors.at(i));
        put(record);
    }
}

void Recorder::putDot(const glm::vec3& point, Color color, const Stroke& stroke,
                      const Setting& setting) {
    if (stroke.cap != Stroke::Cap::Round)
        return;
    const Kind kind = kind_;
    const Look look = look_;
    begin(Kind::Discs, dimensions_, setting.matrix);
    putDisc(point, halfWidthOf(stroke, setting), color);
    begin(kind, dimensions_, setting.matrix);
    look_ = look;
}

void Recorder::bufferPoints(Kind kind, const BufferPoints& points,
                            const std::shared_ptr<const VertexBuffer>& buffer,
                            unsigned int dimensions, const Setting& setting,
                            const glm::mat4& matrix, const Stroke* stroke) {
    begin(kind, dimensions, matrix);
    drawing_.buffers.push_back(buffer);
    look_.points = points;
    look_.isFromBuffer = true;
    isOpaque_ = isFlat(kind) && points.color.a == 255;
    if (stroke != nullptr) {
        look_.style = styleOf(*stroke, points.shape, setting.pixelRatio);
        look_.style.isDashed = false;
        look_.overlap = {glm::vec3(1.f), glm::vec3(0.f), points.halfWidth, points.color};
        look_.paintsOnce = setting.paintsOnce && points.shape != Shape::Lines &&
                           points.color.a < 255 && points.count > 2;
    }
    openCommand(true);
}

void Recorder::aliasedLines(Shape shape, PointReader& points, const ColorReader& colors,
                            const Setting& setting) {
    const std::size_t size = points.size();
    begin(Kind::Lines, points.dimensions(), setting.matrix);
    isOpaque_ = colors.isOpaque();
    const std::size_t step = shape == Shape::Lines ? 2 : 1;
    const std::size_t end = shape == Shape::LineLoop && size > 1 ? size + 1 : size;
    for (std::size_t i = 1; i < end; i += step) {
        const std::size_t next = i < size ? i : 0;
        const glm::vec3 from = points[i - 1];
        const glm::vec3 to = points[next];
        if (isFinite(from) && isFinite(to)) {
            putCorner(from, colors.at(i - 1), 0);
            putCorner(to, colors.at(next), 1);
        }
    }
}

// --- Images ---

void Recorder::beginImages(const std::shared_ptr<const Texture>& texture, unsigned int dimensions,
                           const Setting& setting) {
    begin(Kind::Images, dimensions, setting.matrix);
    if (drawing_.textures.empty() || drawing_.textures.back() != texture)
        drawing_.textures.push_back(texture);
    look_.texture = texture.get();
}

/// Makes room for an image at least.
/// \return where the next one goes.
unsigned char* Recorder::roomForImages(std::size_t numBytes) {
    if (arena_->bytes.size() - arena_->used < numBytes + Record::slack || command_ == none)
        makeRoom(numBytes, 0);
    return arena_->bytes.data() + arena_->used;
}

void Recorder::addImages(std::size_t count, std::size_t numBytes) {
    arena_->used += numBytes;
    arena_->count += count;
    drawing_.commands[command_].count += count;
}

template <unsigned int D>
void Recorder::putImage(const glm::vec3 (&points)[4], const TexturePart& part, Color color) {
    constexpr std::size_t size = sizeof(ImageCorner<D>);
    unsigned char* const to = roomForImages(4 * size);
    for (std::size_t i = 0; i < 4; ++i) {
        const float s = i % 2 == 0 ? part.from.x : part.to.x;
        const float t = i < 2 ? part.from.y : part.to.y;
        writeCorner<D>(to + i * size, points[i], color, 0.f, 0.f, s, t);
    }
    addImages(1, 4 * size);
}

void Recorder::image(const std::shared_ptr<const Texture>& texture, const Points& corners,
                     const TexturePart& part, Color tint, const Setting& setting) {
    PointReader reader(corners, setting.placement);
    glm::vec3 points[4];
    for (std::size_t i = 0; i < 4; ++i) {
        points[i] = reader[i];
        if (!isFinite(points[i]))
            return;
    }
    if (infinityIn(part) != 0.f)
        return;
    beginImages(texture, reader.dimensions(), setting);
    if (reader.dimensions() == 2)
        putImage<2>(points, part, tint);
    else
        putImage<3>(points, part, tint);
}

template <unsigned int D>
void Recorder::putQuads(const glm::vec3& point, const PixelQuad* quads, std::size_t count,
                        Color color, float up) {
    constexpr std::size_t size = 4 * sizeof(ImageCorner<D>);
    for (std::size_t i = 0; i < count;) {
        if (!isFiniteQuad(quads[i])) {
            ++i;
            continue;
        }
        unsigned char* const first = roomForImages(size);
        unsigned char* const end = arena_->bytes.data() + arena_->bytes.size();
        unsigned char* to = first;
        for (; i < count && isFiniteQuad(quads[i]) && to + size <= end; ++i, to += size)
            writeQuad<D>(to, point, color, quads[i], up);
        const auto numBytes = static_cast<std::size_t>(to - first);
        addImages(numBytes / size, numBytes);
    }
}

void Recorder::quads(const std::shared_ptr<const Texture>& texture, const QuadStyle& style,
                     const Points& place, const PixelQuad* quads, std::size_t count, Color color,
                     const Setting& setting) {
    PointReader reader(place, setting.placement);
    const glm::vec3 point = reader[0];
    if (count == 0 || !isFinite(point))
        return;
    beginImages(texture, reader.dimensions(), setting);
    look_.isCoverage = style.texels == Texels::Coverage;
    look_.isOnWholePixels = style.onWholePixels;
    if (reader.dimensions() == 2)
        putQuads<2>(point, quads, count, color, setting.pixelUp);
    else
        putQuads<3>(point, quads, count, color, setting.pixelUp);
}

// --- Areas and points ---

void Recorder::area(Shape shape, const Colors& colors, const Points& points,
                    const Setting& setting) {
    PointReader reader(points, setting.placement);
    const ColorReader colorReader(colors);
    if (colorReader.isEmpty())
        return;
    begin(Kind::Triangles, reader.dimensions(), setting.matrix);
    isOpaque_ = colorReader.isOpaque();
    struct Entry {
        glm::vec3 point;
        Color color;
    };
    Entry before[4] = {};
    const std::size_t size = reader.size();
    const std::size_t end = shape == Shape::Quads ? size - size % 4 : size;
    for (std::size_t i = 0; i < end; ++i) {
        const Entry next = {reader[i], colorReader.at(i)};
        const TriangleCorner place = placeOf(shape, i);
        const Entry& second = before[place.before];
        if (place.ends && isFinite(before[0].point) && isFinite(second.point) &&
            isFinite(next.point)) {
            std::size_t numRepeated = 0;
            const Entry corners[] = {before[0], second, next};
            for (const Entry& entry : corners)
                putCorner(entry.point, entry.color, numRepeated++);
        }
        before[place.keepsAs] = next;
    }
}

void Recorder::rings(std::initializer_list<Ring> rings, const Sizes& sizes, const Points& points,
                     const Setting& setting) {
    PointReader reader(points, setting.placement);
    for (const Ring& ring : rings) {
        if (ring.colors->isEmpty() || sizes.count == 0)
            return;
    }
    begin(Kind::Discs, reader.dimensions(), setting.matrix);
    for (std::size_t i = 0; i < reader.size(); ++i) {
        const glm::vec3& point = reader[i];
        const float size =
            sizes.data != nullptr ? sizes.data[std::min(i, sizes.count - 1)] : sizes.one;
        const float radius = size * setting.pixelRatio / 2.f;
        if (!isFinite(point) || !(radius > 0.f && std::isfinite(radius)))
            continue;
        for (const Ring& ring : rings)
            putDisc(point, radius * ring.size, ring.colors->at(i));
    }
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

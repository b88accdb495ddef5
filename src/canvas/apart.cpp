#include "canvas/apart.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vellis::canvas {
namespace {

/// Tiles of the viewport along each axis: a bit each.
constexpr int numTiles = 64;

/// More records than these are as good as everywhere: to look at each would cost what it saves.
constexpr std::size_t mostRecords = 64;

/// How far a pixel is reached from its centre, with what rounding may add.
constexpr float margin = 2.f;

/// The tiles from one to another, in one direction.
struct Range {
    int first = 0;
    int last = numTiles - 1;
};

/// A rectangle of tiles: at first all of them.
struct Tiles {
    Range x, y;

    std::uint64_t row() const {
        return (~std::uint64_t{0} >> (numTiles - 1 - (x.last - x.first))) << x.first;
    }
};

/// Any tiles.
class TileSet {
public:
    void clear() { std::memset(rows_, 0, sizeof rows_); }
    void add(const Tiles& tiles) {
        const std::uint64_t row = tiles.row();
        for (int y = tiles.y.first; y <= tiles.y.last; ++y)
            rows_[y] |= row;
    }
    bool touches(const Tiles& tiles) const {
        const std::uint64_t row = tiles.row();
        for (int y = tiles.y.first; y <= tiles.y.last; ++y) {
            if ((rows_[y] & row) != 0)
                return true;
        }
        return false;
    }

private:
    std::uint64_t rows_[numTiles];
};

/// The numbers of a record after its position.
struct RecordNumbers {
    const unsigned char* at;

    float operator[](std::size_t i) const {
        float number;
        std::memcpy(&number, at + i * sizeof number, sizeof number);
        return number;
    }
};

/// Where the points of a kind stand in a record, and how far in pixels it reaches from them.
struct Layout {
    std::size_t numPoints; ///< of a record
    std::size_t stride;    ///< from one to the next, in bytes
    std::size_t copies;    ///< of a record

    Layout(Kind kind, unsigned int dimensions)
        : numPoints(kind == Kind::Segments ? 2
                    : kind == Kind::Images ? 4
                                           : 1),
          stride(recordSize(kind, dimensions) / numPoints),
          copies(verticesOf(kind)) {}
};

float reachOf(Kind kind, const Look& look, const RecordNumbers& numbers) {
    switch (kind) {
    case Kind::Strip:
    case Kind::Segments:
        return numbers[1] * reachOf(look.style); // behind the phase
    case Kind::Discs:
        return numbers[0];
    case Kind::Images:
        return std::max(std::abs(numbers[0]), std::abs(numbers[1]));
    default:
        return 0.f;
    }
}

/// What the points of a command span, in clip coordinates after the division, and how far in pixels
/// it reaches beyond.
struct Span {
    float low[2] = {INFINITY, INFINITY};
    float high[2] = {-INFINITY, -INFINITY};
    float reach = 0.f;

    /// \return false where the point is not in front of the near plane, or nowhere.
    bool add(const glm::mat4& matrix, const float (&point)[3]) {
        float clip[4];
        for (int row = 0; row < 4; ++row)
            clip[row] = matrix[0][row] * point[0] + matrix[1][row] * point[1] +
                        matrix[2][row] * point[2] + matrix[3][row];
        if (!(clip[3] > 0.f && clip[2] >= -clip[3]))
            return false;
        for (int axis = 0; axis < 2; ++axis) {
            const float place = clip[axis] / clip[3];
            if (!std::isfinite(place))
                return false;
            low[axis] = std::min(low[axis], place);
            high[axis] = std::max(high[axis], place);
        }
        return true;
    }

    /// The tiles of an axis whose pixels may be touched.
    Range tiles(int axis, int size) const {
        const float half = static_cast<float>(size) / 2.f;
        const float scale = static_cast<float>(numTiles) / static_cast<float>(size);
        const float from = ((low[axis] + 1.f) * half - reach - margin) * scale;
        const float to = ((high[axis] + 1.f) * half + reach + margin) * scale;
        constexpr float last = numTiles - 1;
        return {from > 0.f ? static_cast<int>(std::min(from, last)) : 0,
                to < last ? static_cast<int>(std::max(to, 0.f)) : numTiles - 1};
    }
};

/// The tiles whose pixels a command may touch: all of them where that is not known.
Tiles tilesOf(const Drawing& drawing, const Command& command, const int (&viewport)[4]) {
    const Look& look = drawing.looks[command.look];
    const Kind kind = command.kind;
    const unsigned int dimensions = command.dimensions;
    if (command.count == 0 || command.count > mostRecords || look.paintsOnce || look.isFromBuffer)
        return {};
    const Layout layout(kind, dimensions);
    const std::size_t step = layout.copies * layout.numPoints * layout.stride;
    const unsigned char* record =
        drawing.arenas[arenaOf(kind, dimensions)].bytes.data() + command.first * step;
    Span span;
    for (std::size_t i = 0; i < command.count; ++i, record += step) {
        for (std::size_t j = 0; j < layout.numPoints; ++j) {
            const unsigned char* const at = record + j * layout.stride;
            float point[3] = {};
            std::memcpy(point, at, dimensions * sizeof *point);
            if (!span.add(look.matrix, point))
                return {};
            span.reach = std::max(
                span.reach, reachOf(kind, look, RecordNumbers{at + dimensions * sizeof *point}));
        }
    }
    return {span.tiles(0, viewport[2]), span.tiles(1, viewport[3])};
}

/// What is drawn with one arena's records of a kind.
struct Slot {
    std::size_t last = 0; ///< command, behind those that are joined
    bool isUsed = false;
    TileSet since; ///< what those behind the last one touch
};

constexpr std::size_t numSlots = 2 * numKinds;

std::size_t slotOf(const Command& command) {
    return 2 * static_cast<std::size_t>(command.kind) + (command.dimensions - 2);
}

/// Whether the records of a command follow those of another, and both are drawn alike.
bool follows(const Drawing& drawing, const Command& command, const Command& other) {
    return other.first + other.count == command.first &&
           drawing.looks[other.look].isSameAs(drawing.looks[command.look]);
}

} // namespace

void joinApart(Drawing& drawing, const int (&viewport)[4]) {
    std::vector<Command>& commands = drawing.commands;
    if (commands.size() < fewestToJoin)
        return;
    Slot slots[numSlots];
    std::size_t numJoined = 0;
    for (const Command command : commands) {
        const Tiles tiles = tilesOf(drawing, command, viewport);
        Slot& own = slots[slotOf(command)];
        if (own.isUsed && follows(drawing, command, commands[own.last]) &&
            !own.since.touches(tiles)) {
            commands[own.last].count += command.count;
            commands[own.last].isOpaque &= command.isOpaque;
        } else {
            own.isUsed = true;
            own.last = numJoined;
            own.since.clear();
            commands[numJoined++] = command;
        }
        for (Slot& slot : slots) {
            if (slot.isUsed && slot.last < own.last)
                slot.since.add(tiles);
        }
    }
    commands.resize(numJoined);
}

} // namespace vellis::canvas

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/canvas/canvas.hpp>
#include <vellis/canvas/stroke.hpp>

/// What a canvas has collected: records in memory, as GL will read them, and commands that say how
/// to draw them.
namespace vellis::canvas {

using Color = glm::vec<4, unsigned char>;

/// What the records of a command are.
enum class Kind : unsigned char {
    Lines,     ///< two corners for each of GL's lines
    Triangles, ///< three corners each
    Strip,     ///< the points of lines, each piece of which is a quad: see StrokeRecord
    Segments,  ///< lines of one piece, two records each
    Discs,     ///< round points
    Images,    ///< quads with a part of a texture: see ImageRecord
};
constexpr std::size_t numKinds = 6;

/// A corner of a line or a triangle: \p D numbers for its place, then its colour.
template <unsigned int D>
struct Corner {
    float position[D];
    Color color;
};

/// A point of a stroke. The piece from it to the next reads the point before and the one behind
/// these, too: so the first and the last point of an open line stand twice, and a closed one has
/// its neighbours at both ends. Where no piece begins the half width is 0.
template <unsigned int D>
struct StrokeRecord {
    float position[D];
    float phase;     ///< where in the dash pattern, in pixels
    float halfWidth; ///< in pixels
    Color color;
};

/// A round point.
template <unsigned int D>
struct Disc {
    float position[D];
    float radius; ///< in pixels
    Color color;
};

/// A corner of a quad with a part of a texture. A record is all four: first from the corner where
/// the part begins along the rows of the texture, then the other side in the same way.
template <unsigned int D>
struct ImageCorner {
    float position[D];
    float offset[2]; ///< in pixels
    float part[2];   ///< in the texture
    Color color;
};

/// The size of a record in bytes: of a kind, and with 2 or 3 dimensions.
constexpr std::size_t recordSize(Kind kind, unsigned int dimensions) {
    const std::size_t position = dimensions * sizeof(float);
    switch (kind) {
    case Kind::Lines:
    case Kind::Triangles:
        return position + sizeof(Color);
    case Kind::Strip:
        return position + 2 * sizeof(float) + sizeof(Color);
    case Kind::Segments:
        return 2 * recordSize(Kind::Strip, dimensions);
    case Kind::Images:
        return 4 * (position + 4 * sizeof(float) + sizeof(Color));
    case Kind::Discs:
        break;
    }
    return position + sizeof(float) + sizeof(Color);
}

/// Whether GL draws records as they are.
constexpr bool isFlat(Kind kind) {
    return kind < Kind::Strip;
}

/// Whether records stand in memory once, also where GL has no instanced arrays: those of quads with
/// textures hold all vertices.
constexpr bool standsOnce(Kind kind) {
    return isFlat(kind) || kind == Kind::Images;
}

/// How many vertices GL makes of a record: a corner, a quad or a triangle around a disc. Where it
/// has no instanced arrays, a record stands in memory as often, unless it stands there once anyway.
constexpr unsigned int verticesOf(Kind kind) {
    return kind == Kind::Discs ? 3 : standsOnce(kind) ? 1 : 4;
}

/// The arena of a kind: lines and triangles share theirs.
constexpr std::size_t arenaOf(Kind kind, unsigned int dimensions) {
    const std::size_t kinds = kind == Kind::Lines ? 0 : static_cast<std::size_t>(kind) - 1;
    return 2 * kinds + (dimensions - 2);
}
constexpr std::size_t numArenas = 10;

/// Records of one kind, side by side.
struct Arena {
    std::vector<unsigned char> bytes; ///< the room
    std::size_t used = 0;             ///< of it, in bytes
    std::size_t count = 0;            ///< of records
};

/// What the commands of strokes have in common.
struct Style {
    bool isGradient = false; ///< whether colours change along the pieces
    bool isDashed = false;
    Stroke::Join join = Stroke::Join::Miter;
    Stroke::Cap cap = Stroke::Cap::Butt;
    float miterLimit = 0.f;
    float period = 0.f;                                 ///< of the dashes, in pixels
    std::array<float, 2 * Stroke::mostDashes> dashes{}; ///< their middles, then half their lengths
    glm::mat4 dashMatrix{0.f};                          ///< of which dashes have their lengths
    glm::vec2 dashScale{0.f};                           ///< half the viewport's size then

    bool operator==(const Style& other) const;
};

/// How many half widths a stroke reaches beyond its points: a square cap's corner does 1.42.
float reachOf(const Style& style);

/// A stroke whose pixels are painted once.
struct Overlap {
    glm::vec3 lowest; ///< of the points; above `highest` where they are not known
    glm::vec3 highest;
    float reach; ///< how far in pixels the stroke goes beyond its points
    Color color;
};

/// Points that stand in a buffer of the caller's.
struct BufferPoints {
    const VertexBuffer* buffer; ///< one of Drawing::buffers
    Shape shape;                ///< of lines and areas
    std::size_t first;
    std::size_t count;
    float halfWidth; ///< the radius of discs
    Color color;
};

/// What a command draws with.
struct Look {
    Style style;             ///< of strokes
    glm::mat4 matrix{1.f};   ///< from records to clip coordinates
    bool paintsOnce = false; ///< whether pixels of `overlap` are painted once
    Overlap overlap = {};
    bool isFromBuffer = false; ///< whether `points` are drawn, and no records
    BufferPoints points = {};
    const Texture* texture = nullptr; ///< of images: one of Drawing::textures
    bool isCoverage = false;          ///< whether its texels are coverage
    bool isOnWholePixels = false;     ///< whether the offsets of images are from a corner of pixels

    /// Leaves the matrix alone, and what is not used then as it was.
    void reset(const glm::mat4& newMatrix) {
        matrix = newMatrix;
        style.isGradient = style.isDashed = false;
        style.join = Stroke::Join::Miter;
        style.cap = Stroke::Cap::Butt;
        style.miterLimit = 0.f;
        paintsOnce = isFromBuffer = false;
        texture = nullptr;
        isCoverage = isOnWholePixels = false;
    }

    /// Whether records of both can be drawn by one call.
    bool isSameAs(const Look& other) const {
        return !paintsOnce && !other.paintsOnce && !isFromBuffer && !other.isFromBuffer &&
               matrix == other.matrix && style == other.style && texture == other.texture &&
               isCoverage == other.isCoverage && isOnWholePixels == other.isOnWholePixels;
    }
};

constexpr std::uint32_t none = 0xFFFFFFFF; ///< in place of an index

/// A call of GL's, or the records of several that follow each other.
struct Command {
    Kind kind;
    unsigned char dimensions;
    bool continuesOverlap; ///< whether the command before is of the same stroke
    bool endsOverlap;
    bool isOpaque;      ///< whether it needs no blending
    std::uint32_t look; ///< index
    std::size_t first;  ///< record
    std::size_t count;  ///< of records
};

/// All of it.
struct Drawing {
    Drawing();
    ~Drawing();
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    /// Takes out what was drawn; the memory stays.
    void clear();

    std::array<Arena, numArenas> arenas;
    std::vector<Command> commands;
    std::vector<Look> looks;
    std::vector<std::shared_ptr<const VertexBuffer>> buffers; ///< the caller's, to keep them
    std::vector<std::shared_ptr<const Texture>> textures;     ///< the same
};

} // namespace vellis::canvas

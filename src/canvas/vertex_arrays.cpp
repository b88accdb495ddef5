#include "canvas/vertex_arrays.hpp"

#include <iterator>
#include <vector>

#include <vellis/gl.hpp>

namespace vellis::canvas {
namespace {

/// Two bytes for a corner, and two so that the next one lies where GL reads fast.
struct CornerBytes {
    signed char x, y, unused[2];
};

/// A quad along a piece of a line, from 0 to 1, and across, from -1 to 1; in the order of a strip.
constexpr CornerBytes quadCorners[] = {
    {0, -1, {}},
    {0, 1, {}},
    {1, -1, {}},
    {1, 1, {}},
};

/// A triangle around a circle of radius 1, with x in roots of 3.
constexpr CornerBytes triangleCorners[] = {
    {-1, -1, {}},
    {1, -1, {}},
    {0, 2, {}},
};

constexpr unsigned int quadIndices[] = {0, 1, 2, 2, 1, 3};

constexpr std::size_t mostQuads = mostCopied(Kind::Strip);
constexpr std::size_t mostDiscs = mostCopied(Kind::Discs);
constexpr std::size_t mostCorners = mostCopied(Kind::Triangles);

constexpr std::size_t trianglesOffset = mostQuads * sizeof quadCorners;

static_assert(mostQuads * 4 <= 65535 && mostCorners <= 65535, "an index has 16 bits");
static_assert(mostDiscs * 3 <= mostCorners && mostCorners % 6 == 0, "whole lines and triangles");

constexpr unsigned int bit(unsigned int location) {
    return 1u << location;
}

constexpr unsigned int pointLocations = bit(firstPointLocation) | bit(firstPointLocation + 1) |
                                        bit(firstPointLocation + 2) | bit(firstPointLocation + 3);

/// The attributes that the records of a kind feed, as bits.
constexpr unsigned int locationsOf(Kind kind) {
    switch (kind) {
    case Kind::Lines:
    case Kind::Triangles:
        return bit(cornerLocation) | bit(colorLocation);
    case Kind::Images:
    case Kind::Discs:
        return bit(cornerLocation) | bit(firstPointLocation) | bit(sizeLocation) |
               bit(colorLocation);
    default:
        return bit(cornerLocation) | pointLocations | bit(sizeLocation) | bit(colorLocation) |
               bit(nextColorLocation);
    }
}

const void* atByte(std::size_t offset) {
    return reinterpret_cast<const void*>(offset);
}

template <class T>
BufferName makeBuffer(unsigned int target, const std::vector<T>& elements) {
    unsigned int name = 0;
    glGenBuffers(1, &name);
    BufferName buffer(name);
    if (name == 0)
        return buffer;
    glBindBuffer(target, name);
    glBufferData(target, static_cast<GLsizeiptr>(elements.size() * sizeof(T)), elements.data(),
                 GL_STATIC_DRAW);
    return buffer;
}

} // namespace

/// What glVertexAttribPointer is told.
struct VertexArrays::Attribute {
    unsigned int location;
    unsigned int components;
    unsigned int type;
    std::size_t stride;
    std::size_t offset;
};

bool VertexArrays::makeCorners() {
    if (corners_.name() != 0 && indices_.name() != 0)
        return true;
    constexpr std::size_t numQuadCorners = std::size(quadCorners);
    constexpr std::size_t numIndices = std::size(quadIndices);
    std::vector<CornerBytes> corners(mostQuads * numQuadCorners +
                                     mostDiscs * std::size(triangleCorners));
    std::vector<unsigned short> indices(firstOwnIndex + mostCorners);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        corners[i] =
            i < mostQuads * numQuadCorners
                ? quadCorners[i % numQuadCorners]
                : triangleCorners[(i - mostQuads * numQuadCorners) % std::size(triangleCorners)];
    }
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const std::size_t index =
            i < firstOwnIndex ? numQuadCorners * (i / numIndices) + quadIndices[i % numIndices]
                              : i - firstOwnIndex;
        indices[i] = static_cast<unsigned short>(index);
    }
    corners_ = makeBuffer(GL_ARRAY_BUFFER, corners);
    // With a vertex array object bound, this would land in it.
    indices_ = makeBuffer(GL_ARRAY_BUFFER, indices);
    return corners_.name() != 0 && indices_.name() != 0;
}

bool VertexArrays::use(VertexArray& vertexArray) {
    if (!capabilities_.hasVertexArrays)
        return true;
    if (vertexArray.name() == 0) {
        unsigned int name = 0;
        glGenVertexArrays(1, &name);
        vertexArray = VertexArray(name);
    }
    if (vertexArray.name() == 0) // what follows would land in the caller's
        return false;
    glBindVertexArray(vertexArray.name());
    return true;
}

void VertexArrays::point(const Attribute& attribute) const {
    const bool isColor = attribute.type == GL_UNSIGNED_BYTE;
    glVertexAttribPointer(attribute.location, static_cast<int>(attribute.components),
                          attribute.type, static_cast<unsigned char>(isColor),
                          static_cast<int>(attribute.stride), atByte(attribute.offset));
}

void VertexArrays::enableOnly(unsigned int locations, bool isInstanced) {
    for (unsigned int i = 0; i < numLocations; ++i) {
        if ((locations & bit(i)) != 0)
            glEnableVertexAttribArray(i);
        else
            glDisableVertexAttribArray(i);
        if (isInstanced)
            glVertexAttribDivisorARB(i, i == cornerLocation ? 0 : 1);
    }
}

void VertexArrays::pointToRecords(Kind kind, unsigned int dimensions, unsigned int buffer,
                                  std::size_t offset, bool isInstanced) const {
    const std::size_t stride = recordSize(kind, dimensions);
    const std::size_t positionSize = dimensions * sizeof(float);
    if (verticesOf(kind) > 1) {
        glBindBuffer(GL_ARRAY_BUFFER, corners_.name());
        point({cornerLocation, 2, GL_BYTE, sizeof(CornerBytes),
               kind == Kind::Discs ? trianglesOffset : 0});
    }
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    const auto position = [&](unsigned int location, std::size_t place) {
        point({location, dimensions, GL_FLOAT, stride, offset + place});
    };
    const auto color = [&](unsigned int location, std::size_t place) {
        point({location, 4, GL_UNSIGNED_BYTE, stride, offset + place});
    };
    if (kind == Kind::Lines || kind == Kind::Triangles) {
        position(cornerLocation, 0);
        color(colorLocation, positionSize);
        return;
    }
    if (kind == Kind::Images) {
        const std::size_t vertex = stride / 4;
        const std::size_t place = offset + positionSize;
        point({cornerLocation, dimensions, GL_FLOAT, vertex, offset});
        point({firstPointLocation, 2, GL_FLOAT, vertex, place});
        point({sizeLocation, 2, GL_FLOAT, vertex, place + 2 * sizeof(float)});
        point({colorLocation, 4, GL_UNSIGNED_BYTE, vertex, place + 4 * sizeof(float)});
        return;
    }
    if (kind == Kind::Discs) {
        position(firstPointLocation, 0);
        point({sizeLocation, 1, GL_FLOAT, stride, offset + positionSize});
        color(colorLocation, positionSize + sizeof(float));
        return;
    }
    // Where the four points, and what else belongs to the second and the third, have their records:
    // in the next ones of a strip; in one and the other half of a segment.
    const bool isStrip = kind == Kind::Strip;
    const std::size_t step = isStrip ? stride * (isInstanced ? 1 : verticesOf(kind)) : stride / 2;
    const std::size_t start = isStrip ? step : 0;
    for (unsigned int i = 0; i < 4; ++i)
        position(firstPointLocation + i, isStrip ? i * step : i / 2 * step);
    point({sizeLocation, 2, GL_FLOAT, stride, offset + start + positionSize});
    const std::size_t colorPlace = start + positionSize + 2 * sizeof(float);
    color(colorLocation, colorPlace);
    color(nextColorLocation, colorPlace + step);
}

bool VertexArrays::useStreamed(Kind kind, unsigned int dimensions, unsigned int buffer) {
    VertexArray& vertexArray = streamed_[arenaOf(kind, dimensions)];
    const bool isSetUp = capabilities_.hasVertexArrays && vertexArray.name() != 0;
    if (buffer == 0 || !makeCorners() || !use(vertexArray))
        return false;
    if (isSetUp)
        return true;
    enableOnly(locationsOf(kind), false);
    pointToRecords(kind, dimensions, buffer, 0, false);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices_.name());
    return true;
}

bool VertexArrays::useFree(bool isInstanced, Kind kind) {
    if (!makeCorners() || !use(isInstanced ? instanced_ : free_))
        return false;
    enableOnly(locationsOf(kind), isInstanced);
    return true;
}

bool VertexArrays::useRecords(Kind kind, unsigned int dimensions, unsigned int buffer,
                              std::size_t offset, bool isInstanced) {
    if (buffer == 0 || !useFree(isInstanced, kind))
        return false;
    pointToRecords(kind, dimensions, buffer, offset, isInstanced);
    if (!isInstanced)
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices_.name());
    return true;
}

bool VertexArrays::useCorners(unsigned int dimensions, unsigned int buffer) {
    if (buffer == 0 || !use(free_))
        return false;
    enableOnly(bit(cornerLocation), false);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    point({cornerLocation, dimensions, GL_FLOAT, 0, 0});
    return true;
}

bool VertexArrays::useCenters(unsigned int dimensions, unsigned int buffer, std::size_t first) {
    if (buffer == 0 || !makeCorners() || !use(instanced_))
        return false;
    enableOnly(bit(cornerLocation) | bit(firstPointLocation), true);
    glBindBuffer(GL_ARRAY_BUFFER, corners_.name());
    point({cornerLocation, 2, GL_BYTE, sizeof(CornerBytes), trianglesOffset});
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    point({firstPointLocation, dimensions, GL_FLOAT, 0, first * dimensions * sizeof(float)});
    return true;
}

bool VertexArrays::usePieces(unsigned int dimensions, unsigned int buffer,
                             const std::array<std::size_t, 4>& points, std::size_t step) {
    if (buffer == 0 || !makeCorners() || !use(instanced_))
        return false;
    enableOnly(bit(cornerLocation) | pointLocations, true);
    glBindBuffer(GL_ARRAY_BUFFER, corners_.name());
    point({cornerLocation, 2, GL_BYTE, sizeof(CornerBytes), 0});
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    const std::size_t size = dimensions * sizeof(float);
    for (unsigned int i = 0; i < points.size(); ++i)
        point({firstPointLocation + i, dimensions, GL_FLOAT, step * size, points[i] * size});
    return true;
}

bool VertexArrays::useQuad() {
    const bool isSetUp = capabilities_.hasVertexArrays && quad_.name() != 0;
    if (!makeCorners() || !use(quad_))
        return false;
    if (isSetUp)
        return true;
    enableOnly(bit(cornerLocation), false);
    glBindBuffer(GL_ARRAY_BUFFER, corners_.name());
    point({cornerLocation, 2, GL_BYTE, sizeof(CornerBytes), 0});
    return true;
}

} // namespace vellis::canvas

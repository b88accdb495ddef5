#pragma once

#include <array>
#include <cstddef>

#include "canvas/capabilities.hpp"
#include "canvas/drawing.hpp"
#include "canvas/gl_object.hpp"
#include "canvas/programs.hpp"

namespace vellis::canvas {

/// How many records a call of glDrawElements draws, at most, where they stand in memory for each
/// vertex: as many as there are corners and indices for.
constexpr std::size_t mostCopied(Kind kind) {
    return isFlat(kind) ? 24576 : 4096;
}

/// Where in the buffer of indices those of lines, triangles and discs begin: each its own number.
/// Before them stand those of quads, six each. Drivers that prepare vertices in blocks are fast
/// with indices only.
constexpr std::size_t firstOwnIndex = 6 * mostCopied(Kind::Strip);

/// Where the vertices of a canvas come from: the vertex array objects, and the buffers of corners
/// and indices that they share. Where GL gives no name for one of them, there is nothing to draw
/// with, and the result is false.
class VertexArrays {
public:
    explicit VertexArrays(const Capabilities& capabilities) : capabilities_(capabilities) {}

    /// Binds the arrays of a kind over the buffer that it is streamed through: records from its
    /// beginning on, one for each vertex.
    bool useStreamed(Kind kind, unsigned int dimensions, unsigned int buffer);

    /// Points the arrays of a kind to records from a byte of a buffer on.
    /// \param isInstanced  Whether there is one for all vertices of an instance.
    bool useRecords(Kind kind, unsigned int dimensions, unsigned int buffer, std::size_t offset,
                    bool isInstanced);

    /// Points them to positions alone, for programs that have the rest from uniforms.
    /// @{
    bool useCorners(unsigned int dimensions, unsigned int buffer);
    bool useCenters(unsigned int dimensions, unsigned int buffer, std::size_t first);
    /// \param points  Where the first instance has its four points.
    /// \param step    How many points the next one has them further on.
    bool usePieces(unsigned int dimensions, unsigned int buffer,
                   const std::array<std::size_t, 4>& points, std::size_t step);
    /// @}

    /// Binds the corners of quads alone.
    bool useQuad();

private:
    struct Attribute;

    bool makeCorners();
    bool use(VertexArray& vertexArray);
    bool useFree(bool isInstanced, Kind kind);
    void point(const Attribute& attribute) const;
    void pointToRecords(Kind kind, unsigned int dimensions, unsigned int buffer, std::size_t offset,
                        bool isInstanced) const;
    void enableOnly(unsigned int locations, bool isInstanced);

    const Capabilities& capabilities_;
    BufferName corners_;
    BufferName indices_;
    std::array<VertexArray, numArenas> streamed_;
    VertexArray free_;      ///< set up anew for each use
    VertexArray instanced_; ///< the same, where attributes advance once for each instance
    VertexArray quad_;
};

} // namespace vellis::canvas

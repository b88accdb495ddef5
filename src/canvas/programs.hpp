#pragma once

#include <array>
#include <cstdint>

#include "canvas/capabilities.hpp"
#include "canvas/drawing.hpp"
#include "canvas/gl_object.hpp"

namespace vellis::canvas {

/// What the attributes of all programs of a canvas have for locations. Location 0 is that of the
/// attribute that differs from vertex to vertex: GL may take that one's number of vertices.
enum Location : unsigned int {
    cornerLocation =
        0, ///< of the quad or the triangle; of lines, triangles and images the position
    firstPointLocation = 1, ///< the four points of a stroke; the centre of a disc; an offset
    sizeLocation = 5,       ///< phase and half width; the radius of a disc; a place in a texture
    colorLocation = 6,
    nextColorLocation = 7,
};
constexpr unsigned int numLocations = 8;

/// The programs, by what they draw.
enum class ProgramFamily : unsigned char { Flat, Stroke, Disc, Mask, Image };

/// What a program of a family does beyond the plain one: bits.
enum Variant : unsigned int {
    dashed = 1,       ///< strokes
    gradient = 2,     ///< strokes with a colour for each point
    uniformStyle = 4, ///< one colour and size for all, from uniforms
    alone = 8,        ///< strokes of one piece, solid, of one colour, with straight ends
    // Ahead of these stand the ends of strokes: see withEnds().
    coverage = 256,    ///< images whose texels are coverage
    wholePixels = 512, ///< images that begin at the corner of a pixel
};

/// A variant whose strokes have these joins and caps.
constexpr unsigned int withEnds(unsigned int variant, Stroke::Join join, Stroke::Cap cap) {
    return variant | static_cast<unsigned int>(join) << 4 | static_cast<unsigned int>(cap) << 6;
}

/// The uniforms, in the order of their names in programs.cpp.
enum class UniformName : unsigned char {
    Matrix,
    Viewport,
    MiterLimit,
    Dashes,
    DashPeriod,
    DashMatrix,
    DashScale,
    HalfWidth,
    StyleColor,
    Texels,
    Frame,
    Box,
};
constexpr std::size_t numUniforms = 12;

/// A linked program, and what its uniforms were set to last.
class CanvasProgram {
public:
    CanvasProgram(ProgramFamily family, unsigned int variants, const Capabilities& capabilities);

    /// Whether it is that variant of that family.
    bool is(ProgramFamily family, unsigned int variants) const {
        return family == family_ && variants == variants_;
    }

    /// The GL name; 0 where it did not link.
    unsigned int name() const { return isLinked_ ? program_.name() : 0; }

    int location(UniformName uniform) const {
        return locations_[static_cast<std::size_t>(uniform)];
    }

    /// The drawing, and the index of its look, whose values the uniforms have.
    std::uint64_t drawing = 0;
    std::uint32_t look = none;

private:
    ProgramFamily family_;
    unsigned int variants_;
    ProgramName program_;
    bool isLinked_ = false;
    std::array<int, numUniforms> locations_{};
};

} // namespace vellis::canvas

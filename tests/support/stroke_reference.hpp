#pragma once

#include <cstddef>
#include <vector>

#include <glm/vec2.hpp>

#include <offscreen/image.hpp>

/// \file
/// What a stroke must look like: its geometry, sampled 1024 times a pixel.

namespace vellis::test {

enum class StrokeJoin { Miter, Round, Bevel };
enum class StrokeCap { Butt, Square, Round };

/// A polyline and how it is drawn, in pixels; the origin is the lower left corner of the picture.
struct Stroke {
    std::vector<glm::dvec2> points;
    double width = 1;
    StrokeJoin join = StrokeJoin::Miter;
    StrokeCap cap = StrokeCap::Butt;
    bool closed = false;
    double opacity = 1;
    std::vector<double> dashes = {}; ///< lengths on and off in turn, an even number; empty: solid
    double dashOffset = 0;           ///< how far into the dashes the line starts
    double miterLimit = 4;           ///< the largest miter length by the width, or there is a bevel
};

/// A value for each pixel: rows from top to bottom.
struct Coverage {
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<float> values;
};

/// How much of each pixel a stroke covers, from 0 to 1, without its opacity. Repeated points count
/// once; fewer than two different ones draw nothing.
Coverage strokeCoverage(const Stroke& stroke, unsigned int width, unsigned int height);

/// How far a picture is from what it must be, over the pixels where either has anything.
struct StrokeErrors {
    std::size_t touched = 0; ///< how many pixels that are
    double sum = 0;          ///< of the absolute errors, in 255ths
    std::size_t beyond16 = 0;
    std::size_t beyond64 = 0;
    double largest = 0; ///< of the absolute errors

    double mean() const;            ///< in 255ths
    double percentBeyond16() const; ///< of the touched pixels
    double percentBeyond64() const;
    StrokeErrors& operator+=(const StrokeErrors& other);
};

/// Compares a stroke's coverage times its opacity with the red of a picture, where it was drawn in
/// white on black. Both have the same size.
StrokeErrors strokeErrors(const Coverage& truth, double opacity, const offscreen::Image& image);

/// What is, what must be, and eight times the difference, side by side.
offscreen::Image strokeDifferences(const Coverage& truth, double opacity,
                                   const offscreen::Image& image);

} // namespace vellis::test

#pragma once

#include <string>

#include <gtest/gtest.h>

#include <offscreen/image.hpp>

#include "support/stroke_reference.hpp"
#include "support/stroke_scenes.hpp"

/// \file
/// How far a picture of strokes may be from what it must be.

namespace vellis::test {

/// Of the mean in 255ths, and of what is beyond in percent of the touched pixels.
struct StrokeLimits {
    double mean = 0.75;
    double beyond16 = 0.5;
    double beyond64 = 0.1;
    double largest = 255; ///< of all errors, in 255ths
};

/// The coverage of a scene, sampled when it is first asked for.
const Coverage& truthOf(const StrokeScene& scene);

/// Whether errors are within limits.
testing::AssertionResult isWithin(const StrokeErrors& errors, const StrokeLimits& limits = {});

/// Whether a picture is its scene within the limits. Where it is not, what is, what must be and the
/// differences are left in the folder that TEST_TMPDIR names, or that of temporary files, and the
/// message says where.
/// \param way  How the scene was drawn, for the name of the file.
testing::AssertionResult shows(const StrokeScene& scene, const offscreen::Image& image,
                               const std::string& way);

} // namespace vellis::test

#pragma once

#include <memory>
#include <string>

#include <vellis/canvas.hpp>

#include "signal.hpp"

/// What is written at a plot. Without vellis::text the program is built with no_words.cpp in place
/// of words.cpp.
namespace plot {

/// A font in two sizes.
struct Fonts;

/// \param file  Of any font; where it is empty, DejaVu Sans is looked for among the system's.
/// \return null where there is none, with a line on standard error that says so.
/// \throws std::runtime_error with one sentence where a file is named and cannot be used.
std::shared_ptr<const Fonts> loadFonts(const std::string& file);

/// What a plot is about.
struct Subject {
    Range shown;        ///< the part that is shown
    Range all;          ///< the whole signal
    glm::dvec2 highest; ///< the sample of the greatest value
};

/// Writes the title, the legend, and the numbers at the axes, in a batch whose points are pixels.
/// \param size  The framebuffer's, in pixels.
void writeWords(const std::shared_ptr<vellis::Canvas>& canvas, const Fonts& fonts,
                const glm::uvec2& size, const Subject& subject);

} // namespace plot

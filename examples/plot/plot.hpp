#pragma once

#include <memory>
#include <vector>

#include <glm/vec2.hpp>

#include <vellis/canvas.hpp>

#include "layout.hpp"
#include "signal.hpp"
#include "words.hpp"

namespace plot {

/// Draws a signal: a part of it, and above that all of it.
class Plot {
public:
    /// \param fonts  For what is written; without them nothing is.
    explicit Plot(const Signal& signal, std::shared_ptr<const Fonts> fonts = nullptr);

    /// Clears the framebuffer that is bound and draws.
    /// \param size   The framebuffer's, in pixels.
    /// \param shown  The part.
    void draw(const glm::uvec2& size, const Range& shown) const;

private:
    std::shared_ptr<vellis::Picture> record(const std::vector<glm::dvec2>& samples) const;
    void drawSignal(const Area& area, const Range& shown) const;
    void drawOverview(const Area& area, const Range& shown) const;
    void placeIn(const Area& area, const Range& shown) const;
    void placeInPixels() const;

    std::shared_ptr<vellis::Canvas> canvas_;
    std::shared_ptr<const Fonts> fonts_;
    std::shared_ptr<vellis::Picture> curve_;    ///< all samples, in GL's memory
    std::shared_ptr<vellis::Picture> overview_; ///< fewer of them
    Range all_;
    glm::dvec2 highest_;
};

} // namespace plot

#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/canvas/stroke.hpp>

#include "canvas/drawing.hpp"

namespace vellis::canvas {

/// Puts the dashes of a stroke into a style, if there are any: see Stroke::dashed.
void setDashes(Style& style, const Stroke& stroke, float pixelRatio);

/// Whether a place in the pattern is on a dash.
bool isOnDash(const Style& style, float phase);

/// How far a line has come, in pixels, for dashes whose phase runs on along the whole line.
class Ruler {
public:
    /// \param matrix  From points to clip coordinates.
    /// \param scale   Half the viewport's size.
    Ruler(const glm::mat4& matrix, const glm::vec2& scale, double offset, double period);

    /// Begins a line.
    void begin(const glm::vec3& point);

    /// Goes on to a point.
    void goTo(const glm::vec3& point);

    /// The phase there: the distance from the beginning, and the offset, modulo the period.
    float phase() const { return static_cast<float>(phase_); }

private:
    const glm::mat4& matrix_;
    glm::vec2 scale_;
    double offset_;
    double period_;
    double phase_ = 0.;
    glm::dvec4 last_{0.};
};

} // namespace vellis::canvas

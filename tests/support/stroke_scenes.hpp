#pragma once

#include <string>
#include <vector>

#include "support/stroke_reference.hpp"

/// \file
/// Strokes to draw and to compare with what they must be.

namespace vellis::test {

/// The width and height of the picture that the strokes lie in.
constexpr unsigned int strokeSceneSize = 256;

struct StrokeScene {
    std::string name;
    std::vector<Stroke> strokes; ///< of one opacity, which do not touch each other
    bool blendsTwice = false;    ///< half transparent, and crosses itself
};

/// Strokes of every kind.
const std::vector<StrokeScene>& strokeScenes();

/// A stroke of 3 to 12 points: any width from 0.5 to 20, any join and cap, some closed, some
/// dashed. The same for the same seed, everywhere.
Stroke randomStroke(unsigned int seed);

} // namespace vellis::test

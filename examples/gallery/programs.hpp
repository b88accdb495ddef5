#pragma once

#include <memory>

#include <vellis/shading.hpp>

/// The programs that the panels draw with.
namespace gallery {

/// `position` and `colour`; the colour runs smoothly between the vertices.
std::shared_ptr<vellis::Program> makeColourProgram();

/// `position`, `colour` and `normal`; lit from the upper left.
std::shared_ptr<vellis::Program> makeLitProgram();

/// The same, with a colour of its own for the back of faces.
std::shared_ptr<vellis::Program> makeTwoSidedProgram();

/// `position`, `colour` and `size`; each point is a disc of that diameter in pixels of the
/// framebuffer. Needs vellis::Drawable::enablePointSprite.
std::shared_ptr<vellis::Program> makeDiscProgram();

} // namespace gallery

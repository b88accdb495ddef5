#pragma once

#include <memory>

#include <vellis/shading.hpp>

/// The programs that the panels draw with.
namespace gallery {

/// `position` and `colour`; the colour runs smoothly between the vertices.
std::shared_ptr<vellis::Program> makeColorProgram();

/// `position`, `colour` and `normal`; lit from the upper left.
std::shared_ptr<vellis::Program> makeLitProgram();

/// The same, with a colour of its own for the back of faces.
std::shared_ptr<vellis::Program> makeTwoSidedProgram();

/// `position`, `colour` and `normal` with three outputs: the plain colour, the normal and the
/// depth.
std::shared_ptr<vellis::Program> makeThreeOutputsProgram();

/// `position`, `colour` and `size`; each point is a disc of that diameter in pixels of the
/// framebuffer. Needs vellis::Drawable::enablePointSprite.
std::shared_ptr<vellis::Program> makeDiscProgram();

/// `position` (x and y) and `value`: a place from 0 to 1 in the texture of one dimension `colours`.
std::shared_ptr<vellis::Program> makeColorMapProgram();

/// `position` and `coordinate`, under the matrix `mvp`: a place in the texture of two dimensions
/// `picture`.
std::shared_ptr<vellis::Program> makePictureProgram();

/// `position`, `normal` and `coordinate`: the same, lit from the upper left.
std::shared_ptr<vellis::Program> makeLitPictureProgram();

/// `position` and `normal`, under the matrix `mvp`: the colour comes from the texture of three
/// dimensions `solid` of `texels` texels a side, which fills the cube from -1 to 1; lit from the
/// upper left.
std::shared_ptr<vellis::Program> makeSolidProgram();

} // namespace gallery

#pragma once

#include <vector>

#include <gallery/frame/panel.hpp>

/// The tables of panels, each beside its drawings.
namespace gallery {

/// Triangles, points and meshes.
std::vector<Panel> shapePanels();

/// Widths and sizes, smoothing and face culling.
std::vector<Panel> rasterPanels();

/// The Toolbox's lines, in 2D and in 3D.
std::vector<Panel> toolboxLinePanels();

/// The Toolbox's fans, strips, rectangles and quads.
std::vector<Panel> toolboxAreaPanels();

/// The Toolbox's points, bullseyes and dashes.
std::vector<Panel> toolboxMarkPanels();

/// A canvas's strokes: joins, caps, widths, dashes and colours.
std::vector<Panel> canvasLinePanels();

/// A canvas's points, pictures and areas.
std::vector<Panel> canvasShapePanels();

/// Scenes of many lines of a canvas's: a map, a plot, a wireframe.
std::vector<Panel> canvasScenePanels();

/// Images that a canvas draws.
std::vector<Panel> canvasImagePanels();

/// Texts: sizes, anchors, angles, scripts, places. None where vellis::text is missing, or a font,
/// of which a line on standard error tells.
std::vector<Panel> textPanels();

/// Textures of one to three dimensions.
std::vector<Panel> texturePanels();

/// Filters and wrap modes.
std::vector<Panel> samplerPanels();

/// Images of one's own to draw to: textures, several samples, several outputs.
std::vector<Panel> framebufferPanels();

/// The tests, masks and logical operations that decide what a fragment writes.
std::vector<Panel> fragmentPanels();

/// Blending factors and equations.
std::vector<Panel> blendingPanels();

} // namespace gallery

#pragma once

#include <vector>

#include <gallery/panels/mesh.hpp>

/// Surfaces to draw. Their positions lie between -1 and 1, x to the right, y upwards and z towards
/// the viewer; the front of their triangles is outside.
namespace gallery {

/// A tube along a trefoil knot, coloured along its way.
Surface makeKnot();

/// A ball of flat triangles, coloured from top to bottom.
Surface makeBall();

/// A round bowl, open to the top and tilted towards the viewer.
Surface makeBowl();

/// A ball. Its texture coordinates run eastwards from 0 to 1 and from the south pole to the north
/// pole.
Surface makeGlobe();

} // namespace gallery

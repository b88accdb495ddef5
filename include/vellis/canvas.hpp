#pragma once

/// \file
/// Drawings of any size.

#include <vellis/canvas/canvas.hpp>
#include <vellis/canvas/picture.hpp>
#include <vellis/canvas/points.hpp>
#include <vellis/canvas/stroke.hpp>

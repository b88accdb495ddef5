#pragma once

/// \file
/// What can be drawn.

#include <vellis/drawing/drawable.hpp>
#include <vellis/drawing/vertex_attributes_binding.hpp>

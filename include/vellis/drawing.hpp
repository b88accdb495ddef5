#pragma once

/// \file
/// What can be drawn.

#include <vellis/drawing/attribute_format.hpp>
#include <vellis/drawing/drawable.hpp>
#include <vellis/drawing/primitives.hpp>
#include <vellis/drawing/toolbox.hpp>
#include <vellis/drawing/vertex_attribute.hpp>
#include <vellis/drawing/vertex_attributes_binding.hpp>

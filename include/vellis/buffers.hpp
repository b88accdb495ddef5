#pragma once

/// \file
/// Buffer objects of every kind and their registry.

#include <vellis/buffers/array_buffer.hpp>
#include <vellis/buffers/buffer_object.hpp>
#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/buffers/element_buffer.hpp>
#include <vellis/buffers/index_buffer.hpp>
#include <vellis/buffers/pixel_buffer.hpp>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/buffers/vertex_buffer.hpp>

#pragma once

/// \file
/// All of vellis but OpenGL itself, which <vellis/gl.hpp> brings, and glm's matrices, which
/// <glm/mat3x3.hpp> and <glm/mat4x4.hpp> bring.

#include <vellis/buffers.hpp>
#include <vellis/canvas.hpp>
#include <vellis/context.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/drawing.hpp>
#include <vellis/engine.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/shading.hpp>
#include <vellis/state.hpp>
#include <vellis/texture.hpp>
#include <vellis/version.hpp>

/// An object layer over OpenGL 2.1. The namespaces in it hold what is not a class of GL objects:
/// engine starts it up and shuts it down, drawable has what can be drawn, state the records of GL
/// state, and internal, whose second name is diagnostics, what writes to standard error.
namespace vellis {}

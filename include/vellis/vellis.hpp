#pragma once

/// \file
/// All of vellis but OpenGL itself, which <vellis/gl.hpp> brings.

#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/engine.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/internal.hpp>
#include <vellis/shading.hpp>
#include <vellis/state.hpp>
#include <vellis/texture.hpp>
#include <vellis/version.hpp>

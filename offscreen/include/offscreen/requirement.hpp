#pragma once

/// \file
/// Whether a context is good enough for the library.

#include <string>

namespace offscreen {

/// Says what the current context lacks of what the library needs: OpenGL 2.1 with vertex array
/// objects, framebuffer objects and mapped buffer ranges. Needs vellis::engine::init.
/// \return One sentence that names the driver and everything that is missing; empty where nothing
/// is.
std::string missingRequirement();

} // namespace offscreen

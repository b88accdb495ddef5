#pragma once

/// \file
/// Shaders and programs.

#include <vellis/shading/program.hpp>
#include <vellis/shading/shader.hpp>

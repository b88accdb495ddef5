#pragma once

/// \file
/// Shaders and programs.

#include <vellis/shading/attrib.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/shading/program_manager.hpp>
#include <vellis/shading/shader.hpp>
#include <vellis/shading/uniform.hpp>

#pragma once

#include <memory>
#include <string>

#include <vellis/shading.hpp>

namespace common {

/// A program of two shaders that are written for the library's preamble.
/// \throws std::runtime_error with the driver's words where a shader or the program is wrong.
std::shared_ptr<vellis::Program> buildProgram(const std::string& vertexSource,
                                              const std::string& fragmentSource);

} // namespace common

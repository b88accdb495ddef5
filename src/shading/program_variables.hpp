#pragma once

#include <vellis/shading/attrib.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/shading/uniform.hpp>

#include "shading/name_table.hpp"

namespace vellis {

/// What a program knows of its last link.
struct Program::Variables {
    /// The handles of the active uniforms and attributes by name.
    /// @{
    NameTable<UniformVariable> uniforms;
    NameTable<Attrib> attributes;
    /// @}

    /// Whether there are active uniforms, with handles or without.
    bool hasActiveUniforms = false;

    /// The locations of the uniforms without handles that GL was asked for: as many as the program
    /// uses different names.
    NameTable<UniformVariable> unkept;
};

} // namespace vellis

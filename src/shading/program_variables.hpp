#pragma once

#include <vellis/shading/attrib.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/shading/uniform.hpp>

#include "shading/name_table.hpp"

namespace vellis {

/// The handles of a program's active uniforms and attributes by name.
struct Program::Variables {
    NameTable<UniformVariable> uniforms;
    NameTable<Attrib> attributes;
};

} // namespace vellis

#pragma once

#include <memory>
#include <string>
#include <vector>

#include <vellis/shading.hpp>

namespace vellis::bench {

/// An active uniform or attribute of a program.
struct Variable {
    std::string name;
    unsigned int type; ///< GL's enumerator
};
using Variables = std::vector<Variable>;

/// `position`: the attribute of all programs here but those for dashed lines.
Variables flatAttributes();

/// `mvp` and `color`: the uniforms of flatProgram(), whatever the size of the workload.
Variables flatUniforms(unsigned int size);

/// That many `vec4` uniforms, `color` among them: those of manyUniformsSource() with
/// flatFragmentSource.
Variables manyUniforms(unsigned int size);

/// A vertex shader whose uniforms are those of manyUniforms() but `color`.
std::string manyUniformsSource(unsigned int size);

/// Draws `position` through the matrix `mvp` in `color`.
extern const char* const flatVertexSource;
extern const char* const flatFragmentSource;

/// A program of these two sources.
std::shared_ptr<Program> flatProgram();

} // namespace vellis::bench

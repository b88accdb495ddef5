#pragma once

/// \file
/// Dumps on standard error: what the driver is, and what a shader or a program holds.

#include <vellis/export.hpp>

namespace vellis::internal {

/// \name The context
/// @{

/// Prints vendor, renderer, version and GLSL version, a line each:
/// `Corvane: OpenGL vendor: Mesa`. What the context does not tell is `(null)`. Four `glGetString`.
VELLIS_EXPORT void print_gl_info();

/// Prints `Corvane: OpenGL extensions: ` and the list of extensions on one line, which is cut at
/// 276 characters behind the title: the start of the list. One `glGetString`; in a core context,
/// which gives them one by one, a `glGetIntegerv` and a `glGetStringi` for each that is shown.
VELLIS_EXPORT void print_gl_extensions();

/// Prints 19 limits of the context, a line each: `Corvane: MAX_TEXTURE_SIZE = 16384`. The largest
/// viewport is hexadecimal (`Corvane: MAX_VIEWPORT_DIMS = 0x4000, 0x4000`). One `glGetIntegerv` or
/// `glGetFloatv` for each; a limit that the context does not know is 0.
VELLIS_EXPORT void print_gl_caps();
/// @}

/// \name Shaders
/// The name of a shader or a program and its label stand behind the title, if it has one:
/// `Corvane: Shader Source Code of 3 'lamp'`. See label().
///
/// The source lines and the logs are printed as formats without arguments: `%%` prints as `%`, any
/// other percent sign stands as it is. Lines of any length are printed in full.
/// @{

/// Prints `Corvane: Shader Source Code`, then every line of \p source behind its number:
/// \verbatim
/// Corvane: Shader Source Code
///    1: #version 120
///    2: void main() { gl_Position = gl_Vertex; }
/// \endverbatim
/// A line feed at the very end adds no line. A null source is the one line `(null)`. No GL call.
VELLIS_EXPORT void print_shader(const char* source);

/// The same for the source that GL holds of a shader, that is with the preamble that the compiler
/// saw. One `glGetShaderiv`, one `glGetShaderSource`. For a name that is no shader the first line
/// alone is printed and the errors stay in GL's queue.
VELLIS_EXPORT void print_shader(unsigned int shader);

/// The same for each attached shader of a program that is of the given type (`GL_VERTEX_SHADER`,
/// `GL_FRAGMENT_SHADER`), in GL's order, the first 32 attached shaders at most. Prints nothing
/// where there is none, or for a name that is no program. A Program detaches nothing, so its
/// shaders can be printed as long as it lives.
VELLIS_EXPORT void print_shader(unsigned int program, int shaderType);

/// `print_shader(program, GL_VERTEX_SHADER)`.
VELLIS_EXPORT void print_vertex_shader(unsigned int program);

/// `print_shader(program, GL_FRAGMENT_SHADER)`.
VELLIS_EXPORT void print_fragment_shader(unsigned int program);

/// Prints the log that GL has kept of a shader's compilation, behind `Shader Compilation: `.
/// Nothing where there is none, as after a compilation without messages, or for a name that is no
/// shader. One `glGetShaderiv`, and `glGetShaderInfoLog` where the log is not empty.
VELLIS_EXPORT void print_shader_compilation_info(unsigned int shader);

/// The same for the log of a program's linking, behind `Program Linkage: `.
VELLIS_EXPORT void print_program_link_info(unsigned int program);
/// @}

/// \name The interface of a program
/// Where the program has a label, its name and that stand behind the first word of each line:
/// `Corvane: Uniform of 5 'water': loc = 0, ...`.
/// @{

/// Prints the active attributes of a program, a line each:
/// `Corvane: Attrib: loc = 0, name = position, type = GL_FLOAT_VEC2`. `loc` is the index among the
/// active attributes, not the location (which `glGetAttribLocation` tells). A type without a name
/// here (the one- and three-dimensional, shadow, rectangle and array samplers, matrices that are
/// not square, unsigned vectors) is `(null)`. A line is cut at 257 characters behind `Attrib: `.
/// Two `glGetProgramiv` and one `glGetActiveAttrib` for each; nothing for a name that is no
/// program.
VELLIS_EXPORT void print_program_attributes(unsigned int program);

/// The same for the active uniforms: `Corvane: Uniform: loc = 0, name = mvp, type = GL_FLOAT_MAT4`.
VELLIS_EXPORT void print_program_uniforms(unsigned int program);

/// The GL type of the active attribute whose *index* is the location of the attribute \p name. That
/// is the type of \p name itself only where locations follow the order of the active attributes, as
/// in a program with one attribute. 0 for an unknown or null name and for a name that is no
/// program; then GL's queue has an error, but for the null name, which makes no GL call.
VELLIS_EXPORT unsigned int attrib_type(unsigned int program, const char* name);

/// The GL type of the first active uniform, in GL's order, that answers to \p name. A single one
/// answers to its whole name alone. An array, which has more than one element, answers to every
/// name that begins with its own up to the first bracket, or, where it has none, up to the first
/// dot: `colors[0]` to `colors`, `colors[2]` and `colorsOfWinter`, also where the program has
/// another uniform of that name further down. 0 where none answers, for a null name, and for a name
/// that is no program.
VELLIS_EXPORT unsigned int uniform_type(unsigned int program, const char* name);
/// @}

} // namespace vellis::internal

#pragma once

/// \file
/// The tracked GL state on standard error: all of it, or what has changed.

#include <vellis/export.hpp>

namespace vellis::internal {

/// Prints the 57 tracked pieces of GL state with their current values, one line each, always in the
/// same order:
/// \verbatim
/// Corvane: COLOR_WRITEMASK = true, true, true, true
/// Corvane: BLEND_SRC_RGB = 770
/// Corvane: DEPTH_FUNC = GL_LESS
/// Corvane: STENCIL_VALUE_MASK = 0xffffffff
/// Corvane: VIEWPORT = 0, 0, 800, 600
/// \endverbatim
///
/// The tracked states are the colour and depth masks, blending, the depth and stencil tests, the
/// scissor, the texture bindings of the active unit, the renderbuffer and vertex array bindings,
/// point sizes, clear values, the viewport, the read buffer and the pixel store. Blend factors, the
/// depth range and the depth clear value are read and shown as floats, so `GL_SRC_ALPHA` is 770;
/// the stencil's references and masks and the pixel store are hexadecimal; an enumerator without a
/// name here (a read buffer of `GL_COLOR_ATTACHMENT0`) is `unknown enum : 0x8ce0`.
///
/// Behind the name of what is bound stands its label, if it has one:
/// `TEXTURE_BINDING_2D = 7 'noise'`. See label().
///
/// One `glGetBooleanv`, `glGetFloatv` or `glGetIntegerv` for each; no state changes. What the
/// context does not know prints as zeros, and leaves its error in GL's queue. It takes nothing from
/// what diff_gl_states() remembers.
VELLIS_EXPORT void print_gl_states();

/// Prints those of the tracked states that have changed since the call before, whatever code
/// changed them: `Corvane DIFF : BLEND = false -> true`. The first call only remembers. So bracket
/// what you suspect:
///
/// \code
/// vellis::internal::diff_gl_states();
/// drawOverlay();
/// vellis::internal::diff_gl_states(); // what drawOverlay() has left changed
/// \endcode
///
/// Each Context remembers its own for as long as it lives, and begins with a first call. Where none
/// is in use, what is remembered lives as long as the process: there is no reset, engine::dispose()
/// keeps it, and with another GL context current the two are compared. From the first change of the
/// active texture unit on, every call prints a line for it, whose old value is the unit's index
/// less the value of `GL_TEXTURE0` (`GL_TEXTURE-33983 -> GL_TEXTURE1`): the line tells the unit
/// that is active now, no more. A float that is not a number differs from itself, and is printed
/// each time.
///
/// The GL calls are those of print_gl_states().
VELLIS_EXPORT void diff_gl_states();

} // namespace vellis::internal

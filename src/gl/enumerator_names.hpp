#pragma once

#include <cstddef>

/// The names of GL's enumerators, as diagnostics print them.
namespace vellis::gl {

/// A value and its name.
struct EnumeratorName {
    unsigned int value;
    const char* name;
};

/// The names that the values of one kind have. The same number has other names among other kinds.
struct EnumeratorNames {
    const EnumeratorName* begin;
    const EnumeratorName* end;

    template <std::size_t N>
    constexpr EnumeratorNames(const EnumeratorName (&names)[N]) : begin(names),
                                                                  end(names + N) {}

    /// The name of \p value, or null where it has none.
    const char* find(unsigned int value) const;
};

extern const EnumeratorNames errors;              ///< of glGetError, but for GL_NO_ERROR
extern const EnumeratorNames framebufferStatuses; ///< of an incomplete framebuffer
extern const EnumeratorNames variableTypes;       ///< of attributes and uniforms
extern const EnumeratorNames blendEquations;      ///< of glBlendEquation
extern const EnumeratorNames comparisons;         ///< of depth and stencil tests
extern const EnumeratorNames stencilOperations;   ///< of glStencilOp
extern const EnumeratorNames colorBuffers;        ///< of glReadBuffer, without attachments

} // namespace vellis::gl

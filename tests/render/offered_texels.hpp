#pragma once

#include <vellis/gl.hpp>

#include "support/texel_formats.hpp"

/// Whether the context stores a texel type: one and two components need GL_ARB_texture_rg and
/// floats GL_ARB_texture_float, unless it is one of OpenGL 3.0.
inline bool isOffered(const vellis::test::TexelRow& texel) {
    const bool isRedOrRg = texel.pixelFormat == GL_RED || texel.pixelFormat == GL_RG;
    const bool isFloat = texel.pixelType == GL_FLOAT;
    return GLAD_GL_VERSION_3_0 != 0 || ((!isRedOrRg || GLAD_GL_ARB_texture_rg != 0) &&
                                        (!isFloat || GLAD_GL_ARB_texture_float != 0));
}

/// Calls \p function with the TypeOf each type of the list that the context stores.
template <class Texels, class Function>
void eachOffered(Function function) {
    Texels::each([&](auto texel) {
        if (isOffered(vellis::test::texelRow<typename decltype(texel)::type>))
            function(texel);
    });
}

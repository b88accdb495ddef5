#pragma once

#include <vellis/gl.hpp>

#include "support/texel_formats.hpp"

/// Whether the context stores a texel type.
inline bool isOffered(const vellis::test::TexelRow& texel) {
    const auto needs = [&](vellis::test::TexelNeeds extension) {
        return (static_cast<unsigned int>(texel.needs) & static_cast<unsigned int>(extension)) != 0;
    };
    return GLAD_GL_VERSION_3_0 != 0 ||
           ((!needs(vellis::test::TexelNeeds::texture_rg) || GLAD_GL_ARB_texture_rg != 0) &&
            (!needs(vellis::test::TexelNeeds::texture_float) || GLAD_GL_ARB_texture_float != 0));
}

/// Calls \p function with the TypeOf each type of the list that the context stores.
template <class Texels, class Function>
void eachOffered(Function function) {
    Texels::each([&](auto texel) {
        if (isOffered(vellis::test::texelRow<typename decltype(texel)::type>))
            function(texel);
    });
}

#pragma once

#include <vellis/detail/hot.hpp>
#include <vellis/drawing/vertex_attributes_binding.hpp>
#include <vellis/gl.hpp>

#include "gl/names.hpp"

namespace vellis {

/// What every draw and every new drawable does. Here it needs no calls into another source, and
/// nothing is prepared for exceptions, which GL does not throw. The benchmarks draw/handles and
/// drawable/make show it.
struct VertexAttributesBinding::Inlined {
    static void bind(const VertexAttributesBinding& binding) {
        if (exists(binding))
            bindExisting(binding);
        else
            refuse();
    }

    static bool exists(const VertexAttributesBinding& binding) {
        return gl::isHere(gl::Kind::VertexArray, binding.context_);
    }

    static void bindExisting(const VertexAttributesBinding& binding) { bind(setCurrent(binding)); }

    /// bindExisting in two parts: the first gives the name for the second.
    /// @{
    static unsigned int setCurrent(const VertexAttributesBinding& binding) {
        gl::thread().binding = &binding;
        return binding.id_;
    }
    static void bind(unsigned int name) {
        if (glBindVertexArray != nullptr)
            glBindVertexArray(name);
    }
    /// @}

    /// Binds 0, and lets nothing be drawn.
    VELLIS_COLD static void refuse();

    static void unbind() noexcept {
        gl::thread().binding = nullptr;
        if (glBindVertexArray != nullptr)
            glBindVertexArray(0);
    }
};

} // namespace vellis

#pragma once

#include <memory>

#include <vellis/detail/hot.hpp>
#include <vellis/detail/recycling_allocator.hpp>
#include <vellis/drawing/vertex_attributes_binding.hpp>
#include <vellis/gl.hpp>

#include "gl/names.hpp"

namespace vellis {

/// What every draw and every new drawable does. Here it needs no calls into another source, and
/// nothing is prepared for exceptions, which GL does not throw. The benchmarks draw/handles and
/// drawable/make show it.
struct VertexAttributesBinding::Inlined {
    static std::shared_ptr<VertexAttributesBinding> make() {
        struct Constructible : VertexAttributesBinding {};
        return std::allocate_shared<Constructible>(detail::RecyclingAllocator<Constructible>());
    }

    static void bind(const VertexAttributesBinding& binding) {
        if (glBindVertexArray == nullptr)
            return;
        if (!gl::isHere(gl::Kind::VertexArray, binding.context_))
            return refuse();
        gl::thread.binding = &binding;
        glBindVertexArray(binding.id_);
    }

    /// Binds 0, and lets nothing be drawn.
    VELLIS_COLD static void refuse();

    static void unbind() noexcept {
        gl::thread.binding = nullptr;
        if (glBindVertexArray != nullptr)
            glBindVertexArray(0);
    }
};

} // namespace vellis

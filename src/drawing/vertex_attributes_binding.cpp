#include <vellis/drawing/vertex_attributes_binding.hpp>

#include <vellis/gl.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "gl/entry_point.hpp"
#include "gl/memory.hpp"

namespace vellis {

std::shared_ptr<VertexAttributesBinding> VertexAttributesBinding::make() {
    struct Constructible : VertexAttributesBinding {};
    using Allocator = detail::RecyclingAllocator<Constructible, gl::InlinedMemory>;
    return std::allocate_shared<Constructible>(Allocator());
}

VertexAttributesBinding::VertexAttributesBinding()
    : context_(gl::indexHere(gl::Kind::VertexArray)) {
    callIfLoaded(glGenVertexArrays, 1, &id_);
}

VertexAttributesBinding::~VertexAttributesBinding() {
    if (gl::canDelete(gl::Kind::VertexArray, context_, id_))
        callIfLoaded(glDeleteVertexArrays, 1, &id_);
}

void VertexAttributesBinding::bind() const {
    Inlined::bind(*this);
}

void VertexAttributesBinding::unbind() {
    Inlined::unbind();
}

unsigned int VertexAttributesBinding::id() const {
    return gl::isHere(gl::Kind::VertexArray, context_) ? id_ : 0;
}

VELLIS_COLD void VertexAttributesBinding::Inlined::refuse() {
    gl::refuse(gl::Kind::VertexArray);
    gl::thread().binding = gl::refusedBinding;
    bind(0u);
}

const void* VertexAttributesBinding::current() {
    return glBindVertexArray != nullptr ? gl::thread().binding : nullptr;
}

} // namespace vellis

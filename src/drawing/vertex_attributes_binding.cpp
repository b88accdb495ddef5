#include <vellis/drawing/vertex_attributes_binding.hpp>

#include <vellis/gl.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "gl/entry_point.hpp"

namespace vellis {

std::shared_ptr<VertexAttributesBinding> VertexAttributesBinding::make() {
    return Inlined::make();
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
    gl::thread.binding = gl::refusedBinding;
    glBindVertexArray(0);
}

const void* VertexAttributesBinding::current() {
    return gl::thread.binding;
}

} // namespace vellis

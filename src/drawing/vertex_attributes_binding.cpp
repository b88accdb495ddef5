#include <vellis/drawing/vertex_attributes_binding.hpp>

#include <vellis/gl.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "gl/entry_point.hpp"

namespace vellis {

const VertexAttributesBinding* VertexAttributesBinding::current_ = nullptr;

std::shared_ptr<VertexAttributesBinding> VertexAttributesBinding::make() {
    return Inlined::make();
}

VertexAttributesBinding::VertexAttributesBinding() {
    callIfLoaded(glGenVertexArrays, 1, &id_);
}

VertexAttributesBinding::~VertexAttributesBinding() {
    callIfLoaded(glDeleteVertexArrays, 1, &id_);
}

void VertexAttributesBinding::bind() const {
    Inlined::bind(*this);
}

void VertexAttributesBinding::unbind() {
    Inlined::unbind();
}

const VertexAttributesBinding* VertexAttributesBinding::current() {
    return current_;
}

} // namespace vellis

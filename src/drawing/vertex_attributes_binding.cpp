#include <vellis/drawing/vertex_attributes_binding.hpp>

#include <vellis/detail/make_shared.hpp>
#include <vellis/gl.hpp>

#include "engine/entry_point.hpp"

namespace vellis {

const VertexAttributesBinding* VertexAttributesBinding::current_ = nullptr;

std::shared_ptr<VertexAttributesBinding> VertexAttributesBinding::make() {
    return detail::makeShared<VertexAttributesBinding>();
}

VertexAttributesBinding::VertexAttributesBinding() {
    callIfLoaded(glGenVertexArrays, 1, &id_);
}

VertexAttributesBinding::~VertexAttributesBinding() {
    callIfLoaded(glDeleteVertexArrays, 1, &id_);
}

void VertexAttributesBinding::bind() const {
    if (glBindVertexArray == nullptr)
        return;
    glBindVertexArray(id_);
    current_ = this;
}

void VertexAttributesBinding::unbind() {
    callIfLoaded(glBindVertexArray, 0u);
    current_ = nullptr;
}

} // namespace vellis

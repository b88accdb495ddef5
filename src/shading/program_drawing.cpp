/// What every draw does with a program: binding, unbinding, drawing.
///
/// This is shaped by measurement. Binding tells a program that holds no binding, as between any two
/// draws, from one that does, so that the code which releases a binding stands elsewhere; and what
/// is unbound is released behind GL's calls. The benchmarks draw/handles and
/// draw/values show it.

#include <vellis/shading/program.hpp>

#include <utility>

#include <vellis/gl.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"

namespace vellis {
namespace {

/// Whether a pointer shares in owning anything. Unlike a count, the compiler sees through this
/// comparison: behind it, it knows whether there is anything to release.
bool ownsAnything(const std::shared_ptr<VertexAttributesBinding>& pointer) {
    return std::shared_ptr<VertexAttributesBinding>().owner_before(pointer);
}

} // namespace

void Program::bind() const {
    bound_ = true;
    glUseProgram(gl::nameHere(gl::Kind::Program, group_, id_));
}

void Program::bind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    if (ownsAnything(attributesBinding_) || !gl::isHere(gl::Kind::Program, group_)) {
        rebind(binding);
        return;
    }
    // Empty, it has nothing to release, and the code for that is not in the way of each draw.
    attributesBinding_ = binding;
    bound_ = true;
    glUseProgram(id_);
    if (attributesBinding_ != nullptr)
        VertexAttributesBinding::Inlined::bind(*attributesBinding_);
}

VELLIS_COLD void Program::rebind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    bind();
    attributesBinding_ = binding;
    if (attributesBinding_ != nullptr)
        VertexAttributesBinding::Inlined::bind(*attributesBinding_);
    if (!gl::isHere(gl::Kind::Program, group_))
        gl::thread.binding = gl::refusedBinding;
}

void Program::bind(const Drawable& drawable) const {
    bind(drawable.getAttributesBinding());
}

void Program::unbind() const {
    bound_ = false;
    if (attributesBinding_ != nullptr) {
        const std::shared_ptr<VertexAttributesBinding> unbound = std::move(attributesBinding_);
        VertexAttributesBinding::Inlined::unbind();
    } else if (gl::thread.binding == gl::refusedBinding) {
        gl::thread.binding = nullptr;
    }
    glUseProgram(0);
}

void Program::draw(const Drawable& drawable, unsigned int first, unsigned int count) const {
    bind(drawable);
    drawable.draw(first, count);
    unbind();
}

} // namespace vellis

/// What every draw does with a program: binding, unbinding, drawing.
///
/// This is shaped by measurement. Binding tells what nearly every draw has from all else, which
/// stands elsewhere; what is unbound is released behind GL's calls. The benchmarks draw/handles and
/// draw/values show it.

#include <vellis/shading/program.hpp>

#include <utility>

#include <vellis/gl.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"

namespace vellis {

void Program::bind() const {
    usage_.setBound(true);
    if (gl::isHere(gl::Kind::Program, usage_.group()) && gl::thread().unbound == 0)
        glUseProgram(id_);
    else
        bindOther();
}

void Program::bind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    using Binding = VertexAttributesBinding::Inlined;
    const VertexAttributesBinding* const bound = binding.get();
    if (!usage_.isUnusedIn(&gl::thread().group) || bound == nullptr || !Binding::exists(*bound)) {
        rebind(binding);
        return;
    }
    usage_.holdBound(binding);
    const unsigned int name = Binding::setCurrent(*bound); // what GL's calls need not outlast
    glUseProgram(id_);
    Binding::bind(name);
}

VELLIS_COLD void Program::bindOther() const {
    const unsigned int name = gl::nameHere(gl::Kind::Program, usage_.group(), id_);
    gl::thread().program = name;
    glUseProgram(name);
}

VELLIS_COLD void Program::rebind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    bind();
    usage_.hold(binding);
    if (binding != nullptr)
        VertexAttributesBinding::Inlined::bind(*binding);
    if (!exists())
        gl::thread().binding = gl::refusedBinding;
}

void Program::bind(const Drawable& drawable) const {
    bind(drawable.getAttributesBinding());
}

void Program::unbind() const {
    if (usage_.isHoldingBound())
        usage_.releaseUnbound([] { VertexAttributesBinding::Inlined::unbind(); });
    else
        unbindOther();
    glUseProgram(0);
}

VELLIS_COLD void Program::unbindOther() const {
    usage_.setBound(false);
    if (usage_.isHolding())
        usage_.releaseUnbound([] { VertexAttributesBinding::Inlined::unbind(); });
    else if (gl::thread().binding == gl::refusedBinding)
        gl::thread().binding = nullptr;
}

void Program::draw(const Drawable& drawable, unsigned int first, unsigned int count) const {
    bind(drawable);
    drawable.draw(first, count);
    unbind();
}

} // namespace vellis

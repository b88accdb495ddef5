#include <vellis/shading/program.hpp>

#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "shading/program_variables.hpp"

namespace vellis {

/// Stands for a GL program that somebody else owns, to the very end of the process.
class VELLIS_NO_EXPORT Program::Proxy : public Program {
public:
    /// The programs that have one.
    enum class Of { Current, Null };

    template <Of program>
    static Proxy& instance() {
        static detail::Lasting proxy([] { return Proxy(); });
        struct Kept {
            static void release() { (*proxy).attributesBinding_.reset(); }
        };
        detail::AtExit<Kept>::arm();
        return *proxy;
    }

    void setId(unsigned int id) { id_ = id; }

private:
    // The name that the base class made is left behind: GL may give it a meaning elsewhere.
    Proxy() { id_ = 0; }
};

namespace {

/// Whether a pointer shares in owning anything. Unlike a count, the compiler sees through this
/// comparison: behind it, it knows whether there is anything to release.
bool ownsAnything(const std::shared_ptr<VertexAttributesBinding>& pointer) {
    return std::shared_ptr<VertexAttributesBinding>().owner_before(pointer);
}

} // namespace

Program::~Program() {
    dispose();
    attributesBinding_.reset(); // before the shaders
}

void Program::dispose() {
    if (id_ == 0)
        return;
    variables_.reset();
    glDeleteProgram(id_);
    id_ = 0;
}

void Program::bind() const {
    bound_ = true;
    glUseProgram(id_);
}

void Program::bind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    if (ownsAnything(attributesBinding_)) {
        rebind(binding);
        return;
    }
    // Empty, it has nothing to release, and the code for that is not in the way of each draw.
    attributesBinding_ = binding;
    bind();
    if (attributesBinding_ != nullptr)
        VertexAttributesBinding::Inlined::bind(*attributesBinding_);
}

[[gnu::noinline, gnu::cold]] void
Program::rebind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    bind();
    attributesBinding_ = binding;
    if (attributesBinding_ != nullptr)
        VertexAttributesBinding::Inlined::bind(*attributesBinding_);
}

void Program::bind(const Drawable& drawable) const {
    bind(drawable.getAttributesBinding());
}

void Program::unbind() const {
    bound_ = false;
    if (attributesBinding_ != nullptr) {
        const std::shared_ptr<VertexAttributesBinding> unbound = std::move(attributesBinding_);
        VertexAttributesBinding::Inlined::unbind();
    }
    glUseProgram(0);
}

void Program::draw(const Drawable& drawable, unsigned int first, unsigned int count) const {
    bind(drawable);
    drawable.draw(first, count);
    unbind();
}

void Program::beginAttributesBinding() const {
    attributesBinding_ = VertexAttributesBinding::Inlined::make();
    VertexAttributesBinding::Inlined::bind(*attributesBinding_);
}

std::shared_ptr<VertexAttributesBinding> Program::finishAttributesBinding() const {
    std::shared_ptr<VertexAttributesBinding> finished = std::move(attributesBinding_);
    VertexAttributesBinding::Inlined::unbind();
    return finished;
}

const Program& Program::current() {
    Proxy& program = Proxy::instance<Proxy::Of::Current>();
    int id = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &id);
    program.setId(static_cast<unsigned int>(id));
    return program;
}

const Program& Program::null() {
    return Proxy::instance<Proxy::Of::Null>();
}

UniformVariable* Program::findUniform(const char* name, std::size_t length) const {
    return variables_ != nullptr ? variables_->uniforms.find(name, length) : nullptr;
}

const Attrib* Program::findAttrib(const char* name, std::size_t length) const {
    return variables_ != nullptr ? variables_->attributes.find(name, length) : nullptr;
}

const Attrib& Program::getAttrib(const char* name) const {
    static detail::Lasting none([] { return Attrib(-1); });
    const Attrib* const attribute = findAttrib(name);
    return attribute != nullptr ? *attribute : *none;
}

void Program::setUniform(const char* name, const Texture& texture) {
    if (Uniform<Texture>* const uniform = findUniform<Texture>(name)) {
        uniform->texture = &texture;
        setUniform(*uniform);
    }
}

void Program::setUniform(const Uniform<Texture>& uniform) {
    const Uniform<Texture>* const target =
        uniform.loc < 0 ? findUniform<Texture>(uniform.name) : &uniform;
    if (target != nullptr && uniform.texture != nullptr)
        setUniform(target->loc, static_cast<int>(target->unit), *uniform.texture);
}

void Program::setUniform(int location, int unit, const Texture& texture) {
    glUniform1i(location, unit);
    glActiveTexture(GL_TEXTURE0 + static_cast<unsigned int>(unit));
    texture.bind();
}

} // namespace vellis

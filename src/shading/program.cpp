#include <vellis/shading/program.hpp>

#include <utility>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "gl/context_state.hpp"
#include "shading/program_variables.hpp"

namespace vellis {

/// Stands for a GL program that somebody else owns, to the very end of the process or of a Context.
class VELLIS_NO_EXPORT Program::Proxy : public Program {
public:
    /// The programs that have one.
    enum class Of { Current, Null };

    template <Of program>
    static Proxy& instance();

    void setId(unsigned int id) { id_ = id; }

private:
    struct Both;

    // The name that the base class made is left behind: GL may give it a meaning elsewhere.
    Proxy() { id_ = 0; }
    explicit Proxy(unsigned int id) : Program(id) {}
};

/// Those of a Context, which do not delete what they stand for, either.
struct Program::Proxy::Both {
    detail::Lasting<Proxy> current{[] { return Proxy(0); }};
    detail::Lasting<Proxy> null{[] { return Proxy(0); }};

    ~Both() {
        (*current).attributesBinding_.reset();
        (*null).attributesBinding_.reset();
    }
};

template <Program::Proxy::Of program>
Program::Proxy& Program::Proxy::instance() {
    if (gl::thread.state != nullptr) {
        auto& both = gl::thread.state->at(gl::Slot::ProgramProxies, [] { return Both(); });
        return *(program == Of::Current ? both.current : both.null);
    }
    static detail::Lasting proxy([] { return Proxy(); });
    struct Kept {
        static void release() { (*proxy).attributesBinding_.reset(); }
    };
    detail::AtExit<Kept>::arm();
    return *proxy;
}

Program::~Program() {
    dispose();
    attributesBinding_.reset(); // before the shaders
}

void Program::dispose() {
    if (id_ == 0)
        return;
    variables_.reset();
    if (gl::canDelete(gl::Kind::Program, group_, id_))
        glDeleteProgram(id_);
    id_ = 0;
}

bool Program::exists() const {
    return gl::isHere(gl::Kind::Program, group_);
}

unsigned int Program::id() const {
    return exists() ? id_ : 0;
}

UniformVariable& Program::inert(unsigned int type, std::unique_ptr<UniformVariable> (*make)()) {
    using Handles = std::vector<std::unique_ptr<UniformVariable>>;
    gl::Kept& kept = gl::thread.inertUniforms;
    if (kept.object == nullptr) {
        kept = {new Handles, [](void* handles) { delete static_cast<Handles*>(handles); }};
        gl::releaseAtEndOfThread();
    }
    Handles& handles = *static_cast<Handles*>(kept.object);
    for (const auto& handle : handles) {
        if (handle->type_ == type)
            return *handle;
    }
    handles.push_back(make());
    return *handles.back();
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

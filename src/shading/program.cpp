#include <vellis/shading/program.hpp>

#include <vellis/detail/lasting.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "gl/names.hpp"
#include "shading/program_variables.hpp"

namespace vellis {

bool Program::exists() const {
    return gl::isHere(gl::Kind::Program, usage_.group());
}

unsigned int Program::id() const {
    return exists() ? id_ : 0;
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

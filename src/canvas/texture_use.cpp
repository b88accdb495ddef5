#include "canvas/texture_use.hpp"

#include <vellis/gl.hpp>

namespace vellis::canvas {
namespace {

unsigned int gl(int value) {
    return static_cast<unsigned int>(value);
}

} // namespace

TextureUse::TextureUse(unsigned int texture, const Capabilities& capabilities)
    : unit_(capabilities.lastUnit) {
    glGetIntegerv(GL_ACTIVE_TEXTURE, &activeUnit_);
    glActiveTexture(GL_TEXTURE0 + unit_);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture);
    if (capabilities.hasSamplers) {
        glGetIntegerv(GL_SAMPLER_BINDING, &sampler_);
        if (sampler_ != 0)
            glBindSampler(unit_, 0);
    }
}

TextureUse::~TextureUse() {
    if (sampler_ != 0)
        glBindSampler(unit_, gl(sampler_));
    glBindTexture(GL_TEXTURE_2D, gl(texture_));
    glActiveTexture(gl(activeUnit_));
}

} // namespace vellis::canvas

#include <vellis/texture/rbo.hpp>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "gl/names.hpp"
#include "gl/operation.hpp"

namespace vellis {

RBO::RBO() : group_(gl::indexHere(gl::Kind::Renderbuffer)) {
    callIfLoaded(glGenRenderbuffers, 1, &id_);
}

RBO::~RBO() {
    if (gl::canDelete(gl::Kind::Renderbuffer, group_, id_))
        callIfLoaded(glDeleteRenderbuffers, 1, &id_);
}

unsigned int RBO::id() const {
    return gl::isHere(gl::Kind::Renderbuffer, group_) ? id_ : 0;
}

unsigned int RBO::idToUse() const {
    return gl::nameHere(gl::Kind::Renderbuffer, group_, id_);
}

void RBO::bind() const {
    callIfLoaded(glBindRenderbuffer, GL_RENDERBUFFER, idToUse());
}

void RBO::unbind() const {
    callIfLoaded(glBindRenderbuffer, GL_RENDERBUFFER, 0);
}

void RBO::alloc(unsigned int format, unsigned int width, unsigned int height,
                unsigned int samples) {
    if (glRenderbufferStorage == nullptr || glRenderbufferStorageMultisample == nullptr)
        return;
    if (!gl::isHere(gl::Kind::Renderbuffer, group_))
        return void(gl::refuse(gl::Kind::Renderbuffer));
    const gl::Operation operation("Renderbuffer::make");
    bind();
    if (samples > 1) {
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, static_cast<int>(samples), format,
                                         static_cast<int>(width), static_cast<int>(height));
        numSamples_ = samples;
    } else {
        glRenderbufferStorage(GL_RENDERBUFFER, format, static_cast<int>(width),
                              static_cast<int>(height));
        numSamples_ = 1;
    }
    unbind();
    width_ = width;
    height_ = height;
}

} // namespace vellis

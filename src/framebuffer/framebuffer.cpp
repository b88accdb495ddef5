#include <vellis/framebuffer/framebuffer.hpp>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "gl/names.hpp"

namespace vellis {

std::shared_ptr<Framebuffer> Framebuffer::make() {
    return std::make_shared<Framebuffer>();
}

std::shared_ptr<Framebuffer> Framebuffer::makeNull() {
    return std::shared_ptr<Framebuffer>(new Framebuffer(0));
}

Framebuffer::Framebuffer()
    : context_(gl::indexHere(gl::Kind::Framebuffer)),
      external_(false),
      target_(GL_FRAMEBUFFER) {
    static_assert(drawFramebufferBinding == GL_DRAW_FRAMEBUFFER_BINDING);
    static_assert(GL_COLOR_ATTACHMENT0 + numColorPoints == GL_DEPTH_ATTACHMENT);
    callIfLoaded(glGenFramebuffers, 1, &id_);
}

Framebuffer::Framebuffer(unsigned int id)
    : id_(id),
      context_(gl::indexHere(gl::Kind::Framebuffer)),
      external_(true),
      target_(GL_FRAMEBUFFER) {}

Framebuffer::~Framebuffer() {
    if (!external_ && gl::canDelete(gl::Kind::Framebuffer, context_, id_))
        callIfLoaded(glDeleteFramebuffers, 1, &id_);
    if (restoreOnDestruction_)
        state::set(savedBindings_);
}

bool Framebuffer::exists() const {
    if (external_ || gl::isHere(gl::Kind::Framebuffer, context_))
        return true;
    gl::refuse(gl::Kind::Framebuffer);
    return false;
}

unsigned int Framebuffer::id() const {
    return external_ || gl::isHere(gl::Kind::Framebuffer, context_) ? id_ : 0;
}

void Framebuffer::bind() const {
    if (glBindFramebuffer == nullptr || !exists())
        return;
    context_ = gl::indexHere(gl::Kind::Framebuffer);
    state::get(savedBindings_);
    target_ = GL_FRAMEBUFFER;
    bind(id_);
}

void Framebuffer::bindToDraw() const {
    if (!exists())
        return;
    target_ = GL_DRAW_FRAMEBUFFER;
    bindToDraw(id_);
}

void Framebuffer::bindToRead() const {
    if (!exists())
        return;
    target_ = GL_READ_FRAMEBUFFER;
    bindToRead(id_);
}

void Framebuffer::unbind() const {
    if (!gl::isHere(gl::Kind::Framebuffer, context_))
        return;
    state::set(savedBindings_);
    target_ = GL_FRAMEBUFFER;
}

void Framebuffer::unbindToDraw() const {
    if (!exists())
        return;
    callIfLoaded(glBindFramebuffer, target_, 0);
    target_ = GL_FRAMEBUFFER;
}

bool Framebuffer::isBound() const {
    int bound = 0;
    if (!external_ && !gl::isHere(gl::Kind::Framebuffer, context_))
        return false;
    if (glBindFramebuffer == nullptr)
        return external_ && id_ == 0; // one that could not be made has name 0, too
    if (target_ == GL_READ_FRAMEBUFFER)
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &bound);
    else if (target_ == GL_DRAW_FRAMEBUFFER || target_ == GL_FRAMEBUFFER)
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
    return static_cast<unsigned int>(bound) == id_;
}

void Framebuffer::bind(unsigned int id) {
    callIfLoaded(glBindFramebuffer, GL_FRAMEBUFFER, id);
}

void Framebuffer::bindToDraw(unsigned int id) {
    callIfLoaded(glBindFramebuffer, GL_DRAW_FRAMEBUFFER, id);
}

void Framebuffer::bindToRead(unsigned int id) {
    callIfLoaded(glBindFramebuffer, GL_READ_FRAMEBUFFER, id);
}

} // namespace vellis

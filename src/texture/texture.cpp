#include <vellis/texture/texture.hpp>

#include <vellis/gl.hpp>

#include "gl/entry_point.hpp"
#include "gl/names.hpp"
#include "gl/operation.hpp"
#include "state/pixel_alignment.hpp"

namespace vellis {
namespace {

using state::PackAlignment;
using state::UnpackAlignment;

/// The GL target, or 0 where \p type is not an enumerator.
unsigned int targetOf(Texture::Type type) {
    switch (type) {
    case Texture::Type::TEXTURE_1D:
        return GL_TEXTURE_1D;
    case Texture::Type::TEXTURE_2D:
        return GL_TEXTURE_2D;
    case Texture::Type::TEXTURE_3D:
        return GL_TEXTURE_3D;
    }
    return 0;
}

/// GL takes sizes and offsets as signed numbers and refuses negative ones.
constexpr int i(unsigned int value) {
    return static_cast<int>(value);
}

/// Reads level 0 of the texture that is bound to \p target.
void readLevel0(unsigned int target, void* data, unsigned int format, unsigned int type,
                unsigned int alignment) {
    const PackAlignment rows(alignment);
    glGetTexImage(target, 0, format, type, data);
}

} // namespace

Texture::Texture(Type type, unsigned int texelFormat, const Sampler& sampler)
    : target_(targetOf(type)),
      texelFormat_(texelFormat),
      group_(gl::indexHere(gl::Kind::Texture)) {
    const gl::Operation operation("Texture::make");
    glGenTextures(1, &id_);
    sampler_ = sampler;
    Texture::bind();
    sampler_.apply(target_);
    Texture::unbind();
}

Texture::~Texture() {
    deleteName();
}

void Texture::dispose() {
    deleteName();
}

void Texture::deleteName() {
    if (id_ != 0 && gl::canDelete(gl::Kind::Texture, group_, id_))
        glDeleteTextures(1, &id_);
    id_ = 0;
}

unsigned int Texture::id() const {
    return gl::isHere(gl::Kind::Texture, group_) ? id_ : 0;
}

unsigned int Texture::idToUse() const {
    return gl::nameHere(gl::Kind::Texture, group_, id_);
}

void Texture::bind() const {
    glBindTexture(target_, idToUse());
}

void Texture::unbind() const {
    glBindTexture(target_, 0);
}

void Texture::unbind1D() {
    glBindTexture(GL_TEXTURE_1D, 0);
}

void Texture::unbind2D() {
    glBindTexture(GL_TEXTURE_2D, 0);
}

void Texture::unbind3D() {
    glBindTexture(GL_TEXTURE_3D, 0);
}

void Texture::setSampler(const Sampler& sampler) {
    if (!gl::isHere(gl::Kind::Texture, group_))
        return void(gl::refuse(gl::Kind::Texture));
    sampler_ = sampler;
    bind();
    sampler_.apply(target_);
    unbind();
}

bool Texture::equivalent(const Texture& other) const {
    return (id_ == other.id_ && group_ == other.group_) ||
           (target_ == other.target_ && texelFormat_ == other.texelFormat_);
}

void Texture::upload1d(const void* data, unsigned int width, unsigned int format, unsigned int type,
                       unsigned int alignment) {
    const UnpackAlignment rows(alignment);
    glTexImage1D(target_, 0, i(texelFormat_), i(width), 0, format, type, data);
}

void Texture::upload1d(const void* data, unsigned int xoffset, unsigned int width,
                       unsigned int format, unsigned int type, unsigned int alignment) {
    const UnpackAlignment rows(alignment);
    glTexSubImage1D(target_, 0, i(xoffset), i(width), format, type, data);
}

void Texture::upload2d(const void* data, unsigned int width, unsigned int height,
                       unsigned int format, unsigned int type, unsigned int alignment) {
    const UnpackAlignment rows(alignment);
    glTexImage2D(target_, 0, i(texelFormat_), i(width), i(height), 0, format, type, data);
}

void Texture::upload2d(const void* data, unsigned int xoffset, unsigned int yoffset,
                       unsigned int width, unsigned int height, unsigned int format,
                       unsigned int type, unsigned int alignment) {
    const UnpackAlignment rows(alignment);
    glTexSubImage2D(target_, 0, i(xoffset), i(yoffset), i(width), i(height), format, type, data);
}

void Texture::upload3d(const void* data, unsigned int width, unsigned int height,
                       unsigned int depth, unsigned int format, unsigned int type,
                       unsigned int alignment) {
    const UnpackAlignment rows(alignment);
    glTexImage3D(target_, 0, i(texelFormat_), i(width), i(height), i(depth), 0, format, type, data);
}

void Texture::upload3d(const void* data, unsigned int xoffset, unsigned int yoffset,
                       unsigned int zoffset, unsigned int width, unsigned int height,
                       unsigned int depth, unsigned int format, unsigned int type,
                       unsigned int alignment) {
    const UnpackAlignment rows(alignment);
    glTexSubImage3D(target_, 0, i(xoffset), i(yoffset), i(zoffset), i(width), i(height), i(depth),
                    format, type, data);
}

void Texture::download1d(void* data, unsigned int format, unsigned int type,
                         unsigned int alignment) const {
    readLevel0(target_, data, format, type, alignment);
}

void Texture::download2d(void* data, unsigned int format, unsigned int type,
                         unsigned int alignment) const {
    readLevel0(target_, data, format, type, alignment);
}

void Texture::download3d(void* data, unsigned int format, unsigned int type,
                         unsigned int alignment) const {
    readLevel0(target_, data, format, type, alignment);
}

void Texture::generateMipmap() {
    callIfLoaded(glGenerateMipmap, target_);
}

} // namespace vellis

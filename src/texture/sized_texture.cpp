#include <vellis/texture/sized_texture.hpp>

#include <vellis/detail/vector_of.hpp>
#include <vellis/gl.hpp>

#include "gl/operation.hpp"
#include "gl/size_limits.hpp"
#include "state/pixel_memory.hpp"

namespace vellis {
namespace {

using state::isNowhere;

glm::uvec3 atMost(unsigned int largest, const glm::uvec3& value) {
    return {vellis::atMost(largest, value.x), vellis::atMost(largest, value.y),
            vellis::atMost(largest, value.z)};
}

std::size_t levelSize(unsigned int target, unsigned int pname) {
    int size = 0;
    glGetTexLevelParameteriv(target, 0, pname, &size);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

} // namespace

SizedTexture::SizedTexture(Type type, unsigned int texelFormat, const PixelLayout& layout,
                           const Sampler& sampler)
    : Texture(type, texelFormat, sampler),
      layout_(layout),
      extent_(0) {}

SizedTexture::~SizedTexture() = default;

glm::uvec3 SizedTexture::extent() const {
    return id() != 0 ? extent_ : glm::uvec3(0);
}

void SizedTexture::resize(const glm::uvec3& size) {
    uploadAll(nullptr, size);
}

void SizedTexture::generateMipmap() {
    if (idToUse() == 0)
        return;
    const gl::Operation operation("Texture::generateMipmap");
    bind();
    Texture::generateMipmap();
    unbind();
}

void SizedTexture::uploadAll(const void* data, const glm::uvec3& size) {
    if (idToUse() == 0)
        return;
    const gl::Operation operation("Texture::upload");
    const auto [format, pixelType, alignment] = layout_;
    const glm::uvec3 s = atMost(largestSide, size);
    bind();
    switch (type()) {
    case GL_TEXTURE_1D:
        extent_ = {size.x, 1, 1};
        upload1d(data, s.x, format, pixelType, alignment);
        break;
    case GL_TEXTURE_2D:
        extent_ = {size.x, size.y, 1};
        upload2d(data, s.x, s.y, format, pixelType, alignment);
        break;
    default:
        extent_ = size;
        upload3d(data, s.x, s.y, s.z, format, pixelType, alignment);
    }
    unbind();
}

void SizedTexture::uploadPart(const void* data, const glm::uvec3& offset, const glm::uvec3& size) {
    if (idToUse() == 0 || isNowhere(data, GL_PIXEL_UNPACK_BUFFER_BINDING))
        return;
    const gl::Operation operation("Texture::upload");
    const auto [format, pixelType, alignment] = layout_;
    const glm::uvec3 o = atMost(largestAddable, offset);
    const glm::uvec3 s = atMost(largestAddable, size);
    bind();
    switch (type()) {
    case GL_TEXTURE_1D:
        upload1d(data, o.x, s.x, format, pixelType, alignment);
        break;
    case GL_TEXTURE_2D:
        upload2d(data, o.x, o.y, s.x, s.y, format, pixelType, alignment);
        break;
    default:
        upload3d(data, o.x, o.y, o.z, s.x, s.y, s.z, format, pixelType, alignment);
    }
    unbind();
}

void SizedTexture::downloadAll(void* data) const {
    if (idToUse() == 0 || isNowhere(data, GL_PIXEL_PACK_BUFFER_BINDING))
        return;
    const gl::Operation operation("Texture::download");
    bind();
    download3d(data, layout_.format, layout_.type, layout_.alignment); // the same for every target
    unbind();
}

void SizedTexture::downloadToMemory(void* data) const {
    const state::PackingToMemory packing;
    downloadAll(data);
}

std::size_t SizedTexture::numStoredTexels() const {
    if (idToUse() == 0)
        return 0;
    bind();
    std::size_t count = levelSize(type(), GL_TEXTURE_WIDTH);
    if (type() != GL_TEXTURE_1D)
        count = detail::product(count, levelSize(type(), GL_TEXTURE_HEIGHT));
    if (type() == GL_TEXTURE_3D)
        count = detail::product(count, levelSize(type(), GL_TEXTURE_DEPTH));
    unbind();
    return count;
}

} // namespace vellis

#pragma once

#include <memory>

#include <vellis/texture/typed_texture.hpp>

namespace vellis {

/// A texture of two dimensions with texels of one type: a colour, or a depth with or without
/// stencil (see TexelFormat). Of any other type there is no object: the constructor and make() do
/// not exist.
///
/// \code
/// const std::vector<glm::u8vec4> texels(64 * 64, glm::u8vec4(255, 0, 0, 255));
/// auto texture = vellis::Texture2D<glm::u8vec4>::make(64, 64, texels.data(),
///                                                     vellis::Sampler::trilinear_repeat());
/// texture->generateMipmap();
/// texture->upload(texels.data(), 16, 0, 32, 1); // 32 texels of row 0, from column 16 on
/// const std::vector<glm::u8vec4> all = texture->download();
/// \endcode
///
/// make() makes one allocation. See TypedTexture for transfers, and Texture for what is left bound.
template <class F>
class Texture2D : public TypedTexture<F> {
public:
    /// A texture without storage. Upload or resize gives it some.
    template <class Texel = F, RequireTextureFormat<Texel, 2> = 0>
    explicit Texture2D(const Sampler& sampler = {})
        : TypedTexture<F>(Texture::Type::TEXTURE_2D, sampler) {}

    /// A texture without storage.
    template <class Texel = F, RequireTextureFormat<Texel, 2> = 0>
    static std::shared_ptr<Texture2D> make(const Sampler& sampler = {}) {
        return std::make_shared<Texture2D>(sampler);
    }

    /// A texture of that size, filled from \p data, unless that is null.
    template <class Texel = F, RequireTextureFormat<Texel, 2> = 0>
    static std::shared_ptr<Texture2D> make(unsigned int width, unsigned int height,
                                           const F* data = nullptr, const Sampler& sampler = {}) {
        auto texture = make(sampler);
        texture->upload(data, width, height);
        return texture;
    }

    /// Makes new storage of that size, filled from \p data or, where that is null, with undefined
    /// contents. GL refuses a size beyond `GL_MAX_TEXTURE_SIZE`.
    void upload(const F* data, unsigned int width, unsigned int height);

    /// Replaces a part of the texels. GL refuses one that does not lie within the texture, and any
    /// where there is no storage. Does nothing where \p data is null.
    void upload(const F* data, unsigned int xoffset, unsigned int yoffset, unsigned int width,
                unsigned int height);
};

// Not inline, so that a DLL exports them with the instantiations below.

template <class F>
void Texture2D<F>::upload(const F* data, unsigned int width, unsigned int height) {
    this->uploadAll(data, {width, height, 1});
}

template <class F>
void Texture2D<F>::upload(const F* data, unsigned int xoffset, unsigned int yoffset,
                          unsigned int width, unsigned int height) {
    this->uploadPart(data, {xoffset, yoffset, 0}, {width, height, 1});
}

extern template class VELLIS_EXPORT Texture2D<unsigned char>;
extern template class VELLIS_EXPORT Texture2D<texel::u8vec4>;
extern template class VELLIS_EXPORT Texture2D<float>;
extern template class VELLIS_EXPORT Texture2D<texel::vec2>;
extern template class VELLIS_EXPORT Texture2D<texel::vec3>;
extern template class VELLIS_EXPORT Texture2D<texel::vec4>;
extern template class VELLIS_EXPORT Texture2D<depth16>;
extern template class VELLIS_EXPORT Texture2D<depth32>;
extern template class VELLIS_EXPORT Texture2D<depth24_stencil8>;

} // namespace vellis

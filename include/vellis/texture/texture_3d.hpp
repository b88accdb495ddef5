#pragma once

#include <memory>

#include <vellis/texture/typed_texture.hpp>

namespace vellis {

/// A texture of three dimensions with texels of one type: a colour (see TexelFormat). Of any other
/// type there is no object: the constructor and make() do not exist.
///
/// \code
/// const std::vector<float> density(16 * 16 * 16, 0.5f);
/// auto texture = vellis::Texture3D<float>::make(16, 16, 16, density.data(),
///                                               vellis::Sampler::linear_clamp());
/// const std::vector<float> slice(16 * 16);
/// texture->upload(slice.data(), 0, 0, 8, 16, 16, 1); // layer 8
/// \endcode
///
/// A Sampler has no wrap mode along r: that is GL's, `GL_REPEAT`, unless set with
/// `glTexParameteri`.
///
/// make() makes one allocation. See TypedTexture for transfers, and Texture for what is left bound.
template <class F>
class Texture3D : public TypedTexture<F> {
public:
    /// A texture without storage. Upload or resize gives it some.
    template <class Texel = F, RequireTextureFormat<Texel, 3> = 0>
    explicit Texture3D(const Sampler& sampler = {})
        : TypedTexture<F>(Texture::Type::TEXTURE_3D, sampler) {}

    /// A texture without storage.
    template <class Texel = F, RequireTextureFormat<Texel, 3> = 0>
    static std::shared_ptr<Texture3D> make(const Sampler& sampler = {}) {
        return std::make_shared<Texture3D>(sampler);
    }

    /// A texture of that size, filled from \p data, unless that is null.
    template <class Texel = F, RequireTextureFormat<Texel, 3> = 0>
    static std::shared_ptr<Texture3D> make(unsigned int width, unsigned int height,
                                           unsigned int depth, const F* data = nullptr,
                                           const Sampler& sampler = {}) {
        auto texture = make(sampler);
        texture->upload(data, width, height, depth);
        return texture;
    }

    /// Makes new storage of that size, filled layer by layer from \p data or, where that is null,
    /// with undefined contents. GL refuses a size beyond `GL_MAX_3D_TEXTURE_SIZE`.
    void upload(const F* data, unsigned int width, unsigned int height, unsigned int depth);

    /// Replaces a part of the texels. GL refuses one that does not lie within the texture, and any
    /// where there is no storage. Does nothing where \p data is null.
    void upload(const F* data, unsigned int xoffset, unsigned int yoffset, unsigned int zoffset,
                unsigned int width, unsigned int height, unsigned int depth);
};

// Not inline, so that a DLL exports them with the instantiations below.

template <class F>
void Texture3D<F>::upload(const F* data, unsigned int width, unsigned int height,
                          unsigned int depth) {
    this->uploadAll(data, {width, height, depth});
}

template <class F>
void Texture3D<F>::upload(const F* data, unsigned int xoffset, unsigned int yoffset,
                          unsigned int zoffset, unsigned int width, unsigned int height,
                          unsigned int depth) {
    this->uploadPart(data, {xoffset, yoffset, zoffset}, {width, height, depth});
}

extern template class VELLIS_EXPORT Texture3D<unsigned char>;
extern template class VELLIS_EXPORT Texture3D<texel::u8vec4>;
extern template class VELLIS_EXPORT Texture3D<float>;
extern template class VELLIS_EXPORT Texture3D<texel::vec2>;
extern template class VELLIS_EXPORT Texture3D<texel::vec3>;
extern template class VELLIS_EXPORT Texture3D<texel::vec4>;

} // namespace vellis

#pragma once

#include <memory>

#include <vellis/texture/typed_texture.hpp>

namespace vellis {

/// A texture of one dimension with texels of one type: a colour, or a depth with or without stencil
/// (see TexelFormat). Of any other type there is no object: the constructor and make() do not
/// exist.
///
/// \code
/// const std::vector<glm::vec4> ramp = {{0.f, 0.f, 1.f, 1.f}, {1.f, 0.f, 0.f, 1.f}};
/// auto texture =
///     vellis::Texture1D<glm::vec4>::make(2, ramp.data(), vellis::Sampler::linear_clamp());
/// program->draw(mesh, vellis::Uniform("ramp", *texture));
/// \endcode
///
/// make() makes one allocation. See TypedTexture for transfers, and Texture for what is left bound.
template <class F>
class Texture1D : public TypedTexture<F> {
public:
    /// A texture without storage. Upload or resize gives it some.
    template <class Texel = F, RequireTextureFormat<Texel, 1> = 0>
    explicit Texture1D(const Sampler& sampler = {})
        : TypedTexture<F>(Texture::Type::TEXTURE_1D, sampler) {}

    /// A texture without storage.
    template <class Texel = F, RequireTextureFormat<Texel, 1> = 0>
    static std::shared_ptr<Texture1D> make(const Sampler& sampler = {}) {
        return std::make_shared<Texture1D>(sampler);
    }

    /// A texture of that size, filled from \p data, unless that is null.
    template <class Texel = F, RequireTextureFormat<Texel, 1> = 0>
    static std::shared_ptr<Texture1D> make(unsigned int width, const F* data = nullptr,
                                           const Sampler& sampler = {}) {
        auto texture = make(sampler);
        texture->upload(data, width);
        return texture;
    }

    /// Makes new storage of that size, filled from \p data or, where that is null, with undefined
    /// contents. GL refuses a size beyond `GL_MAX_TEXTURE_SIZE`.
    void upload(const F* data, unsigned int width);

    /// Replaces a part of the texels. GL refuses one that does not lie within the texture, and any
    /// where there is no storage. Does nothing where \p data is null.
    void upload(const F* data, unsigned int xoffset, unsigned int width);
};

// Not inline, so that a DLL exports them with the instantiations below.

template <class F>
void Texture1D<F>::upload(const F* data, unsigned int width) {
    this->uploadAll(data, {width, 1, 1});
}

template <class F>
void Texture1D<F>::upload(const F* data, unsigned int xoffset, unsigned int width) {
    this->uploadPart(data, {xoffset, 0, 0}, {width, 1, 1});
}

extern template class VELLIS_EXPORT Texture1D<unsigned char>;
extern template class VELLIS_EXPORT Texture1D<texel::u8vec4>;
extern template class VELLIS_EXPORT Texture1D<float>;
extern template class VELLIS_EXPORT Texture1D<texel::vec2>;
extern template class VELLIS_EXPORT Texture1D<texel::vec3>;
extern template class VELLIS_EXPORT Texture1D<texel::vec4>;

} // namespace vellis

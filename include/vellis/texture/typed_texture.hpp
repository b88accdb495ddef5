#pragma once

#include <vector>

#include <vellis/detail/vector_of.hpp>
#include <vellis/texture/sized_texture.hpp>
#include <vellis/texture/texel_format.hpp>

namespace vellis {

/// The operations of a texture with texels of one type that are the same in any number of
/// dimensions: the common part of Texture1D, Texture2D and Texture3D.
///
/// **Transfers.** Texels lie in memory row after row, from the first row of the texture (the lower
/// one in GL's pictures) on, without gaps. Each transfer binds the texture to its target on the
/// active unit, works on level 0 and binds 0 there; the alignments of `glPixelStorei` are put back
/// as they were. Its other settings, such as row lengths, are the caller's and hold, but for a
/// download to a vector.
///
/// While a PixelBuffer is bound, the pointer of a transfer is a byte offset into it, null being 0.
///
/// \tparam F  The type of the texels. TexelFormat says which there are, and what the context needs
///            for each.
template <class F>
class TypedTexture : public SizedTexture {
public:
    /// Reads all texels into \p data, which must have room for them: for as many as extent() says,
    /// unless GL has refused that size and kept its storage. Writes nothing where there is no
    /// storage or \p data is null.
    void download(F* data) const { downloadAll(data); }

    /// All texels, as many as GL has: none where there is no storage, or more of them than a vector
    /// holds. What `glPixelStorei` was told of packing, and a pixel pack buffer that is bound, do
    /// not matter: they are put aside for the transfer and put back.
    std::vector<F> download() const {
        std::vector<F> texels = detail::vectorOf<F>(numStoredTexels());
        if (!texels.empty())
            downloadToMemory(texels.data());
        return texels;
    }

protected:
    /// A texture without storage.
    TypedTexture(Type type, const Sampler& sampler)
        : SizedTexture(type, TexelFormat<F>::internalFormat, pixelLayout<F>, sampler) {}
};

} // namespace vellis

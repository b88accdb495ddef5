#pragma once

#include <cstddef>

#include <vellis/texture/texel_format.hpp>
#include <vellis/texture/texture.hpp>

namespace vellis {

/// How the texels of a transfer lie in memory, in GL's terms.
struct PixelLayout {
    unsigned int format;    ///< pixel format, such as `GL_RGBA`
    unsigned int type;      ///< pixel type, such as `GL_UNSIGNED_BYTE`
    unsigned int alignment; ///< of a row, in bytes: 1, 2, 4 or 8
};

/// The layout of texels of type \p F, one that is stored: see TexelFormat.
template <class F>
constexpr PixelLayout pixelLayout = {TexelFormat<F>::pixelFormat, TexelFormat<F>::pixelType,
                                     TexelFormat<F>::alignment};

/// The part of Texture1D, Texture2D and Texture3D that does not depend on the type of the texels:
/// the size, and transfers that bind the texture, do their work and bind 0 to its target.
///
/// On a texture whose name is 0 every transfer does nothing.
class VELLIS_EXPORT SizedTexture : public Texture {
public:
    ~SizedTexture() override;

    /// The size that the last upload of the whole, or resize, asked for, with 1 for a dimension
    /// that the target lacks; all 0 before the first one and after dispose(). GL may have refused
    /// it.
    glm::uvec3 extent() const override;

    /// Makes new storage of that size with undefined contents, as an upload of null does.
    void resize(const glm::uvec3& size) override;

    /// \name Components of extent()
    /// @{

    /// The texels of a row.
    unsigned int width() const { return extent().x; }

    /// The rows of a layer.
    unsigned int height() const { return extent().y; }

    /// The layers.
    unsigned int depth() const { return extent().z; }
    /// @}

    /// Makes the levels above 0 from level 0. GL may refuse it with `GL_INVALID_OPERATION` for
    /// `depth24_stencil8`, and where there is no storage. Needs framebuffer objects, without which
    /// it makes no levels.
    void generateMipmap();

protected:
    /// A texture without storage.
    SizedTexture(Type type, unsigned int texelFormat, const PixelLayout& layout,
                 const Sampler& sampler);

    /// Makes new storage of that size and fills it from \p data, unless that is null.
    void uploadAll(const void* data, const glm::uvec3& size);

    /// Replaces the texels of a box. Does nothing where \p data is null and no pixel unpack buffer
    /// is bound.
    void uploadPart(const void* data, const glm::uvec3& offset, const glm::uvec3& size);

    /// Reads all texels. Does nothing where \p data is null and no pixel pack buffer is bound.
    void downloadAll(void* data) const;

    /// Reads all texels into memory for exactly them. What `glPixelStorei` was told of packing, and
    /// a pixel pack buffer that is bound, are put aside for the transfer and put back.
    void downloadToMemory(void* data) const;

    /// How many texels GL has in level 0, which is what the downloads read: asked of GL, as
    /// extent() does not know whether GL took the size. The largest number stands for all larger
    /// ones.
    std::size_t numStoredTexels() const;

private:
    PixelLayout layout_;
    glm::uvec3 extent_;
};

} // namespace vellis

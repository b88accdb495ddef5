#pragma once

#include <glm/vec3.hpp>

#include <vellis/export.hpp>
#include <vellis/texture/sampler.hpp>

namespace vellis {

/// A GL texture of one, two or three dimensions: its name, its target and internal format, fixed at
/// construction, and the sampling parameters last applied. Texture1D, Texture2D and Texture3D add
/// texels of one type; through this class they can be bound and compared whatever that type is.
///
/// \code
/// std::shared_ptr<vellis::Texture> texture = vellis::Texture2D<glm::u8vec4>::make(64, 64, texels);
/// glActiveTexture(GL_TEXTURE0);
/// texture->bind();
/// // ... draw ...
/// texture->unbind();
/// \endcode
///
/// The active texture unit is never changed: what binds and unbinds does so on the unit in force.
/// Construction and setSampler end with 0 bound to the texture's target there, whatever was bound
/// before.
///
/// No operation checks GL errors. After dispose(), and where GL made no name, the name is 0: bind
/// then binds GL's texture 0, and setSampler changes that one. With a Context in use in which the
/// texture does not exist, bind binds 0, too, and nothing is changed, uploaded or downloaded.
class VELLIS_EXPORT Texture {
public:
    /// The number of dimensions.
    enum class Type : unsigned int {
        TEXTURE_1D = 0, ///< target `GL_TEXTURE_1D`
        TEXTURE_2D = 1, ///< target `GL_TEXTURE_2D`
        TEXTURE_3D = 2, ///< target `GL_TEXTURE_3D`
    };

    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    /// Deletes the GL texture, as dispose() does.
    virtual ~Texture();

    /// Deletes the GL texture with `glDeleteTextures` and sets the name to 0; a second call does
    /// nothing.
    virtual void dispose();

    /// The size of level 0 in texels, 1 for a dimension that the target lacks; all 0 before there
    /// is storage.
    virtual glm::uvec3 extent() const = 0;

    /// Makes new storage of that size with undefined contents; a dimension that the target lacks is
    /// ignored.
    virtual void resize(const glm::uvec3& size) = 0;

    /// Binds the texture to its target on the active unit.
    virtual void bind() const;

    /// Binds 0 to the texture's target on the active unit.
    virtual void unbind() const;

    /// Keeps a copy of \p sampler and sends what is set in it to GL: bind, `glTexParameteri` for
    /// each parameter, unbind. A parameter that is unset stays in GL as it was.
    virtual void setSampler(const Sampler& sampler);

    /// Binds 0 to `GL_TEXTURE_1D` on the active unit.
    static void unbind1D();
    /// Binds 0 to `GL_TEXTURE_2D` on the active unit.
    static void unbind2D();
    /// Binds 0 to `GL_TEXTURE_3D` on the active unit.
    static void unbind3D();

    /// The GL name, or 0 once disposed, and where the texture does not exist: see Context.
    unsigned int id() const;

    /// The GL internal format.
    unsigned int texelFormat() const { return texelFormat_; }

    /// The GL target, such as `GL_TEXTURE_2D`; not a Type.
    unsigned int type() const { return target_; }

    /// The sampling parameters last applied.
    const Sampler& getSampler() const { return sampler_; }

    /// True where one can stand in for the other: the same GL name, or the same target and internal
    /// format.
    bool equivalent(const Texture& other) const;

protected:
    /// Makes a GL texture without storage: `glGenTextures`, then bind, the parameters that are set
    /// in \p sampler, unbind. A \p type that is not an enumerator gives target 0, which GL refuses.
    Texture(Type type, unsigned int texelFormat, const Sampler& sampler);

    /// \name Transfers of level 0
    /// The texture must be bound. \p format and \p type are GL's pixel format and type, \p
    /// alignment is that of each row in bytes (1, 2, 4 or 8): `GL_UNPACK_ALIGNMENT` for an upload
    /// and `GL_PACK_ALIGNMENT` for a download are saved, set for the transfer and put back. While a
    /// pixel buffer is bound, GL takes \p data as an offset into it.
    /// @{

    /// Makes new storage and fills it from \p data, unless that is null, with `glTexImage1D`.
    void upload1d(const void* data, unsigned int width, unsigned int format, unsigned int type,
                  unsigned int alignment);
    /// Replaces a part of the texels with `glTexSubImage1D`.
    void upload1d(const void* data, unsigned int xoffset, unsigned int width, unsigned int format,
                  unsigned int type, unsigned int alignment);
    /// Makes new storage and fills it from \p data, unless that is null, with `glTexImage2D`.
    void upload2d(const void* data, unsigned int width, unsigned int height, unsigned int format,
                  unsigned int type, unsigned int alignment);
    /// Replaces a part of the texels with `glTexSubImage2D`.
    void upload2d(const void* data, unsigned int xoffset, unsigned int yoffset, unsigned int width,
                  unsigned int height, unsigned int format, unsigned int type,
                  unsigned int alignment);
    /// Makes new storage and fills it from \p data, unless that is null, with `glTexImage3D`.
    void upload3d(const void* data, unsigned int width, unsigned int height, unsigned int depth,
                  unsigned int format, unsigned int type, unsigned int alignment);
    /// Replaces a part of the texels with `glTexSubImage3D`.
    void upload3d(const void* data, unsigned int xoffset, unsigned int yoffset,
                  unsigned int zoffset, unsigned int width, unsigned int height, unsigned int depth,
                  unsigned int format, unsigned int type, unsigned int alignment);

    /// Reads all texels with `glGetTexImage`.
    void download1d(void* data, unsigned int format, unsigned int type,
                    unsigned int alignment) const;
    /// The same as download1d.
    void download2d(void* data, unsigned int format, unsigned int type,
                    unsigned int alignment) const;
    /// The same as download1d.
    void download3d(void* data, unsigned int format, unsigned int type,
                    unsigned int alignment) const;
    /// @}

    /// Makes the levels above 0 from level 0 with `glGenerateMipmap`; the texture must be bound.
    /// Does nothing where the context lacks framebuffer objects.
    void generateMipmap();

private:
    friend class Framebuffer;
    friend class SizedTexture;

    /// id(); that the texture does not exist here is noted.
    unsigned int idToUse() const;

    VELLIS_NO_EXPORT void deleteName();

    unsigned int target_;
    unsigned int texelFormat_;
    unsigned int id_ = 0;
    unsigned int group_; ///< where it exists: see gl/names.hpp
    Sampler sampler_;
};

} // namespace vellis

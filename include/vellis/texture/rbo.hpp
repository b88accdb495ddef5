#pragma once

#include <vellis/export.hpp>

namespace vellis {

/// A GL renderbuffer, and the size and sample count of the storage last asked for. Renderbuffer and
/// MultiSampleRenderbuffer add the type of its texels.
///
/// No operation checks GL errors: GL may have refused the size or the sample count that is
/// recorded. Where the context has no framebuffer objects, the name is 0 and no operation does
/// anything. With a Context in use in which the renderbuffer does not exist, bind binds 0, and no
/// storage is made.
///
/// Copies are views for a short time: they name the same renderbuffer, and whichever is destroyed
/// first deletes it for all. To share one, hold it through a shared pointer.
class VELLIS_EXPORT RBO {
public:
    /// Copies the GL name, not the storage.
    /// @{
    RBO(const RBO&) = default;
    RBO& operator=(const RBO&) = default;
    /// @}

    /// Deletes the renderbuffer with `glDeleteRenderbuffers`, whatever its name.
    virtual ~RBO();

    /// Binds it to `GL_RENDERBUFFER`.
    void bind() const;

    /// Binds 0 to `GL_RENDERBUFFER`.
    void unbind() const;

    /// The GL name; 0 where the renderbuffer does not exist: see Context.
    unsigned int id() const;

    /// The width of the storage in pixels; 0 before there is any.
    unsigned int width() const { return width_; }

    /// The height of the storage in pixels; 0 before there is any.
    unsigned int height() const { return height_; }

    /// The samples of a pixel; 1 for storage of one sample, and before there is storage. GL may
    /// give more than were asked for.
    unsigned int numSamples() const { return numSamples_; }

protected:
    /// `glGenRenderbuffers`; there is no storage.
    RBO();

    /// Makes new storage: bound, `glRenderbufferStorageMultisample` where \p samples is above 1,
    /// else `glRenderbufferStorage`; then 0 is bound, whatever was before.
    void alloc(unsigned int format, unsigned int width, unsigned int height, unsigned int samples);

private:
    friend class Framebuffer;

    /// id(); that the renderbuffer does not exist here is noted.
    unsigned int idToUse() const;

    unsigned int id_ = 0;
    unsigned int group_; ///< where it exists: see gl/names.hpp
    unsigned int width_ = 0;
    unsigned int height_ = 0;
    unsigned int numSamples_ = 1;
};

} // namespace vellis

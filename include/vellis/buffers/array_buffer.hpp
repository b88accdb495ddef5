#pragma once

#include <vellis/buffers/buffer_object.hpp>

namespace vellis {

/// A buffer of vertex data, target `GL_ARRAY_BUFFER`.
class VELLIS_EXPORT ArrayBuffer : public BufferObject {
public:
    /// Copies the GL name, not the store: see BufferObject.
    /// @{
    ArrayBuffer(const ArrayBuffer&) = default;
    ArrayBuffer& operator=(const ArrayBuffer&) = default;
    /// @}
    ~ArrayBuffer() override = default;

    using BufferObject::bind;
    using BufferObject::id;
    using BufferObject::unbind;

    /// See BufferObject::unmap: no explicit flush is issued, whatever \p flush is.
    void unmap(bool flush) { BufferObject::unmap(flush); }

    /// See BufferObject::flushAndUnmap(): unmaps without an explicit flush.
    void flushAndUnmap() { BufferObject::flushAndUnmap(); }

protected:
    /// A buffer with undefined contents.
    ArrayBuffer(unsigned int numBytes, BufferUsage usage, BufferAccess access)
        : ArrayBuffer(nullptr, numBytes, usage, access) {}

    /// A buffer filled with \p numBytes bytes of \p data, unless that is null.
    ArrayBuffer(const void* data, unsigned int numBytes, BufferUsage usage, BufferAccess access)
        : BufferObject(arrayTarget, data, numBytes, usage, access) {}

    using BufferObject::flushAndUnmap;
};

} // namespace vellis

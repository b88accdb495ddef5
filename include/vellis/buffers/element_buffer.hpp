#pragma once

#include <vellis/buffers/buffer_object.hpp>

namespace vellis {

/// A buffer of vertex indices, target `GL_ELEMENT_ARRAY_BUFFER`. Where a vertex array object is
/// bound, that binding is part of it.
class VELLIS_EXPORT ElementBuffer : public BufferObject {
public:
    /// Copies the GL name, not the store: see BufferObject.
    /// @{
    ElementBuffer(const ElementBuffer&) = default;
    ElementBuffer& operator=(const ElementBuffer&) = default;
    /// @}
    ~ElementBuffer() override = default;

    using BufferObject::bind;
    using BufferObject::id;
    using BufferObject::unbind;

    /// See BufferObject::unmap: no explicit flush is issued, whatever \p flush is.
    void unmap(bool flush) { BufferObject::unmap(flush); }

    /// See BufferObject::flushAndUnmap(): unmaps without an explicit flush.
    void flushAndUnmap() { BufferObject::flushAndUnmap(); }

protected:
    /// A buffer with undefined contents.
    ElementBuffer(unsigned int numBytes, BufferUsage usage, BufferAccess access)
        : ElementBuffer(nullptr, numBytes, usage, access) {}

    /// A buffer filled with \p numBytes bytes of \p data, unless that is null.
    ElementBuffer(const void* data, unsigned int numBytes, BufferUsage usage, BufferAccess access)
        : BufferObject(elementArrayTarget, data, numBytes, usage, access) {}

    using BufferObject::flushAndUnmap;
};

} // namespace vellis

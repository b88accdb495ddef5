#pragma once

#include <vellis/buffers/array_buffer.hpp>

namespace vellis {

/// An array buffer that holds vertex attributes: what every VertexAttributeBuffer can tell without
/// its element type being known.
class VELLIS_EXPORT VertexBuffer : public ArrayBuffer {
public:
    /// Copies the GL name, not the store: see BufferObject.
    /// @{
    VertexBuffer(const VertexBuffer&) = default;
    VertexBuffer& operator=(const VertexBuffer&) = default;
    /// @}
    ~VertexBuffer() override = default;

    /// The size of the elements in bytes.
    virtual unsigned int size() const = 0;

    /// The number of elements.
    virtual unsigned int numElements() const = 0;

protected:
    /// A buffer with undefined contents.
    VertexBuffer(unsigned int numBytes, BufferUsage usage, BufferAccess access)
        : ArrayBuffer(numBytes, usage, access) {}

    /// A buffer filled with \p numBytes bytes of \p data, unless that is null.
    VertexBuffer(const void* data, unsigned int numBytes, BufferUsage usage, BufferAccess access)
        : ArrayBuffer(data, numBytes, usage, access) {}
};

} // namespace vellis

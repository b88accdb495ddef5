#include <vellis/buffers/vertex_buffer.hpp>

namespace vellis {

VertexBuffer::VertexBuffer(unsigned int numBytes, BufferUsage usage, BufferAccess access)
    : ArrayBuffer(numBytes, usage, access) {}

VertexBuffer::VertexBuffer(const void* data, unsigned int numBytes, BufferUsage usage,
                           BufferAccess access)
    : ArrayBuffer(data, numBytes, usage, access) {}

VertexBuffer::~VertexBuffer() = default;

} // namespace vellis

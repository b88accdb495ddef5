#include <vellis/buffers/array_buffer.hpp>

#include <vellis/gl.hpp>

namespace vellis {

ArrayBuffer::ArrayBuffer(unsigned int numBytes, BufferUsage usage, BufferAccess access)
    : ArrayBuffer(nullptr, numBytes, usage, access) {}

ArrayBuffer::ArrayBuffer(const void* data, unsigned int numBytes, BufferUsage usage,
                         BufferAccess access)
    : BufferObject(GL_ARRAY_BUFFER, data, numBytes, usage, access) {}

ArrayBuffer::~ArrayBuffer() = default;

} // namespace vellis

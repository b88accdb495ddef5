#include <vellis/buffers/element_buffer.hpp>

#include <vellis/gl.hpp>

namespace vellis {

ElementBuffer::ElementBuffer(unsigned int numBytes, BufferUsage usage, BufferAccess access)
    : ElementBuffer(nullptr, numBytes, usage, access) {}

ElementBuffer::ElementBuffer(const void* data, unsigned int numBytes, BufferUsage usage,
                             BufferAccess access)
    : BufferObject(GL_ELEMENT_ARRAY_BUFFER, data, numBytes, usage, access) {}

ElementBuffer::~ElementBuffer() = default;

} // namespace vellis

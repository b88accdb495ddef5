#include <vellis/buffers/vertex_buffer.hpp>

namespace vellis {

VertexBuffer::~VertexBuffer() = default;

} // namespace vellis

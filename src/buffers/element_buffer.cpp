#include <vellis/buffers/element_buffer.hpp>

namespace vellis {

ElementBuffer::~ElementBuffer() = default;

} // namespace vellis

#include <vellis/buffers/array_buffer.hpp>

namespace vellis {

ArrayBuffer::~ArrayBuffer() = default;

} // namespace vellis

#include <vellis/buffers/index_buffer.hpp>

namespace vellis {

template class IndexBuffer<unsigned char>;
template class IndexBuffer<unsigned short>;
template class IndexBuffer<unsigned int>;

} // namespace vellis

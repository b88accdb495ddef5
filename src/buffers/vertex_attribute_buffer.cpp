#include <vellis/buffers/vertex_attribute_buffer.hpp>

namespace vellis {

template class VertexAttributeBuffer<unsigned char>;
template class VertexAttributeBuffer<float>;
template class VertexAttributeBuffer<glm::vec2>;
template class VertexAttributeBuffer<glm::vec3>;
template class VertexAttributeBuffer<glm::vec4>;

} // namespace vellis

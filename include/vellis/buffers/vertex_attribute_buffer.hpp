#pragma once

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/buffers/typed_buffer.hpp>
#include <vellis/buffers/vertex_buffer.hpp>

namespace vellis {

/// A buffer of vertex attributes of one type: a number, a glm vector, or a struct of one's own that
/// interleaves several.
///
/// \code
/// auto positions = vellis::VertexAttributeBuffer<glm::vec2>::make(
///     {{-1.f, -1.f}, {1.f, -1.f}, {0.f, 1.f}}, vellis::BufferUsage::Static,
///     vellis::BufferAccess::Draw);
/// positions->bind();
/// glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
/// positions->unbind();
/// \endcode
///
/// make() makes one allocation. BufferObjectManager learns of the buffer only when it is added
/// there.
template <class T>
class VertexAttributeBuffer : public TypedBuffer<VertexAttributeBuffer<T>, VertexBuffer, T> {
    using Typed = TypedBuffer<VertexAttributeBuffer<T>, VertexBuffer, T>;

public:
    /// The size of the elements in bytes.
    unsigned int size() const override;

    /// The number of elements, count().
    unsigned int numElements() const override;

protected:
    /// What make() makes.
    VertexAttributeBuffer(const T* data, unsigned int count, BufferUsage usage,
                          BufferAccess access);
};

// Not inline, so that a DLL exports them with the instantiations below.

template <class T>
unsigned int VertexAttributeBuffer<T>::size() const {
    return this->count() * static_cast<unsigned int>(sizeof(T));
}

template <class T>
unsigned int VertexAttributeBuffer<T>::numElements() const {
    return this->count();
}

template <class T>
VertexAttributeBuffer<T>::VertexAttributeBuffer(const T* data, unsigned int count,
                                                BufferUsage usage, BufferAccess access)
    : Typed(data, count, usage, access) {}

extern template class VELLIS_EXPORT VertexAttributeBuffer<unsigned char>;
extern template class VELLIS_EXPORT VertexAttributeBuffer<float>;
extern template class VELLIS_EXPORT VertexAttributeBuffer<glm::vec2>;
extern template class VELLIS_EXPORT VertexAttributeBuffer<glm::vec3>;
extern template class VELLIS_EXPORT VertexAttributeBuffer<glm::vec4>;

} // namespace vellis

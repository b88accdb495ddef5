#pragma once

#include <type_traits>

#include <vellis/buffers/element_buffer.hpp>
#include <vellis/buffers/typed_buffer.hpp>

namespace vellis {

/// True for the three index types that GL draws with.
template <class T>
struct IsIndexType : std::integral_constant<bool, std::is_same<T, unsigned char>::value ||
                                                      std::is_same<T, unsigned short>::value ||
                                                      std::is_same<T, unsigned int>::value> {};

/// A buffer of vertex indices: `unsigned char`, `unsigned short` or `unsigned int`.
///
/// \code
/// auto indices = vellis::IndexBuffer<unsigned short>::make(
///     {0, 1, 2, 2, 1, 3}, vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
/// program->draw(mesh, *indices);
/// \endcode
///
/// make() makes one allocation.
template <class T>
class IndexBuffer : public TypedBuffer<IndexBuffer<T>, ElementBuffer, T> {
    static_assert(IsIndexType<T>::value,
                  "an index is an unsigned char, an unsigned short or an unsigned int");
    using Typed = TypedBuffer<IndexBuffer<T>, ElementBuffer, T>;

protected:
    /// What make() makes.
    IndexBuffer(const T* data, unsigned int count, BufferUsage usage, BufferAccess access);
};

// Not inline, so that a DLL exports it with the instantiations below.

template <class T>
IndexBuffer<T>::IndexBuffer(const T* data, unsigned int count, BufferUsage usage,
                            BufferAccess access)
    : Typed(data, count, usage, access) {}

extern template class VELLIS_EXPORT IndexBuffer<unsigned char>;
extern template class VELLIS_EXPORT IndexBuffer<unsigned short>;
extern template class VELLIS_EXPORT IndexBuffer<unsigned int>;

} // namespace vellis

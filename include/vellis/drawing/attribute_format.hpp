#pragma once

#include <type_traits>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace vellis {

/// The GL type of one component of a vertex attribute. There is one for signed and unsigned
/// integers of 8, 16 and 32 bits, and for `float`.
template <class T>
struct AttributeComponent {};

/// 8 bits, signed.
template <>
struct AttributeComponent<signed char> {
    static constexpr unsigned int type = 0x1400; ///< `GL_BYTE`
};
/// 8 bits, unsigned.
template <>
struct AttributeComponent<unsigned char> {
    static constexpr unsigned int type = 0x1401; ///< `GL_UNSIGNED_BYTE`
};
/// 16 bits, signed.
template <>
struct AttributeComponent<short> {
    static constexpr unsigned int type = 0x1402; ///< `GL_SHORT`
};
/// 16 bits, unsigned.
template <>
struct AttributeComponent<unsigned short> {
    static constexpr unsigned int type = 0x1403; ///< `GL_UNSIGNED_SHORT`
};
/// 32 bits, signed.
template <>
struct AttributeComponent<int> {
    static constexpr unsigned int type = 0x1404; ///< `GL_INT`
};
/// 32 bits, unsigned.
template <>
struct AttributeComponent<unsigned int> {
    static constexpr unsigned int type = 0x1405; ///< `GL_UNSIGNED_INT`
};
/// Single precision.
template <>
struct AttributeComponent<float> {
    static constexpr unsigned int type = 0x1406; ///< `GL_FLOAT`
};

/// How GL reads the elements of a buffer as a vertex attribute: `components` and the GL `type` of
/// each. There is one for a single component and for the glm vectors of 2 to 4.
///
/// Whatever the type, the shader sees numbers of type `float`; integers keep their value, or are
/// scaled to [0, 1] or [-1, 1] where VertexAttribute says so.
template <class T>
struct AttributeFormat : AttributeComponent<T> {
    static constexpr int components = 1; ///< how many numbers a vertex has
};

/// A vector of N numbers.
template <glm::length_t N, class T>
struct AttributeFormat<glm::vec<N, T, glm::defaultp>> : AttributeComponent<T> {
    static_assert(sizeof(glm::vec<N, T, glm::defaultp>) == N * sizeof(T), "tightly packed");
    static constexpr int components = N; ///< how many numbers a vertex has
};

/// True for the types that vertex attributes can have.
template <class T, class = void>
struct IsAttributeType : std::false_type {};

template <class T>
struct IsAttributeType<T, std::void_t<decltype(AttributeFormat<T>::type)>> : std::true_type {};

} // namespace vellis

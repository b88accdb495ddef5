#pragma once

#include <memory>
#include <utility>

#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/drawing/attribute_format.hpp>

namespace vellis {

/// One vertex attribute of a program, and the buffer that feeds it: what the drawable templates are
/// made of.
///
/// \code
/// vellis::VertexAttribute<glm::vec3> position("position", positions);
/// vellis::VertexAttribute<glm::u8vec4> color("color", colors, 0, true); // 0 to 255 become 0 to 1
/// vellis::VertexAttribute<glm::vec3> vertex(0, positions); // gl_Vertex, by its location
/// \endcode
///
/// \tparam T  `float`, an integer of 8, 16 or 32 bits, or a glm vector of 2 to 4 of them.
template <class T>
struct VertexAttribute {
    static_assert(IsAttributeType<T>::value, "a type that AttributeFormat knows");

    /// \param attributeName    The attribute's name in the vertex shader. The text is not copied.
    /// \param attributeBuffer  The values, one for each vertex.
    /// \param firstElement     The first element of the buffer to use.
    /// \param isNormalized     Whether integers are scaled to [0, 1] or [-1, 1].
    VertexAttribute(const char* attributeName,
                    std::shared_ptr<VertexAttributeBuffer<T>> attributeBuffer,
                    unsigned int firstElement = 0, bool isNormalized = false)
        : name(attributeName),
          buffer(std::move(attributeBuffer)),
          offset(firstElement),
          normalized(isNormalized) {}

    /// The same with a GL location in place of a name: 0 is that of `gl_Vertex`. A negative one, as
    /// `0xFFFFFFFF` is, too, names nothing: GL refuses what is recorded of it with
    /// `GL_INVALID_VALUE`.
    /// @{
    VertexAttribute(int attributeLocation,
                    std::shared_ptr<VertexAttributeBuffer<T>> attributeBuffer,
                    unsigned int firstElement = 0, bool isNormalized = false)
        : VertexAttribute(nullptr, std::move(attributeBuffer), firstElement, isNormalized) {
        location = attributeLocation;
    }
    VertexAttribute(unsigned int attributeLocation,
                    std::shared_ptr<VertexAttributeBuffer<T>> attributeBuffer,
                    unsigned int firstElement = 0, bool isNormalized = false)
        : VertexAttribute(static_cast<int>(attributeLocation), std::move(attributeBuffer),
                          firstElement, isNormalized) {}
    /// @}

    const char* name;  ///< the name in the vertex shader; null where the location says it
    int location = -1; ///< the GL location; -1 to look it up by name
    std::shared_ptr<VertexAttributeBuffer<T>> buffer; ///< the values
    unsigned int offset;                              ///< the first element to use
    bool normalized;                                  ///< GL's flag of that name
};

} // namespace vellis

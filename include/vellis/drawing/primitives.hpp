#pragma once

#include <cstddef>
#include <memory>

#include <vellis/detail/hot.hpp>
#include <vellis/detail/recycling_allocator.hpp>
#include <vellis/drawing/drawable.hpp>
#include <vellis/drawing/vertex_attribute.hpp>
#include <vellis/export.hpp>
#include <vellis/shading/program.hpp>

namespace vellis {

namespace detail {

/// A VertexAttribute without its type.
struct AttributeSource {
    const VertexBuffer* buffer;
    unsigned int location;
    int components;
    unsigned int type;
    unsigned int offset;
    unsigned int elementSize;
    bool normalized;
};

/// The attribute of that name or location in \p program; that may be null.
template <class T>
AttributeSource source(const Program* program, const VertexAttribute<T>& attribute) {
    return {attribute.buffer.get(),
            attribute.location < 0 && program != nullptr
                ? program->getAttribLoc(attribute.name)
                : static_cast<unsigned int>(attribute.location),
            AttributeFormat<T>::components,
            AttributeFormat<T>::type,
            attribute.offset,
            sizeof(T),
            attribute.normalized};
}

/// The part of the drawable templates that does not depend on their types: records \p count
/// attributes, one at least, in a binding of \p program, and leaves it in \p binding. Without a
/// program it records nothing.
///
/// \return the number of vertices.
VELLIS_DIRECT VELLIS_EXPORT unsigned int record(const Program* program,
                                                const AttributeSource* attributes,
                                                std::size_t count,
                                                std::shared_ptr<VertexAttributesBinding>& binding);

} // namespace detail

/// Drawables of one primitive over the vertex attributes of a program.
///
/// \code
/// auto positions = vellis::VertexAttributeBuffer<glm::vec2>::make(
///     {{-1.f, 0.f}, {0.f, 1.f}, {1.f, 0.f}}, vellis::BufferUsage::Static,
///     vellis::BufferAccess::Draw);
/// auto line = vellis::drawable::LineStrip<vellis::VertexAttribute<glm::vec2>>::make(
///     program, {"position", positions});
/// program->draw(*line);
/// \endcode
namespace drawable {

/// A drawable of a given primitive over one vertex attribute or several: Points, Lines, LineLoop,
/// LineStrip, Triangles, TriangleStrip and TriangleFan name its kinds.
///
/// Construction records the attributes in a vertex attribute binding: `glUseProgram`,
/// `glGenVertexArrays`, `glBindVertexArray`; for each attribute `glBindBuffer`,
/// `glVertexAttribPointer`, `glEnableVertexAttribArray`, `glBindBuffer(…, 0)`; then
/// `glBindVertexArray(0)` and `glUseProgram(0)`. No program is in use afterwards.
///
/// The number of vertices is the smallest number of elements that an attribute has from its offset
/// on: 0 where an offset lies beyond its buffer, or a buffer is missing or does not exist in the
/// Context in use. The drawable does not keep the buffers: they must live for as long as it is
/// drawn.
///
/// An attribute whose name the program does not have gets location `0xFFFFFFFF`, which GL refuses
/// with `GL_INVALID_VALUE`.
///
/// \tparam type        The primitive.
/// \tparam Attributes  VertexAttribute of any types.
template <Drawable::PrimitiveType type, class... Attributes>
class Primitive : public Drawable {
    static_assert(sizeof...(Attributes) > 0, "there is nothing to draw without an attribute");

public:
    /// Records the attributes. An empty \p program records nothing.
    explicit Primitive(const std::shared_ptr<Program>& program, const Attributes&... attributes)
        : Drawable(type) {
        const detail::AttributeSource sources[] = {detail::source(program.get(), attributes)...};
        numVertices_ =
            detail::record(program.get(), sources, sizeof...(Attributes), attributesBinding_);
    }

    /// A drawable in a shared pointer, with one allocation for both; the memory of one drawable
    /// that was released serves again.
    static std::shared_ptr<Primitive> make(const std::shared_ptr<Program>& program,
                                           const Attributes&... attributes) {
        return std::allocate_shared<Primitive>(detail::RecyclingAllocator<Primitive>(), program,
                                               attributes...);
    }
};

/// A point for each vertex.
template <class... Attributes>
using Points = Primitive<Drawable::PrimitiveType::Points, Attributes...>;

/// A line for each two vertices.
template <class... Attributes>
using Lines = Primitive<Drawable::PrimitiveType::Lines, Attributes...>;

/// A line through all vertices and back to the first.
template <class... Attributes>
using LineLoop = Primitive<Drawable::PrimitiveType::LineLoop, Attributes...>;

/// A line through all vertices.
template <class... Attributes>
using LineStrip = Primitive<Drawable::PrimitiveType::LineStrip, Attributes...>;

/// A triangle for each three vertices.
template <class... Attributes>
using Triangles = Primitive<Drawable::PrimitiveType::Triangles, Attributes...>;

/// A triangle for each vertex from the third on, with the two before it.
template <class... Attributes>
using TriangleStrip = Primitive<Drawable::PrimitiveType::TriangleStrip, Attributes...>;

/// A triangle for each vertex from the third on, with the first and the one before it.
template <class... Attributes>
using TriangleFan = Primitive<Drawable::PrimitiveType::TriangleFan, Attributes...>;

} // namespace drawable
} // namespace vellis

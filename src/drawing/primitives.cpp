#include <vellis/drawing/primitives.hpp>

#include <algorithm>
#include <limits>

#include <vellis/gl.hpp>

#include "shading/program_use.hpp"

namespace vellis {

static_assert(AttributeComponent<signed char>::type == GL_BYTE);
static_assert(AttributeComponent<unsigned char>::type == GL_UNSIGNED_BYTE);
static_assert(AttributeComponent<short>::type == GL_SHORT);
static_assert(AttributeComponent<unsigned short>::type == GL_UNSIGNED_SHORT);
static_assert(AttributeComponent<int>::type == GL_INT);
static_assert(AttributeComponent<unsigned int>::type == GL_UNSIGNED_INT);
static_assert(AttributeComponent<float>::type == GL_FLOAT);

namespace detail {
namespace {

/// Points the attribute of the program at its buffer, in the vertex array object that is bound.
void bindAttribute(const Program& program, const AttributeSource& attribute) {
    if (attribute.buffer == nullptr)
        return;
    attribute.buffer->bind();
    const unsigned int location = attribute.location >= 0
                                      ? static_cast<unsigned int>(attribute.location)
                                      : program.getAttribLoc(attribute.name);
    // With an array buffer bound, the pointer is an offset into it.
    const std::size_t offset = std::size_t{attribute.offset} * attribute.elementSize;
    glVertexAttribPointer(location, attribute.components, attribute.type,
                          static_cast<unsigned char>(attribute.normalized),
                          static_cast<int>(attribute.elementSize),
                          reinterpret_cast<const void*>(offset));
    glEnableVertexAttribArray(location);
    attribute.buffer->unbind();
}

/// The elements from the offset on.
unsigned int numVertices(const AttributeSource& attribute) {
    const unsigned int elements = attribute.buffer != nullptr ? attribute.buffer->numElements() : 0;
    return elements - std::min(elements, attribute.offset);
}

} // namespace

RecordedDrawable::~RecordedDrawable() = default;

void RecordedDrawable::record(const Program* program, const AttributeSource* attributes,
                              std::size_t count) {
    if (program != nullptr) {
        const ProgramUse use(*program);
        program->beginAttributesBinding();
        std::for_each(attributes, attributes + count,
                      [&](const AttributeSource& source) { bindAttribute(*program, source); });
        attributesBinding_ = program->finishAttributesBinding();
    }
    numVertices_ = std::numeric_limits<unsigned int>::max();
    std::for_each(attributes, attributes + count, [&](const AttributeSource& source) {
        numVertices_ = std::min(numVertices_, detail::numVertices(source));
    });
}

} // namespace detail

namespace drawable {

using Type = Drawable::PrimitiveType;

template class Primitive<Type::Points, VertexAttribute<glm::vec2>>;
template class Primitive<Type::Points, VertexAttribute<glm::vec3>>;
template class Primitive<Type::Lines, VertexAttribute<glm::vec2>>;
template class Primitive<Type::Lines, VertexAttribute<glm::vec3>>;
template class Primitive<Type::LineLoop, VertexAttribute<glm::vec2>>;
template class Primitive<Type::LineLoop, VertexAttribute<glm::vec3>>;
template class Primitive<Type::LineStrip, VertexAttribute<glm::vec2>>;
template class Primitive<Type::LineStrip, VertexAttribute<glm::vec3>>;
template class Primitive<Type::LineStrip, VertexAttribute<glm::vec4>>;
template class Primitive<Type::TriangleStrip, VertexAttribute<glm::vec2>>;
template class Primitive<Type::TriangleStrip, VertexAttribute<glm::vec3>>;
template class Primitive<Type::TriangleFan, VertexAttribute<glm::vec2>>;
template class Primitive<Type::TriangleFan, VertexAttribute<glm::vec3>>;

} // namespace drawable
} // namespace vellis

#include <vellis/drawing/primitives.hpp>

#include <algorithm>
#include <limits>

#include <vellis/detail/use.hpp>
#include <vellis/gl.hpp>

namespace vellis {

namespace detail {
namespace {

/// Points the attribute at its buffer, in the vertex array object that is bound.
void bindAttribute(const AttributeSource& attribute) {
    attribute.buffer->bind();
    // With an array buffer bound, the pointer is an offset into it.
    const std::size_t offset = std::size_t{attribute.offset} * attribute.elementSize;
    glVertexAttribPointer(attribute.location, attribute.components, attribute.type,
                          static_cast<unsigned char>(attribute.normalized),
                          static_cast<int>(attribute.elementSize),
                          reinterpret_cast<const void*>(offset));
    glEnableVertexAttribArray(attribute.location);
    attribute.buffer->unbind();
}

/// Does \p visit for each attribute that has a buffer. There is one attribute at least.
/// \return the number of elements that all attributes have from their offsets on.
template <class Visit>
unsigned int countVertices(const AttributeSource* attributes, std::size_t count, Visit visit) {
    unsigned int fewest = std::numeric_limits<unsigned int>::max();
    const AttributeSource* const end = attributes + count;
    do {
        unsigned int elements = 0;
        if (attributes->buffer != nullptr && attributes->buffer->exists()) {
            visit(*attributes);
            elements = attributes->buffer->numElements();
        }
        fewest = std::min(fewest, elements - std::min(elements, attributes->offset));
        ++attributes;
    } while (attributes != end);
    return fewest;
}

} // namespace

unsigned int record(const Program* program, const AttributeSource* attributes, std::size_t count,
                    std::shared_ptr<VertexAttributesBinding>& binding) {
    if (program == nullptr)
        return countVertices(attributes, count, [](const AttributeSource&) {});
    const Use<Program> use(*program);
    program->beginAttributesBinding();
    const unsigned int numVertices = countVertices(attributes, count, bindAttribute);
    binding = program->finishAttributesBinding();
    return numVertices;
}

} // namespace detail

} // namespace vellis

#include <vellis/drawing/primitives.hpp>

#include <algorithm>
#include <limits>

#include <vellis/gl.hpp>

#include "buffers/buffer_object_inlined.hpp"
#include "drawing/vertex_attributes_binding_inlined.hpp"

namespace vellis {

namespace detail {

/// The steps of a recording, which reach into the three classes that take part.
struct AttributeRecorder {
    /// Points the attribute at its buffer, in the vertex array object that is bound.
    static void bindAttribute(const AttributeSource& attribute) {
        using Buffer = BufferObject::Inlined;
        Buffer::bindExisting(*attribute.buffer);
        // With an array buffer bound, the pointer is an offset into it.
        const std::size_t offset = std::size_t{attribute.offset} * attribute.elementSize;
        glVertexAttribPointer(attribute.location, attribute.components, attribute.type,
                              static_cast<unsigned char>(attribute.normalized),
                              static_cast<int>(attribute.elementSize),
                              reinterpret_cast<const void*>(offset));
        glEnableVertexAttribArray(attribute.location);
        Buffer::unbind(*attribute.buffer);
    }

    /// Does \p visit for each attribute that has a buffer. There is one attribute at least.
    /// \return the number of elements that all attributes have from their offsets on.
    template <class Visit>
    static unsigned int countVertices(const AttributeSource* attributes, std::size_t count,
                                      Visit visit) {
        unsigned int fewest = std::numeric_limits<unsigned int>::max();
        const AttributeSource* const end = attributes + count;
        do {
            const VertexBuffer* const buffer = attributes->buffer;
            unsigned int elements = 0;
            if (buffer != nullptr) {
                if (BufferObject::Inlined::exists(*buffer)) {
                    visit(*attributes);
                    elements = buffer->numElements();
                } else {
                    gl::refuse(gl::Kind::Buffer);
                }
            }
            fewest = std::min(fewest, elements - std::min(elements, attributes->offset));
            ++attributes;
        } while (attributes != end);
        return fewest;
    }

    /// Makes a binding and binds it, as Program::beginAttributesBinding does; but nothing lets go
    /// of it in between, so that the program need not keep it.
    static std::shared_ptr<VertexAttributesBinding> begin(const Program& program) {
        auto binding = VertexAttributesBinding::make();
        program.usage_.release();
        VertexAttributesBinding::Inlined::bindExisting(*binding);
        return binding;
    }

    static void finish() { VertexAttributesBinding::Inlined::unbind(); }

    /// The use of a program that keeps no binding meanwhile. It is an operation as well, which is
    /// within no other: see gl/operation.hpp.
    class Use {
    public:
        explicit Use(const Program& program) : program_(program) {
            gl::thread().operation = "Drawable::make";
            program.bind();
        }
        ~Use() {
            gl::thread().operation = nullptr;
            program_.usage_.setBound(false);
            glUseProgram(0);
        }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

    private:
        const Program& program_;
    };
};

unsigned int record(const Program* program, const AttributeSource* attributes, std::size_t count,
                    std::shared_ptr<VertexAttributesBinding>& binding) {
    using Recorder = AttributeRecorder;
    if (program == nullptr)
        return Recorder::countVertices(attributes, count, [](const AttributeSource&) {});
    const Recorder::Use use(*program);
    binding = Recorder::begin(*program);
    const unsigned int numVertices =
        Recorder::countVertices(attributes, count, Recorder::bindAttribute);
    Recorder::finish();
    return numVertices;
}

} // namespace detail

} // namespace vellis

/// VertexAttributeBuffer and IndexBuffer: the same operations, counted in elements.

#include <vellis/buffers/index_buffer.hpp>
#include <vellis/buffers/vertex_attribute_buffer.hpp>

#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::ArrayBuffer;
using vellis::BufferAccess;
using vellis::BufferUsage;
using vellis::ElementBuffer;
using vellis::IndexBuffer;
using vellis::IsIndexType;
using vellis::MapAccess;
using vellis::VertexAttributeBuffer;
using vellis::VertexBuffer;
using vellis::test::FakeGl;

/// An element of one's own: interleaved attributes.
struct Vertex {
    float position[2];
    unsigned char color[4];
};

static_assert(IsIndexType<unsigned char>::value && IsIndexType<unsigned short>::value &&
              IsIndexType<unsigned int>::value);
static_assert(!IsIndexType<int>::value && !IsIndexType<float>::value &&
              !IsIndexType<unsigned long>::value);
static_assert(std::is_base_of_v<ArrayBuffer, VertexBuffer>);
static_assert(std::is_base_of_v<VertexBuffer, VertexAttributeBuffer<glm::vec2>>);
static_assert(std::is_base_of_v<ElementBuffer, IndexBuffer<unsigned int>>);
static_assert(std::is_abstract_v<VertexBuffer>);

/// One buffer class, its target and three elements.
template <class B, class E, unsigned int t>
struct Kind {
    using Buffer = B;
    using Element = E;
    static constexpr unsigned int target = t;
};

template <class K>
class TypedBufferTrace : public testing::Test {
protected:
    using Buffer = typename K::Buffer;
    using Element = typename K::Element;
    static constexpr auto size = static_cast<unsigned int>(sizeof(Element));

    TypedBufferTrace() { std::memset(elements, 0x5A, sizeof(elements)); }
    ~TypedBufferTrace() override { gl.ignoreTheRest(); }

    std::string call(const std::string& name, const std::string& rest) const {
        return name + "(" +
               (K::target == GL_ARRAY_BUFFER ? "GL_ARRAY_BUFFER" : "GL_ELEMENT_ARRAY_BUFFER") +
               rest + ")";
    }
    std::string bind(unsigned int name) const {
        return call("glBindBuffer", ", " + std::to_string(name));
    }
    static std::string bytes(unsigned int count) { return std::to_string(count * size); }

    FakeGl gl;
    Element elements[3];
};

using Kinds =
    testing::Types<Kind<VertexAttributeBuffer<unsigned char>, unsigned char, GL_ARRAY_BUFFER>,
                   Kind<VertexAttributeBuffer<float>, float, GL_ARRAY_BUFFER>,
                   Kind<VertexAttributeBuffer<glm::vec2>, glm::vec2, GL_ARRAY_BUFFER>,
                   Kind<VertexAttributeBuffer<glm::vec3>, glm::vec3, GL_ARRAY_BUFFER>,
                   Kind<VertexAttributeBuffer<glm::vec4>, glm::vec4, GL_ARRAY_BUFFER>,
                   Kind<VertexAttributeBuffer<Vertex>, Vertex, GL_ARRAY_BUFFER>,
                   Kind<IndexBuffer<unsigned char>, unsigned char, GL_ELEMENT_ARRAY_BUFFER>,
                   Kind<IndexBuffer<unsigned short>, unsigned short, GL_ELEMENT_ARRAY_BUFFER>,
                   Kind<IndexBuffer<unsigned int>, unsigned int, GL_ELEMENT_ARRAY_BUFFER>>;
TYPED_TEST_SUITE(TypedBufferTrace, Kinds, );

TYPED_TEST(TypedBufferTrace, MakeOfACountAllocatesWithoutUpload) {
    const auto buffer = TestFixture::Buffer::make(5, BufferUsage::Static, BufferAccess::Draw);
    const std::vector<std::string> expected = {
        "glGenBuffers(1, {1})", this->bind(1),
        this->call("glBufferData", ", " + this->bytes(5) + ", null, GL_STATIC_DRAW"),
        this->bind(0)};
    EXPECT_EQ(this->gl.takeCalls(), expected);
    EXPECT_EQ(buffer->count(), 5u);
    EXPECT_EQ(buffer->numBytes(), 5u * this->size);
}

TYPED_TEST(TypedBufferTrace, MakeOfDataUploadsThem) {
    const auto buffer =
        TestFixture::Buffer::make(this->elements, 3, BufferUsage::Dynamic, BufferAccess::Draw);
    const std::vector<std::string> expected = {
        "glGenBuffers(1, {1})", this->bind(1),
        this->call("glBufferData", ", " + this->bytes(3) + ", null, GL_DYNAMIC_DRAW"),
        this->call("glBufferSubData", ", 0, " + this->bytes(3) + ", data"), this->bind(0)};
    EXPECT_EQ(this->gl.takeCalls(), expected);
    EXPECT_EQ(this->gl.bufferBytes(1), std::vector<unsigned char>(3 * this->size, 0x5A));
}

TYPED_TEST(TypedBufferTrace, MakeOfAListUploadsIt) {
    const auto& e = this->elements;
    const auto buffer =
        TestFixture::Buffer::make({e[0], e[1]}, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(buffer->count(), 2u);
    EXPECT_EQ(this->gl.bufferBytes(1), std::vector<unsigned char>(2 * this->size, 0x5A));
}

TYPED_TEST(TypedBufferTrace, MakeAndLoadOfAVectorUploadIt) {
    const auto& e = this->elements;
    const std::vector<typename TestFixture::Element> two = {e[0], e[1]};
    const auto buffer = TestFixture::Buffer::make(two, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(buffer->count(), 2u);
    EXPECT_EQ(this->gl.bufferBytes(1), std::vector<unsigned char>(2 * this->size, 0x5A));
    buffer->load(std::vector<typename TestFixture::Element>(3, e[2]));
    EXPECT_EQ(buffer->count(), 3u);
    EXPECT_EQ(this->gl.bufferBytes(1), std::vector<unsigned char>(3 * this->size, 0x5A));
}

TYPED_TEST(TypedBufferTrace, MakeOfNothingMakesAnEmptyStore) {
    const std::initializer_list<typename TestFixture::Element> none = {};
    const auto buffer = TestFixture::Buffer::make(none, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(buffer->count(), 0u);
    EXPECT_EQ(buffer->numBytes(), 0u);
}

TYPED_TEST(TypedBufferTrace, LoadOfTheWholeUpdatesTheCount) {
    const auto buffer = TestFixture::Buffer::make(1, BufferUsage::Static, BufferAccess::Draw);
    this->gl.forget();
    buffer->load(this->elements, 3);
    const std::vector<std::string> expected = {
        this->bind(1), this->call("glBufferData", ", " + this->bytes(3) + ", null, GL_STATIC_DRAW"),
        this->call("glBufferSubData", ", 0, " + this->bytes(3) + ", data"), this->bind(0)};
    EXPECT_EQ(this->gl.takeCalls(), expected);
    EXPECT_EQ(buffer->count(), 3u);
}

TYPED_TEST(TypedBufferTrace, LoadOfAPartCountsInElements) {
    const auto buffer = TestFixture::Buffer::make(4, BufferUsage::Static, BufferAccess::Draw);
    this->gl.forget();
    buffer->load(this->elements, 2, 1);
    const std::vector<std::string> expected = {
        this->bind(1),
        this->call("glBufferSubData", ", " + this->bytes(2) + ", " + this->bytes(1) + ", data"),
        this->bind(0)};
    EXPECT_EQ(this->gl.takeCalls(), expected);
    EXPECT_EQ(buffer->count(), 4u);
}

TYPED_TEST(TypedBufferTrace, WritesThroughAMappingReachTheStore) {
    const auto buffer = TestFixture::Buffer::make(2, BufferUsage::Static, BufferAccess::Draw);
    typename TestFixture::Element* const mapped = buffer->map(MapAccess::WriteOnly);
    ASSERT_NE(mapped, nullptr);
    mapped[1] = this->elements[0];
    this->gl.forget();
    buffer->flushAndUnmap(1, 1);
    const std::vector<std::string> expected = {
        this->bind(1),
        this->call("glFlushMappedBufferRange", ", " + this->bytes(1) + ", " + this->bytes(1)),
        this->bind(0),
        this->bind(1),
        this->call("glUnmapBuffer", ""),
        this->bind(0)};
    EXPECT_EQ(this->gl.takeCalls(), expected);
    EXPECT_EQ(this->gl.bufferBytes(1).back(), 0x5A);
}

TYPED_TEST(TypedBufferTrace, FlushOfCountZeroReachesToTheEnd) {
    const auto buffer = TestFixture::Buffer::make(4, BufferUsage::Static, BufferAccess::Draw);
    buffer->map(MapAccess::WriteOnly);
    this->gl.forget();
    buffer->flush(1, 0);
    EXPECT_EQ(this->gl.takeCalls()[1], this->call("glFlushMappedBufferRange",
                                                  ", " + this->bytes(1) + ", " + this->bytes(3)));
    buffer->flushAndUnmap();
    const std::vector<std::string> expected = {this->bind(1), this->call("glUnmapBuffer", ""),
                                               this->bind(0)};
    EXPECT_EQ(this->gl.takeCalls(), expected);
    buffer->map(MapAccess::ReadOnly);
    buffer->unmap(true);
}

TYPED_TEST(TypedBufferTrace, CountBeyond32BitsOfBytesIsCut) {
    constexpr unsigned int most = std::numeric_limits<unsigned int>::max();
    this->gl.answer(glad_glBufferData, [](GLenum, GLsizeiptr, const void*, GLenum) {});
    const auto buffer = TestFixture::Buffer::make(most, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(buffer->count(), most / this->size);
    EXPECT_EQ(buffer->numBytes(), most / this->size * this->size);
    this->gl.forget();
    buffer->load(this->elements, most, 1); // an offset that no store has
    const std::string offset = std::to_string(most);
    EXPECT_EQ(this->gl.takeCalls()[1],
              this->call("glBufferSubData", ", " + offset + ", " + this->bytes(1) + ", data"));
}

TEST(VertexAttributeBufferTrace, SizeIsInBytesAndNumElementsIsTheCount) {
    FakeGl gl;
    const auto vectors =
        VertexAttributeBuffer<glm::vec3>::make(4, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(vectors->size(), 48u);
    EXPECT_EQ(vectors->numElements(), 4u);
    const auto bytes =
        VertexAttributeBuffer<unsigned char>::make(1024, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(bytes->size(), 1024u);
    EXPECT_EQ(bytes->numElements(), 1024u);
    const VertexBuffer& untyped = *vectors;
    EXPECT_EQ(untyped.numElements(), 4u);
    gl.ignoreTheRest();
}

} // namespace

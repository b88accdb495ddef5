#include <vellis/buffers.hpp>

#include <cstring>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/render_test.hpp"

namespace {

using vellis::BufferAccess;
using vellis::BufferUsage;
using vellis::IndexBuffer;
using vellis::MapAccess;
using vellis::PixelBuffer;
using vellis::VertexAttributeBuffer;

class BuffersRender : public RenderTest {
protected:
    /// The store of a buffer as GL has it.
    template <class T, class Buffer>
    static std::vector<T> contents(unsigned int target, const Buffer& buffer) {
        std::vector<T> values(buffer.numBytes() / sizeof(T));
        buffer.bind();
        glGetBufferSubData(target, 0, buffer.numBytes(), values.data());
        buffer.unbind();
        return values;
    }

    static int parameter(unsigned int target, unsigned int name, unsigned int pname) {
        int value = 0;
        glBindBuffer(target, name);
        glGetBufferParameteriv(target, pname, &value);
        glBindBuffer(target, 0);
        return value;
    }
};

TEST_F(BuffersRender, StoreHasTheSizeUsageAndContentsThatMakeWasGiven) {
    const auto buffer = VertexAttributeBuffer<float>::make({1.f, 2.f, 3.f}, BufferUsage::Dynamic,
                                                           BufferAccess::Copy);
    EXPECT_EQ(parameter(GL_ARRAY_BUFFER, buffer->id(), GL_BUFFER_SIZE), 12);
    EXPECT_EQ(parameter(GL_ARRAY_BUFFER, buffer->id(), GL_BUFFER_USAGE), GL_DYNAMIC_COPY);
    EXPECT_EQ(contents<float>(GL_ARRAY_BUFFER, *buffer), (std::vector<float>{1.f, 2.f, 3.f}));
}

TEST_F(BuffersRender, LoadReplacesTheStoreOrAPart) {
    const auto buffer =
        IndexBuffer<unsigned short>::make({1, 2}, BufferUsage::Static, BufferAccess::Draw);
    const unsigned short values[] = {5, 6, 7};
    buffer->load(values, 3);
    buffer->load(values, 1, 1);
    EXPECT_EQ(contents<unsigned short>(GL_ELEMENT_ARRAY_BUFFER, *buffer),
              (std::vector<unsigned short>{5, 5, 7}));
    EXPECT_EQ(buffer->count(), 3u);
}

TEST_F(BuffersRender, LoadOfANullPartEndsUnboundAndKeepsTheStore) {
    const auto buffer =
        VertexAttributeBuffer<float>::make({1.f, 2.f}, BufferUsage::Static, BufferAccess::Draw);
    buffer->bind();
    buffer->load(nullptr, 0, 2);
    EXPECT_FALSE(buffer->isBound());
    GLint bound = -1;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
    EXPECT_EQ(contents<float>(GL_ARRAY_BUFFER, *buffer), (std::vector<float>{1.f, 2.f}));
}

TEST_F(BuffersRender, PartBeyondTheStoreIsRefusedByGl) {
    const auto buffer =
        VertexAttributeBuffer<unsigned char>::make(4, BufferUsage::Static, BufferAccess::Draw);
    const unsigned char values[8] = {};
    buffer->load(values, 0, 8);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(BuffersRender, FlushedWritesThroughAMappingArrive) {
    SKIP_WITHOUT(Extension::MappedRanges);
    const auto buffer = VertexAttributeBuffer<float>::make({1.f, 2.f, 3.f}, BufferUsage::Static,
                                                           BufferAccess::Draw);
    float* const mapped = buffer->map(MapAccess::ReadWrite);
    ASSERT_NE(mapped, nullptr);
    EXPECT_EQ(mapped[0], 1.f);
    mapped[1] = 20.f;
    buffer->flushAndUnmap(1, 1);
    EXPECT_EQ(contents<float>(GL_ARRAY_BUFFER, *buffer), (std::vector<float>{1.f, 20.f, 3.f}));
}

TEST_F(BuffersRender, FlushOfAReadMappingIsAnErrorOfGl) {
    SKIP_WITHOUT(Extension::MappedRanges);
    const auto buffer =
        VertexAttributeBuffer<float>::make(4, BufferUsage::Static, BufferAccess::Draw);
    ASSERT_NE(buffer->map(MapAccess::ReadOnly), nullptr);
    buffer->flush(0, 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    buffer->unmap(true);
}

TEST_F(BuffersRender, EmptyBufferCannotBeMapped) {
    SKIP_WITHOUT(Extension::MappedRanges);
    const auto buffer =
        VertexAttributeBuffer<float>::make(0u, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(buffer->map(MapAccess::ReadOnly), nullptr);
    EXPECT_NE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    buffer->unmap(false);
    EXPECT_NE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(BuffersRender, PixelsAreReadIntoAPixelBuffer) {
    SKIP_WITHOUT(Extension::MappedRanges);
    glClearColor(1.f, 0.f, 0.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Download, 16, BufferUsage::Stream,
                                          BufferAccess::Read);
    buffer->bind();
    glReadPixels(0, 0, 2, 2, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    buffer->unbind();
    const auto* const pixels = static_cast<unsigned char*>(buffer->map(MapAccess::ReadOnly));
    ASSERT_NE(pixels, nullptr);
    const unsigned char red[] = {255, 0, 0, 255};
    EXPECT_EQ(std::memcmp(pixels + 12, red, 4), 0);
    buffer->unmap(false);
}

TEST_F(BuffersRender, UnknownUsageAndFlowAreRefusedByGl) {
    VertexAttributeBuffer<float>::make(4, static_cast<BufferUsage>(9), BufferAccess::Draw);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    PixelBuffer::make(static_cast<PixelBuffer::DataFlow>(9), 4, BufferUsage::Static,
                      BufferAccess::Draw);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(BuffersRender, DisposedBufferHasNoNameInGl) {
    const auto buffer =
        VertexAttributeBuffer<float>::make(4, BufferUsage::Static, BufferAccess::Draw);
    const unsigned int name = buffer->id();
    buffer->dispose();
    EXPECT_FALSE(glIsBuffer(name));
    buffer->load(nullptr, 4); // goes to name 0
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

} // namespace

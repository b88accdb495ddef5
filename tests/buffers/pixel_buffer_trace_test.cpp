#include <vellis/buffers/pixel_buffer.hpp>

#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::BufferAccess;
using vellis::BufferUsage;
using vellis::MapAccess;
using vellis::PixelBuffer;
using vellis::test::FakeGl;

TEST(PixelBufferTrace, UploadTargetsPixelUnpack) {
    FakeGl gl;
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Upload, 64, BufferUsage::Stream,
                                          BufferAccess::Draw);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {1})", "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 1)",
                    "glBufferData(GL_PIXEL_UNPACK_BUFFER, 64, null, GL_STREAM_DRAW)",
                    "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)");
    gl.ignoreTheRest();
}

TEST(PixelBufferTrace, DownloadTargetsPixelPack) {
    FakeGl gl;
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Download, 64, BufferUsage::Stream,
                                          BufferAccess::Read);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {1})", "glBindBuffer(GL_PIXEL_PACK_BUFFER, 1)",
                    "glBufferData(GL_PIXEL_PACK_BUFFER, 64, null, GL_STREAM_READ)",
                    "glBindBuffer(GL_PIXEL_PACK_BUFFER, 0)");
    gl.ignoreTheRest();
}

TEST(PixelBufferTrace, AnotherFlowTargetsZero) {
    FakeGl gl;
    const auto buffer = PixelBuffer::make(static_cast<PixelBuffer::DataFlow>(2), 64,
                                          BufferUsage::Stream, BufferAccess::Read);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {1})", "glBindBuffer(0x0, 1)",
                    "glBufferData(0x0, 64, null, GL_STREAM_READ)", "glBindBuffer(0x0, 0)");
    gl.ignoreTheRest();
}

TEST(PixelBufferTrace, EveryOperationIsPublic) {
    FakeGl gl;
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Upload, 4, BufferUsage::Stream,
                                          BufferAccess::Draw);
    const unsigned char data[] = {1, 2, 3, 4, 5, 6};
    buffer->load(data, 6);
    buffer->load(data, 2, 1);
    EXPECT_EQ(gl.bufferBytes(1), (std::vector<unsigned char>{1, 2, 1, 4, 5, 6}));
    buffer->bind();
    buffer->unbind();
    gl.forget();
    EXPECT_NE(buffer->map(MapAccess::WriteOnly), nullptr);
    buffer->flush(0, 2);
    buffer->flushAndUnmap(2, 0);
    EXPECT_GL_CALLS(
        gl, "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 1)",
        "glMapBufferRange(GL_PIXEL_UNPACK_BUFFER, 0, 6, "
        "GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT)",
        "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)", "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 1)",
        "glFlushMappedBufferRange(GL_PIXEL_UNPACK_BUFFER, 0, 2)",
        "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)", "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 1)",
        "glFlushMappedBufferRange(GL_PIXEL_UNPACK_BUFFER, 2, 4)",
        "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)", "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 1)",
        "glUnmapBuffer(GL_PIXEL_UNPACK_BUFFER)", "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)");
    buffer->map(MapAccess::ReadOnly);
    buffer->unmap(true);
    buffer->flushAndUnmap();
    gl.ignoreTheRest();
}

} // namespace

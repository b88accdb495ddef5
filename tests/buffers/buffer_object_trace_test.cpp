// needs: private access

/// The operations that every buffer has, through the concrete classes that make them public.

#include <vellis/buffers.hpp>

#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/context.hpp>
#include <vellis/gl.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

namespace {

using vellis::BufferAccess;
using vellis::BufferObject;
using vellis::BufferUsage;
using vellis::MapAccess;
using vellis::test::FakeContext;
using vellis::test::FakeGl;
using Bytes = vellis::VertexAttributeBuffer<unsigned char>;

static_assert(std::has_virtual_destructor_v<BufferObject>);

/// The least that a class of vertices must add.
class Vertices : public vellis::VertexBuffer {
public:
    using VertexBuffer::VertexBuffer;
    unsigned int size() const override { return numBytes(); }
    unsigned int numElements() const override { return numBytes(); }
};

class BufferObjectTrace : public testing::Test {
protected:
    /// A buffer of 16 bytes, name 1, whose making is not looked at.
    BufferObjectTrace() : buffer(Bytes::make(16, BufferUsage::Static, BufferAccess::Draw)) {
        gl.forget();
    }
    ~BufferObjectTrace() override {
        EXPECT_GL_CALLS(gl); // every test looks at all calls of its own
        gl.ignoreTheRest();
    }

    FakeGl gl;
    std::shared_ptr<Bytes> buffer;
};

TEST_F(BufferObjectTrace, ConstructionWithoutDataAllocatesWithoutUpload) {
    const auto other = Bytes::make(1024, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {2})", "glBindBuffer(GL_ARRAY_BUFFER, 2)",
                    "glBufferData(GL_ARRAY_BUFFER, 1024, null, GL_STATIC_DRAW)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_FALSE(other->isBound());
    EXPECT_EQ(other->numBytes(), 1024u);
    EXPECT_EQ(other->id(), 2u);
    other->dispose();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {2})");
}

TEST_F(BufferObjectTrace, ConstructionWithDataAllocatesEmptyAndThenFills) {
    const unsigned char data[] = {1, 2, 3};
    {
        const auto other = Bytes::make(data, 3, BufferUsage::Stream, BufferAccess::Copy);
        EXPECT_EQ(gl.bufferBytes(2), (std::vector<unsigned char>{1, 2, 3}));
    }
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {2})", "glBindBuffer(GL_ARRAY_BUFFER, 2)",
                    "glBufferData(GL_ARRAY_BUFFER, 3, null, GL_STREAM_COPY)",
                    "glBufferSubData(GL_ARRAY_BUFFER, 0, 3, data)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)", "glDeleteBuffers(1, {2})");
}

TEST_F(BufferObjectTrace, BaseClassesMakeAStoreWithoutContents) {
    const vellis::ArrayBuffer array(4, BufferUsage::Dynamic, BufferAccess::Read);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {2})", "glBindBuffer(GL_ARRAY_BUFFER, 2)",
                    "glBufferData(GL_ARRAY_BUFFER, 4, null, GL_DYNAMIC_READ)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    const vellis::ElementBuffer elements(5, BufferUsage::Dynamic, BufferAccess::Copy);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {3})", "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 3)",
                    "glBufferData(GL_ELEMENT_ARRAY_BUFFER, 5, null, GL_DYNAMIC_COPY)",
                    "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)");
    const Vertices vertices(6, BufferUsage::Stream, BufferAccess::Draw);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {4})", "glBindBuffer(GL_ARRAY_BUFFER, 4)",
                    "glBufferData(GL_ARRAY_BUFFER, 6, null, GL_STREAM_DRAW)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(array.numBytes() + elements.numBytes() + vertices.numBytes(), 15u);
    gl.ignoreTheRest();
}

TEST_F(BufferObjectTrace, AllocMakesANewStoreWithoutContents) {
    buffer->alloc(32);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glBufferData(GL_ARRAY_BUFFER, 32, null, GL_STATIC_DRAW)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(buffer->numBytes(), 32u);
}

TEST_F(BufferObjectTrace, LoadOfTheWholeOrphansAndFills) {
    const unsigned char data[] = {1, 2, 3, 4};
    buffer->load(data, 4);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glBufferData(GL_ARRAY_BUFFER, 4, null, GL_STATIC_DRAW)",
                    "glBufferSubData(GL_ARRAY_BUFFER, 0, 4, data)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(buffer->numBytes(), 4u);
    EXPECT_EQ(gl.bufferBytes(1), (std::vector<unsigned char>{1, 2, 3, 4}));
}

TEST_F(BufferObjectTrace, LoadOfNullOnlyAllocates) {
    buffer->load(nullptr, 8);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glBufferData(GL_ARRAY_BUFFER, 8, null, GL_STATIC_DRAW)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(buffer->numBytes(), 8u);
}

TEST_F(BufferObjectTrace, LoadOfAPartKeepsStoreAndSize) {
    const unsigned char data[] = {7, 8};
    buffer->load(data, 5, 2);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glBufferSubData(GL_ARRAY_BUFFER, 5, 2, data)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(buffer->numBytes(), 16u);
    EXPECT_EQ(gl.bufferBytes(1)[6], 8);
}

TEST_F(BufferObjectTrace, LoadOfANullPartOnlyUnbinds) {
    buffer->load(nullptr, 5, 2);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    EXPECT_EQ(buffer->numBytes(), 16u);
}

TEST_F(BufferObjectTrace, MapMapsTheWholeStoreAndUnbinds) {
    EXPECT_NE(buffer->map(MapAccess::ReadOnly), nullptr);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glMapBufferRange(GL_ARRAY_BUFFER, 0, 16, GL_MAP_READ_BIT)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, MapGivesNullWhereGlRefuses) {
    gl.answer(glad_glMapBufferRange,
              [](GLenum, GLintptr, GLsizeiptr, GLbitfield) -> void* { return nullptr; });
    EXPECT_EQ(buffer->map(MapAccess::ReadWrite), nullptr);
    gl.forget();
    // The object does not know that GL refused.
    buffer->unmap(false);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)", "glUnmapBuffer(GL_ARRAY_BUFFER)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, MapWithAnUnknownAccessKeepsTheBitsOfBefore) {
    buffer->map(static_cast<MapAccess>(3));
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glMapBufferRange(GL_ARRAY_BUFFER, 0, 16, 0)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    buffer->unmap(false); // with no bits the buffer counts as unmapped
    EXPECT_GL_CALLS(gl);
    buffer->map(MapAccess::ReadOnly);
    gl.forget();
    buffer->map(static_cast<MapAccess>(77));
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glMapBufferRange(GL_ARRAY_BUFFER, 0, 16, GL_MAP_READ_BIT)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, FlushTakesOffsetAndLength) {
    buffer->map(MapAccess::WriteOnly);
    gl.forget();
    buffer->flush(4, 8);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glFlushMappedBufferRange(GL_ARRAY_BUFFER, 4, 8)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, FlushOfLengthZeroReachesToTheEndOfTheMapping) {
    buffer->map(MapAccess::WriteOnly);
    gl.forget();
    buffer->flush(6, 0);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glFlushMappedBufferRange(GL_ARRAY_BUFFER, 6, 10)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, FlushIsIssuedForAReadMapping) {
    buffer->map(MapAccess::ReadOnly);
    gl.forget();
    buffer->flush(0, 1);
    EXPECT_EQ(gl.countOf("glFlushMappedBufferRange"), 1u);
    gl.forget();
}

TEST_F(BufferObjectTrace, FlushOfAnUnmappedBufferIssuesNothing) {
    buffer->flush(0, 4);
    buffer->flush(0, 0);
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectTrace, UnmapTrueIssuesNoExplicitFlush) {
    for (const MapAccess access :
         {MapAccess::ReadOnly, MapAccess::WriteOnly, MapAccess::ReadWrite}) {
        buffer->map(access);
        gl.forget();
        buffer->unmap(true);
        EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)", "glUnmapBuffer(GL_ARRAY_BUFFER)",
                        "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    }
}

TEST_F(BufferObjectTrace, UnmapWouldFlushAMappingWithTheEnumeratorsOfGlMapBuffer) {
    constexpr unsigned int accesses[] = {GL_WRITE_ONLY, GL_READ_WRITE};
    for (const unsigned int access : accesses) {
        buffer->map(MapAccess::WriteOnly);
        gl.forget();
        buffer->mapAccess_ = access;
        buffer->unmap(true);
        EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                        "glFlushMappedBufferRange(GL_ARRAY_BUFFER, 0, 16)",
                        "glUnmapBuffer(GL_ARRAY_BUFFER)", "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    }
}

TEST_F(BufferObjectTrace, FlushAndUnmapIssuesNoExplicitFlush) {
    buffer->map(MapAccess::WriteOnly);
    gl.forget();
    buffer->flushAndUnmap();
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)", "glUnmapBuffer(GL_ARRAY_BUFFER)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, FlushAndUnmapOfARangeFlushesOnceThenUnmaps) {
    buffer->map(MapAccess::WriteOnly);
    gl.forget();
    buffer->flushAndUnmap(2, 3);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glFlushMappedBufferRange(GL_ARRAY_BUFFER, 2, 3)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 0)", "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glUnmapBuffer(GL_ARRAY_BUFFER)", "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, FlushAndUnmapOfARangeFlushesNoSecondTimeWhateverTheAccess) {
    buffer->map(MapAccess::WriteOnly);
    gl.forget();
    buffer->mapAccess_ = GL_WRITE_ONLY; // what unmap(true) would flush
    buffer->flushAndUnmap(2, 3);
    EXPECT_EQ(gl.countOf("glFlushMappedBufferRange"), 1u);
    gl.forget();
}

TEST_F(BufferObjectTrace, UnmapOfAnUnmappedBufferIssuesNothing) {
    buffer->unmap(true);
    buffer->unmap(false);
    buffer->flushAndUnmap();
    buffer->flushAndUnmap(0, 4);
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectTrace, UnmapEndsTheMapping) {
    buffer->map(MapAccess::ReadWrite);
    EXPECT_EQ(buffer->mapLength_, 16u);
    EXPECT_EQ(buffer->mapOffset_, 0u);
    buffer->unmap(false);
    EXPECT_EQ(buffer->mapAccess_, 0u);
    EXPECT_EQ(buffer->mapOffset_, 0u);
    EXPECT_EQ(buffer->mapLength_, 0u);
    gl.forget();
    buffer->unmap(false);
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectTrace, BindAndUnbindKeepTheFlag) {
    EXPECT_FALSE(buffer->isBound());
    buffer->bind();
    EXPECT_TRUE(buffer->isBound());
    buffer->unbind();
    EXPECT_FALSE(buffer->isBound());
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 1)", "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, EveryDataOperationEndsUnbound) {
    const unsigned char data[4] = {};
    const auto endsUnbound = [&](const char* name, auto operation) {
        buffer->bind();
        operation();
        EXPECT_FALSE(buffer->isBound()) << name;
        EXPECT_EQ(gl.takeCalls().back(), "glBindBuffer(GL_ARRAY_BUFFER, 0)") << name;
    };
    endsUnbound("load", [&] { buffer->load(data, 4); });
    endsUnbound("load part", [&] { buffer->load(data, 0, 4); });
    endsUnbound("load null part", [&] { buffer->load(nullptr, 0, 4); });
    endsUnbound("alloc", [&] { buffer->alloc(16); });
    endsUnbound("map", [&] { buffer->map(MapAccess::WriteOnly); });
    endsUnbound("flush", [&] { buffer->flush(0, 1); });
    endsUnbound("unmap", [&] { buffer->unmap(false); });
    gl.remove(glad_glMapBufferRange);
    endsUnbound("map without map_buffer_range", [&] { buffer->map(MapAccess::WriteOnly); });
}

TEST_F(BufferObjectTrace, DisposeTwiceDeletesOnce) {
    buffer->dispose();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {1})");
    EXPECT_EQ(buffer->id(), 0u);
    buffer->dispose();
    buffer.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectTrace, DisposeDoesNotUnmap) {
    buffer->map(MapAccess::WriteOnly);
    gl.forget();
    buffer->dispose();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {1})");
}

TEST_F(BufferObjectTrace, AfterDisposeOperationsActOnNameZero) {
    buffer->dispose();
    gl.forget();
    buffer->bind();
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 0)");
}

TEST_F(BufferObjectTrace, CopySharesTheNameAndDeletesItAgain) {
    {
        const Bytes copy = *buffer;
        EXPECT_EQ(copy.id(), buffer->id());
        EXPECT_EQ(copy.count(), buffer->count());
        EXPECT_GL_CALLS(gl);
    }
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {1})");
}

TEST_F(BufferObjectTrace, NameThatGlRefusedToMakeIsNeverDeleted) {
    gl.answer(glad_glGenBuffers, [](GLsizei, GLuint* names) { *names = 0; });
    auto other = Bytes::make(4, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(other->id(), 0u);
    gl.forget();
    other->dispose();
    other.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectTrace, FlushAndUnmapOfAnUnmappedBufferLeaveItBound) {
    buffer->bind();
    gl.forget();
    buffer->flush(0, 1);
    buffer->unmap(true);
    buffer->flushAndUnmap(0, 1);
    EXPECT_TRUE(buffer->isBound());
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectTrace, WhereItDoesNotExistDataOperationsOnlyUnbind) {
    FakeContext other;
    other.makeCurrent();
    {
        const auto context = vellis::Context::make(FakeGl::lookUp);
        ASSERT_TRUE(context != nullptr && context->use());
        other.forget();
        const unsigned char bytes[4] = {};
        const std::string unbound = "glBindBuffer(GL_ARRAY_BUFFER, 0)";
        buffer->alloc(4);
        EXPECT_GL_CALLS(other, unbound);
        buffer->load(bytes, 4);
        EXPECT_GL_CALLS(other, unbound);
        buffer->load(bytes, 0, 4);
        EXPECT_GL_CALLS(other, unbound);
        EXPECT_EQ(buffer->map(MapAccess::WriteOnly), nullptr);
        EXPECT_GL_CALLS(other, unbound);
    }
    gl.makeCurrent();
    vellis::Context::useProcess();
    other.ignoreTheRest();
    gl.forget();
}

TEST_F(BufferObjectTrace, WithoutMapBufferRangeMappingOnlyUnbinds) {
    gl.remove(glad_glMapBufferRange);
    gl.remove(glad_glFlushMappedBufferRange);
    EXPECT_EQ(buffer->map(MapAccess::ReadWrite), nullptr);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 0)");
    buffer->flush(0, 4);
    buffer->flushAndUnmap(0, 4);
    buffer->unmap(true);
    EXPECT_GL_CALLS(gl);
}

/// Every usage with every access, and one of each that is no enumerator.
struct HintRow {
    unsigned int usage;
    unsigned int access;
    const char* hint;
};

class UsageHintTrace : public testing::TestWithParam<HintRow> {};

TEST_P(UsageHintTrace, IsWhatTheStoreIsAllocatedWith) {
    FakeGl gl;
    const auto buffer = Bytes::make(1, static_cast<BufferUsage>(GetParam().usage),
                                    static_cast<BufferAccess>(GetParam().access));
    EXPECT_EQ(gl.takeCalls()[2],
              std::string("glBufferData(GL_ARRAY_BUFFER, 1, null, ") + GetParam().hint + ")");
    gl.ignoreTheRest();
}

INSTANTIATE_TEST_SUITE_P(
    Hints, UsageHintTrace,
    testing::Values(HintRow{0, 0, "GL_STREAM_DRAW"}, HintRow{0, 1, "GL_STREAM_READ"},
                    HintRow{0, 2, "GL_STREAM_COPY"}, HintRow{1, 0, "GL_STATIC_DRAW"},
                    HintRow{1, 1, "GL_STATIC_READ"}, HintRow{1, 2, "GL_STATIC_COPY"},
                    HintRow{2, 0, "GL_DYNAMIC_DRAW"}, HintRow{2, 1, "GL_DYNAMIC_READ"},
                    HintRow{2, 2, "GL_DYNAMIC_COPY"}, HintRow{3, 0, "0x0"}, HintRow{0, 3, "0x0"}));

/// Every access, and the bits of its mapping.
struct AccessRow {
    MapAccess access;
    const char* bits;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const AccessRow& row, std::ostream* out) {
    *out << row.bits;
}

class MapAccessTrace : public testing::TestWithParam<AccessRow> {};

TEST_P(MapAccessTrace, BecomesTheBitsOfTheMapping) {
    FakeGl gl;
    const auto buffer = Bytes::make(1, BufferUsage::Static, BufferAccess::Draw);
    gl.forget();
    buffer->map(GetParam().access);
    EXPECT_EQ(gl.takeCalls()[1],
              std::string("glMapBufferRange(GL_ARRAY_BUFFER, 0, 1, ") + GetParam().bits + ")");
    gl.ignoreTheRest();
}

INSTANTIATE_TEST_SUITE_P(
    Accesses, MapAccessTrace,
    testing::Values(AccessRow{MapAccess::ReadOnly, "GL_MAP_READ_BIT"},
                    AccessRow{MapAccess::WriteOnly, "GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT"},
                    AccessRow{MapAccess::ReadWrite,
                              "GL_MAP_READ_BIT | GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT"}));

} // namespace

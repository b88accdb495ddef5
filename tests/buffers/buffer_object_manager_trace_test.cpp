// needs: private access

#include <vellis/buffers/buffer_object_manager.hpp>

#include <memory>

#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/engine.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::BufferAccess;
using vellis::BufferObject;
using vellis::BufferObjectManager;
using vellis::BufferUsage;
using vellis::test::FakeGl;
using Bytes = vellis::VertexAttributeBuffer<unsigned char>;

class BufferObjectManagerTrace : public testing::Test {
protected:
    BufferObjectManagerTrace() : manager(BufferObjectManager::instance()), buffer(makeBuffer()) {}
    ~BufferObjectManagerTrace() override {
        BufferObjectManager::dispose();
        gl.ignoreTheRest();
    }

    std::shared_ptr<Bytes> makeBuffer() {
        auto made = Bytes::make(4, BufferUsage::Static, BufferAccess::Draw);
        gl.forget();
        return made;
    }

    FakeGl gl;
    BufferObjectManager& manager;
    std::shared_ptr<Bytes> buffer;
};

TEST_F(BufferObjectManagerTrace, AddReturnsTheAddressAndOwnsTheBuffer) {
    EXPECT_EQ(manager.add(buffer), buffer.get());
    EXPECT_EQ(manager.internal_get(buffer.get()), buffer);
    EXPECT_EQ(buffer.use_count(), 2);
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectManagerTrace, AddTwiceKeepsOneEntryAndReturnsTheSameKey) {
    BufferObject* const key = manager.add(buffer);
    EXPECT_EQ(manager.add(buffer), key);
    EXPECT_EQ(buffer.use_count(), 2);
    EXPECT_EQ(manager.buffers_.size(), 1u);
}

TEST_F(BufferObjectManagerTrace, AddOfNothingAddsNothing) {
    EXPECT_EQ(manager.add(nullptr), BufferObjectManager::invalidId());
    EXPECT_TRUE(manager.buffers_.empty());
}

TEST_F(BufferObjectManagerTrace, RemoveOfTheLastReferenceDeletesTheGlBuffer) {
    BufferObject* const key = manager.add(buffer);
    buffer.reset();
    EXPECT_GL_CALLS(gl);
    manager.remove(key);
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {1})");
    EXPECT_EQ(manager.internal_get(key), nullptr);
}

TEST_F(BufferObjectManagerTrace, RemoveOfAnUnknownKeyDoesNothing) {
    manager.add(buffer);
    const auto other = makeBuffer();
    manager.remove(other.get());
    manager.remove(nullptr);
    EXPECT_EQ(manager.buffers_.size(), 1u);
}

TEST_F(BufferObjectManagerTrace, LookupOfAnUnknownKeyGivesAnEmptyPointer) {
    EXPECT_EQ(manager.internal_get(buffer.get()), nullptr);
    EXPECT_EQ(manager.internal_get(nullptr), nullptr);
}

TEST_F(BufferObjectManagerTrace, LookupFindsEachOfSeveral) {
    const auto second = makeBuffer();
    const auto third = makeBuffer();
    manager.add(buffer);
    manager.add(third);
    EXPECT_EQ(manager.internal_get(buffer.get()), buffer);
    EXPECT_EQ(manager.internal_get(third.get()), third);
    EXPECT_EQ(manager.internal_get(second.get()), nullptr);
}

TEST_F(BufferObjectManagerTrace, EveryKeyButNullIsValid) {
    BufferObject* const key = buffer.get();
    EXPECT_TRUE(BufferObjectManager::isValid(key)); // never added
    manager.add(buffer);
    manager.remove(key);
    EXPECT_TRUE(BufferObjectManager::isValid(key)); // removed
    EXPECT_FALSE(BufferObjectManager::isValid(nullptr));
    EXPECT_FALSE(BufferObjectManager::isValid(BufferObjectManager::invalidId()));
}

TEST_F(BufferObjectManagerTrace, DisposeReleasesTheBuffersThatNobodyElseOwns) {
    const auto kept = makeBuffer();
    BufferObject* const key = manager.add(buffer);
    manager.add(kept);
    buffer.reset();
    BufferObjectManager::dispose();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {1})");
    EXPECT_EQ(manager.internal_get(key), nullptr);
    EXPECT_EQ(kept->id(), 2u);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST_F(BufferObjectManagerTrace, CanBeUsedAgainAfterDispose) {
    BufferObjectManager::dispose();
    EXPECT_EQ(manager.internal_get(manager.add(buffer)), buffer);
}

TEST_F(BufferObjectManagerTrace, EngineDisposeEmptiesTheRegistry) {
    manager.add(buffer);
    buffer.reset();
    vellis::engine::dispose();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {1})");
    EXPECT_TRUE(manager.buffers_.empty());
    vellis::engine::dispose();
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectManagerTrace, EngineDisposeBeforeAnythingExistsLeavesTheRegistryEmpty) {
    vellis::engine::dispose();
    EXPECT_TRUE(manager.buffers_.empty());
    EXPECT_GL_CALLS(gl);
}

TEST_F(BufferObjectManagerTrace, CopyOwnsTheSameBuffersAndItsEndEmptiesTheInstance) {
    manager.add(buffer);
    {
        BufferObjectManager copy = manager;
        EXPECT_EQ(copy.internal_get(buffer.get()), buffer);
        EXPECT_EQ(buffer.use_count(), 3);
    }
    EXPECT_TRUE(manager.buffers_.empty());
    EXPECT_EQ(buffer.use_count(), 1);
}

TEST_F(BufferObjectManagerTrace, AssignmentReplacesTheEntriesAndSelfAssignmentKeepsThem) {
    manager.add(buffer);
    BufferObjectManager copy = manager;
    const auto other = makeBuffer();
    copy.add(other);
    copy = manager;
    EXPECT_EQ(copy.internal_get(other.get()), nullptr);
    EXPECT_EQ(copy.internal_get(buffer.get()), buffer);
    BufferObjectManager& self = copy;
    copy = self;
    EXPECT_EQ(copy.internal_get(buffer.get()), buffer);
}

} // namespace

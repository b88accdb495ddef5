#include <vellis/state/snapshot.hpp>

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <vellis/buffers.hpp>
#include <vellis/context.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>
#include <vellis/state.hpp>
#include <vellis/texture.hpp>

#include <offscreen/entry_points.hpp>

#include "support/piece_changes.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using state::differences;
using state::Kept;
using state::Snapshot;
using test::change;
using test::isThere;
using test::PieceRow;
using test::pieceRows;
using test::SpareObjects;
using test::takeError;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<std::string> changes(const Snapshot& before, const Snapshot& after) {
    std::vector<std::string> all;
    for (const state::Difference& difference : differences(before, after)) {
        std::ostringstream stream;
        stream << difference;
        all.push_back(stream.str());
    }
    return all;
}

/// Whether a line is of a row's piece, with whatever number.
bool isOf(const std::string& line, const PieceRow& row) {
    const std::string name = row.per == "ClipDistance" ? "GL_CLIP_DISTANCE" : row.name;
    const std::string after =
        line.substr(0, name.size()) == name ? line.substr(name.size(), 1) : "";
    return after == (row.per == "Context" ? ":" : row.per == "ClipDistance" ? "1" : "[");
}

/// Changes a piece, finds it, puts it back.
void isFoundAndRestored(const PieceRow& row) {
    SCOPED_TRACE(row.name + " " + row.write);
    SpareObjects objects;
    const Snapshot before = Snapshot::take();
    ASSERT_EQ(takeError(), "") << "of the first snapshot";
    ASSERT_TRUE(change(row, objects));
    ASSERT_EQ(takeError(), "") << "of the change";
    const Snapshot after = Snapshot::take();
    const std::vector<std::string> found = changes(before, after);
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const std::string& line) {
        return isOf(line, row);
    })) << ::testing::PrintToString(found);
    EXPECT_NE(before, after);
    EXPECT_TRUE(before.restore());
    EXPECT_EQ(takeError(), "") << "of restoring";
    EXPECT_THAT(changes(before, Snapshot::take()), IsEmpty());
    EXPECT_EQ(before, Snapshot::take());
    // And the other way.
    EXPECT_TRUE(after.restore());
    EXPECT_EQ(takeError(), "") << "of changing back";
    EXPECT_THAT(changes(after, Snapshot::take()), IsEmpty());
    EXPECT_TRUE(before.restore());
}

/// All pieces that can change and that the context has.
void eachIsFoundAndRestored() {
    for (const PieceRow& row : pieceRows()) {
        if (row.write != "Never" && isThere(row))
            isFoundAndRestored(row);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

class SnapshotRender : public RenderTest {};

TEST_F(SnapshotRender, EveryPieceIsFoundAndRestored) {
    eachIsFoundAndRestored();
}

TEST_F(SnapshotRender, EveryPieceIsFoundAndRestoredWithAVertexArrayBound) {
    SKIP_WITHOUT(Extension::VertexArrays);
    GLuint array = 0;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    eachIsFoundAndRestored();
    glDeleteVertexArrays(1, &array);
}

TEST_F(SnapshotRender, HasAllRecordsAndTrackedStates) {
    std::set<std::string> names;
    for (const PieceRow& row : pieceRows())
        names.insert(row.name);
#define VELLIS_STATE(T, N, pname, queries, command) EXPECT_EQ(names.count(#pname), 1u) << #pname;
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
#define VELLIS_TRACKED_STATE(name, kind, number) EXPECT_EQ(names.count("GL_" #name), 1u) << #name;
#include "state/tracked_states.inc"
#undef VELLIS_TRACKED_STATE
}

TEST_F(SnapshotRender, AllPiecesTogetherAreRestored) {
    const Snapshot before = Snapshot::take();
    {
        SpareObjects objects;
        for (const PieceRow& row : pieceRows()) {
            // A framebuffer without attachments has no buffers to draw to, a vertex array object
            // has other attributes.
            if (row.write != "Never" && row.write != "VertexArray" && isThere(row))
                change(row, objects);
        }
        takeError();
        EXPECT_TRUE(before.restore());
        EXPECT_EQ(takeError(), "");
        EXPECT_THAT(changes(before, Snapshot::take()), IsEmpty());
    }
}

TEST_F(SnapshotRender, RangesAndAttributesAreRestoredAsTheyWere) {
    SKIP_IN_CORE("attributes without a vertex array object");
    if (GLAD_GL_VERSION_3_2 == 0)
        GTEST_SKIP() << "the context has no ranges of buffers";
    SpareObjects objects;
    glBindBufferRange(GL_UNIFORM_BUFFER, 2, objects.buffer, 512, 128);
    glBindBuffer(GL_ARRAY_BUFFER, objects.buffer);
    glVertexAttribIPointer(2, 3, GL_UNSIGNED_INT, 48, reinterpret_cast<void*>(16));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    const Snapshot before = Snapshot::take();
    glBindBufferBase(GL_UNIFORM_BUFFER, 2, 0);
    glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    EXPECT_TRUE(before.restore());
    GLint64 start = 0;
    GLint64 bytes = 0;
    glGetInteger64i_v(GL_UNIFORM_BUFFER_START, 2, &start);
    glGetInteger64i_v(GL_UNIFORM_BUFFER_SIZE, 2, &bytes);
    EXPECT_EQ(start, 512);
    EXPECT_EQ(bytes, 128);
    int values[5] = {};
    glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_SIZE, values);
    glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_TYPE, values + 1);
    glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_STRIDE, values + 2);
    glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_INTEGER, values + 3);
    glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, values + 4);
    EXPECT_THAT(values, ElementsAre(3, GL_UNSIGNED_INT, 48, 1, static_cast<int>(objects.buffer)));
    void* pointer = nullptr;
    glGetVertexAttribPointerv(2, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
    EXPECT_EQ(pointer, reinterpret_cast<void*>(16));
    EXPECT_EQ(test::stateOf(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_THAT(changes(before, Snapshot::take()), IsEmpty());
}

TEST_F(SnapshotRender, ErrorsOfBeforeStay) {
    glEnable(0xFFFF);
    const Snapshot before = Snapshot::take();
    before.restore();
    EXPECT_EQ(takeError(), "GL_INVALID_ENUM");
}

TEST_F(SnapshotRender, DifferencesArePrinted) {
    glActiveTexture(GL_TEXTURE0);
    const Snapshot before = Snapshot::take();
    glActiveTexture(GL_TEXTURE1);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 17);
    glDepthRange(0.25, 0.75);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    EXPECT_THAT(changes(before, Snapshot::take()),
                ElementsAre("GL_ACTIVE_TEXTURE: GL_TEXTURE0 -> GL_TEXTURE1",
                            "GL_UNPACK_ROW_LENGTH: 0 -> 17", "GL_BLEND: false -> true",
                            "GL_BLEND_SRC_RGB: GL_ONE -> GL_SRC_ALPHA",
                            "GL_BLEND_DST_RGB: GL_ZERO -> GL_ONE",
                            "GL_BLEND_SRC_ALPHA: GL_ONE -> GL_SRC_ALPHA",
                            "GL_BLEND_DST_ALPHA: GL_ZERO -> GL_ONE",
                            "GL_COLOR_WRITEMASK: true, true, true, true -> true, true, true, false",
                            "GL_DEPTH_RANGE: 0, 1 -> 0.25, 0.75"));
    before.restore();
}

TEST_F(SnapshotRender, DifferencesHaveTheLabelsOfObjects) {
    const auto texture = Texture2D<glm::vec<4, unsigned char>>::make(1, 1);
    const auto buffer =
        VertexAttributeBuffer<float>::make(1, BufferUsage::Static, BufferAccess::Draw);
    internal::label(texture, "noise");
    internal::label(buffer, "heights");
    const Snapshot before = Snapshot::take();
    texture->bind();
    buffer->bind();
    EXPECT_THAT(
        changes(before, Snapshot::take()),
        ElementsAre("GL_ARRAY_BUFFER_BINDING: 0 -> " + std::to_string(buffer->id()) + " 'heights'",
                    "GL_TEXTURE_BINDING_2D[0]: 0 -> " + std::to_string(texture->id()) +
                        " 'noise'"));
    EXPECT_TRUE(before.restore());
}

TEST_F(SnapshotRender, NamesThatAreGoneAreRestoredAsZero) {
    GLuint texture = 0;
    GLuint buffer = 0;
    glGenTextures(1, &texture);
    glGenBuffers(1, &buffer);
    glBindTexture(GL_TEXTURE_2D, texture);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    if (!isCore())
        glVertexAttribPointer(1, 4, GL_FLOAT, GL_FALSE, 0, reinterpret_cast<void*>(16));
    const Snapshot before = Snapshot::take();
    glDeleteTextures(1, &texture);
    glDeleteBuffers(1, &buffer);
    GLuint other = 0;
    glGenTextures(1, &other);
    while (other == texture) // names may come again
        glGenTextures(1, &other);
    glBindTexture(GL_TEXTURE_2D, other);
    EXPECT_TRUE(before.restore());
    EXPECT_EQ(test::stateOf(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_EQ(test::stateOf(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_EQ(takeError(), "");
    glDeleteTextures(1, &other);
}

TEST_F(SnapshotRender, WhatBelongsToObjectsThatAreGoneIsLeft) {
    SKIP_WITHOUT(Extension::Framebuffers);
    GLuint framebuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    const int drawBuffer = test::stateOf(GL_DRAW_BUFFER);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glDrawBuffer(GL_COLOR_ATTACHMENT0);
    const Snapshot before = Snapshot::take();
    glDeleteFramebuffers(1, &framebuffer);
    EXPECT_TRUE(before.restore());
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(test::stateOf(GL_DRAW_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(test::stateOf(GL_DRAW_BUFFER), drawBuffer);
}

TEST_F(SnapshotRender, IndexBufferOfAVertexArrayThatIsGoneIsLeft) {
    SKIP_WITHOUT(Extension::VertexArrays);
    GLuint array = 0;
    GLuint buffer = 0;
    glGenVertexArrays(1, &array);
    glGenBuffers(1, &buffer);
    glBindVertexArray(array);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    const Snapshot before = Snapshot::take();
    glDeleteVertexArrays(1, &array);
    EXPECT_TRUE(before.restore());
    EXPECT_EQ(test::stateOf(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(test::stateOf(GL_ELEMENT_ARRAY_BUFFER_BINDING), 0);
    glDeleteBuffers(1, &buffer);
}

TEST_F(SnapshotRender, EmptyOneRestoresNothing) {
    test::StderrCapture capture;
    EXPECT_TRUE(Snapshot().isEmpty());
    EXPECT_FALSE(Snapshot::take().isEmpty());
    EXPECT_FALSE(Snapshot().restore());
    EXPECT_EQ(capture.take(), "Corvane: an empty snapshot of GL state is not restored\n");
    EXPECT_THAT(differences(Snapshot(), Snapshot::take()), IsEmpty());
    EXPECT_THAT(differences(Snapshot::take(), Snapshot()), IsEmpty());
    EXPECT_EQ(Snapshot(), Snapshot());
}

TEST_F(SnapshotRender, AnotherContextIsLeftAsItIs) {
    const Snapshot ofProcess = Snapshot::take();
    const auto context = Context::make();
    if (context == nullptr)
        GTEST_SKIP() << "the platform has a lookup of its own";
    context->use();
    glLineWidth(0.5f);
    test::StderrCapture capture;
    EXPECT_FALSE(ofProcess.restore());
    EXPECT_EQ(capture.take(),
              "Corvane: a snapshot of GL state from another Context is not restored\n");
    float width = 0.f;
    glGetFloatv(GL_LINE_WIDTH, &width);
    EXPECT_EQ(width, 0.5f);
    const Snapshot ofContext = Snapshot::take();
    EXPECT_TRUE(ofContext.restore());
    EXPECT_NE(ofContext, ofProcess);
    glLineWidth(1.f);
    EXPECT_THAT(changes(ofProcess, ofContext), ElementsAre("GL_LINE_WIDTH: 1 -> 0.5"));
    context->dispose();
    EXPECT_FALSE(ofContext.restore());
    EXPECT_TRUE(ofProcess.restore());
}

// What programs around the library have left, and lost.

TEST_F(SnapshotRender, KeptKeepsTheHostsPixelBufferFromATexture) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, buffer);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 3);
    glActiveTexture(GL_TEXTURE1);
    const Snapshot before = Snapshot::take();
    {
        const Kept kept;
        state::reset();
        const auto texture = Texture2D<glm::u8vec4>::make(8, 8);
        texture->bind();
        int width = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
        EXPECT_EQ(width, 8);
        EXPECT_EQ(test::stateOf(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    }
    EXPECT_THAT(changes(before, Snapshot::take()), IsEmpty());
    glDeleteBuffers(1, &buffer);
}

TEST_F(SnapshotRender, KeptKeepsTheIndexBufferOfTheHostsVertexArray) {
    SKIP_WITHOUT(Extension::VertexArrays);
    GLuint array = 0;
    GLuint buffer = 0;
    glGenVertexArrays(1, &array);
    glGenBuffers(1, &buffer);
    glBindVertexArray(array);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    {
        const Kept kept(state::Group::Buffers);
        const auto indices =
            IndexBuffer<unsigned int>::make({0, 1, 2}, BufferUsage::Static, BufferAccess::Draw);
        glBindVertexArray(0);
    }
    EXPECT_EQ(test::stateOf(GL_VERTEX_ARRAY_BINDING), static_cast<int>(array));
    EXPECT_EQ(test::stateOf(GL_ELEMENT_ARRAY_BUFFER_BINDING), static_cast<int>(buffer));
    glDeleteVertexArrays(1, &array);
    glDeleteBuffers(1, &buffer);
}

TEST_F(SnapshotRender, KeptGroupsKeepTheirsAndNoOther) {
    SpareObjects objects;
    const Snapshot before = Snapshot::take();
    {
        using state::Group;
        const Kept kept(Group::Blending | Group::Buffers | Group::PixelStore | Group::Textures);
        glEnable(GL_BLEND);
        glBindBuffer(GL_ARRAY_BUFFER, objects.buffer);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glActiveTexture(GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_2D, objects.texture());
        glCullFace(GL_FRONT);
    }
    EXPECT_THAT(changes(before, Snapshot::take()),
                ElementsAre("GL_CULL_FACE_MODE: GL_BACK -> GL_FRONT"));
    glCullFace(GL_BACK);
    {
        Kept kept;
        glCullFace(GL_FRONT);
        kept.dismiss();
    }
    EXPECT_EQ(test::stateOf(GL_CULL_FACE_MODE), GL_FRONT);
    { const Kept none(static_cast<state::Group>(0)); }
    { const Kept strange(static_cast<state::Group>(~0u)); }
    EXPECT_EQ(takeError(), "");
}

TEST_F(SnapshotRender, ResetSetsWhatGlBeginsWith) {
    const Snapshot before = Snapshot::take();
    state::reset();
    EXPECT_EQ(takeError(), "");
    // A driver may begin with the bits alone that there are.
    for (const std::string& line : changes(before, Snapshot::take()))
        EXPECT_THAT(line, HasSubstr("_WRITEMASK: 0xff -> 0x"));
}

TEST_F(SnapshotRender, ResetUndoesWhatHostsLeave) {
    state::reset();
    const Snapshot before = Snapshot::take();
    SpareObjects objects;
    std::set<std::string> left;
    for (const PieceRow& row : pieceRows()) {
        if (row.write == "Never" || row.name == "GL_CLIP_ORIGIN" || !isThere(row))
            continue;
        change(row, objects);
        takeError();
        state::reset();
        EXPECT_EQ(takeError(), "") << row.name;
        const std::vector<std::string> found = changes(before, Snapshot::take());
        if (!found.empty())
            left.insert(row.name);
        EXPECT_TRUE(before.restore());
        EXPECT_EQ(found.empty(), row.isReset) << row.name << testing::PrintToString(found);
    }
    EXPECT_EQ(takeError(), "");
    EXPECT_FALSE(left.empty());
}

/// The same in a context of another kind.
class SnapshotCoreRender : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        offscreen::Settings settings;
        settings.width = settings.height = 64;
        settings.platform = offscreen::Platform::Egl; // which alone makes core contexts
        settings.coreVersion = GetParam();
        std::string error;
        context_ = offscreen::Context::open(settings, error);
        if (context_ == nullptr)
            GTEST_SKIP() << error;
        ASSERT_TRUE(offscreen::loadEntryPoints(*context_));
    }
    void TearDown() override {
        if (context_ != nullptr)
            engine::dispose();
    }

private:
    std::unique_ptr<offscreen::Context> context_;
};

TEST_P(SnapshotCoreRender, EveryPieceIsFoundAndRestored) {
    eachIsFoundAndRestored();
    GLuint array = 0;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    eachIsFoundAndRestored();
}

TEST_P(SnapshotCoreRender, ResetMakesNoError) {
    state::reset();
    EXPECT_EQ(takeError(), "");
}

INSTANTIATE_TEST_SUITE_P(Versions, SnapshotCoreRender, testing::Values(32, 33, 45));

} // namespace

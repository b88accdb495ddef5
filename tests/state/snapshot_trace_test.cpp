#include <vellis/state/snapshot.hpp>

#include <algorithm>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <vellis/context.hpp>
#include <vellis/gl.hpp>

#include "support/allocation_count.hpp"
#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"
#include "support/state_model.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using state::differences;
using state::Group;
using state::Kept;
using state::Snapshot;
using test::FakeGl;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Calls = std::vector<std::string>;

std::string query(const std::string& pname) {
    return "glGetIntegerv(" + pname + ", out)";
}

/// What the context has that the group needs, and its pieces.
const Calls blendingQueries = {
    query("GL_CONTEXT_PROFILE_MASK"), query("GL_MAX_DRAW_BUFFERS"),
    "glIsEnabled(GL_BLEND)",          query("GL_BLEND_SRC_RGB"),
    query("GL_BLEND_DST_RGB"),        query("GL_BLEND_SRC_ALPHA"),
    query("GL_BLEND_DST_ALPHA"),      query("GL_BLEND_EQUATION_RGB"),
    query("GL_BLEND_EQUATION_ALPHA"), "glGetFloatv(GL_BLEND_COLOR, out)",
};

Calls storeQueries() {
    Calls calls = {query("GL_CONTEXT_PROFILE_MASK"), query("GL_PIXEL_PACK_BUFFER_BINDING"),
                   query("GL_PIXEL_UNPACK_BUFFER_BINDING")};
    for (const char* direction : {"GL_UNPACK_", "GL_PACK_"}) {
        for (const char* parameter : {"SWAP_BYTES", "LSB_FIRST", "ROW_LENGTH", "IMAGE_HEIGHT",
                                      "SKIP_ROWS", "SKIP_PIXELS", "SKIP_IMAGES", "ALIGNMENT"})
            calls.push_back(query(direction + std::string(parameter)));
    }
    return calls;
}

/// A call at a place of a list.
Calls with(Calls calls, std::size_t place, const char* call) {
    calls.insert(calls.begin() + static_cast<std::ptrdiff_t>(place), call);
    return calls;
}

class SnapshotTrace : public testing::Test {
protected:
    SnapshotTrace() { modelState(gl); }
    FakeGl gl;
};

TEST_F(SnapshotTrace, KeptBlendingAsksTwiceAndWritesNothingThatIsEqual) {
    { const Kept kept(Group::Blending); }
    EXPECT_GL_CALLS(gl, blendingQueries, blendingQueries);
}

TEST_F(SnapshotTrace, KeptBlendingWritesWhatDiffers) {
    {
        const Kept kept(Group::Blending);
        gl.setState(GL_BLEND, {1});
        gl.setState(GL_BLEND_DST_ALPHA, {GL_ONE});
        gl.setState(GL_BLEND_EQUATION_RGB, {GL_MIN});
    }
    Calls restored = with(blendingQueries, 9, "glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD)");
    restored = with(restored, 7, "glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_ONE, GL_ZERO)");
    restored = with(restored, 3, "glDisable(GL_BLEND)");
    EXPECT_GL_CALLS(gl, blendingQueries, restored);
}

TEST_F(SnapshotTrace, KeptThatIsDismissedWritesNothing) {
    for (const Group group : {Group::Blending, Group::Blending | Group::Buffers}) {
        Kept kept(group);
        glEnable(GL_BLEND);
        gl.forget();
        kept.dismiss();
    }
    EXPECT_GL_CALLS(gl);
}

TEST_F(SnapshotTrace, KeptPixelStoreWritesOneParameter) {
    gl.setState(GL_UNPACK_ROW_LENGTH, {7});
    {
        const Kept kept(Group::PixelStore);
        gl.setState(GL_UNPACK_ROW_LENGTH, {0});
    }
    EXPECT_GL_CALLS(gl, storeQueries(),
                    with(storeQueries(), 6, "glPixelStorei(GL_UNPACK_ROW_LENGTH, 7)"));
}

TEST_F(SnapshotTrace, BlendingOfDrawBuffersIsWrittenAtOnceWhereItIsEqual) {
    gl.setState(GL_MAX_DRAW_BUFFERS, {2});
    bool second = true;
    const auto isEnabled = [&](GLenum, GLuint i) { return i == 0 || second; };
    gl.answer(glad_glIsEnabledi, isEnabled);
    {
        const Kept kept(Group::Blending);
        second = false;
    }
    EXPECT_EQ(gl.countOf("glEnable"), 1u);
    second = true;
    {
        const Kept kept(Group::Blending);
        gl.answer(glad_glIsEnabledi, [](GLenum, GLuint) { return false; });
    }
    EXPECT_EQ(gl.countOf("glEnable"), 2u);
    EXPECT_EQ(gl.countOf("glEnablei"), 0u);
    gl.answer(glad_glIsEnabledi, [](GLenum, GLuint i) { return i == 1; });
    {
        const Kept kept(Group::Blending);
        gl.answer(glad_glIsEnabledi, [](GLenum, GLuint) { return true; });
    }
    EXPECT_EQ(gl.countOf("glEnablei"), 1u);
    EXPECT_EQ(gl.countOf("glDisablei"), 1u);
    gl.forget();
}

TEST_F(SnapshotTrace, VertexArrayIsBoundBeforeItsIndexBuffer) {
    GLuint array = 0;
    GLuint buffers[2] = {};
    glGenVertexArrays(1, &array);
    glGenBuffers(2, buffers);
    glBindVertexArray(array);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[0]);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[1]);
    gl.forget();
    {
        const Kept kept(Group::Buffers);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        glBindVertexArray(0);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        gl.forget();
    }
    Calls writes;
    for (const std::string& call : gl.takeCalls()) {
        if (call.rfind("glBind", 0) == 0)
            writes.push_back(call);
    }
    EXPECT_THAT(writes,
                ElementsAre("glBindVertexArray(1)", "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 2)",
                            "glBindBuffer(GL_ARRAY_BUFFER, 3)"));
    gl.ignoreTheRest();
}

TEST_F(SnapshotTrace, UnitsAreLeftAndTheActiveOneIsRestoredLast) {
    gl.setState(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, {3});
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glActiveTexture(GL_TEXTURE2);
    glBindTexture(GL_TEXTURE_2D, texture);
    gl.forget();
    {
        const Kept kept(Group::Textures);
        glBindTexture(GL_TEXTURE_2D, 0);
        glActiveTexture(GL_TEXTURE1);
        gl.forget();
    }
    Calls writes;
    for (const std::string& call : gl.takeCalls()) {
        if (call.rfind("glGet", 0) != 0)
            writes.push_back(call);
    }
    EXPECT_THAT(writes,
                ElementsAre("glActiveTexture(GL_TEXTURE0)", "glActiveTexture(GL_TEXTURE1)",
                            "glActiveTexture(GL_TEXTURE2)", "glIsTexture(1)",
                            "glBindTexture(GL_TEXTURE_2D, 1)", "glActiveTexture(GL_TEXTURE1)",
                            "glActiveTexture(GL_TEXTURE2)"));
    gl.ignoreTheRest();
}

TEST_F(SnapshotTrace, NothingIsAskedThatTheContextHasNot) {
    for (int* flag : {&GLAD_GL_VERSION_3_0, &GLAD_GL_VERSION_3_1, &GLAD_GL_VERSION_3_2})
        *flag = 0;
    FakeGl::remove(glad_glBindVertexArray);
    FakeGl::remove(glad_glBindFramebuffer);
    FakeGl::remove(glad_glBindSampler);
    FakeGl::remove(glad_glBindProgramPipeline);
    FakeGl::remove(glad_glClipControl);
    FakeGl::remove(glad_glVertexAttribDivisorARB);
    gl.setState(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, {1});
    gl.setState(GL_MAX_VERTEX_ATTRIBS, {2});
    EXPECT_TRUE(Snapshot::take().restore());
    for (const std::string& call : gl.takeCalls()) {
        for (const char* unknown :
             {"PROFILE", "UNIFORM", "FEEDBACK", "COPY", "2D_ARRAY", "RECTANGLE",
              "MULTISAMPLE_ARRAY", "SAMPLER", "CLIP_ORIGIN", "DIVISOR", "FRAMEBUFFER",
              "RENDERBUFFER", "VERTEX_ARRAY_BINDING", "PIPELINE", "RESTART", "PROVOKING",
              "INTEGER,", "SRGB"}) {
            EXPECT_EQ(call.find(unknown), std::string::npos) << call;
        }
    }
    EXPECT_TRUE(Snapshot::take().restore());
    gl.forget();
}

TEST_F(SnapshotTrace, LimitsAreAskedForTheGroupsThatNeedThem) {
    GLVersion = {4, 3};
    const Calls ofBuffers = {query("GL_MAX_UNIFORM_BUFFER_BINDINGS"),
                             query("GL_MAX_TRANSFORM_FEEDBACK_SEPARATE_ATTRIBS"),
                             query("0x90dd"),  // GL_MAX_SHADER_STORAGE_BUFFER_BINDINGS
                             query("0x92dc")}; // GL_MAX_ATOMIC_COUNTER_BUFFER_BINDINGS
    const Calls ofTextures = {query("GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS")};
    struct {
        Group group;
        Calls limits;
    } const rows[] = {
        {Group::Buffers, ofBuffers}, {Group::Textures, ofTextures}, {Group::PixelStore, {}}};
    for (const auto& row : rows) {
        gl.forget();
        const Kept kept(row.group);
        Calls limits;
        for (const std::string& call : gl.takeCalls()) {
            if (std::count(ofBuffers.begin(), ofBuffers.end(), call) != 0 || call == ofTextures[0])
                limits.push_back(call);
        }
        EXPECT_EQ(limits, row.limits);
    }
    gl.forget();
}

TEST_F(SnapshotTrace, RestoresNothingWhereTheContextHasLess) {
    const Snapshot before = Snapshot::take();
    const auto bindSampler = glad_glBindSampler;
    FakeGl::remove(glad_glBindSampler);
    glEnable(GL_BLEND);
    gl.forget();
    EXPECT_EQ(test::stderrOf([&] { EXPECT_FALSE(before.restore()); }),
              "Corvane: a snapshot of GL state from another Context is not restored\n");
    for (const std::string& call : gl.takeCalls())
        EXPECT_EQ(call.rfind("glGet", 0), 0u) << call;
    glad_glBindSampler = bindSampler;
    EXPECT_TRUE(before.restore());
    EXPECT_EQ(gl.countOf("glDisable"), 1u);
    gl.forget();
}

TEST_F(SnapshotTrace, WhatGlRefusesToTellIsZeroAndWrittenOnlyIfItDiffers) {
    gl.refuse(GL_UNPACK_ROW_LENGTH);
    { const Kept kept(Group::PixelStore); }
    EXPECT_EQ(gl.countOf("glPixelStorei"), 0u);
    gl.forget();
}

TEST_F(SnapshotTrace, FewGroupsAllocateNothing) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    gl.setRecording(false);
    const std::size_t before = test::allocationCount();
    { const Kept kept(Group::Blending | Group::PixelStore); }
    EXPECT_EQ(test::allocationCount(), before);
    const Snapshot taken = Snapshot::take();
    EXPECT_EQ(test::allocationCount(), before + 1);
    taken.restore();
    EXPECT_EQ(test::allocationCount(), before + 1);
}

TEST_F(SnapshotTrace, WithoutEntryPointsThereIsNothingToTake) {
    const auto getIntegerv = glad_glGetIntegerv;
    FakeGl::remove(glad_glGetIntegerv);
    EXPECT_TRUE(Snapshot::take().isEmpty());
    { const Kept kept; }
    state::reset();
    EXPECT_GL_CALLS(gl);
    glad_glGetIntegerv = getIntegerv;
}

TEST_F(SnapshotTrace, DifferenceIsWrittenAsALine) {
    std::ostringstream stream;
    stream << state::Difference{"GL_ACTIVE_TEXTURE", "GL_TEXTURE0", "GL_TEXTURE1"};
    EXPECT_EQ(stream.str(), "GL_ACTIVE_TEXTURE: GL_TEXTURE0 -> GL_TEXTURE1");
}

TEST_F(SnapshotTrace, EachLogicalOperationHasItsName) {
    const char* const names[] = {"CLEAR",         "AND",         "AND_REVERSE", "COPY",
                                 "AND_INVERTED",  "NOOP",        "XOR",         "OR",
                                 "NOR",           "EQUIV",       "INVERT",      "OR_REVERSE",
                                 "COPY_INVERTED", "OR_INVERTED", "NAND",        "SET"};
    gl.setState(GL_LOGIC_OP_MODE, {0});
    const Snapshot before = Snapshot::take();
    for (int i = 0; i < 16; ++i) {
        gl.setState(GL_LOGIC_OP_MODE, {GL_CLEAR + i});
        const auto found = differences(before, Snapshot::take());
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].after, "GL_" + std::string(names[i]));
    }
    gl.forget();
}

TEST_F(SnapshotTrace, CopyOfADifferenceKeepsTheText) {
    const Snapshot before = Snapshot::take();
    gl.setState(GL_LINE_WIDTH, {3});
    state::Difference copy;
    EXPECT_EQ(copy.name, "");
    {
        const auto list = differences(before, Snapshot::take());
        ASSERT_EQ(list.size(), 1u);
        copy = list[0];
    }
    EXPECT_EQ(copy.name, "GL_LINE_WIDTH");
    EXPECT_EQ(copy.after, "3");
    gl.forget();
}

TEST_F(SnapshotTrace, OnlyWhatBothHaveIsCompared) {
    gl.setState(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, {2});
    const Snapshot two = Snapshot::take();
    gl.setState(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, {1});
    FakeGl::remove(glad_glClipControl);
    gl.setState(GL_LINE_WIDTH, {3});
    const Snapshot one = Snapshot::take();
    ASSERT_EQ(differences(two, one).size(), 1u);
    ASSERT_EQ(differences(one, two).size(), 1u);
    EXPECT_EQ(differences(two, one)[0].name, "GL_LINE_WIDTH");
    EXPECT_EQ(differences(one, two)[0].before, "3");
    gl.forget();
}

TEST_F(SnapshotTrace, ResetSetsThese) {
    gl.setState(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, {2});
    state::reset();
    // clang-format off
    EXPECT_GL_CALLS(gl,
        "glGetIntegerv(GL_CONTEXT_PROFILE_MASK, out)",
        "glGetIntegerv(GL_VERTEX_ARRAY_BINDING, out)",
        "glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, out)",
        "glGetIntegerv(GL_MAX_TEXTURE_COORDS, out)",
        "glGetIntegerv(GL_MAX_UNIFORM_BUFFER_BINDINGS, out)",
        "glGetIntegerv(GL_MAX_TRANSFORM_FEEDBACK_SEPARATE_ATTRIBS, out)",
        "glGetIntegerv(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, out)",
        "glGetIntegerv(GL_MAX_TEXTURE_UNITS, out)",
        "glGetIntegerv(GL_MAX_CLIP_PLANES, out)",
        "glGetIntegerv(GL_MAX_DRAW_BUFFERS, out)",
        "glBindVertexArray(0)",
        "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)",
        "glBindBuffer(GL_ARRAY_BUFFER, 0)",
        "glBindBuffer(GL_PIXEL_PACK_BUFFER, 0)",
        "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)",
        "glBindSampler(0, 0)",
        "glBindSampler(1, 0)",
        "glActiveTexture(GL_TEXTURE0)",
        "glUseProgram(0)",
        "glBindProgramPipeline(0)",
        "glPixelStorei(GL_UNPACK_SWAP_BYTES, GL_FALSE)",
        "glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE)",
        "glPixelStorei(GL_UNPACK_ROW_LENGTH, 0)",
        "glPixelStorei(GL_UNPACK_IMAGE_HEIGHT, 0)",
        "glPixelStorei(GL_UNPACK_SKIP_ROWS, 0)",
        "glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0)",
        "glPixelStorei(GL_UNPACK_SKIP_IMAGES, 0)",
        "glPixelStorei(GL_UNPACK_ALIGNMENT, 4)",
        "glPixelStorei(GL_PACK_SWAP_BYTES, GL_FALSE)",
        "glPixelStorei(GL_PACK_LSB_FIRST, GL_FALSE)",
        "glPixelStorei(GL_PACK_ROW_LENGTH, 0)",
        "glPixelStorei(GL_PACK_IMAGE_HEIGHT, 0)",
        "glPixelStorei(GL_PACK_SKIP_ROWS, 0)",
        "glPixelStorei(GL_PACK_SKIP_PIXELS, 0)",
        "glPixelStorei(GL_PACK_SKIP_IMAGES, 0)",
        "glPixelStorei(GL_PACK_ALIGNMENT, 4)",
        "glPixelTransferf(GL_MAP_COLOR, GL_FALSE)",
        "glPixelTransferf(GL_MAP_STENCIL, GL_FALSE)",
        "glPixelTransferf(GL_INDEX_SHIFT, 0)",
        "glPixelTransferf(GL_INDEX_OFFSET, 0)",
        "glPixelTransferf(GL_RED_SCALE, 1)",
        "glPixelTransferf(GL_RED_BIAS, 0)",
        "glPixelTransferf(GL_GREEN_SCALE, 1)",
        "glPixelTransferf(GL_GREEN_BIAS, 0)",
        "glPixelTransferf(GL_BLUE_SCALE, 1)",
        "glPixelTransferf(GL_BLUE_BIAS, 0)",
        "glPixelTransferf(GL_ALPHA_SCALE, 1)",
        "glPixelTransferf(GL_ALPHA_BIAS, 0)",
        "glPixelTransferf(GL_DEPTH_SCALE, 1)",
        "glPixelTransferf(GL_DEPTH_BIAS, 0)",
        "glDisable(GL_BLEND)",
        "glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE)",
        "glDepthMask(GL_TRUE)",
        "glStencilMaskSeparate(GL_FRONT, 4294967295)",
        "glStencilMaskSeparate(GL_BACK, 4294967295)",
        "glDisable(GL_COLOR_LOGIC_OP)",
        "glDisable(GL_FRAMEBUFFER_SRGB)",
        "glDisable(GL_DEPTH_TEST)",
        "glDisable(GL_DEPTH_CLAMP)",
        "glDisable(GL_STENCIL_TEST)",
        "glDisable(GL_SCISSOR_TEST)",
        "glDisable(GL_ALPHA_TEST)",
        "glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE)",
        "glDisable(GL_RASTERIZER_DISCARD)",
        "glDisable(GL_PRIMITIVE_RESTART)",
        "glDisable(GL_CULL_FACE)",
        "glFrontFace(GL_CCW)",
        "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
        "glDisable(GL_POLYGON_SMOOTH)",
        "glDisable(GL_POLYGON_OFFSET_FILL)",
        "glDisable(GL_POLYGON_OFFSET_LINE)",
        "glDisable(GL_POLYGON_OFFSET_POINT)",
        "glDisable(GL_POLYGON_STIPPLE)",
        "glDisable(GL_LINE_SMOOTH)",
        "glLineWidth(1)",
        "glDisable(GL_LINE_STIPPLE)",
        "glPointSize(1)",
        "glDisable(GL_VERTEX_PROGRAM_POINT_SIZE)",
        "glDisable(GL_POINT_SPRITE)",
        "glEnable(GL_MULTISAMPLE)",
        "glDisable(GL_SAMPLE_ALPHA_TO_COVERAGE)",
        "glDisable(GL_SAMPLE_ALPHA_TO_ONE)",
        "glDisable(GL_SAMPLE_COVERAGE)",
        "glDisable(GL_SAMPLE_MASK)");
    // clang-format on
}

TEST(SnapshotContextTrace, ThreadWhoseContextIsElsewhereHasNothingToTake) {
    test::FakeContext gl;
    gl.makeCurrent();
    const auto context = Context::make(test::FakeGl::lookUp);
    ASSERT_NE(context, nullptr);
    const Snapshot before = Snapshot::take();
    EXPECT_FALSE(before.isEmpty());
    gl.forget();
    test::FakeContext::releaseCurrent();
    std::thread([&] {
        gl.makeCurrent();
        context->use();
        test::FakeContext::releaseCurrent();
    }).join();
    EXPECT_TRUE(Snapshot::take().isEmpty());
    EXPECT_EQ(test::stderrOf([&] { EXPECT_FALSE(before.restore()); }),
              "Corvane: a snapshot of GL state from another Context is not restored\n");
    gl.makeCurrent();
    context->use();
    EXPECT_TRUE(before.restore());
    context->dispose();
    gl.ignoreTheRest();
}

} // namespace

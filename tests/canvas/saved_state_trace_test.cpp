/// The GL state that a batch changes and puts back.

#include <array>

#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>

#include "canvas/canvas_fixture.hpp"

namespace {

using namespace vellis;
using vellis::test::Lines;
using vellis::test::only;

/// A piece of state with a value that a caller may have.
struct State {
    const char* name;
    GLenum pname;
    std::vector<double> value;
};

/// For messages of tests.
std::ostream& operator<<(std::ostream& stream, const State& state) {
    return stream << state.name;
}

const State states[] = {
    {"Blend", GL_BLEND, {1}},
    {"BlendSourceColors", GL_BLEND_SRC_RGB, {GL_DST_COLOR}},
    {"BlendDestinationColors", GL_BLEND_DST_RGB, {GL_SRC_COLOR}},
    {"BlendSourceAlpha", GL_BLEND_SRC_ALPHA, {GL_DST_ALPHA}},
    {"BlendDestinationAlpha", GL_BLEND_DST_ALPHA, {GL_ONE}},
    {"BlendEquationColors", GL_BLEND_EQUATION_RGB, {GL_MIN}},
    {"BlendEquationAlpha", GL_BLEND_EQUATION_ALPHA, {GL_FUNC_SUBTRACT}},
    {"CullFace", GL_CULL_FACE, {1}},
    {"LogicOperation", GL_COLOR_LOGIC_OP, {1}},
    {"AlphaToCoverage", GL_SAMPLE_ALPHA_TO_COVERAGE, {1}},
    {"PolygonSmooth", GL_POLYGON_SMOOTH, {1}},
    {"LineSmooth", GL_LINE_SMOOTH, {1}},
    {"AlphaTest", GL_ALPHA_TEST, {1}},
    {"Multisample", GL_MULTISAMPLE, {1}},
    {"PolygonOffset", GL_POLYGON_OFFSET_FILL, {1}},
    {"PolygonModes", GL_POLYGON_MODE, {GL_LINE, GL_LINE}},
    {"PolygonModeOfTheFront", GL_POLYGON_MODE, {GL_POINT, GL_FILL}},
    {"PolygonModeOfTheBack", GL_POLYGON_MODE, {GL_FILL, GL_LINE}},
    {"LineWidth", GL_LINE_WIDTH, {4}},
    {"Viewport", GL_VIEWPORT, {3, 4, 150, 70}},
    {"ScissorTest", GL_SCISSOR_TEST, {1}},
    {"ScissorBox", GL_SCISSOR_BOX, {10, 20, 100, 60}},
    {"ClearColor", GL_COLOR_CLEAR_VALUE, {0.25, 0.5, 0.75, 1}},
    {"ColorMask", GL_COLOR_WRITEMASK, {1, 0, 1, 0}},
    {"DepthMask", GL_DEPTH_WRITEMASK, {0}},
    {"DepthTest", GL_DEPTH_TEST, {1}},
};

/// The names of what is bound, of objects that nobody has made.
constexpr GLuint program = 901;
constexpr GLuint vertexArray = 902;
constexpr GLuint arrayBuffer = 903;
constexpr GLuint drawFramebuffer = 904;
constexpr GLuint readFramebuffer = 905;
constexpr GLuint unpackBuffer = 906;
constexpr GLuint packBuffer = 907;
constexpr GLuint texture = 908;
constexpr GLuint lastTexture = 909;

void bindUnusualObjects() {
    glUseProgram(program);
    glBindVertexArray(vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, arrayBuffer);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, unpackBuffer);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, packBuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, drawFramebuffer);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, readFramebuffer);
    glActiveTexture(GL_TEXTURE15);
    glBindTexture(GL_TEXTURE_2D, lastTexture);
    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, texture);
}

class SavedStateTrace : public test::CanvasTest, public testing::WithParamInterface<State> {
protected:
    SavedStateTrace() {
        gl.setState(GL_SAMPLE_BUFFERS, {1});
        buffer = VertexAttributeBuffer<glm::vec2>::make(corner.data(), 3, BufferUsage::Static,
                                                        BufferAccess::Draw);
    }

    void TearDown() override {
        buffer.reset();
        CanvasTest::TearDown();
    }

    /// One of all kinds: half-transparent strokes, pictures and buffers among them.
    void drawAllKinds() {
        canvas->beginPicture(glm::mat4(1.f));
        canvas->drawLineStrip({transparent, 4.f}, corner);
        canvas->drawTriangles(white, corner);
        const auto picture = canvas->endPicture();
        canvas->begin(glm::mat4(1.f));
        canvas->drawTriangles(white, corner);
        canvas->drawLineStrip({transparent, 4.f}, corner);
        canvas->drawLineLoop({white, 4.f}, corner3D);
        canvas->drawLines(Stroke::aliased(white), corner);
        canvas->drawPoints(white, 4.f, corner);
        canvas->drawPicture(picture);
        canvas->drawLineLoop({transparent, 4.f}, 0, 3, buffer);
        canvas->drawPoints(white, 4.f, 0, 3, buffer);
        canvas->drawTriangles(white, 0, 3, buffer);
        canvas->end();
    }

    static std::vector<double> valueOf(const State& state) {
        std::vector<double> value(state.value.size());
        glGetDoublev(state.pname, value.data());
        return value;
    }

    static GLuint nameOf(GLenum binding) {
        GLint name = 0;
        glGetIntegerv(binding, &name);
        return static_cast<GLuint>(name);
    }

    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> buffer;
};

TEST_P(SavedStateTrace, StateIsAsItWasAfterFirstAndLaterBatches) {
    const State& state = GetParam();
    std::vector<std::vector<double>> others;
    for (const State& other : states)
        others.push_back(valueOf(other));
    for (int i = 0; i < 2; ++i) {
        gl.setState(state.pname, state.value);
        drawAllKinds();
        EXPECT_GT(gl.countOf("glDrawElements"), 0u);
        EXPECT_EQ(valueOf(state), state.value);
        gl.forget();
    }
    for (std::size_t i = 0; i < others.size(); ++i) {
        if (states[i].pname != state.pname) {
            EXPECT_EQ(valueOf(states[i]), others[i]) << states[i].name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, SavedStateTrace, testing::ValuesIn(states),
                         [](const auto& row) { return row.param.name; });

TEST_F(SavedStateTrace, WhatDisturbsIsOffWhileABatchDraws) {
    const auto valueOfName = [](GLenum name) { return valueOf({"", name, {0}})[0]; };
    const GLenum switches[] = {GL_CULL_FACE,      GL_COLOR_LOGIC_OP, GL_SAMPLE_ALPHA_TO_COVERAGE,
                               GL_POLYGON_SMOOTH, GL_LINE_SMOOTH,    GL_ALPHA_TEST};
    for (const GLenum name : switches)
        gl.setState(name, {1});
    gl.setState(GL_POLYGON_MODE, {GL_FILL, GL_LINE});
    gl.setState(GL_LINE_WIDTH, {4});
    int numDraws = 0;
    gl.answer(glad_glDrawArrays, [&](GLenum, GLint, GLsizei) {
        ++numDraws;
        for (const GLenum name : switches)
            EXPECT_EQ(valueOfName(name), 0) << name;
        EXPECT_EQ(valueOf({"", GL_POLYGON_MODE, {0, 0}}), std::vector<double>(2, GL_FILL));
        EXPECT_EQ(valueOfName(GL_LINE_WIDTH), 1);
        EXPECT_EQ(valueOfName(GL_BLEND_SRC_RGB), GL_SRC_ALPHA);
        EXPECT_EQ(valueOfName(GL_BLEND_EQUATION_RGB), GL_FUNC_ADD);
    });
    drawAllKinds();
    EXPECT_GT(numDraws, 3);
    gl.forget();
}

TEST_F(SavedStateTrace, AreasOfOneOpaqueColorAreNotBlended) {
    const std::vector<glm::vec4> colors = {white};
    for (const int isOn : {0, 1}) {
        gl.setState(GL_BLEND, {isOn});
        const Lines calls = callsOf([&] {
            canvas->drawTriangles(white, corner);
            canvas->drawTriangles(transparent, corner3D);
            canvas->drawLines(Stroke::aliased(white), corner);
            canvas->drawTriangles(colors, corner);
            canvas->drawPoints(white, 3.f, corner);
        });
        Lines expected = {"glDisable(GL_BLEND)",  test::trianglesDrawn(0, 3),
                          "glEnable(GL_BLEND)",   test::trianglesDrawn(0, 3),
                          "glDisable(GL_BLEND)",  test::linesDrawn(3, 2),
                          "glEnable(GL_BLEND)",   test::trianglesDrawn(5, 3),
                          test::discsDrawn(0, 3), "glDisable(GL_BLEND)"};
        expected.erase(isOn != 0 ? expected.end() - 1 : expected.begin());
        EXPECT_EQ(only(calls, {"glEnable(GL_BLEND)", "glDisable(GL_BLEND)", "glDraw"}), expected);
    }
    gl.setState(GL_BLEND, {0});
    EXPECT_EQ(only(callsOf([&] {
                       canvas->drawTriangles(white, corner);
                       canvas->drawTriangles(transparent, corner);
                   }),
                   {"glEnable(GL_BLEND)", "glDraw"}),
              Lines({"glEnable(GL_BLEND)", test::trianglesDrawn(0, 6)}));
}

TEST_F(SavedStateTrace, BindingsAreAsTheyWere) {
    for (int i = 0; i < 2; ++i) {
        bindUnusualObjects();
        drawAllKinds();
        EXPECT_EQ(nameOf(GL_CURRENT_PROGRAM), program);
        EXPECT_EQ(nameOf(GL_VERTEX_ARRAY_BINDING), vertexArray);
        EXPECT_EQ(nameOf(GL_ARRAY_BUFFER_BINDING), arrayBuffer);
        EXPECT_EQ(nameOf(GL_PIXEL_UNPACK_BUFFER_BINDING), unpackBuffer);
        EXPECT_EQ(nameOf(GL_PIXEL_PACK_BUFFER_BINDING), packBuffer);
        EXPECT_EQ(nameOf(GL_DRAW_FRAMEBUFFER_BINDING), drawFramebuffer);
        EXPECT_EQ(nameOf(GL_READ_FRAMEBUFFER_BINDING), readFramebuffer);
        EXPECT_EQ(nameOf(GL_ACTIVE_TEXTURE), GLuint(GL_TEXTURE3));
        EXPECT_EQ(nameOf(GL_TEXTURE_BINDING_2D), texture);
        glActiveTexture(GL_TEXTURE15);
        EXPECT_EQ(nameOf(GL_TEXTURE_BINDING_2D), lastTexture);
        gl.forget();
    }
}

TEST_F(SavedStateTrace, ProgramThatWasDeletedIsNotPutBack) {
    glUseProgram(program);
    gl.setState(GL_DELETE_STATUS, {1});
    EXPECT_EQ(callsOf([&] { canvas->drawTriangles(white, corner); }).back(), "glUseProgram(0)");
    glUseProgram(program);
    gl.setState(GL_DELETE_STATUS, {0});
    EXPECT_EQ(callsOf([&] { canvas->drawTriangles(white, corner); }).back(), "glUseProgram(901)");
}

TEST_F(SavedStateTrace, RestartIsOffWhileABatchDrawsWhereGlHasIt) {
    const auto draw = [&] { canvas->drawTriangles(white, corner); };
    gl.setState(GL_PRIMITIVE_RESTART, {1});
    EXPECT_EQ(only(callsOf(draw), {"glDisable(GL_PRIMITIVE", "glEnable(GL_PRIMITIVE"}), Lines());
    GLAD_GL_VERSION_3_0 = GLAD_GL_VERSION_3_1 = 1;
    canvas = Canvas::make();
    EXPECT_EQ(only(callsOf(draw), {"glDisable(GL_PRIMITIVE", "glEnable(GL_PRIMITIVE"}),
              Lines({"glDisable(GL_PRIMITIVE_RESTART)", "glEnable(GL_PRIMITIVE_RESTART)"}));
}

TEST_F(SavedStateTrace, WhatACoreProfileLacksIsNotAskedFor) {
    GLAD_GL_VERSION_3_0 = GLAD_GL_VERSION_3_1 = GLAD_GL_VERSION_3_2 = 1;
    gl.setState(GL_POLYGON_MODE, {GL_LINE});
    gl.setState(GL_CONTEXT_PROFILE_MASK, {GL_CONTEXT_CORE_PROFILE_BIT});
    const Lines calls = callsOf([&] { canvas->drawTriangles(white, corner); });
    EXPECT_EQ(only(calls, {"glIsEnabled(GL_ALPHA_TEST)"}), Lines());
    EXPECT_EQ(only(calls, {"glPolygonMode"}), Lines({"glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                                                     "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)"}));
    gl.setState(GL_CONTEXT_PROFILE_MASK, {GL_CONTEXT_COMPATIBILITY_PROFILE_BIT});
    canvas = Canvas::make();
    EXPECT_EQ(
        only(callsOf([&] { canvas->drawTriangles(white, corner); }), {"glIsEnabled(GL_ALPHA_TEST)"})
            .size(),
        1u);
}

TEST_F(SavedStateTrace, TrianglesAloneAreMultisampledAndOnlyWhatIsNotAntialiasedWritesDepth) {
    gl.setState(GL_MULTISAMPLE, {1});
    gl.setState(GL_DEPTH_TEST, {1});
    EXPECT_EQ(
        only(callsOf([&] {
                 canvas->drawTriangles(white, corner);
                 canvas->drawLineStrip({white, 3.f}, corner);
                 canvas->drawPoints(white, 3.f, corner);
                 canvas->drawLines(Stroke::aliased(white), corner);
                 canvas->drawTriangles(white, corner);
             }),
             {"glEnable(GL_MULTI", "glDisable(GL_MULTI", "glDepthMask", "glDraw"}),
        Lines({test::trianglesDrawn(0, 3), "glDisable(GL_MULTISAMPLE)", "glDepthMask(GL_FALSE)",
               test::quadsDrawn(0, 2), test::trianglesDrawn(0, 9), "glDepthMask(GL_TRUE)",
               test::linesDrawn(3, 2), "glEnable(GL_MULTISAMPLE)", test::trianglesDrawn(5, 3)}));
}

/// A vertex array of GL's own, without vertex array objects.
struct ClientArray {
    GLint size = 4;
    GLenum type = GL_FLOAT;
    GLboolean isNormalized = GL_FALSE;
    GLsizei stride = 0;
    const void* pointer = nullptr;
    GLint buffer = 0;
    bool isEnabled = false;

    bool operator==(const ClientArray& other) const {
        return size == other.size && type == other.type && isNormalized == other.isNormalized &&
               stride == other.stride && pointer == other.pointer && buffer == other.buffer &&
               isEnabled == other.isEnabled;
    }
};

class ClientArraysTrace : public SavedStateTrace {
protected:
    ClientArraysTrace() {
        test::FakeGl::remove(glad_glGenVertexArrays);
        test::FakeGl::remove(glad_glBindVertexArray);
        gl.answer(glad_glVertexAttribPointer,
                  [this](GLuint index, GLint size, GLenum type, GLboolean isNormalized,
                         GLsizei stride, const void* pointer) {
                      arrays[index] = {size,
                                       type,
                                       isNormalized,
                                       stride,
                                       pointer,
                                       static_cast<GLint>(nameOf(GL_ARRAY_BUFFER_BINDING)),
                                       arrays[index].isEnabled};
                  });
        gl.answer(glad_glEnableVertexAttribArray,
                  [this](GLuint index) { arrays[index].isEnabled = true; });
        gl.answer(glad_glDisableVertexAttribArray,
                  [this](GLuint index) { arrays[index].isEnabled = false; });
        gl.answer(glad_glGetVertexAttribiv, [this](GLuint index, GLenum pname, GLint* out) {
            const ClientArray& array = arrays[index];
            *out = pname == GL_VERTEX_ATTRIB_ARRAY_ENABLED      ? array.isEnabled
                   : pname == GL_VERTEX_ATTRIB_ARRAY_SIZE       ? array.size
                   : pname == GL_VERTEX_ATTRIB_ARRAY_TYPE       ? static_cast<GLint>(array.type)
                   : pname == GL_VERTEX_ATTRIB_ARRAY_NORMALIZED ? array.isNormalized
                   : pname == GL_VERTEX_ATTRIB_ARRAY_STRIDE     ? array.stride
                                                                : array.buffer;
        });
        gl.answer(glad_glGetVertexAttribPointerv, [this](GLuint index, GLenum, void** out) {
            *out = const_cast<void*>(arrays[index].pointer);
        });
    }

    std::array<ClientArray, 16> arrays;
};

TEST_F(ClientArraysTrace, ArraysAreAsTheyWere) {
    static const float numbers[4] = {};
    std::array<ClientArray, 16> before;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const auto n = static_cast<GLint>(i);
        before[i] = {1 + n % 4,
                     GLenum(i % 2 == 0 ? GL_SHORT : GL_FLOAT),
                     GLboolean(i % 3 == 0),
                     4 * n,
                     numbers + i % 4,
                     10 + n,
                     i % 2 == 1};
    }
    for (int i = 0; i < 2; ++i) {
        arrays = before;
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 911);
        glBindBuffer(GL_ARRAY_BUFFER, arrayBuffer);
        drawAllKinds();
        EXPECT_GT(gl.countOf("glDrawElements"), 0u);
        for (std::size_t index = 0; index < arrays.size(); ++index)
            EXPECT_TRUE(arrays[index] == before[index]) << index;
        EXPECT_EQ(nameOf(GL_ELEMENT_ARRAY_BUFFER_BINDING), 911u);
        EXPECT_EQ(nameOf(GL_ARRAY_BUFFER_BINDING), arrayBuffer);
        gl.forget();
    }
}

} // namespace

// needs: a process for TrackedStatesRender.*

/// The tracked states on a driver. The diff remembers for the life of the process, so each of these
/// tests needs a process of its own: run them through ctest.

#include <vellis/state/tracked_states.hpp>

#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/render_test.hpp"
#include "support/run_program.hpp"
#include "support/stderr_capture.hpp"

namespace {

using vellis::internal::diff_gl_states;
using vellis::internal::print_gl_states;
using vellis::test::stderrOf;

/// A tracked state by default, in the fixture's context, and after a change.
struct Change {
    const char* label;
    std::function<void()> change;
    std::string before;
    std::string after;
};

/// A state whose default is the driver's own, as GL tells it.
int integer(GLenum pname) {
    GLint value = 0;
    glGetIntegerv(pname, &value);
    return value;
}

std::string hexadecimal(GLenum pname) {
    std::ostringstream text;
    text << "0x" << std::hex << integer(pname);
    return text.str();
}

/// A framebuffer with one colour buffer may call it either.
std::string readBuffer() {
    return integer(GL_READ_BUFFER) == GL_FRONT ? "GL_FRONT" : "GL_BACK";
}

class TrackedStatesRender : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        SKIP_WITHOUT_EVERY_STATE();
        if (!goesOn())
            return;
        glGenTextures(numTextures, textures);
        glGenRenderbuffers(1, &renderbuffer);
        glGenVertexArrays(1, &vertexArray);
    }
    void TearDown() override {
        if (goesOn())
            deleteObjects();
        RenderTest::TearDown();
    }

    void deleteObjects() const {
        glDeleteVertexArrays(1, &vertexArray);
        glDeleteRenderbuffers(1, &renderbuffer);
        glDeleteTextures(numTextures, textures);
    }

    /// Binds the i-th texture.
    std::function<void()> bind(GLenum target, int i) {
        return [this, target, i] { glBindTexture(target, textures[i]); };
    }
    std::string name(int i) const { return std::to_string(textures[i]); }
    static std::function<void()> enable(GLenum capability) {
        return [=] { glEnable(capability); };
    }
    static std::function<void()> store(GLenum pname, int value) {
        return [=] { glPixelStorei(pname, value); };
    }

    std::vector<Change> changes();

    static constexpr int numTextures = 7;
    GLuint textures[numTextures] = {};
    GLuint renderbuffer = 0;
    GLuint vertexArray = 0;
};

/// In the order of the print. States that are set together stand in one group: the first row of it
/// makes the change.
std::vector<Change> TrackedStatesRender::changes() {
    const std::function<void()> withTheOneBefore = [] {};
    // clang-format off
    return {
        {"COLOR_WRITEMASK", [] { glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_TRUE); }, "true, true, true, true", "true, false, false, true"},
        {"DEPTH_WRITEMASK", [] { glDepthMask(GL_FALSE); }, "true", "false"},
        {"BLEND", enable(GL_BLEND), "false", "true"},
        {"BLEND_COLOR", [] { glBlendColor(0.25f, 0.5f, 0.75f, 1.f); }, "0, 0, 0, 0", "0.25, 0.5, 0.75, 1"},
        {"BLEND_SRC_RGB", [] { glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_CONSTANT_ALPHA); }, "1", "770"},
        {"BLEND_DST_RGB", withTheOneBefore, "0", "771"},
        {"BLEND_SRC_ALPHA", withTheOneBefore, "1", "0"},
        {"BLEND_DST_ALPHA", withTheOneBefore, "0", "32771"},
        {"BLEND_EQUATION_RGB", [] { glBlendEquationSeparate(GL_MAX, GL_FUNC_SUBTRACT); }, "GL_FUNC_ADD", "GL_MAX"},
        {"BLEND_EQUATION_ALPHA", withTheOneBefore, "GL_FUNC_ADD", "GL_FUNC_SUBTRACT"},
        {"DEPTH_TEST", enable(GL_DEPTH_TEST), "false", "true"},
        {"DEPTH_FUNC", [] { glDepthFunc(GL_GEQUAL); }, "GL_LESS", "GL_GEQUAL"},
        {"DEPTH_RANGE", [] { glDepthRange(0.25, 0.5); }, "0, 1", "0.25, 0.5"},
        {"STENCIL_TEST", enable(GL_STENCIL_TEST), "false", "true"},
        {"STENCIL_FUNC", [] { glStencilFuncSeparate(GL_FRONT, GL_NOTEQUAL, 10, 0xF0); }, "GL_ALWAYS", "GL_NOTEQUAL"},
        {"STENCIL_REF", withTheOneBefore, "0x0", "0xa"},
        {"STENCIL_VALUE_MASK", withTheOneBefore, hexadecimal(GL_STENCIL_VALUE_MASK), "0xf0"},
        {"STENCIL_WRITEMASK", [] { glStencilMaskSeparate(GL_FRONT, 0x3C); }, hexadecimal(GL_STENCIL_WRITEMASK), "0x3c"},
        {"STENCIL_FAIL", [] { glStencilOpSeparate(GL_FRONT, GL_ZERO, GL_INCR, GL_DECR_WRAP); }, "GL_KEEP", "GL_ZERO"},
        {"STENCIL_PASS_DEPTH_FAIL", withTheOneBefore, "GL_KEEP", "GL_INCR"},
        {"STENCIL_PASS_DEPTH_PASS", withTheOneBefore, "GL_KEEP", "GL_DECR_WRAP"},
        {"STENCIL_BACK_FUNC", [] { glStencilFuncSeparate(GL_BACK, GL_NEVER, 11, 0x0F); }, "GL_ALWAYS", "GL_NEVER"},
        {"STENCIL_BACK_REF", withTheOneBefore, "0x0", "0xb"},
        {"STENCIL_BACK_VALUE_MASK", withTheOneBefore, hexadecimal(GL_STENCIL_BACK_VALUE_MASK), "0xf"},
        {"STENCIL_BACK_WRITEMASK", [] { glStencilMaskSeparate(GL_BACK, 0xC3); }, hexadecimal(GL_STENCIL_BACK_WRITEMASK), "0xc3"},
        {"STENCIL_BACK_FAIL", [] { glStencilOpSeparate(GL_BACK, GL_REPLACE, GL_INVERT, GL_INCR_WRAP); }, "GL_KEEP", "GL_REPLACE"},
        {"STENCIL_BACK_PASS_DEPTH_FAIL", withTheOneBefore, "GL_KEEP", "GL_INVERT"},
        {"STENCIL_BACK_PASS_DEPTH_PASS", withTheOneBefore, "GL_KEEP", "GL_INCR_WRAP"},
        {"SCISSOR_TEST", enable(GL_SCISSOR_TEST), "false", "true"},
        {"SCISSOR_BOX", [] { glScissor(1, 2, 30, 40); }, "0, 0, 256, 256", "1, 2, 30, 40"},
        {"ACTIVE_TEXTURE", [] { glActiveTexture(GL_TEXTURE1); }, "GL_TEXTURE0", "GL_TEXTURE1"},
        {"TEXTURE_BINDING_1D", bind(GL_TEXTURE_1D, 0), "0", name(0)},
        {"TEXTURE_BINDING_1D_ARRAY", bind(GL_TEXTURE_1D_ARRAY, 1), "0", name(1)},
        {"TEXTURE_BINDING_2D", bind(GL_TEXTURE_2D, 2), "0", name(2)},
        {"TEXTURE_BINDING_2D_ARRAY", bind(GL_TEXTURE_2D_ARRAY, 3), "0", name(3)},
        {"TEXTURE_BINDING_3D", bind(GL_TEXTURE_3D, 4), "0", name(4)},
        {"TEXTURE_BINDING_CUBE_MAP", bind(GL_TEXTURE_CUBE_MAP, 5), "0", name(5)},
        {"TEXTURE_BINDING_RECTANGLE", bind(GL_TEXTURE_RECTANGLE, 6), "0", name(6)},
        {"RENDERBUFFER_BINDING", [this] { glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer); }, "0", std::to_string(renderbuffer)},
        {"VERTEX_ARRAY_BINDING", [this] { glBindVertexArray(vertexArray); }, "0", std::to_string(vertexArray)},
        {"POINT_SIZE", [] { glPointSize(2.5f); }, "1", "2.5"},
        {"PROGRAM_POINT_SIZE", enable(GL_PROGRAM_POINT_SIZE), "false", "true"},
        {"COLOR_CLEAR_VALUE", [] { glClearColor(0.25f, 0.5f, 0.75f, 1.f); }, "0, 0, 0, 0", "0.25, 0.5, 0.75, 1"},
        {"DEPTH_CLEAR_VALUE", [] { glClearDepth(0.25); }, "1", "0.25"},
        {"STENCIL_CLEAR_VALUE", [] { glClearStencil(42); }, "0", "42"},
        {"VIEWPORT", [] { glViewport(3, 4, 64, 48); }, "0, 0, 256, 256", "3, 4, 64, 48"},
        {"READ_BUFFER", [] { glReadBuffer(GL_NONE); }, readBuffer(), "unknown enum : 0x0"},
        {"PACK_ALIGNMENT", store(GL_PACK_ALIGNMENT, 8), "0x4", "0x8"},
        {"PACK_ROW_LENGTH", store(GL_PACK_ROW_LENGTH, 31), "0x0", "0x1f"},
        {"PACK_SKIP_PIXELS", store(GL_PACK_SKIP_PIXELS, 32), "0x0", "0x20"},
        {"PACK_SKIP_ROWS", store(GL_PACK_SKIP_ROWS, 33), "0x0", "0x21"},
        {"UNPACK_ALIGNMENT", store(GL_UNPACK_ALIGNMENT, 1), "0x4", "0x1"},
        {"UNPACK_ROW_LENGTH", store(GL_UNPACK_ROW_LENGTH, 34), "0x0", "0x22"},
        {"UNPACK_SKIP_PIXELS", store(GL_UNPACK_SKIP_PIXELS, 35), "0x0", "0x23"},
        {"UNPACK_SKIP_ROWS", store(GL_UNPACK_SKIP_ROWS, 36), "0x0", "0x24"},
    };
    // clang-format on
}

/// Constants of the driver, which nothing can change.
const std::set<std::string> constants = {"POINT_SIZE_GRANULARITY", "SMOOTH_LINE_WIDTH_GRANULARITY"};

/// The lines of the print, but for the driver's constants.
std::vector<std::string> printedLines() {
    std::vector<std::string> result;
    for (const std::string& line : lines(stderrOf(print_gl_states))) {
        const std::string start = "Corvane: ";
        const std::string label = line.substr(start.size(), line.find(" = ") - start.size());
        if (constants.count(label) == 0)
            result.push_back(line);
    }
    return result;
}

TEST_F(TrackedStatesRender, PrintHas57Lines) {
    const std::string text = stderrOf(print_gl_states);
    EXPECT_EQ(lines(text).size(), 57u);
    for (const std::string& label : constants)
        EXPECT_NE(text.find("\nCorvane: " + label + " = "), std::string::npos) << label;
}

TEST_F(TrackedStatesRender, EveryStateIsPrintedByDefaultAndChanged) {
    const std::vector<Change> all = changes();
    ASSERT_EQ(all.size() + constants.size(), 57u);
    std::vector<std::string> before;
    std::vector<std::string> after;
    for (const Change& state : all) {
        before.push_back(std::string("Corvane: ") + state.label + " = " + state.before);
        after.push_back(std::string("Corvane: ") + state.label + " = " + state.after);
    }
    EXPECT_EQ(printedLines(), before);
    for (const Change& state : all)
        state.change();
    EXPECT_EQ(printedLines(), after);
}

TEST_F(TrackedStatesRender, EveryChangeIsInTheDiffOnce) {
    const std::vector<Change> all = changes();
    EXPECT_EQ(stderrOf(diff_gl_states), "") << "the first call of this process";
    EXPECT_EQ(stderrOf(diff_gl_states), "");
    std::vector<std::string> expected;
    for (const Change& state : all) {
        state.change();
        expected.push_back(std::string("Corvane DIFF : ") + state.label + " = " + state.before +
                           " -> " + state.after);
    }
    EXPECT_EQ(lines(stderrOf(diff_gl_states)), expected);
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE-33983 -> GL_TEXTURE1\n");
}

TEST_F(TrackedStatesRender, ReadBufferOfAFramebufferObjectHasNoName) {
    GLuint framebuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    EXPECT_NE(stderrOf(print_gl_states).find("\nCorvane: READ_BUFFER = unknown enum : 0x8ce0\n"),
              std::string::npos);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDeleteFramebuffers(1, &framebuffer);
}

TEST_F(TrackedStatesRender, TextureBindingsAreThoseOfTheActiveUnit) {
    glBindTexture(GL_TEXTURE_2D, textures[0]);
    diff_gl_states();
    glActiveTexture(GL_TEXTURE2);
    EXPECT_EQ(stderrOf(diff_gl_states),
              "Corvane DIFF : ACTIVE_TEXTURE = GL_TEXTURE0 -> GL_TEXTURE2\n"
              "Corvane DIFF : TEXTURE_BINDING_2D = " +
                  name(0) + " -> 0\n");
}

} // namespace

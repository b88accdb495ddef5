/// How calls are written: one test per form and meaning of parameters.

#include <vellis/gl.hpp>

#include <gtest/gtest.h>

#include "support/fake_gl.hpp"

namespace vellis::test {
namespace {

/// Each test makes calls and compares their lines.
class GlFormat : public ::testing::Test {
protected:
    FakeGl gl;
};

TEST_F(GlFormat, EnumeratorsGoByName) {
    glBindBuffer(GL_ARRAY_BUFFER, 7);
    glActiveTexture(GL_TEXTURE0 + 3);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, 4, 2, 0, GL_RGBA, GL_FLOAT, nullptr);
    EXPECT_GL_CALLS(gl, "glBindBuffer(GL_ARRAY_BUFFER, 7)", "glActiveTexture(GL_TEXTURE3)",
                    "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, 4, 2, 0, GL_RGBA, GL_FLOAT, null)");
}

TEST_F(GlFormat, SmallValuesGoByTheNamesOfTheirGroup) {
    glDrawArrays(GL_POINTS, 0, 1);
    glDrawArrays(GL_LINES, 0, 1);
    glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_SRC_ALPHA, GL_ONE);
    glDrawBuffer(GL_NONE);
    glStencilOp(GL_ZERO, GL_KEEP, GL_INCR);
    EXPECT_GL_CALLS(gl, "glDrawArrays(GL_POINTS, 0, 1)", "glDrawArrays(GL_LINES, 0, 1)",
                    "glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_SRC_ALPHA, GL_ONE)",
                    "glDrawBuffer(GL_NONE)", "glStencilOp(GL_ZERO, GL_KEEP, GL_INCR)");
}

TEST_F(GlFormat, UnknownEnumeratorsGoByValue) {
    glEnable(0x8FFF);
    glBindBuffer(0, 1);
    EXPECT_GL_CALLS(gl, "glEnable(0x8fff)", "glBindBuffer(0x0, 1)");
}

TEST_F(GlFormat, OfSeveralNamesForAValueOneIsChosen) {
    GLint value = 0;
    glEnable(GL_PROGRAM_POINT_SIZE);
    const GLenum pnames[] = {GL_FRAMEBUFFER_BINDING, GL_BLEND_EQUATION, GL_POINT_SIZE_RANGE,
                             GL_LINE_WIDTH_RANGE, GL_MAX_VARYING_COMPONENTS};
    for (const GLenum pname : pnames)
        glGetIntegerv(pname, &value);
    EXPECT_GL_CALLS(gl, "glEnable(GL_VERTEX_PROGRAM_POINT_SIZE)",
                    "glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, out)",
                    "glGetIntegerv(GL_BLEND_EQUATION_RGB, out)",
                    "glGetIntegerv(GL_POINT_SIZE_RANGE, out)",
                    "glGetIntegerv(GL_SMOOTH_LINE_WIDTH_RANGE, out)",
                    "glGetIntegerv(GL_MAX_VARYING_FLOATS, out)");
}

TEST_F(GlFormat, BitsGoByNameWithTheRestInHexadecimal) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glClear(0);
    glClear(GL_COLOR_BUFFER_BIT | 0x3);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glMapBufferRange(GL_ARRAY_BUFFER, 0, 4, GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT);
    EXPECT_GL_CALLS(
        gl, "glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_COLOR_BUFFER_BIT)",
        "glClear(0)", "glClear(GL_COLOR_BUFFER_BIT | 0x3)", "glPushAttrib(GL_ALL_ATTRIB_BITS)",
        "glMapBufferRange(GL_ARRAY_BUFFER, 0, 4, "
        "GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT)");
}

TEST_F(GlFormat, BooleansGoByNameAndOddOnesByValue) {
    glDepthMask(GL_TRUE);
    glColorMask(GL_TRUE, GL_FALSE, 2, GL_TRUE);
    EXPECT_GL_CALLS(gl, "glDepthMask(GL_TRUE)", "glColorMask(GL_TRUE, GL_FALSE, 2, GL_TRUE)");
}

TEST_F(GlFormat, FloatsAreInShortestForm) {
    glClearColor(1.0F, 0.5F, 0.1F, -0.25F);
    glClearDepth(0.1);
    glLineWidth(1e-7F);
    EXPECT_GL_CALLS(gl, "glClearColor(1, 0.5, 0.1, -0.25)", "glClearDepth(0.1)",
                    "glLineWidth(1e-07)");
}

TEST_F(GlFormat, IntegersKeepTheirSign) {
    glUniform1i(-1, -7);
    glStencilMask(0xFFFFFFFF);
    EXPECT_GL_CALLS(gl, "glUniform1i(-1, -7)", "glStencilMask(4294967295)");
}

TEST_F(GlFormat, ParametersAreWhatTheirNameSays) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLfloat>(GL_REPEAT));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_NONE);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 1000);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    EXPECT_GL_CALLS(gl, "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                    "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                    "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_NONE)",
                    "glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE)",
                    "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 1000)",
                    "glPixelStorei(GL_UNPACK_ALIGNMENT, 1)");
}

TEST_F(GlFormat, ArraysShowTheirContents) {
    const GLuint names[] = {3, 5};
    const GLfloat red[] = {1, 0, 0, 1};
    const GLfloat two[] = {1, 2, 3, 4};
    const GLenum outputs[] = {GL_COLOR_ATTACHMENT0, GL_NONE};
    const GLint filter[] = {GL_NEAREST};
    glDeleteTextures(2, names);
    glDeleteTextures(0, names);
    glDeleteTextures(-1, names);
    glUniform4fv(3, 1, red);
    glUniform2fv(3, 2, two);
    glUniformMatrix2fv(0, 1, GL_FALSE, two);
    glDrawBuffers(2, outputs);
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, red);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    glClearBufferfv(GL_COLOR, 0, red);
    glClearBufferfv(GL_DEPTH, 0, red);
    EXPECT_GL_CALLS(
        gl, "glDeleteTextures(2, {3, 5})", "glDeleteTextures(0, {})", "glDeleteTextures(-1, {})",
        "glUniform4fv(3, 1, {1, 0, 0, 1})", "glUniform2fv(3, 2, {1, 2, 3, 4})",
        "glUniformMatrix2fv(0, 1, GL_FALSE, {1, 2, 3, 4})",
        "glDrawBuffers(2, {GL_COLOR_ATTACHMENT0, GL_NONE})",
        "glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, {1, 0, 0, 1})",
        "glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, {GL_NEAREST})",
        "glClearBufferfv(GL_COLOR, 0, {1, 0, 0, 1})", "glClearBufferfv(GL_DEPTH, 0, {1})");
}

TEST_F(GlFormat, NamesThatACallMakesAreShown) {
    GLuint names[3] = {};
    glGenBuffers(1, names);
    glGenTextures(2, names + 1);
    EXPECT_GL_CALLS(gl, "glGenBuffers(1, {1})", "glGenTextures(2, {2, 3})");
}

TEST_F(GlFormat, OffsetsAreNumbers) {
    const auto offset = [](std::size_t bytes) { return reinterpret_cast<const void*>(bytes); };
    glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 16, offset(8));
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, offset(8));
    const GLsizei counts[] = {3, 3};
    const void* const starts[] = {nullptr, offset(6)};
    glMultiDrawElements(GL_TRIANGLES, counts, GL_UNSIGNED_SHORT, starts, 2);
    EXPECT_GL_CALLS(gl, "glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 16, 8)",
                    "glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, 0)",
                    "glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, 8)",
                    "glMultiDrawElements(GL_TRIANGLES, {3, 3}, GL_UNSIGNED_SHORT, {0, 6}, 2)");
}

TEST_F(GlFormat, DataAndOutputsAreWords) {
    unsigned char bytes[4] = {};
    GLint size = 0;
    glBufferData(GL_ARRAY_BUFFER, 4, bytes, GL_STATIC_DRAW);
    glBufferData(GL_ARRAY_BUFFER, 4, nullptr, GL_STATIC_DRAW);
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
    glGetActiveUniform(1, 0, 0, nullptr, &size, nullptr, nullptr);
    EXPECT_GL_CALLS(gl, "glBufferData(GL_ARRAY_BUFFER, 4, data, GL_STATIC_DRAW)",
                    "glBufferData(GL_ARRAY_BUFFER, 4, null, GL_STATIC_DRAW)",
                    "glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, out)",
                    "glGetActiveUniform(1, 0, 0, null, out, null, null)");
}

TEST_F(GlFormat, PixelPointersAreOffsetsWhileABufferIsBound) {
    GLubyte texel[4] = {};
    const auto* offset = reinterpret_cast<const void*>(std::size_t(16));
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 4);
    gl.forget();
    glTexSubImage1D(GL_TEXTURE_1D, 0, 0, 1, GL_RGBA, GL_UNSIGNED_BYTE, offset);
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, texel);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glTexSubImage1D(GL_TEXTURE_1D, 0, 0, 1, GL_RGBA, GL_UNSIGNED_BYTE, texel);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 4);
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_GL_CALLS(gl, "glTexSubImage1D(GL_TEXTURE_1D, 0, 0, 1, GL_RGBA, GL_UNSIGNED_BYTE, 16)",
                    "glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, out)",
                    "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)",
                    "glTexSubImage1D(GL_TEXTURE_1D, 0, 0, 1, GL_RGBA, GL_UNSIGNED_BYTE, data)",
                    "glBindBuffer(GL_PIXEL_PACK_BUFFER, 4)",
                    "glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, 0)");
}

TEST_F(GlFormat, TextsAreQuotedAndEscaped) {
    glGetUniformLocation(1, "w[0]");
    glGetUniformLocation(1, "\t\"\\\r\x01"
                            "9");
    glGetUniformLocation(1, "é");
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(1, \"w[0]\")",
                    "glGetUniformLocation(1, \"\\t\\\"\\\\\\r\\0019\")",
                    "glGetUniformLocation(1, \"é\")");
}

TEST_F(GlFormat, ShaderSourcesAreQuotedUpToTheirLengths) {
    const GLchar* sources[] = {"#version 120 \n", "void main() {}"};
    const GLint lengths[] = {8, -1};
    glShaderSource(1, 1, sources, nullptr);
    glShaderSource(1, 2, sources, lengths);
    EXPECT_GL_CALLS(gl, R"(glShaderSource(1, 1, {"#version 120 \n"}, null))",
                    R"(glShaderSource(1, 2, {"#version", "void main() {}"}, {8, -1}))");
}

} // namespace
} // namespace vellis::test

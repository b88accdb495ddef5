/// What the fake GL answers.

#include "support/gl_script.hpp"

#include <vellis/gl.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_gl.hpp"

namespace vellis::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Each test makes calls and looks at their results only.
class GlAnswers : public ::testing::Test {
protected:
    ~GlAnswers() override { gl.forget(); }

    FakeGl gl;
};

TEST_F(GlAnswers, NamesCountUpThroughAllKinds) {
    GLuint names[6] = {};
    glGenBuffers(1, &names[0]);
    glGenTextures(1, &names[1]);
    glGenVertexArrays(1, &names[2]);
    glGenFramebuffers(1, &names[3]);
    glGenRenderbuffers(1, &names[4]);
    glGenQueries(1, &names[5]);
    EXPECT_THAT(names, ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(glCreateShader(GL_VERTEX_SHADER), 7u);
    EXPECT_EQ(glCreateProgram(), 8u);
    EXPECT_THAT(gl.liveNames(),
                ElementsAre("buffer 1", "texture 2", "vertex array 3", "framebuffer 4",
                            "renderbuffer 5", "query 6", "shader 7", "program 8"));
}

TEST_F(GlAnswers, LeaksAndDoubleDeletesAreKnown) {
    GLuint names[2] = {};
    glGenBuffers(2, names);
    glDeleteBuffers(1, &names[0]);
    EXPECT_THAT(gl.liveNames(), ElementsAre("buffer 2"));
    EXPECT_THAT(gl.doubleDeletes(), IsEmpty());
    glDeleteBuffers(1, &names[0]);
    glDeleteTextures(1, &names[1]);
    glDeleteProgram(99);
    glDeleteProgram(0);
    EXPECT_THAT(gl.doubleDeletes(), ElementsAre("buffer 1", "texture 2", "program 99"));
    EXPECT_THAT(gl.liveNames(), ElementsAre("buffer 2"));
}

TEST_F(GlAnswers, CreationFailsOnDemand) {
    gl.failToCreate(glad_glCreateShader);
    GLuint name = 9;
    EXPECT_EQ(glCreateShader(GL_VERTEX_SHADER), 0u);
    EXPECT_EQ(glCreateProgram(), 1u);
    gl.failToCreate();
    EXPECT_EQ(glCreateProgram(), 0u);
    glGenTextures(1, &name);
    EXPECT_EQ(name, 0u);
}

TEST_F(GlAnswers, ErrorsComeFromAQueue) {
    gl.queueError(GL_INVALID_ENUM);
    gl.queueError(GL_OUT_OF_MEMORY);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_OUT_OF_MEMORY));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(GlAnswers, StringsAndTheFramebufferStatusAreScripted) {
    EXPECT_EQ(glGetString(GL_VENDOR), nullptr);
    gl.setString(GL_VENDOR, "us");
    EXPECT_STREQ(reinterpret_cast<const char*>(glGetString(GL_VENDOR)), "us");
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    gl.setFramebufferStatus(GL_FRAMEBUFFER_UNSUPPORTED);
    EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER),
              static_cast<GLenum>(GL_FRAMEBUFFER_UNSUPPORTED));
}

TEST_F(GlAnswers, StateIsConvertedToTheTypeOfTheQuery) {
    gl.setState(GL_DEPTH_RANGE, {0.25, 0.75});
    GLint integers[2] = {};
    GLfloat floats[2] = {};
    GLdouble doubles[2] = {};
    GLboolean booleans[2] = {};
    glGetIntegerv(GL_DEPTH_RANGE, integers);
    glGetFloatv(GL_DEPTH_RANGE, floats);
    glGetDoublev(GL_DEPTH_RANGE, doubles);
    glGetBooleanv(GL_DEPTH_RANGE, booleans);
    EXPECT_THAT(integers, ElementsAre(0, 1));
    EXPECT_THAT(floats, ElementsAre(0.25F, 0.75F));
    EXPECT_THAT(doubles, ElementsAre(0.25, 0.75));
    EXPECT_THAT(booleans, ElementsAre(GL_TRUE, GL_TRUE));
    gl.setState(GL_STENCIL_VALUE_MASK, {0xFFFFFFFFU});
    glGetIntegerv(GL_STENCIL_VALUE_MASK, integers);
    EXPECT_EQ(integers[0], -1);
    gl.setState(GL_BLEND, {true});
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_TRUE);
}

TEST_F(GlAnswers, AQueryOfUnknownStateGivesOneZero) {
    GLint values[2] = {5, 5};
    glGetIntegerv(GL_VIEWPORT, values);
    EXPECT_THAT(values, ElementsAre(0, 5));
}

TEST_F(GlAnswers, ARefusedQueryWritesNothing) {
    gl.refuse(GL_VIEWPORT);
    gl.refuse(GL_COMPILE_STATUS);
    GLint value = 5;
    glGetIntegerv(GL_VIEWPORT, &value);
    glGetShaderiv(1, GL_COMPILE_STATUS, &value);
    EXPECT_EQ(value, 5);
}

GLint integerState(GLenum pname) {
    GLint value = -1;
    glGetIntegerv(pname, &value);
    return value;
}

TEST_F(GlAnswers, BindingsCanBeQueried) {
    glUseProgram(3);
    glBindVertexArray(4);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 5);
    glBindRenderbuffer(GL_RENDERBUFFER, 6);
    glBindFramebuffer(GL_FRAMEBUFFER, 7);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 8);
    EXPECT_EQ(integerState(GL_CURRENT_PROGRAM), 3);
    EXPECT_EQ(integerState(GL_VERTEX_ARRAY_BINDING), 4);
    EXPECT_EQ(integerState(GL_ELEMENT_ARRAY_BUFFER_BINDING), 5);
    EXPECT_EQ(integerState(GL_RENDERBUFFER_BINDING), 6);
    EXPECT_EQ(integerState(GL_DRAW_FRAMEBUFFER_BINDING), 7);
    EXPECT_EQ(integerState(GL_READ_FRAMEBUFFER_BINDING), 8);
    gl.setState(GL_CURRENT_PROGRAM, {9});
    EXPECT_EQ(integerState(GL_CURRENT_PROGRAM), 9);
}

TEST_F(GlAnswers, TexturesAreBoundPerUnit) {
    EXPECT_EQ(integerState(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 1);
    glActiveTexture(GL_TEXTURE2);
    EXPECT_EQ(integerState(GL_ACTIVE_TEXTURE), GL_TEXTURE2);
    EXPECT_EQ(integerState(GL_TEXTURE_BINDING_2D), 0);
    glBindTexture(GL_TEXTURE_2D, 2);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(integerState(GL_TEXTURE_BINDING_2D), 1);
}

TEST_F(GlAnswers, DeletionUnbinds) {
    const GLuint name = 1;
    glBindFramebuffer(GL_FRAMEBUFFER, name);
    glBindBuffer(GL_ARRAY_BUFFER, name);
    glDeleteFramebuffers(1, &name);
    EXPECT_EQ(integerState(GL_DRAW_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(integerState(GL_ARRAY_BUFFER_BINDING), 1);
}

/// A buffer, bound.
class GlBufferAnswers : public GlAnswers {
protected:
    GlBufferAnswers() {
        GLuint buffer = 0;
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
    }
};

TEST_F(GlBufferAnswers, KeepsItsBytes) {
    const GLfloat values[] = {1, 2, 3};
    glBufferData(GL_ARRAY_BUFFER, sizeof(values), values, GL_STREAM_DRAW);
    EXPECT_THAT(gl.bufferContents<GLfloat>(1), ElementsAre(1, 2, 3));
    const GLfloat other = 7;
    glBufferSubData(GL_ARRAY_BUFFER, 4, 4, &other);
    EXPECT_THAT(gl.bufferContents<GLfloat>(1), ElementsAre(1, 7, 3));
    GLint size = 0;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    EXPECT_EQ(size, 12);
    GLfloat last = 0;
    glGetBufferSubData(GL_ARRAY_BUFFER, 8, 4, &last);
    EXPECT_EQ(last, 3);
    const GLuint buffer = 1;
    glDeleteBuffers(1, &buffer);
    EXPECT_THAT(gl.bufferBytes(1), IsEmpty());
}

TEST_F(GlBufferAnswers, WithoutDataHoldsUndefinedBytes) {
    glBufferData(GL_ARRAY_BUFFER, 2, nullptr, GL_STATIC_DRAW);
    EXPECT_THAT(gl.bufferBytes(1), ElementsAre(FakeGl::undefinedByte, FakeGl::undefinedByte));
    EXPECT_THAT(gl.bufferBytes(2), IsEmpty());
}

TEST_F(GlBufferAnswers, MapsItsStore) {
    glBufferData(GL_ARRAY_BUFFER, 4, "abc", GL_STATIC_DRAW);
    auto* bytes = static_cast<char*>(glMapBufferRange(GL_ARRAY_BUFFER, 1, 2, GL_MAP_WRITE_BIT));
    EXPECT_STREQ(bytes, "bc");
    EXPECT_TRUE(gl.isMapped(1));
    bytes[0] = 'x';
    EXPECT_EQ(glUnmapBuffer(GL_ARRAY_BUFFER), GL_TRUE);
    EXPECT_FALSE(gl.isMapped(1));
    EXPECT_EQ(glUnmapBuffer(GL_ARRAY_BUFFER), GL_FALSE);
    EXPECT_THAT(gl.bufferContents<char>(1), ElementsAre('a', 'x', 'c', '\0'));
    EXPECT_STREQ(static_cast<char*>(glMapBuffer(GL_ARRAY_BUFFER, GL_READ_ONLY)), "axc");
}

TEST_F(GlBufferAnswers, AccessOutsideOfTheStoreIsRefused) {
    const GLuint value = 0;
    glBufferData(GL_ARRAY_BUFFER, 4, nullptr, GL_STATIC_DRAW);
    glBufferSubData(GL_ARRAY_BUFFER, 2, 4, &value);
    EXPECT_THAT(gl.bufferBytes(1), ::testing::Each(FakeGl::undefinedByte));
    EXPECT_EQ(glMapBufferRange(GL_ARRAY_BUFFER, 2, 4, GL_MAP_READ_BIT), nullptr);
    EXPECT_EQ(glMapBufferRange(GL_ARRAY_BUFFER, -1, 4, GL_MAP_READ_BIT), nullptr);
    EXPECT_EQ(glMapBufferRange(GL_ARRAY_BUFFER, 0, 0, GL_MAP_READ_BIT), nullptr);
    EXPECT_EQ(glMapBufferRange(GL_PIXEL_PACK_BUFFER, 0, 4, GL_MAP_READ_BIT), nullptr);
}

TEST_F(GlBufferAnswers, MappingFailsOnDemand) {
    glBufferData(GL_ARRAY_BUFFER, 4, nullptr, GL_STATIC_DRAW);
    gl.failToMap();
    EXPECT_EQ(glMapBufferRange(GL_ARRAY_BUFFER, 0, 4, GL_MAP_READ_BIT), nullptr);
    gl.failToMap(false);
    EXPECT_NE(glMapBufferRange(GL_ARRAY_BUFFER, 0, 4, GL_MAP_READ_BIT), nullptr);
}

GLint shaderValue(GLuint shader, GLenum pname) {
    GLint value = -1;
    glGetShaderiv(shader, pname, &value);
    return value;
}

GLint programValue(GLuint program, GLenum pname) {
    GLint value = -1;
    glGetProgramiv(program, pname, &value);
    return value;
}

TEST_F(GlAnswers, ShadersKeepTypeAndSource) {
    const GLuint shader = glCreateShader(GL_FRAGMENT_SHADER);
    const GLchar* sources[] = {"abc", "def"};
    const GLint lengths[] = {2, -1};
    EXPECT_EQ(shaderValue(shader, GL_SHADER_SOURCE_LENGTH), 0);
    glShaderSource(shader, 2, sources, lengths);
    EXPECT_EQ(gl.shaderSource(shader), "abdef");
    EXPECT_EQ(shaderValue(shader, GL_SHADER_TYPE), GL_FRAGMENT_SHADER);
    EXPECT_EQ(shaderValue(shader, GL_SHADER_SOURCE_LENGTH), 6);
    GLchar text[4] = {};
    GLsizei length = 0;
    glGetShaderSource(shader, sizeof(text), &length, text);
    EXPECT_STREQ(text, "abd");
    EXPECT_EQ(length, 3);
}

TEST_F(GlAnswers, ShadersCompileUnlessTheyFailOnDemand) {
    EXPECT_EQ(shaderValue(1, GL_COMPILE_STATUS), GL_TRUE);
    EXPECT_EQ(shaderValue(1, GL_INFO_LOG_LENGTH), 0);
    gl.failToCompile("bad", 2);
    EXPECT_EQ(shaderValue(1, GL_COMPILE_STATUS), GL_TRUE);
    EXPECT_EQ(shaderValue(2, GL_COMPILE_STATUS), GL_FALSE);
    EXPECT_EQ(shaderValue(2, GL_INFO_LOG_LENGTH), 4);
    GLchar log[4] = {};
    glGetShaderInfoLog(2, sizeof(log), nullptr, log);
    EXPECT_STREQ(log, "bad");
    gl.failToCompile();
    EXPECT_EQ(shaderValue(1, GL_COMPILE_STATUS), GL_FALSE);
    EXPECT_EQ(programValue(1, GL_LINK_STATUS), GL_TRUE);
    gl.setCompileLog("warning", 3);
    EXPECT_EQ(shaderValue(3, GL_COMPILE_STATUS), GL_TRUE);
    EXPECT_EQ(shaderValue(3, GL_INFO_LOG_LENGTH), 8);
    gl.setState(GL_COMPILE_STATUS, {2});
    EXPECT_EQ(shaderValue(3, GL_COMPILE_STATUS), 2);
}

TEST_F(GlAnswers, AProgramThatFailsToLinkHasNoActiveVariables) {
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4}});
    EXPECT_EQ(programValue(1, GL_LINK_STATUS), GL_TRUE);
    EXPECT_EQ(programValue(1, GL_ACTIVE_UNIFORMS), 1);
    gl.failToLink("no", 1);
    EXPECT_EQ(programValue(1, GL_LINK_STATUS), GL_FALSE);
    EXPECT_EQ(programValue(1, GL_ACTIVE_UNIFORMS), 0);
    EXPECT_EQ(glGetUniformLocation(1, "mvp"), -1);
    EXPECT_EQ(programValue(2, GL_ACTIVE_UNIFORMS), 1);
    GLchar log[4] = {};
    GLsizei length = 0;
    glGetProgramInfoLog(1, sizeof(log), &length, log);
    EXPECT_STREQ(log, "no");
    EXPECT_EQ(length, 2);
    gl.setLinkLog("", 1);
    EXPECT_EQ(programValue(1, GL_LINK_STATUS), GL_TRUE);
}

TEST_F(GlAnswers, AttachedShadersAreKnown) {
    const GLuint program = glCreateProgram();
    glAttachShader(program, 5);
    glAttachShader(program, 6);
    glAttachShader(program, 5);
    EXPECT_EQ(programValue(program, GL_ATTACHED_SHADERS), 2);
    GLuint shaders[3] = {};
    GLsizei count = 0;
    glGetAttachedShaders(program, 3, &count, shaders);
    EXPECT_EQ(count, 2);
    EXPECT_THAT(shaders, ElementsAre(5, 6, 0));
    glDetachShader(program, 5);
    glGetAttachedShaders(program, 1, nullptr, shaders);
    EXPECT_EQ(shaders[0], 6u);
}

TEST_F(GlAnswers, ActiveVariablesAreScriptedPerProgram) {
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4, 1, 4}, {"color", GL_FLOAT_VEC4}});
    gl.setActiveUniforms({}, 2);
    gl.setActiveAttributes({{"position", GL_FLOAT_VEC3, 1, 3}});
    EXPECT_EQ(programValue(1, GL_ACTIVE_UNIFORMS), 2);
    EXPECT_EQ(programValue(1, GL_ACTIVE_UNIFORM_MAX_LENGTH), 6);
    EXPECT_EQ(programValue(1, GL_ACTIVE_ATTRIBUTES), 1);
    EXPECT_EQ(programValue(1, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH), 9);
    EXPECT_EQ(programValue(2, GL_ACTIVE_UNIFORMS), 0);
    EXPECT_EQ(programValue(2, GL_ACTIVE_UNIFORM_MAX_LENGTH), 0);
    EXPECT_EQ(glGetUniformLocation(1, "mvp"), 4);
    EXPECT_EQ(glGetUniformLocation(1, "color"), 1);
    EXPECT_EQ(glGetUniformLocation(1, "position"), -1);
    EXPECT_EQ(glGetAttribLocation(1, "position"), 3);
    EXPECT_EQ(glGetUniformLocation(2, "mvp"), -1);
}

TEST_F(GlAnswers, ActiveVariablesAreDescribed) {
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4}, {"w[0]", GL_FLOAT, 4}});
    GLchar name[8] = {};
    GLsizei length = 0;
    GLint size = 0;
    GLenum type = 0;
    glGetActiveUniform(1, 1, sizeof(name), &length, &size, &type, name);
    EXPECT_STREQ(name, "w[0]");
    EXPECT_EQ(length, 4);
    EXPECT_EQ(size, 4);
    EXPECT_EQ(type, static_cast<GLenum>(GL_FLOAT));
    glGetActiveUniform(1, 0, 0, nullptr, &size, &type, nullptr);
    EXPECT_EQ(type, static_cast<GLenum>(GL_FLOAT_MAT4));
    size = 77;
    glGetActiveUniform(1, 2, sizeof(name), &length, &size, &type, name);
    EXPECT_EQ(size, 77);
}

TEST_F(GlAnswers, ElementsOfArraysHaveLocations) {
    gl.setActiveUniforms({{"w[0]", GL_FLOAT, 4, 10},
                          {"v", GL_FLOAT, 2, 20},
                          {"gl_Fog.color", GL_FLOAT_VEC4, 1, -1}});
    EXPECT_EQ(glGetUniformLocation(1, "w"), 10);
    EXPECT_EQ(glGetUniformLocation(1, "w[0]"), 10);
    EXPECT_EQ(glGetUniformLocation(1, "w[3]"), 13);
    EXPECT_EQ(glGetUniformLocation(1, "w[4]"), -1);
    EXPECT_EQ(glGetUniformLocation(1, "v[0]"), 20);
    EXPECT_EQ(glGetUniformLocation(1, "gl_Fog.color"), -1);
    EXPECT_EQ(glGetUniformLocation(1, ""), -1);
}

} // namespace
} // namespace vellis::test

/// The dumps: every line on standard error, and the GL calls behind it.

#include <vellis/engine/dumps.hpp>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis::internal;

using vellis::test::FakeGl;
using vellis::test::stderrOf;

TEST(PrintGlInfoTrace, FourStringsAreFourLines) {
    FakeGl gl;
    gl.setString(GL_VENDOR, "a vendor");
    gl.setString(GL_RENDERER, "a %s renderer");
    gl.setString(GL_VERSION, "2.1");
    gl.setString(GL_SHADING_LANGUAGE_VERSION, "1.20");
    EXPECT_EQ(stderrOf(print_gl_info), "Corvane: OpenGL vendor: a vendor\n"
                                       "Corvane: OpenGL renderer: a %s renderer\n"
                                       "Corvane: OpenGL version: 2.1\n"
                                       "Corvane: OpenGL GLSL version: 1.20\n");
    EXPECT_GL_CALLS(gl, "glGetString(GL_VENDOR)", "glGetString(GL_RENDERER)",
                    "glGetString(GL_VERSION)", "glGetString(GL_SHADING_LANGUAGE_VERSION)");
}

TEST(PrintGlInfoTrace, WhatTheContextDoesNotTellIsNull) {
    FakeGl gl;
    EXPECT_EQ(stderrOf(print_gl_info), "Corvane: OpenGL vendor: (null)\n"
                                       "Corvane: OpenGL renderer: (null)\n"
                                       "Corvane: OpenGL version: (null)\n"
                                       "Corvane: OpenGL GLSL version: (null)\n");
    EXPECT_EQ(stderrOf(print_gl_extensions), "Corvane: OpenGL extensions: (null)\n");
    gl.ignoreTheRest();
}

TEST(PrintGlExtensionsTrace, ListIsOneLine) {
    FakeGl gl;
    gl.setString(GL_EXTENSIONS, "GL_ARB_one GL_ARB_two ");
    EXPECT_EQ(stderrOf(print_gl_extensions),
              "Corvane: OpenGL extensions: GL_ARB_one GL_ARB_two \n");
    EXPECT_GL_CALLS(gl, "glGetString(GL_EXTENSIONS)");
}

TEST(PrintGlExtensionsTrace, LineIsCutAt276Characters) {
    FakeGl gl;
    const std::string start = "OpenGL extensions: ";
    const std::string fits(276 - start.size(), 'x');
    gl.setString(GL_EXTENSIONS, fits);
    EXPECT_EQ(stderrOf(print_gl_extensions), "Corvane: " + start + fits + "\n");
    gl.setString(GL_EXTENSIONS, fits + "y");
    EXPECT_EQ(stderrOf(print_gl_extensions), "Corvane: " + start + fits + "\n");
    gl.ignoreTheRest();
}

/// A limit as its line must show it.
struct LimitRow {
    const char* name;
    unsigned int pname;
    const char* query;
    std::vector<double> values;
    const char* text;
};

const std::vector<LimitRow>& limitRows() {
    // clang-format off
    static const std::vector<LimitRow> rows = {
        {"MAX_TEXTURE_SIZE", GL_MAX_TEXTURE_SIZE, "glGetIntegerv(GL_MAX_TEXTURE_SIZE, out)", {16384}, "16384"},
        {"MAX_RECTANGLE_TEXTURE_SIZE", GL_MAX_RECTANGLE_TEXTURE_SIZE, "glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE, out)", {2}, "2"},
        {"MAX_RENDERBUFFER_SIZE", GL_MAX_RENDERBUFFER_SIZE, "glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, out)", {3}, "3"},
        {"MAX_3D_TEXTURE_SIZE", GL_MAX_3D_TEXTURE_SIZE, "glGetIntegerv(GL_MAX_3D_TEXTURE_SIZE, out)", {4}, "4"},
        {"MAX_CUBE_MAP_TEXTURE_SIZE", GL_MAX_CUBE_MAP_TEXTURE_SIZE, "glGetIntegerv(GL_MAX_CUBE_MAP_TEXTURE_SIZE, out)", {5}, "5"},
        {"MAX_VERTEX_ATTRIBS", GL_MAX_VERTEX_ATTRIBS, "glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, out)", {16}, "16"},
        {"MAX_VERTEX_TEXTURE_IMAGE_UNITS", GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS, "glGetIntegerv(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS, out)", {7}, "7"},
        {"MAX_VERTEX_UNIFORM_COMPONENTS", GL_MAX_VERTEX_UNIFORM_COMPONENTS, "glGetIntegerv(GL_MAX_VERTEX_UNIFORM_COMPONENTS, out)", {4096}, "4096"},
        {"MAX_FRAGMENT_UNIFORM_COMPONENTS", GL_MAX_FRAGMENT_UNIFORM_COMPONENTS, "glGetIntegerv(GL_MAX_FRAGMENT_UNIFORM_COMPONENTS, out)", {9}, "9"},
        {"MAX_COMBINED_TEXTURE_IMAGE_UNITS", GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, "glGetIntegerv(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, out)", {10}, "10"},
        {"MAX_VARYING_FLOATS", GL_MAX_VARYING_FLOATS, "glGetIntegerv(GL_MAX_VARYING_FLOATS, out)", {11}, "11"},
        {"MAX_TEXTURE_IMAGE_UNITS", GL_MAX_TEXTURE_IMAGE_UNITS, "glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, out)", {12}, "12"},
        {"MAX_DRAW_BUFFERS", GL_MAX_DRAW_BUFFERS, "glGetIntegerv(GL_MAX_DRAW_BUFFERS, out)", {13}, "13"},
        {"MAX_ELEMENTS_INDICES", GL_MAX_ELEMENTS_INDICES, "glGetIntegerv(GL_MAX_ELEMENTS_INDICES, out)", {-1}, "-1"},
        {"MAX_ELEMENTS_VERTICES", GL_MAX_ELEMENTS_VERTICES, "glGetIntegerv(GL_MAX_ELEMENTS_VERTICES, out)", {15}, "15"},
        {"MAX_TEXTURE_LOD_BIAS", GL_MAX_TEXTURE_LOD_BIAS, "glGetFloatv(GL_MAX_TEXTURE_LOD_BIAS, out)", {16.5}, "16.5"},
        {"MAX_VIEWPORT_DIMS", GL_MAX_VIEWPORT_DIMS, "glGetIntegerv(GL_MAX_VIEWPORT_DIMS, out)", {16384, 8192}, "0x4000, 0x2000"},
        {"POINT_SIZE_RANGE", GL_POINT_SIZE_RANGE, "glGetFloatv(GL_POINT_SIZE_RANGE, out)", {0.125, 255}, "0.125, 255"},
        {"SMOOTH_LINE_WIDTH_RANGE", GL_SMOOTH_LINE_WIDTH_RANGE, "glGetFloatv(GL_SMOOTH_LINE_WIDTH_RANGE, out)", {1, 7.375}, "1, 7.375"},
    };
    // clang-format on
    return rows;
}

TEST(PrintGlCapsTrace, NineteenLimitsAreLinesInTheOrderOfTheTable) {
    FakeGl gl;
    std::string lines;
    std::vector<std::string> queries;
    for (const LimitRow& row : limitRows()) {
        gl.setState(row.pname, row.values);
        lines += std::string("Corvane: ") + row.name + " = " + row.text + "\n";
        queries.emplace_back(row.query);
    }
    EXPECT_EQ(limitRows().size(), 19u);
    EXPECT_EQ(stderrOf(print_gl_caps), lines);
    EXPECT_GL_CALLS(gl, queries);
}

TEST(PrintGlCapsTrace, UnknownLimitIsZero) {
    FakeGl gl;
    for (const LimitRow& row : limitRows())
        gl.refuse(row.pname);
    const std::string lines = stderrOf(print_gl_caps);
    EXPECT_NE(lines.find("Corvane: MAX_TEXTURE_SIZE = 0\n"), std::string::npos);
    EXPECT_NE(lines.find("Corvane: MAX_VIEWPORT_DIMS = 0x0, 0x0\n"), std::string::npos);
    EXPECT_NE(lines.find("Corvane: POINT_SIZE_RANGE = 0, 0\n"), std::string::npos);
    gl.ignoreTheRest();
}

constexpr const char* sourceHeader = "Corvane: Shader Source Code\n";

std::string dumpOf(const char* source) {
    return stderrOf([=] { print_shader(source); });
}

TEST(PrintShader, LinesAreNumberedFromOne) {
    EXPECT_EQ(dumpOf("a\nb\n"), std::string(sourceHeader) + "   1: a\n   2: b\n");
    EXPECT_EQ(dumpOf("#version 120"), std::string(sourceHeader) + "   1: #version 120\n");
}

TEST(PrintShader, LastLineNeedsNoLineFeed) {
    EXPECT_EQ(dumpOf("a\nb"), std::string(sourceHeader) + "   1: a\n   2: b\n");
}

TEST(PrintShader, EmptyLinesCount) {
    EXPECT_EQ(dumpOf("\n\na\n\n"), std::string(sourceHeader) + "   1: \n   2: \n   3: a\n   4: \n");
}

TEST(PrintShader, EmptySourceIsTheHeaderAlone) {
    EXPECT_EQ(dumpOf(""), sourceHeader);
}

TEST(PrintShader, NullSourceIsNull) {
    EXPECT_EQ(dumpOf(nullptr), std::string(sourceHeader) + "   1: (null)\n");
}

TEST(PrintShader, NumbersAreAlignedAndGrow) {
    std::string source;
    std::string expected = sourceHeader;
    for (int i = 1; i <= 10001; ++i) {
        source += "x\n";
        const std::string number = std::to_string(i);
        expected += std::string(4 - std::min<std::size_t>(4, number.size()), ' ');
        expected += number;
        expected += ": x\n";
    }
    EXPECT_EQ(dumpOf(source.c_str()), expected);
}

TEST(PrintShader, LongLinesAreNotCut) {
    const std::string line(10000, 'x');
    EXPECT_EQ(dumpOf((line + "\n%" + line).c_str()),
              sourceHeader + ("   1: " + line + "\n   2: %" + line + "\n"));
}

TEST(PrintShader, PercentSignsAreThoseOfAFormatWithoutArguments) {
    EXPECT_EQ(dumpOf("i %% 2\n%d %s %n %\n%%%%d\n%%%d\n%-5.2f%%"),
              std::string(sourceHeader) + "   1: i % 2\n   2: %d %s %n %\n   3: %%d\n   4: %%d\n"
                                          "   5: %-5.2f%\n");
}

TEST(PrintShader, CarriageReturnsStay) {
    EXPECT_EQ(dumpOf("a\r\nb"), std::string(sourceHeader) + "   1: a\r\n   2: b\n");
}

TEST(PrintShader, NumberHasALineOfItsOwnTitle) {
    EXPECT_EQ(dumpOf("title: text"), std::string(sourceHeader) + "   1: title: text\n");
}

/// A program with a vertex and a fragment shader: names 1 to 3.
class DumpsTrace : public testing::Test {
protected:
    DumpsTrace()
        : vertex(makeShader(GL_VERTEX_SHADER, "vertex\n")),
          fragment(makeShader(GL_FRAGMENT_SHADER, "fragment\n")),
          program(glCreateProgram()) {
        glAttachShader(program, vertex);
        glAttachShader(program, fragment);
        gl.forget();
    }

    unsigned int makeShader(unsigned int type, const char* source) {
        const unsigned int shader = glCreateShader(type);
        glShaderSource(shader, 1, &source, nullptr);
        return shader;
    }

    FakeGl gl;
    unsigned int vertex;
    unsigned int fragment;
    unsigned int program;
};

TEST_F(DumpsTrace, SourceOfAShaderComesFromGl) {
    EXPECT_EQ(stderrOf([&] { print_shader(vertex); }),
              std::string(sourceHeader) + "   1: vertex\n");
    EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_SHADER_SOURCE_LENGTH, out)",
                    "glGetShaderSource(1, 24, null, out)");
}

TEST_F(DumpsTrace, SourceOfAnInvalidNameIsTheHeaderAlone) {
    gl.refuse(GL_SHADER_SOURCE_LENGTH);
    gl.answer(glad_glGetShaderSource, [](GLuint, GLsizei, GLsizei*, GLchar*) {});
    EXPECT_EQ(stderrOf([&] { print_shader(77u); }), sourceHeader);
    EXPECT_GL_CALLS(gl, "glGetShaderiv(77, GL_SHADER_SOURCE_LENGTH, out)",
                    "glGetShaderSource(77, 16, null, out)");
}

TEST_F(DumpsTrace, NegativeLengthsAreNone) {
    gl.setState(GL_SHADER_SOURCE_LENGTH, {-5});
    gl.setState(GL_INFO_LOG_LENGTH, {-5});
    EXPECT_EQ(stderrOf([&] { print_shader(77u); }), sourceHeader);
    EXPECT_EQ(stderrOf([&] {
                  print_shader_compilation_info(vertex);
                  print_program_link_info(program);
              }),
              "");
    gl.ignoreTheRest();
}

TEST_F(DumpsTrace, ShadersOfAProgramAreChosenByTheirType) {
    EXPECT_EQ(stderrOf([&] { print_vertex_shader(program); }),
              std::string(sourceHeader) + "   1: vertex\n");
    EXPECT_GL_CALLS(gl, "glGetAttachedShaders(3, 32, out, out)",
                    "glGetShaderiv(1, GL_SHADER_TYPE, out)",
                    "glGetShaderiv(1, GL_SHADER_SOURCE_LENGTH, out)",
                    "glGetShaderSource(1, 24, null, out)", "glGetShaderiv(2, GL_SHADER_TYPE, out)");
    EXPECT_EQ(stderrOf([&] { print_fragment_shader(program); }),
              std::string(sourceHeader) + "   1: fragment\n");
    EXPECT_GL_CALLS(
        gl, "glGetAttachedShaders(3, 32, out, out)", "glGetShaderiv(1, GL_SHADER_TYPE, out)",
        "glGetShaderiv(2, GL_SHADER_TYPE, out)", "glGetShaderiv(2, GL_SHADER_SOURCE_LENGTH, out)",
        "glGetShaderSource(2, 26, null, out)");
    EXPECT_EQ(stderrOf([&] { print_shader(program, GL_GEOMETRY_SHADER); }), "");
    gl.forget();
}

TEST_F(DumpsTrace, ShadersOfOneTypeArePrintedInTheOrderOfGlUpTo32) {
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        const std::string source = "v" + std::to_string(i);
        glAttachShader(program, makeShader(GL_VERTEX_SHADER, source.c_str()));
        if (i < 30) // two shaders are there already
            expected += sourceHeader + ("   1: " + source + "\n");
    }
    gl.forget();
    EXPECT_EQ(stderrOf([&] { print_vertex_shader(program); }),
              sourceHeader + ("   1: vertex\n" + expected));
    gl.forget();
}

TEST_F(DumpsTrace, MoreShadersThanThereIsRoomForAreNotRead) {
    gl.answer(glad_glGetAttachedShaders, [&](GLuint, GLsizei, GLsizei* count, GLuint* shaders) {
        *count = 1000; // a driver that counts what it has not stored
        std::fill_n(shaders, 32, vertex);
    });
    const std::string text = stderrOf([&] { print_vertex_shader(program); });
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 64);
    gl.forget();
}

TEST_F(DumpsTrace, ShadersOfAnInvalidProgramAreNone) {
    gl.answer(glad_glGetAttachedShaders, [](GLuint, GLsizei, GLsizei*, GLuint*) {});
    EXPECT_EQ(stderrOf([&] { print_vertex_shader(77); }), "");
    EXPECT_GL_CALLS(gl, "glGetAttachedShaders(77, 32, out, out)");
}

TEST_F(DumpsTrace, ShaderOfWhichGlTellsNoTypeHasType0) {
    gl.answer(glad_glGetShaderiv, [](GLuint, GLenum, GLint*) {});
    EXPECT_EQ(stderrOf([&] { print_shader(program, 1); }), "");
    EXPECT_EQ(gl.countOf("glGetShaderSource"), 0u);
    EXPECT_NE(stderrOf([&] { print_shader(program, 0); }), "");
    EXPECT_EQ(gl.countOf("glGetShaderSource"), 2u);
    gl.forget();
}

TEST_F(DumpsTrace, CompilationLogIsPrintedAsItIs) {
    gl.failToCompile("0:1: error %d\n100%% sure");
    EXPECT_EQ(stderrOf([&] { print_shader_compilation_info(vertex); }),
              "Shader Compilation: 0:1: error %d\n100% sure\n");
    EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_INFO_LOG_LENGTH, out)",
                    "glGetShaderInfoLog(1, 25, null, out)");
}

TEST_F(DumpsTrace, LinkLogIsPrintedAsItIs) {
    const std::string log(10000, 'x');
    gl.failToLink(log);
    EXPECT_EQ(stderrOf([&] { print_program_link_info(program); }),
              "Program Linkage: " + log + "\n");
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_INFO_LOG_LENGTH, out)",
                    "glGetProgramInfoLog(3, 10001, null, out)");
}

TEST_F(DumpsTrace, EmptyLogsPrintNothing) {
    EXPECT_EQ(stderrOf([&] {
                  print_shader_compilation_info(vertex);
                  print_program_link_info(program);
              }),
              "");
    EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_INFO_LOG_LENGTH, out)",
                    "glGetProgramiv(3, GL_INFO_LOG_LENGTH, out)");
}

TEST_F(DumpsTrace, LogsOfInvalidNamesPrintNothing) {
    gl.refuse(GL_INFO_LOG_LENGTH);
    EXPECT_EQ(stderrOf([&] {
                  print_shader_compilation_info(77);
                  print_program_link_info(77);
              }),
              "");
    gl.forget();
}

TEST_F(DumpsTrace, LogThatGlDoesNotWriteIsEmpty) {
    gl.setState(GL_INFO_LOG_LENGTH, {20});
    gl.answer(glad_glGetShaderInfoLog, [](GLuint, GLsizei, GLsizei*, GLchar*) {});
    EXPECT_EQ(stderrOf([&] { print_shader_compilation_info(vertex); }), "Shader Compilation: \n");
    gl.forget();
}

/// A driver that ends no text.
void fill(GLsizei size, GLchar* text) {
    std::fill_n(text, size, 'x');
}

TEST_F(DumpsTrace, TextsWithoutAnEndStayInTheirBuffers) {
    gl.setState(GL_INFO_LOG_LENGTH, {20});
    gl.setState(GL_SHADER_SOURCE_LENGTH, {4});
    gl.answer(glad_glGetShaderInfoLog,
              [](GLuint, GLsizei size, GLsizei*, GLchar* text) { fill(size, text); });
    gl.answer(glad_glGetShaderSource,
              [](GLuint, GLsizei size, GLsizei*, GLchar* text) { fill(size, text); });
    EXPECT_EQ(stderrOf([&] { print_shader_compilation_info(vertex); }),
              "Shader Compilation: " + std::string(20, 'x') + "\n");
    EXPECT_EQ(stderrOf([&] { print_shader(vertex); }),
              sourceHeader + ("   1: " + std::string(20, 'x') + "\n"));
    gl.forget();
}

TEST_F(DumpsTrace, AttributesShowTheirIndexNameAndType) {
    gl.setActiveAttributes({{"pos", GL_FLOAT_VEC3, 1, 5}, {"weight", GL_FLOAT, 1, 2}});
    EXPECT_EQ(stderrOf([&] { print_program_attributes(program); }),
              "Corvane: Attrib: loc = 0, name = pos, type = GL_FLOAT_VEC3\n"
              "Corvane: Attrib: loc = 1, name = weight, type = GL_FLOAT\n");
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTES, out)",
                    "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, out)",
                    "glGetActiveAttrib(3, 0, 7, null, out, out, out)",
                    "glGetActiveAttrib(3, 1, 7, null, out, out, out)");
}

TEST_F(DumpsTrace, UniformsShowTheirIndexNameAndType) {
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4, 1, 5}, {"colors[0]", GL_FLOAT_VEC4, 4, 2}});
    EXPECT_EQ(stderrOf([&] { print_program_uniforms(program); }),
              "Corvane: Uniform: loc = 0, name = mvp, type = GL_FLOAT_MAT4\n"
              "Corvane: Uniform: loc = 1, name = colors[0], type = GL_FLOAT_VEC4\n");
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_ACTIVE_UNIFORMS, out)",
                    "glGetProgramiv(3, GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
                    "glGetActiveUniform(3, 0, 10, null, out, out, out)",
                    "glGetActiveUniform(3, 1, 10, null, out, out, out)");
}

TEST_F(DumpsTrace, EveryTypeOfTheTableHasItsName) {
    const struct {
        unsigned int type;
        const char* name;
    } rows[] = {
        {GL_INT, "GL_INT"},
        {GL_FLOAT, "GL_FLOAT"},
        {GL_FLOAT_VEC2, "GL_FLOAT_VEC2"},
        {GL_FLOAT_VEC3, "GL_FLOAT_VEC3"},
        {GL_FLOAT_VEC4, "GL_FLOAT_VEC4"},
        {GL_INT_VEC2, "GL_INT_VEC2"},
        {GL_INT_VEC3, "GL_INT_VEC3"},
        {GL_INT_VEC4, "GL_INT_VEC4"},
        {GL_BOOL, "GL_BOOL"},
        {GL_BOOL_VEC2, "GL_BOOL_VEC2"},
        {GL_BOOL_VEC3, "GL_BOOL_VEC3"},
        {GL_BOOL_VEC4, "GL_BOOL_VEC4"},
        {GL_FLOAT_MAT2, "GL_FLOAT_MAT2"},
        {GL_FLOAT_MAT3, "GL_FLOAT_MAT3"},
        {GL_FLOAT_MAT4, "GL_FLOAT_MAT4"},
        {GL_SAMPLER_2D, "GL_SAMPLER_2D"},
        {GL_SAMPLER_CUBE, "GL_SAMPLER_CUBE"},
        {GL_SAMPLER_1D, "(null)"},
        {GL_SAMPLER_3D, "(null)"},
        {GL_SAMPLER_2D_SHADOW, "(null)"},
        {GL_UNSIGNED_INT, "(null)"},
        {GL_FLOAT_MAT2x3, "(null)"},
        {0, "(null)"},
    };
    for (const auto& row : rows) {
        gl.setActiveUniforms({{"u", row.type}});
        gl.setActiveAttributes({{"a", row.type}});
        EXPECT_EQ(stderrOf([&] { print_program_uniforms(program); }),
                  std::string("Corvane: Uniform: loc = 0, name = u, type = ") + row.name + "\n");
        EXPECT_EQ(stderrOf([&] { print_program_attributes(program); }),
                  std::string("Corvane: Attrib: loc = 0, name = a, type = ") + row.name + "\n");
    }
    gl.forget();
}

TEST_F(DumpsTrace, LongNamesAreCut) {
    const std::string name(600, 'n');
    gl.setActiveUniforms({{name, GL_INT}});
    EXPECT_EQ(stderrOf([&] { print_program_uniforms(program); }),
              "Corvane: Uniform: " + ("loc = 0, name = " + name).substr(0, 257) + "\n");
    gl.forget();
}

TEST_F(DumpsTrace, NamesWithPercentSignsAreNoFormats) {
    gl.setActiveUniforms({{"%s%n", GL_INT}});
    EXPECT_EQ(stderrOf([&] { print_program_uniforms(program); }),
              "Corvane: Uniform: loc = 0, name = %s%n, type = GL_INT\n");
    gl.forget();
}

TEST_F(DumpsTrace, ProgramWithoutVariablesOrInvalidPrintsNothing) {
    EXPECT_EQ(stderrOf([&] {
                  print_program_attributes(program);
                  print_program_uniforms(program);
              }),
              "");
    for (const int pname : {GL_ACTIVE_ATTRIBUTES, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH,
                            GL_ACTIVE_UNIFORMS, GL_ACTIVE_UNIFORM_MAX_LENGTH})
        gl.refuse(static_cast<GLenum>(pname));
    EXPECT_EQ(stderrOf([&] {
                  print_program_attributes(77);
                  print_program_uniforms(77);
              }),
              "");
    EXPECT_EQ(uniform_type(77, "u"), 0u);
    gl.forget();
}

TEST_F(DumpsTrace, VariableThatGlDoesNotTellIsEmpty) {
    gl.setState(GL_ACTIVE_UNIFORMS, {1});
    gl.setState(GL_ACTIVE_UNIFORM_MAX_LENGTH, {-1});
    EXPECT_EQ(stderrOf([&] { print_program_uniforms(program); }),
              "Corvane: Uniform: loc = 0, name = , type = (null)\n");
    EXPECT_EQ(uniform_type(program, "u"), 0u);
    EXPECT_EQ(uniform_type(program, ""), 0u);
    gl.forget();
}

TEST_F(DumpsTrace, AttribTypeTakesTheLocationForTheIndex) {
    gl.setActiveAttributes({{"first", GL_FLOAT_VEC2, 1, 1}, {"second", GL_FLOAT_VEC4, 1, 0}});
    EXPECT_EQ(attrib_type(program, "first"), static_cast<unsigned int>(GL_FLOAT_VEC4));
    EXPECT_GL_CALLS(gl, "glGetAttribLocation(3, \"first\")",
                    "glGetActiveAttrib(3, 1, 0, null, out, out, null)");
    EXPECT_EQ(attrib_type(program, "second"), static_cast<unsigned int>(GL_FLOAT_VEC2));
    gl.forget();
}

TEST_F(DumpsTrace, AttribTypeOfAnUnknownNameIsZero) {
    gl.setActiveAttributes({{"first", GL_FLOAT_VEC2}});
    EXPECT_EQ(attrib_type(program, "none"), 0u);
    EXPECT_GL_CALLS(gl, "glGetAttribLocation(3, \"none\")",
                    "glGetActiveAttrib(3, 4294967295, 0, null, out, out, null)");
    EXPECT_EQ(attrib_type(program, nullptr), 0u);
    EXPECT_GL_CALLS(gl);
}

TEST_F(DumpsTrace, UniformTypeFindsByName) {
    gl.setActiveUniforms({{"mvp", GL_FLOAT_MAT4}, {"color", GL_FLOAT_VEC4}, {"mv", GL_FLOAT_MAT3}});
    EXPECT_EQ(uniform_type(program, "color"), static_cast<unsigned int>(GL_FLOAT_VEC4));
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
                    "glGetProgramiv(3, GL_ACTIVE_UNIFORMS, out)",
                    "glGetActiveUniform(3, 0, 6, out, out, out, out)",
                    "glGetActiveUniform(3, 1, 6, out, out, out, out)");
    EXPECT_EQ(uniform_type(program, "mv"), static_cast<unsigned int>(GL_FLOAT_MAT3));
    EXPECT_EQ(uniform_type(program, "mvp"), static_cast<unsigned int>(GL_FLOAT_MAT4));
    for (const char* unknown : {"", "m", "mvpx", "colors", "Color"})
        EXPECT_EQ(uniform_type(program, unknown), 0u) << unknown;
    gl.forget();
    EXPECT_EQ(uniform_type(program, nullptr), 0u);
    EXPECT_GL_CALLS(gl);
}

TEST_F(DumpsTrace, UniformTypeIsThatOfTheFirstThatAnswers) {
    gl.setActiveUniforms({{"lights[0]", GL_FLOAT_VEC3, 4}, {"lightsOn", GL_BOOL, 1}});
    EXPECT_EQ(uniform_type(program, "lightsOn"), static_cast<unsigned int>(GL_FLOAT_VEC3));
    gl.setActiveUniforms({{"lightsOn", GL_BOOL, 1}, {"lights[0]", GL_FLOAT_VEC3, 4}});
    EXPECT_EQ(uniform_type(program, "lightsOn"), static_cast<unsigned int>(GL_BOOL));
    gl.forget();
}

TEST_F(DumpsTrace, UniformTypeFindsArraysByTheStartOfTheName) {
    gl.setActiveUniforms({{"lights[0]", GL_FLOAT_VEC3, 4},
                          {"fog.colors", GL_FLOAT_VEC4, 2},
                          {"bare", GL_INT, 2},
                          {"one[0]", GL_INT_VEC2, 1},
                          {"none[0]", GL_INT_VEC3, 0}});
    for (const char* name : {"lights", "lights[0]", "lights[3]", "lightsOfTheCity"})
        EXPECT_EQ(uniform_type(program, name), static_cast<unsigned int>(GL_FLOAT_VEC3)) << name;
    for (const char* name : {"fog", "fog.colors", "foggy"})
        EXPECT_EQ(uniform_type(program, name), static_cast<unsigned int>(GL_FLOAT_VEC4)) << name;
    for (const char* name : {"light", "l", "", "bare", "one", "none[0]", "none"})
        EXPECT_EQ(uniform_type(program, name), 0u) << name;
    EXPECT_EQ(uniform_type(program, "one[0]"), static_cast<unsigned int>(GL_INT_VEC2))
        << "an array of one element has a name like any other";
    gl.forget();
}

} // namespace

/// The dumps on a driver.

#include <vellis/engine/dumps.hpp>

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/engine/diagnostics.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>

#include "support/render_test.hpp"
#include "support/run_program.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using namespace vellis::internal;

using vellis::test::stderrOf;

const char* const vertexSource = "attribute vec3 pos;\n"
                                 "uniform mat4 mvp;\n"
                                 "void main() { gl_Position = mvp * vec4(pos, 1.0); }\n";
const char* const fragmentSource =
    "uniform vec4 lights[4];\n"
    "uniform int chosen;\n"
    "uniform sampler2D image;\n"
    "uniform sampler1D ramp;\n"
    "void main() {\n"
    "    gl_FragColor = lights[chosen] * texture2D(image, vec2(0.5))\n"
    "                   * texture1D(ramp, 0.5);\n"
    "}\n";

class DumpsRender : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (HasFatalFailure())
            return;
        vertex = VertexShader::make(vertexSource);
        fragment = FragmentShader::make(fragmentSource);
        program = Program::make(vertex, fragment);
        ASSERT_FALSE(program->hasLinkError());
    }
    void TearDown() override {
        program.reset();
        vertex.reset();
        fragment.reset();
        RenderTest::TearDown();
    }

    /// Takes all errors from GL's queue, and expects that there is one.
    static void expectError() {
        EXPECT_NE(check_glerror(), nullptr);
        while (check_glerror() != nullptr) {
        }
    }

    std::shared_ptr<VertexShader> vertex;
    std::shared_ptr<FragmentShader> fragment;
    std::shared_ptr<Program> program;
};

std::string glString(GLenum name) {
    return reinterpret_cast<const char*>(glGetString(name));
}

TEST_F(DumpsRender, InfoIsWhatTheDriverSays) {
    EXPECT_EQ(stderrOf(print_gl_info), "Corvane: OpenGL vendor: " + glString(GL_VENDOR) +
                                           "\nCorvane: OpenGL renderer: " + glString(GL_RENDERER) +
                                           "\nCorvane: OpenGL version: " + glString(GL_VERSION) +
                                           "\nCorvane: OpenGL GLSL version: " +
                                           glString(GL_SHADING_LANGUAGE_VERSION) + "\n");
}

TEST_F(DumpsRender, ExtensionsAreTheStartOfTheDriversList) {
    const std::string message = "OpenGL extensions: " + extensionNames();
    EXPECT_EQ(stderrOf(print_gl_extensions), "Corvane: " + message.substr(0, 276) + "\n");
}

TEST_F(DumpsRender, CapsAreNineteenLinesThatTheDriverKnows) {
    if (!knows(GL_MAX_RECTANGLE_TEXTURE_SIZE))
        GTEST_SKIP() << "the context lacks GL_MAX_RECTANGLE_TEXTURE_SIZE";
    const std::vector<std::string> text = lines(stderrOf(print_gl_caps));
    ASSERT_EQ(text.size(), 19u);
    GLint textureSize = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &textureSize);
    EXPECT_EQ(text[0], "Corvane: MAX_TEXTURE_SIZE = " + std::to_string(textureSize));
    EXPECT_EQ(check_glerror(), nullptr);
}

TEST_F(DumpsRender, SourcesComeFromGl) {
    const std::string header = "Corvane: Shader Source Code\n";
    EXPECT_EQ(stderrOf([&] { print_shader(vertex->id()); }),
              header + "   1: attribute vec3 pos;\n"
                       "   2: uniform mat4 mvp;\n"
                       "   3: void main() { gl_Position = mvp * vec4(pos, 1.0); }\n");
    EXPECT_EQ(stderrOf([&] { print_vertex_shader(program->id()); }),
              stderrOf([&] { print_shader(vertexSource); }));
    EXPECT_EQ(stderrOf([&] { print_fragment_shader(program->id()); }),
              stderrOf([&] { print_shader(fragmentSource); }));
}

TEST_F(DumpsRender, SourceHasThePreambleThatTheCompilerSaw) {
    const auto portable = FragmentShader::make("DECL_OUT0;\nvoid main() { OUT0 = vec4(1.0); }",
                                               Shader::Version::V210);
    ASSERT_FALSE(portable->hasCompilationError());
    const std::vector<std::string> text = lines(stderrOf([&] { print_shader(portable->id()); }));
    ASSERT_GT(text.size(), 3u);
    EXPECT_EQ(text[1].substr(0, 6), "   1: ");
    EXPECT_NE(text[1].find(isCore() ? "#version 150" : "#version 120"), std::string::npos);
    EXPECT_NE(text.back().find("void main() { OUT0 = vec4(1.0); }"), std::string::npos);
}

TEST_F(DumpsRender, CleanShadersAndProgramsHaveNoLog) {
    EXPECT_EQ(stderrOf([&] {
                  print_shader_compilation_info(vertex->id());
                  print_program_link_info(program->id());
              }),
              "");
}

TEST_F(DumpsRender, LogsOfFailuresArePrinted) {
    const auto broken = FragmentShader::make("void main() { nonsense; }");
    ASSERT_TRUE(broken->hasCompilationError());
    const std::string text = stderrOf([&] { print_shader_compilation_info(broken->id()); });
    EXPECT_EQ(text.substr(0, 20), "Shader Compilation: ");
    EXPECT_NE(text.find("nonsense"), std::string::npos) << text;

    const auto unlinked = Program::make(vertex, broken);
    ASSERT_TRUE(unlinked->hasLinkError());
    const std::string log = stderrOf([&] { print_program_link_info(unlinked->id()); });
    EXPECT_EQ(log.substr(0, 17), "Program Linkage: ");
    expectError(); // the program is of no use
}

TEST_F(DumpsRender, LogsAreWhatTheShaderAndTheProgramGive) {
    EXPECT_EQ(vertex->compilationLog(), "");
    EXPECT_EQ(program->linkLog(), "");

    const auto broken = FragmentShader::make("void main() { nonsense; }");
    EXPECT_NE(broken->compilationLog().find("nonsense"), std::string::npos);
    EXPECT_EQ("Shader Compilation: " + broken->compilationLog() + "\n",
              stderrOf([&] { print_shader_compilation_info(broken->id()); }));

    const auto unlinked = Program::make(vertex, broken);
    expectError(); // the program is of no use
    EXPECT_NE(unlinked->linkLog(), "");
    EXPECT_EQ("Program Linkage: " + unlinked->linkLog() + "\n",
              stderrOf([&] { print_program_link_info(unlinked->id()); }));

    unlinked->dispose();
    EXPECT_EQ(unlinked->linkLog(), "");
    expectError(); // for the name 0
}

TEST_F(DumpsRender, AttributesArePrinted) {
    EXPECT_EQ(stderrOf([&] { print_program_attributes(program->id()); }),
              "Corvane: Attrib: loc = 0, name = pos, type = GL_FLOAT_VEC3\n");
}

TEST_F(DumpsRender, UniformsArePrinted) {
    const std::string text = stderrOf([&] { print_program_uniforms(program->id()); });
    EXPECT_EQ(lines(text).size(), 5u);
    // Which index a uniform has is the driver's choice.
    for (const char* end :
         {", name = mvp, type = GL_FLOAT_MAT4\n", ", name = lights[0], type = GL_FLOAT_VEC4\n",
          ", name = chosen, type = GL_INT\n", ", name = image, type = GL_SAMPLER_2D\n",
          ", name = ramp, type = (null)\n"})
        EXPECT_NE(text.find(end), std::string::npos) << end << text;
}

TEST_F(DumpsRender, TypesAreFoundByName) {
    EXPECT_EQ(attrib_type(program->id(), "pos"), static_cast<unsigned int>(GL_FLOAT_VEC3));
    EXPECT_EQ(uniform_type(program->id(), "mvp"), static_cast<unsigned int>(GL_FLOAT_MAT4));
    EXPECT_EQ(uniform_type(program->id(), "lights"), static_cast<unsigned int>(GL_FLOAT_VEC4));
    EXPECT_EQ(uniform_type(program->id(), "ramp"), static_cast<unsigned int>(GL_SAMPLER_1D));
    EXPECT_EQ(uniform_type(program->id(), "none"), 0u);
    EXPECT_EQ(attrib_type(program->id(), nullptr), 0u);
    EXPECT_EQ(uniform_type(program->id(), nullptr), 0u);
    EXPECT_EQ(check_glerror(), nullptr);
}

TEST_F(DumpsRender, TypeOfAnUnknownAttributeIsZeroAndAnError) {
    EXPECT_EQ(attrib_type(program->id(), "none"), 0u);
    EXPECT_STREQ(check_glerror(), "GL_INVALID_VALUE");
}

TEST_F(DumpsRender, ProgramWithoutAttributesPrintsNone) {
    const auto bare = Program::make("void main() { gl_Position = vec4(0.0); }",
                                    "void main() { gl_FragColor = vec4(1.0); }");
    ASSERT_FALSE(bare->hasLinkError());
    EXPECT_EQ(stderrOf([&] {
                  print_program_attributes(bare->id());
                  print_program_uniforms(bare->id());
              }),
              "");
    EXPECT_EQ(uniform_type(bare->id(), "mvp"), 0u);
}

TEST_F(DumpsRender, InvalidNamesPrintNothingOrTheHeaderAlone) {
    constexpr unsigned int none = 123456;
    EXPECT_EQ(stderrOf([&] { print_shader(none); }), "Corvane: Shader Source Code\n");
    expectError();
    EXPECT_EQ(stderrOf([&] {
                  print_vertex_shader(none);
                  print_fragment_shader(none);
                  print_shader_compilation_info(none);
                  print_program_link_info(none);
                  print_program_attributes(none);
                  print_program_uniforms(none);
              }),
              "");
    expectError();
    EXPECT_EQ(attrib_type(none, "pos"), 0u);
    EXPECT_EQ(uniform_type(none, "mvp"), 0u);
    expectError();
}

} // namespace

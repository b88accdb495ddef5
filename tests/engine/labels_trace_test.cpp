/// Labels: what GL is told, and where the library's own output shows them.

#include <vellis/engine/labels.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using internal::label;
using internal::label_of;
using test::FakeContext;
using test::FakeGl;
using test::stderrOf;
using Lines = std::vector<std::string>;
using Floats = VertexAttributeBuffer<float>;

std::shared_ptr<Floats> makeFloats() {
    return Floats::make(1, BufferUsage::Static, BufferAccess::Draw);
}

/// The lines of \p text that have \p word in them.
Lines linesWith(const std::string& text, const std::string& word) {
    Lines lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         end = text.find('\n', begin)) {
        const std::string line = text.substr(begin, end - begin);
        if (line.find(word) != std::string::npos)
            lines.push_back(line);
        begin = end + 1;
    }
    return lines;
}

/// What the tracked states say is bound to `GL_TEXTURE_2D`.
std::string boundTextureLine() {
    const Lines lines = linesWith(stderrOf(internal::print_gl_states), "TEXTURE_BINDING_2D =");
    return lines.size() == 1 ? lines.front() : "";
}

class LabelsTrace : public testing::Test {
protected:
    ~LabelsTrace() override { gl.ignoreTheRest(); }

    FakeGl gl;
};

TEST_F(LabelsTrace, EveryClassThatOwnsANameTellsItToGl) {
    const auto buffer = makeFloats();
    const auto texture = Texture2D<float>::make(1, 1);
    const auto renderbuffer = Renderbuffer<float>::make(1, 1);
    const auto shader = VertexShader::make("");
    const auto program = Program::make();
    program->beginAttributesBinding();
    const auto binding = program->finishAttributesBinding();
    gl.forget();
    EXPECT_TRUE(label(*buffer, "a"));
    EXPECT_TRUE(label(*texture, "b"));
    EXPECT_TRUE(label(*renderbuffer, "c"));
    EXPECT_TRUE(label(*shader, "d"));
    EXPECT_TRUE(label(*program, "e"));
    EXPECT_TRUE(label(*binding, "f"));
    EXPECT_GL_CALLS(
        gl, "glObjectLabel(GL_BUFFER, 1, 1, \"a\")", "glObjectLabel(GL_TEXTURE, 2, 1, \"b\")",
        "glObjectLabel(GL_RENDERBUFFER, 3, 1, \"c\")", "glObjectLabel(GL_SHADER, 4, 1, \"d\")",
        "glObjectLabel(GL_PROGRAM, 5, 1, \"e\")", "glObjectLabel(GL_VERTEX_ARRAY, 6, 1, \"f\")");
    EXPECT_EQ(label_of(*buffer), "a");
    EXPECT_EQ(label_of(texture), "b");
    EXPECT_EQ(label_of(*renderbuffer), "c");
    EXPECT_EQ(label_of(shader), "d");
    EXPECT_EQ(label_of(*program), "e");
    EXPECT_EQ(label_of(binding), "f");
}

TEST_F(LabelsTrace, ADrawableGivesItsVertexArrayOne) {
    const auto program = Program::make();
    const auto points = drawable::Points<VertexAttribute<float>>::make(
        program, VertexAttribute<float>("x", makeFloats()));
    gl.forget();
    EXPECT_TRUE(label(points, "points"));
    EXPECT_GL_CALLS(gl, "glObjectLabel(GL_VERTEX_ARRAY, 3, 6, \"points\")");
    EXPECT_EQ(label_of(*points->getAttributesBinding()), "points");
    EXPECT_EQ(label_of(points), "points");
}

TEST_F(LabelsTrace, AFramebufferThatWasNotBoundIsBoundForAMoment) {
    const auto framebuffer = Framebuffer::make();
    gl.setState(GL_DRAW_FRAMEBUFFER_BINDING, {7});
    gl.answer(glad_glIsFramebuffer, [](GLuint) { return GLboolean{GL_FALSE}; });
    gl.forget();
    EXPECT_TRUE(label(framebuffer, "mirror"));
    EXPECT_GL_CALLS(gl, "glIsFramebuffer(1)", "glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, out)",
                    "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 1)",
                    "glObjectLabel(GL_FRAMEBUFFER, 1, 6, \"mirror\")",
                    "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 7)");
    gl.answer(glad_glIsFramebuffer, [](GLuint) { return GLboolean{GL_TRUE}; });
    EXPECT_TRUE(label(framebuffer, "lake"));
    EXPECT_GL_CALLS(gl, "glIsFramebuffer(1)", "glObjectLabel(GL_FRAMEBUFFER, 1, 4, \"lake\")");
    EXPECT_EQ(label_of(framebuffer), "lake");
}

TEST_F(LabelsTrace, NullAndEmptyTextsTakeItAway) {
    const auto buffer = makeFloats();
    for (const char* none : {static_cast<const char*>(nullptr), ""}) {
        label(buffer, "a");
        gl.forget();
        EXPECT_TRUE(label(buffer, none));
        EXPECT_EQ(label_of(buffer), "");
        EXPECT_GL_CALLS(gl, "glObjectLabel(GL_BUFFER, 1, 0, null)");
    }
}

TEST_F(LabelsTrace, WhatHasNoNameGetsNone) {
    const auto framebuffer = Framebuffer::makeNull();
    auto texture = Texture2D<float>::make(1, 1);
    texture->dispose();
    const auto program = Program::make();
    program->dispose();
    struct WithoutBinding : Drawable {
        WithoutBinding() : Drawable(PrimitiveType::Points) {}
    } drawable;
    gl.forget();
    EXPECT_FALSE(label(framebuffer, "a"));
    EXPECT_FALSE(label(texture, "a"));
    EXPECT_FALSE(label(program, "a"));
    EXPECT_FALSE(label(drawable, "a"));
    EXPECT_FALSE(label(std::shared_ptr<Program>(), "a"));
    EXPECT_EQ(label_of(std::shared_ptr<Program>()), "");
    EXPECT_EQ(label_of(texture), "");
    EXPECT_EQ(label_of(drawable), "");
    EXPECT_GL_CALLS(gl);
}

TEST_F(LabelsTrace, WithoutTheExtensionOnlyTheLibraryKnowsThem) {
    gl.remove(glad_glObjectLabel);
    const auto texture = Texture2D<float>::make(1, 1);
    const auto framebuffer = Framebuffer::make();
    gl.forget();
    EXPECT_TRUE(label(texture, "shadow map"));
    EXPECT_TRUE(label(framebuffer, "shadows"));
    EXPECT_GL_CALLS(gl);
    gl.setState(GL_TEXTURE_BINDING_2D, {1});
    EXPECT_EQ(boundTextureLine(), "Corvane: TEXTURE_BINDING_2D = 1 'shadow map'");
}

TEST_F(LabelsTrace, GlGetsWhatItTakesAndEndsWithAWholeCharacter) {
    int numBytes = 0;
    gl.answer(glad_glObjectLabel,
              [&](GLenum, GLuint, GLsizei length, const GLchar*) { numBytes = length; });
    gl.setState(GL_MAX_LABEL_LENGTH, {256});
    const auto buffer = makeFloats();
    gl.forget();
    const std::string fits(255, 'x');
    label(buffer, fits.c_str());
    EXPECT_EQ(numBytes, 255);
    EXPECT_EQ(gl.takeCalls().size(), 1u) << "which asks for no limit";

    const std::string cut = std::string(253, 'x') + "\xF0\x9F\x8C\x8A and more"; // a wave
    label(buffer, cut.c_str());
    EXPECT_EQ(numBytes, 253);
    EXPECT_EQ(label_of(buffer), cut);
    EXPECT_EQ(gl.countOf("glGetIntegerv"), 1u);

    gl.setState(GL_MAX_LABEL_LENGTH, {300});
    label(buffer, std::string(400, 'x').c_str());
    EXPECT_EQ(numBytes, 299);
    gl.setState(GL_MAX_LABEL_LENGTH, {0});
    label(buffer, std::string(400, 'x').c_str());
    EXPECT_EQ(numBytes, 255) << "which every GL takes";
}

TEST_F(LabelsTrace, ItEndsWithItsObject) {
    gl.setState(GL_TEXTURE_BINDING_2D, {1});
    gl.setState(GL_CURRENT_PROGRAM, {3});
    auto texture = Texture2D<float>::make(1, 1);
    auto buffer = makeFloats();
    auto program = Program::make();
    label(texture, "a");
    label(buffer, "b");
    label(program, "c");
    EXPECT_EQ(boundTextureLine(), "Corvane: TEXTURE_BINDING_2D = 1 'a'");
    EXPECT_EQ(label_of(Program::current()), "c");
    buffer.reset();
    EXPECT_EQ(boundTextureLine(), "Corvane: TEXTURE_BINDING_2D = 1 'a'");
    texture.reset();
    EXPECT_EQ(boundTextureLine(), "Corvane: TEXTURE_BINDING_2D = 1");
    EXPECT_EQ(label_of(Program::current()), "c");
    program.reset();
    EXPECT_EQ(label_of(Program::current()), "");
}

TEST_F(LabelsTrace, DifferencesOfTheTrackedStatesShowThem) {
    const auto texture = Texture2D<float>::make(1, 1);
    label(texture, "noise");
    gl.setState(GL_TEXTURE_BINDING_2D, {0});
    stderrOf(internal::diff_gl_states);
    gl.setState(GL_TEXTURE_BINDING_2D, {1});
    EXPECT_EQ(stderrOf(internal::diff_gl_states),
              "Corvane DIFF : TEXTURE_BINDING_2D = 0 -> 1 'noise'\n");
}

TEST_F(LabelsTrace, StatesThatAreNoNamesStayAsTheyAre) {
    const auto texture = Texture2D<float>::make(1, 1);
    label(texture, "noise");
    gl.setState(GL_STENCIL_CLEAR_VALUE, {1});
    gl.setState(GL_RENDERBUFFER_BINDING, {1}); // another kind
    const std::string text = stderrOf(internal::print_gl_states);
    EXPECT_EQ(linesWith(text, "'"), Lines());
    EXPECT_EQ(linesWith(text, "STENCIL_CLEAR"), Lines{"Corvane: STENCIL_CLEAR_VALUE = 1"});
}

TEST_F(LabelsTrace, EveryBindingThatIsPrintedShowsThatOfItsKind) {
    const auto texture = Texture2D<float>::make(1, 1);
    const auto renderbuffer = Renderbuffer<float>::make(1, 1);
    const auto program = Program::make();
    program->beginAttributesBinding();
    const auto binding = program->finishAttributesBinding();
    label(texture, "noise");
    label(renderbuffer, "depth");
    label(*binding, "quad");
    const auto nameOf = [](const auto& object) { return static_cast<GLint>(object->id()); };
    const std::pair<GLenum, const char*> textures[] = {
        {GL_TEXTURE_BINDING_1D, "TEXTURE_BINDING_1D ="},
        {GL_TEXTURE_BINDING_1D_ARRAY, "TEXTURE_BINDING_1D_ARRAY ="},
        {GL_TEXTURE_BINDING_2D, "TEXTURE_BINDING_2D ="},
        {GL_TEXTURE_BINDING_2D_ARRAY, "TEXTURE_BINDING_2D_ARRAY ="},
        {GL_TEXTURE_BINDING_3D, "TEXTURE_BINDING_3D ="},
        {GL_TEXTURE_BINDING_CUBE_MAP, "TEXTURE_BINDING_CUBE_MAP ="},
        {GL_TEXTURE_BINDING_RECTANGLE, "TEXTURE_BINDING_RECTANGLE ="},
    };
    for (const auto& row : textures)
        gl.setState(row.first, {nameOf(texture)});
    gl.setState(GL_RENDERBUFFER_BINDING, {nameOf(renderbuffer)});
    gl.setState(GL_VERTEX_ARRAY_BINDING, {nameOf(binding)});
    const std::string text = stderrOf(internal::print_gl_states);
    const auto expectLabel = [&](const char* state, const std::string& expected) {
        const Lines lines = linesWith(text, state);
        ASSERT_EQ(lines.size(), 1u) << state;
        EXPECT_NE(lines[0].find("'" + expected + "'"), std::string::npos) << lines[0];
    };
    for (const auto& row : textures)
        expectLabel(row.second, "noise");
    expectLabel("RENDERBUFFER_BINDING =", "depth");
    expectLabel("VERTEX_ARRAY_BINDING =", "quad");
}

TEST_F(LabelsTrace, DumpsOfShadersAndProgramsShowThem) {
    gl.setCompileLog("a warning");
    gl.setLinkLog("another");
    gl.setActiveUniforms({{"color", GL_FLOAT_VEC4}});
    gl.setActiveAttributes({{"position", GL_FLOAT_VEC2}});
    const auto shader = VertexShader::make("x");
    const auto program = Program::make();
    const auto dump = [&] {
        internal::print_shader(shader->id());
        internal::print_shader_compilation_info(shader->id());
        internal::print_program_link_info(program->id());
        internal::print_program_attributes(program->id());
        internal::print_program_uniforms(program->id());
    };
    EXPECT_EQ(stderrOf(dump), "Corvane: Shader Source Code\n"
                              "   1: x\n"
                              "Shader Compilation: a warning\n"
                              "Program Linkage: another\n"
                              "Corvane: Attrib: loc = 0, name = position, type = GL_FLOAT_VEC2\n"
                              "Corvane: Uniform: loc = 0, name = color, type = GL_FLOAT_VEC4\n");
    label(shader, "100%%");
    label(program, "water %s");
    EXPECT_EQ(stderrOf(dump),
              "Corvane: Shader Source Code of 1 '100%%'\n"
              "   1: x\n"
              "Shader Compilation of 1 '100%%': a warning\n"
              "Program Linkage of 2 'water %s': another\n"
              "Corvane: Attrib of 2 'water %s': loc = 0, name = position, type = GL_FLOAT_VEC2\n"
              "Corvane: Uniform of 2 'water %s': loc = 0, name = color, type = GL_FLOAT_VEC4\n");
}

TEST_F(LabelsTrace, APictureGivesItsBuffersOne) {
    const auto canvas = Canvas::make();
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawTriangles(glm::vec4(1.f), std::vector<glm::vec2>(3));
    canvas->drawPoints(glm::vec4(1.f), 4.f, std::vector<glm::vec2>(1));
    const auto picture = canvas->endPicture();
    canvas->beginPicture(glm::mat4(1.f));
    const auto empty = canvas->endPicture();
    gl.forget();
    EXPECT_TRUE(label(picture, "map"));
    EXPECT_EQ(gl.countOf("glObjectLabel"), 2u);
    EXPECT_EQ(label_of(picture), "map");
    EXPECT_FALSE(label(empty, "map"));
    EXPECT_EQ(label_of(empty), "");
}

TEST_F(LabelsTrace, ObjectsOfAnotherContextGetNoneThere) {
    internal::check_context(); // what earlier tests of this process have used
    FakeContext first;
    FakeContext second;
    first.makeCurrent();
    auto one = Context::make(FakeGl::lookUp);
    const auto buffer = makeFloats();
    label(buffer, "a");
    second.makeCurrent();
    auto other = Context::make(FakeGl::lookUp);
    second.forget();
    EXPECT_FALSE(label(buffer, "b"));
    EXPECT_EQ(label_of(buffer), "");
    EXPECT_EQ(internal::check_context(), nullptr) << "nothing was used";
    EXPECT_GL_CALLS(second);
    first.makeCurrent();
    one->use();
    EXPECT_EQ(label_of(buffer), "a");
    one->abandon();
    EXPECT_FALSE(label(buffer, "c"));
    EXPECT_EQ(label_of(buffer), "");
    other->abandon();
    first.ignoreTheRest();
    second.ignoreTheRest();
    gl.makeCurrent();
}

TEST_F(LabelsTrace, ContextsThatShareKnowThemUntilTheLastIsGone) {
    FakeContext first;
    FakeContext second(&first);
    first.makeCurrent();
    auto one = Context::make(FakeGl::lookUp);
    const auto texture = Texture2D<float>::make(1, 1);
    const auto framebuffer = Framebuffer::make();
    label(texture, "a");
    label(framebuffer, "b");
    second.makeCurrent();
    auto other = Context::make(*one, FakeGl::lookUp);
    EXPECT_EQ(label_of(texture), "a");
    EXPECT_EQ(label_of(framebuffer), "");
    one->abandon();
    EXPECT_EQ(label_of(texture), "a");
    other->dispose();
    EXPECT_EQ(label_of(texture), "");
    first.ignoreTheRest();
    second.ignoreTheRest();
    gl.makeCurrent();
}

} // namespace

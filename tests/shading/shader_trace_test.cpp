// needs: private access

#include <vellis/shading/shader.hpp>

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::FragmentShader;
using vellis::Shader;
using vellis::VertexShader;
using vellis::test::FakeGl;

const std::string vertexMacros = "#if __VERSION__ >= 130 \n#define IN in \n#define OUT out \n#else "
                                 "\n#define IN attribute \n#define OUT varying \n#endif \n";
const std::string fragmentMacros =
    "#if __VERSION__ >= 130 \n#define IN in \n#define DECL_OUT0 layout(location = 0) out vec4 "
    "OUT0; "
    "\n#else \n#define IN varying \n#define DECL_OUT0 float null_var_to_avoid_compilation_error "
    "\n#define OUT0 gl_FragColor \n#endif \n";
const std::string source = "void main() { \n} \n";

/// A version, also one that is no enumerator, and the line that it gives.
struct VersionRow {
    unsigned int version;
    const char* line;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const VersionRow& row, std::ostream* out) {
    *out << row.version;
}

static_assert(static_cast<unsigned int>(Shader::Version::V210) == 210);
static_assert(static_cast<unsigned int>(Shader::Version::V330) == 330);
static_assert(static_cast<unsigned int>(Shader::Version::V410) == 410);

class ShaderVersionTrace : public testing::TestWithParam<VersionRow> {
protected:
    Shader::Version version() const { return static_cast<Shader::Version>(GetParam().version); }
    FakeGl gl;
};

TEST_P(ShaderVersionTrace, VertexSourceGetsVersionLineAndMacros) {
    const auto shader = VertexShader::make(source, version());
    EXPECT_EQ(gl.shaderSource(shader->id()), GetParam().line + vertexMacros + source);
    gl.ignoreTheRest();
}

TEST_P(ShaderVersionTrace, FragmentSourceGetsVersionLineAndMacros) {
    const auto shader = FragmentShader::make(source, version());
    EXPECT_EQ(gl.shaderSource(shader->id()), GetParam().line + fragmentMacros + source);
    gl.ignoreTheRest();
}

INSTANTIATE_TEST_SUITE_P(
    Versions, ShaderVersionTrace,
    testing::Values(VersionRow{210, "#version 120 \n"}, VersionRow{330, "#version 330 \n"},
                    VersionRow{410, "#version 410 \n"}, VersionRow{400, "#version 410 \n"},
                    VersionRow{0, "#version 410 \n"}, VersionRow{211, "#version 410 \n"},
                    VersionRow{0xFFFFFFFF, "#version 410 \n"}),
    [](const auto& row) { return std::to_string(row.param.version); });

TEST(ShaderTrace, MacroBlocksHaveTheirLengths) {
    EXPECT_EQ(vertexMacros.size(), 114u);
    EXPECT_EQ(fragmentMacros.size(), 217u);
}

TEST(ShaderTrace, VertexShaderIsCreatedSourcedAndCompiled) {
    FakeGl gl;
    const auto shader = VertexShader::make("void main() {}");
    EXPECT_GL_CALLS(gl, "glCreateShader(GL_VERTEX_SHADER)",
                    "glShaderSource(1, 1, {\"void main() {}\"}, null)", "glCompileShader(1)");
    EXPECT_EQ(shader->id(), 1u);
    gl.ignoreTheRest();
}

TEST(ShaderTrace, FragmentShaderIsCreatedSourcedAndCompiled) {
    FakeGl gl;
    {
        const auto shader = FragmentShader::make("void main() {}");
        EXPECT_GL_CALLS(gl, "glCreateShader(GL_FRAGMENT_SHADER)",
                        "glShaderSource(1, 1, {\"void main() {}\"}, null)", "glCompileShader(1)");
    }
    EXPECT_GL_CALLS(gl, "glDeleteShader(1)");
}

TEST(ShaderTrace, VersionedShaderMakesTheSameThreeCalls) {
    FakeGl gl;
    const auto shader = FragmentShader::make(source, Shader::Version::V330);
    std::vector<std::string> calls = gl.takeCalls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], "glCreateShader(GL_FRAGMENT_SHADER)");
    const auto vertex = VertexShader::make(source, Shader::Version::V330);
    calls = gl.takeCalls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], "glCreateShader(GL_VERTEX_SHADER)");
    gl.ignoreTheRest();
}

TEST(ShaderTrace, CompileStatusIsAskedOnlyWhenTheCallerAsks) {
    FakeGl gl;
    const auto shader = VertexShader::make(source);
    gl.forget();
    EXPECT_FALSE(shader->hasCompilationError());
    EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_COMPILE_STATUS, out)");
    gl.failToCompile();
    EXPECT_TRUE(shader->hasCompilationError());
    gl.ignoreTheRest();
}

TEST(ShaderTrace, StatusThatGlDoesNotTellIsAnError) {
    FakeGl gl;
    const auto shader = VertexShader::make(source);
    gl.answer(glad_glGetShaderiv, [](GLuint, GLenum, GLint*) {});
    EXPECT_TRUE(shader->hasCompilationError());
    gl.answer(glad_glGetShaderiv, [](GLuint, GLenum, GLint* status) { *status = 2; });
    EXPECT_TRUE(shader->hasCompilationError());
    gl.ignoreTheRest();
}

TEST(ShaderTrace, CompilationLogIsAskedFromGl) {
    FakeGl gl;
    const auto shader = VertexShader::make(source);
    gl.failToCompile("0:1: error: 100% wrong\n");
    gl.forget();
    EXPECT_EQ(shader->compilationLog(), "0:1: error: 100% wrong\n");
    EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_INFO_LOG_LENGTH, out)",
                    "glGetShaderInfoLog(1, 24, null, out)");
    gl.ignoreTheRest();
}

TEST(ShaderTrace, CompilationLogIsEmptyWhereGlHasNone) {
    FakeGl gl;
    const auto shader = VertexShader::make(source);
    gl.forget();
    EXPECT_EQ(shader->compilationLog(), "");
    EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_INFO_LOG_LENGTH, out)");
    for (const int length : {-1, 0}) {
        gl.setState(GL_INFO_LOG_LENGTH, {length});
        EXPECT_EQ(shader->compilationLog(), "");
        EXPECT_GL_CALLS(gl, "glGetShaderiv(1, GL_INFO_LOG_LENGTH, out)");
    }
    gl.ignoreTheRest();
}

TEST(ShaderTrace, CompilationLogHasNoMoreThanGlWrites) {
    FakeGl gl;
    const auto shader = VertexShader::make(source);
    gl.setState(GL_INFO_LOG_LENGTH, {100});
    EXPECT_EQ(shader->compilationLog().size(), 0u);
    gl.setCompileLog("short");
    EXPECT_EQ(shader->compilationLog(), "short");
    EXPECT_EQ(shader->compilationLog().size(), 5u);
    gl.ignoreTheRest();
}

TEST(ShaderTrace, CompilationLogOfNoShaderIsEmpty) {
    FakeGl gl;
    gl.failToCreate(glad_glCreateShader);
    const auto shader = VertexShader::make(source);
    gl.setCompileLog("a log of some other shader");
    EXPECT_EQ(shader->compilationLog(), "");
    gl.ignoreTheRest();
}

TEST(ShaderTrace, CopyReportsTheSameNameAndDeletesItAgain) {
    FakeGl gl;
    {
        const auto shader = VertexShader::make(source);
        gl.forget();
        const VertexShader copy = *shader;
        EXPECT_EQ(copy.id(), shader->id());
        auto other = VertexShader::make(source);
        gl.forget();
        *other = *shader;
        EXPECT_EQ(other->id(), shader->id());
        EXPECT_GL_CALLS(gl);
    }
    EXPECT_GL_CALLS(gl, "glDeleteShader(1)", "glDeleteShader(1)", "glDeleteShader(1)");
}

TEST(ShaderTrace, NameThatGlRefusedToMakeIsNeverDeleted) {
    FakeGl gl;
    gl.answer(glad_glCreateShader, [](GLenum) -> GLuint { return 0; });
    gl.failToCompile();
    {
        const auto shader = FragmentShader::make(source);
        EXPECT_EQ(shader->id(), 0u);
        EXPECT_TRUE(shader->hasCompilationError());
    }
    EXPECT_EQ(gl.countOf("glDeleteShader"), 0u);
    gl.ignoreTheRest();
}

TEST(ShaderTrace, EmptySourceIsCompiledAsItStands) {
    FakeGl gl;
    const auto shader = VertexShader::make(std::string());
    EXPECT_EQ(gl.shaderSource(shader->id()), "");
    gl.ignoreTheRest();
}

/// A text of an application's own class, which converts to nothing but a T.
template <class T>
struct ConvertsTo {
    operator T() const { return "text"; }
};

/// Makes shaders from every form that a source can have, all of the same text.
template <class Made, class... Version>
void expectEveryFormToBeTaken(const FakeGl& gl, const std::string& expected, Version... version) {
    const std::string text = "text";
    std::string changeable = "text";
    char array[] = "text";
    char* const characters = array;
    const char* const constants = array;
    const auto expectTaken = [&](const auto& form) {
        EXPECT_EQ(gl.shaderSource(Made::make(form, version...)->id()), expected);
        // The constructors are those of make, for classes that derive from it.
        struct Derived : Made {
            using Made::Made;
        };
        EXPECT_EQ(gl.shaderSource(Derived(form, version...).id()), expected);
    };
    expectTaken(text);
    expectTaken("text");
    expectTaken(array);
    expectTaken(characters);
    expectTaken(constants);
    expectTaken(std::string_view("text and more", 4));
    expectTaken(ConvertsTo<std::string>());
    expectTaken(ConvertsTo<const char*>());
    expectTaken(ConvertsTo<std::string_view>());
    EXPECT_EQ(gl.shaderSource(Made::make(changeable, version...)->id()), expected);
    EXPECT_EQ(gl.shaderSource(Made::make(std::string("text"), version...)->id()), expected);
    std::shared_ptr<Made> (*const documented)(const std::string&, Version...) = &Made::make;
    EXPECT_EQ(gl.shaderSource(documented(text, version...)->id()), expected);
}

TEST(ShaderTrace, SourceMayBeAStringCharactersAViewOrWhatConvertsToOneOfThem) {
    FakeGl gl;
    expectEveryFormToBeTaken<VertexShader>(gl, "text");
    expectEveryFormToBeTaken<FragmentShader>(gl, "text");
    gl.ignoreTheRest();
}

TEST(ShaderTrace, SourceOfAVersionMayBeAStringCharactersAViewOrWhatConvertsToOneOfThem) {
    FakeGl gl;
    expectEveryFormToBeTaken<VertexShader>(gl, "#version 120 \n" + vertexMacros + "text",
                                           Shader::Version::V210);
    expectEveryFormToBeTaken<FragmentShader>(gl, "#version 120 \n" + fragmentMacros + "text",
                                             Shader::Version::V210);
    gl.ignoreTheRest();
}

TEST(ShaderTrace, NullCharactersCountAsAnEmptySource) {
    FakeGl gl;
    const char* const null = nullptr;
    EXPECT_EQ(gl.shaderSource(VertexShader::make(null)->id()), "");
    EXPECT_EQ(gl.shaderSource(FragmentShader::make(nullptr)->id()), "");
    EXPECT_EQ(gl.shaderSource(VertexShader::make(null, Shader::Version::V330)->id()),
              "#version 330 \n" + vertexMacros);
    EXPECT_EQ(gl.shaderSource(FragmentShader::make(null, Shader::Version::V330)->id()),
              "#version 330 \n" + fragmentMacros);
    gl.ignoreTheRest();
}

TEST(ShaderTrace, SourceEndsAtItsFirstNul) {
    FakeGl gl;
    const std::string withNul("one\0two", 7);
    const auto vertex = VertexShader::make(withNul);
    const auto fragment = FragmentShader::make(std::string_view(withNul));
    EXPECT_GL_CALLS(gl, "glCreateShader(GL_VERTEX_SHADER)", "glShaderSource(1, 1, {\"one\"}, null)",
                    "glCompileShader(1)", "glCreateShader(GL_FRAGMENT_SHADER)",
                    "glShaderSource(2, 1, {\"one\"}, null)", "glCompileShader(2)");
    const auto portable = VertexShader::make(withNul, Shader::Version::V410);
    EXPECT_EQ(gl.shaderSource(portable->id()), "#version 410 \n" + vertexMacros + "one");
    gl.ignoreTheRest();
}

TEST(ShaderTrace, NullSourceCountsAsEmpty) {
    FakeGl gl;
    const auto shader = VertexShader::make(source);
    gl.forget();
    shader->compile(nullptr);
    EXPECT_GL_CALLS(gl, "glShaderSource(1, 1, {\"\"}, null)", "glCompileShader(1)");
    gl.ignoreTheRest();
}

} // namespace

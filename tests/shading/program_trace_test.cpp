// needs: private access
// needs: a process for ProgramTrace.CurrentAsksGlOnEveryCallAndIsOneObject
// needs: a process for ProgramTrace.NullIsNeverAskedForAndBindsNothing

#include <vellis/shading/program.hpp>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::Drawable;
using vellis::FragmentShader;
using vellis::IndexBuffer;
using vellis::Program;
using vellis::VertexAttributesBinding;
using vellis::VertexShader;
using vellis::test::FakeGl;

/// A drawable of a given size, with a binding or without.
class Shape : public Drawable {
public:
    explicit Shape(unsigned int numVertices,
                   std::shared_ptr<VertexAttributesBinding> binding = nullptr)
        : Drawable(PrimitiveType::Triangles) {
        numVertices_ = numVertices;
        attributesBinding_ = std::move(binding);
    }
};

/// Shaders 1 (vertex) and 2 (fragment), and program 3 linked from them, whose making is not looked
/// at.
class ProgramTrace : public testing::Test {
protected:
    ProgramTrace()
        : vertexShader(VertexShader::make("v")),
          fragmentShader(FragmentShader::make("f")),
          program(Program::make(vertexShader, fragmentShader)) {
        gl.forget();
    }
    ~ProgramTrace() override {
        EXPECT_GL_CALLS(gl); // every test looks at all calls of its own
        gl.ignoreTheRest();
    }

    /// A vertex array object, name 4, whose making is not looked at.
    std::shared_ptr<VertexAttributesBinding> makeBinding() {
        program->beginAttributesBinding();
        auto binding = program->finishAttributesBinding();
        gl.forget();
        return binding;
    }

    /// What linking calls once the shaders of that program are attached.
    static std::vector<std::string> linkCalls(const std::string& name) {
        return {"glLinkProgram(" + name + ")",
                "glUseProgram(" + name + ")",
                "glGetProgramiv(" + name + ", GL_ACTIVE_UNIFORMS, out)",
                "glGetProgramiv(" + name + ", GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
                "glGetProgramiv(" + name + ", GL_ACTIVE_ATTRIBUTES, out)",
                "glGetProgramiv(" + name + ", GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, out)",
                "glUseProgram(0)"};
    }

    FakeGl gl;
    std::shared_ptr<VertexShader> vertexShader;
    std::shared_ptr<FragmentShader> fragmentShader;
    std::shared_ptr<Program> program;
};

TEST_F(ProgramTrace, MakeOfNothingOnlyCreates) {
    const auto empty = Program::make();
    EXPECT_GL_CALLS(gl, "glCreateProgram()");
    EXPECT_EQ(empty->id(), 4u);
    EXPECT_TRUE(empty->getOutputs().empty());
    empty->dispose();
    EXPECT_GL_CALLS(gl, "glDeleteProgram(4)");
}

TEST_F(ProgramTrace, MakeOfShadersAttachesLinksAndEndsUnbound) {
    const auto other = Program::make(vertexShader, fragmentShader);
    EXPECT_GL_CALLS(gl, "glCreateProgram()", "glAttachShader(4, 1)", "glAttachShader(4, 2)",
                    linkCalls("4"));
    EXPECT_FALSE(other->isBound());
    other->dispose();
    gl.forget();
}

TEST_F(ProgramTrace, MakeOfSourcesCompilesTheFragmentShaderFirst) {
    auto other = Program::make("vertex", "fragment");
    EXPECT_GL_CALLS(gl, "glCreateShader(GL_FRAGMENT_SHADER)",
                    "glShaderSource(4, 1, {\"fragment\"}, null)", "glCompileShader(4)",
                    "glCreateShader(GL_VERTEX_SHADER)", "glShaderSource(5, 1, {\"vertex\"}, null)",
                    "glCompileShader(5)", "glCreateProgram()", "glAttachShader(6, 5)",
                    "glAttachShader(6, 4)", linkCalls("6"));
    other.reset();
    // The program goes first, its shaders with it.
    EXPECT_EQ(gl.takeCalls().front(), "glDeleteProgram(6)");
}

TEST_F(ProgramTrace, MakeOfSourcesWithOutputsRecordsThem) {
    auto other = Program::make("vertex", "fragment", {1, 0});
    EXPECT_EQ(other->getOutputs(), (std::vector<unsigned int>{1, 0}));
    EXPECT_EQ(gl.shaderSource(4), "fragment");
    EXPECT_EQ(gl.shaderSource(5), "vertex");
    other.reset();
    gl.forget();
}

TEST_F(ProgramTrace, NullSourcesCountAsEmpty) {
    const char* const none = nullptr;
    for (const auto& other : {Program::make(none, none), Program::make(none, none, {0})})
        EXPECT_NE(other, nullptr);
    EXPECT_EQ(gl.shaderSource(4), "");
    EXPECT_EQ(gl.shaderSource(5), "");
    gl.forget();
}

TEST_F(ProgramTrace, MissingShadersAreNotAttached) {
    const auto other = Program::make(nullptr, std::shared_ptr<FragmentShader>());
    EXPECT_EQ(gl.countOf("glAttachShader"), 0u);
    EXPECT_EQ(gl.countOf("glLinkProgram"), 1u);
    other->dispose();
    gl.forget();
}

TEST_F(ProgramTrace, OutputsKeepOrderAndRepetitions) {
    const auto other = Program::make(vertexShader, fragmentShader, {2, 0, 2});
    EXPECT_EQ(other->getOutputs(), (std::vector<unsigned int>{2, 0, 2}));
    // Recording outputs is no business of GL.
    EXPECT_GL_CALLS(gl, "glCreateProgram()", "glAttachShader(4, 1)", "glAttachShader(4, 2)",
                    linkCalls("4"));
    other->dispose();
    gl.forget();
}

TEST_F(ProgramTrace, LinkingAgainAttachesAgainAndKeepsTheOutputs) {
    const auto other = Program::make(vertexShader, fragmentShader, {1});
    gl.forget();
    other->link();
    EXPECT_GL_CALLS(gl, "glAttachShader(4, 1)", "glAttachShader(4, 2)", linkCalls("4"));
    EXPECT_EQ(other->getOutputs(), (std::vector<unsigned int>{1}));
    other->link({3, 4});
    EXPECT_EQ(other->getOutputs(), (std::vector<unsigned int>{3, 4}));
    other->dispose();
    gl.forget();
}

TEST_F(ProgramTrace, LinkStatusIsAskedOnlyWhenTheCallerAsks) {
    EXPECT_FALSE(program->hasLinkError());
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_LINK_STATUS, out)");
    gl.failToLink();
    EXPECT_TRUE(program->hasLinkError());
    gl.answer(glad_glGetProgramiv, [](GLuint, GLenum, GLint* status) { *status = 2; });
    EXPECT_TRUE(program->hasLinkError());
    gl.answer(glad_glGetProgramiv, [](GLuint, GLenum, GLint*) {});
    EXPECT_TRUE(program->hasLinkError());
    gl.forget();
}

TEST_F(ProgramTrace, LinkLogIsAskedFromGl) {
    gl.setLinkLog("warning: %d varyings\n");
    EXPECT_EQ(program->linkLog(), "warning: %d varyings\n");
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_INFO_LOG_LENGTH, out)",
                    "glGetProgramInfoLog(3, 22, null, out)");
    gl.failToLink("error: no main");
    EXPECT_EQ(program->linkLog(), "error: no main");
    gl.forget();
}

TEST_F(ProgramTrace, LinkLogIsEmptyWhereGlHasNoneAndOfNoProgram) {
    EXPECT_EQ(program->linkLog(), "");
    EXPECT_GL_CALLS(gl, "glGetProgramiv(3, GL_INFO_LOG_LENGTH, out)");
    program->dispose();
    gl.setLinkLog("a log of some other program");
    EXPECT_EQ(program->linkLog(), "");
    gl.forget();
}

TEST_F(ProgramTrace, ProgramThatDoesNotLinkIsAnObjectLikeAnyOther) {
    gl.failToLink();
    const auto other = Program::make(vertexShader, fragmentShader);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(other->id(), 0u);
    EXPECT_TRUE(other->hasLinkError());
    other->dispose();
    gl.forget();
}

TEST_F(ProgramTrace, BindAndUnbindUseTheProgram) {
    program->bind();
    EXPECT_TRUE(program->isBound());
    program->unbind();
    EXPECT_FALSE(program->isBound());
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glUseProgram(0)");
}

TEST_F(ProgramTrace, BindWithABindingBindsBothAndUnbindsBoth) {
    auto binding = makeBinding();
    program->bind(binding);
    EXPECT_TRUE(program->isBound());
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glBindVertexArray(4)");
    EXPECT_EQ(binding.use_count(), 2);
    program->unbind();
    EXPECT_FALSE(program->isBound());
    EXPECT_GL_CALLS(gl, "glBindVertexArray(0)", "glUseProgram(0)");
    EXPECT_EQ(binding.use_count(), 1);
    binding.reset();
    gl.forget();
}

TEST_F(ProgramTrace, BindWithoutABindingBindsTheProgramAlone) {
    program->bind(std::shared_ptr<VertexAttributesBinding>());
    program->unbind();
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glUseProgram(0)");
}

TEST_F(ProgramTrace, BindWithAnotherBindingReleasesTheOneBefore) {
    auto first = makeBinding();
    auto second = makeBinding();
    program->bind(first);
    first.reset();
    gl.forget();
    program->bind(second);
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glDeleteVertexArrays(1, {4})", "glBindVertexArray(5)");
    EXPECT_TRUE(program->isBound());
    program->bind(second);
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glBindVertexArray(5)");
    EXPECT_EQ(second.use_count(), 2);
    program->bind(std::shared_ptr<VertexAttributesBinding>());
    EXPECT_GL_CALLS(gl, "glUseProgram(3)");
    EXPECT_EQ(second.use_count(), 1);
    program->unbind();
    EXPECT_GL_CALLS(gl, "glUseProgram(0)");
    second.reset();
    gl.forget();
}

TEST_F(ProgramTrace, BindReleasesWhatAnEmptyPointerOwned) {
    auto owned = std::make_shared<int>(0);
    auto binding = makeBinding();
    program->bind(std::shared_ptr<VertexAttributesBinding>(owned, nullptr));
    EXPECT_EQ(owned.use_count(), 2);
    program->bind(binding);
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glUseProgram(3)", "glBindVertexArray(4)");
    program->unbind();
    binding.reset();
    gl.forget();
}

TEST_F(ProgramTrace, BoundProgramReleasesItsBindingBeforeItsShaders) {
    program->bind(makeBinding());
    vertexShader.reset();
    fragmentShader.reset();
    gl.forget();
    program.reset();
    EXPECT_GL_CALLS(gl, "glDeleteProgram(3)", "glDeleteVertexArrays(1, {4})", "glDeleteShader(2)",
                    "glDeleteShader(1)");
}

TEST_F(ProgramTrace, BindWithADrawableBindsItsBinding) {
    const Shape shape(3, makeBinding());
    program->bind(shape);
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glBindVertexArray(4)");
    program->unbind();
    EXPECT_GL_CALLS(gl, "glBindVertexArray(0)", "glUseProgram(0)");
    gl.setRecording(false); // the shape's end
}

TEST_F(ProgramTrace, DrawUsesBindsDrawsAndLeavesNothingBound) {
    const Shape shape(12, makeBinding());
    program->draw(shape, 5, 0);
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glBindVertexArray(4)",
                    "glDrawArrays(GL_TRIANGLES, 5, 7)", "glBindVertexArray(0)", "glUseProgram(0)");
    EXPECT_FALSE(program->isBound());
    EXPECT_EQ(program->usage_.binding(), nullptr);
    program->draw(shape);
    EXPECT_EQ(gl.takeCalls()[2], "glDrawArrays(GL_TRIANGLES, 0, 12)");
    gl.setRecording(false);
}

TEST_F(ProgramTrace, DrawDoesNotRestoreTheProgramOfBefore) {
    const auto other = Program::make(vertexShader, fragmentShader);
    const Shape shape(3, makeBinding());
    other->bind();
    program->draw(shape);
    EXPECT_EQ(gl.takeCalls().back(), "glUseProgram(0)");
    other->dispose();
    gl.setRecording(false);
    gl.forget();
}

TEST_F(ProgramTrace, DrawOfADrawableWithoutABindingBindsNoVertexArray) {
    const Shape shape(3);
    program->draw(shape);
    EXPECT_GL_CALLS(gl, "glUseProgram(3)", "glDrawArrays(GL_TRIANGLES, 0, 3)", "glUseProgram(0)");
}

template <class T>
void drawsIndices(FakeGl& gl, const Program& program, const Shape& shape, const char* type) {
    const auto indices =
        IndexBuffer<T>::make(10, vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    const auto name = std::to_string(indices->id());
    gl.forget();
    program.draw(shape, *indices, 4, 0);
    const auto offset = std::to_string(4 * sizeof(T));
    const std::vector<std::string> expected = {
        "glUseProgram(3)",
        "glBindVertexArray(4)",
        "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, " + name + ")",
        std::string("glDrawElements(GL_TRIANGLES, 6, ") + type + ", " + offset + ")",
        "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)",
        "glBindVertexArray(0)",
        "glUseProgram(0)"};
    EXPECT_EQ(gl.takeCalls(), expected);
    program.draw(shape, *indices);
    EXPECT_EQ(gl.takeCalls()[3], std::string("glDrawElements(GL_TRIANGLES, 10, ") + type + ", 0)");
    indices->dispose();
    gl.forget();
}

TEST_F(ProgramTrace, DrawThroughIndicesTakesTheSameSteps) {
    const Shape shape(3, makeBinding());
    drawsIndices<unsigned char>(gl, *program, shape, "GL_UNSIGNED_BYTE");
    drawsIndices<unsigned short>(gl, *program, shape, "GL_UNSIGNED_SHORT");
    drawsIndices<unsigned int>(gl, *program, shape, "GL_UNSIGNED_INT");
    gl.setRecording(false);
}

TEST_F(ProgramTrace, RecordingABindingBindsANewVertexArrayAndHandsItOver) {
    program->beginAttributesBinding();
    EXPECT_GL_CALLS(gl, "glGenVertexArrays(1, {4})", "glBindVertexArray(4)");
    EXPECT_FALSE(program->isBound());
    auto binding = program->finishAttributesBinding();
    EXPECT_GL_CALLS(gl, "glBindVertexArray(0)");
    ASSERT_NE(binding, nullptr);
    EXPECT_EQ(binding.use_count(), 1);
    EXPECT_EQ(program->finishAttributesBinding(), nullptr);
    binding.reset();
    EXPECT_GL_CALLS(gl, "glBindVertexArray(0)", "glDeleteVertexArrays(1, {4})");
}

TEST_F(ProgramTrace, BeginningAgainDropsTheBindingUnderConstruction) {
    program->beginAttributesBinding();
    gl.forget();
    program->beginAttributesBinding();
    EXPECT_GL_CALLS(gl, "glGenVertexArrays(1, {5})", "glDeleteVertexArrays(1, {4})",
                    "glBindVertexArray(5)");
    program->finishAttributesBinding().reset();
    gl.forget();
}

TEST_F(ProgramTrace, FinishWithoutABindingReturnsAnEmptyPointer) {
    EXPECT_EQ(program->finishAttributesBinding(), nullptr);
    EXPECT_GL_CALLS(gl, "glBindVertexArray(0)");
}

TEST_F(ProgramTrace, DisposeTwiceDeletesOnce) {
    program->dispose();
    EXPECT_GL_CALLS(gl, "glDeleteProgram(3)");
    EXPECT_EQ(program->id(), 0u);
    program->dispose();
    program.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramTrace, NameThatGlRefusedToMakeIsNeverDeleted) {
    gl.answer(glad_glCreateProgram, []() -> GLuint { return 0; });
    auto other = Program::make(vertexShader, fragmentShader);
    EXPECT_EQ(other->id(), 0u);
    gl.forget();
    other.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramTrace, CopySharesTheNameTheShadersAndTheBindingAndDeletesTheNameAgain) {
    auto binding = makeBinding();
    program->bind(binding);
    gl.forget();
    {
        const Program copy = *program;
        EXPECT_EQ(copy.id(), program->id());
        EXPECT_TRUE(copy.isBound());
        EXPECT_EQ(copy.usage_.binding(), binding);
        EXPECT_EQ(copy.vertexShader_, vertexShader);
        EXPECT_EQ(copy.fragmentShader_, fragmentShader);
        EXPECT_GL_CALLS(gl);
    }
    EXPECT_GL_CALLS(gl, "glDeleteProgram(3)");
    program->unbind();
    binding.reset();
    gl.forget();
}

TEST_F(ProgramTrace, AssignmentSharesTheBindingInPlaceOfTheOneBefore) {
    auto binding = makeBinding();
    auto former = makeBinding();
    program->bind(binding);
    {
        Program other = *program;
        other.bind(former);
        other = *program;
        EXPECT_EQ(other.usage_.binding(), binding);
        EXPECT_EQ(former.use_count(), 1);
    }
    program->unbind();
    binding.reset();
    former.reset();
    gl.forget();
}

// The stand-ins make their GL names once in a process: each of these tests needs one of its own.

TEST_F(ProgramTrace, CurrentAsksGlOnEveryCallAndIsOneObject) {
    EXPECT_EQ(Program::current().id(), 0u);
    EXPECT_GL_CALLS(gl, "glCreateProgram()", "glGetIntegerv(GL_CURRENT_PROGRAM, out)");
    const Program& kept = Program::current();
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_CURRENT_PROGRAM, out)");
    program->bind();
    EXPECT_EQ(&Program::current(), &kept);
    EXPECT_EQ(kept.id(), program->id());
    EXPECT_FALSE(kept.isBound());
    EXPECT_TRUE(kept.getOutputs().empty());
    program->unbind();
    gl.forget();
}

TEST_F(ProgramTrace, CurrentIsNothingWhereGlDoesNotTell) {
    gl.refuse(GL_CURRENT_PROGRAM);
    EXPECT_EQ(Program::current().id(), 0u);
    gl.forget();
}

TEST_F(ProgramTrace, NullIsNeverAskedForAndBindsNothing) {
    const Program& null = Program::null();
    EXPECT_EQ(null.id(), 0u);
    EXPECT_GL_CALLS(gl, "glCreateProgram()");
    EXPECT_EQ(&Program::null(), &null);
    EXPECT_NE(&Program::current(), &null);
    gl.forget();
    null.bind();
    EXPECT_GL_CALLS(gl, "glUseProgram(0)");
    null.unbind();
    gl.forget();
}

} // namespace

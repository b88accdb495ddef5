// needs: private access

#include <vellis/shading/program_manager.hpp>

#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::Program;
using vellis::ProgramManager;
using vellis::test::FakeGl;
using BuiltIn = ProgramManager::BuiltIn;
using Lines = std::vector<std::string>;

static_assert(!std::is_polymorphic_v<ProgramManager>);

/// A built-in program: its value and the two texts that it is compiled from.
struct BuiltInRow {
    BuiltIn builtIn;
    unsigned int value;
    const char* name;
    std::string vertexSource;
    std::string fragmentSource;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const BuiltInRow& row, std::ostream* out) {
    *out << row.name;
}

const char* const uniformColorFragment = "#version 120 \n"
                                         "uniform vec4 color; \n"
                                         "void main() { \n"
                                         "  gl_FragColor = color; \n"
                                         "} \n";

const char* const dashLinesFragment = "#version 120 \n"
                                      "uniform vec4 color; \n"
                                      "uniform vec2 dash; \n"
                                      "varying float cumulativeDist; \n"
                                      "void main() { \n"
                                      "  float t = mod(cumulativeDist, dash[0]+dash[1]); \n"
                                      "  if (t > dash[0]) discard; \n"
                                      "  gl_FragColor = color; \n"
                                      "} \n";

const BuiltInRow builtInRows[] = {
    {BuiltIn::SoftPoints2D, 0, "SoftPoints2D",
     "#version 120 \n"
     "uniform mat4 mvp; \n"
     "uniform float radius; \n"
     "attribute vec2 position; \n"
     "void main() { \n"
     "  gl_PointSize = radius; \n"
     "  gl_Position = mvp*vec4(position, 0.0, 1.0); \n"
     "} \n",
     "#version 120 \n"
     "uniform vec4 color; \n"
     "uniform float softness; \n"
     "void main() { \n"
     "  float d = length(gl_PointCoord*2.0-1.0); \n"
     "  if (d > 1.0) discard; \n"
     "  float t = (d-(1.0-softness))/softness; \n"
     "  float a = d < (1.0-softness) ? 1.0 : 1.0-t*t; \n"
     "  gl_FragColor = vec4(color.rgb, a*color.a); \n"
     "} \n"},
    {BuiltIn::SoftPoints3D, 1, "SoftPoints3D",
     "#version 120 \n"
     "uniform mat4 mvp; \n"
     "uniform float radius; \n"
     "attribute vec3 position; \n"
     "void main() { \n"
     "  gl_PointSize = radius; \n"
     "  gl_Position = mvp*vec4(position, 1.0); \n"
     "} \n",
     "#version 120 \n"
     "uniform vec4 color; \n"
     "uniform float softness; \n"
     "void main() { \n"
     "  float d = length(gl_PointCoord*2.0-1.0); \n"
     "  float t = (d-(1.0-softness))/softness; \n"
     "  float a = d < (1.0-softness) ? 1.0 : 1.0-t*t; \n"
     "  gl_FragColor = vec4(color.rgb, a*color.a); \n"
     "} \n"},
    {BuiltIn::UniformColor2D, 2, "UniformColor2D",
     "#version 120 \n"
     "uniform mat4 mvp; \n"
     "attribute vec2 position; \n"
     "void main() { \n"
     "  gl_Position = mvp*vec4(position, 0.0, 1.0); \n"
     "} \n",
     uniformColorFragment},
    {BuiltIn::UniformColor3D, 3, "UniformColor3D",
     "#version 120 \n"
     "uniform mat4 mvp; \n"
     "attribute vec3 position; \n"
     "void main() { \n"
     "  gl_Position = mvp*vec4(position, 1.0); \n"
     "} \n",
     uniformColorFragment},
    {BuiltIn::DashLines2D, 4, "DashLines2D",
     "#version 120 \n"
     "uniform mat4 mvp; \n"
     "attribute vec3 position_t; \n"
     "varying float cumulativeDist; \n"
     "void main() { \n"
     "  cumulativeDist = position_t[2]; \n"
     "  gl_Position = mvp*vec4(position_t.xy, 0.0, 1.0); \n"
     "} \n",
     dashLinesFragment},
    {BuiltIn::DashLines3D, 5, "DashLines3D",
     "#version 120 \n"
     "uniform mat4 mvp; \n"
     "attribute vec4 position_t; \n"
     "varying float cumulativeDist; \n"
     "void main() { \n"
     "  cumulativeDist = position_t[3]; \n"
     "  gl_Position = mvp*vec4(position_t.xyz, 1.0); \n"
     "} \n",
     dashLinesFragment},
};

/// The call that gives a shader that source.
std::string sourceCall(unsigned int shader, const std::string& source) {
    std::string lines;
    for (const char character : source)
        lines += character == '\n' ? "\\n" : std::string(1, character);
    return "glShaderSource(" + std::to_string(shader) + ", 1, {\"" + lines + "\"}, null)";
}

/// The registry, as new, and program 3 (of shaders 1 and 2) whose making is not looked at.
class ProgramManagerTrace : public testing::Test {
protected:
    ProgramManagerTrace() : manager(ProgramManager::instance()), program(makeProgram()) { renew(); }
    ~ProgramManagerTrace() override {
        program.reset();
        renew();
        gl.ignoreTheRest();
    }

    std::shared_ptr<Program> makeProgram() {
        auto made = Program::make("v", "f");
        gl.forget();
        return made;
    }

    /// Makes the registry what it is at the start of a process.
    void renew() {
        ProgramManager::dispose();
        manager.builtIns_.resize(6);
        gl.forget();
    }

    /// The deletions of programs among the calls, which are looked at now.
    Lines deletedPrograms() {
        Lines deletions;
        for (const std::string& call : gl.takeCalls()) {
            if (call.rfind("glDeleteProgram", 0) == 0)
                deletions.push_back(call);
        }
        return deletions;
    }

    FakeGl gl;
    ProgramManager& manager;
    std::shared_ptr<Program> program;
};

// The programs of callers

TEST_F(ProgramManagerTrace, ThereIsOneInstanceThatStartsEmpty) {
    EXPECT_EQ(&ProgramManager::instance(), &manager);
    EXPECT_TRUE(manager.programs_.empty());
    EXPECT_EQ(ProgramManager().builtIns_, std::vector<std::shared_ptr<Program>>(6));
}

TEST_F(ProgramManagerTrace, AddReturnsTheAddressAndOwnsTheProgram) {
    EXPECT_EQ(manager.add(program), program.get());
    EXPECT_EQ(manager.get(program.get()), program);
    EXPECT_EQ(program.use_count(), 2);
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramManagerTrace, AddTwiceKeepsOneEntryAndReturnsTheSameKey) {
    Program* const key = manager.add(program);
    EXPECT_EQ(manager.add(program), key);
    EXPECT_EQ(program.use_count(), 2);
    EXPECT_EQ(manager.programs_.size(), 1u);
}

TEST_F(ProgramManagerTrace, AddOfAProgramThatIsThereKeepsTheFirstOwner) {
    manager.add(program);
    // The same address, owned by nobody.
    const std::shared_ptr<Program> alias(std::shared_ptr<Program>(), program.get());
    EXPECT_EQ(manager.add(alias), program.get());
    EXPECT_EQ(manager.get(program.get()).use_count(), 2);
}

TEST_F(ProgramManagerTrace, AddOfNothingAddsNothing) {
    EXPECT_EQ(manager.add(nullptr), ProgramManager::invalidId());
    EXPECT_TRUE(manager.programs_.empty());
}

TEST_F(ProgramManagerTrace, LookupFindsEachOfSeveralAndNothingElse) {
    const auto second = makeProgram();
    const auto third = makeProgram();
    manager.add(program);
    manager.add(third);
    EXPECT_EQ(manager.get(program.get()), program);
    EXPECT_EQ(manager.get(third.get()), third);
    EXPECT_EQ(manager.get(second.get()), nullptr);
    EXPECT_EQ(manager.get(ProgramManager::invalidId()), nullptr);
    EXPECT_EQ(&manager.get(second.get()), &manager.get(ProgramManager::invalidId()));
    EXPECT_EQ(manager.programs_.size(), 2u);
}

TEST_F(ProgramManagerTrace, RemoveOfTheLastReferenceDeletesTheGlProgram) {
    Program* const key = manager.add(program);
    program.reset();
    EXPECT_GL_CALLS(gl);
    manager.remove(key);
    EXPECT_EQ(gl.takeCalls().front(), "glDeleteProgram(3)");
    EXPECT_EQ(manager.get(key), nullptr);
}

TEST_F(ProgramManagerTrace, RemoveLeavesAProgramThatSomebodyElseOwns) {
    manager.remove(manager.add(program));
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(program.use_count(), 1);
    EXPECT_EQ(program->id(), 3u);
}

TEST_F(ProgramManagerTrace, RemoveOfAnUnknownKeyDoesNothing) {
    manager.add(program);
    const auto other = makeProgram();
    manager.remove(other.get());
    manager.remove(ProgramManager::invalidId());
    EXPECT_EQ(manager.programs_.size(), 1u);
}

TEST_F(ProgramManagerTrace, EveryKeyButNullIsValid) {
    Program* const key = program.get();
    EXPECT_TRUE(ProgramManager::isValid(key)); // never added
    manager.remove(manager.add(program));
    EXPECT_TRUE(ProgramManager::isValid(key)); // removed
    EXPECT_FALSE(ProgramManager::isValid(nullptr));
    EXPECT_FALSE(ProgramManager::isValid(ProgramManager::invalidId()));
    EXPECT_EQ(ProgramManager::invalidId(), nullptr);
}

// The built-in programs

TEST_F(ProgramManagerTrace, BuiltInIsCompiledAndLinkedOnItsFirstRequestOnly) {
    const std::shared_ptr<Program>& flat = manager.get(BuiltIn::UniformColor2D);
    ASSERT_NE(flat, nullptr);
    EXPECT_EQ(gl.countOf("glCompileShader"), 2u);
    EXPECT_EQ(gl.countOf("glLinkProgram"), 1u);
    gl.forget();
    const Program* const made = flat.get();
    EXPECT_EQ(&manager.get(BuiltIn::UniformColor2D), &flat);
    EXPECT_EQ(flat.get(), made);
    EXPECT_EQ(flat.use_count(), 1);
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramManagerTrace, BuiltInsAreSixProgramsEachMadeOnItsOwnRequest) {
    std::set<const Program*> made;
    for (const BuiltInRow& row : builtInRows) {
        made.insert(manager.get(row.builtIn).get());
        EXPECT_EQ(gl.countOf("glLinkProgram"), made.size());
    }
    for (const BuiltInRow& row : builtInRows)
        made.insert(manager.get(row.builtIn).get());
    EXPECT_EQ(made.size(), 6u);
    EXPECT_EQ(gl.countOf("glLinkProgram"), 6u);
    EXPECT_TRUE(manager.programs_.empty());
    gl.forget();
}

TEST_F(ProgramManagerTrace, BuiltInsAreNotFoundByTheirAddress) {
    for (const BuiltInRow& row : builtInRows)
        EXPECT_EQ(manager.get(manager.get(row.builtIn).get()), nullptr);
    EXPECT_EQ(manager.get(program.get()), nullptr);
    gl.forget();
}

TEST_F(ProgramManagerTrace, BuiltInsCanBeAskedForThroughAConstRegistry) {
    const ProgramManager& constant = manager;
    EXPECT_EQ(constant.get(BuiltIn::DashLines2D), manager.get(BuiltIn::DashLines2D));
    EXPECT_EQ(gl.countOf("glLinkProgram"), 1u);
    gl.forget();
}

TEST_F(ProgramManagerTrace, BuiltInThatDoesNotLinkIsHandedOutAndNotMadeAgain) {
    gl.failToLink();
    const std::shared_ptr<Program>& flat = manager.get(BuiltIn::UniformColor3D);
    ASSERT_NE(flat, nullptr);
    EXPECT_TRUE(flat->hasLinkError());
    gl.forget();
    EXPECT_EQ(manager.get(BuiltIn::UniformColor3D)->id(), flat->id());
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramManagerTrace, ValueThatIsNoBuiltInGivesAnEmptyPointer) {
    for (const unsigned int value : {6u, 7u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(manager.get(static_cast<BuiltIn>(value)), nullptr);
        EXPECT_EQ(ProgramManager::makeBuiltIn(static_cast<BuiltIn>(value)), nullptr);
    }
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(manager.builtIns_.size(), 6u);
}

class BuiltInSourceTrace : public ProgramManagerTrace,
                           public testing::WithParamInterface<BuiltInRow> {};

TEST_P(BuiltInSourceTrace, IsCompiledByteForByte) {
    EXPECT_EQ(static_cast<unsigned int>(GetParam().builtIn), GetParam().value);
    ASSERT_NE(manager.get(GetParam().builtIn), nullptr);
    EXPECT_EQ(gl.shaderSource(4), GetParam().fragmentSource);
    EXPECT_EQ(gl.shaderSource(5), GetParam().vertexSource);
    EXPECT_GL_CALLS(gl, "glCreateShader(GL_FRAGMENT_SHADER)",
                    sourceCall(4, GetParam().fragmentSource), "glCompileShader(4)",
                    "glCreateShader(GL_VERTEX_SHADER)", sourceCall(5, GetParam().vertexSource),
                    "glCompileShader(5)", "glCreateProgram()", "glAttachShader(6, 5)",
                    "glAttachShader(6, 4)", "glLinkProgram(6)", "glUseProgram(6)",
                    "glGetProgramiv(6, GL_ACTIVE_UNIFORMS, out)",
                    "glGetProgramiv(6, GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
                    "glGetProgramiv(6, GL_ACTIVE_ATTRIBUTES, out)",
                    "glGetProgramiv(6, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, out)", "glUseProgram(0)");
}

INSTANTIATE_TEST_SUITE_P(Programs, BuiltInSourceTrace, testing::ValuesIn(builtInRows),
                         [](const auto& row) { return std::string(row.param.name); });

// The end

TEST_F(ProgramManagerTrace, DisposeReleasesTheProgramsThatNobodyElseOwns) {
    const auto kept = makeProgram();
    Program* const key = manager.add(program);
    manager.add(kept);
    program.reset();
    ProgramManager::dispose();
    EXPECT_EQ(deletedPrograms(), (Lines{"glDeleteProgram(3)"}));
    EXPECT_EQ(manager.get(key), nullptr);
    EXPECT_EQ(kept->id(), 6u);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST_F(ProgramManagerTrace, DisposeReleasesCallersProgramsBeforeBuiltIns) {
    manager.get(BuiltIn::UniformColor2D); // program 6
    manager.get(BuiltIn::SoftPoints2D);   // program 9
    manager.add(program);
    program.reset();
    gl.forget();
    ProgramManager::dispose();
    // The slots go in their order, not in that of the requests.
    EXPECT_EQ(deletedPrograms(),
              (Lines{"glDeleteProgram(3)", "glDeleteProgram(9)", "glDeleteProgram(6)"}));
}

TEST_F(ProgramManagerTrace, BuiltInsAreNotMadeAgainAfterDispose) {
    const auto flat = manager.get(BuiltIn::UniformColor2D);
    ProgramManager::dispose();
    gl.forget();
    EXPECT_EQ(flat.use_count(), 1);
    for (const BuiltInRow& row : builtInRows)
        EXPECT_EQ(manager.get(row.builtIn), nullptr);
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramManagerTrace, ProgramsCanBeAddedAgainAfterDispose) {
    ProgramManager::dispose();
    ProgramManager::dispose();
    EXPECT_EQ(manager.get(manager.add(program)), program);
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramManagerTrace, EngineDisposeReleasesProgramsBeforeBuffers) {
    auto buffer = vellis::VertexAttributeBuffer<float>::make(4, vellis::BufferUsage::Static,
                                                             vellis::BufferAccess::Draw);
    vellis::BufferObjectManager::instance().add(buffer);
    buffer.reset();
    manager.get(BuiltIn::UniformColor2D);
    manager.add(program);
    program.reset();
    gl.forget();
    vellis::engine::dispose();
    EXPECT_GL_CALLS(gl, "glDeleteProgram(3)", "glDeleteShader(1)", "glDeleteShader(2)",
                    "glDeleteProgram(7)", "glDeleteShader(5)", "glDeleteShader(6)",
                    "glDeleteBuffers(1, {4})");
    vellis::engine::dispose();
    EXPECT_GL_CALLS(gl);
}

TEST_F(ProgramManagerTrace, EngineDisposeBeforeAnythingExistsLeavesTheRegistryEmpty) {
    vellis::engine::dispose();
    EXPECT_TRUE(manager.programs_.empty());
    EXPECT_EQ(manager.get(BuiltIn::UniformColor2D), nullptr);
    EXPECT_GL_CALLS(gl);
}

// Copies

TEST_F(ProgramManagerTrace, CopyOwnsTheSamePrograms) {
    manager.add(program);
    const auto flat = manager.get(BuiltIn::UniformColor2D);
    const ProgramManager copy = manager;
    EXPECT_EQ(copy.get(program.get()), program);
    EXPECT_EQ(program.use_count(), 3);
    EXPECT_EQ(copy.get(BuiltIn::UniformColor2D), flat);
    // What neither has made is made by each.
    EXPECT_NE(copy.get(BuiltIn::UniformColor3D), manager.get(BuiltIn::UniformColor3D));
    gl.forget();
}

TEST_F(ProgramManagerTrace, EndOfARegistryEmptiesTheInstance) {
    manager.add(program);
    const auto flat = manager.get(BuiltIn::UniformColor2D);
    { const ProgramManager copy = manager; }
    EXPECT_TRUE(manager.programs_.empty());
    EXPECT_EQ(program.use_count(), 1);
    EXPECT_EQ(flat.use_count(), 1);
    EXPECT_EQ(manager.get(BuiltIn::UniformColor2D), nullptr);
    gl.forget();
}

TEST_F(ProgramManagerTrace, CopyOutlivesTheDisposeOfTheInstance) {
    manager.add(program);
    const auto flat = manager.get(BuiltIn::UniformColor2D);
    const ProgramManager copy = manager;
    ProgramManager::dispose();
    EXPECT_EQ(copy.get(program.get()), program);
    EXPECT_EQ(copy.get(BuiltIn::UniformColor2D), flat);
    gl.forget();
}

TEST_F(ProgramManagerTrace, AssignmentReplacesTheEntriesAndSelfAssignmentKeepsThem) {
    manager.add(program);
    ProgramManager copy = manager;
    const auto other = makeProgram();
    copy.add(other);
    copy = manager;
    EXPECT_EQ(copy.get(other.get()), nullptr);
    EXPECT_EQ(copy.get(program.get()), program);
    const ProgramManager& self = copy;
    copy = self;
    EXPECT_EQ(copy.get(program.get()), program);
}

} // namespace

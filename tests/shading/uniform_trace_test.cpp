// needs: private access

/// The tables of uniforms and attributes that a program reads when it links, and what setting a
/// uniform sends.

#include <vellis/shading/program.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <glm/matrix.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "shading/program_variables.hpp"
#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"
#include "support/uniform_types.hpp"

namespace {

using vellis::Attrib;
using vellis::FragmentShader;
using vellis::Program;
using vellis::Texture;
using vellis::Uniform;
using vellis::UniformVariable;
using vellis::VertexShader;
using vellis::test::ActiveVariable;
using vellis::test::FakeGl;
using Lines = std::vector<std::string>;

constexpr unsigned int noLocation = 0xFFFFFFFF;

/// A type of value: the uniform that takes it, and the call that sends it.
template <class T>
struct ValueRow {
    std::string name;
    unsigned int glType;
    T value;
    std::string entryPoint;
    std::string arguments; ///< those behind the location

    /// The call at that location, by the entry point or one named like it.
    std::string call(int location, const std::string& suffix = "") const {
        return entryPoint + suffix + '(' + std::to_string(location) + ", " + arguments + ')';
    }

    bool isUnsigned() const { return entryPoint.find("ui") != std::string::npos; }
};

/// The number of handles in a table.
template <class T>
std::size_t size(const vellis::NameTable<T>& table) {
    return table.entries_.size();
}

using namespace vellis::test::uniform_types;

const mat3 someMat3(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f);
const mat4 someMat4(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f, 13.f, 14.f, 15.f,
                    16.f);

const mat2x3 someMat2x3(1.f, 2.f, 3.f, 4.f, 5.f, 6.f);
const mat2x4 someMat2x4(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f);
const mat3x2 someMat3x2(1.f, 2.f, 3.f, 4.f, 5.f, 6.f);
const mat3x4 someMat3x4(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f);
const mat4x2 someMat4x2(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f);
const mat4x3 someMat4x3(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f);

const auto valueRows = std::make_tuple(
    // clang-format off
    ValueRow<int>{"int", GL_INT, -3, "glUniform1i", "-3"},
    ValueRow<unsigned int>{"uint", GL_UNSIGNED_INT, 4000000000u, "glUniform1ui", "4000000000"},
    ValueRow<float>{"float", GL_FLOAT, 0.5f, "glUniform1f", "0.5"},
    ValueRow<vec2>{"vec2", GL_FLOAT_VEC2, {0.5f, -1.f}, "glUniform2fv", "1, {0.5, -1}"},
    ValueRow<vec3>{"vec3", GL_FLOAT_VEC3, {0.5f, -1.f, 2.f}, "glUniform3fv", "1, {0.5, -1, 2}"},
    ValueRow<vec4>{"vec4", GL_FLOAT_VEC4, {0.5f, -1.f, 2.f, 3.f}, "glUniform4fv", "1, {0.5, -1, 2, 3}"},
    ValueRow<ivec2>{"ivec2", GL_INT_VEC2, {1, -2}, "glUniform2iv", "1, {1, -2}"},
    ValueRow<ivec3>{"ivec3", GL_INT_VEC3, {1, -2, 3}, "glUniform3iv", "1, {1, -2, 3}"},
    ValueRow<ivec4>{"ivec4", GL_INT_VEC4, {1, -2, 3, 4}, "glUniform4iv", "1, {1, -2, 3, 4}"},
    ValueRow<uvec2>{"uvec2", GL_UNSIGNED_INT_VEC2, {1, 4000000000u}, "glUniform2uiv", "1, {1, 4000000000}"},
    ValueRow<uvec3>{"uvec3", GL_UNSIGNED_INT_VEC3, {1, 2, 3}, "glUniform3uiv", "1, {1, 2, 3}"},
    ValueRow<uvec4>{"uvec4", GL_UNSIGNED_INT_VEC4, {1, 2, 3, 4}, "glUniform4uiv", "1, {1, 2, 3, 4}"},
    ValueRow<mat3>{"mat3", GL_FLOAT_MAT3, someMat3, "glUniformMatrix3fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9}"},
    ValueRow<mat4>{"mat4", GL_FLOAT_MAT4, someMat4, "glUniformMatrix4fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}"},
    ValueRow<List<int>>{"ints", GL_INT, {1, -2, 3}, "glUniform1iv", "3, {1, -2, 3}"},
    ValueRow<List<unsigned int>>{"uints", GL_UNSIGNED_INT, {1, 4000000000u}, "glUniform1uiv", "2, {1, 4000000000}"},
    ValueRow<List<float>>{"floats", GL_FLOAT, {0.5f, -1.f, 2.f, 3.f}, "glUniform1fv", "4, {0.5, -1, 2, 3}"},
    ValueRow<List<vec2>>{"vec2s", GL_FLOAT_VEC2, {{1.f, 2.f}, {3.f, 4.f}}, "glUniform2fv", "2, {1, 2, 3, 4}"},
    ValueRow<List<vec3>>{"vec3s", GL_FLOAT_VEC3, {{1.f, 2.f, 3.f}, {4.f, 5.f, 6.f}}, "glUniform3fv", "2, {1, 2, 3, 4, 5, 6}"},
    ValueRow<List<vec4>>{"vec4s", GL_FLOAT_VEC4, {{1.f, 2.f, 3.f, 4.f}, {5.f, 6.f, 7.f, 8.f}}, "glUniform4fv", "2, {1, 2, 3, 4, 5, 6, 7, 8}"},
    ValueRow<List<ivec2>>{"ivec2s", GL_INT_VEC2, {{1, -2}, {3, 4}}, "glUniform2iv", "2, {1, -2, 3, 4}"},
    ValueRow<List<ivec3>>{"ivec3s", GL_INT_VEC3, {{1, -2, 3}, {4, 5, 6}}, "glUniform3iv", "2, {1, -2, 3, 4, 5, 6}"},
    ValueRow<List<ivec4>>{"ivec4s", GL_INT_VEC4, {{1, -2, 3, 4}, {5, 6, 7, 8}}, "glUniform4iv", "2, {1, -2, 3, 4, 5, 6, 7, 8}"},
    ValueRow<List<uvec2>>{"uvec2s", GL_UNSIGNED_INT_VEC2, {{1, 2}, {3, 4}}, "glUniform2uiv", "2, {1, 2, 3, 4}"},
    ValueRow<List<uvec3>>{"uvec3s", GL_UNSIGNED_INT_VEC3, {{1, 2, 3}, {4, 5, 6}}, "glUniform3uiv", "2, {1, 2, 3, 4, 5, 6}"},
    ValueRow<List<uvec4>>{"uvec4s", GL_UNSIGNED_INT_VEC4, {{1, 2, 3, 4}, {5, 6, 7, 8}}, "glUniform4uiv", "2, {1, 2, 3, 4, 5, 6, 7, 8}"});
// clang-format on

constexpr std::size_t numValueRows = std::tuple_size_v<decltype(valueRows)>;
static_assert(numValueRows == 26);

/// The same for the types that have no handles.
const auto unkeptRows = std::make_tuple(
    // clang-format off
    ValueRow<bool>{"bool", GL_BOOL, true, "glUniform1i", "1"},
    ValueRow<bvec2>{"bvec2", GL_BOOL_VEC2, {true, false}, "glUniform2iv", "1, {1, 0}"},
    ValueRow<bvec3>{"bvec3", GL_BOOL_VEC3, {true, false, true}, "glUniform3iv", "1, {1, 0, 1}"},
    ValueRow<bvec4>{"bvec4", GL_BOOL_VEC4, {false, true, false, true}, "glUniform4iv", "1, {0, 1, 0, 1}"},
    ValueRow<mat2>{"mat2", GL_FLOAT_MAT2, {1.f, 2.f, 3.f, 4.f}, "glUniformMatrix2fv", "1, GL_FALSE, {1, 2, 3, 4}"},
    ValueRow<mat2x3>{"mat2x3", GL_FLOAT_MAT2x3, someMat2x3, "glUniformMatrix2x3fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6}"},
    ValueRow<mat2x4>{"mat2x4", GL_FLOAT_MAT2x4, someMat2x4, "glUniformMatrix2x4fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8}"},
    ValueRow<mat3x2>{"mat3x2", GL_FLOAT_MAT3x2, someMat3x2, "glUniformMatrix3x2fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6}"},
    ValueRow<mat3x4>{"mat3x4", GL_FLOAT_MAT3x4, someMat3x4, "glUniformMatrix3x4fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}"},
    ValueRow<mat4x2>{"mat4x2", GL_FLOAT_MAT4x2, someMat4x2, "glUniformMatrix4x2fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8}"},
    ValueRow<mat4x3>{"mat4x3", GL_FLOAT_MAT4x3, someMat4x3, "glUniformMatrix4x3fv", "1, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}"},
    ValueRow<List<bool>>{"bools", GL_BOOL, {true, false, true}, "glUniform1iv", "3, {1, 0, 1}"},
    ValueRow<List<bvec2>>{"bvec2s", GL_BOOL_VEC2, {{true, false}, {true, true}}, "glUniform2iv", "2, {1, 0, 1, 1}"},
    ValueRow<List<bvec3>>{"bvec3s", GL_BOOL_VEC3, {{true, false, false}, {true, true, false}}, "glUniform3iv", "2, {1, 0, 0, 1, 1, 0}"},
    ValueRow<List<bvec4>>{"bvec4s", GL_BOOL_VEC4, {{true, false, false, false}, {true, true, false, true}}, "glUniform4iv", "2, {1, 0, 0, 0, 1, 1, 0, 1}"},
    ValueRow<List<mat2>>{"mat2s", GL_FLOAT_MAT2, {{1.f, 2.f, 3.f, 4.f}, {5.f, 6.f, 7.f, 8.f}}, "glUniformMatrix2fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8}"},
    ValueRow<List<mat3>>{"mat3s", GL_FLOAT_MAT3, {mat3(0.f), someMat3}, "glUniformMatrix3fv", "2, GL_FALSE, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}"},
    ValueRow<List<mat4>>{"mat4s", GL_FLOAT_MAT4, {someMat4, mat4(1.f)}, "glUniformMatrix4fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}"},
    ValueRow<List<mat2x3>>{"mat2x3s", GL_FLOAT_MAT2x3, {someMat2x3, mat2x3(0.f)}, "glUniformMatrix2x3fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0}"},
    ValueRow<List<mat2x4>>{"mat2x4s", GL_FLOAT_MAT2x4, {someMat2x4, mat2x4(0.f)}, "glUniformMatrix2x4fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0, 0, 0, 0, 0}"},
    ValueRow<List<mat3x2>>{"mat3x2s", GL_FLOAT_MAT3x2, {someMat3x2, mat3x2(0.f)}, "glUniformMatrix3x2fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0}"},
    ValueRow<List<mat3x4>>{"mat3x4s", GL_FLOAT_MAT3x4, {someMat3x4, mat3x4(0.f)}, "glUniformMatrix3x4fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}"},
    ValueRow<List<mat4x2>>{"mat4x2s", GL_FLOAT_MAT4x2, {someMat4x2, mat4x2(0.f)}, "glUniformMatrix4x2fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0, 0, 0, 0, 0}"},
    ValueRow<List<mat4x3>>{"mat4x3s", GL_FLOAT_MAT4x3, {someMat4x3, mat4x3(0.f)}, "glUniformMatrix4x3fv", "2, GL_FALSE, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}"});
// clang-format on

/// Calls \p action with every row of a table.
template <class Rows, class Action>
void forEachRow(const Rows& rows, Action action) {
    std::apply(
        [&](const auto&... row) {
            const auto traced = [&](const auto& one) {
                SCOPED_TRACE(one.name);
                action(one);
            };
            (traced(row), ...);
        },
        rows);
}

/// The same with the types that have handles.
template <class Action>
void forEachRow(Action action) {
    forEachRow(valueRows, action);
}

/// The type of a row's value.
template <class Row>
using ValueOf = std::decay_t<decltype(std::declval<Row>().value)>;

/// The value that the uniform of a type of value starts with.
template <class T>
T firstValue(const T&) {
    return T(0);
}
mat3 firstValue(const mat3&) {
    return mat3(1.f);
}
mat4 firstValue(const mat4&) {
    return mat4(1.f);
}
template <class T>
List<T> firstValue(const List<T>& values) {
    return List<T>(values.size(), T(0));
}

/// How GL reports the uniform of a row.
template <class T>
ActiveVariable reported(const ValueRow<T>& row, int location) {
    return {row.name, row.glType, 1, location};
}
template <class T>
ActiveVariable reported(const ValueRow<List<T>>& row, int location) {
    return {row.name + "[0]", row.glType, static_cast<GLint>(row.value.size()), location};
}

/// The uniforms of all rows of a table.
template <class Rows>
std::vector<ActiveVariable> uniformsOf(const Rows& rows) {
    std::vector<ActiveVariable> uniforms;
    forEachRow(rows, [&](const auto& row) {
        uniforms.push_back(reported(row, static_cast<int>(7 + 10 * uniforms.size())));
    });
    return uniforms;
}

std::vector<ActiveVariable> uniformsOfEveryType() {
    return uniformsOf(valueRows);
}

std::vector<std::string> namesOfEveryType() {
    std::vector<std::string> names;
    forEachRow([&](const auto& row) { names.push_back(row.name); });
    return names;
}

/// A texture that does nothing but be bound.
class BareTexture : public Texture {
public:
    explicit BareTexture(Type type = Type::TEXTURE_2D) : Texture(type, GL_RGBA8, {}) {}

    glm::uvec3 extent() const override { return glm::uvec3(0); }
    void resize(const glm::uvec3&) override {}
};

/// Shaders 1 (vertex) and 2 (fragment), and program 3 linked from them by link().
class UniformTrace : public testing::Test {
protected:
    UniformTrace()
        : vertexShader(VertexShader::make("v")),
          fragmentShader(FragmentShader::make("f")) {
        gl.forget();
    }
    void TearDown() override {
        EXPECT_GL_CALLS(gl); // every test looks at all calls of its own
        gl.ignoreTheRest();
    }

    /// Lets the program have these variables; the calls are for the test to look at.
    void linkRecorded(std::vector<ActiveVariable> uniforms,
                      std::vector<ActiveVariable> attributes = {}) {
        gl.setActiveUniforms(std::move(uniforms));
        gl.setActiveAttributes(std::move(attributes));
        gl.forget();
        program = Program::make(vertexShader, fragmentShader);
    }

    void link(std::vector<ActiveVariable> uniforms, std::vector<ActiveVariable> attributes = {}) {
        linkRecorded(std::move(uniforms), std::move(attributes));
        gl.forget();
    }

    /// The calls that read the tables, without those around them.
    Lines takeTableCalls() {
        const Lines calls = gl.takeCalls();
        // To create, to attach twice, to link, to use; in the end to use none.
        constexpr std::ptrdiff_t numCallsBefore = 5;
        if (calls.size() <= numCallsBefore)
            return {"the program was not linked"};
        return {calls.begin() + numCallsBefore, calls.end() - 1};
    }

    /// Expects that there is a uniform that holds its first value.
    template <class T>
    void expectFirstValue(const ValueRow<T>& row) {
        EXPECT_TRUE(program->hasUniform(row.name.c_str()));
        EXPECT_EQ(program->getUniform<T>(row.name.c_str()).value, firstValue(row.value));
    }

    /// Lets GL answer questions for a uniform's location with these, in turn.
    void answerLocations(std::vector<GLint> locations) {
        gl.answer(glad_glGetUniformLocation,
                  [locations, next = std::size_t{0}](GLuint, const GLchar*) mutable -> GLint {
                      return locations.at(next++);
                  });
    }

    FakeGl gl;
    std::shared_ptr<VertexShader> vertexShader;
    std::shared_ptr<FragmentShader> fragmentShader;
    std::shared_ptr<Program> program;
};

TEST_F(UniformTrace, SamplerThatIsNotLookedUpYetIsOfUnitZero) {
    const vellis::Uniform<vellis::Texture> handle("image");
    EXPECT_EQ(handle.unit, 0u);
    EXPECT_EQ(handle.texture, nullptr);
}

TEST_F(UniformTrace, LinkingReadsUniformsAndThenAttributesWhileTheProgramIsInUse) {
    linkRecorded({{"mvp", GL_FLOAT_MAT4}, {"w[0]", GL_FLOAT, 4}, {"flag", GL_BOOL}},
                 {{"position", GL_FLOAT_VEC2}, {"uv", GL_FLOAT_VEC2}});
    EXPECT_GL_CALLS(
        gl, "glCreateProgram()", "glAttachShader(3, 1)", "glAttachShader(3, 2)", "glLinkProgram(3)",
        "glUseProgram(3)", "glGetProgramiv(3, GL_ACTIVE_UNIFORMS, out)",
        "glGetProgramiv(3, GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
        "glGetActiveUniform(3, 0, 5, null, out, out, out)", "glGetUniformLocation(3, \"mvp\")",
        "glGetActiveUniform(3, 1, 5, null, out, out, out)", "glGetUniformLocation(3, \"w[0]\")",
        "glGetActiveUniform(3, 2, 5, null, out, out, out)", "glGetUniformLocation(3, \"flag\")",
        "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTES, out)",
        "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, out)",
        "glGetActiveAttrib(3, 0, 9, null, out, out, out)", "glGetAttribLocation(3, \"position\")",
        "glGetActiveAttrib(3, 1, 9, null, out, out, out)", "glGetAttribLocation(3, \"uv\")",
        "glUseProgram(0)");
}

// The table of uniforms

TEST_F(UniformTrace, EveryTypeOfValueGetsAHandleWithItsLocationAndFirstValue) {
    const std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    link(uniforms);
    EXPECT_EQ(size(program->variables_->uniforms), numValueRows);
    std::size_t i = 0;
    forEachRow([&](const auto& row) {
        const auto& handle = program->getUniform<ValueOf<decltype(row)>>(row.name.c_str());
        EXPECT_EQ(handle.loc, uniforms[i++].location);
        EXPECT_EQ(handle.name, nullptr);
        EXPECT_EQ(program->getUniformLoc(row.name.c_str()), static_cast<unsigned int>(handle.loc));
        expectFirstValue(row);
    });
}

TEST_F(UniformTrace, SamplersOfOneToThreeDimensionsGetHandlesWithUnitsInOrder) {
    const unsigned int types[] = {GL_SAMPLER_1D,
                                  GL_SAMPLER_2D,
                                  GL_SAMPLER_3D,
                                  GL_INT_SAMPLER_1D,
                                  GL_INT_SAMPLER_2D,
                                  GL_INT_SAMPLER_3D,
                                  GL_UNSIGNED_INT_SAMPLER_1D,
                                  GL_UNSIGNED_INT_SAMPLER_2D,
                                  GL_UNSIGNED_INT_SAMPLER_3D};
    std::vector<ActiveVariable> uniforms;
    // Names whose order is not that of the units.
    for (const unsigned int type : types)
        uniforms.push_back({std::string(1, static_cast<char>('z' - uniforms.size())), type, 1,
                            static_cast<GLint>(30 - uniforms.size())});
    link(uniforms);
    for (std::size_t i = 0; i < uniforms.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(program->hasUniform(uniforms[i].name.c_str()));
        const auto& handle = program->getUniformTexture(uniforms[i].name.c_str());
        EXPECT_EQ(handle.unit, i);
        EXPECT_EQ(handle.loc, uniforms[i].location);
        EXPECT_EQ(handle.texture, nullptr);
        EXPECT_EQ(handle.name, nullptr);
    }
}

/// Types of which a single uniform has no handle.
const unsigned int typesWithoutHandle[] = {0,
                                           GL_BOOL,
                                           GL_BOOL_VEC2,
                                           GL_BOOL_VEC3,
                                           GL_BOOL_VEC4,
                                           GL_FLOAT_MAT2,
                                           GL_FLOAT_MAT2x3,
                                           GL_FLOAT_MAT2x4,
                                           GL_FLOAT_MAT3x2,
                                           GL_FLOAT_MAT3x4,
                                           GL_FLOAT_MAT4x2,
                                           GL_FLOAT_MAT4x3,
                                           GL_DOUBLE,
                                           GL_SAMPLER_CUBE,
                                           GL_SAMPLER_1D_SHADOW,
                                           GL_SAMPLER_2D_SHADOW,
                                           GL_SAMPLER_2D_RECT,
                                           GL_SAMPLER_2D_RECT_SHADOW,
                                           GL_SAMPLER_1D_ARRAY,
                                           GL_SAMPLER_2D_ARRAY,
                                           GL_SAMPLER_BUFFER,
                                           GL_INT_SAMPLER_CUBE,
                                           GL_INT_SAMPLER_2D_RECT,
                                           GL_INT_SAMPLER_2D_ARRAY,
                                           GL_UNSIGNED_INT_SAMPLER_CUBE,
                                           GL_UNSIGNED_INT_SAMPLER_2D_RECT,
                                           GL_UNSIGNED_INT_SAMPLER_2D_ARRAY};

/// Types of which an array has no handle, besides those.
const unsigned int typesWithoutArrayHandle[] = {GL_FLOAT_MAT3,
                                                GL_FLOAT_MAT4,
                                                GL_SAMPLER_1D,
                                                GL_SAMPLER_2D,
                                                GL_SAMPLER_3D,
                                                GL_INT_SAMPLER_1D,
                                                GL_INT_SAMPLER_2D,
                                                GL_INT_SAMPLER_3D,
                                                GL_UNSIGNED_INT_SAMPLER_1D,
                                                GL_UNSIGNED_INT_SAMPLER_2D,
                                                GL_UNSIGNED_INT_SAMPLER_3D};

TEST_F(UniformTrace, OtherTypesGetNoHandleAndTakeNoUnit) {
    std::vector<ActiveVariable> uniforms;
    for (const unsigned int type : typesWithoutHandle) {
        uniforms.push_back({"single" + std::to_string(type), type});
        uniforms.push_back({"array" + std::to_string(type) + "[0]", type, 2});
    }
    for (const unsigned int type : typesWithoutArrayHandle)
        uniforms.push_back({"array" + std::to_string(type) + "[0]", type, 2});
    uniforms.push_back({"image", GL_SAMPLER_2D});
    link(uniforms);
    EXPECT_EQ(size(program->variables_->uniforms), 1u);
    EXPECT_TRUE(program->hasUniform("image"));
    EXPECT_EQ(program->getUniformTexture("image").unit, 0u);
}

TEST_F(UniformTrace, CubeSamplerBetweenTwoSamplersTakesNoUnit) {
    link({{"a", GL_SAMPLER_2D}, {"cube", GL_SAMPLER_CUBE}, {"b", GL_SAMPLER_2D}});
    EXPECT_EQ(program->getUniformTexture("a").unit, 0u);
    EXPECT_EQ(program->getUniformTexture("b").unit, 1u);
    EXPECT_FALSE(program->hasUniform("cube"));
}

TEST_F(UniformTrace, UnitsGoToSingleSamplersInOrderWhateverLiesBetween) {
    link({{"color", GL_FLOAT_VEC4},
          {"b", GL_SAMPLER_2D},
          {"many[0]", GL_SAMPLER_2D, 3},
          {"a", GL_SAMPLER_3D},
          {"one[0]", GL_SAMPLER_1D, 1}});
    EXPECT_EQ(program->getUniformTexture("b").unit, 0u);
    EXPECT_EQ(program->getUniformTexture("a").unit, 1u);
    EXPECT_EQ(program->getUniformTexture("one[0]").unit, 2u);
    EXPECT_FALSE(program->hasUniform("many"));
}

TEST_F(UniformTrace, ArrayOfFourIsKeptUnderItsNameWithoutBracketsAsFourZeros) {
    link({{"w[0]", GL_FLOAT, 4}});
    EXPECT_TRUE(program->hasUniform("w"));
    EXPECT_FALSE(program->hasUniform("w[0]"));
    EXPECT_EQ(program->getUniform<List<float>>("w").value, (List<float>{0.f, 0.f, 0.f, 0.f}));
}

TEST_F(UniformTrace, ArrayReportedWithoutBracketsIsAnArrayAsWell) {
    link({{"w", GL_INT_VEC2, 2}});
    EXPECT_EQ(program->getUniform<List<ivec2>>("w").value.size(), 2u);
}

TEST_F(UniformTrace, ArrayOfOneIsASingleUniformUnderTheNameThatGlReports) {
    for (const char* const name : {"v[0]", "v"}) {
        link({{name, GL_FLOAT, 1, 5}});
        EXPECT_EQ(size(program->variables_->uniforms), 1u);
        EXPECT_EQ(program->getUniform<float>(name).loc, 5);
    }
    gl.forget();
}

TEST_F(UniformTrace, SizeBelowOneIsASingleUniform) {
    link({{"none", GL_FLOAT, 0, 5}, {"negative", GL_FLOAT, -1, 6}});
    EXPECT_EQ(program->getUniform<float>("none").loc, 5);
    EXPECT_EQ(program->getUniform<float>("negative").loc, 6);
}

TEST_F(UniformTrace, NameOfAnArrayIsCutAtItsFirstBracket) {
    link({{"lights[1].weights[0]", GL_FLOAT, 4, 5}});
    EXPECT_TRUE(program->hasUniform("lights"));
    EXPECT_EQ(program->getUniform<List<float>>("lights").loc, 5);
}

TEST_F(UniformTrace, NameOfASingleUniformIsNotCut) {
    link({{"lights[1].color", GL_FLOAT_VEC4, 1, 5}});
    EXPECT_FALSE(program->hasUniform("lights"));
    EXPECT_EQ(program->getUniform<vec4>("lights[1].color").loc, 5);
}

/// What GL answers about the location of an array, and what it is asked.
struct LocationRow {
    const char* name; ///< as GL reports it
    std::vector<GLint> answers;
    Lines asked;
};

const LocationRow locationRows[] = {
    {"w[0]", {8}, {"w[0]"}},
    {"w[0]", {0}, {"w[0]"}},
    {"w[0]", {-1, 8}, {"w[0]", "w"}},
    {"w[0]", {-1, -1, 8}, {"w[0]", "w", "w[0]"}},
    {"w[0]", {-1, -1, -1}, {"w[0]", "w", "w[0]"}},
    {"w", {-1, -1, 8}, {"w", "w", "w[0]"}},
};

TEST_F(UniformTrace, LocationOfAnArrayIsAskedForByItsOtherNamesUntilThereIsOne) {
    for (const LocationRow& row : locationRows) {
        answerLocations(row.answers);
        linkRecorded({{row.name, GL_FLOAT, 4}});
        Lines asked;
        for (const std::string& call : gl.takeCalls()) {
            const std::size_t quote = call.find('"');
            if (quote != std::string::npos)
                asked.push_back(call.substr(quote + 1, call.rfind('"') - quote - 1));
        }
        EXPECT_EQ(asked, row.asked);
        EXPECT_EQ(program->getUniform<List<float>>("w").loc, row.answers.back());
    }
    gl.forget();
}

TEST_F(UniformTrace, LocationOfASingleUniformIsAskedForOnce) {
    linkRecorded({{"gl_ModelViewMatrix", GL_FLOAT_MAT4, 1, -1}});
    EXPECT_EQ(gl.countOf("glGetUniformLocation"), 1u);
    EXPECT_TRUE(program->hasUniform("gl_ModelViewMatrix"));
    EXPECT_EQ(program->getUniformLoc("gl_ModelViewMatrix"), noLocation);
    gl.forget();
}

TEST_F(UniformTrace, SecondUniformOfANameDoesNotReplaceTheFirst) {
    link({{"w[0]", GL_FLOAT, 4, 5}, {"w", GL_INT, 1, 9}, {"w", GL_FLOAT, 2, 6}});
    EXPECT_EQ(size(program->variables_->uniforms), 1u);
    EXPECT_EQ(program->getUniform<List<float>>("w").loc, 5);
    EXPECT_EQ(program->getUniform<List<float>>("w").value.size(), 4u);
}

TEST_F(UniformTrace, LinkingSendsNoValues) {
    std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    uniforms.push_back({"image", GL_SAMPLER_2D});
    linkRecorded(std::move(uniforms));
    for (const std::string& call : gl.takeCalls()) {
        EXPECT_NE(call.rfind("glUniform", 0), 0u) << call;
        EXPECT_NE(call.rfind("glActiveTexture", 0), 0u) << call;
    }
}

TEST_F(UniformTrace, LinkingAgainGivesFreshHandlesAndUnitsFromZero) {
    link({{"old", GL_FLOAT}, {"color", GL_FLOAT_VEC4}, {"a", GL_SAMPLER_2D}, {"b", GL_SAMPLER_2D}},
         {{"position", GL_FLOAT_VEC2}, {"before", GL_FLOAT}});
    program->setUniform("color", vec4(1.f));
    const std::weak_ptr<void> handles = program->variables_;
    gl.setActiveUniforms({{"b", GL_SAMPLER_2D}, {"color", GL_FLOAT_VEC4}, {"a", GL_SAMPLER_2D}});
    gl.setActiveAttributes({{"after", GL_FLOAT}, {"position", GL_FLOAT_VEC2}});
    program->link();
    EXPECT_TRUE(handles.expired());
    EXPECT_FALSE(program->hasUniform("old"));
    EXPECT_FALSE(program->hasAttrib("before"));
    EXPECT_EQ(program->getAttribLoc("position"), 1u);
    EXPECT_EQ(program->getUniform<vec4>("color").value, vec4(0.f));
    EXPECT_EQ(program->getUniformLoc("color"), 1u);
    EXPECT_EQ(program->getUniformTexture("b").unit, 0u);
    EXPECT_EQ(program->getUniformTexture("a").unit, 1u);
    gl.forget();
}

TEST_F(UniformTrace, ProgramThatDoesNotLinkHasNoUniformsAndAttributes) {
    gl.failToLink();
    link({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    EXPECT_EQ(size(program->variables_->uniforms), 0u);
    EXPECT_EQ(size(program->variables_->attributes), 0u);
}

TEST_F(UniformTrace, ProgramThatWasNotLinkedHasNoUniformsAndAttributes) {
    gl.setActiveUniforms({{"color", GL_FLOAT_VEC4}});
    gl.setActiveAttributes({{"position", GL_FLOAT_VEC2}});
    program = Program::make();
    EXPECT_FALSE(program->hasUniform("color"));
    EXPECT_FALSE(program->hasAttrib("position"));
    EXPECT_FALSE(Program::null().hasUniform("color"));
    program->bind();
    EXPECT_FALSE(Program::current().hasUniform("color"));
    gl.forget();
}

TEST_F(UniformTrace, DisposeFreesTheHandles) {
    link({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    const std::weak_ptr<void> handles = program->variables_;
    program->dispose();
    EXPECT_TRUE(handles.expired());
    EXPECT_EQ(program->getUniformLoc("color"), noLocation);
    EXPECT_EQ(program->getAttribLoc("position"), noLocation);
    gl.forget();
}

TEST_F(UniformTrace, CopiesShareTheHandlesAndTheLastHolderFreesThem) {
    link({{"color", GL_FLOAT_VEC4}, {"image", GL_SAMPLER_2D}}, {{"position", GL_FLOAT_VEC2}});
    const std::weak_ptr<void> handles = program->variables_;
    {
        Program copy = *program;
        Program assigned = *Program::make();
        assigned = *program;
        copy.setUniform("color", vec4(0.5f));
        EXPECT_EQ(program->getUniform<vec4>("color").value, vec4(0.5f));
        EXPECT_EQ(&assigned.getUniform<vec4>("color"), &program->getUniform<vec4>("color"));
        program.reset();
        EXPECT_EQ(copy.getUniform<vec4>("color").value, vec4(0.5f));
        EXPECT_EQ(copy.getAttribLoc("position"), 0u);
        copy.dispose();
        EXPECT_FALSE(copy.hasUniform("color"));
        EXPECT_FALSE(handles.expired());
    }
    EXPECT_TRUE(handles.expired());
    gl.forget();
}

TEST_F(UniformTrace, LinkingACopyAgainLeavesTheHandlesOfTheOriginal) {
    link({{"color", GL_FLOAT_VEC4}});
    const UniformVariable* const handle = &program->getUniform<vec4>("color");
    {
        Program copy = *program;
        copy.link();
        EXPECT_NE(&copy.getUniform<vec4>("color"), handle);
        EXPECT_EQ(&program->getUniform<vec4>("color"), handle);
    }
    gl.forget();
}

// The table of attributes

TEST_F(UniformTrace, AttributesOfAnyTypeAndSizeGetTheLocationThatTheLinkerChose) {
    link({}, {{"position_t", GL_FLOAT_VEC3, 1, 4},
              {"matrix", GL_FLOAT_MAT2, 2, 0},
              {"unknown", 0, 0, 9},
              {"gl_Vertex", GL_FLOAT_VEC4, 1, -1}});
    EXPECT_EQ(size(program->variables_->attributes), 4u);
    EXPECT_EQ(program->getAttribLoc("position_t"), 4u);
    EXPECT_EQ(program->getAttrib("position_t").loc, 4);
    EXPECT_EQ(program->getAttribLoc("matrix"), 0u);
    EXPECT_EQ(program->getAttribLoc("unknown"), 9u);
    EXPECT_TRUE(program->hasAttrib("gl_Vertex"));
    EXPECT_EQ(program->getAttribLoc("gl_Vertex"), noLocation);
}

TEST_F(UniformTrace, SecondAttributeOfANameDoesNotReplaceTheFirst) {
    gl.answer(glad_glGetAttribLocation,
              [next = 5](GLuint, const GLchar*) mutable -> GLint { return next++; });
    link({}, {{"position", GL_FLOAT_VEC2}, {"position", GL_FLOAT_VEC3}});
    EXPECT_EQ(program->getAttribLoc("position"), 5u);
}

TEST_F(UniformTrace, UniformsAndAttributesHaveTablesOfTheirOwn) {
    link({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    EXPECT_TRUE(program->hasUniform("color"));
    EXPECT_FALSE(program->hasUniform("position"));
    EXPECT_TRUE(program->hasAttrib("position"));
    EXPECT_FALSE(program->hasAttrib("color"));
}

TEST_F(UniformTrace, UnknownNamesAreNoErrorAndAskNothingOfGl) {
    link({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    for (const char* const name :
         {"", "colo", "colors", "Color", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(program->hasUniform(name));
        EXPECT_FALSE(program->hasAttrib(name));
        EXPECT_EQ(program->getUniformLoc(name), noLocation);
        EXPECT_EQ(program->getAttribLoc(name), noLocation);
        EXPECT_EQ(program->getAttrib(name).loc, -1);
        EXPECT_EQ(program->getUniform<vec4>(name).loc, -1);
        EXPECT_EQ(program->getUniformTexture(name).loc, -1);
    }
    EXPECT_GL_CALLS(gl);
}

// What GL may leave unwritten

TEST_F(UniformTrace, CountsThatGlLeavesUnwrittenAreNone) {
    gl.refuse(GL_ACTIVE_UNIFORMS);
    gl.refuse(GL_ACTIVE_ATTRIBUTES);
    linkRecorded({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    EXPECT_EQ(takeTableCalls(), (Lines{"glGetProgramiv(3, GL_ACTIVE_UNIFORMS, out)",
                                       "glGetProgramiv(3, GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
                                       "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTES, out)",
                                       "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, out)"}));
}

/// A length of names that GL could answer, or not.
class UnwrittenLengthTrace : public UniformTrace, public testing::WithParamInterface<int> {};

TEST_P(UnwrittenLengthTrace, LeavesRoomForAnEmptyName) {
    gl.setState(GL_ACTIVE_UNIFORM_MAX_LENGTH, {GetParam()});
    gl.setState(GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, {GetParam()});
    linkRecorded({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    EXPECT_EQ(
        takeTableCalls(),
        (Lines{"glGetProgramiv(3, GL_ACTIVE_UNIFORMS, out)",
               "glGetProgramiv(3, GL_ACTIVE_UNIFORM_MAX_LENGTH, out)",
               "glGetActiveUniform(3, 0, 1, null, out, out, out)", "glGetUniformLocation(3, \"\")",
               "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTES, out)",
               "glGetProgramiv(3, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, out)",
               "glGetActiveAttrib(3, 0, 1, null, out, out, out)", "glGetAttribLocation(3, \"\")"}));
}

INSTANTIATE_TEST_SUITE_P(Lengths, UnwrittenLengthTrace, testing::Values(0, -1, 1));

TEST_F(UniformTrace, LengthsThatGlLeavesUnwrittenLeaveRoomForAnEmptyName) {
    gl.refuse(GL_ACTIVE_UNIFORM_MAX_LENGTH);
    gl.refuse(GL_ACTIVE_ATTRIBUTE_MAX_LENGTH);
    linkRecorded({{"color", GL_FLOAT_VEC4}}, {{"position", GL_FLOAT_VEC2}});
    const Lines calls = gl.takeCalls();
    EXPECT_EQ(calls.at(7), "glGetActiveUniform(3, 0, 1, null, out, out, out)");
    EXPECT_EQ(calls.at(11), "glGetActiveAttrib(3, 0, 1, null, out, out, out)");
}

TEST_F(UniformTrace, VariablesThatGlLeavesUnwrittenHaveNoNameAndNoHandle) {
    // GL counts one more than it tells of.
    gl.setState(GL_ACTIVE_UNIFORMS, {2});
    gl.setState(GL_ACTIVE_ATTRIBUTES, {2});
    linkRecorded({{"floats[0]", GL_FLOAT, 4}}, {{"position", GL_FLOAT_VEC2}});
    const Lines calls = gl.takeCalls();
    EXPECT_EQ(calls.at(10), "glGetUniformLocation(3, \"\")");
    EXPECT_EQ(calls.at(16), "glGetAttribLocation(3, \"\")");
    EXPECT_EQ(size(program->variables_->uniforms), 1u);
    EXPECT_EQ(program->getUniformLoc("floats"), 0u);
    EXPECT_EQ(program->getAttribLoc("position"), 0u);
    EXPECT_EQ(program->getAttribLoc(""), noLocation);
}

// Setting values

TEST_F(UniformTrace, SettingByNameSendsEachTypeWithItsOneCallAndRemembersTheValue) {
    const std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    link(uniforms);
    std::size_t i = 0;
    forEachRow([&](const auto& row) {
        expectFirstValue(row); // nothing before has touched it
        program->setUniform(row.name.c_str(), row.value);
        EXPECT_GL_CALLS(gl, row.call(uniforms[i++].location));
        EXPECT_EQ(program->getUniform<ValueOf<decltype(row)>>(row.name.c_str()).value, row.value);
    });
}

TEST_F(UniformTrace, SettingTheProgramsOwnHandleSendsItsValue) {
    const std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    link(uniforms);
    std::size_t i = 0;
    forEachRow([&](const auto& row) {
        auto& handle = program->getUniform<ValueOf<decltype(row)>>(row.name.c_str());
        handle.value = row.value;
        program->setUniform(handle);
        EXPECT_GL_CALLS(gl, row.call(uniforms[i++].location));
    });
}

TEST_F(UniformTrace, SettingAHandleOfANameSendsItsValueToTheProgramsUniformOfThatName) {
    const std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    link(uniforms);
    std::size_t i = 0;
    forEachRow([&](const auto& row) {
        const Uniform<ValueOf<decltype(row)>> handle(row.name.c_str(), row.value);
        EXPECT_EQ(handle.loc, -1);
        EXPECT_EQ(handle.name, row.name);
        program->setUniform(handle);
        EXPECT_GL_CALLS(gl, row.call(uniforms[i++].location));
        EXPECT_EQ(handle.loc, -1);
        expectFirstValue(row); // the value stays the caller's
    });
}

/// A drawable of nothing, without a binding.
class Nothing : public vellis::Drawable {
public:
    Nothing() : Drawable(PrimitiveType::Points) {}
};

TEST_F(UniformTrace, DrawingSendsEachTypeWithItsOneCallByHandleAndByName) {
    const std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    link(uniforms);
    std::size_t i = 0;
    forEachRow([&](const auto& row) {
        const Lines expected = {"glUseProgram(3)", row.call(uniforms[i++].location),
                                "glDrawArrays(GL_POINTS, 0, 0)", "glUseProgram(0)"};
        program->draw(Nothing(), Uniform(row.name.c_str(), row.value));
        EXPECT_GL_CALLS(gl, expected);
        expectFirstValue(row); // the value stays the caller's
        auto& handle = program->getUniform<ValueOf<decltype(row)>>(row.name.c_str());
        handle.value = row.value;
        program->draw(Nothing(), handle);
        EXPECT_GL_CALLS(gl, expected);
    });
}

TEST_F(UniformTrace, HandleOfANameStartsWithZerosOrTheIdentity) {
    forEachRow([&](const auto& row) {
        using T = ValueOf<decltype(row)>;
        EXPECT_EQ(Uniform<T>(row.name.c_str()).value, firstValue(T()));
    });
    EXPECT_EQ(Uniform<float>("f").value, 0.f);
    EXPECT_EQ(Uniform<vec4>("v").value, vec4(0.f));
    EXPECT_EQ(Uniform<mat3>("m").value, mat3(1.f));
    EXPECT_EQ(Uniform<mat4>("m").value, mat4(1.f));
    EXPECT_TRUE(Uniform<List<float>>("w").value.empty());
}

TEST_F(UniformTrace, AssignedHandleTakesPlaceAndValueAndKeepsItsType) {
    link({{"radius", GL_FLOAT, 1, 3}, {"mvp", GL_FLOAT_MAT4, 1, 7}});
    Uniform<float>& radius = program->getUniform<float>("radius");
    radius = Uniform<float>("other", 2.f);
    EXPECT_EQ(radius.loc, -1);
    EXPECT_STREQ(radius.name, "other");
    EXPECT_EQ(radius.value, 2.f);
    EXPECT_EQ(&program->getUniform<float>("radius"), &radius);
    // Only this test reaches the assignment of the base: it would make a float's room a matrix's.
    static_cast<UniformVariable&>(radius) = program->getUniform<mat4>("mvp");
    EXPECT_EQ(radius.loc, 7);
    EXPECT_EQ(&program->getUniform<float>("radius"), &radius);
    EXPECT_EQ(program->findUniform<mat4>("radius"), nullptr);
}

TEST_F(UniformTrace, HandleWithALocationGoesThereWhateverTheProgram) {
    link({{"other", GL_FLOAT}, {"radius", GL_FLOAT, 1, 12}});
    const auto other = program;
    Uniform<float> handle = program->getUniform<float>("radius");
    handle.value = 3.f;
    handle.name = "radius";
    link({{"radius", GL_FLOAT, 1, 0}});
    program->setUniform(handle);
    EXPECT_GL_CALLS(gl, "glUniform1f(12, 3)");
    EXPECT_EQ(other->getUniform<float>("radius").value, 0.f); // a copy is the caller's
    gl.setRecording(false);                                   // the end of the other program
}

TEST_F(UniformTrace, LocationZeroIsALocation) {
    link({{"radius", GL_FLOAT, 1, 0}});
    auto& handle = program->getUniform<float>("radius");
    handle.value = 3.f;
    program->setUniform(handle);
    program->setUniform(Uniform<float>("radius", 4.f));
    EXPECT_GL_CALLS(gl, "glUniform1f(0, 3)", "glUniform1f(0, 4)");
}

TEST_F(UniformTrace, ListsAreSentWithTheirOwnLengthWhateverTheArraysIs) {
    link({{"w[0]", GL_FLOAT, 4, 5}, {"v[0]", GL_FLOAT_VEC2, 4, 9}});
    program->setUniform("w", List<float>{1.f, 2.f});
    program->setUniform("w", List<float>{});
    program->setUniform("v", List<vec2>{});
    EXPECT_GL_CALLS(gl, "glUniform1fv(5, 2, {1, 2})", "glUniform1fv(5, 0, null)",
                    "glUniform2fv(9, 0, null)");
    EXPECT_TRUE(program->getUniform<List<float>>("w").value.empty());
}

TEST_F(UniformTrace, UniformWithoutALocationRemembersAndSendsToNone) {
    link({{"gl_NormalScale", GL_FLOAT, 1, -1}});
    program->setUniform("gl_NormalScale", 2.f);
    EXPECT_GL_CALLS(gl, "glUniform1f(-1, 2)");
    EXPECT_EQ(program->getUniform<float>("gl_NormalScale").value, 2.f);
}

/// Takes the calls of GL 3.0 for unsigned values away.
void removeCoreUnsignedCalls() {
    FakeGl::remove(glad_glUniform1ui);
    FakeGl::remove(glad_glUniform1uiv);
    FakeGl::remove(glad_glUniform2uiv);
    FakeGl::remove(glad_glUniform3uiv);
    FakeGl::remove(glad_glUniform4uiv);
}

/// Takes those of the extension away.
void removeExtensionUnsignedCalls() {
    FakeGl::remove(glad_glUniform1uiEXT);
    FakeGl::remove(glad_glUniform1uivEXT);
    FakeGl::remove(glad_glUniform2uivEXT);
    FakeGl::remove(glad_glUniform3uivEXT);
    FakeGl::remove(glad_glUniform4uivEXT);
}

TEST_F(UniformTrace, UnsignedValuesGoThroughTheExtensionWhereThatIsAllThereIs) {
    const std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    link(uniforms);
    removeCoreUnsignedCalls();
    std::size_t i = 0;
    forEachRow([&](const auto& row) {
        program->setUniform(row.name.c_str(), row.value);
        EXPECT_GL_CALLS(gl, row.call(uniforms[i++].location, row.isUnsigned() ? "EXT" : ""));
    });
}

TEST_F(UniformTrace, UnsignedValuesAreRememberedButNotSentWhereThereIsNoCall) {
    link(uniformsOfEveryType());
    removeCoreUnsignedCalls();
    removeExtensionUnsignedCalls();
    forEachRow([&](const auto& row) {
        program->setUniform(row.name.c_str(), row.value);
        EXPECT_EQ(gl.takeCalls().size(), row.isUnsigned() ? 0u : 1u);
        EXPECT_EQ(program->getUniform<ValueOf<decltype(row)>>(row.name.c_str()).value, row.value);
    });
}

TEST_F(UniformTrace, UnsignedValuesGoThroughTheCoreCallsWhereTheExtensionIsNotThere) {
    link({{"u", GL_UNSIGNED_INT, 1, 5}});
    removeExtensionUnsignedCalls();
    program->setUniform("u", 7u);
    EXPECT_GL_CALLS(gl, "glUniform1ui(5, 7)");
}

// Unknown and mismatched names

TEST_F(UniformTrace, ValueForAnUnknownNameGoesToNoLocationAndIsForgotten) {
    link(uniformsOfEveryType());
    forEachRow([&](const auto& row) {
        using T = ValueOf<decltype(row)>;
        for (const char* const name : {"unknown", static_cast<const char*>(nullptr)}) {
            program->setUniform(name, row.value);
            program->setUniform(Uniform<T>(name, row.value));
            EXPECT_GL_CALLS(gl, row.call(-1), row.call(-1));
            EXPECT_EQ(program->getUniform<T>(name).value, firstValue(T()));
        }
    });
    EXPECT_EQ(size(program->variables_->uniforms), numValueRows);
    forEachRow([&](const auto& row) { expectFirstValue(row); });
}

TEST_F(UniformTrace, ValueForAUniformOfAnotherTypeGoesToNoLocationAndIsForgotten) {
    std::vector<ActiveVariable> uniforms = uniformsOfEveryType();
    uniforms.push_back({"image", GL_SAMPLER_2D, 1, 99});
    link(std::move(uniforms));
    std::vector<std::string> names = namesOfEveryType();
    names.emplace_back("image");
    forEachRow([&](const auto& row) {
        using T = ValueOf<decltype(row)>;
        for (const std::string& name : names) {
            if (name == row.name)
                continue;
            EXPECT_EQ(program->getUniform<T>(name.c_str()).loc, -1) << name;
            program->setUniform(name.c_str(), row.value);
            program->setUniform(Uniform<T>(name.c_str(), row.value));
            EXPECT_GL_CALLS(gl, row.call(-1), row.call(-1));
        }
    });
    forEachRow([&](const auto& row) { expectFirstValue(row); });
    EXPECT_EQ(program->getUniformTexture("image").loc, 99);
}

TEST_F(UniformTrace, InertHandleRemembersNothing) {
    link({});
    auto& inert = program->getUniform<mat4>("unknown");
    EXPECT_EQ(inert.value, mat4(1.f));
    inert.value = mat4(2.f);
    inert.loc = 5;
    inert.name = "color";
    EXPECT_EQ(&program->getUniform<mat4>("other"), &inert);
    EXPECT_EQ(inert.value, mat4(1.f));
    EXPECT_EQ(inert.loc, -1);
    EXPECT_EQ(inert.name, nullptr);

    BareTexture texture;
    auto& sampler = program->getUniformTexture("unknown");
    sampler.texture = &texture;
    sampler.unit = 3;
    EXPECT_EQ(program->getUniformTexture("unknown").texture, nullptr);
    EXPECT_EQ(program->getUniformTexture("unknown").unit, 0u);
    gl.setRecording(false); // the end of the texture
    gl.forget();
}

TEST_F(UniformTrace, SettingAnInertHandleGoesToNoLocation) {
    link({{"color", GL_FLOAT_VEC4}});
    auto& inert = program->getUniform<float>("color");
    inert.value = 2.f;
    program->setUniform(inert);
    EXPECT_GL_CALLS(gl, "glUniform1f(-1, 2)");
}

// What has no handle

TEST_F(UniformTrace, TypesWithoutHandlesAreSentWhereGlHasTheirName) {
    const std::vector<ActiveVariable> uniforms = uniformsOf(unkeptRows);
    link(uniforms);
    EXPECT_EQ(size(program->variables_->uniforms), 0u);
    std::size_t i = 0;
    forEachRow(unkeptRows, [&](const auto& row) {
        const std::string call = row.call(uniforms[i++].location);
        program->setUniform(row.name.c_str(), row.value);
        EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"" + row.name + "\")", call);
        program->setUniform(row.name.c_str(), row.value);
        EXPECT_GL_CALLS(gl, call);
        EXPECT_FALSE(program->hasUniform(row.name.c_str()));
    });
}

TEST_F(UniformTrace, EmptyListsOfTypesWithoutHandlesAreSentAsWell) {
    link({{"flags[0]", GL_BOOL, 4, 5}, {"bones[0]", GL_FLOAT_MAT4, 4, 9}});
    program->setUniform("flags", List<bool>{});
    program->setUniform("bones", List<mat4>{});
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"flags\")", "glUniform1iv(5, 0, null)",
                    "glGetUniformLocation(3, \"bones\")",
                    "glUniformMatrix4fv(9, 0, GL_FALSE, null)");
}

/// An array, a member that GL reports, and others that it does not.
std::vector<ActiveVariable> elementsAndMembers() {
    return {{"weights[0]", GL_FLOAT, 4, 5},
            {"lights[0].color", GL_FLOAT_VEC3, 1, 20},
            {"lights[1].weights[0]", GL_FLOAT, 2, 30},
            {"inner.deep[1].turn", GL_FLOAT_MAT2, 1, 40},
            {"inner.on", GL_BOOL, 1, 50},
            {"bones[0]", GL_FLOAT_MAT4, 3, 60},
            {"one[0]", GL_FLOAT, 1, 70}};
}

TEST_F(UniformTrace, ElementsAndMembersAreSentWhereGlHasThem) {
    link(elementsAndMembers());
    program->setUniform("weights[1]", 2.f);
    program->setUniform("weights[2]", List<float>{3.f, 4.f}); // from there on
    program->setUniform("inner.deep[1].turn", mat2(1.f));
    program->setUniform("inner.on", true);
    program->setUniform("bones[1]", mat4(1.f));
    EXPECT_GL_CALLS(
        gl, "glGetUniformLocation(3, \"weights[1]\")", "glUniform1f(6, 2)",
        "glGetUniformLocation(3, \"weights[2]\")", "glUniform1fv(7, 2, {3, 4})",
        "glGetUniformLocation(3, \"inner.deep[1].turn\")",
        "glUniformMatrix2fv(40, 1, GL_FALSE, {1, 0, 0, 1})",
        "glGetUniformLocation(3, \"inner.on\")", "glUniform1i(50, 1)",
        "glGetUniformLocation(3, \"bones[1]\")",
        "glUniformMatrix4fv(61, 1, GL_FALSE, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, "
        "0, 1})");
    // The handle of an array has the values that were set through it.
    EXPECT_EQ(program->getUniform<List<float>>("weights").value, List<float>(4, 0.f));
}

TEST_F(UniformTrace, HandleOfTheNameOfAnElementIsSentThereToo) {
    link(elementsAndMembers());
    const Uniform<float> weight("weights[3]", 0.5f);
    program->setUniform(weight);
    program->setUniform(weight);
    program->setUniform(Uniform<float>("weights[9]", 0.5f));
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"weights[3]\")", "glUniform1f(8, 0.5)",
                    "glUniform1f(8, 0.5)", "glGetUniformLocation(3, \"weights[9]\")");
    EXPECT_EQ(weight.loc, -1);
}

TEST_F(UniformTrace, NamesOfTheTableAreNotAskedOfGl) {
    link(elementsAndMembers());
    program->setUniform("lights[0].color", vec3(1.f));
    program->setUniform("one[0]", 2.f);
    EXPECT_GL_CALLS(gl, "glUniform3fv(20, 1, {1, 1, 1})", "glUniform1f(70, 2)");
    EXPECT_EQ(program->getUniform<vec3>("lights[0].color").value, vec3(1.f));
    // Neither with a value of another type.
    program->setUniform("lights[0].color", 1.f);
    EXPECT_GL_CALLS(gl, "glUniform1f(-1, 1)");
    program->setUniform("lights[0].color", true);
    program->setUniform("one[0]", mat2(1.f));
    program->setUniform("weights", List<bool>{true});
    EXPECT_GL_CALLS(gl);
}

TEST_F(UniformTrace, NamesThatGlDoesNotHaveAreAskedForOnceAndSentNowhere) {
    link(elementsAndMembers());
    for (int i = 0; i < 2; ++i) {
        forEachRow([&](const auto& row) { program->setUniform("weights[9]", row.value); });
        forEachRow(unkeptRows, [&](const auto& row) { program->setUniform("flag", row.value); });
    }
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"weights[9]\")",
                    "glGetUniformLocation(3, \"flag\")");
}

TEST_F(UniformTrace, NullNameOfATypeWithoutHandlesIsAskedOfNobody) {
    link(uniformsOf(unkeptRows));
    forEachRow(unkeptRows, [&](const auto& row) { program->setUniform(nullptr, row.value); });
    EXPECT_GL_CALLS(gl);
}

TEST_F(UniformTrace, LocationsOfOneNameServeAllTypes) {
    link({{"lights[0].on", GL_BOOL, 1, 4}});
    program->setUniform("lights[0].on", true);
    program->setUniform("lights[0].on", 0); // for which GL converts it
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"lights[0].on\")", "glUniform1i(4, 1)",
                    "glUniform1i(4, 0)");
}

TEST_F(UniformTrace, LinkingAgainAsksAgain) {
    link({{"flag", GL_BOOL, 1, 4}});
    program->setUniform("flag", true);
    program->setUniform("lights[0].on", true);
    gl.setActiveUniforms({{"lights[0].on", GL_BOOL, 1, 8}});
    program->link();
    gl.forget();
    program->setUniform("flag", true);
    program->setUniform("lights[0].on", true);
    EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"flag\")",
                    "glGetUniformLocation(3, \"lights[0].on\")", "glUniform1i(8, 1)");
}

TEST_F(UniformTrace, CopiesShareWhatWasAskedUntilOneLinksAgain) {
    link({{"flag", GL_BOOL, 1, 4}});
    {
        Program copy = *program;
        copy.setUniform("flag", true);
        program->setUniform("flag", false);
        EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"flag\")", "glUniform1i(4, 1)",
                        "glUniform1i(4, 0)");
        copy.link();
        gl.forget();
        program->setUniform("flag", true);
        EXPECT_GL_CALLS(gl, "glUniform1i(4, 1)");
        copy.setUniform("flag", true);
        EXPECT_GL_CALLS(gl, "glGetUniformLocation(3, \"flag\")", "glUniform1i(4, 1)");
    }
    gl.forget();
}

TEST_F(UniformTrace, ProgramWithoutActiveUniformsAsksNothing) {
    gl.setActiveUniforms({{"flag", GL_BOOL, 1, 4}});
    const auto expectNothing = [&] {
        gl.forget();
        program->setUniform("flag", true);
        program->setUniform("weights[1]", 1.f);
        EXPECT_GL_CALLS(gl);
    };
    program = Program::make(); // not linked
    expectNothing();
    program = Program::make(vertexShader, fragmentShader);
    program->setUniform("flag", true);
    program->dispose();
    expectNothing();
    gl.failToLink();
    program = Program::make(vertexShader, fragmentShader);
    expectNothing();
}

// Which types can be set

template <class T, class = void>
struct CanSet : std::false_type {};
template <class T>
struct CanSet<
    T, std::void_t<decltype(std::declval<Program&>().setUniform("name", std::declval<const T&>()))>>
    : std::true_type {};

TEST_F(UniformTrace, TypesThatNoUniformHasDoNotCompile) {
    const auto canBeSet = [](const auto& row) {
        using T = ValueOf<decltype(row)>;
        EXPECT_TRUE(CanSet<T>::value);
        EXPECT_TRUE(vellis::IsSettableUniformValue<T>::value);
    };
    forEachRow(valueRows, canBeSet);
    forEachRow(unkeptRows, canBeSet);
    EXPECT_FALSE(CanSet<double>::value);
    EXPECT_FALSE(vellis::IsSettableUniformValue<double>::value);
    EXPECT_FALSE(CanSet<char>::value);
    EXPECT_FALSE(CanSet<short>::value);
    EXPECT_FALSE(CanSet<long>::value);
    EXPECT_FALSE(CanSet<glm::dmat4>::value);
    EXPECT_FALSE(CanSet<glm::dmat2x3>::value);
    EXPECT_FALSE(CanSet<glm::dvec3>::value);
    EXPECT_FALSE((CanSet<glm::vec<1, float>>::value));
    EXPECT_FALSE((CanSet<glm::vec<1, bool>>::value));
    EXPECT_FALSE(CanSet<List<double>>::value);
    EXPECT_FALSE(CanSet<List<glm::dmat4>>::value);
    EXPECT_FALSE(CanSet<List<List<float>>>::value);
    EXPECT_FALSE(CanSet<List<List<bool>>>::value);
    EXPECT_FALSE(CanSet<const char*>::value);
    EXPECT_FALSE(CanSet<const bool*>::value);
}

TEST_F(UniformTrace, TypesWithoutHandlesAreNoneOfAHandle) {
    forEachRow(valueRows, [](const auto& row) {
        EXPECT_TRUE(vellis::IsUniformValue<ValueOf<decltype(row)>>::value);
    });
    forEachRow(unkeptRows, [](const auto& row) {
        EXPECT_FALSE(vellis::IsUniformValue<ValueOf<decltype(row)>>::value);
    });
}

TEST_F(UniformTrace, TexturesOfAnyClassCanBeSet) {
    EXPECT_TRUE(CanSet<Texture>::value);
    EXPECT_TRUE(CanSet<BareTexture>::value);
    EXPECT_FALSE(CanSet<const Texture*>::value);
}

// Textures

/// A program with the sampler `image` at location 7 on unit 1 and the value `color`, and a texture,
/// name 4.
class UniformTextureTrace : public UniformTrace {
protected:
    UniformTextureTrace() {
        link({{"first", GL_SAMPLER_2D, 1, 30},
              {"image", GL_SAMPLER_2D, 1, 7},
              {"color", GL_FLOAT_VEC4, 1, 20},
              {"lost", GL_SAMPLER_2D, 1, -1}});
        texture = std::make_unique<BareTexture>();
        gl.forget();
    }

    /// Expects that the texture was bound on the unit of `image`.
    void expectBound() {
        EXPECT_GL_CALLS(gl, "glUniform1i(7, 1)", "glActiveTexture(GL_TEXTURE1)",
                        "glBindTexture(GL_TEXTURE_2D, 4)");
    }

    const Texture* rememberedBy(const char* name) {
        return program->getUniformTexture(name).texture;
    }

    std::unique_ptr<Texture> texture;
};

TEST_F(UniformTextureTrace, SettingByNameSendsTheUnitSelectsItAndBinds) {
    program->setUniform("image", *texture);
    expectBound();
    EXPECT_EQ(rememberedBy("image"), texture.get());
    EXPECT_EQ(rememberedBy("first"), nullptr);
}

TEST_F(UniformTextureTrace, UnitZeroIsSelectedAsWell) {
    program->setUniform("first", *texture);
    EXPECT_GL_CALLS(gl, "glUniform1i(30, 0)", "glActiveTexture(GL_TEXTURE0)",
                    "glBindTexture(GL_TEXTURE_2D, 4)");
}

TEST_F(UniformTextureTrace, TextureBindsToItsOwnTarget) {
    const BareTexture solid(Texture::Type::TEXTURE_3D);
    gl.forget();
    program->setUniform("image", solid);
    EXPECT_EQ(gl.takeCalls().back(), "glBindTexture(GL_TEXTURE_3D, 5)");
    gl.setRecording(false); // the end of the other texture
}

TEST_F(UniformTextureTrace, BindingIsTheTexturesOwn) {
    class CountingTexture : public BareTexture {
    public:
        void bind() const override { ++numBinds; }
        mutable int numBinds = 0;
    };
    const CountingTexture counting;
    gl.forget();
    program->setUniform("image", counting);
    EXPECT_EQ(counting.numBinds, 1);
    EXPECT_GL_CALLS(gl, "glUniform1i(7, 1)", "glActiveTexture(GL_TEXTURE1)");
    gl.setRecording(false);
}

TEST_F(UniformTextureTrace, SettingALocationAndAUnitNeedsNoHandle) {
    program->setUniform(3, 5, *texture);
    EXPECT_GL_CALLS(gl, "glUniform1i(3, 5)", "glActiveTexture(GL_TEXTURE5)",
                    "glBindTexture(GL_TEXTURE_2D, 4)");
    EXPECT_EQ(rememberedBy("image"), nullptr);
}

TEST_F(UniformTextureTrace, SettingTheProgramsOwnHandleBindsItsTexture) {
    auto& handle = program->getUniformTexture("image");
    handle.texture = texture.get();
    program->setUniform(handle);
    expectBound();
}

TEST_F(UniformTextureTrace, SettingAHandleOfANameTakesLocationAndUnitOfTheProgram) {
    Uniform<Texture> handle("image", texture.get());
    handle.unit = 9; // not asked
    program->setUniform(handle);
    expectBound();
    EXPECT_EQ(rememberedBy("image"), nullptr);
    EXPECT_EQ(handle.loc, -1);
}

TEST_F(UniformTextureTrace, HandleWithALocationGoesThereWhateverTheProgram) {
    Uniform<Texture> handle = program->getUniformTexture("image");
    handle.texture = texture.get();
    handle.loc = 0;
    handle.unit = 2;
    handle.name = "first";
    program->setUniform(handle);
    EXPECT_GL_CALLS(gl, "glUniform1i(0, 2)", "glActiveTexture(GL_TEXTURE2)",
                    "glBindTexture(GL_TEXTURE_2D, 4)");
}

TEST_F(UniformTextureTrace, HandleWithoutATextureMakesNoCall) {
    program->setUniform(program->getUniformTexture("image"));
    program->setUniform(Uniform<Texture>("image"));
    EXPECT_GL_CALLS(gl);
}

TEST_F(UniformTextureTrace, NamesOfNoSamplerMakeNoCallAndRememberNothing) {
    for (const char* const name : {"unknown", "color", static_cast<const char*>(nullptr)}) {
        program->setUniform(name, *texture);
        program->setUniform(Uniform<Texture>(name, texture.get()));
        EXPECT_EQ(rememberedBy(name), nullptr);
    }
    auto& inert = program->getUniformTexture("unknown");
    inert.texture = texture.get();
    program->setUniform(inert);
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(program->getUniformLoc("color"), 20u);
}

TEST_F(UniformTextureTrace, SamplerWithoutALocationRemembersTheTextureAndBindsNothing) {
    program->setUniform("lost", *texture);
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(rememberedBy("lost"), texture.get());
}

TEST_F(UniformTextureTrace, HandleOfTheNameOfASamplerWithoutALocationIsSentToNone) {
    program->setUniform(Uniform<Texture>("lost", texture.get()));
    EXPECT_GL_CALLS(gl, "glUniform1i(-1, 2)", "glActiveTexture(GL_TEXTURE2)",
                    "glBindTexture(GL_TEXTURE_2D, 4)");
}

// Cost

TEST_F(UniformTrace, LookupsAndSetsAllocateNothing) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    // Longer than a string can be without an allocation.
    const char* const color = "the color of the material";
    const char* const weights = "the weights of the filter";
    const char* const image = "the image on the material";
    const char* const place = "the place of the vertex";
    const char* const unknown = "a name that nobody knows";
    link({{color, GL_FLOAT_VEC4},
          {std::string(weights) + "[0]", GL_FLOAT, 4},
          {image, GL_SAMPLER_2D}},
         {{place, GL_FLOAT_VEC2}});
    const BareTexture texture;
    const List<float> values{1.f, 2.f, 3.f, 4.f};
    gl.ignoreTheRest();
    const std::size_t before = vellis::test::allocationCount();
    bool found = true;
    for (int i = 0; i < 2; ++i) {
        found = found && program->hasUniform(color) && program->hasAttrib(place) &&
                program->getUniformLoc(color) == 0 && program->getAttribLoc(place) == 0 &&
                program->getUniform<vec4>(color).loc == 0 &&
                program->getUniform<vec4>(unknown).loc == -1 && !program->hasUniform(unknown) &&
                !program->hasAttrib(unknown);
        program->setUniform(color, vec4(1.f));
        program->setUniform(unknown, mat4(1.f));
        program->setUniform(weights, values);
        program->setUniform(Uniform<vec4>(color, vec4(1.f)));
        program->setUniform(image, texture);
    }
    EXPECT_EQ(vellis::test::allocationCount() - before, 0u);
    EXPECT_TRUE(found);
}

TEST_F(UniformTrace, NamesThatWereAskedForAllocateNothing) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    const char* const flag = "whether the light of the room is on";
    link({{flag, GL_BOOL}, {"the bones of the skeleton[0]", GL_FLOAT_MAT4, 4}});
    const List<mat4> bones(4);
    gl.ignoreTheRest();
    const auto setAll = [&] {
        program->setUniform(flag, true);
        program->setUniform("the bones of the skeleton", bones);
        program->setUniform("the bones of the skeleton[2]", mat4(1.f));
        program->setUniform("the bones of the skeleton[4]", mat4(1.f)); // which it does not have
    };
    setAll();
    const std::size_t before = vellis::test::allocationCount();
    setAll();
    EXPECT_EQ(vellis::test::allocationCount() - before, 0u);
}

} // namespace

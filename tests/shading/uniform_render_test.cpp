/// Uniforms and attributes on a driver: what is set is what GL has.

#include <vellis/shading/program.hpp>

#include <initializer_list>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/matrix.hpp>
#include <gtest/gtest.h>
#include <vellis/drawing/primitives.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture/texture_2d.hpp>

#include "support/render_test.hpp"
#include "support/uniform_types.hpp"

namespace {

using namespace vellis;

using namespace vellis::test::uniform_types;

using Rgba = glm::vec<4, unsigned char>;

// A handle with a location is a program's to make.
static_assert(std::is_constructible_v<Uniform<float>, const char*>);
static_assert(!std::is_constructible_v<Uniform<float>, int>);
static_assert(!std::is_constructible_v<Uniform<Texture>, int>);
static_assert(!std::is_constructible_v<UniformVariable, int>);
static_assert(!std::is_constructible_v<Attrib, int>);
static_assert(std::is_copy_constructible_v<Uniform<mat4>> && std::is_copy_constructible_v<Attrib>);
static_assert(std::has_virtual_destructor_v<UniformVariable>);

// A handle takes another's place and value only where both are of one type.
static_assert(std::is_copy_assignable_v<Uniform<float>> &&
              std::is_copy_assignable_v<Uniform<Texture>>);
static_assert(std::is_nothrow_move_assignable_v<Uniform<List<float>>>);
static_assert(!std::is_assignable_v<Uniform<float>&, const Uniform<mat4>&>);
static_assert(!std::is_copy_assignable_v<UniformVariable>);
static_assert(!std::is_move_assignable_v<UniformVariable>);
static_assert(!std::is_assignable_v<UniformVariable&, const Uniform<float>&>);
static_assert(std::has_virtual_destructor_v<Attrib>);

const char* const vertexSource = "attribute vec2 position; \n"
                                 "void main() { gl_Position = vec4(position, 0.0, 1.0); } \n";

/// A type of value and how a shader uses it.
template <class T>
struct ValueRow {
    const char* glslType;
    const char* component; ///< a float, or what can be made one, of an element
    T value;
};

const auto valueRows = std::make_tuple(
    ValueRow<int>{"int", "", -3}, ValueRow<float>{"float", "", 0.5f},
    ValueRow<vec2>{"vec2", ".x", {0.5f, -1.f}}, ValueRow<vec3>{"vec3", ".x", {0.5f, -1.f, 2.f}},
    ValueRow<vec4>{"vec4", ".x", {0.5f, -1.f, 2.f, 3.f}}, ValueRow<ivec2>{"ivec2", ".x", {1, -2}},
    ValueRow<ivec3>{"ivec3", ".x", {1, -2, 3}}, ValueRow<ivec4>{"ivec4", ".x", {1, -2, 3, 4}},
    ValueRow<mat3>{"mat3", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f}},
    ValueRow<mat4>{
        "mat4",
        "[0].x",
        {1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f, 13.f, 14.f, 15.f, 16.f}},
    ValueRow<List<int>>{"int", "", {1, -2, 3}}, ValueRow<List<float>>{"float", "", {0.5f, -1.f}},
    ValueRow<List<vec2>>{"vec2", ".x", {{1.f, 2.f}, {3.f, 4.f}, {5.f, 6.f}}},
    ValueRow<List<vec3>>{"vec3", ".x", {{1.f, 2.f, 3.f}, {4.f, 5.f, 6.f}}},
    ValueRow<List<vec4>>{"vec4", ".x", {{1.f, 2.f, 3.f, 4.f}, {5.f, 6.f, 7.f, 8.f}}},
    ValueRow<List<ivec2>>{"ivec2", ".x", {{1, -2}, {3, 4}, {5, 6}}},
    ValueRow<List<ivec3>>{"ivec3", ".x", {{1, -2, 3}, {4, 5, 6}}},
    ValueRow<List<ivec4>>{"ivec4", ".x", {{1, -2, 3, 4}, {5, 6, 7, 8}}});

/// The same for the types that need GLSL 1.30.
const auto unsignedRows = std::make_tuple(
    ValueRow<unsigned int>{"uint", "", 4000000000u}, ValueRow<uvec2>{"uvec2", ".x", {1, 2}},
    ValueRow<uvec3>{"uvec3", ".x", {1, 2, 3}}, ValueRow<uvec4>{"uvec4", ".x", {1, 2, 3, 4}},
    ValueRow<List<unsigned int>>{"uint", "", {1, 4000000000u, 3}},
    ValueRow<List<uvec2>>{"uvec2", ".x", {{1, 2}, {3, 4}, {5, 6}}},
    ValueRow<List<uvec3>>{"uvec3", ".x", {{1, 2, 3}, {4, 5, 6}}},
    ValueRow<List<uvec4>>{"uvec4", ".x", {{1, 2, 3, 4}, {5, 6, 7, 8}}});

static_assert(std::tuple_size_v<decltype(valueRows)> + std::tuple_size_v<decltype(unsignedRows)> ==
              26);

/// The same for the types that have no handles.
const auto unkeptRows = std::make_tuple(
    ValueRow<bool>{"bool", "", true}, ValueRow<bvec2>{"bvec2", ".x", {true, false}},
    ValueRow<bvec3>{"bvec3", ".x", {false, true, true}},
    ValueRow<bvec4>{"bvec4", ".x", {false, true, true, false}},
    ValueRow<mat2>{"mat2", "[0].x", {1.f, 2.f, 3.f, 4.f}},
    ValueRow<mat2x3>{"mat2x3", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f}},
    ValueRow<mat2x4>{"mat2x4", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f}},
    ValueRow<mat3x2>{"mat3x2", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f}},
    ValueRow<mat3x4>{
        "mat3x4", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f}},
    ValueRow<mat4x2>{"mat4x2", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f}},
    ValueRow<mat4x3>{
        "mat4x3", "[0].x", {1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f}},
    ValueRow<List<bool>>{"bool", "", {true, false, true}},
    ValueRow<List<bvec2>>{"bvec2", ".x", {{true, false}, {false, true}}},
    ValueRow<List<bvec3>>{"bvec3", ".x", {{true, false, true}, {false, true, false}}},
    ValueRow<List<bvec4>>{"bvec4", ".x", {{true, false, true, true}, {false, true, false, true}}},
    ValueRow<List<mat2>>{"mat2", "[0].x", {{1.f, 2.f, 3.f, 4.f}, {5.f, 6.f, 7.f, 8.f}}},
    ValueRow<List<mat3>>{"mat3", "[0].x", {mat3(2.f), mat3(3.f)}},
    ValueRow<List<mat4>>{"mat4", "[0].x", {mat4(2.f), mat4(3.f)}},
    ValueRow<List<mat2x3>>{
        "mat2x3", "[0].x", {{1.f, 2.f, 3.f, 4.f, 5.f, 6.f}, {6.f, 5.f, 4.f, 3.f, 2.f, 1.f}}},
    ValueRow<List<mat2x4>>{"mat2x4", "[0].x", {mat2x4(2.f), mat2x4(3.f)}},
    ValueRow<List<mat3x2>>{
        "mat3x2", "[0].x", {{1.f, 2.f, 3.f, 4.f, 5.f, 6.f}, {6.f, 5.f, 4.f, 3.f, 2.f, 1.f}}},
    ValueRow<List<mat3x4>>{"mat3x4", "[0].x", {mat3x4(2.f), mat3x4(3.f)}},
    ValueRow<List<mat4x2>>{"mat4x2", "[0].x", {mat4x2(2.f), mat4x2(3.f)}},
    ValueRow<List<mat4x3>>{"mat4x3", "[0].x", {mat4x3(2.f), mat4x3(3.f)}});

/// Calls \p action with every row of a table.
template <class Rows, class Action>
void forEachRow(const Rows& rows, Action action) {
    std::apply([&](const auto&... row) { (action(row), ...); }, rows);
}

/// A fragment shader whose colour depends on the uniform `u` of a row.
template <class T>
std::string fragmentSource(const ValueRow<T>& row) {
    return std::string("uniform ") + row.glslType + " u; \n" +
           "void main() { gl_FragColor = vec4(float(u" + row.component + ")); } \n";
}
template <class T>
std::string fragmentSource(const ValueRow<List<T>>& row) {
    const std::string size = std::to_string(row.value.size());
    return std::string("uniform ") + row.glslType + " u[" + size + "]; \n" +
           "void main() { \n"
           "  float sum = 0.0; \n"
           "  for (int i = 0; i < " +
           size + "; ++i) sum += float(u[i]" + row.component +
           "); \n"
           "  gl_FragColor = vec4(sum); \n"
           "} \n";
}

void read(GLuint program, GLint location, int* out) {
    glGetUniformiv(program, location, out);
}
void read(GLuint program, GLint location, unsigned int* out) {
    glGetUniformuiv(program, location, out);
}
void read(GLuint program, GLint location, float* out) {
    glGetUniformfv(program, location, out);
}

/// What GL has at the location of that name.
template <class T>
T uniformIn(const Program& program, const std::string& name, const T&) {
    T value{};
    const GLint location = glGetUniformLocation(program.id(), name.c_str());
    if constexpr (std::is_arithmetic_v<T>)
        read(program.id(), location, &value);
    else
        read(program.id(), location, glm::value_ptr(value));
    return value;
}
/// GL gives booleans as integers.
bool uniformIn(const Program& program, const std::string& name, bool) {
    return uniformIn(program, name, 0) != 0;
}
template <glm::length_t N>
glm::vec<N, bool> uniformIn(const Program& program, const std::string& name,
                            const glm::vec<N, bool>&) {
    return glm::vec<N, bool>(uniformIn(program, name, glm::vec<N, int>()));
}
template <class T>
List<T> uniformIn(const Program& program, const std::string& name, const List<T>& values) {
    List<T> inGl;
    for (std::size_t i = 0; i < values.size(); ++i)
        inGl.push_back(uniformIn(program, name + '[' + std::to_string(i) + ']', values[i]));
    return inGl;
}

int integer(GLenum pname) {
    int value = -1;
    glGetIntegerv(pname, &value);
    return value;
}

/// A program that can be linked again.
class RelinkableProgram : public Program {
public:
    RelinkableProgram(const char* vertex, const char* fragment)
        : Program(VertexShader::make(vertex), FragmentShader::make(fragment)) {}
    using Program::link;
};

/// A drawing that covers the framebuffer.
class UniformRender : public RenderTest {
protected:
    using Image = Texture2D<Rgba>;
    using Covering = drawable::Triangles<VertexAttribute<vec2>>;

    void SetUp() override {
        RenderTest::SetUp();
        if (HasFatalFailure())
            return;
        corners = VertexAttributeBuffer<vec2>::make({{-1.f, -1.f}, {3.f, -1.f}, {-1.f, 3.f}},
                                                    BufferUsage::Static, BufferAccess::Draw);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    void TearDown() override {
        corners.reset();
        RenderTest::TearDown();
    }

    static std::shared_ptr<Program> make(const std::string& fragment, const char* version = "120") {
        const std::string line = std::string("#version ") + version + " \n";
        auto program = Program::make((line + vertexSource).c_str(), (line + fragment).c_str());
        EXPECT_FALSE(program->hasLinkError()) << fragment;
        return program;
    }

    /// Draws over the whole framebuffer, with these values if there are any; gives the colour of
    /// its middle.
    template <class... Values>
    Rgba draw(const std::shared_ptr<Program>& program, const Values&... values) {
        program->draw(*Covering::make(program, {"position", corners}), values...);
        return pixel(0.f, 0.f);
    }

    /// The pixel at these clip coordinates.
    static Rgba pixel(float x, float y) {
        const auto at = [](float coordinate) {
            return static_cast<int>((coordinate + 1.f) / 2.f * size);
        };
        Rgba rgba(0);
        glReadPixels(at(x), at(y), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &rgba[0]);
        return rgba;
    }

    /// Sets the uniform of each row by name and by handle, and reads it back.
    template <class Rows>
    void expectEachRowToReachGl(const Rows& rows, const char* version) {
        forEachRow(rows, [version](const auto& row) {
            SCOPED_TRACE(row.glslType);
            using T = std::decay_t<decltype(row.value)>;
            const std::shared_ptr<Program> program = make(fragmentSource(row), version);
            ASSERT_TRUE(program->hasUniform("u"));
            EXPECT_EQ(program->getUniform<T>("u").loc, glGetUniformLocation(program->id(), "u"));
            program->bind();
            program->setUniform("u", row.value);
            EXPECT_EQ(uniformIn(*program, "u", row.value), row.value);
            T other = row.value;
            firstNumber(other) += 1;
            program->setUniform(Uniform<T>("u", other));
            EXPECT_EQ(uniformIn(*program, "u", row.value), other);
            program->unbind();
        });
    }

    static std::shared_ptr<Image> makeImage(const Rgba& color) {
        return Image::make(1, 1, &color, Sampler::nearest_clamp());
    }

    /// Expects that \p image is what the sampler of that name reads.
    static void expectBound(Program& program, const char* sampler, const Image& image) {
        const int unit = static_cast<int>(program.getUniformTexture(sampler).unit);
        EXPECT_EQ(integer(GL_ACTIVE_TEXTURE), GL_TEXTURE0 + unit);
        EXPECT_EQ(integer(GL_TEXTURE_BINDING_2D), static_cast<int>(image.id()));
        EXPECT_EQ(uniformIn(program, sampler, 0), unit);
        EXPECT_EQ(program.getUniformTexture(sampler).texture, &image);
    }

    template <class T>
    static auto& firstNumber(T& value) {
        if constexpr (std::is_arithmetic_v<T>)
            return value;
        else
            return firstNumber(value[0]);
    }

    std::shared_ptr<VertexAttributeBuffer<vec2>> corners;
};

TEST_F(UniformRender, ValuesOfEachTypeReachGl) {
    expectEachRowToReachGl(valueRows, "120");
}

TEST_F(UniformRender, UnsignedValuesReachGl) {
    const auto* offered = reinterpret_cast<const char*>(glGetString(GL_SHADING_LANGUAGE_VERSION));
    if (std::stof(offered) < 1.3f)
        GTEST_SKIP() << "the context offers no more than GLSL " << offered;
    if (GLAD_GL_VERSION_3_0 == 0)
        GTEST_SKIP() << "the context lacks OpenGL 3.0, whose entry points read the values back";
    expectEachRowToReachGl(unsignedRows, "130");
}

TEST_F(UniformRender, ValuesOfTypesWithoutHandlesReachGl) {
    forEachRow(unkeptRows, [](const auto& row) {
        SCOPED_TRACE(row.glslType);
        const std::shared_ptr<Program> program = make(fragmentSource(row));
        EXPECT_FALSE(program->hasUniform("u"));
        EXPECT_EQ(program->getUniformLoc("u"), 0xFFFFFFFF);
        program->bind();
        EXPECT_NE(uniformIn(*program, "u", row.value), row.value);
        program->setUniform("u", row.value);
        EXPECT_EQ(uniformIn(*program, "u", row.value), row.value);
        program->unbind();
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    });
}

TEST_F(UniformRender, ElementsAndMembersReachGl) {
    const auto program = make("struct Deep { mat3 m; bool on; }; \n"
                              "struct Light { vec3 color; bool on; mat2 turn; float w[3]; }; \n"
                              "struct Inner { Deep deep[2]; }; \n"
                              "uniform Light lights[3]; \n"
                              "uniform Inner inner; \n"
                              "uniform float weights[4]; \n"
                              "uniform mat4 bones[2]; \n"
                              "void main() { \n"
                              "  vec3 sum = vec3(weights[0] + weights[1] + weights[2]); \n"
                              "  for (int i = 0; i < 3; ++i) { \n"
                              "    sum += lights[i].on ? lights[i].color : vec3(0.0); \n"
                              "    sum.xy += lights[i].turn * sum.xy; \n"
                              "    sum *= lights[i].w[0] + lights[i].w[1] + lights[i].w[2]; \n"
                              "  } \n"
                              "  for (int i = 0; i < 2; ++i) \n"
                              "    sum = inner.deep[i].on ? inner.deep[i].m * sum : sum; \n"
                              "  gl_FragColor = bones[0] * bones[1] * vec4(sum, weights[3]); \n"
                              "} \n");
    program->bind();
    const auto expectToReachGl = [&](const char* name, const auto& value) {
        EXPECT_NE(uniformIn(*program, name, value), value) << name;
        program->setUniform(name, value);
        EXPECT_EQ(uniformIn(*program, name, value), value) << name;
    };
    expectToReachGl("lights[0].color", vec3(1.f, 2.f, 3.f));
    expectToReachGl("lights[2].color", vec3(4.f, 5.f, 6.f));
    expectToReachGl("lights[1].on", true);
    expectToReachGl("lights[2].turn", mat2(1.f, 2.f, 3.f, 4.f));
    expectToReachGl("lights[2].w[1]", 0.5f);
    expectToReachGl("inner.deep[1].m", mat3(2.f));
    expectToReachGl("inner.deep[0].on", true);
    expectToReachGl("weights[1]", 0.25f);
    expectToReachGl("bones[1]", mat4(3.f));
    program->setUniform("lights[1].w", List<float>{7.f, 8.f, 9.f});
    EXPECT_EQ(uniformIn(*program, "lights[1].w", List<float>(3)), (List<float>{7.f, 8.f, 9.f}));
    program->setUniform("weights[2]", List<float>{2.f, 3.f});
    EXPECT_EQ(uniformIn(*program, "weights", List<float>(4)), (List<float>{0.f, 0.25f, 2.f, 3.f}));
    EXPECT_EQ(program->getUniform<List<float>>("weights").value, List<float>(4));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(UniformRender, NamesThatGlDoesNotHaveAreNoErrorForTypesWithoutHandlesToo) {
    const auto program = make("uniform float w[2]; \n"
                              "void main() { gl_FragColor = vec4(w[0] + w[1]); } \n");
    program->bind();
    program->setUniform("flag", true);
    program->setUniform("w", mat2(1.f)); // of another type
    program->setUniform("w[7]", 1.f);
    program->setUniform("gl_Fog.color", vec4(1.f));
    program->unbind();
    EXPECT_EQ(uniformIn(*program, "w", List<float>(2)), List<float>(2));

    const auto broken = Program::make(nullptr, "nonsense");
    while (glGetError() != GL_NO_ERROR) {
    }
    broken->setUniform("flag", true);
    broken->setUniform("w[1]", 1.f);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(UniformRender, ShortListLeavesTheRestOfTheArray) {
    const auto program = make(fragmentSource(ValueRow<List<float>>{"float", "", List<float>(4)}));
    program->bind();
    program->setUniform("u", List<float>{1.f, 2.f, 3.f, 4.f});
    program->setUniform("u", List<float>{8.f, 9.f});
    program->setUniform("u", List<float>{});
    program->unbind();
    EXPECT_EQ(uniformIn(*program, "u", List<float>(4)), (List<float>{8.f, 9.f, 3.f, 4.f}));
}

TEST_F(UniformRender, ColorIsDrawn) {
    const auto program = make("uniform vec4 color; \n"
                              "void main() { gl_FragColor = color; } \n");
    program->bind();
    program->setUniform("color", vec4(1.f, 0.2f, 0.f, 1.f));
    EXPECT_EQ(draw(program), Rgba(255, 51, 0, 255));
}

TEST_F(UniformRender, MatricesAreTakenByColumn) {
    const auto program =
        Program::make("#version 120 \n"
                      "attribute vec2 position; \n"
                      "uniform mat4 mvp; \n"
                      "void main() { gl_Position = mvp*vec4(position, 0.0, 1.0); } \n",
                      "#version 120 \n"
                      "void main() { gl_FragColor = vec4(1.0); } \n");
    program->bind();
    program->setUniform("mvp", glm::translate(mat4(1.f), vec3(1.f, 0.f, 0.f)));
    draw(program);
    EXPECT_EQ(pixel(-0.5f, 0.f).r, 0);
    EXPECT_EQ(pixel(0.5f, 0.f).r, 255);
}

TEST_F(UniformRender, UniformsOfProgramsDoNotMix) {
    const char* const fragment = "uniform vec4 color; \n"
                                 "void main() { gl_FragColor = color; } \n";
    const auto red = make(fragment);
    const auto blue = make(fragment);
    const Uniform<vec4> handle("color", vec4(0.f, 0.f, 1.f, 1.f));
    red->bind();
    red->setUniform("color", vec4(1.f, 0.f, 0.f, 1.f));
    blue->bind();
    blue->setUniform(handle);
    EXPECT_EQ(draw(red), Rgba(255, 0, 0, 255));
    EXPECT_EQ(draw(blue), Rgba(0, 0, 255, 255));
}

TEST_F(UniformRender, ArrayGoesByItsNameWithoutBracketsAndAnArrayOfOneByTheNameThatGlReports) {
    const auto program = make("uniform float w[4]; \n"
                              "uniform float v[1]; \n"
                              "void main() { \n"
                              "  float sum = v[0]; \n"
                              "  for (int i = 0; i < 4; ++i) sum += w[i]; \n"
                              "  gl_FragColor = vec4(sum); \n"
                              "} \n");
    EXPECT_EQ(program->getUniform<List<float>>("w").value, List<float>(4, 0.f));
    EXPECT_FALSE(program->hasUniform("w[0]"));
    char names[2][8] = {};
    GLint length = 0;
    GLenum type = 0;
    for (unsigned int i = 0; i < 2; ++i)
        glGetActiveUniform(program->id(), i, 8, nullptr, &length, &type, names[i]);
    const char* const reported = names[0][0] == 'v' ? names[0] : names[1];
    EXPECT_TRUE(program->hasUniform(reported)) << reported;
    EXPECT_EQ(program->getUniform<float>(reported).loc, glGetUniformLocation(program->id(), "v"));
}

TEST_F(UniformRender, BoolAndMat2HaveNoHandle) {
    const auto program =
        make("uniform bool flag; \n"
             "uniform mat2 turn; \n"
             "uniform vec2 place; \n"
             "void main() { gl_FragColor = vec4(turn*place, 0.0, flag ? 1.0 : 0.0); } \n");
    EXPECT_NE(glGetUniformLocation(program->id(), "flag"), -1);
    EXPECT_NE(glGetUniformLocation(program->id(), "turn"), -1);
    EXPECT_FALSE(program->hasUniform("flag"));
    EXPECT_FALSE(program->hasUniform("turn"));
    EXPECT_TRUE(program->hasUniform("place"));
}

TEST_F(UniformRender, UnusedAndUnknownNamesAreNoError) {
    const auto program = make("uniform vec4 unused; \n"
                              "uniform vec4 color; \n"
                              "void main() { gl_FragColor = color; } \n");
    program->bind();
    program->setUniform("unused", vec4(1.f));
    program->setUniform("color", 1.f);
    program->setUniform(nullptr, mat4(1.f));
    program->unbind();
    EXPECT_FALSE(program->hasUniform("unused"));
    EXPECT_EQ(program->getUniformLoc("unused"), 0xFFFFFFFF);
    EXPECT_EQ(uniformIn(*program, "color", vec4()), vec4(0.f));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(UniformRender, VariablesOfGlItselfHaveNoLocation) {
    SKIP_IN_CORE("gl_ModelViewMatrix");
    const auto program =
        Program::make("#version 120 \n"
                      "void main() { gl_Position = gl_ModelViewMatrix*gl_Vertex; } \n",
                      "#version 120 \n"
                      "void main() { gl_FragColor = vec4(1.0); } \n");
    ASSERT_FALSE(program->hasLinkError());
    EXPECT_EQ(program->getUniformLoc("gl_ModelViewMatrix"), 0xFFFFFFFF);
    EXPECT_EQ(program->getAttribLoc("gl_Vertex"), 0xFFFFFFFF);
    program->bind();
    program->setUniform("gl_ModelViewMatrix", mat4(2.f));
    program->unbind();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(UniformRender, LinkingAgainGivesFreshHandles) {
    const auto program = std::make_shared<RelinkableProgram>(
        "attribute vec2 position; \n"
        "void main() { gl_Position = vec4(position, 0.0, 1.0); } \n",
        "uniform vec4 color; \n"
        "uniform sampler2D image; \n"
        "void main() { gl_FragColor = color + texture2D(image, vec2(0.5)); } \n");
    ASSERT_FALSE(program->hasLinkError());
    program->bind();
    program->setUniform("color", vec4(1.f));
    program->link();
    // The shaders are attached already.
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    EXPECT_EQ(program->getUniform<vec4>("color").value, vec4(0.f));
    EXPECT_EQ(uniformIn(*program, "color", vec4()), vec4(0.f));
    EXPECT_EQ(program->getUniformTexture("image").unit, 0u);
}

TEST_F(UniformRender, AttributesAreWhereTheLinkerPutThem) {
    const auto program = Program::make("#version 120 \n"
                                       "attribute vec2 position; \n"
                                       "attribute vec4 tint; \n"
                                       "attribute vec4 unused; \n"
                                       "varying vec4 color; \n"
                                       "void main() { \n"
                                       "  color = tint; \n"
                                       "  gl_Position = vec4(position, 0.0, 1.0); \n"
                                       "} \n",
                                       "#version 120 \n"
                                       "varying vec4 color; \n"
                                       "void main() { gl_FragColor = color; } \n");
    for (const char* const name : {"position", "tint", "unused"}) {
        const GLint location = glGetAttribLocation(program->id(), name);
        EXPECT_EQ(program->getAttribLoc(name), static_cast<unsigned int>(location));
        EXPECT_EQ(program->hasAttrib(name), location != -1);
    }
    EXPECT_NE(program->getAttribLoc("position"), program->getAttribLoc("tint"));
    glVertexAttrib4f(program->getAttribLoc("tint"), 0.f, 1.f, 0.f, 1.f);
    EXPECT_EQ(draw(program), Rgba(0, 255, 0, 255));
}

TEST_F(UniformRender, SamplersGetUnitsInTheOrderOfGlAndACubeSamplerNone) {
    const auto program =
        make("uniform sampler2D a; \n"
             "uniform samplerCube cube; \n"
             "uniform sampler2D b; \n"
             "void main() { \n"
             "  gl_FragColor = texture2D(a, vec2(0.5)) + texture2D(b, vec2(0.5)) \n"
             "               + textureCube(cube, vec3(1.0)); \n"
             "} \n");
    EXPECT_FALSE(program->hasUniform("cube"));
    unsigned int nextUnit = 0;
    for (unsigned int i = 0; i < 3; ++i) {
        char name[8] = {};
        GLint arraySize = 0;
        GLenum type = 0;
        glGetActiveUniform(program->id(), i, sizeof name, nullptr, &arraySize, &type, name);
        if (type == GL_SAMPLER_2D) {
            EXPECT_EQ(program->getUniformTexture(name).unit, nextUnit++) << name;
            EXPECT_EQ(program->getUniformTexture(name).loc,
                      glGetUniformLocation(program->id(), name));
        }
    }
    EXPECT_EQ(nextUnit, 2u);
}

TEST_F(UniformRender, SetTextureIsBoundOnItsUnitAndDrawn) {
    const auto program = make("uniform sampler2D red; \n"
                              "uniform sampler2D green; \n"
                              "void main() { \n"
                              "  gl_FragColor = vec4(texture2D(red, vec2(0.5)).r, \n"
                              "                      texture2D(green, vec2(0.5)).g, 0.0, 1.0); \n"
                              "} \n");
    const auto first = makeImage(Rgba(200, 1, 2, 255));
    const auto second = makeImage(Rgba(3, 100, 4, 255));
    program->bind();
    program->setUniform("red", *first);
    expectBound(*program, "red", *first);
    program->setUniform("green", *second);
    expectBound(*program, "green", *second);
    EXPECT_EQ(draw(program), Rgba(200, 100, 0, 255));

    // By handles, the other way round.
    const Uniform<Texture> green("green", first.get());
    Uniform<Texture>& red = program->getUniformTexture("red");
    red.texture = second.get();
    program->bind();
    program->setUniform(green);
    program->setUniform(red);
    expectBound(*program, "red", *second);
    EXPECT_EQ(draw(program), Rgba(3, 1, 0, 255));
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(UniformRender, SamplersReadUnitZeroUntilTheyAreSet) {
    const auto program = make("uniform sampler2D red; \n"
                              "uniform sampler2D green; \n"
                              "void main() { \n"
                              "  gl_FragColor = vec4(texture2D(red, vec2(0.5)).r, \n"
                              "                      texture2D(green, vec2(0.5)).g, 0.0, 1.0); \n"
                              "} \n");
    const auto first = makeImage(Rgba(200, 10, 0, 255));
    const auto second = makeImage(Rgba(20, 100, 0, 255));
    glActiveTexture(GL_TEXTURE1);
    second->bind();
    glActiveTexture(GL_TEXTURE0);
    first->bind();
    EXPECT_EQ(draw(program), Rgba(200, 10, 0, 255)); // both from unit 0
    program->bind();
    program->setUniform("green", *second);
    program->setUniform("red", *first);
    EXPECT_EQ(draw(program), Rgba(200, 100, 0, 255));
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(UniformRender, TextureCanBeSetAtALocationAndAUnitOfOnesOwn) {
    const auto program = make("uniform sampler2D images[2]; \n"
                              "void main() { \n"
                              "  gl_FragColor = texture2D(images[0], vec2(0.5)) \n"
                              "               + texture2D(images[1], vec2(0.5)); \n"
                              "} \n");
    EXPECT_FALSE(program->hasUniform("images"));
    const auto first = makeImage(Rgba(200, 0, 0, 255));
    const auto second = makeImage(Rgba(0, 0, 50, 255));
    program->bind();
    program->setUniform(glGetUniformLocation(program->id(), "images[0]"), 3, *first);
    program->setUniform(glGetUniformLocation(program->id(), "images[1]"), 4, *second);
    EXPECT_EQ(integer(GL_ACTIVE_TEXTURE), GL_TEXTURE4);
    EXPECT_EQ(draw(program), Rgba(200, 0, 50, 255));
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(UniformRender, ValuesAndTexturesOfOneCallAreDrawn) {
    const auto program =
        make("uniform sampler2D image; \n"
             "uniform vec4 color; \n"
             "uniform float weights[2]; \n"
             "void main() { \n"
             "  gl_FragColor = weights[1] * color * texture2D(image, vec2(0.5)); \n"
             "} \n");
    const auto image = makeImage(Rgba(255, 255, 0, 255));
    auto& color = program->getUniform<vec4>("color");
    color.value = vec4(1.f, 0.4f, 1.f, 1.f);
    EXPECT_EQ(
        draw(program, color, Uniform("image", *image), Uniform("weights", List<float>{0.f, 1.f})),
        Rgba(255, 102, 0, 255));
    EXPECT_EQ(integer(GL_CURRENT_PROGRAM), 0);
    // What is not set keeps its value.
    EXPECT_EQ(draw(program, Uniform("color", vec4(0.2f))), Rgba(51, 51, 0, 51));

    const auto indices =
        IndexBuffer<unsigned char>::make({2, 1, 0}, BufferUsage::Static, BufferAccess::Draw);
    const auto covering = Covering::make(program, {"position", corners});
    program->draw(*covering, *indices, Uniform("color", vec4(0.6f)));
    EXPECT_EQ(pixel(0.f, 0.f), Rgba(153, 153, 0, 153));
    program->draw(*covering, *indices, 0, 3, color);
    EXPECT_EQ(pixel(0.f, 0.f), Rgba(255, 102, 0, 255));
    program->draw(*covering, 0, 3, Uniform("color", vec4(0.f)));
    EXPECT_EQ(pixel(0.f, 0.f), Rgba(0));
}

} // namespace

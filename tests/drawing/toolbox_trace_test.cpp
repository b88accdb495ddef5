// needs: a program of its own

/// What each call of the Toolbox calls in GL.
///
/// The Toolbox keeps one buffer and six programs for the whole process, so that these tests share
/// one fake GL for the process, too. They are a program of their own, in which nobody shuts the
/// library down under them.

#include <vellis/drawing/toolbox.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/detail/recycling_allocator.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading/program_manager.hpp>

#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::detail::recyclesMemory;
using vellis::test::allocationCount;
using vellis::test::FakeGl;

using BuiltIn = ProgramManager::BuiltIn;
using Lines = std::vector<std::string>;

static_assert(!std::is_default_constructible_v<Toolbox>);
static_assert(std::is_empty_v<Toolbox>);

/// The fake GL of the process. The program variables have locations that tell them apart.
class Stage : public testing::Environment {
public:
    void SetUp() override {
        fakeGl = std::make_unique<FakeGl>();
        fakeGl->setActiveUniforms({{"mvp", GL_FLOAT_MAT4, 1, 10},
                                   {"color", GL_FLOAT_VEC4, 1, 11},
                                   {"radius", GL_FLOAT, 1, 12},
                                   {"softness", GL_FLOAT, 1, 13},
                                   {"dash", GL_FLOAT_VEC2, 1, 14}});
        fakeGl->setActiveAttributes(
            {{"position", GL_FLOAT_VEC3, 1, 5}, {"position_t", GL_FLOAT_VEC4, 1, 7}});
        for (unsigned int builtIn = 0; builtIn < 6; ++builtIn)
            ProgramManager::instance().get(static_cast<BuiltIn>(builtIn));
        Toolbox::getVertexBuffer();
        fakeGl->forget();
    }
    void TearDown() override {
        fakeGl->ignoreTheRest();
        engine::dispose();
        fakeGl.reset();
    }

    static std::unique_ptr<FakeGl> fakeGl;
};

std::unique_ptr<FakeGl> Stage::fakeGl;

[[maybe_unused]] const testing::Environment* const stage =
    testing::AddGlobalTestEnvironment(new Stage); // which owns it

const glm::vec4 orange(1.f, 0.5f, 0.25f, 0.75f);
const glm::vec4 blue(0.f, 0.125f, 1.f, 1.f);
const glm::mat4 mvp(1.f, 2.f, 3.f, 4.f, 5.f, 6.f, 7.f, 8.f, 9.f, 10.f, 11.f, 12.f, 13.f, 14.f, 15.f,
                    16.f);

// What the two colours and the matrix look like in a call.
const std::string orangeSet = "glUniform4fv(11, 1, {1, 0.5, 0.25, 0.75})";
const std::string blueSet = "glUniform4fv(11, 1, {0, 0.125, 1, 1})";
const std::string mvpSet = "glUniformMatrix4fv(10, 1, GL_FALSE, "
                           "{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16})";

/// One list of lines out of lines and lists.
Lines join(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

template <class V>
constexpr unsigned int bytes = sizeof(V);

template <class V>
constexpr bool is2D = std::is_same_v<V, glm::vec2>;

/// Points with coordinates 1, 2, 3 …
template <class V>
std::vector<V> makePoints(unsigned int count) {
    std::vector<V> points(count);
    float next = 1.f;
    for (V& point : points) {
        for (glm::length_t i = 0; i < V::length(); ++i)
            point[i] = next++;
    }
    return points;
}

/// The coordinates of points, one after the other.
template <class V>
std::vector<float> numbersOf(const std::vector<V>& points) {
    std::vector<float> numbers;
    for (const V& point : points) {
        for (glm::length_t i = 0; i < V::length(); ++i)
            numbers.push_back(point[i]);
    }
    return numbers;
}

class ToolboxTrace : public testing::Test {
protected:
    ToolboxTrace() : gl(*Stage::fakeGl), shared(Toolbox::getVertexBuffer()->id()) {
        // The names of the vertex array objects that a call makes count on from this one.
        glGenVertexArrays(1, &vertexArray);
        glDeleteVertexArrays(1, &vertexArray);
        gl.forget();
    }
    ~ToolboxTrace() override {
        EXPECT_GL_CALLS(gl); // every test looks at all calls of its own
        EXPECT_TRUE(gl.doubleDeletes().empty());
    }

    static std::string programName(BuiltIn builtIn) {
        return std::to_string(ProgramManager::instance().get(builtIn)->id());
    }

    /// An upload to the start of the shared buffer.
    Lines upload(std::size_t numBytes) const {
        return {"glBindBuffer(GL_ARRAY_BUFFER, " + std::to_string(shared) + ")",
                "glBufferSubData(GL_ARRAY_BUFFER, 0, " + std::to_string(numBytes) + ", data)",
                "glBindBuffer(GL_ARRAY_BUFFER, 0)"};
    }

    /// The making of a drawable over a buffer.
    Lines recording(BuiltIn program, const std::string& attribute, glm::length_t components,
                    unsigned int buffer) {
        const std::string name = std::to_string(++vertexArray);
        const std::string count = std::to_string(components);
        const std::string stride = std::to_string(4 * components);
        return {"glUseProgram(" + programName(program) + ")",
                "glGenVertexArrays(1, {" + name + "})",
                "glBindVertexArray(" + name + ")",
                "glBindBuffer(GL_ARRAY_BUFFER, " + std::to_string(buffer) + ")",
                "glVertexAttribPointer(" + attribute + ", " + count + ", GL_FLOAT, GL_FALSE, " +
                    stride + ", 0)",
                "glEnableVertexAttribArray(" + attribute + ")",
                "glBindBuffer(GL_ARRAY_BUFFER, 0)",
                "glBindVertexArray(0)",
                "glUseProgram(0)"};
    }

    /// One draw of the drawable that was recorded last.
    Lines pass(BuiltIn program, const Lines& uniforms, const std::string& primitive,
               unsigned int first, unsigned int count) const {
        return join({{"glUseProgram(" + programName(program) + ")",
                      "glBindVertexArray(" + std::to_string(vertexArray) + ")"},
                     uniforms,
                     {"glDrawArrays(" + primitive + ", " + std::to_string(first) + ", " +
                          std::to_string(count) + ")",
                      "glBindVertexArray(0)", "glUseProgram(0)"}});
    }

    /// The end of the drawable that was recorded last.
    Lines end() const { return {"glDeleteVertexArrays(1, {" + std::to_string(vertexArray) + "})"}; }

    /// A draw in one colour from a buffer.
    template <class V>
    Lines flatFrom(unsigned int buffer, const std::string& colorSet, const std::string& primitive,
                   unsigned int first, unsigned int count) {
        const BuiltIn program = is2D<V> ? BuiltIn::UniformColor2D : BuiltIn::UniformColor3D;
        const Lines made = recording(program, "5", V::length(), buffer);
        return join({made, pass(program, {colorSet, mvpSet}, primitive, first, count), end()});
    }

    /// A draw in orange from the shared buffer.
    template <class V>
    Lines flat(const std::string& primitive, unsigned int first, unsigned int count) {
        return flatFrom<V>(shared, orangeSet, primitive, first, count);
    }

    /// A quad in orange from the shared buffer, with its outline in blue.
    Lines outlinedQuad() {
        return join({flat<glm::vec3>("GL_TRIANGLE_FAN", 0, 4),
                     flatFrom<glm::vec3>(shared, blueSet, "GL_LINE_LOOP", 0, 4)});
    }

    /// A disc as a pass draws it.
    struct Disc {
        std::string colorSet;
        std::string radius;
        std::string softness;
    };

    /// A draw of discs from the shared buffer, while blending is set up as setBlendState() says.
    template <class V>
    Lines discs(const std::vector<Disc>& list, unsigned int first, unsigned int count) {
        const BuiltIn program = is2D<V> ? BuiltIn::SoftPoints2D : BuiltIn::SoftPoints3D;
        Lines lines = join(
            {recording(program, "5", V::length(), shared),
             {"glGetBooleanv(GL_BLEND, out)", "glGetIntegerv(GL_BLEND_SRC_RGB, out)",
              "glGetIntegerv(GL_BLEND_DST_RGB, out)", "glGetIntegerv(GL_BLEND_SRC_ALPHA, out)",
              "glGetIntegerv(GL_BLEND_DST_ALPHA, out)", "glGetIntegerv(GL_BLEND_EQUATION_RGB, out)",
              "glGetIntegerv(GL_BLEND_EQUATION_ALPHA, out)", "glEnable(GL_BLEND)",
              "glBlendEquation(GL_FUNC_ADD)",
              "glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA, "
              "GL_ONE_MINUS_SRC_ALPHA)",
              "glEnable(GL_POINT_SPRITE)", "glGetError()",
              "glEnable(GL_VERTEX_PROGRAM_POINT_SIZE)"}});
        for (const Disc& disc : list) {
            const Lines uniforms = {disc.colorSet, "glUniform1f(12, " + disc.radius + ")",
                                    "glUniform1f(13, " + disc.softness + ")", mvpSet};
            lines = join({lines, pass(program, uniforms, "GL_POINTS", first, count)});
        }
        return join({lines,
                     {"glDisable(GL_POINT_SPRITE)", "glGetError()",
                      "glDisable(GL_VERTEX_PROGRAM_POINT_SIZE)"},
                     blendingRestored,
                     end()});
    }

    /// Lets GL tell a state of blending that no call of the Toolbox sets.
    void setBlendState(bool on) {
        gl.setState(GL_BLEND, {on ? 1.0 : 0.0});
        gl.setState(GL_BLEND_SRC_RGB, {GL_ONE});
        gl.setState(GL_BLEND_DST_RGB, {GL_ZERO});
        gl.setState(GL_BLEND_SRC_ALPHA, {GL_DST_COLOR});
        gl.setState(GL_BLEND_DST_ALPHA, {GL_CONSTANT_ALPHA});
        gl.setState(GL_BLEND_EQUATION_RGB, {GL_FUNC_SUBTRACT});
        gl.setState(GL_BLEND_EQUATION_ALPHA, {GL_MAX});
        blendingRestored = {on ? "glEnable(GL_BLEND)" : "glDisable(GL_BLEND)",
                            "glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_DST_COLOR, GL_CONSTANT_ALPHA)",
                            "glBlendEquationSeparate(GL_FUNC_SUBTRACT, GL_MAX)"};
    }

    /// Draw of a dashed line from the shared buffer.
    template <class V>
    Lines dashes(const std::string& dash, unsigned int count) {
        const BuiltIn program = is2D<V> ? BuiltIn::DashLines2D : BuiltIn::DashLines3D;
        const Lines made = recording(program, "7", V::length() + 1, shared);
        return join({made,
                     pass(program, {orangeSet, "glUniform2fv(14, 1, " + dash + ")", mvpSet},
                          "GL_LINE_STRIP", 0, count),
                     end()});
    }

    /// How many allocations an action makes while GL is not looked at, when it is repeated.
    template <class Action>
    std::size_t allocationsOf(Action action) {
        gl.setRecording(false);
        action();
        const std::size_t before = allocationCount();
        action();
        const std::size_t after = allocationCount();
        gl.setRecording(true);
        return after - before;
    }

    /// The numbers at the start of the shared buffer.
    std::vector<float> streamed(std::size_t count) const {
        std::vector<float> numbers = gl.bufferContents<float>(shared);
        EXPECT_EQ(numbers.size(), 256u);
        numbers.resize(std::min(numbers.size(), count));
        return numbers;
    }

    FakeGl& gl;
    unsigned int shared;
    GLuint vertexArray = 0;
    Lines blendingRestored;
};

// The families of one colour: the function, and the GL name of its primitive.
#define VELLIS_TEST_FAMILY(family, glName)                                                         \
    struct family {                                                                                \
        static constexpr const char* primitive = glName;                                           \
        template <class... Arguments>                                                              \
        static void draw(const Arguments&... arguments) {                                          \
            Toolbox::draw##family(arguments...);                                                   \
        }                                                                                          \
    };
namespace family {
VELLIS_TEST_FAMILY(Lines, "GL_LINES")
VELLIS_TEST_FAMILY(LineStrip, "GL_LINE_STRIP")
VELLIS_TEST_FAMILY(LineLoop, "GL_LINE_LOOP")
VELLIS_TEST_FAMILY(TriangleFan, "GL_TRIANGLE_FAN")
VELLIS_TEST_FAMILY(TriangleStrip, "GL_TRIANGLE_STRIP")
} // namespace family
#undef VELLIS_TEST_FAMILY

/// A family, and whether its points are 2D or 3D.
template <class FamilyType, class V>
struct Of {
    using Family = FamilyType;
    using Point = V;
};

struct OfName {
    template <class Row>
    static std::string GetName(int) {
        return std::string(Row::Family::primitive) + (is2D<typename Row::Point> ? "_2D" : "_3D");
    }
};

template <class Row>
class ToolboxFlatTrace : public ToolboxTrace {
protected:
    static constexpr const char* primitive = Row::Family::primitive;
};

using FlatRows =
    testing::Types<Of<family::Lines, glm::vec2>, Of<family::Lines, glm::vec3>,
                   Of<family::LineStrip, glm::vec2>, Of<family::LineStrip, glm::vec3>,
                   Of<family::LineLoop, glm::vec2>, Of<family::LineLoop, glm::vec3>,
                   Of<family::TriangleFan, glm::vec2>, Of<family::TriangleFan, glm::vec3>,
                   Of<family::TriangleStrip, glm::vec2>, Of<family::TriangleStrip, glm::vec3>>;
TYPED_TEST_SUITE(ToolboxFlatTrace, FlatRows, OfName);

TYPED_TEST(ToolboxFlatTrace, CallersBufferIsDrawnWithoutUpload) {
    using V = typename TypeParam::Point;
    auto buffer = VertexAttributeBuffer<V>::make(9, BufferUsage::Static, BufferAccess::Draw);
    glGenVertexArrays(1, &this->vertexArray);
    this->gl.forget();
    TypeParam::Family::draw(orange, 2u, 4u, buffer, mvp);
    EXPECT_GL_CALLS(this->gl,
                    this->template flatFrom<V>(buffer->id(), orangeSet, this->primitive, 2, 4));
    TypeParam::Family::draw(orange, 2u, 0u, buffer, mvp); // all that remain
    EXPECT_GL_CALLS(this->gl,
                    this->template flatFrom<V>(buffer->id(), orangeSet, this->primitive, 2, 7));
    buffer.reset();
    this->gl.forget();
}

TYPED_TEST(ToolboxFlatTrace, EmptyBufferPointerDrawsNothing) {
    using V = typename TypeParam::Point;
    TypeParam::Family::draw(orange, 0u, 4u, std::shared_ptr<VertexAttributeBuffer<V>>(), mvp);
    EXPECT_GL_CALLS(this->gl);
}

TYPED_TEST(ToolboxFlatTrace, FirstAndCountUploadUpToTheLastAndDrawFromTheFirst) {
    using V = typename TypeParam::Point;
    const auto points = makePoints<V>(6);
    TypeParam::Family::draw(orange, 2u, 4u, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(6 * bytes<V>),
                    this->template flat<V>(this->primitive, 2, 4));
    EXPECT_EQ(this->streamed(6 * V::length()), numbersOf(points));
}

TYPED_TEST(ToolboxFlatTrace, CountUploadsAndDrawsFromTheStart) {
    using V = typename TypeParam::Point;
    const auto points = makePoints<V>(5);
    TypeParam::Family::draw(orange, 5u, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(5 * bytes<V>),
                    this->template flat<V>(this->primitive, 0, 5));
    EXPECT_EQ(this->streamed(5 * V::length()), numbersOf(points));
}

TYPED_TEST(ToolboxFlatTrace, ListIsUploadedAndDrawnWhole) {
    using V = typename TypeParam::Point;
    const auto points = makePoints<V>(3);
    const std::initializer_list<V> list = {points[0], points[1], points[2]};
    TypeParam::Family::draw(orange, list, mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(3 * bytes<V>),
                    this->template flat<V>(this->primitive, 0, 3));
    EXPECT_EQ(this->streamed(3 * V::length()), numbersOf(points));
}

TYPED_TEST(ToolboxFlatTrace, NullPointsDrawWhatTheBufferHolds) {
    using V = typename TypeParam::Point;
    const V* const none = nullptr;
    TypeParam::Family::draw(orange, 1u, 3u, none, mvp);
    EXPECT_GL_CALLS(this->gl, this->template flat<V>(this->primitive, 1, 3));
    TypeParam::Family::draw(orange, 4u, none, mvp);
    EXPECT_GL_CALLS(this->gl, this->template flat<V>(this->primitive, 0, 4));
}

TYPED_TEST(ToolboxFlatTrace, CountOfZeroDrawsUpToThe1024thVertex) {
    using V = typename TypeParam::Point;
    const auto points = makePoints<V>(4);
    TypeParam::Family::draw(orange, 0u, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(0), this->template flat<V>(this->primitive, 0, 1024));
    TypeParam::Family::draw(orange, 4u, 0u, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(4 * bytes<V>),
                    this->template flat<V>(this->primitive, 4, 1020));
}

TYPED_TEST(ToolboxFlatTrace, EmptyListCountsAsACountOfZero) {
    using V = typename TypeParam::Point;
    TypeParam::Family::draw(orange, std::initializer_list<V>(), mvp);
    EXPECT_GL_CALLS(this->gl, this->template flat<V>(this->primitive, 0, 1024));
}

TYPED_TEST(ToolboxFlatTrace, TooManyPointsAreLeftToGlToRefuseAndStillDrawn) {
    using V = typename TypeParam::Point;
    const auto few = makePoints<V>(2);
    const auto many = std::vector<V>(200, V(77.f));
    TypeParam::Family::draw(orange, 2u, few.data(), mvp);
    this->vertexArray += 1;
    this->gl.forget();
    TypeParam::Family::draw(orange, 200u, many.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(200 * bytes<V>),
                    this->template flat<V>(this->primitive, 0, 200));
    EXPECT_EQ(this->streamed(2 * V::length()), numbersOf(few));
}

TYPED_TEST(ToolboxFlatTrace, MostPointsThatFitFillTheBuffer) {
    using V = typename TypeParam::Point;
    const unsigned int most = is2D<V> ? 128 : 85;
    const auto points = makePoints<V>(most);
    TypeParam::Family::draw(orange, most, points.data(), mvp);
    EXPECT_EQ(this->streamed(most * V::length()), numbersOf(points));
    this->gl.forget();
}

TYPED_TEST(ToolboxFlatTrace, TakesTheMemoryOfTheVertexArrayBindingBefore) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    using V = typename TypeParam::Point;
    auto buffer = VertexAttributeBuffer<V>::make(9, BufferUsage::Static, BufferAccess::Draw);
    const auto points = makePoints<V>(9);
    const std::initializer_list<V> list = {points[0], points[1], points[2]};
    EXPECT_EQ(this->allocationsOf([&] {
        TypeParam::Family::draw(orange, 0u, 9u, buffer, mvp);
        TypeParam::Family::draw(orange, 1u, 3u, points.data(), mvp);
        TypeParam::Family::draw(orange, 9u, points.data(), mvp);
        TypeParam::Family::draw(orange, list, mvp);
    }),
              recyclesMemory ? 0u : 4u);
    buffer.reset();
    this->gl.forget();
}

/// The families whose calls are the same for 2D and 3D points.
template <class V>
class ToolboxPointsTrace : public ToolboxTrace {
protected:
    ToolboxPointsTrace() { setBlendState(true); }
};

template <class V>
using ToolboxDashesTrace = ToolboxPointsTrace<V>;

struct PointName {
    template <class V>
    static std::string GetName(int) {
        return is2D<V> ? "2D" : "3D";
    }
};

using PointTypes = testing::Types<glm::vec2, glm::vec3>;
TYPED_TEST_SUITE(ToolboxPointsTrace, PointTypes, PointName);
TYPED_TEST_SUITE(ToolboxDashesTrace, PointTypes, PointName);

TYPED_TEST(ToolboxPointsTrace, PointsFromFirstAndCount) {
    const auto points = makePoints<TypeParam>(7);
    Toolbox::drawPoints(orange, 12.5f, 3, 4, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(7 * bytes<TypeParam>),
                    this->template discs<TypeParam>({{orangeSet, "12.5", "0.1"}}, 3, 4));
    EXPECT_EQ(this->streamed(7 * TypeParam::length()), numbersOf(points));
}

TYPED_TEST(ToolboxPointsTrace, PointsFromTheStart) {
    const auto points = makePoints<TypeParam>(4);
    Toolbox::drawPoints(orange, 12.5f, 4, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(4 * bytes<TypeParam>),
                    this->template discs<TypeParam>({{orangeSet, "12.5", "0.1"}}, 0, 4));
    EXPECT_EQ(this->streamed(4 * TypeParam::length()), numbersOf(points));
}

TYPED_TEST(ToolboxPointsTrace, PointsOfAList) {
    const auto points = makePoints<TypeParam>(2);
    Toolbox::drawPoints(blue, 3.f, {points[0], points[1]}, mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(2 * bytes<TypeParam>),
                    this->template discs<TypeParam>({{blueSet, "3", "0.1"}}, 0, 2));
    EXPECT_EQ(this->streamed(2 * TypeParam::length()), numbersOf(points));
}

TYPED_TEST(ToolboxPointsTrace, BlendingThatWasOffIsOffAgain) {
    this->setBlendState(false);
    const auto points = makePoints<TypeParam>(1);
    Toolbox::drawPoints(orange, 3.f, 1, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(bytes<TypeParam>),
                    this->template discs<TypeParam>({{orangeSet, "3", "0.1"}}, 0, 1));
}

TYPED_TEST(ToolboxPointsTrace, NullPointsDrawWhatTheBufferHolds) {
    const TypeParam* const none = nullptr;
    Toolbox::drawPoints(orange, 3.f, 1, 2, none, mvp);
    EXPECT_GL_CALLS(this->gl, this->template discs<TypeParam>({{orangeSet, "3", "0.1"}}, 1, 2));
    Toolbox::drawPoints(orange, 3.f, 2, none, mvp);
    EXPECT_GL_CALLS(this->gl, this->template discs<TypeParam>({{orangeSet, "3", "0.1"}}, 0, 2));
}

TYPED_TEST(ToolboxPointsTrace, CountOfZeroDrawsUpToThe1024thVertex) {
    const auto points = makePoints<TypeParam>(3);
    Toolbox::drawPoints(orange, 3.f, 3, 0, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(3 * bytes<TypeParam>),
                    this->template discs<TypeParam>({{orangeSet, "3", "0.1"}}, 3, 1021));
    Toolbox::drawPoints(orange, 3.f, std::initializer_list<TypeParam>(), mvp);
    EXPECT_GL_CALLS(this->gl, this->template discs<TypeParam>({{orangeSet, "3", "0.1"}}, 0, 1024));
}

TYPED_TEST(ToolboxPointsTrace, TooManyPointsAreLeftToGlToRefuseAndStillDrawn) {
    const std::vector<TypeParam> points(200);
    Toolbox::drawPoints(orange, 3.f, 200, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(200 * bytes<TypeParam>),
                    this->template discs<TypeParam>({{orangeSet, "3", "0.1"}}, 0, 200));
}

TYPED_TEST(ToolboxPointsTrace, BullseyesAreThreeDiscsEachSofterThanTheLast) {
    const auto points = makePoints<TypeParam>(5);
    Toolbox::drawBullseyes(orange, blue, 10.f, 5, points.data(), mvp);
    EXPECT_GL_CALLS(
        this->gl, this->upload(5 * bytes<TypeParam>),
        this->template discs<TypeParam>(
            {{orangeSet, "10", "0.1"}, {blueSet, "7", "0.2"}, {orangeSet, "3", "0.4"}}, 0, 5));
    EXPECT_EQ(this->streamed(5 * TypeParam::length()), numbersOf(points));
}

TYPED_TEST(ToolboxPointsTrace, BullseyesOfAList) {
    const auto points = makePoints<TypeParam>(2);
    Toolbox::drawBullseyes(blue, orange, 20.f, {points[0], points[1]}, mvp);
    EXPECT_GL_CALLS(
        this->gl, this->upload(2 * bytes<TypeParam>),
        this->template discs<TypeParam>(
            {{blueSet, "20", "0.1"}, {orangeSet, "14", "0.2"}, {blueSet, "6", "0.4"}}, 0, 2));
    EXPECT_EQ(this->streamed(2 * TypeParam::length()), numbersOf(points));
}

TYPED_TEST(ToolboxPointsTrace, BullseyesOfNullOrNoPoints) {
    const TypeParam* const none = nullptr;
    const std::vector<typename TestFixture::Disc> rings = {
        {orangeSet, "10", "0.1"}, {blueSet, "7", "0.2"}, {orangeSet, "3", "0.4"}};
    Toolbox::drawBullseyes(orange, blue, 10.f, 2, none, mvp);
    EXPECT_GL_CALLS(this->gl, this->template discs<TypeParam>(rings, 0, 2));
    Toolbox::drawBullseyes(orange, blue, 10.f, std::initializer_list<TypeParam>(), mvp);
    EXPECT_GL_CALLS(this->gl, this->template discs<TypeParam>(rings, 0, 1024));
}

TYPED_TEST(ToolboxPointsTrace, TakesTheMemoryOfTheVertexArrayBindingBefore) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    const auto points = makePoints<TypeParam>(4);
    EXPECT_EQ(this->allocationsOf([&] {
        Toolbox::drawPoints(orange, 3.f, 1, 3, points.data(), mvp);
        Toolbox::drawPoints(orange, 3.f, 4, points.data(), mvp);
        Toolbox::drawPoints(orange, 3.f, {points[0], points[1]}, mvp);
        Toolbox::drawBullseyes(orange, blue, 3.f, 4, points.data(), mvp);
        Toolbox::drawBullseyes(orange, blue, 3.f, {points[0], points[1]}, mvp);
    }),
              recyclesMemory ? 0u : 5u);
}

TYPED_TEST(ToolboxDashesTrace, DistanceAlongTheLineFollowsEachPoint) {
    const TypeParam points[] = {TypeParam(0.f), TypeParam(0.f), TypeParam(0.f)};
    std::vector<TypeParam> line(points, points + 3);
    line[1].x = 3.f;
    line[1].y = 4.f;
    line[2].x = 3.f;
    line[2].y = 10.f;
    Toolbox::drawDashLineStrip(orange, 2.f, 0.5f, 3, line.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(3 * (bytes<TypeParam> + 4)),
                    this->template dashes<TypeParam>("{2, 0.5}", 3));
    const std::vector<float> expected =
        is2D<TypeParam> ? std::vector<float>{0, 0, 0, 3, 4, 5, 3, 10, 11}
                        : std::vector<float>{0, 0, 0, 0, 3, 4, 0, 5, 3, 10, 0, 11};
    EXPECT_EQ(this->streamed(expected.size()), expected);
}

TYPED_TEST(ToolboxDashesTrace, ListIsDrawnWhole) {
    const auto points = makePoints<TypeParam>(2);
    Toolbox::drawDashLineStrip(orange, 1.f, 3.f, {points[0], points[1]}, mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(2 * (bytes<TypeParam> + 4)),
                    this->template dashes<TypeParam>("{1, 3}", 2));
    const std::vector<float> expected =
        is2D<TypeParam> ? std::vector<float>{1, 2, 0, 3, 4, std::sqrt(8.f)}
                        : std::vector<float>{1, 2, 3, 0, 4, 5, 6, std::sqrt(27.f)};
    EXPECT_EQ(this->streamed(expected.size()), expected);
}

TYPED_TEST(ToolboxDashesTrace, NullPointsDrawWhatTheBufferHolds) {
    const TypeParam* const none = nullptr;
    Toolbox::drawDashLineStrip(orange, 1.f, 3.f, 4, none, mvp);
    EXPECT_GL_CALLS(this->gl, this->template dashes<TypeParam>("{1, 3}", 4));
}

TYPED_TEST(ToolboxDashesTrace, CountOfZeroDrawsUpToThe1024thVertex) {
    const auto points = makePoints<TypeParam>(1);
    Toolbox::drawDashLineStrip(orange, 1.f, 3.f, 0, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(0), this->template dashes<TypeParam>("{1, 3}", 1024));
    Toolbox::drawDashLineStrip(orange, 1.f, 3.f, std::initializer_list<TypeParam>(), mvp);
    EXPECT_GL_CALLS(this->gl, this->template dashes<TypeParam>("{1, 3}", 1024));
}

TYPED_TEST(ToolboxDashesTrace, TooManyPointsAreLeftToGlToRefuseAndStillDrawn) {
    const std::vector<TypeParam> points(200);
    Toolbox::drawDashLineStrip(orange, 1.f, 3.f, 200, points.data(), mvp);
    EXPECT_GL_CALLS(this->gl, this->upload(200 * (bytes<TypeParam> + 4)),
                    this->template dashes<TypeParam>("{1, 3}", 200));
}

TYPED_TEST(ToolboxDashesTrace, AllocatesTheTemporaryPoints) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    const auto points = makePoints<TypeParam>(4);
    EXPECT_EQ(this->allocationsOf([&] {
        Toolbox::drawDashLineStrip(orange, 1.f, 3.f, 4, points.data(), mvp);
        Toolbox::drawDashLineStrip(orange, 1.f, 3.f, {points[0], points[1]}, mvp);
    }),
              recyclesMemory ? 2u : 4u);
}

/// The lengths that a dashed line through the points streams.
template <class V>
std::vector<float> distances(const std::vector<V>& points) {
    Toolbox::drawDashLineStrip(orange, 1.f, 1.f, static_cast<unsigned int>(points.size()),
                               points.data(), mvp);
    Stage::fakeGl->forget();
    const auto numbers = Stage::fakeGl->bufferContents<float>(Toolbox::getVertexBuffer()->id());
    std::vector<float> lengths;
    const std::size_t stride = V::length() + 1;
    for (std::size_t i = stride - 1; i < stride * points.size(); i += stride)
        lengths.push_back(numbers[i]);
    return lengths;
}

TEST_F(ToolboxTrace, DistancesAddUpInThreeDirections) {
    EXPECT_EQ(distances<glm::vec3>({{1.f, 2.f, 3.f}, {1.f, 2.f, 5.f}, {3.f, 4.f, 6.f}}),
              (std::vector<float>{0.f, 2.f, 5.f}));
}

TEST_F(ToolboxTrace, DistancesAreSummedInSinglePrecision) {
    // From 2^24 on a step of 1 is lost, which a sum of higher precision would keep.
    EXPECT_EQ(
        distances<glm::vec2>({{0.f, 0.f}, {16777216.f, 0.f}, {16777216.f, 1.f}, {16777216.f, 2.f}}),
        (std::vector<float>{0.f, 16777216.f, 16777216.f, 16777216.f}));
}

TEST_F(ToolboxTrace, SquaresAreSummedFromYAndXToZ) {
    // A step whose length every other order, and a higher precision, would round differently.
    EXPECT_EQ(distances<glm::vec3>({{0.f, 0.f, 0.f}, {840.25f, 977.75f, 907.5f}}).back(),
              1576.569580078125f);
}

TEST_F(ToolboxTrace, DashesLeaveBlendingAlone) {
    Toolbox::drawDashLineStrip(orange, 1.f, 3.f, {{0.f, 0.f}, {1.f, 0.f}}, mvp);
    EXPECT_EQ(gl.countOf("glEnable") + gl.countOf("glDisable") + gl.countOf("glGetBooleanv"), 0u);
    gl.forget();
}

const std::vector<glm::vec3> quad = {
    {1.f, 2.f, 3.f}, {4.f, 5.f, 6.f}, {7.f, 8.f, 9.f}, {10.f, 11.f, 12.f}};

TEST_F(ToolboxTrace, QuadIsAFanOfFourPoints) {
    Toolbox::drawQuad(orange, quad.data(), mvp);
    EXPECT_GL_CALLS(gl, upload(48), flat<glm::vec3>("GL_TRIANGLE_FAN", 0, 4));
    EXPECT_EQ(streamed(12), numbersOf(quad));
}

TEST_F(ToolboxTrace, QuadOfAList) {
    Toolbox::drawQuad(orange, {quad[0], quad[1], quad[2], quad[3]}, mvp);
    EXPECT_GL_CALLS(gl, upload(48), flat<glm::vec3>("GL_TRIANGLE_FAN", 0, 4));
    EXPECT_EQ(streamed(12), numbersOf(quad));
}

TEST_F(ToolboxTrace, QuadWithOutlineUploadsOnceAndDrawsTheOutlineOverTheFill) {
    Toolbox::drawQuad(orange, blue, quad.data(), mvp);
    EXPECT_GL_CALLS(gl, upload(48), outlinedQuad());
    EXPECT_EQ(streamed(12), numbersOf(quad));
}

TEST_F(ToolboxTrace, QuadWithOutlineOfAList) {
    Toolbox::drawQuad(orange, blue, {quad[0], quad[1], quad[2], quad[3]}, mvp);
    EXPECT_GL_CALLS(gl, upload(48), outlinedQuad());
    EXPECT_EQ(streamed(12), numbersOf(quad));
}

TEST_F(ToolboxTrace, MissingCornersOfAQuadAreTheOrigin) {
    const std::vector<float> expected = {1.f, 2.f, 3.f, 4.f, 5.f, 6.f,
                                         0.f, 0.f, 0.f, 0.f, 0.f, 0.f};
    Toolbox::drawQuad(orange, {quad[0], quad[1]}, mvp);
    EXPECT_EQ(streamed(12), expected);
    Toolbox::drawQuad(blue, quad.data(), mvp);
    Toolbox::drawQuad(orange, blue, {quad[0], quad[1]}, mvp);
    EXPECT_EQ(streamed(12), expected);
    gl.forget();
}

TEST_F(ToolboxTrace, EmptyQuadListIsFourTimesTheOrigin) {
    Toolbox::drawQuad(orange, std::initializer_list<glm::vec3>(), mvp);
    EXPECT_GL_CALLS(gl, upload(48), flat<glm::vec3>("GL_TRIANGLE_FAN", 0, 4));
    EXPECT_EQ(streamed(12), std::vector<float>(12));
}

TEST_F(ToolboxTrace, CornersBeyondTheFourthOfAQuadAreLeftOut) {
    Toolbox::drawLines(orange, 5, std::vector<glm::vec3>(5, glm::vec3(77.f)).data(), mvp);
    Toolbox::drawQuad(orange, {quad[0], quad[1], quad[2], quad[3], quad[0]}, mvp);
    std::vector<float> expected = numbersOf(quad);
    expected.push_back(77.f);
    EXPECT_EQ(streamed(13), expected);
    Toolbox::drawQuad(orange, blue, {quad[0], quad[1], quad[2], quad[3], quad[0]}, mvp);
    EXPECT_EQ(streamed(13), expected);
    gl.forget();
}

TEST_F(ToolboxTrace, NullQuadDrawsWhatTheBufferHolds) {
    const glm::vec3* const none = nullptr;
    Toolbox::drawQuad(orange, none, mvp);
    EXPECT_GL_CALLS(gl, flat<glm::vec3>("GL_TRIANGLE_FAN", 0, 4));
    Toolbox::drawQuad(orange, blue, none, mvp);
    EXPECT_GL_CALLS(gl, outlinedQuad());
}

TEST_F(ToolboxTrace, RectIsAStripOfItsFourCorners) {
    Toolbox::drawRect(orange, {1.f, 2.f}, {3.f, 5.f}, mvp);
    EXPECT_GL_CALLS(gl, upload(32), flat<glm::vec2>("GL_TRIANGLE_STRIP", 0, 4));
    EXPECT_EQ(streamed(8), (std::vector<float>{1.f, 2.f, 1.f, 5.f, 3.f, 2.f, 3.f, 5.f}));
}

TEST_F(ToolboxTrace, QuadAndRectTakeTheMemoryOfTheVertexArrayBindingsBefore) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    EXPECT_EQ(allocationsOf([&] {
                  Toolbox::drawQuad(orange, quad.data(), mvp);
                  Toolbox::drawQuad(orange, {quad[0], quad[1]}, mvp);
                  Toolbox::drawQuad(orange, blue, quad.data(), mvp);        // two of them
                  Toolbox::drawQuad(orange, blue, {quad[0], quad[1]}, mvp); // two of them
                  Toolbox::drawRect(orange, {1.f, 2.f}, {3.f, 5.f}, mvp);
              }),
              recyclesMemory ? 0u : 7u);
}

/// The built-in program that the calls since the last look have used last; null for another one.
const char* usedProgram() {
    static constexpr const char* names[] = {"SoftPoints2D",   "SoftPoints3D", "UniformColor2D",
                                            "UniformColor3D", "DashLines2D",  "DashLines3D"};
    const char* used = nullptr;
    for (const std::string& line : Stage::fakeGl->takeCalls()) {
        for (unsigned int i = 0; i < 6; ++i) {
            const auto& program = ProgramManager::instance().get(static_cast<BuiltIn>(i));
            if (line == "glUseProgram(" + std::to_string(program->id()) + ")")
                used = names[i];
        }
    }
    return used;
}

/// Calls a function of the Toolbox as a user writes it, and expects which program it chooses.
#define EXPECT_CHOOSES(program, call)                                                              \
    Toolbox::call;                                                                                 \
    EXPECT_STREQ(usedProgram(), program)

TEST_F(ToolboxTrace, ListsInBracesChooseByTheNumberOfCoordinates) {
    EXPECT_CHOOSES("UniformColor2D", drawLines(orange, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawLines(orange, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawLineStrip(orange, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D",
                   drawLineStrip(orange, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawLineLoop(orange, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawLineLoop(orange, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawTriangleFan(orange, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D",
                   drawTriangleFan(orange, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawTriangleStrip(orange, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D",
                   drawTriangleStrip(orange, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints2D", drawPoints(orange, 9.f, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints3D",
                   drawPoints(orange, 9.f, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints2D", drawBullseyes(orange, blue, 9.f, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints3D",
                   drawBullseyes(orange, blue, 9.f, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("DashLines2D",
                   drawDashLineStrip(orange, 2.f, 1.f, {{0.f, 0.f}, {1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("DashLines3D",
                   drawDashLineStrip(orange, 2.f, 1.f, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawQuad(orange, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D",
                   drawQuad(orange, blue, {{0.f, 0.f, 0.f}, {1.f, 1.f, 1.f}}, mvp));
}

TEST_F(ToolboxTrace, ListsOfOnePointInBracesChooseByTheNumberOfCoordinates) {
    EXPECT_CHOOSES("SoftPoints2D", drawPoints(orange, 9.f, {{0.f, 0.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints3D", drawPoints(orange, 9.f, {{0.f, 0.f, 0.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints2D", drawBullseyes(orange, blue, 9.f, {{0.f, 0.f}}, mvp));
    EXPECT_CHOOSES("SoftPoints3D", drawBullseyes(orange, blue, 9.f, {{0.f, 0.f, 0.f}}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawQuad(orange, {{0.f, 0.f, 0.f}}, mvp));
}

TEST_F(ToolboxTrace, ListsOfNamedPointsChooseByTheirType) {
    const glm::vec2 p(1.f, 2.f);
    const glm::vec2 q(3.f, 4.f);
    const glm::vec3 r(1.f, 2.f, 3.f);
    const glm::vec3 s(4.f, 5.f, 6.f);
    EXPECT_CHOOSES("UniformColor2D", drawLines(orange, {p, q}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawLines(orange, {r, s}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawLineStrip(orange, {p, q}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawLineStrip(orange, {r, s}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawLineLoop(orange, {p, q}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawLineLoop(orange, {r, s}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawTriangleFan(orange, {p, q}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawTriangleFan(orange, {r, s}, mvp));
    EXPECT_CHOOSES("UniformColor2D", drawTriangleStrip(orange, {p, q}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawTriangleStrip(orange, {r, s}, mvp));
    EXPECT_CHOOSES("SoftPoints2D", drawPoints(orange, 9.f, {p}, mvp));
    EXPECT_CHOOSES("SoftPoints3D", drawPoints(orange, 9.f, {r}, mvp));
    EXPECT_CHOOSES("SoftPoints2D", drawBullseyes(orange, blue, 9.f, {p, q}, mvp));
    EXPECT_CHOOSES("SoftPoints3D", drawBullseyes(orange, blue, 9.f, {r, s}, mvp));
    EXPECT_CHOOSES("DashLines2D", drawDashLineStrip(orange, 2.f, 1.f, {p, q}, mvp));
    EXPECT_CHOOSES("DashLines3D", drawDashLineStrip(orange, 2.f, 1.f, {r, s}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawQuad(orange, {r, s, r, s}, mvp));
    EXPECT_CHOOSES("UniformColor3D", drawQuad(orange, blue, {r, s, r, s}, mvp));
}

#undef EXPECT_CHOOSES

TEST_F(ToolboxTrace, ThereIsOneInstance) {
    EXPECT_EQ(&Toolbox::instance(), &Toolbox::instance());
}

TEST_F(ToolboxTrace, VertexBufferIsAlwaysTheSame) {
    const auto buffer = Toolbox::getVertexBuffer();
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->count(), 1024u);
    EXPECT_EQ(buffer->numBytes(), 1024u);
    const auto points = makePoints<glm::vec2>(200);
    Toolbox::drawLines(orange, 200, points.data(), mvp);
    EXPECT_EQ(Toolbox::getVertexBuffer(), buffer);
    EXPECT_EQ(buffer->numBytes(), 1024u);
    gl.forget();
}

TEST_F(ToolboxTrace, NothingSurvivesACallButTheSharedBuffer) {
    const auto before = gl.liveNames();
    setBlendState(false);
    Toolbox::drawLines(orange, {{0.f, 0.f}, {1.f, 1.f}}, mvp);
    Toolbox::drawBullseyes(orange, blue, 9.f, {{0.f, 0.f}, {1.f, 1.f}}, mvp);
    Toolbox::drawDashLineStrip(orange, 2.f, 1.f, {{0.f, 0.f}, {1.f, 1.f}}, mvp);
    Toolbox::drawQuad(orange, blue, quad.data(), mvp);
    EXPECT_EQ(gl.liveNames(), before);
    gl.forget();
}

} // namespace

#include <vellis/drawing/primitives.hpp>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/detail/recycling_allocator.hpp>
#include <vellis/gl.hpp>

#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::detail::recyclesMemory;
using vellis::test::allocationCount;
using vellis::test::FakeGl;

template <class T>
std::shared_ptr<VertexAttributeBuffer<T>> bufferOf(unsigned int count) {
    return VertexAttributeBuffer<T>::make(count, BufferUsage::Static, BufferAccess::Draw);
}

/// A fake GL, and a program with the attributes `position` at location 5 and `color` at 3, whose
/// making is not looked at.
class PrimitivesTrace : public testing::Test {
protected:
    PrimitivesTrace() {
        gl.setActiveAttributes({{"position", GL_FLOAT_VEC3, 1, 5}, {"color", GL_FLOAT_VEC4, 1, 3}});
        program = Program::make("v", "f");
        gl.forget();
    }
    ~PrimitivesTrace() override {
        EXPECT_GL_CALLS(gl); // every test looks at all calls of its own
        gl.ignoreTheRest();
    }

    /// A buffer whose making is not looked at.
    template <class T>
    std::shared_ptr<VertexAttributeBuffer<T>> makeBuffer(unsigned int count) {
        auto buffer = bufferOf<T>(count);
        gl.forget();
        return buffer;
    }

    /// What recording a binding calls: a vertex array object of the next name, set up by
    /// \p attributes.
    std::vector<std::string> recording(unsigned int vertexArray,
                                       const std::vector<std::string>& attributes) const {
        const std::string name = std::to_string(vertexArray);
        std::vector<std::string> lines = {"glUseProgram(" + std::to_string(program->id()) + ")",
                                          "glGenVertexArrays(1, {" + name + "})",
                                          "glBindVertexArray(" + name + ")"};
        lines.insert(lines.end(), attributes.begin(), attributes.end());
        lines.insert(lines.end(), {"glBindVertexArray(0)", "glUseProgram(0)"});
        return lines;
    }

    /// What an attribute calls; \p pointer is what the pointer call has after the location.
    static std::vector<std::string>
    attribute(const BufferObject& buffer, const std::string& location, const std::string& pointer) {
        return {"glBindBuffer(GL_ARRAY_BUFFER, " + std::to_string(buffer.id()) + ")",
                "glVertexAttribPointer(" + location + ", " + pointer + ")",
                "glEnableVertexAttribArray(" + location + ")", "glBindBuffer(GL_ARRAY_BUFFER, 0)"};
    }

    /// The one pointer call since the last look; empty where there was another number of them.
    std::string pointerCall() {
        std::string found;
        const bool isOne = gl.countOf("glVertexAttribPointer") == 1;
        for (const std::string& line : gl.takeCalls()) {
            if (isOne && line.rfind("glVertexAttribPointer", 0) == 0)
                found = line;
        }
        return found;
    }

    FakeGl gl;
    std::shared_ptr<Program> program;
};

// A kind of primitive: its template and the GL name that draws carry.
struct Points {
    template <class... Attributes>
    using Shape = drawable::Points<Attributes...>;
    static constexpr const char* name = "GL_POINTS";
};
struct Lines {
    template <class... Attributes>
    using Shape = drawable::Lines<Attributes...>;
    static constexpr const char* name = "GL_LINES";
};
struct LineLoop {
    template <class... Attributes>
    using Shape = drawable::LineLoop<Attributes...>;
    static constexpr const char* name = "GL_LINE_LOOP";
};
struct LineStrip {
    template <class... Attributes>
    using Shape = drawable::LineStrip<Attributes...>;
    static constexpr const char* name = "GL_LINE_STRIP";
};
struct Triangles {
    template <class... Attributes>
    using Shape = drawable::Triangles<Attributes...>;
    static constexpr const char* name = "GL_TRIANGLES";
};
struct TriangleStrip {
    template <class... Attributes>
    using Shape = drawable::TriangleStrip<Attributes...>;
    static constexpr const char* name = "GL_TRIANGLE_STRIP";
};
struct TriangleFan {
    template <class... Attributes>
    using Shape = drawable::TriangleFan<Attributes...>;
    static constexpr const char* name = "GL_TRIANGLE_FAN";
};

template <class Kind>
class EachPrimitiveTrace : public PrimitivesTrace {
protected:
    template <class V>
    void recordsItsAttributeAndDrawsAll() {
        const auto buffer = makeBuffer<V>(7);
        const unsigned int vertexArray = buffer->id() + 1;
        const typename Kind::template Shape<VertexAttribute<V>> shape(program,
                                                                      {"position", buffer});
        const std::string components = std::to_string(V::length());
        const std::string stride = std::to_string(4 * V::length());
        EXPECT_GL_CALLS(gl, recording(vertexArray, attribute(*buffer, "5",
                                                             components + ", GL_FLOAT, GL_FALSE, " +
                                                                 stride + ", 0")));
        EXPECT_EQ(shape.numVertices(), 7u);
        shape.draw(2, 0);
        EXPECT_GL_CALLS(gl, std::string("glDrawArrays(") + Kind::name + ", 2, 5)");
        EXPECT_NE(shape.getAttributesBinding(), nullptr);
        gl.ignoreTheRest();
    }
};

struct KindName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::name;
    }
};

using Kinds =
    testing::Types<Points, Lines, LineLoop, LineStrip, Triangles, TriangleStrip, TriangleFan>;
TYPED_TEST_SUITE(EachPrimitiveTrace, Kinds, KindName);

TYPED_TEST(EachPrimitiveTrace, RecordsVectorsOfTwoAndDrawsThem) {
    this->template recordsItsAttributeAndDrawsAll<glm::vec2>();
}

TYPED_TEST(EachPrimitiveTrace, RecordsVectorsOfThreeAndDrawsThem) {
    this->template recordsItsAttributeAndDrawsAll<glm::vec3>();
}

TYPED_TEST(EachPrimitiveTrace, RecordsVectorsOfFourAndDrawsThem) {
    this->template recordsItsAttributeAndDrawsAll<glm::vec4>();
}

TYPED_TEST(EachPrimitiveTrace, MakeUsesOneAllocationForObjectAndCount) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    using Shape = typename TypeParam::template Shape<VertexAttribute<glm::vec3>>;
    const auto buffer = this->template makeBuffer<glm::vec3>(1);
    const VertexAttribute<glm::vec3> position("position", buffer);
    this->gl.setRecording(false);
    { // What is kept from before is in use.
        const Shape before(this->program, position);
        const std::size_t first = allocationCount();
        { const Shape onTheStack(this->program, position); }
        EXPECT_EQ(allocationCount() - first, 1u); // the binding
    }
    const auto before = Shape::make(this->program, position);
    const Shape another(this->program, position);
    const std::size_t second = allocationCount();
    auto shape = Shape::make(this->program, position);
    EXPECT_EQ(allocationCount() - second, 2u);
    shape.reset();
    const std::size_t third = allocationCount();
    Shape::make(this->program, position);
    EXPECT_EQ(allocationCount() - third, recyclesMemory ? 0u : 2u);
}

TYPED_TEST(EachPrimitiveTrace, IsDrawnThroughItsBase) {
    using Shape = typename TypeParam::template Shape<VertexAttribute<glm::vec2>>;
    static_assert(std::is_base_of_v<Drawable, Shape>);
    static_assert(std::has_virtual_destructor_v<Shape>);
    const auto buffer = this->template makeBuffer<glm::vec2>(3);
    const std::shared_ptr<Drawable> shape = Shape::make(this->program, {"position", buffer});
    const std::string vertexArray = std::to_string(buffer->id() + 1);
    this->gl.forget();
    this->program->draw(*shape);
    const std::string name = std::to_string(this->program->id());
    EXPECT_GL_CALLS(this->gl, "glUseProgram(" + name + ")",
                    "glBindVertexArray(" + vertexArray + ")",
                    std::string("glDrawArrays(") + TypeParam::name + ", 0, 3)",
                    "glBindVertexArray(0)", "glUseProgram(0)");
    this->gl.ignoreTheRest();
}

using Positions = VertexAttribute<glm::vec3>;
using Strip = drawable::LineStrip<Positions>;

TEST_F(PrimitivesTrace, OffsetMovesThePointerAndShortensTheDrawable) {
    const auto buffer = makeBuffer<glm::vec3>(10);
    const Strip strip(program, Positions("position", buffer, 2));
    EXPECT_GL_CALLS(
        gl, recording(buffer->id() + 1, attribute(*buffer, "5", "3, GL_FLOAT, GL_FALSE, 12, 24")));
    EXPECT_EQ(strip.numVertices(), 8u);
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, OffsetAtTheEndOrBeyondLeavesNothingToDraw) {
    const auto buffer = makeBuffer<glm::vec3>(10);
    const Strip atTheEnd(program, Positions("position", buffer, 10));
    EXPECT_EQ(atTheEnd.numVertices(), 0u);
    gl.forget();
    const Strip beyond(program, Positions("position", buffer, 11));
    EXPECT_EQ(beyond.numVertices(), 0u);
    EXPECT_EQ(pointerCall(), "glVertexAttribPointer(5, 3, GL_FLOAT, GL_FALSE, 12, 132)");
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, LargeOffsetsDoNotWrap) {
    const auto buffer = makeBuffer<glm::vec3>(10);
    const Strip strip(program, Positions("position", buffer, 0xFFFFFFFFu));
    EXPECT_EQ(strip.numVertices(), 0u);
    if constexpr (sizeof(void*) == 8) {
        EXPECT_EQ(pointerCall(),
                  "glVertexAttribPointer(5, 3, GL_FLOAT, GL_FALSE, 12, 51539607540)");
    }
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, ConstructionLeavesNothingInUseWhateverWasBefore) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    const auto integer = [](GLenum pname) {
        GLint value = -1;
        glGetIntegerv(pname, &value);
        return value;
    };
    GLuint vertexArray = 0;
    glGenVertexArrays(1, &vertexArray);
    glBindVertexArray(vertexArray);
    program->bind();
    buffer->bind();
    const Strip strip(program, {"position", buffer});
    EXPECT_EQ(integer(GL_CURRENT_PROGRAM), 0);
    EXPECT_EQ(integer(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_FALSE(program->isBound());
    EXPECT_FALSE(buffer->isBound());
    EXPECT_FALSE(strip.getAttributesBinding()->isCurrent());
    glDeleteVertexArrays(1, &vertexArray);
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, ExplicitLocationIsUsedAsItIs) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    Positions position("position", buffer);
    EXPECT_EQ(position.location, -1);
    unsigned int vertexArray = buffer->id();
    for (const int location : {0, 9}) {
        position.location = location;
        gl.forget(); // the end of the drawable before
        const Strip strip(program, position);
        EXPECT_GL_CALLS(gl, recording(++vertexArray, attribute(*buffer, std::to_string(location),
                                                               "3, GL_FLOAT, GL_FALSE, 12, 0")));
    }
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, AttributeOfALocationNeedsNoName) {
    const auto buffer = makeBuffer<glm::vec3>(10);
    const Positions first(0, buffer); // which is no null pointer to a name
    EXPECT_EQ(first.location, 0);
    EXPECT_EQ(first.name, nullptr);
    EXPECT_EQ(first.offset, 0u);
    EXPECT_FALSE(first.normalized);
    EXPECT_EQ(Positions(0u, buffer).location, 0);
    const Strip strip(program, Positions(program->getAttribLoc("color"), buffer, 2, true));
    EXPECT_GL_CALLS(
        gl, recording(buffer->id() + 1, attribute(*buffer, "3", "3, GL_FLOAT, GL_TRUE, 12, 24")));
    EXPECT_EQ(strip.numVertices(), 8u);
    gl.forget();
    const auto made = Strip::make(program, {0, buffer});
    EXPECT_EQ(pointerCall(), "glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 12, 0)");
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, NegativeLocationWithoutANameIsWhatGlRefuses) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    unsigned int vertexArray = buffer->id();
    for (const Positions& nothing :
         {Positions(-1, buffer), Positions(-7, buffer), Positions(0xFFFFFFFFu, buffer)}) {
        gl.forget(); // the end of the drawable before
        const Strip strip(program, nothing);
        EXPECT_GL_CALLS(gl, recording(++vertexArray, attribute(*buffer, "4294967295",
                                                               "3, GL_FLOAT, GL_FALSE, 12, 0")));
    }
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, AnyNegativeLocationIsLookedUp) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    Positions position("color", buffer);
    position.location = -7;
    const Strip strip(program, position);
    EXPECT_EQ(pointerCall(), "glVertexAttribPointer(3, 3, GL_FLOAT, GL_FALSE, 12, 0)");
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, UnknownNameGetsTheLocationThatGlRefuses) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    unsigned int vertexArray = buffer->id();
    for (const char* name : {"elsewhere", static_cast<const char*>(nullptr)}) {
        gl.forget(); // the end of the drawable before
        const Strip strip(program, Positions(name, buffer));
        EXPECT_GL_CALLS(gl, recording(++vertexArray, attribute(*buffer, "4294967295",
                                                               "3, GL_FLOAT, GL_FALSE, 12, 0")));
        EXPECT_EQ(strip.numVertices(), 3u);
    }
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, MissingBufferIsLeftOutAndThereIsNothingToDraw) {
    const Strip strip(program, {"position", nullptr});
    EXPECT_GL_CALLS(gl, recording(program->id() + 1, {}));
    EXPECT_EQ(strip.numVertices(), 0u);
    strip.draw(0, 0);
    EXPECT_GL_CALLS(gl, "glDrawArrays(GL_LINE_STRIP, 0, 0)");
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, MissingProgramRecordsNothing) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    const Strip strip(nullptr, {"position", buffer});
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(strip.getAttributesBinding(), nullptr);
    EXPECT_EQ(strip.numVertices(), 3u);
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, KeepsNeitherBufferNorProgramNorAttribute) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    const auto strip = Strip::make(program, {"position", buffer});
    EXPECT_EQ(buffer.use_count(), 1);
    EXPECT_EQ(program.use_count(), 1);
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, LastHolderDeletesTheVertexArrayObject) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    auto strip = std::make_unique<Strip>(program, Positions("position", buffer));
    const auto copy = std::make_unique<Strip>(*strip);
    gl.forget();
    strip.reset();
    EXPECT_GL_CALLS(gl);
    copy->draw(0, 3);
    EXPECT_GL_CALLS(gl, "glDrawArrays(GL_LINE_STRIP, 0, 3)");
    gl.ignoreTheRest();
}

/// A buffer that tells another number of elements than it holds.
class SixElements : public VertexAttributeBuffer<glm::vec3> {
public:
    SixElements() : VertexAttributeBuffer(nullptr, 10, BufferUsage::Static, BufferAccess::Draw) {}
    unsigned int numElements() const override { return 6; }
};

TEST_F(PrimitivesTrace, VertexCountIsAskedThroughTheVirtualOperation) {
    const auto buffer = std::make_shared<SixElements>();
    gl.ignoreTheRest();
    EXPECT_EQ(Strip(program, Positions("position", buffer, 2)).numVertices(), 4u);
}

TEST_F(PrimitivesTrace, SeveralAttributesShareOneBindingInTheirOrder) {
    using Colors = VertexAttribute<glm::u8vec4>;
    const auto positions = makeBuffer<glm::vec2>(9);
    const auto colors = makeBuffer<glm::u8vec4>(12);
    const auto triangles = drawable::Triangles<VertexAttribute<glm::vec2>, Colors>::make(
        program, {"position", positions}, Colors("color", colors, 6, true));
    std::vector<std::string> attributes = attribute(*positions, "5", "2, GL_FLOAT, GL_FALSE, 8, 0");
    const auto second = attribute(*colors, "3", "4, GL_UNSIGNED_BYTE, GL_TRUE, 4, 24");
    attributes.insert(attributes.end(), second.begin(), second.end());
    EXPECT_GL_CALLS(gl, recording(colors->id() + 1, attributes));
    EXPECT_EQ(triangles->numVertices(), 6u);
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, SmallestAttributeCountsWhereverItStands) {
    const VertexAttribute<float> four("position", bufferOf<float>(4));
    const VertexAttribute<float> six("color", bufferOf<float>(6));
    const VertexAttribute<float> five("other", bufferOf<float>(5));
    const VertexAttribute<float> none("other", nullptr);
    using Three =
        drawable::Points<VertexAttribute<float>, VertexAttribute<float>, VertexAttribute<float>>;
    EXPECT_EQ(Three(program, four, six, five).numVertices(), 4u);
    EXPECT_EQ(Three(program, six, four, five).numVertices(), 4u);
    EXPECT_EQ(Three(program, six, five, four).numVertices(), 4u);
    EXPECT_EQ(Three(program, six, none, four).numVertices(), 0u);
    gl.ignoreTheRest();
}

TEST_F(PrimitivesTrace, AttributeStartsAtTheFirstElementNotNormalized) {
    const auto buffer = makeBuffer<glm::vec3>(3);
    const Positions position("position", buffer);
    EXPECT_EQ(position.offset, 0u);
    EXPECT_FALSE(position.normalized);
    EXPECT_EQ(position.buffer, buffer);
    EXPECT_STREQ(position.name, "position");
    gl.ignoreTheRest();
}

// What an attribute can be made of: a type of component and its GL name.
template <class T>
struct Component {
    using Type = T;
    static const char* const name;
};
template <>
const char* const Component<signed char>::name = "GL_BYTE";
template <>
const char* const Component<unsigned char>::name = "GL_UNSIGNED_BYTE";
template <>
const char* const Component<short>::name = "GL_SHORT";
template <>
const char* const Component<unsigned short>::name = "GL_UNSIGNED_SHORT";
template <>
const char* const Component<int>::name = "GL_INT";
template <>
const char* const Component<unsigned int>::name = "GL_UNSIGNED_INT";
template <>
const char* const Component<float>::name = "GL_FLOAT";

template <class Row>
class AttributeFormatTrace : public PrimitivesTrace {
protected:
    /// Attributes of elements of type \p T, from the first element and from the third, normalised
    /// and not.
    template <class T>
    void isReadAs(int components) {
        static_assert(IsAttributeType<T>::value);
        EXPECT_EQ(AttributeFormat<T>::components, components);
        const auto buffer = makeBuffer<T>(5);
        for (const unsigned int offset : {0u, 3u}) {
            for (const bool normalized : {false, true}) {
                gl.forget(); // the end of the drawable before
                const VertexAttribute<T> attribute("position", buffer, offset, normalized);
                const drawable::Points<VertexAttribute<T>> points(program, attribute);
                EXPECT_EQ(points.numVertices(), 5 - offset);
                EXPECT_EQ(pointerCall(), "glVertexAttribPointer(5, " + std::to_string(components) +
                                             ", " + Row::name +
                                             (normalized ? ", GL_TRUE, " : ", GL_FALSE, ") +
                                             std::to_string(sizeof(T)) + ", " +
                                             std::to_string(offset * sizeof(T)) + ")");
            }
        }
        gl.ignoreTheRest();
    }
};

struct ComponentName {
    template <class Row>
    static std::string GetName(int) {
        return Row::name;
    }
};

using Components = testing::Types<Component<signed char>, Component<unsigned char>,
                                  Component<short>, Component<unsigned short>, Component<int>,
                                  Component<unsigned int>, Component<float>>;
TYPED_TEST_SUITE(AttributeFormatTrace, Components, ComponentName);

TYPED_TEST(AttributeFormatTrace, SingleComponent) {
    this->template isReadAs<typename TypeParam::Type>(1);
}

TYPED_TEST(AttributeFormatTrace, VectorOfTwo) {
    this->template isReadAs<glm::vec<2, typename TypeParam::Type>>(2);
}

TYPED_TEST(AttributeFormatTrace, VectorOfThree) {
    this->template isReadAs<glm::vec<3, typename TypeParam::Type>>(3);
}

TYPED_TEST(AttributeFormatTrace, VectorOfFour) {
    this->template isReadAs<glm::vec<4, typename TypeParam::Type>>(4);
}

/// A struct that a buffer can hold, but no attribute can be.
struct Vertex {
    glm::vec2 position;
};

// What no attribute can be made of does not compile.
static_assert(!IsAttributeType<bool>::value);
static_assert(!IsAttributeType<char>::value);
static_assert(!IsAttributeType<double>::value);
static_assert(!IsAttributeType<long long>::value);
static_assert(!IsAttributeType<unsigned long long>::value);
static_assert(!IsAttributeType<glm::bvec4>::value);
static_assert(!IsAttributeType<glm::dvec3>::value);
static_assert(!IsAttributeType<glm::i64vec2>::value);
static_assert(!IsAttributeType<float*>::value);
static_assert(!IsAttributeType<Vertex>::value);

} // namespace

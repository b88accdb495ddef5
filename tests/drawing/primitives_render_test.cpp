/// The drawable templates on a driver.

#include <vellis/drawing/primitives.hpp>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/render_test.hpp"

namespace {

using namespace vellis;

/// The colour of a pixel, 0 to 255.
struct Pixel {
    int red, green, blue;
};

class PrimitivesRender : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (HasFatalFailure())
            return;
        program = Program::make("#version 120 \n"
                                "attribute vec4 position; \n"
                                "attribute vec3 color; \n"
                                "varying vec3 shade; \n"
                                "void main() { shade = color; gl_Position = position; } \n",
                                "#version 120 \n"
                                "varying vec3 shade; \n"
                                "void main() { gl_FragColor = vec4(shade, 1.0); } \n");
        ASSERT_FALSE(program->hasLinkError());
        // What an attribute has that no buffer feeds.
        glVertexAttrib3f(program->getAttribLoc("color"), 1.f, 1.f, 1.f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    void TearDown() override {
        program.reset();
        RenderTest::TearDown();
    }

    template <class T>
    static std::shared_ptr<VertexAttributeBuffer<T>> bufferOf(std::initializer_list<T> elements) {
        return VertexAttributeBuffer<T>::make(elements, BufferUsage::Static, BufferAccess::Draw);
    }

    /// The pixel at these clip coordinates.
    static Pixel at(float x, float y) {
        const auto pixel = [](float place) {
            return static_cast<int>((place + 1.f) / 2.f * static_cast<float>(size));
        };
        unsigned char rgba[4] = {};
        glReadPixels(pixel(x), pixel(y), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
        return {rgba[0], rgba[1], rgba[2]};
    }

    static bool isDrawn(float x, float y) { return at(x, y).red > 127; }

    std::shared_ptr<Program> program;
};

// A square whose sides go through the middles of pixels. What fills it is made a little larger, so
// that it covers the lines through the others.
constexpr float low = -0.498f;
constexpr float high = 0.502f;
constexpr float beyond = 0.52f;

/// A template, and what it makes of the corners of the square: lower left, upper left, lower right,
/// upper right.
struct Kind {
    const char* name;
    std::function<std::shared_ptr<Drawable>(
        const std::shared_ptr<Program>&, const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>&)>
        make;
    bool corner;    ///< the lower left corner
    bool left;      ///< the left side
    bool rising;    ///< the diagonal from the lower left corner, near it
    bool falling;   ///< the diagonal from the upper left corner
    bool right;     ///< the right side
    bool leftHalf;  ///< the inside of the triangle of the first three corners
    bool upperHalf; ///< the inside above both diagonals
};

template <template <class...> class Shape>
std::shared_ptr<Drawable>
makeKind(const std::shared_ptr<Program>& program,
         const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& points) {
    return Shape<VertexAttribute<glm::vec2>>::make(program, {"position", points});
}

class PrimitiveKindRender : public PrimitivesRender, public testing::WithParamInterface<Kind> {};

TEST_P(PrimitiveKindRender, JoinsTheVerticesAsItsNameSays) {
    const float far = GetParam().leftHalf ? beyond : high;
    const auto points = bufferOf<glm::vec2>({{low, low}, {low, far}, {far, low}, {far, far}});
    program->draw(*GetParam().make(program, points));
    EXPECT_EQ(isDrawn(low, low), GetParam().corner);
    EXPECT_EQ(isDrawn(low, 0.2f), GetParam().left);
    EXPECT_EQ(isDrawn(-0.248f, -0.248f), GetParam().rising);
    EXPECT_EQ(isDrawn(-0.248f, 0.252f), GetParam().falling);
    EXPECT_EQ(isDrawn(high, 0.2f), GetParam().right);
    EXPECT_EQ(isDrawn(-0.4f, -0.1f), GetParam().leftHalf);
    EXPECT_EQ(isDrawn(0.1f, 0.4f), GetParam().upperHalf);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Kinds, PrimitiveKindRender, testing::Values(
    Kind{"Points",        makeKind<drawable::Points>,        true, false, false, false, false, false, false},
    Kind{"Lines",         makeKind<drawable::Lines>,         true, true,  false, false, true,  false, false},
    Kind{"LineLoop",      makeKind<drawable::LineLoop>,      true, true,  true,  true,  true,  false, false},
    Kind{"LineStrip",     makeKind<drawable::LineStrip>,     true, true,  false, true,  true,  false, false},
    Kind{"Triangles",     makeKind<drawable::Triangles>,     true, true,  true,  true,  false, true,  false},
    Kind{"TriangleStrip", makeKind<drawable::TriangleStrip>, true, true,  true,  true,  true,  true,  true},
    Kind{"TriangleFan",   makeKind<drawable::TriangleFan>,   true, true,  true,  true,  true,  true,  false}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST_F(PrimitivesRender, VectorsOfThreeAndFourReachTheShader) {
    const auto flat = bufferOf<glm::vec3>({{-1.f, -1.f, 0.f}, {0.f, -1.f, 0.f}, {-1.f, 0.f, 0.f}});
    program->draw(drawable::Triangles<VertexAttribute<glm::vec3>>(program, {"position", flat}));
    EXPECT_TRUE(isDrawn(-0.8f, -0.8f));
    EXPECT_FALSE(isDrawn(0.2f, 0.2f));
    // Twice as far from the middle, but for a w of 2.
    const auto deep =
        bufferOf<glm::vec4>({{0.f, 0.f, 0.f, 2.f}, {2.f, 0.f, 0.f, 2.f}, {0.f, 2.f, 0.f, 2.f}});
    program->draw(drawable::Triangles<VertexAttribute<glm::vec4>>(program, {"position", deep}));
    EXPECT_TRUE(isDrawn(0.2f, 0.2f));
    EXPECT_TRUE(isDrawn(0.8f, 0.1f));
    EXPECT_FALSE(isDrawn(0.8f, 0.8f));
}

TEST_F(PrimitivesRender, OffsetLeavesOutTheFirstElements) {
    const auto points = bufferOf<glm::vec2>(
        {{-1.f, -1.f}, {0.f, -1.f}, {-1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f}, {1.f, 0.f}});
    const drawable::Triangles<VertexAttribute<glm::vec2>> triangles(
        program, VertexAttribute<glm::vec2>("position", points, 3));
    program->draw(triangles);
    EXPECT_FALSE(isDrawn(-0.8f, -0.8f));
    EXPECT_TRUE(isDrawn(0.8f, 0.8f));
}

TEST_F(PrimitivesRender, ConstructionLeavesNothingInUse) {
    const auto points = bufferOf<glm::vec2>({{0.f, 0.f}});
    program->bind();
    points->bind();
    const drawable::Points<VertexAttribute<glm::vec2>> drawable(program, {"position", points});
    constexpr GLenum bindings[] = {GL_CURRENT_PROGRAM, GL_VERTEX_ARRAY_BINDING,
                                   GL_ARRAY_BUFFER_BINDING};
    for (const GLenum pname : bindings) {
        GLint value = -1;
        glGetIntegerv(pname, &value);
        EXPECT_EQ(value, 0) << pname;
    }
}

TEST_F(PrimitivesRender, UnknownAttributeIsRefusedByGl) {
    const auto points = bufferOf<glm::vec2>({{0.f, 0.f}});
    const drawable::Points<VertexAttribute<glm::vec2>> drawable(program, {"elsewhere", points});
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    while (glGetError() != GL_NO_ERROR) {
    }
}

TEST_F(PrimitivesRender, LocationZeroFeedsTheVertexOfGlItself) {
    SKIP_IN_CORE("gl_Vertex");
    const auto own = Program::make("#version 120 \n"
                                   "void main() { gl_Position = gl_Vertex; } \n",
                                   "#version 120 \n"
                                   "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); } \n");
    ASSERT_FALSE(own->hasLinkError());
    const auto points = bufferOf<glm::vec2>({{-1.f, -1.f}, {0.f, -1.f}, {-1.f, 0.f}});
    const drawable::Triangles<VertexAttribute<glm::vec2>> triangle(own, {0, points});
    own->draw(triangle);
    EXPECT_TRUE(isDrawn(-0.8f, -0.8f));
    EXPECT_FALSE(isDrawn(0.2f, 0.2f));
}

TEST_F(PrimitivesRender, NegativeLocationWithoutANameIsRefusedByGl) {
    const auto points = bufferOf<glm::vec2>({{0.f, 0.f}});
    const drawable::Points<VertexAttribute<glm::vec2>> drawable(program, {-1, points});
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    while (glGetError() != GL_NO_ERROR) {
    }
}

/// With colours of elements of type \p T.
template <class T>
class ColoredRender : public PrimitivesRender {
protected:
    /// The pixel in the middle, of a triangle with one colour at its corners.
    Pixel colored(const T& value, bool normalized) {
        const auto positions = bufferOf<glm::vec2>({{-1.f, -1.f}, {3.f, -1.f}, {-1.f, 3.f}});
        const auto colors = bufferOf<T>({value, value, value});
        using Triangle = drawable::Triangles<VertexAttribute<glm::vec2>, VertexAttribute<T>>;
        program->draw(Triangle(program, {"position", positions},
                               VertexAttribute<T>("color", colors, 0, normalized)));
        return at(0.f, 0.f);
    }
};

using BytesRender = ColoredRender<glm::vec<3, unsigned char>>;

TEST_F(BytesRender, NormalizedBytesAreScaledToOne) {
    const Pixel pixel = colored({255, 128, 0}, true);
    EXPECT_EQ(pixel.red, 255);
    EXPECT_NEAR(pixel.green, 128, 1);
    EXPECT_EQ(pixel.blue, 0);
}

TEST_F(BytesRender, OtherBytesKeepTheirValue) {
    const Pixel pixel = colored({1, 0, 128}, false);
    EXPECT_EQ(pixel.red, 255);
    EXPECT_EQ(pixel.green, 0);
    EXPECT_EQ(pixel.blue, 255);
}

using ShortsRender = ColoredRender<glm::vec<3, short>>;

TEST_F(ShortsRender, NormalizedShortsAreScaledToOneWithTheirSign) {
    const Pixel pixel = colored({32767, 16384, -32767}, true);
    EXPECT_EQ(pixel.red, 255);
    EXPECT_NEAR(pixel.green, 128, 1);
    EXPECT_EQ(pixel.blue, 0);
}

using FloatRender = ColoredRender<float>;

TEST_F(FloatRender, MissingComponentsAreZero) {
    const Pixel pixel = colored(0.5f, false);
    EXPECT_NEAR(pixel.red, 128, 1);
    EXPECT_EQ(pixel.green, 0);
    EXPECT_EQ(pixel.blue, 0);
}

} // namespace

/// Shaders, programs and drawing on a driver.

#include <vellis/shading/program.hpp>

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>

#include <offscreen/image.hpp>

#include "support/render_test.hpp"

namespace {

using namespace vellis;

const char* const vertexText = "#version 120 \n"
                               "attribute vec2 position; \n"
                               "void main() { gl_Position = vec4(position, 0.0, 1.0); } \n";
const char* const fragmentText = "#version 120 \n"
                                 "void main() { gl_FragColor = vec4(1.0, 0.5, 0.0, 1.0); } \n";

/// Vertices at `position`, in clip coordinates.
class Shape : public Drawable {
public:
    Shape(const Program& program, const VertexAttributeBuffer<glm::vec2>& positions,
          PrimitiveType type = PrimitiveType::Triangles)
        : Drawable(type) {
        numVertices_ = positions.count();
        const auto location = static_cast<GLuint>(glGetAttribLocation(program.id(), "position"));
        program.beginAttributesBinding();
        positions.bind();
        glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
        glEnableVertexAttribArray(location);
        positions.unbind();
        attributesBinding_ = program.finishAttributesBinding();
    }
};

class ProgramRender : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (HasFatalFailure())
            return;
        program = Program::make(vertexText, fragmentText);
        ASSERT_FALSE(program->hasLinkError());
        glClear(GL_COLOR_BUFFER_BIT);
    }
    void TearDown() override {
        program.reset();
        RenderTest::TearDown();
    }

    static std::shared_ptr<VertexAttributeBuffer<glm::vec2>>
    vertices(std::initializer_list<glm::vec2> list) {
        return VertexAttributeBuffer<glm::vec2>::make(list, BufferUsage::Static,
                                                      BufferAccess::Draw);
    }

    /// Whether the pixel at these clip coordinates has been drawn.
    static bool isDrawn(float x, float y) {
        const auto pixel = [](float at) { return static_cast<int>((at + 1.f) / 2.f * size); };
        unsigned char rgba[4] = {};
        glReadPixels(pixel(x), pixel(y), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
        return rgba[0] == 255;
    }

    static int integer(unsigned int pname) {
        int value = -1;
        glGetIntegerv(pname, &value);
        return value;
    }

    std::shared_ptr<Program> program;
};

TEST_F(ProgramRender, DrawFillsTheTriangleAndNothingElse) {
    const auto positions = vertices({{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}});
    const Shape triangle(*program, *positions);
    program->draw(triangle);
    EXPECT_TRUE(isDrawn(-0.5f, -0.5f));
    EXPECT_FALSE(isDrawn(0.5f, 0.5f));
    unsigned char rgba[4] = {};
    glReadPixels(10, 10, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    EXPECT_EQ(rgba[0], 255);
    EXPECT_NEAR(rgba[1], 128, 1);
    EXPECT_EQ(rgba[2], 0);
}

TEST_F(ProgramRender, DrawLeavesNothingInUse) {
    const auto positions = vertices({{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}});
    const Shape triangle(*program, *positions);
    program->draw(triangle, 0, 3);
    EXPECT_FALSE(program->isBound());
    EXPECT_EQ(Program::current().id(), 0u);
    EXPECT_EQ(integer(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_EQ(integer(GL_ELEMENT_ARRAY_BUFFER_BINDING), 0);
}

TEST_F(ProgramRender, FirstAndCountChooseVertices) {
    const auto positions =
        vertices({{-1.f, -1.f}, {0.f, -1.f}, {-1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f}, {1.f, 0.f}});
    const Shape triangles(*program, *positions);
    program->draw(triangles, 3, 0);
    EXPECT_FALSE(isDrawn(-0.75f, -0.75f));
    EXPECT_TRUE(isDrawn(0.75f, 0.75f));
    program->draw(triangles, 0, 3);
    EXPECT_TRUE(isDrawn(-0.75f, -0.75f));
}

TEST_F(ProgramRender, FirstBeyondTheEndIsRefusedByGl) {
    const auto positions = vertices({{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}});
    const Shape triangle(*program, *positions);
    program->draw(triangle, 4, 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

template <class T>
std::shared_ptr<IndexBuffer<T>> quadIndices() {
    return IndexBuffer<T>::make({0, 0, 0, 0, 1, 2, 2, 1, 3}, BufferUsage::Static,
                                BufferAccess::Draw);
}

TEST_F(ProgramRender, IndicesOfEachTypeChooseVertices) {
    const auto positions = vertices({{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}, {1.f, 1.f}});
    const Shape shape(*program, *positions);
    const auto draws = [&](const auto& indices) {
        glClear(GL_COLOR_BUFFER_BIT);
        program->draw(shape, *indices, 3, 3); // the lower left half
        EXPECT_TRUE(isDrawn(-0.5f, -0.5f));
        EXPECT_FALSE(isDrawn(0.5f, 0.5f));
        program->draw(shape, *indices, 3); // all that remain
        EXPECT_TRUE(isDrawn(0.5f, 0.5f));
    };
    draws(quadIndices<unsigned char>());
    draws(quadIndices<unsigned short>());
    draws(quadIndices<unsigned int>());
}

TEST_F(ProgramRender, CurrentFollowsTheProgramInUse) {
    EXPECT_EQ(Program::current().id(), 0u);
    program->bind();
    EXPECT_EQ(Program::current().id(), program->id());
    Program::null().bind();
    EXPECT_EQ(Program::current().id(), 0u);
    program->unbind();
}

TEST_F(ProgramRender, ShaderWithASyntaxErrorIsAnObjectWithAnError) {
    const auto shader = FragmentShader::make("#version 120 \nvoid main() { nonsense } \n");
    EXPECT_TRUE(shader->hasCompilationError());
    EXPECT_NE(shader->id(), 0u);
    const auto broken = Program::make(VertexShader::make(vertexText), shader);
    ASSERT_NE(broken, nullptr);
    EXPECT_TRUE(broken->hasLinkError());
    // A program that has not linked cannot be used, which linking tries.
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST_F(ProgramRender, EmptyProgramHasALinkError) {
    const auto empty = Program::make();
    EXPECT_NE(empty->id(), 0u);
    EXPECT_TRUE(empty->hasLinkError());
}

TEST_F(ProgramRender, MissingShadersLeaveTheirStageToTheFixedFunctionsOfACompatibilityContext) {
    SKIP_IN_CORE("fixed functions");
    const auto vertexShader = VertexShader::make(vertexText);
    const auto fragmentShader = FragmentShader::make(fragmentText);
    const std::shared_ptr<VertexShader> noVertexShader;
    const std::shared_ptr<FragmentShader> noFragmentShader;
    for (const auto& incomplete : {Program::make(vertexShader, noFragmentShader),
                                   Program::make(noVertexShader, fragmentShader),
                                   Program::make(noVertexShader, noFragmentShader)})
        EXPECT_FALSE(incomplete->hasLinkError()) << incomplete->linkLog();

    // The colour is that of the fixed functions, the place the vertex shader's.
    const auto white = Program::make(vertexShader, noFragmentShader);
    const auto positions = vertices({{-1.f, -1.f}, {3.f, -1.f}, {-1.f, 3.f}});
    glColor4f(1.f, 1.f, 1.f, 1.f);
    EXPECT_FALSE(isDrawn(0.f, 0.f));
    white->draw(Shape(*white, *positions));
    EXPECT_TRUE(isDrawn(0.f, 0.f));
}

TEST_F(ProgramRender, ProgramOutlivesTheShadersItWasMadeFrom) {
    auto vertexShader = VertexShader::make(vertexText);
    auto fragmentShader = FragmentShader::make(fragmentText);
    const auto other = Program::make(vertexShader, fragmentShader);
    vertexShader.reset();
    fragmentShader.reset();
    const auto positions = vertices({{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}});
    const Shape triangle(*other, *positions);
    other->draw(triangle);
    EXPECT_TRUE(isDrawn(-0.5f, -0.5f));
}

TEST_F(ProgramRender, DrawableOutlivesTheProgramThatRecordedItsBinding) {
    const auto positions = vertices({{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}});
    const Shape triangle(*program, *positions);
    const auto other = Program::make(vertexText, fragmentText);
    program.reset();
    other->draw(triangle);
    EXPECT_TRUE(isDrawn(-0.5f, -0.5f));
}

TEST_F(ProgramRender, LastHolderOfACurrentBindingDeletesIt) {
    SKIP_WITHOUT(Extension::VertexArrays);
    program->beginAttributesBinding();
    auto binding = program->finishAttributesBinding();
    binding->bind();
    const auto name = static_cast<GLuint>(integer(GL_VERTEX_ARRAY_BINDING));
    EXPECT_TRUE(glIsVertexArray(name));
    binding.reset();
    EXPECT_FALSE(glIsVertexArray(name));
    EXPECT_EQ(integer(GL_VERTEX_ARRAY_BINDING), 0);
    VertexAttributesBinding::unbind();
}

TEST_F(ProgramRender, DisposeDeletesInGl) {
    const unsigned int name = program->id();
    EXPECT_TRUE(glIsProgram(name));
    program->dispose();
    EXPECT_FALSE(glIsProgram(name));
}

/// A GLSL version that the portable source compiles as.
struct VersionRow {
    Shader::Version version;
    float needed; ///< GLSL version that the context must offer
};

class PortableSourceRender : public ProgramRender,
                             public testing::WithParamInterface<VersionRow> {};

TEST_P(PortableSourceRender, CompilesLinksAndDraws) {
    const auto* offered = reinterpret_cast<const char*>(glGetString(GL_SHADING_LANGUAGE_VERSION));
    if (std::stof(offered) < GetParam().needed)
        GTEST_SKIP() << "the context offers no more than GLSL " << offered;
    const auto vertexShader = VertexShader::make("IN vec2 position; \n"
                                                 "OUT vec2 place; \n"
                                                 "void main() { \n"
                                                 "  place = position; \n"
                                                 "  gl_Position = vec4(position, 0.0, 1.0); \n"
                                                 "} \n",
                                                 GetParam().version);
    const auto fragmentShader = FragmentShader::make(
        "IN vec2 place; \n"
        "DECL_OUT0; \n"
        "void main() { OUT0 = vec4(place.x < 0.0 ? 1.0 : 0.0, 0.0, 0.0, 1.0); } \n",
        GetParam().version);
    EXPECT_FALSE(vertexShader->hasCompilationError());
    EXPECT_FALSE(fragmentShader->hasCompilationError());
    const auto portable = Program::make(vertexShader, fragmentShader);
    ASSERT_FALSE(portable->hasLinkError());
    const auto positions = vertices({{-1.f, -1.f}, {3.f, -1.f}, {-1.f, 3.f}});
    portable->draw(Shape(*portable, *positions));
    EXPECT_TRUE(isDrawn(-0.5f, 0.f));
    EXPECT_FALSE(isDrawn(0.5f, 0.f));
}

INSTANTIATE_TEST_SUITE_P(Versions, PortableSourceRender,
                         testing::Values(VersionRow{Shader::Version::V210, 1.2f},
                                         VersionRow{Shader::Version::V330, 3.3f},
                                         VersionRow{Shader::Version::V410, 4.1f}),
                         [](const auto& row) {
                             return "V" +
                                    std::to_string(static_cast<unsigned int>(row.param.version));
                         });

using RasterRender = ProgramRender;

TEST_F(RasterRender, CulledFaceIsNotDrawn) {
    const auto positions = vertices({{-1.f, -1.f}, {3.f, -1.f}, {-1.f, 3.f}}); // counterclockwise
    const Shape front(*program, *positions);
    Drawable::enableFaceCulling(Drawable::Face::Front);
    program->draw(front);
    EXPECT_FALSE(isDrawn(0.f, 0.f));
    Drawable::enableFaceCulling(Drawable::Face::Back);
    program->draw(front);
    EXPECT_TRUE(isDrawn(0.f, 0.f));
    glClear(GL_COLOR_BUFFER_BIT);
    Drawable::enableFaceCulling(Drawable::Face::FrontAndBack);
    program->draw(front);
    EXPECT_FALSE(isDrawn(0.f, 0.f));
    Drawable::disableFaceCulling();
    program->draw(front);
    EXPECT_TRUE(isDrawn(0.f, 0.f));
}

TEST_F(RasterRender, PolygonModeLineDrawsTheOutlineOnly) {
    constexpr float low = -0.5f + 1.f / size; // within a row of pixels
    const auto positions = vertices({{-0.5f, low}, {0.5f, low}, {0.f, 0.5f}});
    const Shape triangle(*program, *positions);
    Drawable::setLineWidth(3.f);
    Drawable::setPolygonMode(Drawable::Face::FrontAndBack, Drawable::PolygonMode::Line);
    program->draw(triangle);
    EXPECT_FALSE(isDrawn(0.f, -0.2f));
    EXPECT_TRUE(isDrawn(0.f, -0.5f));
    Drawable::setPolygonMode(Drawable::Face::FrontAndBack, Drawable::PolygonMode::Point);
    Drawable::setPointSize(5.f);
    glClear(GL_COLOR_BUFFER_BIT);
    program->draw(triangle);
    EXPECT_TRUE(isDrawn(-0.5f, -0.5f));
    EXPECT_FALSE(isDrawn(0.f, -0.5f));
    Drawable::setPolygonMode(Drawable::Face::FrontAndBack, Drawable::PolygonMode::Fill);
    program->draw(triangle);
    EXPECT_TRUE(isDrawn(0.f, -0.2f));
}

TEST_F(RasterRender, PointSizeTurnsProgramPointSizeOffAndKeepsSprites) {
    // In a core context points always are sprites.
    const auto areSprites = [] { return isCore() || glIsEnabled(GL_POINT_SPRITE) == GL_TRUE; };
    Drawable::enablePointSprite(true);
    EXPECT_TRUE(areSprites());
    EXPECT_TRUE(glIsEnabled(GL_VERTEX_PROGRAM_POINT_SIZE));
    Drawable::setPointSize(9.f);
    EXPECT_TRUE(areSprites());
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_PROGRAM_POINT_SIZE));
    const auto positions = vertices({{0.f, 0.f}});
    program->draw(Shape(*program, *positions, Drawable::PrimitiveType::Points));
    const float step = 2.f / size;
    EXPECT_TRUE(isDrawn(3.f * step, 0.f));
    EXPECT_FALSE(isDrawn(6.f * step, 0.f));
    Drawable::disablePointSprite();
    EXPECT_EQ(areSprites(), isCore());
}

TEST_F(RasterRender, LineWidthIsInPixels) {
    SKIP_IN_FORWARD_COMPATIBLE("lines wider than 1");
    const auto positions = vertices({{-1.f, 0.f}, {1.f, 0.f}});
    const Shape line(*program, *positions, Drawable::PrimitiveType::Lines);
    Drawable::setLineWidth(7.f);
    program->draw(line);
    const float step = 2.f / size;
    EXPECT_TRUE(isDrawn(0.f, 2.f * step));
    EXPECT_TRUE(isDrawn(0.f, -2.f * step));
    EXPECT_FALSE(isDrawn(0.f, 5.f * step));
}

TEST_F(RasterRender, SmoothingIsSwitchedInGl) {
    Drawable::enableLineSmooth(Drawable::SmoothHint::Nicest);
    EXPECT_TRUE(glIsEnabled(GL_LINE_SMOOTH));
    EXPECT_EQ(integer(GL_LINE_SMOOTH_HINT), GL_NICEST);
    Drawable::disableLineSmooth();
    EXPECT_FALSE(glIsEnabled(GL_LINE_SMOOTH));
    Drawable::enablePolygonSmooth(Drawable::SmoothHint::Fastest);
    EXPECT_TRUE(glIsEnabled(GL_POLYGON_SMOOTH));
    EXPECT_EQ(integer(GL_POLYGON_SMOOTH_HINT), GL_FASTEST);
    Drawable::disablePolygonSmooth();
    EXPECT_FALSE(glIsEnabled(GL_POLYGON_SMOOTH));
}

} // namespace

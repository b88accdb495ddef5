// needs: private access

/// The built-in programs on a driver: they compile, link and draw.

#include <vellis/shading/program_manager.hpp>

#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/drawing/primitives.hpp>
#include <vellis/gl.hpp>

#include "support/render_test.hpp"

namespace {

using namespace vellis;
using BuiltIn = ProgramManager::BuiltIn;
using Rgba = glm::vec<4, unsigned char>;
using glm::mat4;
using glm::vec2;
using glm::vec3;
using glm::vec4;

/// A built-in program and the names of what it takes.
struct BuiltInRow {
    BuiltIn builtIn;
    const char* name;
    const char* attribute;
    std::vector<const char*> uniforms;
};

const BuiltInRow rows[] = {
    {BuiltIn::SoftPoints2D, "SoftPoints2D", "position", {"mvp", "radius", "color", "softness"}},
    {BuiltIn::SoftPoints3D, "SoftPoints3D", "position", {"mvp", "radius", "color", "softness"}},
    {BuiltIn::UniformColor2D, "UniformColor2D", "position", {"mvp", "color"}},
    {BuiltIn::UniformColor3D, "UniformColor3D", "position", {"mvp", "color"}},
    {BuiltIn::DashLines2D, "DashLines2D", "position_t", {"mvp", "color", "dash"}},
    {BuiltIn::DashLines3D, "DashLines3D", "position_t", {"mvp", "color", "dash"}},
};

const vec4 color(0.2f, 0.4f, 0.6f, 1.f);
const Rgba colorPixel(51, 102, 153, 255);
const Rgba background(0, 0, 0, 255);

class ProgramManagerRender : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (HasFatalFailure())
            return;
        // The end of a test before has released the built-in programs for good.
        ProgramManager::instance().builtIns_.resize(6);
        glClearColor(0.f, 0.f, 0.f, 1.f);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    /// Draws these vertices with a built-in program, after \p setUniforms.
    template <template <class...> class Shape, class V, class SetUniforms>
    static void draw(BuiltIn builtIn, const char* attribute, std::initializer_list<V> vertices,
                     SetUniforms setUniforms) {
        const auto& program = ProgramManager::instance().get(builtIn);
        ASSERT_NE(program, nullptr);
        const auto buffer =
            VertexAttributeBuffer<V>::make(vertices, BufferUsage::Static, BufferAccess::Draw);
        const auto shape = Shape<VertexAttribute<V>>::make(program, {attribute, buffer});
        program->bind(shape->getAttributesBinding());
        program->setUniform("color", color);
        program->setUniform("mvp", mat4(1.f));
        setUniforms(*program);
        shape->draw(0, 0);
        program->unbind();
    }

    static Rgba pixel(int x, int y) {
        Rgba rgba(0);
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &rgba[0]);
        return rgba;
    }

    static void expectNear(const Rgba& read, const Rgba& expected, int tolerance) {
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(read[i], expected[i], tolerance) << "component " << i;
    }

    static constexpr int middle = size / 2;
    static constexpr float inRow = 1.f / size; ///< the middle of the row of pixels there

    /// Expects a triangle over the left lower half, moved to the right by half the width.
    template <class V>
    static void expectTriangle(BuiltIn builtIn, std::initializer_list<V> triangle) {
        draw<drawable::Triangles>(builtIn, "position", triangle, [](Program& program) {
            program.setUniform("mvp", glm::translate(mat4(1.f), vec3(1.f, 0.f, 0.f)));
        });
        expectNear(pixel(middle + 20, 20), colorPixel, 1);
        EXPECT_EQ(pixel(middle - 20, 20), background);
        EXPECT_EQ(pixel(int(size) - 4, int(size) - 4), background);
    }

    /// Expects a line over the whole width, 8 long: dashes of 2 and gaps of 1.
    template <class V>
    static void expectDashes(BuiltIn builtIn, std::initializer_list<V> line) {
        const auto pixelAt = [](float distance) {
            return pixel(static_cast<int>(distance / 8.f * size), middle);
        };
        Drawable::setLineWidth(5.f);
        draw<drawable::Lines>(builtIn, "position_t", line,
                              [](Program& program) { program.setUniform("dash", vec2(2.f, 1.f)); });
        for (const float distance : {0.2f, 1.f, 1.8f, 3.2f, 4.8f, 6.2f, 7.8f})
            expectNear(pixelAt(distance), colorPixel, 1);
        for (const float distance : {2.2f, 2.8f, 5.2f, 5.8f})
            EXPECT_EQ(pixelAt(distance), background) << distance;
    }

    static constexpr float discRadius = 32.f;

    /// Draws a point with a rim of half its radius.
    template <class V>
    static void drawPoint(BuiltIn builtIn, const V& place) {
        Drawable::enablePointSprite(true);
        draw<drawable::Points>(builtIn, "position", std::initializer_list<V>{place},
                               [](Program& program) {
                                   program.setUniform("radius", 2.f * discRadius);
                                   program.setUniform("softness", 0.5f);
                               });
    }

    /// Expects a soft disc where a point in the middle is blended over the background.
    template <class V>
    static void expectSoftDisc(BuiltIn builtIn, const V& place) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        drawPoint(builtIn, place);
        expectNear(pixel(middle, middle), colorPixel, 1);
        expectNear(pixel(middle + 14, middle), colorPixel, 1); // inside of the rim
        for (const int offset : {20, 24, 28}) {
            SCOPED_TRACE(offset);
            const float t = ((static_cast<float>(offset) + 0.5f) / discRadius - 0.5f) / 0.5f;
            const Rgba rim(vec4(colorPixel) * (1.f - t * t));
            expectNear(pixel(middle + offset, middle), rim, 4);
            expectNear(pixel(middle, middle - 1 - offset), rim, 4);
        }
        EXPECT_EQ(corner(), background);
        EXPECT_EQ(pixel(middle + 34, middle), background);
    }

    /// The pixel in the corner of the point's square, outside of the disc.
    static Rgba corner() { return pixel(middle + 29, middle + 29); }
};

TEST_F(ProgramManagerRender, BuiltInsLinkAndHaveTheirAttributeAndTheirUniforms) {
    for (const BuiltInRow& row : rows) {
        SCOPED_TRACE(row.name);
        const auto& program = ProgramManager::instance().get(row.builtIn);
        ASSERT_NE(program, nullptr);
        EXPECT_FALSE(program->hasLinkError());
        EXPECT_TRUE(program->hasAttrib(row.attribute));
        for (const char* const uniform : row.uniforms)
            EXPECT_TRUE(program->hasUniform(uniform)) << uniform;
        GLint numUniforms = 0;
        glGetProgramiv(program->id(), GL_ACTIVE_UNIFORMS, &numUniforms);
        EXPECT_EQ(static_cast<std::size_t>(numUniforms), row.uniforms.size());
    }
}

TEST_F(ProgramManagerRender, UniformColor2DFillsInItsColor) {
    expectTriangle<vec2>(BuiltIn::UniformColor2D, {{-1.f, -1.f}, {1.f, -1.f}, {-1.f, 1.f}});
}

TEST_F(ProgramManagerRender, UniformColor3DFillsInItsColor) {
    expectTriangle<vec3>(BuiltIn::UniformColor3D,
                         {{-1.f, -1.f, 0.5f}, {1.f, -1.f, 0.5f}, {-1.f, 1.f, 0.5f}});
}

TEST_F(ProgramManagerRender, UniformColor3DTakesDepthFromThePosition) {
    // Behind the far plane.
    draw<drawable::Triangles>(
        BuiltIn::UniformColor3D, "position",
        std::initializer_list<vec3>{{-1.f, -1.f, 2.f}, {3.f, -1.f, 2.f}, {-1.f, 3.f, 2.f}},
        [](Program&) {});
    EXPECT_EQ(pixel(middle, middle), background);
}

TEST_F(ProgramManagerRender, DashLines2DDrawsDashesInItsColor) {
    expectDashes<vec3>(BuiltIn::DashLines2D, {{-1.f, inRow, 0.f}, {1.f, inRow, 8.f}});
}

TEST_F(ProgramManagerRender, DashLines3DDrawsDashesInItsColor) {
    expectDashes<vec4>(BuiltIn::DashLines3D, {{-1.f, inRow, 0.5f, 0.f}, {1.f, inRow, 0.5f, 8.f}});
}

TEST_F(ProgramManagerRender, SoftPoints2DDrawsASoftDisc) {
    expectSoftDisc(BuiltIn::SoftPoints2D, vec2(0.f));
}

TEST_F(ProgramManagerRender, SoftPoints3DDrawsASoftDisc) {
    expectSoftDisc(BuiltIn::SoftPoints3D, vec3(0.f, 0.f, 0.5f));
}

TEST_F(ProgramManagerRender, SoftPoints2DDrawsNothingOutsideOfTheDisc) {
    drawPoint(BuiltIn::SoftPoints2D, vec2(0.f));
    expectNear(pixel(middle, middle), colorPixel, 1);
    EXPECT_EQ(corner(), background);
}

TEST_F(ProgramManagerRender, SoftPoints3DFillsItsSquareWithoutBlending) {
    drawPoint(BuiltIn::SoftPoints3D, vec3(0.f));
    expectNear(pixel(middle, middle), colorPixel, 1);
    expectNear(corner(), colorPixel, 1);
}

TEST_F(ProgramManagerRender, RemoveOfTheLastReferenceDeletesInGl) {
    ProgramManager& registry = ProgramManager::instance();
    Program* const key = registry.add(Program::make());
    const unsigned int name = key->id();
    EXPECT_TRUE(glIsProgram(name));
    registry.remove(key);
    EXPECT_FALSE(glIsProgram(name));
    EXPECT_EQ(registry.get(key), nullptr);
}

TEST_F(ProgramManagerRender, DisposeDeletesBuiltInsForGood) {
    const unsigned int name = ProgramManager::instance().get(BuiltIn::UniformColor2D)->id();
    EXPECT_TRUE(glIsProgram(name));
    ProgramManager::dispose();
    EXPECT_FALSE(glIsProgram(name));
    EXPECT_EQ(ProgramManager::instance().get(BuiltIn::UniformColor2D), nullptr);
}

} // namespace

/// The programs of canvases.

#include <gtest/gtest.h>

#include "canvas/canvas_fixture.hpp"

namespace {

using namespace vellis;
using vellis::test::Lines;
using vellis::test::only;

class ProgramsTrace : public test::CanvasTest {
protected:
    /// The lines of the preprocessor ahead of the sources of a batch's programs, and how many
    /// programs there are.
    template <class Draw>
    std::string firstLines(Draw draw, GLenum stage) {
        GLuint shader = 0;
        gl.answer(glad_glCompileShader, [&](GLuint name) {
            GLint type = 0;
            glGetShaderiv(name, GL_SHADER_TYPE, &type);
            if (static_cast<GLenum>(type) == stage)
                shader = name;
        });
        callsOf(draw);
        std::string source = gl.shaderSource(shader);
        std::size_t end = 0;
        while (source[end] == '#' && source.compare(end, 3, "#if") != 0)
            end = source.find('\n', end) + 1;
        return source.substr(0, end);
    }
};

const std::string old = "#version 120\n#define OUT varying\n#define TEXTURE texture2D\n"
                        "#define FLAT\n#define LINEAR\n";
const std::string miteredText = "#define join 0.\n#define cap 0.\n";

TEST_F(ProgramsTrace, SourcesAreGlsl120OrFromGl32On150) {
    const auto draw = [&] { canvas->drawTriangles(white, corner); };
    EXPECT_EQ(firstLines(draw, GL_VERTEX_SHADER), old + "#define IN attribute\n");
    canvas = Canvas::make();
    EXPECT_EQ(firstLines(draw, GL_FRAGMENT_SHADER),
              old + "#define IN varying\n#define OUT0 gl_FragColor\n");
    GLAD_GL_VERSION_3_0 = GLAD_GL_VERSION_3_1 = GLAD_GL_VERSION_3_2 = 1;
    canvas = Canvas::make();
    EXPECT_EQ(firstLines(draw, GL_VERTEX_SHADER),
              "#version 150\n#define OUT out\n#define IN in\n#define TEXTURE texture\n"
              "#define FLAT flat\n#define LINEAR noperspective\n");
}

TEST_F(ProgramsTrace, VariantsSayWhatTheyDo) {
    const std::vector<glm::vec4> colors = {white, transparent};
    const std::string before = old + "#define IN attribute\n";
    EXPECT_EQ(firstLines(
                  [&] {
                      canvas->drawLineStrip({white, 4.f}, corner);
                  },
                  GL_VERTEX_SHADER),
              before + miteredText);
    EXPECT_EQ(firstLines(
                  [&] {
                      canvas->drawLineStrip({white, 4.f}, corner, colors);
                  },
                  GL_VERTEX_SHADER),
              before + "#define GRADIENT\n" + miteredText);
    EXPECT_EQ(firstLines(
                  [&] {
                      canvas->drawDashLineStrip({white, 4.f}, 1.f, 1.f, corner);
                  },
                  GL_VERTEX_SHADER),
              before + "#define DASHED\n" + miteredText);
    EXPECT_EQ(firstLines(
                  [&] {
                      canvas->drawLines({white, 4.f}, corner);
                  },
                  GL_VERTEX_SHADER),
              before + "#define ALONE\n" + miteredText);
    auto buffer = VertexAttributeBuffer<glm::vec2>::make(corner.data(), 3, BufferUsage::Static,
                                                         BufferAccess::Draw);
    EXPECT_EQ(firstLines(
                  [&] {
                      canvas->drawLineStrip({white, 4.f}, 0, 3, buffer);
                  },
                  GL_VERTEX_SHADER),
              before + "#define UNIFORM_STYLE\n" + miteredText);
}

TEST_F(ProgramsTrace, EachIsMadeOnce) {
    const auto drawAll = [&] {
        canvas->drawLineStrip({white, 4.f}, corner);
        canvas->drawLineLoop({white, 6.f}, corner3D);
        canvas->drawPoints(white, 6.f, corner3D);
        canvas->drawPoints(white, 6.f, corner);
        canvas->drawTriangles(white, corner);
        canvas->drawLines(Stroke::aliased(white), corner);
    };
    EXPECT_EQ(only(callsOf(drawAll), {"glCreateProgram"}).size(), 3u);
    EXPECT_EQ(only(callsOf(drawAll), {"glCreateProgram"}).size(), 0u);
}

TEST_F(ProgramsTrace, OneThatDoesNotLinkDrawsNothingAndIsNotTriedAgain) {
    gl.failToLink("error");
    const auto drawAll = [&] {
        canvas->drawLineStrip({white, 4.f}, corner);
        canvas->drawPoints(white, 4.f, corner);
        canvas->drawTriangles(white, corner);
        canvas->drawLineStrip({transparent, 4.f}, corner);
    };
    const Lines calls = callsOf(drawAll);
    EXPECT_EQ(only(calls, {"glDraw", "glUniform", "glGetUniformLocation"}), Lines());
    EXPECT_EQ(only(calls, {"glUseProgram"}), Lines({"glUseProgram(0)"})) << "the caller's";
    EXPECT_EQ(only(callsOf(drawAll), {"glDraw", "glCreate", "glLink"}), Lines());
}

TEST_F(ProgramsTrace, JoinsAndCapsHaveProgramsOfTheirOwn) {
    for (const auto join : {Stroke::Join::Miter, Stroke::Join::Round, Stroke::Join::Bevel}) {
        for (const auto cap : {Stroke::Cap::Butt, Stroke::Cap::Square, Stroke::Cap::Round}) {
            Stroke stroke(white, 4.f);
            stroke.join = join;
            stroke.cap = cap;
            const auto draw = [&] { canvas->drawLineStrip(stroke, corner); };
            EXPECT_EQ(firstLines(draw, GL_FRAGMENT_SHADER),
                      old + "#define IN varying\n#define OUT0 gl_FragColor\n#define join " +
                          std::to_string(static_cast<int>(join)) + ".\n#define cap " +
                          std::to_string(static_cast<int>(cap)) + ".\n");
            EXPECT_EQ(only(callsOf(draw), {"glCreateProgram"}), Lines());
        }
    }
}

TEST_F(ProgramsTrace, UniformsAreSetAnewWhereTheyChange) {
    Stroke bevel(white, 4.f);
    bevel.join = Stroke::Join::Bevel;
    bevel.miterLimit = 3.f;
    const Lines calls = callsOf([&] {
        canvas->drawLineStrip({white, 4.f}, corner);
        canvas->drawLineStrip({white, 8.f}, corner);
        canvas->drawLineStrip(bevel, corner);
        canvas->drawLineStrip(bevel, corner3D);
    });
    EXPECT_EQ(only(calls, {"glUniform1f", "glDraw"}),
              Lines({"glUniform1f(14, 10)", test::quadsDrawn(0, 7), "glUniform1f(14, 3)",
                     test::quadsDrawn(10, 2), test::quadsDrawn(0, 2)}));
}

} // namespace

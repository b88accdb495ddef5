/// What batches call in GL.

#include <vellis/canvas.hpp>

#include <array>
#include <cmath>
#include <limits>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/context.hpp>
#include <vellis/internal.hpp>

#include "canvas/canvas_fixture.hpp"
#include "canvas/vertex_arrays.hpp"

namespace {

using namespace vellis;
using vellis::test::batchBegins;
using vellis::test::batchEnds;
using vellis::test::Lines;
using vellis::test::only;
using vellis::test::unitMatrixSet;
using vellis::test::viewportSet;

class CanvasTrace : public test::CanvasTest {};

TEST_F(CanvasTrace, MakingAndBatchesOfNothingCallNothing) {
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(callsOf([&] {
                  canvas->flush();
                  canvas->setTransform(glm::mat4(2.f));
                  canvas->setOrigin(glm::dvec3(1.));
                  canvas->setPixelRatio(2.f);
                  canvas->setOverlap(Canvas::Overlap::Often);
                  canvas->drawLines(white, std::vector<glm::vec2>());
                  canvas->drawLines(white, 4, static_cast<const glm::vec2*>(nullptr));
                  canvas->drawLineStrip(white, std::vector<glm::vec3>());
                  canvas->drawLineLoop(white, std::vector<glm::dvec2>());
                  canvas->drawTriangles(std::vector<glm::vec4>(), corner);
                  canvas->drawPoints(white, std::vector<float>(), corner);
                  canvas->drawPoints(std::vector<glm::vec4>(), 4.f, corner);
                  canvas->drawQuad(white, corner);
                  canvas->drawPicture(nullptr);
              }),
              Lines());
    canvas.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(CanvasTrace, FirstBatchMakesBufferProgramCornersAndVertexArray) {
    const auto draw = [&] { canvas->drawTriangles(white, corner); };
    Lines calls = callsOf(draw);
    const auto isOf = [](const char* text) {
        return [text](const std::string& line) { return line.rfind(text, 0) == 0; };
    };
    for (const char* text : {"glShaderSource", "glGetUniformLocation", "glBindAttribLocation"})
        calls.erase(std::remove_if(calls.begin(), calls.end(), isOf(text)), calls.end());
    const std::string streamed = std::to_string(gl.bufferBytes(1).size());
    EXPECT_EQ(calls,
              test::join({{"glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, out)"},
                          batchBegins,
                          {"glGenBuffers(1, {1})",
                           "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                           "glBufferData(GL_ARRAY_BUFFER, " + streamed + ", null, GL_STREAM_DRAW)",
                           "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                           "glBufferSubData(GL_ARRAY_BUFFER, 0, 36, data)",
                           "glCreateShader(GL_VERTEX_SHADER)",
                           "glCompileShader(2)",
                           "glCreateShader(GL_FRAGMENT_SHADER)",
                           "glCompileShader(3)",
                           "glCreateProgram()",
                           "glAttachShader(4, 2)",
                           "glAttachShader(4, 3)",
                           "glLinkProgram(4)",
                           "glGetProgramiv(4, GL_LINK_STATUS, out)",
                           "glDeleteShader(3)",
                           "glDeleteShader(2)",
                           "glUseProgram(4)",
                           unitMatrixSet,
                           "glGenBuffers(1, {5})",
                           "glBindBuffer(GL_ARRAY_BUFFER, 5)",
                           "glBufferData(GL_ARRAY_BUFFER, " +
                               std::to_string(gl.bufferBytes(5).size()) + ", data, GL_STATIC_DRAW)",
                           "glGenBuffers(1, {6})",
                           "glBindBuffer(GL_ARRAY_BUFFER, 6)",
                           "glBufferData(GL_ARRAY_BUFFER, " +
                               std::to_string(gl.bufferBytes(6).size()) + ", data, GL_STATIC_DRAW)",
                           "glGenVertexArrays(1, {7})",
                           "glBindVertexArray(7)",
                           "glEnableVertexAttribArray(0)",
                           "glDisableVertexAttribArray(1)",
                           "glDisableVertexAttribArray(2)",
                           "glDisableVertexAttribArray(3)",
                           "glDisableVertexAttribArray(4)",
                           "glDisableVertexAttribArray(5)",
                           "glEnableVertexAttribArray(6)",
                           "glDisableVertexAttribArray(7)",
                           "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                           "glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 12, 0)",
                           "glVertexAttribPointer(6, 4, GL_UNSIGNED_BYTE, GL_TRUE, 12, 8)",
                           "glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 6)",
                           test::trianglesDrawn(0, 3)},
                          batchEnds}));
    EXPECT_EQ(only(callsOf(draw), {"glGen", "glCreate"}), Lines());
}

// --- Families ---

/// A family's later batches.
struct Family {
    const char* name;
    void (*draw)(Canvas&, const Points&);
    unsigned int bytes2D; ///< that are uploaded, for three points
    unsigned int bytes3D;
    Lines uniforms; ///< after the matrix
    bool blends;
    std::string drawCall;
};

/// For messages of tests.
std::ostream& operator<<(std::ostream& stream, const Family& family) {
    return stream << family.name;
}

const glm::vec4 orange(1.f, 0.5f, 0.f, 1.f);
const Lines mitered = {viewportSet, "glUniform1f(14, 10)"};

Lines withDashes() {
    return test::join({mitered,
                       {"glUniform4fv(15, 2, {1, 1, 1, 1, 1, 1, 1, 1})", "glUniform1f(17, 5)",
                        "glUniformMatrix4fv(18, 1, GL_FALSE, "
                        "{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})",
                        "glUniform2f(19, 100, 50)"}});
}

const Family families[] = {
    {"Triangles",
     [](Canvas& canvas, const Points& points) { canvas.drawTriangles(orange, points); },
     36,
     48,
     {},
     false,
     test::trianglesDrawn(0, 3)},
    {"TriangleStrip",
     [](Canvas& canvas, const Points& points) { canvas.drawTriangleStrip(orange, points); },
     36,
     48,
     {},
     false,
     test::trianglesDrawn(0, 3)},
    {"TriangleFan",
     [](Canvas& canvas, const Points& points) { canvas.drawTriangleFan(orange, points); },
     36,
     48,
     {},
     false,
     test::trianglesDrawn(0, 3)},
    {"AliasedLoop",
     [](Canvas& canvas, const Points& points) {
         canvas.drawLineLoop(Stroke::aliased(orange), points);
     },
     72,
     96,
     {},
     false,
     test::linesDrawn(0, 6)},
    {"Lines",
     [](Canvas& canvas, const Points& points) {
         canvas.drawLines({orange, 3.f}, points);
     },
     160,
     192,
     {viewportSet, "glUniform1f(14, 0)"},
     true,
     test::quadsDrawn(0, 1)},
    {"LineStrip",
     [](Canvas& canvas, const Points& points) {
         canvas.drawLineStrip({orange, 3.f}, points);
     },
     400, 480, mitered, true, test::quadsDrawn(0, 2)},
    {"LineLoop",
     [](Canvas& canvas, const Points& points) {
         canvas.drawLineLoop({orange, 3.f}, points);
     },
     480, 576, mitered, true, test::quadsDrawn(0, 3)},
    {"DashLineStrip",
     [](Canvas& canvas, const Points& points) {
         canvas.drawDashLineStrip({orange, 3.f}, 2.f, 3.f, points);
     },
     400, 480, withDashes(), true, test::quadsDrawn(0, 2)},
    {"Points",
     [](Canvas& canvas, const Points& points) { canvas.drawPoints(orange, 4.f, points); },
     144,
     180,
     {viewportSet},
     true,
     test::trianglesDrawn(0, 9)},
    {"Bullseyes",
     [](Canvas& canvas, const Points& points) {
         canvas.drawBullseyes(orange, orange, 4.f, points);
     },
     432,
     540,
     {viewportSet},
     true,
     test::trianglesDrawn(0, 27)},
};

class CanvasFamilyTrace : public test::CanvasTest, public testing::WithParamInterface<Family> {};

TEST_P(CanvasFamilyTrace, LaterBatchUploadsAndDrawsAndPutsBack) {
    for (const unsigned int dimensions : {2u, 3u}) {
        canvas = Canvas::make();
        const auto draw = [&] {
            GetParam().draw(*canvas, dimensions == 2 ? Points(corner) : Points(corner3D));
        };
        callsOf(draw);
        const auto nameOf = [names = gl.liveNames()](const std::string& kind) {
            return only(names, {kind.c_str()}).at(0).substr(kind.size() + 1);
        };
        const unsigned int bytes = dimensions == 2 ? GetParam().bytes2D : GetParam().bytes3D;
        const bool blends = GetParam().blends;
        canvas->begin(glm::mat4(1.f));
        draw();
        if (GetParam().uniforms == withDashes()) // for their lengths
            EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_VIEWPORT, out)");
        canvas->end();
        EXPECT_GL_CALLS(
            gl, batchBegins, "glBindBuffer(GL_ARRAY_BUFFER, " + nameOf("buffer") + ")",
            "glBufferSubData(GL_ARRAY_BUFFER, 0, " + std::to_string(bytes) + ", data)",
            Lines(blends ? 1 : 0, "glEnable(GL_BLEND)"), "glUseProgram(" + nameOf("program") + ")",
            unitMatrixSet, GetParam().uniforms, "glBindVertexArray(" + nameOf("vertex array") + ")",
            GetParam().drawCall, Lines(blends ? 1 : 0, "glDisable(GL_BLEND)"), batchEnds);
    }
}

INSTANTIATE_TEST_SUITE_P(All, CanvasFamilyTrace, testing::ValuesIn(families),
                         [](const auto& row) { return row.param.name; });

TEST_F(CanvasTrace, QuadsAreTwoTrianglesEachAndOutlinesLieBetweenThem) {
    const std::vector<glm::vec2> corners(8, glm::vec2(0.5f));
    const std::vector<glm::vec2> square = {{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f}};
    EXPECT_EQ(drawsOf([&] { canvas->drawQuad(white, corners); }),
              Lines({test::trianglesDrawn(0, 12)}));
    EXPECT_EQ(drawsOf([&] { canvas->drawRect(white, glm::vec2(0.f), glm::vec2(1.f)); }),
              Lines({test::trianglesDrawn(0, 6)}));
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawQuad(white, {white, 2.f}, square);
                  canvas->drawQuad(white, {white, 2.f}, square);
              }),
              Lines({test::trianglesDrawn(0, 6), test::quadsDrawn(0, 4), test::trianglesDrawn(6, 6),
                     test::quadsDrawn(7, 4)}));
}

// --- Grouping ---

TEST_F(CanvasTrace, CallsOfOneKindAreOneDraw) {
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, corner);
                  canvas->drawTriangleFan(orange, corner);
                  canvas->drawTriangleStrip(white, corner);
              }),
              Lines({test::trianglesDrawn(0, 9)}));
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawLineStrip({white, 3.f}, corner);
                  canvas->drawLineLoop({orange, 5.f}, corner);
              }),
              Lines({test::quadsDrawn(0, 8)}));
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawPoints(white, 3.f, corner);
                  canvas->drawBullseyes(orange, white, 5.f, corner);
              }),
              Lines({test::trianglesDrawn(0, 36)}));
}

TEST_F(CanvasTrace, KindsThatAlternateAreOneDrawEachInTheirOrder) {
    EXPECT_EQ(
        drawsOf([&] {
            canvas->drawTriangles(white, corner);
            canvas->drawPoints(white, 3.f, corner);
            canvas->drawTriangles(white, corner);
            canvas->drawTriangles(white, corner3D);
            canvas->drawLines(Stroke::aliased(white), corner);
            canvas->drawPoints(white, 3.f, corner);
        }),
        Lines({test::trianglesDrawn(0, 3), test::trianglesDrawn(0, 9), test::trianglesDrawn(3, 3),
               test::trianglesDrawn(0, 3), test::linesDrawn(6, 2), test::trianglesDrawn(9, 9)}));
}

TEST_F(CanvasTrace, StylesMatricesAndFlushesPartDraws) {
    Stroke round(white, 3.f);
    round.join = Stroke::Join::Round;
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawLineStrip({white, 3.f}, corner);
                  canvas->drawLineStrip(round, corner);
              }).size(),
              2u);
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, corner);
                  canvas->setTransform(glm::perspective(1.f, 1.f, 1.f, 2.f));
                  canvas->drawTriangles(white, corner);
              }).size(),
              2u);
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, corner);
                  canvas->flush();
                  canvas->drawTriangles(white, corner);
              }),
              Lines({test::trianglesDrawn(0, 3), test::trianglesDrawn(0, 3)}));
}

// --- Full buffers ---

/// How many elements a line draws: its second argument.
std::size_t numDrawn(const std::string& line) {
    return std::stoul(line.substr(line.find(',') + 2));
}

TEST_F(CanvasTrace, FullBufferIsDrawnAndTrianglesGoOn) {
    const std::vector<glm::vec2> points(3 * canvas::mostCopied(canvas::Kind::Triangles),
                                        glm::vec2(1.f));
    const Lines draws = drawsOf([&] { canvas->drawTriangles(white, points); });
    ASSERT_GE(draws.size(), 3u);
    std::size_t numTriangles = 0;
    for (const std::string& line : draws) {
        EXPECT_EQ(line, test::trianglesDrawn(0, numDrawn(line)));
        EXPECT_LE(numDrawn(line), canvas::mostCopied(canvas::Kind::Triangles));
        numTriangles += numDrawn(line) / 3;
    }
    EXPECT_EQ(numTriangles, points.size() / 3);
}

TEST_F(CanvasTrace, FullBufferIsDrawnAndALineGoesOnWithItsLastThreePoints) {
    std::vector<glm::vec2> points(canvas::mostCopied(canvas::Kind::Strip) + 10);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = glm::vec2(float(i), 0.f);
    const Lines draws = drawsOf([&] { canvas->drawLineStrip({white, 3.f}, points); });
    ASSERT_EQ(draws.size(), 2u);
    // One record for each point and two for the ends; three of them draw nothing by themselves.
    const std::size_t numPieces = points.size() - 1;
    const std::size_t numFirst = numDrawn(draws[0]) / 6;
    EXPECT_EQ(draws[0], test::quadsDrawn(0, numFirst));
    EXPECT_EQ(draws[1], test::quadsDrawn(0, numPieces - numFirst));
    // The last three records of the first drawing stand again; the first point is two of them.
    const auto stored = gl.bufferContents<canvas::StrokeRecord<2>>(1);
    for (std::size_t i = 0; i < 12; ++i)
        EXPECT_EQ(stored[i].position[0], float(numFirst - 1 + i / 4)) << i;
}

// --- Places ---

TEST_F(CanvasTrace, AffineTransformsAndOriginsAreInThePointsAndProjectionsInTheMatrix) {
    const auto bytesOf = [&](auto draw) {
        const Lines calls = callsOf(draw);
        EXPECT_EQ(only(calls, {"glUniformMatrix4fv"}), Lines({unitMatrixSet}));
        return gl.bufferContents<canvas::Corner<2>>(1);
    };
    const std::vector<glm::dvec2> far = {{1e7 + 1, 2.}, {1e7 + 2, 2.}, {1e7 + 2, 3.}};
    canvas->setOrigin({1e7, 2., 0.});
    const auto corners = bytesOf([&] {
        canvas->setTransform(glm::scale(glm::mat4(1.f), glm::vec3(3.f)));
        canvas->drawTriangles(white, far);
    });
    EXPECT_EQ(corners[0].position[0], 3.f);
    EXPECT_EQ(corners[0].position[1], 0.f);
    EXPECT_EQ(corners[2].position[0], 6.f);
    EXPECT_EQ(corners[2].position[1], 3.f);
    canvas->setOrigin(glm::dvec3(0.));

    glm::mat4 projection(1.f);
    projection[0][3] = 0.5f;
    const Lines calls = callsOf([&] {
        canvas->setTransform(projection);
        canvas->drawTriangles(white, corner);
    });
    EXPECT_EQ(only(calls, {"glUniformMatrix4fv"}),
              Lines({"glUniformMatrix4fv(10, 1, GL_FALSE, "
                     "{1, 0, 0, 0.5, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})"}));
    EXPECT_EQ(gl.bufferContents<canvas::Corner<2>>(1)[1].position[0], 1.f);
}

TEST_F(CanvasTrace, MatricesThatAreNotFiniteDrawNothing) {
    constexpr float bad[] = {std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity()};
    for (const float number : bad) {
        glm::mat4 matrix(1.f);
        matrix[2][1] = number;
        EXPECT_EQ(callsOf([&] { canvas->drawTriangles(white, corner); }, matrix), Lines());
        EXPECT_EQ(drawsOf([&] {
                      canvas->setTransform(matrix);
                      canvas->drawTriangles(white, corner);
                      canvas->setTransform(glm::mat4(1.f));
                      canvas->drawTriangles(white, corner);
                  }),
                  Lines({test::trianglesDrawn(0, 3)}));
    }
}

TEST_F(CanvasTrace, TransformEndsWithTheBatchAndTheOriginDoesNot) {
    callsOf([&] {
        canvas->setTransform(glm::scale(glm::mat4(1.f), glm::vec3(2.f)));
        canvas->setOrigin({-1., 0., 0.});
    });
    callsOf([&] { canvas->drawTriangles(white, corner); });
    EXPECT_EQ(gl.bufferContents<canvas::Corner<2>>(1)[1].position[0], 2.f);
}

TEST_F(CanvasTrace, PixelRatioMultipliesWidthsSizesAndDashes) {
    canvas->setPixelRatio(3.f);
    callsOf([&] { canvas->drawPoints(white, 4.f, corner); });
    EXPECT_EQ(gl.bufferContents<canvas::Disc<2>>(1)[0].radius, 6.f);
    for (const float ratio : {0.f, -1.f, INFINITY, NAN}) {
        canvas->setPixelRatio(ratio);
        callsOf([&] { canvas->drawPoints(white, 4.f, corner); });
        EXPECT_EQ(gl.bufferContents<canvas::Disc<2>>(1)[0].radius, 2.f) << ratio;
    }
    canvas->setPixelRatio(2.f);
    const Lines calls = callsOf([&] { canvas->drawDashLineStrip({white, 3.f}, 2.f, 3.f, corner); });
    EXPECT_EQ(only(calls, {"glUniform4fv(15", "glUniform1f(17"}),
              Lines({"glUniform4fv(15, 2, {2, 2, 2, 2, 2, 2, 2, 2})", "glUniform1f(17, 10)"}));
}

// --- Batches ---

TEST_F(CanvasTrace, WhatIsDrawnOutsideOfABatchIsLeftOut) {
    gl.forget();
    canvas->drawTriangles(white, corner);
    canvas->end();
    canvas->flush();
    EXPECT_EQ(canvas->endPicture(), nullptr);
    canvas->begin(glm::mat4(1.f));
    canvas->end();
    canvas->drawLines(white, corner);
    canvas->drawPoints(white, 4.f, corner);
    canvas->end();
    canvas->end();
    EXPECT_GL_CALLS(gl);
}

TEST_F(CanvasTrace, BeginEndsTheBatchBefore) {
    gl.forget();
    canvas->begin(glm::mat4(2.f));
    canvas->drawTriangles(white, corner);
    canvas->begin(glm::mat4(1.f));
    EXPECT_EQ(only(gl.takeCalls(), {"glDraw"}), Lines({test::trianglesDrawn(0, 3)}));
    canvas->end();
    EXPECT_GL_CALLS(gl);
}

TEST_F(CanvasTrace, LinesThatGoTogetherAreBlendedWhereOneIsTranslucent) {
    const std::vector<glm::vec2> line(2, glm::vec2(0.5f));
    const auto opaque = [&] { canvas->drawLines(Stroke::aliased(white), line); };
    const auto translucent = [&] {
        canvas->drawLines(Stroke::aliased(glm::vec4(1.f, 1.f, 1.f, 0.5f)), line);
    };
    const auto drawn = [&](auto... calls) {
        return only(callsOf([&] { (calls(), ...); }), {"glEnable(GL_BLEND)", "glDrawElements"});
    };
    EXPECT_EQ(drawn(opaque, opaque), Lines({test::linesDrawn(0, 4)}));
    const Lines blended = {"glEnable(GL_BLEND)", test::linesDrawn(0, 4)};
    EXPECT_EQ(drawn(opaque, translucent), blended);
    EXPECT_EQ(drawn(translucent, opaque), blended);
}

TEST_F(CanvasTrace, WhatWaitsAtTheEndOfTheCanvasIsNotDrawn) {
    canvas->begin(glm::mat4(1.f));
    canvas->drawTriangles(white, corner);
    canvas.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(CanvasTrace, NothingIsDrawnWhereThereIsNoViewport) {
    gl.setState(GL_VIEWPORT, {0, 0, 0, 100});
    EXPECT_EQ(drawsOf([&] { canvas->drawTriangles(white, corner); }), Lines());
    gl.setState(GL_VIEWPORT, {0, 0, 200, 100});
    EXPECT_EQ(drawsOf([&] { canvas->drawTriangles(white, corner); }).size(), 1u);
}

TEST_F(CanvasTrace, NothingIsCalledWithoutALoader) {
    test::FakeGl::remove(glad_glDrawArrays);
    EXPECT_EQ(callsOf([&] {
                  canvas->drawTriangles(white, corner);
                  canvas->drawDashLineStrip(white, 1.f, 1.f, corner);
              }),
              Lines());
}

} // namespace

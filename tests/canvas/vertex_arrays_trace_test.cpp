/// What canvases draw from buffers of the caller's.

#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>

#include "canvas/canvas_fixture.hpp"

namespace {

using namespace vellis;
using vellis::test::Lines;
using vellis::test::only;

class VertexArraysTrace : public test::CanvasTest {
protected:
    VertexArraysTrace() {
        plane = make(std::vector<glm::vec2>(8, glm::vec2(0.5f)));
        space = make(std::vector<glm::vec3>(8, glm::vec3(0.5f)));
    }
    void TearDown() override {
        plane.reset();
        space.reset();
        CanvasTest::TearDown();
    }

    template <class V>
    static std::shared_ptr<VertexAttributeBuffer<V>> make(const std::vector<V>& points) {
        return VertexAttributeBuffer<V>::make(points.data(), unsigned(points.size()),
                                              BufferUsage::Static, BufferAccess::Draw);
    }

    /// Where the four points of the pieces of a draw are, in points, and how many pieces.
    struct Pieces {
        std::vector<int> points;
        int step;
        int count;

        bool operator==(const Pieces& other) const {
            return points == other.points && step == other.step && count == other.count;
        }
        friend std::ostream& operator<<(std::ostream& stream, const Pieces& pieces) {
            return stream << testing::PrintToString(pieces.points) << " by " << pieces.step << ", "
                          << pieces.count << " pieces";
        }
    };

    /// The draws of a batch of strokes in the plane.
    template <class Draw>
    std::vector<Pieces> piecesOf(Draw draw) {
        std::vector<Pieces> all;
        std::vector<int> points;
        int stride = 0;
        const Lines calls = only(
            callsOf(draw), {"glVertexAttribPointer(", "glDrawArraysInstancedARB(GL_TRIANGLE_S"});
        for (const std::string& call : calls) {
            int location = 0, offset = 0, count = 0;
            if (std::sscanf(call.c_str(), "glVertexAttribPointer(%d, 2, GL_FLOAT, GL_FALSE, %d, %d",
                            &location, &stride, &offset) == 3) {
                points.push_back(offset / 8);
            } else if (std::sscanf(call.c_str(),
                                   "glDrawArraysInstancedARB(GL_TRIANGLE_STRIP, 0, 4, %d",
                                   &count) == 1) {
                all.push_back({points, stride / 8, count});
                points.clear();
            }
        }
        return all;
    }

    const Stroke stroke{glm::vec4(1.f), 4.f};
    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> plane;
    std::shared_ptr<VertexAttributeBuffer<glm::vec3>> space;
};

TEST_F(VertexArraysTrace, AreasAndAliasedLinesAreDrawnAsTheyAre) {
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, 1, 6, plane);
                  canvas->drawTriangleStrip(white, 0, 5, plane);
                  canvas->drawTriangleFan(white, 2, 4, space);
                  canvas->drawLines(Stroke::aliased(white), 0, 2, plane);
                  canvas->drawLineStrip(Stroke::aliased(white), 0, 3, space);
                  canvas->drawLineLoop(Stroke::aliased(white), 3, 4, space);
              }),
              Lines({"glDrawArrays(GL_TRIANGLES, 1, 6)", "glDrawArrays(GL_TRIANGLE_STRIP, 0, 5)",
                     "glDrawArrays(GL_TRIANGLE_FAN, 2, 4)", "glDrawArrays(GL_LINES, 0, 2)",
                     "glDrawArrays(GL_LINE_STRIP, 0, 3)", "glDrawArrays(GL_LINE_LOOP, 3, 4)"}));
}

TEST_F(VertexArraysTrace, AreasPointToPositionsAloneAndHaveTheirColorFromAUniform) {
    const auto draw = [&] { canvas->drawTriangles({1.f, 0.f, 1.f, 0.f}, 0, 3, space); };
    const std::string name = std::to_string(space->id());
    const Lines calls = laterCallsOf(draw);
    EXPECT_EQ(only(calls, {"glBufferSubData", "glUniform4fv(21", "glEnableVertexAttribArray",
                           "glVertexAttribPointer", "glBindBuffer"}),
              Lines({"glUniform4fv(21, 1, {1, 0, 1, 0})", "glEnableVertexAttribArray(0)",
                     "glBindBuffer(GL_ARRAY_BUFFER, " + name + ")",
                     "glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, 0)",
                     "glBindBuffer(GL_ARRAY_BUFFER, 0)"}));
}

TEST_F(VertexArraysTrace, LinesAreSolidWhateverTheDashes) {
    const Stroke dashed = stroke.dashed({{2.f, 3.f}});
    const Lines solid = laterCallsOf([&] { canvas->drawLineStrip(stroke, 0, 6, plane); });
    EXPECT_EQ(laterCallsOf([&] { canvas->drawLineStrip(dashed, 0, 6, plane); }), solid);
}

TEST_F(VertexArraysTrace, PointsAreInstancesFromTheFirstOn) {
    canvas->setPixelRatio(2.f);
    const auto draw = [&] { canvas->drawPoints(white, 5.f, 2, 4, space); };
    EXPECT_EQ(only(callsOf(draw), {"glVertexAttribPointer(1", "glUniform1f(20", "glDraw"}),
              Lines({"glUniform1f(20, 5)", "glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, 0, 24)",
                     "glDrawArraysInstancedARB(GL_TRIANGLES, 0, 3, 4)"}));
}

TEST_F(VertexArraysTrace, LinesAreInstancesOfTwoPoints) {
    EXPECT_EQ(piecesOf([&] { canvas->drawLines(stroke, 1, 7, plane); }),
              std::vector<Pieces>({{{1, 1, 2, 2}, 2, 3}}));
}

TEST_F(VertexArraysTrace, StripHasAFirstPieceAnInteriorAndALastPiece) {
    EXPECT_EQ(piecesOf([&] { canvas->drawLineStrip(stroke, 1, 6, plane); }),
              std::vector<Pieces>({{{1, 1, 2, 3}, 1, 1}, // its first point stands twice
                                   {{1, 2, 3, 4}, 1, 3},
                                   {{4, 5, 6, 6}, 1, 1}}));
    EXPECT_EQ(piecesOf([&] { canvas->drawLineStrip(stroke, 0, 3, plane); }),
              std::vector<Pieces>({{{0, 0, 1, 2}, 1, 1}, {{0, 1, 2, 2}, 1, 1}}));
    EXPECT_EQ(piecesOf([&] { canvas->drawLineStrip(stroke, 0, 2, plane); }),
              std::vector<Pieces>({{{0, 0, 1, 1}, 1, 1}}));
    EXPECT_EQ(piecesOf([&] { canvas->drawLineStrip(stroke, 0, 1, plane); }), std::vector<Pieces>());
}

TEST_F(VertexArraysTrace, LoopGoesOnThroughItsEnds) {
    EXPECT_EQ(piecesOf([&] { canvas->drawLineLoop(stroke, 1, 5, plane); }),
              std::vector<Pieces>({{{5, 1, 2, 3}, 1, 1},
                                   {{1, 2, 3, 4}, 1, 2},
                                   {{3, 4, 5, 1}, 1, 1},
                                   {{4, 5, 1, 2}, 1, 1}}));
    EXPECT_EQ(
        piecesOf([&] { canvas->drawLineLoop(stroke, 0, 3, plane); }),
        std::vector<Pieces>({{{2, 0, 1, 2}, 1, 1}, {{0, 1, 2, 0}, 1, 1}, {{1, 2, 0, 1}, 1, 1}}));
    EXPECT_EQ(piecesOf([&] { canvas->drawLineLoop(stroke, 0, 2, plane); }),
              std::vector<Pieces>({{{1, 0, 1, 0}, 1, 1}, {{0, 1, 0, 1}, 1, 1}}));
}

TEST_F(VertexArraysTrace, CountsBeyondTheBufferAreCutAndWhatIsNotThereDrawsNothing) {
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, 2, 0xFFFFFFFF, plane);
                  canvas->drawPoints(white, 4.f, 5, 100, plane);
              }),
              Lines({"glDrawArrays(GL_TRIANGLES, 2, 6)",
                     "glDrawArraysInstancedARB(GL_TRIANGLES, 0, 3, 3)"}));
    const std::shared_ptr<VertexAttributeBuffer<glm::vec2>> null;
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, 8, 1, plane);
                  canvas->drawTriangles(white, 0xFFFFFFFF, 0xFFFFFFFF, plane);
                  canvas->drawTriangles(white, 0, 0, plane);
                  canvas->drawTriangles(white, 0, 3, null);
                  canvas->drawLineStrip(stroke, 0, 3, null);
                  canvas->drawPoints(white, 4.f, 0, 3, null);
                  canvas->drawPoints(white, 0.f, 0, 3, plane);
                  canvas->drawPoints(white, NAN, 0, 3, plane);
                  canvas->drawLines({white, -1.f}, 0, 3, plane);
                  canvas->drawLines({white, INFINITY}, 0, 3, plane);
              }),
              Lines());
}

TEST_F(VertexArraysTrace, DrawnAtOnceBehindWhatWaits) {
    gl.forget();
    canvas->begin(glm::mat4(1.f));
    canvas->drawTriangles(white, corner);
    canvas->drawTriangles(white, 0, 3, plane);
    EXPECT_EQ(only(gl.takeCalls(), {"glDraw"}),
              Lines({test::trianglesDrawn(0, 3), "glDrawArrays(GL_TRIANGLES, 0, 3)"}));
    canvas->end();
    EXPECT_GL_CALLS(gl);
}

TEST_F(VertexArraysTrace, OriginAndTransformAreInTheMatrix) {
    const Lines calls = callsOf([&] {
        canvas->setOrigin({1., 2., 3.});
        glm::mat4 transform(2.f);
        transform[3][3] = 1.f;
        canvas->setTransform(transform);
        canvas->drawTriangles(white, 0, 3, plane);
    });
    EXPECT_EQ(only(calls, {"glUniformMatrix"}),
              Lines({"glUniformMatrix4fv(10, 1, GL_FALSE, "
                     "{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, -2, -4, -6, 1})"}));
}

TEST_F(VertexArraysTrace, CoreFunctionDrawsInstancesFromGl31On) {
    GLAD_GL_VERSION_3_0 = GLAD_GL_VERSION_3_1 = 1;
    EXPECT_EQ(drawsOf([&] { canvas->drawPoints(white, 4.f, 0, 3, plane); }),
              Lines({"glDrawArraysInstanced(GL_TRIANGLES, 0, 3, 3)"}));
}

// --- Without instances ---

TEST_F(VertexArraysTrace, PointsAreReadBackWithoutInstances) {
    GLAD_GL_ARB_instanced_arrays = 0;
    glBindBuffer(GL_ARRAY_BUFFER, 77);
    canvas->setPixelRatio(3.f);
    const Lines calls = callsOf([&] { canvas->drawPoints(white, 4.f, 2, 100, space); });
    const std::string name = std::to_string(space->id());
    EXPECT_EQ(Lines(calls.begin(), calls.begin() + 5),
              Lines({"glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, out)",
                     "glGetIntegerv(GL_ARRAY_BUFFER_BINDING, out)",
                     "glBindBuffer(GL_ARRAY_BUFFER, " + name + ")",
                     "glGetBufferSubData(GL_ARRAY_BUFFER, 24, 72, out)",
                     "glBindBuffer(GL_ARRAY_BUFFER, 77)"}));
    EXPECT_EQ(only(calls, {"glDraw", "glBufferSubData"}),
              Lines({"glBufferSubData(GL_ARRAY_BUFFER, 0, 360, data)", test::discsDrawn(0, 6)}));
}

TEST_F(VertexArraysTrace, StrokesThatAreReadBackAreSolid) {
    GLAD_GL_ARB_instanced_arrays = 0;
    const auto points = make(corner);
    const Stroke dashedStroke = stroke.dashed({{1.f, 1.f}});
    EXPECT_EQ(only(callsOf([&] { canvas->drawLineStrip(dashedStroke, 0, 3, points); }),
                   {"glUniform1f(17", "glDraw"}),
              Lines({"glDrawElements(GL_TRIANGLES, 12, GL_UNSIGNED_SHORT, 0)"}));
    EXPECT_EQ(drawsOf([&] { canvas->drawLineLoop(stroke, 3, 3, points); }), Lines());
    EXPECT_EQ(drawsOf([&] { canvas->drawTriangles(white, 0, 3, points); }),
              Lines({"glDrawArrays(GL_TRIANGLES, 0, 3)"}));
}

} // namespace

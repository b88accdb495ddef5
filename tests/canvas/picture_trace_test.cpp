/// What pictures call in GL.

#include <vellis/canvas/picture.hpp>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>

#include "canvas/canvas_fixture.hpp"
#include "canvas/vertex_arrays.hpp"

namespace {

using namespace vellis;
using vellis::test::Lines;
using vellis::test::only;

class PictureTrace : public test::CanvasTest {
protected:
    template <class Draw>
    std::shared_ptr<Picture> record(Draw draw) {
        canvas->beginPicture(glm::mat4(1.f));
        draw();
        return canvas->endPicture();
    }
};

TEST_F(PictureTrace, RecordsStandInABufferForEachKindOnce) {
    glBindBuffer(GL_ARRAY_BUFFER, 77);
    gl.forget();
    canvas->beginPicture(glm::mat4(1.f));
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, out)");
    canvas->drawLineStrip({white, 4.f}, corner);   // 5 records
    canvas->drawLineStrip({white, 4.f}, corner3D); // 5 records
    canvas->drawLineLoop({white, 4.f}, corner);    // 6 records
    canvas->drawTriangles(white, corner);
    EXPECT_GL_CALLS(gl);
    auto picture = canvas->endPicture();
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_ARRAY_BUFFER_BINDING, out)", "glGenBuffers(1, {1})",
                    "glBindBuffer(GL_ARRAY_BUFFER, 1)",
                    "glBufferData(GL_ARRAY_BUFFER, 36, data, GL_STATIC_DRAW)",
                    "glGenBuffers(1, {2})", "glBindBuffer(GL_ARRAY_BUFFER, 2)",
                    "glBufferData(GL_ARRAY_BUFFER, 220, data, GL_STATIC_DRAW)",
                    "glGenBuffers(1, {3})", "glBindBuffer(GL_ARRAY_BUFFER, 3)",
                    "glBufferData(GL_ARRAY_BUFFER, 120, data, GL_STATIC_DRAW)",
                    "glBindBuffer(GL_ARRAY_BUFFER, 77)");
    EXPECT_EQ(picture->numBytes(), 36u + 11 * 20 + 5 * 24);
    picture.reset();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {3})", "glDeleteBuffers(1, {2})",
                    "glDeleteBuffers(1, {1})");
}

TEST_F(PictureTrace, IsDrawnWithInstancesFromItsBuffers) {
    const auto picture = record([&] {
        canvas->drawLineStrip({white, 4.f}, corner);
        canvas->drawPoints(white, 4.f, corner);
        canvas->drawLines({white, 4.f}, corner);
        canvas->drawTriangles(white, corner);
        canvas->drawLineStrip({white, 4.f}, corner);
    });
    const Lines calls = callsOf([&] { canvas->drawPicture(picture); });
    EXPECT_EQ(
        only(calls, {"glDraw", "glBufferSubData"}),
        Lines({"glDrawArraysInstancedARB(GL_TRIANGLE_STRIP, 0, 4, 2)",
               "glDrawArraysInstancedARB(GL_TRIANGLES, 0, 3, 3)",
               "glDrawArraysInstancedARB(GL_TRIANGLE_STRIP, 0, 4, 1)", test::trianglesDrawn(0, 3),
               "glDrawArraysInstancedARB(GL_TRIANGLE_STRIP, 0, 4, 2)"}));
    // The second strip begins behind the five records of the first.
    const Lines pointers = only(calls, {"glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 20,"});
    ASSERT_GE(pointers.size(), 2u);
    EXPECT_EQ(pointers.front(), "glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 20, 0)");
    EXPECT_EQ(pointers.back(), "glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 20, 100)");
}

TEST_F(PictureTrace, ShapesOfOneKindStandBehindEachOtherAlsoWithoutInstances) {
    GLAD_GL_ARB_draw_instanced = 0;
    const auto picture = record([&] {
        canvas->drawTriangles(white, corner);
        canvas->drawPoints(white, 4.f, corner);
        canvas->drawTriangles(white, corner);
        canvas->drawPoints(white, 4.f, corner);
    });
    EXPECT_EQ(only(callsOf([&] { canvas->drawPicture(picture); }),
                   {"glVertexAttribPointer(0, 2, GL_FLOAT", "glVertexAttribPointer(1,"}),
              Lines({"glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 12, 0)",
                     "glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 16, 0)",
                     "glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 12, 36)",
                     "glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 16, 144)"}));
}

TEST_F(PictureTrace, AllButTheCornersAdvanceOnceForEachInstance) {
    const auto picture = record([&] { canvas->drawPoints(white, 4.f, corner); });
    Lines expected = {"glVertexAttribDivisorARB(0, 0)"};
    for (int i = 1; i < 8; ++i)
        expected.push_back("glVertexAttribDivisorARB(" + std::to_string(i) + ", 1)");
    EXPECT_EQ(only(callsOf([&] { canvas->drawPicture(picture); }), {"glVertexAttribDivisor"}),
              expected);
    EXPECT_EQ(only(callsOf([&] { canvas->drawPicture(picture); }),
                   {"glEnableVertexAttribArray", "glDisableVertexAttribArray"}),
              Lines({"glEnableVertexAttribArray(0)", "glEnableVertexAttribArray(1)",
                     "glDisableVertexAttribArray(2)", "glDisableVertexAttribArray(3)",
                     "glDisableVertexAttribArray(4)", "glEnableVertexAttribArray(5)",
                     "glEnableVertexAttribArray(6)", "glDisableVertexAttribArray(7)"}));
}

TEST_F(PictureTrace, StrokesPointTheirAttributesToFourRecordsInARow) {
    const auto picture = record([&] { canvas->drawLineStrip({white, 4.f}, corner3D); });
    EXPECT_EQ(only(callsOf([&] { canvas->drawPicture(picture); }), {"glVertexAttribPointer"}),
              Lines({"glVertexAttribPointer(0, 2, GL_BYTE, GL_FALSE, 4, 0)",
                     "glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, 24, 0)",
                     "glVertexAttribPointer(2, 3, GL_FLOAT, GL_FALSE, 24, 24)",
                     "glVertexAttribPointer(3, 3, GL_FLOAT, GL_FALSE, 24, 48)",
                     "glVertexAttribPointer(4, 3, GL_FLOAT, GL_FALSE, 24, 72)",
                     "glVertexAttribPointer(5, 2, GL_FLOAT, GL_FALSE, 24, 36)",
                     "glVertexAttribPointer(6, 4, GL_UNSIGNED_BYTE, GL_TRUE, 24, 44)",
                     "glVertexAttribPointer(7, 4, GL_UNSIGNED_BYTE, GL_TRUE, 24, 68)"}));
}

TEST_F(PictureTrace, TakesFourTimesTheRoomWithoutInstances) {
    GLAD_GL_ARB_draw_instanced = 0;
    const auto picture = record([&] {
        canvas->drawLineStrip({white, 4.f}, corner);
        canvas->drawPoints(white, 4.f, corner);
    });
    EXPECT_EQ(picture->numBytes(), 4u * 5 * 20 + 3u * 3 * 16);
    EXPECT_EQ(drawsOf([&] { canvas->drawPicture(picture); }),
              Lines({test::quadsDrawn(0, 2), test::trianglesDrawn(0, 9)}));
}

TEST_F(PictureTrace, IsDrawnInPiecesWhereThereAreNoIndicesForAll) {
    GLAD_GL_ARB_draw_instanced = 0;
    const std::size_t count = canvas::mostCopied(canvas::Kind::Segments) + 7;
    std::vector<glm::vec2> lines;
    for (std::size_t i = 0; i < count; ++i) {
        lines.emplace_back(0.f, 0.f);
        lines.emplace_back(1.f, 0.f);
    }
    const auto picture = record([&] { canvas->drawLines({white, 4.f}, lines); });
    const Lines calls = callsOf([&] { canvas->drawPicture(picture); });
    EXPECT_EQ(only(calls, {"glDraw", "glVertexAttribPointer(1,"}),
              Lines({"glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 40, 0)",
                     test::quadsDrawn(0, count - 7),
                     "glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 40, " +
                         std::to_string(4 * 40 * (count - 7)) + ")",
                     test::quadsDrawn(0, 7)}));
}

TEST_F(PictureTrace, GrowsAsItIsRecorded) {
    const std::vector<glm::vec2> many(100000, glm::vec2(1.f));
    const auto picture = record([&] { canvas->drawPoints(white, 4.f, many); });
    EXPECT_EQ(picture->numBytes(), 1600000u);
    EXPECT_EQ(drawsOf([&] { canvas->drawPicture(picture); }),
              Lines({"glDrawArraysInstancedARB(GL_TRIANGLES, 0, 3, 100000)"}));
}

TEST_F(PictureTrace, LiesAboveWhatWasDrawnBeforeIt) {
    const auto picture = record([&] { canvas->drawPoints(white, 4.f, corner); });
    EXPECT_EQ(drawsOf([&] {
                  canvas->drawTriangles(white, corner);
                  canvas->drawPicture(picture);
                  canvas->drawTriangles(white, corner);
              }),
              Lines({test::trianglesDrawn(0, 3), "glDrawArraysInstancedARB(GL_TRIANGLES, 0, 3, 3)",
                     test::trianglesDrawn(0, 3)}));
}

TEST_F(PictureTrace, IsWhereItWasUnderTheMatrixOfTheDraw) {
    canvas->setOrigin({10., 0., 0.});
    const auto picture = record([&] {
        canvas->drawTriangles(white, corner);
        canvas->setOrigin({12., 0., 0.}); // its matrix moves it back
        canvas->drawTriangles(white, corner);
    });
    canvas->setOrigin({9., 0., 0.});
    const auto matricesOf = [&](auto draw) {
        return only(callsOf(draw, glm::scale(glm::mat4(1.f), glm::vec3(2.f))), {"glUniformMatrix"});
    };
    const auto matrix = [](int x) {
        return "glUniformMatrix4fv(10, 1, GL_FALSE, {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, " +
               std::to_string(x) + ", 0, 0, 1})";
    };
    EXPECT_EQ(matricesOf([&] { canvas->drawPicture(picture); }), Lines({matrix(2), matrix(6)}));
    EXPECT_EQ(matricesOf([&] {
                  canvas->setTransform(glm::translate(glm::mat4(1.f), glm::vec3(3.f, 0.f, 0.f)));
                  canvas->drawPicture(picture);
              }),
              Lines({matrix(8), matrix(12)}));
}

TEST_F(PictureTrace, CannotBeWithinAPictureOrDrawnOutsideOfABatch) {
    const auto picture = record([&] { canvas->drawPoints(white, 4.f, corner); });
    gl.forget();
    canvas->drawPicture(picture);
    EXPECT_GL_CALLS(gl);
    const auto outer = record([&] { canvas->drawPicture(picture); });
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(outer->numBytes(), 0u);
    EXPECT_EQ(drawsOf([&] { canvas->drawPicture(outer); }), Lines());
    EXPECT_EQ(drawsOf([&] {
                  canvas->setTransform(glm::mat4(INFINITY));
                  canvas->drawPicture(picture);
              }),
              Lines());
}

TEST_F(PictureTrace, BeginEndsItAndEndDoesNot) {
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawPoints(white, 4.f, corner);
    canvas->end();
    canvas->flush();
    EXPECT_NE(canvas->endPicture(), nullptr);
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawPoints(white, 4.f, corner);
    EXPECT_EQ(drawsOf([&] { canvas->drawTriangles(white, corner); }),
              Lines({test::trianglesDrawn(0, 3)}));
    EXPECT_EQ(canvas->endPicture(), nullptr);
}

TEST_F(PictureTrace, KeepsTheBuffersOfTheCaller) {
    auto buffer = VertexAttributeBuffer<glm::vec2>::make(corner.data(), 3, BufferUsage::Static,
                                                         BufferAccess::Draw);
    const unsigned int name = buffer->id();
    auto picture = record([&] { canvas->drawTriangles(white, 0, 3, buffer); });
    buffer.reset();
    const Lines calls = callsOf([&] { canvas->drawPicture(picture); });
    EXPECT_EQ(only(calls, {"glDraw", "glDeleteBuffers"}),
              Lines({"glDrawArrays(GL_TRIANGLES, 0, 3)"}));
    picture.reset();
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(1, {" + std::to_string(name) + "})");
}

} // namespace

/// What half-transparent strokes call in GL, which paint each pixel once.

#include <gtest/gtest.h>

#include "canvas/canvas_fixture.hpp"
#include "canvas/vertex_arrays.hpp"

namespace {

using namespace vellis;
using vellis::test::Lines;
using vellis::test::only;

class OverlapMaskTrace : public test::CanvasTest {
protected:
    /// The calls that go to the mask, read it, or draw.
    static Lines steps(const Lines& calls) {
        return only(calls, {"glBindFramebuffer", "glViewport", "glScissor", "glEnable(GL_SCISSOR",
                            "glDisable(GL_SCISSOR", "glBlendEquation", "glClear(", "glDraw",
                            "glBindTexture", "glActiveTexture", "glColorMask"});
    }

    /// A line of 50 pixels along the middle of the viewport.
    void draw() { canvas->drawLineStrip(stroke(), points); }
    Stroke stroke() const {
        Stroke result(transparent, 4.f);
        result.join = Stroke::Join::Bevel;
        return result;
    }

    const std::vector<glm::vec2> points = {{-0.25f, 0.f}, {0.25f, 0.f}, {0.f, 0.f}};
};

TEST_F(OverlapMaskTrace, FirstStrokeMakesAFramebufferWithATexture) {
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 77);
    const Lines calls =
        only(callsOf([&] { draw(); }), {"glGenFr", "glGenTex", "glTex", "glBindBuffer(GL_PIXEL",
                                        "glFramebuffer", "glCheckFr", "glBindFramebuffer"});
    EXPECT_EQ(calls, Lines({"glGenFramebuffers(1, {2})", "glGenTextures(1, {3})",
                            "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0)",
                            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                            "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 256, 256, 0, GL_RGBA, "
                            "GL_UNSIGNED_BYTE, null)",
                            "glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 77)",
                            "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 2)",
                            "glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, "
                            "GL_TEXTURE_2D, 3, 0)",
                            "glCheckFramebufferStatus(GL_DRAW_FRAMEBUFFER)",
                            "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)",
                            "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 2)",
                            "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)"}))
        << "the names follow that of a buffer";
}

TEST_F(OverlapMaskTrace, LaterStrokesAreDrawnToTheMaskWhichIsThenDrawnOnce) {
    gl.setState(GL_VIEWPORT, {10, 20, 200, 100});
    const Lines calls = laterCallsOf([&] { draw(); });
    // From 75 to 125 of the viewport's pixels, and what it reaches: 3, and 2 for what is smooth.
    EXPECT_EQ(
        steps(calls),
        Lines({"glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD)",
               "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 2)", "glViewport(-70, -45, 200, 100)",
               "glEnable(GL_SCISSOR_TEST)", "glScissor(0, 0, 60, 10)",
               "glBlendEquationSeparate(GL_MAX, GL_MAX)", "glClear(GL_COLOR_BUFFER_BIT)",
               test::quadsDrawn(0, 2), "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)",
               "glViewport(10, 20, 200, 100)", "glDisable(GL_SCISSOR_TEST)",
               "glScissor(0, 0, 200, 100)", "glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD)",
               "glActiveTexture(GL_TEXTURE15)", "glBindTexture(GL_TEXTURE_2D, 3)",
               "glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)", "glBindTexture(GL_TEXTURE_2D, 0)",
               "glActiveTexture(GL_TEXTURE0)",
               "glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD)"}));
    EXPECT_EQ(only(calls, {"glUniform1i(22", "glUniform4f(23"}),
              Lines({"glUniform1i(22, 15)", "glUniform4f(23, 80, 65, 0.00390625, 0.00390625)"}));
}

TEST_F(OverlapMaskTrace, EachStrokeIsDrawnToAnEmptyMask) {
    const Lines calls = laterCallsOf([&] {
        draw();
        draw();
    });
    EXPECT_EQ(only(calls, {"glClear(", "glDrawA"}),
              Lines({"glClear(GL_COLOR_BUFFER_BIT)", "glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)",
                     "glClear(GL_COLOR_BUFFER_BIT)", "glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)"}));
}

TEST_F(OverlapMaskTrace, MaskIsNoLargerThanTheScissorBox) {
    callsOf([&] { draw(); });
    gl.setState(GL_SCISSOR_TEST, {1});
    gl.setState(GL_SCISSOR_BOX, {90, 40, 10, 20});
    const Lines calls = callsOf([&] { draw(); });
    EXPECT_EQ(only(calls, {"glScissor"}),
              Lines({"glScissor(0, 0, 10, 10)", "glScissor(90, 40, 10, 20)"}));
    EXPECT_EQ(only(calls, {"glEnable(GL_SC", "glDisable(GL_SC"}),
              Lines({"glEnable(GL_SCISSOR_TEST)", "glEnable(GL_SCISSOR_TEST)"}));
    gl.setState(GL_SCISSOR_BOX, {0, 0, 10, 20});
    EXPECT_EQ(drawsOf([&] { draw(); }), Lines()) << "the stroke is outside";
}

TEST_F(OverlapMaskTrace, StrokeThatReachesBehindTheNearPlaneMayBeAnywhere) {
    const std::vector<glm::vec3> behind = {{0.f, 0.f, 0.f}, {0.1f, 0.f, -5.f}, {0.f, 0.1f, 0.f}};
    const Lines calls = laterCallsOf([&] { canvas->drawLineStrip(stroke(), behind); });
    EXPECT_EQ(only(calls, {"glScissor(0, 0"})[0], "glScissor(0, 0, 200, 100)");
}

TEST_F(OverlapMaskTrace, ColorsThatAreMaskedAreDrawnToTheMaskAllTheSame) {
    callsOf([&] { draw(); });
    gl.setState(GL_COLOR_WRITEMASK, {1, 0, 0, 1});
    EXPECT_EQ(only(callsOf([&] { draw(); }), {"glColorMask", "glDraw"}),
              Lines({"glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE)", test::quadsDrawn(0, 2),
                     "glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_TRUE)",
                     "glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)"}));
}

TEST_F(OverlapMaskTrace, WhatIsNotHalfTransparentNeedsNoMask) {
    const std::vector<glm::vec4> colors = {transparent, transparent};
    const auto drawAll = [&] {
        canvas->drawLineStrip({white, 4.f}, points);
        canvas->drawLineStrip({white, 4.f}, points, colors);
        canvas->drawLines({transparent, 4.f}, points);
        canvas->drawLineStrip({transparent, 4.f}, 2, points.data());
        canvas->drawPoints(transparent, 4.f, points);
        canvas->drawTriangles(transparent, points);
        canvas->setOverlap(Canvas::Overlap::Often);
        draw();
        canvas->setOverlap(Canvas::Overlap::Once);
    };
    EXPECT_EQ(only(callsOf(drawAll), {"glBindFramebuffer", "glGenFramebuffers"}), Lines());
}

TEST_F(OverlapMaskTrace, ThereIsNoMaskWithADepthTestOrWithoutFramebuffers) {
    gl.setState(GL_DEPTH_TEST, {1});
    EXPECT_EQ(only(callsOf([&] { draw(); }), {"glBindFramebuffer", "glDraw"}),
              Lines({test::quadsDrawn(0, 2)}));
    gl.setState(GL_DEPTH_TEST, {0});
    gl.setFramebufferStatus(GL_FRAMEBUFFER_UNSUPPORTED);
    EXPECT_EQ(only(laterCallsOf([&] { draw(); }), {"glBindFramebuffer", "glDraw"}),
              Lines({test::quadsDrawn(0, 2)}));
    canvas = Canvas::make();
    test::FakeGl::remove(glad_glGenFramebuffers);
    EXPECT_EQ(only(callsOf([&] { draw(); }), {"glBindFramebuffer", "glDraw"}),
              Lines({test::quadsDrawn(0, 2)}));
}

TEST_F(OverlapMaskTrace, MaskGrowsWithTheStrokesAndIsNoLargerThanATextureCanBe) {
    gl.setState(GL_MAX_TEXTURE_SIZE, {600});
    gl.setState(GL_VIEWPORT, {0, 0, 1000, 100});
    const auto sizesOf = [&](float right) {
        const std::vector<glm::vec2> line = {{-1.f, 0.f}, {right, 0.f}, {0.f, 0.f}};
        return only(callsOf([&] { canvas->drawLineStrip(stroke(), line); }), {"glTexImage2D"});
    };
    const auto size = [](int width) {
        return Lines({"glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, " + std::to_string(width) +
                      ", 256, 0, GL_RGBA, GL_UNSIGNED_BYTE, null)"});
    };
    EXPECT_EQ(sizesOf(-0.6f), size(512)); // to 505 pixels, as the last point is in the middle
    EXPECT_EQ(sizesOf(0.01f), Lines());
    EXPECT_EQ(sizesOf(0.1f), size(600));
    EXPECT_EQ(sizesOf(0.5f), Lines()) << "is drawn without a mask";
    EXPECT_EQ(sizesOf(0.1f), Lines());
}

TEST_F(OverlapMaskTrace, StrokeOfSeveralBuffersIsOneMask) {
    callsOf([&] { draw(); });
    std::vector<glm::vec2> many(canvas::mostCopied(canvas::Kind::Strip) + 100);
    for (std::size_t i = 0; i < many.size(); ++i)
        many[i] = glm::vec2(i % 2 == 0 ? -0.2f : 0.2f, 0.f);
    const Lines calls = callsOf([&] { canvas->drawLineStrip(stroke(), many); });
    const Lines drawn = only(calls, {"glClear(", "glBindFramebuffer", "glDraw"});
    ASSERT_EQ(drawn.size(), 8u);
    EXPECT_EQ(drawn[0], "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 2)");
    EXPECT_EQ(drawn[1], "glClear(GL_COLOR_BUFFER_BIT)");
    EXPECT_EQ(drawn[2].substr(0, 14), "glDrawElements");
    EXPECT_EQ(drawn[3], "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)");
    EXPECT_EQ(drawn[4], "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 2)");
    EXPECT_EQ(drawn[5].substr(0, 14), "glDrawElements");
    EXPECT_EQ(drawn[6], "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)");
    EXPECT_EQ(drawn[7], "glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)");
}

} // namespace

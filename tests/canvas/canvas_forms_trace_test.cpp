/// The forms of Canvas's calls: points in braces, at an address or in a buffer draw what the same
/// points in a container draw.

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/buffers/vertex_attribute_buffer.hpp>

#include "canvas/canvas_fixture.hpp"

namespace {

using namespace vellis;
using vellis::test::Lines;
using vellis::test::only;

class CanvasFormsTrace : public test::CanvasTest {
protected:
    /// What a batch calls, and what then is in the buffer that it streams its points through.
    template <class Draw>
    std::pair<Lines, std::vector<unsigned char>> drawn(Draw draw) {
        Lines calls = laterCallsOf(draw);
        const std::string name = only(gl.liveNames(), {"buffer "}).at(0).substr(7);
        return {calls, gl.bufferBytes(GLuint(std::stoul(name)))};
    }

    /// Expects of points in braces what is drawn of those in a container.
    template <class Draw>
    void expectLists(Draw draw) {
        const std::initializer_list<glm::vec2> plane = {
            {0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}, {0.f, 2.f}};
        const std::initializer_list<glm::vec3> space = {
            {0.f, 0.f, 3.f}, {1.f, 0.f, 4.f}, {1.f, 1.f, 5.f}, {0.f, 2.f, 6.f}};
        const auto flat = drawn([&] { draw(std::vector<glm::vec2>(plane)); });
        const auto spatial = drawn([&] { draw(std::vector<glm::vec3>(space)); });
        EXPECT_NE(only(flat.first, {"glDraw"}), Lines());
        EXPECT_NE(flat, spatial);
        EXPECT_EQ(drawn([&] { draw(plane); }), flat);
        EXPECT_EQ(drawn([&] { draw(space); }), spatial);
    }

    /// The same of those at an address.
    template <class Draw>
    void expectAddresses(Draw draw) {
        const std::vector<glm::dvec3> points = {{0., 0., 3.}, {1., 0., 4.}, {1., 1., 5.}};
        const auto expected = drawn([&] { draw(points); });
        EXPECT_NE(only(expected.first, {"glDraw"}), Lines());
        EXPECT_EQ(drawn([&] { draw(points.size(), points.data()); }), expected);
    }

    /// Both.
    template <class Draw>
    void expectForms(Draw draw) {
        expectLists(draw);
        expectAddresses(draw);
    }

    const Stroke stroke{glm::vec4(1.f, 0.5f, 0.f, 1.f), 3.f};
    const glm::vec4 blue = glm::vec4(0.f, 0.f, 1.f, 1.f);
};

TEST_F(CanvasFormsTrace, LinesInBracesAndAtAnAddress) {
    expectForms([&](const auto&... points) { canvas->drawLines(stroke, points...); });
    expectForms([&](const auto&... points) { canvas->drawLineStrip(stroke, points...); });
    expectForms([&](const auto&... points) { canvas->drawLineLoop(stroke, points...); });
    expectForms(
        [&](const auto&... points) { canvas->drawDashLineStrip(stroke, 2.f, 3.f, points...); });
}

TEST_F(CanvasFormsTrace, PointsInBracesAndAtAnAddress) {
    expectForms([&](const auto&... points) { canvas->drawPoints(white, 4.f, points...); });
    expectForms([&](const auto&... points) { canvas->drawBullseyes(white, blue, 4.f, points...); });
}

TEST_F(CanvasFormsTrace, AreasInBracesAndAtAnAddress) {
    expectForms([&](const auto&... points) { canvas->drawTriangles(white, points...); });
    expectForms([&](const auto&... points) { canvas->drawTriangleStrip(white, points...); });
    expectForms([&](const auto&... points) { canvas->drawTriangleFan(white, points...); });
    expectLists([&](const auto& points) { canvas->drawQuad(white, points); });
    expectLists([&](const auto& points) { canvas->drawQuad(white, stroke, points); });
}

TEST_F(CanvasFormsTrace, RectanglesAreQuadsOfTheirCorners) {
    const auto expected = drawn([&] {
        canvas->drawQuad(white, {{1.f, 2.f}, {1.f, 5.f}, {3.f, 5.f}, {3.f, 2.f}});
    });
    EXPECT_EQ(drawn([&] { canvas->drawRect(white, glm::vec2(1.f, 2.f), glm::vec2(3.f, 5.f)); }),
              expected);
    EXPECT_EQ(drawn([&] { canvas->drawRect(white, glm::dvec2(1., 2.), glm::dvec2(3., 5.)); }),
              expected);
}

TEST_F(CanvasFormsTrace, QuadsWithOutlinesHaveTheLastColorWhereOthersAreMissing) {
    const std::vector<glm::vec2> points = {{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f},
                                           {2.f, 0.f}, {3.f, 0.f}, {3.f, 1.f}, {2.f, 1.f}};
    for (const std::size_t count : {1u, 3u, 4u, 5u}) {
        std::vector<glm::vec4> colors;
        for (std::size_t i = 0; i < count; ++i)
            colors.emplace_back(float(i) / 8.f, 0.f, 1.f, 1.f);
        std::vector<glm::vec4> all = colors;
        all.resize(points.size(), colors.back());
        EXPECT_EQ(drawn([&] { canvas->drawQuad(colors, stroke, points); }),
                  drawn([&] { canvas->drawQuad(all, stroke, points); }))
            << count;
    }
}

TEST_F(CanvasFormsTrace, BuffersOfThePlaneAndOfSpace) {
    const glm::vec2 plane[8] = {};
    const glm::vec3 space[8] = {};
    const auto flat =
        VertexAttributeBuffer<glm::vec2>::make(plane, 8, BufferUsage::Static, BufferAccess::Draw);
    const auto spatial =
        VertexAttributeBuffer<glm::vec3>::make(space, 8, BufferUsage::Static, BufferAccess::Draw);
    const auto check = [&](auto draw) {
        // The corners of strokes and discs are bytes.
        const auto expectFloats = [&](const char* expected, const char* other, const auto& buffer) {
            const Lines calls = callsOf([&] { draw(1u, 6u, buffer); });
            const auto has = [&](const char* text) {
                return std::any_of(calls.begin(), calls.end(), [&](const std::string& call) {
                    return call.rfind("glVertexAttribPointer", 0) == 0 &&
                           call.find(text) != std::string::npos;
                });
            };
            EXPECT_TRUE(has(expected)) << testing::PrintToString(calls);
            EXPECT_FALSE(has(other)) << testing::PrintToString(calls);
        };
        expectFloats(", 2, GL_FLOAT", ", 3, GL_FLOAT", flat);
        expectFloats(", 3, GL_FLOAT", ", 2, GL_FLOAT", spatial);
    };
    check([&](auto... points) { canvas->drawLines(stroke, points...); });
    check([&](auto... points) { canvas->drawLineStrip(stroke, points...); });
    check([&](auto... points) { canvas->drawLineLoop(stroke, points...); });
    check([&](auto... points) { canvas->drawPoints(white, 4.f, points...); });
    check([&](auto... points) { canvas->drawTriangles(white, points...); });
    check([&](auto... points) { canvas->drawTriangleStrip(white, points...); });
    check([&](auto... points) { canvas->drawTriangleFan(white, points...); });
}

} // namespace

/// Which commands of a canvas become one because they are apart from those in between.

#include "canvas/apart.hpp"

#include <glm/gtc/matrix_transform.hpp>
#include <vellis/texture.hpp>

#include "canvas/canvas_fixture.hpp"
#include "support/special_numbers.hpp"

namespace vellis::test {
namespace {

const glm::vec4 white(1.f);
const glm::vec4 halfBlue(0.f, 0.f, 1.f, .5f);

/// The window of the fixture.
const glm::mat4 pixelMatrix = glm::ortho(0.f, 200.f, 0.f, 100.f);

class ApartTrace : public CanvasTest {
protected:
    /// A line and a point below it, all of them in the upper half of the window.
    void pair(unsigned int i) {
        const glm::vec2 place(10.f + 20.f * static_cast<float>(i % 9),
                              60.f + 20.f * static_cast<float>(i / 9));
        canvas->drawLines(white, {place, place + glm::vec2(5.f, 0.f)});
        canvas->drawPoints(white, 2.f, {place - glm::vec2(0.f, 8.f)});
    }

    /// So many of them, and how many draws they are with what comes first and last.
    template <class First, class Last>
    std::size_t numDraws(unsigned int numPairs, First first, Last last) {
        return drawsOf(
                   [&] {
                       first();
                       for (unsigned int i = 0; i < numPairs; ++i)
                           pair(i);
                       last();
                   },
                   pixelMatrix)
            .size();
    }
    std::size_t numDraws(unsigned int numPairs) {
        return numDraws(
            numPairs, [] {}, [] {});
    }
};

TEST_F(ApartTrace, AlternatingCallsThatAreApartAreADrawOfEachKind) {
    EXPECT_EQ(drawsOf(
                  [&] {
                      for (unsigned int i = 0; i < 10; ++i)
                          pair(i);
                  },
                  pixelMatrix),
              Lines({quadsDrawn(0, 10), trianglesDrawn(0, 30)}));
}

TEST_F(ApartTrace, FewCommandsAreLeftAsTheyAre) {
    EXPECT_EQ(numDraws(canvas::fewestToJoin / 2 - 1), canvas::fewestToJoin - 2);
    EXPECT_EQ(numDraws(canvas::fewestToJoin / 2), 2u);
}

TEST_F(ApartTrace, WhatTouchesOneInBetweenIsADrawOfItsOwn) {
    // The last line goes through a point.
    const auto cross = [&] { canvas->drawLines(white, {{30.f, 45.f}, {30.f, 65.f}}); };
    const auto besides = [&] { canvas->drawLines(white, {{40.f, 5.f}, {40.f, 15.f}}); };
    EXPECT_EQ(numDraws(
                  9, [] {}, cross),
              3u);
    EXPECT_EQ(numDraws(
                  9, [] {}, besides),
              2u);
}

TEST_F(ApartTrace, WidthsMitersSizesAndOffsetsReachFarther) {
    // The same below the pairs first and last: it can join the first where it does not reach them.
    const auto numDrawsBetween = [&](auto draw) {
        return numDraws(9, draw, [&] {
            canvas->drawLines(Stroke::aliased(white), {{150.f, 85.f}, {155.f, 85.f}});
            draw();
        });
    };
    const auto line = [&](float width) {
        return [=] { canvas->drawLines({white, width}, {{20.f, 30.f}, {40.f, 30.f}}); };
    };
    EXPECT_EQ(numDrawsBetween(line(10.f)), 3u);
    EXPECT_EQ(numDrawsBetween(line(40.f)), 4u);
    const auto point = [&](float size) {
        return [=] { canvas->drawPoints(white, size, {{20.f, 30.f}}); };
    };
    EXPECT_EQ(numDrawsBetween(point(10.f)), 3u);
    EXPECT_EQ(numDrawsBetween(point(56.f)), 4u);
    const auto strip = [&](Stroke::Join join) {
        return [=] {
            Stroke stroke(white, 10.f);
            stroke.join = join;
            stroke.miterLimit = 8.f;
            canvas->drawLineStrip(stroke, {{30.f, 10.f}, {32.f, 30.f}, {34.f, 10.f}});
        };
    };
    EXPECT_EQ(numDrawsBetween(strip(Stroke::Join::Round)), 4u);
    EXPECT_EQ(numDrawsBetween(strip(Stroke::Join::Miter)), 5u);
    const auto texture = Texture2D<glm::u8vec4>::make(1, 1);
    const auto image = [&](float size) {
        return [=] {
            const PixelQuad quad = {{0.f, 0.f}, {size, 0.f}, {0.f, size}, {}};
            canvas->drawQuads(texture, {}, white, glm::dvec3(40., 10., 0.), &quad, 1);
        };
    };
    EXPECT_EQ(numDrawsBetween(image(10.f)), 4u);
    EXPECT_EQ(numDrawsBetween(image(40.f)), 5u);
}

TEST_F(ApartTrace, WhatIsUnknownIsEverywhere) {
    const auto inBetween = [&](auto draw) {
        return [this, draw] {
            draw();
            canvas->drawLines(white, {{150.f, 85.f}, {155.f, 85.f}});
        };
    };
    const auto none = [] {};
    // A half-transparent stroke whose pixels are painted once.
    const auto stroke = [&] { canvas->drawLineStrip({halfBlue, 3.f}, {{2, 2}, {9, 2}, {9, 9}}); };
    EXPECT_EQ(numDraws(9, none, inBetween(stroke)), numDraws(9, none, stroke) + 1);
    // Many records.
    const std::vector<glm::vec2> many(100, glm::vec2(5.f, 5.f));
    EXPECT_EQ(numDraws(9, none, inBetween([&] { canvas->drawTriangles(white, many); })), 4u);
    const std::vector<glm::vec2> few(30, glm::vec2(5.f, 5.f));
    EXPECT_EQ(numDraws(9, none, inBetween([&] { canvas->drawTriangles(white, few); })), 3u);
    // A place behind the near plane.
    const glm::mat4 flat(glm::vec4(.01f, 0, 0, 0), glm::vec4(0, .02f, 0, 0), glm::vec4(0, 0, 1, 0),
                         glm::vec4(-1, -1, 0, 1));
    for (const float z : {0.f, -2.f}) {
        const Lines draws = drawsOf(
            [&] {
                for (unsigned int i = 0; i < 9; ++i)
                    pair(i);
                canvas->drawTriangles(white, std::vector<glm::vec3>(3, glm::vec3(5.f, 5.f, z)));
                canvas->drawLines(white, {{150.f, 85.f}, {155.f, 85.f}});
            },
            flat);
        EXPECT_EQ(draws.size(), z == 0.f ? 3u : 4u) << z;
    }
}

TEST_F(ApartTrace, WhatIsNowhereIsDrawnInItsOrder) {
    glm::mat4 infinite(1e38f); // the places are beyond all numbers
    glm::mat4 none(1.f);       // infinite, divided by the same
    none[0] = glm::vec4(3e38f, 0.f, 0.f, 3e38f);
    for (const glm::mat4& matrix : {infinite, none}) {
        const Lines draws = drawsOf(
            [&] {
                for (unsigned int i = 0; i < 9; ++i)
                    pair(i);
            },
            matrix);
        EXPECT_EQ(draws.size(), 18u);
    }
}

TEST_F(ApartTrace, WhatIsLeftOutTouchesNothing) {
    EXPECT_EQ(numDraws(
                  9, [] {},
                  [&] {
                      canvas->drawPoints(white, nan, {{1.f, 1.f}});
                  }),
              2u);
}

TEST_F(ApartTrace, WhatLooksOtherwiseIsADrawOfItsOwn) {
    EXPECT_EQ(numDraws(
                  9, [] {},
                  [&] {
                      Stroke square(white, 1.f);
                      square.cap = Stroke::Cap::Square;
                      canvas->drawLines(square, {{40.f, 5.f}, {40.f, 15.f}});
                  }),
              3u);
}

TEST_F(ApartTrace, OneThatIsBlendedHasThoseBlendedThatItJoins) {
    const auto draw = [&](const glm::vec4& last) {
        return only(callsOf(
                        [&] {
                            for (unsigned int i = 0; i < 9; ++i) {
                                pair(i);
                                const float x = 10.f * static_cast<float>(i);
                                canvas->drawTriangles(i == 8 ? last : white,
                                                      {{x, 0.f}, {x + 4.f, 0.f}, {x, 4.f}});
                            }
                        },
                        pixelMatrix),
                    {"glDisable(GL_BLEND)", "glDraw"});
    };
    draw(white);
    EXPECT_EQ(draw(white), Lines({quadsDrawn(0, 9), trianglesDrawn(0, 27), "glDisable(GL_BLEND)",
                                  trianglesDrawn(0, 27)}));
    EXPECT_EQ(draw(halfBlue), Lines({quadsDrawn(0, 9), trianglesDrawn(0, 27), trianglesDrawn(0, 27),
                                     "glDisable(GL_BLEND)"})); // as it was
}

} // namespace
} // namespace vellis::test

/// What a canvas draws: order, places, pictures and what is left out.

#include <vellis/canvas.hpp>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>

#include <offscreen/image.hpp>

#include "canvas/star.hpp"
#include "support/render_test.hpp"
#include "support/special_numbers.hpp"

namespace {

using namespace vellis;
using test::halfBlue;
using test::infinity;
using test::nan;
using test::pixelMatrix;
using test::red;
using test::side;
using test::star;

const glm::vec4 green(0.f, 1.f, 0.f, 1.f);

using Bytes = std::vector<unsigned char>;

class CanvasRender : public RenderTest {
protected:
    CanvasRender() : RenderTest(side) {}

    /// The picture that \p draw draws in a batch of its own.
    template <class Draw>
    static Bytes draw(Draw drawing, const glm::mat4& matrix = pixelMatrix) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        const auto canvas = Canvas::make();
        canvas->begin(matrix);
        drawing(*canvas);
        canvas->end();
        return offscreen::readPixels(side, side).pixels;
    }

    static const unsigned char* at(const Bytes& picture, unsigned int x, unsigned int y) {
        return picture.data() + 4 * (std::size_t{side - 1 - y} * side + x);
    }

    static std::size_t numDifferent(const Bytes& a, const Bytes& b, int tolerance = 1) {
        std::size_t result = 0;
        for (std::size_t i = 0; i < a.size(); ++i)
            result += std::abs(a[i] - b[i]) > tolerance ? 1u : 0u;
        return result;
    }

    static bool isEmpty(const Bytes& picture) {
        for (std::size_t i = 0; i < picture.size(); i += 4) {
            if (picture[i] + picture[i + 1] + picture[i + 2] > 0)
                return false;
        }
        return true;
    }
};

// --- Order ---

/// Each draws a thing of a colour over the middle.
using DrawAtMiddle = void (*)(Canvas& canvas, const glm::vec4& color);

const std::vector<glm::vec2> acrossMiddle = {{20, 64}, {108, 64}};

const DrawAtMiddle kinds[] = {
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawLines(Stroke(color, 9.f), acrossMiddle);
    },
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawLineStrip(Stroke(color, 9.f), {{20, 64}, {50, 64}, {108, 64}});
    },
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawLineStrip(Stroke(color, 9.f).dashed({{90.f, 5.f}}),
                             {{20, 64}, {50, 64}, {108, 64}});
    },
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawPoints(color, 30.f, {{64, 64}});
    },
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawRect(color, {30, 30}, {90, 90});
    },
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawLines(Stroke::aliased(color), {{20, 64.5f}, {108, 64.5f}});
    },
    [](Canvas& canvas, const glm::vec4& color) {
        canvas.drawLines(Stroke(color, 9.f), {{20, 64, 0}, {108, 64, 0}});
    },
    [](Canvas& canvas, const glm::vec4& color) {
        const auto buffer = VertexAttributeBuffer<glm::vec2>::make(
            acrossMiddle, BufferUsage::Static, BufferAccess::Draw);
        canvas.drawLineStrip(Stroke(color, 9.f), 0, 2, buffer);
    },
};

TEST_F(CanvasRender, WhatIsDrawnLaterLiesAbove) {
    for (std::size_t below = 0; below < std::size(kinds); ++below) {
        for (std::size_t above = 0; above < std::size(kinds); ++above) {
            const Bytes picture = draw([&](Canvas& canvas) {
                kinds[below](canvas, red);
                kinds[above](canvas, green);
            });
            const unsigned char* const middle = at(picture, 64, 64);
            EXPECT_EQ(middle[0], 0) << above << " above " << below;
            EXPECT_EQ(middle[1], 255) << above << " above " << below;
        }
    }
}

TEST_F(CanvasRender, ManyBatchesAndCallsDrawWhatOneDoes) {
    const auto drawStar = [](Canvas& canvas, std::size_t i) {
        canvas.drawLines(Stroke(halfBlue, 3.f), {star[i], star[(i + 1) % star.size()]});
        canvas.drawPoints(red, 5.f, {star[i]});
    };
    const Bytes once = draw([&](Canvas& canvas) {
        for (std::size_t i = 0; i < star.size(); ++i)
            drawStar(canvas, i);
    });
    const Bytes often = draw([&](Canvas& canvas) {
        for (std::size_t i = 0; i < star.size(); ++i) {
            drawStar(canvas, i);
            canvas.flush();
            canvas.end();
            canvas.begin(pixelMatrix);
        }
    });
    EXPECT_EQ(numDifferent(once, often, 0), 0u);
}

TEST_F(CanvasRender, DrawsNothingOutsideOfABatch) {
    glClear(GL_COLOR_BUFFER_BIT);
    const auto canvas = Canvas::make();
    for (const DrawAtMiddle kind : kinds)
        kind(*canvas, red);
    canvas->flush();
    canvas->end();
    canvas->begin(pixelMatrix);
    canvas->end();
    for (const DrawAtMiddle kind : kinds)
        kind(*canvas, red);
    canvas->end();
    EXPECT_TRUE(isEmpty(offscreen::readPixels(side, side).pixels));
}

TEST_F(CanvasRender, OutlinedQuadsHaveTheColorsOfTheirOwnPoints) {
    const std::vector<glm::vec2> corners = {{10, 10}, {50, 10},  {50, 50},   {10, 50},
                                            {70, 70}, {110, 70}, {110, 110}, {70, 110}};
    std::vector<glm::vec4> colors(4, red);
    colors.resize(8, green);
    const Bytes each =
        draw([&](Canvas& canvas) { canvas.drawQuad(colors, Stroke(halfBlue, 3.f), corners); });
    EXPECT_EQ(at(each, 30, 30)[0], 255);
    EXPECT_EQ(at(each, 90, 90)[0], 0);
    EXPECT_EQ(at(each, 90, 90)[1], 255);
    colors.resize(5); // the last one stands for those that are missing
    EXPECT_EQ(
        draw([&](Canvas& canvas) { canvas.drawQuad(colors, Stroke(halfBlue, 3.f), corners); }),
        each);
}

// --- Half-transparent strokes ---

TEST_F(CanvasRender, HalfTransparentStrokesPaintEachPixelOnce) {
    const Bytes once =
        draw([](Canvas& canvas) { canvas.drawLineLoop(Stroke(halfBlue, 9.f), star); });
    const Bytes often = draw([](Canvas& canvas) {
        canvas.setOverlap(Canvas::Overlap::Often);
        canvas.drawLineLoop(Stroke(halfBlue, 9.f), star);
    });
    unsigned char brightest[2] = {};
    for (std::size_t i = 2; i < once.size(); i += 4) {
        brightest[0] = std::max(brightest[0], once[i]);
        brightest[1] = std::max(brightest[1], often[i]);
    }
    if (glGenFramebuffers == nullptr)
        GTEST_SKIP() << "the context has no framebuffer objects";
    EXPECT_NEAR(brightest[0], 128, 1);
    EXPECT_NEAR(brightest[1], 192, 2);
}

TEST_F(CanvasRender, HalfTransparentStrokesOfAnyLengthPaintEachPixelOnce) {
    if (glGenFramebuffers == nullptr)
        GTEST_SKIP() << "the context has no framebuffer objects";
    std::vector<glm::vec2> points;
    for (int i = 0; i < 30000; ++i) {
        const float angle = static_cast<float>(i) * 0.01f;
        points.emplace_back(64.f + 50.f * std::cos(angle), 64.f + 50.f * std::sin(3.f * angle));
    }
    const Bytes picture =
        draw([&](Canvas& canvas) { canvas.drawLineStrip(Stroke(halfBlue, 6.f), points); });
    unsigned char brightest = 0;
    for (std::size_t i = 2; i < picture.size(); i += 4)
        brightest = std::max(brightest, picture[i]);
    EXPECT_NEAR(brightest, 128, 1);
}

// --- Dashes ---

TEST_F(CanvasRender, DashesThatEndAtAJointAreDrawnOnce) {
    struct Row {
        const char* name;
        Stroke::Cap cap;
        Stroke::Dash dash;
        std::vector<glm::vec2> points;
        float area; ///< in pixels
        float tolerance;
    };
    const float pi = 3.14159265f;
    const std::vector<glm::vec2> straight = {{10, 40}, {64, 40}, {118, 40}};
    const std::vector<glm::vec2> corner = {{64, 10}, {64, 64}, {118, 64}};
    // Both pieces draw a dot where they meet, and so its edge twice.
    const Row rows[] = {
        {"a dot on a straight line", Stroke::Cap::Round, {0.f, 108.f}, straight, 16.f * pi, 4.f},
        {"a dot at a corner", Stroke::Cap::Round, {0.f, 108.f}, corner, 16.f * pi, 5.f},
        {"a dash behind a point",
         Stroke::Cap::Round,
         {3.f, 105.f},
         straight,
         24.f + 16.f * pi,
         1.f},
        {"a dash behind a corner", Stroke::Cap::Butt, {3.f, 105.f}, corner, 24.f, 1.f},
    };
    for (const Row& row : rows) {
        Stroke stroke = Stroke(red, 8.f).dashed({row.dash}, 54.f);
        stroke.cap = row.cap;
        const Bytes picture =
            draw([&](Canvas& canvas) { canvas.drawLineStrip(stroke, row.points); });
        float area = 0.f;
        for (std::size_t i = 0; i < picture.size(); i += 4)
            area += static_cast<float>(picture[i]) / 255.f;
        EXPECT_NEAR(area, row.area, row.tolerance) << row.name;
    }
}

// --- Places ---

TEST_F(CanvasRender, PointTypesAndFormsDrawTheSame) {
    std::vector<glm::vec3> in3D;
    std::vector<glm::dvec2> inDouble;
    std::vector<glm::dvec3> inDouble3D;
    for (const glm::vec2& point : star) {
        in3D.emplace_back(point, 0.f);
        inDouble.emplace_back(point);
        inDouble3D.emplace_back(point, 0.);
    }
    const Stroke stroke(halfBlue, 5.f);
    const Bytes expected = draw([&](Canvas& canvas) { canvas.drawLineLoop(stroke, star); });
    const auto drawsTheSame = [&](const auto& points) {
        return numDifferent(draw([&](Canvas& canvas) { canvas.drawLineLoop(stroke, points); }),
                            expected);
    };
    EXPECT_EQ(drawsTheSame(in3D), 0u);
    EXPECT_EQ(drawsTheSame(inDouble), 0u);
    EXPECT_EQ(drawsTheSame(inDouble3D), 0u);
    EXPECT_EQ(drawsTheSame(Points(star.data(), star.size())), 0u);
    const auto buffer =
        VertexAttributeBuffer<glm::vec2>::make(star, BufferUsage::Static, BufferAccess::Draw);
    const auto buffer3D =
        VertexAttributeBuffer<glm::vec3>::make(in3D, BufferUsage::Static, BufferAccess::Draw);
    EXPECT_EQ(
        numDifferent(draw([&](Canvas& canvas) { canvas.drawLineLoop(stroke, 0, 100, buffer); }),
                     expected),
        0u);
    EXPECT_EQ(
        numDifferent(draw([&](Canvas& canvas) { canvas.drawLineLoop(stroke, 0, 5, buffer3D); }),
                     expected),
        0u);
}

TEST_F(CanvasRender, TransformsMoveThePointsOfLaterCallsAlone) {
    std::vector<glm::vec2> moved;
    for (const glm::vec2& point : star)
        moved.push_back(point * 0.5f + glm::vec2(11.25f, 7.5f));
    const glm::mat4 transform = glm::scale(
        glm::translate(glm::mat4(1.f), glm::vec3(11.25f, 7.5f, 0.f)), glm::vec3(0.5f, 0.5f, 1.f));
    const Bytes expected = draw([&](Canvas& canvas) {
        canvas.drawLineStrip(Stroke(red, 3.f), star);
        canvas.drawLineStrip(Stroke(halfBlue, 3.f), moved);
        canvas.drawPoints(green, 7.f, moved);
    });
    const Bytes drawn = draw([&](Canvas& canvas) {
        canvas.drawLineStrip(Stroke(red, 3.f), star);
        canvas.setTransform(transform);
        canvas.drawLineStrip(Stroke(halfBlue, 3.f), star);
        canvas.drawPoints(green, 7.f, star);
    });
    EXPECT_EQ(numDifferent(drawn, expected), 0u);
}

TEST_F(CanvasRender, ProjectiveTransformsDivide) {
    glm::mat4 halves(1.f);
    halves[3][3] = 2.f;
    const Bytes expected = draw([&](Canvas& canvas) {
        canvas.setTransform(glm::scale(glm::mat4(1.f), glm::vec3(0.5f)));
        canvas.drawLineStrip(Stroke(red, 3.f), star);
    });
    const Bytes drawn = draw([&](Canvas& canvas) {
        canvas.setTransform(halves);
        canvas.drawLineStrip(Stroke(red, 3.f), star);
    });
    EXPECT_EQ(numDifferent(drawn, expected), 0u);
}

TEST_F(CanvasRender, WorldCoordinatesOfTenMillionDrawRightWithAnOrigin) {
    const glm::dvec3 corner(10000000.25, -20000000.5, 0.);
    std::vector<glm::dvec2> world;
    for (const glm::vec2& point : star)
        world.push_back(glm::dvec2(corner) + glm::dvec2(point) * 0.78);
    std::vector<glm::vec2> local;
    for (const glm::vec2& point : star)
        local.push_back(point * 0.78f);
    const glm::mat4 view = glm::ortho<float>(0.f, 100.f, 0.f, 100.f);
    const auto drawIn = [](const auto& points) {
        return [&points](Canvas& canvas) {
            canvas.drawLineLoop(Stroke(halfBlue, 3.f), points);
            canvas.drawPoints(red, 7.5f, points);
            canvas.drawTriangleFan(halfBlue, points);
        };
    };
    const Bytes expected = draw(drawIn(local), view);
    const Bytes drawn = draw(
        [&](Canvas& canvas) {
            canvas.setOrigin(corner);
            drawIn(world)(canvas);
        },
        view);
    EXPECT_LE(numDifferent(drawn, expected, 2), 8u); // at edges of triangles
}

TEST_F(CanvasRender, PixelRatioScalesWidthsSizesAndDashes) {
    const Bytes expected = draw([&](Canvas& canvas) {
        canvas.drawLineStrip(Stroke(red, 6.f).dashed({{14.f, 8.f}}, 3.f), star);
        canvas.drawPoints(halfBlue, 20.f, star);
    });
    const Bytes drawn = draw([&](Canvas& canvas) {
        canvas.setPixelRatio(2.f);
        canvas.drawLineStrip(Stroke(red, 3.f).dashed({{7.f, 4.f}}, 1.5f), star);
        canvas.drawPoints(halfBlue, 10.f, star);
    });
    EXPECT_EQ(numDifferent(drawn, expected), 0u);
}

// --- Pictures ---

TEST_F(CanvasRender, PicturesDrawWhatTheirCallsDo) {
    const auto drawing = [](Canvas& canvas) {
        canvas.drawTriangleFan(green, star);
        canvas.drawLineLoop(Stroke(halfBlue, 7.f), star);
        canvas.drawLines(Stroke(red, 2.f).dashed({{5.f, 3.f}}), star);
        canvas.drawPoints(red, 9.f, star);
        canvas.drawLineStrip(Stroke::aliased(red), star);
    };
    const glm::mat4 matrix = glm::rotate(pixelMatrix, 0.1f, glm::vec3(0.f, 0.f, 1.f));
    const Bytes expected = draw(drawing, matrix);
    const auto canvas = Canvas::make();
    canvas->beginPicture(matrix);
    drawing(*canvas);
    const auto picture = canvas->endPicture();
    ASSERT_NE(picture, nullptr);
    const Bytes drawn = draw([&](Canvas& other) { other.drawPicture(picture); }, matrix);
    EXPECT_LE(numDifferent(drawn, expected, 2), 40u); // at edges of triangles
}

TEST_F(CanvasRender, WidthsOfPicturesStayInPixels) {
    const auto canvas = Canvas::make();
    canvas->beginPicture(pixelMatrix);
    canvas->drawLines(Stroke(red, 4.f), {{10, 20}, {50, 20}});
    const auto picture = canvas->endPicture();
    const Bytes drawn = draw([&](Canvas& other) {
        other.setTransform(glm::scale(glm::mat4(1.f), glm::vec3(2.f, 3.f, 1.f)));
        other.drawPicture(picture);
    });
    const Bytes expected = draw([&](Canvas& other) {
        other.drawLines(Stroke(red, 4.f), {{20, 60}, {100, 60}});
    });
    EXPECT_EQ(numDifferent(drawn, expected), 0u);
}

TEST_F(CanvasRender, PicturesStayWhereTheirOriginWas) {
    const auto canvas = Canvas::make();
    const glm::dvec3 first(5000000., 6000000., 0.);
    canvas->setOrigin(first);
    canvas->beginPicture(pixelMatrix);
    std::vector<glm::dvec2> world;
    for (const glm::vec2& point : star)
        world.push_back(glm::dvec2(first) + glm::dvec2(point));
    canvas->drawLineStrip(Stroke(red, 3.f), world);
    const auto picture = canvas->endPicture();
    const glm::dvec3 second = first + glm::dvec3(16., -8., 0.);
    const Bytes drawn = draw([&](Canvas& other) {
        other.setOrigin(second);
        other.drawPicture(picture);
    });
    const Bytes expected = draw([&](Canvas& other) {
        other.setOrigin(second);
        other.drawLineStrip(Stroke(red, 3.f), world);
    });
    EXPECT_EQ(numDifferent(drawn, expected), 0u);
    EXPECT_FALSE(isEmpty(drawn));
}

// --- Bad input ---

TEST_F(CanvasRender, PiecesOfPointsThatAreNotFiniteAreLeftOut) {
    for (const float bad : {nan, infinity, -infinity}) {
        const glm::vec2 gap(bad, 3.f);
        const Bytes drawn = draw([&](Canvas& canvas) {
            canvas.drawLineStrip(Stroke(red, 3.f),
                                 {{5, 5}, {20, 9}, gap, {60, 9}, {90, 20}, {99, 5}});
            canvas.drawLineLoop(Stroke(halfBlue, 3.f),
                                {{5, 45}, {20, 49}, gap, {60, 49}, {90, 60}});
            canvas.drawLines(Stroke(red, 3.f), {{5, 80}, gap, {10, 70}, {50, 70}});
            canvas.drawTriangles(green, {{5, 90}, gap, {9, 99}, {60, 80}, {70, 80}, {65, 99}});
            canvas.drawTriangleStrip(green,
                                     {{80, 90}, {90, 90}, {80, 99}, {90, 99}, gap, {95, 95}});
            canvas.drawPoints(red, 9.f, {gap, {110, 110}});
        });
        const Bytes expected = draw([&](Canvas& canvas) {
            canvas.drawLineStrip(Stroke(red, 3.f), {{5, 5}, {20, 9}});
            canvas.drawLineStrip(Stroke(red, 3.f), {{60, 9}, {90, 20}, {99, 5}});
            canvas.drawLineStrip(Stroke(halfBlue, 3.f), {{60, 49}, {90, 60}, {5, 45}, {20, 49}});
            canvas.drawLines(Stroke(red, 3.f), {{10, 70}, {50, 70}});
            canvas.drawTriangles(green, {{60, 80}, {70, 80}, {65, 99}});
            canvas.drawTriangleStrip(green, {{80, 90}, {90, 90}, {80, 99}, {90, 99}});
            canvas.drawPoints(red, 9.f, {{110, 110}});
        });
        EXPECT_EQ(numDifferent(drawn, expected), 0u) << bad;
    }
}

TEST_F(CanvasRender, WidthsAndSizesThatAreNoneDrawNothing) {
    for (const float bad : {0.f, -3.f, nan, infinity, -infinity}) {
        EXPECT_TRUE(isEmpty(draw([&](Canvas& canvas) {
            canvas.drawLineLoop(Stroke(red, bad), star);
            canvas.drawLines(Stroke(red, bad), star);
            canvas.drawPoints(red, bad, star);
            const auto buffer = VertexAttributeBuffer<glm::vec2>::make(star, BufferUsage::Static,
                                                                       BufferAccess::Draw);
            canvas.drawLineLoop(Stroke(red, bad), 0, 5, buffer);
            canvas.drawPoints(red, bad, 0, 5, buffer);
        }))) << bad;
    }
}

TEST_F(CanvasRender, EmptyAndNullPointsDrawNothing) {
    EXPECT_TRUE(isEmpty(draw([&](Canvas& canvas) {
        const std::vector<glm::vec2> nothing;
        const glm::vec2* const null = nullptr;
        const std::shared_ptr<VertexAttributeBuffer<glm::vec2>> noBuffer;
        canvas.drawLineLoop(red, nothing);
        canvas.drawLineStrip(red, 5, null);
        canvas.drawLines(red, nothing);
        canvas.drawPoints(red, 5.f, 5, null);
        canvas.drawPoints(std::vector<glm::vec4>(), 5.f, star);
        canvas.drawPoints(red, std::vector<float>(), star);
        canvas.drawTriangles(red, nothing);
        canvas.drawQuad(red, nothing);
        canvas.drawLineStrip(red, 0, 5, noBuffer);
        canvas.drawPicture(nullptr);
        canvas.drawLineStrip(Stroke(red, 9.f), {{50, 50}});
        canvas.drawLineStrip(Stroke(red, 9.f), {{50, 50}, {50, 50}, {50, 50}});
    })));
}

TEST_F(CanvasRender, LinesOfOnePointAreDotsWithRoundCaps) {
    Stroke stroke(red, 20.f);
    stroke.cap = Stroke::Cap::Round;
    const Bytes expected = draw([&](Canvas& canvas) { canvas.drawPoints(red, 20.f, {{50, 50}}); });
    const std::vector<std::vector<glm::vec2>> lines = {{{50, 50}}, {{50, 50}, {50, 50}}};
    for (const auto& line : lines) {
        EXPECT_EQ(numDifferent(draw([&](Canvas& canvas) { canvas.drawLineStrip(stroke, line); }),
                               expected),
                  0u);
        EXPECT_EQ(numDifferent(draw([&](Canvas& canvas) { canvas.drawLineLoop(stroke, line); }),
                               expected),
                  0u);
    }
    EXPECT_EQ(
        numDifferent(draw([&](Canvas& canvas) { canvas.drawLines(stroke, lines[1]); }), expected),
        0u);
}

TEST_F(CanvasRender, DashesThatAddUpToNothingAreSolid) {
    const Bytes expected =
        draw([&](Canvas& canvas) { canvas.drawLineStrip(Stroke(red, 3.f), star); });
    const std::vector<std::vector<Stroke::Dash>> patterns = {
        {{0.f, 0.f}}, {{5.f, 0.f}}, {{-1.f, 5.f}}, {{nan, 5.f}}, {{5.f, infinity}}};
    for (const auto& pattern : patterns) {
        const Bytes drawn = draw([&](Canvas& canvas) {
            canvas.drawLineStrip(Stroke(red, 3.f).dashed({pattern[0]}), star);
        });
        EXPECT_EQ(numDifferent(drawn, expected), 0u) << pattern[0].length << ", " << pattern[0].gap;
    }
}

TEST_F(CanvasRender, MatricesThatAreNotFiniteDrawNothing) {
    EXPECT_TRUE(isEmpty(draw([&](Canvas& canvas) {
        glm::mat4 bad(1.f);
        bad[2][1] = nan;
        canvas.setTransform(bad);
        for (const DrawAtMiddle kind : kinds)
            kind(canvas, red);
    })));
    EXPECT_TRUE(isEmpty(draw([&](Canvas& canvas) { kinds[0](canvas, red); }, glm::mat4(nan))));
}

TEST_F(CanvasRender, AMillionCallsDraw) {
    const Bytes drawn = draw([&](Canvas& canvas) {
        for (int i = 0; i < 1000000; ++i) {
            const float x = static_cast<float>(i % 128);
            canvas.drawLines(Stroke::aliased(red), {{x, 64.5f}, {x + 2.f, 64.5f}});
        }
    });
    EXPECT_EQ(at(drawn, 64, 64)[0], 255);
}

} // namespace

/// What a canvas does to draw images.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/texture.hpp>

#include "canvas/canvas_fixture.hpp"
#include "canvas/drawing.hpp"
#include "support/special_numbers.hpp"

namespace {

using namespace vellis;
using vellis::test::infinity;
using vellis::test::Lines;
using vellis::test::nan;
using vellis::test::only;

using Corner = canvas::ImageCorner<2>;

class ImagesTrace : public test::CanvasTest {
protected:
    ImagesTrace() { texture = Texture2D<unsigned char>::make(4, 4); }

    void TearDown() override {
        texture.reset();
        CanvasTest::TearDown();
    }

    void drawImage(const ImageFrame& at) { canvas->drawImage(texture, at); }

    /// The name of the buffer that images go through.
    GLuint buffer() const { return 2; }

    std::shared_ptr<Texture> texture; // whose name is 1
    const ImageFrame frame = ImageFrame({1., 2.}, {5., 4.});
};

TEST_F(ImagesTrace, AreQuadsOfOneCall) {
    const auto draw = [&] {
        drawImage(frame);
        canvas->drawImage(texture, {{0., 0.}, {1., 1.}}, {{0.5f, 1.f}, {1.f, 0.f}}, transparent);
    };
    const Lines calls = only(laterCallsOf(draw), {"glUseProgram", "glUniform", "glActive",
                                                  "glBindTexture", "glDraw", "glBindSampler"});
    ASSERT_GE(calls.size(), 8u);
    EXPECT_EQ(Lines(calls.begin() + 3, calls.end() - 1),
              Lines({"glUniform1i(22, 15)", "glActiveTexture(GL_TEXTURE15)",
                     "glBindTexture(GL_TEXTURE_2D, 1)", test::quadsDrawn(0, 2),
                     "glBindTexture(GL_TEXTURE_2D, 0)", "glActiveTexture(GL_TEXTURE0)"}));
    const auto corners = gl.bufferContents<Corner>(buffer());
    const glm::vec2 places[] = {{1.f, 2.f}, {5.f, 2.f}, {1.f, 4.f}, {5.f, 4.f},
                                {0.f, 0.f}, {1.f, 0.f}, {0.f, 1.f}, {1.f, 1.f}};
    const glm::vec2 parts[] = {{0.f, 0.f},  {1.f, 0.f}, {0.f, 1.f},  {1.f, 1.f},
                               {0.5f, 1.f}, {1.f, 1.f}, {0.5f, 0.f}, {1.f, 0.f}};
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(glm::vec2(corners[i].position[0], corners[i].position[1]), places[i]) << i;
        EXPECT_EQ(glm::vec2(corners[i].part[0], corners[i].part[1]), parts[i]) << i;
        EXPECT_EQ(glm::vec2(corners[i].offset[0], corners[i].offset[1]), glm::vec2(0.f)) << i;
        EXPECT_EQ(int{corners[i].color.a}, i < 4 ? 255 : 128) << i;
    }
}

TEST_F(ImagesTrace, TakeTheLastUnitAndItsSampler) {
    gl.setState(GL_MAX_TEXTURE_IMAGE_UNITS, {8});
    canvas = Canvas::make();
    gl.setState(GL_SAMPLER_BINDING, {6});
    const auto draw = [&] { drawImage(frame); };
    const Lines calls = only(laterCallsOf(draw), {"glActive", "glBindTexture", "glBindSampler",
                                                  "glDraw", "glUniform1i"});
    EXPECT_EQ(calls, Lines({"glUniform1i(22, 7)", "glActiveTexture(GL_TEXTURE7)",
                            "glBindTexture(GL_TEXTURE_2D, 1)", "glBindSampler(7, 0)",
                            test::quadsDrawn(0, 1), "glBindSampler(7, 6)",
                            "glBindTexture(GL_TEXTURE_2D, 0)", "glActiveTexture(GL_TEXTURE0)"}));
}

TEST_F(ImagesTrace, KeepTheOrderAmongOthers) {
    const auto draw = [&] {
        drawImage(frame);
        canvas->drawTriangles(white, corner);
        drawImage(frame);
    };
    EXPECT_EQ(drawsOf(draw),
              Lines({test::quadsDrawn(0, 1), test::trianglesDrawn(0, 3), test::quadsDrawn(1, 1)}));
}

TEST_F(ImagesTrace, OfTwoTexturesAreTwoCalls) {
    const auto other = Texture2D<unsigned char>::make(4, 4);
    const auto draw = [&] {
        drawImage(frame);
        canvas->drawImage(other, frame);
    };
    EXPECT_EQ(drawsOf(draw), Lines({test::quadsDrawn(0, 1), test::quadsDrawn(1, 1)}));
}

TEST_F(ImagesTrace, QuadsStandInPixelsAroundAPlace) {
    const PixelQuad quad = {{1.f, 2.f}, {3.f, 0.f}, {0.f, 4.f}, {{0.f, 0.f}, {0.5f, 0.5f}}};
    const auto draw = [&] {
        canvas->drawQuads(texture, {}, white, {7., 8., 0.}, &quad, 1);
        canvas->setPixelsDownward(true);
        canvas->drawQuads(texture, {}, white, {7., 8., 0.}, &quad, 1);
        canvas->setPixelsDownward(false);
    };
    EXPECT_EQ(drawsOf(draw), Lines({test::quadsDrawn(0, 2)}));
    const auto corners = gl.bufferContents<Corner>(buffer());
    const glm::vec2 offsets[] = {{1.f, 2.f},  {4.f, 2.f},  {1.f, 6.f},  {4.f, 6.f},
                                 {1.f, -2.f}, {4.f, -2.f}, {1.f, -6.f}, {4.f, -6.f}};
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(glm::vec2(corners[i].position[0], corners[i].position[1]), glm::vec2(7.f, 8.f));
        EXPECT_EQ(glm::vec2(corners[i].offset[0], corners[i].offset[1]), offsets[i]) << i;
    }
}

TEST_F(ImagesTrace, QuadsThatAreNotFiniteLeaveNoGapBetweenTheOthers) {
    std::vector<PixelQuad> quads;
    for (int i = 0; i < 5; ++i)
        quads.push_back({{static_cast<float>(i), 0.f}, {1.f, 0.f}, {0.f, 1.f}, {}});
    quads[0].up.y = quads[2].corner.x = quads[3].part.to.y = nan;
    const auto draw = [&] {
        canvas->drawQuads(texture, {}, white, {}, quads.data(), quads.size());
    };
    EXPECT_EQ(drawsOf(draw), Lines({test::quadsDrawn(0, 2)}));
    const auto corners = gl.bufferContents<Corner>(buffer());
    EXPECT_EQ(corners[0].offset[0], 1.f);
    EXPECT_EQ(corners[4].offset[0], 4.f);
}

TEST_F(ImagesTrace, MoreQuadsThanThereIsRoomForAreSeveralCalls) {
    constexpr std::size_t most = 4096;
    const PixelQuad quad = {{}, {3.f, 0.f}, {0.f, 4.f}, {}};
    const std::vector<PixelQuad> quads(2 * most + 5, quad);
    const auto draw = [&] {
        canvas->drawQuads(texture, {}, white, {}, quads.data(), quads.size());
    };
    EXPECT_EQ(drawsOf(draw), Lines({test::quadsDrawn(0, most), test::quadsDrawn(0, most),
                                    test::quadsDrawn(0, 5)}));
}

TEST_F(ImagesTrace, StylesHaveProgramsOfTheirOwn) {
    const PixelQuad quad = {{}, {3.f, 0.f}, {0.f, 4.f}, {}};
    for (const Texels texels : {Texels::Colors, Texels::Coverage}) {
        for (const bool onWholePixels : {false, true}) {
            const auto draw = [&] {
                canvas->drawQuads(texture, {texels, onWholePixels}, white, {}, &quad, 1);
            };
            const Lines sources = only(callsOf(draw), {"glShaderSource"});
            ASSERT_EQ(sources.size(), 2u);
            for (const std::string& source : sources) {
                EXPECT_EQ(source.find("#define COVERAGE") != std::string::npos,
                          texels == Texels::Coverage);
                EXPECT_EQ(source.find("#define WHOLE_PIXELS") != std::string::npos, onWholePixels);
            }
        }
    }
}

TEST_F(ImagesTrace, AreColorsOnPartsOfPixelsByDefault) {
    const PixelQuad quad = {{}, {3.f, 0.f}, {0.f, 4.f}, {}};
    const Lines sources = only(
        callsOf([&] { canvas->drawQuads(texture, {}, white, {}, &quad, 1); }), {"glShaderSource"});
    ASSERT_EQ(sources.size(), 2u);
    for (const std::string& source : sources) {
        EXPECT_EQ(source.find("#define COVERAGE"), std::string::npos);
        EXPECT_EQ(source.find("#define WHOLE_PIXELS"), std::string::npos);
    }
}

TEST_F(ImagesTrace, ThatCannotBeDrawnAreLeftOut) {
    const auto line = Texture1D<unsigned char>::make(4);
    const PixelQuad quads[] = {{{nan, 0.f}, {1.f, 0.f}, {0.f, 1.f}, {}},
                               {{0.f, 0.f}, {1.f, nan}, {0.f, 1.f}, {}},
                               {{0.f, 0.f}, {1.f, 0.f}, {nan, 1.f}, {}},
                               {{0.f, 0.f}, {1.f, 0.f}, {0.f, 1.f}, {{nan, 0.f}, {1.f, 1.f}}},
                               {{0.f, 0.f}, {1.f, 0.f}, {0.f, 1.f}, {{0.f, 0.f}, {1.f, nan}}}};
    const auto draw = [&] {
        canvas->drawImage(nullptr, frame);
        canvas->drawImage(line, frame);
        canvas->drawImage(texture, ImageFrame({0., 0.}, {infinity, 1.}));
        canvas->drawImage(texture, frame, {{nan, 0.f}, {1.f, 1.f}});
        canvas->drawQuads(nullptr, {}, white, {}, quads, 1);
        canvas->drawQuads(texture, {}, white, {}, nullptr, 1);
        canvas->drawQuads(texture, {}, white, {}, quads, 0);
        canvas->drawQuads(texture, {}, white, {0., infinity, 0.}, quads, 1);
        canvas->drawQuads(texture, {}, white, {}, quads, 5);
    };
    EXPECT_EQ(callsOf(draw), Lines());
}

TEST_F(ImagesTrace, OfADisposedTextureAreNotDrawn) {
    const auto draw = [&] {
        drawImage(frame);
        texture->dispose();
    };
    EXPECT_EQ(only(callsOf(draw), {"glDraw", "glBindTexture", "glActive"}), Lines());
}

TEST_F(ImagesTrace, KeepTheirTexture) {
    canvas->begin(glm::mat4(1.f));
    drawImage(frame);
    texture.reset();
    gl.forget();
    canvas->end();
    EXPECT_EQ(only(gl.takeCalls(), {"glDraw", "glDeleteTextures"}),
              Lines({test::quadsDrawn(0, 1), "glDeleteTextures(1, {1})"}));
}

TEST_F(ImagesTrace, OfAPictureStandInItsBufferOnce) {
    canvas->beginPicture(glm::mat4(1.f));
    drawImage(frame);
    drawImage(frame);
    auto picture = canvas->endPicture();
    EXPECT_EQ(picture->numBytes(), 2 * canvas::recordSize(canvas::Kind::Images, 2));
    texture.reset();
    EXPECT_EQ(drawsOf([&] { canvas->drawPicture(picture); }), Lines({test::quadsDrawn(0, 2)}));
    picture.reset();
    EXPECT_EQ(only(gl.takeCalls(), {"glDeleteTextures"}), Lines({"glDeleteTextures(1, {1})"}));
}

TEST_F(ImagesTrace, GoThroughOneBufferAgainAndAgain) {
    constexpr std::size_t most = canvas::mostCopied(canvas::Kind::Images);
    const auto draw = [&] {
        for (std::size_t i = 0; i < most + 3; ++i)
            drawImage(frame);
    };
    // A little room at the end is kept free.
    EXPECT_EQ(drawsOf(draw), Lines({test::quadsDrawn(0, most - 1), test::quadsDrawn(0, 4)}));
}

TEST_F(ImagesTrace, InSpaceHaveThreeCoordinates) {
    const PixelQuad quad = {{}, {3.f, 0.f}, {0.f, 4.f}, {}};
    callsOf([&] { canvas->drawQuads(texture, {}, white, {1., 2., 3.}, &quad, 1); });
    EXPECT_EQ(gl.bufferContents<canvas::ImageCorner<3>>(buffer())[3].position[2], 3.f);
}

TEST_F(ImagesTrace, FollowTheOriginInDoublePrecision) {
    canvas->setOrigin({1e9, 1e9, 0.});
    callsOf([&] { drawImage(ImageFrame({1e9 + 0.25, 1e9}, {1e9 + 1., 1e9 + 1.})); });
    EXPECT_EQ(gl.bufferContents<Corner>(buffer())[0].position[0], 0.25f);
}

TEST(ImageFrame, TurnsAboutItsMiddle) {
    const ImageFrame frame = ImageFrame({1., 2.}, {5., 4.}).rotated(std::acos(0.));
    const auto isNear = [](const glm::dvec2& a, const glm::dvec2& b) {
        return std::abs(a.x - b.x) < 1e-12 && std::abs(a.y - b.y) < 1e-12;
    };
    EXPECT_TRUE(isNear(frame.corner, {4., 1.}));
    EXPECT_TRUE(isNear(frame.right, {0., 4.}));
    EXPECT_TRUE(isNear(frame.up, {-2., 0.}));
}

} // namespace

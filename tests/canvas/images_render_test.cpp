/// Images of a canvas on a driver, texel by texel.

#include <vellis/canvas.hpp>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/texture.hpp>

#include <offscreen/image.hpp>

#include "canvas/scene_fixture.hpp"
#include "support/pixels.hpp"

namespace vellis::test {
namespace {

using Color = glm::vec<4, unsigned char>;

constexpr unsigned int columns = 4;
constexpr unsigned int rows = 3;

/// Texels that all differ.
std::vector<Color> colors() {
    std::vector<Color> texels;
    for (unsigned int y = 0; y < rows; ++y) {
        for (unsigned int x = 0; x < columns; ++x)
            texels.emplace_back(40 + 50 * x, 60 + 60 * y, 250 - 20 * x - 30 * y, 255);
    }
    return texels;
}

Color texelAt(unsigned int x, unsigned int y) {
    return colors()[y * columns + x];
}

class ImagesRender : public CanvasSceneTest {
protected:
    void SetUp() override {
        CanvasSceneTest::SetUp();
        if (!goesOn())
            return;
        texture = Texture2D<Color>::make(columns, rows, colors().data(), Sampler::nearest_clamp());
    }
    void TearDown() override {
        texture.reset();
        CanvasSceneTest::TearDown();
    }

    /// Leaves in `scene` what a batch draws on black.
    template <class Draw>
    void draw(Draw drawing) {
        scene = pictureOf(drawing);
    }

    /// A pixel, counted from the lower left corner.
    Color at(unsigned int x, unsigned int y) const {
        const std::size_t i = 4 * (std::size_t{scene.height - 1 - y} * scene.width + x);
        return {scene.pixels[i], scene.pixels[i + 1], scene.pixels[i + 2], 255};
    }

    /// How many pixels are not black.
    std::size_t numTouched() const {
        std::size_t count = 0;
        for (std::size_t i = 0; i < scene.pixels.size(); i += 4)
            count += scene.pixels[i] + scene.pixels[i + 1] + scene.pixels[i + 2] > 0 ? 1u : 0u;
        return count;
    }

    std::shared_ptr<Texture2D<Color>> texture;
    offscreen::Image scene;
};

bool isNear(const Color& a, const Color& b) {
    for (int i = 0; i < 3; ++i) {
        if (std::abs(a[i] - b[i]) > 1)
            return false;
    }
    return true;
}

TEST_F(ImagesRender, ShowEachTexelWhereItBelongs) {
    draw([&] { canvas->drawImage(texture, ImageFrame({10., 20.}, {18., 26.})); });
    EXPECT_EQ(numTouched(), 48u);
    for (unsigned int y = 0; y < 2 * rows; ++y) {
        for (unsigned int x = 0; x < 2 * columns; ++x)
            EXPECT_EQ(at(10 + x, 20 + y), texelAt(x / 2, y / 2)) << x << ", " << y;
    }
}

TEST_F(ImagesRender, AreTurnedAroundByExchangedCorners) {
    draw([&] {
        canvas->drawImage(texture, ImageFrame({14., 20.}, {10., 23.}));
        canvas->drawImage(texture, ImageFrame({10., 33.}, {14., 30.}));
        canvas->drawImage(texture, ImageFrame({10., 40.}, {14., 43.}), {{1.f, 1.f}, {0.f, 0.f}});
    });
    for (unsigned int y = 0; y < rows; ++y) {
        for (unsigned int x = 0; x < columns; ++x) {
            EXPECT_EQ(at(13 - x, 20 + y), texelAt(x, y));
            EXPECT_EQ(at(10 + x, 32 - y), texelAt(x, y));
            EXPECT_EQ(at(13 - x, 42 - y), texelAt(x, y));
        }
    }
}

TEST_F(ImagesRender, AreRotated) {
    // Half a pixel away from whole ones: a quarter turn makes 4 x 3 of them 3 x 4 whole ones.
    draw([&] {
        canvas->drawImage(texture,
                          ImageFrame({10.5, 20.5}, {14.5, 23.5}).rotated(std::acos(-1.) / 2.));
    });
    EXPECT_EQ(numTouched(), std::size_t{columns * rows});
    for (unsigned int y = 0; y < rows; ++y) {
        for (unsigned int x = 0; x < columns; ++x) {
            EXPECT_EQ(at(11 + rows - 1 - y, 20 + x), texelAt(x, y)) << x << ", " << y;
        }
    }
}

TEST_F(ImagesRender, ShowAPart) {
    draw([&] {
        canvas->drawImage(texture, ImageFrame({10., 20.}, {12., 21.}),
                          {{0.25f, 1.f / 3.f}, {0.75f, 2.f / 3.f}});
    });
    EXPECT_EQ(numTouched(), 2u);
    EXPECT_EQ(at(10, 20), texelAt(1, 1));
    EXPECT_EQ(at(11, 20), texelAt(2, 1));
}

TEST_F(ImagesRender, RepeatBeyondTheTexture) {
    texture->setSampler(Sampler::nearest_repeat());
    draw([&] {
        canvas->drawImage(texture, ImageFrame({10., 20.}, {18., 29.}), {{0.f, 0.f}, {2.f, 3.f}});
    });
    for (unsigned int y = 0; y < 3 * rows; ++y) {
        for (unsigned int x = 0; x < 2 * columns; ++x)
            EXPECT_EQ(at(10 + x, 20 + y), texelAt(x % columns, y % rows));
    }
}

TEST_F(ImagesRender, AreTintedAndBlended) {
    draw([&] {
        canvas->drawRect(white, {0.f, 0.f}, {40.f, 40.f});
        canvas->drawImage(texture, ImageFrame({10., 20.}, {14., 23.}), {}, {1.f, 0.f, 1.f, 0.5f});
    });
    const Color texel = texelAt(2, 1);
    EXPECT_TRUE(isNear(at(12, 21), Color((texel.r + 255) / 2, 127, (texel.b + 255) / 2, 255)));
}

TEST_F(ImagesRender, LieInTheOrderOfTheCalls) {
    draw([&] {
        canvas->drawImage(texture, ImageFrame({10., 20.}, {50., 50.}));
        canvas->drawRect({1.f, 0.f, 0.f, 1.f}, {10.f, 20.f}, {30.f, 50.f});
        canvas->drawImage(texture, ImageFrame({10., 20.}, {14., 23.}));
    });
    EXPECT_EQ(at(11, 21), texelAt(1, 1));
    EXPECT_EQ(at(20, 30), Color(255, 0, 0, 255));
    EXPECT_EQ(at(45, 45), texelAt(3, 2));
}

TEST_F(ImagesRender, FollowTheTransformAndStandInPictures) {
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawImage(texture, ImageFrame({0., 0.}, {4., 3.}));
    const auto picture = canvas->endPicture();
    draw([&] {
        canvas->setTransform(glm::translate(glm::mat4(1.f), glm::vec3(30.f, 40.f, 0.f)));
        canvas->drawPicture(picture);
        canvas->drawImage(texture, ImageFrame({10., 0.}, {14., 3.}));
    });
    for (unsigned int x = 0; x < columns; ++x) {
        EXPECT_EQ(at(30 + x, 42), texelAt(x, 2));
        EXPECT_EQ(at(40 + x, 42), texelAt(x, 2));
    }
}

TEST_F(ImagesRender, QuadsOfCoverageAreTheirTexelsByteForByte) {
    // Textures of one channel are not in OpenGL 2.1.
    std::vector<Color> texels;
    for (unsigned int i = 0; i < 256; ++i)
        texels.emplace_back(i, 0, 0, 0);
    const auto coverage = Texture2D<Color>::make(16, 16, texels.data(), Sampler::nearest_clamp());
    const PixelQuad quad = {{2.f, 3.f}, {16.f, 0.f}, {0.f, 16.f}, {}};
    for (const glm::dvec3& place :
         {glm::dvec3(30., 40., 0.), glm::dvec3(30.49, 39.51, 0.), glm::dvec3(29.6, 40.4, 0.)}) {
        draw([&] {
            canvas->drawQuads(coverage, {Texels::Coverage, true}, white, place, &quad, 1);
        });
        std::size_t numDifferent = 0;
        for (unsigned int y = 0; y < 16; ++y) {
            for (unsigned int x = 0; x < 16; ++x)
                numDifferent += at(32 + x, 43 + y).g != 16 * y + x ? 1u : 0u;
        }
        EXPECT_EQ(numDifferent, 0u) << place.x;
        EXPECT_EQ(numTouched(), 255u) << place.x;
    }
}

TEST_F(ImagesRender, QuadsKeepTheirSizeUnderAnyMatrix) {
    const PixelQuad quad = {{0.f, 0.f}, {4.f, 0.f}, {0.f, 3.f}, {}};
    draw([&] {
        canvas->setTransform(glm::scale(glm::mat4(1.f), glm::vec3(10.f)));
        canvas->drawQuads(texture, {}, white, {5., 6., 0.}, &quad, 1);
        canvas->setPixelsDownward(true);
        canvas->drawQuads(texture, {}, white, {8., 6., 0.}, &quad, 1);
        canvas->setPixelsDownward(false);
    });
    EXPECT_EQ(numTouched(), 2 * std::size_t{columns * rows});
    for (unsigned int x = 0; x < columns; ++x) {
        for (unsigned int y = 0; y < rows; ++y) {
            EXPECT_EQ(at(50 + x, 60 + y), texelAt(x, y));
            EXPECT_EQ(at(80 + x, 59 - y), texelAt(x, y));
        }
    }
}

TEST_F(ImagesRender, QuadsBehindTheViewerAreNotThere) {
    const PixelQuad quad = {{0.f, 0.f}, {4.f, 0.f}, {0.f, 3.f}, {}};
    const glm::mat4 view = glm::perspective(1.f, 1.f, 1.f, 100.f);
    for (const bool onWholePixels : {false, true}) {
        for (const double z : {-10., -0.5, 0., 10.}) {
            clearScene();
            canvas->begin(view);
            canvas->drawQuads(texture, {Texels::Colors, onWholePixels}, white, {0., 0., z}, &quad,
                              1);
            canvas->end();
            scene = readScene();
            EXPECT_EQ(numTouched(), z < -1. ? 12u : 0u) << z;
        }
    }
}

TEST_F(ImagesRender, DepthIsTestedAndNotWritten) {
    glEnable(GL_DEPTH_TEST);
    glClearDepth(0.5);
    glClear(GL_DEPTH_BUFFER_BIT);
    draw([&] {
        for (const float z : {0.5f, -0.5f}) {
            canvas->setTransform(glm::translate(glm::mat4(1.f), glm::vec3(z * 100.f, 0.f, z)));
            canvas->drawImage(texture, ImageFrame({60., 20.}, {64., 23.}));
        }
    });
    float depth = 0.f;
    glReadPixels(12, 21, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_FLOAT_EQ(depth, 0.5f);
    EXPECT_EQ(numTouched(), std::size_t{columns * rows});
    glDisable(GL_DEPTH_TEST);
}

TEST_F(ImagesRender, ASamplerOfTheCallersDoesNotCount) {
    if (GLAD_GL_ARB_sampler_objects == 0)
        return; // there is none to bind
    int lastUnit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, &lastUnit);
    --lastUnit;
    GLuint sampler = 0; // between texels, as GL has it
    glGenSamplers(1, &sampler);
    glBindSampler(static_cast<GLuint>(lastUnit), sampler);
    draw([&] { canvas->drawImage(texture, ImageFrame({10., 20.}, {18., 26.})); });
    EXPECT_EQ(at(11, 21), texelAt(0, 0));
    EXPECT_EQ(at(12, 21), texelAt(1, 0));
    int bound = 0;
    glActiveTexture(GL_TEXTURE0 + static_cast<GLuint>(lastUnit));
    glGetIntegerv(GL_SAMPLER_BINDING, &bound);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(static_cast<GLuint>(bound), sampler);
    glDeleteSamplers(1, &sampler);
}

} // namespace
} // namespace vellis::test

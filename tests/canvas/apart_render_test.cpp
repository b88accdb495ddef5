/// That joining commands which are apart changes no pixel.

#include <vellis/canvas.hpp>

#include <memory>
#include <random>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/texture.hpp>

#include <offscreen/image.hpp>

#include "support/render_test.hpp"

namespace {

using namespace vellis;

constexpr unsigned int pictureSide = 160;

/// Small pieces of every kind, the same for the same seed.
class Pieces {
public:
    explicit Pieces(unsigned int seed) : engine_(seed) {
        const std::vector<glm::u8vec4> texels = {
            {255, 0, 0, 255}, {0, 255, 0, 128}, {0, 0, 255, 255}, {255, 255, 255, 64}};
        texture_ = Texture2D<glm::u8vec4>::make(2, 2, texels.data(), Sampler::nearest_clamp());
    }

    void drawNext(Canvas& canvas) {
        const glm::vec2 a = place();
        const glm::vec2 b = a + step();
        const glm::vec2 c = b + step();
        const glm::vec4 color(number(0.f, 1.f), number(0.f, 1.f), number(0.f, 1.f),
                              number(0.f, 1.f) < .5f ? 1.f : .6f);
        Stroke stroke(color, number(.5f, 9.f));
        stroke.join = static_cast<Stroke::Join>(pick(3));
        stroke.cap = static_cast<Stroke::Cap>(pick(3));
        switch (pick(9)) {
        case 0:
            return canvas.drawLines(stroke, {a, b});
        case 1:
            return canvas.drawLineStrip(stroke, {a, b, c});
        case 2:
            return canvas.drawLines(Stroke::aliased(color), {a, b});
        case 3:
            return canvas.drawPoints(color, number(1.f, 12.f), {a, c});
        case 4:
            return canvas.drawTriangles(color, {a, b, c});
        case 5:
            return canvas.drawTriangles(color,
                                        {glm::vec3(a, 0.f), glm::vec3(b, 0.f), glm::vec3(c, 0.f)});
        case 6:
            return canvas.drawImage(texture_, {glm::dvec2(a), glm::dvec2(b)}, {}, color);
        case 7: {
            const PixelQuad quad = {{-4.f, 2.f}, {9.f, 3.f}, {-2.f, 7.f}, {{0, 0}, {1, 1}}};
            return canvas.drawQuads(texture_, {}, color, glm::dvec3(a, 0.), &quad, 1);
        }
        default:
            return canvas.drawLines(stroke.dashed({{3.f, 2.f}}), {a, c});
        }
    }

private:
    float number(float low, float high) {
        return low + (high - low) * static_cast<float>(engine_() % 4096) / 4096.f;
    }
    unsigned int pick(unsigned int count) { return static_cast<unsigned int>(engine_() % count); }
    glm::vec2 place() {
        // Some are partly or wholly outside.
        return {number(-20.f, pictureSide + 20.f), number(-20.f, pictureSide + 20.f)};
    }
    glm::vec2 step() { return {number(-15.f, 15.f), number(-15.f, 15.f)}; }

    std::mt19937 engine_;
    std::shared_ptr<Texture2D<glm::u8vec4>> texture_;
};

class ApartRender : public RenderTest {
protected:
    ApartRender() : RenderTest(pictureSide) {}

    /// \param isFlushed  Whether each piece goes to GL by itself.
    static std::vector<unsigned char> picture(Canvas& canvas, unsigned int seed,
                                              const glm::mat4& matrix, bool isFlushed) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        Pieces pieces(seed);
        canvas.begin(matrix);
        for (unsigned int i = 0; i < 20 * seed; ++i) {
            pieces.drawNext(canvas);
            if (isFlushed)
                canvas.flush();
        }
        canvas.end();
        return offscreen::readPixels(pictureSide, pictureSide).pixels;
    }
};

TEST_F(ApartRender, EveryPixelIsPaintedInTheOrderOfTheCalls) {
    const glm::mat4 matrices[] = {
        glm::ortho<float>(0.f, pictureSide, 0.f, pictureSide),
        glm::perspective(1.f, 1.f, 50.f, 500.f) *
            glm::lookAt(glm::vec3(pictureSide / 2.f, -60.f, 120.f),
                        glm::vec3(pictureSide / 2.f, pictureSide / 2.f, 0.f),
                        glm::vec3(0.f, 0.f, 1.f)),
    };
    const auto canvas = Canvas::make();
    for (const glm::mat4& matrix : matrices) {
        for (unsigned int seed = 1; seed <= 12; ++seed)
            EXPECT_EQ(picture(*canvas, seed, matrix, false), picture(*canvas, seed, matrix, true))
                << "seed " << seed;
    }
}

} // namespace

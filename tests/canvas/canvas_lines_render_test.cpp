/// Lines of a canvas on a driver, where there is more to see than coverage: colours, ink, the
/// pixels of aliased lines; and what the caller's state must not change.

#include <vellis/canvas/canvas.hpp>

#include <cmath>
#include <random>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "canvas/scene_fixture.hpp"
#include "support/extension.hpp"
#include "support/pixels.hpp"
#include "support/stroke_drawing.hpp"
#include "support/stroke_limits.hpp"
#include "support/stroke_scenes.hpp"

namespace vellis::test {
namespace {

class CanvasLinesRender : public CanvasSceneTest {
protected:
    void drawScene(const StrokeScene& scene) const {
        canvas->begin(strokeSceneMatrix());
        for (const Stroke& stroke : scene.strokes)
            drawThrough(*canvas, stroke, floatPoints(stroke));
        canvas->end();
    }
};

/// Points at multiples of an eighth, which stay exact under the scenes' matrix.
std::vector<glm::vec2> exactPoints(int count) {
    std::mt19937 random(3);
    std::vector<glm::vec2> points;
    for (int i = 0; i != count; ++i) {
        const auto x = static_cast<float>(random() % 2048) / 8;
        points.emplace_back(x, static_cast<float>(random() % 2048) / 8);
    }
    return points;
}

/// Points in clip coordinates.
std::vector<glm::vec3> clipPoints(const std::vector<glm::vec2>& points) {
    std::vector<glm::vec3> result;
    for (const glm::vec2& point : points)
        result.emplace_back(strokeSceneMatrix() * glm::vec4(point, 0, 1));
    return result;
}

TEST_F(CanvasLinesRender, AliasedLinesAreThoseOfGl) {
    const std::vector<glm::vec2> points = exactPoints(40);
    const vellis::Stroke stroke = vellis::Stroke::aliased(white);
    const auto expectSame = [&](GLenum primitive, auto draw) {
        clearScene();
        drawByGl(primitive, clipPoints(points), white);
        const offscreen::Image byGl = readScene();
        clearScene();
        canvas->begin(strokeSceneMatrix());
        draw();
        canvas->end();
        EXPECT_TRUE(readScene().pixels == byGl.pixels);
        EXPECT_GT(strokeErrors(sceneCoverage({}), 1, byGl).touched, 1000U);
    };
    expectSame(GL_LINES, [&] { canvas->drawLines(stroke, points); });
    expectSame(GL_LINE_STRIP, [&] { canvas->drawLineStrip(stroke, points); });
    expectSame(GL_LINE_LOOP, [&] { canvas->drawLineLoop(stroke, points); });
}

TEST_F(CanvasLinesRender, ColorsBlendAlongThePieces) {
    const std::vector<glm::vec2> points = {{30, 40}, {120, 220}, {160, 60}, {230, 200}};
    const std::vector<glm::vec4> colors = {
        {1, 0, 0, 1}, {0, 1, 0, 1}, {0.2F, 0.4F, 1, 1}, {1, 1, 0, 1}};
    const auto expectBlended = [&](std::size_t a, std::size_t b) {
        for (const float part : {0.25F, 0.5F, 0.75F}) {
            const glm::vec2 at = points[a] + part * (points[b] - points[a]);
            const glm::vec4 color = 255.F * (colors[a] + part * (colors[b] - colors[a]));
            unsigned char pixel[4] = {};
            glReadPixels(static_cast<int>(at.x), static_cast<int>(at.y), 1, 1, GL_RGBA,
                         GL_UNSIGNED_BYTE, pixel);
            for (int i = 0; i != 3; ++i)
                EXPECT_NEAR(pixel[i], color[i], 3) << part << " from " << a << " to " << b;
        }
    };
    for (const float width : {3.F, 8.F}) {
        clearScene();
        canvas->begin(strokeSceneMatrix());
        canvas->drawLineLoop(vellis::Stroke(white, width), points, colors);
        canvas->end();
        for (std::size_t i = 0; i != 4; ++i)
            expectBlended(i, (i + 1) % 4);
        clearScene();
        canvas->begin(strokeSceneMatrix());
        canvas->drawLines(vellis::Stroke(white, width), points, colors);
        canvas->end();
        expectBlended(0, 1);
        expectBlended(2, 3);
    }
}

TEST_F(CanvasLinesRender, ThinLinesKeepTheirInk) {
    for (const double width : {0.1, 0.25, 0.5, 0.75, 1.0, 1.5}) {
        StrokeScene scene;
        double length = 0;
        for (int i = 0; i != 16; ++i) {
            const double angle = 0.03 + 2 * pi * i / 16;
            const glm::dvec2 direction(std::cos(angle), std::sin(angle));
            const glm::dvec2 middle(128.3, 127.8);
            scene.strokes.push_back(
                {{middle + 30.0 * direction, middle + 120.0 * direction}, width});
            length += 90;
        }
        clearScene();
        drawScene(scene);
        const offscreen::Image image = readScene();
        double ink = 0;
        for (std::size_t i = 0; i < image.pixels.size(); i += 4)
            ink += image.pixels[i] / 255.0;
        EXPECT_NEAR(ink / (width * length), 1, 0.01) << width;
    }
}

/// The pictures of all scenes, and one of aliased lines, drawn in the state of now.
std::vector<offscreen::Image> picturesOf(vellis::Canvas& canvas) {
    std::vector<offscreen::Image> pictures;
    for (const StrokeScene& scene : strokeScenes()) {
        clearScene();
        canvas.begin(strokeSceneMatrix());
        for (const Stroke& stroke : scene.strokes)
            drawThrough(canvas, stroke, floatPoints(stroke));
        canvas.end();
        pictures.push_back(readScene());
    }
    clearScene();
    canvas.begin(strokeSceneMatrix());
    canvas.drawLineStrip(vellis::Stroke::aliased(white), exactPoints(20));
    canvas.end();
    pictures.push_back(readScene());
    return pictures;
}

TEST_F(CanvasLinesRender, SmoothWideLinesOfTheCallersChangeNothing) {
    const std::vector<offscreen::Image> before = picturesOf(*canvas);
    const float width = isForwardCompatible() ? 0.5F : 5.F;
    glEnable(GL_LINE_SMOOTH);
    glEnable(GL_POLYGON_SMOOTH);
    glLineWidth(width);
    const std::vector<offscreen::Image> after = picturesOf(*canvas);
    for (std::size_t i = 0; i != before.size(); ++i)
        EXPECT_TRUE(after[i].pixels == before[i].pixels) << i;
    EXPECT_TRUE(glIsEnabled(GL_LINE_SMOOTH));
    float widthAfter = 0;
    glGetFloatv(GL_LINE_WIDTH, &widthAfter);
    EXPECT_EQ(widthAfter, width);
    glDisable(GL_LINE_SMOOTH);
    glDisable(GL_POLYGON_SMOOTH);
    glLineWidth(1);
}

/// A framebuffer with several samples a pixel, bound for drawing.
class MultisampledFramebuffer {
public:
    MultisampledFramebuffer() {
        glGenFramebuffers(1, &framebuffer_);
        glGenRenderbuffers(1, &color_);
        glBindRenderbuffer(GL_RENDERBUFFER, color_);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, GL_RGBA8, strokeSceneSize,
                                         strokeSceneSize);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color_);
    }
    ~MultisampledFramebuffer() {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glDeleteRenderbuffers(1, &color_);
        glDeleteFramebuffers(1, &framebuffer_);
    }
    MultisampledFramebuffer(const MultisampledFramebuffer&) = delete;
    MultisampledFramebuffer& operator=(const MultisampledFramebuffer&) = delete;

    /// The mean of each pixel's samples.
    offscreen::Image read() const {
        constexpr int end = strokeSceneSize;
        glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
        glBlitFramebuffer(0, 0, end, end, 0, 0, end, end, GL_COLOR_BUFFER_BIT, GL_NEAREST);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        const offscreen::Image image = readScene();
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
        return image;
    }

private:
    GLuint framebuffer_ = 0;
    GLuint color_ = 0;
};

TEST_F(CanvasLinesRender, MultisamplingLeavesStrokesTheirGeometry) {
    SKIP_WITHOUT(Extension::Framebuffers);
    if (maxSamples() < 4)
        GTEST_SKIP() << "the driver has no 4 samples a pixel";
    const MultisampledFramebuffer framebuffer;
    ASSERT_EQ(stateOf(GL_SAMPLES), 4);
    for (const StrokeScene& scene : strokeScenes()) {
        clearScene();
        drawScene(scene);
        EXPECT_TRUE(shows(scene, framebuffer.read(), "Multisampled"));
    }
}

} // namespace
} // namespace vellis::test

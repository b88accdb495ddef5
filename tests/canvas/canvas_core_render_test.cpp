/// The canvas in contexts of the core profile.

#include <vellis/canvas.hpp>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include <offscreen/context.hpp>
#include <offscreen/entry_points.hpp>
#include <offscreen/image.hpp>

#include "canvas/star.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;

using test::halfBlue;
using test::pixelMatrix;
using test::red;
using test::side;
using test::star;

/// All that a canvas can draw, in one picture.
std::vector<unsigned char> drawAll() {
    if (glGenVertexArrays != nullptr) { // making a buffer needs none, but a core context may
        unsigned int vertexArray = 0;
        glGenVertexArrays(1, &vertexArray);
        glBindVertexArray(vertexArray);
    }
    glViewport(0, 0, side, side);
    glClearColor(0.f, 0.f, 0.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    const auto buffer =
        VertexAttributeBuffer<glm::vec2>::make(star, BufferUsage::Static, BufferAccess::Draw);
    const auto canvas = Canvas::make();
    canvas->beginPicture(pixelMatrix);
    canvas->drawLineStrip(Stroke(red, 2.f).dashed({{5.f, 3.f}}), star);
    canvas->drawPoints(red, 11.f, star);
    const auto picture = canvas->endPicture();
    canvas->begin(pixelMatrix);
    canvas->drawTriangleFan(glm::vec4(0.2f, 0.3f, 0.1f, 1.f), star);
    canvas->drawLineLoop(Stroke(halfBlue, 7.f), star);
    canvas->drawLineLoop(Stroke(halfBlue, 3.f), 0, 5, buffer);
    canvas->drawPoints(halfBlue, 20.f, 0, 5, buffer);
    canvas->setTransform(glm::translate(glm::mat4(1.f), glm::vec3(5.3f, 2.1f, 0.f)));
    canvas->drawPicture(picture);
    canvas->drawLines(Stroke(red, 0.7f), star);
    canvas->drawBullseyes(red, halfBlue, 17.f, star);
    canvas->drawQuad(halfBlue, red, {{10, 10}, {30, 12}, {32, 31}, {9, 28}});
    canvas->end();
    EXPECT_EQ(test::takeError(), "");
    return offscreen::readPixels(side, side).pixels;
}

/// The version times 10, and whether it is forward-compatible.
class CanvasCoreRender : public testing::TestWithParam<std::tuple<int, bool>> {};

TEST_P(CanvasCoreRender, DrawsTheSameAsInACompatibilityContext) {
    std::string error;
    offscreen::Settings settings = renderSettings(side, side);
    settings.coreVersion = 0;
    std::vector<unsigned char> expected;
    {
        const auto context = offscreen::Context::open(settings, error);
        if (context == nullptr)
            GTEST_SKIP() << error;
        ASSERT_TRUE(offscreen::loadEntryPoints(*context));
        expected = drawAll();
        engine::dispose();
    }
    std::tie(settings.coreVersion, settings.isForwardCompatible) = GetParam();
    const auto context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        GTEST_SKIP() << error;
    ASSERT_TRUE(offscreen::loadEntryPoints(*context));
    const auto drawn = drawAll();
    std::size_t numDifferent = 0;
    for (std::size_t i = 0; i < drawn.size(); ++i)
        numDifferent += std::abs(drawn[i] - expected[i]) > 1 ? 1u : 0u;
    EXPECT_EQ(numDifferent, 0u);
    engine::dispose();
}

INSTANTIATE_TEST_SUITE_P(Versions, CanvasCoreRender,
                         testing::Combine(testing::Values(32, 33, 41), testing::Bool()));

} // namespace

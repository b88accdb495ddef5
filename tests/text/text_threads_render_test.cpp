/// Fonts and texts on several threads at once, each with its own.

#include <vellis/text.hpp>

#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>

#include "support/scene.hpp"
#include "support/several_threads.hpp"
#include "support/surface.hpp"
#include "text/draw_fixture.hpp"

namespace vellis::test {
namespace {

using text::Anchor;
using text::Font;

constexpr int numThreads = 4;

TEST(TextThreads, EachShapesAndRendersWithAFontOfItsOwn) {
    const std::string path = findFont(dejaVuSans);
    if (path.empty())
        GTEST_SKIP() << "there is no " << dejaVuSans;
    const char* const words = "office \u0627\u0644\u0639 12 \u05D0 e\u0302\u0301 \u0416";
    const auto reference = Font::load(path, 16.f);
    const text::Fixed advance = reference->measure(words).advance;
    const auto coverage = reference->render(40).coverage;
    onThreads(numThreads, [&](int thread) -> std::string {
        for (int time = 0; time < 10; ++time) {
            const auto font = Font::load(path, 16.f);
            EXPECT_EQ(font->measure(words).advance, advance);
            EXPECT_EQ(font->render(40).coverage, coverage);
            for (int i = 0; i < 50; ++i)
                font->shape(std::to_string(thread) + " word " + std::to_string(i));
        }
        return {};
    });
}

TEST(TextThreads, EachDrawsWithAContextOfItsOwn) {
    const std::string path = findFont(dejaVuSans);
    if (path.empty())
        GTEST_SKIP() << "there is no " << dejaVuSans;
    const std::string reason = onThreads(numThreads, [&](int thread) -> std::string {
        std::string error;
        const auto surface = Surface::open(nullptr, error);
        if (surface == nullptr)
            return error;
        const auto font = Font::load(path, 11.f + static_cast<float>(thread));
        const auto canvas = Canvas::make();
        for (const char* const word : {"Ha", "mb", "ur", "g", "Ha"}) {
            clearScene();
            canvas->begin(glm::ortho<float>(0.f, sceneSize, 0.f, sceneSize));
            text::draw(canvas, font, {16., 16.}, word, glm::vec4(1.f), Anchor::Center);
            canvas->end();
            Expected expected(sceneSize, sceneSize);
            expected.add(*font, word, 16, 16, Anchor::Center);
            EXPECT_LE(distanceBetween(offscreen::readPixels(sceneSize, sceneSize), expected), 1);
        }
        return {};
    });
    if (!reason.empty())
        GTEST_SKIP() << reason;
}

} // namespace
} // namespace vellis::test

#pragma once

#include <memory>

#include <glm/vec4.hpp>
#include <vellis/canvas/canvas.hpp>

#include "support/render_test.hpp"
#include "support/stroke_drawing.hpp"

namespace vellis::test {

inline const glm::vec4 white(1.f);
inline constexpr double pi = 3.14159265358979323846;

/// A test that draws with a canvas into a black picture.
class CanvasSceneTest : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (!goesOn())
            return;
        canvas = vellis::Canvas::make();
        clearScene();
    }
    void TearDown() override {
        canvas.reset();
        RenderTest::TearDown();
    }

    /// What a batch draws on black.
    template <class Draw>
    offscreen::Image pictureOf(Draw drawing) {
        clearScene();
        canvas->begin(strokeSceneMatrix());
        drawing();
        canvas->end();
        return readScene();
    }

    std::shared_ptr<vellis::Canvas> canvas;
};

} // namespace vellis::test

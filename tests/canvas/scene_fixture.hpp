#pragma once

#include <memory>

#include <vellis/canvas/canvas.hpp>

#include "support/render_test.hpp"
#include "support/stroke_drawing.hpp"

namespace vellis::test {

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

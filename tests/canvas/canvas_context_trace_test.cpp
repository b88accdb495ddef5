/// Canvases and pictures with several Contexts.

#include <memory>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/canvas.hpp>
#include <vellis/context.hpp>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"
#include "support/state_model.hpp"

namespace {

using namespace vellis;
using test::FakeContext;
using test::FakeGl;
using Lines = std::vector<std::string>;

/// Three fake GL contexts with a Context each: the second shares the objects of the first, the
/// third shares nothing.
class CanvasContextTrace : public testing::Test {
protected:
    CanvasContextTrace() {
        for (FakeContext* const fake : {&first, &second, &third})
            test::modelState(*fake);
        first.makeCurrent();
        context = Context::make(FakeGl::lookUp);
        second.makeCurrent();
        sharing = Context::make(*context, FakeGl::lookUp);
        third.makeCurrent();
        other = Context::make(FakeGl::lookUp);
        use(first, *context);
        canvas = Canvas::make();
    }

    ~CanvasContextTrace() override {
        use(first, *context);
        canvas.reset();
        for (const auto& [fake, made] :
             {std::pair(&second, &sharing), {&first, &context}, {&third, &other}}) {
            fake->makeCurrent();
            (*made)->dispose();
            EXPECT_EQ(fake->violations(), Lines());
            EXPECT_EQ(fake->doubleDeletes(), Lines());
        }
        if (!hasLeftovers) {
            EXPECT_EQ(first.liveNames(), Lines());
        }
        EXPECT_EQ(third.liveNames(), Lines());
        for (FakeContext* const fake : {&first, &second, &third})
            fake->ignoreTheRest();
        internal::check_context();
        gl.ignoreTheRest();
    }

    static void use(FakeContext& fake, Context& used) {
        fake.makeCurrent();
        EXPECT_TRUE(used.use());
        fake.forget();
    }

    /// How many draws a batch of a canvas makes in a GL context.
    template <class Draw>
    static std::size_t numDraws(FakeContext& fake, Canvas& drawn, Draw draw) {
        fake.forget();
        drawn.begin(glm::mat4(1.f));
        draw(drawn);
        drawn.end();
        std::size_t count = 0;
        for (const char* entryPoint : {"glDrawArrays", "glDrawElements", "glDrawArraysInstanced",
                                       "glDrawArraysInstancedARB"})
            count += fake.countOf(entryPoint);
        fake.forget();
        return count;
    }

    static void drawStrip(Canvas& drawn) {
        drawn.drawLineStrip({glm::vec4(1.f), 4.f}, {glm::vec2(0.f), glm::vec2(1.f)});
    }

    static std::shared_ptr<Picture> record(Canvas& recording) {
        recording.beginPicture(glm::mat4(1.f));
        drawStrip(recording);
        return recording.endPicture();
    }

    FakeGl gl;
    FakeContext first;
    FakeContext second{&first};
    FakeContext third;
    std::shared_ptr<Context> context;
    std::shared_ptr<Context> sharing;
    std::shared_ptr<Context> other;
    std::shared_ptr<Canvas> canvas;
    bool hasLeftovers = false; ///< whether objects outlive their Context
};

TEST_F(CanvasContextTrace, CanvasDrawsNothingElsewhereAndSaysSo) {
    EXPECT_EQ(numDraws(first, *canvas, drawStrip), 1u);
    EXPECT_EQ(internal::check_context(), nullptr);
    for (const auto& [fake, used] : {std::pair(&second, &sharing), {&third, &other}}) {
        use(*fake, **used);
        canvas->begin(glm::mat4(1.f));
        drawStrip(*canvas);
        EXPECT_EQ(internal::check_context(), nullptr);
        canvas->end();
        EXPECT_STREQ(internal::check_context(), "vertex array");
        EXPECT_GL_CALLS(*fake);
    }
    use(first, *context);
    EXPECT_EQ(numDraws(first, *canvas, drawStrip), 1u) << "what waited elsewhere is gone";
    EXPECT_EQ(internal::check_context(), nullptr);
}

TEST_F(CanvasContextTrace, AttachmentsAreThereInTheCanvassContextAlone) {
    const char attachmentKey = 0;
    canvas->begin(glm::mat4(1.f));
    EXPECT_NE(canvas->attachment(&attachmentKey), nullptr);
    use(second, *sharing);
    EXPECT_EQ(canvas->attachment(&attachmentKey), nullptr);
    use(third, *other);
    EXPECT_EQ(canvas->attachment(&attachmentKey), nullptr);
    use(first, *context);
    EXPECT_NE(canvas->attachment(&attachmentKey), nullptr);
    canvas->end();
}

TEST_F(CanvasContextTrace, NoOperationOfACanvasCallsGlElsewhere) {
    const auto picture = record(*canvas);
    const auto buffer = VertexAttributeBuffer<glm::vec2>::make(
        {{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}}, BufferUsage::Static, BufferAccess::Draw);
    use(second, *sharing);
    canvas->begin(glm::mat4(1.f));
    canvas->drawPicture(picture);
    EXPECT_STREQ(internal::check_context(), "vertex array");
    canvas->drawTriangles(glm::vec4(1.f), 0, 3, buffer);
    EXPECT_STREQ(internal::check_context(), "vertex array");
    canvas->drawDashLineStrip(glm::vec4(1.f), 1.f, 1.f, {glm::vec2(0.f), glm::vec2(1.f)});
    EXPECT_STREQ(internal::check_context(), "vertex array");
    const auto empty = record(*canvas);
    EXPECT_STREQ(internal::check_context(), "vertex array");
    EXPECT_EQ(empty->numBytes(), 0u);
    EXPECT_GL_CALLS(second);
    use(first, *context);
    EXPECT_EQ(numDraws(first, *canvas, [&](Canvas& drawn) { drawn.drawPicture(empty); }), 0u);
}

TEST_F(CanvasContextTrace, PictureIsDrawnWhereItsBuffersAre) {
    auto picture = record(*canvas);
    const auto drawPicture = [&](Canvas& drawn) { drawn.drawPicture(picture); };
    EXPECT_EQ(numDraws(first, *canvas, drawPicture), 1u);
    use(second, *sharing);
    {
        const auto sibling = Canvas::make();
        EXPECT_EQ(numDraws(second, *sibling, drawPicture), 1u);
    }
    use(third, *other);
    {
        const auto stranger = Canvas::make();
        EXPECT_EQ(numDraws(third, *stranger, drawPicture), 0u);
        EXPECT_EQ(numDraws(third, *stranger, drawStrip), 1u);
    }
    picture.reset(); // which has no names here
    third.forget();
    use(first, *context);
}

TEST_F(CanvasContextTrace, ObjectsThatEndElsewhereWaitForTheirContext) {
    auto picture = record(*canvas);
    EXPECT_EQ(numDraws(first, *canvas, drawStrip), 1u);
    const std::size_t numNames = first.liveNames().size();
    use(third, *other);
    picture.reset();
    canvas.reset();
    EXPECT_GL_CALLS(third);
    EXPECT_EQ(first.liveNames().size(), numNames);
    use(first, *context);
    EXPECT_EQ(first.liveNames(), Lines());
    first.forget();
}

TEST_F(CanvasContextTrace, NothingIsDrawnAfterDispose) {
    hasLeftovers = true;
    const auto picture = record(*canvas);
    EXPECT_EQ(numDraws(first, *canvas, drawStrip), 1u);
    context->dispose();
    first.forget();
    EXPECT_EQ(numDraws(first, *canvas, drawStrip), 0u);
    EXPECT_STREQ(internal::check_context(), "vertex array");
    context = Context::make(FakeGl::lookUp);
    first.forget();
    const auto anew = Canvas::make();
    EXPECT_EQ(numDraws(first, *anew, [&](Canvas& drawn) { drawn.drawPicture(picture); }), 0u);
    EXPECT_EQ(numDraws(first, *anew, drawStrip), 1u);
    canvas = anew;
}

} // namespace

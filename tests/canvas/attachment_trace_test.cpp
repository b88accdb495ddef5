/// What other libraries keep with a canvas.

#include <memory>

#include <gtest/gtest.h>

#include "canvas/canvas_fixture.hpp"

namespace {

using vellis::test::Lines;

const char key = 0;
const char otherKey = 0;

class AttachmentTrace : public vellis::test::CanvasTest {};

TEST_F(AttachmentTrace, IsEmptyUntilItIsSet) {
    canvas->begin(glm::mat4(1.f));
    std::shared_ptr<void>* const attachment = canvas->attachment(&key);
    ASSERT_NE(attachment, nullptr);
    EXPECT_EQ(*attachment, nullptr);
    *attachment = std::make_shared<int>(7);
    canvas->end();

    canvas->begin(glm::mat4(1.f));
    EXPECT_EQ(canvas->attachment(&key), attachment);
    EXPECT_EQ(*static_cast<int*>(attachment->get()), 7);
    ASSERT_NE(canvas->attachment(&otherKey), nullptr);
    EXPECT_EQ(*canvas->attachment(&otherKey), nullptr);
    canvas->end();
}

TEST_F(AttachmentTrace, EndsWithTheCanvas) {
    const auto object = std::make_shared<int>(7);
    canvas->begin(glm::mat4(1.f));
    *canvas->attachment(&key) = object;
    canvas->end();
    EXPECT_EQ(object.use_count(), 2);
    canvas.reset();
    EXPECT_EQ(object.use_count(), 1);
}

TEST_F(AttachmentTrace, IsThereWhereTheCanvasDraws) {
    EXPECT_EQ(canvas->attachment(&key), nullptr);
    canvas->beginPicture(glm::mat4(1.f));
    EXPECT_NE(canvas->attachment(&key), nullptr);
    canvas->endPicture();
    EXPECT_EQ(canvas->attachment(&key), nullptr);
    canvas->begin(glm::mat4(1.f));
    gl.forget();
    EXPECT_NE(canvas->attachment(&key), nullptr);
    EXPECT_EQ(gl.takeCalls(), Lines());
    canvas->end();
    EXPECT_EQ(canvas->attachment(&key), nullptr);
}

} // namespace

#include <vellis/internal.hpp>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/render_test.hpp"

namespace {

using vellis::internal::check_framebuffer_complete;
using vellis::internal::check_glerror;

class DiagnosticsRender : public RenderTest {};

TEST_F(DiagnosticsRender, ErrorsAreNamedAndTaken) {
    EXPECT_EQ(check_glerror(), nullptr);
    glEnable(0xFFFF);
    EXPECT_STREQ(check_glerror(), "GL_INVALID_ENUM");
    glLineWidth(-1.f);
    EXPECT_STREQ(check_glerror(), "GL_INVALID_VALUE");
    glUniform1i(7, 1);
    EXPECT_STREQ(check_glerror(), "GL_INVALID_OPERATION");
    EXPECT_EQ(check_glerror(), nullptr);
}

TEST_F(DiagnosticsRender, DefaultFramebufferIsComplete) {
    SKIP_WITHOUT(Extension::Framebuffers);
    EXPECT_EQ(check_framebuffer_complete(), nullptr);
    EXPECT_EQ(check_framebuffer_complete(GL_DRAW_FRAMEBUFFER), nullptr);
    EXPECT_EQ(check_framebuffer_complete(GL_READ_FRAMEBUFFER), nullptr);
}

TEST_F(DiagnosticsRender, EmptyFramebufferMissesItsAttachments) {
    SKIP_WITHOUT(Extension::Framebuffers);
    GLuint name = 0;
    glGenFramebuffers(1, &name);
    glBindFramebuffer(GL_FRAMEBUFFER, name);
    EXPECT_STREQ(check_framebuffer_complete(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDeleteFramebuffers(1, &name);
}

TEST_F(DiagnosticsRender, BadTargetIsUnknown) {
    SKIP_WITHOUT(Extension::Framebuffers);
    EXPECT_STREQ(check_framebuffer_complete(GL_TEXTURE_2D), "UNKNOWN ERROR");
    EXPECT_STREQ(check_glerror(), "GL_INVALID_ENUM");
}

} // namespace

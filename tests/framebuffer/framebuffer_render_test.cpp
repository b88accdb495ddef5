/// Framebuffers on a driver: bindings, attachments, fragment outputs.

#include <vellis/framebuffer/framebuffer.hpp>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/shading/program.hpp>

#include "support/offered_texels.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;
using testing::AnyOf;
using testing::Each;
using BufferID = Framebuffer::BufferID;

const glm::vec4 red(1.f, 0.f, 0.f, 1.f);
const glm::vec4 green(0.f, 1.f, 0.f, 1.f);
const U8vec4 redPixel(255, 0, 0, 255);
const U8vec4 greenPixel(0, 255, 0, 255);
constexpr unsigned int columns = 8;
constexpr unsigned int rows = 4;
const U8vec4 cleared(0);

class FramebufferRender : public RenderTest {
protected:
    FramebufferRender() : RenderTest(size, {Extension::Framebuffers}) {}

    void SetUp() override {
        RenderTest::SetUp();
        if (goesOn())
            framebuffer = Framebuffer::make();
    }
    void TearDown() override {
        framebuffer.reset();
        EXPECT_EQ(liveNames(glIsFramebuffer), 0);
        EXPECT_EQ(liveNames(glIsRenderbuffer), 0);
        RenderTest::TearDown();
    }

    static std::shared_ptr<Texture2D<U8vec4>> blackTexture(unsigned int w = columns,
                                                           unsigned int h = rows) {
        const std::vector<U8vec4> texels(std::size_t{w} * h);
        return Texture2D<U8vec4>::make(w, h, texels.data());
    }

    /// Makes the framebuffer, which is bound, one without colours, as GL before 4.1 wants it told.
    static void useNoColor() {
        Framebuffer::setDrawBuffer(BufferID::NONE);
        Framebuffer::setReadBuffer(BufferID::NONE);
    }

    std::shared_ptr<Framebuffer> framebuffer;
};

TEST_F(FramebufferRender, BindAndUnbindReturnToEveryBinding) {
    const ForeignBindings others;
    others.each([this](std::pair<int, int> before) {
        const int name = static_cast<int>(framebuffer->id());
        framebuffer->bind();
        EXPECT_EQ(boundFramebuffers(), std::pair(name, name));
        EXPECT_TRUE(framebuffer->isBound());
        framebuffer->unbind();
        EXPECT_EQ(boundFramebuffers(), before);
        EXPECT_FALSE(framebuffer->isBound());
    });
    EXPECT_EQ(takeError(), "");
}

TEST_F(FramebufferRender, BindToDrawAndToReadLeaveTheOtherBinding) {
    const ForeignBindings others;
    others.each([this](std::pair<int, int> before) {
        const int name = static_cast<int>(framebuffer->id());
        framebuffer->bindToDraw();
        EXPECT_EQ(boundFramebuffers(), std::pair(name, before.second));
        EXPECT_TRUE(framebuffer->isBound());
        framebuffer->unbindToRead();
        EXPECT_EQ(boundFramebuffers(), std::pair(0, before.second));
        framebuffer->bindToRead();
        EXPECT_EQ(boundFramebuffers(), std::pair(0, name));
        EXPECT_TRUE(framebuffer->isBound());
        framebuffer->unbindToDraw();
        EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    });
}

TEST_F(FramebufferRender, SavedFramebufferThatIsDeletedIsNotThisOneAfterUnbind) {
    GLuint other = 0;
    glGenFramebuffers(1, &other);
    glBindFramebuffer(GL_FRAMEBUFFER, other);
    framebuffer->bind();
    glDeleteFramebuffers(1, &other);
    framebuffer->unbind(); // GL refuses the name, or makes a new object of it
    const bool refused = takeError() == "GL_INVALID_OPERATION";
    EXPECT_NE(framebuffer->isBound(), !refused);
    Framebuffer::bind(0);
    glDeleteFramebuffers(1, &other);
}

TEST_F(FramebufferRender, UnbindWithoutABindBindsTheDefaultFramebuffer) {
    const ForeignBindings others;
    others.each([this](std::pair<int, int>) {
        framebuffer->unbind();
        EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    });
}

TEST_F(FramebufferRender, DestroyedWhileBoundLeavesTheDefaultFramebuffer) {
    framebuffer->bind();
    framebuffer.reset();
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(takeError(), "");
}

TEST_F(FramebufferRender, NullFramebufferIsTheDefaultOne) {
    const auto null = Framebuffer::makeNull();
    EXPECT_TRUE(null->isBound());
    framebuffer->bind();
    EXPECT_FALSE(null->isBound());
    null->bind();
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    EXPECT_EQ(problem(), "");
    Framebuffer::clearColor(green);
    EXPECT_THAT(Framebuffer::download<U8vec4>(0, 0, 2, 2), Each(greenPixel));
    null->unbind();
    EXPECT_TRUE(framebuffer->isBound());
}

TEST_F(FramebufferRender, FragmentOutBecomesTheBufferOfTheBindingPoint) {
    const auto texture = blackTexture();
    framebuffer->bind();
    useNoColor();
    framebuffer->attachFragmentOut(0, *texture);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), GL_NONE);
    EXPECT_EQ(stateOf(GL_READ_BUFFER), GL_NONE);
    framebuffer->bindToRead();
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), GL_NONE);
    EXPECT_EQ(stateOf(GL_READ_BUFFER), GL_COLOR_ATTACHMENT0);
    useNoColor();
    framebuffer->bindToDraw();
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), GL_COLOR_ATTACHMENT0);
    EXPECT_EQ(stateOf(GL_READ_BUFFER), GL_NONE);
    useNoColor();
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), GL_COLOR_ATTACHMENT0);
    EXPECT_EQ(stateOf(GL_READ_BUFFER), GL_COLOR_ATTACHMENT0);
    EXPECT_EQ(takeError(), "");
}

/// Expects that the framebuffer is complete, or not supported where that is the driver's to say.
void expectCompleteOrUnsupported() {
    EXPECT_THAT(problem(), AnyOf("", "GL_FRAMEBUFFER_UNSUPPORTED"));
}

TEST_F(FramebufferRender, EveryColorFormatAttachesAsEveryKindOfImage) {
    framebuffer->bind();
    eachOffered<ColorTexels>([this](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto texture = Texture2D<F>::make(columns, rows);
        const auto renderbuffer = Renderbuffer<F>::make(columns, rows);
        const auto samples = MultiSampleRenderbuffer<F>::make(columns, rows, maxSamples());
        framebuffer->attachFragmentOut(*texture);
        expectCompleteOrUnsupported();
        framebuffer->attachFragmentOut(*renderbuffer);
        expectCompleteOrUnsupported();
        framebuffer->attachFragmentOut(*samples);
        expectCompleteOrUnsupported();
        framebuffer->detachAll();
        EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
        EXPECT_EQ(takeError(), "");
    });
}

TEST_F(FramebufferRender, BytesOfFourComponentsAlwaysAttach) {
    framebuffer->bind();
    const auto texture = blackTexture();
    const auto renderbuffer = Renderbuffer<U8vec4>::make(columns, rows);
    const auto samples = MultiSampleRenderbuffer<U8vec4>::make(columns, rows, maxSamples());
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(problem(), "");
    framebuffer->attachFragmentOut(*renderbuffer);
    EXPECT_EQ(problem(), "");
    framebuffer->attachFragmentOut(*samples);
    EXPECT_EQ(problem(), "");
}

/// The depth that a pixel has, from 0 to 1.
double depthOf(depth16 pixel) {
    return pixel.value / 65535.0;
}
double depthOf(depth32 pixel) {
    return pixel.value / 4294967295.0;
}
double depthOf(depth24_stencil8 pixel) {
    return (pixel.value >> 8) / 16777215.0;
}

TEST_F(FramebufferRender, DepthAloneIsCompleteAndIsCleared) {
    framebuffer->bind();
    useNoColor();
    const auto check = [this](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto renderbuffer = Renderbuffer<F>::make(columns, rows);
        const auto samples = MultiSampleRenderbuffer<F>::make(columns, rows, maxSamples());
        const auto texture = Texture2D<F>::make(columns, rows);
        framebuffer->attachDepthbuffer(*samples);
        EXPECT_EQ(problem(), "");
        framebuffer->attachDepthbuffer(*renderbuffer);
        EXPECT_EQ(problem(), "");
        Framebuffer::clearDepth(0.25f);
        EXPECT_NEAR(depthOf(Framebuffer::download<F>(7, 3, 1, 1).at(0)), 0.25, 1e-4);
        framebuffer->attachDepthbuffer(*texture);
        EXPECT_EQ(problem(), "");
        Framebuffer::clearDepth(0.75f);
        EXPECT_NEAR(depthOf(Framebuffer::download<F>(7, 3, 1, 1).at(0)), 0.75, 1e-4);
        EXPECT_NEAR(depthOf(texture->download().back()), 0.75, 1e-4);
        framebuffer->detachDepthbuffer();
        EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
        EXPECT_EQ(takeError(), "");
    };
    TypeList<depth16, depth32>::each(check);
}

TEST_F(FramebufferRender, StencilAloneIsForTheDriverToTakeAndIsCleared) {
    framebuffer->bind();
    useNoColor();
    StencilTexels::each([this](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto renderbuffer = Renderbuffer<F>::make(columns, rows);
        const auto samples = MultiSampleRenderbuffer<F>::make(columns, rows, maxSamples());
        framebuffer->attachStencilbuffer(*samples);
        expectCompleteOrUnsupported();
        framebuffer->attachStencilbuffer(*renderbuffer);
        expectCompleteOrUnsupported();
        Framebuffer::clearStencil(77);
        const auto pixel = Framebuffer::download<F>(7, 3, 1, 1).at(0);
        const bool complete = problem().empty();
        EXPECT_EQ(pixel.value, complete ? 77u : 0u);
        EXPECT_EQ(takeError(), complete ? "" : "GL_INVALID_FRAMEBUFFER_OPERATION");
        framebuffer->detachStencilbuffer();
        EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
        EXPECT_EQ(takeError(), "");
    });
}

TEST_F(FramebufferRender, DepthAndStencilInOneAreCompleteAndAreCleared) {
    framebuffer->bind();
    useNoColor();
    using F = depth24_stencil8;
    const auto renderbuffer = Renderbuffer<F>::make(columns, rows);
    const auto samples = MultiSampleRenderbuffer<F>::make(columns, rows, maxSamples());
    const auto texture = Texture2D<F>::make(columns, rows);
    const auto expectCleared = [](float depth, unsigned int stencil) {
        Framebuffer::clearDepthStencil(depth, stencil);
        const auto pixel = Framebuffer::download<F>(7, 3, 1, 1).at(0);
        EXPECT_NEAR(depthOf(pixel), depth, 1e-6);
        EXPECT_EQ(pixel.value & 0xFF, stencil);
    };
    framebuffer->attachDepthStencilbuffer(*samples);
    EXPECT_EQ(problem(), "");
    framebuffer->attachDepthStencilbuffer(*renderbuffer);
    EXPECT_EQ(problem(), "");
    expectCleared(0.25f, 77);
    framebuffer->attachDepthStencilbuffer(*texture);
    EXPECT_EQ(problem(), "");
    expectCleared(0.75f, 78);
    framebuffer->detachDepthStencilbuffer();
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
    EXPECT_EQ(takeError(), "");
}

TEST_F(FramebufferRender, SeparateDepthAndStencilAreForTheDriverToTake) {
    const auto color = blackTexture();
    const auto depth = Renderbuffer<depth16>::make(columns, rows);
    const auto stencil = Renderbuffer<stencil8>::make(columns, rows);
    framebuffer->bind();
    framebuffer->attachFragmentOut(*color);
    framebuffer->attachDepthbuffer(*depth);
    framebuffer->attachStencilbuffer(*stencil);
    expectCompleteOrUnsupported();
    framebuffer->detachStencilbuffer();
    EXPECT_EQ(problem(), "");
}

TEST_F(FramebufferRender, StaticBindsReachEveryPoint) {
    const int name = static_cast<int>(framebuffer->id());
    Framebuffer::bindToRead(framebuffer->id());
    EXPECT_EQ(boundFramebuffers(), std::pair(0, name));
    EXPECT_FALSE(framebuffer->isBound());
    Framebuffer::bindToDraw(framebuffer->id());
    EXPECT_TRUE(framebuffer->isBound());
    Framebuffer::bind(0);
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
}

TEST_F(FramebufferRender, LevelOfATextureIsDrawnTo) {
    const auto texture = blackTexture();
    texture->generateMipmap();
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture, 1);
    EXPECT_EQ(problem(), "");
    Framebuffer::clearColor(red);
    std::vector<U8vec4> level(8);
    texture->bind();
    glGetTexImage(GL_TEXTURE_2D, 1, GL_RGBA, GL_UNSIGNED_BYTE, level.data());
    texture->unbind();
    EXPECT_THAT(level, Each(redPixel));
    EXPECT_THAT(texture->download(), Each(cleared));
}

// Several fragment outputs at once.

std::shared_ptr<Program> programOf(const std::string& outputs) {
    const std::string version =
        isCore() ? "#version 150 \n#define attribute in \n" : "#version 120 \n";
    return Program::make((version + "attribute vec3 position; \n"
                                    "void main() { gl_Position = vec4(position, 1.0); } \n")
                             .c_str(),
                         (version + "void main() { " + outputs + " } \n").c_str());
}

const char* const fourOutputs = "gl_FragData[0] = vec4(1.0, 0.0, 0.0, 1.0);"
                                "gl_FragData[1] = vec4(0.0, 1.0, 0.0, 1.0);"
                                "gl_FragData[2] = vec4(0.0, 0.0, 1.0, 1.0);"
                                "gl_FragData[3] = vec4(1.0, 1.0, 1.0, 1.0);";
const U8vec4 outputPixels[4] = {redPixel, greenPixel, U8vec4(0, 0, 255, 255), U8vec4(255)};

/// Draws with a program that writes four colours to its four outputs.
void drawFourOutputs() {
    const auto program = programOf(fourOutputs);
    ASSERT_FALSE(program->hasLinkError());
    Framebuffer::setViewport(0, 0, columns, rows);
    program->bind();
    fill(glm::vec4(0.f));
    program->unbind();
    EXPECT_EQ(takeError(), "");
}

TEST_F(FramebufferRender, OutputsLandInTheirImages) {
    const std::shared_ptr<Texture2D<U8vec4>> textures[4] = {blackTexture(), blackTexture(),
                                                            blackTexture(), blackTexture()};
    framebuffer->bind();
    framebuffer->attachFragmentOuts(*textures[0], *textures[1], *textures[2], *textures[3]);
    ASSERT_EQ(problem(), "");
    drawFourOutputs();
    for (int i = 0; i < 4; ++i)
        EXPECT_THAT(textures[i]->download(), Each(outputPixels[i])) << i;
}

TEST_F(FramebufferRender, OutputsWithoutAnImageLandNowhere) {
    const auto first = blackTexture();
    const auto second = blackTexture();
    framebuffer->bind();
    framebuffer->attachFragmentOuts({2, 0}, *first, *second);
    ASSERT_EQ(problem(), "");
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER1), GL_NONE);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER3), GL_NONE);
    drawFourOutputs();
    EXPECT_THAT(first->download(), Each(outputPixels[2]));
    EXPECT_THAT(second->download(), Each(outputPixels[0]));
}

TEST_F(FramebufferRender, OutputsGoToRenderbuffersToo) {
    const auto texture = blackTexture();
    const auto renderbuffer = Renderbuffer<U8vec4>::make(columns, rows);
    framebuffer->bind();
    framebuffer->attachFragmentOuts(*texture, *renderbuffer);
    ASSERT_EQ(problem(), "");
    drawFourOutputs();
    EXPECT_THAT(texture->download(), Each(outputPixels[0]));
    Framebuffer::setReadBuffer(BufferID::COLOR_ATTACHMENT1);
    EXPECT_THAT(Framebuffer::download<U8vec4>(0, 0, columns, rows), Each(outputPixels[1]));
}

TEST_F(FramebufferRender, NoImagesDrawNowhere) {
    const auto texture = blackTexture();
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture);
    framebuffer->attachFragmentOuts();
    drawFourOutputs();
    EXPECT_THAT(texture->download(), Each(cleared));
}

// What GL refuses.

TEST_F(FramebufferRender, AttachingWhileNotBoundIsRefusedAndChangesNothing) {
    const auto texture = blackTexture();
    const int drawBuffer = stateOf(GL_DRAW_BUFFER);
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(takeError(), "GL_INVALID_OPERATION");
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), drawBuffer);
    EXPECT_EQ(problem(), "");
    framebuffer->detachAll();
    EXPECT_EQ(takeError(), "GL_INVALID_OPERATION");
}

TEST_F(FramebufferRender, AttachingEditsWhatIsBoundInstead) {
    const auto texture = blackTexture();
    const auto other = Framebuffer::make();
    other->bind();
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(problem(), "");
    framebuffer->bind();
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
}

TEST_F(FramebufferRender, ColorIndexThatGlDoesNotHaveIsRefused) {
    const auto texture = blackTexture();
    const auto index = static_cast<unsigned int>(stateOf(GL_MAX_COLOR_ATTACHMENTS));
    framebuffer->bind();
    const auto refused = AnyOf("GL_INVALID_OPERATION", "GL_INVALID_ENUM");
    framebuffer->attachFragmentOut(index, *texture);
    EXPECT_THAT(takeError(), refused);
    framebuffer->attachFragmentOut(31, *texture);
    EXPECT_THAT(takeError(), refused);
    framebuffer->detachFragmentOut(index);
    EXPECT_THAT(takeError(), refused);
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
}

TEST_F(FramebufferRender, ColourIndexBeyondGlsEnumeratorsReachesNoOtherPoint) {
    const auto texture = blackTexture();
    const auto renderbuffer = Renderbuffer<U8vec4>::make(columns, rows);
    framebuffer->bind();
    for (const unsigned int index : {32u, 64u, 0x10000u, 0xFFFFFFFFu}) {
        framebuffer->attachFragmentOut(index, *texture);
        framebuffer->attachFragmentOut(index, *renderbuffer);
        EXPECT_EQ(takeError(), "");
    }
    for (const GLenum point : {GLenum(GL_COLOR_ATTACHMENT0), GLenum(GL_DEPTH_ATTACHMENT),
                               GLenum(GL_STENCIL_ATTACHMENT)}) {
        GLint type = -1;
        glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, point,
                                              GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &type);
        EXPECT_EQ(type, GL_NONE) << point;
    }
}

TEST_F(FramebufferRender, LevelThatGlDoesNotHaveIsRefused) {
    const auto texture = blackTexture();
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture, 1);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT");
    framebuffer->attachFragmentOut(*texture, 1000);
    EXPECT_EQ(takeError(), "GL_INVALID_VALUE");
}

TEST_F(FramebufferRender, ImagesOfDifferentSizesAreDrawnWhereTheyOverlap) {
    const auto large = blackTexture(8, 8);
    const auto small = blackTexture(4, 4);
    framebuffer->bind();
    framebuffer->attachFragmentOuts(*large, *small);
    ASSERT_EQ(problem(), "");
    Framebuffer::setViewport(0, 0, 8, 8);
    fill(red);
    EXPECT_EQ(takeError(), "");
    const std::vector<U8vec4> texels = large->download();
    EXPECT_EQ(texels[0], redPixel);
    EXPECT_EQ(texels[3 * 8 + 3], redPixel);
    EXPECT_EQ(texels[7 * 8 + 7], cleared);
    EXPECT_THAT(small->download(), Each(redPixel));
}

TEST_F(FramebufferRender, ImagesWithoutPixelsAreIncomplete) {
    const auto empty = Texture2D<U8vec4>::make(0, 0);
    const auto withoutStorage = Texture2D<U8vec4>::make();
    const auto renderbuffer = Renderbuffer<U8vec4>::make(0, 4);
    const std::string incomplete = "GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT";
    framebuffer->bind();
    framebuffer->attachFragmentOut(*empty);
    EXPECT_EQ(problem(), incomplete);
    framebuffer->attachFragmentOut(*withoutStorage);
    EXPECT_EQ(problem(), incomplete);
    framebuffer->attachFragmentOut(*renderbuffer);
    EXPECT_EQ(problem(), incomplete);
    fill(red);
    EXPECT_EQ(takeError(), "GL_INVALID_FRAMEBUFFER_OPERATION");
}

TEST_F(FramebufferRender, ImagesOfDifferentSampleCountsAreIncomplete) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const auto color = MultiSampleRenderbuffer<U8vec4>::make(columns, rows, maxSamples());
    const auto depth = Renderbuffer<depth24_stencil8>::make(columns, rows);
    framebuffer->bind();
    framebuffer->attachFragmentOut(*color);
    framebuffer->attachDepthStencilbuffer(*depth);
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE");
}

TEST_F(FramebufferRender, DestroyedImageIsDetachedFromTheBoundFramebuffer) {
    auto texture = blackTexture();
    auto depth = Renderbuffer<depth16>::make(columns, rows);
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture);
    framebuffer->attachDepthbuffer(*depth);
    EXPECT_EQ(problem(), "");
    depth.reset();
    EXPECT_EQ(problem(), "");
    texture.reset();
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
    fill(red);
    EXPECT_EQ(takeError(), "GL_INVALID_FRAMEBUFFER_OPERATION");
}

TEST_F(FramebufferRender, DisposedTextureAttachesNothing) {
    const auto texture = blackTexture();
    texture->dispose();
    framebuffer->bind();
    framebuffer->attachFragmentOut(*texture);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
}

TEST_F(FramebufferRender, DetachAllAndResetRemoveEverything) {
    const auto color = blackTexture();
    const auto depth = Renderbuffer<depth24_stencil8>::make(columns, rows);
    framebuffer->bind();
    for (const auto detach : {&Framebuffer::detachAll, &Framebuffer::reset}) {
        for (unsigned int i = 0; i < 8; ++i)
            framebuffer->attachFragmentOut(i, *color);
        framebuffer->attachDepthStencilbuffer(*depth);
        EXPECT_EQ(problem(), "");
        ((*framebuffer).*detach)();
        EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
        EXPECT_EQ(takeError(), "");
    }
}

TEST_F(FramebufferRender, DetachFragmentOutsRemovesOne) {
    const auto color = blackTexture();
    framebuffer->bind();
    framebuffer->attachFragmentOut(0, *color);
    framebuffer->attachFragmentOut(1, *color);
    framebuffer->detachFragmentOuts(1);
    EXPECT_EQ(problem(), "");
    framebuffer->detachFragmentOut(0);
    EXPECT_EQ(problem(), "GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
}

} // namespace

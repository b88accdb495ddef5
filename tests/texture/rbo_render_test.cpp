/// Renderbuffers on a driver.

#include <vellis/texture/renderbuffer.hpp>

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/texture/multi_sample_renderbuffer.hpp>

#include "support/offered_texels.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

class RenderbufferRender : public RenderTest {
protected:
    RenderbufferRender() : RenderTest(size, {Extension::Framebuffers}) {}
};

/// A property of a renderbuffer's storage, as GL has it.
int stored(const RBO& renderbuffer, GLenum pname) {
    int value = -1;
    renderbuffer.bind();
    glGetRenderbufferParameteriv(GL_RENDERBUFFER, pname, &value);
    renderbuffer.unbind();
    return value;
}

TEST_F(RenderbufferRender, EveryFormatIsStoredAsAskedFor) {
    const auto check = [](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto renderbuffer = Renderbuffer<F>::make(7, 5);
        EXPECT_EQ(takeError(), "");
        EXPECT_EQ(stateOf(GL_RENDERBUFFER_BINDING), 0);
        EXPECT_EQ(stored(*renderbuffer, GL_RENDERBUFFER_WIDTH), 7);
        EXPECT_EQ(stored(*renderbuffer, GL_RENDERBUFFER_HEIGHT), 5);
        EXPECT_EQ(stored(*renderbuffer, GL_RENDERBUFFER_SAMPLES), 0);
        EXPECT_EQ(unsigned(stored(*renderbuffer, GL_RENDERBUFFER_INTERNAL_FORMAT)),
                  texelRow<F>.internalFormat);
    };
    eachOffered<ColorTexels>(check);
    DepthTexels::each(check);
    StencilTexels::each(check);
}

TEST_F(RenderbufferRender, EveryFormatIsStoredWithSamples) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const auto check = [](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto renderbuffer = MultiSampleRenderbuffer<F>::make(7, 5, 2);
        EXPECT_EQ(takeError(), "");
        EXPECT_EQ(renderbuffer->numSamples(), 2u);
        EXPECT_GE(stored(*renderbuffer, GL_RENDERBUFFER_SAMPLES), 2);
        EXPECT_EQ(stored(*renderbuffer, GL_RENDERBUFFER_WIDTH), 7);
    };
    eachOffered<ColorTexels>(check);
    DepthTexels::each(check);
    StencilTexels::each(check);
}

TEST_F(RenderbufferRender, NoSampleAndOneSampleAreStoredAsOne) {
    for (const unsigned int samples : {0u, 1u}) {
        const MultiSampleRenderbuffer<U8vec4> renderbuffer(64, 32, samples);
        EXPECT_EQ(renderbuffer.numSamples(), 1u);
        EXPECT_EQ(stored(renderbuffer, GL_RENDERBUFFER_SAMPLES), 0);
    }
}

TEST_F(RenderbufferRender, MoreSamplesThanTheDriverHasAreRefusedAndStayOnRecord) {
    const unsigned int samples = maxSamples() + 1 > 2 ? maxSamples() + 1 : 2;
    const MultiSampleRenderbuffer<U8vec4> renderbuffer(64, 32, samples);
    // A limit of all formats, or one of this format.
    EXPECT_THAT(takeError(), testing::AnyOf("GL_INVALID_VALUE", "GL_INVALID_OPERATION"));
    EXPECT_EQ(renderbuffer.numSamples(), samples);
    EXPECT_EQ(renderbuffer.width(), 64u);
    EXPECT_EQ(stored(renderbuffer, GL_RENDERBUFFER_WIDTH), 0);
    EXPECT_EQ(stateOf(GL_RENDERBUFFER_BINDING), 0);
}

TEST_F(RenderbufferRender, SizeThatGlDoesNotHaveIsRefusedAndStaysOnRecord) {
    const auto most = static_cast<unsigned int>(stateOf(GL_MAX_RENDERBUFFER_SIZE));
    for (const unsigned int width : {most + 1, 0x2000000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        const Renderbuffer<U8vec4> renderbuffer(width, 1);
        EXPECT_EQ(takeError(), "GL_INVALID_VALUE");
        EXPECT_EQ(renderbuffer.width(), width);
        EXPECT_EQ(stored(renderbuffer, GL_RENDERBUFFER_WIDTH), 0);
    }
}

TEST_F(RenderbufferRender, SizeOfZeroIsNoError) {
    const Renderbuffer<depth16> renderbuffer(0, 0);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(stored(renderbuffer, GL_RENDERBUFFER_WIDTH), 0);
}

TEST_F(RenderbufferRender, CreationEndsUnboundWhateverWasBound) {
    const Renderbuffer<U8vec4> other(4, 4);
    other.bind();
    EXPECT_EQ(stateOf(GL_RENDERBUFFER_BINDING), int(other.id()));
    const Renderbuffer<U8vec4> renderbuffer(4, 4);
    EXPECT_EQ(stateOf(GL_RENDERBUFFER_BINDING), 0);
}

TEST_F(RenderbufferRender, FirstCopyToGoDeletesForAll) {
    const auto renderbuffer = Renderbuffer<U8vec4>::make(4, 4);
    EXPECT_EQ(liveNames(glIsRenderbuffer), 1);
    { const Renderbuffer<U8vec4> copy = *renderbuffer; }
    EXPECT_EQ(glIsRenderbuffer(renderbuffer->id()), GL_FALSE);
    EXPECT_EQ(takeError(), "");
}

TEST_F(RenderbufferRender, NothingIsLeftOfThem) {
    {
        const auto one = Renderbuffer<U8vec4>::make(4, 4);
        const auto several = MultiSampleRenderbuffer<U8vec4>::make(4, 4, maxSamples());
        const Renderbuffer<depth16> refused(0xFFFFFFFF, 1);
        EXPECT_EQ(takeError(), "GL_INVALID_VALUE");
        EXPECT_EQ(liveNames(glIsRenderbuffer), 3);
    }
    EXPECT_EQ(liveNames(glIsRenderbuffer), 0);
}

} // namespace

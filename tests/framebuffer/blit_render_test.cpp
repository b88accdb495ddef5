/// Blits and pixels read back on a driver.

#include <vellis/framebuffer/framebuffer.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>

#include "support/offered_texels.hpp"
#include "support/packing.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAreArray;
using BufferID = Framebuffer::BufferID;
using Pixels = std::vector<U8vec4>;

// An odd size, so that rows of small pixels end where no alignment but 1 would have them end.
constexpr unsigned int width = 7;
constexpr unsigned int height = 5;
const U8vec4 nothing(0);
const U8vec4 white(255);

/// Pixels of which no two are alike.
Pixels pattern(unsigned int w = width, unsigned int h = height) {
    Pixels pixels;
    for (unsigned int y = 0; y < h; ++y)
        for (unsigned int x = 0; x < w; ++x)
            pixels.emplace_back(10 * x, 20 * y, 30 * (x % 2), 255 - x);
    return pixels;
}

std::shared_ptr<Texture2D<U8vec4>> textureOf(const Pixels& pixels, unsigned int w = width,
                                             unsigned int h = height) {
    return Texture2D<U8vec4>::make(w, h, pixels.data());
}

std::shared_ptr<Texture2D<U8vec4>> blackTexture(unsigned int w = width, unsigned int h = height) {
    return textureOf(Pixels(std::size_t{w} * h), w, h);
}

/// Draws pixels into the framebuffer that is bound, one by one.
void draw(const Pixels& pixels) {
    for (unsigned int i = 0; i < pixels.size(); ++i) {
        Framebuffer::enableScissorTest(static_cast<int>(i % width), static_cast<int>(i / width), 1,
                                       1);
        Framebuffer::clearColor(glm::vec4(pixels[i]) / 255.f);
    }
    Framebuffer::disableScissorTest();
}

class BlitRender : public RenderTest {
protected:
    BlitRender() : RenderTest(size, {Extension::Framebuffers}) {}

    void TearDown() override {
        EXPECT_EQ(liveNames(glIsFramebuffer), 0);
        EXPECT_EQ(liveNames(glIsRenderbuffer), 0);
        RenderTest::TearDown();
    }
};

TEST_F(BlitRender, TextureIsCopiedPixelForPixel) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    Framebuffer::blit(*source, *destination, width, height);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(destination->download(), pattern());
    EXPECT_EQ(source->download(), pattern());
}

TEST_F(BlitRender, RenderbufferIsCopiedPixelForPixel) {
    const auto source = Renderbuffer<U8vec4>::make(width, height);
    const auto destination = blackTexture();
    {
        Framebuffer framebuffer;
        framebuffer.bind();
        framebuffer.attachFragmentOut(*source);
        draw(pattern());
        framebuffer.unbind();
    }
    Framebuffer::blit(*source, *destination, width, height);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(destination->download(), pattern());
}

TEST_F(BlitRender, MultiSampleRenderbufferOfOneSampleIsCopiedPixelForPixel) {
    const auto source = MultiSampleRenderbuffer<U8vec4>::make(width, height, 1);
    const auto destination = blackTexture();
    {
        Framebuffer framebuffer;
        framebuffer.bind();
        framebuffer.attachFragmentOut(*source);
        draw(pattern());
        framebuffer.unbind();
    }
    Framebuffer::blit(*source, *destination, width, height);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(destination->download(), pattern());
}

TEST_F(BlitRender, EveryColorFormatIsCopiedWhereItCanBeDrawnTo) {
    eachOffered<ColorTexels>([](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto texture = Texture2D<F>::make(width, height);
        const auto copy = Texture2D<F>::make(width, height);
        Framebuffer framebuffer;
        framebuffer.bind();
        framebuffer.attachFragmentOut(*texture);
        const bool canBeDrawnTo = problem().empty();
        if (canBeDrawnTo)
            Framebuffer::clearColor(glm::vec4(0.25f, 0.5f, 0.75f, 1.f));
        framebuffer.unbind();
        Framebuffer::blit(*texture, *copy, width, height);
        EXPECT_EQ(takeError(), canBeDrawnTo ? "" : "GL_INVALID_FRAMEBUFFER_OPERATION");
        if (canBeDrawnTo) {
            EXPECT_EQ(copy->download(), texture->download());
        }
    });
}

/// The number of pixels that are neither black nor white.
std::ptrdiff_t numGreys(const Pixels& pixels) {
    return std::count_if(pixels.begin(), pixels.end(),
                         [](const U8vec4& pixel) { return pixel.r != 0 && pixel.r != 255; });
}

constexpr unsigned int edgeSize = 32;

/// Draws a white triangle over the lower left half of a renderbuffer with samples, and copies it.
Pixels resolvedEdge(const MultiSampleRenderbuffer<U8vec4>& samples) {
    const auto resolved = blackTexture(edgeSize, edgeSize);
    Framebuffer framebuffer;
    framebuffer.bind();
    framebuffer.attachFragmentOut(samples);
    EXPECT_EQ(problem(), "");
    Framebuffer::setViewport(0, 0, edgeSize, edgeSize);
    Framebuffer::clearColor(glm::vec4(0.f));
    drawByGl(GL_TRIANGLES, {{-1.f, -1.f, 0.f}, {1.f, -1.f, 0.f}, {-1.f, 0.6f, 0.f}},
             glm::vec4(1.f));
    framebuffer.unbind();
    Framebuffer::blit(samples, *resolved, edgeSize, edgeSize);
    EXPECT_EQ(takeError(), "");
    return resolved->download();
}

TEST_F(BlitRender, SamplesOfAnEdgeAreAveraged) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const MultiSampleRenderbuffer<U8vec4> samples(edgeSize, edgeSize, maxSamples());
    const Pixels pixels = resolvedEdge(samples);
    EXPECT_GT(numGreys(pixels), 8);
    EXPECT_EQ(pixels.front(), white);
    EXPECT_EQ(pixels.back(), nothing);
}

TEST_F(BlitRender, OneSampleGivesNoIntermediateColors) {
    const MultiSampleRenderbuffer<U8vec4> samples(edgeSize, edgeSize, 1);
    const Pixels pixels = resolvedEdge(samples);
    EXPECT_EQ(numGreys(pixels), 0);
    EXPECT_EQ(pixels.front(), white);
    EXPECT_EQ(pixels.back(), nothing);
}

TEST_F(BlitRender, MultiSamplingThatIsOffGivesNoIntermediateColors) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const MultiSampleRenderbuffer<U8vec4> samples(edgeSize, edgeSize, maxSamples());
    Framebuffer::disableMultiSampling();
    EXPECT_EQ(numGreys(resolvedEdge(samples)), 0);
    Framebuffer::enableMultiSampling(true);
    EXPECT_GT(numGreys(resolvedEdge(samples)), 8);
}

/// Clears renderbuffers of that many samples and copies them into textures.
void copiesDepthAndStencil(unsigned int samples) {
    const auto color = MultiSampleRenderbuffer<U8vec4>::make(width, height, samples);
    const auto packed = MultiSampleRenderbuffer<depth24_stencil8>::make(width, height, samples);
    const auto colorCopy = blackTexture();
    const auto packedCopy = Texture2D<depth24_stencil8>::make(width, height);
    {
        Framebuffer framebuffer;
        framebuffer.bind();
        framebuffer.attachFragmentOut(*color);
        framebuffer.attachDepthStencilbuffer(*packed);
        ASSERT_EQ(problem(), "");
        Framebuffer::clear(glm::vec4(1.f), 0.25f, 77);
        framebuffer.unbind();
    }
    Framebuffer::blit(*color, *packed, *colorCopy, *packedCopy, width, height);
    EXPECT_EQ(takeError(), "");
    EXPECT_THAT(colorCopy->download(), Each(white));
    for (const depth24_stencil8 pixel : packedCopy->download()) {
        EXPECT_NEAR((pixel.value >> 8) / 16777215.0, 0.25, 1e-6);
        EXPECT_EQ(pixel.value & 0xFF, 77u);
    }
}

TEST_F(BlitRender, DepthAndStencilAreCopiedWithTheColor) {
    copiesDepthAndStencil(1);
}

TEST_F(BlitRender, DepthAndStencilOfSeveralSamplesAreCopiedWithTheColor) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    copiesDepthAndStencil(maxSamples());
}

TEST_F(BlitRender, OnlyTheLowerLeftPartIsCopied) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    Framebuffer::blit(*source, *destination, 3, 2);
    Pixels expected(pattern().size());
    for (unsigned int y = 0; y < 2; ++y)
        std::copy_n(pattern().begin() + y * width, 3, expected.begin() + y * width);
    EXPECT_EQ(destination->download(), expected);
}

TEST_F(BlitRender, OfNothingCopiesNothing) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    Framebuffer::blit(*source, *destination, 0, height);
    Framebuffer::blit(*source, *destination, width, 0);
    EXPECT_EQ(takeError(), "");
    EXPECT_THAT(destination->download(), Each(nothing));
}

TEST_F(BlitRender, LargerThanTheImagesCopiesWhatThereIs) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    Framebuffer::blit(*source, *destination, 2 * width, 2 * height);
    EXPECT_EQ(takeError(), "");
    EXPECT_EQ(destination->download(), pattern());
}

TEST_F(BlitRender, SizesThatNoImageHasChangeNothingElse) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    for (const unsigned int side : {0x2000000u, 0x40000000u, 0x7FFFFFFFu, 0x80000000u}) {
        Framebuffer::blit(*source, *destination, side, side);
        EXPECT_EQ(takeError(), "") << side;
        EXPECT_THAT(destination->download(), AnyOf(pattern(), Each(nothing))) << side;
    }
    EXPECT_EQ(source->download(), pattern());
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
}

TEST_F(BlitRender, ScissorRectangleConfinesTheCopy) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    Framebuffer::enableScissorTest(2, 1, 1, 1);
    Framebuffer::blit(*source, *destination, width, height);
    Pixels expected(pattern().size());
    expected[width + 2] = pattern()[width + 2];
    EXPECT_EQ(destination->download(), expected);
}

TEST_F(BlitRender, EveryBindingComesBack) {
    const auto source = textureOf(pattern());
    const auto renderbuffer = Renderbuffer<U8vec4>::make(width, height);
    const auto samples = MultiSampleRenderbuffer<U8vec4>::make(width, height, maxSamples());
    const auto packed =
        MultiSampleRenderbuffer<depth24_stencil8>::make(width, height, maxSamples());
    const auto destination = blackTexture();
    const auto packedDestination = Texture2D<depth24_stencil8>::make(width, height);
    const ForeignBindings others;
    others.each([&](std::pair<int, int> before) {
        Framebuffer::blit(*source, *destination, width, height);
        EXPECT_EQ(boundFramebuffers(), before);
        Framebuffer::blit(*renderbuffer, *destination, width, height);
        EXPECT_EQ(boundFramebuffers(), before);
        Framebuffer::blit(*samples, *destination, width, height);
        EXPECT_EQ(boundFramebuffers(), before);
        Framebuffer::blit(*samples, *packed, *destination, *packedDestination, width, height);
        EXPECT_EQ(boundFramebuffers(), before);
        EXPECT_EQ(takeError(), "");
    });
}

TEST_F(BlitRender, DrawAndReadBuffersOfTheBoundFramebuffersStay) {
    const auto source = textureOf(pattern());
    const auto destination = blackTexture();
    Framebuffer drawn;
    Framebuffer read;
    drawn.bindToDraw();
    read.bindToRead();
    Framebuffer::setDrawBuffer(BufferID::COLOR_ATTACHMENT2);
    Framebuffer::setReadBuffer(BufferID::COLOR_ATTACHMENT3);
    Framebuffer::blit(*source, *destination, width, height);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), GL_COLOR_ATTACHMENT2);
    EXPECT_EQ(stateOf(GL_READ_BUFFER), GL_COLOR_ATTACHMENT3);
    Framebuffer::bind(0);
    const int drawBuffer = stateOf(GL_DRAW_BUFFER);
    const int readBuffer = stateOf(GL_READ_BUFFER);
    Framebuffer::blit(*source, *destination, width, height);
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), drawBuffer);
    EXPECT_EQ(stateOf(GL_READ_BUFFER), readBuffer);
}

TEST_F(BlitRender, ImageWithoutStorageIsRefusedAndBindingsComeBack) {
    const auto without = Texture2D<U8vec4>::make();
    const auto with = textureOf(pattern());
    const auto disposed = blackTexture();
    disposed->dispose();
    const ForeignBindings others;
    others.each([&](std::pair<int, int> before) {
        Framebuffer::blit(*without, *with, width, height);
        EXPECT_EQ(takeError(), "GL_INVALID_FRAMEBUFFER_OPERATION");
        Framebuffer::blit(*with, *without, width, height);
        EXPECT_EQ(takeError(), "GL_INVALID_FRAMEBUFFER_OPERATION");
        Framebuffer::blit(*with, *disposed, width, height);
        EXPECT_EQ(takeError(), "GL_INVALID_FRAMEBUFFER_OPERATION");
        EXPECT_EQ(boundFramebuffers(), before);
    });
    EXPECT_EQ(with->download(), pattern());
}

TEST_F(BlitRender, SampleCountsThatDifferAreRefused) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const auto color = MultiSampleRenderbuffer<U8vec4>::make(width, height, maxSamples());
    const auto packed = MultiSampleRenderbuffer<depth24_stencil8>::make(width, height, 1);
    const auto colorCopy = blackTexture();
    const auto packedCopy = Texture2D<depth24_stencil8>::make(width, height);
    Framebuffer::blit(*color, *packed, *colorCopy, *packedCopy, width, height);
    EXPECT_EQ(takeError(), "GL_INVALID_FRAMEBUFFER_OPERATION");
    EXPECT_THAT(colorCopy->download(), Each(nothing));
}

// Reading back.

/// A framebuffer that shows a texture, bound for the time of a test.
class Shown {
public:
    template <class F>
    explicit Shown(const Texture2D<F>& texture) {
        framebuffer_.bind();
        framebuffer_.attachFragmentOut(texture);
    }
    ~Shown() { framebuffer_.unbind(); }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;

private:
    Framebuffer framebuffer_;
};

/// The components of a pixel, from 0 to 1.
template <class F>
std::vector<double> components(const F& pixel) {
    const auto values = [&pixel](auto component) {
        constexpr std::size_t count = sizeof(F) / sizeof(component);
        std::vector<decltype(component)> numbers(count);
        std::memcpy(numbers.data(), &pixel, sizeof(F));
        return std::vector<double>(numbers.begin(), numbers.end());
    };
    const auto divided = [](std::vector<double> numbers, double largest) {
        for (double& number : numbers)
            number /= largest;
        return numbers;
    };
    if (texelRow<F>.pixelType == GL_UNSIGNED_BYTE)
        return divided(values(static_cast<unsigned char>(0)), 255.0);
    if (texelRow<F>.pixelType == GL_UNSIGNED_SHORT)
        return divided(values(static_cast<unsigned short>(0)), 65535.0);
    return values(0.f);
}

TEST_F(BlitRender, EveryColorFormatIsReadBackAndTheAlignmentStays) {
    const auto shown = Texture2D<U8vec4>::make(width, height);
    const Shown framebuffer(*shown);
    Framebuffer::clearColor(glm::vec4(0.2f, 0.4f, 0.6f, 0.8f));
    const double expected[] = {0.2, 0.4, 0.6, 0.8};
    for (const int alignment : {1, 2, 4, 8}) {
        glPixelStorei(GL_PACK_ALIGNMENT, alignment);
        eachOffered<ColorTexels>([&](auto texel) {
            using F = typename decltype(texel)::type;
            SCOPED_TRACE(texelRow<F>.name);
            const std::vector<F> pixels = Framebuffer::download<F>(0, 0, width, height);
            EXPECT_EQ(pixels.size(), width * height);
            EXPECT_EQ(stateOf(GL_PACK_ALIGNMENT), alignment);
            for (const F& pixel : {pixels.front(), pixels[width], pixels.back()}) {
                const std::vector<double> read = components(pixel);
                for (std::size_t i = 0; i < read.size(); ++i)
                    EXPECT_NEAR(read[i], expected[i], 0.003) << i;
            }
        });
    }
    EXPECT_EQ(takeError(), "");
}

TEST_F(BlitRender, EveryColorFormatIsReadFromItself) {
    eachOffered<ColorTexels>([](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const auto texture = Texture2D<F>::make(width, height);
        const Shown framebuffer(*texture);
        if (!problem().empty()) { // the driver's to say, but not for those that GL requires
            EXPECT_EQ(sizeof(F) % 3, 0u);
            return;
        }
        Framebuffer::clearColor(glm::vec4(0.2f, 0.4f, 0.6f, 0.8f));
        const std::vector<F> pixels = Framebuffer::download<F>(0, 0, width, height);
        EXPECT_EQ(pixels, texture->download());
        EXPECT_NEAR(components(pixels.back()).at(0), 0.2, 0.003);
    });
}

TEST_F(BlitRender, RowsComeFromTheLowestUp) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    EXPECT_EQ(Framebuffer::download<U8vec4>(0, 0, width, height), pattern());
    const Pixels part = Framebuffer::download<U8vec4>(2, 1, 2, 2);
    const Pixels whole = pattern();
    EXPECT_EQ(part, (Pixels{whole[width + 2], whole[width + 3], whole[2 * width + 2],
                            whole[2 * width + 3]}));
}

TEST_F(BlitRender, RowsOfThreeBytesHaveNoGaps) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    std::vector<U8vec3> expected;
    for (const U8vec4& pixel : pattern())
        expected.emplace_back(pixel);
    EXPECT_EQ(Framebuffer::download<U8vec3>(0, 0, width, height), expected);
}

TEST_F(BlitRender, ReadsIntoABoundPixelBuffer) {
    SKIP_WITHOUT(Extension::MappedRanges);
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Download, 4 * (width + 1),
                                          BufferUsage::Stream, BufferAccess::Read);
    buffer->bind();
    Framebuffer::download(static_cast<U8vec4*>(nullptr), 0, 0, width, 1);
    Framebuffer::download(reinterpret_cast<U8vec4*>(4 * width), 0, 1, 1, 1);
    buffer->unbind();
    EXPECT_EQ(takeError(), "");
    const auto* pixels = static_cast<const U8vec4*>(buffer->map(MapAccess::ReadOnly));
    ASSERT_NE(pixels, nullptr);
    const Pixels expected = pattern();
    EXPECT_TRUE(std::equal(pixels, pixels + width + 1, expected.begin()));
    buffer->unmap(true);
}

TEST_F(BlitRender, VectorHasThePixelsWhileAPixelBufferIsBound) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Download, 16, BufferUsage::Stream,
                                          BufferAccess::Read);
    buffer->bind();
    EXPECT_EQ(Framebuffer::download<U8vec4>(0, 0, width, height), pattern());
    EXPECT_EQ(stateOf(GL_PIXEL_PACK_BUFFER_BINDING), static_cast<int>(buffer->id()));
    EXPECT_TRUE(buffer->isBound());
    EXPECT_EQ(takeError(), "");
}

TEST_F(BlitRender, VectorHasThePixelsWhateverTheApplicationAskedOfPacking) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    const auto read = [] { return Framebuffer::download<U16vec4>(0, 0, width, height); };
    const auto expected = read(); // two bytes a component, which can be swapped
    EXPECT_EQ(expected[1].g, 257 * pattern()[1].g);
    for (const PackParameter& parameter : packParameters) {
        SCOPED_TRACE(parameter.name);
        glPixelStorei(parameter.pname, parameter.value);
        EXPECT_EQ(read(), expected);
        EXPECT_EQ(stateOf(parameter.pname), parameter.value);
        glPixelStorei(parameter.pname, 0);
    }
    EXPECT_EQ(takeError(), "");
}

TEST_F(BlitRender, MemoryOfTheCallerHasThePixelsWhereItAskedForThem) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    glPixelStorei(GL_PACK_ROW_LENGTH, width + 2);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 1);
    Pixels room((width + 2) * height);
    Framebuffer::download(room.data(), 0, 0, width, height);
    EXPECT_EQ(room[0], nothing);
    EXPECT_EQ(room[1], pattern()[0]);
    EXPECT_EQ(room[width + 3], pattern()[width]);
    EXPECT_EQ(takeError(), "");
}

TEST_F(BlitRender, PlacesAndSizesThatNoFramebufferHasEndNothing) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    Pixels room(4);
    constexpr unsigned int places[] = {0x3FFFFFFF, 0x40000000, 0x7FFFFFFF, 0x80000000, 0xC0000000};
    for (const unsigned int place : places) {
        Framebuffer::download(room.data(), place, 0, 2, 2);
        Framebuffer::download(room.data(), 0, place, 2, 2);
        EXPECT_EQ(takeError(), "") << place;
        EXPECT_THAT(room, Each(nothing)) << place;
        Framebuffer::download(room.data(), place, place, 0x40000000, 1);
        Framebuffer::download(room.data(), place, 0, place, 1);
        while (!takeError().empty()) {
        }
        EXPECT_THAT(room, Each(nothing)) << place;
    }
    for (const unsigned int side : {0x40000000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Framebuffer::download(room.data(), 0, 0, side, 1);
        EXPECT_EQ(takeError(), "GL_INVALID_VALUE") << side;
        Framebuffer::download(room.data(), 0, 0, 1, side);
        EXPECT_EQ(takeError(), "GL_INVALID_VALUE") << side;
        EXPECT_TRUE(Framebuffer::download<glm::vec4>(0, 0, side, side).empty());
        EXPECT_EQ(takeError(), "") << side;
    }
}

TEST_F(BlitRender, NullAndSizesOfZeroReadNothing) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    Framebuffer::download(static_cast<U8vec4*>(nullptr), 0, 0, width, height);
    EXPECT_TRUE(Framebuffer::download<U8vec4>(0, 0, 0, height).empty());
    U8vec4 pixel(1, 2, 3, 4);
    Framebuffer::download(&pixel, 0, 0, 0, height);
    EXPECT_EQ(pixel, U8vec4(1, 2, 3, 4));
    EXPECT_EQ(takeError(), "");
}

TEST_F(BlitRender, PixelsOutsideTheFramebufferAreNoError) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    const Pixels pixels = Framebuffer::download<U8vec4>(width - 1, height - 1, 4, 4);
    EXPECT_EQ(pixels.size(), 16u);
    EXPECT_EQ(pixels[0], pattern().back());
    EXPECT_EQ(takeError(), "");
}

TEST_F(BlitRender, DepthOrStencilThatIsNotThereIsRefused) {
    const auto texture = textureOf(pattern());
    const Shown framebuffer(*texture);
    EXPECT_EQ(Framebuffer::download<depth32>(0, 0, 1, 1).at(0).value, 0u);
    EXPECT_EQ(takeError(), "GL_INVALID_OPERATION");
    EXPECT_EQ(Framebuffer::download<stencil8>(0, 0, 1, 1).at(0).value, 0u);
    EXPECT_EQ(takeError(), "GL_INVALID_OPERATION");
    EXPECT_EQ(stateOf(GL_PACK_ALIGNMENT), 4);
}

TEST_F(BlitRender, FramebufferOfSeveralSamplesIsNotRead) {
    if (maxSamples() < 2)
        GTEST_SKIP() << "the driver has no multisampling";
    const MultiSampleRenderbuffer<U8vec4> samples(width, height, maxSamples());
    Framebuffer framebuffer;
    framebuffer.bind();
    framebuffer.attachFragmentOut(samples);
    EXPECT_THAT(Framebuffer::download<U8vec4>(0, 0, 2, 2), Each(nothing));
    EXPECT_EQ(takeError(), "GL_INVALID_OPERATION");
    framebuffer.unbind();
}

} // namespace

// needs: private access

/// Blits, and pixels read back.

#include <vellis/framebuffer/framebuffer.hpp>

#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>
#include <vellis/texture.hpp>

#include "support/fake_gl.hpp"
#include "support/packing.hpp"
#include "support/texel_formats.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;
using Lines = std::vector<std::string>;
using testing::IsEmpty;

/// Whether a picture can be copied from one into another.
template <class, class Source, class Destination>
struct BlitsTo : std::false_type {};
template <class Source, class Destination>
struct BlitsTo<std::void_t<decltype(Framebuffer::blit(std::declval<const Source&>(),
                                                      std::declval<const Destination&>(), 1u, 1u))>,
               Source, Destination> : std::true_type {};
template <class Source, class Destination>
constexpr bool canBlit = BlitsTo<void, Source, Destination>::value;

template <class F>
struct BlitsItsFormat {
    static constexpr bool value = canBlit<MultiSampleRenderbuffer<F>, Texture2D<F>> &&
                                  canBlit<Renderbuffer<F>, Texture2D<F>> &&
                                  canBlit<Texture2D<F>, Texture2D<F>>;
};
static_assert(ColorTexels::all<BlitsItsFormat>);
static_assert(!DepthTexels::any<BlitsItsFormat> && !StencilTexels::any<BlitsItsFormat>);
static_assert(!SamplerTexels::any<BlitsItsFormat> && !OtherTypes::any<BlitsItsFormat>);
static_assert(!canBlit<Texture2D<U8vec4>, Texture2D<float>>, "the formats must be the same");
static_assert(!canBlit<Texture2D<U8vec4>, Renderbuffer<U8vec4>>, "only textures take a copy");
static_assert(!canBlit<Texture1D<U8vec4>, Texture2D<U8vec4>>);

/// Whether pixels of a type can be read back.
template <class F, class = void>
struct DownloadsTo : std::false_type {};
template <class F>
struct DownloadsTo<F,
                   std::void_t<decltype(Framebuffer::download(std::declval<F*>(), 0u, 0u, 1u, 1u))>>
    : std::true_type {};
template <class F, class = void>
struct DownloadsVectorOf : std::false_type {};
template <class F>
struct DownloadsVectorOf<F, std::void_t<decltype(Framebuffer::download<F>(0u, 0u, 1u, 1u))>>
    : std::true_type {};
template <class F>
struct Downloads {
    static constexpr bool value = DownloadsTo<F>::value && DownloadsVectorOf<F>::value;
};
template <class F>
struct DownloadsInAnyForm {
    static constexpr bool value = DownloadsTo<F>::value || DownloadsVectorOf<F>::value;
};
static_assert(ColorTexels::all<Downloads> && DepthTexels::all<Downloads> &&
              StencilTexels::all<Downloads>);
static_assert(!SamplerTexels::any<DownloadsInAnyForm> && !OtherTypes::any<DownloadsInAnyForm>);
static_assert(!DownloadsTo<void>::value && !DownloadsTo<const float>::value);

const Lines saving = {"glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, out)",
                      "glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, out)"};

/// The calls of Framebuffer::detachAll.
Lines detachAll(const std::string& target) {
    Lines lines;
    const auto detach = [&](const std::string& point) {
        lines.push_back("glFramebufferRenderbuffer(" + target + ", GL_" + point +
                        "_ATTACHMENT, GL_RENDERBUFFER, 0)");
    };
    for (int i = 0; i < 8; ++i)
        lines.push_back("glFramebufferRenderbuffer(" + target + ", GL_COLOR_ATTACHMENT" +
                        std::to_string(i) + ", GL_RENDERBUFFER, 0)");
    detach("DEPTH");
    detach("STENCIL");
    detach("DEPTH_STENCIL");
    return lines;
}

/// The temporaries of a blit in a GL that has made names 1 to 6.
const std::string source = "7";
const std::string destination = "8";

/// A blit, and the calls that no other has.
struct BlitRow {
    const char* name;
    std::function<void(unsigned int width, unsigned int height)> blit;
    Lines attachSource;
    Lines attachDestination;
    std::string mask;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const BlitRow& row, std::ostream* out) {
    *out << row.name;
}

/// The calls of a blit, but for those that put the bindings back, and those after them.
Lines callsUntilRestored(const BlitRow& row, const std::string& size) {
    Lines lines = saving;
    const auto add = [&](const Lines& more) {
        lines.insert(lines.end(), more.begin(), more.end());
    };
    add({"glGenFramebuffers(1, {" + source + "})", "glGenFramebuffers(1, {" + destination + "})"});
    add({"glBindFramebuffer(GL_READ_FRAMEBUFFER, " + source + ")"});
    add(row.attachSource);
    add({"glBindFramebuffer(GL_DRAW_FRAMEBUFFER, " + destination + ")"});
    add(row.attachDestination);
    add({"glBlitFramebuffer(0, 0, " + size + ", 0, 0, " + size + ", " + row.mask +
         ", GL_NEAREST)"});
    add(detachAll("GL_DRAW_FRAMEBUFFER"));
    add({"glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)"});
    add(detachAll("GL_READ_FRAMEBUFFER"));
    add({"glBindFramebuffer(GL_READ_FRAMEBUFFER, 0)"});
    return lines;
}

const Lines deletion = {"glDeleteFramebuffers(1, {" + destination + "})",
                        "glDeleteFramebuffers(1, {" + source + "})"};

/// A GL that has made the names 1 to 6.
class BlitTrace : public testing::TestWithParam<BlitRow> {
protected:
    BlitTrace() {
        GLuint names[6];
        glGenTextures(6, names);
        liveBefore = gl.liveNames();
        gl.forget();
    }
    ~BlitTrace() override {
        EXPECT_EQ(gl.liveNames(), liveBefore);
        EXPECT_THAT(gl.doubleDeletes(), IsEmpty());
        gl.ignoreTheRest();
    }

    void bindOthers(unsigned int draw, unsigned int read) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, draw);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, read);
        gl.forget();
    }

    FakeGl gl;
    std::vector<std::string> liveBefore;
};

TEST_P(BlitTrace, CopiesBetweenTwoTemporariesAndRestoresBindingsThatDiffer) {
    bindOthers(41, 42);
    GetParam().blit(64, 32);
    EXPECT_GL_CALLS(gl, callsUntilRestored(GetParam(), "64, 32"),
                    "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 41)",
                    "glBindFramebuffer(GL_READ_FRAMEBUFFER, 42)", deletion);
}

TEST_P(BlitTrace, RestoresEqualBindings) {
    bindOthers(41, 41);
    GetParam().blit(64, 32);
    EXPECT_GL_CALLS(gl, callsUntilRestored(GetParam(), "64, 32"),
                    "glBindFramebuffer(GL_FRAMEBUFFER, 41)", deletion);
}

TEST_P(BlitTrace, OfNothingStillMakesAllCalls) {
    for (const auto& [width, height] : {std::pair(0u, 32u), {64u, 0u}, {0u, 0u}}) {
        GetParam().blit(width, height);
        EXPECT_EQ(gl.countOf("glBlitFramebuffer"), 1u);
        const Lines calls = gl.takeCalls();
        const auto size = std::to_string(width) + ", " + std::to_string(height);
        EXPECT_EQ(calls.size(), callsUntilRestored(GetParam(), size).size() + 3);
        EXPECT_THAT(calls, testing::Contains("glBlitFramebuffer(0, 0, " + size + ", 0, 0, " + size +
                                             ", " + GetParam().mask + ", GL_NEAREST)"));
    }
}

TEST_P(BlitTrace, WithoutTheEntryPointDoesNothing) {
    gl.remove(glad_glBlitFramebuffer);
    GetParam().blit(64, 32);
    EXPECT_GL_CALLS(gl);
}

TEST_P(BlitTrace, WithoutNamesTheBindingsComeBackNonetheless) {
    gl.failToCreate(glad_glGenFramebuffers);
    bindOthers(41, 42);
    GetParam().blit(64, 32);
    const Lines calls = gl.takeCalls();
    EXPECT_THAT(calls, testing::Contains("glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 41)"));
    EXPECT_THAT(calls, testing::Contains("glBindFramebuffer(GL_READ_FRAMEBUFFER, 42)"));
}

const std::string drawsToIt = "glDrawBuffer(GL_COLOR_ATTACHMENT0)";
const std::string readsFromIt = "glReadBuffer(GL_COLOR_ATTACHMENT0)";
const Lines sourceRenderbuffer = {
    "glFramebufferRenderbuffer(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 51)",
    readsFromIt};
const Lines destinationTexture = {
    "glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 52, 0)",
    drawsToIt};

INSTANTIATE_TEST_SUITE_P(
    Blits, BlitTrace,
    testing::Values(
        BlitRow{"MultiSampleRenderbuffer",
                [](unsigned int width, unsigned int height) {
                    Framebuffer::blitMultiSampleRenderbufferToTexture2D(51, 52, width, height);
                },
                sourceRenderbuffer, destinationTexture, "GL_COLOR_BUFFER_BIT"},
        BlitRow{"Renderbuffer",
                [](unsigned int width, unsigned int height) {
                    Framebuffer::blitRenderbufferToTexture2D(51, 52, width, height);
                },
                sourceRenderbuffer, destinationTexture, "GL_COLOR_BUFFER_BIT"},
        BlitRow{"Texture",
                [](unsigned int width, unsigned int height) {
                    Framebuffer::blitTexture2DToTexture2D(51, 52, width, height);
                },
                {"glFramebufferTexture2D(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, "
                 "51, 0)",
                 readsFromIt},
                destinationTexture,
                "GL_COLOR_BUFFER_BIT"},
        BlitRow{"WithDepthAndStencil",
                [](unsigned int width, unsigned int height) {
                    Framebuffer::blitMultiSampleRenderbuffersToTexture2Ds(51, 53, 52, 54, width,
                                                                          height);
                },
                {sourceRenderbuffer[0], readsFromIt,
                 "glFramebufferRenderbuffer(GL_READ_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, "
                 "GL_RENDERBUFFER, 53)"},
                {destinationTexture[0], drawsToIt,
                 "glFramebufferTexture2D(GL_DRAW_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, "
                 "GL_TEXTURE_2D, 54, 0)"},
                "GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_COLOR_BUFFER_BIT"}),
    [](const auto& row) { return std::string(row.param.name); });

/// The lines of a trace that attach something.
Lines attachments(const Lines& calls) {
    Lines lines;
    for (const std::string& call : calls)
        if (call.find("glFramebuffer") == 0 && call.find("RENDERBUFFER, 0)") == std::string::npos)
            lines.push_back(call);
    return lines;
}

std::string attachesRenderbuffer(const RBO& renderbuffer, const std::string& point) {
    return "glFramebufferRenderbuffer(GL_READ_FRAMEBUFFER, GL_" + point + ", GL_RENDERBUFFER, " +
           std::to_string(renderbuffer.id()) + ")";
}

std::string attachesTexture(const Texture& texture, const std::string& target,
                            const std::string& point) {
    return "glFramebufferTexture2D(GL_" + target + "_FRAMEBUFFER, GL_" + point +
           ", GL_TEXTURE_2D, " + std::to_string(texture.id()) + ", 0)";
}

TEST(BlitFrontEndTrace, EveryColorFormatIsCopiedFromEveryKindOfSource) {
    FakeGl gl;
    ColorTexels::each([&](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const Renderbuffer<F> renderbuffer(4, 4);
        const MultiSampleRenderbuffer<F> samples(4, 4, 4);
        const Texture2D<F> texture;
        const Texture2D<F> target;
        const std::string drawn = attachesTexture(target, "DRAW", "COLOR_ATTACHMENT0");
        gl.forget();
        Framebuffer::blit(renderbuffer, target, 4, 3);
        EXPECT_EQ(gl.countOf("glBlitFramebuffer"), 1u);
        EXPECT_EQ(attachments(gl.takeCalls()),
                  (Lines{attachesRenderbuffer(renderbuffer, "COLOR_ATTACHMENT0"), drawn}));
        Framebuffer::blit(samples, target, 4, 3);
        EXPECT_EQ(gl.countOf("glBlitFramebuffer"), 1u);
        EXPECT_EQ(attachments(gl.takeCalls()),
                  (Lines{attachesRenderbuffer(samples, "COLOR_ATTACHMENT0"), drawn}));
        Framebuffer::blit(texture, target, 4, 3);
        EXPECT_EQ(gl.countOf("glBlitFramebuffer"), 1u);
        EXPECT_EQ(attachments(gl.takeCalls()),
                  (Lines{attachesTexture(texture, "READ", "COLOR_ATTACHMENT0"), drawn}));
    });
    EXPECT_THAT(gl.liveNames(), IsEmpty());
    EXPECT_THAT(gl.doubleDeletes(), IsEmpty());
    gl.forget();
}

TEST(BlitFrontEndTrace, ColorDepthAndStencilAreCopiedInOne) {
    FakeGl gl;
    const MultiSampleRenderbuffer<U8vec4> color(4, 4, 4);
    const MultiSampleRenderbuffer<depth24_stencil8> packed(4, 4, 4);
    const Texture2D<U8vec4> targetColor;
    const Texture2D<depth24_stencil8> targetPacked;
    gl.forget();
    Framebuffer::blit(color, packed, targetColor, targetPacked, 5, 6);
    const Lines calls = gl.takeCalls();
    EXPECT_EQ(attachments(calls),
              (Lines{attachesRenderbuffer(color, "COLOR_ATTACHMENT0"),
                     attachesRenderbuffer(packed, "DEPTH_STENCIL_ATTACHMENT"),
                     attachesTexture(targetColor, "DRAW", "COLOR_ATTACHMENT0"),
                     attachesTexture(targetPacked, "DRAW", "DEPTH_STENCIL_ATTACHMENT")}));
    EXPECT_THAT(calls,
                testing::Contains("glBlitFramebuffer(0, 0, 5, 6, 0, 0, 5, 6, GL_DEPTH_BUFFER_BIT | "
                                  "GL_STENCIL_BUFFER_BIT | GL_COLOR_BUFFER_BIT, GL_NEAREST)"));
    gl.ignoreTheRest();
}

// Reading back.

const std::string askForBuffer = "glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, out)";

/// The calls of a read with that alignment, where the one before is 4.
Lines reading(const std::string& alignment, const std::string& arguments) {
    return {"glGetIntegerv(GL_PACK_ALIGNMENT, out)",
            "glPixelStorei(GL_PACK_ALIGNMENT, " + alignment + ")",
            "glReadPixels(" + arguments + ")", "glPixelStorei(GL_PACK_ALIGNMENT, 4)"};
}

class DownloadTrace : public testing::Test {
protected:
    DownloadTrace() { gl.setState(GL_PACK_ALIGNMENT, {4}); }

    FakeGl gl;
};

TEST_F(DownloadTrace, SetsTheAlignmentReadsAndPutsTheAlignmentBack) {
    unsigned char data[64];
    Framebuffer::downloadPixels(data, 1, 2, 3, 4, GL_RGB, GL_UNSIGNED_BYTE, 1);
    EXPECT_GL_CALLS(gl, reading("1", "1, 2, 3, 4, GL_RGB, GL_UNSIGNED_BYTE, out"));
}

TEST_F(DownloadTrace, AlignmentOfBeforeIsTheOneThatComesBack) {
    for (const int before : {1, 2, 8}) {
        gl.setState(GL_PACK_ALIGNMENT, {before});
        Framebuffer::downloadPixels(nullptr, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, 4);
        EXPECT_EQ(gl.takeCalls().back(),
                  "glPixelStorei(GL_PACK_ALIGNMENT, " + std::to_string(before) + ")");
    }
}

TEST_F(DownloadTrace, AlignmentComesBackWhenAnExceptionLeavesTheCall) {
    gl.answer(glad_glReadPixels, [](GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void*) {
        throw std::runtime_error("interrupted");
    });
    EXPECT_THROW(Framebuffer::download<U8vec4>(0, 0, 1, 1), std::runtime_error);
    EXPECT_GL_CALLS(gl, packingQueries(),
                    reading("4", "0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, out"));
}

TEST_F(DownloadTrace, VectorPutsEachPackParameterAsideAndBack) {
    for (const PackParameter& parameter : packParameters) {
        gl.setState(parameter.pname, {parameter.value});
        Framebuffer::download<U8vec4>(0, 0, 1, 1);
        EXPECT_GL_CALLS(gl, packingQueries(), setting(parameter, 0),
                        reading("4", "0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, out"),
                        setting(parameter, parameter.value));
        gl.setState(parameter.pname, {0});
    }
}

TEST_F(DownloadTrace, VectorPutsAPixelBufferAsideAndBack) {
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 33);
    gl.forget();
    Framebuffer::download<U8vec4>(0, 0, 1, 1);
    EXPECT_GL_CALLS(gl, packingQueries(), "glBindBuffer(GL_PIXEL_PACK_BUFFER, 0)",
                    reading("4", "0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, out"),
                    "glBindBuffer(GL_PIXEL_PACK_BUFFER, 33)");
}

TEST_F(DownloadTrace, PackingComesBackWhenAnExceptionLeavesADownloadToAVector) {
    gl.answer(glad_glReadPixels, [](GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void*) {
        throw std::runtime_error("interrupted");
    });
    gl.setState(GL_PACK_SKIP_ROWS, {7});
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 33);
    EXPECT_THROW(Framebuffer::download<U8vec4>(0, 0, 1, 1), std::runtime_error);
    Lines calls = gl.takeCalls();
    calls.erase(calls.begin(), calls.end() - 2);
    EXPECT_EQ(calls, (Lines{"glPixelStorei(GL_PACK_SKIP_ROWS, 7)",
                            "glBindBuffer(GL_PIXEL_PACK_BUFFER, 33)"}));
}

TEST_F(DownloadTrace, MemoryOfTheCallerGoesByItsPacking) {
    for (const PackParameter& parameter : packParameters)
        gl.setState(parameter.pname, {parameter.value});
    U8vec4 room[64];
    Framebuffer::download(room, 0, 0, 1, 1);
    EXPECT_GL_CALLS(gl, reading("4", "0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, out"));
}

TEST_F(DownloadTrace, VectorThatCannotBeIsEmptyAndReadsNothing) {
    constexpr unsigned int most = std::numeric_limits<unsigned int>::max();
    EXPECT_TRUE(Framebuffer::download<unsigned char>(0, 0, most, most).empty());
    EXPECT_TRUE(Framebuffer::download<glm::vec4>(0, 0, 0x7FFFFFFF, 0x7FFFFFFF).empty());
    EXPECT_GL_CALLS(gl);
}

TEST_F(DownloadTrace, PlacesTooFarToAddUpAreAsFarFromAnyFramebuffer) {
    unsigned char room[4];
    const auto read = [&](unsigned int x, unsigned int y) {
        Framebuffer::download(room, x, y, 2, 2);
        return gl.takeCalls().at(2);
    };
    const std::string end = ", 2, 2, GL_RED, GL_UNSIGNED_BYTE, out)";
    EXPECT_EQ(read(0x3FFFFFFF, 0x40000000), "glReadPixels(1073741823, 1073741823" + end);
    EXPECT_EQ(read(0x7FFFFFFF, 0x80000000), "glReadPixels(1073741823, -1073741823" + end);
    EXPECT_EQ(read(0xC0000000, 0xFFFFFFFF), "glReadPixels(-1073741823, -1" + end);
}

TEST_F(DownloadTrace, SizesTooLargeToAddUpBecomeOnesThatGlRefuses) {
    unsigned char room[4];
    Framebuffer::download(room, 0, 0, 0x3FFFFFFF, 0x40000000);
    EXPECT_EQ(gl.takeCalls().at(2),
              "glReadPixels(0, 0, 1073741823, -1, GL_RED, GL_UNSIGNED_BYTE, out)");
    Framebuffer::download(room, 0, 0, 0x7FFFFFFF, 0xFFFFFFFF);
    EXPECT_EQ(gl.takeCalls().at(2), "glReadPixels(0, 0, -1, -1, GL_RED, GL_UNSIGNED_BYTE, out)");
}

TEST_F(DownloadTrace, EveryFormatIsReadAsItLiesInMemory) {
    const auto check = [this](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const Lines expected = reading(std::to_string(texelRow<F>.alignment()),
                                       std::string("1, 2, 3, 4, ") + texelRow<F>.pixelFormatName +
                                           ", " + texelRow<F>.pixelTypeName + ", out");
        F data[12] = {};
        Framebuffer::download(data, 1, 2, 3, 4);
        EXPECT_GL_CALLS(gl, expected);
        EXPECT_EQ(Framebuffer::download<F>(1, 2, 3, 4).size(), 12u);
        EXPECT_GL_CALLS(gl, packingQueries(), expected);
    };
    ColorTexels::each(check);
    DepthTexels::each(check);
    StencilTexels::each(check);
}

TEST_F(DownloadTrace, VectorHoldsWhatGlWrites) {
    gl.answer(glad_glReadPixels, [](GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void* out) {
        static_cast<unsigned char*>(out)[5] = 77;
    });
    EXPECT_EQ(Framebuffer::download<unsigned char>(0, 0, 3, 2),
              (std::vector<unsigned char>{0, 0, 0, 0, 0, 77}));
    gl.forget();
}

TEST_F(DownloadTrace, NullWithoutAPixelBufferReadsNothing) {
    Framebuffer::download(static_cast<U8vec4*>(nullptr), 0, 0, 4, 4);
    EXPECT_GL_CALLS(gl, askForBuffer);
}

TEST_F(DownloadTrace, NullIsTheStartOfABoundPixelBuffer) {
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Download, 64, BufferUsage::Stream,
                                          BufferAccess::Read);
    buffer->bind();
    gl.forget();
    Framebuffer::download(static_cast<U8vec3*>(nullptr), 0, 0, 4, 4);
    EXPECT_GL_CALLS(gl, askForBuffer, reading("1", "0, 0, 4, 4, GL_RGB, GL_UNSIGNED_BYTE, 0"));
    Framebuffer::download(reinterpret_cast<U8vec3*>(12), 0, 0, 4, 4);
    EXPECT_GL_CALLS(gl, reading("1", "0, 0, 4, 4, GL_RGB, GL_UNSIGNED_BYTE, 12"));
    gl.ignoreTheRest();
}

TEST_F(DownloadTrace, BufferForUploadsDoesNotCount) {
    const auto buffer = PixelBuffer::make(PixelBuffer::DataFlow::Upload, 64, BufferUsage::Stream,
                                          BufferAccess::Draw);
    buffer->bind();
    gl.forget();
    Framebuffer::download(static_cast<U8vec3*>(nullptr), 0, 0, 4, 4);
    EXPECT_GL_CALLS(gl, askForBuffer);
    gl.ignoreTheRest();
}

TEST_F(DownloadTrace, OfNothingIsAnEmptyVectorAndReadsNothing) {
    EXPECT_TRUE(Framebuffer::download<U8vec4>(0, 0, 0, 4).empty());
    EXPECT_TRUE(Framebuffer::download<U8vec4>(0, 0, 4, 0).empty());
    EXPECT_EQ(gl.countOf("glReadPixels"), 0u);
    gl.forget();
    U8vec4 pixel;
    Framebuffer::download(&pixel, 0, 0, 0, 4);
    EXPECT_GL_CALLS(gl, reading("4", "0, 0, 0, 4, GL_RGBA, GL_UNSIGNED_BYTE, out"));
}

} // namespace

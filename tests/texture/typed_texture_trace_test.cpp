/// Texture1D, Texture2D and Texture3D with every type of texels that they can have.

#include <vellis/texture.hpp>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"
#include "support/packing.hpp"
#include "support/texel_formats.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;
using Lines = std::vector<std::string>;

template <class F>
struct Makes1D : std::is_constructible<Texture1D<F>, const Sampler&> {};
template <class F>
struct Makes2D : std::is_constructible<Texture2D<F>, const Sampler&> {};
template <class F>
struct Makes3D : std::is_constructible<Texture3D<F>, const Sampler&> {};

static_assert(ColorTexels::all<Makes1D> && ColorTexels::all<Makes2D> && ColorTexels::all<Makes3D>);
static_assert(DepthTexels::all<Makes1D> && DepthTexels::all<Makes2D> && !DepthTexels::any<Makes3D>);
static_assert(!StencilTexels::any<Makes1D> && !StencilTexels::any<Makes2D> &&
              !StencilTexels::any<Makes3D>);
static_assert(!SamplerTexels::any<Makes1D> && !SamplerTexels::any<Makes2D> &&
              !SamplerTexels::any<Makes3D>);
static_assert(!OtherTypes::any<Makes1D> && !OtherTypes::any<Makes2D> && !OtherTypes::any<Makes3D>);

template <class Texture, class... Arguments>
constexpr bool hasMake = HasMakeOf<Texture, void, Arguments...>::value;

static_assert(hasMake<Texture1D<float>> && hasMake<Texture1D<float>, unsigned int>);
static_assert(hasMake<Texture2D<depth16>, const Sampler&> &&
              hasMake<Texture2D<depth16>, unsigned int, unsigned int, const depth16*>);
static_assert(!hasMake<Texture2D<stencil8>> &&
              !hasMake<Texture2D<stencil8>, unsigned int, unsigned int>);
static_assert(!hasMake<Texture3D<depth16>> &&
              !hasMake<Texture3D<depth16>, unsigned int, unsigned int, unsigned int>);
static_assert(!hasMake<Texture1D<sampler1d>> && !hasMake<Texture1D<sampler1d>, unsigned int>);

// The type of the data is that of the texels.
static_assert(!hasMake<Texture1D<float>, unsigned int, const unsigned char*>);
static_assert(!hasMake<Texture2D<U8vec4>, unsigned int, unsigned int, const unsigned char*>);
static_assert(
    !hasMake<Texture3D<glm::vec3>, unsigned int, unsigned int, unsigned int, const glm::vec4*>);

static_assert(std::is_base_of_v<Texture, Texture1D<float>> &&
              std::is_base_of_v<Texture, Texture2D<depth32>> &&
              std::is_base_of_v<Texture, Texture3D<U8vec4>>);
static_assert(!std::is_copy_constructible_v<Texture2D<float>> &&
              !std::is_copy_assignable_v<Texture2D<float>>);
static_assert(!std::is_convertible_v<Sampler, Texture2D<float>>);

/// Arguments as calls show them.
template <class F>
std::string internalFormat() {
    return texelRow<F>.internalFormatName;
}
template <class F>
std::string formatAndType() {
    return std::string(texelRow<F>.pixelFormatName) + ", " + texelRow<F>.pixelTypeName;
}
template <class F>
std::string alignment(const std::string& pname) {
    return "glPixelStorei(" + pname + ", " + std::to_string(texelRow<F>.alignment()) + ")";
}

template <class F>
Lines upload(const std::string& target, unsigned int name, const std::string& transfer) {
    return {"glBindTexture(" + target + ", " + std::to_string(name) + ")",
            "glGetIntegerv(GL_UNPACK_ALIGNMENT, out)",
            alignment<F>("GL_UNPACK_ALIGNMENT"),
            transfer,
            "glPixelStorei(GL_UNPACK_ALIGNMENT, 8)",
            "glBindTexture(" + target + ", 0)"};
}

template <class F>
Lines download(const std::string& target, unsigned int name) {
    return {"glBindTexture(" + target + ", " + std::to_string(name) + ")",
            "glGetIntegerv(GL_PACK_ALIGNMENT, out)",
            alignment<F>("GL_PACK_ALIGNMENT"),
            "glGetTexImage(" + target + ", 0, " + formatAndType<F>() + ", out)",
            "glPixelStorei(GL_PACK_ALIGNMENT, 8)",
            "glBindTexture(" + target + ", 0)"};
}

class TypedTextureTrace : public testing::Test {
protected:
    TypedTextureTrace() {
        gl.setState(GL_UNPACK_ALIGNMENT, {8});
        gl.setState(GL_PACK_ALIGNMENT, {8});
    }
    ~TypedTextureTrace() override { gl.ignoreTheRest(); }

    /// Lets GL say that level 0 of every texture has this size.
    void storeLevel(int width, int height, int depth) {
        gl.answer(glad_glGetTexLevelParameteriv, [=](GLenum, GLint level, GLenum pname,
                                                     GLint* size) {
            EXPECT_EQ(level, 0);
            *size = pname == GL_TEXTURE_WIDTH ? width : pname == GL_TEXTURE_HEIGHT ? height : depth;
        });
    }

    FakeGl gl;
};

TEST_F(TypedTextureTrace, EveryFormatOf1D) {
    const auto check = [this](auto texel) {
        using F = typename decltype(texel)::type;
        const auto texture = Texture1D<F>::make();
        const unsigned int name = texture->id();
        EXPECT_EQ(texture->type(), unsigned(GL_TEXTURE_1D));
        EXPECT_EQ(texture->texelFormat(), texelRow<F>.internalFormat);
        gl.forget();
        F data[5] = {};
        texture->upload(data, 5);
        EXPECT_GL_CALLS(gl, upload<F>("GL_TEXTURE_1D", name,
                                      "glTexImage1D(GL_TEXTURE_1D, 0, " + internalFormat<F>() +
                                          ", 5, 0, " + formatAndType<F>() + ", data)"));
        texture->upload(data, 3, 2);
        EXPECT_GL_CALLS(gl, upload<F>("GL_TEXTURE_1D", name,
                                      "glTexSubImage1D(GL_TEXTURE_1D, 0, 3, 2, " +
                                          formatAndType<F>() + ", data)"));
        texture->download(data);
        EXPECT_GL_CALLS(gl, download<F>("GL_TEXTURE_1D", name));
        EXPECT_EQ(texture->extent(), glm::uvec3(5, 1, 1));
        texture->dispose();
        gl.forget();
    };
    ColorTexels::each(check);
    DepthTexels::each(check);
}

TEST_F(TypedTextureTrace, EveryFormatOf2D) {
    const auto check = [this](auto texel) {
        using F = typename decltype(texel)::type;
        const auto texture = Texture2D<F>::make();
        const unsigned int name = texture->id();
        EXPECT_EQ(texture->type(), unsigned(GL_TEXTURE_2D));
        EXPECT_EQ(texture->texelFormat(), texelRow<F>.internalFormat);
        gl.forget();
        F data[12] = {};
        texture->upload(data, 4, 3);
        EXPECT_GL_CALLS(gl, upload<F>("GL_TEXTURE_2D", name,
                                      "glTexImage2D(GL_TEXTURE_2D, 0, " + internalFormat<F>() +
                                          ", 4, 3, 0, " + formatAndType<F>() + ", data)"));
        texture->upload(data, 1, 2, 3, 1);
        EXPECT_GL_CALLS(gl, upload<F>("GL_TEXTURE_2D", name,
                                      "glTexSubImage2D(GL_TEXTURE_2D, 0, 1, 2, 3, 1, " +
                                          formatAndType<F>() + ", data)"));
        texture->download(data);
        EXPECT_GL_CALLS(gl, download<F>("GL_TEXTURE_2D", name));
        EXPECT_EQ(texture->extent(), glm::uvec3(4, 3, 1));
        texture->dispose();
        gl.forget();
    };
    ColorTexels::each(check);
    DepthTexels::each(check);
}

TEST_F(TypedTextureTrace, EveryFormatOf3D) {
    ColorTexels::each([this](auto texel) {
        using F = typename decltype(texel)::type;
        const auto texture = Texture3D<F>::make();
        const unsigned int name = texture->id();
        EXPECT_EQ(texture->type(), unsigned(GL_TEXTURE_3D));
        EXPECT_EQ(texture->texelFormat(), texelRow<F>.internalFormat);
        gl.forget();
        F data[24] = {};
        texture->upload(data, 4, 3, 2);
        EXPECT_GL_CALLS(gl, upload<F>("GL_TEXTURE_3D", name,
                                      "glTexImage3D(GL_TEXTURE_3D, 0, " + internalFormat<F>() +
                                          ", 4, 3, 2, 0, " + formatAndType<F>() + ", data)"));
        texture->upload(data, 1, 2, 0, 3, 1, 2);
        EXPECT_GL_CALLS(gl, upload<F>("GL_TEXTURE_3D", name,
                                      "glTexSubImage3D(GL_TEXTURE_3D, 0, 1, 2, 0, 3, 1, 2, " +
                                          formatAndType<F>() + ", data)"));
        texture->download(data);
        EXPECT_GL_CALLS(gl, download<F>("GL_TEXTURE_3D", name));
        EXPECT_EQ(texture->extent(), glm::uvec3(4, 3, 2));
        texture->dispose();
        gl.forget();
    });
}

TEST_F(TypedTextureTrace, MakeFromASamplerAllocatesNoStorage) {
    const auto texture = Texture2D<U8vec4>::make(Sampler({{Sampler::MAG_FILTER, Sampler::LINEAR}}));
    EXPECT_GL_CALLS(gl, "glGenTextures(1, {1})", "glBindTexture(GL_TEXTURE_2D, 1)",
                    "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                    "glBindTexture(GL_TEXTURE_2D, 0)");
    EXPECT_EQ(texture->extent(), glm::uvec3(0));
    EXPECT_EQ(texture->width() + texture->height() + texture->depth(), 0u);
}

TEST_F(TypedTextureTrace, DefaultSamplerIsNearestClamp) {
    EXPECT_EQ(Texture1D<float>().getSampler(), Sampler::nearest_clamp());
    EXPECT_EQ(Texture2D<float>::make()->getSampler(), Sampler::nearest_clamp());
    EXPECT_EQ(Texture3D<float>::make(1, 1, 1)->getSampler(), Sampler::nearest_clamp());
}

TEST_F(TypedTextureTrace, ConstructorTakesASampler) {
    EXPECT_EQ(Texture1D<float>(Sampler::linear_clamp()).getSampler(), Sampler::linear_clamp());
    EXPECT_EQ(Texture2D<depth16>(Sampler::linear_clamp()).getSampler(), Sampler::linear_clamp());
    EXPECT_EQ(Texture3D<float>(Sampler::linear_clamp()).getSampler(), Sampler::linear_clamp());
}

TEST_F(TypedTextureTrace, MakeFromSizesMakesThenUploads) {
    const U8vec4 data[6] = {};
    const Sampler unset({});
    const auto one = Texture1D<U8vec4>::make(6, data, unset);
    EXPECT_GL_CALLS(gl, "glGenTextures(1, {1})", "glBindTexture(GL_TEXTURE_1D, 1)",
                    "glBindTexture(GL_TEXTURE_1D, 0)",
                    upload<U8vec4>("GL_TEXTURE_1D", 1,
                                   "glTexImage1D(GL_TEXTURE_1D, 0, GL_RGBA8, 6, 0, GL_RGBA, "
                                   "GL_UNSIGNED_BYTE, data)"));
    const auto two = Texture2D<U8vec4>::make(3, 2, data, unset);
    EXPECT_GL_CALLS(gl, "glGenTextures(1, {2})", "glBindTexture(GL_TEXTURE_2D, 2)",
                    "glBindTexture(GL_TEXTURE_2D, 0)",
                    upload<U8vec4>("GL_TEXTURE_2D", 2,
                                   "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 3, 2, 0, GL_RGBA, "
                                   "GL_UNSIGNED_BYTE, data)"));
    const auto three = Texture3D<U8vec4>::make(1, 2, 3, data, unset);
    EXPECT_GL_CALLS(gl, "glGenTextures(1, {3})", "glBindTexture(GL_TEXTURE_3D, 3)",
                    "glBindTexture(GL_TEXTURE_3D, 0)",
                    upload<U8vec4>("GL_TEXTURE_3D", 3,
                                   "glTexImage3D(GL_TEXTURE_3D, 0, GL_RGBA8, 1, 2, 3, 0, GL_RGBA, "
                                   "GL_UNSIGNED_BYTE, data)"));
    EXPECT_EQ(one->extent(), glm::uvec3(6, 1, 1));
    EXPECT_EQ(two->extent(), glm::uvec3(3, 2, 1));
    EXPECT_EQ(three->extent(), glm::uvec3(1, 2, 3));
    EXPECT_EQ(three->width(), 1u);
    EXPECT_EQ(three->height(), 2u);
    EXPECT_EQ(three->depth(), 3u);
}

TEST_F(TypedTextureTrace, MakeMakesOneAllocation) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    gl.setRecording(false);
    const std::size_t before = allocationCount();
    const auto texture = Texture2D<U8vec4>::make(3, 2);
    EXPECT_EQ(allocationCount() - before, 1u);
}

TEST_F(TypedTextureTrace, UploadOfNullAllocatesUndefinedContents) {
    const auto texture = Texture2D<depth24_stencil8>::make(4, 3);
    EXPECT_EQ(gl.takeCalls().at(10),
              "glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH24_STENCIL8, 4, 3, 0, GL_DEPTH_STENCIL, "
              "GL_UNSIGNED_INT_24_8, null)");
}

TEST_F(TypedTextureTrace, ResizeMakesNewStorageThroughTheBase) {
    const auto one = Texture1D<unsigned char>::make();
    const auto two = Texture2D<depth32>::make();
    const auto three = Texture3D<glm::vec3>::make();
    gl.forget();
    for (Texture* const texture :
         {static_cast<Texture*>(one.get()), static_cast<Texture*>(two.get()),
          static_cast<Texture*>(three.get())})
        texture->resize({9, 8, 7});
    EXPECT_GL_CALLS(
        gl,
        upload<unsigned char>(
            "GL_TEXTURE_1D", 1,
            "glTexImage1D(GL_TEXTURE_1D, 0, GL_R8, 9, 0, GL_RED, GL_UNSIGNED_BYTE, null)"),
        upload<depth32>("GL_TEXTURE_2D", 2,
                        "glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT32, 9, 8, 0, "
                        "GL_DEPTH_COMPONENT, GL_UNSIGNED_INT, null)"),
        upload<glm::vec3>(
            "GL_TEXTURE_3D", 3,
            "glTexImage3D(GL_TEXTURE_3D, 0, GL_RGB32F, 9, 8, 7, 0, GL_RGB, GL_FLOAT, null)"));
    EXPECT_EQ(one->extent(), glm::uvec3(9, 1, 1));
    EXPECT_EQ(two->extent(), glm::uvec3(9, 8, 1));
    EXPECT_EQ(three->extent(), glm::uvec3(9, 8, 7));
}

TEST_F(TypedTextureTrace, SizeZeroGoesToGl) {
    const auto texture = Texture2D<float>::make(0, 5);
    EXPECT_EQ(gl.takeCalls().at(10),
              "glTexImage2D(GL_TEXTURE_2D, 0, GL_R32F, 0, 5, 0, GL_RED, GL_FLOAT, null)");
    EXPECT_EQ(texture->extent(), glm::uvec3(0, 5, 1));
    const float data[1] = {};
    texture->upload(data, 0, 0, 0, 0);
    EXPECT_EQ(gl.takeCalls().at(3),
              "glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, GL_RED, GL_FLOAT, data)");
}

TEST_F(TypedTextureTrace, PartialUploadLeavesTheExtent) {
    const U8vec3 data[4] = {};
    const auto texture = Texture2D<U8vec3>::make(4, 4);
    texture->upload(data, 2, 2, 2, 2);
    EXPECT_EQ(texture->extent(), glm::uvec3(4, 4, 1));
}

TEST_F(TypedTextureTrace, PartialUploadTooLargeToAddUpBecomesOneThatGlRefuses) {
    const float data[1] = {};
    constexpr unsigned int most = std::numeric_limits<unsigned int>::max();
    const auto texture = Texture2D<float>::make(4, 4);
    gl.forget();
    texture->upload(data, 0x3FFFFFFF, 0x40000000, 0x7FFFFFFF, most);
    EXPECT_EQ(gl.takeCalls().at(3), "glTexSubImage2D(GL_TEXTURE_2D, 0, 1073741823, -1, -1, -1, "
                                    "GL_RED, GL_FLOAT, data)");
    texture->upload(data, most, 0, 1, 1);
    EXPECT_EQ(gl.takeCalls().at(3),
              "glTexSubImage2D(GL_TEXTURE_2D, 0, -1, 0, 1, 1, GL_RED, GL_FLOAT, data)");
}

TEST_F(TypedTextureTrace, SizeBeyondAllTexturesBecomesOneThatGlRefuses) {
    const float data[1] = {};
    const auto one = Texture1D<float>::make();
    const auto two = Texture2D<float>::make();
    const auto three = Texture3D<float>::make();
    gl.forget();
    one->upload(data, 0x1000000);
    EXPECT_EQ(gl.takeCalls().at(3),
              "glTexImage1D(GL_TEXTURE_1D, 0, GL_R32F, -1, 0, GL_RED, GL_FLOAT, data)");
    two->upload(data, 0xFFFFFF, 0x7FFFFFFF);
    EXPECT_EQ(gl.takeCalls().at(3),
              "glTexImage2D(GL_TEXTURE_2D, 0, GL_R32F, 16777215, -1, 0, GL_RED, GL_FLOAT, data)");
    two->resize({0x2000000, 0xFFFFFFFF, 1});
    EXPECT_EQ(gl.takeCalls().at(3),
              "glTexImage2D(GL_TEXTURE_2D, 0, GL_R32F, -1, -1, 0, GL_RED, GL_FLOAT, null)");
    EXPECT_EQ(two->extent(), glm::uvec3(0x2000000, 0xFFFFFFFF, 1)); // what was asked for
    three->upload(data, 4, 0x40000000, 0x1000000);
    EXPECT_EQ(gl.takeCalls().at(3),
              "glTexImage3D(GL_TEXTURE_3D, 0, GL_R32F, 4, -1, -1, 0, GL_RED, GL_FLOAT, data)");
}

TEST_F(TypedTextureTrace, PartialUploadOfNullOnlyAsksForAPixelBuffer) {
    const auto one = Texture1D<float>::make(4);
    const auto two = Texture2D<float>::make(4, 4);
    const auto three = Texture3D<float>::make(4, 4, 4);
    gl.forget();
    one->upload(nullptr, 0, 4);
    two->upload(nullptr, 0, 0, 4, 4);
    three->upload(nullptr, 0, 0, 0, 4, 4, 4);
    const std::string query = "glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, out)";
    EXPECT_GL_CALLS(gl, query, query, query);
}

TEST_F(TypedTextureTrace, DownloadToNullOnlyAsksForAPixelBuffer) {
    const auto texture = Texture2D<float>::make(4, 4);
    gl.forget();
    texture->download(nullptr);
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, out)");
}

TEST_F(TypedTextureTrace, NullIsTheStartOfABoundPixelBuffer) {
    const auto texture = Texture1D<float>::make(4);
    GLuint buffers[2];
    glGenBuffers(2, buffers);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, buffers[0]);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, buffers[1]);
    gl.forget();
    texture->upload(nullptr, 1, 2);
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, out)",
                    upload<float>("GL_TEXTURE_1D", 1,
                                  "glTexSubImage1D(GL_TEXTURE_1D, 0, 1, 2, GL_RED, GL_FLOAT, 0)"));
    texture->download(nullptr);
    Lines expected = download<float>("GL_TEXTURE_1D", 1);
    expected[3] = "glGetTexImage(GL_TEXTURE_1D, 0, GL_RED, GL_FLOAT, 0)";
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, out)", expected);
    glDeleteBuffers(2, buffers);
}

TEST_F(TypedTextureTrace, DownloadToAVectorIsAsLargeAsWhatGlHas) {
    const auto one = Texture1D<unsigned char>::make(2);
    const auto two = Texture2D<unsigned char>::make(2, 2);
    const auto three = Texture3D<unsigned char>::make(2, 2, 2);
    storeLevel(5, 3, 2);
    gl.answer(glad_glGetTexImage, [](GLenum, GLint, GLenum, GLenum, void* out) {
        static_cast<unsigned char*>(out)[4] = 77; // the last texel of the first row
    });
    gl.forget();
    EXPECT_EQ(one->download(), (std::vector<unsigned char>{0, 0, 0, 0, 77}));
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_1D, 1)",
                    "glGetTexLevelParameteriv(GL_TEXTURE_1D, 0, GL_TEXTURE_WIDTH, out)",
                    "glBindTexture(GL_TEXTURE_1D, 0)", packingQueries(),
                    download<unsigned char>("GL_TEXTURE_1D", 1));
    EXPECT_EQ(two->download().size(), 15u);
    EXPECT_EQ(gl.countOf("glGetTexLevelParameteriv"), 2u);
    gl.forget();
    EXPECT_EQ(three->download().size(), 30u);
    EXPECT_EQ(gl.countOf("glGetTexLevelParameteriv"), 3u);
    EXPECT_EQ(gl.countOf("glGetTexImage"), 1u);
}

TEST_F(TypedTextureTrace, DownloadToAVectorPutsEachPackParameterAsideAndBack) {
    const auto texture = Texture1D<U8vec4>::make(4);
    storeLevel(4, 1, 1);
    for (const PackParameter& parameter : packParameters) {
        gl.setState(parameter.pname, {parameter.value});
        gl.forget();
        texture->download();
        EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_1D, 1)",
                        "glGetTexLevelParameteriv(GL_TEXTURE_1D, 0, GL_TEXTURE_WIDTH, out)",
                        "glBindTexture(GL_TEXTURE_1D, 0)", packingQueries(), setting(parameter, 0),
                        download<U8vec4>("GL_TEXTURE_1D", 1), setting(parameter, parameter.value));
        gl.setState(parameter.pname, {0});
    }
}

TEST_F(TypedTextureTrace, DownloadToAVectorPutsAPixelBufferAsideAndBack) {
    const auto texture = Texture1D<U8vec4>::make(4);
    storeLevel(4, 1, 1);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 33);
    gl.forget();
    EXPECT_EQ(texture->download().size(), 4u);
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_1D, 1)",
                    "glGetTexLevelParameteriv(GL_TEXTURE_1D, 0, GL_TEXTURE_WIDTH, out)",
                    "glBindTexture(GL_TEXTURE_1D, 0)", packingQueries(),
                    "glBindBuffer(GL_PIXEL_PACK_BUFFER, 0)", download<U8vec4>("GL_TEXTURE_1D", 1),
                    "glBindBuffer(GL_PIXEL_PACK_BUFFER, 33)");
}

TEST_F(TypedTextureTrace, PackingComesBackWhenAnExceptionLeavesADownloadToAVector) {
    const auto texture = Texture1D<U8vec4>::make(4);
    storeLevel(4, 1, 1);
    gl.answer(glad_glGetTexImage, [](GLenum, GLint, GLenum, GLenum, void*) {
        throw std::runtime_error("interrupted");
    });
    gl.setState(GL_PACK_ROW_LENGTH, {7});
    gl.setState(GL_PACK_SWAP_BYTES, {1});
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 33);
    EXPECT_THROW(texture->download(), std::runtime_error);
    Lines calls = gl.takeCalls();
    calls.erase(calls.begin(), calls.end() - 3);
    EXPECT_EQ(calls, (Lines{"glPixelStorei(GL_PACK_ROW_LENGTH, 7)",
                            "glPixelStorei(GL_PACK_SWAP_BYTES, GL_TRUE)",
                            "glBindBuffer(GL_PIXEL_PACK_BUFFER, 33)"}));
}

TEST_F(TypedTextureTrace, DownloadToMemoryOfTheCallerGoesByItsPacking) {
    const auto texture = Texture1D<U8vec4>::make(4);
    for (const PackParameter& parameter : packParameters)
        gl.setState(parameter.pname, {parameter.value});
    gl.forget();
    U8vec4 room[64];
    texture->download(room);
    EXPECT_GL_CALLS(gl, download<U8vec4>("GL_TEXTURE_1D", 1));
}

TEST_F(TypedTextureTrace, DownloadOfMoreThanAVectorHoldsIsAnEmptyOneAndReadsNothing) {
    const auto two = Texture2D<glm::vec4>::make(4, 4);
    const auto three = Texture3D<unsigned char>::make(4, 4, 4);
    constexpr int most = std::numeric_limits<int>::max();
    storeLevel(most, most, most);
    gl.forget();
    EXPECT_TRUE(two->download().empty());   // fewer than can be counted, but more than fit
    EXPECT_TRUE(three->download().empty()); // more than can be counted
    EXPECT_EQ(gl.countOf("glGetTexLevelParameteriv"), 5u);
    EXPECT_EQ(gl.countOf("glGetTexImage"), 0u);
    storeLevel(most, most, 4); // 2^64 less 2^34 and a few
    EXPECT_TRUE(three->download().empty());
    EXPECT_EQ(gl.countOf("glGetTexImage"), 0u);
}

TEST_F(TypedTextureTrace, DownloadOfOneTexelIsAVectorOfOne) {
    const auto texture = Texture3D<float>::make(1, 1, 1);
    storeLevel(1, 1, 1);
    EXPECT_EQ(texture->download().size(), 1u);
}

TEST_F(TypedTextureTrace, DownloadOfNothingIsAnEmptyVector) {
    const auto texture = Texture2D<glm::vec4>::make();
    storeLevel(0, 0, 0);
    gl.forget();
    EXPECT_TRUE(texture->download().empty());
    storeLevel(-1, -1, -1); // GL gives no such size, and it must do no harm
    EXPECT_TRUE(texture->download().empty());
    gl.answer(glad_glGetTexLevelParameteriv, [](GLenum, GLint, GLenum, GLint*) {}); // refuses
    EXPECT_TRUE(texture->download().empty());
    EXPECT_EQ(gl.countOf("glGetTexImage"), 0u);
}

TEST_F(TypedTextureTrace, GenerateMipmapBindsAndUnbinds) {
    const auto texture = Texture2D<U8vec4>::make(4, 4);
    gl.forget();
    texture->generateMipmap();
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_2D, 1)", "glGenerateMipmap(GL_TEXTURE_2D)",
                    "glBindTexture(GL_TEXTURE_2D, 0)");
}

/// Runs every operation that needs a texture's name.
template <class Texture>
void transferAll(Texture& texture) {
    const float data[8] = {};
    float out[8] = {};
    texture.upload(data, 2, 2);
    texture.upload(data, 0, 0, 2, 2);
    texture.resize({4, 4, 4});
    texture.generateMipmap();
    texture.download(out);
    EXPECT_TRUE(texture.download().empty());
    EXPECT_EQ(texture.extent(), glm::uvec3(0));
}

TEST_F(TypedTextureTrace, AfterDisposeTransfersDoNothing) {
    const auto texture = Texture2D<float>::make(4, 4);
    storeLevel(4, 4, 1);
    texture->dispose();
    gl.forget();
    transferAll(*texture);
    texture->dispose();
    EXPECT_GL_CALLS(gl);
}

TEST_F(TypedTextureTrace, WithoutANameTransfersDoNothing) {
    gl.failToCreate(glad_glGenTextures);
    const auto texture = Texture2D<float>::make(4, 4);
    storeLevel(4, 4, 1);
    EXPECT_EQ(texture->id(), 0u);
    EXPECT_EQ(gl.countOf("glTexImage2D"), 0u);
    gl.forget();
    transferAll(*texture);
    EXPECT_GL_CALLS(gl);
}

TEST_F(TypedTextureTrace, EquivalenceIsAcrossTypes) {
    const auto a = Texture2D<U8vec4>::make(4, 4);
    const auto b = Texture2D<U8vec4>::make(8, 8);
    const auto otherFormat = Texture2D<U8vec3>::make(4, 4);
    const auto otherTarget = Texture3D<U8vec4>::make(4, 4, 4);
    EXPECT_TRUE(a->equivalent(*a));
    EXPECT_TRUE(a->equivalent(*b));
    EXPECT_FALSE(a->equivalent(*otherFormat));
    EXPECT_FALSE(a->equivalent(*otherTarget));
}

TEST_F(TypedTextureTrace, TakesAFormatOfOnesOwn) {
    const Packed565 texels[4] = {};
    const auto texture = Texture2D<Packed565>::make(2, 2, texels);
    EXPECT_EQ(gl.takeCalls().at(10), "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB5, 2, 2, 0, GL_RGB, "
                                     "GL_UNSIGNED_SHORT_5_6_5, data)");
}

} // namespace

/// The base class, through a subclass that makes its protected operations public.

#include <vellis/texture/texture.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"

namespace {

using vellis::Sampler;
using vellis::Texture;
using vellis::test::FakeGl;
using Lines = std::vector<std::string>;

class BareTexture : public Texture {
public:
    explicit BareTexture(Type type, unsigned int format = GL_RGBA8, const Sampler& sampler = {})
        : Texture(type, format, sampler) {}

    glm::uvec3 extent() const override { return glm::uvec3(0); }
    void resize(const glm::uvec3&) override {}

    using Texture::download1d;
    using Texture::download2d;
    using Texture::download3d;
    using Texture::generateMipmap;
    using Texture::upload1d;
    using Texture::upload2d;
    using Texture::upload3d;
};

static_assert(std::is_same_v<std::underlying_type_t<Texture::Type>, unsigned int>);
static_assert(unsigned(Texture::Type::TEXTURE_1D) == 0 &&
              unsigned(Texture::Type::TEXTURE_2D) == 1 && unsigned(Texture::Type::TEXTURE_3D) == 2);
static_assert(std::is_abstract_v<Texture>);
static_assert(std::has_virtual_destructor_v<Texture>);
static_assert(!std::is_copy_constructible_v<BareTexture> &&
              !std::is_copy_assignable_v<BareTexture> &&
              !std::is_move_constructible_v<BareTexture> &&
              !std::is_move_assignable_v<BareTexture>);

/// What the table of types says.
struct TypeRow {
    Texture::Type type;
    unsigned int target;
    std::string name;
};

const TypeRow types[] = {
    {Texture::Type::TEXTURE_1D, GL_TEXTURE_1D, "GL_TEXTURE_1D"},
    {Texture::Type::TEXTURE_2D, GL_TEXTURE_2D, "GL_TEXTURE_2D"},
    {Texture::Type::TEXTURE_3D, GL_TEXTURE_3D, "GL_TEXTURE_3D"},
};

std::string binding(const std::string& target, unsigned int name) {
    return "glBindTexture(" + target + ", " + std::to_string(name) + ")";
}

std::string parameter(const std::string& target, const std::string& nameAndValue) {
    return "glTexParameteri(" + target + ", " + nameAndValue + ")";
}

/// The parameters of a sampler without a mipmap filter.
Lines parameters(const std::string& target, const std::string& filter, const std::string& wrap) {
    return {parameter(target, "GL_TEXTURE_MIN_FILTER, " + filter),
            parameter(target, "GL_TEXTURE_MAG_FILTER, " + filter),
            parameter(target, "GL_TEXTURE_WRAP_S, " + wrap),
            parameter(target, "GL_TEXTURE_WRAP_T, " + wrap)};
}

/// A transfer of a texture whose alignment before it was 8 and during it is 2.
Lines aligned(const std::string& pname, const std::string& transfer) {
    return {"glGetIntegerv(" + pname + ", out)", "glPixelStorei(" + pname + ", 2)", transfer,
            "glPixelStorei(" + pname + ", 8)"};
}

class TextureTrace : public testing::Test {
protected:
    TextureTrace() {
        gl.setState(GL_UNPACK_ALIGNMENT, {8});
        gl.setState(GL_PACK_ALIGNMENT, {8});
    }
    ~TextureTrace() override { gl.ignoreTheRest(); }

    /// A texture, name 1, whose making is not looked at.
    std::unique_ptr<BareTexture> texture(Texture::Type type, unsigned int format = GL_RGBA8) {
        auto made = std::make_unique<BareTexture>(type, format);
        gl.forget();
        return made;
    }

    void expectUpload(const std::string& transfer) {
        EXPECT_GL_CALLS(gl, aligned("GL_UNPACK_ALIGNMENT", transfer));
    }

    FakeGl gl;
    unsigned char data[4] = {};
};

TEST_F(TextureTrace, ConstructionAppliesTheSamplerBetweenBindAndUnbind) {
    for (const TypeRow& row : types) {
        BareTexture texture(row.type, GL_RGBA8, Sampler::linear_repeat());
        const unsigned int name = texture.id();
        EXPECT_GL_CALLS(gl, "glGenTextures(1, {" + std::to_string(name) + "})",
                        binding(row.name, name), parameters(row.name, "GL_LINEAR", "GL_REPEAT"),
                        binding(row.name, 0));
        EXPECT_EQ(texture.getSampler(), Sampler::linear_repeat());
        texture.dispose();
        gl.forget();
    }
}

TEST_F(TextureTrace, ConstructionWithAnUnsetSamplerSendsNoParameter) {
    const BareTexture texture(Texture::Type::TEXTURE_2D, GL_RGBA8, Sampler({}));
    EXPECT_GL_CALLS(gl, "glGenTextures(1, {1})", "glBindTexture(GL_TEXTURE_2D, 1)",
                    "glBindTexture(GL_TEXTURE_2D, 0)");
    EXPECT_EQ(texture.getSampler(), Sampler({}));
}

TEST_F(TextureTrace, TypeIsTheGlTarget) {
    for (const TypeRow& row : types) {
        const BareTexture texture(row.type, GL_RGB16);
        EXPECT_EQ(texture.type(), row.target);
        EXPECT_EQ(texture.texelFormat(), unsigned(GL_RGB16));
    }
}

TEST_F(TextureTrace, AnotherTypeGivesTargetZero) {
    for (const unsigned int type : {3u, 4u, 0xFFFFFFFFu}) {
        BareTexture texture(static_cast<Texture::Type>(type), GL_RGBA8, Sampler({}));
        EXPECT_EQ(texture.type(), 0u);
        const unsigned int name = texture.id();
        EXPECT_GL_CALLS(gl, "glGenTextures(1, {" + std::to_string(name) + "})",
                        binding("0x0", name), binding("0x0", 0));
        texture.dispose();
        gl.forget();
    }
}

TEST_F(TextureTrace, EquivalentMeansSameNameOrSameTargetAndFormat) {
    const auto color = texture(Texture::Type::TEXTURE_2D);
    const auto same = texture(Texture::Type::TEXTURE_2D);
    const auto otherFormat = texture(Texture::Type::TEXTURE_2D, GL_RGB8);
    const auto otherTarget = texture(Texture::Type::TEXTURE_3D);
    EXPECT_TRUE(color->equivalent(*color));
    EXPECT_TRUE(color->equivalent(*same));
    EXPECT_TRUE(same->equivalent(*color));
    EXPECT_FALSE(color->equivalent(*otherFormat));
    EXPECT_FALSE(color->equivalent(*otherTarget));
    EXPECT_FALSE(otherTarget->equivalent(*color));
    EXPECT_GL_CALLS(gl);
    otherFormat->dispose();
    otherTarget->dispose();
    EXPECT_TRUE(otherFormat->equivalent(*otherTarget)); // both names are 0
}

TEST_F(TextureTrace, BindAndUnbindTouchOnlyTheTarget) {
    for (const TypeRow& row : types) {
        const auto made = texture(row.type);
        made->bind();
        made->unbind();
        EXPECT_GL_CALLS(gl, binding(row.name, made->id()), binding(row.name, 0));
    }
    gl.forget();
}

TEST_F(TextureTrace, StaticUnbindsBindZero) {
    Texture::unbind1D();
    Texture::unbind2D();
    Texture::unbind3D();
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_1D, 0)", "glBindTexture(GL_TEXTURE_2D, 0)",
                    "glBindTexture(GL_TEXTURE_3D, 0)");
}

TEST_F(TextureTrace, SetSamplerKeepsACopyAndLeavesNothingBound) {
    const auto made = texture(Texture::Type::TEXTURE_2D);
    const auto other = texture(Texture::Type::TEXTURE_2D);
    other->bind();
    Sampler sampler(Sampler::LINEAR, Sampler::MIRRORED_REPEAT);
    made->setSampler(sampler);
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_2D, 2)", "glBindTexture(GL_TEXTURE_2D, 1)",
                    parameters("GL_TEXTURE_2D", "GL_LINEAR", "GL_MIRRORED_REPEAT"),
                    "glBindTexture(GL_TEXTURE_2D, 0)");
    int bound = -1;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 0);
    sampler.set({{Sampler::WRAP_S, Sampler::CLAMP}});
    EXPECT_EQ(made->getSampler(), Sampler(Sampler::LINEAR, Sampler::MIRRORED_REPEAT));
}

TEST_F(TextureTrace, SetSamplerTakesTheTexturesOwn) {
    const auto made = texture(Texture::Type::TEXTURE_1D);
    made->setSampler(made->getSampler());
    EXPECT_EQ(made->getSampler(), Sampler::nearest_clamp());
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_1D, 1)",
                    parameters("GL_TEXTURE_1D", "GL_NEAREST", "GL_CLAMP_TO_EDGE"),
                    "glBindTexture(GL_TEXTURE_1D, 0)");
}

TEST_F(TextureTrace, WholeUploadsAllocateLevelZero) {
    const auto one = texture(Texture::Type::TEXTURE_1D, GL_R8);
    one->upload1d(data, 7, GL_RED, GL_UNSIGNED_BYTE, 2);
    expectUpload("glTexImage1D(GL_TEXTURE_1D, 0, GL_R8, 7, 0, GL_RED, GL_UNSIGNED_BYTE, data)");
    const auto two = texture(Texture::Type::TEXTURE_2D, GL_DEPTH24_STENCIL8);
    two->upload2d(data, 7, 5, GL_DEPTH_STENCIL, GL_UNSIGNED_INT_24_8, 2);
    expectUpload("glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH24_STENCIL8, 7, 5, 0, GL_DEPTH_STENCIL, "
                 "GL_UNSIGNED_INT_24_8, data)");
    const auto three = texture(Texture::Type::TEXTURE_3D, GL_RGBA32F);
    three->upload3d(data, 7, 5, 3, GL_RGBA, GL_FLOAT, 2);
    expectUpload("glTexImage3D(GL_TEXTURE_3D, 0, GL_RGBA32F, 7, 5, 3, 0, GL_RGBA, GL_FLOAT, data)");
}

TEST_F(TextureTrace, PartialUploadsReplaceInLevelZero) {
    const auto one = texture(Texture::Type::TEXTURE_1D);
    one->upload1d(data, 1, 7, GL_RGBA, GL_FLOAT, 2);
    expectUpload("glTexSubImage1D(GL_TEXTURE_1D, 0, 1, 7, GL_RGBA, GL_FLOAT, data)");
    const auto two = texture(Texture::Type::TEXTURE_2D);
    two->upload2d(data, 1, 2, 7, 5, GL_RGBA, GL_UNSIGNED_SHORT, 2);
    expectUpload("glTexSubImage2D(GL_TEXTURE_2D, 0, 1, 2, 7, 5, GL_RGBA, GL_UNSIGNED_SHORT, data)");
    const auto three = texture(Texture::Type::TEXTURE_3D);
    three->upload3d(data, 1, 2, 4, 7, 5, 3, GL_RGB, GL_UNSIGNED_BYTE, 2);
    expectUpload("glTexSubImage3D(GL_TEXTURE_3D, 0, 1, 2, 4, 7, 5, 3, GL_RGB, GL_UNSIGNED_BYTE, "
                 "data)");
}

TEST_F(TextureTrace, NullDataOfAWholeUploadGoToGl) {
    const auto made = texture(Texture::Type::TEXTURE_2D);
    made->upload2d(nullptr, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, 2);
    expectUpload(
        "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, null)");
}

TEST_F(TextureTrace, TheThreeDownloadsAreAlike) {
    using Download = void (BareTexture::*)(void*, unsigned int, unsigned int, unsigned int) const;
    for (const TypeRow& row : types) {
        const auto made = texture(row.type);
        for (const Download download :
             {Download(&BareTexture::download1d), Download(&BareTexture::download2d),
              Download(&BareTexture::download3d)}) {
            ((*made).*download)(data, GL_RED, GL_UNSIGNED_BYTE, 2);
            EXPECT_GL_CALLS(gl, aligned("GL_PACK_ALIGNMENT", "glGetTexImage(" + row.name +
                                                                 ", 0, GL_RED, GL_UNSIGNED_BYTE, "
                                                                 "out)"));
        }
    }
    gl.forget();
}

TEST_F(TextureTrace, TransfersPutTheAlignmentBackThatWasThere) {
    const auto made = texture(Texture::Type::TEXTURE_2D);
    for (const int before : {1, 2, 4, 8}) {
        gl.setState(GL_UNPACK_ALIGNMENT, {before});
        gl.setState(GL_PACK_ALIGNMENT, {before});
        made->upload2d(data, 1, 1, GL_RED, GL_UNSIGNED_BYTE, 1);
        EXPECT_EQ(gl.takeCalls().back(),
                  "glPixelStorei(GL_UNPACK_ALIGNMENT, " + std::to_string(before) + ")");
        made->download2d(data, GL_RED, GL_UNSIGNED_BYTE, 1);
        EXPECT_EQ(gl.takeCalls().back(),
                  "glPixelStorei(GL_PACK_ALIGNMENT, " + std::to_string(before) + ")");
    }
}

TEST_F(TextureTrace, TransferThatThrowsPutsTheAlignmentBack) {
    const auto made = texture(Texture::Type::TEXTURE_1D);
    gl.answer(glad_glTexImage1D, [](GLenum, GLint, GLint, GLsizei, GLint, GLenum, GLenum,
                                    const void*) { throw std::runtime_error("interrupted"); });
    gl.answer(glad_glGetTexImage, [](GLenum, GLint, GLenum, GLenum, void*) {
        throw std::runtime_error("interrupted");
    });
    EXPECT_THROW(made->upload1d(data, 1, GL_RED, GL_UNSIGNED_BYTE, 1), std::runtime_error);
    EXPECT_EQ(gl.takeCalls().back(), "glPixelStorei(GL_UNPACK_ALIGNMENT, 8)");
    EXPECT_THROW(made->download1d(data, GL_RED, GL_UNSIGNED_BYTE, 1), std::runtime_error);
    EXPECT_EQ(gl.takeCalls().back(), "glPixelStorei(GL_PACK_ALIGNMENT, 8)");
}

TEST_F(TextureTrace, TransfersBindNothing) {
    const auto made = texture(Texture::Type::TEXTURE_2D);
    made->upload2d(data, 1, 1, GL_RED, GL_UNSIGNED_BYTE, 1);
    made->upload2d(data, 0, 0, 1, 1, GL_RED, GL_UNSIGNED_BYTE, 1);
    made->download2d(data, GL_RED, GL_UNSIGNED_BYTE, 1);
    made->generateMipmap();
    EXPECT_EQ(gl.countOf("glBindTexture"), 0u);
    gl.forget();
}

TEST_F(TextureTrace, GenerateMipmapIsForTheTarget) {
    for (const TypeRow& row : types) {
        const auto made = texture(row.type);
        made->generateMipmap();
        EXPECT_GL_CALLS(gl, "glGenerateMipmap(" + row.name + ")");
    }
    gl.forget();
}

TEST_F(TextureTrace, GenerateMipmapDoesNothingWithoutFramebufferObjects) {
    const auto made = texture(Texture::Type::TEXTURE_2D);
    gl.remove(glad_glGenerateMipmap);
    made->generateMipmap();
    EXPECT_GL_CALLS(gl);
}

TEST_F(TextureTrace, DisposeTwiceAndTheDestructorDeleteOnce) {
    auto made = texture(Texture::Type::TEXTURE_2D);
    made->dispose();
    EXPECT_GL_CALLS(gl, "glDeleteTextures(1, {1})");
    EXPECT_EQ(made->id(), 0u);
    made->dispose();
    made.reset();
    EXPECT_GL_CALLS(gl);
}

TEST_F(TextureTrace, DestructorDeletesTheTexture) {
    texture(Texture::Type::TEXTURE_2D).reset();
    EXPECT_GL_CALLS(gl, "glDeleteTextures(1, {1})");
    EXPECT_EQ(gl.liveNames(), Lines{});
}

TEST_F(TextureTrace, AfterDisposeBindBindsTextureZero) {
    const auto made = texture(Texture::Type::TEXTURE_3D);
    made->dispose();
    gl.forget();
    made->bind();
    made->setSampler(Sampler({{Sampler::MAG_FILTER, Sampler::LINEAR}}));
    EXPECT_GL_CALLS(gl, "glBindTexture(GL_TEXTURE_3D, 0)", "glBindTexture(GL_TEXTURE_3D, 0)",
                    "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
                    "glBindTexture(GL_TEXTURE_3D, 0)");
    EXPECT_EQ(made->type(), unsigned(GL_TEXTURE_3D));
    EXPECT_EQ(made->texelFormat(), unsigned(GL_RGBA8));
}

TEST_F(TextureTrace, NameThatGlRefusedToMakeIsNeverDeleted) {
    gl.failToCreate();
    auto made = texture(Texture::Type::TEXTURE_2D);
    EXPECT_EQ(made->id(), 0u);
    made->dispose();
    made.reset();
    EXPECT_GL_CALLS(gl);
}

/// A subclass may take part in binding.
class CountingTexture : public BareTexture {
public:
    using BareTexture::BareTexture;
    void bind() const override {
        ++binds;
        BareTexture::bind();
    }
    void unbind() const override {
        ++unbinds;
        BareTexture::unbind();
    }

    mutable int binds = 0;
    mutable int unbinds = 0;
};

TEST_F(TextureTrace, SetSamplerBindsThroughTheVirtualOperations) {
    CountingTexture texture(Texture::Type::TEXTURE_2D);
    texture.setSampler(Sampler::linear_clamp());
    EXPECT_EQ(texture.binds, 1);
    EXPECT_EQ(texture.unbinds, 1);
}

} // namespace

/// Textures on a driver: every format comes back as it was sent.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/offered_texels.hpp"
#include "support/packing.hpp"
#include "support/render_test.hpp"
#include "support/texel_formats.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

/// Texels of which no two neighbours are alike, floats beyond 0 to 1 among them.
template <class F>
std::vector<F> pattern(std::size_t count) {
    std::vector<F> texels(count);
    if (texelRow<F>.pixelType == GL_FLOAT) {
        std::vector<float> numbers(count * sizeof(F) / sizeof(float));
        for (std::size_t i = 0; i < numbers.size(); ++i)
            numbers[i] = 0.37f * static_cast<float>(i) - 3.f;
        std::memcpy(static_cast<void*>(texels.data()), numbers.data(), count * sizeof(F));
    } else {
        std::vector<unsigned char> bytes(count * sizeof(F));
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<unsigned char>(17 + 37 * i);
        std::memcpy(static_cast<void*>(texels.data()), bytes.data(), bytes.size());
    }
    return texels;
}

template <class F>
void expectAlike(const F& read, const F& written, int /*depthBits*/) {
    EXPECT_EQ(read, written);
}

/// Two depths of \p bits bits alike, where GL keeps \p depthBits of them.
void expectDepthsAlike(unsigned int read, unsigned int written, int bits, int depthBits) {
    const std::int64_t unit = std::int64_t(1) << std::max(bits - depthBits, 0);
    EXPECT_LE(std::abs(std::int64_t(read) - std::int64_t(written)), unit) << read << ' ' << written;
}

void expectAlike(const depth16& read, const depth16& written, int depthBits) {
    expectDepthsAlike(read.value, written.value, 16, depthBits);
}

void expectAlike(const depth32& read, const depth32& written, int depthBits) {
    expectDepthsAlike(read.value, written.value, 32, depthBits);
}

void expectAlike(const depth24_stencil8& read, const depth24_stencil8& written, int depthBits) {
    expectDepthsAlike(read.value >> 8, written.value >> 8, 24, depthBits);
    EXPECT_EQ(read.value & 0xFF, written.value & 0xFF);
}

int levelValue(const Texture& texture, GLenum pname, int level = 0) {
    int value = -1;
    texture.bind();
    glGetTexLevelParameteriv(texture.type(), level, pname, &value);
    texture.unbind();
    return value;
}

template <class F>
void expectAlike(const std::vector<F>& read, const std::vector<F>& written,
                 const Texture& texture) {
    ASSERT_EQ(read.size(), written.size());
    const int depthBits = levelValue(texture, GL_TEXTURE_DEPTH_SIZE);
    for (std::size_t i = 0; i < read.size(); ++i)
        expectAlike(read[i], written[i], depthBits);
}

int state(GLenum pname) {
    int value = -1;
    glGetIntegerv(pname, &value);
    return value;
}

GLenum takeError() {
    const GLenum error = glGetError();
    while (glGetError() != GL_NO_ERROR) {
    }
    return error;
}

/// Expects that \p texture, which was uploaded from \p texels, is what was asked for.
template <class Typed, class F>
void expectStored(const Typed& texture, const std::vector<F>& texels) {
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(unsigned(levelValue(texture, GL_TEXTURE_INTERNAL_FORMAT)),
              texelRow<F>.internalFormat);
    expectAlike(texture.download(), texels, texture);
    std::vector<F> read(texels.size());
    texture.download(read.data());
    expectAlike(read, texels, texture);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(state(GL_UNPACK_ALIGNMENT), 4);
    EXPECT_EQ(state(GL_PACK_ALIGNMENT), 4);
}

/// \p whole, rows of \p size texels, with \p part put in.
template <class F>
std::vector<F> withPart(std::vector<F> whole, const glm::uvec3& size, const std::vector<F>& part,
                        const glm::uvec3& offset, const glm::uvec3& partSize) {
    std::size_t next = 0;
    for (unsigned int z = 0; z < partSize.z; ++z) {
        for (unsigned int y = 0; y < partSize.y; ++y) {
            for (unsigned int x = 0; x < partSize.x; ++x) {
                const glm::uvec3 p = glm::uvec3(x, y, z) + offset;
                whole[p.x + size.x * (p.y + size.y * p.z)] = part[next++];
            }
        }
    }
    return whole;
}

class TextureRender : public RenderTest {
protected:
    TextureRender() : RenderTest(96) {}
};

// Odd sizes, so that rows of small texels end where no alignment but 1 would have them end.

TEST_F(TextureRender, EveryFormatOf1DComesBack) {
    const auto check = [](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const std::vector<F> texels = pattern<F>(7);
        const auto texture = Texture1D<F>::make(7, texels.data());
        expectStored(*texture, texels);
        const std::vector<F> part(texels.begin(), texels.begin() + 3);
        texture->upload(part.data(), 2, 3);
        expectStored(*texture, withPart(texels, {7, 1, 1}, part, {2, 0, 0}, {3, 1, 1}));
    };
    eachOffered<ColorTexels>(check);
    DepthTexels::each(check);
}

TEST_F(TextureRender, EveryFormatOf2DComesBack) {
    const auto check = [](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const std::vector<F> texels = pattern<F>(5 * 3);
        const auto texture = Texture2D<F>::make(5, 3, texels.data());
        expectStored(*texture, texels);
        const std::vector<F> part(texels.begin(), texels.begin() + 3 * 2);
        texture->upload(part.data(), 2, 1, 3, 2);
        expectStored(*texture, withPart(texels, {5, 3, 1}, part, {2, 1, 0}, {3, 2, 1}));
    };
    eachOffered<ColorTexels>(check);
    DepthTexels::each(check);
}

TEST_F(TextureRender, EveryFormatOf3DComesBack) {
    eachOffered<ColorTexels>([](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        const std::vector<F> texels = pattern<F>(5 * 3 * 4);
        const auto texture = Texture3D<F>::make(5, 3, 4, texels.data());
        expectStored(*texture, texels);
        const std::vector<F> part(texels.begin(), texels.begin() + 3 * 1 * 2);
        texture->upload(part.data(), 1, 2, 1, 3, 1, 2);
        expectStored(*texture, withPart(texels, {5, 3, 4}, part, {1, 2, 1}, {3, 1, 2}));
    });
}

TEST_F(TextureRender, ColorsKeepTheBitsOfTheirTexels) {
    eachOffered<ColorTexels>([](auto texel) {
        using F = typename decltype(texel)::type;
        const auto texture = Texture2D<F>::make(2, 2);
        const int bits = texelRow<F>.pixelType == GL_FLOAT            ? 32
                         : texelRow<F>.pixelType == GL_UNSIGNED_SHORT ? 16
                                                                      : 8;
        const GLenum sizes[] = {GL_TEXTURE_RED_SIZE, GL_TEXTURE_GREEN_SIZE, GL_TEXTURE_BLUE_SIZE,
                                GL_TEXTURE_ALPHA_SIZE};
        const std::size_t components = sizeof(F) * 8 / static_cast<std::size_t>(bits);
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(levelValue(*texture, sizes[i]), i < components ? bits : 0)
                << texelRow<F>.name << ' ' << i;
        }
    });
}

TEST_F(TextureRender, TransfersKeepTheAlignmentOfTheCaller) {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    const std::vector<U8vec3> texels = pattern<U8vec3>(3 * 3);
    const auto texture = Texture2D<U8vec3>::make(3, 3, texels.data());
    EXPECT_EQ(texture->download(), texels);
    EXPECT_EQ(state(GL_UNPACK_ALIGNMENT), 2);
    EXPECT_EQ(state(GL_PACK_ALIGNMENT), 8);
}

TEST_F(TextureRender, ResizeMakesStorageOfThatSize) {
    const auto texture = Texture2D<U16vec4>::make();
    EXPECT_TRUE(texture->download().empty());
    static_cast<Texture&>(*texture).resize({6, 4, 9});
    EXPECT_EQ(texture->extent(), glm::uvec3(6, 4, 1));
    EXPECT_EQ(levelValue(*texture, GL_TEXTURE_WIDTH), 6);
    EXPECT_EQ(levelValue(*texture, GL_TEXTURE_HEIGHT), 4);
    EXPECT_EQ(texture->download().size(), 24u);
}

TEST_F(TextureRender, SizeZeroIsAnEmptyTexture) {
    const U8vec3 data[1] = {};
    const auto texture = Texture3D<U8vec3>::make(0, 4, 4, data);
    texture->upload(data, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(texture->download().empty());
    U8vec3 out(5);
    texture->download(&out);
    EXPECT_EQ(out, U8vec3(5));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureRender, WithoutStorageThereIsNothingToRead) {
    const auto texture = Texture1D<U8vec4>::make();
    U8vec4 out(9);
    texture->download(&out);
    EXPECT_EQ(out, U8vec4(9));
    EXPECT_TRUE(texture->download().empty());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    texture->upload(&out, 0, 1);
    EXPECT_NE(takeError(), GLenum(GL_NO_ERROR));
    texture->generateMipmap();
    takeError(); // GL may refuse it
}

TEST_F(TextureRender, NullDoesNotReachThePartsAndTheReads) {
    const std::vector<U8vec4> texels = pattern<U8vec4>(4);
    const auto texture = Texture2D<U8vec4>::make(2, 2, texels.data());
    texture->upload(nullptr, 0, 0, 2, 2);
    texture->download(nullptr);
    EXPECT_EQ(texture->download(), texels);
}

TEST_F(TextureRender, PartOutOfRangeIsRefused) {
    const std::vector<U8vec4> texels = pattern<U8vec4>(4 * 4);
    const auto texture = Texture2D<U8vec4>::make(4, 4, texels.data());
    const U8vec4 other[16] = {};
    const unsigned int parts[][4] = {{3, 0, 2, 1},
                                     {0, 3, 1, 2},
                                     {4, 0, 1, 1},
                                     {0, 0, 5, 1},
                                     {0xFFFFFFFF, 0, 1, 1},
                                     {0x7FFFFFFF, 0, 2, 1},
                                     {0, 0x7FFFFFFF, 1, 0x7FFFFFFF},
                                     {1, 1, 0xFFFFFFFF, 1}};
    for (const auto& [x, y, width, height] : parts) {
        texture->upload(other, x, y, width, height);
        EXPECT_EQ(takeError(), GLenum(GL_INVALID_VALUE)) << x << ' ' << y;
    }
    EXPECT_EQ(texture->download(), texels);
}

TEST_F(TextureRender, RefusedSizeLeavesTheStorage) {
    const std::vector<U8vec4> texels = pattern<U8vec4>(4 * 4);
    const auto texture = Texture2D<U8vec4>::make(4, 4, texels.data());
    const auto tooMuch = static_cast<unsigned int>(state(GL_MAX_TEXTURE_SIZE)) + 1;
    for (const glm::uvec3 asked :
         {glm::uvec3(tooMuch, 0, 1), glm::uvec3(0, 0xFFFFFFFF, 1), glm::uvec3(0x1000000, 1, 1),
          glm::uvec3(0x2000000, 0x2000000, 1), glm::uvec3(1, 0x7FFFFFFF, 1)}) {
        texture->resize(asked); // of which there would be no texels to read
        EXPECT_EQ(takeError(), GLenum(GL_INVALID_VALUE));
        EXPECT_EQ(texture->extent(), asked);
        EXPECT_EQ(texture->download(), texels);
    }
}

TEST_F(TextureRender, SizeThatNoTextureHasIsRefusedInEveryDimension) {
    const auto one = Texture1D<U8vec4>::make();
    const auto three = Texture3D<U8vec4>::make();
    const auto depth = Texture2D<depth24_stencil8>::make();
    for (const unsigned int side : {0x1000000u, 0x2000000u, 0x40000000u, 0x7FFFFFFFu}) {
        one->upload(nullptr, side);
        EXPECT_EQ(takeError(), GLenum(GL_INVALID_VALUE)) << side;
        depth->upload(nullptr, 1, side);
        EXPECT_EQ(takeError(), GLenum(GL_INVALID_VALUE)) << side;
        for (const glm::uvec3 asked :
             {glm::uvec3(side, 1, 1), glm::uvec3(1, side, 1), glm::uvec3(1, 1, side)}) {
            three->resize(asked);
            EXPECT_EQ(takeError(), GLenum(GL_INVALID_VALUE)) << side;
        }
    }
    EXPECT_TRUE(three->download().empty());
}

TEST_F(TextureRender, PixelBuffersTakePartInTransfers) {
    SKIP_WITHOUT(Extension::MappedRanges);
    const std::vector<U16vec4> texels = pattern<U16vec4>(6);
    const auto source = PixelBuffer::make(PixelBuffer::DataFlow::Upload, 6 * sizeof(U16vec4),
                                          BufferUsage::Stream, BufferAccess::Draw);
    source->load(texels.data(), 6 * sizeof(U16vec4));
    source->bind();
    const auto texture = Texture1D<U16vec4>::make(6); // filled from the buffer
    texture->upload(nullptr, 4, 2);                   // its first two
    source->unbind();
    const std::vector<U16vec4> expected = {texels[0], texels[1], texels[2],
                                           texels[3], texels[0], texels[1]};
    EXPECT_EQ(texture->download(), expected);

    const auto sink = PixelBuffer::make(PixelBuffer::DataFlow::Download, 6 * sizeof(U16vec4),
                                        BufferUsage::Stream, BufferAccess::Read);
    sink->bind();
    texture->download(nullptr);
    EXPECT_EQ(texture->download(), expected); // the vector is no place in the buffer
    EXPECT_EQ(state(GL_PIXEL_PACK_BUFFER_BINDING), static_cast<int>(sink->id()));
    EXPECT_TRUE(sink->isBound());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    sink->unbind();
    std::vector<U16vec4> read(6);
    std::memcpy(read.data(), sink->map(MapAccess::ReadOnly), 6 * sizeof(U16vec4));
    sink->unmap(false);
    EXPECT_EQ(read, expected);
}

TEST_F(TextureRender, VectorHasTheTexelsWhateverTheApplicationAskedOfPacking) {
    const std::vector<U16vec4> texels = pattern<U16vec4>(5 * 4 * 3);
    const auto one = Texture1D<U16vec4>::make(5, texels.data());
    const auto two = Texture2D<U16vec4>::make(5, 4, texels.data());
    const auto three = Texture3D<U16vec4>::make(5, 4, 3, texels.data());
    const auto first = [&](std::ptrdiff_t count) {
        return std::vector<U16vec4>(texels.begin(), texels.begin() + count);
    };
    for (const PackParameter& parameter : packParameters) {
        SCOPED_TRACE(parameter.name);
        glPixelStorei(parameter.pname, parameter.value);
        EXPECT_EQ(one->download(), first(5));
        EXPECT_EQ(two->download(), first(5 * 4));
        EXPECT_EQ(three->download(), texels);
        EXPECT_EQ(state(parameter.pname), parameter.value);
        glPixelStorei(parameter.pname, 0);
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureRender, MipmapsAverageTheirTexels) {
    SKIP_WITHOUT(Extension::Framebuffers);
    std::vector<U8vec4> texels;
    for (const int value : {0, 4, 0, 4, 8, 12, 8, 12, 0, 4, 0, 4, 8, 12, 8, 12})
        texels.emplace_back(value);
    const auto texture = Texture2D<U8vec4>::make(4, 4, texels.data(), Sampler::trilinear_repeat());
    texture->generateMipmap();
    EXPECT_EQ(state(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_EQ(levelValue(*texture, GL_TEXTURE_WIDTH, 1), 2);
    EXPECT_EQ(levelValue(*texture, GL_TEXTURE_HEIGHT, 2), 1);
    std::vector<U8vec4> level1(4);
    texture->bind();
    glGetTexImage(GL_TEXTURE_2D, 1, GL_RGBA, GL_UNSIGNED_BYTE, level1.data());
    texture->unbind();
    EXPECT_EQ(level1, std::vector<U8vec4>(4, U8vec4(6)));
    EXPECT_EQ(texture->download(), texels);
}

TEST_F(TextureRender, EveryColorHasMipmaps) {
    SKIP_WITHOUT(Extension::Framebuffers);
    eachOffered<ColorTexels>([](auto texel) {
        using F = typename decltype(texel)::type;
        const auto texture = Texture2D<F>::make(4, 4);
        texture->generateMipmap();
        EXPECT_EQ(levelValue(*texture, GL_TEXTURE_WIDTH, 1), 2) << texelRow<F>.name;
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << texelRow<F>.name;
    });
}

TEST_F(TextureRender, EveryDimensionHasMipmaps) {
    SKIP_WITHOUT(Extension::Framebuffers);
    const auto one = Texture1D<U8vec4>::make(4);
    one->generateMipmap();
    EXPECT_EQ(levelValue(*one, GL_TEXTURE_WIDTH, 2), 1);
    const auto three = Texture3D<U8vec4>::make(4, 4, 4);
    three->generateMipmap();
    EXPECT_EQ(levelValue(*three, GL_TEXTURE_DEPTH, 1), 2);
}

TEST_F(TextureRender, MipmapsOfDepthWithStencilMayBeRefused) {
    SKIP_WITHOUT(Extension::Framebuffers);
    const std::vector<depth24_stencil8> texels = pattern<depth24_stencil8>(4);
    const auto texture = Texture2D<depth24_stencil8>::make(2, 2, texels.data());
    texture->generateMipmap();
    const GLenum error = takeError();
    EXPECT_TRUE(error == GL_INVALID_OPERATION || !isMesa()) << error;
    expectStored(*texture, texels);
}

TEST_F(TextureRender, DisposedTextureIsGoneAndInert) {
    const auto texture = Texture2D<U8vec4>::make(2, 2);
    const unsigned int name = texture->id();
    EXPECT_TRUE(glIsTexture(name));
    texture->dispose();
    texture->dispose();
    EXPECT_FALSE(glIsTexture(name));
    const U8vec4 data[4] = {};
    texture->upload(data, 2, 2);
    texture->upload(data, 0, 0, 2, 2);
    texture->generateMipmap();
    EXPECT_TRUE(texture->download().empty());
    texture->bind();
    int width = -1;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    EXPECT_EQ(width, 0); // GL's own texture 0 got no storage
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureRender, BindingIsOnTheActiveUnit) {
    glActiveTexture(GL_TEXTURE1);
    const auto texture = Texture2D<U8vec4>::make(2, 2);
    const auto other = Texture2D<U8vec4>::make(2, 2);
    EXPECT_EQ(state(GL_ACTIVE_TEXTURE), GL_TEXTURE1);
    texture->bind();
    EXPECT_EQ(state(GL_TEXTURE_BINDING_2D), static_cast<int>(texture->id()));
    other->setSampler(Sampler::linear_clamp());
    EXPECT_EQ(state(GL_TEXTURE_BINDING_2D), 0);
    texture->bind();
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(state(GL_TEXTURE_BINDING_2D), 0);
    Texture::unbind2D();
    glActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(state(GL_TEXTURE_BINDING_2D), static_cast<int>(texture->id()));
    Texture::unbind2D();
    EXPECT_EQ(state(GL_TEXTURE_BINDING_2D), 0);
}

} // namespace

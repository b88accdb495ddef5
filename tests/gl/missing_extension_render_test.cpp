/// What the library does in a context that lacks one of the three extensions: what needs it does
/// nothing, makes no GL error and leaves GL as it was.

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/texture.hpp>

#include "support/extension.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

constexpr Extension extensions[] = {
#define VELLIS_EXTENSION(extension, name) Extension::extension,
#define VELLIS_EXTENSION_ENTRY_POINT(extension, entryPoint)
#include "support/extensions.inc"
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT
};

/// How many of an extension's entry points are loaded.
int numLoaded(Extension extension) {
    int count = 0;
#define VELLIS_EXTENSION(extensionOfRow, name)
#define VELLIS_EXTENSION_ENTRY_POINT(extensionOfRow, entryPoint)                                   \
    if (extension == Extension::extensionOfRow && glad_##entryPoint != nullptr)                    \
        ++count;
#include "support/extensions.inc"
#undef VELLIS_EXTENSION
#undef VELLIS_EXTENSION_ENTRY_POINT
    return count;
}

/// A context that lacks one extension.
class MissingExtension : public RenderTest {
protected:
    explicit MissingExtension(Extension extension) : extension_(extension) {}

    void SetUp() override {
        RenderTest::SetUp();
        if (!goesOn())
            return;
        SKIP_IN_CORE("what OpenGL 2.1 has");
        ASSERT_TRUE(hide(extension_));
    }

private:
    Extension extension_;
};

class EachMissingExtension : public MissingExtension,
                             public testing::WithParamInterface<Extension> {
protected:
    EachMissingExtension() : MissingExtension(GetParam()) {}
};

TEST_P(EachMissingExtension, IsNotLoadedAndTheOthersAre) {
    const auto elsewhere = extensionToHide();
    for (const Extension extension : extensions) {
        const bool isMissing = extension == GetParam() || extension == elsewhere;
        EXPECT_EQ(has(extension), !isMissing) << name(extension);
        EXPECT_EQ(numLoaded(extension) == 0, isMissing) << name(extension);
    }
}

TEST_P(EachMissingExtension, IsNoneOfTheContexts) {
    const std::string offered = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    EXPECT_EQ((offered + " ").find(name(GetParam()) + " "), std::string::npos);
    EXPECT_EQ(GLVersion.major, 2);
    EXPECT_EQ(GLVersion.minor, 1);
}

INSTANTIATE_TEST_SUITE_P(Extensions, EachMissingExtension, testing::ValuesIn(extensions),
                         [](const auto& row) { return name(row.param); });

class WithoutVertexArrays : public MissingExtension {
protected:
    WithoutVertexArrays() : MissingExtension(Extension::VertexArrays) {}

    void SetUp() override {
        MissingExtension::SetUp();
        if (!goesOn())
            return;
        program = Program::make("#version 120 \n"
                                "attribute vec2 position; \n"
                                "void main() { gl_Position = vec4(position, 0.0, 1.0); } \n",
                                "#version 120 \n"
                                "void main() { gl_FragColor = vec4(1.0); } \n");
        ASSERT_FALSE(program->hasLinkError());
        glClear(GL_COLOR_BUFFER_BIT);
    }

    void TearDown() override {
        program.reset();
        MissingExtension::TearDown();
    }

    using Positions = VertexAttribute<glm::vec2>;
    using Square = drawable::TriangleStrip<Positions>;

    static std::shared_ptr<VertexAttributeBuffer<glm::vec2>> corners(float left, float right) {
        return VertexAttributeBuffer<glm::vec2>::make(
            {{left, -1.f}, {right, -1.f}, {left, 1.f}, {right, 1.f}}, BufferUsage::Static,
            BufferAccess::Draw);
    }

    /// Whether the middle of the left half and that of the right half are white.
    static std::pair<bool, bool> drawnHalves() {
        unsigned char left[4] = {};
        unsigned char right[4] = {};
        glReadPixels(size / 4, size / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, left);
        glReadPixels(3 * size / 4, size / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, right);
        return {left[0] > 127, right[0] > 127};
    }

    std::shared_ptr<Program> program;
};

TEST_F(WithoutVertexArrays, BindingsAreNeverCurrent) {
    program->beginAttributesBinding();
    const auto binding = program->finishAttributesBinding();
    ASSERT_NE(binding, nullptr);
    binding->bind();
    EXPECT_FALSE(binding->isCurrent());
    VertexAttributesBinding::unbind();
    EXPECT_EQ(takeError(), "");
}

TEST_F(WithoutVertexArrays, OneDrawableIsDrawn) {
    const auto buffer = corners(-1.f, 0.f);
    program->draw(*Square::make(program, {"position", buffer}));
    EXPECT_EQ(drawnHalves(), std::pair(true, false));
}

TEST_F(WithoutVertexArrays, AttributesAreThoseOfTheDrawableMadeLast) {
    const auto left = corners(-1.f, 0.f);
    const auto right = corners(0.f, 1.f);
    const auto first = Square::make(program, {"position", left});
    const auto last = Square::make(program, {"position", right});
    program->draw(*first);
    EXPECT_EQ(drawnHalves(), std::pair(false, true));
}

class WithoutFramebuffers : public MissingExtension {
protected:
    WithoutFramebuffers() : MissingExtension(Extension::Framebuffers) {}

    /// Sixteen texels, no two of them alike.
    static std::vector<U8vec4> pattern() {
        std::vector<U8vec4> texels;
        for (unsigned char i = 0; i < 16; ++i)
            texels.emplace_back(i, 2 * i, 3 * i, 255);
        return texels;
    }

    static std::shared_ptr<Texture2D<U8vec4>> texture() {
        return Texture2D<U8vec4>::make(4, 4, pattern().data());
    }
};

TEST_F(WithoutFramebuffers, NamesAreZero) {
    EXPECT_EQ(Framebuffer::make()->id(), 0u);
    const auto renderbuffer = Renderbuffer<U8vec4>::make(4, 4);
    EXPECT_EQ(renderbuffer->id(), 0u);
    EXPECT_EQ(renderbuffer->width(), 0u);
    EXPECT_EQ(MultiSampleRenderbuffer<depth32>::make(4, 4, 4)->id(), 0u);
    EXPECT_EQ(takeError(), "");
}

TEST_F(WithoutFramebuffers, DrawingGoesToTheDefaultOne) {
    const auto target = texture();
    const auto framebuffer = Framebuffer::make();
    const int drawBuffer = stateOf(GL_DRAW_BUFFER);
    framebuffer->bind();
    framebuffer->attachFragmentOut(*target);
    framebuffer->attachFragmentOuts(*target, *texture());
    framebuffer->attachDepthbuffer(*Renderbuffer<depth32>::make(4, 4));
    EXPECT_FALSE(framebuffer->isBound());
    EXPECT_TRUE(Framebuffer::makeNull()->isBound());
    EXPECT_EQ(problem(), "UNKNOWN ERROR");
    EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
    EXPECT_EQ(stateOf(GL_DRAW_BUFFER), drawBuffer);
    Framebuffer::clearColor(glm::vec4(0.f, 1.f, 0.f, 1.f));
    framebuffer->detachAll();
    framebuffer->unbind();
    EXPECT_EQ(Framebuffer::download<U8vec4>(0, 0, 1, 1).at(0), U8vec4(0, 255, 0, 255));
    EXPECT_EQ(target->download(), pattern());
    EXPECT_EQ(takeError(), "");
}

TEST_F(WithoutFramebuffers, BlitsCopyNothing) {
    const auto destination = texture();
    const std::vector<U8vec4> black(16);
    const auto source = Texture2D<U8vec4>::make(4, 4, black.data());
    Framebuffer::blit(*source, *destination, 4, 4);
    Framebuffer::blit(*Renderbuffer<U8vec4>::make(4, 4), *destination, 4, 4);
    Framebuffer::blit(*MultiSampleRenderbuffer<U8vec4>::make(4, 4, 4), *destination, 4, 4);
    EXPECT_EQ(destination->download(), pattern());
    EXPECT_EQ(takeError(), "");
}

TEST_F(WithoutFramebuffers, NoMipmapIsMade) {
    const auto image = texture();
    image->generateMipmap();
    image->bind();
    int width = -1;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 1, GL_TEXTURE_WIDTH, &width);
    image->unbind();
    EXPECT_EQ(width, 0);
    EXPECT_EQ(image->download(), pattern());
    EXPECT_EQ(takeError(), "");
}

class WithoutMappedRanges : public MissingExtension {
protected:
    WithoutMappedRanges() : MissingExtension(Extension::MappedRanges) {}
};

TEST_F(WithoutMappedRanges, NothingIsMapped) {
    const auto buffer = VertexAttributeBuffer<float>::make({1.f, 2.f, 3.f}, BufferUsage::Dynamic,
                                                           BufferAccess::Draw);
    for (const MapAccess access : {MapAccess::ReadOnly, MapAccess::WriteOnly, MapAccess::ReadWrite})
        EXPECT_EQ(buffer->map(access), nullptr);
    buffer->bind();
    EXPECT_EQ(buffer->map(MapAccess::ReadOnly), nullptr);
    EXPECT_FALSE(buffer->isBound());
    EXPECT_EQ(stateOf(GL_ARRAY_BUFFER_BINDING), 0);
    buffer->flush(0, 1);
    buffer->flushAndUnmap();
    buffer->flushAndUnmap(0, 1);
    buffer->unmap(true);
    EXPECT_EQ(takeError(), "");
}

TEST_F(WithoutMappedRanges, LoadServesInstead) {
    const auto buffer = VertexAttributeBuffer<float>::make({1.f, 2.f, 3.f}, BufferUsage::Dynamic,
                                                           BufferAccess::Draw);
    const float other = 7.f;
    buffer->load(&other, 1, 1);
    float contents[3] = {};
    buffer->bind();
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof contents, contents);
    buffer->unbind();
    EXPECT_EQ(std::vector<float>(contents, contents + 3), (std::vector<float>{1.f, 7.f, 3.f}));
    EXPECT_EQ(takeError(), "");
}

} // namespace

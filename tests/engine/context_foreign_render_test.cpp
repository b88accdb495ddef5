/// Objects that are used where they do not exist: nothing happens, and check_context() says so.

#include <vellis/context.hpp>

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/drawing/primitives.hpp>
#include <vellis/drawing/toolbox.hpp>
#include <vellis/internal.hpp>

#include "support/pixels.hpp"
#include "support/scene.hpp"
#include "support/surface.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;

using Strip = drawable::TriangleStrip<VertexAttribute<glm::vec2>>;

constexpr glm::vec2 corner(0.5f, 0.5f);

/// A use of a scene's objects in a Context that has another scene.
struct ForeignUse {
    friend void PrintTo(const ForeignUse& row, std::ostream* out) { *out << row.name; }

    const char* name;
    const char* kind; ///< what check_context() says of it
    void (*use)(Scene& foreign, Scene& own);
};

void drawWithToolbox(const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
    Toolbox::drawTriangleStrip(glm::vec4(1.f), 0, 4, buffer, glm::mat4(1.f));
}

const ForeignUse uses[] = {
    // Buffers.
    {"BindABuffer", "buffer",
     [](Scene& foreign, Scene& own) {
         own.shared.corners->bind();
         foreign.shared.corners->bind();
         EXPECT_EQ(stateOf(GL_ARRAY_BUFFER_BINDING), 0);
         foreign.shared.corners->unbind();
     }},
    {"LoadABuffer", "buffer",
     [](Scene& foreign, Scene&) {
         foreign.shared.corners->load(&corner, 1);
         EXPECT_EQ(foreign.shared.corners->count(), 4u) << "as many as it has";
         EXPECT_EQ(foreign.shared.corners->numBytes(), 4 * sizeof(glm::vec2));
     }},
    {"LoadAPartOfABuffer", "buffer",
     [](Scene& foreign, Scene&) { foreign.shared.corners->load(&corner, 2, 1); }},
    {"MapABuffer", "buffer",
     [](Scene& foreign, Scene&) {
         EXPECT_EQ(foreign.shared.corners->map(MapAccess::ReadWrite), nullptr);
         foreign.shared.corners->flush(0, 0);
         foreign.shared.corners->flushAndUnmap();
         foreign.shared.corners->unmap(true);
     }},
    {"LoadIndices", "buffer",
     [](Scene& foreign, Scene&) {
         foreign.shared.indices->load(std::vector<unsigned short>{0, 1});
         EXPECT_EQ(foreign.shared.indices->count(), 4u);
     }},
    // Textures.
    {"BindATexture", "texture",
     [](Scene& foreign, Scene& own) {
         own.shared.texture->bind();
         foreign.shared.texture->bind();
         EXPECT_EQ(stateOf(GL_TEXTURE_BINDING_2D), 0);
     }},
    {"SetASampler", "texture",
     [](Scene& foreign, Scene&) {
         foreign.shared.texture->setSampler(Sampler::linear_repeat());
         EXPECT_EQ(foreign.shared.texture->getSampler(), Sampler::nearest_clamp());
     }},
    {"Upload", "texture",
     [](Scene& foreign, Scene&) { foreign.shared.texture->upload(&yellow, 1, 1); }},
    {"UploadAPart", "texture",
     [](Scene& foreign, Scene&) { foreign.shared.texture->upload(&yellow, 0, 0, 1, 1); }},
    {"Resize", "texture",
     [](Scene& foreign, Scene&) {
         foreign.shared.texture->resize({2, 2, 1});
     }},
    {"Download", "texture",
     [](Scene& foreign, Scene&) {
         Color texel = yellow;
         foreign.shared.texture->download(&texel);
         EXPECT_EQ(texel, yellow);
     }},
    {"DownloadToAVector", "texture",
     [](Scene& foreign, Scene&) { EXPECT_TRUE(foreign.shared.texture->download().empty()); }},
    {"GenerateMipmap", "texture",
     [](Scene& foreign, Scene&) { foreign.shared.texture->generateMipmap(); }},
    {"DrawWithATexture", "texture",
     [](Scene& foreign, Scene& own) {
         own.own.framebuffer->bind();
         own.shared.program->draw(*own.own.square, Uniform("image", *foreign.shared.texture));
         EXPECT_EQ(stateOf(GL_TEXTURE_BINDING_2D), 0);
         own.own.framebuffer->unbind();
     }},
    {"AttachATexture", "texture",
     [](Scene& foreign, Scene&) {
         Framebuffer framebuffer;
         framebuffer.bind();
         framebuffer.attachFragmentOut(*foreign.shared.target);
         EXPECT_NE(problem(), "");
         framebuffer.unbind();
     }},
    {"BlitFrom", "texture",
     [](Scene& foreign, Scene& own) {
         Framebuffer::blit(*foreign.shared.target, *own.shared.target, 1, 1);
     }},
    {"BlitTo", "texture",
     [](Scene& foreign, Scene& own) {
         Framebuffer::blit(*own.shared.target, *foreign.shared.target, 1, 1);
     }},
    // Renderbuffers.
    {"BindARenderbuffer", "renderbuffer",
     [](Scene& foreign, Scene& own) {
         own.shared.depth->bind();
         foreign.shared.depth->bind();
         EXPECT_EQ(stateOf(GL_RENDERBUFFER_BINDING), 0);
     }},
    {"AttachARenderbuffer", "renderbuffer",
     [](Scene& foreign, Scene& own) {
         Framebuffer framebuffer;
         framebuffer.bind();
         framebuffer.attachFragmentOut(*own.shared.texture);
         framebuffer.attachDepthStencilbuffer(*foreign.shared.depth);
         EXPECT_EQ(problem(), "") << "it has no depth and stencil";
         EXPECT_EQ(stateOf(GL_DEPTH_BITS), 0);
         framebuffer.unbind();
     }},
    // Shaders and programs.
    {"AskAShader", "shader",
     [](Scene& foreign, Scene&) {
         EXPECT_TRUE(foreign.shared.shader->hasCompilationError());
         EXPECT_EQ(foreign.shared.shader->compilationLog(), "");
     }},
    {"LinkAShader", "shader",
     [](Scene& foreign, Scene&) {
         const auto program = Program::make(foreign.shared.shader, nullptr);
         GLint numShaders = -1;
         glGetProgramiv(program->id(), GL_ATTACHED_SHADERS, &numShaders);
         EXPECT_EQ(numShaders, 0);
     }},
    {"BindAProgram", "program",
     [](Scene& foreign, Scene& own) {
         own.shared.program->bind();
         foreign.shared.program->bind();
         EXPECT_EQ(stateOf(GL_CURRENT_PROGRAM), 0);
         foreign.shared.program->unbind();
     }},
    {"AskAProgram", "program",
     [](Scene& foreign, Scene&) {
         EXPECT_TRUE(foreign.shared.program->hasLinkError());
         EXPECT_EQ(foreign.shared.program->linkLog(), "");
     }},
    {"SetAUniform", "program",
     [](Scene& foreign, Scene&) {
         foreign.shared.program->bind();
         foreign.shared.program->setUniform("image", *foreign.shared.texture);
         foreign.shared.program->setUniform("image", 1);
         foreign.shared.program->setUniform("unknown.member", 1.f);
         foreign.shared.program->unbind();
         internal::check_context(); // which names the last: the texture
         foreign.shared.program->bind();
         foreign.shared.program->unbind();
     }},
    {"DrawWithAProgram", "program",
     [](Scene& foreign, Scene& own) {
         foreign.shared.program->draw(*own.own.square);
         foreign.shared.program->draw(*own.own.square, *own.shared.indices);
     }},
    {"DrawWithAProgramAndValues", "program",
     [](Scene& foreign, Scene& own) {
         foreign.shared.program->draw(*own.own.square, Uniform("image", *own.shared.texture));
     }},
    {"DrawAllOfAnother", "vertex array",
     [](Scene& foreign, Scene&) { foreign.shared.program->draw(*foreign.own.square); }},
    // Vertex arrays.
    {"DrawADrawable", "vertex array",
     [](Scene& foreign, Scene& own) { own.shared.program->draw(*foreign.own.square); }},
    {"DrawADrawableWithValues", "vertex array",
     [](Scene& foreign, Scene& own) {
         own.shared.program->draw(*foreign.own.square, Uniform("image", *own.shared.texture));
         Texture::unbind2D();
     }},
    {"DrawADrawableWithIndices", "vertex array",
     [](Scene& foreign, Scene& own) {
         own.shared.program->draw(*foreign.own.square, *own.shared.indices);
     }},
    {"BindAVertexArray", "vertex array",
     [](Scene& foreign, Scene& own) {
         own.own.square->getAttributesBinding()->bind();
         foreign.own.square->getAttributesBinding()->bind();
         EXPECT_EQ(stateOf(GL_VERTEX_ARRAY_BINDING), 0);
         VertexAttributesBinding::unbind();
     }},
    {"DrawWithIndices", "buffer",
     [](Scene& foreign, Scene& own) {
         own.shared.program->draw(*own.own.square, *foreign.shared.indices);
     }},
    {"RecordABuffer", "buffer",
     [](Scene& foreign, Scene& own) {
         const Strip strip(own.shared.program, {"position", foreign.shared.corners});
         EXPECT_EQ(strip.numVertices(), 0u);
         own.shared.program->draw(strip);
     }},
    {"RecordWithAProgram", "program",
     [](Scene& foreign, Scene& own) {
         const Strip strip(foreign.shared.program, {"position", own.shared.corners});
         EXPECT_EQ(stateOf(GL_CURRENT_PROGRAM), 0);
     }},
    {"DrawABufferWithTheToolbox", "buffer",
     [](Scene& foreign, Scene&) { drawWithToolbox(foreign.shared.corners); }},
    // Framebuffers.
    {"BindAFramebuffer", "framebuffer",
     [](Scene& foreign, Scene&) {
         foreign.own.framebuffer->bind();
         EXPECT_EQ(boundFramebuffers(), std::pair(0, 0));
         EXPECT_FALSE(foreign.own.framebuffer->isBound());
         foreign.own.framebuffer->unbind();
     }},
    {"BindAFramebufferToDrawAndToRead", "framebuffer",
     [](Scene& foreign, Scene& own) {
         own.own.framebuffer->bind();
         const auto bound = boundFramebuffers();
         foreign.own.framebuffer->bindToDraw();
         foreign.own.framebuffer->bindToRead();
         foreign.own.framebuffer->unbindToDraw();
         foreign.own.framebuffer->unbindToRead();
         EXPECT_EQ(boundFramebuffers(), bound);
         own.own.framebuffer->unbind();
     }},
    {"AttachToAFramebuffer", "framebuffer",
     [](Scene& foreign, Scene& own) {
         own.own.framebuffer->bind();
         foreign.own.framebuffer->attachFragmentOut(*own.shared.texture);
         foreign.own.framebuffer->attachFragmentOuts(*own.shared.texture);
         foreign.own.framebuffer->detachAll();
         GLint attached = 0;
         glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                                               GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &attached);
         EXPECT_EQ(static_cast<GLuint>(attached), own.shared.target->id());
         own.own.framebuffer->unbind();
     }},
};

std::string nameOf(const testing::TestParamInfo<ForeignUse>& info) {
    return info.param.name;
}

class ContextForeignRender : public SurfaceTest, public testing::WithParamInterface<ForeignUse> {};

INSTANTIATE_TEST_SUITE_P(Uses, ContextForeignRender, testing::ValuesIn(uses), nameOf);

void takeAllErrors() {
    takeError();
    Framebuffer::bind(0);
    Texture::unbind2D();
}

TEST_P(ContextForeignRender, ChangesNothingAndIsNoted) {
    const auto a = open();
    const auto b = open();
    if (!goesOn())
        return;
    ASSERT_TRUE(a->use());
    Scene sceneOfA(red);
    ASSERT_TRUE(draws(sceneOfA, red, blue));
    const Names namesOfA = sceneOfA.names();
    ASSERT_TRUE(b->use());
    Scene sceneOfB(green);
    ASSERT_TRUE(draws(sceneOfB, green, yellow));
    const Names namesOfB = sceneOfB.names();
    const auto before = countObjects();

    GetParam().use(sceneOfA, sceneOfB);
    const char* const noted = internal::check_context();
    EXPECT_STREQ(noted, GetParam().kind);
    EXPECT_EQ(internal::check_context(), nullptr) << "told once";
    takeAllErrors();
    EXPECT_TRUE(shows(green, yellow)) << "nothing was drawn";

    EXPECT_EQ(countObjects(), before);
    EXPECT_EQ(sceneOfB.names(), namesOfB);
    EXPECT_EQ(texelOf(*sceneOfB.shared.texture), green);
    EXPECT_EQ(sceneOfB.shared.texture->getSampler(), Sampler());
    EXPECT_TRUE(draws(sceneOfB, green, blue));
    EXPECT_TRUE(isQuiet());
    ASSERT_TRUE(a->use());
    EXPECT_TRUE(shows(red, blue));
    EXPECT_EQ(sceneOfA.names(), namesOfA);
    EXPECT_EQ(texelOf(*sceneOfA.shared.texture), red);
    EXPECT_TRUE(draws(sceneOfA, red, yellow));
    EXPECT_TRUE(isQuiet());
}

} // namespace

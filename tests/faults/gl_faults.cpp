#include "faults/gl_faults.hpp"

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/vellis.hpp>

#include "operations/operations.hpp"
#include "support/stderr_capture.hpp"

namespace vellis::test {
namespace {

using Positions = VertexAttributeBuffer<glm::vec2>;
using Triangles = drawable::Triangles<VertexAttribute<glm::vec2>>;

std::shared_ptr<Positions> makePositions() {
    return Positions::make({{0.f, 0.f}, {1.f, 0.f}, {0.f, 1.f}}, BufferUsage::Static,
                           BufferAccess::Draw);
}

/// A batch of everything that a canvas makes objects for, on a GL with a viewport.
void drawOnCanvas(FakeGl& gl) {
    gl.setState(GL_VIEWPORT, {0, 0, 64, 64});
    gl.setState(GL_POLYGON_MODE, {GL_FILL, GL_FILL});
    gl.setState(GL_MAX_TEXTURE_SIZE, {4096});
    const auto positions = makePositions();
    const auto canvas = Canvas::make();
    const std::vector<glm::vec2> points = {{0.f, 0.f}, {0.5f, 0.f}, {0.f, 0.5f}};
    gl.forget();
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawLineStrip({glm::vec4(1.f), 4.f}, points);
    canvas->drawTriangles(glm::vec4(1.f), points);
    const auto picture = canvas->endPicture();
    canvas->begin(glm::mat4(1.f));
    canvas->drawPicture(picture);
    canvas->drawLineStrip({glm::vec4(0.5f), 4.f}, points);
    canvas->drawPoints(glm::vec4(1.f), 4.f, points);
    canvas->drawTriangles(glm::vec4(1.f), points);
    canvas->drawLineLoop({glm::vec4(1.f), 4.f}, 0, 3, positions);
    canvas->drawPoints(glm::vec4(1.f), 4.f, 0, 3, positions);
    canvas->end();
}

/// Expects that a canvas draws nothing, and sets up nothing that is the caller's.
void expectEmptyCanvas(FakeGl& gl) {
    drawOnCanvas(gl);
    EXPECT_GT(gl.countOf("glBlendFuncSeparate"), 0u); // it has tried
    for (const char* entryPoint : {"glDrawArrays", "glDrawArraysInstanced", "glDrawElements",
                                   "glVertexAttribPointer", "glEnableVertexAttribArray"})
        EXPECT_EQ(gl.countOf(entryPoint), 0u) << entryPoint;
    gl.forget();
}

/// Expects that a canvas draws its strokes to the caller's framebuffer in place of a mask.
void expectCanvasWithoutMask(FakeGl& gl) {
    drawOnCanvas(gl);
    EXPECT_GT(gl.countOf("glDrawElements"), 0u);
    for (const char* entryPoint : {"glClear", "glBindFramebuffer", "glFramebufferTexture2D",
                                   "glTexImage2D", "glTexParameteri"})
        EXPECT_EQ(gl.countOf(entryPoint), 0u) << entryPoint;
    gl.forget();
}

void expectNoShader(FakeGl&) {
    const auto shader = VertexShader::make("");
    EXPECT_EQ(shader->id(), 0u);
    EXPECT_TRUE(shader->hasCompilationError());
}

void expectNoProgram(FakeGl& gl) {
    gl.setActiveUniforms({{"color", GL_FLOAT_VEC4}});
    auto program = Program::make("", "");
    EXPECT_EQ(program->id(), 0u);
    EXPECT_TRUE(program->hasLinkError());
    EXPECT_FALSE(program->hasUniform("color"));
    program->setUniform("color", glm::vec4(1.f)); // to location -1
    gl.forget();
    program.reset();
    EXPECT_EQ(gl.countOf("glDeleteProgram"), 0u);
    expectEmptyCanvas(gl);
}

void expectNoBuffer(FakeGl& gl) {
    auto buffer = makePositions();
    EXPECT_EQ(buffer->id(), 0u);
    EXPECT_EQ(buffer->count(), 3u);
    EXPECT_EQ(buffer->map(MapAccess::WriteOnly), nullptr);
    gl.forget();
    buffer.reset();
    EXPECT_GL_CALLS(gl);
    expectEmptyCanvas(gl);
}

void expectNoTexture(FakeGl& gl) {
    const float texels[16] = {};
    auto texture = Texture2D<float>::make(4, 4, texels);
    EXPECT_EQ(texture->id(), 0u);
    EXPECT_EQ(texture->extent(), glm::uvec3(0));
    gl.forget();
    texture->upload(texels, 4, 4);
    texture->upload(texels, 1, 1, 2, 2);
    texture->generateMipmap();
    EXPECT_TRUE(texture->download().empty());
    texture.reset();
    EXPECT_GL_CALLS(gl);
    expectCanvasWithoutMask(gl);
}

void expectNoVertexArray(FakeGl& gl) {
    const auto program = Program::make("", "");
    const auto positions = makePositions();
    const auto triangles = Triangles::make(program, {"position", positions});
    gl.forget();
    program->draw(*triangles);
    EXPECT_EQ(gl.takeCalls()[1], "glBindVertexArray(0)");
    expectEmptyCanvas(gl);
}

void expectNoFramebuffer(FakeGl& gl) {
    const auto framebuffer = Framebuffer::make();
    EXPECT_EQ(framebuffer->id(), 0u);
    glBindFramebuffer(GL_FRAMEBUFFER, 7);
    gl.forget();
    framebuffer->bind();
    EXPECT_EQ(gl.takeCalls().back(), "glBindFramebuffer(GL_FRAMEBUFFER, 0)");
    framebuffer->unbind();
    EXPECT_EQ(gl.takeCalls().back(), "glBindFramebuffer(GL_FRAMEBUFFER, 7)");
    expectCanvasWithoutMask(gl);
}

void expectNoRenderbuffer(FakeGl& gl) {
    const auto depth = Renderbuffer<depth16>::make(4, 2);
    EXPECT_EQ(depth->id(), 0u);
    EXPECT_EQ(depth->width(), 4u);
    EXPECT_EQ(gl.takeCalls()[1], "glBindRenderbuffer(GL_RENDERBUFFER, 0)");
}

void expectNoMapping(FakeGl& gl) {
    const auto buffer = makePositions();
    EXPECT_EQ(buffer->map(MapAccess::WriteOnly), nullptr);
    gl.forget();
    buffer->unmap(false);
    EXPECT_EQ(gl.countOf("glUnmapBuffer"), 1u);
    buffer->unmap(false);
    EXPECT_EQ(gl.countOf("glUnmapBuffer"), 1u);
    const glm::vec2 position(5.f, 6.f);
    buffer->load(&position, 1, 1);
    EXPECT_EQ(gl.bufferContents<glm::vec2>(buffer->id())[1], position);
}

void expectNoMemory(FakeGl& gl) {
    const auto error = [] { return std::string(internal::check_glerror()); };
    const auto buffer = makePositions();
    EXPECT_EQ(error(), "GL_OUT_OF_MEMORY");
    EXPECT_EQ(buffer->count(), 3u);
    const auto texture = Texture2D<float>::make(4, 4);
    EXPECT_EQ(error(), "GL_OUT_OF_MEMORY");
    EXPECT_EQ(texture->width(), 4u);
    const auto depth = Renderbuffer<depth16>::make(4, 4);
    EXPECT_EQ(error(), "GL_OUT_OF_MEMORY");
    EXPECT_EQ(depth->width(), 4u);
    gl.runOutOfMemory(false);
    buffer->load({glm::vec2(1.f), glm::vec2(2.f)});
    EXPECT_EQ(gl.bufferContents<glm::vec2>(buffer->id())[1], glm::vec2(2.f));
}

void expectNoStrings(FakeGl& gl) {
    gl.setString(GL_VERSION, "2.1");
    const auto before = glad_glBindBuffer;
    EXPECT_EQ(gladLoadGLLoader(FakeGl::lookUp), 0);
    EXPECT_EQ(glad_glBindBuffer, before);
    EXPECT_EQ(stderrOf(internal::print_gl_extensions), "Corvane: OpenGL extensions: (null)\n");
    EXPECT_EQ(stderrOf(internal::print_gl_info).substr(0, 31), "Corvane: OpenGL vendor: (null)\n");
}

bool extensionStringsFail = false;

void failToGetExtensions(FakeGl& gl, bool fail) {
    extensionStringsFail = fail;
    gl.answer(glad_glGetStringi, [](GLenum, GLuint index) {
        return reinterpret_cast<const GLubyte*>(extensionStringsFail ? nullptr
                                                                     : loadedExtensions[index]);
    });
}

void expectNoExtensions(FakeGl& gl) {
    gl.setString(GL_VERSION, "3.2");
    gl.setState(GL_NUM_EXTENSIONS, {1});
    const auto entryPoint = glad_glGetStringi;
    EXPECT_EQ(gladLoadGLLoader(FakeGl::lookUp), 1);
    EXPECT_EQ(GLAD_GL_EXT_gpu_shader4, 0);
    EXPECT_EQ(glad_glGetStringi, entryPoint);
    failToGetExtensions(gl, false);
    EXPECT_EQ(gladLoadGLLoader(FakeGl::lookUp), 1);
    EXPECT_EQ(GLAD_GL_EXT_gpu_shader4, 1);
}

} // namespace

/// A row for an entry point that makes names.
#define VELLIS_NAME_FAULT(id, entryPoint, effect, expect)                                          \
    {                                                                                              \
        id, "`" #entryPoint "` gives 0", effect,                                                   \
            [](FakeGl& gl, bool on) { gl.failToCreate(glad_##entryPoint, on); }, expect            \
    }

const std::vector<GlFault>& glFaults() {
    static const std::vector<GlFault> faults = {
        VELLIS_NAME_FAULT("NoShader", glCreateShader,
                          "`id()` is 0 and `hasCompilationError()` true.", expectNoShader),
        VELLIS_NAME_FAULT("NoProgram", glCreateProgram,
                          "`id()` is 0, `hasLinkError()` true, and there are no uniforms and "
                          "attributes. Binding it uses no program.",
                          expectNoProgram),
        VELLIS_NAME_FAULT("NoBuffer", glGenBuffers,
                          "`id()` is 0, `count()` what was asked for. GL refuses what is done "
                          "with the buffer, and `map` gives null.",
                          expectNoBuffer),
        VELLIS_NAME_FAULT("NoTexture", glGenTextures,
                          "`id()` and `extent()` are 0. Transfers do nothing; `bind` binds GL's "
                          "texture 0, and the sampler is that one's.",
                          expectNoTexture),
        VELLIS_NAME_FAULT("NoVertexArray", glGenVertexArrays,
                          "The attributes land in GL's vertex array 0, from where the drawable is "
                          "drawn, too: right until the next one lands there.",
                          expectNoVertexArray),
        VELLIS_NAME_FAULT("NoFramebuffer", glGenFramebuffers,
                          "`id()` is 0: the default framebuffer is bound in its place, and GL "
                          "refuses attachments. Ask for `id()` before you draw.",
                          expectNoFramebuffer),
        VELLIS_NAME_FAULT("NoRenderbuffer", glGenRenderbuffers,
                          "`id()` is 0, `width()` and `height()` what was asked for. GL refuses "
                          "the storage.",
                          expectNoRenderbuffer),
        {"NoMapping", "`glMapBufferRange` gives null",
         "`map` gives null, and the contents stay. The buffer counts as mapped: map it again, or "
         "unmap it, for which GL queues an error. `load` works.",
         [](FakeGl& gl, bool on) { gl.failToMap(on); }, expectNoMapping},
        {"NoMemory", "`GL_OUT_OF_MEMORY` where storage is made",
         "The error waits for `internal::check_glerror`. Sizes are what was asked for. Ask for "
         "less with `load`, `upload`, `resize`, or a new renderbuffer.",
         [](FakeGl& gl, bool on) { gl.runOutOfMemory(on); }, expectNoMemory},
        {"NoStrings", "`glGetString` gives null",
         "`engine::init` and the loader's functions fail, and the entry points stay as they were. "
         "Dumps print `(null)`.",
         [](FakeGl& gl, bool on) { gl.failToGetStrings(on); }, expectNoStrings},
        {"NoExtensions", "`glGetStringi` gives null", "The extension counts as missing.",
         failToGetExtensions, expectNoExtensions},
    };
    return faults;
}

#undef VELLIS_NAME_FAULT

} // namespace vellis::test

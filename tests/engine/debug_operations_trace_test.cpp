/// Debug output: what messages say of the library's operations, draws and canvases.

#include <vellis/engine/debug_output.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "engine/debug_output_fixture.hpp"

namespace {

using namespace vellis;
using namespace vellis::internal;
using test::into;
using test::Lines;
using test::makeBuffer;
using Position = VertexAttribute<float>;

class DebugOperationsTrace : public test::DebugOutputTest {};

TEST_F(DebugOperationsTrace, MessagesNameTheOperation) {
    start_debug_output(into(texts));
    complainIn(glad_glBufferData);
    complainIn(glad_glBufferSubData);
    complainIn(glad_glMapBufferRange);
    complainIn(glad_glTexImage2D);
    complainIn(glad_glTexSubImage2D);
    complainIn(glad_glGetTexImage);
    complainIn(glad_glRenderbufferStorage);
    complainIn(glad_glCompileShader);
    complainIn(glad_glLinkProgram);
    complainIn(glad_glReadPixels);
    complainIn(glad_glBlitFramebuffer);
    complainIn(glad_glVertexAttribPointer);
    const auto expect = [&](const char* operation) {
        EXPECT_EQ(texts, Lines{"GL API error (high) in " + std::string(operation) + ": boom"});
        texts.clear();
    };
    const auto buffer = makeBuffer();
    expect("BufferObject::make");
    const float number = 1.f;
    buffer->load(&number, 0, 1);
    expect("BufferObject::load");
    buffer->map(MapAccess::ReadOnly);
    expect("BufferObject::map");
    const auto texture = Texture2D<float>::make(1, 1);
    expect("Texture::upload");
    texture->upload(&number, 0, 0, 1, 1);
    expect("Texture::upload");
    float texel = 0.f;
    texture->download(&texel);
    expect("Texture::download");
    const auto renderbuffer = Renderbuffer<float>::make(1, 1);
    expect("Renderbuffer::make");
    const auto shader = VertexShader::make("");
    expect("Shader::make");
    const auto program = Program::make(shader, nullptr);
    expect("Program::link");
    Framebuffer::download(&texel, 0, 0, 1, 1);
    expect("Framebuffer::download");
    Framebuffer::blit(*texture, *texture, 1, 1);
    expect("Framebuffer::blit");
    drawable::Points<Position>::make(program, Position("x", buffer));
    expect("Drawable::make");
}

TEST_F(DebugOperationsTrace, WithinAnOperationTheInnerOneCountsUntilItEnds) {
    start_debug_output(into(texts));
    complainIn(glad_glBufferSubData);
    const auto canvas = Canvas::make();
    gl.setState(GL_VIEWPORT, {0, 0, 64, 64});
    complainIn(glad_glCompileShader);
    complainIn(glad_glLinkProgram);
    canvas->begin(glm::mat4(1.f));
    canvas->drawTriangles(glm::vec4(1.f), std::vector<glm::vec2>(3));
    canvas->end();
    EXPECT_EQ(texts, (Lines{"GL API error (high) in Canvas::flush: boom",
                            "GL API error (high) in Shader::make: boom",
                            "GL API error (high) in Shader::make: boom",
                            "GL API error (high) in Canvas::flush: boom"}));
    texts.clear();
    gl.sendMessage("boom");
    EXPECT_EQ(texts, Lines{"GL API error (high): boom"});
}

TEST_F(DebugOperationsTrace, WithinAnOperationNoProgramIsNamed) {
    std::string operation;
    DebugOutputSettings settings;
    settings.callback = [&](const DebugMessage& message) {
        operation = message.operation;
        texts.emplace_back(message.program);
    };
    start_debug_output(settings);
    Program::make()->bind();
    complainIn(glad_glBufferData);
    makeBuffer();
    EXPECT_EQ(operation, "BufferObject::make");
    EXPECT_EQ(texts, Lines{""});
}

TEST_F(DebugOperationsTrace, AnExceptionEndsAnOperation) {
    start_debug_output(into(texts));
    gl.answer(glad_glBufferData, [](GLenum, GLsizeiptr, const void*, GLenum) {
        throw std::runtime_error("from a layer");
    });
    EXPECT_THROW(makeBuffer(), std::runtime_error);
    gl.sendMessage("boom");
    EXPECT_EQ(texts, Lines{"GL API error (high): boom"});
}

TEST_F(DebugOperationsTrace, DrawsGoByTheirProgramWithTheSameCalls) {
    const auto program = Program::make();
    const auto other = Program::make();
    const auto points = drawable::Points<Position>::make(program, Position("x", makeBuffer()));
    const auto draw = [&] {
        program->draw(*points);
        program->bind(points->getAttributesBinding());
        EXPECT_TRUE(program->isBound());
        points->draw(0, 1);
        program->unbind();
        EXPECT_FALSE(program->isBound());
    };
    gl.forget();
    draw();
    const Lines calls = gl.takeCalls();
    start_debug_output(into(texts));
    gl.forget();
    draw();
    EXPECT_EQ(gl.takeCalls(), calls);

    label(program, "water");
    complainIn(glad_glDrawArrays);
    program->draw(*points);
    other->draw(*points);
    other->bind();
    glDrawArrays(GL_POINTS, 0, 1);
    other->unbind();
    EXPECT_EQ(texts, (Lines{"GL API error (high), program 1 'water': boom",
                            "GL API error (high), program 2: boom",
                            "GL API error (high), program 2: boom"}));
    stop_debug_output();
    gl.forget();
    draw();
    EXPECT_EQ(gl.takeCalls(), calls);
}

TEST_F(DebugOperationsTrace, CanvasesDrawInGroupsOnlyWhereSomebodyLooks) {
    const auto canvas = Canvas::make();
    gl.setState(GL_VIEWPORT, {0, 0, 64, 64});
    const auto draw = [&] {
        canvas->begin(glm::mat4(1.f));
        canvas->drawTriangles(glm::vec4(1.f), std::vector<glm::vec2>(3));
        canvas->end();
    };
    draw();
    gl.forget();
    draw();
    const Lines calls = gl.takeCalls();
    const auto grouped = [&](const std::string& name, std::size_t length) {
        Lines lines = calls;
        lines.insert(lines.begin(), "glPushDebugGroup(GL_DEBUG_SOURCE_APPLICATION, 0, " +
                                        std::to_string(length) + ", \"" + name + "\")");
        lines.push_back("glPopDebugGroup()");
        return lines;
    };
    label(canvas, "overlay");
    draw();
    EXPECT_EQ(gl.takeCalls(), calls) << "GL has no label";
    label(canvas, nullptr);

    start_debug_output(into(texts));
    complainIn(glad_glDrawElements);
    gl.forget();
    draw();
    EXPECT_EQ(gl.takeCalls(), grouped("vellis canvas", 13));
    EXPECT_EQ(texts, Lines{"GL API error (high) in Canvas::flush: boom"});
    stop_debug_output();

    const auto buffer = makeBuffer();
    label(buffer, "a");
    label(canvas, "overlay");
    EXPECT_EQ(label_of(canvas), "overlay");
    gl.forget();
    draw();
    EXPECT_EQ(gl.takeCalls(), grouped("overlay", 7));
    label(buffer, nullptr);
    gl.forget();
    draw();
    EXPECT_EQ(gl.takeCalls(), calls);
}

TEST_F(DebugOperationsTrace, PicturesAreDrawnInGroupsToo) {
    const auto canvas = Canvas::make();
    gl.setState(GL_VIEWPORT, {0, 0, 64, 64});
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawTriangles(glm::vec4(1.f), std::vector<glm::vec2>(3));
    const auto picture = canvas->endPicture();
    start_debug_output(into(texts));
    complainIn(glad_glDrawElements);
    canvas->begin(glm::mat4(1.f));
    gl.forget();
    canvas->drawPicture(picture);
    const Lines calls = gl.takeCalls();
    EXPECT_EQ(calls.front(),
              "glPushDebugGroup(GL_DEBUG_SOURCE_APPLICATION, 0, 13, \"vellis canvas\")");
    EXPECT_EQ(calls.back(), "glPopDebugGroup()");
    EXPECT_EQ(texts, Lines{"GL API error (high) in Canvas::drawPicture: boom"});
}

} // namespace

// needs: a program of its own

/// Debug output: what it sets in GL and puts back, and what becomes of messages.

#include <vellis/engine/debug_output.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "engine/debug_output_fixture.hpp"
#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using namespace vellis::internal;
using test::FakeContext;
using test::FakeGl;
using test::Floats;
using test::into;
using test::Lines;
using test::makeBuffer;
using test::stderrOf;

void GLAD_API_PTR hostCallback(GLenum, GLenum, GLuint, GLenum, GLsizei, const GLchar*,
                               const void*) {}

class DebugOutputTrace : public test::DebugOutputTest {};

// --- Start and stop ---

TEST_F(DebugOutputTrace, StartAndStopPutBackWhatTheHostHasSet) {
    int host = 0;
    glDebugMessageCallback(hostCallback, &host);
    gl.forget();
    EXPECT_TRUE(start_debug_output());
    EXPECT_GL_CALLS(gl, "glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, out)",
                    "glGetPointerv(GL_DEBUG_CALLBACK_USER_PARAM, out)",
                    "glIsEnabled(GL_DEBUG_OUTPUT)", "glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS)",
                    "glDebugMessageCallback(function, data)", "glEnable(GL_DEBUG_OUTPUT)",
                    "glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS)");
    stop_debug_output();
    EXPECT_GL_CALLS(gl, "glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, out)",
                    "glDebugMessageCallback(function, data)",
                    "glDisable(GL_DEBUG_OUTPUT_SYNCHRONOUS)", "glDisable(GL_DEBUG_OUTPUT)");
    void* pointer = nullptr;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &pointer);
    EXPECT_EQ(pointer, reinterpret_cast<void*>(hostCallback));
    glGetPointerv(GL_DEBUG_CALLBACK_USER_PARAM, &pointer);
    EXPECT_EQ(pointer, &host);
    gl.forget();
    stop_debug_output();
    EXPECT_GL_CALLS(gl);
}

TEST_F(DebugOutputTrace, WhatWasOnBeforeStaysOn) {
    gl.setState(GL_DEBUG_OUTPUT, {1});
    gl.setState(GL_DEBUG_OUTPUT_SYNCHRONOUS, {1});
    start_debug_output();
    gl.forget();
    stop_debug_output();
    EXPECT_GL_CALLS(gl, "glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, out)",
                    "glDebugMessageCallback(null, null)");
}

TEST_F(DebugOutputTrace, ACallbackThatTheHostHasSetMeanwhileStays) {
    start_debug_output();
    glDebugMessageCallback(hostCallback, nullptr);
    gl.forget();
    stop_debug_output();
    EXPECT_GL_CALLS(gl, "glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, out)");
}

TEST_F(DebugOutputTrace, TheOlderExtensionHasNoSwitch) {
    gl.remove(glad_glDebugMessageCallback);
    gl.remove(glad_glDebugMessageControl);
    DebugOutputSettings settings;
    settings.least = DebugSeverity::Low;
    EXPECT_TRUE(start_debug_output(settings));
    EXPECT_GL_CALLS(
        gl, "glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, out)",
        "glGetPointerv(GL_DEBUG_CALLBACK_USER_PARAM, out)",
        "glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS)", "glDebugMessageCallbackARB(function, data)",
        "glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS)",
        "glDebugMessageControlARB(GL_DONT_CARE, GL_DONT_CARE, GL_DEBUG_SEVERITY_LOW, 0, "
        "null, GL_TRUE)");
    stop_debug_output();
    EXPECT_GL_CALLS(
        gl, "glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, out)",
        "glDebugMessageControlARB(GL_DONT_CARE, GL_DONT_CARE, GL_DEBUG_SEVERITY_LOW, 0, "
        "null, GL_FALSE)",
        "glDebugMessageCallbackARB(null, null)", "glDisable(GL_DEBUG_OUTPUT_SYNCHRONOUS)");
}

TEST_F(DebugOutputTrace, AContextWithoutEitherHasNone) {
    gl.remove(glad_glDebugMessageCallback);
    gl.remove(glad_glDebugMessageCallbackARB);
    EXPECT_FALSE(start_debug_output());
    stop_debug_output();
    EXPECT_GL_CALLS(gl);
}

TEST_F(DebugOutputTrace, ASecondStartBeginsAnew) {
    Lines first;
    start_debug_output(into(first));
    start_debug_output(into(texts));
    gl.sendMessage("boom");
    EXPECT_EQ(first, Lines());
    EXPECT_EQ(texts, Lines{"GL API error (high): boom"});
    stop_debug_output();
    gl.sendMessage("boom");
    EXPECT_EQ(texts.size(), 1u);
    void* pointer = &first;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &pointer);
    EXPECT_EQ(pointer, nullptr);
}

// --- What is shown ---

TEST_F(DebugOutputTrace, TheLogHasSourceTypeSeverityAndText) {
    start_debug_output();
    EXPECT_EQ(stderrOf([&] {
                  gl.sendMessage("GL_INVALID_ENUM in glEnable\n");
                  gl.sendMessage("slow", GL_DEBUG_SEVERITY_MEDIUM, GL_DEBUG_SOURCE_SHADER_COMPILER,
                                 GL_DEBUG_TYPE_PERFORMANCE);
                  gl.sendMessage("100%s", GL_DEBUG_SEVERITY_HIGH, 1, 2);
              }),
              "Corvane: GL API error (high): GL_INVALID_ENUM in glEnable\n"
              "Corvane: GL shader compiler performance (medium): slow\n"
              "Corvane: GL other other (high): 100%s\n");
}

TEST_F(DebugOutputTrace, WhatIsLessBadIsLeftOut) {
    const GLenum severities[] = {GL_DEBUG_SEVERITY_HIGH, GL_DEBUG_SEVERITY_MEDIUM,
                                 GL_DEBUG_SEVERITY_LOW, GL_DEBUG_SEVERITY_NOTIFICATION};
    const DebugSeverity least[] = {DebugSeverity::High, DebugSeverity::Medium, DebugSeverity::Low,
                                   DebugSeverity::Notification};
    for (std::size_t i = 0; i < 4; ++i) {
        texts.clear();
        DebugOutputSettings settings = into(texts);
        settings.least = least[i];
        start_debug_output(settings);
        for (const GLenum severity : severities)
            gl.sendMessage("text", severity);
        EXPECT_EQ(texts.size(), i + 1);
        EXPECT_EQ(gl.countOf("glDebugMessageControl"), i < 2 ? 0u : 1u);
        stop_debug_output();
        gl.forget();
    }
}

TEST_F(DebugOutputTrace, RepeatsAreShownOnceUnlessAskedFor) {
    EXPECT_FALSE(DebugOutputSettings().showsRepeats);
    DebugOutputSettings settings = into(texts);
    settings.showsRepeats = false;
    start_debug_output(settings);
    for (int i = 0; i < 3; ++i) {
        gl.sendMessage("a");
        gl.sendMessage("b");
        gl.sendMessage("a", GL_DEBUG_SEVERITY_HIGH, GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 2);
        gl.sendMessage("a", GL_DEBUG_SEVERITY_HIGH, GL_DEBUG_SOURCE_OTHER);
        gl.sendMessage("a", GL_DEBUG_SEVERITY_HIGH, GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_OTHER);
    }
    EXPECT_EQ(texts.size(), 5u);
    for (int i = 0; i < 255; ++i)
        gl.sendMessage(std::to_string(i));
    texts.clear();
    gl.sendMessage("254");
    EXPECT_EQ(texts.size(), 0u);
    gl.sendMessage("a");
    EXPECT_EQ(texts.size(), 1u) << "the memory ends after 256 others";
    start_debug_output(into(texts));
    texts.clear();
    gl.sendMessage("a");
    gl.sendMessage("a");
    EXPECT_EQ(texts.size(), 2u);
}

TEST_F(DebugOutputTrace, AFilterChooses) {
    DebugOutputSettings settings = into(texts);
    settings.filter = [](const DebugMessage& message) { return message.id != 131; };
    start_debug_output(settings);
    gl.sendMessage("a", GL_DEBUG_SEVERITY_HIGH, GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 131);
    gl.sendMessage("b", GL_DEBUG_SEVERITY_HIGH, GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 132);
    EXPECT_EQ(texts, Lines{"GL API error (high): b"});
}

TEST_F(DebugOutputTrace, ANullTextAndOneWithItsNulAreTexts) {
    start_debug_output(into(texts));
    GLDEBUGPROC callback = nullptr;
    void* parameter = nullptr;
    void* function = nullptr;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &function);
    glGetPointerv(GL_DEBUG_CALLBACK_USER_PARAM, &parameter);
    callback = reinterpret_cast<GLDEBUGPROC>(function);
    callback(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, 0, -1, "whole", parameter);
    callback(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, 0, 6, "whole", parameter);
    callback(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, 0, 5, nullptr, parameter);
    EXPECT_EQ(texts, (Lines{"GL API error (other): whole", "GL API error (other): whole",
                            "GL API error (other): "}));
}

// --- Callbacks that do what they should not ---

TEST_F(DebugOutputTrace, WhatACallbackThrowsIsCaught) {
    DebugOutputSettings settings = into(texts);
    settings.callback = [&](const DebugMessage&) {
        texts.emplace_back("called");
        throw std::runtime_error("from a callback");
    };
    start_debug_output(settings);
    gl.sendMessage("a");
    gl.sendMessage("b");
    EXPECT_EQ(texts.size(), 2u);
    const auto buffer = makeBuffer();
    EXPECT_TRUE(buffer->exists());
    settings.filter = [](const DebugMessage&) -> bool { throw 1; };
    start_debug_output(settings);
    gl.sendMessage("c");
    EXPECT_EQ(texts.size(), 2u);
}

TEST_F(DebugOutputTrace, NothingExistsInACallbackAndUseIsNoted) {
    auto buffer = makeBuffer();
    const auto texture = Texture2D<float>::make(1, 1);
    DebugOutputSettings settings;
    settings.callback = [&](const DebugMessage&) {
        EXPECT_FALSE(buffer->exists());
        EXPECT_FALSE(label(texture, "a"));
        EXPECT_FALSE(start_debug_output());
        stop_debug_output();
        texture->download(nullptr);
        gl.sendMessage("within");
        buffer.reset();
        texts.emplace_back("called");
    };
    start_debug_output(settings);
    gl.forget();
    EXPECT_EQ(stderrOf([&] { gl.sendMessage("a"); }),
              "Corvane: a callback of debug output must not use a texture\n");
    EXPECT_EQ(texts.size(), 1u);
    EXPECT_GL_CALLS(gl);
    EXPECT_TRUE(texture->id() != 0) << "it is there again";
    EXPECT_EQ(check_context(), nullptr);
    buffer = makeBuffer();
    stderrOf([&] { gl.sendMessage("b"); });
    EXPECT_EQ(texts.size(), 2u) << "stopping did nothing";
    gl.forget();
    Context::useProcess(); // where what has ended in callbacks is deleted
    EXPECT_GL_CALLS(gl, "glDeleteBuffers(2, {1, 3})");
}

TEST_F(DebugOutputTrace, WhatWasRefusedBeforeACallbackIsStillKnown) {
    start_debug_output(into(texts));
    FakeContext foreign;
    foreign.makeCurrent();
    const auto context = Context::make(FakeGl::lookUp);
    const auto buffer = makeBuffer();
    gl.makeCurrent();
    Context::useProcess();
    buffer->bind();
    gl.sendMessage("a");
    EXPECT_EQ(texts.size(), 1u);
    EXPECT_STREQ(check_context(), "buffer");
    context->abandon();
    foreign.ignoreTheRest();
}

// --- Several contexts ---

TEST_F(DebugOutputTrace, EachContextHasItsOwn) {
    Lines ofSecond;
    FakeContext first;
    FakeContext second;
    first.makeCurrent();
    const auto one = Context::make(FakeGl::lookUp);
    start_debug_output(into(texts));
    const auto program = Program::make();
    second.makeCurrent();
    const auto other = Context::make(FakeGl::lookUp);
    start_debug_output(into(ofSecond));
    second.sendMessage("to the second");
    EXPECT_EQ(ofSecond, Lines{"GL API error (high): to the second"});
    EXPECT_EQ(texts, Lines());
    first.makeCurrent();
    one->use();
    program->bind();
    first.sendMessage("to the first");
    EXPECT_EQ(texts, Lines{"GL API error (high), program 100001: to the first"});
    program->unbind();
    second.makeCurrent();
    other->use();
    second.sendMessage("again");
    EXPECT_EQ(ofSecond.back(), "GL API error (high): again") << "programs are each its own";

    second.forget();
    other->dispose();
    EXPECT_EQ(second.countOf("glDebugMessageCallback"), 1u);
    second.sendMessage("dropped");
    EXPECT_EQ(ofSecond.size(), 2u);
    first.forget();
    first.makeCurrent();
    one->use();
    one->abandon();
    EXPECT_GL_CALLS(first);
    first.sendMessage("dropped");
    EXPECT_EQ(texts.size(), 1u);
    first.ignoreTheRest();
    second.ignoreTheRest();
    gl.makeCurrent();
}

TEST_F(DebugOutputTrace, TheProcessHasItsOwnBesideThoseOfContexts) {
    start_debug_output(into(texts));
    const auto program = Program::make();
    program->bind();
    program->unbind();
    FakeContext foreign;
    foreign.makeCurrent();
    const auto context = Context::make(FakeGl::lookUp);
    foreign.forget();
    stop_debug_output();
    EXPECT_GL_CALLS(foreign);
    context->abandon();
    Context::useProcess();
    gl.makeCurrent();
    gl.sendMessage("a");
    program->bind();
    gl.sendMessage("b");
    program->unbind();
    EXPECT_EQ(texts, (Lines{"GL API error (high): a", "GL API error (high), program 1: b"}));
    foreign.ignoreTheRest();
}

TEST_F(DebugOutputTrace, EngineDisposeEndsThatOfTheContextInUse) {
    FakeContext context;
    context.makeCurrent();
    const auto own = Context::make(FakeGl::lookUp);
    start_debug_output(into(texts));
    engine::dispose();
    context.sendMessage("dropped");
    EXPECT_EQ(texts, Lines());
    context.ignoreTheRest();
    gl.makeCurrent();
}

} // namespace

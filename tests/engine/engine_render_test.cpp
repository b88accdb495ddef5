#include <vellis/engine.hpp>

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <vellis/buffers.hpp>
#include <vellis/gl.hpp>

#include "support/render_test.hpp"

namespace {

/// Every entry point that the library itself calls.
#define LIBRARY_ENTRY_POINTS(X)                                                                    \
    X(glGenBuffers)                                                                                \
    X(glDeleteBuffers)                                                                             \
    X(glBindBuffer)                                                                                \
    X(glBufferData)                                                                                \
    X(glBufferSubData)                                                                             \
    X(glMapBufferRange)                                                                            \
    X(glFlushMappedBufferRange)                                                                    \
    X(glUnmapBuffer)                                                                               \
    X(glGenVertexArrays)                                                                           \
    X(glDeleteVertexArrays)                                                                        \
    X(glBindVertexArray)                                                                           \
    X(glEnableVertexAttribArray)                                                                   \
    X(glVertexAttribPointer)                                                                       \
    X(glDrawArrays)                                                                                \
    X(glDrawElements)                                                                              \
    X(glCreateShader)                                                                              \
    X(glDeleteShader)                                                                              \
    X(glShaderSource)                                                                              \
    X(glCompileShader)                                                                             \
    X(glGetShaderiv)                                                                               \
    X(glGetShaderInfoLog)                                                                          \
    X(glGetShaderSource)                                                                           \
    X(glCreateProgram)                                                                             \
    X(glDeleteProgram)                                                                             \
    X(glAttachShader)                                                                              \
    X(glGetAttachedShaders)                                                                        \
    X(glLinkProgram)                                                                               \
    X(glGetProgramiv)                                                                              \
    X(glGetProgramInfoLog)                                                                         \
    X(glUseProgram)                                                                                \
    X(glGetActiveAttrib)                                                                           \
    X(glGetActiveUniform)                                                                          \
    X(glGetAttribLocation)                                                                         \
    X(glGetUniformLocation)                                                                        \
    X(glUniform1i)                                                                                 \
    X(glUniform1f)                                                                                 \
    X(glUniform2fv)                                                                                \
    X(glUniform4fv)                                                                                \
    X(glUniformMatrix4fv)                                                                          \
    X(glGenTextures)                                                                               \
    X(glDeleteTextures)                                                                            \
    X(glBindTexture)                                                                               \
    X(glActiveTexture)                                                                             \
    X(glTexParameteri)                                                                             \
    X(glTexImage1D)                                                                                \
    X(glTexImage2D)                                                                                \
    X(glTexImage3D)                                                                                \
    X(glTexSubImage1D)                                                                             \
    X(glTexSubImage2D)                                                                             \
    X(glTexSubImage3D)                                                                             \
    X(glGetTexImage)                                                                               \
    X(glGenerateMipmap)                                                                            \
    X(glPixelStorei)                                                                               \
    X(glGenFramebuffers)                                                                           \
    X(glDeleteFramebuffers)                                                                        \
    X(glBindFramebuffer)                                                                           \
    X(glFramebufferTexture2D)                                                                      \
    X(glFramebufferRenderbuffer)                                                                   \
    X(glCheckFramebufferStatus)                                                                    \
    X(glBlitFramebuffer)                                                                           \
    X(glGenRenderbuffers)                                                                          \
    X(glDeleteRenderbuffers)                                                                       \
    X(glBindRenderbuffer)                                                                          \
    X(glRenderbufferStorage)                                                                       \
    X(glRenderbufferStorageMultisample)                                                            \
    X(glDrawBuffer)                                                                                \
    X(glDrawBuffers)                                                                               \
    X(glReadBuffer)                                                                                \
    X(glReadPixels)                                                                                \
    X(glEnable)                                                                                    \
    X(glDisable)                                                                                   \
    X(glClear)                                                                                     \
    X(glClearColor)                                                                                \
    X(glClearDepth)                                                                                \
    X(glClearStencil)                                                                              \
    X(glColorMask)                                                                                 \
    X(glDepthMask)                                                                                 \
    X(glDepthFunc)                                                                                 \
    X(glDepthRange)                                                                                \
    X(glStencilFunc)                                                                               \
    X(glStencilFuncSeparate)                                                                       \
    X(glStencilOp)                                                                                 \
    X(glStencilOpSeparate)                                                                         \
    X(glStencilMask)                                                                               \
    X(glBlendFuncSeparate)                                                                         \
    X(glBlendEquation)                                                                             \
    X(glBlendEquationSeparate)                                                                     \
    X(glLogicOp)                                                                                   \
    X(glScissor)                                                                                   \
    X(glViewport)                                                                                  \
    X(glCullFace)                                                                                  \
    X(glPolygonMode)                                                                               \
    X(glLineWidth)                                                                                 \
    X(glPointSize)                                                                                 \
    X(glHint)                                                                                      \
    X(glGetError)                                                                                  \
    X(glGetString)                                                                                 \
    X(glGetBooleanv)                                                                               \
    X(glGetIntegerv)                                                                               \
    X(glGetFloatv)                                                                                 \
    X(glGetDoublev)

class EngineRender : public RenderTest {};

TEST_F(EngineRender, InitLoadsEveryEntryPointThatTheLibraryCalls) {
    SKIP_WITHOUT(Extension::VertexArrays);
    SKIP_WITHOUT(Extension::Framebuffers);
    SKIP_WITHOUT(Extension::MappedRanges);
#define EXPECT_LOADED(name) EXPECT_NE(glad_##name, nullptr) << #name;
    LIBRARY_ENTRY_POINTS(EXPECT_LOADED)
#undef EXPECT_LOADED
}

TEST_F(EngineRender, InitLoadsTheWholeOfGl21) {
    EXPECT_EQ(GLAD_GL_VERSION_2_1, 1);
    EXPECT_NE(glad_glBegin, nullptr);               // 1.0
    EXPECT_NE(glad_glDrawElements, nullptr);        // 1.1
    EXPECT_NE(glad_glDrawRangeElements, nullptr);   // 1.2
    EXPECT_NE(glad_glSampleCoverage, nullptr);      // 1.3
    EXPECT_NE(glad_glMultiDrawArrays, nullptr);     // 1.4
    EXPECT_NE(glad_glBeginQuery, nullptr);          // 1.5
    EXPECT_NE(glad_glStencilMaskSeparate, nullptr); // 2.0
    EXPECT_NE(glad_glUniformMatrix4x3fv, nullptr);  // 2.1
}

TEST_F(EngineRender, VersionIsTheContexts) {
    const std::string version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    const std::string loaded =
        std::to_string(GLVersion.major) + "." + std::to_string(GLVersion.minor);
    EXPECT_EQ(version.substr(0, loaded.size()), loaded);
}

TEST_F(EngineRender, SecondInitReloadsEveryPointer) {
    if (renderSettings(size, size).platform == offscreen::Platform::OsMesa)
        GTEST_SKIP() << "contexts of OSMesa are loaded through gladLoadGLLoader";
    glad_glBindBuffer = nullptr;
    glad_glDrawArrays = nullptr;
    EXPECT_TRUE(vellis::engine::init());
    EXPECT_NE(glad_glBindBuffer, nullptr);
    EXPECT_NE(glad_glDrawArrays, nullptr);
    EXPECT_EQ(gladLoadGL(), 1);
}

TEST_F(EngineRender, DisposeDeletesTheRegisteredBuffersInGl) {
    using Bytes = vellis::VertexAttributeBuffer<unsigned char>;
    auto buffer = Bytes::make(4, vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    const unsigned int name = buffer->id();
    vellis::BufferObjectManager::instance().add(buffer);
    buffer.reset();
    EXPECT_TRUE(glIsBuffer(name));
    vellis::engine::dispose();
    EXPECT_FALSE(glIsBuffer(name));
    vellis::engine::dispose();
}

TEST_F(EngineRender, LibraryWorksAgainAfterDispose) {
    vellis::engine::dispose();
    const auto buffer = vellis::VertexAttributeBuffer<float>::make(
        {1.f, 2.f}, vellis::BufferUsage::Static, vellis::BufferAccess::Draw);
    EXPECT_TRUE(glIsBuffer(buffer->id()));
}

} // namespace

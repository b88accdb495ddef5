/// Debug output and labels on a driver.

#include <vellis/engine/debug_output.hpp>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include <glm/mat4x4.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/render_test.hpp"
#include "support/scene.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using namespace vellis::internal;
using test::stderrOf;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// What textures of OpenGL 2.1 have, too.
using Color = glm::vec<4, unsigned char>;

/// The entry point of that name, which the library does not load; or null.
void* findEntryPoint(const char* name) {
#ifndef _WIN32
    // The platform's library is loaded, those of others mostly are not.
    for (const auto& [library, lookup] : {std::pair("libOSMesa.so.8", "OSMesaGetProcAddress"),
                                          std::pair("libEGL.so.1", "eglGetProcAddress"),
                                          std::pair("libGLX.so.0", "glXGetProcAddressARB")}) {
        void* const handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
        const auto find = handle != nullptr
                              ? reinterpret_cast<void* (*)(const char*)>(dlsym(handle, lookup))
                              : nullptr;
        if (void* const entryPoint = find != nullptr ? find(name) : nullptr)
            return entryPoint;
    }
#endif
    static_cast<void>(name);
    return nullptr;
}

/// What a message was, with texts of its own.
struct Kept {
    explicit Kept(const DebugMessage& message)
        : type(message.type),
          severity(message.severity),
          text(text_of(message)),
          operation(message.operation != nullptr ? message.operation : ""),
          program(message.program) {}

    DebugType type;
    DebugSeverity severity;
    std::string text;
    std::string operation;
    std::string program;
};

class DebugOutputRender : public RenderTest {
protected:
    void SetUp() override {
        RenderTest::SetUp();
        if (goesOn() && glDebugMessageCallback == nullptr)
            GTEST_SKIP() << "the context lacks GL_KHR_debug";
        getObjectLabel = reinterpret_cast<GetObjectLabel>(findEntryPoint("glGetObjectLabel"));
    }

    void TearDown() override {
        stop_debug_output();
        dropErrors();
        RenderTest::TearDown();
    }

    /// Takes the errors that a test has made on purpose from GL's queue.
    static void dropErrors() {
        while (glGetError() != GL_NO_ERROR) {
        }
    }

    /// Starts debug output into `kept`, of what GL calls an error.
    void start() {
        DebugOutputSettings settings;
        settings.filter = [](const DebugMessage& message) {
            return message.type == DebugType::Error;
        };
        settings.callback = [this](const DebugMessage& message) { kept.emplace_back(message); };
        ASSERT_TRUE(start_debug_output(settings));
    }

    using GetObjectLabel = void(GLAD_API_PTR*)(GLenum, GLuint, GLsizei, GLsizei*, GLchar*);

    /// The label that GL has of a name.
    std::string labelInGl(GLenum identifier, GLuint name) const {
        char text[1024] = {};
        if (getObjectLabel != nullptr)
            getObjectLabel(identifier, name, sizeof(text), nullptr, text);
        return text;
    }

    GetObjectLabel getObjectLabel = nullptr;

    std::vector<Kept> kept;
};

TEST_F(DebugOutputRender, AnErrorWithinATransferNamesIt) {
    start();
    const auto texture = Texture2D<Color>::make(1, 1);
    const Color texel(0);
    texture->upload(&texel, 1, 1, 1, 1); // beyond the texture
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].operation, "Texture::upload");
    EXPECT_EQ(kept[0].severity, DebugSeverity::High);
    EXPECT_THAT(kept[0].text, AllOf(StartsWith("GL API error (high) in Texture::upload: "),
                                    HasSubstr("GL_INVALID_VALUE")));
    EXPECT_STREQ(check_glerror(), "GL_INVALID_VALUE") << "GL's queue has it as well";
}

TEST_F(DebugOutputRender, AnErrorWithinAMakeNamesIt) {
    start();
    VertexAttributeBuffer<float>::make(1, static_cast<BufferUsage>(7), BufferAccess::Draw);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].operation, "BufferObject::make");
    EXPECT_THAT(kept[0].text, HasSubstr("GL_INVALID_ENUM"));
}

TEST_F(DebugOutputRender, AnErrorWithinADrawNamesTheProgram) {
    const test::SharedParts shared(test::red);
    const test::OwnParts own(shared);
    label(shared.program, "water");
    start();
    shared.program->draw(*own.square);
    EXPECT_EQ(kept.size(), 0u);
    shared.program->bind(own.square->getAttributesBinding());
    glDrawArrays(0xFFFF, 0, 3);
    shared.program->unbind();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].operation, "");
    EXPECT_EQ(kept[0].program, std::to_string(shared.program->id()) + " 'water'");
    EXPECT_THAT(kept[0].text, HasSubstr("program " + kept[0].program));
}

TEST_F(DebugOutputRender, TheLogHasOneLineForRepeats) {
    start_debug_output();
    const std::string text = stderrOf([] {
        for (int i = 0; i < 3; ++i)
            glEnable(0xFFFF);
    });
    EXPECT_THAT(text,
                AllOf(StartsWith("Corvane: GL API error (high): "), HasSubstr("GL_INVALID_ENUM")));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
}

TEST_F(DebugOutputRender, ACallbackMayThrow) {
    DebugOutputSettings settings;
    int numCalls = 0;
    settings.callback = [&](const DebugMessage&) {
        ++numCalls;
        throw 1;
    };
    start_debug_output(settings);
    glEnable(0xFFFF);
    glDisable(0xFFFF);
    EXPECT_EQ(numCalls, 2);
}

void GLAD_API_PTR hostCallback(GLenum, GLenum, GLuint, GLenum, GLsizei, const GLchar*,
                               const void* parameter) {
    ++*static_cast<int*>(const_cast<void*>(parameter));
}

TEST_F(DebugOutputRender, TheHostsCallbackIsPutBack) {
    int numHosts = 0;
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    glDebugMessageCallback(hostCallback, &numHosts);
    void* told = nullptr;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &told);
    if (told != reinterpret_cast<void*>(hostCallback))
        GTEST_SKIP() << "the driver does not tell which function it calls"; // Wine's
    start();
    glEnable(0xFFFF);
    EXPECT_EQ(numHosts, 0);
    EXPECT_EQ(kept.size(), 1u);
    stop_debug_output();
    glEnable(0xFFFF);
    EXPECT_EQ(numHosts, 1);
    EXPECT_EQ(kept.size(), 1u);
    EXPECT_EQ(glIsEnabled(GL_DEBUG_OUTPUT), GL_TRUE);
    EXPECT_EQ(glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS), GL_TRUE);
    glDebugMessageCallback(nullptr, nullptr);
    glDisable(GL_DEBUG_OUTPUT);
    glDisable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    start();
    stop_debug_output();
    EXPECT_EQ(glIsEnabled(GL_DEBUG_OUTPUT), GL_FALSE);
    EXPECT_EQ(glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS), GL_FALSE);
}

TEST_F(DebugOutputRender, AnAbandonedContextDropsItsMessages) {
    const auto context = Context::make();
    if (context == nullptr)
        GTEST_SKIP() << "the library does not know the platform's lookup";
    start();
    glEnable(0xFFFF);
    EXPECT_EQ(kept.size(), 1u);
    context->abandon(); // while the GL context is there all the same
    glDisable(0xFFFF);
    EXPECT_EQ(kept.size(), 1u);
    glDebugMessageCallback(nullptr, nullptr);
}

TEST_F(DebugOutputRender, CanvasesDrawInGroups) {
    std::vector<std::string> groups;
    DebugOutputSettings settings;
    settings.least = DebugSeverity::Notification;
    settings.showsRepeats = true;
    settings.callback = [&](const DebugMessage& message) {
        if (message.type == DebugType::PushGroup || message.type == DebugType::PopGroup)
            groups.emplace_back(message.text);
    };
    start_debug_output(settings);
    const auto canvas = Canvas::make();
    const auto draw = [&] {
        canvas->begin(glm::mat4(1.f));
        canvas->drawTriangles(glm::vec4(1.f), std::vector<glm::vec2>(3));
        canvas->end();
    };
    draw();
    label(canvas, "overlay");
    draw();
    EXPECT_THAT(groups, ElementsAre("vellis canvas", "vellis canvas", "overlay", "overlay"));
    EXPECT_EQ(check_glerror(), nullptr);
}

TEST_F(DebugOutputRender, GlHasTheLabels) {
    if (glGenVertexArrays == nullptr || glGenFramebuffers == nullptr)
        GTEST_SKIP() << "the context has no vertex array objects or no framebuffer objects";
    if (getObjectLabel == nullptr)
        GTEST_SKIP() << "nobody can ask GL for labels here";
    const test::SharedParts shared(test::red);
    const test::OwnParts own(shared);
    const auto framebuffer = Framebuffer::make(); // which GL has not yet
    const auto another = Framebuffer::make();
    label(shared.corners, "corners");
    label(shared.texture, "noise");
    label(shared.depth, "depth");
    label(shared.shader, "shader");
    label(shared.program, "water");
    label(own.square, "square");
    label(framebuffer, "mirror");
    label(another, "lake");
    EXPECT_EQ(labelInGl(GL_BUFFER, shared.corners->id()), "corners");
    EXPECT_EQ(labelInGl(GL_TEXTURE, shared.texture->id()), "noise");
    EXPECT_EQ(labelInGl(GL_RENDERBUFFER, shared.depth->id()), "depth");
    EXPECT_EQ(labelInGl(GL_SHADER, shared.shader->id()), "shader");
    EXPECT_EQ(labelInGl(GL_PROGRAM, shared.program->id()), "water");
    EXPECT_EQ(labelInGl(GL_VERTEX_ARRAY, own.square->getAttributesBinding()->id()), "square");
    EXPECT_EQ(labelInGl(GL_FRAMEBUFFER, framebuffer->id()), "mirror");
    EXPECT_EQ(labelInGl(GL_FRAMEBUFFER, another->id()), "lake");
    label(shared.texture, nullptr);
    EXPECT_EQ(labelInGl(GL_TEXTURE, shared.texture->id()), "");
    EXPECT_EQ(check_glerror(), nullptr);
}

TEST_F(DebugOutputRender, ALabelBeyondGlsLimitIsCutInFrontOfACharacter) {
    if (getObjectLabel == nullptr)
        GTEST_SKIP() << "nobody can ask GL for labels here";
    int most = 0;
    glGetIntegerv(GL_MAX_LABEL_LENGTH, &most);
    const auto texture = Texture2D<Color>::make(1, 1);
    std::string text;
    while (text.size() < static_cast<std::size_t>(most) + 4)
        text += "\xC3\xA4"; // ä
    label(texture, text.c_str());
    const std::string inGl = labelInGl(GL_TEXTURE, texture->id());
    EXPECT_EQ(inGl.size(), static_cast<std::size_t>((most - 1) / 2 * 2));
    EXPECT_EQ(text.compare(0, inGl.size(), inGl), 0);
    EXPECT_EQ(label_of(texture), text);
    EXPECT_EQ(check_glerror(), nullptr);
}

TEST_F(DebugOutputRender, TrackedStatesShowLabels) {
    const auto texture = Texture2D<Color>::make(1, 1);
    label(texture, "noise");
    stderrOf(diff_gl_states);
    texture->bind();
    EXPECT_THAT(stderrOf(diff_gl_states), HasSubstr("TEXTURE_BINDING_2D = 0 -> " +
                                                    std::to_string(texture->id()) + " 'noise'\n"));
    texture->unbind();
}

} // namespace

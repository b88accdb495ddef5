/// The library in contexts of the core profile, plain and forward-compatible: the same pictures as
/// in one of the compatibility kind, and no errors.

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/matrix_transform.hpp>
#include <gmock/gmock.h>
#include <vellis/vellis.hpp>

#include <offscreen/context.hpp>
#include <offscreen/image.hpp>
#include <offscreen/requirement.hpp>

#include "support/extension.hpp"
#include "support/pixels.hpp"
#include "support/render_test.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using BuiltIn = ProgramManager::BuiltIn;
using ::testing::HasSubstr;
using vellis::test::stateOf;
using vellis::test::stderrOf;
using vellis::test::takeError;

constexpr unsigned int side = 96;
const glm::mat4 pixels = glm::ortho<float>(0.f, side, 0.f, side);
const glm::vec4 red(1.f, 0.f, 0.f, 1.f);
const glm::vec4 halfBlue(0.f, 0.f, 1.f, 0.5f);

/// What a context of these tests is: a core version times 10, or 0; and whether it is
/// forward-compatible. All tests run in contexts of later versions where OFFSCREEN_PROFILE asks for
/// one.
struct Kind {
    int coreVersion;
    bool isForwardCompatible;
};

std::string nameOf(const Kind& kind) {
    return "Core" + std::to_string(kind.coreVersion) + (kind.isForwardCompatible ? "Forward" : "");
}

/// A GL context of that kind on the platform of the tests, and the library's Context for it.
class Opened {
public:
    /// \param error  Where there is none: why.
    Opened(const Kind& kind, std::string& error) {
        offscreen::Settings settings = renderSettings(side, side);
        settings.coreVersion = kind.coreVersion;
        settings.isForwardCompatible = kind.isForwardCompatible;
        gl_ = offscreen::Context::open(settings, error);
        if (gl_ != nullptr)
            context = Context::make(gl_->ownLookup());
    }
    ~Opened() {
        if (context != nullptr)
            context->dispose();
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

private:
    std::unique_ptr<offscreen::Context> gl_;

public:
    std::shared_ptr<Context> context;
};

/// Every function of the Toolbox, in two and in three dimensions, in one picture.
std::vector<unsigned char> drawWithToolbox() {
    const std::vector<glm::vec2> plane = {{8, 8}, {80, 20}, {60, 70}, {20, 85}};
    const std::vector<glm::vec3> space = {{8, 50, 0}, {40, 12, 0}, {85, 40, 0}, {50, 90, 0}};
    const auto buffer =
        VertexAttributeBuffer<glm::vec2>::make(plane, BufferUsage::Static, BufferAccess::Draw);
    Framebuffer::setViewport(0, 0, side, side);
    Framebuffer::clearColor({0.f, 0.2f, 0.f, 1.f});
    Toolbox::drawRect(halfBlue, {5.f, 60.f}, {30.f, 90.f}, pixels);
    Toolbox::drawTriangleFan({0.4f, 0.4f, 0.1f, 1.f}, 4, plane.data(), pixels);
    Toolbox::drawTriangleStrip({0.1f, 0.4f, 0.4f, 1.f}, 4, space.data(), pixels);
    Toolbox::drawQuad(halfBlue, red, {{70, 70, 0}, {90, 72, 0}, {92, 91, 0}, {69, 88, 0}}, pixels);
    Toolbox::drawLines(red, 4, plane.data(), pixels);
    Toolbox::drawLineStrip(red, 4, space.data(), pixels);
    Toolbox::drawLineLoop(red, 0, 4, buffer, pixels);
    Toolbox::drawDashLineStrip({1, 1, 1, 1}, 5.f, 3.f, 4, plane.data(), pixels);
    Toolbox::drawDashLineStrip({1, 1, 0, 1}, 3.f, 4.f, 4, space.data(), pixels);
    Toolbox::drawPoints(halfBlue, 15.f, 4, plane.data(), pixels);
    Toolbox::drawPoints(halfBlue, 11.f, 4, space.data(), pixels);
    Toolbox::drawBullseyes(red, {1, 1, 1, 1}, 21.f, 4, plane.data(), pixels);
    Toolbox::drawBullseyes(red, {1, 1, 1, 1}, 13.f, 4, space.data(), pixels);
    EXPECT_EQ(takeError(), "");
    return offscreen::readPixels(side, side).pixels;
}

class CoreProfileRender : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override {
        if (const auto hidden = extensionToHide())
            GTEST_SKIP() << "each Context loads " << name(*hidden) << " anew";
        std::string error;
        opened = std::make_unique<Opened>(GetParam(), error);
        if (opened->context == nullptr)
            GTEST_SKIP() << error;
    }
    void TearDown() override {
        opened.reset();
        Context::useProcess();
    }

    std::unique_ptr<Opened> opened;
};

TEST_P(CoreProfileRender, ContextIsOfTheKindThatWasAskedFor) {
    EXPECT_TRUE(isCore());
    EXPECT_EQ(isForwardCompatible(), GetParam().isForwardCompatible);
    EXPECT_GE(GLVersion.major * 10 + GLVersion.minor, GetParam().coreVersion);
    EXPECT_EQ(offscreen::missingRequirement(), "");
    EXPECT_EQ(takeError(), "");
}

TEST_P(CoreProfileRender, ToolboxDrawsTheSameAsInACompatibilityContext) {
    const auto drawn = drawWithToolbox();
    opened.reset();
    std::string error;
    opened = std::make_unique<Opened>(Kind{0, false}, error);
    if (opened->context == nullptr)
        GTEST_SKIP() << error;
    ASSERT_FALSE(isCore());
    const auto expected = drawWithToolbox();
    std::size_t numDifferent = 0;
    for (std::size_t i = 0; i < drawn.size(); ++i)
        numDifferent += std::abs(drawn[i] - expected[i]) > 1 ? 1u : 0u;
    EXPECT_EQ(numDifferent, 0u);
}

TEST_P(CoreProfileRender, BuiltInProgramsLinkInAVersionThatSuchContextsHave) {
    for (const BuiltIn builtIn :
         {BuiltIn::SoftPoints2D, BuiltIn::SoftPoints3D, BuiltIn::UniformColor2D,
          BuiltIn::UniformColor3D, BuiltIn::DashLines2D, BuiltIn::DashLines3D}) {
        const auto program = ProgramManager::instance().get(builtIn);
        EXPECT_FALSE(program->hasLinkError()) << program->linkLog();
        for (const auto print : {internal::print_vertex_shader, internal::print_fragment_shader})
            EXPECT_THAT(stderrOf([&] { print(program->id()); }), HasSubstr(" 1: #version 150"));
    }
    EXPECT_EQ(takeError(), "");
}

TEST_P(CoreProfileRender, PortableSourcesCompileAsTheOldestVersion) {
    const auto program = Program::make(
        VertexShader::make("IN vec2 position;\nOUT vec2 place;\n"
                           "void main() { place = position; gl_Position = vec4(position, 0, 1); }",
                           Shader::Version::V210),
        FragmentShader::make("IN vec2 place;\nDECL_OUT0;\nuniform sampler2D image;\n"
                             "void main() { OUT0 = vec4(texture2D(image, place).rg, 1, 1); }",
                             Shader::Version::V210));
    EXPECT_FALSE(program->hasLinkError()) << program->linkLog();
    EXPECT_THAT(stderrOf([&] { internal::print_fragment_shader(program->id()); }),
                HasSubstr(" 1: #version 150"));
    const auto broken = FragmentShader::make("nonsense", Shader::Version::V210);
    EXPECT_THAT(broken->compilationLog(), HasSubstr("10")); // the line of the source's first
}

TEST_P(CoreProfileRender, DumpsAndStatesAreToldWithoutAnError) {
    EXPECT_THAT(stderrOf(internal::print_gl_extensions),
                HasSubstr("Corvane: OpenGL extensions: GL_"));
    stderrOf([] {
        internal::print_gl_info();
        internal::print_gl_caps();
        internal::print_gl_states();
        internal::diff_gl_states();
    });
    EXPECT_EQ(takeError(), "");
}

TEST_P(CoreProfileRender, PolygonModeIsThatOfBothFaces) {
    state::State<int, 2, GL_POLYGON_MODE> modes{{GL_LINE, GL_POINT}};
    state::set(modes);
    state::get(modes);
    EXPECT_EQ(modes.value[0], GL_LINE);
    Drawable::setPolygonMode(Drawable::Face::Front, Drawable::PolygonMode::Point);
    Drawable::setPolygonMode(Drawable::Face::Back, Drawable::PolygonMode::Point);
    state::get(modes);
    EXPECT_EQ(modes.value[0], GL_LINE);
    Drawable::setPolygonMode(Drawable::Face::FrontAndBack, Drawable::PolygonMode::Fill);
    state::get(modes);
    EXPECT_EQ(modes.value[0], GL_FILL);
    EXPECT_EQ(takeError(), "");
}

TEST_P(CoreProfileRender, LinesAreAsWideAsTheContextHasThem) {
    Drawable::setLineWidth(3.f);
    EXPECT_EQ(takeError(), "");
    float width = 0.f;
    glGetFloatv(GL_LINE_WIDTH, &width);
    EXPECT_EQ(width, GetParam().isForwardCompatible ? 1.f : 3.f);
}

TEST_P(CoreProfileRender, PrimitivesThatAreGoneAreGlsError) {
    const auto program = ProgramManager::instance().get(BuiltIn::UniformColor2D);
    const auto corners = VertexAttributeBuffer<glm::vec2>::make(
        {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, BufferUsage::Static, BufferAccess::Draw);
    class Quads : public Drawable {
    public:
        Quads(const Drawable& other) : Drawable(PrimitiveType::Quads) {
            numVertices_ = other.numVertices();
            attributesBinding_ = other.getAttributesBinding();
        }
    };
    const auto fan =
        drawable::TriangleFan<VertexAttribute<glm::vec2>>::make(program, {"position", corners});
    program->draw(*fan);
    EXPECT_EQ(takeError(), "");
    program->draw(Quads(*fan));
    EXPECT_EQ(takeError(), "GL_INVALID_ENUM");
}

INSTANTIATE_TEST_SUITE_P(Kinds, CoreProfileRender, testing::Values(Kind{32, false}, Kind{32, true}),
                         [](const auto& row) { return nameOf(row.param); });

} // namespace

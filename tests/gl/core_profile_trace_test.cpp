/// What the library does in a core context: calls that such a one refuses are others, or none.
// needs: private access

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <vellis/context.hpp>
#include <vellis/drawing/drawable.hpp>
#include <vellis/engine/dumps.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading.hpp>
#include <vellis/state.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"
#include "support/stderr_capture.hpp"

namespace {

using namespace vellis;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using vellis::test::FakeContext;
using vellis::test::FakeGl;
using vellis::test::stderrOf;

constexpr int core = GL_CONTEXT_CORE_PROFILE_BIT;
constexpr int compatibility = GL_CONTEXT_COMPATIBILITY_PROFILE_BIT;
constexpr int forwardCompatible = GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT;

using Face = Drawable::Face;
using Mode = Drawable::PolygonMode;
using PolygonModes = state::State<int, 2, GL_POLYGON_MODE>;

void pretend(test::RecordedGl& gl, const char* version, int profile, int flags) {
    gl.setString(GL_VERSION, version);
    gl.setState(GL_CONTEXT_PROFILE_MASK, {profile});
    gl.setState(GL_CONTEXT_FLAGS, {flags});
    gl.setState(GL_NUM_EXTENSIONS, {1});
}

enum class Profile { ForwardCompatible, Core, Compatibility };

/// What the library takes the context for, by what it sets of two things that such a one may
/// refuse.
Profile profileOf(test::RecordedGl& gl) {
    gl.forget();
    Drawable::setPolygonMode(Face::Front, Mode::Line);
    Drawable::setLineWidth(3.f);
    return static_cast<Profile>(gl.takeCalls().size());
}

/// The entry points are those of a context that the test loads; at the end those of one that has no
/// profile.
class CoreProfileTrace : public testing::Test {
protected:
    ~CoreProfileTrace() override {
        gl.makeCurrent(); // which contexts beside it may have ended
        load(0, 0, "2.1 fake");
        gl.ignoreTheRest();
    }

    void load(int profile, int flags = 0, const char* version = "3.2 fake") {
        pretend(gl, version, profile, flags);
        EXPECT_EQ(gladLoadGLLoader(FakeGl::lookUp), 1);
        loading = gl.takeCalls();
    }

    /// The calls of the load that ask for a piece of state.
    std::ptrdiff_t timesAsked(const std::string& pname) const {
        return std::count_if(loading.begin(), loading.end(), [&](const std::string& call) {
            return call.find(pname) != std::string::npos;
        });
    }

    /// The texts that GL is given as sources in the course of that.
    template <class Act>
    std::vector<std::string> sourcesOf(Act act) {
        std::vector<std::string> sources;
        gl.answer(glad_glShaderSource, [&](GLuint, GLsizei, const GLchar* const* text,
                                           const GLint*) { sources.emplace_back(*text); });
        act();
        gl.forget();
        return sources;
    }

    FakeGl gl;
    std::vector<std::string> loading;
};

TEST_F(CoreProfileTrace, ProfileIsThatOfTheMaskAndTheFlags) {
    load(core);
    EXPECT_EQ(profileOf(gl), Profile::Core);
    load(core, forwardCompatible);
    EXPECT_EQ(profileOf(gl), Profile::ForwardCompatible);
    load(compatibility);
    EXPECT_EQ(profileOf(gl), Profile::Compatibility);
    load(0, forwardCompatible); // as some drivers answer where nobody has asked for a profile
    EXPECT_EQ(profileOf(gl), Profile::Compatibility);
    load(core, 0, "3.1 fake"); // which has no profiles
    EXPECT_EQ(profileOf(gl), Profile::Compatibility);
}

TEST_F(CoreProfileTrace, ContextThatListsCompatibilityIsNotAsked) {
    load(compatibility);
    EXPECT_EQ(timesAsked("GL_CONTEXT_PROFILE_MASK"), 1);
    const char* name = "GL_ARB_compatibility";
    gl.answer(glad_glGetStringi,
              [&](GLenum, GLuint) { return reinterpret_cast<const GLubyte*>(name); });
    load(core);
    EXPECT_EQ(timesAsked("GL_CONTEXT_PROFILE_MASK"), 0);
    EXPECT_EQ(timesAsked("GL_CONTEXT_FLAGS"), 0);
    EXPECT_EQ(profileOf(gl), Profile::Compatibility);
    name = "GL_ARB_ES2_compatibility";
    load(core); // what was listed once is not listed now
    EXPECT_EQ(profileOf(gl), Profile::Core);
}

TEST_F(CoreProfileTrace, ContextsHaveProfilesOfTheirOwn) {
    FakeContext first;
    FakeContext second;
    pretend(first, "3.2 fake", core, 0);
    pretend(second, "3.2 fake", compatibility, 0);
    ASSERT_TRUE(first.makeCurrent());
    const auto one = Context::make(FakeGl::lookUp);
    ASSERT_TRUE(second.makeCurrent());
    const auto other = Context::make(FakeGl::lookUp);
    ASSERT_NE(one, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(profileOf(second), Profile::Compatibility);
    ASSERT_TRUE(first.makeCurrent());
    ASSERT_TRUE(one->use());
    EXPECT_EQ(profileOf(first), Profile::Core);
    Context::useProcess(); // which has loaded nothing
    EXPECT_EQ(profileOf(first), Profile::Compatibility);
    first.ignoreTheRest();
    second.ignoreTheRest();
}

TEST_F(CoreProfileTrace, PolygonModeOfBothFacesIsThatOfTheFront) {
    load(core);
    state::set(PolygonModes{{GL_LINE, GL_LINE}});
    state::set(PolygonModes{{GL_LINE, GL_POINT}});
    state::set(PolygonModes{{GL_LINE, 0}}); // where GL gives one value
    EXPECT_GL_CALLS(gl, "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)",
                    "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)",
                    "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)");
    load(compatibility);
    state::set(PolygonModes{{GL_LINE, GL_LINE}});
    EXPECT_GL_CALLS(gl, "glPolygonMode(GL_FRONT, GL_LINE)", "glPolygonMode(GL_BACK, GL_LINE)");
}

TEST_F(CoreProfileTrace, PolygonModeOfOneFaceIsLeftAlone) {
    load(core);
    Drawable::setPolygonMode(Face::Front, Mode::Line);
    Drawable::setPolygonMode(Face::Back, Mode::Line);
    EXPECT_GL_CALLS(gl);
    Drawable::setPolygonMode(Face::FrontAndBack, Mode::Line);
    EXPECT_GL_CALLS(gl, "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)");
    load(compatibility);
    Drawable::setPolygonMode(Face::Back, Mode::Line);
    EXPECT_GL_CALLS(gl, "glPolygonMode(GL_BACK, GL_LINE)");
}

TEST_F(CoreProfileTrace, WideLinesAreLeftAloneInAForwardCompatibleContext) {
    const auto setWidths = [] {
        for (const float width : {0.5f, 1.f, 3.f}) {
            Drawable::setLineWidth(width);
            state::set(state::State<float, 1, GL_LINE_WIDTH>{{width}});
        }
    };
    load(core, forwardCompatible);
    setWidths();
    EXPECT_GL_CALLS(gl, "glLineWidth(0.5)", "glLineWidth(0.5)", "glLineWidth(1)", "glLineWidth(1)");
    load(core);
    setWidths();
    EXPECT_GL_CALLS(gl, "glLineWidth(0.5)", "glLineWidth(0.5)", "glLineWidth(1)", "glLineWidth(1)",
                    "glLineWidth(3)", "glLineWidth(3)");
}

TEST_F(CoreProfileTrace, ExtensionsAreAskedForOneByOne) {
    load(core);
    gl.setState(GL_NUM_EXTENSIONS, {3});
    gl.answer(glad_glGetStringi, [](GLenum, GLuint index) {
        constexpr const char* names[] = {"GL_ARB_one", nullptr, "GL_ARB_three"};
        return reinterpret_cast<const GLubyte*>(names[index]);
    });
    EXPECT_EQ(stderrOf(internal::print_gl_extensions),
              "Corvane: OpenGL extensions: GL_ARB_one  GL_ARB_three \n");
    EXPECT_THAT(gl.takeCalls(), Not(Contains(HasSubstr("glGetString("))));
}

TEST_F(CoreProfileTrace, NoMoreExtensionsAreAskedForThanAreShown) {
    load(core);
    gl.setState(GL_NUM_EXTENSIONS, {1000});
    gl.answer(glad_glGetStringi, [](GLenum, GLuint) {
        return reinterpret_cast<const GLubyte*>("GL_ARB_of_twenty_one_");
    });
    const std::string line = stderrOf(internal::print_gl_extensions);
    EXPECT_EQ(line.size(), std::string("Corvane: \n").size() + 276);
    EXPECT_EQ(gl.countOf("glGetStringi"), 13u);
    gl.forget();
}

TEST_F(CoreProfileTrace, BuiltInProgramsAreGlsl150) {
    using BuiltIn = ProgramManager::BuiltIn;
    const auto makeAll = [] {
        for (const BuiltIn builtIn :
             {BuiltIn::SoftPoints2D, BuiltIn::SoftPoints3D, BuiltIn::UniformColor2D,
              BuiltIn::UniformColor3D, BuiltIn::DashLines2D, BuiltIn::DashLines3D})
            ProgramManager::makeBuiltIn(builtIn);
    };
    load(compatibility);
    const auto old = sourcesOf(makeAll);
    load(core);
    const auto sources = sourcesOf(makeAll);
    ASSERT_EQ(sources.size(), old.size());
    for (std::size_t i = 0; i < old.size(); ++i) {
        EXPECT_THAT(old[i], StartsWith("#version 120 \n"));
        EXPECT_THAT(sources[i], StartsWith("#version 150 \n"));
        const std::string body = old[i].substr(old[i].find('\n'));
        EXPECT_THAT(sources[i], testing::EndsWith(body));
        const bool isVertex = body.find("gl_Position") != std::string::npos;
        const std::vector<const char*> lines =
            isVertex ? std::vector{"#define attribute in ", "#define varying out "}
                     : std::vector{"#define varying in ", "#define gl_FragColor OUT0 ",
                                   "out vec4 OUT0; "};
        for (const char* line : lines)
            EXPECT_THAT(sources[i], HasSubstr(line));
    }
}

TEST_F(CoreProfileTrace, PortableSourcesOf120AreGlsl150InAsManyLines) {
    using Version = Shader::Version;
    const auto make = [](Version version) {
        return [version] {
            VertexShader::make("vertex", version);
            FragmentShader::make("fragment", version);
        };
    };
    load(compatibility);
    const auto old = sourcesOf(make(Version::V210));
    const auto old330 = sourcesOf(make(Version::V330));
    load(core);
    const auto sources = sourcesOf(make(Version::V210));
    EXPECT_EQ(sourcesOf(make(Version::V330)), old330);
    ASSERT_EQ(sources.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_THAT(old[i], StartsWith("#version 120 \n"));
        EXPECT_THAT(sources[i], StartsWith("#version 150 \n"));
        EXPECT_EQ(std::count(sources[i].begin(), sources[i].end(), '\n'),
                  std::count(old[i].begin(), old[i].end(), '\n'));
    }
    for (const std::string& source : sources)
        for (const char* name : {"texture1D", "texture2D", "texture3D", "textureCube"})
            EXPECT_THAT(source, HasSubstr("#define " + std::string(name) + " texture \n"));
    EXPECT_THAT(sources[0], HasSubstr("#define OUT out"));
    EXPECT_THAT(sources[0], testing::EndsWith("\nvertex"));
    EXPECT_THAT(sources[1], HasSubstr("#define DECL_OUT0 out vec4 OUT0; \n"));
    EXPECT_THAT(sources[1], testing::EndsWith("\nfragment"));
}

} // namespace

/// Holds what the documentation's pages say of GL against what the library does, on the fake GL.

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/engine.hpp>
#include <vellis/shading.hpp>

#include "docs/page.hpp"
#include "docs/tables.hpp"
#include "operations/operations.hpp"
#include "operations/state_effects.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::test::FakeGl;
using vellis::test::Page;
using vellis::test::Use;

/// The families that have a heading in the pages.
const std::vector<std::string> families = {
    "Engine",
    "Buffers",
    "Shading",
    "Drawing",
    "The Toolbox",
    "The Canvas",
    "Textures and renderbuffers",
    "Framebuffers",
    "State",
    "Diagnostics",
    "Debug output",
};

/// Uses every operation once: some keep objects until the library is shut down.
class Pages : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gl = std::make_unique<FakeGl>();
        uses = test::recordEverything(*gl);
    }
    static void TearDownTestSuite() {
        gl->ignoreTheRest();
        engine::dispose();
        gl.reset();
    }

    static std::unique_ptr<FakeGl> gl;
    static std::vector<Use> uses;
};

std::unique_ptr<FakeGl> Pages::gl;
std::vector<Use> Pages::uses;

TEST_F(Pages, MappingNamesTheCallersOfEveryEntryPoint) {
    Page page("docs/gl-mapping.md");
    page.expectPart("entry points", test::entryPointTable(uses));
}

TEST_F(Pages, MappingNamesTheEntryPointsOfEveryOperation) {
    Page page("docs/gl-mapping.md");
    for (const std::string& family : families)
        page.expectPart(family, test::operationTable(uses, family));
}

TEST_F(Pages, StateTablesSayWhatEachOperationLeaves) {
    Page page("docs/gl-state.md");
    for (const std::string& family : families) {
        // A record sets what its name says, and the others set nothing.
        if (family != "Engine" && family != "State" && family != "Diagnostics")
            page.expectPart(family, test::stateTables(uses, family));
    }
}

TEST_F(Pages, OperationsThatSetNoStateAreLeftOutOfTheStateTables) {
    for (const Use& use : uses) {
        if (use.family == "Engine" || use.family == "Diagnostics") {
            EXPECT_TRUE(test::effectsOf(use).empty()) << use.name();
        }
    }
}

/// The entry points that the sources name outside of comments and texts.
std::set<std::string> entryPointsInSources() {
    std::set<std::string> names;
    const std::regex comment("//[^\n]*");
    const std::regex text("\"[^\"\n]*\"");
    const std::regex word("\\bgl[A-Z][A-Za-z0-9]*\\b");
    const std::filesystem::path root = VELLIS_SOURCE_DIR;
    for (const char* folder : {"src", "include"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            if (!entry.is_regular_file())
                continue;
            std::string code = std::regex_replace(test::readFile(entry.path()), comment, "");
            code = std::regex_replace(code, text, "");
            for (auto match = std::sregex_iterator(code.begin(), code.end(), word);
                 match != std::sregex_iterator(); ++match) {
                if (test::isEntryPoint(match->str()))
                    names.insert(match->str());
            }
        }
    }
    return names;
}

TEST_F(Pages, EveryEntryPointInTheSourcesIsReachedByAnOperation) {
    const std::set<std::string> inSources = entryPointsInSources();
    ASSERT_GT(inSources.size(), 100u);
    const std::vector<std::string> reached = test::entryPoints(uses);
    for (const std::string& name : inSources)
        EXPECT_TRUE(std::binary_search(reached.begin(), reached.end(), name)) << name;
}

/// The text that is given to GL, as a code block.
std::string asBlock(const std::string& source) {
    // The pages have no blanks at the ends of lines.
    return "```glsl\n" + std::regex_replace(source, std::regex(" +\n"), "\n") + "```\n";
}

/// The raw text of that name in the example of the page.
std::string exampleSource(const std::string& page, const std::string& name) {
    const std::string text = test::readFile(std::filesystem::path(VELLIS_SOURCE_DIR) / page);
    std::smatch match;
    const std::regex literal(name + " = R\"\\(([^]*?)\\)\";");
    return std::regex_search(text, match, literal) ? match[1].str() : "";
}

template <class AnyShader>
std::string texts(FakeGl& gl, const std::string& source) {
    std::string text;
    using Version = Shader::Version;
    for (const Version version : {Version::V210, Version::V330, Version::V410}) {
        const auto shader = AnyShader::make(source, version);
        text += (text.empty() ? "" : "\n") + asBlock(gl.shaderSource(shader->id()));
    }
    return text;
}

TEST_F(Pages, PreamblePageShowsWhatGlIsGiven) {
    const std::string path = "docs/portable-glsl.md";
    const std::string vertex = exampleSource(path, "portableVertexSource");
    const std::string fragment = exampleSource(path, "portableFragmentSource");
    ASSERT_NE(vertex, "");
    ASSERT_NE(fragment, "");
    Page page(path);
    page.expectPart("vertex", texts<VertexShader>(*gl, vertex));
    page.expectPart("fragment", texts<FragmentShader>(*gl, fragment));
    gl->forget();
}

/// The line of the text given to GL on which the source begins.
template <class AnyShader>
std::ptrdiff_t firstLine(FakeGl& gl) {
    const auto shader = AnyShader::make("source", Shader::Version::V210);
    const std::string text = gl.shaderSource(shader->id());
    const std::string before = text.substr(0, text.find("source"));
    return 1 + std::count(before.begin(), before.end(), '\n');
}

TEST_F(Pages, PreamblePageSaysOnWhichLineTheSourceBegins) {
    EXPECT_EQ(firstLine<VertexShader>(*gl), 9);
    EXPECT_EQ(firstLine<FragmentShader>(*gl), 10);
    gl->forget();
    const std::string page =
        test::readFile(std::filesystem::path(VELLIS_SOURCE_DIR) / "docs/portable-glsl.md");
    EXPECT_NE(page.find("line 1 of a vertex\nshader is line 9, line 1 of a fragment shader is line "
                        "10."),
              std::string::npos);
}

} // namespace

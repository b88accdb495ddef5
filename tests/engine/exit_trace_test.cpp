// needs: a program of its own

/// The end of the process: destructors of static objects call the library in whatever order they
/// come, also when what it keeps for the process has been let go of.
///
/// Each test is a process of its own, which says on standard error what it finds after `main`.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/vellis.hpp>

#include "support/ending_objects.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using vellis::test::Buffers;
using vellis::test::Ending;
using vellis::test::FakeGl;
using vellis::test::Programs;

/// A GL that is there to the very end: the first static object of those that count.
FakeGl& gl() {
    static FakeGl fake;
    return fake;
}

void say(const std::string& text) {
    std::fputs((text + "\n").c_str(), stderr);
}

const char* yesOrNo(bool isTrue) {
    return isTrue ? "yes" : "no";
}

/// Calls \p late when `main` is over and everything that is brought into being after this call has
/// come to its end.
void whenAllIsOver(Ending late) {
    gl();
    struct Late {
        ~Late() {
            for (const Ending& ending : endings)
                ending();
            gl().ignoreTheRest();
        }
        std::vector<Ending> endings;
    };
    static Late object;
    object.endings.push_back(std::move(late));
}

/// The same for a process that does no more than \p early.
[[noreturn]] void exitAfter(const Ending& early, Ending late) {
    whenAllIsOver(std::move(late));
    early();
    std::exit(EXIT_SUCCESS);
}

/// The same where nothing is used before.
[[noreturn]] void exitWith(Ending late) {
    exitAfter([] {}, std::move(late));
}

#define EXPECT_SAID(statement, text)                                                               \
    EXPECT_EXIT(statement, testing::ExitedWithCode(EXIT_SUCCESS), "^" text "$")

class ExitDeathTest : public testing::Test {
protected:
    ExitDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

#ifdef _WIN32
    void SetUp() override {
        GTEST_SKIP()
            << "the static objects of a DLL end after all of the program's, the fake GL's too";
    }
#endif
};

// The registries

template <class Kind>
class RegistryExitDeathTest : public ExitDeathTest {
public:
    using Registry = typename Kind::Registry;
    using Object = typename Kind::Object;

    static Registry& registry() { return Registry::instance(); }
    static Object* add(Ending ending = [] {}) { return registry().add(Kind::make(ending)); }
};

using Kinds = testing::Types<Buffers, Programs>;
TYPED_TEST_SUITE(RegistryExitDeathTest, Kinds, );

TYPED_TEST(RegistryExitDeathTest, RegisteredObjectsMayCallTheRegistryAsTheyEnd) {
    const auto early = [] {
        static std::vector<typename TypeParam::Object*>& keys =
            *new std::vector<typename TypeParam::Object*>;
        static int numEnded = 0;
        for (int i = 0; i < 8; ++i) {
            keys.push_back(TestFixture::add([] {
                for (auto* const key : keys)
                    TestFixture::registry().remove(key);
                TypeParam::Registry::dispose();
                engine::dispose();
                if (++numEnded == 8)
                    say("all ended");
            }));
        }
    };
    EXPECT_SAID(exitAfter(early, [] { say("late"); }), "all ended\nlate\n");
}

TYPED_TEST(RegistryExitDeathTest, WhatIsRegisteredByAnEndingObjectEndsToo) {
    const auto early = [] {
        TestFixture::add([] {
            say("first");
            TestFixture::add([] {
                say("second");
                TestFixture::add([] { say("third"); });
            });
        });
    };
    EXPECT_SAID(exitAfter(early, [] { say("late"); }), "first\nsecond\nthird\nlate\n");
}

/// Registers another of its kind as it ends.
template <class Fixture>
struct Phoenix {
    void operator()() const { Fixture::add(Phoenix()); }
};

TYPED_TEST(RegistryExitDeathTest, ObjectThatAlwaysRegistersAnotherDoesNotKeepTheProcess) {
    const auto early = [] { TestFixture::add(Phoenix<TestFixture>()); };
    EXPECT_SAID(exitAfter(early, [] { say("late"); }), "late\n");
}

TYPED_TEST(RegistryExitDeathTest, LateCallsMeetAnEmptyRegistryThatWorks) {
    const auto early = [] { TestFixture::add([] { say("early object ended"); }); };
    const auto late = [] {
        say("late");
        auto& registry = TestFixture::registry();
        registry.remove(registry.invalidId());
        TestFixture::add([] { say("left object ended"); });
        auto* const removed = TestFixture::add([] { say("removed object ended"); });
        registry.remove(removed);
        registry.remove(removed);
        const auto copy = registry;
    };
    EXPECT_SAID(exitAfter(early, late),
                "early object ended\nlate\nremoved object ended\nleft object ended\n");
}

TYPED_TEST(RegistryExitDeathTest, LateObjectsThatStayAreReleasedInTheEnd) {
    const auto early = [] { TestFixture::registry(); };
    const auto late = [] {
        say("late");
        TestFixture::add([] { say("ended"); });
    };
    EXPECT_SAID(exitAfter(early, late), "late\nended\n");
}

TYPED_TEST(RegistryExitDeathTest, LateObjectsAddedThroughAnOldReferenceAreReleasedInTheEnd) {
    static typename TypeParam::Registry* registry = nullptr;
    const auto early = [] { registry = &TestFixture::registry(); };
    const auto late = [] {
        say("late");
        registry->add(TypeParam::make([] { say("ended"); }));
    };
    EXPECT_SAID(exitAfter(early, late), "late\nended\n");
}

TYPED_TEST(RegistryExitDeathTest, FirstCallsMayComeLate) {
    const auto late = [] {
        say("late");
        TestFixture::add([] { say("ended"); });
    };
    EXPECT_SAID(exitWith(late), "late\nended\n");
}

TYPED_TEST(RegistryExitDeathTest, StaticCopyMayOutliveTheRegistry) {
    gl();
    static std::unique_ptr<typename TypeParam::Registry> copy;
    const auto early = [] {
        TestFixture::add([] { say("ended"); });
        copy = std::make_unique<typename TypeParam::Registry>(TestFixture::registry());
    };
    EXPECT_SAID(exitAfter(early, [] { say("late"); }), "late\nended\n");
}

TEST_F(ExitDeathTest, LookupsFindNothingAfterTheRegistryHasBeenEmptied) {
    static Program* key = nullptr;
    const auto early = [] {
        key = ProgramManager::instance().add(Programs::make());
        ProgramManager::instance().get(ProgramManager::BuiltIn::UniformColor2D);
    };
    const auto late = [] {
        const ProgramManager& programs = ProgramManager::instance();
        say(std::string("found: ") + yesOrNo(programs.get(key) != nullptr));
        say(std::string("built-in: ") +
            yesOrNo(programs.get(ProgramManager::BuiltIn::UniformColor2D) != nullptr));
        say("programs: " + std::to_string(gl().liveNames().size()));
    };
    EXPECT_SAID(exitAfter(early, late), "found: no\nbuilt-in: no\nprograms: 0\n");
}

// The Toolbox

/// Draws, and says what has come of it.
void drawLate() {
    Toolbox::instance();
    Toolbox::drawLines(glm::vec4(1.f), {{0.f, 0.f}, {1.f, 1.f}}, glm::mat4(1.f));
    say(std::string("buffer: ") + yesOrNo(Toolbox::getVertexBuffer() != nullptr));
}

TEST_F(ExitDeathTest, ToolboxDoesNothingAfterTheRegistriesHaveBeenEmptied) {
    const auto early = [] {
        Toolbox::drawLines(glm::vec4(1.f), {{0.f, 0.f}, {1.f, 1.f}}, glm::mat4(1.f));
    };
    EXPECT_SAID(exitAfter(early, drawLate), "buffer: no\n");
}

TEST_F(ExitDeathTest, SharedBufferThatSomebodyKeepsIsNotFoundLate) {
    gl();
    static std::shared_ptr<VertexAttributeBuffer<unsigned char>> kept;
    const auto early = [] { kept = Toolbox::getVertexBuffer(); };
    EXPECT_SAID(exitAfter(early, drawLate), "buffer: no\n");
}

TEST_F(ExitDeathTest, ToolboxMayBeUsedForTheFirstTimeLate) {
    EXPECT_SAID(exitWith(drawLate), "buffer: yes\n");
}

// Everything else that is kept for the process

TEST_F(ExitDeathTest, PortableShadersCanBeMadeLate) {
    const auto make = [] {
        const auto vertex = VertexShader::make("void main() {}", Shader::Version::V330);
        const auto fragment = FragmentShader::make("void main() {}", Shader::Version::V410);
        say(gl().shaderSource(vertex->id()).substr(0, 12));
        say(gl().shaderSource(fragment->id()).substr(0, 12));
    };
    EXPECT_SAID(exitAfter(make, make), "#version 330\n#version 410\n#version 330\n#version 410\n");
}

TEST_F(ExitDeathTest, ProgramInUseCanBeAskedForLate) {
    const auto ask = [] {
        gl().setState(GL_CURRENT_PROGRAM, {7});
        say(std::to_string(Program::current().id()) + std::to_string(Program::null().id()));
    };
    EXPECT_SAID(exitAfter(ask, ask), "70\n70\n");
}

/// What binds through the program in use and does not unbind keeps a binding to the end.
TEST_F(ExitDeathTest, BindingOfTheProgramInUseIsReleased) {
    const auto early = [] {
        Program::current().beginAttributesBinding();
        Program::null().beginAttributesBinding();
    };
    const auto late = [] {
        say("names: " + std::to_string(gl().liveNames().size()));
        Program::current().beginAttributesBinding();
        Program::current().finishAttributesBinding();
    };
    EXPECT_SAID(exitAfter(early, late), "names: 2\n"); // those that the two leave behind
}

/// A program that tells the handles of its attributes.
struct Asked : Program {
    using Program::getAttrib;
};

TEST_F(ExitDeathTest, InertHandlesCanBeAskedForLate) {
    const auto ask = [] {
        Asked program;
        program.getUniform<std::vector<float>>("none").value.assign(1000, 1.f);
        program.getUniform<glm::mat4>("none").loc = 3;
        say(std::to_string(program.getUniform<std::vector<float>>("none").value.size()) +
            std::to_string(program.getUniform<glm::mat4>("none").loc) +
            std::to_string(program.getUniformTexture("none").loc) +
            std::to_string(program.getAttrib("none").loc));
        program.getUniform<std::vector<float>>("none").value.assign(1000, 1.f);
    };
    EXPECT_SAID(exitAfter(ask, ask), "0-1-1-1\n0-1-1-1\n");
}

TEST_F(ExitDeathTest, StatesCanBeComparedLate) {
    const auto early = [] {
        internal::diff_gl_states();
        gl().setState(GL_BLEND, {1});
        internal::diff_gl_states();
    };
    const auto late = [] {
        gl().setState(GL_BLEND, {0});
        internal::diff_gl_states();
    };
    EXPECT_SAID(exitAfter(early, late), "Corvane DIFF : BLEND = false -> true\n"
                                        "Corvane DIFF : BLEND = true -> false\n");
}

/// Uses all that is kept for the process, and leaves in it whatever it can hold.
void useEverything() {
    Buffers::Registry::instance().add(Buffers::make([] { Buffers::Registry::dispose(); }));
    Programs::Registry::instance().add(Programs::make([] { engine::dispose(); }));
    Toolbox::drawLines(glm::vec4(1.f), {{0.f, 0.f}, {1.f, 1.f}}, glm::mat4(1.f));
    VertexShader::make("void main() {}", Shader::Version::V210);
    Program::current().beginAttributesBinding();
    Program::null().beginAttributesBinding();
    Asked program;
    program.getUniform<std::vector<float>>("none").value.assign(1000, 1.f);
    program.getAttrib("none");
    internal::diff_gl_states();
}

/// Tells how often it is asked to release what it keeps.
struct Rounds {
    static void release() { std::fprintf(stderr, "round %d ", ++number); }
    static inline int number = 0;
};

TEST_F(ExitDeathTest, WhatGoesOnGetsFourRounds) {
    EXPECT_EXIT(
        {
            vellis::detail::AtExit<Rounds>::arm();
            vellis::detail::AtExit<Rounds>::arm();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "round 1 round 2 round 3 round 4 $");
}

/// For what looks at the memory of whole processes, as sanitizers do.
TEST(ExitTrace, ThisProcessLeavesNothing) {
    whenAllIsOver([] {
        Buffers::Registry::instance().add(Buffers::make());
        Programs::Registry::instance().add(Programs::make());
    });
    useEverything();
    SUCCEED();
}

/// Nor does one that uses everything late.
TEST(ExitTrace, ThisProcessLeavesNothingLate) {
    whenAllIsOver([] { useEverything(); });
    SUCCEED();
}

} // namespace

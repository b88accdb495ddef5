// needs: private access

#include <vellis/context.hpp>

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/vellis.hpp>

#include "support/fake_context.hpp"
#include "support/fake_gl.hpp"

namespace {

using namespace vellis;
using test::FakeContext;
using test::FakeGl;
using testing::AnyOf;
using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// The names of the kinds, in the order in which those that wait are deleted.
struct Names {
    unsigned int program = 0;
    unsigned int shader = 0;
    unsigned int vertexArray = 0;
    unsigned int framebuffer = 0;
    unsigned int buffer = 0;
    unsigned int texture = 0;
    unsigned int renderbuffer = 0;
};

/// An object of each kind, made in the Context in use.
struct Objects {
    std::shared_ptr<Program> program = Program::make();
    std::shared_ptr<VertexShader> shader = VertexShader::make("void main() {}");
    std::shared_ptr<VertexAttributesBinding> binding = makeBinding(*program);
    std::shared_ptr<Framebuffer> framebuffer = Framebuffer::make();
    std::shared_ptr<VertexAttributeBuffer<float>> buffer = makeBuffer();
    std::shared_ptr<Texture1D<float>> texture = Texture1D<float>::make(1);
    std::shared_ptr<Renderbuffer<float>> renderbuffer = Renderbuffer<float>::make(1, 1);

    static std::shared_ptr<VertexAttributeBuffer<float>> makeBuffer() {
        return VertexAttributeBuffer<float>::make(nullptr, 1, BufferUsage::Static,
                                                  BufferAccess::Draw);
    }

    static std::shared_ptr<VertexAttributesBinding> makeBinding(const Program& program) {
        program.beginAttributesBinding();
        return program.finishAttributesBinding();
    }

    Names names() const {
        return {program->id(), shader->id(),  binding->id(),     framebuffer->id(),
                buffer->id(),  texture->id(), renderbuffer->id()};
    }
};

std::string line(const char* entryPoint, unsigned int name) {
    return std::string(entryPoint) + '(' + std::to_string(name) + ')';
}

std::string listLine(const char* entryPoint, const std::vector<unsigned int>& names) {
    std::string list;
    for (const unsigned int name : names)
        list += (list.empty() ? "" : ", ") + std::to_string(name);
    return std::string(entryPoint) + '(' + std::to_string(names.size()) + ", {" + list + "})";
}

/// What deletes the names of all kinds that have waited.
std::vector<std::string> deletions(const std::vector<Names>& all) {
    std::vector<std::string> lines;
    const auto deleteEach = [&](const char* entryPoint, unsigned int Names::*name) {
        for (const Names& names : all)
            lines.push_back(line(entryPoint, names.*name));
    };
    const auto deleteAtOnce = [&](const char* entryPoint, unsigned int Names::*name) {
        std::vector<unsigned int> list;
        for (const Names& names : all)
            list.push_back(names.*name);
        lines.push_back(listLine(entryPoint, list));
    };
    deleteAtOnce("glDeleteVertexArrays", &Names::vertexArray);
    deleteAtOnce("glDeleteFramebuffers", &Names::framebuffer);
    deleteEach("glDeleteProgram", &Names::program);
    deleteEach("glDeleteShader", &Names::shader);
    deleteAtOnce("glDeleteBuffers", &Names::buffer);
    deleteAtOnce("glDeleteTextures", &Names::texture);
    deleteAtOnce("glDeleteRenderbuffers", &Names::renderbuffer);
    return lines;
}

/// The calls of those that begin like one of \p starts, in their order.
std::vector<std::string> only(const std::vector<std::string>& calls,
                              const std::vector<std::string>& starts) {
    std::vector<std::string> found;
    for (const std::string& call : calls) {
        for (const std::string& start : starts) {
            if (call.rfind(start, 0) == 0)
                found.push_back(call);
        }
    }
    return found;
}

const std::vector<std::string> ownKinds = {"glDeleteVertexArrays", "glDeleteFramebuffers"};
const std::vector<std::string> sharedKinds = {"glDeleteProgram", "glDeleteShader",
                                              "glDeleteBuffers", "glDeleteTextures",
                                              "glDeleteRenderbuffers"};

/// Expects that the first calls deleted those names.
void expectDeletions(std::vector<std::string> calls, const std::vector<Names>& all) {
    const std::vector<std::string> expected = deletions(all);
    ASSERT_GE(calls.size(), expected.size());
    calls.resize(expected.size());
    EXPECT_EQ(calls, expected);
}

/// Three fake GL contexts with a Context for each, and one for the process's own. The second shares
/// the objects of the first. Where no platform is loaded, use() takes the test's word.
class ContextTrace : public testing::Test {
protected:
    ContextTrace() {
        process.makeCurrent();
        gladLoadGLLoader(FakeGl::lookUp);
        first.makeCurrent();
        context = Context::make(FakeGl::lookUp);
        useProcess();
        forget();
    }
    ~ContextTrace() override {
        for (auto& [used, fake] : {std::pair(&context, &first), {&sharing, &second}}) {
            fake->makeCurrent();
            if (*used != nullptr)
                (*used)->dispose();
        }
        useProcess();
        if (!hasLeftovers) {
            EXPECT_THAT(first.liveNames(), IsEmpty());
            EXPECT_THAT(second.liveNames(), IsEmpty());
        }
        EXPECT_EQ(test::takeCallsWithoutContext(), 0u);
        gl.ignoreTheRest();
    }

    void makeSharing() {
        second.makeCurrent();
        sharing = Context::make(*context, FakeGl::lookUp);
        forget();
    }

    void use() {
        first.makeCurrent();
        EXPECT_TRUE(context->use());
    }
    void useSharing() {
        second.makeCurrent();
        EXPECT_TRUE(sharing->use());
    }
    void useProcess() {
        process.makeCurrent();
        Context::useProcess();
    }

    void forget() {
        for (FakeContext* const fake : {&process, &first, &second})
            fake->forget();
    }

    FakeGl gl;
    FakeContext process;
    FakeContext first;
    FakeContext second{&first};
    std::shared_ptr<Context> context;
    std::shared_ptr<Context> sharing;
    bool hasLeftovers = false; ///< whether objects outlive their Context
};

TEST_F(ContextTrace, MakingOneAsksWhatTheLoaderAsksAndNothingElse) {
    context->abandon();
    first.makeCurrent();
    context = Context::make(FakeGl::lookUp);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(Context::current(), context.get());
    EXPECT_THAT(first.takeCalls(),
                Each(AnyOf(StartsWith("glGetString("), StartsWith("glGetStringi("),
                           StartsWith("glGetIntegerv(GL_NUM_EXTENSIONS"))));
    EXPECT_GL_CALLS(process);
}

TEST_F(ContextTrace, ThereIsNoneWithoutEntryPointsAndEverythingIsAsBefore) {
    use();
    EXPECT_EQ(Context::make([](const char*) -> void* { return nullptr; }), nullptr);
    EXPECT_EQ(Context::current(), context.get());
    EXPECT_GL_CALLS(first);
}

TEST_F(ContextTrace, UsingOneWithoutNamesThatWaitMakesNoCall) {
    use();
    EXPECT_EQ(Context::current(), context.get());
    useProcess();
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_GL_CALLS(first);
    EXPECT_GL_CALLS(process);
}

TEST_F(ContextTrace, NamesWaitForTheNextUseWhichDeletesThoseOfOneKindAtOnce) {
    use();
    std::optional<Objects> one(std::in_place);
    std::optional<Objects> other(std::in_place);
    const std::vector<Names> names = {one->names(), other->names()};
    useProcess();
    forget();
    one.reset();
    other.reset();
    EXPECT_GL_CALLS(process);
    EXPECT_GL_CALLS(first);
    use();
    std::vector<std::string> calls = first.takeCalls();
    EXPECT_EQ(calls.size(), 9u);
    expectDeletions(std::move(calls), names);
    use();
    EXPECT_GL_CALLS(first);
}

TEST_F(ContextTrace, NamesThatWaitAreDeletedInTheOrderOfTheirKinds) {
    use();
    std::optional<Objects> objects(std::in_place);
    const std::vector<Names> names = {objects->names()};
    useProcess();
    objects.reset();
    forget();
    use();
    EXPECT_GL_CALLS(first, deletions(names));
}

TEST_F(ContextTrace, AnotherOfTheGroupDeletesWhatGlShares) {
    makeSharing();
    use();
    std::optional<Objects> objects(std::in_place);
    const std::vector<Names> names = {objects->names()};
    useProcess();
    objects.reset();
    forget();
    useSharing();
    EXPECT_GL_CALLS(second, only(deletions(names), sharedKinds));
    use();
    EXPECT_GL_CALLS(first, only(deletions(names), ownKinds));
}

TEST_F(ContextTrace, ObjectsOfTheProcessWaitForTheWayBack) {
    std::optional<Objects> objects(std::in_place);
    const std::vector<Names> names = {objects->names()};
    use();
    forget();
    objects.reset();
    EXPECT_GL_CALLS(first);
    useProcess();
    EXPECT_GL_CALLS(process, deletions(names));
}

TEST_F(ContextTrace, ObjectsEndOnAnotherThreadWithoutACall) {
    use();
    std::optional<Objects> objects(std::in_place);
    const std::vector<Names> names = {objects->names()};
    forget();
    std::thread([&] { objects.reset(); }).join();
    EXPECT_GL_CALLS(first);
    use();
    expectDeletions(first.takeCalls(), names);
}

TEST_F(ContextTrace, ObjectsHaveNoNameElsewhereAndBindNone) {
    use();
    const Objects objects;
    useProcess();
    forget();
    EXPECT_EQ(objects.buffer->id(), 0u);
    EXPECT_EQ(objects.framebuffer->id(), 0u);
    objects.buffer->bind();
    objects.texture->bind();
    objects.program->bind();
    objects.framebuffer->bind();
    EXPECT_GL_CALLS(process, "glBindBuffer(GL_ARRAY_BUFFER, 0)", "glBindTexture(GL_TEXTURE_1D, 0)",
                    "glUseProgram(0)");
    EXPECT_STREQ(internal::check_context(), "framebuffer");
    EXPECT_EQ(internal::check_context(), nullptr);
}

TEST_F(ContextTrace, OthersOfTheGroupHaveWhatGlSharesAndNotTheRest) {
    makeSharing();
    use();
    const Objects objects;
    const Names names = objects.names();
    useSharing();
    const Names there = objects.names();
    EXPECT_EQ(there.buffer, names.buffer);
    EXPECT_EQ(there.texture, names.texture);
    EXPECT_EQ(there.renderbuffer, names.renderbuffer);
    EXPECT_EQ(there.shader, names.shader);
    EXPECT_EQ(there.program, names.program);
    EXPECT_EQ(there.vertexArray, 0u);
    EXPECT_EQ(there.framebuffer, 0u);
}

TEST_F(ContextTrace, DisposingDeletesWhatWaitsThenTheProgramsThenTheBuffers) {
    use();
    std::optional<Objects> waiting(std::in_place);
    const Names names = waiting->names();
    const auto program = ProgramManager::instance().get(ProgramManager::BuiltIn::UniformColor2D);
    const unsigned int programName = program->id();
    BufferObject* const buffer = BufferObjectManager::instance().add(Objects::makeBuffer());
    const unsigned int bufferName = buffer->id();
    ProgramManager::instance().add(Program::make());
    useProcess();
    waiting.reset();
    first.makeCurrent();
    forget();
    context->dispose();
    EXPECT_FALSE(context->isAlive());
    EXPECT_EQ(Context::current(), nullptr);
    const std::vector<std::string> calls = first.takeCalls();
    ASSERT_EQ(calls.size(), 9u);
    expectDeletions(calls, {names});
    EXPECT_THAT(calls[7], StartsWith("glDeleteProgram("));
    EXPECT_EQ(calls[8], listLine("glDeleteBuffers", {bufferName}));
    EXPECT_EQ(program->id(), 0u); // what the test holds is inert
    EXPECT_THAT(first.liveNames(), testing::Contains("program " + std::to_string(programName)));
    context->dispose();
    EXPECT_GL_CALLS(first);
    EXPECT_GL_CALLS(process);
    hasLeftovers = true;
}

TEST_F(ContextTrace, DisposingReleasesAllThatTheLibraryKeepsForIt) {
    use();
    for (const auto builtIn :
         {ProgramManager::BuiltIn::UniformColor2D, ProgramManager::BuiltIn::UniformColor3D})
        ProgramManager::instance().get(builtIn);
    Toolbox::getVertexBuffer();
    Program::current();
    first.makeCurrent();
    EXPECT_THAT(first.liveNames(), Not(IsEmpty()));
    context->dispose();
    EXPECT_THAT(first.liveNames(), IsEmpty());
}

TEST_F(ContextTrace, EachHasRegistriesProgramsAndABufferOfItsOwn) {
    makeSharing();
    const auto flat = ProgramManager::BuiltIn::UniformColor2D;
    use();
    BufferObject* const key = BufferObjectManager::instance().add(Objects::makeBuffer());
    const ProgramManager* const programs = &ProgramManager::instance();
    const unsigned int program = ProgramManager::instance().get(flat)->id();
    const unsigned int buffer = Toolbox::getVertexBuffer()->id();
    EXPECT_NE(program, 0u);
    EXPECT_NE(buffer, 0u);
    useSharing();
    EXPECT_EQ(BufferObjectManager::instance().internal_get(key), nullptr);
    EXPECT_NE(&ProgramManager::instance(), programs);
    EXPECT_NE(ProgramManager::instance().get(flat)->id(), program);
    EXPECT_NE(ProgramManager::instance().get(flat)->id(), 0u);
    EXPECT_NE(Toolbox::getVertexBuffer()->id(), buffer);
    EXPECT_NE(Toolbox::getVertexBuffer()->id(), 0u);
    use();
    EXPECT_EQ(Toolbox::getVertexBuffer()->id(), buffer);
}

TEST_F(ContextTrace, AbandoningMakesNoCall) {
    use();
    std::optional<Objects> objects(std::in_place);
    BufferObjectManager::instance().add(objects->buffer);
    ProgramManager::instance().add(objects->program);
    Toolbox::getVertexBuffer();
    forget();
    context->abandon();
    EXPECT_FALSE(context->isAlive());
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(objects->buffer->id(), 0u);
    objects.reset();
    EXPECT_FALSE(context->use());
    EXPECT_GL_CALLS(first);
    hasLeftovers = true;
}

TEST_F(ContextTrace, LettingGoOfItMakesNoCall) {
    use();
    const auto buffer = Objects::makeBuffer();
    forget();
    context = nullptr;
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(buffer->id(), 0u);
    EXPECT_GL_CALLS(first);
    hasLeftovers = true;
}

TEST_F(ContextTrace, GroupLivesOnWithItsOtherContext) {
    makeSharing();
    use();
    const auto buffer = Objects::makeBuffer();
    const unsigned int name = buffer->id();
    context->dispose();
    EXPECT_EQ(buffer->id(), 0u);
    useSharing();
    EXPECT_EQ(buffer->id(), name);
}

TEST_F(ContextTrace, ProgramsThatStandForOthersTakeNoName) {
    use();
    forget();
    EXPECT_EQ(Program::current().id(), 0u);
    EXPECT_EQ(Program::null().id(), 0u);
    Program::null().bind();
    EXPECT_GL_CALLS(first, "glGetIntegerv(GL_CURRENT_PROGRAM, out)", "glUseProgram(0)");
}

TEST_F(ContextTrace, ScopeUsesOneAndThenWhatWasInUseBefore) {
    makeSharing();
    use();
    {
        second.makeCurrent();
        const Context::Scope outer(*sharing);
        EXPECT_TRUE(outer);
        EXPECT_EQ(Context::current(), sharing.get());
        {
            first.makeCurrent();
            const Context::Scope inner(*context);
            EXPECT_EQ(Context::current(), context.get());
            second.makeCurrent();
        }
        EXPECT_EQ(Context::current(), sharing.get());
        first.makeCurrent();
    }
    EXPECT_EQ(Context::current(), context.get());
}

TEST_F(ContextTrace, ScopeGoesBackToTheProcessWhereTheOneOfBeforeHasGone) {
    makeSharing();
    use();
    {
        second.makeCurrent();
        const Context::Scope scope(*sharing);
        context->abandon();
        EXPECT_EQ(Context::current(), sharing.get());
        process.makeCurrent();
    }
    EXPECT_EQ(Context::current(), nullptr);
}

TEST_F(ContextTrace, ScopeOfOneThatIsGoneIsFalse) {
    use();
    context->abandon();
    useProcess();
    const Context::Scope scope(*context);
    EXPECT_FALSE(scope);
    EXPECT_EQ(Context::current(), nullptr);
}

TEST_F(ContextTrace, EntryPointsAreThoseOfTheContextInUse) {
    useProcess();
    second.makeCurrent();
    const auto other = Context::make(FakeContext::lookUpOther);
    const auto bind = [] { glBindBuffer(GL_ARRAY_BUFFER, 0); };
    bind();
    EXPECT_EQ(second.callsThroughOther(), 1u);
    use();
    bind();
    EXPECT_EQ(first.callsThroughOther(), 0u);
    {
        second.makeCurrent();
        const Context::Scope scope(*other);
        bind();
        EXPECT_EQ(second.callsThroughOther(), 2u);
        first.makeCurrent();
    }
    bind();
    EXPECT_EQ(first.callsThroughOther(), 0u);
    second.makeCurrent();
    other->dispose();
}

TEST_F(ContextTrace, GoesFromThreadToThread) {
    use();
    const auto buffer = Objects::makeBuffer();
    const unsigned int name = buffer->id();
    FakeContext::releaseCurrent();
    std::thread([&] {
        use();
        EXPECT_EQ(buffer->id(), name);
        EXPECT_EQ(Context::current(), context.get());
        FakeContext::releaseCurrent();
    }).join();
    EXPECT_EQ(Context::current(), nullptr);
    EXPECT_EQ(buffer->id(), 0u);
    use();
    EXPECT_EQ(Context::current(), context.get());
    EXPECT_EQ(buffer->id(), name);
}

} // namespace

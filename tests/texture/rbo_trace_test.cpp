/// Renderbuffers: the base class, and the typed ones with every type of texels that they can have.

#include <vellis/texture/rbo.hpp>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/texture.hpp>

#include "support/allocation_count.hpp"
#include "support/fake_gl.hpp"
#include "support/texel_formats.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;
using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

static_assert(!std::is_default_constructible_v<RBO>, "only derived classes make one");
static_assert(std::has_virtual_destructor_v<RBO>);

template <class F>
struct Makes : std::is_constructible<Renderbuffer<F>, unsigned int, unsigned int> {};
template <class F>
struct MakesMultiSample
    : std::is_constructible<MultiSampleRenderbuffer<F>, unsigned int, unsigned int, unsigned int> {
};

template <class F>
struct HasMake : HasMakeOf<Renderbuffer<F>, void, unsigned int, unsigned int> {};
template <class F>
struct HasMultiSampleMake
    : HasMakeOf<MultiSampleRenderbuffer<F>, void, unsigned int, unsigned int, unsigned int> {};

static_assert(ColorTexels::all<Makes> && ColorTexels::all<MakesMultiSample>);
static_assert(DepthTexels::all<Makes> && DepthTexels::all<MakesMultiSample>);
static_assert(StencilTexels::all<Makes> && StencilTexels::all<MakesMultiSample>);
static_assert(ColorTexels::all<HasMake> && ColorTexels::all<HasMultiSampleMake>);
static_assert(DepthTexels::all<HasMake> && StencilTexels::all<HasMultiSampleMake>);
static_assert(!SamplerTexels::any<Makes> && !SamplerTexels::any<MakesMultiSample>);
static_assert(!SamplerTexels::any<HasMake> && !SamplerTexels::any<HasMultiSampleMake>);
static_assert(!OtherTypes::any<Makes> && !OtherTypes::any<MakesMultiSample>);
static_assert(!OtherTypes::any<HasMake> && !OtherTypes::any<HasMultiSampleMake>);

/// A renderbuffer as the base class makes it, with alloc() for the tests.
class Storage : public RBO {
public:
    using RBO::alloc;
};

/// What is recorded of a renderbuffer's storage.
Lines recorded(const RBO& renderbuffer) {
    return {std::to_string(renderbuffer.width()), std::to_string(renderbuffer.height()),
            std::to_string(renderbuffer.numSamples())};
}

/// The calls of an alloc() of renderbuffer \p name that makes its storage with that call.
Lines allocation(unsigned int name, const std::string& storage) {
    return {"glBindRenderbuffer(GL_RENDERBUFFER, " + std::to_string(name) + ")", storage,
            "glBindRenderbuffer(GL_RENDERBUFFER, 0)"};
}

/// A renderbuffer of name 1, whose making is not looked at. In the end nothing may be left.
class RboTrace : public testing::Test {
protected:
    RboTrace() : renderbuffer(std::make_unique<Storage>()) { gl.forget(); }
    ~RboTrace() override {
        renderbuffer.reset();
        EXPECT_THAT(gl.liveNames(), IsEmpty());
        gl.ignoreTheRest();
    }

    FakeGl gl;
    std::unique_ptr<Storage> renderbuffer;
};

TEST_F(RboTrace, FreshOneHasANameAndNoStorage) {
    const Storage fresh;
    EXPECT_GL_CALLS(gl, "glGenRenderbuffers(1, {2})");
    EXPECT_EQ(fresh.id(), 2u);
    EXPECT_EQ(recorded(fresh), (Lines{"0", "0", "1"}));
}

TEST_F(RboTrace, NoSampleAndOneSampleMakeStorageOfOneSample) {
    for (const unsigned int samples : {0u, 1u}) {
        renderbuffer->alloc(GL_RGBA8, 64, 32, samples);
        EXPECT_GL_CALLS(gl, allocation(1, "glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 64, "
                                          "32)"));
        EXPECT_EQ(recorded(*renderbuffer), (Lines{"64", "32", "1"}));
    }
}

TEST_F(RboTrace, SeveralSamplesMakeStorageOfThatMany) {
    for (const unsigned int samples : {2u, 4u, 1000u}) {
        const std::string number = std::to_string(samples);
        renderbuffer->alloc(GL_RGBA8, 64, 32, samples);
        EXPECT_GL_CALLS(gl, allocation(1, "glRenderbufferStorageMultisample(GL_RENDERBUFFER, " +
                                              number + ", GL_RGBA8, 64, 32)"));
        EXPECT_EQ(recorded(*renderbuffer), (Lines{"64", "32", number}));
    }
}

TEST_F(RboTrace, SizeAndSamplesFollowTheLastAllocation) {
    renderbuffer->alloc(GL_RGBA8, 64, 32, 4);
    renderbuffer->alloc(GL_RGB8, 7, 5, 1);
    EXPECT_EQ(recorded(*renderbuffer), (Lines{"7", "5", "1"}));
    renderbuffer->alloc(GL_RGB8, 0, 0, 2);
    EXPECT_EQ(recorded(*renderbuffer), (Lines{"0", "0", "2"}));
    EXPECT_EQ(renderbuffer->id(), 1u);
    EXPECT_EQ(gl.countOf("glGenRenderbuffers"), 0u);
    gl.forget();
}

TEST_F(RboTrace, AllocationLeavesNothingBoundWhateverWasBefore) {
    const Storage other;
    for (const unsigned int samples : {1u, 4u}) {
        other.bind();
        renderbuffer->alloc(GL_RGBA8, 64, 32, samples);
        GLint bound = -1;
        glGetIntegerv(GL_RENDERBUFFER_BINDING, &bound);
        EXPECT_EQ(bound, 0);
    }
    gl.forget();
}

TEST_F(RboTrace, BindAndUnbind) {
    renderbuffer->bind();
    renderbuffer->unbind();
    EXPECT_GL_CALLS(gl, "glBindRenderbuffer(GL_RENDERBUFFER, 1)",
                    "glBindRenderbuffer(GL_RENDERBUFFER, 0)");
}

TEST_F(RboTrace, CopyNamesTheSameAndKnowsTheSame) {
    renderbuffer->alloc(GL_RGBA8, 64, 32, 4);
    gl.forget();
    const Storage copy = *renderbuffer;
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(copy.id(), renderbuffer->id());
    EXPECT_EQ(recorded(copy), (Lines{"64", "32", "4"}));
}

TEST_F(RboTrace, AssignedCopyNamesTheSameAndForgetsItsOwnName) {
    renderbuffer->alloc(GL_RGBA8, 64, 32, 4);
    Storage copy;
    const unsigned int own = copy.id();
    gl.forget();
    copy = *renderbuffer;
    EXPECT_GL_CALLS(gl);
    EXPECT_EQ(copy.id(), renderbuffer->id());
    EXPECT_EQ(recorded(copy), (Lines{"64", "32", "4"}));
    glDeleteRenderbuffers(1, &own);
}

TEST_F(RboTrace, EveryCopyDeletesTheName) {
    { const Storage copy = *renderbuffer; }
    EXPECT_GL_CALLS(gl, "glDeleteRenderbuffers(1, {1})");
    renderbuffer.reset();
    EXPECT_GL_CALLS(gl, "glDeleteRenderbuffers(1, {1})");
    EXPECT_THAT(gl.doubleDeletes(), ElementsAre("renderbuffer 1"));
}

TEST_F(RboTrace, IsDeletedThroughItsBase) {
    std::unique_ptr<RBO> base = std::move(renderbuffer);
    base.reset();
    EXPECT_GL_CALLS(gl, "glDeleteRenderbuffers(1, {1})");
}

TEST_F(RboTrace, NameZeroIsDeletedLikeAnyOther) {
    gl.failToCreate(glad_glGenRenderbuffers);
    { const Storage nameless; }
    EXPECT_GL_CALLS(gl, "glGenRenderbuffers(1, {0})", "glDeleteRenderbuffers(1, {0})");
}

TEST_F(RboTrace, EveryFormatIsStoredWithOneSample) {
    const auto check = [this](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        gl.forget();
        const Renderbuffer<F> typed(64, 32);
        EXPECT_GL_CALLS(
            gl, "glGenRenderbuffers(1, {" + std::to_string(typed.id()) + "})",
            allocation(typed.id(), std::string("glRenderbufferStorage(GL_RENDERBUFFER, ") +
                                       texelRow<F>.internalFormatName + ", 64, 32)"));
        EXPECT_EQ(recorded(typed), (Lines{"64", "32", "1"}));
    };
    ColorTexels::each(check);
    DepthTexels::each(check);
    StencilTexels::each(check);
    gl.forget();
}

TEST_F(RboTrace, EveryFormatIsStoredWithSeveralSamples) {
    const auto check = [this](auto texel) {
        using F = typename decltype(texel)::type;
        SCOPED_TRACE(texelRow<F>.name);
        gl.forget();
        const MultiSampleRenderbuffer<F> typed(64, 32, 4);
        EXPECT_GL_CALLS(
            gl, "glGenRenderbuffers(1, {" + std::to_string(typed.id()) + "})",
            allocation(typed.id(),
                       std::string("glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, ") +
                           texelRow<F>.internalFormatName + ", 64, 32)"));
        EXPECT_EQ(recorded(typed), (Lines{"64", "32", "4"}));
    };
    ColorTexels::each(check);
    DepthTexels::each(check);
    StencilTexels::each(check);
    gl.forget();
}

TEST_F(RboTrace, MultiSampleRenderbufferOfOneSampleOrNoneHasOne) {
    for (const unsigned int samples : {0u, 1u}) {
        const MultiSampleRenderbuffer<depth24_stencil8> typed(8, 4, samples);
        EXPECT_EQ(typed.numSamples(), 1u);
        EXPECT_EQ(gl.countOf("glRenderbufferStorage"), 1u);
        EXPECT_EQ(gl.countOf("glRenderbufferStorageMultisample"), 0u);
        gl.forget();
    }
}

TEST_F(RboTrace, MakeTakesWhatTheConstructorTakes) {
    const auto one = Renderbuffer<depth16>::make(64, 32);
    EXPECT_EQ(gl.takeCalls().at(2),
              "glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT16, 64, 32)");
    const auto several = MultiSampleRenderbuffer<U8vec4>::make(65, 33, 2);
    EXPECT_EQ(gl.takeCalls().at(2),
              "glRenderbufferStorageMultisample(GL_RENDERBUFFER, 2, GL_RGBA8, 65, 33)");
    EXPECT_EQ(recorded(*one), (Lines{"64", "32", "1"}));
    EXPECT_EQ(recorded(*several), (Lines{"65", "33", "2"}));
}

TEST_F(RboTrace, MakeMakesOneAllocation) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    gl.setRecording(false);
    {
        const std::size_t before = allocationCount();
        const auto one = Renderbuffer<depth16>::make(64, 32);
        const auto several = MultiSampleRenderbuffer<depth16>::make(64, 32, 4);
        EXPECT_EQ(allocationCount() - before, 2u);
    }
    gl.setRecording(true);
}

TEST_F(RboTrace, SizesGoToGlAsTheyAre) {
    const Renderbuffer<U8vec4> typed(0x7FFFFFFF, 0xFFFFFFFF);
    EXPECT_EQ(gl.takeCalls().at(2),
              "glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 2147483647, -1)");
    EXPECT_EQ(recorded(typed), (Lines{"2147483647", "4294967295", "1"}));
}

TEST_F(RboTrace, EveryNameIsDeletedOnce) {
    {
        const auto shared = Renderbuffer<U8vec4>::make(4, 4);
        const auto holder = shared;
        const MultiSampleRenderbuffer<depth16> several(4, 4, 4);
        EXPECT_EQ(gl.liveNames().size(), 3u);
    }
    EXPECT_THAT(gl.liveNames(), ElementsAre("renderbuffer 1"));
    EXPECT_THAT(gl.doubleDeletes(), IsEmpty());
}

TEST(RboTraceWithoutFramebufferObjects, NoOperationDoesAnything) {
    FakeGl gl;
    gl.remove(glad_glGenRenderbuffers);
    gl.remove(glad_glDeleteRenderbuffers);
    gl.remove(glad_glBindRenderbuffer);
    gl.remove(glad_glRenderbufferStorage);
    gl.remove(glad_glRenderbufferStorageMultisample);
    {
        const Renderbuffer<U8vec4> one(64, 32);
        const MultiSampleRenderbuffer<U8vec4> several(64, 32, 4);
        one.bind();
        one.unbind();
        EXPECT_EQ(one.id(), 0u);
        EXPECT_EQ(recorded(one), (Lines{"0", "0", "1"}));
        EXPECT_EQ(recorded(several), (Lines{"0", "0", "1"}));
    }
    EXPECT_GL_CALLS(gl);
}

TEST_F(RboTrace, WithoutMultisamplingNoStorageIsMade) {
    gl.remove(glad_glRenderbufferStorageMultisample);
    renderbuffer->alloc(GL_RGBA8, 64, 32, 1);
    EXPECT_EQ(recorded(*renderbuffer), (Lines{"0", "0", "1"}));
    EXPECT_GL_CALLS(gl);
}

TEST_F(RboTrace, TakesAFormatOfOnesOwn) {
    const Renderbuffer<Packed565> typed(8, 4);
    EXPECT_EQ(gl.takeCalls().at(2), "glRenderbufferStorage(GL_RENDERBUFFER, GL_RGB5, 8, 4)");
}

} // namespace

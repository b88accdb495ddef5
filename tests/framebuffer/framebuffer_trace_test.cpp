// needs: private access

/// Framebuffer objects: bindings, attachments and draw mappings.

#include <vellis/framebuffer/framebuffer.hpp>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
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
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

static_assert(!std::is_polymorphic_v<Framebuffer>);
static_assert(std::is_copy_constructible_v<Framebuffer> && std::is_copy_assignable_v<Framebuffer>);
static_assert(Framebuffer::MAX_NUM_DRAW_MAPPINGS == 4);

// What attaches: the format decides, and nothing but images is one.

#define DETECT(Name, expression)                                                                   \
    template <class Image, class = void>                                                           \
    struct Name : std::false_type {};                                                              \
    template <class Image>                                                                         \
    struct Name<Image, std::void_t<decltype(std::declval<Framebuffer&>().expression)>>             \
        : std::true_type {}
DETECT(AttachesColor, attachFragmentOut(std::declval<const Image&>()));
DETECT(AttachesColorLevel, attachFragmentOut(std::declval<const Image&>(), 1u));
DETECT(AttachesColorAt, attachFragmentOut(0u, std::declval<const Image&>()));
DETECT(AttachesColorAtLevel, attachFragmentOut(0u, std::declval<const Image&>(), 1u));
DETECT(AttachesColors, attachFragmentOuts(std::declval<const Image&>()));
DETECT(AttachesColorsTo, attachFragmentOuts(std::declval<const std::vector<unsigned int>&>(),
                                            std::declval<const Image&>()));
DETECT(AttachesDepth, attachDepthbuffer(std::declval<const Image&>()));
DETECT(AttachesStencil, attachStencilbuffer(std::declval<const Image&>()));
DETECT(AttachesDepthStencil, attachDepthStencilbuffer(std::declval<const Image&>()));
#undef DETECT

template <class Image>
constexpr bool attachesAsColor = AttachesColor<Image>::value&& AttachesColorLevel<Image>::value&&
    AttachesColorAt<Image>::value&& AttachesColorAtLevel<Image>::value&&
        AttachesColors<Image>::value&& AttachesColorsTo<Image>::value;
template <class Image>
constexpr bool attachesAsNoColor =
    !AttachesColor<Image>::value && !AttachesColorLevel<Image>::value &&
    !AttachesColorAt<Image>::value && !AttachesColorAtLevel<Image>::value &&
    !AttachesColors<Image>::value && !AttachesColorsTo<Image>::value;

template <class F>
struct IsColorOnly {
    template <class Image>
    static constexpr bool holds =
        attachesAsColor<Image> && !AttachesDepth<Image>::value && !AttachesStencil<Image>::value &&
        !AttachesDepthStencil<Image>::value;
    static constexpr bool value =
        holds<Texture2D<F>> && holds<Renderbuffer<F>> && holds<MultiSampleRenderbuffer<F>>;
};
static_assert(ColorTexels::all<IsColorOnly>);

/// Whether images of a format attach to none but the points that are told.
template <class F, bool depth, bool stencil, bool depthStencil, bool asTexture>
struct AttachesOnlyTo {
    template <class Image>
    static constexpr bool holds = attachesAsNoColor<Image>&& AttachesDepth<Image>::value ==
                                  depth&& AttachesStencil<Image>::value ==
                                  stencil&& AttachesDepthStencil<Image>::value == depthStencil;
    static constexpr bool value = holds<Renderbuffer<F>> && holds<MultiSampleRenderbuffer<F>> &&
                                  (!asTexture || holds<Texture2D<F>>);
};
static_assert(AttachesOnlyTo<depth16, true, false, false, true>::value);
static_assert(AttachesOnlyTo<depth32, true, false, false, true>::value);
static_assert(AttachesOnlyTo<stencil8, false, true, false, false>::value);
static_assert(AttachesOnlyTo<stencil16, false, true, false, false>::value);
static_assert(AttachesOnlyTo<depth24_stencil8, false, false, true, true>::value);
static_assert(AttachesOnlyTo<sampler2d, false, false, false, true>::value);
static_assert(AttachesOnlyTo<int, false, false, false, true>::value);

// Only 2D textures are images, and plain numbers are none.
static_assert(attachesAsNoColor<Texture1D<U8vec4>> && attachesAsNoColor<Texture3D<U8vec4>>);
static_assert(attachesAsNoColor<RBO> && attachesAsNoColor<Texture> && attachesAsNoColor<glm::vec4>);

// What would attach an image that is deleted at once: a size in braces is no image.

#define BRACES(Name, expression)                                                                   \
    template <class AnyFramebuffer, class = void>                                                  \
    struct Name : std::false_type {};                                                              \
    template <class AnyFramebuffer>                                                                \
    struct Name<AnyFramebuffer, std::void_t<decltype(std::declval<AnyFramebuffer&>().expression)>> \
        : std::true_type {};                                                                       \
    static_assert(!Name<Framebuffer>::value)
BRACES(AttachesSizeAsDepth, attachDepthbuffer({640, 480}));
BRACES(AttachesSizeAsStencil, attachStencilbuffer({640, 480}));
BRACES(AttachesSizeAsDepthStencil, attachDepthStencilbuffer({640, 480}));
BRACES(AttachesSamplesAsDepth, attachDepthbuffer({640, 480, 4}));
BRACES(AttachesSamplesAsStencil, attachStencilbuffer({640, 480, 4}));
BRACES(AttachesSamplesAsDepthStencil, attachDepthStencilbuffer({640, 480, 4}));
#undef BRACES

/// One image of each class and format that the tests attach. The names follow one another.
struct Images {
    Texture2D<U8vec4> texture;                                        // 2
    Renderbuffer<U8vec4> renderbuffer{4, 4};                          // 3
    MultiSampleRenderbuffer<U8vec4> samples{4, 4, 4};                 // 4
    Renderbuffer<depth16> depth16Buffer{4, 4};                        // 5
    Renderbuffer<depth32> depth32Buffer{4, 4};                        // 6
    MultiSampleRenderbuffer<depth16> depth16Samples{4, 4, 4};         // 7
    MultiSampleRenderbuffer<depth32> depth32Samples{4, 4, 4};         // 8
    Texture2D<depth16> depth16Texture;                                // 9
    Texture2D<depth32> depth32Texture;                                // 10
    Renderbuffer<stencil8> stencil8Buffer{4, 4};                      // 11
    Renderbuffer<stencil16> stencil16Buffer{4, 4};                    // 12
    MultiSampleRenderbuffer<stencil8> stencil8Samples{4, 4, 4};       // 13
    MultiSampleRenderbuffer<stencil16> stencil16Samples{4, 4, 4};     // 14
    Renderbuffer<depth24_stencil8> packedBuffer{4, 4};                // 15
    MultiSampleRenderbuffer<depth24_stencil8> packedSamples{4, 4, 4}; // 16
    Texture2D<depth24_stencil8> packedTexture;                        // 17
    Texture2D<float> texture2;                                        // 18
    Renderbuffer<glm::vec4> renderbuffer2{4, 4};                      // 19
};

/// Framebuffer 1 and images, whose making is not looked at. In the end no name may be left, and
/// none deleted twice.
class FramebufferTrace : public testing::Test {
protected:
    FramebufferTrace() : framebuffer(Framebuffer::make()), images(std::make_unique<Images>()) {
        gl.forget();
    }
    ~FramebufferTrace() override {
        framebuffer.reset();
        images.reset();
        EXPECT_THAT(gl.liveNames(), IsEmpty());
        EXPECT_THAT(gl.doubleDeletes(), IsEmpty());
        gl.ignoreTheRest();
    }

    /// Binds two framebuffers that others made.
    void bindOthers(unsigned int draw, unsigned int read) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, draw);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, read);
        gl.forget();
    }

    /// What is bound for drawing and for reading.
    std::pair<int, int> bound() {
        int draw = -1;
        int read = -1;
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &draw);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &read);
        gl.forget();
        return {draw, read};
    }

    FakeGl gl;
    std::shared_ptr<Framebuffer> framebuffer;
    std::unique_ptr<Images> images;
};

using Names = std::pair<int, int>;
const Lines saving = {"glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, out)",
                      "glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, out)"};

TEST_F(FramebufferTrace, MakeGeneratesANameAndNothingElse) {
    const auto other = Framebuffer::make();
    EXPECT_GL_CALLS(gl, "glGenFramebuffers(1, {20})");
    EXPECT_EQ(other->id(), 20u);
    EXPECT_FALSE(other->external_);
    EXPECT_EQ(other->target_, unsigned(GL_FRAMEBUFFER));
    EXPECT_EQ(other->savedBindings_.value[0], 0);
    EXPECT_EQ(other->savedBindings_.value[1], 0);
    EXPECT_FALSE(other->restoreOnDestruction_);
}

TEST_F(FramebufferTrace, MakeMakesOneAllocation) {
    SKIP_WITHOUT_LIBRARY_ALLOCATIONS();
    gl.setRecording(false);
    {
        const std::size_t before = allocationCount();
        const auto other = Framebuffer::make();
        EXPECT_EQ(allocationCount() - before, 1u);
    }
    gl.setRecording(true);
}

TEST_F(FramebufferTrace, PlainObjectIsLikeAMadeOne) {
    { const Framebuffer plain; }
    EXPECT_GL_CALLS(gl, "glGenFramebuffers(1, {20})", "glDeleteFramebuffers(1, {20})");
}

TEST_F(FramebufferTrace, NullMakesNoCallAndDeletesNothing) {
    {
        const auto null = Framebuffer::makeNull();
        EXPECT_EQ(null->id(), 0u);
        EXPECT_TRUE(null->external_);
        EXPECT_EQ(null->target_, unsigned(GL_FRAMEBUFFER));
    }
    EXPECT_GL_CALLS(gl);
}

TEST_F(FramebufferTrace, NameOfSomebodyElseIsNotDeleted) {
    { EXPECT_EQ(Framebuffer(7).id(), 7u); }
    EXPECT_GL_CALLS(gl);
}

TEST_F(FramebufferTrace, CopySharesTheNameAndDeletesItAgain) {
    {
        const Framebuffer copy = *framebuffer;
        EXPECT_EQ(copy.id(), framebuffer->id());
        EXPECT_GL_CALLS(gl);
    }
    EXPECT_GL_CALLS(gl, "glDeleteFramebuffers(1, {1})");
    framebuffer.reset();
    EXPECT_GL_CALLS(gl, "glDeleteFramebuffers(1, {1})");
    EXPECT_THAT(gl.doubleDeletes(), ElementsAre("framebuffer 1"));
    gl.forgetDeletedNames();
}

TEST_F(FramebufferTrace, CopyKnowsWhatTheOriginalSavedAndMapped) {
    bindOthers(5, 6);
    framebuffer->bindToRead();
    framebuffer->bind();
    framebuffer->resetDrawMappings();
    framebuffer->addDrawMapping(2);
    framebuffer->bindToDraw();
    gl.forget();
    Framebuffer copy = *framebuffer;
    EXPECT_EQ(copy.target_, unsigned(GL_DRAW_FRAMEBUFFER));
    EXPECT_EQ(copy.getDrawMapping(2), 2u);
    copy.unbind();
    EXPECT_EQ(bound(), Names(5, 1)); // what was bound when the original was bound
    copy.external_ = true;           // the original deletes the name
}

TEST_F(FramebufferTrace, AssignedCopyNamesTheSameAndForgetsItsOwnName) {
    auto other = Framebuffer::make();
    gl.forget();
    *other = *framebuffer;
    EXPECT_EQ(other->id(), framebuffer->id());
    other.reset();
    EXPECT_GL_CALLS(gl, "glDeleteFramebuffers(1, {1})");
    EXPECT_THAT(gl.liveNames(), Contains("framebuffer 20"));
    const GLuint own = 20;
    glDeleteFramebuffers(1, &own);
    framebuffer->external_ = true; // its name has gone
}

TEST_F(FramebufferTrace, CopyOfTheNullFramebufferDeletesNothing) {
    { const Framebuffer copy = *Framebuffer::makeNull(); }
    EXPECT_GL_CALLS(gl);
}

TEST_F(FramebufferTrace, DestructionDeletesAndRestoresNothing) {
    bindOthers(5, 6);
    framebuffer->bind();
    gl.forget();
    framebuffer.reset();
    EXPECT_GL_CALLS(gl, "glDeleteFramebuffers(1, {1})");
    EXPECT_EQ(bound(), Names(0, 0));
}

TEST_F(FramebufferTrace, DestructionRestoresTheSavedBindingsWhereThatIsAskedFor) {
    bindOthers(5, 6);
    framebuffer->bind();
    framebuffer->restoreOnDestruction_ = true;
    gl.forget();
    framebuffer.reset();
    EXPECT_GL_CALLS(gl, "glDeleteFramebuffers(1, {1})", "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 5)",
                    "glBindFramebuffer(GL_READ_FRAMEBUFFER, 6)");
}

TEST_F(FramebufferTrace, BindSavesThenBindsForBoth) {
    framebuffer->bind();
    EXPECT_GL_CALLS(gl, saving, "glBindFramebuffer(GL_FRAMEBUFFER, 1)");
    EXPECT_EQ(framebuffer->target_, unsigned(GL_FRAMEBUFFER));
}

TEST_F(FramebufferTrace, BindToDrawAndToReadSaveNothing) {
    framebuffer->bindToDraw();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 1)");
    EXPECT_EQ(framebuffer->target_, unsigned(GL_DRAW_FRAMEBUFFER));
    framebuffer->bindToRead();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_READ_FRAMEBUFFER, 1)");
    EXPECT_EQ(framebuffer->target_, unsigned(GL_READ_FRAMEBUFFER));
    framebuffer->bind();
    EXPECT_EQ(framebuffer->target_, unsigned(GL_FRAMEBUFFER));
    gl.forget();
}

TEST_F(FramebufferTrace, StaticBindsTakeANameAndTouchNoObject) {
    framebuffer->bindToRead();
    gl.forget();
    Framebuffer::bind(7);
    Framebuffer::bindToDraw(8);
    Framebuffer::bindToRead(9);
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_FRAMEBUFFER, 7)",
                    "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 8)",
                    "glBindFramebuffer(GL_READ_FRAMEBUFFER, 9)");
    EXPECT_EQ(framebuffer->target_, unsigned(GL_READ_FRAMEBUFFER));
}

TEST_F(FramebufferTrace, UnbindRestoresBindingsThatDiffer) {
    bindOthers(5, 6);
    framebuffer->bind();
    EXPECT_EQ(bound(), Names(1, 1));
    framebuffer->unbind();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 5)",
                    "glBindFramebuffer(GL_READ_FRAMEBUFFER, 6)");
    EXPECT_EQ(bound(), Names(5, 6));
}

TEST_F(FramebufferTrace, UnbindRestoresEqualBindingsInOneCall) {
    bindOthers(5, 5);
    framebuffer->bind();
    gl.forget();
    framebuffer->unbind();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_FRAMEBUFFER, 5)");
}

TEST_F(FramebufferTrace, UnbindWithoutABindBindsTheDefaultFramebuffer) {
    bindOthers(5, 6);
    framebuffer->bindToRead();
    gl.forget();
    framebuffer->unbind();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_FRAMEBUFFER, 0)");
    EXPECT_EQ(framebuffer->target_, unsigned(GL_FRAMEBUFFER));
}

TEST_F(FramebufferTrace, UnbindTwiceRestoresTheSameTwice) {
    bindOthers(5, 5);
    framebuffer->bind();
    framebuffer->unbind();
    gl.forget();
    framebuffer->unbind();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_FRAMEBUFFER, 5)");
}

TEST_F(FramebufferTrace, BindsNestAcrossObjects) {
    const auto inner = Framebuffer::make();
    bindOthers(5, 6);
    framebuffer->bind();
    inner->bind();
    inner->unbind();
    EXPECT_EQ(bound(), Names(1, 1));
    framebuffer->unbind();
    EXPECT_EQ(bound(), Names(5, 6));
}

TEST_F(FramebufferTrace, NullFramebufferBindsZeroAndRestores) {
    const auto null = Framebuffer::makeNull();
    bindOthers(5, 6);
    null->bind();
    EXPECT_GL_CALLS(gl, saving, "glBindFramebuffer(GL_FRAMEBUFFER, 0)");
    null->unbind();
    EXPECT_EQ(bound(), Names(5, 6));
}

TEST_F(FramebufferTrace, UnbindToDrawAndToReadGoByTheRecordedTarget) {
    using Operation = void (Framebuffer::*)() const;
    const std::vector<Operation> unbinds = {&Framebuffer::unbindToDraw, &Framebuffer::unbindToRead};
    const std::vector<std::pair<Operation, std::string>> binds = {
        {&Framebuffer::bind, "GL_FRAMEBUFFER"},
        {&Framebuffer::bindToDraw, "GL_DRAW_FRAMEBUFFER"},
        {&Framebuffer::bindToRead, "GL_READ_FRAMEBUFFER"}};
    for (const Operation unbind : unbinds) {
        for (const auto& [bind, target] : binds) {
            ((*framebuffer).*bind)();
            gl.forget();
            ((*framebuffer).*unbind)();
            EXPECT_GL_CALLS(gl, "glBindFramebuffer(" + target + ", 0)");
            EXPECT_EQ(framebuffer->target_, unsigned(GL_FRAMEBUFFER));
        }
    }
}

TEST_F(FramebufferTrace, UnbindToDrawOfOneThatWasNotBoundUnbindsBoth) {
    bindOthers(5, 6);
    framebuffer->unbindToDraw();
    EXPECT_GL_CALLS(gl, "glBindFramebuffer(GL_FRAMEBUFFER, 0)");
}

// isBound() asks GL for the binding point that the framebuffer was last bound to.

TEST_F(FramebufferTrace, IsBoundAsksForTheDrawBindingAfterBindAndBindToDraw) {
    const std::string query = "glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, out)";
    EXPECT_FALSE(framebuffer->isBound());
    EXPECT_GL_CALLS(gl, query);
    framebuffer->bind();
    gl.forget();
    EXPECT_TRUE(framebuffer->isBound());
    EXPECT_GL_CALLS(gl, query);
    framebuffer->bindToDraw();
    bindOthers(1, 6);
    EXPECT_TRUE(framebuffer->isBound());
    EXPECT_GL_CALLS(gl, query);
    bindOthers(5, 1);
    EXPECT_FALSE(framebuffer->isBound());
    gl.forget();
}

TEST_F(FramebufferTrace, IsBoundAsksForTheReadBindingAfterBindToRead) {
    framebuffer->bindToRead();
    gl.forget();
    EXPECT_TRUE(framebuffer->isBound());
    EXPECT_GL_CALLS(gl, "glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, out)");
    bindOthers(1, 6);
    EXPECT_FALSE(framebuffer->isBound());
    gl.forget();
}

TEST_F(FramebufferTrace, IsBoundAfterTheStaticBindToReadGoesByTheDrawBinding) {
    Framebuffer::bindToRead(framebuffer->id());
    EXPECT_FALSE(framebuffer->isBound());
    Framebuffer::bindToDraw(framebuffer->id());
    EXPECT_TRUE(framebuffer->isBound());
    gl.forget();
}

TEST_F(FramebufferTrace, IsBoundEndsWithUnbind) {
    framebuffer->bind();
    framebuffer->unbind();
    EXPECT_FALSE(framebuffer->isBound());
    framebuffer->bindToRead();
    framebuffer->unbindToRead();
    EXPECT_FALSE(framebuffer->isBound());
    gl.forget();
}

TEST_F(FramebufferTrace, NullFramebufferIsBoundWhereNoneIs) {
    const auto null = Framebuffer::makeNull();
    EXPECT_TRUE(null->isBound());
    framebuffer->bind();
    EXPECT_FALSE(null->isBound());
    gl.forget();
}

TEST_F(FramebufferTrace, IsBoundAtAnUnknownTargetAsksNothingAndComparesWithZero) {
    const auto null = Framebuffer::makeNull();
    framebuffer->target_ = GL_RENDERBUFFER;
    null->target_ = GL_RENDERBUFFER;
    EXPECT_FALSE(framebuffer->isBound());
    EXPECT_TRUE(null->isBound());
    EXPECT_GL_CALLS(gl);
}

/// A way to bind, the target that attachments then go to, and the buffers that a colour image
/// becomes.
struct BindingRow {
    const char* target;
    void (Framebuffer::*bind)() const;
    Lines selection;
};

const std::string drawsToIt = "glDrawBuffer(GL_COLOR_ATTACHMENT0)";
const std::string readsFromIt = "glReadBuffer(GL_COLOR_ATTACHMENT0)";
const std::vector<BindingRow> bindings = {
    {"GL_FRAMEBUFFER", &Framebuffer::bind, {drawsToIt, readsFromIt}},
    {"GL_DRAW_FRAMEBUFFER", &Framebuffer::bindToDraw, {drawsToIt}},
    {"GL_READ_FRAMEBUFFER", &Framebuffer::bindToRead, {readsFromIt}}};

/// An operation that attaches or detaches, and its calls with `@` for the target.
struct EditRow {
    const char* name;
    std::function<void(Framebuffer&, const Images&)> edit;
    Lines calls;
    bool selects = false; ///< whether draw and read buffers are chosen then
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const EditRow& row, std::ostream* out) {
    *out << row.name;
}

/// The call that attaches a 2D texture, and the one that attaches a renderbuffer; 0 detaches.
std::string texture(const std::string& point, int name, int level = 0) {
    return "glFramebufferTexture2D(@, GL_" + point + ", GL_TEXTURE_2D, " + std::to_string(name) +
           ", " + std::to_string(level) + ")";
}
std::string renderbuffer(const std::string& point, int name) {
    return "glFramebufferRenderbuffer(@, GL_" + point + ", GL_RENDERBUFFER, " +
           std::to_string(name) + ")";
}

const Lines everythingDetached = {
    renderbuffer("COLOR_ATTACHMENT0", 0),       renderbuffer("COLOR_ATTACHMENT1", 0),
    renderbuffer("COLOR_ATTACHMENT2", 0),       renderbuffer("COLOR_ATTACHMENT3", 0),
    renderbuffer("COLOR_ATTACHMENT4", 0),       renderbuffer("COLOR_ATTACHMENT5", 0),
    renderbuffer("COLOR_ATTACHMENT6", 0),       renderbuffer("COLOR_ATTACHMENT7", 0),
    renderbuffer("DEPTH_ATTACHMENT", 0),        renderbuffer("STENCIL_ATTACHMENT", 0),
    renderbuffer("DEPTH_STENCIL_ATTACHMENT", 0)};

std::string withTarget(std::string line, const std::string& target) {
    const std::size_t mark = line.find('@');
    return mark == std::string::npos ? line : line.replace(mark, 1, target);
}

class FramebufferEditTrace : public FramebufferTrace, public testing::WithParamInterface<EditRow> {
protected:
    /// Edits, and compares the calls with what is expected while bound to \p target.
    void expectEdit(const std::string& target, const Lines& selection) {
        gl.forget();
        GetParam().edit(*framebuffer, *images);
        Lines expected;
        for (const std::string& call : GetParam().calls)
            expected.push_back(withTarget(call, target));
        EXPECT_GL_CALLS(gl, expected, GetParam().selects ? selection : Lines{});
    }
};

TEST_P(FramebufferEditTrace, WorksOnTheTargetLastBoundTo) {
    for (const BindingRow& binding : bindings) {
        ((*framebuffer).*binding.bind)();
        expectEdit(binding.target, binding.selection);
    }
    framebuffer->unbindToRead();
    expectEdit("GL_FRAMEBUFFER", bindings[0].selection);
    framebuffer->target_ = 0;
    expectEdit("0x0", {});
}

using Fb = Framebuffer;
using Im = Images;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Attachments, FramebufferEditTrace, testing::Values(
    EditRow{"Texture", [](Fb& f, const Im& i) { f.attachFragmentOut(i.texture); }, {texture("COLOR_ATTACHMENT0", 2)}, true},
    EditRow{"TextureLevel", [](Fb& f, const Im& i) { f.attachFragmentOut(i.texture, 3); }, {texture("COLOR_ATTACHMENT0", 2, 3)}, true},
    EditRow{"Renderbuffer", [](Fb& f, const Im& i) { f.attachFragmentOut(i.renderbuffer); }, {renderbuffer("COLOR_ATTACHMENT0", 3)}, true},
    EditRow{"RenderbufferLevel", [](Fb& f, const Im& i) { f.attachFragmentOut(i.renderbuffer, 3); }, {renderbuffer("COLOR_ATTACHMENT0", 3)}, true},
    EditRow{"Samples", [](Fb& f, const Im& i) { f.attachFragmentOut(i.samples); }, {renderbuffer("COLOR_ATTACHMENT0", 4)}, true},
    EditRow{"TextureAt", [](Fb& f, const Im& i) { f.attachFragmentOut(2, i.texture); }, {texture("COLOR_ATTACHMENT2", 2)}},
    EditRow{"TextureAtLevel", [](Fb& f, const Im& i) { f.attachFragmentOut(7, i.texture, 1); }, {texture("COLOR_ATTACHMENT7", 2, 1)}},
    EditRow{"TextureAtZero", [](Fb& f, const Im& i) { f.attachFragmentOut(0, i.texture); }, {texture("COLOR_ATTACHMENT0", 2)}},
    EditRow{"RenderbufferAt", [](Fb& f, const Im& i) { f.attachFragmentOut(1, i.renderbuffer); }, {renderbuffer("COLOR_ATTACHMENT1", 3)}},
    EditRow{"SamplesAt", [](Fb& f, const Im& i) { f.attachFragmentOut(3, i.samples, 9); }, {renderbuffer("COLOR_ATTACHMENT3", 4)}},
    EditRow{"ColorIndexBeyondAll", [](Fb& f, const Im& i) { f.attachFragmentOut(16, i.texture); f.attachFragmentOut(31, i.renderbuffer); },
            {texture("COLOR_ATTACHMENT16", 2), renderbuffer("COLOR_ATTACHMENT31", 3)}},
    EditRow{"IndexBeyondGlsEnumerators", [](Fb& f, const Im& i) {
                for (const unsigned int index : {32u, 33u, 64u, 0xFFFFFFFFu}) {
                    f.attachFragmentOut(index, i.texture);
                    f.attachFragmentOut(index, i.renderbuffer, 1);
                    f.attachFragmentOut(index, i.samples);
                }
            }, {}},
    EditRow{"Depth16Renderbuffer", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth16Buffer); }, {renderbuffer("DEPTH_ATTACHMENT", 5)}},
    EditRow{"Depth32Renderbuffer", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth32Buffer); }, {renderbuffer("DEPTH_ATTACHMENT", 6)}},
    EditRow{"Depth16Samples", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth16Samples); }, {renderbuffer("DEPTH_ATTACHMENT", 7)}},
    EditRow{"Depth32Samples", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth32Samples); }, {renderbuffer("DEPTH_ATTACHMENT", 8)}},
    EditRow{"Depth16Texture", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth16Texture); }, {texture("DEPTH_ATTACHMENT", 9)}},
    EditRow{"Depth16TextureLevel", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth16Texture, 1); }, {texture("DEPTH_ATTACHMENT", 9, 1)}},
    EditRow{"Depth32Texture", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth32Texture); }, {texture("DEPTH_ATTACHMENT", 10)}},
    EditRow{"Depth32TextureLevel", [](Fb& f, const Im& i) { f.attachDepthbuffer(i.depth32Texture, 2); }, {texture("DEPTH_ATTACHMENT", 10, 2)}},
    EditRow{"Stencil8Renderbuffer", [](Fb& f, const Im& i) { f.attachStencilbuffer(i.stencil8Buffer); }, {renderbuffer("STENCIL_ATTACHMENT", 11)}},
    EditRow{"Stencil16Renderbuffer", [](Fb& f, const Im& i) { f.attachStencilbuffer(i.stencil16Buffer); }, {renderbuffer("STENCIL_ATTACHMENT", 12)}},
    EditRow{"Stencil8Samples", [](Fb& f, const Im& i) { f.attachStencilbuffer(i.stencil8Samples); }, {renderbuffer("STENCIL_ATTACHMENT", 13)}},
    EditRow{"Stencil16Samples", [](Fb& f, const Im& i) { f.attachStencilbuffer(i.stencil16Samples); }, {renderbuffer("STENCIL_ATTACHMENT", 14)}},
    EditRow{"PackedRenderbuffer", [](Fb& f, const Im& i) { f.attachDepthStencilbuffer(i.packedBuffer); }, {renderbuffer("DEPTH_STENCIL_ATTACHMENT", 15)}},
    EditRow{"PackedSamples", [](Fb& f, const Im& i) { f.attachDepthStencilbuffer(i.packedSamples); }, {renderbuffer("DEPTH_STENCIL_ATTACHMENT", 16)}},
    EditRow{"PackedTexture", [](Fb& f, const Im& i) { f.attachDepthStencilbuffer(i.packedTexture); }, {texture("DEPTH_STENCIL_ATTACHMENT", 17)}},
    EditRow{"PackedTextureLevel", [](Fb& f, const Im& i) { f.attachDepthStencilbuffer(i.packedTexture, 4); }, {texture("DEPTH_STENCIL_ATTACHMENT", 17, 4)}}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(AttachmentsByName, FramebufferEditTrace, testing::Values(
    EditRow{"Texture", [](Fb& f, const Im&) { f.attachTexture2D(41, 1); }, {texture("COLOR_ATTACHMENT0", 41, 1)}, true},
    EditRow{"TextureAt", [](Fb& f, const Im&) { f.attachTexture2D(5, 41, 1); }, {texture("COLOR_ATTACHMENT5", 41, 1)}},
    EditRow{"Renderbuffer", [](Fb& f, const Im&) { f.attachRenderbuffer(41); }, {renderbuffer("COLOR_ATTACHMENT0", 41)}, true},
    EditRow{"RenderbufferAt", [](Fb& f, const Im&) { f.attachRenderbuffer(5, 41); }, {renderbuffer("COLOR_ATTACHMENT5", 41)}},
    EditRow{"DepthTexture", [](Fb& f, const Im&) { f.attachDepthTexture(41, 1); }, {texture("DEPTH_ATTACHMENT", 41, 1)}},
    EditRow{"Depthbuffer", [](Fb& f, const Im&) { f.attachDepthbuffer(41); }, {renderbuffer("DEPTH_ATTACHMENT", 41)}},
    EditRow{"DepthStencilTexture", [](Fb& f, const Im&) { f.attachDepthStencilTexture(41, 1); }, {texture("DEPTH_STENCIL_ATTACHMENT", 41, 1)}},
    EditRow{"DepthStencilbuffer", [](Fb& f, const Im&) { f.attachDepthStencilbuffer(41); }, {renderbuffer("DEPTH_STENCIL_ATTACHMENT", 41)}}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Detachments, FramebufferEditTrace, testing::Values(
    EditRow{"FragmentOut", [](Fb& f, const Im&) { f.detachFragmentOut(0); f.detachFragmentOut(7); },
            {renderbuffer("COLOR_ATTACHMENT0", 0), renderbuffer("COLOR_ATTACHMENT7", 0)}},
    EditRow{"FragmentOutsIsOne", [](Fb& f, const Im&) { f.detachFragmentOuts(3); }, {renderbuffer("COLOR_ATTACHMENT3", 0)}},
    EditRow{"Depth", [](Fb& f, const Im&) { f.detachDepthbuffer(); }, {renderbuffer("DEPTH_ATTACHMENT", 0)}},
    EditRow{"Stencil", [](Fb& f, const Im&) { f.detachStencilbuffer(); }, {renderbuffer("STENCIL_ATTACHMENT", 0)}},
    EditRow{"DepthStencil", [](Fb& f, const Im&) { f.detachDepthStencilbuffer(); }, {renderbuffer("DEPTH_STENCIL_ATTACHMENT", 0)}},
    EditRow{"AllInElevenCalls", [](Fb& f, const Im&) { f.detachAll(); }, everythingDetached},
    EditRow{"Reset", [](Fb& f, const Im&) { f.reset(); }, everythingDetached}),
    [](const auto& row) { return std::string(row.param.name); });

// The form for several images: mappings of i to i, whatever mappings were before.

const std::string drawsNowhere = "glDrawBuffers(4, {GL_NONE, GL_NONE, GL_NONE, GL_NONE})";

INSTANTIATE_TEST_SUITE_P(Mapped, FramebufferEditTrace, testing::Values(
    EditRow{"NoImage", [](Fb& f, const Im&) { f.attachFragmentOuts(); }, {drawsNowhere}},
    EditRow{"OneImage", [](Fb& f, const Im& i) { f.attachFragmentOuts(i.samples); },
            {renderbuffer("COLOR_ATTACHMENT0", 4), "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_NONE, GL_NONE, GL_NONE})"}},
    EditRow{"ImagesOfAllClasses", [](Fb& f, const Im& i) { f.attachFragmentOuts(i.texture, i.renderbuffer, i.texture2); },
            {texture("COLOR_ATTACHMENT0", 2), renderbuffer("COLOR_ATTACHMENT1", 3), texture("COLOR_ATTACHMENT2", 18),
             "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2, GL_NONE})"}},
    EditRow{"AsManyImagesAsMappings", [](Fb& f, const Im& i) { f.attachFragmentOuts(i.texture, i.texture2, i.renderbuffer, i.renderbuffer2); },
            {texture("COLOR_ATTACHMENT0", 2), texture("COLOR_ATTACHMENT1", 18), renderbuffer("COLOR_ATTACHMENT2", 3), renderbuffer("COLOR_ATTACHMENT3", 19),
             "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2, GL_COLOR_ATTACHMENT3})"}},
    EditRow{"MoreImagesThanMappings", [](Fb& f, const Im& i) { f.attachFragmentOuts(i.texture, i.texture2, i.renderbuffer, i.renderbuffer2, i.texture, i.samples); },
            {texture("COLOR_ATTACHMENT0", 2), texture("COLOR_ATTACHMENT1", 18), renderbuffer("COLOR_ATTACHMENT2", 3), renderbuffer("COLOR_ATTACHMENT3", 19),
             "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2, GL_COLOR_ATTACHMENT3})"}},
    EditRow{"OutputsInAnyOrder", [](Fb& f, const Im& i) { f.attachFragmentOuts({2, 0}, i.texture, i.renderbuffer); },
            {texture("COLOR_ATTACHMENT2", 2), renderbuffer("COLOR_ATTACHMENT0", 3), "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_NONE, GL_COLOR_ATTACHMENT2, GL_NONE})"}},
    EditRow{"FewerOutputsThanImages", [](Fb& f, const Im& i) { f.attachFragmentOuts({3}, i.texture, i.renderbuffer); },
            {texture("COLOR_ATTACHMENT3", 2), "glDrawBuffers(4, {GL_NONE, GL_NONE, GL_NONE, GL_COLOR_ATTACHMENT3})"}},
    EditRow{"MoreOutputsThanImages", [](Fb& f, const Im& i) { f.attachFragmentOuts({1, 2, 3}, i.samples); },
            {renderbuffer("COLOR_ATTACHMENT1", 4), "glDrawBuffers(4, {GL_NONE, GL_COLOR_ATTACHMENT1, GL_NONE, GL_NONE})"}},
    EditRow{"NoOutputs", [](Fb& f, const Im& i) { f.attachFragmentOuts(std::vector<unsigned int>(), i.texture); }, {drawsNowhere}},
    EditRow{"OutputsWithoutImages", [](Fb& f, const Im&) { f.attachFragmentOuts(std::vector<unsigned int>{0, 1}); }, {drawsNowhere}},
    EditRow{"OutputsBeyondTheMappings", [](Fb& f, const Im& i) { f.attachFragmentOuts({4, 1, 0xFFFFFFFF}, i.texture, i.renderbuffer, i.samples); },
            {renderbuffer("COLOR_ATTACHMENT1", 3), "glDrawBuffers(4, {GL_NONE, GL_COLOR_ATTACHMENT1, GL_NONE, GL_NONE})"}},
    EditRow{"OutputTwiceKeepsTheLaterImage", [](Fb& f, const Im& i) { f.attachFragmentOuts({1, 1}, i.texture, i.renderbuffer); },
            {texture("COLOR_ATTACHMENT1", 2), renderbuffer("COLOR_ATTACHMENT1", 3), "glDrawBuffers(4, {GL_NONE, GL_COLOR_ATTACHMENT1, GL_NONE, GL_NONE})"}}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST_F(FramebufferTrace, AttachByIndexMakesNoMapping) {
    framebuffer->resetDrawMappings();
    framebuffer->attachFragmentOut(1, images->texture);
    framebuffer->attachFragmentOut(images->texture);
    gl.forget();
    framebuffer->applyDrawMappings();
    EXPECT_GL_CALLS(gl, drawsNowhere);
}

TEST_F(FramebufferTrace, EveryFormForSeveralImagesDropsTheMappingsOfBefore) {
    framebuffer->attachFragmentOuts({3}, images->texture);
    gl.forget();
    framebuffer->attachFragmentOuts(images->texture);
    EXPECT_EQ(gl.takeCalls().back(),
              "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_NONE, GL_NONE, GL_NONE})");
    framebuffer->attachFragmentOuts({2}, images->texture);
    EXPECT_EQ(gl.takeCalls().back(),
              "glDrawBuffers(4, {GL_NONE, GL_NONE, GL_COLOR_ATTACHMENT2, GL_NONE})");
    framebuffer->attachFragmentOuts();
    EXPECT_GL_CALLS(gl, drawsNowhere);
}

TEST_F(FramebufferTrace, MappingsAreAppliedAllFour) {
    framebuffer->resetDrawMappings();
    framebuffer->addDrawMapping(0);
    framebuffer->addDrawMapping(2);
    EXPECT_GL_CALLS(gl);
    framebuffer->applyDrawMappings();
    EXPECT_GL_CALLS(
        gl, "glDrawBuffers(4, {GL_COLOR_ATTACHMENT0, GL_NONE, GL_COLOR_ATTACHMENT2, GL_NONE})");
    framebuffer->resetDrawMappings();
    framebuffer->applyDrawMappings();
    EXPECT_GL_CALLS(gl, drawsNowhere);
}

TEST_F(FramebufferTrace, MappingIsReadBackAsItsIndex) {
    framebuffer->resetDrawMappings();
    for (unsigned int i = 0; i < Framebuffer::MAX_NUM_DRAW_MAPPINGS; ++i) {
        EXPECT_EQ(framebuffer->getDrawMapping(i), 0u - GL_COLOR_ATTACHMENT0);
        framebuffer->addDrawMapping(i);
        EXPECT_EQ(framebuffer->getDrawMapping(i), i);
    }
}

TEST_F(FramebufferTrace, MappingBeyondTheTableTouchesNothing) {
    const auto target = framebuffer->target_;
    for (const unsigned int i : {4u, 5u, 0xFFFFFFFFu}) {
        framebuffer->addDrawMapping(i);
        EXPECT_EQ(framebuffer->getDrawMapping(i), 0u - GL_COLOR_ATTACHMENT0);
    }
    EXPECT_EQ(framebuffer->target_, target);
    framebuffer->applyDrawMappings();
    EXPECT_GL_CALLS(gl, drawsNowhere);
}

TEST_F(FramebufferTrace, NameThatGlRefusedToMakeIsDeletedAsZero) {
    gl.failToCreate(glad_glGenFramebuffers);
    { EXPECT_EQ(Framebuffer::make()->id(), 0u); }
    EXPECT_GL_CALLS(gl, "glGenFramebuffers(1, {0})", "glDeleteFramebuffers(1, {0})");
}

TEST_F(FramebufferTrace, BufferIsSelectedByTheEnumerationsOfBuffers) {
    Framebuffer::setDrawBuffer(Framebuffer::BufferID::COLOR_ATTACHMENT0);
    Framebuffer::setReadBuffer(Framebuffer::BufferID::COLOR_ATTACHMENT0);
    EXPECT_GL_CALLS(gl, drawsToIt, readsFromIt);
}

TEST(FramebufferTraceWithoutFramebufferObjects, NoOperationDoesAnything) {
    FakeGl gl;
    gl.remove(glad_glGenFramebuffers);
    gl.remove(glad_glDeleteFramebuffers);
    gl.remove(glad_glBindFramebuffer);
    gl.remove(glad_glFramebufferTexture2D);
    gl.remove(glad_glFramebufferRenderbuffer);
    auto images = std::make_unique<Images>();
    auto framebuffer = Framebuffer::make();
    EXPECT_EQ(framebuffer->id(), 0u);
    gl.forget();
    framebuffer->bind();
    framebuffer->bindToDraw();
    framebuffer->attachFragmentOut(images->texture);
    framebuffer->attachFragmentOut(images->renderbuffer);
    framebuffer->unbindToDraw();
    framebuffer->bindToRead();
    framebuffer->attachFragmentOut(1, images->samples);
    framebuffer->unbindToRead();
    framebuffer->attachFragmentOuts(images->texture, images->renderbuffer);
    framebuffer->attachFragmentOuts({0, 1}, images->texture, images->renderbuffer);
    framebuffer->attachDepthbuffer(images->depth16Texture);
    framebuffer->attachStencilbuffer(images->stencil8Buffer);
    framebuffer->attachDepthStencilbuffer(images->packedSamples);
    framebuffer->detachAll();
    framebuffer->unbind();
    EXPECT_FALSE(framebuffer->isBound());
    EXPECT_FALSE(Framebuffer(7).isBound());
    EXPECT_TRUE(Framebuffer::makeNull()->isBound());
    EXPECT_TRUE(Framebuffer(*Framebuffer::makeNull()).isBound());
    Framebuffer::bind(1);
    Framebuffer::bindToDraw(1);
    Framebuffer::bindToRead(1);
    framebuffer.reset();
    EXPECT_GL_CALLS(gl);
    images.reset();
    gl.ignoreTheRest();
}

} // namespace

/// The state of the fragment pipeline on a driver: what is drawn is what the settings say.

#include <vellis/framebuffer/framebuffer.hpp>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <glm/common.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/pixels.hpp"
#include "support/render_test.hpp"

namespace {

using namespace vellis;
using namespace vellis::test;
using Factor = Framebuffer::BlendingFactor;
using Equation = Framebuffer::BlendEquation;
using Comparator = Framebuffer::FragmentComparator;
using Action = Framebuffer::StencilAction;
using Operator = Framebuffer::LogicOperator;
using BufferID = Framebuffer::BufferID;
using glm::vec3;
using glm::vec4;

const vec4 black(0.f);
const vec4 opaqueWhite(1.f);
constexpr unsigned int edge = 16;

/// A framebuffer of bytes of four components, depth and stencil, bound and cleared to 0, with
/// depth 1.
class FragmentStateRender : public RenderTest {
protected:
    FragmentStateRender() : RenderTest(size, {Extension::Framebuffers}) {}

    void SetUp() override {
        RenderTest::SetUp();
        if (!goesOn())
            return;
        color = Texture2D<U8vec4>::make(edge, edge);
        other = Texture2D<U8vec4>::make(edge, edge);
        depthStencil = Renderbuffer<depth24_stencil8>::make(edge, edge);
        framebuffer = Framebuffer::make();
        framebuffer->bind();
        framebuffer->attachFragmentOut(*color);
        framebuffer->attachFragmentOut(1, *other);
        framebuffer->attachDepthStencilbuffer(*depthStencil);
        ASSERT_EQ(problem(), "");
        Framebuffer::setViewport(0, 0, edge, edge);
        Framebuffer::clear(black, 1.f, 0);
    }
    void TearDown() override {
        framebuffer.reset();
        depthStencil.reset();
        RenderTest::TearDown();
    }

    static U8vec4 pixel(unsigned int x = 3, unsigned int y = 3) {
        return Framebuffer::download<U8vec4>(x, y, 1, 1).at(0);
    }
    static unsigned int stencil(unsigned int x = 3, unsigned int y = 3) {
        return Framebuffer::download<stencil8>(x, y, 1, 1).at(0).value;
    }
    static double depth(unsigned int x = 3, unsigned int y = 3) {
        return Framebuffer::download<depth32>(x, y, 1, 1).at(0).value / 4294967295.0;
    }

    std::shared_ptr<Texture2D<U8vec4>> color;
    std::shared_ptr<Texture2D<U8vec4>> other;
    std::shared_ptr<Renderbuffer<depth24_stencil8>> depthStencil;
    std::shared_ptr<Framebuffer> framebuffer;
};

TEST_F(FragmentStateRender, ClearSetsEverythingAndTheValuesStaySet) {
    Framebuffer::clear(vec4(0.2f, 0.4f, 0.6f, 0.8f), 0.25f, 77);
    EXPECT_EQ(pixel(), U8vec4(51, 102, 153, 204));
    EXPECT_NEAR(depth(), 0.25, 1e-6);
    EXPECT_EQ(stencil(), 77u);
    float kept[4] = {};
    glGetFloatv(GL_COLOR_CLEAR_VALUE, kept);
    EXPECT_THAT(kept, testing::ElementsAre(0.2f, 0.4f, 0.6f, 0.8f));
    glGetFloatv(GL_DEPTH_CLEAR_VALUE, kept);
    EXPECT_EQ(kept[0], 0.25f);
    EXPECT_EQ(stateOf(GL_STENCIL_CLEAR_VALUE), 77);
}

TEST_F(FragmentStateRender, ClearColorReadsBackAndLeavesTheRest) {
    Framebuffer::clearColor(opaqueWhite);
    EXPECT_EQ(pixel(), U8vec4(255));
    EXPECT_NEAR(depth(), 1.0, 1e-6);
    EXPECT_EQ(stencil(), 0u);
    float kept[4] = {};
    glGetFloatv(GL_COLOR_CLEAR_VALUE, kept);
    EXPECT_THAT(kept, testing::Each(1.f));
}

TEST_F(FragmentStateRender, ClearDepthAndClearStencilLeaveTheRest) {
    Framebuffer::clearDepth(0.5f);
    EXPECT_NEAR(depth(), 0.5, 1e-6);
    EXPECT_EQ(stencil(), 0u);
    Framebuffer::clearStencil(9);
    EXPECT_NEAR(depth(), 0.5, 1e-6);
    EXPECT_EQ(stencil(), 9u);
    Framebuffer::clearDepthStencil(0.75f, 10);
    EXPECT_NEAR(depth(), 0.75, 1e-6);
    EXPECT_EQ(stencil(), 10u);
    EXPECT_EQ(pixel(), U8vec4(0));
}

/// Whether a value passes a test against a stored one.
bool passes(Comparator comparator, int value, int stored) {
    switch (comparator) {
    case Comparator::NEVER:
        return false;
    case Comparator::LESS:
        return value < stored;
    case Comparator::EQUAL:
        return value == stored;
    case Comparator::LEQUAL:
        return value <= stored;
    case Comparator::GREATER:
        return value > stored;
    case Comparator::NOTEQUAL:
        return value != stored;
    case Comparator::GEQUAL:
        return value >= stored;
    case Comparator::ALWAYS:
        break;
    }
    return true;
}

const std::vector<Comparator> comparators = {
    Comparator::NEVER,   Comparator::LESS,     Comparator::EQUAL,  Comparator::LEQUAL,
    Comparator::GREATER, Comparator::NOTEQUAL, Comparator::GEQUAL, Comparator::ALWAYS};

TEST_F(FragmentStateRender, DepthTestComparesWithTheStoredDepth) {
    for (const Comparator comparator : comparators) {
        for (const int quarters : {1, 2, 3}) {
            Framebuffer::enableDepthTest(Comparator::ALWAYS);
            fill(black, 0.5f);
            Framebuffer::enableDepthTest(comparator);
            fill(opaqueWhite, 0.25f * static_cast<float>(quarters));
            EXPECT_EQ(pixel().r == 255, passes(comparator, quarters, 2))
                << static_cast<unsigned int>(comparator) << ' ' << quarters;
        }
    }
}

TEST_F(FragmentStateRender, DepthTestThatIsOffPassesAndKeepsItsFunction) {
    Framebuffer::enableDepthTest(Comparator::NEVER);
    Framebuffer::enableDepthTest(false);
    EXPECT_EQ(stateOf(GL_DEPTH_FUNC), GL_NEVER);
    fill(opaqueWhite);
    EXPECT_EQ(pixel(), U8vec4(255));
    Framebuffer::enableDepthTest(true);
    fill(black);
    EXPECT_EQ(pixel(), U8vec4(255));
    Framebuffer::disableDepthTest();
    fill(black);
    EXPECT_EQ(pixel(), U8vec4(0));
}

TEST_F(FragmentStateRender, DepthMaskKeepsTheStoredDepth) {
    Framebuffer::enableDepthTest(Comparator::ALWAYS);
    Framebuffer::setDepthMask(false);
    fill(opaqueWhite, 0.25f);
    Framebuffer::clearDepth(0.f);
    EXPECT_NEAR(depth(), 1.0, 1e-6);
    EXPECT_EQ(pixel(), U8vec4(255));
    Framebuffer::setDepthMask(true);
    fill(opaqueWhite, 0.25f);
    EXPECT_NEAR(depth(), 0.25, 1e-6);
}

TEST_F(FragmentStateRender, StencilTestComparesTheReferenceWithTheStoredValue) {
    for (const Comparator comparator : comparators) {
        for (const unsigned int reference : {4u, 5u, 6u}) {
            Framebuffer::clear(black, 1.f, 5);
            Framebuffer::enableStencilTest(comparator, reference, 0xFF, Action::KEEP, Action::KEEP);
            fill(opaqueWhite);
            EXPECT_EQ(pixel().r == 255, passes(comparator, static_cast<int>(reference), 5))
                << static_cast<unsigned int>(comparator) << ' ' << reference;
        }
    }
}

TEST_F(FragmentStateRender, StencilTestComparesUnderItsMask) {
    Framebuffer::clearStencil(0xF5);
    Framebuffer::enableStencilTest(Comparator::EQUAL, 0x05, 0x0F, Action::KEEP, Action::KEEP);
    fill(opaqueWhite);
    EXPECT_EQ(pixel(), U8vec4(255));
}

/// An action and what it makes of a stored value, with reference 3.
struct ActionRow {
    Action action;
    unsigned int before;
    unsigned int after;
};

const std::vector<ActionRow> actions = {
    {Action::KEEP, 5, 5},        {Action::ZERO, 5, 0},        {Action::REPLACE, 5, 3},
    {Action::INCR, 5, 6},        {Action::INCR, 255, 255},    {Action::INCR_WRAP, 5, 6},
    {Action::INCR_WRAP, 255, 0}, {Action::DECR, 5, 4},        {Action::DECR, 0, 0},
    {Action::DECR_WRAP, 5, 4},   {Action::DECR_WRAP, 0, 255}, {Action::INVERT, 5, 250}};

TEST_F(FragmentStateRender, StencilActionsActWhereTheirCaseArises) {
    // The depth test passes in front of depth 0.5.
    Framebuffer::enableDepthTest(Comparator::LESS);
    Framebuffer::setDepthMask(false);
    const auto result = [](unsigned int before, float depth) {
        Framebuffer::clearStencil(before);
        fill(opaqueWhite, depth);
        return stencil();
    };
    Framebuffer::setDepthMask(true);
    Framebuffer::clearDepth(0.5f);
    Framebuffer::setDepthMask(false);
    for (const ActionRow& row : actions) {
        const Action keep = Action::KEEP;
        Framebuffer::enableStencilTest(Comparator::NEVER, 3, 0xFF, row.action, keep, keep);
        EXPECT_EQ(result(row.before, 0.25f), row.after);
        Framebuffer::enableStencilTest(Comparator::NEVER, 3, 0xFF, row.action, keep);
        EXPECT_EQ(result(row.before, 0.25f), row.after);
        Framebuffer::enableStencilTest(Comparator::ALWAYS, 3, 0xFF, keep, row.action, keep);
        EXPECT_EQ(result(row.before, 0.75f), row.after);
        EXPECT_EQ(result(row.before, 0.25f), row.before);
        Framebuffer::enableStencilTest(Comparator::ALWAYS, 3, 0xFF, keep, keep, row.action);
        EXPECT_EQ(result(row.before, 0.25f), row.after);
        EXPECT_EQ(result(row.before, 0.75f), row.before);
        Framebuffer::enableStencilTest(Comparator::ALWAYS, 3, 0xFF, keep, row.action);
        EXPECT_EQ(result(row.before, 0.25f), row.after);
        EXPECT_EQ(result(row.before, 0.75f), row.after);
    }
}

TEST_F(FragmentStateRender, StencilTestIsForBothFaces) {
    Framebuffer::enableStencilTest(Comparator::ALWAYS, 3, 0xFF, Action::KEEP, Action::REPLACE);
    glFrontFace(GL_CW); // what fill() draws is a back face now
    fill(opaqueWhite);
    EXPECT_EQ(stencil(), 3u);
    EXPECT_EQ(stateOf(GL_STENCIL_BACK_PASS_DEPTH_PASS), GL_REPLACE);
}

TEST_F(FragmentStateRender, StencilTestThatIsOffPassesAndKeepsItsSettings) {
    Framebuffer::enableStencilTest(Comparator::NEVER, 3, 0xFF, Action::ZERO, Action::KEEP);
    Framebuffer::disableStencilTest();
    fill(opaqueWhite);
    EXPECT_EQ(pixel(), U8vec4(255));
    Framebuffer::enableStencilTest(true);
    fill(black);
    EXPECT_EQ(pixel(), U8vec4(255));
    EXPECT_EQ(stateOf(GL_STENCIL_FUNC), GL_NEVER);
    EXPECT_EQ(stateOf(GL_STENCIL_FAIL), GL_ZERO);
}

TEST_F(FragmentStateRender, StencilMaskWritesItsBitsAlone) {
    Framebuffer::clearStencil(0xAA);
    Framebuffer::setStencilMask(0x0F);
    Framebuffer::clearStencil(0x55);
    EXPECT_EQ(stencil(), 0xA5u);
    Framebuffer::enableStencilTest(Comparator::ALWAYS, 0xFF, 0xFF, Action::KEEP, Action::REPLACE);
    fill(opaqueWhite);
    EXPECT_EQ(stencil(), 0xAFu);
}

TEST_F(FragmentStateRender, ScissorConfinesClearingAndDrawing) {
    Framebuffer::enableScissorTest(4, 6, 2, 1);
    Framebuffer::clearColor(opaqueWhite);
    EXPECT_EQ(pixel(4, 6), U8vec4(255));
    EXPECT_EQ(pixel(5, 6), U8vec4(255));
    EXPECT_EQ(pixel(6, 6), U8vec4(0));
    EXPECT_EQ(pixel(4, 7), U8vec4(0));
    EXPECT_EQ(pixel(3, 6), U8vec4(0));
    fill(black);
    EXPECT_EQ(pixel(4, 6), U8vec4(0));
    Framebuffer::enableScissorTest(0, 0, 0, 0);
    fill(opaqueWhite);
    EXPECT_EQ(pixel(0, 0), U8vec4(0));
    Framebuffer::disableScissorTest();
    fill(opaqueWhite);
    EXPECT_EQ(pixel(0, 0), U8vec4(255));
    Framebuffer::enableScissorTest(true);
    fill(black);
    EXPECT_EQ(pixel(0, 0), U8vec4(255));
}

TEST_F(FragmentStateRender, ViewportPlacesWhatIsDrawn) {
    Framebuffer::setViewport(8, 4, 4, 2);
    fill(opaqueWhite);
    EXPECT_EQ(pixel(8, 4), U8vec4(255));
    EXPECT_EQ(pixel(11, 5), U8vec4(255));
    EXPECT_EQ(pixel(7, 4), U8vec4(0));
    EXPECT_EQ(pixel(8, 6), U8vec4(0));
    EXPECT_EQ(pixel(12, 4), U8vec4(0));
}

TEST_F(FragmentStateRender, ColorMaskWritesItsComponentsAlone) {
    for (int i = 0; i < 4; ++i) {
        Framebuffer::setColorMask(true, true, true, true);
        Framebuffer::clearColor(black);
        Framebuffer::setColorMask(i == 0, i == 1, i == 2, i == 3);
        fill(opaqueWhite);
        U8vec4 expected(0);
        expected[i] = 255;
        EXPECT_EQ(pixel(), expected);
    }
}

TEST_F(FragmentStateRender, DrawBufferAndReadBufferChooseTheImage) {
    Framebuffer::setDrawBuffer(BufferID::COLOR_ATTACHMENT1);
    Framebuffer::clearColor(opaqueWhite);
    EXPECT_EQ(pixel(), U8vec4(0));
    Framebuffer::setReadBuffer(BufferID::COLOR_ATTACHMENT1);
    EXPECT_EQ(pixel(), U8vec4(255));
    Framebuffer::setDrawBuffer(BufferID::NONE);
    Framebuffer::clearColor(black);
    EXPECT_EQ(pixel(), U8vec4(255));
}

/// A logic operation and what it makes of the bits of a fragment and of the framebuffer.
struct OperatorRow {
    Operator op;
    int (*result)(int source, int destination);
};

// clang-format off
const std::vector<OperatorRow> operators = {
    {Operator::CLEAR, [](int, int) { return 0; }},
    {Operator::SET, [](int, int) { return ~0; }},
    {Operator::COPY, [](int s, int) { return s; }},
    {Operator::COPY_INVERTED, [](int s, int) { return ~s; }},
    {Operator::NOOP, [](int, int d) { return d; }},
    {Operator::INVERT, [](int, int d) { return ~d; }},
    {Operator::AND, [](int s, int d) { return s & d; }},
    {Operator::NAND, [](int s, int d) { return ~(s & d); }},
    {Operator::OR, [](int s, int d) { return s | d; }},
    {Operator::NOR, [](int s, int d) { return ~(s | d); }},
    {Operator::XOR, [](int s, int d) { return s ^ d; }},
    {Operator::EQUIV, [](int s, int d) { return ~(s ^ d); }},
    {Operator::AND_REVERSE, [](int s, int d) { return s & ~d; }},
    {Operator::AND_INVERTED, [](int s, int d) { return ~s & d; }},
    {Operator::OR_REVERSE, [](int s, int d) { return s | ~d; }},
    {Operator::OR_INVERTED, [](int s, int d) { return ~s | d; }}};
// clang-format on

TEST_F(FragmentStateRender, LogicOperationsCombineTheBits) {
    const U8vec4 source(0x0F, 0x35, 0xFF, 0xAA);
    const U8vec4 destination(0x33, 0xF0, 0x0C, 0x66);
    for (const OperatorRow& row : operators) {
        Framebuffer::disableLogicOp();
        Framebuffer::clearColor(vec4(destination) / 255.f);
        Framebuffer::enableLogicOp(row.op);
        fill(vec4(source) / 255.f);
        U8vec4 expected;
        for (int i = 0; i < 4; ++i)
            expected[i] = static_cast<unsigned char>(row.result(source[i], destination[i]));
        EXPECT_EQ(pixel(), expected) << static_cast<unsigned int>(row.op);
    }
}

TEST_F(FragmentStateRender, LogicOperationThatIsOffKeepsItsOperator) {
    Framebuffer::enableLogicOp(Operator::NOOP);
    Framebuffer::enableLogicOp(false);
    fill(opaqueWhite);
    EXPECT_EQ(pixel(), U8vec4(255));
    Framebuffer::enableLogicOp(true);
    fill(black);
    EXPECT_EQ(pixel(), U8vec4(255));
}

// Blending.

const vec4 source(0.2f, 0.4f, 0.6f, 0.5f);
const vec4 destination(0.6f, 0.3f, 0.1f, 0.25f);

/// What a factor multiplies with.
vec4 weight(Factor factor) {
    switch (factor) {
    case Factor::ZERO:
        return vec4(0.f);
    case Factor::ONE:
        return vec4(1.f);
    case Factor::SRC_COLOR:
        return source;
    case Factor::ONE_MINUS_SRC_COLOR:
        return 1.f - source;
    case Factor::DST_COLOR:
        return destination;
    case Factor::ONE_MINUS_DST_COLOR:
        return 1.f - destination;
    case Factor::SRC_ALPHA:
        return vec4(source.a);
    case Factor::ONE_MINUS_SRC_ALPHA:
        return vec4(1.f - source.a);
    case Factor::DST_ALPHA:
        return vec4(destination.a);
    case Factor::ONE_MINUS_DST_ALPHA:
        return vec4(1.f - destination.a);
    case Factor::SRC_ALPHA_SATURATE:
        break;
    }
    return vec4(vec3(std::min(source.a, 1.f - destination.a)), 1.f);
}

const std::vector<Factor> factors = {Factor::ZERO,      Factor::ONE,
                                     Factor::SRC_COLOR, Factor::ONE_MINUS_SRC_COLOR,
                                     Factor::DST_COLOR, Factor::ONE_MINUS_DST_COLOR,
                                     Factor::SRC_ALPHA, Factor::ONE_MINUS_SRC_ALPHA,
                                     Factor::DST_ALPHA, Factor::ONE_MINUS_DST_ALPHA};

/// Expects that the fragment and the framebuffer, with the blending in force, come to a colour.
void expectBlended(const vec4& expected) {
    Framebuffer::clearColor(destination);
    fill(source);
    const U8vec4 result = Framebuffer::download<U8vec4>(3, 3, 1, 1).at(0);
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(result[i], 255.f * std::clamp(expected[i], 0.f, 1.f), 2.f) << i;
}

TEST_F(FragmentStateRender, BlendingWeighsWithEveryPairOfFactors) {
    for (const Factor first : factors) {
        for (const Factor second : factors) {
            SCOPED_TRACE(std::to_string(static_cast<unsigned int>(first)) + ' ' +
                         std::to_string(static_cast<unsigned int>(second)));
            Framebuffer::enableBlending(first, second);
            expectBlended(source * weight(first) + destination * weight(second));
        }
        Framebuffer::enableBlending(Factor::SRC_ALPHA_SATURATE, first);
        expectBlended(source * weight(Factor::SRC_ALPHA_SATURATE) + destination * weight(first));
    }
    EXPECT_EQ(takeError(), "");
}

TEST_F(FragmentStateRender, BlendingWeighsColorAndAlphaApart) {
    Framebuffer::enableBlending(Factor::ONE, Factor::ZERO, Factor::ZERO, Factor::ONE);
    expectBlended(vec4(vec3(source), destination.a));
    Framebuffer::enableBlending(Factor::ZERO, Factor::SRC_ALPHA, Factor::DST_ALPHA, Factor::ZERO);
    expectBlended(vec4(vec3(destination) * source.a, source.a * destination.a));
}

TEST_F(FragmentStateRender, BlendingWeighsWithConstants) {
    const vec3 constant(0.25f, 0.5f, 0.75f);
    Framebuffer::enableBlending(constant, Factor::ZERO);
    expectBlended(source * vec4(constant, 1.f));
    Framebuffer::enableBlending(Factor::ZERO, constant);
    expectBlended(destination * vec4(constant, 1.f));
    Framebuffer::enableBlending(0.5f, Factor::ONE);
    expectBlended(source * 0.5f + destination);
    Framebuffer::enableBlending(constant, 0.5f);
    expectBlended(source * vec4(constant, 0.5f) + destination * 0.5f);
    Framebuffer::enableBlending(0.25f, 0.5f); // the sum serves both
    expectBlended((source + destination) * 0.75f);
    Framebuffer::enableBlending(constant, Factor::ONE, 0.5f, Factor::ZERO);
    expectBlended(vec4(vec3(source) * constant + vec3(destination), source.a * 0.5f));
    Framebuffer::enableBlending(Factor::ZERO, constant, Factor::ZERO, 0.5f);
    expectBlended(vec4(vec3(destination) * constant, destination.a * 0.5f));
}

TEST_F(FragmentStateRender, BlendingThatIsOffReplacesAndKeepsItsFactors) {
    Framebuffer::enableBlending(Factor::ZERO, Factor::ONE);
    Framebuffer::disableBlending();
    expectBlended(source);
    Framebuffer::enableBlending(true);
    expectBlended(destination);
}

TEST_F(FragmentStateRender, BlendEquationsCombineTheProducts) {
    const auto combined = [](Equation equation) {
        switch (equation) {
        case Equation::FUNC_ADD:
            break;
        case Equation::FUNC_SUBTRACT:
            return source - destination;
        case Equation::FUNC_REVERSE_SUBTRACT:
            return destination - source;
        case Equation::MIN:
            return glm::min(source, destination);
        case Equation::MAX:
            return glm::max(source, destination);
        }
        return source + destination;
    };
    const std::vector<Equation> equations = {Equation::FUNC_ADD, Equation::FUNC_SUBTRACT,
                                             Equation::FUNC_REVERSE_SUBTRACT, Equation::MIN,
                                             Equation::MAX};
    Framebuffer::enableBlending(Factor::ONE, Factor::ONE);
    for (const Equation rgb : equations) {
        for (const Equation alpha : equations) {
            Framebuffer::setBlendEquation(rgb, alpha);
            expectBlended(vec4(vec3(combined(rgb)), combined(alpha).a));
        }
    }
}

TEST_F(FragmentStateRender, MultiSamplingIsACapability) {
    Framebuffer::enableMultiSampling(false);
    EXPECT_EQ(glIsEnabled(GL_MULTISAMPLE), GL_FALSE);
    Framebuffer::enableMultiSampling(true);
    EXPECT_EQ(glIsEnabled(GL_MULTISAMPLE), GL_TRUE);
    Framebuffer::disableMultiSampling();
    EXPECT_EQ(glIsEnabled(GL_MULTISAMPLE), GL_FALSE);
}

// What GL refuses: the error is GL's, and the settings stay.

/// A call with a bad value, the error it makes, and the state, up to four integers, that must stay
/// as it was.
struct RefusalRow {
    const char* name;
    std::function<void()> call;
    std::string error;
    GLenum state;
};

std::array<int, 4> integersOf(GLenum pname) {
    std::array<int, 4> values = {};
    glGetIntegerv(pname, values.data());
    return values;
}

class FragmentStateRefusalRender : public FragmentStateRender,
                                   public testing::WithParamInterface<RefusalRow> {};

TEST_P(FragmentStateRefusalRender, IsGlsAndChangesNothing) {
    const auto before = integersOf(GetParam().state);
    GetParam().call();
    EXPECT_EQ(takeError(), GetParam().error);
    EXPECT_EQ(integersOf(GetParam().state), before);
}

constexpr unsigned int tooLarge = 0x80000000;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Refusals, FragmentStateRefusalRender, testing::Values(
    RefusalRow{"DepthComparator", [] { Framebuffer::enableDepthTest(static_cast<Comparator>(1)); }, "GL_INVALID_ENUM", GL_DEPTH_FUNC},
    RefusalRow{"StencilComparator", [] { Framebuffer::enableStencilTest(static_cast<Comparator>(1), 0, 0, Action::KEEP, Action::KEEP); }, "GL_INVALID_ENUM", GL_STENCIL_FUNC},
    RefusalRow{"StencilAction", [] { Framebuffer::enableStencilTest(Comparator::ALWAYS, 0, 0, static_cast<Action>(1), Action::KEEP); }, "GL_INVALID_ENUM", GL_STENCIL_FAIL},
    RefusalRow{"LogicOperator", [] { Framebuffer::enableLogicOp(static_cast<Operator>(1)); }, "GL_INVALID_ENUM", GL_LOGIC_OP_MODE},
    RefusalRow{"BlendingFactor", [] { Framebuffer::enableBlending(static_cast<Factor>(2), Factor::ONE); }, "GL_INVALID_ENUM", GL_BLEND_SRC_RGB},
    RefusalRow{"BlendEquation", [] { Framebuffer::setBlendEquation(static_cast<Equation>(1), Equation::FUNC_ADD); }, "GL_INVALID_ENUM", GL_BLEND_EQUATION_RGB},
    RefusalRow{"DrawBuffer", [] { Framebuffer::setDrawBuffer(static_cast<BufferID>(1)); }, "GL_INVALID_ENUM", GL_DRAW_BUFFER},
    RefusalRow{"DrawBufferOfTheWindow", [] { Framebuffer::setDrawBuffer(BufferID::BACK); }, "GL_INVALID_OPERATION", GL_DRAW_BUFFER},
    RefusalRow{"ReadBufferOfTheWindow", [] { Framebuffer::setReadBuffer(BufferID::FRONT); }, "GL_INVALID_OPERATION", GL_READ_BUFFER},
    RefusalRow{"ViewportSize", [] { Framebuffer::setViewport(0, 0, tooLarge, 1); }, "GL_INVALID_VALUE", GL_VIEWPORT},
    RefusalRow{"ScissorSize", [] { Framebuffer::enableScissorTest(0, 0, 1, tooLarge); }, "GL_INVALID_VALUE", GL_SCISSOR_BOX}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

} // namespace

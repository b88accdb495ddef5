// needs: private access

/// The state of the fragment pipeline: clears, blending, tests, masks and buffers.

#include <vellis/framebuffer/framebuffer.hpp>

#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "support/fake_gl.hpp"
#include "support/switch_arguments.hpp"

namespace {

using vellis::Framebuffer;
using vellis::test::FakeGl;
using Lines = std::vector<std::string>;

using Factor = Framebuffer::BlendingFactor;
using Equation = Framebuffer::BlendEquation;
using Comparator = Framebuffer::FragmentComparator;
using Action = Framebuffer::StencilAction;
using Operator = Framebuffer::LogicOperator;
using Buffer = Framebuffer::BufferID;

// Switches take what is true or false, and nothing that would only become so.

VELLIS_TAKES_SWITCHES_ALONE(Framebuffer::enableBlending);
VELLIS_TAKES_SWITCHES_ALONE(Framebuffer::enableDepthTest);
VELLIS_TAKES_SWITCHES_ALONE(Framebuffer::enableStencilTest);
VELLIS_TAKES_SWITCHES_ALONE(Framebuffer::enableScissorTest);
VELLIS_TAKES_SWITCHES_ALONE(Framebuffer::enableLogicOp);
VELLIS_TAKES_SWITCHES_ALONE(Framebuffer::enableMultiSampling);

// The operations that take an enumerator, with GL's calls, `@` standing for it.

void use(Comparator comparator) {
    Framebuffer::enableDepthTest(comparator);
    Framebuffer::enableStencilTest(comparator, 1, 0xFF, Action::KEEP, Action::KEEP);
}
void use(Action action) {
    Framebuffer::enableStencilTest(Comparator::NEVER, 1, 0xFF, action, Action::KEEP, Action::KEEP);
    Framebuffer::enableStencilTest(Comparator::NEVER, 1, 0xFF, Action::KEEP, action, Action::KEEP);
    Framebuffer::enableStencilTest(Comparator::NEVER, 1, 0xFF, Action::KEEP, Action::KEEP, action);
    Framebuffer::enableStencilTest(Comparator::NEVER, 1, 0xFF, action, Action::KEEP);
    Framebuffer::enableStencilTest(Comparator::NEVER, 1, 0xFF, Action::KEEP, action);
}
void use(Operator op) {
    Framebuffer::enableLogicOp(op);
}
void use(Buffer buffer) {
    Framebuffer::setDrawBuffer(buffer);
    Framebuffer::setReadBuffer(buffer);
}
void use(Factor factor) {
    Framebuffer::enableBlending(factor, Factor::ONE);
    Framebuffer::enableBlending(Factor::ONE, factor);
    Framebuffer::enableBlending(factor, Factor::ONE, Factor::ONE, Factor::ONE);
    Framebuffer::enableBlending(Factor::ONE, factor, Factor::ONE, Factor::ONE);
    Framebuffer::enableBlending(Factor::ONE, Factor::ONE, factor, Factor::ONE);
    Framebuffer::enableBlending(Factor::ONE, Factor::ONE, Factor::ONE, factor);
}
void use(Equation equation) {
    Framebuffer::setBlendEquation(equation, Equation::FUNC_ADD);
    Framebuffer::setBlendEquation(Equation::FUNC_ADD, equation);
}

const std::map<std::string, Lines>& callsByEnumeration() {
    static const std::string stencilTest = "glEnable(GL_STENCIL_TEST)";
    static const std::string never = "glStencilFunc(GL_NEVER, 1, 255)";
    static const std::string blend = "glEnable(GL_BLEND)";
    static const std::string opaque = "glBlendColor(0, 0, 0, 1)";
    static const std::string noConstant = "glBlendColor(0, 0, 0, 0)";
    // clang-format off
    static const std::map<std::string, Lines> calls = {
        {"FragmentComparator", {"glEnable(GL_DEPTH_TEST)", "glDepthFunc(@)",
                                stencilTest, "glStencilFunc(@, 1, 255)", "glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP)"}},
        {"StencilAction", {stencilTest, never, "glStencilOp(@, GL_KEEP, GL_KEEP)",
                           stencilTest, never, "glStencilOp(GL_KEEP, @, GL_KEEP)",
                           stencilTest, never, "glStencilOp(GL_KEEP, GL_KEEP, @)",
                           stencilTest, never, "glStencilOp(@, GL_KEEP, GL_KEEP)",
                           stencilTest, never, "glStencilOp(GL_KEEP, @, @)"}},
        {"LogicOperator", {"glEnable(GL_COLOR_LOGIC_OP)", "glLogicOp(@)"}},
        {"BufferID", {"glDrawBuffer(@)", "glReadBuffer(@)"}},
        {"BlendingFactor", {blend, opaque, "glBlendFuncSeparate(@, GL_ONE, @, GL_ONE)",
                            blend, opaque, "glBlendFuncSeparate(GL_ONE, @, GL_ONE, @)",
                            blend, noConstant, "glBlendFuncSeparate(@, GL_ONE, GL_ONE, GL_ONE)",
                            blend, noConstant, "glBlendFuncSeparate(GL_ONE, @, GL_ONE, GL_ONE)",
                            blend, noConstant, "glBlendFuncSeparate(GL_ONE, GL_ONE, @, GL_ONE)",
                            blend, noConstant, "glBlendFuncSeparate(GL_ONE, GL_ONE, GL_ONE, @)"}},
        {"BlendEquation", {"glBlendEquationSeparate(@, GL_FUNC_ADD)", "glBlendEquationSeparate(GL_FUNC_ADD, @)"}},
    };
    // clang-format on
    return calls;
}

std::string filledIn(std::string line, const std::string& enumerator) {
    for (std::size_t at = line.find('@'); at != std::string::npos; at = line.find('@'))
        line.replace(at, 1, enumerator);
    return line;
}

/// An enumerator of the table that source and tests share.
struct EnumeratorRow {
    std::string enumeration;
    std::string name;
    unsigned int value;
    unsigned int glValue;
    std::function<void()> use;
};

std::vector<EnumeratorRow> enumerators() {
    std::vector<EnumeratorRow> rows;
#define VELLIS_SAME_AS_GL(enumeration, name)                                                       \
    rows.push_back({#enumeration, "GL_" #name,                                                     \
                    static_cast<unsigned int>(Framebuffer::enumeration::name), GL_##name,          \
                    [] { use(Framebuffer::enumeration::name); }})
#include "framebuffer/fragment_enumerators.inc"
#undef VELLIS_SAME_AS_GL
    return rows;
}

TEST(FragmentStateTrace, EveryEnumeratorHasTheValueOfGl) {
    for (const EnumeratorRow& row : enumerators())
        EXPECT_EQ(row.value, row.glValue) << row.enumeration << ' ' << row.name;
}

TEST(FragmentStateTrace, EveryEnumeratorReachesGlUnchangedInEveryPlace) {
    FakeGl gl;
    for (const EnumeratorRow& row : enumerators()) {
        row.use();
        Lines expected;
        for (const std::string& line : callsByEnumeration().at(row.enumeration))
            expected.push_back(filledIn(line, row.name));
        EXPECT_GL_CALLS(gl, expected);
    }
}

TEST(FragmentStateTrace, EnumeratorsAreTheDocumentedOnes) {
    const std::map<std::string, std::set<std::string>> documented = {
        {"FragmentComparator",
         {"GL_NEVER", "GL_LESS", "GL_EQUAL", "GL_LEQUAL", "GL_GREATER", "GL_NOTEQUAL", "GL_GEQUAL",
          "GL_ALWAYS"}},
        {"StencilAction",
         {"GL_KEEP", "GL_ZERO", "GL_REPLACE", "GL_INCR", "GL_INCR_WRAP", "GL_DECR", "GL_DECR_WRAP",
          "GL_INVERT"}},
        {"LogicOperator",
         {"GL_CLEAR", "GL_SET", "GL_COPY", "GL_COPY_INVERTED", "GL_NOOP", "GL_INVERT", "GL_AND",
          "GL_NAND", "GL_OR", "GL_NOR", "GL_XOR", "GL_EQUIV", "GL_AND_REVERSE", "GL_AND_INVERTED",
          "GL_OR_REVERSE", "GL_OR_INVERTED"}},
        {"BufferID",
         {"GL_NONE", "GL_FRONT", "GL_BACK", "GL_FRONT_AND_BACK", "GL_COLOR_ATTACHMENT0",
          "GL_COLOR_ATTACHMENT1", "GL_COLOR_ATTACHMENT2", "GL_COLOR_ATTACHMENT3",
          "GL_COLOR_ATTACHMENT4", "GL_COLOR_ATTACHMENT5", "GL_COLOR_ATTACHMENT6",
          "GL_COLOR_ATTACHMENT7"}},
        {"BlendingFactor",
         {"GL_ZERO", "GL_ONE", "GL_SRC_COLOR", "GL_ONE_MINUS_SRC_COLOR", "GL_DST_COLOR",
          "GL_ONE_MINUS_DST_COLOR", "GL_SRC_ALPHA", "GL_ONE_MINUS_SRC_ALPHA", "GL_DST_ALPHA",
          "GL_ONE_MINUS_DST_ALPHA", "GL_SRC_ALPHA_SATURATE"}},
        {"BlendEquation",
         {"GL_FUNC_ADD", "GL_FUNC_SUBTRACT", "GL_FUNC_REVERSE_SUBTRACT", "GL_MIN", "GL_MAX"}},
    };
    std::map<std::string, std::set<std::string>> found;
    for (const EnumeratorRow& row : enumerators())
        found[row.enumeration].insert(row.name);
    EXPECT_EQ(found, documented);
    EXPECT_EQ(enumerators().size(), 60u);
}

static_assert(std::is_same_v<std::underlying_type_t<Comparator>, unsigned int>);
static_assert(std::is_same_v<std::underlying_type_t<Action>, unsigned int>);
static_assert(std::is_same_v<std::underlying_type_t<Operator>, unsigned int>);
static_assert(std::is_same_v<std::underlying_type_t<Buffer>, unsigned int>);
static_assert(std::is_same_v<std::underlying_type_t<Factor>, unsigned int>);
static_assert(std::is_same_v<std::underlying_type_t<Equation>, unsigned int>);

/// An operation, and all its calls in order.
struct CallRow {
    const char* name;
    std::function<void()> call;
    Lines expected;
};

/// GoogleTest would read every byte, the unset ones, too.
void PrintTo(const CallRow& row, std::ostream* out) {
    *out << row.name;
}

class FragmentStateCallTrace : public testing::TestWithParam<CallRow> {};

TEST_P(FragmentStateCallTrace, MakesItsCallsInOrder) {
    FakeGl gl;
    GetParam().call();
    EXPECT_GL_CALLS(gl, GetParam().expected);
}

const auto nameOfCall = [](const auto& row) { return std::string(row.param.name); };
using F = Framebuffer;
const glm::vec4 color(0.25f, 0.5f, 0.75f, 0.125f);
const std::string setsColor = "glClearColor(0.25, 0.5, 0.75, 0.125)";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Clears, FragmentStateCallTrace, testing::Values(
    CallRow{"All", [] { F::clear(color, 0.5f, 7); },
            {setsColor, "glClearDepth(0.5)", "glClearStencil(7)", "glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_COLOR_BUFFER_BIT)"}},
    CallRow{"Color", [] { F::clearColor(color); }, {setsColor, "glClear(GL_COLOR_BUFFER_BIT)"}},
    CallRow{"Depth", [] { F::clearDepth(0.5f); }, {"glClearDepth(0.5)", "glClear(GL_DEPTH_BUFFER_BIT)"}},
    CallRow{"DepthIsWidened", [] { F::clearDepth(0.1f); }, {"glClearDepth(0.10000000149011612)", "glClear(GL_DEPTH_BUFFER_BIT)"}},
    CallRow{"Stencil", [] { F::clearStencil(7); }, {"glClearStencil(7)", "glClear(GL_STENCIL_BUFFER_BIT)"}},
    CallRow{"StencilOfAllBits", [] { F::clearStencil(0xFFFFFFFF); }, {"glClearStencil(-1)", "glClear(GL_STENCIL_BUFFER_BIT)"}},
    CallRow{"DepthAndStencil", [] { F::clearDepthStencil(1.0f, 0); },
            {"glClearDepth(1)", "glClearStencil(0)", "glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT)"}},
    CallRow{"ValuesBeyondTheRange", [] { F::clear(glm::vec4(-1.f, 2.f, 0.f, 1.f), 3.f, 256); },
            {"glClearColor(-1, 2, 0, 1)", "glClearDepth(3)", "glClearStencil(256)", "glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_COLOR_BUFFER_BIT)"}}),
    nameOfCall);

INSTANTIATE_TEST_SUITE_P(Switches, FragmentStateCallTrace, testing::Values(
    CallRow{"BlendingOn", [] { F::enableBlending(true); }, {"glEnable(GL_BLEND)"}},
    CallRow{"BlendingOff", [] { F::enableBlending(false); }, {"glDisable(GL_BLEND)"}},
    CallRow{"BlendingDisabled", [] { F::disableBlending(); }, {"glDisable(GL_BLEND)"}},
    CallRow{"DepthTestOn", [] { F::enableDepthTest(true); }, {"glEnable(GL_DEPTH_TEST)"}},
    CallRow{"DepthTestOffLeavesTheFunction", [] { F::enableDepthTest(false); }, {"glDisable(GL_DEPTH_TEST)"}},
    CallRow{"DepthTestDisabled", [] { F::disableDepthTest(); }, {"glDisable(GL_DEPTH_TEST)"}},
    CallRow{"DepthTest", [] { F::enableDepthTest(Comparator::LEQUAL); }, {"glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LEQUAL)"}},
    CallRow{"StencilTestOn", [] { F::enableStencilTest(true); }, {"glEnable(GL_STENCIL_TEST)"}},
    CallRow{"StencilTestOff", [] { F::enableStencilTest(false); }, {"glDisable(GL_STENCIL_TEST)"}},
    CallRow{"StencilTestDisabled", [] { F::disableStencilTest(); }, {"glDisable(GL_STENCIL_TEST)"}},
    CallRow{"StencilTestOfThreeActions", [] { F::enableStencilTest(Comparator::EQUAL, 3, 0x0F, Action::ZERO, Action::INCR, Action::DECR_WRAP); },
            {"glEnable(GL_STENCIL_TEST)", "glStencilFunc(GL_EQUAL, 3, 15)", "glStencilOp(GL_ZERO, GL_INCR, GL_DECR_WRAP)"}},
    CallRow{"StencilTestOfTwoActions", [] { F::enableStencilTest(Comparator::ALWAYS, 1, 0xFF, Action::KEEP, Action::REPLACE); },
            {"glEnable(GL_STENCIL_TEST)", "glStencilFunc(GL_ALWAYS, 1, 255)", "glStencilOp(GL_KEEP, GL_REPLACE, GL_REPLACE)"}},
    CallRow{"StencilTestOfAllBits", [] { F::enableStencilTest(Comparator::ALWAYS, 0x7FFFFFFF, 0xFFFFFFFF, Action::KEEP, Action::KEEP); },
            {"glEnable(GL_STENCIL_TEST)", "glStencilFunc(GL_ALWAYS, 2147483647, 4294967295)", "glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP)"}},
    CallRow{"ScissorTest", [] { F::enableScissorTest(-1, 2, 30, 40); }, {"glEnable(GL_SCISSOR_TEST)", "glScissor(-1, 2, 30, 40)"}},
    CallRow{"ScissorTestOfNothing", [] { F::enableScissorTest(0, 0, 0, 0); }, {"glEnable(GL_SCISSOR_TEST)", "glScissor(0, 0, 0, 0)"}},
    CallRow{"ScissorTestOn", [] { F::enableScissorTest(true); }, {"glEnable(GL_SCISSOR_TEST)"}},
    CallRow{"ScissorTestOff", [] { F::enableScissorTest(false); }, {"glDisable(GL_SCISSOR_TEST)"}},
    CallRow{"ScissorTestDisabled", [] { F::disableScissorTest(); }, {"glDisable(GL_SCISSOR_TEST)"}},
    CallRow{"LogicOpOn", [] { F::enableLogicOp(true); }, {"glEnable(GL_COLOR_LOGIC_OP)"}},
    CallRow{"LogicOpOff", [] { F::enableLogicOp(false); }, {"glDisable(GL_COLOR_LOGIC_OP)"}},
    CallRow{"LogicOpDisabled", [] { F::disableLogicOp(); }, {"glDisable(GL_COLOR_LOGIC_OP)"}},
    CallRow{"LogicOp", [] { F::enableLogicOp(Operator::XOR); }, {"glEnable(GL_COLOR_LOGIC_OP)", "glLogicOp(GL_XOR)"}},
    CallRow{"MultiSamplingOn", [] { F::enableMultiSampling(true); }, {"glEnable(GL_MULTISAMPLE)"}},
    CallRow{"MultiSamplingOff", [] { F::enableMultiSampling(false); }, {"glDisable(GL_MULTISAMPLE)"}},
    CallRow{"MultiSamplingDisabled", [] { F::disableMultiSampling(); }, {"glDisable(GL_MULTISAMPLE)"}}),
    nameOfCall);

INSTANTIATE_TEST_SUITE_P(Settings, FragmentStateCallTrace, testing::Values(
    CallRow{"Viewport", [] { F::setViewport(-1, 2, 30, 40); }, {"glViewport(-1, 2, 30, 40)"}},
    CallRow{"ViewportTooLargeForGl", [] { F::setViewport(0, 0, 0x80000000, 1); }, {"glViewport(0, 0, -2147483648, 1)"}},
    CallRow{"ColorMaskOfRed", [] { F::setColorMask(true, false, false, false); }, {"glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_FALSE)"}},
    CallRow{"ColorMaskOfGreen", [] { F::setColorMask(false, true, false, false); }, {"glColorMask(GL_FALSE, GL_TRUE, GL_FALSE, GL_FALSE)"}},
    CallRow{"ColorMaskOfBlue", [] { F::setColorMask(false, false, true, false); }, {"glColorMask(GL_FALSE, GL_FALSE, GL_TRUE, GL_FALSE)"}},
    CallRow{"ColorMaskOfAlpha", [] { F::setColorMask(false, false, false, true); }, {"glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE)"}},
    CallRow{"DepthMaskOn", [] { F::setDepthMask(true); }, {"glDepthMask(GL_TRUE)"}},
    CallRow{"DepthMaskOff", [] { F::setDepthMask(false); }, {"glDepthMask(GL_FALSE)"}},
    CallRow{"StencilMask", [] { F::setStencilMask(0xFFFFFFFF); }, {"glStencilMask(4294967295)"}},
    CallRow{"DrawBufferOutsideTheEnumeration", [] { F::setDrawBuffer(static_cast<Buffer>(0x8CE8)); }, {"glDrawBuffer(GL_COLOR_ATTACHMENT8)"}}),
    nameOfCall);

// Blending: factors, constant colours and constant alphas. GL has one constant.

const glm::vec3 color1(0.125f, 0.25f, 0.5f);
const glm::vec3 color2(0.25f, 0.5f, 0.0625f);
const std::string blends = "glEnable(GL_BLEND)";

INSTANTIATE_TEST_SUITE_P(BlendingOfTwo, FragmentStateCallTrace, testing::Values(
    CallRow{"FactorFactor", [] { F::enableBlending(Factor::SRC_ALPHA, Factor::ONE_MINUS_SRC_ALPHA); },
            {blends, "glBlendColor(0, 0, 0, 1)", "glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)"}},
    CallRow{"FactorColor", [] { F::enableBlending(Factor::SRC_ALPHA, color2); },
            {blends, "glBlendColor(0.25, 0.5, 0.0625, 1)", "glBlendFuncSeparate(GL_SRC_ALPHA, GL_CONSTANT_COLOR, GL_SRC_ALPHA, GL_CONSTANT_COLOR)"}},
    CallRow{"FactorAlpha", [] { F::enableBlending(Factor::SRC_ALPHA, 0.5f); },
            {blends, "glBlendColor(0, 0, 0, 0.5)", "glBlendFuncSeparate(GL_SRC_ALPHA, GL_CONSTANT_ALPHA, GL_SRC_ALPHA, GL_CONSTANT_ALPHA)"}},
    CallRow{"ColorFactor", [] { F::enableBlending(color1, Factor::ZERO); },
            {blends, "glBlendColor(0.125, 0.25, 0.5, 1)", "glBlendFuncSeparate(GL_CONSTANT_COLOR, GL_ZERO, GL_CONSTANT_COLOR, GL_ZERO)"}},
    CallRow{"ColorColor", [] { F::enableBlending(color1, color2); },
            {blends, "glBlendColor(0.375, 0.75, 0.5625, 1)", "glBlendFuncSeparate(GL_CONSTANT_COLOR, GL_CONSTANT_COLOR, GL_CONSTANT_COLOR, GL_CONSTANT_COLOR)"}},
    CallRow{"ColorAlpha", [] { F::enableBlending(color1, 0.5f); },
            {blends, "glBlendColor(0.125, 0.25, 0.5, 0.5)", "glBlendFuncSeparate(GL_CONSTANT_COLOR, GL_CONSTANT_ALPHA, GL_CONSTANT_COLOR, GL_CONSTANT_ALPHA)"}},
    CallRow{"AlphaFactor", [] { F::enableBlending(0.25f, Factor::ZERO); },
            {blends, "glBlendColor(0, 0, 0, 0.25)", "glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_ZERO, GL_CONSTANT_ALPHA, GL_ZERO)"}},
    CallRow{"AlphaColor", [] { F::enableBlending(0.25f, color2); },
            {blends, "glBlendColor(0.25, 0.5, 0.0625, 0.25)", "glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_CONSTANT_COLOR, GL_CONSTANT_ALPHA, GL_CONSTANT_COLOR)"}},
    CallRow{"AlphaAlpha", [] { F::enableBlending(0.25f, 0.5f); },
            {blends, "glBlendColor(0, 0, 0, 0.75)", "glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_CONSTANT_ALPHA, GL_CONSTANT_ALPHA, GL_CONSTANT_ALPHA)"}},
    CallRow{"AlphaOfZeroCountsAsGiven", [] { F::enableBlending(0.f, Factor::ONE); },
            {blends, "glBlendColor(0, 0, 0, 0)", "glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_ONE, GL_CONSTANT_ALPHA, GL_ONE)"}},
    CallRow{"SumBeyondOneIsLeftToGl", [] { F::enableBlending(0.75f, 0.75f); },
            {blends, "glBlendColor(0, 0, 0, 1.5)", "glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_CONSTANT_ALPHA, GL_CONSTANT_ALPHA, GL_CONSTANT_ALPHA)"}}),
    nameOfCall);
// clang-format on

/// An argument of the form of four, and what it gives to the call.
template <class T>
struct Argument {
    T value;
    std::string name;
    glm::vec3 rgb;
    float alpha;
};

const Argument<Factor> anyFactor = {Factor::DST_COLOR, "GL_DST_COLOR", glm::vec3(0.f), 0.f};
const Argument<Factor> otherFactor = {Factor::ONE, "GL_ONE", glm::vec3(0.f), 0.f};

/// Calls \p function with every pair of arguments for the colours.
template <class Function>
void eachColorPair(Function function) {
    const Argument<glm::vec3> first = {color1, "GL_CONSTANT_COLOR", color1, 0.f};
    const Argument<glm::vec3> second = {color2, "GL_CONSTANT_COLOR", color2, 0.f};
    function(anyFactor, otherFactor);
    function(anyFactor, second);
    function(first, otherFactor);
    function(first, second);
}

/// Calls \p function with every pair of arguments for the alphas.
template <class Function>
void eachAlphaPair(Function function) {
    const Argument<float> first = {0.25f, "GL_CONSTANT_ALPHA", glm::vec3(0.f), 0.25f};
    const Argument<float> second = {0.5f, "GL_CONSTANT_ALPHA", glm::vec3(0.f), 0.5f};
    function(anyFactor, otherFactor);
    function(anyFactor, second);
    function(first, otherFactor);
    function(first, second);
}

std::string numberText(float value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

TEST(FragmentStateTrace, BlendingOfFourAddsUpTheConstantsOfColorsAndOfAlphas) {
    FakeGl gl;
    int combinations = 0;
    eachColorPair([&](const auto& sourceRgb, const auto& destinationRgb) {
        eachAlphaPair([&](const auto& sourceAlpha, const auto& destinationAlpha) {
            Framebuffer::enableBlending(sourceRgb.value, destinationRgb.value, sourceAlpha.value,
                                        destinationAlpha.value);
            const glm::vec3 rgb = sourceRgb.rgb + destinationRgb.rgb;
            const float alpha = sourceAlpha.alpha + destinationAlpha.alpha;
            EXPECT_GL_CALLS(gl, blends,
                            "glBlendColor(" + numberText(rgb.r) + ", " + numberText(rgb.g) + ", " +
                                numberText(rgb.b) + ", " + numberText(alpha) + ")",
                            "glBlendFuncSeparate(" + sourceRgb.name + ", " + destinationRgb.name +
                                ", " + sourceAlpha.name + ", " + destinationAlpha.name + ")");
            ++combinations;
        });
    });
    EXPECT_EQ(combinations, 16);
}

TEST(FragmentStateTrace, BlendingOfFourKeepsTheOrderOfItsArguments) {
    FakeGl gl;
    Framebuffer::enableBlending(Factor::SRC_COLOR, Factor::DST_COLOR, Factor::SRC_ALPHA,
                                Factor::DST_ALPHA);
    EXPECT_GL_CALLS(gl, blends, "glBlendColor(0, 0, 0, 0)",
                    "glBlendFuncSeparate(GL_SRC_COLOR, GL_DST_COLOR, GL_SRC_ALPHA, GL_DST_ALPHA)");
}

TEST(FragmentStateTrace, BlendEquationsOfColorAndAlphaAreApart) {
    FakeGl gl;
    Framebuffer::setBlendEquation(Equation::MIN, Equation::FUNC_REVERSE_SUBTRACT);
    EXPECT_GL_CALLS(gl, "glBlendEquationSeparate(GL_MIN, GL_FUNC_REVERSE_SUBTRACT)");
}

TEST(FragmentStateTrace, FactorOfAnArgumentIsItselfOrAConstant) {
    EXPECT_EQ(Framebuffer::factor(Factor::DST_ALPHA), Factor::DST_ALPHA);
    EXPECT_EQ(Framebuffer::factor(glm::vec3(0.5f)), unsigned(GL_CONSTANT_COLOR));
    EXPECT_EQ(Framebuffer::factor(0.5f), unsigned(GL_CONSTANT_ALPHA));
    static_assert(std::is_same_v<decltype(Framebuffer::factor(Factor::ONE)), Factor>);
    static_assert(std::is_same_v<decltype(Framebuffer::factor(0.5f)), unsigned int>);
    static_assert(std::is_same_v<decltype(Framebuffer::factor(glm::vec3())), unsigned int>);
}

TEST(FragmentStateTrace, ConstantOfAnArgumentIsWhatItGives) {
    EXPECT_EQ(Framebuffer::const_rgb(Factor::ONE), glm::vec3(0.f));
    EXPECT_EQ(Framebuffer::const_rgb(color1), color1);
    EXPECT_EQ(Framebuffer::const_a(Factor::ONE), 0.f);
    EXPECT_EQ(Framebuffer::const_a(0.5f), 0.5f);
}

/// Whether these arguments can be given to enableBlending.
template <class, class... Arguments>
struct BlendsWith : std::false_type {};
template <class... Arguments>
struct BlendsWith<
    std::void_t<decltype(Framebuffer::enableBlending(std::declval<const Arguments&>()...))>,
    Arguments...> : std::true_type {};
template <class... Arguments>
constexpr bool canBlend = BlendsWith<void, Arguments...>::value;

static_assert(canBlend<bool> && canBlend<Factor, Factor> && canBlend<glm::vec3, float>);
static_assert(!canBlend<Factor>);
static_assert(!canBlend<double, Factor> && !canBlend<Factor, double> && !canBlend<double, double>);
static_assert(!canBlend<int, Factor> && !canBlend<Factor, int>);
static_assert(!canBlend<bool, bool> && !canBlend<Factor, unsigned int>);
static_assert(!canBlend<glm::vec4, Factor> && !canBlend<Factor, glm::dvec3>);
static_assert(!canBlend<Equation, Factor> && !canBlend<Factor, Factor, Factor>);

static_assert(canBlend<Factor, glm::vec3, float, Factor>);
static_assert(!canBlend<float, Factor, Factor, Factor> && !canBlend<Factor, float, Factor, Factor>);
static_assert(!canBlend<Factor, Factor, glm::vec3, Factor> &&
              !canBlend<Factor, Factor, Factor, glm::vec3>);
static_assert(!canBlend<double, Factor, Factor, Factor> &&
              !canBlend<Factor, double, Factor, Factor> &&
              !canBlend<Factor, Factor, double, Factor> &&
              !canBlend<Factor, Factor, Factor, double>);

/// Whether there is a const_rgb, or a const_a, of an argument of that type.
template <class T, class = void>
struct HasConstRgb : std::false_type {};
template <class T>
struct HasConstRgb<T, std::void_t<decltype(Framebuffer::const_rgb(std::declval<const T&>()))>>
    : std::true_type {};
template <class T, class = void>
struct HasConstA : std::false_type {};
template <class T>
struct HasConstA<T, std::void_t<decltype(Framebuffer::const_a(std::declval<const T&>()))>>
    : std::true_type {};

static_assert(HasConstRgb<Factor>::value && HasConstRgb<glm::vec3>::value);
static_assert(HasConstA<Factor>::value && HasConstA<float>::value);
static_assert(!HasConstRgb<float>::value && !HasConstA<glm::vec3>::value);

} // namespace

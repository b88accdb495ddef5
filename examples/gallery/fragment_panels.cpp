/// Panels of what decides which fragments are written, and how.

#include <cmath>

#include <gallery/curves.hpp>
#include <gallery/flat.hpp>
#include <gallery/geometry.hpp>
#include <gallery/mesh.hpp>
#include <gallery/panel_groups.hpp>
#include <gallery/programs.hpp>
#include <vellis/drawing.hpp>
#include <vellis/framebuffer.hpp>

namespace gallery {
namespace {

using vellis::Framebuffer;
using vellis::Toolbox;
using Comparator = Framebuffer::FragmentComparator;
using StencilAction = Framebuffer::StencilAction;
using LogicOperator = Framebuffer::LogicOperator;
using namespace palette;

/// Three discs through each other; without a depth test the last one covers the others.
void drawDiscs() {
    const glm::mat4 view = viewFrom({2.6f, 2.1f, 3.9f});
    const glm::mat4 upright = glm::rotate(view, 0.5f * pi, glm::vec3(0.0f, 1.0f, 0.0f));
    const glm::mat4 flat = glm::rotate(view, 0.5f * pi, glm::vec3(1.0f, 0.0f, 0.0f));
    drawDisc(toRgba(coral), {0.0f, 0.0f}, 1.08f, view);
    drawDisc(toRgba(navy), {0.0f, 0.0f}, 1.08f, upright);
    drawDisc(toRgba(sand), {0.0f, 0.0f}, 1.08f, flat);
}

void drawWithoutDepthTest(const Canvas&) {
    Framebuffer::disableDepthTest();
    drawDiscs();
}

void drawWithDepthTest(const Canvas&) {
    Framebuffer::enableDepthTest(Comparator::LESS);
    drawDiscs();
}

/// A star of lines that cross each other, as an outline that can be filled.
std::vector<glm::vec2> makeCrossedStar() {
    constexpr int corners = 7;
    std::vector<glm::vec2> points;
    for (int i = 0; i < corners; ++i)
        points.push_back(onCircle(pi * (0.5f + 6.0f * static_cast<float>(i) / corners), 0.92f));
    return points;
}

/// Rings that are seen where the star covers a place an odd number of times.
void drawStencilled(const Canvas&) {
    const std::vector<glm::vec2> star = makeCrossedStar();
    Framebuffer::setColorMask(false, false, false, false);
    Framebuffer::enableStencilTest(Comparator::ALWAYS, 0, 1, StencilAction::KEEP,
                                   StencilAction::INVERT);
    Toolbox::drawTriangleFan(toRgba(ink), sizeOf(star), star.data(), flatView);

    Framebuffer::setColorMask(true, true, true, true);
    Framebuffer::enableStencilTest(Comparator::EQUAL, 1, 1, StencilAction::KEEP,
                                   StencilAction::KEEP);
    const Colour rings[] = {navy, blue, teal, sand, orange, coral, plum};
    float radius = 0.98f;
    for (const Colour ring : rings) {
        drawDisc(toRgba(ring), {0.0f, 0.0f}, radius);
        radius -= 0.14f;
    }
}

/// A knot behind nine windows.
void drawThroughWindows(const Canvas& canvas) {
    const auto program = makeLitProgram();
    const Surface knot = makeKnot();
    const auto length = static_cast<unsigned int>(canvas.length(66.0f));
    for (int i = 0; i < 9; ++i) {
        const auto left =
            static_cast<int>(canvas.length(15.0f + 72.0f * static_cast<float>(i % 3)));
        const auto low = static_cast<int>(canvas.length(15.0f + 72.0f * static_cast<float>(i / 3)));
        Framebuffer::enableScissorTest(left, low, length, length);
        Framebuffer::clearColor(toRgba(i % 2 == 0 ? sky : sheet));
        drawSurface(program, knot);
    }
}

/// A knot in all colours, and in red, green and blue alone.
void drawColourParts(const Canvas& canvas) {
    const glm::bvec3 masks[] = {
        {true, true, true}, {true, false, false}, {false, true, false}, {false, false, true}};
    const auto program = makeLitProgram();
    const Surface knot = makeKnot();
    const auto length = static_cast<unsigned int>(canvas.length(112.0f));
    for (int i = 0; i < 4; ++i) {
        const auto left = static_cast<int>(canvas.length(i % 2 == 0 ? 6.0f : 122.0f));
        const auto low = static_cast<int>(canvas.length(i / 2 == 0 ? 122.0f : 6.0f));
        Framebuffer::setViewport(left, low, length, length);
        Framebuffer::setColorMask(masks[i].r, masks[i].g, masks[i].b, true);
        drawSurface(program, knot);
    }
}

/// All operators: a coral disc on navy and on sand.
void drawLogicOperators(const Canvas&) {
    const LogicOperator operators[] = {
        LogicOperator::COPY,         LogicOperator::COPY_INVERTED, LogicOperator::SET,
        LogicOperator::CLEAR,        LogicOperator::AND,           LogicOperator::AND_REVERSE,
        LogicOperator::AND_INVERTED, LogicOperator::NAND,          LogicOperator::OR,
        LogicOperator::OR_REVERSE,   LogicOperator::OR_INVERTED,   LogicOperator::NOR,
        LogicOperator::XOR,          LogicOperator::EQUIV,         LogicOperator::INVERT,
        LogicOperator::NOOP};
    float place = 0.0f;
    for (const LogicOperator op : operators) {
        const float left = 12.0f + 55.0f * std::fmod(place, 4.0f);
        const float top = 12.0f + 55.0f * std::floor(place / 4.0f);
        Framebuffer::disableLogicOp();
        drawRectangle(toRgba(navy), atPixels(left, top, 26.0f, 51.0f));
        drawRectangle(toRgba(sand), atPixels(left + 26.0f, top, 25.0f, 51.0f));
        Framebuffer::enableLogicOp(op);
        drawDisc(toRgba(coral), atPixel(left + 25.5f, top + 25.5f), 0.17f);
        place += 1.0f;
    }
}

} // namespace

std::vector<Panel> fragmentPanels() {
    return {
        {"depth-test-off",
         "depth test: off",
         4,
         drawWithoutDepthTest,
         {
             ColourAt{{120, 60}, navy},
             ColourAt{{120, 120}, sand},
             ColourAt{{120, 185}, navy},
             ColourAt{{40, 120}, sand},
             ColourAt{{170, 60}, coral},
             ColourAt{{160, 190}, coral},
             ColourAt{{12, 12}, paper},
             EdgeBetween{{10, 120}, {60, 120}, paper, sand},
             EdgeBetween{{120, 70}, {120, 110}, navy, sand},
             EdgeBetween{{120, 150}, {120, 185}, sand, navy},
         }},
        {"depth-test-on",
         "depth test: on",
         4,
         drawWithDepthTest,
         {
             ColourAt{{125, 60}, coral},
             ColourAt{{100, 60}, navy},
             ColourAt{{100, 120}, navy},
             ColourAt{{120, 150}, sand},
             ColourAt{{40, 120}, sand},
             ColourAt{{180, 120}, coral},
             ColourAt{{120, 185}, coral},
             ColourAt{{12, 12}, paper},
             EdgeBetween{{45, 120}, {80, 120}, sand, navy},
             EdgeBetween{{60, 150}, {100, 150}, navy, sand},
             EdgeBetween{{120, 150}, {120, 185}, sand, coral},
         }},
        {"stencil-test",
         "stencil test",
         4,
         drawStencilled,
         {
             ColourAt{{120, 120}, plum},
             ColourAt{{98, 120}, coral},
             ColourAt{{120, 28}, blue},
             ColourAt{{120, 45}, teal},
             ColourAt{{66, 120}, sand},
             ColourAt{{120, 78}, orange},
             ColourAt{{60, 70}, teal},
             ColourAt{{120, 150}, paper},
             ColourAt{{90, 70}, paper},
             ColourAt{{12, 12}, paper},
             EdgeBetween{{120, 98}, {120, 115}, coral, plum},
             EdgeBetween{{120, 139}, {120, 155}, coral, paper},
             EdgeBetween{{60, 70}, {90, 70}, teal, paper},
         }},
        {"scissor-test",
         "scissor test",
         4,
         drawThroughWindows,
         {
             ColourAt{{30, 30}, sky},
             ColourAt{{120, 20}, sheet},
             ColourAt{{40, 210}, sky},
             ColourAt{{120, 215}, sheet},
             ColourAt{{30, 120}, sheet},
             ColourAt{{120, 100}, sky},
             ColourAt{{50, 120}, {94, 138, 103}, 16},
             ColourAt{{115, 120}, {52, 150, 132}, 16},
             ColourAt{{84, 120}, paper},
             ColourAt{{84, 84}, paper},
             ColourAt{{8, 8}, paper},
             EdgeBetween{{5, 30}, {30, 30}, paper, sky},
             EdgeBetween{{84, 210}, {100, 210}, paper, sheet},
             EdgeBetween{{70, 120}, {84, 120}, {87, 149, 116}, paper},
         }},
        {"colour-mask",
         "colour mask",
         4,
         drawColourParts,
         {
             ColourAt{{45, 60}, {84, 151, 120}, 16},
             ColourAt{{161, 60}, {84, 248, 243}, 16},
             ColourAt{{45, 176}, {250, 151, 243}, 16},
             ColourAt{{161, 176}, {250, 248, 120}, 16},
             ColourAt{{90, 62}, {40, 112, 114}, 16},
             ColourAt{{206, 62}, {40, 248, 243}, 16},
             ColourAt{{90, 178}, {250, 112, 243}, 16},
             ColourAt{{206, 178}, {250, 248, 114}, 16},
             ColourAt{{12, 12}, paper},
             ColourAt{{120, 120}, paper},
             ColourAt{{120, 60}, paper},
             EdgeBetween{{10, 60}, {30, 60}, paper, {102, 146, 108}, 16},
             EdgeBetween{{125, 60}, {146, 60}, paper, {102, 248, 243}, 16},
         }},
        {"logic-operators",
         "logic operators",
         4,
         drawLogicOperators,
         {
             ColourAt{{27, 37}, coral},
             ColourAt{{82, 37}, {24, 144, 174}},
             ColourAt{{137, 37}, {255, 255, 255}},
             ColourAt{{192, 37}, {0, 0, 0}},
             ColourAt{{27, 92}, {38, 70, 64}},
             ColourAt{{48, 92}, {228, 72, 64}},
             ColourAt{{82, 92}, {193, 41, 17}},
             ColourAt{{103, 92}, {3, 39, 17}},
             ColourAt{{137, 92}, {0, 0, 36}},
             ColourAt{{158, 92}, {8, 128, 46}},
             ColourAt{{192, 92}, {217, 185, 191}},
             ColourAt{{213, 92}, {27, 183, 191}},
             ColourAt{{27, 147}, {231, 111, 117}},
             ColourAt{{48, 147}, {239, 239, 127}},
             ColourAt{{82, 147}, {255, 255, 219}},
             ColourAt{{103, 147}, {247, 127, 209}},
             ColourAt{{137, 147}, {62, 214, 238}},
             ColourAt{{158, 147}, {252, 216, 238}},
             ColourAt{{192, 147}, {24, 144, 138}},
             ColourAt{{213, 147}, {16, 16, 128}},
             ColourAt{{27, 202}, {193, 41, 53}},
             ColourAt{{48, 202}, {11, 167, 63}},
             ColourAt{{82, 202}, {62, 214, 202}},
             ColourAt{{103, 202}, {244, 88, 192}},
             ColourAt{{137, 202}, {217, 185, 155}},
             ColourAt{{158, 202}, {19, 55, 145}},
             ColourAt{{192, 202}, navy},
             ColourAt{{213, 202}, sand},
             ColourAt{{65, 65}, paper},
             ColourAt{{16, 16}, navy},
             EdgeBetween{{5, 16}, {20, 16}, paper, navy},
             EdgeBetween{{30, 16}, {45, 16}, navy, sand},
         }},
    };
}

} // namespace gallery

/// Panels of what decides which fragments are written, and how.

#include <cmath>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/flat.hpp>
#include <gallery/panels/geometry.hpp>
#include <gallery/panels/mesh.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/programs.hpp>
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
    const Color rings[] = {navy, blue, teal, sand, orange, coral, plum};
    float radius = 0.98f;
    for (const Color ring : rings) {
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
void drawColorParts(const Canvas& canvas) {
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
             ColorAt{{120, 60}, navy},
             ColorAt{{120, 120}, sand},
             ColorAt{{120, 185}, navy},
             ColorAt{{40, 120}, sand},
             ColorAt{{170, 60}, coral},
             ColorAt{{160, 190}, coral},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{10, 120}, {60, 120}, paper, sand},
             EdgeBetween{{120, 70}, {120, 110}, navy, sand},
             EdgeBetween{{120, 150}, {120, 185}, sand, navy},
         }},
        {"depth-test-on",
         "depth test: on",
         4,
         drawWithDepthTest,
         {
             ColorAt{{125, 60}, coral},
             ColorAt{{100, 60}, navy},
             ColorAt{{100, 120}, navy},
             ColorAt{{120, 150}, sand},
             ColorAt{{40, 120}, sand},
             ColorAt{{180, 120}, coral},
             ColorAt{{120, 185}, coral},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{45, 120}, {80, 120}, sand, navy},
             EdgeBetween{{60, 150}, {100, 150}, navy, sand},
             EdgeBetween{{120, 150}, {120, 185}, sand, coral},
         }},
        {"stencil-test",
         "stencil test",
         4,
         drawStencilled,
         {
             ColorAt{{120, 120}, plum},
             ColorAt{{98, 120}, coral},
             ColorAt{{120, 28}, blue},
             ColorAt{{120, 45}, teal},
             ColorAt{{66, 120}, sand},
             ColorAt{{120, 78}, orange},
             ColorAt{{60, 70}, teal},
             ColorAt{{120, 150}, paper},
             ColorAt{{90, 70}, paper},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{120, 98}, {120, 115}, coral, plum},
             EdgeBetween{{120, 139}, {120, 155}, coral, paper},
             EdgeBetween{{60, 70}, {90, 70}, teal, paper},
         }},
        {"scissor-test",
         "scissor test",
         4,
         drawThroughWindows,
         {
             ColorAt{{30, 30}, sky},
             ColorAt{{120, 20}, sheet},
             ColorAt{{40, 210}, sky},
             ColorAt{{120, 215}, sheet},
             ColorAt{{30, 120}, sheet},
             ColorAt{{120, 100}, sky},
             ColorAt{{50, 120}, {94, 138, 103}, 16},
             ColorAt{{115, 120}, {52, 150, 132}, 16},
             ColorAt{{84, 120}, paper},
             ColorAt{{84, 84}, paper},
             ColorAt{{8, 8}, paper},
             EdgeBetween{{5, 30}, {30, 30}, paper, sky},
             EdgeBetween{{84, 210}, {100, 210}, paper, sheet},
             EdgeBetween{{70, 120}, {84, 120}, {87, 149, 116}, paper},
         }},
        {"colour-mask",
         "colour mask",
         4,
         drawColorParts,
         {
             ColorAt{{45, 60}, {84, 151, 120}, 16},
             ColorAt{{161, 60}, {84, 248, 243}, 16},
             ColorAt{{45, 176}, {250, 151, 243}, 16},
             ColorAt{{161, 176}, {250, 248, 120}, 16},
             ColorAt{{90, 62}, {40, 112, 114}, 16},
             ColorAt{{206, 62}, {40, 248, 243}, 16},
             ColorAt{{90, 178}, {250, 112, 243}, 16},
             ColorAt{{206, 178}, {250, 248, 114}, 16},
             ColorAt{{12, 12}, paper},
             ColorAt{{120, 120}, paper},
             ColorAt{{120, 60}, paper},
             EdgeBetween{{10, 60}, {30, 60}, paper, {102, 146, 108}, 16},
             EdgeBetween{{125, 60}, {146, 60}, paper, {102, 248, 243}, 16},
         }},
        {"logic-operators",
         "logic operators",
         4,
         drawLogicOperators,
         {
             ColorAt{{27, 37}, coral},
             ColorAt{{82, 37}, {24, 144, 174}},
             ColorAt{{137, 37}, {255, 255, 255}},
             ColorAt{{192, 37}, {0, 0, 0}},
             ColorAt{{27, 92}, {38, 70, 64}},
             ColorAt{{48, 92}, {228, 72, 64}},
             ColorAt{{82, 92}, {193, 41, 17}},
             ColorAt{{103, 92}, {3, 39, 17}},
             ColorAt{{137, 92}, {0, 0, 36}},
             ColorAt{{158, 92}, {8, 128, 46}},
             ColorAt{{192, 92}, {217, 185, 191}},
             ColorAt{{213, 92}, {27, 183, 191}},
             ColorAt{{27, 147}, {231, 111, 117}},
             ColorAt{{48, 147}, {239, 239, 127}},
             ColorAt{{82, 147}, {255, 255, 219}},
             ColorAt{{103, 147}, {247, 127, 209}},
             ColorAt{{137, 147}, {62, 214, 238}},
             ColorAt{{158, 147}, {252, 216, 238}},
             ColorAt{{192, 147}, {24, 144, 138}},
             ColorAt{{213, 147}, {16, 16, 128}},
             ColorAt{{27, 202}, {193, 41, 53}},
             ColorAt{{48, 202}, {11, 167, 63}},
             ColorAt{{82, 202}, {62, 214, 202}},
             ColorAt{{103, 202}, {244, 88, 192}},
             ColorAt{{137, 202}, {217, 185, 155}},
             ColorAt{{158, 202}, {19, 55, 145}},
             ColorAt{{192, 202}, navy},
             ColorAt{{213, 202}, sand},
             ColorAt{{65, 65}, paper},
             ColorAt{{16, 16}, navy},
             EdgeBetween{{5, 16}, {20, 16}, paper, navy},
             EdgeBetween{{30, 16}, {45, 16}, navy, sand},
         }},
    };
}

} // namespace gallery

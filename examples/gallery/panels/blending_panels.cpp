/// Panels of blending.

#include <iterator>
#include <variant>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/flat.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <vellis/framebuffer.hpp>

namespace gallery {
namespace {

using vellis::Framebuffer;
using Factor = Framebuffer::BlendingFactor;
using Equation = Framebuffer::BlendEquation;
using namespace palette;

/// A factor by its name, a constant colour or a constant alpha.
using AnyFactor = std::variant<Factor, glm::vec3, float>;

void enableBlending(const AnyFactor& source, const AnyFactor& destination) {
    std::visit([](const auto& s, const auto& d) { Framebuffer::enableBlending(s, d); }, source,
               destination);
}

/// All factors: the source, from top to bottom, can have each of them, the destination, from left
/// to right, all but the last.
const AnyFactor factors[] = {
    Factor::ZERO,
    Factor::ONE,
    Factor::SRC_COLOR,
    Factor::ONE_MINUS_SRC_COLOR,
    Factor::DST_COLOR,
    Factor::ONE_MINUS_DST_COLOR,
    Factor::SRC_ALPHA,
    Factor::ONE_MINUS_SRC_ALPHA,
    Factor::DST_ALPHA,
    Factor::ONE_MINUS_DST_ALPHA,
    toVector(plum),
    0.25f,
    Factor::SRC_ALPHA_SATURATE,
};
constexpr std::size_t destinations = std::size(factors) - 1;

/// Each factor with each: teal on sand, both of them translucent. GL has one constant colour, which
/// is the sum where both factors give one.
void drawFactors(const Canvas&) {
    constexpr float pitch = 17.0f;
    drawRectangle(toRgba(sand, 0.4f), atPixels(16.0f, 8.0f, 208.0f, 223.0f));
    for (std::size_t row = 0; row < std::size(factors); ++row) {
        for (std::size_t column = 0; column < destinations; ++column) {
            enableBlending(factors[row], factors[column]);
            drawRectangle(toRgba(teal, 0.7f),
                          atPixels(19.0f + pitch * static_cast<float>(column),
                                   10.0f + pitch * static_cast<float>(row), 15.0f, 15.0f));
        }
    }
}

/// Discs of a constant colour that each tint what is there, and steps of a constant alpha that
/// each darken it.
void drawConstants(const Canvas&) {
    const Color tints[] = {sand, coral, blue};
    float angle = 0.5f * pi;
    for (const Color tint : tints) {
        Framebuffer::enableBlending(Factor::ZERO, toVector(tint));
        drawDisc(toRgba(ink), glm::vec2(0.0f, 0.18f) + onCircle(angle, 0.3f), 0.42f);
        angle += 2.0f * pi / 3.0f;
    }
    constexpr unsigned int steps = 8;
    for (unsigned int i = 0; i < steps; ++i) {
        const float alpha = static_cast<float>(steps - i) / (steps + 1);
        Framebuffer::enableBlending(Factor::ZERO, alpha);
        drawRectangle(toRgba(ink),
                      atPixels(20.0f + 25.0f * static_cast<float>(i), 200.0f, 25.0f, 20.0f));
    }
}

/// The sum, both differences, the least and the most of two discs.
void drawEquations(const Canvas&) {
    struct Cell {
        Equation equation;
        glm::vec2 centre;
    };
    const Cell cells[] = {
        {Equation::FUNC_ADD, {-0.6f, 0.6f}},
        {Equation::FUNC_SUBTRACT, {0.6f, 0.6f}},
        {Equation::FUNC_REVERSE_SUBTRACT, {0.0f, 0.0f}},
        {Equation::MIN, {-0.6f, -0.6f}},
        {Equation::MAX, {0.6f, -0.6f}},
    };
    for (const auto& [equation, centre] : cells) {
        const glm::vec2 offset(0.12f, 0.12f);
        Framebuffer::disableBlending();
        drawRectangle(toRgba(navy), {centre - 0.29f, centre + 0.29f});
        drawDisc(toRgba(orange), centre - 0.5f * offset, 0.2f);
        Framebuffer::enableBlending(Factor::ONE, Factor::ONE);
        Framebuffer::setBlendEquation(equation, Equation::FUNC_ADD);
        drawDisc(toRgba(teal), centre + offset, 0.16f);
    }
}

} // namespace

std::vector<Panel> blendingPanels() {
    return {
        {"blending-factors",
         "blending factors",
         4,
         drawFactors,
         {
             ColorAt{{26, 17}, {0, 0, 0}},
             ColorAt{{43, 17}, sand},
             ColorAt{{26, 34}, teal},
             ColorAt{{43, 34}, {255, 255, 253}},
             ColorAt{{77, 51}, {204, 174, 129}},
             ColorAt{{60, 68}, {74, 183, 124}},
             ColorAt{{111, 85}, {56, 166, 124}},
             ColorAt{{94, 102}, {222, 191, 129}},
             ColorAt{{145, 119}, {100, 170, 133}},
             ColorAt{{128, 136}, {178, 187, 120}},
             ColorAt{{179, 153}, {158, 183, 123}},
             ColorAt{{162, 170}, {120, 174, 130}},
             ColorAt{{26, 187}, {21, 50, 67}},
             ColorAt{{196, 17}, {117, 64, 52}},
             ColorAt{{196, 187}, {255, 230, 238}},
             ColorAt{{26, 204}, {10, 39, 36}},
             ColorAt{{213, 17}, {59, 50, 28}},
             ColorAt{{213, 204}, {139, 178, 126}},
             ColorAt{{145, 221}, {96, 154, 119}},
             ColorAt{{26, 221}, {25, 94, 86}},
             ColorAt{{35, 100}, sand},
             ColorAt{{8, 8}, paper},
             EdgeBetween{{10, 187}, {17, 187}, paper, sand},
             EdgeBetween{{21, 187}, {35, 187}, {21, 50, 67}, sand},
         }},
        {"blending-constants",
         "blending constants",
         4,
         drawConstants,
         {
             ColorAt{{120, 30}, {231, 195, 105}},
             ColorAt{{75, 130}, {226, 108, 77}},
             ColorAt{{165, 130}, {68, 120, 150}},
             ColorAt{{120, 100}, {57, 41, 21}},
             ColorAt{{120, 150}, {61, 52, 48}},
             ColorAt{{30, 210}, {222, 220, 216}},
             ColorAt{{132, 210}, {111, 110, 108}},
             ColorAt{{210, 210}, {28, 28, 27}},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{120, 5}, {120, 30}, paper, {231, 195, 105}},
             EdgeBetween{{120, 60}, {120, 95}, {231, 195, 105}, {57, 41, 21}},
             EdgeBetween{{10, 210}, {30, 210}, paper, {222, 220, 216}},
         }},
        {"blending-equations",
         "blend equations",
         4,
         drawEquations,
         {
             ColorAt{{30, 66}, orange},
             ColorAt{{52, 43}, {255, 255, 240}},
             ColorAt{{72, 24}, {80, 227, 243}},
             ColorAt{{16, 16}, navy},
             ColorAt{{174, 66}, orange},
             ColorAt{{196, 43}, {0, 0, 46}},
             ColorAt{{216, 24}, {4, 87, 43}},
             ColorAt{{102, 138}, orange},
             ColorAt{{124, 115}, {202, 5, 0}},
             ColorAt{{144, 96}, {0, 0, 0}},
             ColorAt{{52, 187}, {42, 157, 97}},
             ColorAt{{72, 168}, navy},
             ColorAt{{196, 187}, {244, 162, 143}},
             ColorAt{{216, 168}, teal},
             ColorAt{{120, 30}, paper},
             EdgeBetween{{5, 16}, {20, 16}, paper, navy},
             EdgeBetween{{30, 48}, {56, 48}, orange, {255, 255, 240}},
             EdgeBetween{{128, 120}, {142, 120}, {202, 5, 0}, {0, 0, 0}},
         }},
    };
}

} // namespace gallery

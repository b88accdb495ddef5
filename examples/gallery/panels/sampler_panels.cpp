/// Panels of the filters and wrap modes of a Sampler.

#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/texels.hpp>
#include <gallery/panels/textured.hpp>
#include <vellis/drawing.hpp>

namespace gallery {
namespace {

using vellis::Sampler;
using namespace palette;

/// A part of the boat, magnified.
void drawMagnified(Sampler::Filter filter) {
    drawTextured(*makeBoat(Sampler(filter, Sampler::CLAMP)), {{0.25f, 0.25f}, {0.8125f, 0.8125f}},
                 {{-0.8f, -0.8f}, {0.8f, 0.8f}});
}

void drawNearest(const Canvas&) {
    drawMagnified(Sampler::NEAREST);
}

void drawLinear(const Canvas&) {
    drawMagnified(Sampler::LINEAR);
}

/// The boat in the middle of nine places; a frame says where the texture itself is.
void drawWrapped(const Canvas& canvas, Sampler::Wrap wrapS, Sampler::Wrap wrapT) {
    Sampler sampler = Sampler::nearest_clamp();
    sampler.set({{Sampler::WRAP_S, wrapS}, {Sampler::WRAP_T, wrapT}});
    drawTextured(*makeBoat(sampler), {{-1.0f, -1.0f}, {2.0f, 2.0f}},
                 {{-0.9f, -0.9f}, {0.9f, 0.9f}});
    vellis::Drawable::setLineWidth(canvas.length(1.5f));
    vellis::Toolbox::drawLineLoop(
        toRgba(ink), {{-0.3f, -0.3f}, {0.3f, -0.3f}, {0.3f, 0.3f}, {-0.3f, 0.3f}}, flatView);
}

void drawClamped(const Canvas& canvas) {
    drawWrapped(canvas, Sampler::CLAMP, Sampler::CLAMP);
}

void drawRepeated(const Canvas& canvas) {
    drawWrapped(canvas, Sampler::REPEAT, Sampler::REPEAT);
}

void drawMirrored(const Canvas& canvas) {
    drawWrapped(canvas, Sampler::MIRRORED_REPEAT, Sampler::MIRRORED_REPEAT);
}

void drawMirroredAlongS(const Canvas& canvas) {
    drawWrapped(canvas, Sampler::MIRRORED_REPEAT, Sampler::CLAMP);
}

} // namespace

std::vector<Panel> samplerPanels() {
    return {
        {"filter-nearest",
         "filter: nearest",
         4,
         drawNearest,
         {
             ColorAt{{30, 100}, sky},
             ColorAt{{80, 100}, paper},
             ColorAt{{120, 100}, ink},
             ColorAt{{160, 100}, coral},
             ColorAt{{60, 205}, navy},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{90, 100}, {118, 100}, paper, ink},
             EdgeBetween{{60, 180}, {60, 205}, sky, navy},
             EdgeBetween{{118, 100}, {160, 100}, ink, coral},
         }},
        {"filter-linear",
         "filter: linear",
         4,
         drawLinear,
         {
             ColorAt{{30, 100}, sky},
             ColorAt{{80, 100}, paper},
             ColorAt{{119, 100}, {49, 62, 75}},
             ColorAt{{160, 100}, coral},
             ColorAt{{60, 208}, navy},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{10, 100}, {30, 100}, paper, sky},
             MixedBetween{{90, 100}, {118, 100}, paper, ink, 12, 26},
             MixedBetween{{60, 180}, {60, 212}, sky, navy, 14, 28},
         }},
        {"wrap-clamp",
         "wrap: clamp",
         4,
         drawClamped,
         {
             ColorAt{{98, 100}, sand},
             ColorAt{{122, 100}, ink},
             ColorAt{{60, 60}, sky},
             ColorAt{{60, 180}, blue},
             ColorAt{{200, 180}, blue},
             ColorAt{{6, 120}, paper},
             EdgeBetween{{60, 130}, {60, 155}, sky, blue},
             EdgeBetween{{5, 60}, {20, 60}, paper, sky},
             MixedBetween{{80, 200}, {160, 200}, blue, blue, 16, 28, 20},
         }},
        {"wrap-repeat",
         "wrap: repeat",
         4,
         drawRepeated,
         {
             ColorAt{{98, 100}, sand},
             ColorAt{{26, 100}, sand},
             ColorAt{{170, 100}, sand},
             ColorAt{{170, 28}, sand},
             ColorAt{{50, 100}, ink},
             ColorAt{{60, 120}, coral},
             ColorAt{{60, 68}, navy},
             ColorAt{{6, 120}, paper},
             EdgeBetween{{60, 95}, {60, 120}, sky, coral},
             EdgeBetween{{5, 88}, {14, 88}, paper, sky},
         }},
        {"wrap-mirrored",
         "wrap: mirrored",
         4,
         drawMirrored,
         {
             ColorAt{{98, 100}, sand},
             ColorAt{{70, 100}, sand},
             ColorAt{{214, 100}, sand},
             ColorAt{{60, 26}, navy},
             ColorAt{{60, 140}, navy},
             ColorAt{{60, 170}, navy},
             ColorAt{{60, 80}, sky},
             ColorAt{{6, 120}, paper},
             EdgeBetween{{60, 90}, {60, 120}, sky, paper},
             EdgeBetween{{5, 97}, {20, 97}, paper, sky},
         }},
        {"wrap-apart",
         "mirrored s, clamp t",
         4,
         drawMirroredAlongS,
         {
             ColorAt{{98, 100}, sand},
             ColorAt{{70, 100}, sand},
             ColorAt{{214, 100}, sand},
             ColorAt{{60, 140}, navy},
             ColorAt{{60, 200}, blue},
             ColorAt{{60, 60}, sky},
             ColorAt{{200, 30}, sky},
             ColorAt{{6, 120}, paper},
             EdgeBetween{{60, 95}, {60, 120}, sky, paper},
             EdgeBetween{{60, 200}, {60, 234}, blue, paper},
             MixedBetween{{20, 200}, {220, 200}, blue, blue, 40, 80, 20},
         }},
    };
}

} // namespace gallery

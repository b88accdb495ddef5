/// Panels of images that a canvas draws.

#include <cmath>
#include <memory>
#include <vector>

#include <gallery/panels/panel_canvas.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/texels.hpp>

namespace gallery {
namespace {

using namespace palette;
using vellis::ImageFrame;
using vellis::Stroke;

/// An image's frame around a place; its first row is the lowest.
ImageFrame frameAround(const glm::dvec2& middle, double size) {
    const glm::dvec2 half(size / 2.0, -size / 2.0);
    return {middle - half, middle + half};
}

/// A boat: as it is, turned around, rotated, a part of it, tinted.
void drawImages(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const auto boat = makeBoat(vellis::Sampler::nearest_clamp());
    canvas->drawImage(boat, frameAround({44.0, 44.0}, 64.0));
    canvas->drawImage(boat, frameAround({120.0, 44.0}, 64.0), {{1.0f, 0.0f}, {0.0f, 1.0f}});
    canvas->drawImage(boat, frameAround({196.0, 44.0}, 64.0), {{0.0f, 1.0f}, {1.0f, 0.0f}});
    canvas->drawImage(boat, frameAround({44.0, 120.0}, 64.0).rotated(-0.35));
    canvas->drawImage(boat, frameAround({120.0, 120.0}, 64.0), {{0.25f, 0.375f}, {0.75f, 0.875f}});
    canvas->drawImage(boat, frameAround({196.0, 120.0}, 64.0), {}, toRgba(orange));
    for (int i = 0; i < 3; ++i) {
        const double x = 44.0 + 76.0 * i;
        const float alpha = 1.0f - 0.3f * static_cast<float>(i);
        canvas->drawImage(boat, frameAround({x, 196.0}, 64.0), {}, {1.0f, 1.0f, 1.0f, alpha});
    }
}

/// Images between lines: above those that came before, below those that came after.
void drawImagesInOrder(const Canvas& surface) {
    const PanelCanvas canvas(surface);
    const auto boat = makeBoat(vellis::Sampler::linear_clamp());
    const auto drawWave = [&canvas](float y, Color color) {
        std::vector<glm::vec2> wave;
        for (float x = 8.0f; x <= 232.0f; x += 2.0f)
            wave.emplace_back(x, y + 9.0f * std::sin(0.07f * x + 0.1f * y));
        Stroke stroke(toRgba(color), 7.0f);
        stroke.cap = Stroke::Cap::Round;
        canvas->drawLineStrip(stroke, wave);
    };
    drawWave(50.0f, sand);
    drawWave(86.0f, teal);
    canvas->drawImage(boat, frameAround({92.0, 92.0}, 104.0));
    drawWave(122.0f, navy);
    canvas->drawImage(boat, frameAround({150.0, 150.0}, 104.0).rotated(0.2), {},
                      toRgba(paper, 0.8f));
    drawWave(158.0f, plum);
    drawWave(194.0f, coral);
}

} // namespace

std::vector<Panel> canvasImagePanels() {
    return {
        {"canvas-images",
         "images",
         1,
         drawImages,
         {
             ColorAt{{24, 24}, sand},
             ColorAt{{64, 48}, coral}, // as it is
             ColorAt{{140, 24}, sand},
             ColorAt{{100, 48}, coral}, // from the right to the left
             ColorAt{{176, 64}, sand},
             ColorAt{{216, 40}, coral}, // upside down
             ColorAt{{22, 112}, sand},
             ColorAt{{58, 115}, coral}, // rotated
             ColorAt{{6, 150}, paper},
             ColorAt{{120, 130}, ink},
             ColorAt{{93, 93}, sand}, // a part
             ColorAt{{140, 130}, coral},
             ColorAt{{95, 140}, paper},
             ColorAt{{184, 130}, {198, 142, 87}},
             ColorAt{{204, 118}, {221, 71, 31}}, // tinted
             ColorAt{{52, 190}, coral},
             ColorAt{{128, 190}, {237, 152, 129}},
             ColorAt{{204, 190}, {242, 193, 178}},
         }},
        {"canvas-image-order",
         "images in order",
         1,
         drawImagesInOrder,
         {
             ColorAt{{70, 40}, sky}, // above the first wave
             ColorAt{{60, 60}, sand},
             ColorAt{{60, 76}, sky},               // above the second one
             ColorAt{{60, 115}, navy},             // below the third one
             ColorAt{{180, 117}, {170, 188, 194}}, // above that
             ColorAt{{170, 186}, {80, 104, 125}},
             ColorAt{{110, 88}, coral},
             ColorAt{{200, 105}, paper},
         }},
    };
}

} // namespace gallery

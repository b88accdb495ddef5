/// Panels of images of one's own to draw to.

#include <algorithm>

#include <gallery/frame/drawing_to.hpp>
#include <gallery/panels/curves.hpp>
#include <gallery/panels/geometry.hpp>
#include <gallery/panels/mesh.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/programs.hpp>
#include <gallery/panels/textured.hpp>
#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using vellis::Framebuffer;
using vellis::Sampler;
using vellis::Toolbox;
using namespace palette;

const Rectangle wholeTexture{{0.0f, 0.0f}, {1.0f, 1.0f}};

/// A cube with a scene on each side, each drawn into the same texture before.
void drawScenesOnACube(const Canvas& canvas) {
    struct Side {
        Color ground;
        glm::mat4 turn;
    };
    const Side sides[] = {
        {sky, glm::mat4(1.0f)},
        {sand, glm::rotate(flatView, 0.5f * pi, glm::vec3(0.0f, 1.0f, 0.0f))},
        {paper, glm::rotate(flatView, -0.5f * pi, glm::vec3(1.0f, 0.0f, 0.0f))},
    };
    const glm::uvec2 size(512, 512);
    const auto texture = ColorTexture::make(size.x, size.y, nullptr, Sampler::linear_clamp());
    const glm::mat4 view = viewFrom({3.6f, 3.1f, 4.8f}, {0.0f, -0.1f, 0.0f});
    vellis::Drawable::setLineWidth(canvas.length(1.5f));
    for (const Side& side : sides) {
        {
            const DrawingTo drawing(size, *texture);
            Framebuffer::clearColor(toRgba(side.ground));
            drawSurface(makeLitProgram(), makeKnot());
        }
        const glm::mat4 place = view * glm::translate(side.turn, glm::vec3(0.0f, 0.0f, 1.0f));
        drawTextured(*texture, wholeTexture, {{-1.0f, -1.0f}, {1.0f, 1.0f}}, place);
        Toolbox::drawLineLoop(toRgba(ink),
                              {{-1.0f, -1.0f}, {1.0f, -1.0f}, {1.0f, 1.0f}, {-1.0f, 1.0f}}, place);
    }
}

/// The size of the scene that is shown enlarged, and how many pixels of the panel each of its
/// pixels becomes along one side.
const glm::uvec2 smallSize(27, 54);
constexpr unsigned int enlargement = 4;

/// The sun at the lower left, and its rays.
void drawSunrise() {
    const std::vector<Color> colors = {coral, navy, teal, plum};
    constexpr unsigned int rays = 9;
    const glm::vec2 centre(-1.0f, -1.0f);
    for (unsigned int i = 0; i < rays; ++i) {
        const float angle = 0.5f * pi * (static_cast<float>(i) + 0.25f) / rays;
        Toolbox::drawTriangleFan(toRgba(colors[i % colors.size()]),
                                 {centre, centre + onCircle(angle, 3.0f),
                                  centre + onCircle(angle + 0.25f * pi / rays, 3.0f)},
                                 flatView);
    }
    drawDisc(toRgba(sand), centre, 0.8f);
}

/// The same, each pixel as the mean of several samples.
void drawResolved(const std::shared_ptr<ColorTexture>& texture) {
    GLint maxSamples = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &maxSamples);
    if (maxSamples >= 2) {
        const auto samples = static_cast<unsigned int>(std::min(maxSamples, 4));
        const auto renderbuffer = ColorSamples::make(smallSize.x, smallSize.y, samples);
        const DrawingTo drawing(smallSize, samples, *renderbuffer);
        drawSunrise();
        Framebuffer::blit(*renderbuffer, *texture, smallSize.x, smallSize.y);
        return;
    }
    // A driver without multisampling: the same from four pixels for each.
    const glm::uvec2 size = 2u * smallSize;
    const auto large = ColorTexture::make(size.x, size.y, nullptr, Sampler::linear_clamp());
    {
        const DrawingTo drawing(size, *large);
        drawSunrise();
    }
    const DrawingTo drawing(smallSize, *texture);
    drawTextured(*large, wholeTexture, {{-1.0f, -1.0f}, {1.0f, 1.0f}});
}

void showEnlarged(const ColorTexture& texture, float left) {
    const glm::vec2 size(enlargement * smallSize);
    drawTextured(texture, wholeTexture, atPixels(left, 12.0f, size.x, size.y));
}

/// A small scene on the left as it is, on the right with several samples a pixel.
void drawSamples(const Canvas&) {
    const auto texture = ColorTexture::make(smallSize.x, smallSize.y);
    {
        const DrawingTo drawing(smallSize, *texture);
        drawSunrise();
    }
    showEnlarged(*texture, 8.0f);
    drawResolved(texture);
    showEnlarged(*texture, 124.0f);
}

/// Colours, normals and depths, drawn at once and shown side by side.
void drawThreeOutputs(const Canvas& canvas) {
    const glm::uvec2 size(panelSize * canvas.sampling);
    const auto colors = ColorTexture::make(size.x, size.y);
    const auto normals = ColorTexture::make(size.x, size.y);
    const auto depths = ColorTexture::make(size.x, size.y);
    {
        const DrawingTo drawing(size, *colors, *normals, *depths);
        drawSurface(makeThreeOutputsProgram(), makeKnot());
    }
    float left = -0.9f;
    for (const auto& texture : {colors, normals, depths}) {
        const Rectangle where{{left, -0.9f}, {left + 0.58f, 0.9f}};
        drawTextured(*texture, {0.5f + 0.5f * where.lowerLeft, 0.5f + 0.5f * where.upperRight},
                     where);
        left += 0.61f;
    }
}

} // namespace

std::vector<Panel> framebufferPanels() {
    return {
        {"render-to-texture",
         "drawn to a texture",
         4,
         drawScenesOnACube,
         {
             ColorAt{{34, 150}, sky},
             ColorAt{{120, 120}, sky},
             ColorAt{{204, 68}, sand},
             ColorAt{{178, 47}, {57, 101, 129}, 16},
             ColorAt{{57, 150}, {120, 76, 108}, 16},
             ColorAt{{190, 80}, {88, 122, 158}, 16},
             ColorAt{{12, 12}, paper},
             ColorAt{{228, 228}, paper},
             EdgeBetween{{10, 150}, {40, 150}, paper, sky},
             EdgeBetween{{34, 54}, {34, 70}, paper, sky},
         }},
        {"multisample",
         "samples: 1, 4",
         1,
         drawSamples,
         {
             ColorAt{{20, 200}, sand},
             ColorAt{{140, 200}, sand},
             ColorAt{{78, 190}, navy},
             ColorAt{{200, 190}, navy},
             ColorAt{{100, 40}, coral},
             ColorAt{{216, 40}, coral},
             ColorAt{{100, 98}, plum},
             ColorAt{{216, 97}, plum},
             ColorAt{{120, 120}, paper},
             ColorAt{{100, 70}, paper},
             EdgeBetween{{100, 40}, {100, 70}, coral, paper},
             MixedBetween{{100, 14}, {100, 70}, paper, coral, 0, 0},
             MixedBetween{{216, 14}, {216, 70}, paper, coral, 8, 24},
             MixedBetween{{100, 120}, {100, 160}, paper, teal, 0, 0},
             MixedBetween{{216, 120}, {216, 160}, paper, teal, 4, 24},
         }},
        {"three-outputs",
         "several outputs",
         4,
         drawThreeOutputs,
         {
             ColorAt{{60, 60}, {201, 192, 116}},
             ColorAt{{76, 140}, {87, 168, 135}, 16},
             ColorAt{{110, 60}, {59, 140, 234}, 16},
             ColorAt{{125, 140}, {185, 69, 226}},
             ColorAt{{190, 60}, {192, 171, 108}},
             ColorAt{{165, 140}, {223, 191, 109}},
             ColorAt{{120, 30}, paper},
             ColorAt{{190, 130}, paper},
             ColorAt{{156, 60}, paper},
             EdgeBetween{{149, 60}, {157, 60}, {150, 37, 215}, paper, 16},
             EdgeBetween{{10, 70}, {35, 70}, paper, {171, 186, 121}, 16},
         }},
    };
}

} // namespace gallery

#include <gallery/panel.hpp>

#include <gallery/panel_drawings.hpp>

namespace gallery {
namespace {

using namespace palette;

/// Along a way across a line or a point, so many pixels are not paper.
MixedBetween widthBetween(Point from, Point to, int minimum, int maximum) {
    return {from, to, paper, paper, minimum, maximum};
}

/// The same, exactly.
MixedBetween widthBetween(Point from, Point to, int width) {
    return widthBetween(from, to, width, width);
}

// Ends of the rays, which run through all colours up to navy.
constexpr Colour rayEnd{65, 76, 97};

// Lit colours of the meshes.
constexpr Colour bowlInside{196, 166, 91};
constexpr Colour bowlOutside{29, 110, 100};

} // namespace

const std::vector<Panel>& panels() {
    static const std::vector<Panel> table = {
        {"triangle",
         "smooth triangle",
         4,
         drawTriangle,
         {
             ColourAt{{120, 145}, {170, 156, 111}}, // the mean of the corners
             ColourAt{{120, 40}, {227, 115, 83}},
             ColourAt{{30, 197}, {53, 157, 140}},
             ColourAt{{209, 197}, {229, 196, 110}},
             ColourAt{{30, 60}, paper},
             ColourAt{{210, 60}, paper},
             EdgeBetween{{120, 198}, {120, 208}, {140, 178, 126}, paper},
             EdgeBetween{{64, 116}, {76, 116}, paper, {140, 135, 112}},
             EdgeBetween{{176, 116}, {164, 116}, paper, {233, 155, 95}},
         }},
        {"indexed-mesh",
         "indexed mesh",
         4,
         drawKnot,
         {
             ColourAt{{48, 70}, {166, 181, 118}},
             ColourAt{{195, 70}, {46, 89, 109}},
             ColourAt{{120, 135}, {40, 125, 111}},
             ColourAt{{150, 150}, {248, 131, 104}},
             ColourAt{{120, 105}, paper}, // the hole in the middle
             ColourAt{{75, 80}, paper},
             ColourAt{{200, 160}, paper},
             EdgeBetween{{165, 20}, {165, 36}, paper, {78, 117, 151}},
         }},
        {"polygon-mode-fill",
         "polygon mode: fill",
         4,
         drawFilledBall,
         {
             ColourAt{{120, 120}, {66, 116, 148}},
             ColourAt{{127, 119}, {66, 116, 148}}, // a triangle's middle
             ColourAt{{120, 45}, {44, 163, 148}},
             ColourAt{{120, 195}, {28, 52, 73}},
             ColourAt{{200, 40}, paper},
             EdgeBetween{{10, 120}, {40, 120}, paper, {64, 116, 148}, 16},
         }},
        {"polygon-mode-line",
         "polygon mode: line",
         4,
         drawBallOfLines,
         {
             ColourAt{{120, 122}, {67, 118, 149}, 20}, // on an edge of a triangle
             ColourAt{{127, 119}, paper},              // a triangle's middle
             ColourAt{{40, 120}, paper},
             ColourAt{{200, 40}, paper},
             widthBetween({112, 122}, {127, 122}, 1, 4),
             EdgeBetween{{126, 116}, {119, 116}, paper, {67, 118, 149}, 20},
         }},
        {"polygon-mode-point",
         "polygon mode: point",
         4,
         drawBallOfPoints,
         {
             ColourAt{{118, 110}, {82, 144, 171}, 20}, // a corner of triangles
             ColourAt{{94, 123}, {71, 124, 157}, 20},
             ColourAt{{120, 122}, paper}, // on an edge of a triangle
             ColourAt{{127, 119}, paper}, // a triangle's middle
             widthBetween({108, 110}, {128, 110}, 5, 7),
             EdgeBetween{{108, 110}, {118, 110}, paper, {82, 144, 171}, 20},
         }},
        {"line-width",
         "line width 1 to 10",
         1,
         drawLineWidths,
         {
             ColourAt{{23, 120}, sand},
             ColourAt{{218, 120}, navy},
             widthBetween({13, 120}, {34, 120}, 1),
             widthBetween({35, 120}, {55, 120}, 2),
             widthBetween({56, 120}, {77, 120}, 3),
             widthBetween({78, 120}, {98, 120}, 4),
             widthBetween({99, 120}, {120, 120}, 5),
             widthBetween({121, 120}, {142, 120}, 6),
             widthBetween({143, 120}, {163, 120}, 7),
             widthBetween({164, 120}, {185, 120}, 8),
             widthBetween({186, 120}, {207, 120}, 9),
             widthBetween({208, 120}, {230, 120}, 10),
             EdgeBetween{{218, 30}, {218, 50}, paper, navy},
             EdgeBetween{{218, 190}, {218, 210}, navy, paper},
         }},
        {"line-smooth",
         "line smooth off, on",
         1,
         drawLineSmoothing,
         {
             ColourAt{{25, 112}, rayEnd, 16},
             ColourAt{{214, 112}, rayEnd, 16},
             ColourAt{{120, 120}, paper},
             MixedBetween{{25, 100}, {25, 140}, paper, rayEnd, 0, 0, 16},
             MixedBetween{{214, 100}, {214, 140}, paper, rayEnd, 4, 8, 16},
             widthBetween({25, 100}, {25, 120}, 2),
             EdgeBetween{{25, 106}, {25, 112}, paper, rayEnd, 16},
         }},
        {"point-size",
         "point size 3 to 24",
         1,
         drawPointSizes,
         {
             ColourAt{{25, 25}, sand},
             ColourAt{{25, 214}, plum},
             ColourAt{{214, 214}, plum},
             ColourAt{{39, 39}, paper},
             widthBetween({12, 25}, {38, 25}, 3),
             widthBetween({12, 52}, {38, 52}, 6),
             widthBetween({12, 79}, {38, 79}, 9),
             widthBetween({12, 106}, {38, 106}, 12),
             widthBetween({12, 133}, {38, 133}, 15),
             widthBetween({12, 160}, {38, 160}, 18),
             widthBetween({12, 187}, {38, 187}, 21),
             widthBetween({12, 214}, {38, 214}, 24),
             EdgeBetween{{6, 214}, {25, 214}, paper, plum},
         }},
        {"point-sprite",
         "point sprites",
         4,
         drawPointSprites,
         {
             ColourAt{{126, 120}, sand},
             ColourAt{{178, 153}, {235, 125, 85}},
             ColourAt{{204, 64}, navy},
             ColourAt{{198, 58}, paper}, // the corners of a round point
             ColourAt{{210, 58}, paper},
             ColourAt{{198, 70}, paper},
             ColourAt{{20, 20}, paper},
             widthBetween({195, 64}, {218, 64}, 13, 16),
             EdgeBetween{{204, 50}, {204, 64}, paper, navy},
         }},
        {"culling-off",
         "face culling: off",
         4,
         drawBowl,
         {
             ColourAt{{100, 82}, bowlInside},
             ColourAt{{120, 182}, bowlOutside},
             ColourAt{{30, 52}, paper},
             EdgeBetween{{100, 130}, {100, 146}, {231, 197, 110}, {38, 138, 125}},
             EdgeBetween{{120, 205}, {120, 222}, bowlOutside, paper},
         }},
        {"culling-back",
         "face culling: back",
         4,
         drawBowlWithoutBackFaces,
         {
             ColourAt{{100, 82}, paper},
             ColourAt{{120, 182}, bowlOutside},
             ColourAt{{30, 52}, paper},
             EdgeBetween{{100, 130}, {100, 146}, paper, {38, 138, 125}},
             EdgeBetween{{120, 205}, {120, 222}, bowlOutside, paper},
         }},
        {"culling-front",
         "face culling: front",
         4,
         drawBowlWithoutFrontFaces,
         {
             ColourAt{{100, 82}, bowlInside},
             ColourAt{{120, 182}, {251, 213, 119}},
             ColourAt{{30, 52}, paper},
             EdgeBetween{{120, 22}, {120, 38}, paper, {165, 140, 77}},
             EdgeBetween{{120, 210}, {120, 222}, {234, 199, 110}, paper},
         }},
    };
    return table;
}

} // namespace gallery

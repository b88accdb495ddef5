/// Panels of textures of one to three dimensions.

#include <algorithm>
#include <cmath>

#include <glm/geometric.hpp>

#include <gallery/panels/curves.hpp>
#include <gallery/panels/geometry.hpp>
#include <gallery/panels/mesh.hpp>
#include <gallery/panels/panel_groups.hpp>
#include <gallery/panels/programs.hpp>
#include <gallery/panels/texels.hpp>
#include <gallery/panels/textured.hpp>
#include <vellis/gl.hpp>

namespace gallery {
namespace {

using vellis::Drawable;
using vellis::Sampler;
using vellis::Uniform;
using vellis::VertexAttribute;
using namespace palette;

/// Triangles with a value at each corner.
struct ValuedTriangles {
    std::vector<glm::vec2> positions;
    std::vector<float> values;

    /// Adds a rectangle as 2 × cells × cells triangles, with the values that \p at gives.
    template <class At>
    void add(const Rectangle& where, unsigned int cells, At at) {
        const glm::vec2 size = where.upperRight - where.lowerLeft;
        for (unsigned int i = 0; i < cells * cells; ++i) {
            for (const glm::uvec2 corner :
                 {glm::uvec2(0, 0), {1, 0}, {0, 1}, {0, 1}, {1, 0}, {1, 1}}) {
                const glm::vec2 part = glm::vec2(glm::uvec2(i % cells, i / cells) + corner) /
                                       static_cast<float>(cells);
                positions.push_back(where.lowerLeft + size * part);
                values.push_back(at(positions.back()));
            }
        }
    }
};

/// Two hills and a hollow, from 0 to 1.
float landscape(const glm::vec2& at) {
    const auto hill = [&](const glm::vec2& centre, float steepness) {
        const glm::vec2 offset = at - centre;
        return std::exp(-steepness * glm::dot(offset, offset));
    };
    return 0.36f + 0.6f * hill({0.06f, 0.3f}, 5.0f) + 0.42f * hill({-0.42f, -0.14f}, 7.0f) -
           0.36f * hill({0.12f, -0.48f}, 6.0f);
}

/// A contour map in the colours of a texture of one dimension, with a scale beside it.
void drawContourMap(const Canvas&) {
    constexpr unsigned int bands = 11;
    const std::vector<Color> colors = {navy, blue, teal, sand, orange, coral, plum};
    std::vector<glm::u8vec4> texels;
    for (unsigned int i = 0; i < bands; ++i)
        texels.push_back(toTexel(blend(colors, static_cast<float>(i) / (bands - 1))));
    const auto map =
        vellis::Texture1D<glm::u8vec4>::make(bands, texels.data(), Sampler::nearest_clamp());

    ValuedTriangles triangles;
    triangles.add({{-0.86f, -0.86f}, {0.56f, 0.86f}}, 64, landscape);
    triangles.add({{0.68f, -0.86f}, {0.86f, 0.86f}}, 1,
                  [](const glm::vec2& at) { return 0.5f + at.y / 1.72f; });
    const auto positions = makeBuffer(triangles.positions);
    const auto values = makeBuffer(triangles.values);
    const auto program = makeColorMapProgram();
    const auto drawable =
        vellis::drawable::Triangles<VertexAttribute<glm::vec2>, VertexAttribute<float>>::make(
            program, {"position", positions}, {"value", values});
    program->draw(*drawable, Uniform("colors", *map));
}

void drawBoat(const Canvas&) {
    drawTextured(*makeBoat(Sampler::nearest_clamp()), {{0.0f, 0.0f}, {1.0f, 1.0f}},
                 {{-0.8f, -0.8f}, {0.8f, 0.8f}});
}

/// Faces of a block, with the side that they look to.
struct Faces {
    std::vector<glm::vec3> positions;
    std::vector<glm::vec3> normals;

    /// Adds a rectangle at \p corner.
    void add(const glm::vec3& corner, const glm::vec3& a, const glm::vec3& b) {
        const glm::vec3 normal = glm::normalize(glm::cross(a, b));
        for (const glm::vec3& point :
             {corner, corner + a, corner + b, corner + b, corner + a, corner + a + b}) {
            positions.push_back(point);
            normals.push_back(normal);
        }
    }
};

/// What is seen of the cube from -1 to 1 without the eighth at its upper, right, front corner.
Faces makeCutCube() {
    Faces faces;
    for (int side = 0; side < 3; ++side) {
        glm::vec3 out(0.0f);
        glm::vec3 a(0.0f);
        glm::vec3 b(0.0f);
        out[side] = 1.0f;
        a[(side + 1) % 3] = 1.0f;
        b[(side + 2) % 3] = 1.0f;
        faces.add(out - a - b, a, b);
        faces.add(out - b, a, b);
        faces.add(out - a, a, b);
        faces.add(glm::vec3(0.0f), a, b);
    }
    return faces;
}

/// The colour at a distance from the core, in shells; from one shell to the next it runs smoothly.
glm::vec3 shellColor(float distance) {
    constexpr Color shells[] = {paper, sand, orange, coral, plum, blue,
                                teal,  sand, navy,   navy,  navy};
    const auto shell = static_cast<std::size_t>(distance);
    const float toNext = std::max(4.0f * (distance - static_cast<float>(shell)) - 3.0f, 0.0f);
    return glm::mix(toVector(shells[shell]), toVector(shells[shell + 1]), toNext);
}

/// Shells around a core, as a texture of three dimensions.
std::shared_ptr<vellis::Texture3D<glm::u8vec4>> makeShells(unsigned int size) {
    std::vector<glm::u8vec4> texels;
    for (unsigned int i = 0; i < size * size * size; ++i) {
        const glm::uvec3 texel(i % size, i / size % size, i / size / size);
        const glm::vec3 at = glm::vec3(texel) * 2.0f / static_cast<float>(size - 1) - 1.0f;
        const float wobble = 0.05f * std::sin(5.0f * at.x + 1.0f) * std::sin(4.0f * at.y) +
                             0.05f * std::sin(6.0f * at.z + 2.0f);
        const float distance = std::max(5.2f * (glm::length(at) + wobble), 0.0f);
        texels.push_back(toTexel(shellColor(distance)));
    }
    return vellis::Texture3D<glm::u8vec4>::make(size, size, size, texels.data(),
                                                Sampler::linear_clamp());
}

/// A block cut open, coloured by a texture of three dimensions.
void drawSolid(const Canvas&) {
    constexpr unsigned int size = 32;
    const Faces faces = makeCutCube();
    const auto shells = makeShells(size);
    const auto positions = makeBuffer(faces.positions);
    const auto normals = makeBuffer(faces.normals);
    const auto program = makeSolidProgram();
    const auto drawable =
        vellis::drawable::Triangles<VertexAttribute<glm::vec3>, VertexAttribute<glm::vec3>>::make(
            program, {"position", positions}, {"normal", normals});
    glEnable(GL_DEPTH_TEST);
    program->draw(*drawable, Uniform("mvp", viewFrom({3.9f, 3.3f, 4.8f}, {0.0f, -0.06f, 0.0f})),
                  Uniform("solid", *shells), Uniform("texels", static_cast<float>(size)));
}

void drawPlanet(const Canvas&) {
    drawTexturedSurface(makeLitPictureProgram(), makeGlobe(), *makePlanet());
}

/// The texel of a patch of the quilt.
glm::u8vec4 stitch(unsigned int patch, unsigned int size, unsigned int column, unsigned int row) {
    const Color grounds[] = {navy, sand, coral, teal, plum, orange, blue};
    const Color threads[] = {sand, coral, paper, navy, orange, plum, paper};
    const auto fromMiddle = [&](unsigned int at) {
        return std::abs(2 * static_cast<int>(at) + 1 - static_cast<int>(size));
    };
    const int x = fromMiddle(column);
    const int y = fromMiddle(row);
    const bool patterns[] = {x + y < 14, (column + row) / 4 % 2 == 0, std::max(x, y) % 8 < 3,
                             x * x + y * y < 100, (column / 4 + row / 4) % 2 == 0};
    return toTexel(patterns[patch % 5] ? threads[patch % 7] : grounds[patch % 7]);
}

/// A texture that is filled patch by patch.
void drawQuilt(const Canvas&) {
    constexpr unsigned int patches = 4;
    constexpr unsigned int size = 16;
    const auto quilt = vellis::Texture2D<glm::u8vec4>::make(patches * size, patches * size);
    for (unsigned int patch = 0; patch < patches * patches; ++patch) {
        std::vector<glm::u8vec4> texels;
        for (unsigned int i = 0; i < size * size; ++i)
            texels.push_back(stitch(patch, size, i % size, i / size));
        quilt->upload(texels.data(), patch % patches * size, patch / patches * size, size, size);
    }
    drawTextured(*quilt, {{0.0f, 0.0f}, {1.0f, 1.0f}}, {{-0.8f, -0.8f}, {0.8f, 0.8f}});
}

/// A tiled floor up to the horizon, on the left without mipmaps and on the right with them.
void drawFloor(const Canvas&) {
    const auto tile = [](unsigned int column, unsigned int row) {
        return toTexel((column < 32) == (row < 32) ? navy : sand);
    };
    const auto plain = makeTexture(64, Sampler::linear_repeat(), tile);
    const auto mipmapped = makeTexture(64, Sampler::trilinear_repeat(), tile);
    mipmapped->generateMipmap();
    const glm::mat4 floor = glm::rotate(viewFrom({0.0f, 1.0f, 0.0f}, {0.0f, 0.86f, -1.0f}),
                                        -0.5f * pi, glm::vec3(1.0f, 0.0f, 0.0f));
    const Rectangle left{{-60.0f, 0.0f}, {0.0f, 90.0f}};
    const Rectangle right{{0.0f, 0.0f}, {60.0f, 90.0f}};
    drawTextured(*plain, left, left, floor);
    drawTextured(*mipmapped, right, right, floor);
}

} // namespace

std::vector<Panel> texturePanels() {
    return {
        {"texture-1d",
         "1D: contour map",
         4,
         drawContourMap,
         {
             ColorAt{{120, 100}, plum},
             ColorAt{{30, 100}, sand},
             ColorAt{{60, 130}, {234, 121, 84}},
             ColorAt{{60, 30}, {120, 174, 130}},
             ColorAt{{212, 220}, navy},
             ColorAt{{212, 20}, plum},
             ColorAt{{194, 100}, paper},
             ColorAt{{230, 230}, paper},
             EdgeBetween{{90, 100}, {110, 100}, {192, 100, 96}, plum},
             EdgeBetween{{60, 36}, {60, 60}, {120, 174, 130}, sand},
             EdgeBetween{{196, 100}, {210, 100}, paper, {241, 177, 102}},
         }},
        {"texture-2d",
         "2D: picture",
         4,
         drawBoat,
         {
             ColorAt{{60, 60}, sand},
             ColorAt{{100, 120}, paper},
             ColorAt{{126, 100}, ink},
             ColorAt{{150, 100}, coral},
             ColorAt{{60, 165}, navy},
             ColorAt{{30, 205}, blue},
             ColorAt{{200, 60}, sky},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{15, 120}, {35, 120}, paper, sky},
             EdgeBetween{{120, 100}, {140, 100}, ink, coral},
             EdgeBetween{{60, 150}, {60, 165}, sky, navy},
         }},
        {"texture-3d",
         "3D: solid block",
         4,
         drawSolid,
         {
             ColorAt{{35, 100}, {215, 183, 102}},
             ColorAt{{60, 105}, {41, 145, 132}},
             ColorAt{{60, 130}, {64, 114, 145}},
             ColorAt{{76, 100}, {29, 110, 100}},
             ColorAt{{12, 12}, paper},
             ColorAt{{60, 210}, paper},
             EdgeBetween{{60, 98}, {60, 135}, {41, 145, 132}, {64, 114, 145}},
             EdgeBetween{{15, 70}, {28, 70}, paper, navy},
             ColorAt{{60, 178}, {216, 185, 102}},
         }},
        {"texture-on-mesh",
         "2D: on a mesh",
         4,
         drawPlanet,
         {
             ColorAt{{60, 71}, {227, 111, 81}},
             ColorAt{{45, 100}, {226, 224, 219}},
             ColorAt{{60, 44}, {224, 184, 103}, 14},
             ColorAt{{12, 12}, paper},
             ColorAt{{228, 228}, paper},
             EdgeBetween{{10, 100}, {26, 100}, paper, {203, 200, 196}, 16},
         }},
        {"texture-parts",
         "2D: patch by patch",
         4,
         drawQuilt,
         {
             ColorAt{{48, 48}, plum},
             ColorAt{{28, 28}, orange},
             ColorAt{{48, 97}, coral},
             ColorAt{{140, 100}, navy},
             ColorAt{{180, 100}, orange},
             ColorAt{{90, 100}, paper},
             ColorAt{{60, 205}, navy},
             ColorAt{{12, 12}, paper},
             EdgeBetween{{28, 100}, {60, 100}, sand, coral},
             EdgeBetween{{210, 205}, {228, 205}, teal, paper},
             EdgeBetween{{122, 100}, {140, 100}, teal, navy},
         }},
        {"mipmaps",
         "mipmaps: off, on",
         1,
         drawFloor,
         {
             ColorAt{{20, 100}, sand},
             ColorAt{{70, 100}, sand},
             ColorAt{{5, 100}, navy},
             ColorAt{{120, 30}, paper},
             MixedBetween{{124, 64}, {236, 64}, {137, 135, 105}, {137, 135, 105}, 0, 0, 16},
             MixedBetween{{4, 64}, {116, 64}, {137, 135, 105}, {137, 135, 105}, 60, 113, 16},
             EdgeBetween{{180, 50}, {180, 70}, paper, {137, 135, 105}, 16},
             EdgeBetween{{38, 100}, {62, 100}, navy, sand},
         }},
    };
}

} // namespace gallery

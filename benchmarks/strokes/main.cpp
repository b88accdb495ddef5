/// How far strokes are from their geometry, sampled 1024 times a pixel: those of Canvas, of cairo
/// where that is found, and of GL's smooth lines.
///
/// Usage: vellis_stroke_errors
///
/// Prints a table: for each scene and each way to draw it, the mean error in 255ths over the
/// touched pixels, how much of them is off by more than 16, and by more than 64. The last lines are
/// random strokes, opaque and half transparent.

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include <vellis/canvas/canvas.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>

#include "support/stroke_drawing.hpp"
#include "support/stroke_scenes.hpp"
#include "times/program.hpp"

#ifdef VELLIS_HAS_CAIRO
#include "strokes/cairo.hpp"
#endif

namespace vellis::bench {
namespace {

using Strokes = std::vector<test::Stroke>;

constexpr unsigned int numRandom = 150;

/// A way to draw strokes.
struct Way {
    const char* name;
    std::function<offscreen::Image(const Strokes&)> draw;
    bool takesDashes;
};

offscreen::Image drawByCanvas(Canvas& canvas, const Strokes& strokes) {
    test::clearScene();
    canvas.begin(test::strokeSceneMatrix());
    for (const test::Stroke& stroke : strokes)
        test::drawThrough(canvas, stroke, test::floatPoints(stroke));
    canvas.end();
    return test::readScene();
}

offscreen::Image drawBySmoothLines(const Strokes& strokes) {
    test::clearScene();
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(&test::strokeSceneMatrix()[0][0]);
    glEnable(GL_LINE_SMOOTH);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    for (const test::Stroke& stroke : strokes) {
        glLineWidth(static_cast<float>(stroke.width));
        glColor4d(1, 1, 1, stroke.opacity);
        glBegin(stroke.closed ? GL_LINE_LOOP : GL_LINE_STRIP);
        for (const glm::dvec2& point : stroke.points)
            glVertex2d(point.x, point.y);
        glEnd();
    }
    glDisable(GL_BLEND);
    glDisable(GL_LINE_SMOOTH);
    return test::readScene();
}

void printHead(const std::vector<Way>& ways) {
    std::printf("| scene |");
    for (const Way& way : ways)
        std::printf(" %s: mean | > 16 | > 64 |", way.name);
    std::printf("\n|---|");
    for (std::size_t i = 0; i != ways.size(); ++i)
        std::printf("---:|---:|---:|");
    std::printf("\n");
}

/// A line of the table.
/// \param pictures  What was drawn together, each by itself.
void printLine(const std::string& name, const std::vector<Way>& ways,
               const std::vector<Strokes>& pictures) {
    std::vector<test::StrokeErrors> errors(ways.size());
    std::vector<bool> isDrawn(ways.size(), true);
    for (const Strokes& strokes : pictures) {
        const test::Coverage truth = test::sceneCoverage(strokes);
        const double opacity = test::canvasOpacity(strokes[0].opacity);
        for (std::size_t i = 0; i != ways.size(); ++i) {
            isDrawn[i] = isDrawn[i] && (ways[i].takesDashes || strokes[0].dashes.empty());
            errors[i] += test::strokeErrors(truth, opacity, ways[i].draw(strokes));
        }
    }
    std::printf("| %s |", name.c_str());
    for (std::size_t i = 0; i != ways.size(); ++i) {
        if (isDrawn[i])
            std::printf(" %.2f | %.2f %% | %.2f %% |", errors[i].mean(),
                        errors[i].percentBeyond16(), errors[i].percentBeyond64());
        else
            std::printf(" | | |");
    }
    std::printf("\n");
}

/// Random strokes, solid or dashed.
std::vector<Strokes> randomPictures(double opacity, bool areDashed) {
    std::vector<Strokes> pictures;
    for (unsigned int seed = 0; seed != numRandom; ++seed) {
        test::Stroke stroke = test::randomStroke(seed);
        stroke.opacity = opacity;
        if (!stroke.dashes.empty() == areDashed)
            pictures.push_back({stroke});
    }
    return pictures;
}

void printTable(const std::vector<Way>& ways) {
    printHead(ways);
    for (const test::StrokeScene& scene : test::strokeScenes())
        printLine(scene.name, ways, {scene.strokes});
    for (const double opacity : {1.0, test::canvasOpacity(0.5)})
        for (const bool areDashed : {false, true}) {
            const std::vector<Strokes> pictures = randomPictures(opacity, areDashed);
            printLine(std::to_string(pictures.size()) + " random ones" +
                          (areDashed ? ", dashed" : "") + (opacity < 1 ? ", translucent" : ""),
                      ways, pictures);
        }
}

} // namespace
} // namespace vellis::bench

int main() {
    using namespace vellis;
    const auto context = bench::openContext(test::strokeSceneSize);
    const auto canvas = Canvas::make();
    std::vector<bench::Way> ways;
    ways.push_back(
        {"canvas",
         [&](const bench::Strokes& strokes) { return bench::drawByCanvas(*canvas, strokes); },
         true});
#ifdef VELLIS_HAS_CAIRO
    ways.push_back({"cairo", bench::drawByCairo, true});
#endif
    ways.push_back({"GL_LINE_SMOOTH", bench::drawBySmoothLines, false});
    bench::printTable(ways);
    engine::dispose();
}

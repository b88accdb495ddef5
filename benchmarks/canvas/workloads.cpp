#include "canvas/workloads.hpp"

#include <vellis/buffers.hpp>
#include <vellis/canvas.hpp>
#include <vellis/gl.hpp>

#include "canvas/plain.hpp"
#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

using Points = std::vector<glm::vec2>;
using Scene = Points (*)(unsigned int count);

// --- By hand ---

template <unsigned int primitive, Scene scene>
class Raw {
public:
    explicit Raw(unsigned int size) : plain_(primitive, scene(size)) {}
    void operator()() const { plain_.draw(); }

private:
    Plain plain_;
};

using RawLines = Raw<GL_LINES, shortLines>;
using RawStrip = Raw<GL_LINE_STRIP, walk>;
using RawPoints = Raw<GL_POINTS, scattered>;

// --- Through Canvas ---

Stroke aliasedStroke() {
    return Stroke::aliased(sceneColor);
}
Stroke thinStroke() {
    return sceneColor;
}
Stroke wideStroke() {
    Stroke stroke(sceneColor, 8.f);
    stroke.join = Stroke::Join::Round;
    return stroke;
}

using MakeStroke = Stroke (*)();

/// A batch around what a side draws.
class Batch {
protected:
    template <class Draw>
    void draw(Draw drawing) const {
        canvas->begin(matrix);
        drawing();
        canvas->end();
    }

    std::shared_ptr<Canvas> canvas = Canvas::make();
    glm::mat4 matrix = pixelsToClip();
};

struct Empty : Batch {
    void operator()() const {
        draw([] {});
    }
};

template <MakeStroke makeStroke>
struct Lines : Batch {
    explicit Lines(unsigned int size) : points(shortLines(size)) {}
    void operator()() const {
        draw([&] { canvas->drawLines(makeStroke(), points); });
    }
    Points points;
};

struct LineByLine : Batch {
    explicit LineByLine(unsigned int size) : points(shortLines(size)) {}
    void operator()() const {
        draw([&] {
            for (std::size_t i = 0; i < points.size(); i += 2)
                canvas->drawLines(Stroke::aliased(sceneColor), {points[i], points[i + 1]});
        });
    }
    Points points;
};

template <MakeStroke makeStroke>
struct Strip : Batch {
    explicit Strip(unsigned int size) : points(walk(size)) {}
    void operator()() const {
        draw([&] { canvas->drawLineStrip(makeStroke(), points); });
    }
    Points points;
};

template <MakeStroke makeStroke>
struct BufferStrip : Batch {
    explicit BufferStrip(unsigned int size)
        : count(size),
          buffer(VertexAttributeBuffer<glm::vec2>::make(walk(size), BufferUsage::Static,
                                                        BufferAccess::Draw)) {}
    void operator()() const {
        draw([&] { canvas->drawLineStrip(makeStroke(), 0, count, buffer); });
    }
    unsigned int count;
    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> buffer;
};

template <MakeStroke makeStroke>
struct PictureStrip : Batch {
    explicit PictureStrip(unsigned int size) {
        canvas->beginPicture(glm::mat4(1.f));
        canvas->drawLineStrip(makeStroke(), walk(size));
        picture = canvas->endPicture();
    }
    void operator()() const {
        draw([&] { canvas->drawPicture(picture); });
    }
    std::shared_ptr<Picture> picture;
};

struct SoftPoints : Batch {
    explicit SoftPoints(unsigned int size) : points(scattered(size)) {}
    void operator()() const {
        draw([&] { canvas->drawPoints(sceneColor, plainPointSize, points); });
    }
    Points points;
};

/// Calls of one line, one point or one triangle.
template <bool isGrouped>
struct SmallCalls : Batch {
    explicit SmallCalls(unsigned int size) : corners(shortLines(size)) {}
    void operator()() const {
        draw([&] {
            const std::size_t numCalls = corners.size() / 2;
            for (std::size_t i = 0; i < numCalls; ++i)
                drawOne(isGrouped ? 3 * i / numCalls : i % 3, corners[2 * i], corners[2 * i + 1]);
        });
    }
    void drawOne(std::size_t kind, const glm::vec2& a, const glm::vec2& b) const {
        if (kind == 0)
            canvas->drawLines(sceneColor, {a, b});
        else if (kind == 1)
            canvas->drawPoints(sceneColor, plainPointSize, {a});
        else
            canvas->drawTriangles(sceneColor, {a, b, {a.x, b.y}});
    }
    Points corners;
};

template <class V>
double bytesOfAPoint() {
    constexpr unsigned int count = 100000;
    std::vector<V> points;
    for (const glm::vec2& point : walk(count)) {
        points.emplace_back(0.f);
        points.back().x = point.x;
        points.back().y = point.y;
    }
    const auto canvas = Canvas::make();
    canvas->beginPicture(glm::mat4(1.f));
    canvas->drawLineStrip(sceneColor, points);
    return static_cast<double>(canvas->endPicture()->numBytes()) / count;
}

Workload workload(const char* name, std::vector<Implementation> sides,
                  std::vector<unsigned int> sizes = {10000}) {
    Workload result = {};
    result.name = name;
    result.implementations = std::move(sides);
    result.where = Where::Driver;
    result.sizes = std::move(sizes);
    return result;
}

std::vector<Implementation> thinStrips() {
    return {{"raw", makeSide<RawStrip>},
            {"vellis", makeSide<Strip<thinStroke>>},
            {"buffer", makeSide<BufferStrip<thinStroke>>},
            {"picture", makeSide<PictureStrip<thinStroke>>}};
}

} // namespace

std::vector<Workload> canvasWorkloads() {
    return {
        workload("lines/aliased", {{"raw", makeSide<RawLines>},
                                   {"vellis", makeSide<Lines<aliasedStroke>>},
                                   {"calls", makeSide<LineByLine>}}),
        workload("lines/antialiased",
                 {{"raw", makeSide<RawLines>}, {"vellis", makeSide<Lines<thinStroke>>}}),
        workload("strip/thin", thinStrips()),
        workload("strip/long", thinStrips(), {1000000}),
        workload("strip/wide",
                 {{"raw", makeSide<RawStrip>}, {"vellis", makeSide<Strip<wideStroke>>}}),
        workload("points/soft", {{"raw", makeSide<RawPoints>}, {"vellis", makeSide<SoftPoints>}}),
        workload(
            "calls/small",
            {{"grouped", makeSide<SmallCalls<true>>}, {"alternating", makeSide<SmallCalls<false>>}},
            {1000}),
        workload("batch/empty", {{"vellis", makeSide<Empty>}}, {1}),
    };
}

std::vector<Workload> canvasGrowth() {
    return {workload("strip/growth", thinStrips(),
                     {10, 30, 100, 300, 1000, 3000, 10000, 30000, 100000, 300000, 1000000})};
}

double pictureBytes(unsigned int dimensions) {
    return dimensions == 2 ? bytesOfAPoint<glm::vec2>() : bytesOfAPoint<glm::vec3>();
}

} // namespace vellis::bench

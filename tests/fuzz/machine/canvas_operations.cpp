/// The operations of canvases and pictures.

#include <limits>

#include <vellis/gl.hpp>

#include "fuzz/machine/operations.hpp"

namespace vellis::test {
namespace {

/// A number that a program could mean, or one that it could not.
float anyFloat(Bytes& bytes) {
    static constexpr float numbers[] = {0.f,
                                        1.f,
                                        -1.f,
                                        0.5f,
                                        -0.25f,
                                        0.01f,
                                        3.f,
                                        7.5f,
                                        1e4f,
                                        1e30f,
                                        -1e30f,
                                        1e-40f,
                                        std::numeric_limits<float>::max(),
                                        std::numeric_limits<float>::infinity(),
                                        -std::numeric_limits<float>::infinity(),
                                        std::numeric_limits<float>::quiet_NaN()};
    return bytes.oneOf(numbers);
}

/// Mostly a number between -1 and 1.
float anyCoordinate(Bytes& bytes) {
    return bytes.below(16) == 15 ? anyFloat(bytes) : bytes.fraction() * 2.f - 1.f;
}

glm::vec4 anyColor(Bytes& bytes) {
    const float alpha = bytes.flag() ? 1.f : anyFloat(bytes);
    return {bytes.fraction(), anyFloat(bytes), bytes.fraction(), alpha};
}

/// As many as fit into a batch, or several times that.
std::size_t anyCount(Bytes& bytes) {
    return bytes.below(32) == 31 ? 20000 : bytes.below(8) == 7 ? 300 : bytes.number();
}

/// Points that the bytes choose; many are the first ones again and again.
template <class V>
std::vector<V> anyPoints(Bytes& bytes) {
    std::vector<V> points(anyCount(bytes));
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (glm::length_t axis = 0; axis < V::length(); ++axis)
            points[i][axis] = i < 16 ? anyCoordinate(bytes) : points[i % 16][axis];
    }
    return points;
}

/// Calls \p function with points of one of the types.
template <class Function>
void withPoints(Bytes& bytes, Function function) {
    switch (bytes.below(4)) {
    case 0:
        return function(anyPoints<glm::vec2>(bytes));
    case 1:
        return function(anyPoints<glm::vec3>(bytes));
    case 2:
        return function(anyPoints<glm::dvec2>(bytes));
    default:
        return function(anyPoints<glm::dvec3>(bytes));
    }
}

std::vector<glm::vec4> anyColors(Bytes& bytes) {
    std::vector<glm::vec4> colors(bytes.below(4));
    for (glm::vec4& color : colors)
        color = anyColor(bytes);
    return colors;
}

Stroke anyStroke(Bytes& bytes) {
    Stroke stroke(anyColor(bytes), bytes.flag() ? 4.f : anyFloat(bytes));
    stroke.isAntialiased = bytes.below(4) != 3;
    stroke.join = bytes.enumerator<Stroke::Join>(2);
    stroke.cap = bytes.enumerator<Stroke::Cap>(2);
    stroke.miterLimit = bytes.flag() ? 10.f : anyFloat(bytes);
    if (bytes.below(4) == 3) {
        stroke = stroke.dashed({{anyFloat(bytes), anyFloat(bytes)}, {5.f, bytes.fraction()}},
                               anyFloat(bytes));
        stroke.numDashes = static_cast<unsigned char>(bytes.below(8));
    }
    return stroke;
}

glm::mat4 anyMatrix(Bytes& bytes) {
    glm::mat4 matrix(1.f);
    for (unsigned int i = bytes.below(4); i > 0; --i)
        matrix[static_cast<int>(bytes.below(4))][static_cast<int>(bytes.below(4))] =
            anyFloat(bytes);
    return matrix;
}

/// Calls \p function with one of the canvases, if it is there.
template <class Function>
void onOne(World& world, Bytes& bytes, Function function) {
    const auto& canvas = pick(world.canvases, bytes);
    if (canvas != nullptr)
        function(*canvas);
}

void makeCanvas(World& world, Bytes& bytes) {
    pick(world.canvases, bytes) = Canvas::make();
}

void releaseCanvas(World& world, Bytes& bytes) {
    pick(world.canvases, bytes).reset();
}

void beginBatch(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        canvas.begin(bytes.below(4) == 3 ? anyMatrix(bytes) : glm::mat4(1.f));
    });
}

void endBatch(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        if (bytes.flag())
            canvas.flush();
        else
            canvas.end();
    });
}

void setUp(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        switch (bytes.below(4)) {
        case 0:
            return canvas.setTransform(anyMatrix(bytes));
        case 1:
            return canvas.setOrigin({double{anyFloat(bytes)}, double{anyFloat(bytes)}, 0.});
        case 2:
            return canvas.setPixelRatio(anyFloat(bytes));
        default:
            return canvas.setOverlap(bytes.enumerator<Canvas::Overlap>(2));
        }
    });
}

void drawStrokes(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        const Stroke stroke = anyStroke(bytes);
        const unsigned int family = bytes.below(6);
        withPoints(bytes, [&](const auto& points) {
            switch (family) {
            case 0:
                return canvas.drawLines(stroke, points);
            case 1:
                return canvas.drawLineStrip(stroke, points);
            case 2:
                return canvas.drawLineLoop(stroke, points);
            case 3:
                return canvas.drawDashLineStrip(stroke, anyFloat(bytes), anyFloat(bytes), points);
            case 4:
                return canvas.drawLineLoop(stroke, points, anyColors(bytes));
            default:
                return canvas.drawLines(stroke, points, anyColors(bytes));
            }
        });
    });
}

void drawAreas(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        const bool isOne = bytes.flag();
        const std::vector<glm::vec4> list = anyColors(bytes);
        const Colors colors = isOne ? Colors(anyColor(bytes)) : Colors(list);
        const unsigned int family = bytes.below(5);
        withPoints(bytes, [&](const auto& points) {
            switch (family) {
            case 0:
                return canvas.drawTriangles(colors, points);
            case 1:
                return canvas.drawTriangleStrip(colors, points);
            case 2:
                return canvas.drawTriangleFan(colors, points);
            case 3:
                return canvas.drawQuad(colors, points);
            default:
                return canvas.drawQuad(colors, anyStroke(bytes), points);
            }
        });
    });
}

void drawMarks(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        const std::vector<glm::vec4> colors = anyColors(bytes);
        std::vector<float> sizes(bytes.below(3));
        for (float& size : sizes)
            size = anyFloat(bytes);
        withPoints(bytes, [&](const auto& points) {
            if (bytes.flag())
                canvas.drawPoints(colors, sizes, points);
            else
                canvas.drawBullseyes(anyColor(bytes), colors, anyFloat(bytes), points);
        });
    });
}

void drawBuffers(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        const auto& positions = pick(world.shapes, bytes).positions;
        const unsigned int first = bytes.number();
        const unsigned int count = bytes.number();
        switch (bytes.below(5)) {
        case 0:
            return canvas.drawLines(anyStroke(bytes), first, count, positions);
        case 1:
            return canvas.drawLineStrip(anyStroke(bytes), first, count, positions);
        case 2:
            return canvas.drawLineLoop(anyStroke(bytes), first, count, positions);
        case 3:
            return canvas.drawPoints(anyColor(bytes), anyFloat(bytes), first, count, positions);
        default:
            return canvas.drawTriangleFan(anyColor(bytes), first, count, positions);
        }
    });
}

void usePictures(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        auto& picture = pick(world.keptPictures, bytes);
        switch (bytes.below(4)) {
        case 0:
            return canvas.beginPicture(anyMatrix(bytes));
        case 1:
            picture = canvas.endPicture();
            return;
        case 2:
            picture.reset();
            return;
        default:
            return canvas.drawPicture(picture);
        }
    });
}

PixelQuad anyQuad(Bytes& bytes) {
    return {{anyFloat(bytes), bytes.fraction()},
            {8.f, anyFloat(bytes)},
            {anyFloat(bytes), 8.f},
            {{bytes.fraction(), anyFloat(bytes)}, {1.f, bytes.fraction()}}};
}

void drawImages(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        const auto& texture = pick(world.pictures, bytes);
        const auto coordinate = [&] { return double{anyCoordinate(bytes)}; };
        if (bytes.flag()) {
            const ImageFrame frame({coordinate(), coordinate()}, {coordinate(), coordinate()});
            return canvas.drawImage(texture, frame.rotated(coordinate()), anyQuad(bytes).part,
                                    anyColor(bytes));
        }
        canvas.setPixelsDownward(bytes.flag());
        std::vector<PixelQuad> quads(anyCount(bytes), anyQuad(bytes));
        const QuadStyle style = {bytes.flag() ? Texels::Colors : Texels::Coverage, bytes.flag()};
        canvas.drawQuads(texture, style, anyColor(bytes),
                         {coordinate(), coordinate(), coordinate()}, quads.data(), quads.size());
    });
}

/// A whole batch, which is over afterwards: of what waits nothing was drawn before.
void drawBatch(World& world, Bytes& bytes) {
    onOne(world, bytes, [&](Canvas& canvas) {
        canvas.begin(glm::mat4(1.f));
        const std::vector<glm::vec2> points = anyPoints<glm::vec2>(bytes);
        canvas.drawLineStrip({anyColor(bytes), 5.f}, points);
        canvas.drawTriangleFan(anyColor(bytes), points);
        canvas.drawPoints(anyColor(bytes), 5.f, points);
        canvas.end();
    });
}

} // namespace

std::vector<Operation> canvasOperations() {
    // All that they change is put back, but for a program that was deleted while it was in use.
    const Promise promise = {{GL_CURRENT_PROGRAM}, {}};
    return {
        {"Canvas: make", makeCanvas, promise},     {"Canvas: release", releaseCanvas, promise},
        {"Canvas: begin", beginBatch, promise},    {"Canvas: end or flush", endBatch, promise},
        {"Canvas: settings", setUp, promise},      {"Canvas: strokes", drawStrokes, promise},
        {"Canvas: areas", drawAreas, promise},     {"Canvas: points", drawMarks, promise},
        {"Canvas: buffers", drawBuffers, promise}, {"Canvas: pictures", usePictures, promise},
        {"Canvas: images", drawImages, promise},   {"Canvas: a batch", drawBatch, promise},
    };
}

} // namespace vellis::test

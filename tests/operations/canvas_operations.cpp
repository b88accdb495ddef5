/// The operations of canvases, each as a batch or a picture of its own.

#include <array>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/mat4x4.hpp>

#include <vellis/canvas.hpp>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>
#include <vellis/texture.hpp>

#include "operations/operations.hpp"
#include "operations/silent_operations.hpp"

namespace vellis::test {
namespace {

const glm::vec4 opaque(1.f);
const glm::vec4 transparent(1.f, 0.5f, 0.f, 0.5f);
const glm::mat4 mvp(1.f);
const std::array<glm::vec2, 4> corners = {glm::vec2(0.f), {0.5f, 0.f}, {0.5f, 0.5f}, {0.f, 0.5f}};
const std::array<glm::vec3, 4> corners3D = {
    glm::vec3(0.f), {0.5f, 0.f, 0.f}, {0.5f, 0.5f, 0.f}, {0.f, 0.5f, 0.f}};
const std::array<glm::vec4, 4> colors = {opaque, transparent, opaque, transparent};

/// Points in buffers of the caller's.
struct Buffers {
    template <class V>
    using Points = std::shared_ptr<VertexAttributeBuffer<V>>;

    template <class V>
    static Points<V> make(const std::array<V, 4>& points) {
        return VertexAttributeBuffer<V>::make(points.data(), 4, BufferUsage::Static,
                                              BufferAccess::Draw);
    }

    Points<glm::vec2> plane = make(corners);
    Points<glm::vec3> space = make(corners3D);
    std::shared_ptr<Texture2D<unsigned char>> texture =
        Texture2D<unsigned char>::make(2, 2, nullptr, Sampler::linear_clamp());
};

/// What is drawn in a batch.
using Draw = void (*)(Canvas&, const Buffers&);
struct Row {
    const char* operation;
    Draw draw;
};

std::shared_ptr<Picture> makePicture(Canvas& canvas) {
    struct End {
        Canvas& canvas;
        ~End() {
            canvas.begin(mvp);
            canvas.end();
        }
    } const end{canvas}; // of the picture, where memory ran out
    canvas.beginPicture(mvp);
    canvas.drawTriangles(opaque, corners);
    canvas.drawLineStrip(opaque, corners);
    canvas.drawPoints(opaque, 4.f, corners3D);
    return canvas.endPicture();
}

void drawWithSettings(Canvas& canvas, const Buffers&) {
    canvas.setPixelRatio(2.f);
    canvas.setOrigin(glm::dvec3(0.25));
    canvas.setTransform(glm::scale(mvp, glm::vec3(0.5f)));
    canvas.drawLineStrip(opaque, corners);
    canvas.setTransform(glm::perspective(1.f, 1.f, 0.5f, 2.f));
    canvas.drawLineStrip(opaque, corners);
    canvas.setOrigin(glm::dvec3(0.));
    canvas.setPixelRatio(1.f);
}

void drawTwiceOver(Canvas& canvas, const Buffers&) {
    canvas.setOverlap(Canvas::Overlap::Often);
    canvas.drawLineLoop({transparent, 4.f}, corners);
    canvas.setOverlap(Canvas::Overlap::Once);
}

const Row rows[] = {
    {"drawLines",
     [](Canvas& canvas, const Buffers&) {
         canvas.drawLines({opaque, 4.f}, corners);
     }},
    {"drawLines",
     [](Canvas& canvas, const Buffers&) { canvas.drawLines(Stroke::aliased(opaque), corners3D); }},
    {"drawLineStrip",
     [](Canvas& canvas, const Buffers&) {
         canvas.drawLineStrip({opaque, 4.f}, corners3D);
     }},
    {"drawLineStrip",
     [](Canvas& canvas, const Buffers&) { canvas.drawLineStrip(opaque, corners, colors); }},
    {"drawLineLoop", [](Canvas& canvas, const Buffers&) { canvas.drawLineLoop(opaque, corners); }},
    {"drawLineLoop (half-transparent)",
     [](Canvas& canvas, const Buffers&) {
         canvas.drawLineLoop({transparent, 4.f}, corners);
     }},
    {"setOverlap", drawTwiceOver},
    {"drawDashLineStrip",
     [](Canvas& canvas, const Buffers&) { canvas.drawDashLineStrip(opaque, 3.f, 2.f, corners); }},
    {"drawPoints", [](Canvas& canvas, const Buffers&) { canvas.drawPoints(colors, 4.f, corners); }},
    {"drawBullseyes",
     [](Canvas& canvas, const Buffers&) { canvas.drawBullseyes(opaque, colors, 9.f, corners3D); }},
    {"drawTriangles",
     [](Canvas& canvas, const Buffers&) { canvas.drawTriangles(opaque, corners); }},
    {"drawTriangleStrip",
     [](Canvas& canvas, const Buffers&) { canvas.drawTriangleStrip(colors, corners3D); }},
    {"drawTriangleFan",
     [](Canvas& canvas, const Buffers&) { canvas.drawTriangleFan(colors, corners); }},
    {"drawQuad", [](Canvas& canvas, const Buffers&) { canvas.drawQuad(opaque, corners); }},
    {"drawQuad (with an outline)",
     [](Canvas& canvas, const Buffers&) {
         canvas.drawQuad(opaque, {transparent, 2.f}, corners3D);
     }},
    {"drawRect", [](Canvas& canvas,
                    const Buffers&) { canvas.drawRect(opaque, glm::vec2(0.f), glm::vec2(0.5f)); }},
    {"drawLines (a buffer)",
     [](Canvas& canvas, const Buffers& buffers) {
         canvas.drawLines({opaque, 4.f}, 0, 4, buffers.plane);
     }},
    {"drawLineLoop (a buffer)",
     [](Canvas& canvas, const Buffers& buffers) {
         canvas.drawLineLoop({transparent, 4.f}, 0, 4, buffers.plane);
     }},
    {"drawTriangleFan (a buffer)",
     [](Canvas& canvas, const Buffers& buffers) {
         canvas.drawTriangleFan(opaque, 0, 4, buffers.space);
     }},
    {"drawPoints (a buffer)",
     [](Canvas& canvas, const Buffers& buffers) {
         canvas.drawPoints(opaque, 4.f, 0, 4, buffers.plane);
     }},
    {"drawImage",
     [](Canvas& canvas, const Buffers& buffers) {
         canvas.drawImage(buffers.texture, ImageFrame({0., 0.}, {0.5, 0.5}));
     }},
    {"drawQuads",
     [](Canvas& canvas, const Buffers& buffers) {
         const PixelQuad quad = {{}, {2.f, 0.f}, {0.f, 2.f}, {}};
         canvas.drawQuads(buffers.texture, {Texels::Coverage, true}, opaque, {}, &quad, 1);
     }},
    {"setTransform, setOrigin, setPixelRatio", drawWithSettings},
};

void drawBatch(Canvas& canvas, const Buffers& buffers, Draw draw) {
    canvas.begin(mvp);
    draw(canvas, buffers);
    canvas.end();
}

/// What a GL context lacks, for the life of an object.
class Lacking {
public:
    enum class What { Gl31, InstancedArrays, VertexArrays };

    explicit Lacking(What what) {
        GLAD_GL_VERSION_3_1 = 0;
        GLAD_GL_VERSION_3_2 = 0;
        if (what == What::InstancedArrays)
            GLAD_GL_ARB_instanced_arrays = 0;
        if (what == What::VertexArrays)
            FakeGl::remove(glad_glGenVertexArrays);
    }
    ~Lacking() {
        GLAD_GL_VERSION_3_1 = version31_;
        GLAD_GL_VERSION_3_2 = version32_;
        GLAD_GL_ARB_instanced_arrays = instancedArrays_;
        glad_glGenVertexArrays = genVertexArrays_;
    }
    Lacking(const Lacking&) = delete;
    Lacking& operator=(const Lacking&) = delete;

private:
    int version31_ = GLAD_GL_VERSION_3_1;
    int version32_ = GLAD_GL_VERSION_3_2;
    int instancedArrays_ = GLAD_GL_ARB_instanced_arrays;
    PFNGLGENVERTEXARRAYSPROC genVertexArrays_ = glad_glGenVertexArrays;
};

void drawEverything(Canvas& canvas, const Buffers& buffers) {
    for (const Row& row : rows)
        drawBatch(canvas, buffers, row.draw);
    const auto picture = makePicture(canvas);
    canvas.begin(mvp);
    canvas.drawPicture(picture);
    canvas.end();
}

void drawOnBareContext(const Buffers& buffers, Lacking::What what) {
    const Lacking lacking(what);
    drawEverything(*Canvas::make(), buffers);
}

/// State that a batch needs, and that it changes and puts back: see knownStates().
struct ScriptedState {
    GLenum name;
    std::vector<double> values;
};
const ScriptedState scriptedStates[] = {
    {GL_VIEWPORT, {5, 6, 64, 48}},
    {GL_SCISSOR_BOX, {7, 8, 60, 40}},
    {GL_SCISSOR_TEST, {1}},
    {GL_CULL_FACE, {1}},
    {GL_COLOR_LOGIC_OP, {1}},
    {GL_LINE_SMOOTH, {1}},
    {GL_POLYGON_SMOOTH, {1}},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, {1}},
    {GL_PRIMITIVE_RESTART, {1}},
    {GL_ALPHA_TEST, {1}},
    {GL_MULTISAMPLE, {1}},
    {GL_SAMPLE_BUFFERS, {1}},
    {GL_CONTEXT_PROFILE_MASK, {GL_CONTEXT_COMPATIBILITY_PROFILE_BIT}},
    {GL_POLYGON_MODE, {GL_POINT, GL_POINT}},
    {GL_LINE_WIDTH, {3}},
    {GL_COLOR_WRITEMASK, {1, 0, 1, 1}},
    {GL_COLOR_CLEAR_VALUE, {0.125, 0.25, 0.5, 1}},
    {GL_MAX_TEXTURE_SIZE, {4096}},
    {GL_MAX_TEXTURE_IMAGE_UNITS, {16}},
    {GL_CURRENT_PROGRAM, {904}},
    {GL_VERTEX_ARRAY_BINDING, {905}},
    {GL_ARRAY_BUFFER_BINDING, {906}},
    {GL_PIXEL_UNPACK_BUFFER_BINDING, {907}},
    {GL_TEXTURE_BINDING_2D, {908}},
    {GL_SAMPLER_BINDING, {910}},
    {GL_ELEMENT_ARRAY_BUFFER_BINDING, {909}},
    {GL_ACTIVE_TEXTURE, {GL_TEXTURE9}},
};

/// Has queries give these values for the life of an object.
class States {
public:
    explicit States(FakeGl& gl) : gl_(gl) {
        for (const ScriptedState& state : scriptedStates)
            gl_.setState(state.name, state.values);
    }
    ~States() {
        for (const ScriptedState& state : scriptedStates)
            gl_.unsetState(state.name);
        bindNothing(); // what canvases have put back
        gl_.forget();
    }
    States(const States&) = delete;
    States& operator=(const States&) = delete;

private:
    static void bindNothing() {
        glBindVertexArray(0);
        glUseProgram(0);
        for (const int target : {GL_ARRAY_BUFFER, GL_ELEMENT_ARRAY_BUFFER, GL_PIXEL_UNPACK_BUFFER})
            glBindBuffer(static_cast<GLenum>(target), 0);
        glActiveTexture(GL_TEXTURE9);
        glBindTexture(GL_TEXTURE_2D, 0);
        if (glBindSampler != nullptr)
            glBindSampler(9, 0);
        glActiveTexture(GL_TEXTURE0);
    }

    FakeGl& gl_;
};

void usePictures(UseRecorder& use, const std::shared_ptr<Canvas>& canvas) {
    use("endPicture", [&] { return makePicture(*canvas); });
    auto picture = makePicture(*canvas);
    use("drawPicture", [&] {
        canvas->begin(mvp);
        canvas->drawPicture(picture);
        canvas->end();
    });
    use.of("Picture");
    use("destruction", [&] { picture.reset(); });
    use.of("Canvas");
}

} // namespace

void useCanvas(UseRecorder& use) {
    use.begin("The Canvas");
    const Buffers buffers;
    const States states(use.gl);
    use.of("Canvas");
    use("end (first)", [&] {
        const auto canvas = Canvas::make();
        drawBatch(*canvas, buffers, rows[0].draw);
        return canvas;
    });
    auto canvas = Canvas::make();
    drawEverything(*canvas, buffers); // makes what canvases keep
    for (const Row& row : rows)
        use(row.operation, [&] { drawBatch(*canvas, buffers, row.draw); });
    usePictures(use, canvas);
    use("flush", [&] {
        canvas->begin(mvp);
        canvas->drawLines(opaque, corners);
        canvas->flush();
    });
    internal::start_debug_output();
    use("flush (while debug output is on)", [&] {
        canvas->begin(mvp);
        canvas->drawLines(opaque, corners);
        canvas->flush();
    });
    internal::stop_debug_output();
    canvas->end();
    use("destruction", [&] { canvas.reset(); });
    using What = Lacking::What;
    use("end (without GL 3.1)", [&] { drawOnBareContext(buffers, What::Gl31); });
    use("end (without instanced arrays)",
        [&] { drawOnBareContext(buffers, What::InstancedArrays); });
    use("end (without vertex array objects)",
        [&] { drawOnBareContext(buffers, What::VertexArrays); });
}

void useNewCanvases(UseRecorder& use) {
    const Buffers buffers;
    const States states(use.gl);
    use.of("Canvas");
    use("make", [] { return Canvas::make(); });
    for (const Row& row : rows) {
        use(row.operation, [&] {
            const auto canvas = Canvas::make();
            drawBatch(*canvas, buffers, row.draw);
        });
    }
    use("endPicture", [] { return makePicture(*Canvas::make()); });
    use("drawPicture", [] {
        const auto canvas = Canvas::make();
        const auto picture = makePicture(*canvas);
        canvas->begin(mvp);
        canvas->drawPicture(picture);
        canvas->end();
    });
}

} // namespace vellis::test

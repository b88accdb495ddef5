#include <vellis/drawing/toolbox.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include <glm/mat4x4.hpp>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/detail/lasting.hpp>
#include <vellis/drawing/primitives.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading/program_manager.hpp>

#include "drawing/dash_distances.hpp"
#include "gl/disposal.hpp"
#include "state/state_guard.hpp"

namespace vellis {

using BuiltIn = ProgramManager::BuiltIn;
using Bytes = VertexAttributeBuffer<unsigned char>;

namespace {

constexpr unsigned int sharedBufferSize = 1024; ///< in bytes: what one call can stream

struct SharedBuffer;

/// What is known of the buffer that the calls share. Its address may be another buffer's next, so
/// that only its own pointer tells whether it lives.
struct Streaming {
    std::weak_ptr<SharedBuffer> buffer;
    bool hasBeenMade = false;
};

/// That buffer. Once the registry has let go of it, it is not made again.
struct SharedBuffer : Bytes {
    SharedBuffer()
        : VertexAttributeBuffer(nullptr, sharedBufferSize, BufferUsage::Static,
                                BufferAccess::Draw) {}
    ~SharedBuffer() override {
        if (ofProcess != nullptr) // which outlives it
            ofProcess->buffer.reset();
    }
    SharedBuffer(const SharedBuffer&) = delete;
    SharedBuffer& operator=(const SharedBuffer&) = delete;

    Streaming* ofProcess = nullptr;
};

Streaming& streaming() {
    static detail::Lasting ofProcess([] { return Streaming(); });
    if (gl::thread().state != nullptr)
        return gl::thread().state->at<Streaming>(gl::Slot::StreamingBuffer);
    return *ofProcess;
}

/// Points as plain numbers, two or three each. Null stands for what the shared buffer holds.
struct Points {
    const float* numbers;
    unsigned int dimensions;

    Points(const glm::vec2* points)
        : numbers(points != nullptr ? &points->x : nullptr),
          dimensions(2) {}
    Points(const glm::vec3* points)
        : numbers(points != nullptr ? &points->x : nullptr),
          dimensions(3) {}
};

/// The built-in program for points of 2 or 3 \p dimensions.
const std::shared_ptr<Program>& program(unsigned int dimensions, BuiltIn for2D, BuiltIn for3D) {
    return ProgramManager::instance().get(dimensions == 2 ? for2D : for3D);
}

const std::shared_ptr<Program>& flatProgram(unsigned int dimensions) {
    return program(dimensions, BuiltIn::UniformColor2D, BuiltIn::UniformColor3D);
}

/// The shared buffer with \p count vertices of \p components numbers at its start, unless
/// \p numbers is null.
///
/// Ask for the program first: without one the library has been shut down, and the buffer, if it was
/// never made, must not be made now.
std::shared_ptr<Bytes> stream(const float* numbers, unsigned int components, std::size_t count) {
    std::shared_ptr<Bytes> buffer = Toolbox::getVertexBuffer();
    if (buffer != nullptr && numbers != nullptr) {
        constexpr std::size_t most = std::numeric_limits<unsigned int>::max();
        // What does not fit is left to GL to refuse.
        buffer->load(reinterpret_cast<const unsigned char*>(numbers), 0,
                     static_cast<unsigned int>(std::min(count * components * sizeof(float), most)));
    }
    return buffer;
}

/// A primitive over vertices of \p components floats: what the drawable templates are, with a
/// primitive and a number of components that are known when it is drawn.
class Shape final : public Drawable {
public:
    Shape(PrimitiveType primitive, const Program& program, const char* attribute,
          const VertexBuffer& buffer, unsigned int components)
        : Drawable(primitive) {
        constexpr unsigned int firstElement = 0;
        constexpr unsigned int floatSize = sizeof(float);
        constexpr bool normalized = false;
        const detail::AttributeSource source = {&buffer,
                                                program.getAttribLoc(attribute),
                                                static_cast<int>(components),
                                                GL_FLOAT,
                                                firstElement,
                                                components * floatSize,
                                                normalized};
        numVertices_ = detail::record(&program, &source, 1, attributesBinding_);
    }
};

/// Draws with a program that is bound for the drawable, after \p setUniforms.
template <class SetUniforms>
void draw(Program& program, const Drawable& drawable, unsigned int first, unsigned int count,
          SetUniforms setUniforms) {
    program.bind(drawable.getAttributesBinding());
    setUniforms();
    drawable.draw(first, count);
    program.unbind();
}

/// One disc for each point.
struct Disc {
    const glm::vec4& color;
    float size;
    float softness;
};

void drawDiscs(std::initializer_list<Disc> discs, unsigned int first, unsigned int count,
               const Points& points, const glm::mat4& mvp) {
    const auto& soft = program(points.dimensions, BuiltIn::SoftPoints2D, BuiltIn::SoftPoints3D);
    if (soft == nullptr)
        return;
    const auto buffer = stream(points.numbers, points.dimensions, std::size_t{first} + count);
    if (buffer == nullptr)
        return;
    const Shape shape(Drawable::PrimitiveType::Points, *soft, "position", *buffer,
                      points.dimensions);

    const state::StateGuard<state::State<bool, 1, GL_BLEND>, state::State<int, 4, GL_BLEND_SRC_RGB>,
                            state::State<int, 2, GL_BLEND_EQUATION_RGB>>
        blending;
    glEnable(GL_BLEND);
    glBlendEquation(GL_FUNC_ADD);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    Drawable::enablePointSprite(true);
    for (const Disc& disc : discs) {
        draw(*soft, shape, first, count, [&] {
            soft->setUniform("color", disc.color);
            soft->setUniform("radius", disc.size);
            soft->setUniform("softness", disc.softness);
            soft->setUniform("mvp", mvp);
        });
    }
    Drawable::enablePointSprite(false);
}

void drawRings(const glm::vec4& color, const glm::vec4& color2, float radius, unsigned int count,
               const Points& points, const glm::mat4& mvp) {
    drawDiscs({{color, radius, 0.1f}, {color2, radius * 0.7f, 0.2f}, {color, radius * 0.3f, 0.4f}},
              0, count, points, mvp);
}

/// The points, each with the length of the line up to it as a further number; null for null.
std::unique_ptr<float[]> withDistances(const Points& points, unsigned int count) {
    if (points.numbers == nullptr)
        return nullptr;
    auto result = std::make_unique<float[]>(std::size_t{count} * (points.dimensions + 1));
    addDistances(points.numbers, points.dimensions, count, result.get());
    return result;
}

void drawDashes(const glm::vec4& color, float dash, float gap, unsigned int count,
                const Points& points, const glm::mat4& mvp) {
    const auto vertices = withDistances(points, count);
    const auto& dashed = program(points.dimensions, BuiltIn::DashLines2D, BuiltIn::DashLines3D);
    if (dashed == nullptr)
        return;
    const unsigned int components = points.dimensions + 1;
    const auto buffer = stream(vertices.get(), components, count);
    if (buffer == nullptr)
        return;
    const Shape shape(Drawable::PrimitiveType::LineStrip, *dashed, "position_t", *buffer,
                      components);
    draw(*dashed, shape, 0, count, [&] {
        dashed->setUniform("color", color);
        dashed->setUniform("dash", glm::vec2(dash, gap));
        dashed->setUniform("mvp", mvp);
    });
}

/// Four corners: those of the list, and the origin for the missing ones.
std::array<glm::vec3, 4> corners(std::initializer_list<glm::vec3> points) {
    std::array<glm::vec3, 4> result{};
    std::copy_n(points.begin(), std::min(points.size(), result.size()), result.begin());
    return result;
}

} // namespace

Toolbox& Toolbox::instance() {
    static Toolbox toolbox;
    return toolbox;
}

std::shared_ptr<Bytes> Toolbox::getVertexBuffer() {
    Streaming& shared = streaming();
    if (!shared.hasBeenMade && !gl::isDisposed()) {
        const auto buffer = std::make_shared<SharedBuffer>();
        BufferObjectManager::instance().add(buffer);
        shared.buffer = buffer;
        buffer->ofProcess = gl::thread().state == nullptr ? &shared : nullptr;
        shared.hasBeenMade = true;
    }
    return std::static_pointer_cast<Bytes>(
        BufferObjectManager::instance().internal_get(shared.buffer.lock().get()));
}

void Toolbox::drawFlat(unsigned int primitive, const glm::vec4& color, unsigned int first,
                       unsigned int count, const VertexBuffer* buffer, unsigned int dimensions,
                       const glm::mat4& mvp) {
    const auto& flat = flatProgram(dimensions);
    if (flat == nullptr || buffer == nullptr || !gl::existsOrRefuse(*buffer))
        return;
    const Shape shape(static_cast<Drawable::PrimitiveType>(primitive), *flat, "position", *buffer,
                      dimensions);
    draw(*flat, shape, first, count, [&] {
        flat->setUniform("color", color);
        flat->setUniform("mvp", mvp);
    });
}

void Toolbox::drawFlat(unsigned int primitive, const glm::vec4& color, unsigned int first,
                       unsigned int count, const float* points, unsigned int dimensions,
                       const glm::mat4& mvp) {
    static_assert(lines == GL_LINES && lineLoop == GL_LINE_LOOP && lineStrip == GL_LINE_STRIP);
    static_assert(triangleStrip == GL_TRIANGLE_STRIP && triangleFan == GL_TRIANGLE_FAN);
    if (flatProgram(dimensions) == nullptr)
        return;
    const auto buffer = stream(points, dimensions, std::size_t{first} + count);
    drawFlat(primitive, color, first, count, buffer.get(), dimensions, mvp);
}

void Toolbox::drawPoints(const glm::vec4& color, float size, unsigned int first, unsigned int count,
                         const glm::vec2* points, const glm::mat4& mvp) {
    drawDiscs({{color, size, 0.1f}}, first, count, points, mvp);
}

void Toolbox::drawPoints(const glm::vec4& color, float size, unsigned int first, unsigned int count,
                         const glm::vec3* points, const glm::mat4& mvp) {
    drawDiscs({{color, size, 0.1f}}, first, count, points, mvp);
}

void Toolbox::drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,
                            unsigned int count, const glm::vec2* points, const glm::mat4& mvp) {
    drawRings(color, color2, radius, count, points, mvp);
}

void Toolbox::drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,
                            unsigned int count, const glm::vec3* points, const glm::mat4& mvp) {
    drawRings(color, color2, radius, count, points, mvp);
}

void Toolbox::drawDashLineStrip(const glm::vec4& color, float dash, float gap, unsigned int count,
                                const glm::vec2* points, const glm::mat4& mvp) {
    drawDashes(color, dash, gap, count, points, mvp);
}

void Toolbox::drawDashLineStrip(const glm::vec4& color, float dash, float gap, unsigned int count,
                                const glm::vec3* points, const glm::mat4& mvp) {
    drawDashes(color, dash, gap, count, points, mvp);
}

void Toolbox::drawQuad(const glm::vec4& color, const glm::vec3* points, const glm::mat4& mvp) {
    drawTriangleFan(color, 0, 4, points, mvp);
}

void Toolbox::drawQuad(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                       const glm::mat4& mvp) {
    drawQuad(color, corners(points).data(), mvp);
}

void Toolbox::drawQuad(const glm::vec4& fillColor, const glm::vec4& outlineColor,
                       const glm::vec3* points, const glm::mat4& mvp) {
    constexpr unsigned int dimensions = glm::vec3::length();
    if (flatProgram(dimensions) == nullptr)
        return;
    const auto buffer = stream(numbers(points), dimensions, 4);
    drawFlat(triangleFan, fillColor, 0, 4, buffer.get(), dimensions, mvp);
    drawFlat(lineLoop, outlineColor, 0, 4, buffer.get(), dimensions, mvp);
}

void Toolbox::drawQuad(const glm::vec4& fillColor, const glm::vec4& outlineColor,
                       std::initializer_list<glm::vec3> points, const glm::mat4& mvp) {
    drawQuad(fillColor, outlineColor, corners(points).data(), mvp);
}

void Toolbox::drawRect(const glm::vec4& color, const glm::vec2& a, const glm::vec2& b,
                       const glm::mat4& mvp) {
    const glm::vec2 vertices[] = {a, {a.x, b.y}, {b.x, a.y}, b};
    drawTriangleStrip(color, 0, 4, vertices, mvp);
}

} // namespace vellis

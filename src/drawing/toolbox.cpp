#include <vellis/drawing/toolbox.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>

#include <glm/mat4x4.hpp>

#include <vellis/buffers/buffer_object_manager.hpp>
#include <vellis/drawing/primitives.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading/program_manager.hpp>

#include "state/state_guard.hpp"

namespace vellis {

using BuiltIn = ProgramManager::BuiltIn;
using Bytes = VertexAttributeBuffer<unsigned char>;

/// The parts of other classes that are open to the Toolbox alone.
struct ToolboxAccess {
    static const std::shared_ptr<BufferObject>& find(BufferObject* key) {
        return BufferObjectManager::instance().internal_get(key);
    }
    static void bind(const Program& program, const Drawable& drawable) { program.bind(drawable); }
};

namespace {

constexpr unsigned int bufferSize = 1024;

template <class V>
constexpr bool is2D = std::is_same<V, glm::vec2>::value;

/// The built-in program for points of type \p V.
template <class V>
const std::shared_ptr<Program>& program(BuiltIn for2D, BuiltIn for3D) {
    return ProgramManager::instance().get(is2D<V> ? for2D : for3D);
}

template <class V>
const std::shared_ptr<Program>& flatProgram() {
    return program<V>(BuiltIn::UniformColor2D, BuiltIn::UniformColor3D);
}

/// The shared buffer, seen as one of elements of another type. Only what VertexBuffer declares may
/// be used of it, which is all that an attribute needs.
template <class T>
std::shared_ptr<VertexAttributeBuffer<T>> viewedAs(const std::shared_ptr<Bytes>& buffer) {
    return {buffer, reinterpret_cast<VertexAttributeBuffer<T>*>(buffer.get())};
}

/// The shared buffer with \p count points at its start, unless \p points is null.
///
/// Ask for the program first: without one the library has been shut down, and the buffer, if it was
/// never made, must not be made now.
template <class T>
std::shared_ptr<VertexAttributeBuffer<T>> stream(const T* points, std::size_t count) {
    const std::shared_ptr<Bytes> buffer = Toolbox::getVertexBuffer();
    if (buffer != nullptr) {
        constexpr std::size_t most = std::numeric_limits<unsigned int>::max();
        // Null is no load at all. What does not fit is left to GL to refuse.
        buffer->load(reinterpret_cast<const unsigned char*>(points), 0,
                     static_cast<unsigned int>(std::min(count * sizeof(T), most)));
    }
    return viewedAs<T>(buffer);
}

template <class V>
unsigned int countOf(std::initializer_list<V> points) {
    return static_cast<unsigned int>(points.size());
}

/// The drawable template \p Shape over one attribute.
template <template <class...> class Shape, class T>
Shape<VertexAttribute<T>> shape(const std::shared_ptr<Program>& program, const char* attribute,
                                const std::shared_ptr<VertexAttributeBuffer<T>>& buffer) {
    return Shape<VertexAttribute<T>>(program, VertexAttribute<T>(attribute, buffer));
}

/// Draws with a program that is bound for the drawable, after \p setUniforms.
template <class SetUniforms>
void draw(Program& program, const Drawable& drawable, unsigned int first, unsigned int count,
          SetUniforms setUniforms) {
    ToolboxAccess::bind(program, drawable);
    setUniforms();
    drawable.draw(first, count);
    program.unbind();
}

void drawFlat(Program& program, const Drawable& drawable, unsigned int first, unsigned int count,
              const glm::vec4& color, const glm::mat4& mvp) {
    draw(program, drawable, first, count, [&] {
        program.setUniform("color", color);
        program.setUniform("mvp", mvp);
    });
}

template <template <class...> class Shape, class V>
void drawFlat(const glm::vec4& color, unsigned int first, unsigned int count,
              const std::shared_ptr<VertexAttributeBuffer<V>>& buffer, const glm::mat4& mvp) {
    const auto& flat = flatProgram<V>();
    if (flat != nullptr && buffer != nullptr)
        drawFlat(*flat, shape<Shape>(flat, "position", buffer), first, count, color, mvp);
}

template <template <class...> class Shape, class V>
void drawFlat(const glm::vec4& color, unsigned int first, unsigned int count, const V* points,
              const glm::mat4& mvp) {
    if (flatProgram<V>() != nullptr)
        drawFlat<Shape>(color, first, count, stream(points, std::size_t{first} + count), mvp);
}

template <template <class...> class Shape, class V>
void drawFlat(const glm::vec4& color, std::initializer_list<V> points, const glm::mat4& mvp) {
    drawFlat<Shape>(color, 0, countOf(points), points.begin(), mvp);
}

/// One disc for each point.
struct Disc {
    const glm::vec4& color;
    float size;
    float softness;
};

template <class V>
void drawDiscs(std::initializer_list<Disc> discs, unsigned int first, unsigned int count,
               const V* points, const glm::mat4& mvp) {
    const auto& soft = program<V>(BuiltIn::SoftPoints2D, BuiltIn::SoftPoints3D);
    if (soft == nullptr)
        return;
    const auto buffer = stream(points, std::size_t{first} + count);
    if (buffer == nullptr)
        return;
    const auto drawable = shape<drawable::Points>(soft, "position", buffer);

    const state::StateGuard<state::State<bool, 1, GL_BLEND>, state::State<int, 4, GL_BLEND_SRC_RGB>,
                            state::State<int, 2, GL_BLEND_EQUATION_RGB>>
        blending;
    glEnable(GL_BLEND);
    glBlendEquation(GL_FUNC_ADD);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    Drawable::enablePointSprite(true);
    for (const Disc& disc : discs) {
        draw(*soft, drawable, first, count, [&] {
            soft->setUniform("color", disc.color);
            soft->setUniform("radius", disc.size);
            soft->setUniform("softness", disc.softness);
            soft->setUniform("mvp", mvp);
        });
    }
    Drawable::enablePointSprite(false);
}

template <class V>
void drawRings(const glm::vec4& color, const glm::vec4& color2, float radius, unsigned int count,
               const V* points, const glm::mat4& mvp) {
    drawDiscs({{color, radius, 0.1f}, {color2, radius * 0.7f, 0.2f}, {color, radius * 0.3f, 0.4f}},
              0, count, points, mvp);
}

/// The length of a step, in single precision throughout.
float length(const glm::vec2& step) {
    return std::sqrt(step.y * step.y + step.x * step.x);
}

float length(const glm::vec3& step) {
    return std::sqrt((step.y * step.y + step.x * step.x) + step.z * step.z);
}

/// The points, each with the length of the line up to it as a further component; null for null.
template <class V, class WithDistance>
std::unique_ptr<WithDistance[]> withDistances(const V* points, unsigned int count) {
    if (points == nullptr)
        return nullptr;
    auto result = std::make_unique<WithDistance[]>(count);
    float distance = 0.f;
    for (unsigned int i = 0; i < count; ++i) {
        if (i > 0)
            distance += length(points[i] - points[i - 1]);
        result[i] = WithDistance(points[i], distance);
    }
    return result;
}

template <class V>
void drawDashes(const glm::vec4& color, float dash, float gap, unsigned int count, const V* points,
                const glm::mat4& mvp) {
    using WithDistance = std::conditional_t<is2D<V>, glm::vec3, glm::vec4>;
    const auto& dashed = program<V>(BuiltIn::DashLines2D, BuiltIn::DashLines3D);
    if (dashed == nullptr)
        return;
    const auto line = withDistances<V, WithDistance>(points, count);
    const auto buffer = stream<WithDistance>(line.get(), count);
    if (buffer == nullptr)
        return;
    draw(*dashed, shape<drawable::LineStrip>(dashed, "position_t", buffer), 0, count, [&] {
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
    // Once the registry has let go of the buffer it is not made again. A plain pointer could then
    // be the address of another buffer, which a weak one keeps from happening.
    static const std::weak_ptr<Bytes> made = [] {
        auto buffer = Bytes::make(bufferSize, BufferUsage::Static, BufferAccess::Draw);
        BufferObjectManager::instance().add(buffer);
        return buffer;
    }();
    return std::static_pointer_cast<Bytes>(ToolboxAccess::find(made.lock().get()));
}

// The forms of each family, which differ only in the type of the points.

#define VELLIS_FLAT_FAMILY(Shape, V)                                                               \
    void Toolbox::draw##Shape(const glm::vec4& color, unsigned int first, unsigned int count,      \
                              const std::shared_ptr<VertexAttributeBuffer<V>>& buffer,             \
                              const glm::mat4& mvp) {                                              \
        drawFlat<drawable::Shape>(color, first, count, buffer, mvp);                               \
    }                                                                                              \
    void Toolbox::draw##Shape(const glm::vec4& color, unsigned int first, unsigned int count,      \
                              const V* points, const glm::mat4& mvp) {                             \
        drawFlat<drawable::Shape>(color, first, count, points, mvp);                               \
    }                                                                                              \
    void Toolbox::draw##Shape(const glm::vec4& color, unsigned int count, const V* points,         \
                              const glm::mat4& mvp) {                                              \
        drawFlat<drawable::Shape>(color, 0, count, points, mvp);                                   \
    }                                                                                              \
    void Toolbox::draw##Shape(const glm::vec4& color, std::initializer_list<V> points,             \
                              const glm::mat4& mvp) {                                              \
        drawFlat<drawable::Shape>(color, points, mvp);                                             \
    }

VELLIS_FLAT_FAMILY(Lines, glm::vec2)
VELLIS_FLAT_FAMILY(Lines, glm::vec3)
VELLIS_FLAT_FAMILY(LineStrip, glm::vec2)
VELLIS_FLAT_FAMILY(LineStrip, glm::vec3)
VELLIS_FLAT_FAMILY(LineLoop, glm::vec2)
VELLIS_FLAT_FAMILY(LineLoop, glm::vec3)
VELLIS_FLAT_FAMILY(TriangleFan, glm::vec2)
VELLIS_FLAT_FAMILY(TriangleFan, glm::vec3)
VELLIS_FLAT_FAMILY(TriangleStrip, glm::vec2)
VELLIS_FLAT_FAMILY(TriangleStrip, glm::vec3)
#undef VELLIS_FLAT_FAMILY

#define VELLIS_OTHER_FAMILIES(V)                                                                   \
    void Toolbox::drawPoints(const glm::vec4& color, float size, unsigned int first,               \
                             unsigned int count, const V* points, const glm::mat4& mvp) {          \
        drawDiscs({{color, size, 0.1f}}, first, count, points, mvp);                               \
    }                                                                                              \
    void Toolbox::drawPoints(const glm::vec4& color, float size, unsigned int count,               \
                             const V* points, const glm::mat4& mvp) {                              \
        drawPoints(color, size, 0, count, points, mvp);                                            \
    }                                                                                              \
    void Toolbox::drawPoints(const glm::vec4& color, float size, std::initializer_list<V> points,  \
                             const glm::mat4& mvp) {                                               \
        drawPoints(color, size, countOf(points), points.begin(), mvp);                             \
    }                                                                                              \
    void Toolbox::drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,     \
                                unsigned int count, const V* points, const glm::mat4& mvp) {       \
        drawRings(color, color2, radius, count, points, mvp);                                      \
    }                                                                                              \
    void Toolbox::drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,     \
                                std::initializer_list<V> points, const glm::mat4& mvp) {           \
        drawRings(color, color2, radius, countOf(points), points.begin(), mvp);                    \
    }                                                                                              \
    void Toolbox::drawDashLineStrip(const glm::vec4& color, float dash, float gap,                 \
                                    unsigned int count, const V* points, const glm::mat4& mvp) {   \
        drawDashes(color, dash, gap, count, points, mvp);                                          \
    }                                                                                              \
    void Toolbox::drawDashLineStrip(const glm::vec4& color, float dash, float gap,                 \
                                    std::initializer_list<V> points, const glm::mat4& mvp) {       \
        drawDashes(color, dash, gap, countOf(points), points.begin(), mvp);                        \
    }

VELLIS_OTHER_FAMILIES(glm::vec2)
VELLIS_OTHER_FAMILIES(glm::vec3)
#undef VELLIS_OTHER_FAMILIES

void Toolbox::drawQuad(const glm::vec4& color, const glm::vec3* points, const glm::mat4& mvp) {
    drawTriangleFan(color, 0, 4, points, mvp);
}

void Toolbox::drawQuad(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                       const glm::mat4& mvp) {
    drawQuad(color, corners(points).data(), mvp);
}

void Toolbox::drawQuad(const glm::vec4& fillColor, const glm::vec4& outlineColor,
                       const glm::vec3* points, const glm::mat4& mvp) {
    if (flatProgram<glm::vec3>() == nullptr)
        return;
    const auto buffer = stream(points, 4);
    drawFlat<drawable::TriangleFan>(fillColor, 0, 4, buffer, mvp);
    drawFlat<drawable::LineLoop>(outlineColor, 0, 4, buffer, mvp);
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

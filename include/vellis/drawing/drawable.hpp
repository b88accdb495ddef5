#pragma once

#include <memory>

#include <vellis/buffers/index_buffer.hpp>
#include <vellis/detail/hot.hpp>
#include <vellis/detail/mistaken_for_bool.hpp>
#include <vellis/drawing/vertex_attributes_binding.hpp>
#include <vellis/export.hpp>

namespace vellis {

/// The base of everything that can be drawn: a primitive type, a number of vertices, and the
/// binding that says where their attributes come from. Program::draw draws it.
///
/// A subclass sets `numVertices_` and, with the help of a program, `attributesBinding_`:
///
/// \code
/// class Triangle : public vellis::Drawable {
/// public:
///     Triangle(const vellis::Program& program,
///              const vellis::VertexAttributeBuffer<glm::vec2>& positions)
///         : Drawable(PrimitiveType::Triangles) {
///         numVertices_ = positions.count();
///         const auto position =
///             static_cast<GLuint>(glGetAttribLocation(program.id(), "position"));
///         program.beginAttributesBinding();
///         positions.bind();
///         glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
///         glEnableVertexAttribArray(position);
///         positions.unbind();
///         attributesBinding_ = program.finishAttributesBinding();
///     }
/// };
/// \endcode
///
/// In another Context than it was made in, it draws nothing: make one for each.
///
/// The static functions set rasterisation state of the current GL context, at once and for all
/// drawing; nothing puts it back.
class VELLIS_EXPORT Drawable {
public:
    /// The GL primitive that the vertices make; each value is the GL enumerator's.
    enum class PrimitiveType : unsigned int {
        Points = 0x0000,        ///< `GL_POINTS`
        Lines = 0x0001,         ///< `GL_LINES`
        LineLoop = 0x0002,      ///< `GL_LINE_LOOP`
        LineStrip = 0x0003,     ///< `GL_LINE_STRIP`
        Triangles = 0x0004,     ///< `GL_TRIANGLES`
        TriangleStrip = 0x0005, ///< `GL_TRIANGLE_STRIP`
        TriangleFan = 0x0006,   ///< `GL_TRIANGLE_FAN`
        Quads = 0x0007,         ///< `GL_QUADS`, which a core context refuses
        QuadStrip = 0x0008,     ///< `GL_QUAD_STRIP`, which a core context refuses
        Polygon = 0x0009,       ///< `GL_POLYGON`, which a core context refuses
    };

    /// The side of a polygon; each value is the GL enumerator's.
    enum class Face : unsigned int {
        Front = 0x0404,        ///< `GL_FRONT`
        Back = 0x0405,         ///< `GL_BACK`
        FrontAndBack = 0x0408, ///< `GL_FRONT_AND_BACK`
    };

    /// How well edges are smoothed; each value is the GL enumerator's.
    enum class SmoothHint : unsigned int {
        DontCare = 0x1100, ///< `GL_DONT_CARE`
        Fastest = 0x1101,  ///< `GL_FASTEST`
        Nicest = 0x1102,   ///< `GL_NICEST`
    };

    /// How polygons are drawn; each value is the GL enumerator's.
    enum class PolygonMode : unsigned int {
        Point = 0x1B00, ///< `GL_POINT`
        Line = 0x1B01,  ///< `GL_LINE`
        Fill = 0x1B02,  ///< `GL_FILL`
    };

    virtual ~Drawable() = default;

    // The order of the virtual functions is the order of the virtual table.

    /// Draws \p count vertices that \p indices name, from index \p first on, with `glDrawElements`;
    /// a \p count of 0 means all that remain. Neither the count nor the indices are checked: what
    /// they reach beyond the end, GL reads outside the buffers. Binds the index buffer and then 0
    /// in its place.
    /// @{
    virtual void draw(const IndexBuffer<unsigned int>& indices, unsigned int first,
                      unsigned int count) const;
    virtual void draw(const IndexBuffer<unsigned short>& indices, unsigned int first,
                      unsigned int count) const;
    virtual void draw(const IndexBuffer<unsigned char>& indices, unsigned int first,
                      unsigned int count) const;
    /// @}

    /// Draws \p count vertices from \p first on with `glDrawArrays`; a \p count of 0 means all that
    /// remain. With \p first beyond the end, GL refuses the count that this gives. Any other count
    /// goes to GL as it is: one that reaches beyond the end makes GL read outside the buffers.
    /// Binds nothing: Program::draw does.
    VELLIS_HOT virtual void draw(unsigned int first, unsigned int count) const;

    /// The number of vertices.
    unsigned int numVertices() const { return numVertices_; }

    /// The binding of the vertex attributes; empty in a drawable without one.
    const std::shared_ptr<VertexAttributesBinding>& getAttributesBinding() const {
        return attributesBinding_;
    }

    /// Drops polygons that show \p face: `glCullFace`, then `glEnable(GL_CULL_FACE)`.
    static void enableFaceCulling(Face face);

    /// Switches face culling with the face last set.
    static void enableFaceCulling(bool on);

    /// enableFaceCulling(false).
    static void disableFaceCulling() { enableFaceCulling(false); }

    /// Antialiases lines: `glEnable(GL_LINE_SMOOTH)`, then `glHint`. It shows where blending is on.
    static void enableLineSmooth(SmoothHint hint);

    /// Switches line smoothing.
    static void enableLineSmooth(bool on);

    /// enableLineSmooth(false).
    static void disableLineSmooth() { enableLineSmooth(false); }

    /// Antialiases polygon edges: `glEnable(GL_POLYGON_SMOOTH)`, then `glHint`.
    static void enablePolygonSmooth(SmoothHint hint);

    /// Switches polygon smoothing.
    static void enablePolygonSmooth(bool on);

    /// enablePolygonSmooth(false).
    static void disablePolygonSmooth() { enablePolygonSmooth(false); }

    /// Switches `GL_POINT_SPRITE` and `GL_VERTEX_PROGRAM_POINT_SIZE`: points have coordinates
    /// (`gl_PointCoord`) and the size that the vertex shader gives them. A context without the
    /// first switch is asked for its error, once, so that no later check reports it.
    static void enablePointSprite(bool on);

    /// enablePointSprite(false).
    static void disablePointSprite() { enablePointSprite(false); }

    /// \name No switches
    /// Numbers, pointers and GL's own enumerators do not switch anything:
    /// `enableFaceCulling(GL_BACK)` does not compile.
    /// @{
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableFaceCulling(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enableLineSmooth(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enablePolygonSmooth(T) = delete;
    template <class T, detail::MistakenForBool<T> = 0>
    static void enablePointSprite(T) = delete;
    /// @}

    /// The width of lines in pixels; the driver rounds it and limits it to
    /// `GL_ALIASED_LINE_WIDTH_RANGE` or `GL_SMOOTH_LINE_WIDTH_RANGE`. In a forward-compatible core
    /// context, which has no lines wider than 1, a larger width does nothing.
    static void setLineWidth(float width);

    /// The diameter of points in pixels. Switches `GL_VERTEX_PROGRAM_POINT_SIZE` off, without which
    /// a fixed size has no effect.
    static void setPointSize(float size);

    /// How polygons that show \p face are drawn. A core context has one mode for both faces:
    /// there, one for a single face does nothing.
    static void setPolygonMode(Face face, PolygonMode mode);

protected:
    /// A drawable of 0 vertices without a binding. Makes no GL call.
    explicit Drawable(PrimitiveType type) : primitiveType_(type) {}

    /// Copies share the binding.
    /// @{
    Drawable(const Drawable&) = default;
    Drawable& operator=(const Drawable&) = default;
    /// @}

    PrimitiveType primitiveType_;                                ///< what the vertices make
    unsigned int numVertices_ = 0;                               ///< how many there are
    std::shared_ptr<VertexAttributesBinding> attributesBinding_; ///< where they come from
};

} // namespace vellis

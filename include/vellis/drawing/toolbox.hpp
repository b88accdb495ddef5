#pragma once

#include <initializer_list>
#include <memory>

#include <glm/fwd.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/export.hpp>

namespace vellis {

/// Simple geometry in one call: lines, strips, loops, fans, soft round points, bullseyes, dashed
/// lines, quads and rectangles, in flat colours, under a model-view-projection matrix.
///
/// \code
/// const glm::vec4 orange(1.f, 0.5f, 0.f, 1.f);
/// const glm::mat4 mvp(1.f); // clip coordinates
/// vellis::Toolbox::drawLineStrip(orange, {{-0.5f, 0.f}, {0.f, 0.5f}, {0.5f, 0.f}}, mvp);
/// vellis::Toolbox::drawPoints(orange, 12.f, {{-0.5f, 0.f}, {0.5f, 0.f}}, mvp);
/// \endcode
///
/// Colours are red, green, blue and alpha from 0 to 1. A list of points may be written with braces
/// or name points of one's own. Points are 2D (`glm::vec2`, in the plane z = 0) or 3D
/// (`glm::vec3`). The matrix type is only declared here: whoever makes a matrix includes
/// <glm/mat4x4.hpp>.
///
/// **How it draws.** Points that are not in a buffer of the caller's are written to the start of
/// one shared buffer of 1024 bytes: up to 128 2D or 85 3D points a call, 85 or 64 of a dashed line.
/// GL refuses a larger upload with `GL_INVALID_VALUE`, and the call draws what the buffer held
/// before and, beyond its end, vertices that are not there, which a driver may read as anything.
/// Null points upload nothing and draw what the buffer holds, with the same end. A count of 0,
/// which is also that of an empty list, means all from `first` on to the 1024th vertex, most of
/// which lie beyond that end: pass counts above 0. Of a buffer of the caller's it means all that
/// remain. Points, bullseyes and dashed lines take no buffer of the caller's: draw many of them in
/// several calls.
///
/// **Looks.** Lines are as wide and as smooth as Drawable::setLineWidth and
/// Drawable::enableLineSmooth say; smoothing shows where blending is on. With the depth test on, a
/// 3D point or bullseye writes depth in its whole square, the corners included: draw them last, or
/// with depth writing off.
///
/// **State.** After a call no program is in use, and no vertex array object and no array buffer is
/// bound. The point families (drawPoints, drawBullseyes) put the blend state back and leave point
/// sprites and program point size off; of the errors pending in GL's queue each of their calls
/// takes two, as Drawable::enablePointSprite does one. Nothing else is changed.
///
/// **Cost.** Each call makes and deletes a vertex array object. It allocates memory for that and,
/// for a dashed line, for the points.
///
/// **Contexts.** Each Context has such a buffer of its own, as has the process for where none is in
/// use. There, after engine::dispose, the calls do nothing; in a Context made anew they draw.
class VELLIS_EXPORT Toolbox {
public:
    /// The one instance, which has nothing to ask: all functions are static.
    static Toolbox& instance();

    /// The shared buffer of the Context in use, which the first call makes and BufferObjectManager
    /// owns. Empty once the registry has let go of it, and where engine::dispose comes before the
    /// first call: it is not made again, and then not at all.
    static std::shared_ptr<VertexAttributeBuffer<unsigned char>> getVertexBuffer();

    /// \name Lines
    /// \param first   The first point to draw; those before it are uploaded as well.
    /// \param count   The number of points to draw.
    /// \param buffer  The caller's points; nothing is uploaded. An empty pointer draws nothing.
    /// @{

    /// Draws a line for each two points.
    static void drawLines(const glm::vec4& color, unsigned int first, unsigned int count,
                          const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer,
                          const glm::mat4& mvp) {
        drawFlat(lines, color, first, count, buffer.get(), 2, mvp);
    }
    static void drawLines(const glm::vec4& color, unsigned int first, unsigned int count,
                          const glm::vec2* points, const glm::mat4& mvp) {
        drawFlat(lines, color, first, count, numbers(points), 2, mvp);
    }
    static void drawLines(const glm::vec4& color, unsigned int count, const glm::vec2* points,
                          const glm::mat4& mvp) {
        drawLines(color, 0, count, points, mvp);
    }
    static void drawLines(const glm::vec4& color, std::initializer_list<glm::vec2> points,
                          const glm::mat4& mvp) {
        drawLines(color, 0, countOf(points), points.begin(), mvp);
    }
    static void drawLines(const glm::vec4& color, unsigned int first, unsigned int count,
                          const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer,
                          const glm::mat4& mvp) {
        drawFlat(lines, color, first, count, buffer.get(), 3, mvp);
    }
    static void drawLines(const glm::vec4& color, unsigned int first, unsigned int count,
                          const glm::vec3* points, const glm::mat4& mvp) {
        drawFlat(lines, color, first, count, numbers(points), 3, mvp);
    }
    static void drawLines(const glm::vec4& color, unsigned int count, const glm::vec3* points,
                          const glm::mat4& mvp) {
        drawLines(color, 0, count, points, mvp);
    }
    static void drawLines(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                          const glm::mat4& mvp) {
        drawLines(color, 0, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name LineStrip
    /// \param first   The first point to draw; those before it are uploaded as well.
    /// \param count   The number of points to draw.
    /// \param buffer  The caller's points; nothing is uploaded. An empty pointer draws nothing.
    /// @{

    /// Draws a line through the points.
    static void drawLineStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                              const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer,
                              const glm::mat4& mvp) {
        drawFlat(lineStrip, color, first, count, buffer.get(), 2, mvp);
    }
    static void drawLineStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                              const glm::vec2* points, const glm::mat4& mvp) {
        drawFlat(lineStrip, color, first, count, numbers(points), 2, mvp);
    }
    static void drawLineStrip(const glm::vec4& color, unsigned int count, const glm::vec2* points,
                              const glm::mat4& mvp) {
        drawLineStrip(color, 0, count, points, mvp);
    }
    static void drawLineStrip(const glm::vec4& color, std::initializer_list<glm::vec2> points,
                              const glm::mat4& mvp) {
        drawLineStrip(color, 0, countOf(points), points.begin(), mvp);
    }
    static void drawLineStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                              const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer,
                              const glm::mat4& mvp) {
        drawFlat(lineStrip, color, first, count, buffer.get(), 3, mvp);
    }
    static void drawLineStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                              const glm::vec3* points, const glm::mat4& mvp) {
        drawFlat(lineStrip, color, first, count, numbers(points), 3, mvp);
    }
    static void drawLineStrip(const glm::vec4& color, unsigned int count, const glm::vec3* points,
                              const glm::mat4& mvp) {
        drawLineStrip(color, 0, count, points, mvp);
    }
    static void drawLineStrip(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                              const glm::mat4& mvp) {
        drawLineStrip(color, 0, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name LineLoop
    /// \param first   The first point to draw; those before it are uploaded as well.
    /// \param count   The number of points to draw.
    /// \param buffer  The caller's points; nothing is uploaded. An empty pointer draws nothing.
    /// @{

    /// Draws a line through the points and back to the first.
    static void drawLineLoop(const glm::vec4& color, unsigned int first, unsigned int count,
                             const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer,
                             const glm::mat4& mvp) {
        drawFlat(lineLoop, color, first, count, buffer.get(), 2, mvp);
    }
    static void drawLineLoop(const glm::vec4& color, unsigned int first, unsigned int count,
                             const glm::vec2* points, const glm::mat4& mvp) {
        drawFlat(lineLoop, color, first, count, numbers(points), 2, mvp);
    }
    static void drawLineLoop(const glm::vec4& color, unsigned int count, const glm::vec2* points,
                             const glm::mat4& mvp) {
        drawLineLoop(color, 0, count, points, mvp);
    }
    static void drawLineLoop(const glm::vec4& color, std::initializer_list<glm::vec2> points,
                             const glm::mat4& mvp) {
        drawLineLoop(color, 0, countOf(points), points.begin(), mvp);
    }
    static void drawLineLoop(const glm::vec4& color, unsigned int first, unsigned int count,
                             const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer,
                             const glm::mat4& mvp) {
        drawFlat(lineLoop, color, first, count, buffer.get(), 3, mvp);
    }
    static void drawLineLoop(const glm::vec4& color, unsigned int first, unsigned int count,
                             const glm::vec3* points, const glm::mat4& mvp) {
        drawFlat(lineLoop, color, first, count, numbers(points), 3, mvp);
    }
    static void drawLineLoop(const glm::vec4& color, unsigned int count, const glm::vec3* points,
                             const glm::mat4& mvp) {
        drawLineLoop(color, 0, count, points, mvp);
    }
    static void drawLineLoop(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                             const glm::mat4& mvp) {
        drawLineLoop(color, 0, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name TriangleFan
    /// \param first   The first point to draw; those before it are uploaded as well.
    /// \param count   The number of points to draw.
    /// \param buffer  The caller's points; nothing is uploaded. An empty pointer draws nothing.
    /// @{

    /// Draws a triangle for each point from the third on, with the first and the one before it.
    static void drawTriangleFan(const glm::vec4& color, unsigned int first, unsigned int count,
                                const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer,
                                const glm::mat4& mvp) {
        drawFlat(triangleFan, color, first, count, buffer.get(), 2, mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, unsigned int first, unsigned int count,
                                const glm::vec2* points, const glm::mat4& mvp) {
        drawFlat(triangleFan, color, first, count, numbers(points), 2, mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, unsigned int count, const glm::vec2* points,
                                const glm::mat4& mvp) {
        drawTriangleFan(color, 0, count, points, mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, std::initializer_list<glm::vec2> points,
                                const glm::mat4& mvp) {
        drawTriangleFan(color, 0, countOf(points), points.begin(), mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, unsigned int first, unsigned int count,
                                const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer,
                                const glm::mat4& mvp) {
        drawFlat(triangleFan, color, first, count, buffer.get(), 3, mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, unsigned int first, unsigned int count,
                                const glm::vec3* points, const glm::mat4& mvp) {
        drawFlat(triangleFan, color, first, count, numbers(points), 3, mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, unsigned int count, const glm::vec3* points,
                                const glm::mat4& mvp) {
        drawTriangleFan(color, 0, count, points, mvp);
    }
    static void drawTriangleFan(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                                const glm::mat4& mvp) {
        drawTriangleFan(color, 0, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name TriangleStrip
    /// \param first   The first point to draw; those before it are uploaded as well.
    /// \param count   The number of points to draw.
    /// \param buffer  The caller's points; nothing is uploaded. An empty pointer draws nothing.
    /// @{

    /// Draws a triangle for each point from the third on, with the two before it.
    static void drawTriangleStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                                  const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer,
                                  const glm::mat4& mvp) {
        drawFlat(triangleStrip, color, first, count, buffer.get(), 2, mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                                  const glm::vec2* points, const glm::mat4& mvp) {
        drawFlat(triangleStrip, color, first, count, numbers(points), 2, mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, unsigned int count,
                                  const glm::vec2* points, const glm::mat4& mvp) {
        drawTriangleStrip(color, 0, count, points, mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, std::initializer_list<glm::vec2> points,
                                  const glm::mat4& mvp) {
        drawTriangleStrip(color, 0, countOf(points), points.begin(), mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                                  const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer,
                                  const glm::mat4& mvp) {
        drawFlat(triangleStrip, color, first, count, buffer.get(), 3, mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                                  const glm::vec3* points, const glm::mat4& mvp) {
        drawFlat(triangleStrip, color, first, count, numbers(points), 3, mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, unsigned int count,
                                  const glm::vec3* points, const glm::mat4& mvp) {
        drawTriangleStrip(color, 0, count, points, mvp);
    }
    static void drawTriangleStrip(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                                  const glm::mat4& mvp) {
        drawTriangleStrip(color, 0, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name Points
    /// \param size   The diameter in pixels; the driver limits it to `GL_ALIASED_POINT_SIZE_RANGE`.
    /// \param first  The first point to draw; those before it are uploaded as well.
    /// \param count  The number of points to draw.
    /// @{

    /// Draws round points with a soft rim, blended over what is there.
    static void drawPoints(const glm::vec4& color, float size, unsigned int first,
                           unsigned int count, const glm::vec2* points, const glm::mat4& mvp);
    static void drawPoints(const glm::vec4& color, float size, unsigned int count,
                           const glm::vec2* points, const glm::mat4& mvp) {
        drawPoints(color, size, 0, count, points, mvp);
    }
    static void drawPoints(const glm::vec4& color, float size,
                           std::initializer_list<glm::vec2> points, const glm::mat4& mvp) {
        drawPoints(color, size, countOf(points), points.begin(), mvp);
    }
    static void drawPoints(const glm::vec4& color, float size, unsigned int first,
                           unsigned int count, const glm::vec3* points, const glm::mat4& mvp);
    static void drawPoints(const glm::vec4& color, float size, unsigned int count,
                           const glm::vec3* points, const glm::mat4& mvp) {
        drawPoints(color, size, 0, count, points, mvp);
    }
    static void drawPoints(const glm::vec4& color, float size,
                           std::initializer_list<glm::vec3> points, const glm::mat4& mvp) {
        drawPoints(color, size, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name Bullseyes
    /// \param radius  The diameter of the mark in pixels, as the point size of the outermost disc.
    /// @{

    /// Draws round marks of three rings: a disc of \p color, on it one of \p color2 with 0.7 times
    /// the diameter, and on it one of \p color with 0.3 times.
    static void drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,
                              unsigned int count, const glm::vec2* points, const glm::mat4& mvp);
    static void drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,
                              std::initializer_list<glm::vec2> points, const glm::mat4& mvp) {
        drawBullseyes(color, color2, radius, countOf(points), points.begin(), mvp);
    }
    static void drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,
                              unsigned int count, const glm::vec3* points, const glm::mat4& mvp);
    static void drawBullseyes(const glm::vec4& color, const glm::vec4& color2, float radius,
                              std::initializer_list<glm::vec3> points, const glm::mat4& mvp) {
        drawBullseyes(color, color2, radius, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name Dashed lines
    /// \param dash, gap  The lengths of a dash and of a gap, in the units of the points:
    /// under a matrix that scales x and y unlike, dashes differ with their direction.
    /// @{

    /// Draws a dashed line through the points, starting with a dash at the first. The pattern goes
    /// on around the corners.
    static void drawDashLineStrip(const glm::vec4& color, float dash, float gap, unsigned int count,
                                  const glm::vec2* points, const glm::mat4& mvp);
    static void drawDashLineStrip(const glm::vec4& color, float dash, float gap,
                                  std::initializer_list<glm::vec2> points, const glm::mat4& mvp) {
        drawDashLineStrip(color, dash, gap, countOf(points), points.begin(), mvp);
    }
    static void drawDashLineStrip(const glm::vec4& color, float dash, float gap, unsigned int count,
                                  const glm::vec3* points, const glm::mat4& mvp);
    static void drawDashLineStrip(const glm::vec4& color, float dash, float gap,
                                  std::initializer_list<glm::vec3> points, const glm::mat4& mvp) {
        drawDashLineStrip(color, dash, gap, countOf(points), points.begin(), mvp);
    }
    /// @}

    /// \name Quads
    /// @{

    /// Draws a filled quad of four points in order around it, and with a second colour its outline
    /// over it. Of a list that is too short the rest is the origin; of one too long the rest is
    /// left out.
    static void drawQuad(const glm::vec4& color, const glm::vec3* points, const glm::mat4& mvp);
    static void drawQuad(const glm::vec4& color, std::initializer_list<glm::vec3> points,
                         const glm::mat4& mvp);
    static void drawQuad(const glm::vec4& fillColor, const glm::vec4& outlineColor,
                         const glm::vec3* points, const glm::mat4& mvp);
    static void drawQuad(const glm::vec4& fillColor, const glm::vec4& outlineColor,
                         std::initializer_list<glm::vec3> points, const glm::mat4& mvp);
    /// @}

    /// Draws a filled rectangle whose sides are parallel to the axes, with opposite corners \p a
    /// and \p b.
    static void drawRect(const glm::vec4& color, const glm::vec2& a, const glm::vec2& b,
                         const glm::mat4& mvp);

private:
    Toolbox() = default;

    /// \name GL's primitives
    /// @{
    static constexpr unsigned int lines = 0x0001;
    static constexpr unsigned int lineLoop = 0x0002;
    static constexpr unsigned int lineStrip = 0x0003;
    static constexpr unsigned int triangleStrip = 0x0005;
    static constexpr unsigned int triangleFan = 0x0006;
    /// @}

    /// Draws points of 2 or 3 \p dimensions in one colour: those of a buffer, or plain numbers.
    /// @{
    static void drawFlat(unsigned int primitive, const glm::vec4& color, unsigned int first,
                         unsigned int count, const VertexBuffer* buffer, unsigned int dimensions,
                         const glm::mat4& mvp);
    static void drawFlat(unsigned int primitive, const glm::vec4& color, unsigned int first,
                         unsigned int count, const float* points, unsigned int dimensions,
                         const glm::mat4& mvp);
    /// @}

    /// Points as plain numbers; null for null.
    template <class V>
    static const float* numbers(const V* points) {
        return points != nullptr ? &points->x : nullptr;
    }

    template <class V>
    static unsigned int countOf(std::initializer_list<V> points) {
        return static_cast<unsigned int>(points.size());
    }
};

} // namespace vellis

#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <type_traits>

#include <glm/fwd.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/canvas/image.hpp>
#include <vellis/canvas/picture.hpp>
#include <vellis/canvas/points.hpp>
#include <vellis/canvas/stroke.hpp>
#include <vellis/export.hpp>

namespace vellis {

namespace internal {
struct LabelAccess;
}

class Texture;

namespace canvas {

class Painter;

/// What points are the corners of.
enum class Shape : unsigned char {
    Lines,         ///< a line for each two
    LineStrip,     ///< one line through all
    LineLoop,      ///< the same, and back to the first
    Triangles,     ///< a triangle for each three
    TriangleStrip, ///< each with the two before it
    TriangleFan,   ///< each with the one before it and the first
    Quads,         ///< a quad for each four
};

} // namespace canvas

/// Draws any number of lines, points and areas, with the names of the Toolbox's families: lines of
/// any width, antialiased, with joins, caps and dashes; in the order of the calls; with few GL
/// calls.
///
/// \code
/// const auto canvas = vellis::Canvas::make();
/// const glm::mat4 mvp(1.f); // clip coordinates
/// const glm::vec4 orange(1.f, 0.5f, 0.f, 1.f);
/// canvas->begin(mvp);
/// canvas->drawLineStrip(vellis::Stroke(orange, 3.f), {{-0.5f, 0.f}, {0.f, 0.5f}, {0.5f, 0.f}});
/// canvas->drawPoints(orange, 12.f, {{-0.5f, 0.f}, {0.5f, 0.f}});
/// canvas->end();
/// \endcode
///
/// **Points** are 2D (in the plane z = 0) or 3D, `float` or `double`, and come as a list in braces,
/// as a container with `data()` and `size()`, as a count and a pointer, or in a
/// VertexAttributeBuffer, from which GL draws without a copy. The origin is subtracted from them
/// (setOrigin), then the transform applies (setTransform), then the matrix of begin(). A count of 0
/// draws nothing. A point that is not finite is left out with the pieces that it belongs to; that
/// of a caller's buffer is the caller's care.
///
/// **Colours** are red, green, blue and alpha from 0 to 1, clamped, and kept in 8 bits each; alpha
/// is straight. They are blended over what is there.
///
/// **Pixels.** Widths of strokes, lengths of dashes and sizes of points are in pixels of the
/// framebuffer, times setPixelRatio(). The centres of pixels lie at halves.
///
/// **Order and batches.** What is drawn later lies above. The calls between begin() and end() are
/// collected, and go to GL at end(), at flush(), and whenever the buffers are full; calls of one
/// kind that follow each other go together. GL's state is read then: the viewport, the framebuffer,
/// scissor, stencil and depth test, colour mask and depth mask are the caller's. What the caller
/// draws in between needs a flush() before it. Points from a caller's buffer and pictures are drawn
/// at once, behind what waits.
///
/// **GL state.** What a batch changes is put back at its end: the program in use, the vertex array
/// object and the array buffer, the active texture unit, and the texture and the sampler object of
/// the last one, the framebuffers, blending (switch, factors and equations), viewport, scissor,
/// clear colour, colour and depth mask. While it draws, culling, the logical operation, the alpha
/// test, alpha to coverage, polygon and line smoothing, polygon modes other than fill, and
/// primitive restart are off; strokes and points that are antialiased write no depth, and have no
/// offset of polygons. Neither the widths of GL's lines nor multisampling change a stroke.
///
/// **Half-transparent strokes** paint each pixel once, also where they cross themselves, if they
/// have one colour and there is no depth test; otherwise where their pieces meet. setOverlap()
/// leaves that out. A strip or a loop is a stroke; of drawLines() each line is.
///
/// **Space.** In perspective, widths and sizes remain in pixels. Pieces that cross the near plane
/// are cut there.
///
/// **Contexts.** A canvas belongs to the Context in which it was made; with another in use it draws
/// nothing. There can be any number. It is used on one thread at a time.
class VELLIS_EXPORT Canvas {
public:
    /// A canvas for the Context in use. GL objects are made when they are first needed: a buffer
    /// for each kind of shape, a vertex array object, a program for each kind of stroke; for
    /// half-transparent strokes a framebuffer.
    static std::shared_ptr<Canvas> make();

    /// Releases its GL objects. What waits is not drawn.
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// \name Batches
    /// @{

    /// Begins a batch, with the matrix from points to clip coordinates and no transform. Ends the
    /// batch or the picture before, if that has not been ended. Makes no GL call.
    void begin(const glm::mat4& mvp);

    /// Draws what waits, and puts GL's state back. The batch goes on.
    void flush();

    /// Draws what waits, and ends the batch. What is drawn outside of a batch is left out.
    void end();

    /// Applies to the points of the calls from now on, ahead of the matrix of begin(). Makes no GL
    /// call, and what waits is not affected. A matrix with a value that is not finite draws
    /// nothing.
    void setTransform(const glm::mat4& transform);

    /// Is subtracted in double precision from the points of the calls from now on, in this batch
    /// and those that follow: world coordinates of ten millions with a view of a hundred units draw
    /// right with an origin in the view.
    void setOrigin(const glm::dvec3& origin);

    /// How many pixels of the framebuffer a pixel of widths, dashes and sizes is, from now on, in
    /// this batch and those that follow; 1 at first. A value that is not above 0 and finite counts
    /// as 1.
    void setPixelRatio(float ratio);

    /// Whether the pixels of drawQuads() count downwards from now on, in this batch and those that
    /// follow: for framebuffers whose first row is seen at the top. Not at first.
    void setPixelsDownward(bool isDownward);

    /// How half-transparent strokes paint the pixels where they cross themselves.
    enum class Overlap : unsigned char {
        Once,  ///< once, by way of a framebuffer of the canvas's own
        Often, ///< once for each time they cross: several times as fast
    };

    /// From now on, in this batch and those that follow; Once at first.
    void setOverlap(Overlap overlap);

    /// What another library keeps with the canvas, such as the glyphs that it draws: an empty
    /// pointer at first, which that library sets. It ends with the canvas. Makes no GL call.
    /// \param key  The library's own, such as the address of a variable.
    /// \return null where the canvas draws nothing now: outside of batches and pictures, and where
    ///         its Context is not in use.
    std::shared_ptr<void>* attachment(const void* key);
    /// @}

    /// \name Pictures
    /// @{

    /// Begins a picture: what is drawn until endPicture() is kept, not drawn. Begins as begin()
    /// does. Dashes take their lengths under \p mvp and the viewport of now, and grow with the
    /// picture later.
    void beginPicture(const glm::mat4& mvp);

    /// Ends it.
    /// \return the picture, empty where none was begun.
    std::shared_ptr<Picture> endPicture();

    /// Draws a picture under the canvas's matrix and transform. What was drawn with an origin is
    /// where it was. In a picture it draws nothing, as null does.
    void drawPicture(const std::shared_ptr<const Picture>& picture);
    /// @}

    /// \name Lines
    /// \param stroke  How to draw; a colour is a stroke one pixel wide.
    /// \param colors  A colour for each point, blended along the pieces, in place of the stroke's.
    /// \param buffer  The caller's points: `count` from `first` on, or as many as there are. The
    ///                stroke is solid, and a point that repeats the one before ends the line there
    ///                and begins another, unless GL has no instanced arrays: then the buffer is
    ///                read back. An empty pointer draws nothing.
    /// @{

    /// Draws a line for each two points.
    void drawLines(const Stroke& stroke, const Points& points) {
        drawStroke(Shape::Lines, stroke, points, nullptr);
    }
    void drawLines(const Stroke& stroke, const Points& points, const Colors& colors) {
        drawStroke(Shape::Lines, stroke, points, &colors);
    }
    void drawLines(const Stroke& stroke, std::initializer_list<glm::vec2> points) {
        drawLines(stroke, Points(points.begin(), points.size()));
    }
    void drawLines(const Stroke& stroke, std::initializer_list<glm::vec3> points) {
        drawLines(stroke, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawLines(const Stroke& stroke, std::size_t count, const V* points) {
        drawLines(stroke, Points(points, count));
    }
    void drawLines(const Stroke& stroke, unsigned int first, unsigned int count,
                   const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawStroke(Shape::Lines, stroke, first, count, buffer, 2);
    }
    void drawLines(const Stroke& stroke, unsigned int first, unsigned int count,
                   const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawStroke(Shape::Lines, stroke, first, count, buffer, 3);
    }

    /// Draws a line through the points. One point, or points that are all the same, are a dot where
    /// the caps are round, and nothing otherwise.
    void drawLineStrip(const Stroke& stroke, const Points& points) {
        drawStroke(Shape::LineStrip, stroke, points, nullptr);
    }
    void drawLineStrip(const Stroke& stroke, const Points& points, const Colors& colors) {
        drawStroke(Shape::LineStrip, stroke, points, &colors);
    }
    void drawLineStrip(const Stroke& stroke, std::initializer_list<glm::vec2> points) {
        drawLineStrip(stroke, Points(points.begin(), points.size()));
    }
    void drawLineStrip(const Stroke& stroke, std::initializer_list<glm::vec3> points) {
        drawLineStrip(stroke, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawLineStrip(const Stroke& stroke, std::size_t count, const V* points) {
        drawLineStrip(stroke, Points(points, count));
    }
    void drawLineStrip(const Stroke& stroke, unsigned int first, unsigned int count,
                       const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawStroke(Shape::LineStrip, stroke, first, count, buffer, 2);
    }
    void drawLineStrip(const Stroke& stroke, unsigned int first, unsigned int count,
                       const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawStroke(Shape::LineStrip, stroke, first, count, buffer, 3);
    }

    /// Draws a line through the points and back to the first.
    void drawLineLoop(const Stroke& stroke, const Points& points) {
        drawStroke(Shape::LineLoop, stroke, points, nullptr);
    }
    void drawLineLoop(const Stroke& stroke, const Points& points, const Colors& colors) {
        drawStroke(Shape::LineLoop, stroke, points, &colors);
    }
    void drawLineLoop(const Stroke& stroke, std::initializer_list<glm::vec2> points) {
        drawLineLoop(stroke, Points(points.begin(), points.size()));
    }
    void drawLineLoop(const Stroke& stroke, std::initializer_list<glm::vec3> points) {
        drawLineLoop(stroke, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawLineLoop(const Stroke& stroke, std::size_t count, const V* points) {
        drawLineLoop(stroke, Points(points, count));
    }
    void drawLineLoop(const Stroke& stroke, unsigned int first, unsigned int count,
                      const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawStroke(Shape::LineLoop, stroke, first, count, buffer, 2);
    }
    void drawLineLoop(const Stroke& stroke, unsigned int first, unsigned int count,
                      const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawStroke(Shape::LineLoop, stroke, first, count, buffer, 3);
    }

    /// drawLineStrip() with dashes of that length and gap in place of the stroke's.
    void drawDashLineStrip(const Stroke& stroke, float dash, float gap, const Points& points) {
        drawLineStrip(stroke.dashed({{dash, gap}}, stroke.dashOffset), points);
    }
    void drawDashLineStrip(const Stroke& stroke, float dash, float gap,
                           std::initializer_list<glm::vec2> points) {
        drawDashLineStrip(stroke, dash, gap, Points(points.begin(), points.size()));
    }
    void drawDashLineStrip(const Stroke& stroke, float dash, float gap,
                           std::initializer_list<glm::vec3> points) {
        drawDashLineStrip(stroke, dash, gap, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawDashLineStrip(const Stroke& stroke, float dash, float gap, std::size_t count,
                           const V* points) {
        drawDashLineStrip(stroke, dash, gap, Points(points, count));
    }
    /// @}

    /// \name Points
    /// \param sizes   Diameters in pixels: one for all points, or one for each. What is not above 0
    ///                draws nothing.
    /// \param buffer  The caller's points, as for lines.
    /// @{

    /// Draws round points.
    void drawPoints(const Colors& colors, const Sizes& sizes, const Points& points);
    void drawPoints(const Colors& colors, const Sizes& sizes,
                    std::initializer_list<glm::vec2> points) {
        drawPoints(colors, sizes, Points(points.begin(), points.size()));
    }
    void drawPoints(const Colors& colors, const Sizes& sizes,
                    std::initializer_list<glm::vec3> points) {
        drawPoints(colors, sizes, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawPoints(const Colors& colors, const Sizes& sizes, std::size_t count, const V* points) {
        drawPoints(colors, sizes, Points(points, count));
    }
    void drawPoints(const glm::vec4& color, float size, unsigned int first, unsigned int count,
                    const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawPoints(color, size, first, count, buffer, 2);
    }
    void drawPoints(const glm::vec4& color, float size, unsigned int first, unsigned int count,
                    const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawPoints(color, size, first, count, buffer, 3);
    }

    /// Draws bullseyes: a disc of \p colors, within it one of \p colors2 and 0.7 times the size,
    /// within that one of \p colors and 0.3 times the size.
    void drawBullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                       const Points& points);
    void drawBullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                       std::initializer_list<glm::vec2> points) {
        drawBullseyes(colors, colors2, sizes, Points(points.begin(), points.size()));
    }
    void drawBullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                       std::initializer_list<glm::vec3> points) {
        drawBullseyes(colors, colors2, sizes, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawBullseyes(const Colors& colors, const Colors& colors2, const Sizes& sizes,
                       std::size_t count, const V* points) {
        drawBullseyes(colors, colors2, sizes, Points(points, count));
    }
    /// @}

    /// \name Areas
    /// Their edges are as GL draws them: antialiased where the framebuffer is multisampled.
    /// \param colors  One for all points, or one for each, blended between them.
    /// \param buffer  The caller's points, as for lines.
    /// @{

    /// Draws a triangle for each three points.
    void drawTriangles(const Colors& colors, const Points& points) {
        drawArea(Shape::Triangles, colors, points);
    }
    void drawTriangles(const Colors& colors, std::initializer_list<glm::vec2> points) {
        drawTriangles(colors, Points(points.begin(), points.size()));
    }
    void drawTriangles(const Colors& colors, std::initializer_list<glm::vec3> points) {
        drawTriangles(colors, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawTriangles(const Colors& colors, std::size_t count, const V* points) {
        drawTriangles(colors, Points(points, count));
    }
    void drawTriangles(const glm::vec4& color, unsigned int first, unsigned int count,
                       const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawArea(Shape::Triangles, color, first, count, buffer, 2);
    }
    void drawTriangles(const glm::vec4& color, unsigned int first, unsigned int count,
                       const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawArea(Shape::Triangles, color, first, count, buffer, 3);
    }

    /// Draws a triangle for each point from the third on, with the two before it.
    void drawTriangleStrip(const Colors& colors, const Points& points) {
        drawArea(Shape::TriangleStrip, colors, points);
    }
    void drawTriangleStrip(const Colors& colors, std::initializer_list<glm::vec2> points) {
        drawTriangleStrip(colors, Points(points.begin(), points.size()));
    }
    void drawTriangleStrip(const Colors& colors, std::initializer_list<glm::vec3> points) {
        drawTriangleStrip(colors, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawTriangleStrip(const Colors& colors, std::size_t count, const V* points) {
        drawTriangleStrip(colors, Points(points, count));
    }
    void drawTriangleStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                           const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawArea(Shape::TriangleStrip, color, first, count, buffer, 2);
    }
    void drawTriangleStrip(const glm::vec4& color, unsigned int first, unsigned int count,
                           const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawArea(Shape::TriangleStrip, color, first, count, buffer, 3);
    }

    /// Draws a triangle for each point from the third on, with the first and the one before it.
    void drawTriangleFan(const Colors& colors, const Points& points) {
        drawArea(Shape::TriangleFan, colors, points);
    }
    void drawTriangleFan(const Colors& colors, std::initializer_list<glm::vec2> points) {
        drawTriangleFan(colors, Points(points.begin(), points.size()));
    }
    void drawTriangleFan(const Colors& colors, std::initializer_list<glm::vec3> points) {
        drawTriangleFan(colors, Points(points.begin(), points.size()));
    }
    template <class V>
    void drawTriangleFan(const Colors& colors, std::size_t count, const V* points) {
        drawTriangleFan(colors, Points(points, count));
    }
    void drawTriangleFan(const glm::vec4& color, unsigned int first, unsigned int count,
                         const std::shared_ptr<VertexAttributeBuffer<glm::vec2>>& buffer) {
        drawArea(Shape::TriangleFan, color, first, count, buffer, 2);
    }
    void drawTriangleFan(const glm::vec4& color, unsigned int first, unsigned int count,
                         const std::shared_ptr<VertexAttributeBuffer<glm::vec3>>& buffer) {
        drawArea(Shape::TriangleFan, color, first, count, buffer, 3);
    }

    /// Draws a quad for each four points, which are its corners in turn.
    void drawQuad(const Colors& colors, const Points& points) {
        drawArea(Shape::Quads, colors, points);
    }
    void drawQuad(const Colors& colors, std::initializer_list<glm::vec2> points) {
        drawQuad(colors, Points(points.begin(), points.size()));
    }
    void drawQuad(const Colors& colors, std::initializer_list<glm::vec3> points) {
        drawQuad(colors, Points(points.begin(), points.size()));
    }

    /// The same, each with an outline.
    void drawQuad(const Colors& fillColors, const Stroke& outline, const Points& points);
    void drawQuad(const Colors& fillColors, const Stroke& outline,
                  std::initializer_list<glm::vec2> points) {
        drawQuad(fillColors, outline, Points(points.begin(), points.size()));
    }
    void drawQuad(const Colors& fillColors, const Stroke& outline,
                  std::initializer_list<glm::vec3> points) {
        drawQuad(fillColors, outline, Points(points.begin(), points.size()));
    }

    /// Draws a rectangle whose sides are parallel to the axes, with opposite corners \p a and \p b.
    void drawRect(const glm::vec4& color, const glm::vec2& a, const glm::vec2& b) {
        drawQuad(color, {a, {a.x, b.y}, b, {b.x, a.y}});
    }
    template <class V, class = std::enable_if_t<std::is_same_v<V, glm::dvec2>>>
    void drawRect(const glm::vec4& color, const V& a, const V& b) {
        const V corners[] = {a, {a.x, b.y}, b, {b.x, a.y}};
        drawQuad(color, Points(corners, 4));
    }
    /// @}

    /// \name Images
    /// Texels are read through the last texture unit with the texture's own sampling parameters:
    /// set a Sampler without mipmaps, or generate them, as a texture that lacks its mipmaps is
    /// black. A texture that is null, that has been disposed, that is not 2D or that does not exist
    /// in the Context in use draws nothing. It is kept until it has been drawn, by a picture as
    /// long as that lives; its texels are those of the moment when GL draws. Depth is tested, not
    /// written.
    /// @{

    /// Draws a part of a texture. Its edges are as GL draws them: antialiased where the framebuffer
    /// is multisampled.
    /// \param texture  Whose texels.
    /// \param frame    Where it goes.
    /// \param part  What is seen of it: exchanged coordinates turn it around. One that is not
    ///              finite draws nothing, nor does such a frame.
    /// \param tint  Is multiplied by the texels, which have straight alpha.
    void drawImage(const std::shared_ptr<const Texture>& texture, const ImageFrame& frame,
                   const TexturePart& part = {}, const glm::vec4& tint = glm::vec4(1.f));

    /// Draws parts of a texture whose extent is in pixels of the framebuffer, whatever the matrix
    /// is: glyphs and markers. setPixelRatio() does not apply.
    /// \param texture  Whose texels.
    /// \param style    What they are, and where the pixels begin.
    /// \param color  Is multiplied by the texels, or what they cover has it.
    /// \param place  Goes through the matrix; where it is not in front of the viewer or not finite,
    ///               nothing is drawn.
    /// \param quads  From the place on, in pixels, up being the framebuffer's: see
    ///               setPixelsDownward(). One that is not finite is left out.
    /// \param count  How many there are.
    void drawQuads(const std::shared_ptr<const Texture>& texture, const QuadStyle& style,
                   const glm::vec4& color, const glm::dvec3& place, const PixelQuad* quads,
                   std::size_t count);
    /// @}

private:
    using Shape = canvas::Shape;

    Canvas();

    /// What the families come down to: points of the caller's memory, or of a buffer with 2 or 3
    /// \p dimensions.
    /// @{
    void drawStroke(Shape shape, const Stroke& stroke, const Points& points, const Colors* colors);
    void drawStroke(Shape shape, const Stroke& stroke, unsigned int first, unsigned int count,
                    const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions);
    void drawArea(Shape shape, const Colors& colors, const Points& points);
    void drawArea(Shape shape, const glm::vec4& color, unsigned int first, unsigned int count,
                  const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions);
    void drawPoints(const glm::vec4& color, float size, unsigned int first, unsigned int count,
                    const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions);
    /// @}

    friend struct internal::LabelAccess;

    std::unique_ptr<canvas::Painter> painter_;
};

} // namespace vellis

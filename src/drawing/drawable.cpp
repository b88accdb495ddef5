#include <vellis/drawing/drawable.hpp>

#include <cstddef>

#include <vellis/gl.hpp>

#include "gl/capability.hpp"
#include "gl/enumerator.hpp"
#include "gl/loader.hpp"
#include "gl/names.hpp"

namespace vellis {
namespace {

/// Whether a vertex array is to be drawn from that does not exist in the Context in use.
bool isDrawingRefused() {
    return gl::thread().binding == gl::refusedBinding;
}

/// Draws indices of type \p T, which GL calls \p glType.
template <class T>
void drawIndexed(Drawable::PrimitiveType primitive, const IndexBuffer<T>& indices,
                 unsigned int glType, unsigned int first, unsigned int count) {
    if (isDrawingRefused() || !gl::existsOrRefuse(indices))
        return;
    if (count == 0)
        count = indices.count() - first;
    indices.bind();
    // With an element buffer bound, the pointer is an offset into it.
    const std::size_t offset = first * sizeof(T);
    glDrawElements(gl::value(primitive), static_cast<int>(count), glType,
                   reinterpret_cast<const void*>(offset));
    indices.unbind();
}

} // namespace

void Drawable::draw(const IndexBuffer<unsigned int>& indices, unsigned int first,
                    unsigned int count) const {
    drawIndexed(primitiveType_, indices, GL_UNSIGNED_INT, first, count);
}

void Drawable::draw(const IndexBuffer<unsigned short>& indices, unsigned int first,
                    unsigned int count) const {
    drawIndexed(primitiveType_, indices, GL_UNSIGNED_SHORT, first, count);
}

void Drawable::draw(const IndexBuffer<unsigned char>& indices, unsigned int first,
                    unsigned int count) const {
    drawIndexed(primitiveType_, indices, GL_UNSIGNED_BYTE, first, count);
}

void Drawable::draw(unsigned int first, unsigned int count) const {
    if (isDrawingRefused())
        return;
    if (count == 0)
        count = numVertices_ - first;
    glDrawArrays(gl::value(primitiveType_), static_cast<int>(first), static_cast<int>(count));
}

void Drawable::enableFaceCulling(Face face) {
    glCullFace(gl::value(face));
    glEnable(GL_CULL_FACE);
}

void Drawable::enableFaceCulling(bool on) {
    state::switchCapability(GL_CULL_FACE, on);
}

void Drawable::enableLineSmooth(SmoothHint hint) {
    glEnable(GL_LINE_SMOOTH);
    glHint(GL_LINE_SMOOTH_HINT, gl::value(hint));
}

void Drawable::enableLineSmooth(bool on) {
    state::switchCapability(GL_LINE_SMOOTH, on);
}

void Drawable::enablePolygonSmooth(SmoothHint hint) {
    glEnable(GL_POLYGON_SMOOTH);
    glHint(GL_POLYGON_SMOOTH_HINT, gl::value(hint));
}

void Drawable::enablePolygonSmooth(bool on) {
    state::switchCapability(GL_POLYGON_SMOOTH, on);
}

void Drawable::enablePointSprite(bool on) {
    state::switchCapability(GL_POINT_SPRITE, on);
    // Contexts that have only point sprites refuse to switch them; that is nobody's mistake.
    glGetError();
    state::switchCapability(GL_VERTEX_PROGRAM_POINT_SIZE, on);
}

void Drawable::setLineWidth(float width) {
    state::setLineWidth(width);
}

void Drawable::setPointSize(float size) {
    glPointSize(size);
    glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
}

void Drawable::setPolygonMode(Face face, PolygonMode mode) {
    if (face == Face::FrontAndBack || !loader::isCore())
        glPolygonMode(gl::value(face), gl::value(mode));
}

} // namespace vellis

#include <gallery/render.hpp>

#include <stdexcept>
#include <string>

#include <gallery/colour.hpp>
#include <gallery/picture.hpp>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>

namespace gallery {
namespace {

/// Puts all GL attributes back at the end of a scope, so that no panel's switches reach the next.
class SavedAttributes {
public:
    SavedAttributes() { glPushAttrib(GL_ALL_ATTRIB_BITS); }
    ~SavedAttributes() { glPopAttrib(); }
    SavedAttributes(const SavedAttributes&) = delete;
    SavedAttributes& operator=(const SavedAttributes&) = delete;
};

void clear(unsigned int size) {
    const glm::vec3 paper = toVector(palette::paper);
    glViewport(0, 0, static_cast<GLsizei>(size), static_cast<GLsizei>(size));
    glClearColor(paper.r, paper.g, paper.b, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void draw(const Panel& panel) {
    const SavedAttributes savedAttributes;
    clear(panelSize * panel.sampling);
    panel.draw({panel.sampling});
    if (const char* error = vellis::internal::check_glerror())
        throw std::runtime_error("drawing it makes the GL error " + std::string(error) + ".");
}

} // namespace

offscreen::Image render(const Panel& panel) {
    try {
        draw(panel);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("Panel " + std::string(panel.name) + ": " + error.what());
    }
    const unsigned int size = panelSize * panel.sampling;
    return scaledDown(offscreen::readPixels(size, size), panel.sampling);
}

} // namespace gallery

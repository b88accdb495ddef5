#include <gallery/frame/drawing_to.hpp>

#include <stdexcept>
#include <string>

#include <gallery/frame/color.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/gl.hpp>

namespace gallery {

SavedAttributes::SavedAttributes() {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
}

SavedAttributes::~SavedAttributes() {
    glPopAttrib();
}

DrawingTo::~DrawingTo() {
    framebuffer_.unbind();
}

void DrawingTo::start(const glm::uvec2& size) {
    using vellis::Framebuffer;
    if (const char* problem = vellis::diagnostics::check_framebuffer_complete()) {
        framebuffer_.unbind();
        throw std::runtime_error("the driver refuses a framebuffer: " + std::string(problem) + ".");
    }
    Framebuffer::setViewport(0, 0, size.x, size.y);
    Framebuffer::clear(toRgba(palette::paper), 1.0f, 0);
}

} // namespace gallery

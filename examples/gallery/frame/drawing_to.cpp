#include <gallery/frame/drawing_to.hpp>

#include <stdexcept>
#include <string>
#include <string_view>

#include <gallery/frame/color.hpp>
#include <vellis/diagnostics.hpp>
#include <vellis/gl.hpp>
#include <vellis/state.hpp>

namespace gallery {

namespace {

bool isCore() {
    GLint profile = 0;
    if (GLAD_GL_VERSION_3_2 != 0)
        glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    return (profile & GL_CONTEXT_CORE_PROFILE_BIT) != 0;
}

/// What writes a record back as it is now; nothing for one that names objects, or is of a
/// framebuffer.
template <class Record>
std::function<void()> keep(std::string_view name) {
    for (const char* const part : {"BINDING", "CURRENT_PROGRAM", "DRAW_BUFFER", "READ_BUFFER"}) {
        if (name.find(part) != name.npos)
            return [] {};
    }
    Record record{};
    vellis::state::get(record);
    return [record] { vellis::state::set(record); };
}

} // namespace

SavedAttributes::SavedAttributes() {
    if (!isCore()) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        return;
    }
#define VELLIS_STATE(T, N, pname, queries, command)                                                \
    putBack_.push_back(keep<vellis::state::State<T, N, pname>>(#pname));
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
    GLint stencilMask = 0;
    glGetIntegerv(GL_STENCIL_WRITEMASK, &stencilMask);
    const bool isMultisampled = glIsEnabled(GL_MULTISAMPLE) == GL_TRUE;
    putBack_.push_back([stencilMask, isMultisampled] {
        glStencilMask(static_cast<GLuint>(stencilMask));
        vellis::Framebuffer::enableMultiSampling(isMultisampled);
    });
}

SavedAttributes::~SavedAttributes() {
    for (const auto& putBack : putBack_)
        putBack();
    if (putBack_.empty())
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

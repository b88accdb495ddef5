#include <offscreen/requirement.hpp>

#include <vellis/gl.hpp>

namespace offscreen {
namespace {

struct Requirement {
    const char* name;
    bool met;
};

/// The part of the driver's answer to a `glGetString` query that fits into a sentence.
std::string described(GLenum name) {
    const GLubyte* text = glGetString != nullptr ? glGetString(name) : nullptr;
    return text != nullptr ? reinterpret_cast<const char*>(text) : "unknown";
}

} // namespace

std::string missingRequirement() {
    const bool since30 = GLAD_GL_VERSION_3_0 != 0;
    const Requirement requirements[] = {
        {"OpenGL 2.1", GLAD_GL_VERSION_2_1 != 0},
        {"GL_ARB_vertex_array_object", since30 || GLAD_GL_ARB_vertex_array_object != 0},
        {"GL_ARB_framebuffer_object", since30 || GLAD_GL_ARB_framebuffer_object != 0},
        {"GL_ARB_map_buffer_range", since30 || GLAD_GL_ARB_map_buffer_range != 0},
    };
    std::string missing;
    for (const Requirement& requirement : requirements) {
        if (!requirement.met)
            missing += (missing.empty() ? "" : ", ") + std::string(requirement.name);
    }
    if (missing.empty())
        return {};
    return "The GL driver (" + described(GL_RENDERER) + ", OpenGL " + described(GL_VERSION) +
           ") lacks " + missing + ": use another or a newer one, for instance Mesa's with " +
           "`apt-get install libegl1 libgl1-mesa-dri`.";
}

} // namespace offscreen

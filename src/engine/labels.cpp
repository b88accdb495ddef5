#include <vellis/engine/labels.hpp>

#include <string>

#include <vellis/canvas/canvas.hpp>

#include "canvas/painter.hpp"
#include "gl/labels.hpp"

namespace vellis::internal {

static_assert(static_cast<int>(LabelledKind::VertexArray) ==
              static_cast<int>(gl::Kind::VertexArray));
static_assert(static_cast<int>(LabelledKind::Framebuffer) ==
              static_cast<int>(gl::Kind::Framebuffer));
static_assert(static_cast<int>(LabelledKind::Program) == static_cast<int>(gl::Kind::Program));
static_assert(static_cast<int>(LabelledKind::Shader) == static_cast<int>(gl::Kind::Shader));
static_assert(static_cast<int>(LabelledKind::Buffer) == static_cast<int>(gl::Kind::Buffer));
static_assert(static_cast<int>(LabelledKind::Texture) == static_cast<int>(gl::Kind::Texture));
static_assert(static_cast<int>(LabelledKind::Renderbuffer) ==
              static_cast<int>(gl::Kind::Renderbuffer));
/// What only labels reach.
struct LabelAccess {
    static canvas::Painter& of(const Canvas& canvas) { return *canvas.painter_; }
    static const canvas::KeptDrawing& of(const Picture& picture) { return *picture.drawing_; }
};

bool label_name(LabelledKind kind, unsigned int name, const char* label) {
    if (name != 0)
        gl::setLabel(static_cast<gl::Kind>(kind), name, label != nullptr ? label : "");
    return name != 0;
}

std::string label_of_name(LabelledKind kind, unsigned int name) {
    return gl::labelOf(static_cast<gl::Kind>(kind), name);
}

bool label(const Picture& object, const char* name) {
    bool isLabelled = false;
    for (const canvas::BufferName& buffer : LabelAccess::of(object).buffers)
        isLabelled |= label_name(LabelledKind::Buffer, buffer.name(), name);
    return isLabelled;
}

std::string label_of(const Picture& object) {
    std::string text;
    for (const canvas::BufferName& buffer : LabelAccess::of(object).buffers) {
        if (text.empty())
            text = gl::labelOf(gl::Kind::Buffer, buffer.name());
    }
    return text;
}

bool label(const Canvas& object, const char* name) {
    LabelAccess::of(object).setLabel(name != nullptr ? name : "");
    return true;
}

std::string label_of(const Canvas& object) {
    return LabelAccess::of(object).label();
}

} // namespace vellis::internal

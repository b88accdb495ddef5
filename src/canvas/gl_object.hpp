#pragma once

#include <utility>

#include "gl/names.hpp"

namespace vellis::canvas {

/// The name of a GL object of a canvas, which is deleted with it: at once, or once the Context that
/// it was made in is in use.
template <gl::Kind kind>
class GlObject {
public:
    GlObject() = default;

    /// Takes a name that GL has just made.
    explicit GlObject(unsigned int name) : name_(name), index_(gl::indexHere(kind)) {}

    GlObject(GlObject&& other) noexcept
        : name_(std::exchange(other.name_, 0)),
          index_(other.index_) {}
    GlObject& operator=(GlObject&& other) noexcept {
        std::swap(name_, other.name_);
        std::swap(index_, other.index_);
        return *this;
    }
    ~GlObject() {
        if (name_ != 0 && gl::canDelete(kind, index_, name_))
            gl::deleteName(kind, name_);
    }

    /// The name; 0 where there is none, or where it does not exist.
    unsigned int name() const { return gl::isHere(kind, index_) ? name_ : 0; }

private:
    unsigned int name_ = 0;
    unsigned int index_ = 0;
};

using VertexArray = GlObject<gl::Kind::VertexArray>;
using FramebufferName = GlObject<gl::Kind::Framebuffer>;
using ProgramName = GlObject<gl::Kind::Program>;
using BufferName = GlObject<gl::Kind::Buffer>;
using TextureName = GlObject<gl::Kind::Texture>;

} // namespace vellis::canvas

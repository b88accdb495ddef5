#pragma once

#include <cstddef>

namespace vellis::test {

/// The kinds of GL objects.
enum class ObjectKind : unsigned char {
    Buffer,
    Texture,
    VertexArray,
    Framebuffer,
    Renderbuffer,
    Query,
    Shader,
    Program,
};
constexpr std::size_t numObjectKinds = 8;

/// Whether contexts that share objects share those of that kind.
constexpr bool isShareable(ObjectKind kind) {
    return kind != ObjectKind::VertexArray && kind != ObjectKind::Framebuffer &&
           kind != ObjectKind::Query;
}

} // namespace vellis::test

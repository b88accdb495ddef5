/// The operations of snapshots of GL state.

#include <algorithm>
#include <vector>

#include <vellis/state.hpp>

#include "operations/operations.hpp"
#include "state/later_enumerators.hpp"

namespace vellis::test {
namespace {

/// What queries say that the fake GL has no state for.
int level = 0;

void answerIndexedQueries(FakeGl& gl) {
    gl.answer(glad_glGetVertexAttribiv, [](GLuint, GLenum, GLint* out) { *out = level; });
    gl.answer(glad_glGetVertexAttribPointerv, [](GLuint, GLenum, void** out) { *out = nullptr; });
    gl.answer(glad_glGetVertexAttribfv,
              [](GLuint, GLenum, GLfloat* out) { std::fill_n(out, 4, static_cast<float>(level)); });
    gl.answer(glad_glGetIntegeri_v, [](GLenum, GLuint, GLint* out) { *out = level; });
    gl.answer(glad_glGetInteger64i_v, [](GLenum, GLuint, GLint64* out) { *out = level; });
    // Others for each draw buffer.
    gl.answer(glad_glIsEnabledi, [](GLenum, GLuint i) { return (i == 0) == (level == 0); });
    gl.answer(glad_glGetBooleani_v, [](GLenum, GLuint i, GLboolean* out) {
        std::fill_n(out, 4, static_cast<GLboolean>((i == 0) == (level == 0)));
    });
}

/// Sets all pieces of state to a value, but for which vertex array is bound.
void setAll(FakeGl& gl, int value) {
    level = value;
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups)        \
    gl.setState(GL_##name, std::vector<double>(count == 0 ? 4 : count, value));
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
    gl.setState(GL_VERTEX_ARRAY_BINDING, {0});
}

void unsetAll(FakeGl& gl) {
    level = 0;
#define VELLIS_PIECE(name, query, count, print, needs, per, write, target, initial, groups)        \
    gl.unsetState(GL_##name);
#include "state/snapshot_pieces.inc"
#undef VELLIS_PIECE
}

constexpr GLenum limits[] = {
    GL_MAX_DRAW_BUFFERS,
    GL_MAX_VERTEX_ATTRIBS,
    GL_MAX_TEXTURE_COORDS,
    GL_MAX_TEXTURE_UNITS,
    GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS,
    GL_MAX_UNIFORM_BUFFER_BINDINGS,
};

} // namespace

void useSnapshots(UseRecorder& use) {
    answerIndexedQueries(use.gl);
    for (const GLenum limit : limits)
        use.gl.setState(limit, {2});
    use.gl.setState(GL_CONTEXT_PROFILE_MASK, {GL_CONTEXT_COMPATIBILITY_PROFILE_BIT});
    GLuint buffer = 0; // which there is, so that its name is restored
    glGenBuffers(1, &buffer);
    const int value = static_cast<int>(buffer);
    setAll(use.gl, 0);
    const auto nothing = state::Snapshot::take();
    setAll(use.gl, value);
    const auto everything = state::Snapshot::take();
    use.gl.setState(GL_VERTEX_ARRAY_BINDING, {value});
    const auto withArray = state::Snapshot::take();
    setAll(use.gl, 0);

    use.of("Snapshot");
    use("take", [] { return state::Snapshot::take(); });
    use("restore", [&] { everything.restore(); });
    use("restore", [&] { withArray.restore(); });
    setAll(use.gl, value);
    use("restore", [&] { nothing.restore(); });
    setAll(use.gl, 0);
    use.gl.setState(GL_LINE_WIDTH, {3});
    use.gl.setState(GL_ACTIVE_TEXTURE, {GL_TEXTURE1});
    const auto other = state::Snapshot::take();
    setAll(use.gl, 0);
    use.of("Kept");
    use("construction, destruction", [] { const state::Kept kept; });
    use("construction, destruction (groups)",
        [] { const state::Kept kept(state::Group::Blending | state::Group::Textures); });
    use.of("state");
    use("reset", [] { state::reset(); });
    use("differences", [&] { state::differences(nothing, other); });
    unsetAll(use.gl);
    use.gl.unsetState(GL_CONTEXT_PROFILE_MASK);
    glDeleteBuffers(1, &buffer);
    for (const GLenum limit : limits)
        use.gl.unsetState(limit);
}

} // namespace vellis::test

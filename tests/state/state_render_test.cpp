#include <vellis/state.hpp>

#include <algorithm>

#include <gtest/gtest.h>
#include <vellis/gl.hpp>

#include "state/state_guard.hpp"
#include "support/render_test.hpp"

namespace {

using vellis::state::get;
using vellis::state::set;
using vellis::state::State;
using vellis::state::StateGuard;

class StateRender : public RenderTest {};

template <class T, unsigned int N, unsigned int pname>
void survivesARoundTrip(const char* name) {
    State<T, N, pname> before{};
    get(before);
    set(before);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << name;
    State<T, N, pname> after{};
    get(after);
    EXPECT_TRUE(std::equal(before.value, before.value + N, after.value)) << name;
}

TEST_F(StateRender, EveryRecordSurvivesARoundTrip) {
    SKIP_WITHOUT_EVERY_STATE();
#define VELLIS_STATE(T, N, pname, queries, command) survivesARoundTrip<T, N, pname>(#pname);
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
}

/// Writes \p values and expects GL to have them.
template <class T, unsigned int N, unsigned int pname>
void reachesGl(const State<T, N, pname>& values) {
    set(values);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << pname;
    State<T, N, pname> read{};
    get(read);
    EXPECT_TRUE(std::equal(values.value, values.value + N, read.value)) << pname;
}

TEST_F(StateRender, ValuesThatAreNotTheDefaultsReachGl) {
    SKIP_WITHOUT_EVERY_STATE();
    GLuint textures[7] = {};
    glGenTextures(7, textures);
    const auto name = [&](int i) { return static_cast<int>(textures[i]); };
    reachesGl(State<int, 1, GL_ACTIVE_TEXTURE>{{GL_TEXTURE1}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_1D>{{name(0)}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_2D>{{name(1)}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_3D>{{name(2)}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_RECTANGLE>{{name(3)}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_CUBE_MAP>{{name(4)}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_1D_ARRAY>{{name(5)}});
    reachesGl(State<int, 1, GL_TEXTURE_BINDING_2D_ARRAY>{{name(6)}});
    glDeleteTextures(7, textures);

    GLuint object = 0;
    glGenVertexArrays(1, &object);
    reachesGl(State<int, 1, GL_VERTEX_ARRAY_BINDING>{{static_cast<int>(object)}});
    glDeleteVertexArrays(1, &object);
    glGenBuffers(1, &object);
    reachesGl(State<int, 1, GL_ELEMENT_ARRAY_BUFFER_BINDING>{{static_cast<int>(object)}});
    glDeleteBuffers(1, &object);
    glGenRenderbuffers(1, &object);
    reachesGl(State<int, 1, GL_RENDERBUFFER_BINDING>{{static_cast<int>(object)}});
    glDeleteRenderbuffers(1, &object);
    glGenFramebuffers(1, &object);
    reachesGl(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{{0, static_cast<int>(object)}});
    reachesGl(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{{static_cast<int>(object), 0}});
    reachesGl(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{
        {static_cast<int>(object), static_cast<int>(object)}});
    reachesGl(State<int, 2, GL_DRAW_FRAMEBUFFER_BINDING>{{0, 0}});
    glDeleteFramebuffers(1, &object);

    reachesGl(State<int, 1, GL_CULL_FACE_MODE>{{GL_FRONT}});
    reachesGl(State<int, 1, GL_DEPTH_FUNC>{{GL_GEQUAL}});
    reachesGl(State<int, 1, GL_STENCIL_CLEAR_VALUE>{{5}});
    reachesGl(State<int, 1, GL_LOGIC_OP_MODE>{{GL_XOR}});
    reachesGl(State<int, 1, GL_DRAW_BUFFER>{{GL_NONE}});
    reachesGl(State<int, 1, GL_READ_BUFFER>{{GL_NONE}});
    reachesGl(State<int, 1, GL_UNPACK_ALIGNMENT>{{8}});
    reachesGl(State<int, 1, GL_PACK_ALIGNMENT>{{2}});
    reachesGl(State<int, 2, GL_BLEND_EQUATION_RGB>{{GL_FUNC_SUBTRACT, GL_MAX}});
    reachesGl(State<int, 2, GL_POLYGON_MODE>{{GL_LINE, isCore() ? GL_LINE : GL_POINT}});
    reachesGl(State<int, 3, GL_STENCIL_FUNC>{{GL_LESS, 3, 0x0F}});
    reachesGl(State<int, 3, GL_STENCIL_FAIL>{{GL_INCR, GL_DECR, GL_INVERT}});
    reachesGl(State<int, 3, GL_STENCIL_BACK_FUNC>{{GL_GREATER, 4, 0xF0}});
    reachesGl(State<int, 3, GL_STENCIL_BACK_FAIL>{{GL_ZERO, GL_REPLACE, GL_INCR_WRAP}});
    reachesGl(State<int, 4, GL_BLEND_SRC_RGB>{
        {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_DST_COLOR, GL_CONSTANT_ALPHA}});
    reachesGl(State<int, 4, GL_VIEWPORT>{{1, 2, 30, 40}});
    reachesGl(State<int, 4, GL_SCISSOR_BOX>{{5, 6, 70, 80}});
    reachesGl(State<float, 1, GL_POINT_SIZE>{{2.5f}});
    reachesGl(State<float, 1, GL_LINE_WIDTH>{{isForwardCompatible() ? 0.5f : 1.5f}});
    reachesGl(State<float, 4, GL_COLOR_CLEAR_VALUE>{{0.25f, 0.5f, 0.75f, 1.f}});
    reachesGl(State<double, 1, GL_DEPTH_CLEAR_VALUE>{{0.5}});
    reachesGl(State<double, 2, GL_DEPTH_RANGE>{{0.25, 0.75}});
    reachesGl(State<bool, 1, GL_PROGRAM_POINT_SIZE>{{true}});
    reachesGl(State<bool, 1, GL_LINE_SMOOTH>{{true}});
    reachesGl(State<bool, 1, GL_POLYGON_SMOOTH>{{true}});
    reachesGl(State<bool, 1, GL_CULL_FACE>{{true}});
    reachesGl(State<bool, 1, GL_DEPTH_TEST>{{true}});
    reachesGl(State<bool, 1, GL_STENCIL_TEST>{{true}});
    reachesGl(State<bool, 1, GL_BLEND>{{true}});
    reachesGl(State<bool, 1, GL_COLOR_LOGIC_OP>{{true}});
    reachesGl(State<bool, 1, GL_SCISSOR_TEST>{{true}});
    reachesGl(State<bool, 1, GL_DEPTH_WRITEMASK>{{false}});
    reachesGl(State<bool, 4, GL_COLOR_WRITEMASK>{{true, false, false, true}});
}

TEST_F(StateRender, StencilRecordOfOneFaceLeavesTheOtherUnchanged) {
    set(State<int, 3, GL_STENCIL_BACK_FUNC>{{GL_GREATER, 4, 0xF0}});
    set(State<int, 3, GL_STENCIL_BACK_FAIL>{{GL_ZERO, GL_REPLACE, GL_INCR_WRAP}});
    set(State<int, 3, GL_STENCIL_FUNC>{{GL_LESS, 3, 0x0F}});
    set(State<int, 3, GL_STENCIL_FAIL>{{GL_INCR, GL_DECR, GL_INVERT}});
    State<int, 3, GL_STENCIL_BACK_FUNC> function{};
    State<int, 3, GL_STENCIL_BACK_FAIL> operation{};
    get(function);
    get(operation);
    EXPECT_EQ(function.value[0], GL_GREATER);
    EXPECT_EQ(function.value[1], 4);
    EXPECT_EQ(function.value[2], 0xF0);
    EXPECT_EQ(operation.value[0], GL_ZERO);
    EXPECT_EQ(operation.value[1], GL_REPLACE);
    EXPECT_EQ(operation.value[2], GL_INCR_WRAP);
}

TEST_F(StateRender, PolygonModeReadsFrontThenBack) {
    SKIP_IN_CORE("a polygon mode for each face");
    glPolygonMode(GL_FRONT, GL_LINE);
    glPolygonMode(GL_BACK, GL_POINT);
    State<int, 2, GL_POLYGON_MODE> mode{};
    get(mode);
    EXPECT_EQ(mode.value[0], GL_LINE);
    EXPECT_EQ(mode.value[1], GL_POINT);
}

TEST_F(StateRender, ErrorOfASetStaysInTheQueue) {
    set(State<int, 1, GL_CULL_FACE_MODE>{{GL_TEXTURE_2D}});
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(StateRender, GuardRestoresBlending) {
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    {
        const StateGuard<State<bool, 1, GL_BLEND>, State<int, 4, GL_BLEND_SRC_RGB>,
                         State<int, 2, GL_BLEND_EQUATION_RGB>>
            guard;
        glDisable(GL_BLEND);
        glBlendFunc(GL_ZERO, GL_ZERO);
        glBlendEquation(GL_MIN);
    }
    State<bool, 1, GL_BLEND> blend{};
    State<int, 4, GL_BLEND_SRC_RGB> factors{};
    State<int, 2, GL_BLEND_EQUATION_RGB> equations{};
    get(blend);
    get(factors);
    get(equations);
    EXPECT_TRUE(blend.value[0]);
    EXPECT_EQ(factors.value[0], GL_ONE);
    EXPECT_EQ(factors.value[3], GL_ONE);
    EXPECT_EQ(equations.value[0], GL_FUNC_ADD);
    EXPECT_EQ(equations.value[1], GL_FUNC_ADD);
}

} // namespace

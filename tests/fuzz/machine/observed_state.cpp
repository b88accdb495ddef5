#include "fuzz/machine/observed_state.hpp"

#include <algorithm>
#include <sstream>

namespace vellis::test {
namespace {

bool contains(const std::vector<GLenum>& states, GLenum state) {
    return std::find(states.begin(), states.end(), state) != states.end();
}

bool mayChange(const Promise& promise, GLenum state) {
    return contains(promise.zeroes, state) || contains(promise.sets, state);
}

/// The states that belong to an object: they are others while another is bound.
struct Owned {
    GLenum state;
    GLenum owner;
};
constexpr Owned ownedStates[] = {
    {GL_ELEMENT_ARRAY_BUFFER_BINDING, GL_VERTEX_ARRAY_BINDING},
    {GL_DRAW_BUFFER, GL_DRAW_FRAMEBUFFER_BINDING},
    {GL_READ_BUFFER, GL_READ_FRAMEBUFFER_BINDING},
    {GL_TEXTURE_BINDING_1D, GL_ACTIVE_TEXTURE},
    {GL_TEXTURE_BINDING_2D, GL_ACTIVE_TEXTURE},
    {GL_TEXTURE_BINDING_3D, GL_ACTIVE_TEXTURE},
    {GL_TEXTURE_BINDING_CUBE_MAP, GL_ACTIVE_TEXTURE},
    {GL_TEXTURE_BINDING_RECTANGLE, GL_ACTIVE_TEXTURE},
    {GL_TEXTURE_BINDING_1D_ARRAY, GL_ACTIVE_TEXTURE},
    {GL_TEXTURE_BINDING_2D_ARRAY, GL_ACTIVE_TEXTURE},
};

bool isKept(const Promise& promise, GLenum state, const ObservedValues& after) {
    if (contains(promise.sets, state))
        return true;
    if (contains(promise.zeroes, state) && after[0] == 0)
        return true;
    return std::any_of(std::begin(ownedStates), std::end(ownedStates), [&](const Owned& row) {
        return row.state == state && mayChange(promise, row.owner);
    });
}

} // namespace

const std::vector<ObservedState>& observedStates() {
    // clang-format off
    static const std::vector<ObservedState> states = {
#define VELLIS_OBSERVED(name) {#name, GL_##name},
#define VELLIS_TRACKED_STATE(name, kind, count) VELLIS_OBSERVED(name)
#include "state/tracked_states.inc"
#undef VELLIS_TRACKED_STATE
        VELLIS_OBSERVED(ARRAY_BUFFER_BINDING)
        VELLIS_OBSERVED(ELEMENT_ARRAY_BUFFER_BINDING)
        VELLIS_OBSERVED(PIXEL_PACK_BUFFER_BINDING)
        VELLIS_OBSERVED(PIXEL_UNPACK_BUFFER_BINDING)
        VELLIS_OBSERVED(PACK_IMAGE_HEIGHT)
        VELLIS_OBSERVED(PACK_SKIP_IMAGES)
        VELLIS_OBSERVED(PACK_SWAP_BYTES)
        VELLIS_OBSERVED(PACK_LSB_FIRST)
        VELLIS_OBSERVED(UNPACK_IMAGE_HEIGHT)
        VELLIS_OBSERVED(UNPACK_SKIP_IMAGES)
        VELLIS_OBSERVED(UNPACK_SWAP_BYTES)
        VELLIS_OBSERVED(UNPACK_LSB_FIRST)
        VELLIS_OBSERVED(CURRENT_PROGRAM)
        VELLIS_OBSERVED(DRAW_FRAMEBUFFER_BINDING)
        VELLIS_OBSERVED(READ_FRAMEBUFFER_BINDING)
        VELLIS_OBSERVED(DRAW_BUFFER)
        VELLIS_OBSERVED(CULL_FACE)
        VELLIS_OBSERVED(CULL_FACE_MODE)
        VELLIS_OBSERVED(POLYGON_MODE)
        VELLIS_OBSERVED(POLYGON_SMOOTH)
        VELLIS_OBSERVED(LINE_SMOOTH)
        VELLIS_OBSERVED(LINE_WIDTH)
        VELLIS_OBSERVED(POINT_SPRITE)
        VELLIS_OBSERVED(COLOR_LOGIC_OP)
        VELLIS_OBSERVED(LOGIC_OP_MODE)
        VELLIS_OBSERVED(MULTISAMPLE)
#undef VELLIS_OBSERVED
    };
    // clang-format on
    return states;
}

std::vector<ObservedValues> observe() {
    std::vector<ObservedValues> all;
    all.reserve(observedStates().size());
    for (const ObservedState& state : observedStates()) {
        ObservedValues values{};
        glGetDoublev(state.pname, values.data());
        all.push_back(values);
    }
    return all;
}

GLuint observedName(GLenum pname) {
    GLint name = 0;
    glGetIntegerv(pname, &name);
    return static_cast<GLuint>(name);
}

std::string brokenPromise(const Promise& promise, const std::vector<ObservedValues>& before,
                          const std::vector<ObservedValues>& after) {
    for (std::size_t i = 0; i < before.size(); ++i) { // none for what was never seen
        const ObservedState& state = observedStates()[i];
        if (before[i] == after[i] || isKept(promise, state.pname, after[i]))
            continue;
        std::ostringstream text;
        text << state.name << " was " << before[i][0] << " and is " << after[i][0];
        return text.str();
    }
    return "";
}

} // namespace vellis::test

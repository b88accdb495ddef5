#pragma once

#include <string>
#include <utility>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>

#include "support/texel_formats.hpp"

/// \file
/// What the tests of framebuffers draw with and look at.

namespace vellis::test {

/// A single integer of GL's state.
inline int stateOf(GLenum pname) {
    int value = -1;
    glGetIntegerv(pname, &value);
    return value;
}

/// The names bound for drawing and for reading.
inline std::pair<int, int> boundFramebuffers() {
    return {stateOf(GL_DRAW_FRAMEBUFFER_BINDING), stateOf(GL_READ_FRAMEBUFFER_BINDING)};
}

/// The name of the first error in GL's queue, empty where there is none. The queue is empty then.
inline std::string takeError() {
    const char* first = internal::check_glerror();
    while (internal::check_glerror() != nullptr) {
    }
    return first == nullptr ? "" : first;
}

/// What internal::check_framebuffer_complete says, empty for a complete framebuffer.
inline std::string problem(GLenum target = GL_FRAMEBUFFER) {
    const char* name = internal::check_framebuffer_complete(target);
    return name == nullptr ? "" : name;
}

/// Draws with GL alone, in one colour: \p points are in clip coordinates. A program that is in use
/// gets them as its only attribute, `position`.
void drawByGl(GLenum primitive, const std::vector<glm::vec3>& points, const glm::vec4& color);

/// Draws a rectangle of one colour, all of the viewport unless corners in clip coordinates are
/// given. The depth is what the depth buffer gets: 0 is near, 1 far.
void fill(const glm::vec4& color, float depth = 0.5f, glm::vec2 from = glm::vec2(-1.f),
          glm::vec2 to = glm::vec2(1.f));

/// How many names up to 1000 are framebuffers, or renderbuffers: `liveNames(glIsFramebuffer)`.
/// A context that lacks the entry point has none.
template <class IsName>
int liveNames(IsName isName) {
    int count = 0;
    for (GLuint name = 1; isName != nullptr && name <= 1000; ++name)
        count += isName(name) == GL_TRUE ? 1 : 0;
    return count;
}

/// The most samples of a renderbuffer. The driver has no multisampling where it is below 2.
inline unsigned int maxSamples() {
    return static_cast<unsigned int>(stateOf(GL_MAX_SAMPLES));
}

/// Two framebuffers of others, bound in one of the ways that operations must leave as they are.
class ForeignBindings {
public:
    ForeignBindings() { glGenFramebuffers(2, names_); }
    ~ForeignBindings() { glDeleteFramebuffers(2, names_); }
    ForeignBindings(const ForeignBindings&) = delete;
    ForeignBindings& operator=(const ForeignBindings&) = delete;

    /// Calls \p check with each pair of bindings, bound at that time: none, equal ones, different
    /// ones, one and none, and what a deleted framebuffer leaves.
    template <class Check>
    void each(Check check) const {
        const GLuint a = names_[0];
        const GLuint b = names_[1];
        for (const auto& [draw, read] : {std::pair(0u, 0u), {a, a}, {a, b}, {a, 0u}, {0u, b}}) {
            bind(draw, read);
            check(std::pair<int, int>(draw, read));
        }
        GLuint deleted = 0;
        glGenFramebuffers(1, &deleted);
        bind(deleted, b);
        glDeleteFramebuffers(1, &deleted);
        check(std::pair<int, int>(0, b));
        bind(0, 0);
    }

private:
    static void bind(GLuint draw, GLuint read) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, draw);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, read);
    }

    GLuint names_[2] = {};
};

} // namespace vellis::test

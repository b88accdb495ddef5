#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <gtest/gtest.h>
#include <vellis/canvas.hpp>
#include <vellis/gl.hpp>

#include "canvas/vertex_arrays.hpp"
#include "support/fake_gl.hpp"
#include "support/state_model.hpp"

namespace vellis::test {

using Lines = std::vector<std::string>;

/// One list of lines out of several.
inline Lines join(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// The lines that begin with one of some texts.
inline Lines only(const Lines& lines, std::initializer_list<const char*> beginnings) {
    Lines found;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(found), [&](const auto& line) {
        return std::any_of(beginnings.begin(), beginnings.end(),
                           [&](const char* text) { return line.rfind(text, 0) == 0; });
    });
    return found;
}

/// A canvas on a fake GL 2.1 with all extensions and a window of 200 by 100 pixels, which keeps the
/// state that a batch changes. The uniforms have locations that tell them apart.
class CanvasTest : public testing::Test {
protected:
    CanvasTest() {
        GLAD_GL_VERSION_3_0 = GLAD_GL_VERSION_3_1 = GLAD_GL_VERSION_3_2 = 0;
        modelState(gl, 200, 100);
        gl.setActiveUniforms({{"matrix", GL_FLOAT_MAT4, 1, 10},
                              {"viewport", GL_FLOAT_VEC4, 1, 11},
                              {"miterLimit", GL_FLOAT, 1, 14},
                              {"dashes", GL_FLOAT_VEC4, 2, 15},
                              {"dashPeriod", GL_FLOAT, 1, 17},
                              {"dashMatrix", GL_FLOAT_MAT4, 1, 18},
                              {"dashScale", GL_FLOAT_VEC2, 1, 19},
                              {"halfWidth", GL_FLOAT, 1, 20},
                              {"styleColor", GL_FLOAT_VEC4, 1, 21},
                              {"texels", GL_SAMPLER_2D, 1, 22},
                              {"frame", GL_FLOAT_VEC4, 1, 23},
                              {"box", GL_FLOAT_VEC4, 1, 24}});
        canvas = Canvas::make();
    }

    void TearDown() override {
        canvas.reset();
        EXPECT_EQ(gl.liveNames(), Lines());
        EXPECT_EQ(gl.doubleDeletes(), Lines());
        gl.ignoreTheRest();
    }

    /// The calls of a batch.
    template <class Draw>
    Lines callsOf(Draw draw, const glm::mat4& mvp = glm::mat4(1.f)) {
        gl.forget();
        canvas->begin(mvp);
        draw();
        canvas->end();
        return gl.takeCalls();
    }

    /// The calls of a batch after one that has made what it needs.
    template <class Draw>
    Lines laterCallsOf(Draw draw) {
        callsOf(draw);
        return callsOf(draw);
    }

    /// What a batch has GL draw.
    template <class Draw>
    Lines drawsOf(Draw draw, const glm::mat4& mvp = glm::mat4(1.f)) {
        return only(callsOf(draw, mvp), {"glDraw"});
    }

    FakeGl gl;
    std::shared_ptr<Canvas> canvas;
    const glm::vec4 white = glm::vec4(1.f);
    const glm::vec4 transparent = glm::vec4(1.f, 0.f, 0.f, 0.5f);
    const std::vector<glm::vec2> corner = {{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}};
    const std::vector<glm::vec3> corner3D = {{0.f, 0.f, 0.f}, {1.f, 0.f, 0.f}, {1.f, 1.f, 0.f}};
};

/// \name Draws of the buffers that batches go through: of so many corners, quads or discs, from one
/// of them on.
/// @{
inline std::string elementsDrawn(const char* primitive, std::size_t count, std::size_t first) {
    return "glDrawElements(" + std::string(primitive) + ", " + std::to_string(count) +
           ", GL_UNSIGNED_SHORT, " + std::to_string(2 * first) + ")";
}
inline std::string trianglesDrawn(std::size_t first, std::size_t count) {
    return elementsDrawn("GL_TRIANGLES", count, canvas::firstOwnIndex + first);
}
inline std::string linesDrawn(std::size_t first, std::size_t count) {
    return elementsDrawn("GL_LINES", count, canvas::firstOwnIndex + first);
}
inline std::string discsDrawn(std::size_t first, std::size_t count) {
    return elementsDrawn("GL_TRIANGLES", 3 * count, canvas::firstOwnIndex + 3 * first);
}
inline std::string quadsDrawn(std::size_t first, std::size_t count) {
    return elementsDrawn("GL_TRIANGLES", 6 * count, 6 * first);
}
/// @}

/// What a batch asks for and sets before it draws.
inline const Lines batchBegins = {
    "glGetIntegerv(GL_VIEWPORT, out)",
    "glGetIntegerv(GL_CURRENT_PROGRAM, out)",
    "glGetIntegerv(GL_ARRAY_BUFFER_BINDING, out)",
    "glGetIntegerv(GL_VERTEX_ARRAY_BINDING, out)",
    "glGetIntegerv(GL_BLEND_SRC_RGB, out)",
    "glGetIntegerv(GL_BLEND_DST_RGB, out)",
    "glGetIntegerv(GL_BLEND_SRC_ALPHA, out)",
    "glGetIntegerv(GL_BLEND_DST_ALPHA, out)",
    "glGetIntegerv(GL_BLEND_EQUATION_RGB, out)",
    "glGetIntegerv(GL_BLEND_EQUATION_ALPHA, out)",
    "glGetIntegerv(GL_POLYGON_MODE, out)",
    "glGetFloatv(GL_LINE_WIDTH, out)",
    "glIsEnabled(GL_BLEND)",
    "glIsEnabled(GL_DEPTH_TEST)",
    "glGetIntegerv(GL_SAMPLE_BUFFERS, out)",
    "glIsEnabled(GL_POLYGON_OFFSET_FILL)",
    "glIsEnabled(GL_CULL_FACE)",
    "glIsEnabled(GL_COLOR_LOGIC_OP)",
    "glIsEnabled(GL_SAMPLE_ALPHA_TO_COVERAGE)",
    "glIsEnabled(GL_POLYGON_SMOOTH)",
    "glIsEnabled(GL_LINE_SMOOTH)",
    "glIsEnabled(GL_ALPHA_TEST)",
    "glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA)",
    "glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD)",
};

/// What it puts back.
inline const Lines batchEnds = {
    "glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_ONE, GL_ZERO)",
    "glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD)",
    "glBindVertexArray(0)",
    "glBindBuffer(GL_ARRAY_BUFFER, 0)",
    "glUseProgram(0)",
};

inline const std::string unitMatrixSet =
    "glUniformMatrix4fv(10, 1, GL_FALSE, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})";
inline const std::string viewportSet = "glUniform4fv(11, 1, {0, 0, 200, 100})";

} // namespace vellis::test

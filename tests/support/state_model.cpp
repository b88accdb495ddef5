#include "support/state_model.hpp"

#include <vellis/gl.hpp>

namespace vellis::test {
namespace {

void modelSwitchesAndStores(RecordedGl& gl) {
    const auto switchTo = [&gl](GLint value) {
        return [&gl, value](GLenum capability) { gl.setState(capability, {value}); };
    };
    gl.answer(glad_glEnable, switchTo(1));
    gl.answer(glad_glDisable, switchTo(0));
    gl.answer(glad_glPixelStorei, [&gl](GLenum pname, GLint value) {
        const bool isAlignment = pname == GL_PACK_ALIGNMENT || pname == GL_UNPACK_ALIGNMENT;
        if (isAlignment ? value == 1 || value == 2 || value == 4 || value == 8 : value >= 0)
            gl.setState(pname, {value});
    });
}

void modelBlending(RecordedGl& gl) {
    gl.answer(glad_glBlendFuncSeparate, [&gl](GLenum sourceRgb, GLenum destinationRgb,
                                              GLenum sourceAlpha, GLenum destinationAlpha) {
        gl.setState(GL_BLEND_SRC_RGB, {sourceRgb});
        gl.setState(GL_BLEND_DST_RGB, {destinationRgb});
        gl.setState(GL_BLEND_SRC_ALPHA, {sourceAlpha});
        gl.setState(GL_BLEND_DST_ALPHA, {destinationAlpha});
    });
    const auto setEquations = [&gl](GLenum rgb, GLenum alpha) {
        gl.setState(GL_BLEND_EQUATION_RGB, {rgb});
        gl.setState(GL_BLEND_EQUATION_ALPHA, {alpha});
    };
    gl.answer(glad_glBlendEquationSeparate, setEquations);
    gl.answer(glad_glBlendEquation, [=](GLenum mode) { setEquations(mode, mode); });
}

/// The calls that set one piece of state, whose values are all their arguments.
template <GLenum pname, class... Parameters>
void modelValues(RecordedGl& gl, void(GLAD_API_PTR*& entryPoint)(Parameters...)) {
    gl.answer(entryPoint, [&gl](Parameters... values) {
        gl.setState(pname, std::initializer_list<double>{static_cast<double>(values)...});
    });
}

void modelPolygonMode(RecordedGl& gl) {
    gl.answer(glad_glPolygonMode, [&gl](GLenum face, GLenum mode) {
        std::vector<double> modes = gl.state(GL_POLYGON_MODE);
        modes.resize(2, GL_FILL);
        if (face != GL_BACK)
            modes[0] = mode;
        if (face != GL_FRONT)
            modes[1] = mode;
        gl.setState(GL_POLYGON_MODE, modes);
    });
}

void setInitialState(RecordedGl& gl, int width, int height) {
    gl.setState(GL_VIEWPORT, {0, 0, width, height});
    gl.setState(GL_SCISSOR_BOX, {0, 0, width, height});
    gl.setState(GL_COLOR_WRITEMASK, {1, 1, 1, 1});
    gl.setState(GL_DEPTH_WRITEMASK, {1});
    gl.setState(GL_COLOR_CLEAR_VALUE, {0, 0, 0, 0});
    gl.setState(GL_LINE_WIDTH, {1});
    gl.setState(GL_POLYGON_MODE, {GL_FILL, GL_FILL});
    gl.setState(GL_BLEND_SRC_RGB, {GL_ONE});
    gl.setState(GL_BLEND_DST_RGB, {GL_ZERO});
    gl.setState(GL_BLEND_SRC_ALPHA, {GL_ONE});
    gl.setState(GL_BLEND_DST_ALPHA, {GL_ZERO});
    gl.setState(GL_BLEND_EQUATION_RGB, {GL_FUNC_ADD});
    gl.setState(GL_BLEND_EQUATION_ALPHA, {GL_FUNC_ADD});
    gl.setState(GL_CONTEXT_PROFILE_MASK, {GL_CONTEXT_COMPATIBILITY_PROFILE_BIT});
    gl.setState(GL_MAX_TEXTURE_SIZE, {4096});
    gl.setState(GL_MAX_TEXTURE_IMAGE_UNITS, {16});
    gl.setState(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, {4});
}

} // namespace

void modelState(RecordedGl& gl, int width, int height) {
    setInitialState(gl, width, height);
    modelSwitchesAndStores(gl);
    modelBlending(gl);
    modelValues<GL_VIEWPORT>(gl, glad_glViewport);
    modelValues<GL_SCISSOR_BOX>(gl, glad_glScissor);
    modelValues<GL_COLOR_WRITEMASK>(gl, glad_glColorMask);
    modelValues<GL_DEPTH_WRITEMASK>(gl, glad_glDepthMask);
    modelValues<GL_COLOR_CLEAR_VALUE>(gl, glad_glClearColor);
    modelValues<GL_LINE_WIDTH>(gl, glad_glLineWidth);
    modelPolygonMode(gl);
}

} // namespace vellis::test

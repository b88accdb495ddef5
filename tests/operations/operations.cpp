#include "operations/operations.hpp"

namespace vellis::test {
namespace {

constexpr unsigned int drawFramebuffer = 901;
constexpr unsigned int readFramebuffer = 902;
constexpr unsigned int packBuffer = 903;

/// Writes down what operations call.
class CallRecorder : public UseRecorder {
public:
    using UseRecorder::UseRecorder;

    std::vector<Use> uses;

private:
    void run(Use use, const Once& once) override {
        gl.forget();
        once([&] { use.calls = gl.takeCalls(); });
        gl.forget();
        uses.push_back(std::move(use));
    }
};

} // namespace

const std::vector<KnownState>& knownStates() {
    static const std::vector<KnownState> states = {
        {"GL_UNPACK_ALIGNMENT", "8"},
        {"GL_PACK_ALIGNMENT", "2"},
        {"GL_PACK_ROW_LENGTH", "11"},
        {"GL_PACK_SKIP_PIXELS", "12"},
        {"GL_PACK_SKIP_ROWS", "13"},
        {"GL_PACK_IMAGE_HEIGHT", "14"},
        {"GL_PACK_SKIP_IMAGES", "15"},
        {"GL_PACK_SWAP_BYTES", "GL_TRUE"},
        {"GL_PACK_LSB_FIRST", "GL_TRUE"},
        {"GL_PIXEL_PACK_BUFFER_BINDING", "903"},
        {"GL_BLEND", "on"},
        {"GL_BLEND_SRC_RGB", "GL_DST_COLOR, GL_ONE, GL_ZERO, GL_DST_ALPHA"},
        {"GL_BLEND_EQUATION_RGB", "GL_MIN, GL_MAX"},
        {"GL_DRAW_FRAMEBUFFER_BINDING", "901"},
        {"GL_READ_FRAMEBUFFER_BINDING", "902"},
        // Of the operations of canvases alone.
        {"GL_CURRENT_PROGRAM", "904"},
        {"GL_VERTEX_ARRAY_BINDING", "905"},
        {"GL_ARRAY_BUFFER_BINDING", "906"},
        {"GL_PIXEL_UNPACK_BUFFER_BINDING", "907"},
        {"GL_ELEMENT_ARRAY_BUFFER_BINDING", "909"},
        {"GL_TEXTURE_BINDING_2D", "908"},
        {"GL_ACTIVE_TEXTURE", "GL_TEXTURE9"},
        {"GL_SCISSOR_TEST", "on"},
        {"GL_CULL_FACE", "on"},
        {"GL_COLOR_LOGIC_OP", "on"},
        {"GL_LINE_SMOOTH", "on"},
        {"GL_POLYGON_SMOOTH", "on"},
        {"GL_SAMPLE_ALPHA_TO_COVERAGE", "on"},
        {"GL_PRIMITIVE_RESTART", "on"},
        {"GL_ALPHA_TEST", "on"},
        {"GL_MULTISAMPLE", "on"},
        {"GL_VIEWPORT", "5, 6, 64, 48"},
        {"GL_SCISSOR_BOX", "7, 8, 60, 40"},
        {"GL_POLYGON_MODE", "GL_FRONT_AND_BACK, GL_POINT"},
        {"GL_LINE_WIDTH", "3"},
        {"GL_COLOR_WRITEMASK", "GL_TRUE, GL_FALSE, GL_TRUE, GL_TRUE"},
        {"GL_COLOR_CLEAR_VALUE", "0.125, 0.25, 0.5, 1"},
    };
    return states;
}

void UseRecorder::begin(std::string family) {
    family_ = std::move(family);
    gl.setState(GL_UNPACK_ALIGNMENT, {8});
    gl.setState(GL_PACK_ALIGNMENT, {2});
    gl.setState(GL_PACK_ROW_LENGTH, {11});
    gl.setState(GL_PACK_SKIP_PIXELS, {12});
    gl.setState(GL_PACK_SKIP_ROWS, {13});
    gl.setState(GL_PACK_IMAGE_HEIGHT, {14});
    gl.setState(GL_PACK_SKIP_IMAGES, {15});
    gl.setState(GL_PACK_SWAP_BYTES, {1});
    gl.setState(GL_PACK_LSB_FIRST, {1});
    gl.setState(GL_BLEND, {1});
    gl.setState(GL_BLEND_SRC_RGB, {GL_DST_COLOR});
    gl.setState(GL_BLEND_DST_RGB, {GL_ONE});
    gl.setState(GL_BLEND_SRC_ALPHA, {GL_ZERO});
    gl.setState(GL_BLEND_DST_ALPHA, {GL_DST_ALPHA});
    gl.setState(GL_BLEND_EQUATION_RGB, {GL_MIN});
    gl.setState(GL_BLEND_EQUATION_ALPHA, {GL_MAX});
    glBindBuffer(GL_PIXEL_PACK_BUFFER, packBuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, drawFramebuffer);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, readFramebuffer);
    gl.forget();
}

void useEverything(UseRecorder& use) {
    for (const auto family :
         {useEngine, useBuffers, useShading, useDrawing, useToolbox, useCanvas, useTextures,
          useFramebuffers, useState, useSnapshots, useDiagnostics, useDebugOutput})
        family(use);
}

std::vector<Use> recordEverything(FakeGl& gl) {
    CallRecorder recorder(gl);
    useEverything(recorder);
    useShutDown(recorder);
    return std::move(recorder.uses);
}

} // namespace vellis::test

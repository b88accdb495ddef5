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
    for (const auto family : {useEngine, useBuffers, useShading, useDrawing, useToolbox,
                              useTextures, useFramebuffers, useState, useDiagnostics})
        family(use);
}

std::vector<Use> recordEverything(FakeGl& gl) {
    CallRecorder recorder(gl);
    useEverything(recorder);
    useShutDown(recorder);
    return std::move(recorder.uses);
}

} // namespace vellis::test

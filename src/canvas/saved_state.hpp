#pragma once

#include <cstddef>

#include "canvas/capabilities.hpp"
#include "canvas/drawing.hpp"

namespace vellis::canvas {

/// The GL state of the caller's that a batch changes. It is read when a batch goes to GL, changed
/// for drawing, and put back at the end of the scope.
class SavedState {
public:
    /// Reads the state, and sets what all kinds draw with: blending of straight alpha; no culling,
    /// no logical operation, no alpha test, no smoothing, no restart, filled polygons, lines of
    /// width 1.
    explicit SavedState(const Capabilities& capabilities);
    ~SavedState();
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

    /// Sets what a kind draws with: what is antialiased and images write no depth, only triangles
    /// and images are multisampled, only triangles have an offset of polygons, and what is opaque
    /// is not blended.
    void prepareFor(Kind kind, bool isOpaque);

    /// Whether there is anything to draw to.
    bool hasViewport() const { return viewport_[2] > 0 && viewport_[3] > 0; }
    const int (&viewport() const)[4] { return viewport_; }

    bool testsDepth() const { return testsDepth_; }

    /// Sets GL's blending back to that of a batch.
    static void setBlending();

private:
    static constexpr std::size_t numSwitches = 7;

    void readVertexArrays();
    void restoreVertexArrays() const;
    void setDepthMask(bool on);
    void setBlend(bool on);

    /// A switch of the caller's that is off for some kinds.
    struct Switch {
        unsigned int capability;
        bool wasOn;
        bool isOff;

        void set(bool on);
    };

    /// A vertex array of the caller's, where it has no object of its own.
    struct Array {
        int isEnabled, size, type, isNormalized, stride, buffer;
        void* pointer;
    };

    const Capabilities& capabilities_;
    int viewport_[4] = {};
    int program_ = 0;
    int vertexArray_ = 0;
    int arrayBuffer_ = 0;
    int elementBuffer_ = 0;
    int factors_[4] = {};
    int equations_[2] = {};
    int polygonModes_[2] = {};
    float lineWidth_ = 1.f;
    bool blends_ = false;
    bool testsDepth_ = false;
    bool writesDepth_ = false;
    bool isOn_[numSwitches] = {};
    bool isDepthMaskOff_ = false;
    Switch multisample_ = {};
    Switch offset_ = {};
    bool isBlendOn_ = false;
    Array arrays_[8] = {};
};

} // namespace vellis::canvas

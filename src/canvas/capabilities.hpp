#pragma once

namespace vellis::canvas {

/// What the GL context has that a canvas may use.
struct Capabilities {
    bool hasVertexArrays;
    bool hasInstancing;     ///< attributes that advance once for each instance
    bool hasFramebuffers;   ///< with bindings of their own for drawing and reading
    bool hasRestart;        ///< primitive restart, which indices would run into
    bool hasFixedFunctions; ///< such as the alpha test
    bool hasSamplers;       ///< sampler objects, which stand in for the parameters of a texture
    bool hasGlsl150;        ///< which every context has that lacks GLSL 1.20
    unsigned int lastUnit;  ///< the last texture unit of fragment shaders

    /// Asks the GL context that is current.
    static Capabilities ask();
};

} // namespace vellis::canvas

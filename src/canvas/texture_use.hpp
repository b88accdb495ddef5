#pragma once

#include "canvas/capabilities.hpp"

namespace vellis::canvas {

/// Has shaders read a texture through the last texture unit, with its own sampling parameters, and
/// puts back at the end of the scope what was bound there and which unit was active.
class TextureUse {
public:
    TextureUse(unsigned int texture, const Capabilities& capabilities);
    ~TextureUse();
    TextureUse(const TextureUse&) = delete;
    TextureUse& operator=(const TextureUse&) = delete;

private:
    unsigned int unit_;
    int activeUnit_ = 0;
    int texture_ = 0;
    int sampler_ = 0;
};

} // namespace vellis::canvas

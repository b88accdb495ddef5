#pragma once

#include "canvas/capabilities.hpp"
#include "canvas/gl_object.hpp"
#include "canvas/texture_use.hpp"

namespace vellis::canvas {

/// A rectangle of pixels of the framebuffer.
struct PixelBox {
    int x, y, width, height;

    bool isEmpty() const { return width <= 0 || height <= 0; }
};

/// Where a half-transparent stroke is drawn so that each pixel of it is painted once: a texture in
/// a framebuffer of its own, which keeps the most of what is drawn to a pixel.
class OverlapMask {
public:
    /// Has GL draw to the mask in place of the caller's framebuffer.
    ///
    /// \param box       The pixels that the stroke may touch.
    /// \param viewport  The caller's.
    /// \param isFirst   Whether the mask is empty then; otherwise it is that of the last time.
    /// \return false, with nothing changed, where GL cannot draw to such a texture.
    bool begin(const PixelBox& box, const int (&viewport)[4], bool isFirst,
               const Capabilities& capabilities);

    /// Has GL draw to the caller's framebuffer again.
    void end();

    /// Binds the mask to the last texture unit, for \p draw, and then what was bound there.
    template <class Draw>
    void read(const Capabilities& capabilities, Draw draw) {
        const TextureUse use(texture_.name(), capabilities);
        draw();
    }

    int width() const { return width_; }
    int height() const { return height_; }

private:
    bool makeAtLeast(int width, int height, const Capabilities& capabilities);

    /// The caller's state.
    struct Saved {
        int framebuffer;
        int viewport[4];
        int scissor[4];
        bool isScissored;
        unsigned char colorMask[4];
        float clearColor[4];
    };

    FramebufferName framebuffer_;
    TextureName texture_;
    int width_ = 0;
    int height_ = 0;
    bool isComplete_ = false;
    Saved saved_ = {};
};

} // namespace vellis::canvas

#include <offscreen/image.hpp>

#include <algorithm>

#include <vellis/gl.hpp>

namespace offscreen {
namespace {

/// Sets how pixels are laid out in memory to GL's defaults with rows of any length, and back.
class PackState {
public:
    PackState() {
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &buffer_);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        for (Parameter& parameter : parameters_) {
            glGetIntegerv(parameter.name, &parameter.before);
            glPixelStorei(parameter.name, parameter.needed);
        }
    }

    ~PackState() {
        for (const Parameter& parameter : parameters_)
            glPixelStorei(parameter.name, parameter.before);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(buffer_));
    }

    PackState(const PackState&) = delete;
    PackState& operator=(const PackState&) = delete;

private:
    struct Parameter {
        GLenum name;
        GLint needed;
        GLint before;
    };

    Parameter parameters_[6] = {
        {GL_PACK_ALIGNMENT, 1, 0},   {GL_PACK_ROW_LENGTH, 0, 0}, {GL_PACK_SKIP_ROWS, 0, 0},
        {GL_PACK_SKIP_PIXELS, 0, 0}, {GL_PACK_SWAP_BYTES, 0, 0}, {GL_PACK_LSB_FIRST, 0, 0},
    };
    GLint buffer_ = 0;
};

/// GL's first row is the lowest one.
void flipRows(Image& image) {
    const std::ptrdiff_t rowBytes = std::ptrdiff_t{4} * image.width;
    unsigned char* upper = image.pixels.data();
    unsigned char* lower = upper + image.pixels.size() - rowBytes;
    for (; upper < lower; upper += rowBytes, lower -= rowBytes)
        std::swap_ranges(upper, upper + rowBytes, lower);
}

} // namespace

Image readPixels(unsigned int width, unsigned int height) {
    Image image(width, height);
    if (image.pixels.empty())
        return image;
    const PackState packState;
    glReadPixels(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height), GL_RGBA,
                 GL_UNSIGNED_BYTE, image.pixels.data());
    flipRows(image);
    return image;
}

} // namespace offscreen

#include <common/downloaded_picture.hpp>

#include <algorithm>

#include <vellis/framebuffer.hpp>

namespace common {

offscreen::Image toPicture(const std::vector<glm::u8vec4>& pixels, unsigned int width,
                           unsigned int height) {
    offscreen::Image image(width, height);
    auto pixel = pixels.begin();
    for (unsigned int row = height; row-- > 0;) { // the lowest comes first
        for (unsigned int column = 0; column < width; ++column, ++pixel) {
            const unsigned char bytes[] = {pixel->r, pixel->g, pixel->b, 255};
            std::copy_n(bytes, 4, image.at(column, row));
        }
    }
    return image;
}

offscreen::Image downloadPicture(unsigned int width, unsigned int height) {
    return toPicture(vellis::Framebuffer::download<glm::u8vec4>(0, 0, width, height), width,
                     height);
}

} // namespace common

#include <gallery/frame/picture.hpp>

#include <algorithm>

namespace gallery {

offscreen::Image filled(unsigned int width, unsigned int height, Color color) {
    offscreen::Image image(width, height);
    fill(image, 0, 0, width, height, color);
    return image;
}

void fill(offscreen::Image& image, unsigned int x, unsigned int y, unsigned int width,
          unsigned int height, Color color) {
    const unsigned char pixel[] = {color.red, color.green, color.blue, 255};
    for (unsigned int row = y; row < y + height; ++row) {
        for (unsigned int column = x; column < x + width; ++column)
            std::copy(pixel, pixel + 4, image.at(column, row));
    }
}

void paste(const offscreen::Image& image, offscreen::Image& onto, unsigned int x, unsigned int y) {
    for (unsigned int row = 0; row < image.height; ++row) {
        const unsigned char* begin = image.at(0, row);
        std::copy(begin, begin + std::size_t{4} * image.width, onto.at(x, y + row));
    }
}

offscreen::Image scaledDown(const offscreen::Image& image, unsigned int factor) {
    offscreen::Image result(image.width / factor, image.height / factor);
    const unsigned int samples = factor * factor;
    for (unsigned int y = 0; y < result.height; ++y) {
        for (unsigned int x = 0; x < result.width; ++x) {
            unsigned int sums[4] = {samples / 2, samples / 2, samples / 2, samples / 2};
            for (unsigned int row = 0; row < factor; ++row) {
                const unsigned char* byte = image.at(x * factor, y * factor + row);
                for (unsigned int i = 0; i < 4 * factor; ++i)
                    sums[i % 4] += byte[i];
            }
            unsigned char* mean = result.at(x, y);
            for (unsigned int i = 0; i < 4; ++i)
                mean[i] = static_cast<unsigned char>(sums[i] / samples);
        }
    }
    return result;
}

} // namespace gallery

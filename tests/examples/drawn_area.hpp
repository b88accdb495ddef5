#pragma once

#include <algorithm>
#include <cstdlib>

#include <offscreen/image.hpp>

/// Whether a pixel has a colour but for a driver's rounding.
inline bool isLike(const unsigned char* pixel, int red, int green, int blue) {
    return std::abs(pixel[0] - red) <= 12 && std::abs(pixel[1] - green) <= 12 &&
           std::abs(pixel[2] - blue) <= 12;
}

/// Whether a pixel has the colour of paper, on which pictures are drawn.
inline bool isPaper(const unsigned char* pixel) {
    return isLike(pixel, 250, 248, 243);
}

/// How many pixels of a kind there are in a picture, and the rectangle that holds them.
struct Area {
    unsigned int count = 0;
    unsigned int left = ~0u;
    unsigned int right = 0;
    unsigned int top = ~0u;
    unsigned int bottom = 0;

    void add(unsigned int x, unsigned int y) {
        ++count;
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
};

/// The pixels for which a function of their bytes holds, from a row on.
template <class IsOne>
Area areaOf(const offscreen::Image& image, IsOne isOne, unsigned int firstRow = 0) {
    Area area;
    for (unsigned int y = firstRow; y < image.height; ++y) {
        for (unsigned int x = 0; x < image.width; ++x) {
            if (isOne(image.at(x, y)))
                area.add(x, y);
        }
    }
    return area;
}

/// The pixels that are not paper.
inline Area drawnArea(const offscreen::Image& image) {
    return areaOf(image, [](const unsigned char* pixel) { return !isPaper(pixel); });
}

/// Whether what is drawn lies in the middle of a picture, with paper all around, and nearly as
/// large as fits.
inline bool isFramed(const offscreen::Image& image) {
    const Area area = drawnArea(image);
    if (area.count == 0)
        return false;
    const auto near = [](unsigned int before, unsigned int after, unsigned int size) {
        return std::abs(static_cast<int>(before) - static_cast<int>(after)) <
               static_cast<int>(size) / 10;
    };
    const unsigned int right = image.width - 1 - area.right;
    const unsigned int below = image.height - 1 - area.bottom;
    const unsigned int sides = area.left + right;
    const unsigned int ends = area.top + below;
    return area.left > 0 && area.top > 0 && right > 0 && below > 0 &&
           near(area.left, right, image.width) && near(area.top, below, image.height) &&
           (4 * sides < image.width || 4 * ends < image.height);
}
